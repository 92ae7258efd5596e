#include "host/SynthPlugin.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/framework/DenormalGuard.h"
#include "engine/voice/SynthEngine.h"
#include "params/FactoryBank.h"
#include "dsp/FastMath.h"
#include "dsp/TempoDivisions.h"
#include "params/SessionState.h"
#include "params/TextHelpers.h"

namespace tolvane {
namespace {

constexpr const char* kEffectName = "Tolvane2";
constexpr const char* kVendor = "Brindlecot";
constexpr const char* kProduct = "Tolvane2";
constexpr const char* kVersionLine = "Version 2.0";
constexpr int kMaxParamTextLength = 8;   // parameter names, labels and displays handed to the host

void copyText(char* dst, const char* src, int maxChars) {
    int n = 0;
    while (n < maxChars && src[n]) {
        dst[n] = src[n];
        ++n;
    }
    dst[n] = 0;
}

float sanitise(float v) {
    if (!(v >= 0.0f)) return 0.0f;  // also NaN
    return v > 1.0f ? 1.0f : v;
}

const ProgramRecord* factoryRecord(int index) { return &factoryProgram(index); }

// Used when the platform offers no file dialogs.
class NoFileDialogs : public FileDialogs {
public:
    DialogChoice openLoad(FileKind) override { return DialogChoice{DialogChoice::Outcome::Unavailable, {}}; }
    DialogChoice openSave(FileKind) override { return DialogChoice{DialogChoice::Outcome::Unavailable, {}}; }
};

}  // namespace

// The dispatcher's view of the editor: the host's records and key codes to the editor's and back.
class SynthPlugin::EditorAdapter : public PluginEditor {
public:
    EditorAdapter(SynthEditor& editor, FileCommands& fileCommands) : editor_(editor), fileCommands_(fileCommands) {}
    vst2::intptr getRect(vst2::ERect** rect) override {
        EditorRect* size = nullptr;
        editor_.getRect(&size);
        if (size) rect_ = vst2::ERect{size->top, size->left, size->bottom, size->right};
        if (rect) *rect = &rect_;
        return 1;
    }
    vst2::intptr open(void* parentWindow) override { return editor_.open(parentWindow) ? 1 : 0; }
    void close() override { editor_.close(); }
    // A file dialog's answer is picked up here, on the host's GUI thread, before the editor redraws.
    void idle() override {
        fileCommands_.idle();
        editor_.idle();
    }
    vst2::intptr keyDown(const vst2::VstKeyCode& key) override { return editor_.onKeyDown(toKeyCode(key)); }
    vst2::intptr keyUp(const vst2::VstKeyCode& key) override { return editor_.onKeyUp(toKeyCode(key)); }
    vst2::intptr setKnobMode(int mode) override { return editor_.setKnobMode(mode); }

