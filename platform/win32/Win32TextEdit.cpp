#include "platform/win32/Win32TextEdit.h"

#include <vector>

#include "platform/win32/Win32Platform.h"
#include "platform/win32/Win32Window.h"

namespace tolvane {
namespace {

// Posted to the field when it loses the focus: ending it inside the focus change would destroy a window
// while Windows is still moving the focus.
constexpr UINT kEndAfterFocusLoss = WM_APP + 17;

}  // namespace

Win32TextEdit::Win32TextEdit(Win32Window& owner, const TextEditRequest& request, TextEditListener& listener)
    : owner_(&owner), listener_(listener), request_(request), original_(request.text) {
    DWORD style = WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL;
    style |= request.align == kTextAlignCenter ? ES_CENTER : request.align == kTextAlignRight ? ES_RIGHT : ES_LEFT;
    const Rect& a = request.area;
    hwnd_ = CreateWindowExA(0, "EDIT", request.text.c_str(), style, a.left, a.top, a.width(), a.height(), owner.hwnd(),
                            nullptr, static_cast<HINSTANCE>(moduleInstance()), nullptr);
    if (!hwnd_) return;
    brush_ = CreateSolidBrush(RGB(request.backColor.red, request.backColor.green, request.backColor.blue));
    if (HFONT font = owner.font(request.font)) SendMessageA(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageA(hwnd_, EM_LIMITTEXT, static_cast<WPARAM>(request.maxLength), 0);
    SetWindowLongPtrA(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    controlProc_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(hwnd_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Win32TextEdit::editProc)));
    SendMessageA(hwnd_, EM_SETSEL, 0, -1);
    previousFocus_ = SetFocus(hwnd_);
}

Win32TextEdit::~Win32TextEdit() {
    close();
    if (owner_) owner_->editClosed(this);
}

std::string Win32TextEdit::text() const {
    if (!hwnd_) return finalText_;
    const int length = GetWindowTextLengthA(hwnd_);
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1, 0);
    GetWindowTextA(hwnd_, buffer.data(), length + 1);
    finalText_ = buffer.data();
    return finalText_;
}

HBRUSH Win32TextEdit::colour(HDC dc) {
    const Color& ink = request_.fontColor;
    const Color& back = request_.backColor;
    SetTextColor(dc, RGB(ink.red, ink.green, ink.blue));
    SetBkColor(dc, RGB(back.red, back.green, back.blue));
    if (HBRUSH fresh = CreateSolidBrush(RGB(back.red, back.green, back.blue))) {
        if (brush_) DeleteObject(brush_);
        brush_ = fresh;
    }
    return brush_;
}

void Win32TextEdit::detach() {
    owner_ = nullptr;
    close();
}

void Win32TextEdit::close() {
    if (hwnd_) {
        text();  // keep what was typed for the listener's last question
        HWND edit = hwnd_;
        hwnd_ = nullptr;
        SetWindowLongPtrA(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(controlProc_));
        SetWindowLongPtrA(edit, GWLP_USERDATA, 0);
        const bool hadFocus = GetFocus() == edit;
        DestroyWindow(edit);
        if (hadFocus && previousFocus_ && IsWindow(previousFocus_)) SetFocus(previousFocus_);
    }
    if (brush_) {
        DeleteObject(brush_);
        brush_ = nullptr;
    }
}

void Win32TextEdit::end(Ending how) {
    if (ended_) return;
    ended_ = true;
    returnPressed_ = how == Ending::returnKey;
    if (how == Ending::escapeKey && hwnd_) SetWindowTextA(hwnd_, original_.c_str());
    text();
    listener_.textEditEnded();  // usually destroys this object: nothing may follow
}

LRESULT CALLBACK Win32TextEdit::editProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* edit = reinterpret_cast<Win32TextEdit*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!edit) return DefWindowProcA(hwnd, message, wParam, lParam);
    WNDPROC control = edit->controlProc_;
    switch (message) {
        case WM_GETDLGCODE: return DLGC_WANTALLKEYS | CallWindowProcA(control, hwnd, message, wParam, lParam);
        case WM_KEYDOWN:
            if (wParam == VK_RETURN) {
                edit->end(Ending::returnKey);
                return 0;
            }
            if (wParam == VK_ESCAPE) {
                edit->end(Ending::escapeKey);
                return 0;
            }
            break;
        case WM_CHAR:
            if (wParam == '\r' || wParam == '\n' || wParam == 27) return 0;  // no beep
            break;
        case WM_KILLFOCUS: PostMessageA(hwnd, kEndAfterFocusLoss, 0, 0); break;
        case kEndAfterFocusLoss:
            if (GetFocus() != hwnd) edit->end(Ending::focusLost);
            return 0;
        default: break;
    }
    return CallWindowProcA(control, hwnd, message, wParam, lParam);
}

}  // namespace tolvane
