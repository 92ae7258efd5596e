// tolvane2-winhost: a small Windows host for the plug-in's DLL, run under wine by the Windows tests.
//
//   render DLL OUT.wav        renders the demo phrase (44.1 kHz, blocks of 512, 120 bpm, 32-bit float)
//   compare A.wav B.wav LIMIT prints the largest sample difference; fails above LIMIT
//   compare-images A.bmp B.bmp  counts differing pixels, inside and outside the boxes given after it
//   session DLL               opens the editor in a host window at the screen's top-left corner and
//                             takes commands from standard input, one a line (see runCommand)
//   reload DLL                loads the module, opens and closes the editor, unloads, and does it again
//
// The session prints what the plug-in asks of the host (begin-edit, automation, end-edit) as it happens,
// so that a script driving the mouse and keyboard from outside (xdotool) can check it.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "gui/BmpImage.h"
#include "host/Vst2.h"
#include "tools/render/DemoPhrase.h"
#include "tools/render/VstHost.h"
#include "tools/render/WavWriter.h"

namespace {

using namespace tolvane;

constexpr double kSampleRate = 44100.0;
constexpr int kBlockSize = 512;
constexpr UINT kCommandMessage = WM_APP + 1;
constexpr UINT_PTR kIdleTimer = 1;

int fail(const std::string& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "tolvane2-winhost: %s\n", message.c_str());
    return 1;
}

