#include "tools/render/VstHost.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <memory>

#include <dlfcn.h>

namespace tolvane {

namespace {

using vst2::AEffect;
using vst2::int32;
using vst2::intptr;

// Host opcodes answered beyond the ones the shared declarations name.
constexpr int32 kHostGetSampleRate = 16;
constexpr int32 kHostGetBlockSize = 17;
constexpr int32 kHostGetVendorString = 32;
constexpr int32 kHostGetProductString = 33;
constexpr int32 kHostGetVendorVersion = 34;
constexpr int32 kHostCanDo = 37;

// Time information flags.
constexpr int32 kTransportChanged = 1;
constexpr int32 kTransportPlaying = 1 << 1;
constexpr int32 kNanosValid = 1 << 8;
constexpr int32 kPpqPosValid = 1 << 9;
constexpr int32 kBarsValid = 1 << 11;
constexpr int32 kTimeSigValid = 1 << 13;

// The host whose plug-in is being created: during the entry call the effect record does not exist
// yet (or does not carry our pointer), so the callback finds its host here.
thread_local VstHost* hostUnderConstruction = nullptr;

// CPU time of the whole process (every thread), in seconds.
double processCpuSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

void copyText(void* destination, const char* text) {
    if (destination) std::strcpy(static_cast<char*>(destination), text);
}

// The MIDI of one rendering: every message becomes one MIDI event, placed on the frame grid. The records
// live until the end of the rendering, so the plug-in may keep the pointers it received until its next call.
class EventSchedule {
public:
    EventSchedule(const std::vector<MidiMessage>& messages, std::uint64_t totalFrames, double sampleRate,
                  int blockSize) {
        struct Placed {
            std::uint64_t frame;
            std::size_t index;
        };
        std::vector<Placed> order;
        order.reserve(messages.size());
        for (std::size_t i = 0; i < messages.size(); ++i) {
            const double frame = std::floor(std::max(0.0, messages[i].seconds) * sampleRate + 0.5);
            if (frame < static_cast<double>(totalFrames)) order.push_back(Placed{static_cast<std::uint64_t>(frame), i});
        }
        std::stable_sort(order.begin(), order.end(), [](const Placed& a, const Placed& b) { return a.frame < b.frame; });

        frames_.resize(order.size());
        events_.resize(order.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            const MidiMessage& message = messages[order[i].index];
            frames_[i] = order[i].frame;
            vst2::VstMidiEvent& event = events_[i];
            event = vst2::VstMidiEvent{};
            event.type = vst2::kVstMidiType;
            event.byteSize = sizeof(vst2::VstMidiEvent);
            for (int b = 0; b < message.size && b < 3; ++b) event.midiData[b] = static_cast<char>(message.bytes[b]);
        }
        allocateList(blockSize);
    }

    // The list for the block [blockStart, blockEnd) of the host's timeline, whose rendering began at
    // renderStart: the events due in it, with their offsets into the block.
    vst2::VstEvents* eventsOfBlock(std::uint64_t renderStart, std::uint64_t blockStart, std::uint64_t blockEnd) {
        int count = 0;
        while (next_ < events_.size() && renderStart + frames_[next_] < blockEnd) {
            events_[next_].deltaFrames = static_cast<int32>(renderStart + frames_[next_] - blockStart);
            list_->events[count++] = reinterpret_cast<vst2::VstEvent*>(&events_[next_]);
            ++next_;
        }
        list_->numEvents = count;
        list_->reserved = 0;
        return list_;
    }

private:
    // The event list: a count, a reserved word and then as many pointers as the fullest block needs.
    void allocateList(int blockSize) {
        std::size_t mostInBlock = 0;
        const auto block = static_cast<std::uint64_t>(blockSize);
        for (std::size_t first = 0; first < frames_.size();) {
            std::size_t last = first;
            while (last < frames_.size() && frames_[last] / block == frames_[first] / block) ++last;
            mostInBlock = std::max(mostInBlock, last - first);
            first = last;
        }
        const std::size_t listBytes =
            offsetof(vst2::VstEvents, events) + std::max<std::size_t>(mostInBlock, 2) * sizeof(vst2::VstEvent*);
        storage_.reset(new std::max_align_t[(listBytes + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t)]());
        list_ = reinterpret_cast<vst2::VstEvents*>(storage_.get());
    }

