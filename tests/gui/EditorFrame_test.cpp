#include "gui/EditorFrame.h"

#include <string>

#include "gui/TextField.h"
#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

// A view that logs what reaches it into a shared journal.
struct JournalView : View {
    JournalView(const Rect& r, std::string name, std::vector<std::string>& journal, std::int32_t keyAnswer = -1)
        : View(r), name(std::move(name)), journal(journal), keyAnswer(keyAnswer) {}
    void draw(Canvas&) override { journal.push_back(name + ".draw"); }
    void onMouseDown(Canvas&, Point) override { journal.push_back(name + ".press"); }
    std::int32_t onKeyDown(const KeyCode&) override {
        journal.push_back(name + ".key");
        return keyAnswer;
    }
    bool onWheel(Canvas*, Point, float) override {
        journal.push_back(name + ".wheel");
        return true;
    }
    bool onAdded(View*) override {
        journal.push_back(name + ".added");
        return true;
    }
    bool onRemoved(View*) override {
        journal.push_back(name + ".removed");
        return true;
    }
    std::string name;
    std::vector<std::string>& journal;
    std::int32_t keyAnswer;
};

// A control that counts its draws.
struct CountingControl : Control {
    explicit CountingControl(const Rect& r) : Control(r, nullptr, 0) {}
    void draw(Canvas&) override { ++draws; }
    int draws = 0;
};

class EditorFrameTest : public testing::ToolkitTest {
protected:
    std::vector<std::string> journal;
};

TEST_F(EditorFrameTest, IdleWaitsForThePaintThenRedrawsDirtyControlsOrOnlyTheModalView) {
    CountingControl* a = add(new CountingControl(Rect{0, 0, 10, 10}));
    CountingControl* b = add(new CountingControl(Rect{20, 0, 30, 10}));
    frame->idle();
    EXPECT_EQ(a->draws + b->draws, 0) << "no drawing before the first paint";
    window->paint();
    editor->idle();  // controls stay dirty after a paint until their own redraw
    a->draws = b->draws = 0;

    b->setValue(0.7f);
    editor->idle();
    EXPECT_EQ(a->draws, 0);
    EXPECT_EQ(b->draws, 1);
    // Marking redraws a control whatever its value, -1 included; a redraw clears the mark.
    a->setValue(-1.0f);
    editor->idle();
    a->setDirty(true);
    editor->idle();
    EXPECT_EQ(a->draws, 2) << "marked at -1";
    EXPECT_EQ(b->draws, 1);
    frame->setDirty(true);
    editor->idle();
    EXPECT_EQ(b->draws, 2) << "a dirty frame redraws everything";

    CountingControl* modal = add(new CountingControl(Rect{0, 0, 50, 50}));
    editor->idle();
    a->draws = modal->draws = 0;
    frame->setModalView(modal);
    a->setValue(0.5f);
    modal->setValue(0.5f);
    editor->idle();
    EXPECT_EQ(a->draws, 0) << "while a modal view is shown only it redraws";
    EXPECT_EQ(modal->draws, 1);
}

// Paint, presses and the wheel each reach only the views under them; presses the last mouse-enabled one.
TEST_F(EditorFrameTest, PaintPressesAndWheelReachTheViewsUnderThem) {
    add(new JournalView(Rect{0, 0, 50, 50}, "under", journal));
    JournalView* over = add(new JournalView(Rect{20, 20, 80, 80}, "over", journal));
    add(new JournalView(Rect{90, 0, 100, 10}, "right", journal));
    window->paint(Rect{85, 0, 120, 20});
    window->press(Point{30, 30}, kLeftButton);
    window->press(Point{10, 10}, kLeftButton);
    window->press(Point{110, 90}, kLeftButton);
    window->wheel(Point{95, 5}, 1.0f);
    over->setMouseEnabled(false);
    window->press(Point{30, 30}, kLeftButton);
    window->press(Point{50, 50}, kLeftButton);  // edges belong to the view
    // From the host the wheel has no canvas and the point (0,0): the live pointer decides.
    window->press(Point{10, 10}, 0);  // moves the pointer there
    editor->onWheel(1.0f);
    EXPECT_EQ(journal, (std::vector<std::string>{"right.draw", "over.press", "under.press", "right.wheel",
                                                 "under.press", "under.press", "under.press", "under.wheel"}));
}

TEST_F(EditorFrameTest, ModalViewCapturesPressesAndOnlyOneIsAllowed) {
    add(new JournalView(Rect{0, 0, 100, 100}, "back", journal));
    JournalView* modal = add(new JournalView(Rect{40, 40, 60, 60}, "modal", journal));
    JournalView* second = add(new JournalView(Rect{0, 0, 5, 5}, "second", journal));
    ASSERT_TRUE(frame->setModalView(modal));
    EXPECT_FALSE(frame->setModalView(second));
    window->press(Point{10, 10}, kLeftButton);
    window->press(Point{50, 50}, kLeftButton);
    ASSERT_TRUE(frame->setModalView(nullptr));
    window->press(Point{10, 10}, kLeftButton);
    EXPECT_EQ(journal, (std::vector<std::string>{"modal.added", "modal.press", "modal.removed", "back.press"}));
}