void say(const char* format, ...) __attribute__((format(printf, 1, 2)));
void say(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::vfprintf(stdout, format, args);
    va_end(args);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

// ---- audio

int render(const std::string& dll, const std::string& out) {
    std::string error;
    VstHost host;
    host.setTempo(120.0);
    if (!host.loadModule(dll, error)) return fail(error);
    if (!host.start(kSampleRate, kBlockSize, error)) return fail(error);
    WavWriter writer;
    if (!writer.open(out, static_cast<int>(kSampleRate), WavFormat::Float32, error)) return fail(error);
    const auto frames = static_cast<std::uint64_t>(std::llround((demoPhraseSeconds() + 2.0) * kSampleRate));
    std::string writeError;
    if (!host.render(demoPhrase(), frames,
                     [&](const float* l, const float* r, int n) {
                         return writer.write(l, r, static_cast<std::size_t>(n), writeError);
                     },
                     error))
        return fail(error + " " + writeError);
    if (!writer.finish(error)) return fail(error);
    say("rendered %llu frames of the demo phrase to %s", static_cast<unsigned long long>(frames), out.c_str());
    return 0;
}

// The samples of a 32-bit float WAV file (the "fmt " and "data" chunks, anything else skipped).
bool readFloatWav(const std::string& path, std::vector<float>& samples, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    auto word = [&](std::size_t at) { return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | bytes[at + 3] << 24; };
    if (bytes.size() < 12 || std::memcmp(bytes.data(), "RIFF", 4) != 0 || std::memcmp(&bytes[8], "WAVE", 4) != 0) {
        error = path + ": not a WAV file";
        return false;
    }
    bool isFloat = false;
    for (std::size_t at = 12; at + 8 <= bytes.size();) {
        const std::size_t size = static_cast<std::size_t>(word(at + 4));
        if (std::memcmp(&bytes[at], "fmt ", 4) == 0 && at + 24 <= bytes.size())
            isFloat = (bytes[at + 8] | bytes[at + 9] << 8) == 3 && (bytes[at + 22] | bytes[at + 23] << 8) == 32;
        if (std::memcmp(&bytes[at], "data", 4) == 0) {
            if (!isFloat) break;
            const std::size_t count = std::min(size, bytes.size() - at - 8) / 4;
            samples.resize(count);
            std::memcpy(samples.data(), &bytes[at + 8], count * 4);
            return true;
        }
        at += 8 + size + (size & 1);
    }
    error = path + ": no 32-bit float samples";
    return false;
}

int compareAudio(const std::string& a, const std::string& b, double limit) {
    std::vector<float> first, second;
    std::string error;
    if (!readFloatWav(a, first, error) || !readFloatWav(b, second, error)) return fail(error);
    if (first.size() != second.size())
        return fail("the renderings differ in length: " + std::to_string(first.size()) + " and " +
                    std::to_string(second.size()) + " samples");
    double largest = 0.0, peak = 0.0;
    std::size_t differing = 0, at = 0;
    for (std::size_t i = 0; i < first.size(); ++i) {
        const double d = std::fabs(static_cast<double>(first[i]) - second[i]);
        peak = std::max(peak, std::fabs(static_cast<double>(first[i])));
        differing += d != 0.0;
        if (d > largest) {
            largest = d;
            at = i;
        }
    }
    say("audio: %lu samples, peak %.6f, %lu differ, largest difference %.3g (sample %lu)",
        static_cast<unsigned long>(first.size()), peak, static_cast<unsigned long>(differing), largest,
        static_cast<unsigned long>(at));
    if (!(peak > 0.01)) return fail("the rendering is silent");
    return largest <= limit ? 0 : fail("the largest difference is above " + std::to_string(limit));
}

bool readBmp(const std::string& path, BmpImage& image) {
    std::ifstream in(path, std::ios::binary);
    std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return decodeBmp(bytes.data(), bytes.size(), image);
}

// Pixels that differ, counted inside the given boxes (where text is drawn) and everywhere else.
int compareImages(const std::string& a, const std::string& b, const std::vector<RECT>& textBoxes) {
    BmpImage first, second;
    if (!readBmp(a, first) || !readBmp(b, second)) return fail("cannot read " + a + " or " + b);
    if (first.width != second.width || first.height != second.height)
        return fail("the pictures differ in size");
    long inText = 0, outside = 0;
    RECT bounds{first.width, first.height, 0, 0};
    for (int y = 0; y < first.height; ++y)
        for (int x = 0; x < first.width; ++x) {
            if (first.at(x, y) == second.at(x, y)) continue;
            const bool text = std::any_of(textBoxes.begin(), textBoxes.end(), [&](const RECT& r) {
                return x >= r.left && x < r.right && y >= r.top && y < r.bottom;
            });
            if (text) {
                ++inText;
                continue;
            }
            ++outside;
            bounds = RECT{std::min<LONG>(bounds.left, x), std::min<LONG>(bounds.top, y),
                          std::max<LONG>(bounds.right, x + 1), std::max<LONG>(bounds.bottom, y + 1)};
        }
    say("pictures %d x %d: %ld pixels differ inside text boxes, %ld outside", first.width, first.height, inText,
        outside);
    if (outside) say("outside differences within (%ld,%ld)-(%ld,%ld)", bounds.left, bounds.top, bounds.right, bounds.bottom);
    return outside == 0 ? 0 : 1;
}

// ---- the plug-in's own GDI and USER objects, counted at its imports
//
// GetGuiResources counts a process's objects on Windows; wine answers 0. So the host also replaces the
// DLL's imports of the calls that make and free GDI objects, windows and menus with counting ones:
// what the plug-in made and has not freed is what it holds.

struct Tally {
    std::set<HGDIOBJ> gdi;
    long dcs = 0;  // GetDC minus ReleaseDC
    std::set<HWND> windows;
    std::set<HMENU> menus;
};
Tally tally;

template <typename Handle>
Handle made(std::set<Handle>& live, Handle handle) {
    if (handle) live.insert(handle);
    return handle;
}

HDC WINAPI countCreateCompatibleDC(HDC dc) { return static_cast<HDC>(made<HGDIOBJ>(tally.gdi, CreateCompatibleDC(dc))); }
HBITMAP WINAPI countCreateCompatibleBitmap(HDC dc, int w, int h) {
    return static_cast<HBITMAP>(made<HGDIOBJ>(tally.gdi, CreateCompatibleBitmap(dc, w, h)));
}
HBITMAP WINAPI countCreateBitmap(int w, int h, UINT planes, UINT bits, const void* data) {
    return static_cast<HBITMAP>(made<HGDIOBJ>(tally.gdi, CreateBitmap(w, h, planes, bits, data)));
}
HBITMAP WINAPI countCreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                     DWORD offset) {
    return static_cast<HBITMAP>(made<HGDIOBJ>(tally.gdi, CreateDIBSection(dc, info, usage, bits, section, offset)));
}
HBRUSH WINAPI countCreateSolidBrush(COLORREF c) { return static_cast<HBRUSH>(made<HGDIOBJ>(tally.gdi, CreateSolidBrush(c))); }
HPEN WINAPI countCreatePen(int style, int width, COLORREF c) {
    return static_cast<HPEN>(made<HGDIOBJ>(tally.gdi, CreatePen(style, width, c)));
}
HFONT WINAPI countCreateFontA(int h, int w, int e, int o, int weight, DWORD i, DWORD u, DWORD s, DWORD cs, DWORD op,
                              DWORD cp, DWORD q, DWORD pf, LPCSTR face) {
    return static_cast<HFONT>(made<HGDIOBJ>(tally.gdi, CreateFontA(h, w, e, o, weight, i, u, s, cs, op, cp, q, pf, face)));
}
HBITMAP WINAPI countLoadBitmapA(HINSTANCE instance, LPCSTR name) {
    return static_cast<HBITMAP>(made<HGDIOBJ>(tally.gdi, LoadBitmapA(instance, name)));
}
BOOL WINAPI countDeleteObject(HGDIOBJ object) {
    const BOOL done = DeleteObject(object);
    if (done) tally.gdi.erase(object);
    return done;
}
BOOL WINAPI countDeleteDC(HDC dc) {
    const BOOL done = DeleteDC(dc);
    if (done) tally.gdi.erase(dc);
    return done;
}
HDC WINAPI countGetDC(HWND window) {
    HDC dc = GetDC(window);
    if (dc) ++tally.dcs;
    return dc;
}
int WINAPI countReleaseDC(HWND window, HDC dc) {
    const int done = ReleaseDC(window, dc);
    if (done) --tally.dcs;
    return done;
}
HWND WINAPI countCreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int w,
                                 int h, HWND parent, HMENU menu, HINSTANCE instance, void* parameter) {
    return made(tally.windows,
                CreateWindowExA(exStyle, className, name, style, x, y, w, h, parent, menu, instance, parameter));
}
BOOL CALLBACK forgetWindow(HWND window, LPARAM) {
    tally.windows.erase(window);
    return TRUE;
}
BOOL WINAPI countDestroyWindow(HWND window) {
    EnumChildWindows(window, &forgetWindow, 0);  // they go with it
    const BOOL done = DestroyWindow(window);
    if (done) tally.windows.erase(window);
    return done;
}
HMENU WINAPI countCreatePopupMenu() { return made(tally.menus, CreatePopupMenu()); }
void forgetSubmenus(HMENU menu) {
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i)
        if (HMENU sub = GetSubMenu(menu, i)) {
            forgetSubmenus(sub);
            tally.menus.erase(sub);
        }
}
BOOL WINAPI countDestroyMenu(HMENU menu) {
    forgetSubmenus(menu);
    const BOOL done = DestroyMenu(menu);
    if (done) tally.menus.erase(menu);
    return done;
}

