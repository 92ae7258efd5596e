// The single-line edit field on Windows: the native EDIT control as a child of the frame's window,
// subclassed so that Return accepts and Escape cancels (restoring the text); losing the keyboard focus
// also ends it. Selection, clipboard and caret are the control's own. The focus goes back to the window
// that had it when the field closes.
#pragma once

#include <windows.h>

#include <string>

#include "gui/Platform.h"

namespace tolvane {

class Win32Window;

class Win32TextEdit : public TextEditSession {
public:
    Win32TextEdit(Win32Window& owner, const TextEditRequest& request, TextEditListener& listener);
    ~Win32TextEdit() override;
    Win32TextEdit(const Win32TextEdit&) = delete;
    Win32TextEdit& operator=(const Win32TextEdit&) = delete;

    std::string text() const override;
    bool returnPressed() const override { return returnPressed_; }

    bool isOpen() const { return hwnd_ != nullptr; }
    HWND hwnd() const { return hwnd_; }
    // Sets the field's colours on its device context and answers the background brush (WM_CTLCOLOREDIT).
    HBRUSH colour(HDC dc);
    // The owner window goes away first: close without talking to it again.
    void detach();

private:
    static LRESULT CALLBACK editProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    enum class Ending { returnKey, escapeKey, focusLost };
    void end(Ending how);
    void close();

    Win32Window* owner_;
    TextEditListener& listener_;
    TextEditRequest request_;
    std::string original_;
    mutable std::string finalText_;
    HWND hwnd_ = nullptr;
    HWND previousFocus_ = nullptr;
    WNDPROC controlProc_ = nullptr;
    HBRUSH brush_ = nullptr;
    bool returnPressed_ = false;
    bool ended_ = false;
};

}  // namespace tolvane
