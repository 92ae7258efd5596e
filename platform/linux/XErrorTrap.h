// Catches the X errors of a few requests that may fail for reasons outside our control (the host destroyed
// its window first, focus cannot be set on an unmapped window) instead of letting them end the process.
#pragma once

#include <X11/Xlib.h>

namespace tolvane {

class XErrorTrap {
public:
    explicit XErrorTrap(Display* display);
    ~XErrorTrap();
    XErrorTrap(const XErrorTrap&) = delete;
    XErrorTrap& operator=(const XErrorTrap&) = delete;

    // Waits for the server and tells whether any request since construction failed.
    bool failed();

private:
    Display* display_;
    XErrorHandler previous_;
};

}  // namespace tolvane
