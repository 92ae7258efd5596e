#include "platform/linux/LinuxWindow.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/cursorfont.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/cairo/CairoGraphics.h"
#include "platform/linux/LinuxPopupMenu.h"
#include "platform/linux/LinuxTextEdit.h"
#include "platform/linux/XErrorTrap.h"

namespace tolvane {
namespace {

constexpr long kEventMask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                            KeyPressMask | KeyReleaseMask | StructureNotifyMask | FocusChangeMask;

Rect unite(const Rect& a, const Rect& b) {
    return Rect{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                std::max(a.bottom, b.bottom)};
}

// The drawing of one pass shows on the window when the pass ends.
class PresentingGraphics : public CairoGraphics {
public:
    PresentingGraphics(LinuxWindow& window, cairo_surface_t* target, const Rect& clip)
        : CairoGraphics(target, clip), window_(window) {}
    ~PresentingGraphics() override {
        const Rect& touched = damage();
        if (touched.right > touched.left && touched.bottom > touched.top) {
            cairo_surface_flush(cairo_get_target(cairo()));
            window_.present(touched);
        }
    }

private:
    LinuxWindow& window_;
};

int buttonBits(unsigned int state) {
    int bits = 0;
    if (state & Button1Mask) bits |= kLeftButton;
    if (state & Button2Mask) bits |= kMiddleButton;
    if (state & Button3Mask) bits |= kRightButton;
    if (state & ShiftMask) bits |= kShiftKey;
    if (state & ControlMask) bits |= kControlKey;
    if (state & Mod1Mask) bits |= kAltKey;
    return bits;
}

}  // namespace

KeyCode translateKey(XKeyEvent& event) {
    char text[8] = {};
    KeySym symbol = 0;
    int length = XLookupString(&event, text, sizeof text - 1, &symbol, nullptr);
    KeyCode key;
    switch (symbol) {
        case XK_BackSpace: key.virt = kVirtualKeyBack; break;
        case XK_Tab: key.virt = kVirtualKeyTab; break;
        case XK_Return: key.virt = kVirtualKeyReturn; break;
        case XK_Escape: key.virt = kVirtualKeyEscape; break;
        case XK_End: key.virt = kVirtualKeyEnd; break;
        case XK_Home: key.virt = kVirtualKeyHome; break;
        case XK_Left: key.virt = kVirtualKeyLeft; break;
        case XK_Up: key.virt = kVirtualKeyUp; break;
        case XK_Right: key.virt = kVirtualKeyRight; break;
        case XK_Down: key.virt = kVirtualKeyDown; break;
        case XK_KP_Enter: key.virt = kVirtualKeyEnter; break;
        case XK_Delete: key.virt = kVirtualKeyDelete; break;
        default:
            if (length == 1) key.character = static_cast<unsigned char>(text[0]);
            break;
    }
    if (event.state & ShiftMask) key.modifier |= kKeyModifierShift;
    if (event.state & Mod1Mask) key.modifier |= kKeyModifierAlternate;
    if (event.state & ControlMask) key.modifier |= kKeyModifierCommand;
    return key;
}

LinuxWindow::LinuxWindow(void* parent, int width, int height, WindowEventHandler& handler)
    : handler_(handler), width_(width), height_(height) {
    display_ = XOpenDisplay(nullptr);
    if (!display_) return;
    parent_ = parent ? static_cast<Window>(reinterpret_cast<std::uintptr_t>(parent)) : DefaultRootWindow(display_);

    XSetWindowAttributes attributes{};
    attributes.event_mask = kEventMask;
    attributes.background_pixmap = None;
    attributes.border_pixel = 0;
    {
        XErrorTrap trap(display_);
        window_ = XCreateWindow(display_, parent_, 0, 0, static_cast<unsigned>(width), static_cast<unsigned>(height), 0,
                                CopyFromParent, InputOutput, CopyFromParent, CWEventMask | CWBackPixmap | CWBorderPixel,
                                &attributes);
        if (trap.failed()) window_ = 0;
    }
    if (!window_) {
        XCloseDisplay(display_);
        display_ = nullptr;
        return;
    }
    XWindowAttributes created{};
    XGetWindowAttributes(display_, window_, &created);
    visual_ = created.visual;
    depth_ = created.depth;

    // Other applications may drop files and text here.
    xdndAware_ = XInternAtom(display_, "XdndAware", False);
    xdndEnter_ = XInternAtom(display_, "XdndEnter", False);
    xdndPosition_ = XInternAtom(display_, "XdndPosition", False);
    xdndStatus_ = XInternAtom(display_, "XdndStatus", False);
    xdndDrop_ = XInternAtom(display_, "XdndDrop", False);
    xdndFinished_ = XInternAtom(display_, "XdndFinished", False);
    xdndLeave_ = XInternAtom(display_, "XdndLeave", False);
    xdndSelection_ = XInternAtom(display_, "XdndSelection", False);
    xdndActionCopy_ = XInternAtom(display_, "XdndActionCopy", False);
    xdndActionMove_ = XInternAtom(display_, "XdndActionMove", False);
    uriList_ = XInternAtom(display_, "text/uri-list", False);
    textPlain_ = XInternAtom(display_, "text/plain", False);
    utf8String_ = XInternAtom(display_, "UTF8_STRING", False);
    dropProperty_ = XInternAtom(display_, "TOLVANE_DROP", False);
    long version = 5;
    XChangeProperty(display_, window_, xdndAware_, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<unsigned char*>(&version), 1);

    backBuffer_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    windowSurface_ = cairo_xlib_surface_create(display_, window_, visual_, width, height);
    XMapWindow(display_, window_);
    XFlush(display_);
}

LinuxWindow::~LinuxWindow() {
    if (alive_) *alive_ = false;
    if (!display_) return;
    if (edit_) edit_->detach();
    if (windowSurface_) {
        cairo_device_t* device = cairo_surface_get_device(windowSurface_);
        cairo_surface_finish(windowSurface_);
        cairo_surface_destroy(windowSurface_);
        if (device) cairo_device_finish(device);
    }
    if (backBuffer_) cairo_surface_destroy(backBuffer_);
    {
        // The host may have destroyed its window (and ours with it) already.
        XErrorTrap trap(display_);
        if (!destroyed_) {
            XUndefineCursor(display_, window_);
            XDestroyWindow(display_, window_);
        }
        for (Cursor& cursor : cursors_)
            if (cursor) XFreeCursor(display_, cursor);
    }
    XCloseDisplay(display_);
}

void* LinuxWindow::nativeHandle() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window_)); }

