// The editor's own widgets driven with the mouse: filter type, number selectors, list menus with learning,
// program selector, program name, file menu, program commands, page tabs, status lines, about overlay.
#include <cstring>
#include <string>

#include "editor/EditorSkin.h"
#include "editor/FilterTypeWidget.h"
#include "editor/ListMenuWidget.h"
#include "editor/ProgramNameWidget.h"
#include "editor/ProgramSelectorWidget.h"
#include "gui/TextField.h"
#include "params/FactoryBank.h"
#include "dsp/Mappings.h"
#include "tests/editor/EditorTestSupport.h"

namespace tolvane {
namespace {

class CustomWidgetsTest : public testing::EditorTest {
protected:
    void click(int x, int y) { press(Point{x, y}); }
    // The id of the menu item with this text, for the offscreen platform's chooser.
    static int itemWithText(const std::vector<MenuItem>& items, const std::string& text) {
        for (const MenuItem& item : items)
            if (!item.separator && item.text == text) return item.id;
        return -1;
    }
    std::string statusLine(int line) {
        char a[SynthEditor::kStatusTextSize], b[SynthEditor::kStatusTextSize];
        editor().statusLines(a, b);
        return line == 0 ? a : b;
    }
    std::string hostProgramName() { return plugin.text(vst2::effGetProgramName); }
};

TEST_F(CustomWidgetsTest, FilterTypeSlopesFollowTheTypeAndPairForTheBandFilters) {
    auto slopeShows = [this](int i, int type, bool lit) {
        const Point at[4] = {{302, 96}, {317, 96}, {302, 108}, {317, 108}};
        return shows(skin::kFilterSlopes, area(at[i].h, at[i].v, 15, 12), Point{(4 * type + i) * 15, lit ? 12 : 0});
    };
    hostSets(30, optionValue(1, 16));  // LP12
    EXPECT_TRUE(slopeShows(0, 0, false));
    EXPECT_TRUE(slopeShows(1, 0, true));

    click(305, 65);  // band pass: code 4 × 2 + 1
    EXPECT_FLOAT_EQ(lastAutomated(30), 0.59375f);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(slopeShows(i, 2, i < 2)) << i;
    EXPECT_TRUE(shows(skin::kFilterTypes, area(302, 62, 30, 12), Point{60, 12}));
    EXPECT_TRUE(shows(skin::kFilterTypes, area(302, 38, 30, 12), Point{0, 0}));

    click(305, 111);  // slope button 2: the second pair
    EXPECT_FLOAT_EQ(lastAutomated(30), optionValue(10, 16));
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(slopeShows(i, 2, i >= 2)) << i;

    click(305, 77);  // band reject keeps the slope
    EXPECT_FLOAT_EQ(lastAutomated(30), optionValue(14, 16));
    click(320, 99);  // slope 1 of band reject
    EXPECT_FLOAT_EQ(lastAutomated(30), optionValue(13, 16));
    click(305, 41);  // lowpass: slope 1 alone
    EXPECT_FLOAT_EQ(lastAutomated(30), optionValue(1, 16));
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(slopeShows(i, 0, i == 1)) << i;
}

TEST_F(CustomWidgetsTest, NumberSelectorsStepWithinTheirRange) {
    auto digitsShow = [this](Point at, int number) {
        return shows(skin::kDigits, area(at.h, at.v, 10, 13), Point{0, 13 * (number / 10)}) &&
               shows(skin::kDigits, area(at.h + 10, at.v, 10, 13), Point{0, 13 * (number % 10)});
    };
    const Point voices{13, 278};
    const Point left{14 + 4, 294 + 4}, right{14 + 14, 294 + 4};
    hostSets(77, 1.0f);
    EXPECT_TRUE(digitsShow(voices, 64));
    press(right);
    EXPECT_FLOAT_EQ(lastAutomated(77), 63.5f / 64) << "64 stays 64";
    EXPECT_TRUE(digitsShow(voices, 64));
    hostSets(77, 0.0f);
    EXPECT_TRUE(digitsShow(voices, 1));
    press(left);
    EXPECT_FLOAT_EQ(lastAutomated(77), 0.5f / 64) << "1 stays 1";
    press(right);
    EXPECT_FLOAT_EQ(lastAutomated(77), 1.5f / 64);
    EXPECT_TRUE(digitsShow(voices, 2));

    frame().selectPage(1);
    hostSets(125, 1.0f);  // channel 16
    press(Point{18, 61});
    EXPECT_FLOAT_EQ(lastAutomated(125), 15.5f / 17);
    EXPECT_TRUE(digitsShow(Point{13, 41}, 15));
}

TEST_F(CustomWidgetsTest, ClosedMenusShowTheShortTextOfTheirOption) {
    frame().selectPage(1);
    struct Case {
        int index;
        float value;
        const char* closed;
    };
    const Case cases[] = {
        {99, optionValue(135, 138), "Chan. A.T."},  {107, optionValue(135, 137), "Ch. A.T."},
        {107, optionValue(20, 137), "Ctl 20"},      {100, optionValue(64, 138), "Control 65"},
        {101, optionValue(0, 138), "- - -"},        {115, optionValue(14, 26), "ENV1 Atack"},
        {144, optionValue(0, 129), "- - -"},        {146, optionValue(120, 129), "121 (Reset Ctl.)"},
        {160, optionValue(99, 100), "- - -"},       {161, optionValue(77, 100), "- - -"},
        {162, optionValue(33, 100), "Filter Cutoff Frequency"}, {103, -0.5f, "- - -"},
    };
    for (const Case& c : cases) {
        hostSets(c.index, c.value);
        auto* menu = dynamic_cast<ListMenuWidget*>(frame().widgetFor(c.index));
        ASSERT_NE(menu, nullptr) << c.index;
        EXPECT_STREQ(menu->closedText(), c.closed) << c.index << " " << c.value;
    }

    // What is drawn is that text in the displays' look: compare with a text field of the same size and
    // look showing the expected text in a window of its own.
    hostSets(99, optionValue(135, 138));
    Rect menuArea = frame().widgetFor(99) ? area(106, 37, 65, 12) : Rect{};
    EditorFrame* reference = new EditorFrame(Rect{0, 0, 80, 20}, &parentToken, nullptr);
    OffscreenWindow* referenceWindow = platform.window();
    auto* text = new TextField(Rect{0, 0, 65, 12}, nullptr, 0, "Chan. A.T.", nullptr, 0);
    text->setFont(skin::kTextFont);
    text->setFontColor(skin::kTextColour);
    text->setBackColor(skin::kTextBackColour);
    text->setFrameColor(skin::kTextFrameColour);
    text->setHorizontalAlign(kTextAlignCenter);
    reference->addView(text);
    referenceWindow->paint();
    int differing = 0;
    for (int y = 0; y <= 12; ++y)
        for (int x = 0; x <= 65; ++x)
            differing += window->pixel(menuArea.left + x, menuArea.top + y) != referenceWindow->pixel(x, y);
    reference->release();
    EXPECT_EQ(differing, 0);
}

TEST_F(CustomWidgetsTest, ListMenusOpenWithTheirEntriesAndSendTheChosenOption) {
    frame().selectPage(1);
    hostSets(115, optionValue(0, 26));
    plugin.host.calls.clear();
    std::string statusWhileOpen;
    std::vector<MenuItem> shown;
    window->setMenuChooser([&](const std::vector<MenuItem>& items) {
        shown = items;
        statusWhileOpen = statusLine(0);
        return itemWithText(items, "OSC1 Pitch");
    });
    press(Point{130, 70});  // slot 1's destination
    EXPECT_EQ(statusWhileOpen, "Assignable Mod 1 Destination") << "the parameter is named before the menu opens";
    ASSERT_EQ(shown.size(), 35u);
    EXPECT_TRUE(shown[0].checked);
    EXPECT_TRUE(shown[1].separator);
    EXPECT_EQ(shown[2].text, "OSC1 Pulse Width");
    EXPECT_EQ(lastAutomated(115), optionValue(2, 26));
    auto* destination = dynamic_cast<ListMenuWidget*>(frame().widgetFor(115));
    EXPECT_STREQ(destination->closedText(), "OSC1 Pitch");
    EXPECT_EQ(destination->menu()->getEntryCount(), 0) << "entries exist only while the menu is open";

    // The source menu: controllers 1-127 without 64, 120 and 123, in columns of 28 entries.
    window->setMenuChooser([&](const std::vector<MenuItem>& items) {
        shown = items;
        return itemWithText(items, "Control 121");
    });
    press(Point{130, 42});
    ASSERT_EQ(shown.size(), 139u);
    EXPECT_EQ(itemWithText(shown, "Control 64"), -1);
    EXPECT_EQ(itemWithText(shown, "Control 120"), -1);
    for (std::size_t i = 0; i < shown.size(); ++i)
        EXPECT_EQ(shown[i].columnBreak, i > 0 && i % 28 == 0 && !shown[i].separator) << i;
    EXPECT_EQ(lastAutomated(99), optionValue(121, 138));
}

TEST_F(CustomWidgetsTest, LearnShowsUntilTheNextControllerArrivesFromTheAudioThread) {
    frame().selectPage(1);
    window->setMenuChooser([](const std::vector<MenuItem>& items) { return itemWithText(items, "Learn..."); });
    press(Point{460, 45});  // map 1's controller
    EXPECT_FLOAT_EQ(lastAutomated(144), 128.5f / 129);
    auto* control = dynamic_cast<ListMenuWidget*>(frame().widgetFor(144));
    EXPECT_STREQ(control->closedText(), "Learn...");

    plugin.render(128, {{0xB0, 74, 100}});
    EXPECT_EQ(plugin.allocationsWhileProcessing, 0u);
    EXPECT_STREQ(control->closedText(), "Learn...") << "the audio thread only stored the value";
    editor().idle();
    EXPECT_STREQ(control->closedText(), "74 (Brightness)");
}

TEST_F(CustomWidgetsTest, ProgramSelectorBanksStepsAndMenu) {
    auto numberShown = [this](int number) {
        return shows(skin::kDigits, area(310, 278, 10, 13), Point{0, 13 * (number / 100)}) &&
               shows(skin::kDigits, area(320, 278, 10, 13), Point{0, 13 * (number / 10 % 10)}) &&
               shows(skin::kDigits, area(330, 278, 10, 13), Point{0, 13 * (number % 10)});
    };
    click(286, 280);  // bank B
    EXPECT_EQ(plugin.plugin->getProgram(), 128);
    EXPECT_TRUE(shows(skin::kBankButtons, area(283, 277, 12, 12), Point{12, 12}));
    EXPECT_TRUE(shows(skin::kBankButtons, area(271, 277, 12, 12), Point{0, 0}));

    plugin.dispatch(vst2::effSetProgram, 0, 125);  // the host picks A-126
    editor().idle();
    EXPECT_TRUE(numberShown(126));
    EXPECT_TRUE(shows(skin::kBankButtons, area(271, 277, 12, 12), Point{0, 12}));
    const Point downLeft{309, 298}, downRight{320, 298}, upLeft{327, 298}, upRight{338, 298};
    press(upRight);  // +10 stops at the bank's last program
    EXPECT_EQ(plugin.plugin->getProgram(), 127);
    EXPECT_TRUE(numberShown(128));
    press(downLeft);
    EXPECT_EQ(plugin.plugin->getProgram(), 117);
    press(downRight);
    EXPECT_EQ(plugin.plugin->getProgram(), 116);
    press(upLeft);
    EXPECT_EQ(plugin.plugin->getProgram(), 117);

    // The menu: the bank's 128 names with a separator before every tenth, in columns of 33.
    std::vector<MenuItem> shown;
    window->setMenuChooser([&](const std::vector<MenuItem>& items) {
        shown = items;
        const int entry = 42 + 42 / 10;  // program 43 sits after four separators
        return items[entry].id;
    });
    press(Point{320, 284});
    ASSERT_EQ(shown.size(), 140u);
    int program = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const bool separator = i % 11 == 10;
        EXPECT_EQ(shown[i].separator, separator) << i;
        EXPECT_EQ(shown[i].columnBreak, i % 33 == 0 && i > 0) << i;
        if (separator) continue;
        char name[64] = {};
        plugin.plugin->getProgramNameIndexed(0, program, name);
        EXPECT_EQ(shown[i].text, name[0] ? name : " ") << i;
        EXPECT_EQ(shown[i].checked, program == 117) << i;
        ++program;
    }
    EXPECT_EQ(plugin.plugin->getProgram(), 42);
    EXPECT_TRUE(numberShown(43));
}

TEST_F(CustomWidgetsTest, TheNameFieldRenamesTheProgramAndFollowsProgramChanges) {
    click(420, 299);
    ASSERT_NE(window->activeEdit(), nullptr);
    window->typeText("A very long name for a brass sound");
    window->finishEdit(true);
    editor().idle();
    // One length everywhere: what the field keeps is what the host, the bank and a saved file keep.
    const std::string kept = std::string("A very long name for a brass sound").substr(0, 24);
    char name[32];
    editor().programName(name);
    EXPECT_EQ(name, kept);
    EXPECT_EQ(frame().programName().field()->text(), kept);
    EXPECT_EQ(hostProgramName(), kept);
    plugin.plugin->getProgramNameIndexed(0, plugin.plugin->getProgram(), name);
    EXPECT_EQ(name, kept);

    plugin.dispatch(vst2::effSetProgram, 0, 3);
    editor().idle();
    char expected[64] = {};
    plugin.plugin->getProgramNameIndexed(0, 3, expected);
    EXPECT_STREQ(frame().programName().field()->text(), expected);
}

TEST_F(CustomWidgetsTest, FileMenuCommandsReachThePlugIn) {
    std::vector<MenuItem> shown;
    bool pressedWhileOpen = false;
    auto choose = [&](const char* entry) {
        window->setMenuChooser([&, entry](const std::vector<MenuItem>& items) {
            shown = items;
            pressedWhileOpen = shows(skin::kPageTabsAndFile, area(674, 290, 36, 12), Point{90, 12});
            return itemWithText(items, entry);
        });
        press(Point{690, 296});
    };
    choose("Save Program...");
    ASSERT_EQ(shown.size(), 7u);
    EXPECT_TRUE(shown[3].separator);
    EXPECT_TRUE(pressedWhileOpen);
    EXPECT_TRUE(shows(skin::kPageTabsAndFile, area(674, 290, 36, 12), Point{90, 0}));
    EXPECT_EQ(plugin.dialogs->saves, 1);
    choose("Load Controller Map...");
    EXPECT_EQ(plugin.dialogs->loads, 1);
    EXPECT_EQ(plugin.dialogs->saves, 1);
}

TEST_F(CustomWidgetsTest, ProgramCommandsRecallTheProgramAndLoadTheInitSound) {
    const float stored = plugin.effect->getParameter(plugin.effect, 2);
    hostSets(2, stored > 0.5f ? 0.1f : 0.9f);
    press(Point{370, 274});  // RECALL
    EXPECT_FLOAT_EQ(editor().value(2), stored);
    press(Point{370, 295});  // INIT
    char name[32];
    editor().programName(name);
    EXPECT_STREQ(name, factoryProgram(kNumPrograms - 1).name);
    EXPECT_EQ(plugin.host.count(vst2::audioMasterBeginEdit), 0) << "commands are not parameters";
}

TEST_F(CustomWidgetsTest, PageTabsSwitchPagesWhoseWidgetsKeepFollowingTheHost) {
    const Rect headers = area(0, 0, 300, 30);  // no control of either page lies here
    ASSERT_FALSE(shows(skin::kPage2Background, headers, Point{0, 0})) << "the pages differ here";
    click(640, 296);
    EXPECT_EQ(frame().currentPage(), 1);
    EXPECT_TRUE(shows(skin::kPage2Background, headers, Point{0, 0}));
    EXPECT_TRUE(shows(skin::kPageTabsAndFile, area(626, 290, 42, 12), Point{42, 12}));
    EXPECT_TRUE(shows(skin::kPageTabsAndFile, area(584, 290, 42, 12), Point{0, 0}));
    click(640, 296);  // the lit tab again
    EXPECT_EQ(frame().currentPage(), 1);
    EXPECT_TRUE(shows(skin::kPageTabsAndFile, area(626, 290, 42, 12), Point{42, 12}));

    hostSets(83, 0.3f);  // slot 1's depth knob, shown: it uses the second strip
    EXPECT_TRUE(shows(skin::kModKnobStrip, area(62, 43, 22, 22), Point{0, 22 * 38}));
    hostSets(2, 0.3f);  // page 1's knob, hidden
    click(600, 296);
    EXPECT_EQ(frame().currentPage(), 0);
    EXPECT_TRUE(shows(skin::kPage1Background, headers, Point{0, 0}));
    EXPECT_TRUE(shows(skin::kKnobStrip, area(54, 43, 22, 22), Point{0, 22 * 38}));
}

TEST_F(CustomWidgetsTest, TheAboutOverlayIsModalUntilItsImageIsClicked) {
    const Rect image = area(266, 60, 186, 142);
    click(600, 275);
    EXPECT_TRUE(shows(skin::kAboutImage, image, Point{0, 0}));
    plugin.host.calls.clear();
    click(65, 54);  // "OSC1 Pulse Width", outside the image
    EXPECT_EQ(plugin.host.count(vst2::audioMasterBeginEdit), 0) << "presses outside the image reach nothing";
    EXPECT_TRUE(shows(skin::kAboutImage, image, Point{0, 0}));
    click(300, 100);
    EXPECT_FALSE(shows(skin::kAboutImage, image, Point{0, 0}));
    EXPECT_TRUE(shows(skin::kKnobStrip, area(348, 99, 22, 22),
                      Point{0, 22 * static_cast<int>(127.0 * editor().value(33))}));
}

}  // namespace
}  // namespace tolvane
