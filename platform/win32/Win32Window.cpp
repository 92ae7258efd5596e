#include "platform/win32/Win32Window.h"

#include <windowsx.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/win32/Win32DropTarget.h"
#include "platform/win32/Win32Image.h"
#include "platform/win32/Win32Platform.h"
#include "platform/win32/Win32TextEdit.h"

namespace tolvane {
namespace {

COLORREF colorRef(Color c) { return RGB(c.red, c.green, c.blue); }

// ---- the window class: one per module instance, shared by every editor window of the module

int classUseCount = 0;
char className[32] = {};

const char* windowClassName() {
    if (!className[0]) {
        auto instance = reinterpret_cast<std::uintptr_t>(moduleInstance());
        std::snprintf(className, sizeof className, "Plugin%08x", static_cast<unsigned>(instance & 0xFFFFFFFFu));
    }
    return className;
}

// The editor windows that exist, newest last (the file dialogs are owned by the newest).
std::vector<Win32Window*>& liveWindows() {
    static std::vector<Win32Window*> windows;
    return windows;
}

// ---- drawing with GDI on a device context: the window's own (GetDC) or a paint's (BeginPaint)

class Win32Graphics : public GraphicsContext {
public:
    Win32Graphics(Win32Window& window, HDC dc, HWND releaseTo) : window_(window), dc_(dc), releaseTo_(releaseTo) {
        savedPen_ = static_cast<HPEN>(GetCurrentObject(dc_, OBJ_PEN));
        savedBrush_ = static_cast<HBRUSH>(GetCurrentObject(dc_, OBJ_BRUSH));
        savedFont_ = static_cast<HFONT>(GetCurrentObject(dc_, OBJ_FONT));
        SetBkMode(dc_, TRANSPARENT);
    }
    ~Win32Graphics() override {
        SelectObject(dc_, savedPen_);
        SelectObject(dc_, savedBrush_);
        SelectObject(dc_, savedFont_);
        if (memory_) {
            SelectObject(memory_, memorySaved_);
            DeleteDC(memory_);
        }
        if (releaseTo_) ReleaseDC(releaseTo_, dc_);
    }
    Win32Graphics(const Win32Graphics&) = delete;
    Win32Graphics& operator=(const Win32Graphics&) = delete;

    void copyImage(const PlatformImage& image, const Rect& dest, Point source) override {
        HDC from = select(static_cast<const Win32Image&>(image).bitmap());
        BitBlt(dc_, dest.left, dest.top, dest.width(), dest.height(), from, source.h, source.v, SRCCOPY);
    }

    // Colour key through the bitmap's mask (1 where the key colour is): the destination block is copied
    // into a work bitmap and cleared where the image has other colours; the image's block, cleared where
    // it has the key colour, is ORed in; the work bitmap goes back to the destination.
    void copyImageKeyed(const PlatformImage& image, const Rect& dest, Point source, Color key) override {
        const auto& picture = static_cast<const Win32Image&>(image);
        const int w = dest.width();
        const int h = dest.height();
        if (w <= 0 || h <= 0) return;
        HBITMAP mask = picture.mask(dc_, colorRef(key));
        if (!mask) return copyImage(image, dest, source);
        HDC from = select(picture.bitmap());

        HDC maskDc = CreateCompatibleDC(dc_);
        HDC workDc = CreateCompatibleDC(dc_);
        HDC partDc = CreateCompatibleDC(dc_);
        HBITMAP work = CreateCompatibleBitmap(dc_, w, h);
        HBITMAP part = CreateCompatibleBitmap(dc_, w, h);
        if (maskDc && workDc && partDc && work && part) {
            HGDIOBJ oldMask = SelectObject(maskDc, mask);
            HGDIOBJ oldWork = SelectObject(workDc, work);
            HGDIOBJ oldPart = SelectObject(partDc, part);
            // Monochrome onto colour: 1 bits take the background colour, 0 bits the text colour.
            for (HDC target : {workDc, partDc}) {
                SetBkColor(target, RGB(255, 255, 255));
                SetTextColor(target, RGB(0, 0, 0));
            }
            BitBlt(workDc, 0, 0, w, h, dc_, dest.left, dest.top, SRCCOPY);
            BitBlt(workDc, 0, 0, w, h, maskDc, source.h, source.v, SRCAND);
            BitBlt(partDc, 0, 0, w, h, from, source.h, source.v, SRCCOPY);
            BitBlt(partDc, 0, 0, w, h, maskDc, source.h, source.v, 0x00220326);  // destination AND NOT mask
            BitBlt(workDc, 0, 0, w, h, partDc, 0, 0, SRCPAINT);
            BitBlt(dc_, dest.left, dest.top, w, h, workDc, 0, 0, SRCCOPY);
            SelectObject(maskDc, oldMask);
            SelectObject(workDc, oldWork);
            SelectObject(partDc, oldPart);
        }
        if (part) DeleteObject(part);
        if (work) DeleteObject(work);
        if (partDc) DeleteDC(partDc);
        if (workDc) DeleteDC(workDc);
        if (maskDc) DeleteDC(maskDc);
    }

