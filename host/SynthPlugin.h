// The plug-in object: owns the parameter table, the voice allocator (built as a ControllerRouter, which
// is also the engine's module graph: see VoiceAllocator.h),
// the engine, the programs and the editor, and turns the host's calls into engine work.
//
// Threads. The host calls processEvents and process/processReplacing on its audio thread and everything
// else (parameters, programs, files, the editor) from its other threads. Changes from those threads are
// handed to the audio thread through a lock-free inbox and take effect at the start of the next 64-sample
// block; the host-visible state (current program, stored values, names, editor, status lines) changes at
// once. Changes that arise on the audio thread itself (controller maps, MIDI program change and bank
// select) apply at once. The render path never allocates, locks or waits.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/EditorHost.h"
#include "host/ParameterInbox.h"
#include "host/PluginBase.h"
#include "host/PluginState.h"
#include "host/ProgramStore.h"
#include "params/ControllerRouter.h"
#include "params/FileCommands.h"
#include "params/FileDialogs.h"
#include "params/Formatters.h"
#include "params/ParameterTable.h"
#include "dsp/TempoDisplayState.h"

namespace tolvane {

class SynthEngine;
struct SessionState;

class SynthPlugin : public PluginBase,
                    public SynthController,
                    public EditorHost,
                    private ControllerRouterHost,
                    private FileCommandTarget {
public:
    // dialogs: the platform's file dialogs (may be null: the file commands then report that none exist).
    SynthPlugin(vst2::HostCallback host, std::unique_ptr<FileDialogs> dialogs);
    ~SynthPlugin() override;

    // Host-facing operations.
    void setParameter(int index, float value) override;
    float getParameter(int index) override;
    void process(float** inputs, float** outputs, int frames) override;
    void processReplacing(float** inputs, float** outputs, int frames) override;
    void setProgram(int program) override;
    void runCommand(EditorCommand command) override;
    int getProgram() override { return curProgram_.load(std::memory_order_relaxed); }
    void setProgramName(const char* name) override;
    void getProgramName(char* name) override;
    void getParameterLabel(int index, char* text) override;
    void getParameterDisplay(int index, char* text) override;
    void getParameterName(int index, char* text) override;
    void setSampleRate(float rate) override;
    void setBlockSize(int size) override;
    void suspend() override;
    void resume() override;
    int processEvents(const vst2::VstEvents* events) override;
    bool getProgramNameIndexed(int category, int index, char* text) override;
    bool getOutputProperties(int index, vst2::VstPinProperties* properties) override;
    bool getEffectName(char* name) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    int getVendorVersion() override { return 0x20000; }
    int canDo(const char* text) override;
    vst2::intptr getChunk(void** data, bool isProgram) override;
    vst2::intptr setChunk(const void* data, vst2::intptr size, bool isProgram) override;

    // The state a host keeps with its session, independent of the host interface. Host threads only,
    // never the audio thread. saveState answers the bytes; loadState checks them all before it changes
    // anything and answers false, with the reason on the status lines, when it changed nothing. A loaded
    // state sounds as the saved one did: the next block renders with its values, and the engine is reset
    // only when the state selects a different program than the current one.
    std::vector<unsigned char> saveState(StateScope scope);
    bool loadState(StateScope scope, const void* data, std::size_t size);

    // What the editor calls.
    void setParameterAutomated(int index, float value) override;
    // Gestures on a parameter (a knob drag) are reported to the host; other tags are not parameters.
    void beginEdit(int index) override;
    void endEdit(int index) override;
    void hostIdle() override { masterIdle(); }
    void loadDroppedFile(const char* path) override;
    // The editor announces itself when it is built: the effect record then reports an editor.
    void registerEditor(EditorBase* editor) override;

    // A host that hands parameter changes over on its audio thread (control ports read at the start of a
    // run) sets them here: applied at once, like a mapped controller, and shown without waiting.
    void setParameterOnAudioThread(int index, float value) { setParameterFromMidi(index, value); }

    // Runs the setter of an index on the engine or the allocator (no editor feedback). Audio thread.
    void applyParameter(int index, float value);
    void applyProgramValues(const ProgramRecord& record);
    void applyControllerMaps(const float (&values)[kNumMapValues]);

    // Applies what other threads handed over, as the audio thread does at the start of a block.
    // For tests and offline use when no audio thread runs at the same time.
    void applyPendingChanges();

    // Inspection (tests, tools).
    SynthEngine& engine() { return *engine_; }
    ControllerRouter& router() { return *router_; }
    SynthEditor& synthEditor() { return *synthEditor_; }
    std::uint32_t tick() const { return tick_; }
    // The value each index's setter ran with last. Audio thread only (tests check what it applied).
    float appliedValue(int index) const { return applied_[static_cast<std::size_t>(index)]; }
    // Restarts the block count at tick with an engine reset there, as a reset at 0 does (tests of the
    // wrap after 2^32 blocks). Audio thread or no rendering at the same time.
    void restartTicksAt(std::uint32_t tick);
    std::uint32_t pendingSamples() const { return pendingSamples_; }
    float tempo() const { return tempo_.load(std::memory_order_relaxed); }
    const ValueFormatter* formatterOf(int index) const;

private:
    // Tempo-aware displays read what the LFOs and the effect use, computed from the values last set.
    class LfoDisplay : public LfoDisplayState {
    public:
        explicit LfoDisplay(const SynthPlugin& plugin) : plugin_(plugin) {}
        float tempo() const override { return plugin_.tempo(); }
        int divisionIndex() const override;
        std::atomic<int> modeBits{0};
        std::atomic<float> speed{0.5f};

    private:
        const SynthPlugin& plugin_;
    };
    class DelayDisplay : public DelayDisplayState {
    public:
        DelayDisplay(const SynthPlugin& plugin, const ValueMapping& delayTime) : plugin_(plugin), delayTime_(delayTime) {}
        float tempo() const override { return plugin_.tempo(); }
        int divisionIndex() const override;
        float currentDelaySeconds() const override;
        std::atomic<bool> sync{false};
        std::atomic<float> time{0.5f};

    private:
        const SynthPlugin& plugin_;
        const ValueMapping& delayTime_;
    };
    class EditorAdapter;

    // ControllerRouterHost: audio thread, immediate.
    void setParameterFromMidi(int index, float value) override;
    void selectProgramFromMidi(int program) override;
    int currentProgram() const override { return curProgram_.load(std::memory_order_relaxed); }

    // FileCommandTarget: host threads.
    void applyProgramFromFile(const ProgramRecord& record) override;
    void applyControllerMapsFromFile(const float (&values)[kNumMapValues]) override;
    void replaceBank(int bank, const BankPrograms& programs) override;
    void editBuffer(ProgramRecord& out) const override;
    void editMapValues(float (&out)[kNumMapValues]) const override;
    void bankPrograms(int bank, BankPrograms& out) const override;
    void showStatus(const char* line1, const char* line2) override;

    template <bool Accumulate>
    void render(float** outputs, int frames);
    void startOfProcess();
    void startOfBlock();
    void readHostTempo(bool passOn);
    void noteDisplayValue(int index, float value);
    void showParameterStatus(int index, float value, TextWriter writer);
    void showProgramStatus(int program, TextWriter writer);
    void storeCurrentRecord(const ProgramRecord& record, TextWriter writer = TextWriter::Other);
    void storeValue(int index, float value) {
        values_[static_cast<std::size_t>(index)].store(value, std::memory_order_relaxed);
    }
    void applySessionState(const SessionState& state);

    ParameterTable table_;
    std::unique_ptr<ControllerRouter> router_;
    std::unique_ptr<SynthEngine> engine_;
    std::uint32_t tick_ = 0;
    std::array<float, kNumParameters> applied_{};
    std::uint32_t pendingSamples_ = 0;
    std::uint32_t framesSinceEvents_ = 0;  // host frames rendered since the last event list
    std::atomic<float> tempo_{-1.0f};

    LfoDisplay lfoDisplay_[2];
    DelayDisplay delayDisplay_;
    std::unique_ptr<ValueFormatter> tempoFormatters_[6];
    std::array<const ValueFormatter*, kNumParameters> formatterOf_{};

    ProgramStore programs_;
    // The value last set for each parameter, from whichever source, and the edit buffer's name: what
    // getParameter, the program name, "Save Program..." and the session state answer.
    std::array<std::atomic<float>, kNumParameters> values_;
    AtomicText<32> currentName_;
    std::vector<unsigned char> chunk_;  // the bytes last handed to the host by getChunk

    ParameterInbox inbox_;
    std::atomic<bool> suspendPending_{false};
    std::atomic<float> pendingSampleRate_{0.0f};

    std::unique_ptr<FileDialogs> dialogs_;
    std::unique_ptr<FileCommands> fileCommands_;
    std::unique_ptr<SynthEditor> synthEditor_;
    std::unique_ptr<EditorAdapter> editorAdapter_;
};

}  // namespace tolvane
