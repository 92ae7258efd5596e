#include "gui/PopupMenuControl.h"

#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::RecordingListener;

class PopupMenuTest : public testing::ToolkitTest {
protected:
    PopupMenuControl* makeMenu(std::int32_t style = 0) {
        return add(new PopupMenuControl(Rect{20, 30, 80, 42}, &listener, 9, nullptr, nullptr, style));
    }
    static std::vector<int> breakPositions(const std::vector<MenuItem>& items) {
        std::vector<int> positions;
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].columnBreak) positions.push_back(static_cast<int>(i));
        return positions;
    }
    RecordingListener listener;
};

TEST_F(PopupMenuTest, EntriesBecomeItemsAndNoChoiceOrAMiddleButtonChangesNothing) {
    PopupMenuControl* menu = makeMenu(kCheckCurrentStyle);
    for (const char* text : {"-TTitle", "Alpha", "-", "-GGrey", "Beta"}) menu->addEntry(text);
    menu->setCurrent(2);  // counted without separators and titles: Alpha 0, Grey 1, Beta 2
    window->press(Point{30, 35}, kLeftButton);
    const std::vector<MenuItem>& items = window->lastMenu();
    ASSERT_EQ(items.size(), 5u);
    EXPECT_TRUE(items[0].disabled);
    EXPECT_EQ(items[0].text, "Title");
    EXPECT_TRUE(items[2].separator);
    EXPECT_TRUE(items[3].grayed);
    EXPECT_EQ(items[3].text, "Grey");
    EXPECT_FALSE(items[1].checked);
    EXPECT_TRUE(items[4].checked) << "the current entry carries the check mark";
    for (int i = 0; i < 5; ++i) EXPECT_EQ(items[i].id, i + 1);
    // Opened below the bounds' left edge, left button.
    EXPECT_EQ(window->lastMenuPosition(), (Point{20, 42}));
    EXPECT_FALSE(window->lastMenuRightButton());
    EXPECT_EQ(menu->getLastResult(), -1) << "closed without a choice";
    EXPECT_EQ(menu->getValue(), 4.0f) << "the value is the entry's index among all";
    window->press(Point{30, 35}, kMiddleButton);
    EXPECT_EQ(window->menusRun(), 1) << "a middle-button press does not open it";
    menu->setValue(7.0f);
    EXPECT_EQ(menu->getValue(), 4.0f) << "indices that are not entries are ignored";
    EXPECT_TRUE(listener.values.empty());
}

TEST_F(PopupMenuTest, CurrentIndexWithAndWithoutSeparators) {
    PopupMenuControl* menu = makeMenu();
    for (const char* text : {"A", "-", "B", "-TT", "C"}) menu->addEntry(text);
    EXPECT_EQ(menu->getCurrent(), 0) << "the first entry becomes current";
    ASSERT_TRUE(menu->setCurrent(2));
    EXPECT_EQ(menu->getCurrent(nullptr, true), 4);
    char text[256];
    EXPECT_EQ(menu->getCurrent(text), 2);
    EXPECT_STREQ(text, "C");
    ASSERT_TRUE(menu->setCurrent(2, true));
    EXPECT_EQ(menu->getCurrent(), 1);
    EXPECT_FALSE(menu->setCurrent(1, true)) << "a separator cannot be current";
    EXPECT_FALSE(menu->setCurrent(3, true)) << "nor a title";
    EXPECT_FALSE(menu->setCurrent(3)) << "only three entries count";
    EXPECT_EQ(menu->getCurrent(nullptr, true), 2);
}

// Breaks every N entries (the editor's menus check where) stop at 160 entries.
TEST_F(PopupMenuTest, NoColumnBreaksFromOneHundredSixtyEntries) {
    std::vector<PopupMenuControl::Owner> owners;
    PopupMenuControl* big = makeMenu();
    big->setItemsPerColumn(28);
    for (int i = 0; i < 200; ++i) big->addEntry("x");
    EXPECT_TRUE(breakPositions(big->buildMenu(owners)).empty());
    for (int i = 0; i < 41; ++i) big->removeEntry(0);
    EXPECT_EQ(breakPositions(big->buildMenu(owners)).size(), 5u) << "159 entries: breaks at 28, 56, 84, 112, 140";
}

}  // namespace
}  // namespace tolvane
