#include "platform/linux/LinuxPlatform.h"

#include <ctime>

#include "platform/cairo/CairoGraphics.h"
#include "platform/linux/LinuxWindow.h"

namespace tolvane {

std::unique_ptr<NativeWindow> LinuxPlatform::createWindow(void* parent, int width, int height,
                                                          WindowEventHandler& handler) {
    if (width <= 0 || height <= 0) return nullptr;
    auto window = std::make_unique<LinuxWindow>(parent, width, height, handler);
    if (!window->isValid()) return nullptr;
    return window;
}

std::unique_ptr<PlatformImage> LinuxPlatform::createImage(const BmpImage& pixels) {
    if (pixels.width <= 0 || pixels.height <= 0) return nullptr;
    return std::make_unique<CairoImage>(pixels);
}

std::uint32_t LinuxPlatform::tickCount() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                                      static_cast<std::uint64_t>(now.tv_nsec) / 1000000u);
}

void LinuxPlatform::sleep(int milliseconds) {
    if (milliseconds <= 0) return;
    timespec pause{milliseconds / 1000, static_cast<long>(milliseconds % 1000) * 1000000L};
    nanosleep(&pause, nullptr);
}

Platform& linuxPlatform() {
    static LinuxPlatform platform;
    return platform;
}

}  // namespace tolvane
