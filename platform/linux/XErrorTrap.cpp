#include "platform/linux/XErrorTrap.h"

namespace tolvane {
namespace {

// Errors only arrive while a trap is installed, on the GUI thread.
bool errorSeen = false;

int recordError(Display*, XErrorEvent*) {
    errorSeen = true;
    return 0;
}

}  // namespace

XErrorTrap::XErrorTrap(Display* display) : display_(display) {
    XSync(display_, False);
    errorSeen = false;
    previous_ = XSetErrorHandler(recordError);
}

XErrorTrap::~XErrorTrap() {
    XSync(display_, False);
    XSetErrorHandler(previous_);
}

bool XErrorTrap::failed() {
    XSync(display_, False);
    return errorSeen;
}

}  // namespace tolvane
