// The X server of the suite and a user at it: the test's own display when DISPLAY is set, else an Xvfb
// started for the run (tests skip when there is neither); the user is a second connection that moves the
// pointer, presses the first button and types keys with XTest, usually from a helper thread while the
// test's thread runs the editor's idle as a host would.
// Include it after every other header: Xlib's macros (None, Bool) clash with names in ours.
#pragma once

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "gui/Geometry.h"
#include "support/XServerForTests.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace tolvane::testing {

// Empty when the suite has an X server, else why not.
inline std::string& xServerSkipReason() {
    static std::string reason;
    return reason;
}

class XServerEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        std::string& reason = xServerSkipReason();
        if (!server_.start(reason)) {
            if (reason.empty()) reason = "no X server";
            return;
        }
        // Held for the whole run: a server that resets when its last client leaves would otherwise refuse
        // connections for a moment between tests.
        keeper_ = XOpenDisplay(nullptr);
    }
    void TearDown() override {
        if (keeper_) XCloseDisplay(keeper_);
        keeper_ = nullptr;
        server_.stop();
    }

private:
    XServerForTests server_;
    Display* keeper_ = nullptr;
};

inline ::testing::Environment* const gXServerEnvironment =
    ::testing::AddGlobalTestEnvironment(new XServerEnvironment);

// A mapped top-level window that stands for the host's window the editor opens in.
inline Window openHostWindow(Display* display, int x, int y, int width, int height) {
    XSetWindowAttributes attributes{};
    attributes.background_pixel = BlackPixel(display, DefaultScreen(display));
    Window window = XCreateWindow(display, DefaultRootWindow(display), x, y, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, CopyFromParent,
                                  CWBackPixel, &attributes);
    XStoreName(display, window, "host");
    XMapWindow(display, window);
    XSync(display, False);
    return window;
}

inline std::vector<Window> childWindows(Display* display, Window window) {
    Window root = 0, parent = 0, *list = nullptr;
    unsigned int count = 0;
    XQueryTree(display, window, &root, &parent, &list, &count);
    std::vector<Window> result(list, list + count);
    if (list) XFree(list);
    return result;
}

// A point of a window in root coordinates, where XTest moves the pointer.
inline Point onScreen(Display* display, Window window, Point p) {
    int x = 0, y = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), p.h, p.v, &x, &y, &child);
    return Point{x, y};
}

class XTestUser {
public:
    XTestUser() : display_(XOpenDisplay(nullptr)) {}
    ~XTestUser() {
        if (display_) XCloseDisplay(display_);
    }
    XTestUser(const XTestUser&) = delete;
    XTestUser& operator=(const XTestUser&) = delete;

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
    // With shift, Shift is held around the key.
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
    Display* display() const { return display_; }
    static void pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

private:
    Display* display_;
};

}  // namespace tolvane::testing