    void fillRect(const Rect& area, Color color) override {
        HBRUSH brush = CreateSolidBrush(colorRef(color));
        if (!brush) return;
        RECT r{area.left, area.top, area.right, area.bottom};
        FillRect(dc_, &r, brush);
        DeleteObject(brush);
    }

    void drawLine(Point from, Point to, Color color, int width, LineStyle style) override {
        HPEN pen = CreatePen(style == LineStyle::dotted ? PS_DOT : PS_SOLID, std::max(width, 1), colorRef(color));
        if (!pen) return;
        HGDIOBJ old = SelectObject(dc_, pen);
        MoveToEx(dc_, from.h, from.v, nullptr);
        LineTo(dc_, to.h, to.v);
        SelectObject(dc_, old);
        DeleteObject(pen);
    }

    void drawText(const char* text, const Rect& box, const FontSpec& font, Color color, const Color* opaqueBack,
                  int align) override {
        HFONT handle = window_.font(font);
        HGDIOBJ old = handle ? SelectObject(dc_, handle) : nullptr;
        SetTextColor(dc_, colorRef(color));
        if (opaqueBack) {
            SetBkMode(dc_, OPAQUE);
            SetBkColor(dc_, colorRef(*opaqueBack));
        }
        UINT flags = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX;
        flags |= align == kTextAlignCenter ? DT_CENTER : align == kTextAlignRight ? DT_RIGHT : DT_LEFT;
        RECT r{box.left, box.top, box.right, box.bottom};
        DrawTextA(dc_, text, -1, &r, flags);
        SetBkMode(dc_, TRANSPARENT);
        if (old) SelectObject(dc_, old);
    }

private:
    // A memory device context holding the bitmap, kept for the pass.
    HDC select(HBITMAP bitmap) {
        if (!memory_) {
            memory_ = CreateCompatibleDC(dc_);
            memorySaved_ = SelectObject(memory_, bitmap);
        } else {
            SelectObject(memory_, bitmap);
        }
        return memory_;
    }

    Win32Window& window_;
    HDC dc_;
    HWND releaseTo_;
    HPEN savedPen_;
    HBRUSH savedBrush_;
    HFONT savedFont_;
    HDC memory_ = nullptr;
    HGDIOBJ memorySaved_ = nullptr;
};

// ---- popup menus

// Builds the native menu; command ids are positions in `ids` plus 1 (0 means nothing was chosen).
HMENU buildMenu(const std::vector<MenuItem>& items, std::vector<int>& ids) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return nullptr;
    for (const MenuItem& item : items) {
        UINT flags = 0;
        if (item.columnBreak) flags |= MF_MENUBARBREAK;
        if (item.separator) {
            AppendMenuA(menu, flags | MF_SEPARATOR, 0, nullptr);
            continue;
        }
        if (item.checked) flags |= MF_CHECKED;
        if (item.grayed) flags |= MF_GRAYED;
        else if (item.disabled) flags |= MF_DISABLED;
        if (item.hasSubmenu) {
            HMENU sub = buildMenu(item.submenu, ids);
            if (!sub) continue;
            AppendMenuA(menu, flags | MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(sub), item.text.c_str());
            continue;
        }
        ids.push_back(item.id);
        AppendMenuA(menu, flags | MF_STRING, ids.size(), item.text.c_str());
    }
    return menu;
}

LPCSTR cursorName(CursorKind kind) {
    switch (kind) {
        case CursorKind::wait: return IDC_WAIT;
        case CursorKind::sizeWE: return IDC_SIZEWE;
        case CursorKind::sizeNS: return IDC_SIZENS;
        case CursorKind::sizeAll: return IDC_SIZEALL;
        case CursorKind::sizeNESW: return IDC_SIZENESW;
        case CursorKind::sizeNWSE: return IDC_SIZENWSE;
        case CursorKind::standard: break;
    }
    return IDC_ARROW;
}

int pressBits(WPARAM keys) {
    int bits = 0;
    if (keys & MK_LBUTTON) bits |= kLeftButton;
    if (keys & MK_MBUTTON) bits |= kMiddleButton;
    if (keys & MK_RBUTTON) bits |= kRightButton;
    if (keys & MK_SHIFT) bits |= kShiftKey;
    if (keys & MK_CONTROL) bits |= kControlKey;
    if (GetKeyState(VK_MENU) < 0) bits |= kAltKey;
    return bits;
}

}  // namespace