    static KeyCode toKeyCode(const vst2::VstKeyCode& key) { return KeyCode{key.character, key.virt, key.modifier}; }

private:
    SynthEditor& editor_;
    FileCommands& fileCommands_;
    vst2::ERect rect_{};
};

int SynthPlugin::LfoDisplay::divisionIndex() const {
    if (!(modeBits.load(std::memory_order_relaxed) & 4) || !(tempo() > 0.0f)) return -1;
    return lfoDivisionIndex(speed.load(std::memory_order_relaxed));
}

int SynthPlugin::DelayDisplay::divisionIndex() const {
    if (!sync.load(std::memory_order_relaxed) || !(tempo() > 0.0f)) return -1;
    return delayDivisionIndex(time.load(std::memory_order_relaxed));
}

float SynthPlugin::DelayDisplay::currentDelaySeconds() const {
    int index = divisionIndex();
    if (index >= 0) return delayDivisionSeconds(index, tempo());
    return delayTime_.map(time.load(std::memory_order_relaxed));
}

SynthPlugin::SynthPlugin(vst2::HostCallback host, std::unique_ptr<FileDialogs> dialogs)
    : PluginBase(host, kNumPrograms, kNumParameters),
      lfoDisplay_{LfoDisplay(*this), LfoDisplay(*this)},
      delayDisplay_(*this, table_.mappings().delayTime),
      programs_(factoryRecord),
      dialogs_(dialogs ? std::move(dialogs) : std::unique_ptr<FileDialogs>(new NoFileDialogs)) {
    setNumInputs(0);
    setNumOutputs(2);
    setUniqueId(vst2::fourCC('R', 'w', '4', 'k'));
    setFlag(vst2::effFlagsCanMono, true);
    setFlag(vst2::effFlagsCanReplacing, true);
    setFlag(vst2::effFlagsIsSynth, true);
    setFlag(vst2::effFlagsProgramChunks, true);
    setInitialDelay(0);

    readHostTempo(false);

    router_.reset(new ControllerRouter(*this, kMaxVoices, -1));
    router_->setSampleRate(sampleRate());
    router_->setBlockSize(kBlockSize);
    tick_ = 0;
    pendingSamples_ = 0;

    const ValueMappings& m = table_.mappings();
    engine_.reset(new SynthEngine(*router_, EngineMappings{m.attackTime, m.decayTime, m.rate, m.saturation, m.delayTime}));
    engine_->reset(0);

    tempoFormatters_[0].reset(new LfoModeFormatter(lfoDisplay_[0]));
    tempoFormatters_[1].reset(new LfoSpeedFormatter(lfoDisplay_[0], m.rate));
    tempoFormatters_[2].reset(new LfoModeFormatter(lfoDisplay_[1]));
    tempoFormatters_[3].reset(new LfoSpeedFormatter(lfoDisplay_[1], m.rate));
    tempoFormatters_[4].reset(new DelaySyncFormatter(delayDisplay_));
    tempoFormatters_[5].reset(new DelayTimeFormatter(delayDisplay_, m.delayTime));
    for (int i = 0; i < kNumParameters; ++i) formatterOf_[static_cast<std::size_t>(i)] = table_.formatter(i);
    formatterOf_[param::Lfo1Mode] = tempoFormatters_[0].get();
    formatterOf_[param::Lfo1Speed] = tempoFormatters_[1].get();
    formatterOf_[param::Lfo2Mode] = tempoFormatters_[2].get();
    formatterOf_[param::Lfo2Speed] = tempoFormatters_[3].get();
    formatterOf_[param::DelayTempoSync] = tempoFormatters_[4].get();
    formatterOf_[param::EffectDelayTime] = tempoFormatters_[5].get();

    engine_->setTempo(tempo());

    // No controller and no parameter: 0.5 / 100 and 99.5 / 100 (both quantise to "none").
    float maps[kNumMapValues];
    for (int i = 0; i < kNumControllerMaps; ++i) {
        maps[i] = 0.5f / 100.0f;
        maps[kNumControllerMaps + i] = ControllerRouter::parameterValue(99);
    }
    for (int i = 0; i < kNumMapValues; ++i) storeValue(kFirstMapParameter + i, maps[i]);

    curProgram_.store(0, std::memory_order_relaxed);
    ProgramRecord record;
    programs_.read(0, record);
    storeCurrentRecord(record);
    applyProgramValues(record);
    applyControllerMaps(maps);
    for (int i = 0; i < kNumProgramValues; ++i) noteDisplayValue(i, record.values[i]);
    tick_ = 0;
    engine_->reset(0);
    pendingSamples_ = 0;

    fileCommands_.reset(new FileCommands(*this, *dialogs_));
    synthEditor_.reset(new SynthEditor(*this, this));
    synthEditor_->showProgramAndMaps(record, maps);
    synthEditor_->setStartupStatus(kEffectName, kVersionLine);
    editorAdapter_.reset(new EditorAdapter(*synthEditor_, *fileCommands_));
    attachEditor(editorAdapter_.get());
}

SynthPlugin::~SynthPlugin() {
    // A window still open closes with the editor, before anything it shows goes away.
    attachEditor(nullptr);
    editorAdapter_.reset();
    synthEditor_.reset();
    engine_.reset();
    router_.reset();
}

// ---------------------------------------------------------------------------------------------
// Parameters

void SynthPlugin::setParameter(int index, float value) {
    if (index < 0 || index >= kNumParameters) return;
    value = sanitise(value);
    storeValue(index, value);
    inbox_.set(index, value);
    noteDisplayValue(index, value);
    synthEditor_->setParameter(index, value);
    showParameterStatus(index, value, TextWriter::Other);
}

void SynthPlugin::setParameterAutomated(int index, float value) { PluginBase::setParameterAutomated(index, value); }

void SynthPlugin::beginEdit(int index) {
    if (index >= 0 && index < kNumParameters) PluginBase::beginEdit(index);
}

void SynthPlugin::endEdit(int index) {
    if (index >= 0 && index < kNumParameters) PluginBase::endEdit(index);
}

void SynthPlugin::registerEditor(EditorBase* editor) { setFlag(vst2::effFlagsHasEditor, editor != nullptr); }

void SynthPlugin::setParameterFromMidi(int index, float value) {
    if (index < 0 || index >= kNumParameters) return;
    value = sanitise(value);
    inbox_.discard(index, index + 1);
    applyParameter(index, value);
    storeValue(index, value);
    noteDisplayValue(index, value);
    synthEditor_->setParameter(index, value);
    showParameterStatus(index, value, TextWriter::Audio);
}

// The value last set, by the host, the editor, a controller map, a program or a file: what the engine
// now works with.
float SynthPlugin::getParameter(int index) {
    if (index < 0 || index >= kNumParameters) return 0.0f;
    return values_[static_cast<std::size_t>(index)].load(std::memory_order_relaxed);
}

const ValueFormatter* SynthPlugin::formatterOf(int index) const {
    if (index < 0 || index >= kNumParameters) return nullptr;
    return formatterOf_[static_cast<std::size_t>(index)];
}

void SynthPlugin::getParameterName(int index, char* text) {
    text[0] = 0;
    if (index < 0 || index >= kNumParameters) return;
    copyText(text, table_.shortName(index), kMaxParamTextLength);
}

void SynthPlugin::getParameterLabel(int index, char* text) {
    text[0] = 0;
    const ValueFormatter* f = formatterOf(index);
    if (!f) return;
    char buffer[kFormatterTextSize];
    buffer[0] = 0;
    f->label(buffer);
    copyText(text, buffer, kMaxParamTextLength);
}

void SynthPlugin::getParameterDisplay(int index, char* text) {
    text[0] = 0;
    const ValueFormatter* f = formatterOf(index);
    if (!f) return;
    char buffer[kFormatterTextSize];
    buffer[0] = 0;
    f->display(getParameter(index), buffer);
    copyText(text, buffer, kMaxParamTextLength);
}

void SynthPlugin::showParameterStatus(int index, float value, TextWriter writer) {
    char full[kFormatterTextSize];
    full[0] = 0;
    if (const ValueFormatter* f = formatterOf(index)) f->fullText(value, full);
    synthEditor_->showStatus(table_.longName(index), full, writer);
}

// The tempo-aware displays follow the values last set, whichever thread set them.
void SynthPlugin::noteDisplayValue(int index, float value) {
    switch (index) {
        case param::Lfo1Mode:
            lfoDisplay_[0].modeBits.store(quantise(value, table_.steps(index)), std::memory_order_relaxed);
            break;
        case param::Lfo1Speed: lfoDisplay_[0].speed.store(value, std::memory_order_relaxed); break;
        case param::Lfo2Mode:
            lfoDisplay_[1].modeBits.store(quantise(value, table_.steps(index)), std::memory_order_relaxed);
            break;
        case param::Lfo2Speed: lfoDisplay_[1].speed.store(value, std::memory_order_relaxed); break;
        case param::DelayTempoSync: delayDisplay_.sync.store(switchOn(value), std::memory_order_relaxed); break;
        case param::EffectDelayTime: delayDisplay_.time.store(value, std::memory_order_relaxed); break;
        default: break;
    }
}

// The setter table: each index converts its value through its mapping and calls one operation on the
// engine or the allocator. A reserved index has no setter.
void SynthPlugin::applyParameter(int index, float v) {
    using namespace param;
    if (index >= 0 && index < kNumParameters) applied_[static_cast<std::size_t>(index)] = v;
    const ValueMappings& m = table_.mappings();
    SynthEngine& e = *engine_;
    // The option chosen by v, out of the count the parameter table gives for this index.
    auto option = [this, index](float value) { return quantise(value, table_.steps(index)); };
    if (index >= ModDepth1 && index < ModDepth1 + 8) return e.setSlotDepth(index - ModDepth1, m.bipolarSquare.map(v));
    if (index >= ModSens1 && index < ModSens1 + 8) return e.setSlotSens(index - ModSens1, v);
    if (index >= ModSource1 && index < ModSource1 + 8) return e.setSlotSource(index - ModSource1, option(v));
    if (index >= ModSensSource1 && index < ModSensSource1 + 8)
        return e.setSlotSensSource(index - ModSensSource1, option(v));
    if (index >= ModDestination1 && index < ModDestination1 + 8)
        return e.setSlotDestination(index - ModDestination1, option(v));
    if (index >= MapControl1 && index < MapControl1 + kNumControllerMaps)
        return router_->setMapControl(index - MapControl1, option(v));
    if (index >= MapParameter1 && index < MapParameter1 + kNumControllerMaps)
        return router_->setMapParameter(index - MapParameter1, option(v));

    switch (index) {
        case Osc1Waveform: e.setOscWaveform(0, option(v)); break;
        case Osc1Sync: e.setOsc1Sync(switchOn(v)); break;
        case Osc1PulseWidth: e.setOscPulseWidth(0, v); break;
        case Osc1Pitch: e.setOscPitch(0, m.semitone.map(v)); break;
        case Osc1Detune: e.setOscDetune(0, m.signedUnit.map(v)); break;
        case Osc1KeyFollow: e.setOscKeyFollow(0, m.doubled.map(v)); break;
        case Osc1ModAConnection: e.setOscModConnection(0, 0, option(v)); break;
        case Osc1ModADepth: e.setOscModDepth(0, 0, m.bipolarSquare.map(v)); break;
        case Osc1ModAVelocitySens: e.setOscModVelocitySens(0, 0, v); break;
        case Osc1ModBConnection: e.setOscModConnection(0, 1, option(v)); break;
        case Osc1ModBDepth: e.setOscModDepth(0, 1, m.bipolarSquare.map(v)); break;
        case Osc1ModBVelocitySens: e.setOscModVelocitySens(0, 1, v); break;
        case Osc2Waveform: e.setOscWaveform(1, option(v)); break;
        case Osc2FmDepth: e.setOsc2FmDepth(v); break;
        case Osc2PulseWidth: e.setOscPulseWidth(1, v); break;
        case Osc2Pitch: e.setOscPitch(1, m.semitone.map(v)); break;
        case Osc2Detune: e.setOscDetune(1, m.signedUnit.map(v)); break;
        case Osc2KeyFollow: e.setOscKeyFollow(1, m.doubled.map(v)); break;
        case Osc2ModAConnection: e.setOscModConnection(1, 0, option(v)); break;
        case Osc2ModADepth: e.setOscModDepth(1, 0, m.bipolarSquare.map(v)); break;
        case Osc2ModAVelocitySens: e.setOscModVelocitySens(1, 0, v); break;
        case Osc2ModBConnection: e.setOscModConnection(1, 1, option(v)); break;
        case Osc2ModBDepth: e.setOscModDepth(1, 1, m.bipolarSquare.map(v)); break;
        case Osc2ModBVelocitySens: e.setOscModVelocitySens(1, 1, v); break;
        case MixerOsc1Level: e.setMixerLevel(0, m.levelCurve.map(v)); break;
        case MixerOsc2Level: e.setMixerLevel(1, m.levelCurve.map(v)); break;
        case MixerRingLevel: e.setMixerLevel(2, m.levelCurve.map(v)); break;
        case MixerNoiseLevel: e.setMixerLevel(3, m.levelCurve.map(v)); break;
        case NoiseColor: e.setNoiseColor(noteToHz(m.noiseNote.map(v))); break;
        case FilterOn: e.setFilterOn(switchOn(v)); break;
        case FilterType: e.setFilterType(option(v)); break;
        case FilterSaturationLevel: e.setSaturationLevel(v); break;
        case FilterSaturationCurve: e.setSaturationCurve(option(v)); break;
        case FilterCutoff: e.setFilterCutoff(m.cutoffNote.map(v)); break;
        case FilterResonance: e.setFilterResonance(v); break;
        case FilterKeyFollow: e.setFilterKeyFollow(m.doubled.map(v)); break;
        case FilterModAConnection: e.setFilterModConnection(0, option(v)); break;
        case FilterModADepth: e.setFilterModDepth(0, m.bipolarSquare.map(v)); break;
        case FilterModAVelocitySens: e.setFilterModVelocitySens(0, v); break;
        case FilterModBConnection: e.setFilterModConnection(1, option(v)); break;
        case FilterModBDepth: e.setFilterModDepth(1, m.bipolarSquare.map(v)); break;
        case FilterModBVelocitySens: e.setFilterModVelocitySens(1, v); break;
        case AmpModConnection: e.setAmpModConnection(option(v)); break;
        case AmpLfoDepth: e.setAmpLfoDepth(m.bipolarSquare.map(v)); break;
        case AmpVelocitySens: e.setAmpVelocitySens(v); break;
        case Env1Attack: e.setEnvAttack(0, v); break;
        case Env1AttackCurve: e.setEnvAttackCurve(0, option(v)); break;
        case Env1Decay: e.setEnvDecay(0, v); break;
        case Env1DecayCurve: e.setEnvDecayCurve(0, option(v)); break;
        case Env1Sustain: e.setEnvSustain(0, v); break;
        case Env1Release: e.setEnvRelease(0, v); break;
        case Env2Attack: e.setEnvAttack(1, v); break;
        case Env2AttackCurve: e.setEnvAttackCurve(1, option(v)); break;
        case Env2Decay: e.setEnvDecay(1, v); break;
        case Env2DecayCurve: e.setEnvDecayCurve(1, option(v)); break;
        case Env2Sustain: e.setEnvSustain(1, v); break;
        case Env2Release: e.setEnvRelease(1, v); break;
        case Lfo1Waveform: e.setLfoWaveform(0, option(v)); break;
        case Lfo1Mode: e.setLfoMode(0, option(v)); break;
        case Lfo1Speed: e.setLfoSpeed(0, v); break;
        case Lfo1Phase: e.setLfoPhase(0, v); break;
        case Lfo2Waveform: e.setLfoWaveform(1, option(v)); break;
        case Lfo2Mode: e.setLfoMode(1, option(v)); break;
        case Lfo2Speed: e.setLfoSpeed(1, v); break;
        case Lfo2Phase: e.setLfoPhase(1, v); break;
        case EffectOn: e.setEffectOn(switchOn(v)); break;
        case DelayTempoSync: e.setDelayTempoSync(switchOn(v)); break;
        case EffectMix: e.setEffectMix(v); break;
        case EffectDelayTime: e.setEffectDelayTime(v); break;
        case EffectDiffusion: e.setEffectDiffusion(v); break;
        case EffectFeedback: e.setEffectFeedback(m.signedUnit.map(v)); break;
        case EffectFeedbackConnection: e.setEffectFeedbackConnection(option(v)); break;
        case EffectOverdrive: e.setEffectOverdrive(m.overdrive.map(v)); break;
        case EffectLowCut: e.setEffectLowCut(m.cutFrequency.map(v)); break;
        case EffectHighCut: e.setEffectHighCut(m.cutFrequency.map(v)); break;
        case EffectModSpeed: e.setEffectModSpeed(m.rate.map(v)); break;
        case EffectModDepth: e.setEffectModDepth(v); break;
        case NumberOfVoices: {
            int n = option(v) + 1;
            int before = router_->voiceCount();
            if (n != before) {
                router_->setVoiceCount(n);
                if (n < before) e.refreshSlotSources();
            }
            break;
        }
        case Unison: router_->setUnison(switchOn(v)); break;
        case Legato: router_->setLegato(switchOn(v)); break;
        case VoiceDetune: e.setVoiceDetune(v); break;
        case param::Portamento: {
            float t = m.portamentoCurve.map(v);
            router_->setPortamento(t > 0.0f);
            e.setPortamentoTime(std::max(t, 0.0f));
            break;
        }
        case OutputVolume: e.setOutputVolume(m.levelCurve.map(v)); break;
        case MasterTune: e.setMasterTune(m.signedUnit.map(v)); break;
        case PitchBendRange: e.setBendRange(static_cast<float>(option(v))); break;
        case MidiChannel: router_->setMidiChannel(option(v) - 1); break;
        default: break;  // reserved
    }
}

void SynthPlugin::applyProgramValues(const ProgramRecord& record) {
    for (int i = 0; i < kNumProgramValues; ++i) applyParameter(i, sanitise(record.values[i]));
}

void SynthPlugin::applyControllerMaps(const float (&values)[kNumMapValues]) {
    for (int i = 0; i < kNumMapValues; ++i) applyParameter(kFirstMapParameter + i, sanitise(values[i]));
}

// ---------------------------------------------------------------------------------------------
// Programs

void SynthPlugin::storeCurrentRecord(const ProgramRecord& record, TextWriter writer) {
    for (int i = 0; i < kNumProgramValues; ++i) storeValue(i, sanitise(record.values[i]));
    char name[32];
    std::memcpy(name, record.name, sizeof name);
    name[kMaxProgramNameLength] = 0;
    currentName_.store(name, writer);
}

void SynthPlugin::showProgramStatus(int program, TextWriter writer) {
    char line[32] = "Program A-";
    line[8] = static_cast<char>('A' + program / kProgramsPerBank);
    intToText(line + 10, program % kProgramsPerBank + 1, false);
    synthEditor_->showStatus(line, "", writer);
}

void SynthPlugin::setProgram(int program) {
    if (program >= kNumPrograms) return;
    if (program < 0) {
        // The host's way to the editor's commands.
        if (program >= kLastEditorCommand) runCommand(static_cast<EditorCommand>(program));
        else synthEditor_->showStatus("", "");
        return;
    }
    curProgram_.store(program, std::memory_order_relaxed);
    ProgramRecord record;
    programs_.read(program, record);
    storeCurrentRecord(record);
    {
        ParameterInbox::Batch batch(inbox_);
        for (int i = 0; i < kNumProgramValues; ++i) batch.set(i, sanitise(record.values[i]));
        batch.requestReset();
    }
    for (int i = 0; i < kNumProgramValues; ++i) noteDisplayValue(i, record.values[i]);
    synthEditor_->showProgram(record);
    showProgramStatus(program, TextWriter::Other);
}

void SynthPlugin::selectProgramFromMidi(int program) {
    if (program < 0 || program >= kNumPrograms) return;
    curProgram_.store(program, std::memory_order_relaxed);
    ProgramRecord record;
    programs_.read(program, record);
    // The audio thread's own change supersedes values still waiting from other threads.
    inbox_.discard(0, kNumProgramValues);
    applyProgramValues(record);
    tick_ = 0;
    engine_->reset(0);
    storeCurrentRecord(record, TextWriter::Audio);
    for (int i = 0; i < kNumProgramValues; ++i) noteDisplayValue(i, record.values[i]);
    synthEditor_->showProgram(record, TextWriter::Audio);
    showProgramStatus(program, TextWriter::Audio);
}

void SynthPlugin::getProgramName(char* name) {
    char buffer[32];
    currentName_.load(buffer);
    copyText(name, buffer, kMaxProgramNameLength);
}

void SynthPlugin::setProgramName(const char* name) {
    // The name field of the editor renames the current program in the plug-in's copy of the bank and in
    // the edit buffer, so that saving a program or a bank keeps the name.
    char cut[32] = {};
    if (name) std::strncpy(cut, name, kMaxProgramNameLength);
    int program = curProgram_.load(std::memory_order_relaxed);
    programs_.rename(program, cut);
    currentName_.store(cut);
    synthEditor_->setProgramName(cut);
}

bool SynthPlugin::getProgramNameIndexed(int /*category*/, int index, char* text) {
    if (index < 0 || index >= kNumPrograms) return false;
    char name[32];
    programs_.readName(index, name);
    copyText(text, name, kMaxProgramNameLength);
    return true;
}

void SynthPlugin::runCommand(EditorCommand command) {
    synthEditor_->showStatus("", "");
    switch (command) {
        case EditorCommand::Recall:
            setProgram(curProgram_.load(std::memory_order_relaxed));
            break;
        case EditorCommand::Init: {
            // The init sound into the edit buffer, keeping the program number.
            ProgramRecord init = factoryProgram(kNumPrograms - 1);
            applyProgramFromFile(init);
            synthEditor_->showStatus("Init program", "");
            break;
        }
        case EditorCommand::LoadProgram: fileCommands_->run(FileAction::Load, FileKind::Program); break;
        case EditorCommand::LoadBank: fileCommands_->run(FileAction::Load, FileKind::Bank); break;
        case EditorCommand::LoadMaps: fileCommands_->run(FileAction::Load, FileKind::ControllerMap); break;
        case EditorCommand::SaveProgram: fileCommands_->run(FileAction::Save, FileKind::Program); break;
        case EditorCommand::SaveBank: fileCommands_->run(FileAction::Save, FileKind::Bank); break;
        case EditorCommand::SaveMaps: fileCommands_->run(FileAction::Save, FileKind::ControllerMap); break;
    }
}

// ---------------------------------------------------------------------------------------------
// Files (host threads)

void SynthPlugin::applyProgramFromFile(const ProgramRecord& record) {
    storeCurrentRecord(record);
    {
        ParameterInbox::Batch batch(inbox_);
        for (int i = 0; i < kNumProgramValues; ++i) batch.set(i, sanitise(record.values[i]));
    }
    for (int i = 0; i < kNumProgramValues; ++i) noteDisplayValue(i, record.values[i]);
    synthEditor_->showProgram(record);
}

void SynthPlugin::applyControllerMapsFromFile(const float (&values)[kNumMapValues]) {
    {
        ParameterInbox::Batch batch(inbox_);
        for (int i = 0; i < kNumMapValues; ++i) {
            storeValue(kFirstMapParameter + i, sanitise(values[i]));
            batch.set(kFirstMapParameter + i, sanitise(values[i]));
        }
    }
    synthEditor_->showControllerMaps(values);
}

void SynthPlugin::replaceBank(int bank, const BankPrograms& programs) {
    programs_.replaceBank(bank, programs.programs);
    setProgram(curProgram_.load(std::memory_order_relaxed));
}

void SynthPlugin::editBuffer(ProgramRecord& out) const {
    char name[32];
    currentName_.load(name);
    out.setName(name);
    for (int i = 0; i < kNumProgramValues; ++i) out.values[i] = values_[static_cast<std::size_t>(i)].load(std::memory_order_relaxed);
}

void SynthPlugin::editMapValues(float (&out)[kNumMapValues]) const {
    for (int i = 0; i < kNumMapValues; ++i)
        out[i] = values_[static_cast<std::size_t>(kFirstMapParameter + i)].load(std::memory_order_relaxed);
}

void SynthPlugin::bankPrograms(int bank, BankPrograms& out) const {
    for (int i = 0; i < kProgramsPerBank; ++i) programs_.read(bank * kProgramsPerBank + i, out.programs[i]);
}

void SynthPlugin::showStatus(const char* line1, const char* line2) { synthEditor_->showStatus(line1, line2); }

void SynthPlugin::loadDroppedFile(const char* path) {
    if (path) fileCommands_->loadDroppedFile(path);
}

// ---------------------------------------------------------------------------------------------
// Session state (host threads)

std::vector<unsigned char> SynthPlugin::saveState(StateScope scope) {
    if (scope == StateScope::Program) {
        ProgramRecord record;
        editBuffer(record);
        return writeProgramFile(record);
    }
    auto state = std::make_unique<SessionState>();
    state->currentProgram = curProgram_.load(std::memory_order_relaxed);
    editBuffer(state->editBuffer);
    editMapValues(state->mapValues);
    for (int i = 0; i < kNumPrograms; ++i) programs_.read(i, state->programs[i]);
    return writeSessionState(*state);
}

bool SynthPlugin::loadState(StateScope scope, const void* data, std::size_t size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    FileResult result = FileResult::CannotLoad;
    if (scope == StateScope::Program) {
        ProgramRecord record;
        if (bytes) result = readProgramFile(bytes, size, record);
        if (result == FileResult::Ok) applyProgramFromFile(record);
    } else {
        auto state = std::make_unique<SessionState>();
        if (bytes) result = readSessionState(bytes, size, *state);
        if (result == FileResult::Ok) applySessionState(*state);
    }
    if (result != FileResult::Ok) synthEditor_->showStatus(fileResultFirstLine(result), fileResultSecondLine(result));
    return result == FileResult::Ok;
}

// Everything at once: the bank, the program number, the edit buffer and the maps reach the audio
// thread in one batch. The same program keeps its voices sounding (the values move as if turned);
// another program resets the engine as a program change does.
void SynthPlugin::applySessionState(const SessionState& state) {
    programs_.replaceAll(state.programs);
    const int before = curProgram_.exchange(state.currentProgram, std::memory_order_relaxed);
    float values[kNumParameters];
    std::memcpy(values, state.editBuffer.values, sizeof state.editBuffer.values);
    std::memcpy(values + kFirstMapParameter, state.mapValues, sizeof state.mapValues);
    {
        // Only what differs runs its setter: the values the engine already has stay untouched.
        ParameterInbox::Batch batch(inbox_);
        for (int i = 0; i < kNumParameters; ++i) {
            if (values[i] == getParameter(i)) continue;
            storeValue(i, values[i]);
            batch.set(i, values[i]);
        }
        if (state.currentProgram != before) batch.requestReset();
    }
    char name[32];
    std::memcpy(name, state.editBuffer.name, sizeof name);
    currentName_.store(name);
    for (int i = 0; i < kNumProgramValues; ++i) noteDisplayValue(i, state.editBuffer.values[i]);
    synthEditor_->showProgramAndMaps(state.editBuffer, state.mapValues);
}

vst2::intptr SynthPlugin::getChunk(void** data, bool isProgram) {
    if (!data) return 0;
    chunk_ = saveState(isProgram ? StateScope::Program : StateScope::Bank);
    *data = chunk_.data();
    return static_cast<vst2::intptr>(chunk_.size());
}

vst2::intptr SynthPlugin::setChunk(const void* data, vst2::intptr size, bool isProgram) {
    if (size < 0) size = 0;
    return loadState(isProgram ? StateScope::Program : StateScope::Bank, data, static_cast<std::size_t>(size)) ? 1 : 0;
}

// ---------------------------------------------------------------------------------------------
// Host notifications

void SynthPlugin::setSampleRate(float rate) {
    if (!(rate > 0.0f) || !std::isfinite(rate)) return;
    PluginBase::setSampleRate(rate);
    pendingSampleRate_.store(rate, std::memory_order_release);
}

void SynthPlugin::setBlockSize(int size) { PluginBase::setBlockSize(size); }

void SynthPlugin::suspend() { suspendPending_.store(true, std::memory_order_release); }

void SynthPlugin::resume() { wantEvents(); }

int SynthPlugin::processEvents(const vst2::VstEvents* events) {
    router_->beginEvents(pendingSamples_, framesSinceEvents_);
    framesSinceEvents_ = 0;
    if (!events) return 1;
    for (int i = 0; i < events->numEvents; ++i) {
        const vst2::VstEvent* e = events->events[i];
        if (!e || e->type != vst2::kVstMidiType) continue;
        const auto* midi = reinterpret_cast<const vst2::VstMidiEvent*>(e);
        std::uint32_t position = midi->deltaFrames > 0 ? static_cast<std::uint32_t>(midi->deltaFrames) : 0u;
        router_->pushEvent(position, static_cast<std::uint8_t>(midi->midiData[0]),
                           static_cast<std::uint8_t>(midi->midiData[1]), static_cast<std::uint8_t>(midi->midiData[2]));
    }
    return 1;
}

bool SynthPlugin::getOutputProperties(int index, vst2::VstPinProperties* properties) {
    if (index < 0 || index > 1 || !properties) return false;
    char side = index == 0 ? 'L' : 'R';
    std::strcpy(properties->label, "Tolvane2 * Out");
    *std::strchr(properties->label, '*') = side;
    std::strcpy(properties->shortLabel, "Tol2*");
    *std::strchr(properties->shortLabel, '*') = side;
    properties->flags = vst2::kVstPinIsActive | vst2::kVstPinIsStereo;
    return true;
}

bool SynthPlugin::getEffectName(char* name) {
    std::strcpy(name, kEffectName);
    return true;
}

bool SynthPlugin::getVendorString(char* text) {
    std::strcpy(text, kVendor);
    return true;
}

bool SynthPlugin::getProductString(char* text) {
    std::strcpy(text, kProduct);
    return true;
}

int SynthPlugin::canDo(const char* text) {
    if (std::strcmp(text, "receiveVstEvents") == 0 || std::strcmp(text, "receiveVstMidiEvent") == 0) return 1;
    return -1;
}

// ---------------------------------------------------------------------------------------------
// Rendering (audio thread)

void SynthPlugin::readHostTempo(bool passOn) {
    const vst2::VstTimeInfo* info = getTimeInfo(vst2::kVstTempoValid);
    float stored = tempo_.load(std::memory_order_relaxed);
    if (info) {
        float t = static_cast<float>(info->tempo);
        if (!std::isfinite(t)) t = -1.0f;
        if (t != stored) {
            tempo_.store(t, std::memory_order_relaxed);
            if (passOn) engine_->setTempo(t);
        }
    } else if (stored >= 0.0f) {
        tempo_.store(-1.0f, std::memory_order_relaxed);
        if (passOn) engine_->setTempo(-1.0f);
    }
}

void SynthPlugin::startOfProcess() {
    float rate = pendingSampleRate_.exchange(0.0f, std::memory_order_acquire);
    if (rate > 0.0f) router_->setSampleRate(rate);
    if (suspendPending_.exchange(false, std::memory_order_acquire)) {
        tick_ = 0;
        engine_->reset(0);
        pendingSamples_ = 0;
    }
}

void SynthPlugin::startOfBlock() {
    inbox_.drain([this](int index, float value) { applyParameter(index, value); },
                 [this] {
                     tick_ = 0;
                     engine_->reset(0);
                 });
}

void SynthPlugin::restartTicksAt(std::uint32_t tick) {
    tick_ = tick;
    engine_->reset(DspModule::tickOf(tick));
}

void SynthPlugin::applyPendingChanges() {
    startOfProcess();
    startOfBlock();
}

template <bool Accumulate>
void SynthPlugin::render(float** outputs, int frames) {
    if (frames <= 0 || !outputs || !outputs[0] || !outputs[1]) return;
    DenormalGuard denormals;
    framesSinceEvents_ += frames > 0 ? static_cast<std::uint32_t>(frames) : 0u;
    startOfProcess();
    readHostTempo(true);
    float* left = outputs[0];
    float* right = outputs[1];
    auto deliver = [&](int offset, int count) {
        const float* l = engine_->left() + offset;
        const float* r = engine_->right() + offset;
        if (Accumulate) {
            for (int i = 0; i < count; ++i) {
                left[i] += l[i];
                right[i] += r[i];
            }
        } else {
            std::memcpy(left, l, static_cast<std::size_t>(count) * sizeof(float));
            std::memcpy(right, r, static_cast<std::size_t>(count) * sizeof(float));
        }
        left += count;
        right += count;
    };

    if (pendingSamples_ != 0) {
        int offset = kBlockSize - static_cast<int>(pendingSamples_);
        if (static_cast<int>(pendingSamples_) >= frames) {
            deliver(offset, frames);
            pendingSamples_ -= static_cast<std::uint32_t>(frames);
            return;
        }
        int n = static_cast<int>(pendingSamples_);
        deliver(offset, n);
        frames -= n;
        pendingSamples_ = 0;
    }
    while (frames > 0) {
        startOfBlock();
        router_->processEvents(kBlockSize);
        ++tick_;
        engine_->render(DspModule::tickOf(tick_));
        int n = frames < kBlockSize ? frames : kBlockSize;
        if (n < kBlockSize) pendingSamples_ = static_cast<std::uint32_t>(kBlockSize - n);
        deliver(0, n);
        frames -= n;
    }
}

void SynthPlugin::process(float** /*inputs*/, float** outputs, int frames) { render<true>(outputs, frames); }

void SynthPlugin::processReplacing(float** /*inputs*/, float** outputs, int frames) { render<false>(outputs, frames); }

}  // namespace tolvane
