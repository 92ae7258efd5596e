// A summing junction of up to eight scalar inputs. Only connected inputs are updated and read,
// in ascending input order; with nothing connected the output is exactly 0.
#pragma once

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"

namespace tolvane {

class SumModule : public DspModule {
public:
    explicit SumModule(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kMaxInputs) {}

    // The connection mask: bit k set when input k is connected.
    void setMask(unsigned mask);
    unsigned mask() const { return mask_; }

    void resetInputs(int tick) override;
    void updateInputs(int tick) override;
    void compute() override;

private:
    unsigned mask_ = 0;
    int connected_[kMaxInputs] = {};
    int connectedCount_ = 0;
};

// The container of a summing junction: keeps every instance's mask in step with its connections.
class SumContainer : public Poly<SumModule> {
public:
    SumContainer(ModuleGraph& graph, PolyRule rule = kRuleFromInputs) : Poly<SumModule>(graph, DspModule::kMaxInputs, rule) {}
    unsigned mask() const;

protected:
    void wireInput(int k) override;
};

}  // namespace tolvane