// Points the module's imports of the named functions at the counting ones.
void countObjectsOf(HMODULE module) {
    const struct {
        const char* name;
        void* replacement;
    } hooks[] = {
        {"CreateCompatibleDC", reinterpret_cast<void*>(&countCreateCompatibleDC)},
        {"CreateCompatibleBitmap", reinterpret_cast<void*>(&countCreateCompatibleBitmap)},
        {"CreateBitmap", reinterpret_cast<void*>(&countCreateBitmap)},
        {"CreateDIBSection", reinterpret_cast<void*>(&countCreateDIBSection)},
        {"CreateSolidBrush", reinterpret_cast<void*>(&countCreateSolidBrush)},
        {"CreatePen", reinterpret_cast<void*>(&countCreatePen)},
        {"CreateFontA", reinterpret_cast<void*>(&countCreateFontA)},
        {"LoadBitmapA", reinterpret_cast<void*>(&countLoadBitmapA)},
        {"DeleteObject", reinterpret_cast<void*>(&countDeleteObject)},
        {"DeleteDC", reinterpret_cast<void*>(&countDeleteDC)},
        {"GetDC", reinterpret_cast<void*>(&countGetDC)},
        {"ReleaseDC", reinterpret_cast<void*>(&countReleaseDC)},
        {"CreateWindowExA", reinterpret_cast<void*>(&countCreateWindowExA)},
        {"DestroyWindow", reinterpret_cast<void*>(&countDestroyWindow)},
        {"CreatePopupMenu", reinterpret_cast<void*>(&countCreatePopupMenu)},
        {"DestroyMenu", reinterpret_cast<void*>(&countDestroyMenu)},
    };
    auto* base = reinterpret_cast<unsigned char*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (!directory.VirtualAddress) return;
    for (auto* import = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
         import->Name; ++import) {
        auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + import->OriginalFirstThunk);
        auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + import->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* byName = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            for (const auto& hook : hooks) {
                if (std::strcmp(reinterpret_cast<const char*>(byName->Name), hook.name) != 0) continue;
                DWORD old = 0;
                VirtualProtect(&slots->u1.Function, sizeof slots->u1.Function, PAGE_READWRITE, &old);
                slots->u1.Function = reinterpret_cast<ULONG_PTR>(hook.replacement);
                VirtualProtect(&slots->u1.Function, sizeof slots->u1.Function, old, &old);
            }
        }
    }
}

