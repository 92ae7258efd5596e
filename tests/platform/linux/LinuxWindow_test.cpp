// The X11 layer against a real X server: the test's own display when DISPLAY is set, else an Xvfb started
// for the test (skipped when there is neither). Pointer and keys are sent with XTest from a second
// connection on a helper thread while the editor's idle handles them, as a host's idle would.
#if defined(TOLVANE_X11_TESTS)

#include <dirent.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

#include "gui/PopupMenuControl.h"
#include "gui/RotaryKnob.h"
#include "gui/TextField.h"
#include "platform/linux/LinuxPlatform.h"
#include "support/XServerForTests.h"
#include "tests/gui/ToolkitTestSupport.h"

// Last: Xlib's macros (None, Bool) would clash with names in the headers above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace tolvane {
namespace {

using testing::FakeHost;
using testing::RecordingListener;
using testing::TestEditor;

// ---- an X server for the suite

testing::XServerForTests xServer;
std::string skipReason;

class XServerEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        if (!xServer.start(skipReason)) {
            if (skipReason.empty()) skipReason = "no X server";
            return;
        }
        // Held for the whole run: a server that resets when its last client leaves would otherwise refuse
        // connections for a moment between tests.
        keeper_ = XOpenDisplay(nullptr);
    }
    void TearDown() override {
        if (keeper_) XCloseDisplay(keeper_);
        keeper_ = nullptr;
        xServer.stop();
    }

private:
    Display* keeper_ = nullptr;
};

const ::testing::Environment* const xserver = ::testing::AddGlobalTestEnvironment(new XServerEnvironment);

int openDescriptors() {
    int count = 0;
    if (DIR* dir = opendir("/proc/self/fd")) {
        while (readdir(dir)) ++count;
        closedir(dir);
    }
    return count;
}

// ---- the fixture: a top-level "host" window and an editor that opens inside it

class LinuxWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!skipReason.empty()) GTEST_SKIP() << skipReason;
        display = XOpenDisplay(nullptr);
        ASSERT_NE(display, nullptr);
        XSetWindowAttributes attributes{};
        attributes.background_pixel = BlackPixel(display, DefaultScreen(display));
        host = XCreateWindow(display, DefaultRootWindow(display), 100, 100, 400, 300, 0, CopyFromParent, InputOutput,
                             CopyFromParent, CWBackPixel, &attributes);
        XMapWindow(display, host);
        XSync(display, False);
        installPlatform(&linuxPlatform());
        editor = new TestEditor(&fakeHost, 300, 200);
    }
    void TearDown() override {
        if (!display) return;
        editor->setKnobMode(kCircularKnobMode);
        delete editor;
        installPlatform(nullptr);
        XDestroyWindow(display, host);
        XCloseDisplay(display);
    }

    void* parentHandle() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(host)); }

    // Runs the editor's idle every 10 ms until done() or the time runs out.
    bool idleUntil(const std::function<bool()>& done, int milliseconds = 3000) {
        auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
        while (std::chrono::steady_clock::now() < until) {
            editor->idle();
            if (done()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return done();
    }

    int childrenOf(Window window) {
        Window root = 0, parent = 0, *children = nullptr;
        unsigned int count = 0;
        XQueryTree(display, window, &root, &parent, &children, &count);
        if (children) XFree(children);
        return static_cast<int>(count);
    }

    // Window coordinates of the editor to root coordinates.
    Point onScreen(Point p) {
        int x = 0, y = 0;
        Window child = 0;
        XTranslateCoordinates(display, host, DefaultRootWindow(display), p.h, p.v, &x, &y, &child);
        return Point{x, y};
    }

    Display* display = nullptr;
    Window host = 0;
    FakeHost fakeHost;
    TestEditor* editor = nullptr;
};

// A second connection that plays the user.
class User {
public:
    User() : display_(XOpenDisplay(nullptr)) {}
    ~User() {
        if (display_) XCloseDisplay(display_);
    }
    void moveTo(Point p) {
        XTestFakeMotionEvent(display_, -1, p.h, p.v, 0);
        XSync(display_, False);
    }
    void button(bool down) {
        XTestFakeButtonEvent(display_, 1, down ? True : False, 0);
        XSync(display_, False);
    }
    void key(KeySym symbol) {
        ::KeyCode code = XKeysymToKeycode(display_, symbol);
        XTestFakeKeyEvent(display_, code, True, 0);
        XTestFakeKeyEvent(display_, code, False, 0);
        XSync(display_, False);
    }
    static void pause(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

private:
    Display* display_;
};

TEST_F(LinuxWindowTest, OpensAsAChildOfTheHostWindowAndPaintsTheBackground) {
    BitmapResource* background = testing::makeBitmap(300, 200, [](int, int) { return testing::rgb(10, 120, 230); });
    editor->open(parentHandle());
    editor->getFrame()->setBackground(background);
    background->release();
    ASSERT_NE(editor->getFrame()->getNativeWindow(), nullptr);
    EXPECT_EQ(childrenOf(host), 1);
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); })) << "no Expose arrived";

    Window ours = static_cast<Window>(reinterpret_cast<std::uintptr_t>(editor->getFrame()->getNativeWindow()->nativeHandle()));
    // The editor's requests travel on its own connection: give the server a moment to carry them out.
    unsigned long pixel = 0;
    for (int attempt = 0; attempt < 50 && (pixel & 0xFFFFFF) != 0x0A78E6u; ++attempt) {
        User::pause(10);
        XImage* image = XGetImage(display, ours, 150, 100, 1, 1, AllPlanes, ZPixmap);
        ASSERT_NE(image, nullptr);
        pixel = XGetPixel(image, 0, 0);
        XDestroyImage(image);
    }
    EXPECT_EQ(pixel & 0xFFFFFF, 0x0A78E6u);
    editor->close();
    EXPECT_EQ(childrenOf(host), 0);
}

