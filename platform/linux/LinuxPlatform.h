// The toolkit's platform on Linux: X11 child windows drawn with Cairo. The module's entry installs it
// with installPlatform(&linuxPlatform()).
#pragma once

#include "gui/Platform.h"

namespace tolvane {

class LinuxPlatform : public Platform {
public:
    // Opens a display connection of the window's own (closed again when the window is destroyed) and
    // creates the window as a child of the X window id in parent (the root window when parent is null).
    std::unique_ptr<NativeWindow> createWindow(void* parent, int width, int height,
                                               WindowEventHandler& handler) override;
    std::unique_ptr<PlatformImage> createImage(const BmpImage& pixels) override;
    std::uint32_t tickCount() override;
    void sleep(int milliseconds) override;
    int doubleClickTime() override { return 400; }
};

Platform& linuxPlatform();

}  // namespace tolvane
