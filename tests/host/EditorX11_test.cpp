// The editor of the built module in a real X11 host window: the module is loaded with dlopen and driven
// only through its effect record, the way a Linux host drives it, under Xvfb when no display is set.
// A helper thread plays the user with XTest while the test's own thread calls effEditIdle like a host's
// GUI thread. The window's pixels are compared with the editor drawn offscreen in this process.
#if defined(TOLVANE_X11_TESTS) && defined(TOLVANE_PLUGIN_PATH) && defined(TOLVANE_HAVE_SCREENSHOT)

#include <dirent.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "editor/EditorSkin.h"
#include "gui/BmpImage.h"
#include "gui/EmbeddedResources.h"
#include "host/Vst2.h"
#include "dsp/Mappings.h"
#include "tools/render/EditorScreenshot.h"

// Last: Xlib's macros would clash with names in the headers above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include "support/XTestUser.h"
#if defined(TOLVANE_HAVE_XRES)
#include <X11/extensions/XRes.h>
#endif

namespace tolvane {
namespace {

using Clock = std::chrono::steady_clock;

// ---- the host side: what the plug-in tells its host

struct HostCall {
    int opcode;
    int index;
    float value;
};
std::vector<HostCall> gCalls;

vst2::intptr VST_CALL recordingHost(vst2::AEffect*, vst2::int32 opcode, vst2::int32 index, vst2::intptr, void*,
                                    float opt) {
    switch (opcode) {
        case vst2::audioMasterVersion: return 2400;
        case vst2::audioMasterAutomate:
        case vst2::audioMasterBeginEdit:
        case vst2::audioMasterEndEdit: gCalls.push_back(HostCall{opcode, index, opt}); return 0;
        default: return 0;
    }
}

int openDescriptors() {
    int count = 0;
    if (DIR* dir = opendir("/proc/self/fd")) {
        while (readdir(dir)) ++count;
        closedir(dir);
    }
    return count;
}

// ---- the fixture: the module, one plug-in, and a host window for its editor

class EditorInHostWindow : public ::testing::Test {
protected:
    void SetUp() override {
        if (!testing::xServerSkipReason().empty()) GTEST_SKIP() << testing::xServerSkipReason();
        gCalls.clear();
        module_ = dlopen(TOLVANE_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module_, nullptr) << dlerror();
        auto entry = reinterpret_cast<vst2::EntryProc>(dlsym(module_, "VSTPluginMain"));
        ASSERT_NE(entry, nullptr);
        effect = entry(recordingHost);
        ASSERT_NE(effect, nullptr);
        dispatch(vst2::effOpen);
        ASSERT_TRUE(effect->flags & vst2::effFlagsHasEditor);

        display = XOpenDisplay(nullptr);
        ASSERT_NE(display, nullptr);
        host = testing::openHostWindow(display, 40, 40, 718, 310);
    }
    void TearDown() override {
        if (effect) dispatch(vst2::effClose);
        if (display) {
            XDestroyWindow(display, host);
            XCloseDisplay(display);
        }
        if (module_) dlclose(module_);
    }