TEST_F(EditorFrameTest, PressWhileEditingEndsTheEditThenReachesTheViewUnderIt) {
    TextField* field = add(new TextField(Rect{0, 0, 60, 12}, nullptr, 1, "abc", nullptr, 0));
    add(new JournalView(Rect{100, 0, 120, 20}, "button", journal));
    window->press(Point{5, 5}, kLeftButton);
    ASSERT_NE(window->activeEdit(), nullptr);
    EXPECT_EQ(frame->getFocusView(), field);
    window->typeText("abcd");
    window->press(Point{110, 10}, kLeftButton);
    EXPECT_EQ(window->activeEdit(), nullptr);
    EXPECT_EQ(frame->getFocusView(), nullptr);
    EXPECT_STREQ(field->text(), "abcd");
    EXPECT_EQ(journal, (std::vector<std::string>{"button.press"}));
}

TEST_F(EditorFrameTest, KeysGoToFocusThenModalThenChildrenFromTheLast) {
    JournalView* first = add(new JournalView(Rect{0, 0, 10, 10}, "first", journal, 7));
    add(new JournalView(Rect{0, 0, 10, 10}, "last", journal, -1));
    JournalView* modal = add(new JournalView(Rect{0, 0, 10, 10}, "modal", journal, -1));
    frame->setModalView(modal);
    frame->setFocusView(first);
    KeyCode key;
    key.virt = kVirtualKeyUp;
    EXPECT_EQ(editor->onKeyDown(key), 7);
    EXPECT_EQ(journal, (std::vector<std::string>{"modal.added", "first.key"}));
    journal.clear();
    frame->setFocusView(nullptr);
    EXPECT_EQ(editor->onKeyDown(key), 7);
    // modal (no), then children last to first: modal is also the last child, then "last", then "first".
    EXPECT_EQ(journal, (std::vector<std::string>{"modal.key", "modal.key", "last.key", "first.key"}));
    // Without a frame nothing handles keys.
    editor->close();
    EXPECT_EQ(editor->onKeyDown(key), -1);
}

TEST_F(EditorFrameTest, AViewRemovedByItsOwnPressSurvivesTheCall) {
    struct SelfRemoving : View {
        using View::View;
        void onMouseDown(Canvas&, Point) override {
            getFrame()->removeView(this, true);
            setMouseEnabled(true);  // still alive: the frame holds it until the press has returned
        }
    };
    add(new SelfRemoving(Rect{0, 0, 10, 10}));
    window->press(Point{5, 5}, kLeftButton);
    EXPECT_EQ(frame->getViewCount(), 0);
}

TEST_F(EditorFrameTest, IdlePumpRunsAboutEveryHundredMillisecondsAndSleepsInBetween) {
    editor->idle();  // the pending update
    platform.clearSleeps();
    std::uint32_t start = platform.tickCount();

    editor->idlePump();  // due: the editor was made at this time
    EXPECT_EQ(host.idles, 1);
    EXPECT_TRUE(platform.sleeps().empty());

    platform.setTime(start + 10);
    editor->idlePump();
    EXPECT_EQ(host.idles, 1) << "90 ms early: sleep and return";
    EXPECT_EQ(platform.sleeps(), std::vector<int>{4});
    EXPECT_EQ(platform.tickCount(), start + 14);

    platform.setTime(start + 49);
    editor->idlePump();
    EXPECT_EQ(host.idles, 1) << "51 ms early is still too early";

    platform.setTime(start + 50);
    editor->idlePump();
    EXPECT_EQ(host.idles, 2) << "50 ms early: sleep, then run";
    EXPECT_EQ(platform.sleeps(), (std::vector<int>{4, 4, 4}));

    // The next run is scheduled 100 ms after this call began.
    platform.setTime(start + 150);
    editor->idlePump();
    EXPECT_EQ(host.idles, 3);
    EXPECT_EQ(platform.sleeps().size(), 3u);
}

TEST_F(EditorFrameTest, HostIdleCallingBackIntoTheEditorDoesNothingReentrantly) {
    editor->idle();
    host.onIdle = [this] { editor->idle(); };
    editor->postUpdate();
    platform.advance(200);
    editor->idlePump();
    EXPECT_EQ(editor->updates, 2) << "the pump's own idle ran the update";
    editor->postUpdate();
    platform.advance(200);
    host.onIdle = [this] {
        editor->postUpdate();
        editor->idle();
    };
    editor->idlePump();
    EXPECT_EQ(editor->updates, 3) << "the idle called from the host's idle did not run";
    EXPECT_TRUE(editor->isUpdatePending());
}

}  // namespace
}  // namespace tolvane
