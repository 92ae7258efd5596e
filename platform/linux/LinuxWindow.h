// The frame's X11 child window. It owns its display connection, a back buffer the toolkit draws into
// (shown on the window after each drawing pass and on Expose), its cursors, and the edit field while one
// is open. Events are read when the editor's idle runs (processEvents) and while drags poll the pointer.
#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include <memory>
#include <string>
#include <vector>

#include "gui/Platform.h"

namespace tolvane {

class LinuxTextEdit;

class LinuxWindow : public NativeWindow {
public:
    // Opens the connection and the window; check isValid() afterwards.
    LinuxWindow(void* parent, int width, int height, WindowEventHandler& handler);
    ~LinuxWindow() override;
    LinuxWindow(const LinuxWindow&) = delete;
    LinuxWindow& operator=(const LinuxWindow&) = delete;

    bool isValid() const { return window_ != 0; }

    void* nativeHandle() const override;
    void invalidate(const Rect& area) override;
    std::unique_ptr<GraphicsContext> beginDrawing() override;
    void processEvents() override;
    bool dispatchOnePaint() override;
    int mouseButtons() override;
    Point mousePosition() override;
    void setCursor(CursorKind kind) override;
    int runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) override;
    std::unique_ptr<TextEditSession> beginTextEdit(const TextEditRequest& request,
                                                   TextEditListener& listener) override;

    // ---- used by the window's helpers (menus, edit field)
    Display* display() const { return display_; }
    Window window() const { return window_; }
    Visual* visual() const { return visual_; }
    int depth() const { return depth_; }
    // Handles an event that arrived while a menu or drag owns the event loop: paints, the edit field,
    // destruction; pointer and key events of the window are dropped.
    void handleForeignEvent(XEvent& event);
    // Copies part of the back buffer onto the window.
    void present(const Rect& area);
    void editClosed(LinuxTextEdit* edit);

private:
    void handleEvent(XEvent& event, bool nested);
    void paint(const Rect& area);
    void flushExposes();
    // Drains the queue while something else runs: returns whether it painted.
    bool pumpNested();
    void replyToDndSource(Atom type, long accept, Atom action);
    void handleDndMessage(const XClientMessageEvent& message);
    void handleDndSelection(const XSelectionEvent& selection);

    WindowEventHandler& handler_;
    Display* display_ = nullptr;
    Window window_ = 0;
    Window parent_ = 0;
    Visual* visual_ = nullptr;
    int depth_ = 0;
    int width_;
    int height_;
    bool destroyed_ = false;
    cairo_surface_t* backBuffer_ = nullptr;
    cairo_surface_t* windowSurface_ = nullptr;
    Cursor cursors_[7] = {};
    int dispatchDepth_ = 0;
    int pressSeed_ = 0;  // buttons of the press being handled, until the first position poll
    bool exposePending_ = false;
    Rect exposeArea_;
    LinuxTextEdit* edit_ = nullptr;
    // Set while events are dispatched: a handler may close the editor and with it this window.
    bool* alive_ = nullptr;

    // Drag and drop from other applications (XDND, text/uri-list and plain text).
    Atom xdndAware_ = 0, xdndEnter_ = 0, xdndPosition_ = 0, xdndStatus_ = 0, xdndDrop_ = 0, xdndFinished_ = 0,
         xdndLeave_ = 0, xdndSelection_ = 0, xdndActionCopy_ = 0, xdndActionMove_ = 0, uriList_ = 0,
         textPlain_ = 0, utf8String_ = 0, dropProperty_ = 0;
    Window dndSource_ = 0;
    Atom dndType_ = 0;
    Point dndPoint_;
};

// Key events as the toolkit knows them (character, virtual key, modifiers).
KeyCode translateKey(XKeyEvent& event);

}  // namespace tolvane