void LinuxWindow::invalidate(const Rect& area) {
    exposeArea_ = exposePending_ ? unite(exposeArea_, area) : area;
    exposePending_ = true;
}

std::unique_ptr<GraphicsContext> LinuxWindow::beginDrawing() {
    return std::make_unique<PresentingGraphics>(*this, backBuffer_, Rect{0, 0, width_, height_});
}

void LinuxWindow::present(const Rect& area) {
    if (destroyed_ || !windowSurface_) return;
    cairo_t* cr = cairo_create(windowSurface_);
    cairo_rectangle(cr, area.left, area.top, area.width(), area.height());
    cairo_clip(cr);
    cairo_set_source_surface(cr, backBuffer_, 0, 0);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
    cairo_destroy(cr);
    cairo_surface_flush(windowSurface_);
    XFlush(display_);
}

void LinuxWindow::paint(const Rect& area) {
    Rect clipped{std::max(0, area.left), std::max(0, area.top), std::min(width_, area.right),
                 std::min(height_, area.bottom)};
    if (clipped.right <= clipped.left || clipped.bottom <= clipped.top || destroyed_) return;
    {
        CairoGraphics context(backBuffer_, clipped);
        handler_.windowPaint(context, clipped);
    }
    cairo_surface_flush(backBuffer_);
    present(clipped);
}