    std::vector<std::uint64_t> frames_;  // by event, from the start of the rendering
    std::vector<vst2::VstMidiEvent> events_;
    std::unique_ptr<std::max_align_t[]> storage_;
    vst2::VstEvents* list_ = nullptr;
    std::size_t next_ = 0;
};

// Audio buffers of one block: silent inputs for plug-ins that expect some, and at least two outputs.
struct BlockBuffers {
    BlockBuffers(int numInputs, int numOutputs, int blockSize)
        : inputs(static_cast<std::size_t>(std::max(numInputs, 0)), std::vector<float>(blockSize, 0.0f)),
          outputs(static_cast<std::size_t>(std::max(numOutputs, 2)), std::vector<float>(blockSize, 0.0f)),
          inputPointers(inputs.size() + 1, nullptr),
          outputPointers(outputs.size(), nullptr),
          right(numOutputs >= 2 ? outputs[1].data() : outputs[0].data()) {
        for (std::size_t i = 0; i < inputs.size(); ++i) inputPointers[i] = inputs[i].data();
        for (std::size_t i = 0; i < outputs.size(); ++i) outputPointers[i] = outputs[i].data();
    }

    // Silence in the inputs, and in the outputs for a plug-in that adds to them.
    void clear(int frames, bool outputsToo) {
        for (auto& input : inputs) std::fill(input.begin(), input.begin() + frames, 0.0f);
        if (outputsToo)
            for (auto& output : outputs) std::fill(output.begin(), output.begin() + frames, 0.0f);
    }

