#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/framework/SumModule.h"
#include "engine/framework/ValueSource.h"

namespace tolvane {
namespace {

// Counts its computations; outputs its input plus one (or a constant without input).
class CountingUnit : public DspModule {
public:
    explicit CountingUnit(ModuleGraph& g) : DspModule(g, OutputKind::Scalar, 1) {}
    void compute() override {
        ++computes;
        scalar_ = (input(0) ? inputValue(0) : 0.0f) + 1.0f;
    }
    int computes = 0;
};

TEST(ModuleFramework, UpdateIsMemoisedPerTickAcrossConsumers) {
    ModuleGraph graph;
    Poly<CountingUnit> source(graph, 1, kRuleFromInputs);
    Poly<CountingUnit> a(graph, 1, kRuleFromInputs), b(graph, 1, kRuleFromInputs), c(graph, 1, kRuleFromInputs);
    a.connectInput(&source, 0);
    b.connectInput(&source, 0);
    c.connectInput(&source, 0);
    for (int tick = 1; tick <= 3; ++tick) {
        a.updateInstances(tick);
        b.updateInstances(tick);
        c.updateInstances(tick);
        c.updateInstances(tick);
    }
    EXPECT_EQ(source.at(0).computes, 3);
    EXPECT_EQ(c.at(0).computes, 3);
    EXPECT_FLOAT_EQ(a.at(0).value(), 2.0f);
}

TEST(ModuleFramework, VoiceCountsPropagateDownstreamAndNeverShrinkStorage) {
    ModuleGraph graph;
    Poly<CountingUnit> perVoice(graph, 0, kRuleGraphVoices);
    Poly<CountingUnit> shared(graph, 0, kRuleFromInputs);
    Poly<CountingUnit> follower(graph, 1, kRuleFromInputs);
    Poly<CountingUnit> followerOfFollower(graph, 1, kRuleFromInputs);
    followerOfFollower.connectInput(&follower, 0);

    follower.connectInput(&shared, 0);
    graph.setVoiceCount(8);
    EXPECT_EQ(perVoice.voices(), 8);
    EXPECT_EQ(follower.voices(), 1) << "a unit fed only by shared sources stays shared";

    follower.connectInput(&perVoice, 0);
    EXPECT_EQ(follower.voices(), 8);
    EXPECT_EQ(followerOfFollower.voices(), 8) << "the change reaches consumers of consumers";
    // Each voice reads its own source instance.
    for (int v = 0; v < 8; ++v) EXPECT_EQ(follower.at(v).input(0), perVoice.instance(v));

    int allocated = follower.instancesAllocated();
    graph.setVoiceCount(2);
    EXPECT_EQ(follower.voices(), 2);
    EXPECT_EQ(follower.instancesAllocated(), allocated);
    EXPECT_GE(allocated, 64) << "storage for the largest voice count exists from the start";

    follower.connectInput(&shared, 0);
    EXPECT_EQ(follower.voices(), 1);
    EXPECT_EQ(followerOfFollower.voices(), 1);
}

TEST(ModuleFramework, SmootherGlidesJumpsOnTickGapsAndResets) {
    ModuleGraph graph;
    graph.setSampleRate(44100.0f);
    ValueSource x(graph, 0.0f);
    SmoothCoefficient coefficient(graph, 0.1f);
    Smoother smoother(graph);
    smoother.setInput(0, &x);
    smoother.setInput(1, &coefficient);

    double blockRate = 44100.0 / 64.0;
    double c = std::pow(10.0, -3.0 / (blockRate * 0.1 + 1.0));
    EXPECT_NEAR(coefficient.value(), c, 1e-7);

    smoother.update(1);
    EXPECT_FLOAT_EQ(smoother.value(), 0.0f);
    x.set(1.0f);
    smoother.update(2);
    EXPECT_NEAR(smoother.value(), 1.0 - c, 1e-6);
    smoother.update(3);
    EXPECT_NEAR(smoother.value(), 1.0 - c * c, 1e-6);
    // About the smoothing time later the step has covered 60 dB.
    int blocks = static_cast<int>(blockRate * 0.1);
    for (int t = 4; t < 3 + blocks; ++t) smoother.update(t);
    EXPECT_NEAR(smoother.value(), 1.0, 2e-3);

    x.set(5.0f);
    smoother.update(3 + blocks + 2);  // a skipped block
    EXPECT_FLOAT_EQ(smoother.value(), 5.0f);

    // A reset takes the input at once; the value source it reads keeps its value through its own reset.
    x.set(-2.0f);
    smoother.reset(100);
    x.reset(100);
    smoother.update(101);
    EXPECT_FLOAT_EQ(smoother.value(), -2.0f);
}

TEST(ModuleFramework, CoefficientsFollowSampleRateAndZeroTime) {
    ModuleGraph graph;
    SmoothCoefficient zero(graph, 0.0f);
    EXPECT_NEAR(zero.value(), 0.001f, 1e-9);
    SmoothCoefficient tenth(graph, 0.1f);
    SmoothedValue value(graph, 0.0f, 0.1f);
    graph.setSampleRate(96000.0f);
    EXPECT_NEAR(tenth.value(), std::pow(10.0, -3.0 / (96000.0 / 64.0 * 0.1 + 1.0)), 1e-7);
    EXPECT_FLOAT_EQ(value.blockRate(), 1500.0f);
}

TEST(ModuleFramework, SumTouchesOnlyConnectedInputs) {
    ModuleGraph graph;
    SumContainer sum(graph);
    Poly<CountingUnit> a(graph, 0, kRuleFromInputs), b(graph, 0, kRuleFromInputs), unused(graph, 0, kRuleFromInputs);
    sum.updateInstances(1);
    EXPECT_EQ(sum.at(0).value(), 0.0f);

    sum.connectInput(&a, 2);
    sum.connectInput(&b, 5);
    EXPECT_EQ(sum.at(0).mask(), (1u << 2) | (1u << 5));
    sum.updateInstances(2);
    EXPECT_FLOAT_EQ(sum.at(0).value(), 2.0f);
    EXPECT_EQ(unused.at(0).computes, 0);

    sum.connectInput(nullptr, 2);
    sum.updateInstances(3);
    EXPECT_FLOAT_EQ(sum.at(0).value(), 1.0f);
    EXPECT_EQ(a.at(0).computes, 1) << "a disconnected input is no longer updated";
}

TEST(ModuleFramework, DestroyingASourceLeavesNoDanglingInputs) {
    ModuleGraph graph;
    Poly<CountingUnit> consumer(graph, 1, kRuleFromInputs);
    {
        Poly<CountingUnit> source(graph, 0, kRuleGraphVoices);
        graph.setVoiceCount(3);
        consumer.connectInput(&source, 0);
        EXPECT_EQ(consumer.voices(), 3);
    }
    EXPECT_EQ(consumer.inputSource(0), nullptr);
    EXPECT_EQ(consumer.at(0).input(0), nullptr);
    EXPECT_EQ(consumer.voices(), 3) << "counts change only when an input is connected again";
}

}  // namespace
}  // namespace tolvane
