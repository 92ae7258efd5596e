// Owner of the global rates and of the lists of all units and containers.
// The voice allocator is the graph of the synthesizer's engine.
#pragma once

#include "dsp/EngineLimits.h"
#include "engine/framework/NodePool.h"
#include "engine/framework/UniformRandom.h"

namespace tolvane {

class DspModule;
class PolyModule;

struct ConsumerLink {
    PolyModule* consumer = nullptr;
    int input = 0;
};

class ModuleGraph {
public:
    ModuleGraph();
    virtual ~ModuleGraph();
    ModuleGraph(const ModuleGraph&) = delete;
    ModuleGraph& operator=(const ModuleGraph&) = delete;

    float sampleRate() const { return sampleRate_; }
    int blockSize() const { return blockSize_; }
    int voiceCount() const { return voiceCount_; }

    // Broadcast to every unit, most recently created first.
    void setSampleRate(float rate);
    void setBlockSize(int size);
    // Every rule-1 container follows the voice count; counts propagate downstream.
    virtual void setVoiceCount(int n);

    NodePool<ConsumerLink>& consumerPool() { return consumerPool_; }
    // The random generator shared by every unit of this engine.
    UniformRandom& random() { return random_; }

private:
    friend class DspModule;
    friend class PolyModule;
    void link(DspModule* m);
    void unlink(DspModule* m);
    void link(PolyModule* p);
    void unlink(PolyModule* p);

    float sampleRate_ = 44100.0f;
    int blockSize_ = kBlockSize;
    int voiceCount_ = 1;
    // Intrusive lists; new entries go to the front.
    DspModule* moduleHead_ = nullptr;
    PolyModule* containerHead_ = nullptr;
    int moduleCount_ = 0;
    int containerCount_ = 0;
    NodePool<ConsumerLink> consumerPool_;
    UniformRandom random_;
};

}  // namespace tolvane