TEST_F(LinuxWindowTest, RealPointerDragsTurnAKnob) {
    RecordingListener listener;
    editor->open(parentHandle());
    editor->setKnobMode(kLinearKnobMode);
    auto* knob = new RotaryKnob(Rect{20, 20, 60, 60}, &listener, 11, nullptr, nullptr, Point{});
    knob->setValue(0.3f);
    editor->getFrame()->addView(knob);
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); }));

    std::atomic<bool> finished{false};
    Point start = onScreen(Point{40, 40});
    std::thread user([&] {
        User me;
        me.moveTo(start);
        User::pause(50);
        me.button(true);
        User::pause(150);
        for (int dy = 10; dy <= 40; dy += 10) {
            me.moveTo(Point{start.h, start.v - dy});
            User::pause(30);
        }
        User::pause(200);
        me.button(false);
        finished = true;
    });
    bool done = idleUntil([&] { return finished.load() && fakeHost.ended.size() == 1; }, 5000);
    user.join();
    ASSERT_TRUE(done) << "the drag did not end";
    // 40 pixels up in linear mode at 200 pixels per range.
    EXPECT_NEAR(knob->getValue(), 0.5f, 1e-5);
    EXPECT_EQ(fakeHost.begun, std::vector<std::int32_t>{11});
    EXPECT_GE(listener.values.size(), 1u);
    editor->close();
}

TEST_F(LinuxWindowTest, TextFieldTakesTheKeyboardWhileEditingAndGivesItBack) {
    RecordingListener listener;
    editor->open(parentHandle());
    auto* field = new TextField(Rect{20, 100, 160, 114}, &listener, 3, "Init", nullptr, 0);
    editor->getFrame()->addView(field);
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); }));
    XSetInputFocus(display, host, RevertToParent, CurrentTime);
    XSync(display, False);

    User me;
    me.moveTo(onScreen(Point{40, 106}));
    me.button(true);
    me.button(false);
    ASSERT_TRUE(idleUntil([&] { return field->isEditing(); })) << "the press did not open the field";
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(display, &focus, &revert);
    Window ours = static_cast<Window>(reinterpret_cast<std::uintptr_t>(editor->getFrame()->getNativeWindow()->nativeHandle()));
    EXPECT_NE(focus, host);
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, focus, &root, &parent, &children, &count);
    if (children) XFree(children);
    EXPECT_EQ(parent, ours) << "the focus is on the edit field inside the editor";

    me.key(XK_h);
    me.key(XK_i);
    me.key(XK_Return);
    ASSERT_TRUE(idleUntil([&] { return !field->isEditing(); }));
    EXPECT_STREQ(field->text(), "hi");
    EXPECT_TRUE(field->wasReturnPressed());
    EXPECT_EQ(listener.values.size(), 1u);
    XGetInputFocus(display, &focus, &revert);
    EXPECT_EQ(focus, host) << "the focus went back to the host";
    editor->close();
}