void LinuxWindow::flushExposes() {
    if (!exposePending_) return;
    exposePending_ = false;
    paint(exposeArea_);
}

void LinuxWindow::processEvents() {
    if (!display_) return;
    if (dispatchDepth_ > 0) {
        pumpNested();
        return;
    }
    bool alive = true;
    alive_ = &alive;
    ++dispatchDepth_;
    while (!destroyed_ && XPending(display_)) {
        XEvent event;
        XNextEvent(display_, &event);
        handleEvent(event, false);
        if (!alive) return;  // closed from inside a handler: nothing of this window is left
    }
    flushExposes();
    --dispatchDepth_;
    alive_ = nullptr;
}

bool LinuxWindow::dispatchOnePaint() {
    if (!display_) return false;
    return pumpNested();
}

bool LinuxWindow::pumpNested() {
    ++dispatchDepth_;
    while (!destroyed_ && XPending(display_)) {
        XEvent event;
        XNextEvent(display_, &event);
        handleEvent(event, true);
    }
    bool painted = exposePending_;
    flushExposes();
    --dispatchDepth_;
    return painted;
}

void LinuxWindow::handleForeignEvent(XEvent& event) {
    ++dispatchDepth_;
    handleEvent(event, true);
    flushExposes();
    --dispatchDepth_;
}

void LinuxWindow::handleEvent(XEvent& event, bool nested) {
    if (event.type == MappingNotify) {
        // The user changed the keyboard layout: keys are looked up in the new one from now on.
        XRefreshKeyboardMapping(&event.xmapping);
        return;
    }
    if (edit_ && event.xany.window == edit_->window()) {
        edit_->handleEvent(event);  // may end the edit and destroy it
        return;
    }
    if (event.xany.window != window_) return;
    switch (event.type) {
        case Expose: {
            Rect area{event.xexpose.x, event.xexpose.y, event.xexpose.x + event.xexpose.width,
                      event.xexpose.y + event.xexpose.height};
            invalidate(area);
            if (event.xexpose.count == 0 && !nested) flushExposes();
            break;
        }
        case ButtonPress: {
            if (nested) break;
            Point where{event.xbutton.x, event.xbutton.y};
            unsigned int button = event.xbutton.button;
            if (button == Button4 || button == Button5) {
                handler_.windowWheel(where, button == Button4 ? 1.0f : -1.0f);
            } else if (button >= Button1 && button <= Button3) {
                const int pressed = button == Button1 ? kLeftButton : (button == Button2 ? kMiddleButton : kRightButton);
                pressSeed_ = pressed | buttonBits(event.xbutton.state);
                bool* alive = alive_;
                handler_.windowMouseDown(where);
                if (alive && !*alive) return;
                pressSeed_ = 0;
            }
            break;
        }
        case KeyPress:
            if (!nested) handler_.windowKeyDown(translateKey(event.xkey));
            break;
        case KeyRelease:
            if (!nested) handler_.windowKeyUp(translateKey(event.xkey));
            break;
        case DestroyNotify:
            if (event.xdestroywindow.window == window_) {
                destroyed_ = true;
                handler_.windowDestroyed();
            }
            break;
        case ClientMessage:
            if (!nested) handleDndMessage(event.xclient);
            break;
        case SelectionNotify:
            if (!nested) handleDndSelection(event.xselection);
            break;
        default:
            break;
    }
}

// The live pointer, so that a drag loop sees releases and modifier changes as they happen. Until the
// pointer position is first read, a press being handled also reports its button, in case it was already
// let go: a drag that was over before the host's idle came round still reaches the point of release.
int LinuxWindow::mouseButtons() {
    if (!display_ || destroyed_) return 0;
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, x = 0, y = 0;
    unsigned int mask = 0;
    int bits = 0;
    if (XQueryPointer(display_, window_, &root, &child, &rootX, &rootY, &x, &y, &mask)) bits = buttonBits(mask);
    return bits | pressSeed_;
}

