// The module's entry point: hosts call VSTPluginMain (older ones main) with their callback and get the
// plug-in's effect record. Nothing is created for a host that does not answer the version query.
// The first plug-in made installs the native window platform that every editor of this module uses.
#include <new>

#include "host/SynthPlugin.h"

#if defined(__linux__)
#include "platform/linux/ZenityFileDialogs.h"
#endif
#if defined(TOLVANE_LINUX_EDITOR)
#include "gui/Platform.h"
#include "platform/linux/LinuxPlatform.h"
#endif

#if defined(_WIN32)
#include "gui/Platform.h"
#include "platform/win32/Win32FileDialogs.h"
#include "platform/win32/Win32Platform.h"
#endif

#if defined(_WIN32)
// The module definition file names the exports.
#define TOLVANE_EXPORT extern "C"
#else
#define TOLVANE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

std::unique_ptr<tolvane::FileDialogs> platformFileDialogs() {
#if defined(__linux__)
    return std::unique_ptr<tolvane::FileDialogs>(new tolvane::ZenityFileDialogs);
#elif defined(_WIN32)
    return std::unique_ptr<tolvane::FileDialogs>(new tolvane::Win32FileDialogs);
#else
    return nullptr;
#endif
}

void installWindowPlatform() {
#if defined(TOLVANE_LINUX_EDITOR)
    static const bool installed = (tolvane::installPlatform(&tolvane::linuxPlatform()), true);
    (void)installed;
#elif defined(_WIN32)
    static const bool installed = (tolvane::installPlatform(&tolvane::win32Platform()), true);
    (void)installed;
#endif
}

vst2::AEffect* createEffect(vst2::HostCallback host) {
    if (!host) return nullptr;
    installWindowPlatform();
    if (host(nullptr, vst2::audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
    try {
        auto* plugin = new tolvane::SynthPlugin(host, platformFileDialogs());
        return plugin->effect();
    } catch (...) {
        // Out of memory while building: the host gets no record.
        return nullptr;
    }
}

}  // namespace

TOLVANE_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) { return createEffect(host); }

// Older hosts look for "main". The C++ name main is reserved for programs, so the symbol is given its
// name through the assembler.
#if defined(_WIN32)
TOLVANE_EXPORT vst2::AEffect* VSTPluginMainLegacy(vst2::HostCallback host) { return createEffect(host); }
#else
TOLVANE_EXPORT vst2::AEffect* legacyMain(vst2::HostCallback host) __asm__("main");
TOLVANE_EXPORT vst2::AEffect* legacyMain(vst2::HostCallback host) { return createEffect(host); }
#endif
