// A container of unit instances: one per voice for units that depend on a key, a single shared one for
// units fed only by shared sources.
//
// The voice count follows a rule fixed at construction:
//   0  the largest among the connected inputs (at least 1);
//   1  the graph's voice count;
//   2  set by the owner.
// A change re-creates the missing instances, re-wires every input and repeats the derivation on every
// consumer, so a per-voice source makes everything downstream of it per voice.
//
// Instances for the largest voice count are created when the container is built, so that changing
// the voice count, a connection or a program on the audio thread never allocates.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "engine/framework/DspModule.h"
#include "engine/framework/ModuleGraph.h"

namespace tolvane {

enum PolyRule : int { kRuleFromInputs = 0, kRuleGraphVoices = 1, kRuleOwnerVoices = 2 };

class PolyModule {
public:
    using Factory = std::function<std::unique_ptr<DspModule>(ModuleGraph&)>;

    // Capacity created up front: the engine's largest voice count.
    static constexpr int kPrebuiltVoices = kMaxVoices;

    PolyModule(ModuleGraph& graph, int numInputs, PolyRule rule, Factory factory);
    virtual ~PolyModule();
    PolyModule(const PolyModule&) = delete;
    PolyModule& operator=(const PolyModule&) = delete;

    // Connects input k to a source container (null disconnects) and re-derives the counts.
    void connectInput(PolyModule* source, int k);
    PolyModule* inputSource(int k) const { return inputs_[static_cast<std::size_t>(k)]; }
    int numInputs() const { return static_cast<int>(inputs_.size()); }

    // Rules 1 and 2: the voice count from outside.
    void setVoices(int n);

    int voices() const { return voices_; }
    PolyRule rule() const { return rule_; }
    int instancesInUse() const { return voices_; }
    int instancesAllocated() const { return static_cast<int>(instances_.size()); }

    // The instance of voice v is element v mod V: a source with fewer voices is shared.
    DspModule* instance(int voice) const { return instances_[static_cast<std::size_t>(voice % voices_)].get(); }
    DspModule* instanceAt(int index) const { return instances_[static_cast<std::size_t>(index)].get(); }

    // reset(tick) / update(tick) of every instance in use, in index order.
    void resetInstances(int tick);
    void updateInstances(int tick);

    ModuleGraph& graph() const { return *graph_; }

protected:
    // Creates instances until the voice count (and the prebuilt capacity) exist. Containers that push
    // settings into their instances repeat the push for new instances in newInstance().
    virtual void rebuildInstances();
    // Points input k of every instance in use at the source's instance of the same voice.
    virtual void wireInput(int k);
    // Called for every instance right after it is created.
    virtual void newInstance(DspModule&) {}

    // Re-derives the counts after input k changed and propagates downstream when they changed.
    void deriveCounts(int k);

private:
    friend class ModuleGraph;
    void propagate();
    void removeConsumer(PolyModule* consumer, int k);

    ModuleGraph* graph_;
    PolyModule* prevInGraph_ = nullptr;
    PolyModule* nextInGraph_ = nullptr;
    std::vector<PolyModule*> inputs_;
    PoolList<ConsumerLink> consumers_;
    PolyRule rule_;
    int voices_ = 1;
    std::vector<std::unique_ptr<DspModule>> instances_;
    Factory factory_;
    bool built_ = false;
};

// A container whose instances all have the unit class T.
template <typename T>
class Poly : public PolyModule {
public:
    template <typename... Args>
    Poly(ModuleGraph& graph, int numInputs, PolyRule rule, Args... args)
        : PolyModule(graph, numInputs, rule,
                     [args...](ModuleGraph& g) { return std::unique_ptr<DspModule>(new T(g, args...)); }) {
        build();
    }

    T& at(int voice) const { return static_cast<T&>(*instance(voice)); }
    T& allocatedAt(int index) const { return static_cast<T&>(*instanceAt(index)); }

    // Applies f to every allocated instance (in use or not), so that settings survive count changes.
    template <typename F>
    void forEach(F f) const {
        for (int i = 0; i < instancesAllocated(); ++i) f(allocatedAt(i));
    }

protected:
    void build() { rebuildInstances(); }
};

}  // namespace tolvane