Point LinuxWindow::mousePosition() {
    pressSeed_ = 0;
    if (!display_ || destroyed_) return Point{};
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, x = 0, y = 0;
    unsigned int mask = 0;
    XQueryPointer(display_, window_, &root, &child, &rootX, &rootY, &x, &y, &mask);
    return Point{x, y};
}

void LinuxWindow::setCursor(CursorKind kind) {
    if (!display_ || destroyed_) return;
    int index = static_cast<int>(kind);
    if (index <= 0 || index >= 7) {
        XUndefineCursor(display_, window_);
    } else {
        static const unsigned int shapes[7] = {0, XC_watch, XC_sb_h_double_arrow, XC_sb_v_double_arrow, XC_fleur,
                                               XC_bottom_left_corner, XC_bottom_right_corner};
        if (!cursors_[index]) cursors_[index] = XCreateFontCursor(display_, shapes[index]);
        XDefineCursor(display_, window_, cursors_[index]);
    }
    XFlush(display_);
}

int LinuxWindow::runPopupMenu(const std::vector<MenuItem>& items, Point where, bool rightButton) {
    if (!display_ || destroyed_ || items.empty()) return -1;
    LinuxPopupMenu menu(*this);
    return menu.run(items, where, rightButton);
}

std::unique_ptr<TextEditSession> LinuxWindow::beginTextEdit(const TextEditRequest& request,
                                                            TextEditListener& listener) {
    if (!display_ || destroyed_ || edit_) return nullptr;
    auto edit = std::make_unique<LinuxTextEdit>(*this, request, listener);
    if (!edit->isOpen()) return nullptr;
    edit_ = edit.get();
    return edit;
}

void LinuxWindow::editClosed(LinuxTextEdit* edit) {
    if (edit_ == edit) edit_ = nullptr;
}

// ---- drops (XDND): accept text/uri-list and plain text, report them with the drop point

// XdndStatus (whether a drop would be taken) and XdndFinished (whether it was) to the drag's source.
void LinuxWindow::replyToDndSource(Atom type, long accept, Atom action) {
    XEvent out{};
    out.xclient.type = ClientMessage;
    out.xclient.display = display_;
    out.xclient.window = dndSource_;
    out.xclient.message_type = type;
    out.xclient.format = 32;
    out.xclient.data.l[0] = static_cast<long>(window_);
    out.xclient.data.l[1] = accept;
    out.xclient.data.l[2] = type == xdndFinished_ ? static_cast<long>(action) : 0;
    out.xclient.data.l[4] = type == xdndStatus_ ? static_cast<long>(action) : 0;
    XErrorTrap trap(display_);
    XSendEvent(display_, dndSource_, False, NoEventMask, &out);
    XFlush(display_);
}

