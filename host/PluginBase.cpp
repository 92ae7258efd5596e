#include "host/PluginBase.h"

#include <cstring>

namespace tolvane {
namespace {

vst2::intptr VST_CALL dispatcherTrampoline(vst2::AEffect* e, vst2::int32 opcode, vst2::int32 index,
                                           vst2::intptr value, void* ptr, float opt) {
    PluginBase* plugin = PluginBase::fromEffect(e);
    if (!plugin) return 0;
    vst2::intptr result = plugin->dispatch(opcode, index, value, ptr, opt);
    if (opcode == vst2::effClose) {
        // The host must not use the record afterwards: the object goes away exactly once.
        e->object = nullptr;
        delete plugin;
        return 1;
    }
    return result;
}

void VST_CALL processTrampoline(vst2::AEffect* e, float** inputs, float** outputs, vst2::int32 frames) {
    if (PluginBase* plugin = PluginBase::fromEffect(e)) plugin->process(inputs, outputs, frames);
}

void VST_CALL processReplacingTrampoline(vst2::AEffect* e, float** inputs, float** outputs, vst2::int32 frames) {
    if (PluginBase* plugin = PluginBase::fromEffect(e)) plugin->processReplacing(inputs, outputs, frames);
}

void VST_CALL setParameterTrampoline(vst2::AEffect* e, vst2::int32 index, float value) {
    if (PluginBase* plugin = PluginBase::fromEffect(e)) plugin->setParameter(index, value);
}

float VST_CALL getParameterTrampoline(vst2::AEffect* e, vst2::int32 index) {
    PluginBase* plugin = PluginBase::fromEffect(e);
    return plugin ? plugin->getParameter(index) : 0.0f;
}

}  // namespace

PluginBase::PluginBase(vst2::HostCallback host, int numPrograms, int numParams)
    : audioMaster_(host), numPrograms_(numPrograms), numParams_(numParams) {
    effect_.magic = vst2::kEffectMagic;
    effect_.dispatcher = dispatcherTrampoline;
    effect_.process = processTrampoline;
    effect_.setParameter = setParameterTrampoline;
    effect_.getParameter = getParameterTrampoline;
    effect_.processReplacing = processReplacingTrampoline;
    effect_.processDoubleReplacing = nullptr;
    effect_.numPrograms = numPrograms;
    effect_.numParams = numParams;
    effect_.numInputs = 1;
    effect_.numOutputs = 2;
    effect_.flags = 0;
    effect_.ioRatio = 1.0f;
    effect_.object = this;
    effect_.user = nullptr;
    effect_.uniqueID = vst2::fourCC('N', 'o', 'E', 'f');
    effect_.version = 1;
}

PluginBase::~PluginBase() = default;

void PluginBase::setParameter(int, float) {}
float PluginBase::getParameter(int) { return 0.0f; }

void PluginBase::setParameterAutomated(int index, float value) {
    setParameter(index, value);
    callHost(vst2::audioMasterAutomate, index, 0, nullptr, value);
}

void PluginBase::processReplacing(float**, float**, int) {}

void PluginBase::getParameterLabel(int, char* text) { text[0] = 0; }
void PluginBase::getParameterDisplay(int, char* text) { text[0] = 0; }
void PluginBase::getParameterName(int, char* text) { text[0] = 0; }
bool PluginBase::getProgramNameIndexed(int, int, char* text) {
    text[0] = 0;
    return false;
}
bool PluginBase::getOutputProperties(int, vst2::VstPinProperties*) { return false; }

vst2::intptr PluginBase::callHost(int opcode, int index, vst2::intptr value, void* ptr, float opt) {
    if (!audioMaster_) return 0;
    return audioMaster_(&effect_, opcode, index, value, ptr, opt);
}

const vst2::VstTimeInfo* PluginBase::getTimeInfo(int flags) {
    return reinterpret_cast<const vst2::VstTimeInfo*>(callHost(vst2::audioMasterGetTime, 0, flags));
}

void PluginBase::attachEditor(PluginEditor* editor) {
    editor_ = editor;
    setFlag(vst2::effFlagsHasEditor, editor != nullptr);
}

vst2::intptr PluginBase::dispatch(int opcode, int index, vst2::intptr value, void* ptr, float opt) {
    using namespace vst2;
    char* text = static_cast<char*>(ptr);
    switch (opcode) {
        case effOpen: open(); return 0;
        case effClose: close(); return 0;
        case effSetProgram:
            // Negative values carry editor commands and pass on.
            if (value < numPrograms_) setProgram(static_cast<int>(value));
            return 0;
        case effGetProgram: return getProgram();
        case effSetProgramName: return 0;
        case effGetProgramName: if (text) getProgramName(text); return 0;
        case effGetParamLabel: if (text) getParameterLabel(index, text); return 0;
        case effGetParamDisplay: if (text) getParameterDisplay(index, text); return 0;
        case effGetParamName: if (text) getParameterName(index, text); return 0;
        case effGetVu: return 0;
        case effSetSampleRate: setSampleRate(opt); return 0;
        case effSetBlockSize: setBlockSize(static_cast<int>(value)); return 0;
        case effMainsChanged:
            if (value == 0) suspend(); else resume();
            return 0;
        case effEditGetRect: return editor_ ? editor_->getRect(static_cast<ERect**>(ptr)) : 0;
        case effEditOpen: return editor_ ? editor_->open(ptr) : 0;
        case effEditClose: if (editor_) editor_->close(); return 0;
        case effEditIdle: if (editor_) editor_->idle(); return 0;
        case effIdentify: return fourCC('N', 'v', 'E', 'f');
        // Index 0 is the bank (the whole state), 1 the current program.
        case effGetChunk: return getChunk(static_cast<void**>(ptr), index != 0);
        case effSetChunk: return setChunk(ptr, value, index != 0);
        case effProcessEvents: processEvents(static_cast<const VstEvents*>(ptr)); return 1;
        case effCanBeAutomated: return 1;
        case effString2Parameter: return 0;
        case effGetNumProgramCategories: return 1;
        case effGetProgramNameIndexed: return text && getProgramNameIndexed(static_cast<int>(value), index, text) ? 1 : 0;
        case effCopyProgram: return 0;
        case effConnectInput:
        case effConnectOutput: return 1;
        case effGetInputProperties: return 0;
        case effGetOutputProperties:
            return getOutputProperties(index, static_cast<VstPinProperties*>(ptr)) ? 1 : 0;
        case effGetPlugCategory: return (effect_.flags & effFlagsIsSynth) ? kPlugCategSynth : 0;
        case effSetBlockSizeAndSampleRate:
            blockSize_.store(static_cast<int>(value), std::memory_order_relaxed);
            sampleRate_.store(opt, std::memory_order_relaxed);
            return 1;
        case effGetEffectName: return text && getEffectName(text) ? 1 : 0;
        case effGetVendorString: return text && getVendorString(text) ? 1 : 0;
        case effGetProductString: if (text) getProductString(text); return 0;
        case effGetVendorVersion: return getVendorVersion();
        case effCanDo: return text ? canDo(text) : -1;
        case effKeysRequired: return 1;
        case effGetVstVersion: return 2200;
        case effEditKeyDown:
        case effEditKeyUp: {
            if (!editor_) return 0;
            VstKeyCode key{index, static_cast<unsigned char>(value), static_cast<unsigned char>(static_cast<int>(opt))};
            return opcode == effEditKeyDown ? editor_->keyDown(key) : editor_->keyUp(key);
        }
        case effSetEditKnobMode: return editor_ ? editor_->setKnobMode(static_cast<int>(value)) : 0;
        case effGetCurrentMidiProgram: return -1;
        default: return 0;
    }
}

}  // namespace tolvane
