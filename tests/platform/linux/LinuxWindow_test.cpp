// The X11 layer against a real X server: the test's own display when DISPLAY is set, else an Xvfb started
// for the test (skipped when there is neither). Pointer and keys are sent with XTest from a second
// connection on a helper thread while the editor's idle handles them, as a host's idle would.
#if defined(TOLVANE_X11_TESTS)

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

#include "gui/RotaryKnob.h"
#include "gui/TextField.h"
#include "platform/linux/LinuxPlatform.h"
#include "tests/gui/ToolkitTestSupport.h"

// Last: Xlib's macros (None, Bool) would clash with names in the headers above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include "support/XTestUser.h"

namespace tolvane {
namespace {

using testing::FakeHost;
using testing::RecordingListener;
using testing::TestEditor;

// ---- the fixture: a top-level "host" window and an editor that opens inside it

class LinuxWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!testing::xServerSkipReason().empty()) GTEST_SKIP() << testing::xServerSkipReason();
        display = XOpenDisplay(nullptr);
        ASSERT_NE(display, nullptr);
        host = testing::openHostWindow(display, 100, 100, 400, 300);
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

    int childrenOf(Window window) { return static_cast<int>(testing::childWindows(display, window).size()); }
    Point onScreen(Point p) { return testing::onScreen(display, host, p); }

    Display* display = nullptr;
    Window host = 0;
    FakeHost fakeHost;
    TestEditor* editor = nullptr;
};

// The focus goes back to where it was: the host's window, or PointerRoot (keys follow the pointer), which
// the editor must not keep for itself once the field has closed.
TEST_F(LinuxWindowTest, TextFieldTakesTheKeyboardWhileEditingAndGivesItBack) {
    RecordingListener listener;
    editor->open(parentHandle());
    auto* field = new TextField(Rect{20, 100, 160, 114}, &listener, 3, "Init", nullptr, 0);
    editor->getFrame()->addView(field);
    ASSERT_TRUE(idleUntil([&] { return !editor->getFrame()->isFirstDrawPending(); }));
    Window ours = static_cast<Window>(reinterpret_cast<std::uintptr_t>(editor->getFrame()->getNativeWindow()->nativeHandle()));

    const Window previousFocus[] = {host, PointerRoot};
    const std::string typed[] = {"hi", "Caf\xE9"};
    for (int round = 0; round < 2; ++round) {
        XSetInputFocus(display, previousFocus[round], RevertToParent, CurrentTime);
        XSync(display, False);
        testing::XTestUser me;
        me.moveTo(onScreen(Point{40, 106}));
        me.button(true);
        me.button(false);
        ASSERT_TRUE(idleUntil([&] { return field->isEditing(); })) << "the press did not open the field";
        Window focus = 0;
        int revert = 0;
        XGetInputFocus(display, &focus, &revert);
        Window root = 0, parent = 0, *children = nullptr;
        unsigned int count = 0;
        XQueryTree(display, focus, &root, &parent, &children, &count);
        if (children) XFree(children);
        EXPECT_EQ(parent, ours) << "the focus is on the edit field inside the editor";

        if (round == 0) {
            me.key(XK_h);
            me.key(XK_i);
        } else {
            me.key(XK_C, true);
            me.key(XK_a);
            me.key(XK_f);
            me.key(XK_eacute);
        }
        me.key(XK_Return);
        ASSERT_TRUE(idleUntil([&] { return !field->isEditing(); }));
        EXPECT_EQ(std::string(field->text()), typed[round]) << "typed as UTF-8, kept as Windows-1252";
        EXPECT_TRUE(field->wasReturnPressed());
        EXPECT_EQ(listener.values.size(), static_cast<std::size_t>(round + 1));
        XGetInputFocus(display, &focus, &revert);
        EXPECT_EQ(focus, previousFocus[round]) << "the focus went back where it was";
    }
    editor->close();
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
        testing::XTestUser me;
        me.moveTo(start);
        me.button(true);
        testing::XTestUser::pause(300);
        me.moveTo(Point{start.h, start.v - 20});
        testing::XTestUser::pause(100);
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