void* activeEditorWindow() { return liveWindows().empty() ? nullptr : liveWindows().back()->hwnd(); }

Win32Window::Win32Window(HWND parent, int width, int height, WindowEventHandler& handler) : handler_(handler) {
    auto instance = static_cast<HINSTANCE>(moduleInstance());
    if (classUseCount == 0) {
        WNDCLASSA windowClass{};
        windowClass.style = CS_GLOBALCLASS;
        windowClass.lpfnWndProc = &Win32Window::windowProc;
        windowClass.hInstance = instance;
        windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        windowClass.lpszClassName = windowClassName();
        if (!RegisterClassA(&windowClass)) return;
    }
    ++classUseCount;
    classRegistered_ = true;

    // OLE for the drop target; a thread that already runs another apartment model still gets the window.
    HRESULT ole = OleInitialize(nullptr);
    oleInitialised_ = SUCCEEDED(ole);

    hwnd_ = CreateWindowExA(0, windowClassName(), "Window", WS_CHILD | WS_VISIBLE, 0, 0, width, height, parent,
                            nullptr, instance, this);
    if (!hwnd_) return;
    liveWindows().push_back(this);
    if (oleInitialised_) {
        dropTarget_ = new Win32DropTarget(*this);
        if (FAILED(RegisterDragDrop(hwnd_, dropTarget_))) {
            dropTarget_->Release();
            dropTarget_ = nullptr;
        }
    }
}

Win32Window::~Win32Window() {
    if (alive_) *alive_ = false;
    if (edit_) edit_->detach();
    auto& windows = liveWindows();
    windows.erase(std::remove(windows.begin(), windows.end(), this), windows.end());
    if (hwnd_ && IsWindow(hwnd_)) {
        if (dropTarget_) RevokeDragDrop(hwnd_);
        SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
        DestroyWindow(hwnd_);
    }
    if (dropTarget_) dropTarget_->Release();
    for (auto& entry : fonts_) DeleteObject(entry.second);
    if (oleInitialised_) OleUninitialize();
    if (classRegistered_ && --classUseCount == 0)
        UnregisterClassA(windowClassName(), static_cast<HINSTANCE>(moduleInstance()));
}

LRESULT CALLBACK Win32Window::windowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* create = reinterpret_cast<CREATESTRUCTA*>(lParam);
        auto* window = static_cast<Win32Window*>(create->lpCreateParams);
        window->hwnd_ = hwnd;
        SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(window));
    }
    auto* window = reinterpret_cast<Win32Window*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    if (!window) return DefWindowProcA(hwnd, message, wParam, lParam);
    return window->handle(message, wParam, lParam);
}

LRESULT Win32Window::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: {
            if (!GetUpdateRect(hwnd_, nullptr, FALSE)) return 0;
            PAINTSTRUCT paint{};
            HDC dc = BeginPaint(hwnd_, &paint);
            if (dc) {
                Win32Graphics graphics(*this, dc, nullptr);
                const RECT& r = paint.rcPaint;
                handler_.windowPaint(graphics, Rect{r.left, r.top, r.right, r.bottom});
            }
            EndPaint(hwnd_, &paint);
            return 0;
        }
        case WM_ERASEBKGND: return 1;  // the paint covers everything
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDBLCLK:
        {
            pressButtons_ = pressBits(wParam);
            bool alive = true;
            bool* outer = alive_;
            alive_ = &alive;
            handler_.windowMouseDown(Point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
            if (alive) {
                alive_ = outer;
                pressButtons_ = 0;
            } else if (outer) {  // the press closed the editor and with it this window
                *outer = false;
            }
            return 0;
        }
        case WM_MOUSEWHEEL: {
            POINT screen{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            ScreenToClient(hwnd_, &screen);
            handler_.windowWheel(Point{screen.x, screen.y},
                                 static_cast<float>(GET_WHEEL_DELTA_WPARAM(wParam)) / WHEEL_DELTA);
            return 0;
        }
        case WM_SETCURSOR:
            if (LOWORD(lParam) == HTCLIENT && cursor_ != CursorKind::standard) {
                SetCursor(LoadCursorA(nullptr, cursorName(cursor_)));
                return TRUE;
            }
            break;
        case WM_CTLCOLOREDIT:
            if (edit_ && reinterpret_cast<HWND>(lParam) == edit_->hwnd())
                return reinterpret_cast<LRESULT>(edit_->colour(reinterpret_cast<HDC>(wParam)));
            break;
        case WM_DESTROY:
            if (edit_) edit_->detach();
            if (dropTarget_) RevokeDragDrop(hwnd_);
            SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
            hwnd_ = nullptr;
            handler_.windowDestroyed();
            return 0;
        default: break;
    }
    return DefWindowProcA(hwnd_, message, wParam, lParam);
}

