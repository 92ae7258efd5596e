// The generic plug-in layer: owns the effect record handed to the host, turns dispatcher opcodes into
// virtual operations with their default answers, and wraps the host callback.
#pragma once

#include <atomic>
#include <cstdint>

#include "host/Vst2.h"

namespace tolvane {

// What the dispatcher needs of an editor object.
class PluginEditor {
public:
    virtual ~PluginEditor() = default;
    virtual vst2::intptr getRect(vst2::ERect** rect) = 0;
    virtual vst2::intptr open(void* parentWindow) = 0;
    virtual void close() = 0;
    virtual void idle() = 0;
    virtual vst2::intptr keyDown(const vst2::VstKeyCode& key) = 0;
    virtual vst2::intptr keyUp(const vst2::VstKeyCode& key) = 0;
    virtual vst2::intptr setKnobMode(int mode) = 0;
};

class PluginBase {
public:
    PluginBase(vst2::HostCallback host, int numPrograms, int numParams);
    virtual ~PluginBase();
    PluginBase(const PluginBase&) = delete;
    PluginBase& operator=(const PluginBase&) = delete;

    // Virtual operations, in the order of the base layer.
    virtual void setParameter(int index, float value);
    virtual float getParameter(int index);
    virtual void setParameterAutomated(int index, float value);
    virtual void process(float** inputs, float** outputs, int frames) = 0;
    virtual void processReplacing(float** inputs, float** outputs, int frames);
    virtual vst2::intptr dispatch(int opcode, int index, vst2::intptr value, void* ptr, float opt);
    virtual void open() {}
    virtual void close() {}
    virtual int getProgram() { return curProgram_.load(std::memory_order_relaxed); }
    virtual void setProgram(int program) { curProgram_.store(program, std::memory_order_relaxed); }
    virtual void setProgramName(const char* /*name*/) {}
    virtual void getProgramName(char* name) { name[0] = 0; }
    virtual void getParameterLabel(int index, char* text);
    virtual void getParameterDisplay(int index, char* text);
    virtual void getParameterName(int index, char* text);
    virtual void setSampleRate(float rate) { sampleRate_.store(rate, std::memory_order_relaxed); }
    virtual void setBlockSize(int size) { blockSize_.store(size, std::memory_order_relaxed); }
    virtual void suspend() {}
    virtual void resume() {}
    virtual int processEvents(const vst2::VstEvents* /*events*/) { return 0; }
    virtual bool getProgramNameIndexed(int category, int index, char* text);
    virtual bool getOutputProperties(int index, vst2::VstPinProperties* properties);
    virtual bool getEffectName(char* /*name*/) { return false; }
    virtual bool getVendorString(char* /*text*/) { return false; }
    virtual bool getProductString(char* /*text*/) { return false; }
    virtual int getVendorVersion() { return 0; }
    virtual int canDo(const char* /*text*/) { return 0; }
    // State chunks (offered when effFlagsProgramChunks is set). getChunk points data at the bytes and
    // answers their size (0: none); the bytes stay valid until the next call. setChunk answers 1 when
    // the state was taken, 0 when nothing changed.
    virtual vst2::intptr getChunk(void** data, bool isProgram) {
        if (data) *data = nullptr;
        (void)isProgram;
        return 0;
    }
    virtual vst2::intptr setChunk(const void* /*data*/, vst2::intptr /*size*/, bool /*isProgram*/) { return 0; }

    // Construction helpers.
    void setUniqueId(vst2::int32 id) { effect_.uniqueID = id; }
    void setNumInputs(int n) { effect_.numInputs = n; }
    void setNumOutputs(int n) { effect_.numOutputs = n; }
    void setFlag(vst2::int32 flag, bool on) {
        if (on) effect_.flags |= flag; else effect_.flags &= ~flag;
    }
    void setInitialDelay(int samples) { effect_.initialDelay = samples; }

    float sampleRate() const { return sampleRate_.load(std::memory_order_relaxed); }
    int blockSize() const { return blockSize_.load(std::memory_order_relaxed); }

    // Host calls: each passes the effect record and answers the host's result, or 0 without a host.
    vst2::intptr callHost(int opcode, int index = 0, vst2::intptr value = 0, void* ptr = nullptr, float opt = 0.0f);
    void masterIdle() { callHost(vst2::audioMasterIdle); }
    void wantEvents() { callHost(vst2::audioMasterWantMidi, 0, 1); }
    const vst2::VstTimeInfo* getTimeInfo(int flags);
    void beginEdit(int index) { callHost(vst2::audioMasterBeginEdit, index); }
    void endEdit(int index) { callHost(vst2::audioMasterEndEdit, index); }

    // The editor attaches itself: the record then reports an editor.
    void attachEditor(PluginEditor* editor);
    PluginEditor* editor() const { return editor_; }

    vst2::AEffect* effect() { return &effect_; }
    static PluginBase* fromEffect(vst2::AEffect* e) { return static_cast<PluginBase*>(e->object); }

protected:
    std::atomic<float> sampleRate_{44100.0f};
    PluginEditor* editor_ = nullptr;  // owned by the derived class, which deletes it
    vst2::HostCallback audioMaster_;
    int numPrograms_;
    int numParams_;
    std::atomic<int> curProgram_{0};
    std::atomic<int> blockSize_{1024};
    vst2::AEffect effect_{};
};

}  // namespace tolvane