void LinuxWindow::handleDndMessage(const XClientMessageEvent& message) {
    auto reply = [this](Atom type, long accept, Atom action) { replyToDndSource(type, accept, action); };
    if (message.message_type == xdndEnter_) {
        dndSource_ = static_cast<Window>(message.data.l[0]);
        dndType_ = 0;
        auto consider = [&](Atom type) {
            if (type == uriList_) dndType_ = uriList_;
            else if (!dndType_ && (type == textPlain_ || type == utf8String_ || type == XA_STRING)) dndType_ = type;
        };
        if (message.data.l[1] & 1) {
            // More than three types: read the source's list.
            Atom actual = 0;
            int format = 0;
            unsigned long count = 0, remaining = 0;
            unsigned char* data = nullptr;
            Atom typeList = XInternAtom(display_, "XdndTypeList", False);
            XErrorTrap trap(display_);
            if (XGetWindowProperty(display_, dndSource_, typeList, 0, 64, False, XA_ATOM, &actual, &format, &count,
                                   &remaining, &data) == Success && data) {
                for (unsigned long i = 0; i < count; ++i) consider(reinterpret_cast<Atom*>(data)[i]);
                XFree(data);
            }
        } else {
            for (int i = 2; i < 5; ++i) consider(static_cast<Atom>(message.data.l[i]));
        }
    } else if (message.message_type == xdndPosition_) {
        dndSource_ = static_cast<Window>(message.data.l[0]);
        int rootX = static_cast<int>((message.data.l[2] >> 16) & 0xFFFF);
        int rootY = static_cast<int>(message.data.l[2] & 0xFFFF);
        Window child = 0;
        int x = 0, y = 0;
        XTranslateCoordinates(display_, DefaultRootWindow(display_), window_, rootX, rootY, &x, &y, &child);
        dndPoint_ = Point{x, y};
        Window root = 0, pointerChild = 0;
        int rx = 0, ry = 0, wx = 0, wy = 0;
        unsigned int mask = 0;
        XQueryPointer(display_, window_, &root, &pointerChild, &rx, &ry, &wx, &wy, &mask);
        // Copy with Control held, move otherwise.
        Atom action = (mask & ControlMask) ? xdndActionCopy_ : xdndActionMove_;
        reply(xdndStatus_, dndType_ ? 1 : 0, dndType_ ? action : None);
    } else if (message.message_type == xdndDrop_) {
        dndSource_ = static_cast<Window>(message.data.l[0]);
        if (!dndType_) {
            reply(xdndFinished_, 0, None);
            return;
        }
        XConvertSelection(display_, xdndSelection_, dndType_, dropProperty_, window_,
                          static_cast<Time>(message.data.l[2]));
        XFlush(display_);
    } else if (message.message_type == xdndLeave_) {
        dndType_ = 0;
    }
}

void LinuxWindow::handleDndSelection(const XSelectionEvent& selection) {
    if (selection.property != dropProperty_) return;
    Atom actual = 0;
    int format = 0;
    unsigned long count = 0, remaining = 0;
    unsigned char* data = nullptr;
    std::string payload;
    if (XGetWindowProperty(display_, window_, dropProperty_, 0, 1 << 20, True, AnyPropertyType, &actual, &format,
                           &count, &remaining, &data) == Success && data) {
        payload.assign(reinterpret_cast<char*>(data), count);
        XFree(data);
    }
    std::vector<std::string> items;
    int kind = 1;
    if (dndType_ == uriList_) {
        kind = 0;
        // One URI per line; local files are "file://" URIs with %-escapes.
        std::size_t start = 0;
        while (start < payload.size()) {
            std::size_t end = payload.find('\n', start);
            if (end == std::string::npos) end = payload.size();
            std::string line = payload.substr(start, end - start);
            start = end + 1;
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.empty() || line[0] == '#') continue;
            if (line.compare(0, 7, "file://") == 0) {
                std::size_t slash = line.find('/', 7);
                line = slash == std::string::npos ? std::string() : line.substr(slash);
            }
            std::string decoded;
            auto hex = [](char c) {
                if (c >= '0' && c <= '9') return c - '0';
                if (c >= 'a' && c <= 'f') return c - 'a' + 10;
                if (c >= 'A' && c <= 'F') return c - 'A' + 10;
                return -1;
            };
            for (std::size_t i = 0; i < line.size(); ++i) {
                if (line[i] == '%' && i + 2 < line.size() && hex(line[i + 1]) >= 0 && hex(line[i + 2]) >= 0) {
                    decoded += static_cast<char>(hex(line[i + 1]) * 16 + hex(line[i + 2]));
                    i += 2;
                } else {
                    decoded += line[i];
                }
            }
            if (!decoded.empty()) items.push_back(decoded.substr(0, 1023));
        }
    } else {
        items.push_back(payload);
    }
    if (!items.empty()) handler_.windowFilesDropped(items, kind, dndPoint_);
    replyToDndSource(xdndFinished_, items.empty() ? 0 : 1, items.empty() ? None : xdndActionCopy_);
}

}  // namespace tolvane
