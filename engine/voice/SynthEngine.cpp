#include "engine/voice/SynthEngine.h"

#include "engine/voice/VoiceAllocator.h"

namespace tolvane {

SynthEngine::SynthEngine(VoiceAllocator& allocator, const EngineMappings& /*mappings*/) : allocator_(allocator) {}

SynthEngine::~SynthEngine() = default;

void SynthEngine::render(int /*tick*/) {
    left_.fill(0.0f);
    right_.fill(0.0f);
}

void SynthEngine::reset(int /*tick*/) {
    left_.fill(0.0f);
    right_.fill(0.0f);
}

const float* SynthEngine::left() const { return left_.data(); }
const float* SynthEngine::right() const { return right_.data(); }

// The units behind the setters are built with the engine sections; until then the values have no effect.
void SynthEngine::setTempo(float /*bpm*/) {}
void SynthEngine::setOscWaveform(int /*osc*/, int /*index*/) {}
void SynthEngine::setOsc1Sync(bool /*on*/) {}
void SynthEngine::setOscPulseWidth(int /*osc*/, float /*width*/) {}
void SynthEngine::setOscPitch(int /*osc*/, float /*semitones*/) {}
void SynthEngine::setOscDetune(int /*osc*/, float /*semitones*/) {}
void SynthEngine::setOscKeyFollow(int /*osc*/, float /*amount*/) {}
void SynthEngine::setOscModConnection(int /*osc*/, int /*route*/, int /*value*/) {}
void SynthEngine::setOscModDepth(int /*osc*/, int /*route*/, float /*depth*/) {}
void SynthEngine::setOscModVelocitySens(int /*osc*/, int /*route*/, float /*sens*/) {}
void SynthEngine::setOsc2FmDepth(float /*depth*/) {}
void SynthEngine::setMixerLevel(int /*channel*/, float /*level*/) {}
void SynthEngine::setNoiseColor(float /*hz*/) {}
void SynthEngine::setFilterOn(bool /*on*/) {}
void SynthEngine::setFilterType(int /*index*/) {}
void SynthEngine::setSaturationLevel(float /*value*/) {}
void SynthEngine::setSaturationCurve(int /*index*/) {}
void SynthEngine::setFilterCutoff(float /*note*/) {}
void SynthEngine::setFilterResonance(float /*resonance*/) {}
void SynthEngine::setFilterKeyFollow(float /*amount*/) {}
void SynthEngine::setFilterModConnection(int /*route*/, int /*value*/) {}
void SynthEngine::setFilterModDepth(int /*route*/, float /*depth*/) {}
void SynthEngine::setFilterModVelocitySens(int /*route*/, float /*sens*/) {}
void SynthEngine::setAmpModConnection(int /*value*/) {}
void SynthEngine::setAmpLfoDepth(float /*depth*/) {}
void SynthEngine::setAmpVelocitySens(float /*sens*/) {}
void SynthEngine::setEnvAttack(int /*env*/, float /*value*/) {}
void SynthEngine::setEnvAttackCurve(int /*env*/, int /*index*/) {}
void SynthEngine::setEnvDecay(int /*env*/, float /*value*/) {}
void SynthEngine::setEnvDecayCurve(int /*env*/, int /*index*/) {}
void SynthEngine::setEnvSustain(int /*env*/, float /*value*/) {}
void SynthEngine::setEnvRelease(int /*env*/, float /*value*/) {}
void SynthEngine::setLfoWaveform(int /*lfo*/, int /*mask*/) {}
void SynthEngine::setLfoMode(int /*lfo*/, int /*bits*/) {}
void SynthEngine::setLfoSpeed(int /*lfo*/, float /*value*/) {}
void SynthEngine::setLfoPhase(int /*lfo*/, float /*value*/) {}
void SynthEngine::setEffectOn(bool /*on*/) {}
void SynthEngine::setDelayTempoSync(bool /*on*/) {}
void SynthEngine::setEffectMix(float /*value*/) {}
void SynthEngine::setEffectDelayTime(float /*value*/) {}
void SynthEngine::setEffectDiffusion(float /*value*/) {}
void SynthEngine::setEffectFeedback(float /*gain*/) {}
void SynthEngine::setEffectFeedbackConnection(int /*value*/) {}
void SynthEngine::setEffectOverdrive(float /*drive*/) {}
void SynthEngine::setEffectLowCut(float /*hz*/) {}
void SynthEngine::setEffectHighCut(float /*hz*/) {}
void SynthEngine::setEffectModSpeed(float /*hz*/) {}
void SynthEngine::setEffectModDepth(float /*value*/) {}
void SynthEngine::setOutputVolume(float /*gain*/) {}
void SynthEngine::setVoiceDetune(float /*depth*/) {}
void SynthEngine::setPortamentoTime(float /*seconds*/) {}
void SynthEngine::setMasterTune(float /*semitones*/) {}
void SynthEngine::setBendRange(float /*semitones*/) {}
void SynthEngine::refreshSlotSources() {}
void SynthEngine::setSlotDepth(int /*slot*/, float /*depth*/) {}
void SynthEngine::setSlotSens(int /*slot*/, float /*sens*/) {}
void SynthEngine::setSlotSource(int /*slot*/, int /*index*/) {}
void SynthEngine::setSlotSensSource(int /*slot*/, int /*index*/) {}
void SynthEngine::setSlotDestination(int /*slot*/, int /*index*/) {}

}  // namespace tolvane
