#include "platform/linux/LinuxTextEdit.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cmath>

#include "platform/cairo/CairoGraphics.h"
#include "platform/cairo/Windows1252.h"
#include "platform/linux/LinuxWindow.h"
#include "platform/linux/XErrorTrap.h"

namespace tolvane {
namespace {

constexpr long kFieldEvents = ExposureMask | KeyPressMask | ButtonPressMask | FocusChangeMask;
constexpr int kTextInset = 2;

// Without an input context a key's character comes from its keysym: Latin-1 keysyms carry their code
// point, Unicode keysyms carry it in the low 24 bits, and the euro sign has a keysym of its own.
char32_t keysymCodePoint(KeySym symbol) {
    if ((symbol >= 0x20 && symbol <= 0x7E) || (symbol >= 0xA0 && symbol <= 0xFF)) return static_cast<char32_t>(symbol);
    if ((symbol & 0xFF000000UL) == 0x01000000UL) return static_cast<char32_t>(symbol & 0x00FFFFFFUL);
    if (symbol == XK_EuroSign) return 0x20AC;
    return 0;
}

}  // namespace

LinuxTextEdit::LinuxTextEdit(LinuxWindow& owner, const TextEditRequest& request, TextEditListener& listener)
    : owner_(&owner), listener_(listener), request_(request), text_(request.text), original_(request.text) {
    if (text_.size() > maxLength()) text_.resize(maxLength());
    caret_ = text_.size();
    Display* display = owner.display();
    const Rect& area = request.area;
    if (area.width() <= 0 || area.height() <= 0) return;

    XSetWindowAttributes attributes{};
    attributes.event_mask = kFieldEvents;
    attributes.background_pixmap = None;
    window_ = XCreateWindow(display, owner.window(), area.left, area.top, static_cast<unsigned>(area.width()),
                            static_cast<unsigned>(area.height()), 0, CopyFromParent, InputOutput, CopyFromParent,
                            CWEventMask | CWBackPixmap, &attributes);
    surface_ = cairo_xlib_surface_create(display, window_, owner.visual(), area.width(), area.height());
    openInputContext(display);
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

// Keys are read as UTF-8 through an input context of the host's input method where one can be opened
// (dead keys and compose sequences then work as elsewhere on the desktop); the field keeps what
// Windows-1252 can hold.
void LinuxTextEdit::openInputContext(Display* display) {
    inputMethod_ = XOpenIM(display, nullptr, nullptr, nullptr);
    if (!inputMethod_) return;
    inputContext_ = XCreateIC(inputMethod_, XNInputStyle, XIMPreeditNothing | XIMStatusNothing, XNClientWindow,
                              window_, XNFocusWindow, window_, nullptr);
    if (!inputContext_) {
        XCloseIM(inputMethod_);
        inputMethod_ = nullptr;
        return;
    }
    long filterMask = 0;
    XGetICValues(inputContext_, XNFilterEvents, &filterMask, nullptr);
    XSelectInput(display, window_, kFieldEvents | filterMask);
    XSetICFocus(inputContext_);
}

void LinuxTextEdit::closeInputContext() {
    if (inputContext_) {
        XUnsetICFocus(inputContext_);
        XDestroyIC(inputContext_);
    }
    if (inputMethod_) XCloseIM(inputMethod_);
    inputContext_ = nullptr;
    inputMethod_ = nullptr;
}

std::string LinuxTextEdit::typedText(XKeyEvent& key, KeySym& symbol) {
    symbol = 0;
    if (inputContext_) {
        char buffer[64];
        Status status = 0;
        int length = Xutf8LookupString(inputContext_, &key, buffer, sizeof buffer, &symbol, &status);
        if (status != XLookupKeySym && status != XLookupBoth) symbol = 0;
        if ((status == XLookupChars || status == XLookupBoth) && length > 0)
            return utf8ToWindows1252(std::string(buffer, static_cast<std::size_t>(length)));
        return std::string();
    }
    char buffer[8];
    XLookupString(&key, buffer, sizeof buffer, &symbol, nullptr);
    const unsigned char byte = windows1252FromCodePoint(keysymCodePoint(symbol));
    return byte ? std::string(1, static_cast<char>(byte)) : std::string();
}

void LinuxTextEdit::close() {
    closeInputContext();
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
        // Give the keyboard back to where it was, PointerRoot and None included: left alone, the focus would
        // fall to the editor's window when the field goes, and keys meant for the host would end there. A
        // previous owner that is gone meanwhile leaves the focus following the pointer.
        Window focus = 0;
        int revert = 0;
        XGetInputFocus(display, &focus, &revert);
        if (focus == window_) {
            bool restored = false;
            {
                XErrorTrap trap(display);
                XSetInputFocus(display, previousFocus_, previousRevert_, CurrentTime);
                restored = !trap.failed();
            }
            if (!restored) XSetInputFocus(display, PointerRoot, RevertToPointerRoot, CurrentTime);
        }
        XErrorTrap trap(display);
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
    showText(cr, text_.c_str());
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
    // The input method sees every event first and may keep it (the dead key of a composed character).
    if (inputContext_ && XFilterEvent(&event, window_)) return;
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
            KeySym symbol = 0;
            std::string typed = typedText(event.xkey, symbol);
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
                    typed.erase(std::remove_if(typed.begin(), typed.end(),
                                               [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }),
                                typed.end());
                    if (!typed.empty() && !(event.xkey.state & ControlMask)) {
                        if (allSelected_) {
                            text_.clear();
                            caret_ = 0;
                            allSelected_ = false;
                        }
                        typed.resize(std::min(typed.size(), maxLength() - std::min(maxLength(), text_.size())));
                        text_.insert(caret_, typed);
                        caret_ += typed.size();
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
