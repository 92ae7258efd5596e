#include "platform/win32/Win32Platform.h"

#include <windows.h>

#include <cstring>

#include "gui/BmpImage.h"
#include "platform/win32/Win32Image.h"
#include "platform/win32/Win32Window.h"

namespace tolvane {

void* moduleInstance() {
    static HMODULE module = [] {
        HMODULE found = nullptr;
        GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCSTR>(&moduleInstance), &found);
        return found;
    }();
    return module;
}

std::unique_ptr<NativeWindow> Win32Platform::createWindow(void* parent, int width, int height,
                                                          WindowEventHandler& handler) {
    if (width <= 0 || height <= 0) return nullptr;
    auto window = std::make_unique<Win32Window>(static_cast<HWND>(parent), width, height, handler);
    if (!window->isValid()) return nullptr;
    return window;
}

// A 32-bit top-down DIB section: its rows are the image's 0x00RRGGBB words as they are.
std::unique_ptr<PlatformImage> Win32Platform::createImage(const BmpImage& pixels) {
    if (pixels.width <= 0 || pixels.height <= 0) return nullptr;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = pixels.width;
    info.bmiHeader.biHeight = -pixels.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!bitmap || !bits) return nullptr;
    std::memcpy(bits, pixels.pixels.data(), pixels.pixels.size() * sizeof pixels.pixels[0]);
    GdiFlush();
    return std::make_unique<Win32Image>(bitmap);
}

std::unique_ptr<PlatformImage> Win32Platform::loadImageResource(int resourceId) {
    HBITMAP bitmap = LoadBitmapA(static_cast<HINSTANCE>(moduleInstance()),
                                 MAKEINTRESOURCEA(static_cast<WORD>(resourceId)));
    if (!bitmap) return nullptr;
    return std::make_unique<Win32Image>(bitmap);
}

std::uint32_t Win32Platform::tickCount() { return GetTickCount(); }

void Win32Platform::sleep(int milliseconds) {
    if (milliseconds > 0) Sleep(static_cast<DWORD>(milliseconds));
}

int Win32Platform::doubleClickTime() { return static_cast<int>(GetDoubleClickTime()); }

Platform& win32Platform() {
    static Win32Platform platform;
    return platform;
}

}  // namespace tolvane
