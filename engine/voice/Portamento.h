// Portamento: the voice's note as a gliding note number.
//
// The glide follows its note input with a one-pole lag, y := (1 - c) note + c y, where the shared
// coefficient c = 10^(-3 / (blockRate T + 1)) makes a step cover 60 dB in about the portamento time T.
// On the voice's trigger the glide jumps to the note: the allocator shows the previous note in the
// trigger block when portamento is on, so the voice jumps there and then glides to its key. A tick
// gap (the unit was not updated in the previous block) or a reset makes it jump as well.
#pragma once

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/voice/NoteSources.h"

namespace tolvane {

// Inputs: 0 note, 1 trigger, 2 coefficient.
class Glide : public DspModule {
public:
    enum Input { kNote, kTrigger, kCoefficient, kNumInputs };
    explicit Glide(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}
    void updateBlock(int tick) override;
    void onReset() override { jump_ = true; }

private:
    bool jump_ = true;
};

class Portamento {
public:
    // The time before the "Portamento" parameter is first set.
    static constexpr float kInitialTime = 0.01f;

    Portamento(ModuleGraph& graph, PolyModule& trigger);

    // Negative times count as 0.
    void setTime(float seconds);
    float time() const { return coefficient_.at(0).time(); }

    // The gliding note number, one instance per voice.
    Poly<Glide>& output() { return glide_; }
    NoteSourceContainer<CurrentNoteSource>& notes() { return notes_; }

private:
    NoteSourceContainer<CurrentNoteSource> notes_;
    Poly<SmoothCoefficient> coefficient_;
    Poly<Glide> glide_;
};

}  // namespace tolvane