long pluginGdiObjects() { return static_cast<long>(tally.gdi.size()) + tally.dcs; }
long pluginUserObjects() { return static_cast<long>(tally.windows.size() + tally.menus.size()); }

// ---- the editor in a host window

struct HostEvents {
    static intptr_t VST_CALL callback(vst2::AEffect*, vst2::int32 opcode, vst2::int32 index, vst2::intptr value,
                                      void*, float opt) {
        switch (opcode) {
            case vst2::audioMasterVersion: return 2400;
            case vst2::audioMasterAutomate: say("automate %d %.6f", index, opt); return 0;
            case vst2::audioMasterBeginEdit: say("beginEdit %d", index); return 0;
            case vst2::audioMasterEndEdit: say("endEdit %d", index); return 0;
            case vst2::audioMasterIdle: ++idles; return 0;
            default: (void)value; return 0;
        }
    }
    static inline std::atomic<long> idles{0};
};

class EditorSession {
public:
    bool load(const std::string& dll) {
        dll_ = dll;
        module_ = LoadLibraryA(dll.c_str());
        if (!module_) return false;
        countObjectsOf(module_);
        auto entry = reinterpret_cast<vst2::EntryProc>(reinterpret_cast<void*>(GetProcAddress(module_, "VSTPluginMain")));
        effect_ = entry ? entry(&HostEvents::callback) : nullptr;
        if (!effect_) return false;
        dispatch(vst2::effOpen);
        dispatch(vst2::effSetSampleRate, 0, 0, nullptr, static_cast<float>(kSampleRate));
        dispatch(vst2::effSetBlockSize, 0, kBlockSize);
        dispatch(vst2::effMainsChanged, 0, 1);
        return true;
    }

    void unload() {
        if (effect_) {
            closeEditor();
            dispatch(vst2::effMainsChanged, 0, 0);
            dispatch(vst2::effClose);
            effect_ = nullptr;
        }
        if (module_) FreeLibrary(module_);
        module_ = nullptr;
    }

    bool createHostWindow() {
        WNDCLASSA windowClass{};
        windowClass.lpfnWndProc = &EditorSession::hostProc;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
        windowClass.lpszClassName = "Tolvane2WinHost";
        RegisterClassA(&windowClass);
        // A borderless window at the screen's origin: editor pixel (x, y) is screen pixel (x, y).
        host_ = CreateWindowExA(0, "Tolvane2WinHost", "Tolvane2 host", WS_POPUP | WS_VISIBLE, 0, 0, 760, 340, nullptr,
                                nullptr, windowClass.hInstance, this);
        if (!host_) return false;
        SetWindowLongPtrA(host_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetTimer(host_, kIdleTimer, 20, nullptr);
        return true;
    }

    bool openEditor() {
        vst2::ERect* rect = nullptr;
        dispatch(vst2::effEditGetRect, 0, 0, &rect);
        if (!rect) return false;
        if (dispatch(vst2::effEditOpen, 0, 0, host_) == 0) return false;
        editor_ = GetWindow(host_, GW_CHILD);
        UpdateWindow(host_);
        return editor_ != nullptr;
    }

    void closeEditor() {
        if (editor_) dispatch(vst2::effEditClose);
        editor_ = nullptr;
    }

    // Lets messages, paints and the editor's idle run for a while.
    void pump(int milliseconds) {
        const DWORD end = GetTickCount() + static_cast<DWORD>(milliseconds);
        do {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
                if (message.message == WM_QUIT) {  // for the outer loop
                    PostQuitMessage(static_cast<int>(message.wParam));
                    return;
                }
                TranslateMessage(&message);
                DispatchMessageA(&message);
            }
            if (editor_) dispatch(vst2::effEditIdle);
            Sleep(10);
        } while (static_cast<LONG>(end - GetTickCount()) > 0);
    }

