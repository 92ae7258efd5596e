#include "platform/linux/LinuxTextEdit.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <cmath>

#include "platform/cairo/CairoGraphics.h"
#include "platform/linux/LinuxWindow.h"
#include "platform/linux/XErrorTrap.h"

namespace tolvane {
namespace {

constexpr std::size_t kMaxLength = 255;
constexpr int kTextInset = 2;

}  // namespace

LinuxTextEdit::LinuxTextEdit(LinuxWindow& owner, const TextEditRequest& request, TextEditListener& listener)
    : owner_(&owner), listener_(listener), request_(request), text_(request.text), original_(request.text) {
    if (text_.size() > kMaxLength) text_.resize(kMaxLength);
    caret_ = text_.size();
    Display* display = owner.display();
    const Rect& area = request.area;
    if (area.width() <= 0 || area.height() <= 0) return;

    XSetWindowAttributes attributes{};
    attributes.event_mask = ExposureMask | KeyPressMask | ButtonPressMask | FocusChangeMask;
    attributes.background_pixmap = None;
    window_ = XCreateWindow(display, owner.window(), area.left, area.top, static_cast<unsigned>(area.width()),
                            static_cast<unsigned>(area.height()), 0, CopyFromParent, InputOutput, CopyFromParent,
                            CWEventMask | CWBackPixmap, &attributes);
    surface_ = cairo_xlib_surface_create(display, window_, owner.visual(), area.width(), area.height());
    XMapRaised(display, window_);

    // Take the keyboard from whoever has it (normally the host's top-level window) for the time of the edit.
    XGetInputFocus(display, &previousFocus_, &previousRevert_);
    {
        XErrorTrap trap(display);
        XSetInputFocus(display, window_, RevertToParent, CurrentTime);
    }
    draw();
}

LinuxTextEdit::~LinuxTextEdit() { close(); }

void LinuxTextEdit::detach() {
    close();
    owner_ = nullptr;
}

void LinuxTextEdit::close() {
    if (!window_ || !owner_) {
        window_ = 0;
        return;
    }
    Display* display = owner_->display();
    if (surface_) {
        cairo_surface_finish(surface_);
        cairo_surface_destroy(surface_);
        surface_ = nullptr;
    }
    {
        // Give the keyboard back; the previous owner may be gone, which is not an error here.
        XErrorTrap trap(display);
        Window focus = 0;
        int revert = 0;
        XGetInputFocus(display, &focus, &revert);
        if (focus == window_ && previousFocus_ != None && previousFocus_ != PointerRoot)
            XSetInputFocus(display, previousFocus_, previousRevert_, CurrentTime);
        XDestroyWindow(display, window_);
    }
    window_ = 0;
    owner_->editClosed(this);
    XFlush(display);
}

void LinuxTextEdit::end() {
    if (ended_) return;
    ended_ = true;
    listener_.textEditEnded();  // usually destroys this object: nothing may follow
}

std::size_t LinuxTextEdit::caretFromX(int x) {
    if (!surface_) return text_.size();
    cairo_t* cr = cairo_create(surface_);
    std::size_t best = text_.size();
    double left = kTextInset;
    if (request_.align != kTextAlignLeft) {
        double width = textWidth(cr, request_.font, text_.c_str());
        double room = request_.area.width();
        left = request_.align == kTextAlignCenter ? (room - width) / 2.0 : room - width - kTextInset;
    }
    for (std::size_t i = 0; i <= text_.size(); ++i) {
        double at = left + textWidth(cr, request_.font, text_.substr(0, i).c_str());
        if (at >= x) {
            best = i;
            break;
        }
    }
    cairo_destroy(cr);
    return best;
}

void LinuxTextEdit::draw() {
    if (!surface_) return;
    const int width = request_.area.width();
    const int height = request_.area.height();
    cairo_t* cr = cairo_create(surface_);
    setColor(cr, request_.backColor);
    cairo_paint(cr);

    selectFont(cr, request_.font);
    cairo_font_extents_t font;
    cairo_font_extents(cr, &font);
    double textW = textWidth(cr, request_.font, text_.c_str());
    double left = kTextInset;
    if (request_.align == kTextAlignCenter) left = (width - textW) / 2.0;
    if (request_.align == kTextAlignRight) left = width - textW - kTextInset;
    // Keep the caret visible when the text is wider than the field.
    double caretX = left + textWidth(cr, request_.font, text_.substr(0, caret_).c_str());
    if (caretX > width - kTextInset) {
        left -= caretX - (width - kTextInset);
        caretX = width - kTextInset;
    }
    left = std::floor(left);
    const double top = std::floor((height - (font.ascent + font.descent)) / 2.0);
    const double baseline = std::floor(top + font.ascent + 0.5);

    Color ink = request_.fontColor;
    if (allSelected_ && !text_.empty()) {
        // The selection shows inverted.
        setColor(cr, request_.fontColor);
        cairo_rectangle(cr, left, top, std::ceil(textW), std::ceil(font.ascent + font.descent));
        cairo_fill(cr);
        ink = request_.backColor;
    }
    setColor(cr, ink);
    selectFont(cr, request_.font);
    cairo_move_to(cr, left, baseline);
    cairo_show_text(cr, text_.c_str());
    if (!allSelected_ || text_.empty()) {
        setColor(cr, request_.fontColor);
        cairo_rectangle(cr, std::floor(caretX), top, 1, std::ceil(font.ascent + font.descent));
        cairo_fill(cr);
    }
    cairo_destroy(cr);
    cairo_surface_flush(surface_);
    if (owner_) XFlush(owner_->display());
}

void LinuxTextEdit::handleEvent(XEvent& event) {
    if (ended_) return;
    switch (event.type) {
        case Expose:
            if (event.xexpose.count == 0) draw();
            break;
        case ButtonPress:
            if (event.xbutton.button == Button1) {
                allSelected_ = false;
                caret_ = caretFromX(event.xbutton.x);
                draw();
            }
            break;
        case FocusOut:
            // Grabs (menus, window managers) move the focus only for a moment.
            if (event.xfocus.mode == NotifyNormal && event.xfocus.detail != NotifyInferior &&
                event.xfocus.detail != NotifyPointer)
                end();
            break;
        case KeyPress: {
            char typed[8] = {};
            KeySym symbol = 0;
            int length = XLookupString(&event.xkey, typed, sizeof typed - 1, &symbol, nullptr);
            switch (symbol) {
                case XK_Return:
                case XK_KP_Enter:
                    returnPressed_ = true;
                    end();
                    return;
                case XK_Escape:
                    text_ = original_;
                    end();
                    return;
                case XK_BackSpace:
                    if (allSelected_) {
                        text_.clear();
                        caret_ = 0;
                    } else if (caret_ > 0) {
                        text_.erase(--caret_, 1);
                    }
                    allSelected_ = false;
                    break;
                case XK_Delete:
                case XK_KP_Delete:
                    if (allSelected_) {
                        text_.clear();
                        caret_ = 0;
                    } else if (caret_ < text_.size()) {
                        text_.erase(caret_, 1);
                    }
                    allSelected_ = false;
                    break;
                case XK_Left:
                case XK_KP_Left:
                    if (allSelected_) caret_ = 0;
                    else if (caret_ > 0) --caret_;
                    allSelected_ = false;
                    break;
                case XK_Right:
                case XK_KP_Right:
                    if (allSelected_) caret_ = text_.size();
                    else if (caret_ < text_.size()) ++caret_;
                    allSelected_ = false;
                    break;
                case XK_Home:
                case XK_KP_Home:
                    caret_ = 0;
                    allSelected_ = false;
                    break;
                case XK_End:
                case XK_KP_End:
                    caret_ = text_.size();
                    allSelected_ = false;
                    break;
                default:
                    if (length == 1 && static_cast<unsigned char>(typed[0]) >= 32 && typed[0] != 127 &&
                        !(event.xkey.state & ControlMask)) {
                        if (allSelected_) {
                            text_.clear();
                            caret_ = 0;
                            allSelected_ = false;
                        }
                        if (text_.size() < kMaxLength) text_.insert(caret_++, 1, typed[0]);
                    } else if ((event.xkey.state & ControlMask) && (symbol == XK_a || symbol == XK_A)) {
                        allSelected_ = true;
                    }
                    break;
            }
            draw();
            break;
        }
        default:
            break;
    }
}

}  // namespace tolvane
