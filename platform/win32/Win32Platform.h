// The toolkit's platform on Windows: a child window of the host's HWND drawn with GDI, bitmaps from the
// module's BITMAP resources, TrackPopupMenu menus, the native EDIT control and OLE file drops. The
// module's entry installs it with installPlatform(&win32Platform()).
#pragma once

#include "gui/Platform.h"

namespace tolvane {

class Win32Platform : public Platform {
public:
    std::unique_ptr<NativeWindow> createWindow(void* parent, int width, int height,
                                               WindowEventHandler& handler) override;
    std::unique_ptr<PlatformImage> createImage(const BmpImage& pixels) override;
    // LoadBitmapA from this module's resources.
    std::unique_ptr<PlatformImage> loadImageResource(int resourceId) override;
    std::uint32_t tickCount() override;
    void sleep(int milliseconds) override;
    int doubleClickTime() override;
};

Platform& win32Platform();

// The instance handle of the module this code is linked into (the plug-in DLL, or a test program).
void* moduleInstance();
// The editor window most recently opened and still alive (the owner of the file dialogs), or null.
void* activeEditorWindow();

}  // namespace tolvane