    // The editor window's pixels as a 24-bit BMP file.
    bool capture(const std::string& path) {
        if (!editor_) return false;
        RECT r{};
        GetClientRect(editor_, &r);
        const int w = r.right, h = r.bottom;
        HDC window = GetDC(editor_);
        HDC memory = CreateCompatibleDC(window);
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = w;
        info.bmiHeader.biHeight = -h;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        HBITMAP picture = CreateDIBSection(window, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        HGDIOBJ old = SelectObject(memory, picture);
        BitBlt(memory, 0, 0, w, h, window, 0, 0, SRCCOPY);
        GdiFlush();
        BmpImage image;
        image.width = w;
        image.height = h;
        image.pixels.resize(static_cast<std::size_t>(w) * h);
        const auto* words = static_cast<const std::uint32_t*>(bits);
        for (std::size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = words[i] & 0xFFFFFFu;
        SelectObject(memory, old);
        DeleteObject(picture);
        DeleteDC(memory);
        ReleaseDC(editor_, window);
        const std::vector<unsigned char> file = encodeBmp24(image);
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
        return static_cast<bool>(out);
    }

    std::string programName() {
        char name[64] = {};
        dispatch(vst2::effGetProgramName, 0, 0, name);
        return name;
    }

    // One command of the script; answers false for "quit".
    bool runCommand(const std::string& line) {
        char argument[512] = {};
        int count = 0;
        if (line == "quit") return false;
        if (line == "ping") {
            pump(100);
            say("pong");
        } else if (std::sscanf(line.c_str(), "capture %511s", argument) == 1) {
            pump(300);
            say(capture(argument) ? "captured %s" : "cannot capture %s", argument);
        } else if (std::sscanf(line.c_str(), "parameter %d", &count) == 1) {
            processBlock();
            say("parameter %d %.6f", count, effect_->getParameter(effect_, count));
        } else if (float value = 0; std::sscanf(line.c_str(), "set %d %f", &count, &value) == 2) {
            effect_->setParameter(effect_, count, value);
            processBlock();
            say("set %d %.6f", count, effect_->getParameter(effect_, count));
        } else if (std::sscanf(line.c_str(), "program %d", &count) == 1) {
            dispatch(vst2::effSetProgram, 0, count);
            processBlock();
            say("program %ld %s", static_cast<long>(dispatch(vst2::effGetProgram)), programName().c_str());
        } else if (line == "name") {
            say("name %s", programName().c_str());
        } else if (line == "windows") {
            say("menu %s, edit field %s", popupMenuOpen() ? "open" : "closed", editFieldOpen() ? "open" : "closed");
        } else if (std::sscanf(line.c_str(), "cycles %d", &count) == 1) {
            cycles(count);
        } else {
            say("unknown command: %s", line.c_str());
        }
        return true;
    }

    static bool popupMenuOpen() {
        HWND menu = FindWindowA("#32768", nullptr);
        return menu && IsWindowVisible(menu);
    }
    bool editFieldOpen() const { return editor_ && FindWindowExA(editor_, nullptr, "Edit", nullptr); }

    // Opens and closes the editor `count` times (the first round settles caches), counting the process's
    // GDI and USER objects before and after.
    void cycles(int count) {
        closeEditor();
        pump(100);
        openEditor();
        pump(200);
        closeEditor();
        pump(100);
        const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        const DWORD userBefore = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
        const long ownGdiBefore = pluginGdiObjects(), ownUserBefore = pluginUserObjects();
        long ownGdiOpen = 0, ownUserOpen = 0;
        int opened = 0;
        for (int i = 0; i < count; ++i) {
            opened += openEditor();
            pump(60);
            ownGdiOpen = std::max(ownGdiOpen, pluginGdiObjects());
            ownUserOpen = std::max(ownUserOpen, pluginUserObjects());
            closeEditor();
            pump(20);
        }
        const DWORD gdiAfter = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        const DWORD userAfter = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
        say("cycles %d opened %d: GDI objects %lu before, %lu after; USER objects %lu before, %lu after "
            "(as the system counts them)", count, opened, gdiBefore, gdiAfter, userBefore, userAfter);
        say("cycles %d opened %d: the plug-in's GDI objects %ld before, %ld after (%ld while open); "
            "USER objects %ld before, %ld after (%ld while open)", count, opened, ownGdiBefore, pluginGdiObjects(),
            ownGdiOpen, ownUserBefore, pluginUserObjects(), ownUserOpen);
        openEditor();
        pump(200);
    }

    // A block of audio, as a host's audio thread would ask for it between editor calls: parameter changes
    // take effect there.
    void processBlock() {
        static float left[256], right[256];
        float* outputs[] = {left, right};
        if (effect_ && effect_->processReplacing) effect_->processReplacing(effect_, nullptr, outputs, 256);
    }

    HWND hostWindow() const { return host_; }
    HWND editorWindow() const { return editor_; }
    vst2::AEffect* effect() const { return effect_; }

private:
    static LRESULT CALLBACK hostProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* session = reinterpret_cast<EditorSession*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
        if (session) {
            if (message == WM_TIMER && wParam == kIdleTimer) {
                if (session->editor_) session->dispatch(vst2::effEditIdle);
                session->processBlock();
                return 0;
            }
            if (message == kCommandMessage) {
                auto* line = reinterpret_cast<std::string*>(lParam);
                if (!session->runCommand(*line)) PostQuitMessage(0);
                delete line;
                return 0;
            }
        }
        return DefWindowProcA(hwnd, message, wParam, lParam);
    }

    vst2::intptr dispatch(vst2::int32 opcode, vst2::int32 index = 0, vst2::intptr value = 0, void* ptr = nullptr,
                          float opt = 0.0f) {
        return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
    }

    std::string dll_;
    HMODULE module_ = nullptr;
    vst2::AEffect* effect_ = nullptr;
    HWND host_ = nullptr;
    HWND editor_ = nullptr;
};

int session(const std::string& dll) {
    EditorSession host;
    if (!host.load(dll)) return fail("cannot load " + dll);
    if (!host.createHostWindow()) return fail("cannot create the host window");
    if (!host.openEditor()) return fail("the editor did not open");
    host.pump(300);
    RECT r{};
    GetWindowRect(host.editorWindow(), &r);
    say("ready %ld %ld %ld %ld", r.left, r.top, r.right - r.left, r.bottom - r.top);

    // Commands arrive on standard input while this thread runs the message loop.
    HWND window = host.hostWindow();
    std::thread reader([window] {
        char line[1024];
        while (std::fgets(line, sizeof line, stdin)) {
            std::string text(line);
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
            if (!text.empty()) PostMessageA(window, kCommandMessage, 0, reinterpret_cast<LPARAM>(new std::string(text)));
        }
        PostMessageA(window, kCommandMessage, 0, reinterpret_cast<LPARAM>(new std::string("quit")));
    });
    reader.detach();

    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    say("closing");
    host.unload();
    say("closed");
    return 0;
}

// Load, open, close, unload, twice: the second time the window class must be there again and the editor
// must paint its background.
int reload(const std::string& dll) {
    for (int round = 1; round <= 2; ++round) {
        EditorSession host;
        if (!host.load(dll)) return fail("cannot load " + dll + " (round " + std::to_string(round) + ")");
        if (!host.createHostWindow() && round == 1) return fail("cannot create the host window");
        if (!host.openEditor()) return fail("the editor did not open in round " + std::to_string(round));
        host.pump(300);
        char className[64] = {};
        GetClassNameA(host.editorWindow(), className, sizeof className);
        HDC dc = GetDC(host.editorWindow());
        const COLORREF corner = GetPixel(dc, 5, 5);
        ReleaseDC(host.editorWindow(), dc);
        say("round %d: editor window of class %s, pixel (5,5) %06lx", round, className,
            static_cast<unsigned long>(corner));
        DestroyWindow(host.hostWindow());
        host.unload();
        WNDCLASSA left{};
        say("round %d: after unloading the class is %s", round,
            GetClassInfoA(nullptr, className, &left) ? "still registered" : "gone");
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    _setmode(_fileno(stdout), _O_BINARY);  // plain "\n" line ends for the scripts that read them
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() == 3 && args[0] == "render") return render(args[1], args[2]);
    if (args.size() == 4 && args[0] == "compare") return compareAudio(args[1], args[2], std::atof(args[3].c_str()));
    if (args.size() >= 3 && args.size() % 4 == 3 && args[0] == "compare-images") {
        std::vector<RECT> boxes;
        for (std::size_t i = 3; i + 3 < args.size(); i += 4)
            boxes.push_back(RECT{std::atoi(args[i].c_str()), std::atoi(args[i + 1].c_str()),
                                 std::atoi(args[i + 2].c_str()), std::atoi(args[i + 3].c_str())});
        return compareImages(args[1], args[2], boxes);
    }
    if (args.size() == 2 && args[0] == "session") return session(args[1]);
    if (args.size() == 2 && args[0] == "reload") return reload(args[1]);
    std::fprintf(stderr,
                 "usage: tolvane2-winhost render DLL OUT.wav | compare A.wav B.wav LIMIT |\n"
                 "       compare-images A.bmp B.bmp [LEFT TOP RIGHT BOTTOM]... | session DLL | reload DLL\n");
    return 2;
}
