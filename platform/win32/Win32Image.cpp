#include "platform/win32/Win32Image.h"

namespace tolvane {

Win32Image::Win32Image(HBITMAP bitmap) : bitmap_(bitmap) {
    BITMAP info{};
    if (bitmap_ && GetObjectA(bitmap_, sizeof info, &info)) {
        width_ = info.bmWidth;
        height_ = info.bmHeight < 0 ? -info.bmHeight : info.bmHeight;
    }
}

Win32Image::~Win32Image() {
    if (mask_) DeleteObject(mask_);
    if (bitmap_) DeleteObject(bitmap_);
}

// Copying a colour bitmap into a monochrome one makes pixels equal to the source's background colour 1.
HBITMAP Win32Image::mask(HDC reference, COLORREF key) const {
    if (mask_ && maskKey_ == key) return mask_;
    if (mask_) {
        DeleteObject(mask_);
        mask_ = nullptr;
    }
    HBITMAP mono = CreateBitmap(width_, height_, 1, 1, nullptr);
    HDC from = CreateCompatibleDC(reference);
    HDC to = CreateCompatibleDC(reference);
    if (mono && from && to) {
        SetMapMode(from, GetMapMode(reference));
        HGDIOBJ oldFrom = SelectObject(from, bitmap_);
        HGDIOBJ oldTo = SelectObject(to, mono);
        SetBkColor(from, key);
        BitBlt(to, 0, 0, width_, height_, from, 0, 0, SRCCOPY);
        SelectObject(from, oldFrom);
        SelectObject(to, oldTo);
        mask_ = mono;
        maskKey_ = key;
    } else if (mono) {
        DeleteObject(mono);
    }
    if (from) DeleteDC(from);
    if (to) DeleteDC(to);
    return mask_;
}

}  // namespace tolvane
