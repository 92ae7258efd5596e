// The single-line edit field on X11: a child window of the frame's window, drawn by us in the field's
// colours and font, holding the keyboard focus while it is open and giving it back when it closes.
// Return (or Enter), Escape (which restores the text) and losing the focus end it.
#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include <string>

#include "gui/Platform.h"

namespace tolvane {

class LinuxWindow;

class LinuxTextEdit : public TextEditSession {
public:
    LinuxTextEdit(LinuxWindow& owner, const TextEditRequest& request, TextEditListener& listener);
    ~LinuxTextEdit() override;
    LinuxTextEdit(const LinuxTextEdit&) = delete;
    LinuxTextEdit& operator=(const LinuxTextEdit&) = delete;

    std::string text() const override { return text_; }
    bool returnPressed() const override { return returnPressed_; }

    bool isOpen() const { return window_ != 0; }
    Window window() const { return window_; }
    // Events of the field's window, passed on by the owner. May end the edit (the listener then usually
    // destroys this object), so the caller must not touch it afterwards.
    void handleEvent(XEvent& event);
    // The owner window goes away first: close without talking to it again.
    void detach();

private:
    std::size_t maxLength() const { return request_.maxLength > 0 ? static_cast<std::size_t>(request_.maxLength) : 0u; }
    void openInputContext(Display* display);
    void closeInputContext();
    // What a key press types, in Windows-1252 (empty for keys that type nothing), and its keysym.
    std::string typedText(XKeyEvent& key, KeySym& symbol);
    void draw();
    void end();
    void close();
    std::size_t caretFromX(int x);

    LinuxWindow* owner_;
    TextEditListener& listener_;
    TextEditRequest request_;
    std::string text_;
    std::string original_;
    std::size_t caret_ = 0;
    bool allSelected_ = true;
    bool returnPressed_ = false;
    bool ended_ = false;
    Window window_ = 0;
    Window previousFocus_ = 0;
    int previousRevert_ = RevertToParent;
    cairo_surface_t* surface_ = nullptr;
    XIM inputMethod_ = nullptr;
    XIC inputContext_ = nullptr;
};

}  // namespace tolvane
