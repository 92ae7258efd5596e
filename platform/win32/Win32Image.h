// A GDI bitmap and, built on the first keyed draw and kept with it, its monochrome mask.
#pragma once

#include <windows.h>

#include "gui/Platform.h"

namespace tolvane {

class Win32Image : public PlatformImage {
public:
    // Takes ownership of the bitmap.
    explicit Win32Image(HBITMAP bitmap);
    ~Win32Image() override;
    Win32Image(const Win32Image&) = delete;
    Win32Image& operator=(const Win32Image&) = delete;

    int width() const override { return width_; }
    int height() const override { return height_; }
    HBITMAP bitmap() const { return bitmap_; }
    // 1 where the bitmap has the key colour; rebuilt when another key is asked for.
    HBITMAP mask(HDC reference, COLORREF key) const;

private:
    HBITMAP bitmap_;
    int width_ = 0;
    int height_ = 0;
    mutable HBITMAP mask_ = nullptr;
    mutable COLORREF maskKey_ = 0;
};

}  // namespace tolvane
