#include "gui/TextField.h"

#include <string>

#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::RecordingListener;

struct NotifiedView : View {
    NotifiedView() : View(Rect{100, 80, 180, 120}) {}
    void notify(View* sender, const char* message) override { messages.push_back({sender, message}); }
    std::vector<std::pair<View*, std::string>> messages;
};

class TextFieldTest : public testing::ToolkitTest {
protected:
    void SetUp() override {
        ToolkitTest::SetUp();
        field = add(new TextField(Rect{10, 20, 70, 32}, &listener, 4, "Init", nullptr, 0));
        field->setFont(4);
        field->setFontColor(Color{229, 176, 52, 0});
        field->setBackColor(Color{51, 34, 0, 0});
        field->setHorizontalAlign(kTextAlignLeft);
    }
    RecordingListener listener;
    TextField* field = nullptr;
};

TEST_F(TextFieldTest, APressOpensTheEditFieldOverTheBoundsWithTheTextAndLook) {
    window->press(Point{15, 25}, kLeftButton);
    ASSERT_NE(window->activeEdit(), nullptr);
    const TextEditRequest& request = window->lastEditRequest();
    EXPECT_EQ(request.area, (Rect{10, 20, 71, 33}));
    EXPECT_EQ(request.text, "Init");
    EXPECT_EQ(request.fontColor, (Color{229, 176, 52, 0}));
    EXPECT_EQ(frame->getFocusView(), field);
    EXPECT_TRUE(field->isEditing());
}

TEST_F(TextFieldTest, AnEditEndsCutToTheLimitReportsOnlyChangedTextAndTellsTheParent) {
    NotifiedView* parent = add(new NotifiedView);
    field->setParentView(parent);
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_EQ(window->lastEditRequest().maxLength, 255);
    window->typeText(std::string(300, 'x'));
    window->finishEdit(true);
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(std::string(field->text()), std::string(255, 'x'));
    EXPECT_TRUE(field->wasReturnPressed());
    EXPECT_EQ(listener.values.size(), 1u);
    EXPECT_EQ(frame->getFocusView(), nullptr);

    // A program name's limit: the edit is told it, and what ends the edit keeps no more.
    field->setMaxLength(24);
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_EQ(window->lastEditRequest().maxLength, 24);
    window->typeText(std::string(30, 'y'));
    window->finishEdit(true);
    EXPECT_EQ(std::string(field->text()), std::string(24, 'y'));
    EXPECT_EQ(listener.values.size(), 2u);

    // The same text again reports nothing, but the parent still hears of every end.
    window->press(Point{15, 25}, kLeftButton);
    window->typeText(std::string(24, 'y'));
    window->finishEdit(false);
    EXPECT_EQ(listener.values.size(), 2u);
    ASSERT_EQ(parent->messages.size(), 3u);
    EXPECT_EQ(parent->messages.back(), (std::pair<View*, std::string>{field, "LooseFocus"}));
}

TEST_F(TextFieldTest, DoubleClickStyleIgnoresSingleClicks) {
    field->setStyle(kDoubleClickStyle);
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_EQ(window->activeEdit(), nullptr);
    platform.advance(500);  // too slow for the 400 ms double-click time
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_EQ(window->activeEdit(), nullptr);
    platform.advance(150);
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_NE(window->activeEdit(), nullptr);
    window->finishEdit(true);
    // The double click is used up: the next single press starts a new one.
    platform.advance(100);
    window->press(Point{15, 25}, kLeftButton);
    EXPECT_EQ(window->activeEdit(), nullptr);
}

}  // namespace
}  // namespace tolvane
