// The synthesizer's editor. It keeps a shadow of what the user edits (the program's values and name and
// the 32 controller-map values, as the plug-in last set them) and the two status lines, whether or not its window is open; while open, a WidgetFrame shows them on two pages and a
// common strip.
//
// Threads: setParameter, showProgram, showControllerMaps and showStatus may be called from the audio
// thread (MIDI learn, program change) as well as from the host's threads. They only store values and
// mark them changed; they never touch the window, a widget or a control, and never allocate. The window
// runs on the host's GUI thread: open, close, idle, keys. Each idle takes the changed values, the status
// lines, the program name and the program number and hands them to the widgets, then redraws what changed.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "editor/AtomicText.h"
#include "editor/EditorSkin.h"
#include "editor/SynthController.h"
#include "gui/EditorBase.h"
#include "params/ParameterIds.h"
#include "params/ProgramRecord.h"

namespace tolvane {

class BitmapResource;
class EditorHost;
class WidgetFrame;

class SynthEditor : public EditorBase {
public:
    static constexpr int kWidth = kEditorWidth;
    static constexpr int kHeight = kEditorHeight;
    static constexpr int kStatusTextSize = 64;
    static constexpr int kStartupTextLength = 31;

    // host: what the window's controls call for begin and end edit and host idle (may be null).
    explicit SynthEditor(SynthController& controller, EditorHost* host = nullptr);
    ~SynthEditor() override;

    // ---- the window (GUI thread)
    // Opens the window in the host's parent window: 1 when it opened, 0 when no window can be made here.
    std::int32_t open(void* parentWindow) override;
    void close() override;
    void idle() override;
    // Keys reach the control last pressed (a knob turns with the arrows); any other key is the host's.
    std::int32_t onKeyDown(const KeyCode& key) override;
    std::int32_t onKeyUp(const KeyCode& key) override;
    bool isOpen() const { return frame_ != nullptr; }
    // The open window's frame, or null.
    WidgetFrame* widgetFrame() const;
    // Shows page 0 or 1 while open.
    void selectPage(int page);
    // The skin's bitmap with that resource id while open (null otherwise or when it failed to load).
    BitmapResource* bitmap(int resourceId) const;

    // ---- the model (any thread)
    // Value index 0..175: 0..143 program values, 144..175 the controller-map values.
    void setParameter(std::int32_t index, float value) override;
    void showProgram(const ProgramRecord& record, TextWriter writer = TextWriter::Other);
    void showControllerMaps(const float (&values)[kNumMapValues]);
    void showProgramAndMaps(const ProgramRecord& record, const float (&values)[kNumMapValues]);
    // The name the user gave the program in the name field.
    void setProgramName(const char* name);
    // The two texts the status lines show whenever the window opens (each cut to 31 characters).
    void setStartupStatus(const char* line1, const char* line2);
    // The audio thread passes TextWriter::Audio (it never waits); every other thread the default.
    void showStatus(const char* line1, const char* line2, TextWriter writer = TextWriter::Other);

    // Reading the model (tests, the window).
    float value(int index) const;
    void programName(char (&out)[32]) const;
    // The texts last shown on the status lines (buffers of kStatusTextSize).
    void statusLines(char* line1, char* line2) const;
    // True once for every value index that changed since the last call (the window redraws those).
    bool takeChanged(int index);

    SynthController& controller() const { return controller_; }

private:
    void loadBitmaps();
    void releaseBitmaps();
    // Hands what changed in the model to the widgets (GUI thread, window open).
    void pullChanges(WidgetFrame& frame);

    SynthController& controller_;
    std::array<std::atomic<float>, kNumParameters> values_;
    std::array<std::atomic<bool>, kNumParameters> changed_;
    std::atomic<bool> anyChanged_{false};
    AtomicText<32> name_;
    AtomicText<2 * kStatusTextSize> status_;
    char startup1_[32] = {};
    char startup2_[32] = {};

    // GUI thread only.
    std::array<BitmapResource*, skin::kBitmapCount> bitmaps_{};
    std::uint64_t shownNameVersion_ = 0;
    std::uint64_t shownStatusVersion_ = 0;
};

}  // namespace tolvane