void Win32Window::invalidate(const Rect& area) {
    if (!hwnd_) return;
    RECT r{area.left, area.top, area.right, area.bottom};
    InvalidateRect(hwnd_, &r, FALSE);
}

std::unique_ptr<GraphicsContext> Win32Window::beginDrawing() {
    if (!hwnd_) return nullptr;
    HDC dc = GetDC(hwnd_);
    if (!dc) return nullptr;
    return std::make_unique<Win32Graphics>(*this, dc, hwnd_);
}

// The host's message loop delivers this window's messages.
void Win32Window::processEvents() {}

bool Win32Window::dispatchOnePaint() {
    MSG message;
    if (!PeekMessageA(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE)) return false;
    DispatchMessageA(&message);
    return true;
}

int Win32Window::mouseButtons() {
    if (pressButtons_) return pressButtons_;
    int bits = 0;
    if (GetAsyncKeyState(VK_LBUTTON) < 0) bits |= kLeftButton;
    if (GetAsyncKeyState(VK_MBUTTON) < 0) bits |= kMiddleButton;
    if (GetAsyncKeyState(VK_RBUTTON) < 0) bits |= kRightButton;
    if (GetAsyncKeyState(VK_SHIFT) < 0) bits |= kShiftKey;
    if (GetAsyncKeyState(VK_CONTROL) < 0) bits |= kControlKey;
    if (GetAsyncKeyState(VK_MENU) < 0) bits |= kAltKey;
    return bits;
}

Point Win32Window::mousePosition() {
    pressButtons_ = 0;
    POINT cursor{};
    RECT origin{};
    if (!hwnd_ || !GetCursorPos(&cursor) || !GetWindowRect(hwnd_, &origin)) return Point{};
    return Point{cursor.x - origin.left, cursor.y - origin.top};
}

void Win32Window::setCursor(CursorKind kind) {
    cursor_ = kind;
    SetCursor(LoadCursorA(nullptr, cursorName(kind)));
}

int Win32Window::runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) {
    if (!hwnd_) return -1;
    pressButtons_ = 0;
    std::vector<int> ids;
    HMENU menu = buildMenu(items, ids);
    if (!menu) return -1;
    POINT screen{where.h, where.v};
    ClientToScreen(hwnd_, &screen);
    UINT flags = TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD | TPM_NONOTIFY |
                 (rightButton ? TPM_RIGHTBUTTON : TPM_LEFTBUTTON);
    const int command = static_cast<int>(TrackPopupMenu(menu, flags, screen.x, screen.y, 0, hwnd_, nullptr));
    DestroyMenu(menu);  // submenus go with it
    if (command <= 0 || command > static_cast<int>(ids.size())) return -1;
    return ids[static_cast<std::size_t>(command - 1)];
}

std::unique_ptr<TextEditSession> Win32Window::beginTextEdit(const TextEditRequest& request,
                                                            TextEditListener& listener) {
    if (!hwnd_) return nullptr;
    pressButtons_ = 0;
    if (edit_) edit_->detach();
    auto edit = std::make_unique<Win32TextEdit>(*this, request, listener);
    if (!edit->isOpen()) return nullptr;
    edit_ = edit.get();
    return edit;
}

void Win32Window::editClosed(Win32TextEdit* edit) {
    if (edit_ == edit) edit_ = nullptr;
}

HFONT Win32Window::font(const FontSpec& wanted) {
    auto key = std::make_tuple(std::string(wanted.face ? wanted.face : "Arial"), wanted.size, wanted.weight, wanted.italic,
                               wanted.underline);
    auto found = fonts_.find(key);
    if (found != fonts_.end()) return found->second;
    const bool symbol = std::get<0>(key) == "Symbol";
    HFONT font = CreateFontA(-wanted.size, 0, 0, 0, wanted.weight, wanted.italic, wanted.underline, FALSE, 0,
                             OUT_STRING_PRECIS, CLIP_STROKE_PRECIS, DEFAULT_QUALITY,
                             symbol ? (DEFAULT_PITCH | FF_DECORATIVE) : (VARIABLE_PITCH | FF_SWISS),
                             std::get<0>(key).c_str());
    if (font) fonts_.emplace(key, font);
    return font;
}

void Win32Window::filesDropped(const std::vector<std::string>& items, int kind, POINT screen) {
    if (!hwnd_) return;
    ScreenToClient(hwnd_, &screen);
    handler_.windowFilesDropped(items, kind, Point{screen.x, screen.y});
}

}  // namespace tolvane
