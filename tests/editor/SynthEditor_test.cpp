// The editor's window as a host sees it: opening and closing (also with the plug-in closed under it),
// what idle draws, and values that arrive from the audio thread.
#include <cstring>

#include "editor/DragKnob.h"
#include "editor/EditorSkin.h"
#include "editor/KnobWidget.h"
#include "gui/TextField.h"
#include "params/FactoryBank.h"
#include "tests/editor/EditorTestSupport.h"

namespace tolvane {
namespace {

using testing::PluginFixture;

class SynthEditorTest : public testing::EditorTest {
protected:
    DragKnob& knob(int index) { return *dynamic_cast<KnobWidget*>(frame().widgetFor(index))->knob(); }
};

TEST(SynthEditorWithoutWindow, OpeningAnswersZeroWhereNoWindowCanBeMade) {
    PluginFixture plugin;
    installPlatform(nullptr);
    int parent = 0;
    EXPECT_EQ(plugin.dispatch(vst2::effEditOpen, 0, 0, &parent), 0);
    EXPECT_FALSE(plugin.plugin->synthEditor().isOpen());
}

TEST_F(SynthEditorTest, OpensOnPageOneWithTheStartupTextsEveryTimeAndClosesWithThePlugIn) {
    EXPECT_EQ(window->width(), 718);
    EXPECT_EQ(window->height(), 310);
    EXPECT_EQ(window->parent(), &parentToken);
    EXPECT_EQ(frame().currentPage(), 0);
    EXPECT_STREQ(frame().statusLine(0)->text(), "Tolvane2");
    EXPECT_STREQ(frame().statusLine(1)->text(), "Version 2.0");

    // The status lines show what the plug-in reports.
    plugin.dispatch(vst2::effSetProgram, 0, 130);
    editor().idle();
    EXPECT_STREQ(frame().statusLine(0)->text(), "Program B-3");
    hostSets(2, 0.4f);
    frame().selectPage(1);
    EXPECT_STREQ(frame().statusLine(0)->text(), "OSC1 Pulse Width");
    plugin.dispatch(vst2::effEditClose);
    EXPECT_EQ(platform.windowsAlive(), 0);
    ASSERT_EQ(plugin.dispatch(vst2::effEditOpen, 0, 0, &parentToken), 1);
    EXPECT_EQ(frame().currentPage(), 0);
    EXPECT_STREQ(frame().statusLine(0)->text(), "Tolvane2");
    EXPECT_FLOAT_EQ(knob(2).getValue(), 0.4f);

    // Closing the plug-in under an open editor closes the window, even while the name is being edited.
    press(Point{420, 299});
    plugin.dispatch(vst2::effClose);
    EXPECT_EQ(platform.windowsAlive(), 0);
}

TEST_F(SynthEditorTest, IdleDrawsOnlyWhatChangedAndValuesFromTheAudioThreadWaitForIt) {
    int passes = window->drawPasses();
    for (int i = 0; i < 20; ++i) editor().idle();
    EXPECT_EQ(window->drawPasses(), passes) << "nothing changed, nothing drawn";

    // A host change: one pass that draws the knob, then nothing again.
    plugin.effect->setParameter(plugin.effect, 5, editor().value(5) > 0.5f ? 0.1f : 0.9f);
    for (int i = 0; i < 5; ++i) editor().idle();
    EXPECT_EQ(window->drawPasses(), passes + 1);
    EXPECT_TRUE(shows(skin::kKnobStrip, area(96, 43, 22, 22), Point{0, 22 * static_cast<int>(127.0 * editor().value(5))}));

    // Controller 7 drives "OSC1 Pulse Width" through map 1. The audio thread only stores the value.
    hostSets(144, 7.5f / 129);
    hostSets(160, 2.5f / 100);
    hostSets(2, 0.0f);
    passes = window->drawPasses();
    plugin.render(256, {{0xB0, 7, 127}});
    EXPECT_EQ(plugin.allocationsWhileProcessing, 0u);
    EXPECT_FLOAT_EQ(editor().value(2), 1.0f) << "the model has the value";
    EXPECT_FLOAT_EQ(knob(2).getValue(), 0.0f) << "the control does not, yet";
    EXPECT_EQ(window->drawPasses(), passes);
    editor().idle();
    EXPECT_FLOAT_EQ(knob(2).getValue(), 1.0f);
    EXPECT_TRUE(shows(skin::kKnobStrip, area(54, 43, 22, 22), Point{0, 22 * 127}));
}

TEST_F(SynthEditorTest, ProgramChangesFromMidiReachEveryWidgetAndTheSelector) {
    plugin.render(64, {{0xC0, 5, 0}});
    editor().idle();
    EXPECT_EQ(plugin.plugin->getProgram(), 5);
    for (int index : {0, 2, 33, 77, 83, 99, 123})
        EXPECT_FLOAT_EQ(frame().widgetFor(index)->value(), factoryProgram(5).values[index]) << index;
    EXPECT_TRUE(shows(skin::kDigits, area(330, 278, 10, 13), Point{0, 13 * 6}));
}

}  // namespace
}  // namespace tolvane
