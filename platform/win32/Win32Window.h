// The frame's native child window on Windows. The host's message loop delivers its messages: WM_PAINT
// paints through the toolkit, button presses start the toolkit's press handling (drags then poll the mouse
// with GetAsyncKeyState), WM_CTLCOLOREDIT colours the edit field, WM_DESTROY tells the frame that the
// window is gone. The window class "Plugin%08x" (module instance) is registered by the first window and
// unregistered when the last one is destroyed, so that the module can be unloaded and loaded again.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <tuple>
#include <string>

#include "gui/Platform.h"

namespace tolvane {

class Win32TextEdit;
class Win32DropTarget;

class Win32Window : public NativeWindow {
public:
    // Creates the window; check isValid() afterwards.
    Win32Window(HWND parent, int width, int height, WindowEventHandler& handler);
    ~Win32Window() override;
    Win32Window(const Win32Window&) = delete;
    Win32Window& operator=(const Win32Window&) = delete;

    bool isValid() const { return hwnd_ != nullptr; }
    HWND hwnd() const { return hwnd_; }

    void* nativeHandle() const override { return hwnd_; }
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

    // Fonts live as long as the window: one GDI font per distinct request.
    HFONT font(const FontSpec& wanted);
    void editClosed(Win32TextEdit* edit);
    void filesDropped(const std::vector<std::string>& items, int kind, POINT screen);

private:
    static LRESULT CALLBACK windowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);

    WindowEventHandler& handler_;
    HWND hwnd_ = nullptr;
    bool classRegistered_ = false;
    bool oleInitialised_ = false;
    Win32DropTarget* dropTarget_ = nullptr;
    CursorKind cursor_ = CursorKind::standard;
    int pressButtons_ = 0;  // buttons of the press being handled, until the first position poll
    bool* alive_ = nullptr;  // set while a press is handled
    Win32TextEdit* edit_ = nullptr;
    std::map<std::tuple<std::string, int, int, bool, bool>, HFONT> fonts_;
};

}  // namespace tolvane