TEST_F(LinuxWindowTest, PopupMenuRunsWithThePointerAndReportsTheChoice) {
    RecordingListener listener;
    editor->open(parentHandle());
    auto* menu = new PopupMenuControl(Rect{20, 20, 100, 32}, &listener, 5, nullptr, nullptr, 0);
    for (const char* text : {"First", "Second", "Third"}) menu->addEntry(text);
    editor->getFrame()->addView(menu);
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); }));

    std::atomic<bool> finished{false};
    Point control = onScreen(Point{40, 26});
    // The menu opens below the control: entries of 16 pixels after a 1-pixel frame.
    Point third = onScreen(Point{40, 32 + 1 + 2 * 16 + 8});
    std::thread user([&] {
        User me;
        me.moveTo(control);
        me.button(true);
        me.button(false);
        User::pause(400);
        me.moveTo(Point{third.h, third.v - 20});
        User::pause(50);
        me.moveTo(third);
        User::pause(50);
        me.button(true);
        me.button(false);
        finished = true;
    });
    bool done = idleUntil([&] { return finished.load() && !listener.values.empty(); }, 5000);
    user.join();
    ASSERT_TRUE(done) << "no choice arrived";
    EXPECT_EQ(listener.values, std::vector<float>{2.0f});
    EXPECT_EQ(menu->getCurrent(), 2);
    int topLevel = childrenOf(DefaultRootWindow(display));
    editor->idle();
    EXPECT_EQ(childrenOf(DefaultRootWindow(display)), topLevel) << "menu windows are gone";
    editor->close();
}

TEST_F(LinuxWindowTest, OpeningAndClosingFiftyTimesLeavesNoWindowsOrConnectionsBehind) {
    // One round first, so that one-time allocations (fonts, caches) are not counted.
    editor->open(parentHandle());
    idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); });
    editor->close();
    const int descriptors = openDescriptors();
    const int rootChildren = childrenOf(DefaultRootWindow(display));
    for (int i = 0; i < 50; ++i) {
        editor->open(parentHandle());
        auto* knob = new RotaryKnob(Rect{20, 20, 60, 60}, nullptr, 1, nullptr, nullptr, Point{});
        editor->getFrame()->addView(knob);
        editor->getFrame()->setCursor(CursorKind::sizeNS);
        ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); })) << i;
        if (i % 10 == 0) {
            // Now and then close with the edit field open.
            auto* field = new TextField(Rect{20, 100, 160, 114}, nullptr, 3, "Init", nullptr, 0);
            editor->getFrame()->addView(field);
            editor->getFrame()->setFocusView(field);
            field->takeFocus(nullptr);
            EXPECT_TRUE(field->isEditing());
        }
        EXPECT_EQ(childrenOf(host), 1);
        editor->close();
        EXPECT_EQ(childrenOf(host), 0);
    }
    XSync(display, False);
    EXPECT_EQ(openDescriptors(), descriptors) << "every display connection was closed";
    EXPECT_EQ(childrenOf(DefaultRootWindow(display)), rootChildren);
}

TEST_F(LinuxWindowTest, TheHostClosingTheEditorDuringADragIsSurvived) {
    editor->open(parentHandle());
    editor->getFrame()->addView(new RotaryKnob(Rect{20, 20, 60, 60}, nullptr, 11, nullptr, nullptr, Point{}));
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); }));
    // The host's idle, called from inside the drag loop, closes the editor.
    fakeHost.onIdle = [&] {
        if (editor->getFrame()) editor->close();
    };
    std::atomic<bool> finished{false};
    Point start = onScreen(Point{40, 40});
    std::thread user([&] {
        User me;
        me.moveTo(start);
        me.button(true);
        User::pause(300);
        me.moveTo(Point{start.h, start.v - 20});
        User::pause(100);
        me.button(false);
        finished = true;
    });
    idleUntil([&] { return finished.load() && !fakeHost.ended.empty(); }, 5000);
    user.join();
    EXPECT_EQ(editor->getFrame(), nullptr);
    EXPECT_EQ(fakeHost.ended, std::vector<std::int32_t>{11}) << "the drag still ended properly";
    XSync(display, False);
    EXPECT_EQ(childrenOf(host), 0);
}

TEST_F(LinuxWindowTest, TheHostDestroyingItsWindowFirstIsSurvived) {
    editor->open(parentHandle());
    idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); });
    XDestroyWindow(display, host);
    XSync(display, False);
    idleUntil([&] { return !editor->getFrame()->isOpen(); }, 1000);
    EXPECT_FALSE(editor->getFrame()->isOpen());
    editor->close();
    host = XCreateWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, CopyFromParent, InputOutput,
                         CopyFromParent, 0, nullptr);
}

}  // namespace
}  // namespace tolvane

#endif  // TOLVANE_X11_TESTS
