#include "gui/PopupMenuControl.h"

#include <string>

#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::RecordingListener;

class PopupMenuTest : public testing::ToolkitTest {
protected:
    PopupMenuControl* makeMenu(std::int32_t style = 0, ControlListener* to = nullptr) {
        return add(new PopupMenuControl(Rect{20, 30, 80, 42}, to ? to : &listener, 9, nullptr, nullptr, style));
    }
    static std::vector<int> breakPositions(const std::vector<MenuItem>& items) {
        std::vector<int> positions;
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].columnBreak) positions.push_back(static_cast<int>(i));
        return positions;
    }
    RecordingListener listener;
};

TEST_F(PopupMenuTest, EntriesBecomeItemsWithSeparatorsTitlesGreyedAndChecks) {
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
    EXPECT_TRUE(listener.values.empty()) << "closed without a choice";
}

TEST_F(PopupMenuTest, ChecksFollowTheEntriesInMultipleCheckStyleAndChoosingToggles) {
    PopupMenuControl* menu = makeMenu(kMultipleCheckStyle | kPopupAtTopStyle);
    for (const char* text : {"a", "b", "c"}) menu->addEntry(text);
    menu->checkEntry(0, true);
    window->queueMenuChoice(3);
    window->press(Point{30, 35}, kRightButton);
    EXPECT_TRUE(window->lastMenu()[0].checked);
    EXPECT_FALSE(window->lastMenu()[2].checked);
    EXPECT_EQ(window->lastMenuPosition(), (Point{20, 30})) << "opens at the top edge";
    EXPECT_TRUE(window->lastMenuRightButton());
    EXPECT_TRUE(menu->isEntryChecked(2));
    EXPECT_TRUE(menu->isEntryChecked(0));
    menu->checkEntryAlone(1);
    EXPECT_FALSE(menu->isEntryChecked(0));
    EXPECT_TRUE(menu->isEntryChecked(1));
    EXPECT_FALSE(menu->isEntryChecked(2));
    EXPECT_FALSE(menu->checkEntry(3, true));
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

TEST_F(PopupMenuTest, InsertingAtOrBeforeTheCurrentEntryKeepsItCurrent) {
    PopupMenuControl* menu = makeMenu();
    for (const char* text : {"A", "B", "C"}) menu->addEntry(text);
    menu->setCurrent(1, true);
    menu->addEntry("before", 1);
    EXPECT_EQ(menu->getCurrent(nullptr, true), 2);
    menu->addEntry("after", 3);
    EXPECT_EQ(menu->getCurrent(nullptr, true), 2);
    char text[256];
    menu->getCurrent(text, true);
    EXPECT_STREQ(text, "B");
    EXPECT_EQ(menu->findEntry("after"), 3);
    EXPECT_EQ(menu->findEntry("none"), -1);
    ASSERT_TRUE(menu->removeEntry(0));
    EXPECT_EQ(menu->getCurrent(nullptr, true), 1);
    menu->getCurrent(text, true);
    EXPECT_STREQ(text, "B");
    EXPECT_FALSE(menu->removeEntry(10));
    menu->removeAllEntries();
    EXPECT_EQ(menu->getEntryCount(), 0);
    EXPECT_EQ(menu->getCurrent(), -1);
    // The number of entries is limited.
    for (int i = 0; i < PopupMenuControl::kMaxEntries; ++i) ASSERT_TRUE(menu->addEntry("e"));
    EXPECT_FALSE(menu->addEntry("one too many"));
    EXPECT_EQ(menu->getEntryCount(), PopupMenuControl::kMaxEntries);
}

TEST_F(PopupMenuTest, ColumnBreaksEveryNEntriesOnlyBelowOneHundredSixtyEntries) {
    PopupMenuControl* menu = makeMenu();
    menu->setItemsPerColumn(33);
    // 128 names with a separator before every tenth name from the 11th: 140 entries.
    for (int p = 0; p < 128; ++p) {
        if (p > 0 && p % 10 == 0) menu->addEntry("-");
        menu->addEntry(("Program " + std::to_string(p + 1)).c_str());
    }
    ASSERT_EQ(menu->getEntryCount(), 140);
    std::vector<PopupMenuControl::Owner> owners;
    std::vector<MenuItem> items = menu->buildMenu(owners);
    // Separators sit at 10, 21, 32, 43, ... 131, so none falls on a multiple of 33.
    EXPECT_EQ(breakPositions(items), (std::vector<int>{33, 66, 99, 132}));

    // A separator on a multiple gets no break, and the break is not moved to the next entry.
    PopupMenuControl* small = makeMenu();
    small->setItemsPerColumn(3);
    for (const char* text : {"a", "b", "c", "-", "d", "e", "f"}) small->addEntry(text);
    EXPECT_EQ(breakPositions(small->buildMenu(owners)), std::vector<int>{6});

    PopupMenuControl* big = makeMenu();
    big->setItemsPerColumn(28);
    for (int i = 0; i < 200; ++i) big->addEntry("x");
    EXPECT_TRUE(breakPositions(big->buildMenu(owners)).empty());
    for (int i = 0; i < 41; ++i) big->removeEntry(0);
    EXPECT_EQ(breakPositions(big->buildMenu(owners)).size(), 5u) << "159 entries: breaks at 28, 56, 84, 112, 140";
}

TEST_F(PopupMenuTest, AScriptedChoiceInASubmenuGoesToTheSubmenuAndItsListener) {
    RecordingListener subListener;
    PopupMenuControl* menu = makeMenu();
    PopupMenuControl* sub = new PopupMenuControl(Rect{}, &subListener, 2, nullptr, nullptr, 0);
    for (const char* text : {"X", "Y"}) sub->addEntry(text);
    menu->addEntry("A");
    menu->addSubmenu(sub, "More");
    menu->addEntry("B");
    sub->release();  // the menu holds its own reference

    // Ids: this menu's entries 1-3, then the submenu's 4-5.
    window->setMenuChooser([](const std::vector<MenuItem>& items) {
        return items.size() == 3 && items[1].hasSubmenu && items[1].submenu.size() == 2 ? items[1].submenu[1].id : -1;
    });
    window->press(Point{30, 35}, kLeftButton);
    const std::vector<MenuItem>& items = window->lastMenu();
    EXPECT_EQ(items[1].text, "More");
    EXPECT_EQ(items[2].id, 3);
    EXPECT_EQ(items[1].submenu[0].id, 4);
    EXPECT_EQ(items[1].submenu[1].id, 5);
    EXPECT_EQ(subListener.values, std::vector<float>{1.0f});
    EXPECT_TRUE(listener.values.empty());
    EXPECT_EQ(sub->getLastResult(), 1);
    EXPECT_EQ(sub->getCurrent(), 1);
    EXPECT_EQ(menu->getCurrent(), 0);
    EXPECT_EQ(frame->getFocusView(), nullptr);
    EXPECT_FALSE(menu->isDirty());
}

TEST_F(PopupMenuTest, ChoosingAnEntryMakesItCurrentAndReportsIt) {
    PopupMenuControl* menu = makeMenu();
    for (const char* text : {"zero", "one", "two"}) menu->addEntry(text);
    window->queueMenuChoice(3);
    window->press(Point{30, 35}, kLeftButton);
    EXPECT_EQ(menu->getValue(), 2.0f);
    EXPECT_EQ(menu->getLastResult(), 2);
    EXPECT_EQ(listener.values, std::vector<float>{2.0f});
    // Nothing chosen: nothing changes.
    window->press(Point{30, 35}, kLeftButton);
    EXPECT_EQ(menu->getLastResult(), -1);
    EXPECT_EQ(listener.values.size(), 1u);
    // A middle-button press does not open it.
    window->press(Point{30, 35}, kMiddleButton);
    EXPECT_EQ(window->menusRun(), 2);
    // setValue ignores indices that are not entries.
    menu->setValue(7.0f);
    EXPECT_EQ(menu->getValue(), 2.0f);
}

TEST_F(PopupMenuTest, ClosedMenuShowsTheCurrentEntryText) {
    PopupMenuControl* menu = makeMenu();
    menu->setFontColor(kWhiteColor);
    menu->setBackColor(Color{51, 34, 0, 0});
    menu->addEntry("-MSub");
    window->paint();
    int ink = 0;
    for (int y = 31; y < 42; ++y)
        for (int x = 21; x < 80; ++x)
            if (window->pixel(x, y) != testing::rgb(51, 34, 0)) ++ink;
    EXPECT_GT(ink, 10) << "the text after the prefix is drawn";
}

}  // namespace
}  // namespace tolvane