    vst2::intptr dispatch(int opcode, int index = 0, vst2::intptr value = 0, void* ptr = nullptr, float opt = 0.0f) {
        return effect->dispatcher(effect, opcode, index, value, ptr, opt);
    }
    vst2::intptr openEditor() {
        return dispatch(vst2::effEditOpen, 0, 0, reinterpret_cast<void*>(static_cast<std::uintptr_t>(host)));
    }
    // Calls effEditIdle every 10 ms, as a host's GUI thread does, until done() or the time is up.
    bool idleUntil(const std::function<bool()>& done, int milliseconds = 3000) {
        auto until = Clock::now() + std::chrono::milliseconds(milliseconds);
        while (Clock::now() < until) {
            dispatch(vst2::effEditIdle);
            if (done()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return done();
    }
    std::vector<Window> children(Window window) { return testing::childWindows(display, window); }
    Window editorWindow() {
        std::vector<Window> list = children(host);
        return list.empty() ? 0 : list.front();
    }
    Point onScreen(Point p) { return testing::onScreen(display, host, p); }
    // The editor window's pixels in an area, as 0x00RRGGBB.
    std::vector<std::uint32_t> grab(const Rect& area) {
        std::vector<std::uint32_t> pixels;
        Window window = editorWindow();
        if (!window) return pixels;
        XImage* image = XGetImage(display, window, area.left, area.top, static_cast<unsigned>(area.width()),
                                  static_cast<unsigned>(area.height()), AllPlanes, ZPixmap);
        if (!image) return pixels;
        for (int y = 0; y < area.height(); ++y)
            for (int x = 0; x < area.width(); ++x)
                pixels.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFFu);
        XDestroyImage(image);
        return pixels;
    }
    // Whether the window shows that block of a skin bitmap.
    bool showsBitmap(int id, const Rect& area, Point source) {
        BmpImage bitmap;
        const EmbeddedResource* resource = findEmbeddedResource(id);
        if (!resource || !decodeBmp(resource->data, resource->size, bitmap)) return false;
        std::vector<std::uint32_t> shown = grab(area);
        if (shown.size() != static_cast<std::size_t>(area.width() * area.height())) return false;
        for (int y = 0; y < area.height(); ++y)
            for (int x = 0; x < area.width(); ++x)
                if (shown[static_cast<std::size_t>(y * area.width() + x)] != bitmap.at(source.h + x, source.v + y))
                    return false;
        return true;
    }
    // What the plug-in told the host about one parameter, in order.
    std::vector<HostCall> callsFor(int index, int opcode = -1) {
        std::vector<HostCall> found;
        for (const HostCall& call : gCalls)
            if (call.index == index && (opcode < 0 || call.opcode == opcode)) found.push_back(call);
        return found;
    }
    bool ended(int index) { return !callsFor(index, vst2::audioMasterEndEdit).empty(); }
    float lastAutomated(int index) {
        std::vector<HostCall> automated = callsFor(index, vst2::audioMasterAutomate);
        return automated.empty() ? -1.0f : automated.back().value;
    }
    // Waits until the page's background shows in the headers (where no control lies).
    bool pageShown(int page) {
        return idleUntil([&] { return showsBitmap(page == 1 ? skin::kPage1Background : skin::kPage2Background,
                                                  Rect{0, 0, 300, 30}, Point{0, 0}); });
    }

    void* module_ = nullptr;
    vst2::AEffect* effect = nullptr;
    Display* display = nullptr;
    Window host = 0;
};

TEST_F(EditorInHostWindow, TheWindowShowsWhatTheOffscreenDrawingShows) {
    EditorPicture expected;
    {
        vst2::AEffect* local = createSynthInProcess(recordingHost);
        ASSERT_NE(local, nullptr);
        std::string error;
        ASSERT_TRUE(drawEditorOffscreen(local, 1, expected, "", error)) << error;
        local->dispatcher(local, vst2::effClose, 0, 0, nullptr, 0.0f);
    }
    ASSERT_EQ(openEditor(), 1);
    ASSERT_NE(editorWindow(), 0u);
    std::vector<std::uint32_t> shown;
    int differing = -1;
    idleUntil([&] {
        shown = grab(Rect{0, 0, 718, 310});
        if (shown.size() != expected.pixels.size()) return false;
        differing = 0;
        for (std::size_t i = 0; i < shown.size(); ++i) differing += shown[i] != expected.pixels[i];
        return differing == 0;
    });
    EXPECT_EQ(differing, 0) << "pixels that differ from the offscreen drawing";
    dispatch(vst2::effEditClose);
    EXPECT_TRUE(children(host).empty());
}

TEST_F(EditorInHostWindow, RealPointerEventsTurnAKnobSwitchPagesAndChooseFromAMenu) {
    ASSERT_EQ(openEditor(), 1);
    ASSERT_TRUE(pageShown(1));
    const float before = effect->getParameter(effect, 2);  // the program's "OSC1 Pulse Width"

    // Drag the knob 40 pixels upwards: +0.2.
    std::atomic<bool> finished{false};
    Point knob = onScreen(Point{65, 54});
    std::thread user([&] {
        testing::XTestUser me;
        me.moveTo(knob);
        testing::XTestUser::pause(50);
        me.button(true);
        testing::XTestUser::pause(150);
        for (int dy = 10; dy <= 40; dy += 10) {
            me.moveTo(Point{knob.h, knob.v - dy});
            testing::XTestUser::pause(40);
        }
        testing::XTestUser::pause(150);
        me.button(false);
        finished = true;
    });
    bool done = idleUntil([&] { return finished.load() && ended(2); }, 5000);
    user.join();
    ASSERT_TRUE(done) << "the drag did not end";
    std::vector<HostCall> knobCalls = callsFor(2);
    ASSERT_GE(knobCalls.size(), 3u);
    EXPECT_EQ(knobCalls.front().opcode, vst2::audioMasterBeginEdit);
    EXPECT_EQ(knobCalls.back().opcode, vst2::audioMasterEndEdit);
    EXPECT_EQ(callsFor(2, vst2::audioMasterBeginEdit).size(), 1u);
    EXPECT_NEAR(lastAutomated(2), std::min(1.0f, before + 0.2f), 1e-5);

    // The page 2 tab.
    {
        testing::XTestUser me;
        me.click(onScreen(Point{647, 296}));
    }
    ASSERT_TRUE(pageShown(2)) << "page 2 is not shown";

    // Slot 1's destination menu: the menu opens below it; "OSC1 Pitch" is its third item, after
    // "(not assigned)" and a separator (items of 16 pixels, separators of 7, a 1-pixel frame).
    finished = false;
    const std::size_t topLevel = children(DefaultRootWindow(display)).size();
    Point menu = onScreen(Point{130, 70});
    Point item = onScreen(Point{136, 76 + 1 + 16 + 7 + 16 + 8});
    std::thread chooser([&] {
        testing::XTestUser me;
        me.click(menu);
        testing::XTestUser::pause(400);
        me.moveTo(Point{item.h, item.v - 10});
        testing::XTestUser::pause(50);
        me.moveTo(item);
        testing::XTestUser::pause(50);
        me.button(true);
        me.button(false);
        finished = true;
    });
    done = idleUntil([&] { return finished.load() && lastAutomated(115) == optionValue(2, 26); }, 5000);
    chooser.join();
    EXPECT_TRUE(done) << "the menu choice did not arrive; last value " << lastAutomated(115);
    dispatch(vst2::effEditIdle);
    EXPECT_EQ(children(DefaultRootWindow(display)).size(), topLevel) << "the menu's windows are gone";
    dispatch(vst2::effEditClose);
}

// A host whose idle comes late: the whole drag is over before the press is handled. The knob still ends
// where the pointer was let go.
TEST_F(EditorInHostWindow, ADragThatEndedBeforeTheHostIdledStillMovesTheKnob) {
    ASSERT_EQ(openEditor(), 1);
    ASSERT_TRUE(pageShown(1));
    const float before = effect->getParameter(effect, 2);
    {
        testing::XTestUser me;
        Point knob = onScreen(Point{65, 54});
        me.moveTo(knob);
        me.button(true);
        me.moveTo(Point{knob.h, knob.v - 30});
        me.button(false);
    }
    ASSERT_TRUE(idleUntil([&] { return ended(2); })) << "the press was not handled";
    std::vector<HostCall> knobCalls = callsFor(2);
    EXPECT_EQ(knobCalls.front().opcode, vst2::audioMasterBeginEdit);
    EXPECT_NEAR(lastAutomated(2), std::min(1.0f, before + 0.15f), 1e-5);
    dispatch(vst2::effEditClose);
}

#if defined(TOLVANE_HAVE_XRES)
// The server's clients and what they hold: windows, pixmaps, graphics contexts and everything else.
std::vector<long> countResources(Display* display) {
    std::vector<long> total(5, 0);
    int count = 0;
    XResClient* clients = nullptr;
    if (!XResQueryClients(display, &count, &clients)) return total;
    const Atom kinds[3] = {XInternAtom(display, "WINDOW", False), XInternAtom(display, "PIXMAP", False),
                           XInternAtom(display, "GC", False)};
    total[0] = count;
    for (int i = 0; i < count; ++i) {
        int n = 0;
        XResType* types = nullptr;
        if (!XResQueryClientResources(display, clients[i].resource_base, &n, &types)) continue;
        for (int k = 0; k < n; ++k) {
            const Atom* kind = std::find(kinds, kinds + 3, types[k].resource_type);
            total[static_cast<std::size_t>(1 + (kind - kinds))] += static_cast<long>(types[k].count);
        }
        XFree(types);
    }
    XFree(clients);
    return total;
}
#endif

TEST_F(EditorInHostWindow, FiftyOpenAndCloseRoundsAndClosingThePlugInLeaveNoXResourcesBehind) {
    // One round first, so that one-time work (fonts, caches) is not counted.
    ASSERT_EQ(openEditor(), 1);
    idleUntil([&] { return false; }, 200);
    dispatch(vst2::effEditClose);
    XSync(display, False);
    const int descriptors = openDescriptors();
#if defined(TOLVANE_HAVE_XRES)
    int eventBase = 0, errorBase = 0;
    const bool xres = XResQueryExtension(display, &eventBase, &errorBase);
    const std::vector<long> before = xres ? countResources(display) : std::vector<long>();
#endif
    std::vector<double> openMilliseconds;
    for (int round = 0; round < 50; ++round) {
        auto start = Clock::now();
        ASSERT_EQ(openEditor(), 1) << round;
        openMilliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        ASSERT_EQ(children(host).size(), 1u) << round;
        for (int i = 0; i < 3; ++i) {
            dispatch(vst2::effEditIdle);
            testing::XTestUser::pause(5);
        }
        if (round % 10 == 5) {
            // Now and then with page 2 shown, and with the name field open.
            testing::XTestUser me;
            me.click(onScreen(Point{647, 296}));
            me.click(onScreen(Point{420, 299}));
            idleUntil([&] { return false; }, 150);
        }
        dispatch(vst2::effEditClose);
        ASSERT_TRUE(children(host).empty()) << round;
    }
    XSync(display, False);
    testing::XTestUser::pause(100);
    EXPECT_EQ(openDescriptors(), descriptors) << "every display connection was closed";
#if defined(TOLVANE_HAVE_XRES)
    if (xres) {
        const std::vector<long> after = countResources(display);
        std::printf("X server: clients, windows, pixmaps, GCs, other resources: %ld %ld %ld %ld %ld before, "
                    "%ld %ld %ld %ld %ld after\n", before[0], before[1], before[2], before[3], before[4], after[0],
                    after[1], after[2], after[3], after[4]);
        EXPECT_EQ(after, before);
    } else {
        ADD_FAILURE() << "the server has no X-Resource extension";
    }
#endif
    std::sort(openMilliseconds.begin(), openMilliseconds.end());
    const double median = openMilliseconds[openMilliseconds.size() / 2];
    RecordProperty("OpenMedianMs", std::to_string(median));
    std::printf("effEditOpen in the host window: median %.2f ms, slowest %.2f ms\n", median, openMilliseconds.back());
    EXPECT_LT(median, 100.0);

    // The plug-in closed with its editor open takes the window and its connection along.
    ASSERT_EQ(openEditor(), 1);
    dispatch(vst2::effClose);
    effect = nullptr;
    XSync(display, False);
    EXPECT_TRUE(children(host).empty());
    EXPECT_EQ(openDescriptors(), descriptors);
}

}  // namespace
}  // namespace tolvane

#endif