    std::vector<std::vector<float>> inputs;
    std::vector<std::vector<float>> outputs;
    std::vector<float*> inputPointers;
    std::vector<float*> outputPointers;
    const float* right;
};

}  // namespace

VstHost::~VstHost() {
    close();
    if (module_) ::dlclose(module_);
}

bool VstHost::loadModule(const std::string& path, std::string& error) {
    if (module_ || effect_) {
        error = "a plug-in is already loaded";
        return false;
    }
    // dlopen searches the library path for bare names; a plug-in path is always a file path.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    module_ = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module_) {
        const char* reason = ::dlerror();
        error = "cannot load plug-in " + path + ": " + (reason ? reason : "unknown reason");
        return false;
    }
    void* symbol = ::dlsym(module_, "VSTPluginMain");
    if (!symbol) symbol = ::dlsym(module_, "main");
    if (!symbol) {
        error = path + " is not a VST2 module: it exports neither VSTPluginMain nor main";
        return false;
    }
    vst2::EntryProc entry;
    static_assert(sizeof entry == sizeof symbol, "function and object pointers differ in size");
    std::memcpy(&entry, &symbol, sizeof entry);
    if (!create(entry, error)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

bool VstHost::create(vst2::EntryProc entry, std::string& error) {
    if (effect_) {
        error = "a plug-in is already loaded";
        return false;
    }
    hostUnderConstruction = this;
    AEffect* effect = entry(&VstHost::hostCallback);
    hostUnderConstruction = nullptr;
    if (!effect) {
        error = "the plug-in's entry point returned no effect";
        return false;
    }
    if (effect->magic != vst2::kEffectMagic) {
        error = "not a VST2 plug-in: the effect record has the wrong magic number";
        return false;
    }
    effect->user = this;
    effect_ = effect;
    dispatch(vst2::effOpen);
    return true;
}

std::string VstHost::effectName() const {
    if (!effect_) return {};
    char text[256] = {};
    effect_->dispatcher(effect_, vst2::effGetEffectName, 0, 0, text, 0.0f);
    if (!text[0]) effect_->dispatcher(effect_, vst2::effGetProductString, 0, 0, text, 0.0f);
    text[sizeof text - 1] = 0;
    return text;
}

std::string VstHost::vendorName() const {
    if (!effect_) return {};
    char text[256] = {};
    effect_->dispatcher(effect_, vst2::effGetVendorString, 0, 0, text, 0.0f);
    text[sizeof text - 1] = 0;
    return text;
}

void VstHost::setTimeSignature(int numerator, int denominator) {
    if (numerator > 0 && denominator > 0) {
        sigNumerator_ = numerator;
        sigDenominator_ = denominator;
    }
}

intptr VstHost::dispatch(int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
}

bool VstHost::start(double sampleRate, int blockSize, std::string& error) {
    if (!effect_) {
        error = "no plug-in is loaded";
        return false;
    }
    if (!(sampleRate > 0.0) || blockSize <= 0) {
        error = "invalid sample rate or block size";
        return false;
    }
    if (running_) dispatch(vst2::effMainsChanged, 0, 0);
    sampleRate_ = sampleRate;
    blockSize_ = blockSize;
    dispatch(vst2::effSetSampleRate, 0, 0, nullptr, static_cast<float>(sampleRate));
    dispatch(vst2::effSetBlockSize, 0, blockSize);
    dispatch(vst2::effMainsChanged, 0, 1);
    running_ = true;
    return true;
}

bool VstHost::setProgram(int program, std::string& error) {
    if (!effect_ || program < 0 || program >= effect_->numPrograms) {
        error = "program " + std::to_string(program) + " does not exist (the plug-in has " +
                std::to_string(effect_ ? effect_->numPrograms : 0) + ")";
        return false;
    }
    dispatch(vst2::effSetProgram, 0, program);
    return true;
}

bool VstHost::setParameter(int index, float value, std::string& error) {
    if (!effect_ || index < 0 || index >= effect_->numParams) {
        error = "parameter " + std::to_string(index) + " does not exist (the plug-in has " +
                std::to_string(effect_ ? effect_->numParams : 0) + ")";
        return false;
    }
    if (!(value >= 0.0f && value <= 1.0f)) {
        error = "parameter values run from 0 to 1";
        return false;
    }
    effect_->setParameter(effect_, index, value);
    return true;
}

void VstHost::close() {
    if (!effect_) return;
    if (running_) dispatch(vst2::effMainsChanged, 0, 0);
    running_ = false;
    dispatch(vst2::effClose);
    effect_ = nullptr;
}

void VstHost::updateTimeInfo(bool transportChanged) {
    const double quartersPerBar = sigNumerator_ * 4.0 / sigDenominator_;
    timeInfo_ = vst2::VstTimeInfo{};
    timeInfo_.samplePos = static_cast<double>(position_);
    timeInfo_.sampleRate = sampleRate_;
    timeInfo_.nanoSeconds = static_cast<double>(position_) / sampleRate_ * 1e9;
    timeInfo_.ppqPos = ppqPosition_;
    timeInfo_.tempo = tempo_;
    timeInfo_.barStartPos = std::floor(ppqPosition_ / quartersPerBar + 1e-9) * quartersPerBar;
    timeInfo_.timeSigNumerator = sigNumerator_;
    timeInfo_.timeSigDenominator = sigDenominator_;
    timeInfo_.flags = kTransportPlaying | kNanosValid | kPpqPosValid | vst2::kVstTempoValid | kBarsValid |
                      kTimeSigValid | (transportChanged ? kTransportChanged : 0);
}

bool VstHost::render(const std::vector<MidiMessage>& messages, std::uint64_t totalFrames, const AudioSink& sink,
                     std::string& error) {
    if (!effect_ || !running_) {
        error = "the plug-in has not been started";
        return false;
    }
    if (effect_->numOutputs < 1) {
        error = "the plug-in has no audio outputs";
        return false;
    }
    const bool replacing = (effect_->flags & vst2::effFlagsCanReplacing) && effect_->processReplacing;
    if (!replacing && !effect_->process) {
        error = "the plug-in offers no processing function";
        return false;
    }

    EventSchedule schedule(messages, totalFrames, sampleRate_, blockSize_);
    BlockBuffers buffers(effect_->numInputs, effect_->numOutputs, blockSize_);
    std::uint64_t done = 0;
    bool firstBlock = true;
    while (done < totalFrames) {
        const int frames = static_cast<int>(std::min<std::uint64_t>(blockSize_, totalFrames - done));
        const std::uint64_t blockEnd = position_ + static_cast<std::uint64_t>(frames);
        const std::uint64_t renderStart = position_ - done;  // message frames count from the render's start
        vst2::VstEvents* list = schedule.eventsOfBlock(renderStart, position_, blockEnd);

        updateTimeInfo(firstBlock);
        firstBlock = false;
        buffers.clear(frames, !replacing);

        const double before = processCpuSeconds();
        dispatch(vst2::effProcessEvents, 0, 0, list);
        if (replacing)
            effect_->processReplacing(effect_, buffers.inputPointers.data(), buffers.outputPointers.data(), frames);
        else
            effect_->process(effect_, buffers.inputPointers.data(), buffers.outputPointers.data(), frames);
        cpuSeconds_ += processCpuSeconds() - before;

        position_ = blockEnd;
        ppqPosition_ += frames / sampleRate_ * (tempo_ > 0.0 ? tempo_ : 120.0) / 60.0;
        done += static_cast<std::uint64_t>(frames);
        if (!sink(buffers.outputs[0].data(), buffers.right, frames)) {
            error = "rendering stopped while writing the audio";
            return false;
        }
    }
    return true;
}

intptr VST_CALL VstHost::hostCallback(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr,
                                      float opt) {
    VstHost* host = effect && effect->user ? static_cast<VstHost*>(effect->user) : hostUnderConstruction;
    if (!host) return opcode == vst2::audioMasterVersion ? kHostVersion : 0;
    return host->answer(effect, opcode, index, value, ptr, opt);
}

intptr VstHost::answer(AEffect* effect, int32 opcode, int32 index, intptr value, void* ptr, float opt) {
    (void)index;
    (void)value;
    (void)opt;
    switch (opcode) {
        case vst2::audioMasterVersion: return kHostVersion;
        case vst2::audioMasterCurrentId: return effect ? effect->uniqueID : 0;
        case vst2::audioMasterWantMidi: wantsMidi_ = true; return 1;
        case vst2::audioMasterGetTime:
            if (tempo_ <= 0.0) return 0;
            if (!running_) updateTimeInfo(false);  // asked outside rendering: describe the current position
            return reinterpret_cast<intptr>(&timeInfo_);
        case vst2::audioMasterIdle:
        case vst2::audioMasterAutomate:
        case vst2::audioMasterBeginEdit:
        case vst2::audioMasterEndEdit: return 0;
        case kHostGetSampleRate: return static_cast<intptr>(sampleRate_);
        case kHostGetBlockSize: return blockSize_;
        case kHostGetVendorString: copyText(ptr, "Brindlecot"); return 1;
        case kHostGetProductString: copyText(ptr, "tolvane2-render"); return 1;
        case kHostGetVendorVersion: return 0x20000;
        case kHostCanDo: {
            const char* text = static_cast<const char*>(ptr);
            if (!text) return 0;
            for (const char* can : {"sendVstEvents", "sendVstMidiEvent", "sendVstTimeInfo"})
                if (std::strcmp(text, can) == 0) return 1;
            return 0;
        }
        default: return 0;
    }
}

}  // namespace tolvane
