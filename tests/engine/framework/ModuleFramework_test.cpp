#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
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

// The glide and the jump after a skipped block are checked where smoothers are used (controller and bend
// sources of the modulation slots); the reset is checked here.
TEST(ModuleFramework, CoefficientsFollowSampleRateAndZeroTimeAndAResetTakesTheInputAtOnce) {
    ModuleGraph graph;
    SmoothCoefficient zero(graph, 0.0f);
    EXPECT_NEAR(zero.value(), 0.001f, 1e-9);
    SmoothCoefficient tenth(graph, 0.1f);
    SmoothedValue value(graph, 0.0f, 0.1f);
    graph.setSampleRate(96000.0f);
    EXPECT_NEAR(tenth.value(), std::pow(10.0, -3.0 / (96000.0 / 64.0 * 0.1 + 1.0)), 1e-7);
    EXPECT_FLOAT_EQ(value.blockRate(), 1500.0f);

    ValueSource x(graph, 0.0f);
    Smoother smoother(graph);
    smoother.setInput(0, &x);
    smoother.setInput(1, &tenth);
    smoother.update(1);
    x.set(-2.0f);
    // The value source keeps its value through its own reset.
    smoother.reset(100);
    x.reset(100);
    smoother.update(101);
    EXPECT_FLOAT_EQ(smoother.value(), -2.0f);
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
