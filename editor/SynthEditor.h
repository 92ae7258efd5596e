// The synthesizer's editor. It keeps a shadow of what the user edits (the program record and the 32
// controller-map values: what "Save Program..." and "Save Controller Map..." write) and the two status
// lines, whether or not its window is open.
//
// Threads: setParameter, showProgram, showControllerMaps and showStatus may be called from the audio
// thread (MIDI learn, program change) as well as from the host's threads. They only store values and
// mark them changed; the window (GUI thread) picks the changes up in its idle call.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "editor/AtomicText.h"
#include "editor/SynthController.h"
#include "params/ParameterIds.h"
#include "params/ProgramRecord.h"

namespace tolvane {

class SynthEditor {
public:
    static constexpr int kWidth = 718;
    static constexpr int kHeight = 310;
    static constexpr int kStatusTextSize = 64;

    explicit SynthEditor(SynthController& controller);
    ~SynthEditor();

    // The editor rectangle: top 0, left 0, bottom 310, right 718.
    void getRect(int& top, int& left, int& bottom, int& right) const;
    // Opens the window in the host's parent window; false when no window can be made.
    bool open(void* parentWindow);
    void close();
    void idle();
    bool isOpen() const { return open_; }

    // Value index 0..175: 0..143 program values, 144..175 the controller-map values.
    void setParameter(int index, float value);
    void showProgram(const ProgramRecord& record, TextWriter writer = TextWriter::Other);
    void showControllerMaps(const float (&values)[kNumMapValues]);
    void showProgramAndMaps(const ProgramRecord& record, const float (&values)[kNumMapValues]);
    // The name the user gave the program in the name field.
    void setProgramName(const char* name);
    void setStartupStatus(const char* line1, const char* line2);
    // The audio thread passes TextWriter::Audio (it never waits); every other thread the default.
    void showStatus(const char* line1, const char* line2, TextWriter writer = TextWriter::Other);

    // Reading the model (tests, files, the window).
    float value(int index) const;
    void editBuffer(ProgramRecord& out) const;
    void mapValues(float (&out)[kNumMapValues]) const;
    void programName(char (&out)[32]) const;
    // The texts last shown on the status lines (buffers of kStatusTextSize).
    void statusLines(char* line1, char* line2) const;
    // True once for every value index that changed since the last call (the window redraws those).
    bool takeChanged(int index);

    SynthController& controller() const { return controller_; }

private:
    SynthController& controller_;
    std::array<std::atomic<float>, kNumParameters> values_;
    std::array<std::atomic<bool>, kNumParameters> changed_;
    AtomicText<32> name_;
    AtomicText<2 * kStatusTextSize> status_;
    char startup1_[32] = {};
    char startup2_[32] = {};
    bool open_ = false;
};

}  // namespace tolvane
