// A second X connection that plays the user with XTest: pointer moves, clicks and keys, as real input
// events that reach whichever window the server gives them to. Include after the toolkit's headers: Xlib's
// macros clash with names in them.
#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <chrono>
#include <thread>

#include "gui/Geometry.h"

namespace tolvane::testing {

class XTestUser {
public:
    XTestUser() : display_(XOpenDisplay(nullptr)) {}
    ~XTestUser() {
        if (display_) XCloseDisplay(display_);
    }
    XTestUser(const XTestUser&) = delete;
    XTestUser& operator=(const XTestUser&) = delete;

    Display* display() const { return display_; }
    void moveTo(Point p) {
        XTestFakeMotionEvent(display_, -1, p.h, p.v, 0);
        XSync(display_, False);
    }
    void button(bool down) {
        XTestFakeButtonEvent(display_, 1, down ? True : False, 0);
        XSync(display_, False);
    }
    void click(Point p) {
        moveTo(p);
        button(true);
        button(false);
    }
    void key(KeySym symbol, bool shift = false) {
        const ::KeyCode code = keyFor(symbol);
        const ::KeyCode shiftCode = XKeysymToKeycode(display_, XK_Shift_L);
        if (shift) XTestFakeKeyEvent(display_, shiftCode, True, 0);
        XTestFakeKeyEvent(display_, code, True, 0);
        XTestFakeKeyEvent(display_, code, False, 0);
        if (shift) XTestFakeKeyEvent(display_, shiftCode, False, 0);
        XSync(display_, False);
    }
    // The key that types symbol. A symbol the server's keyboard lacks (é on Xvfb's) is put on a key that
    // has none; clients hear of the new layout through MappingNotify.
    ::KeyCode keyFor(KeySym symbol) {
        if (::KeyCode code = XKeysymToKeycode(display_, symbol)) return code;
        int first = 0, last = 0, width = 0;
        XDisplayKeycodes(display_, &first, &last);
        KeySym* map = XGetKeyboardMapping(display_, static_cast<::KeyCode>(first), last - first + 1, &width);
        int spare = 0;
        for (int code = last; code >= first && !spare; --code) {
            bool empty = true;
            for (int k = 0; k < width; ++k) empty = empty && map[(code - first) * width + k] == NoSymbol;
            if (empty) spare = code;
        }
        XFree(map);
        KeySym symbols[2] = {symbol, symbol};
        XChangeKeyboardMapping(display_, spare, 2, symbols, 1);
        XSync(display_, False);
        return static_cast<::KeyCode>(spare);
    }
    static void pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

private:
    Display* display_;
};

}  // namespace tolvane::testing
