// Hard-synced generators: a slave running at increment f restarted by a master phase accumulator running
// at increment F (the other oscillator's frequency).
//
// Per sample the output is taken at the slave phase p; then the master advances, and when it wraps the
// slave restarts at p = m f / F, the slave phase that has elapsed since the instant of the master's wrap.
// The Low generators jump there. The Middle generators (also used for High quality) replace the jump by a
// transition: at the wrap they note the regular waveform's value y0 and slope g0 (per sample) where the
// slave was cut, and for the first two samples of the new cycle (u = p / f < 2) they play a pair of
// parabolas from (y0, g0) at u = 0 to the regular waveform's value Y1 and slope G1 at u = 2, meeting with
// equal value and slope at u = 1. A natural wrap of the slave returns to the regular waveform.
#pragma once

#include "engine/framework/ModuleGraph.h"
#include "engine/sound/PlainGenerators.h"

namespace tolvane {

class SyncGenerator : public PlainGenerator {
public:
    SyncGenerator(ModuleGraph& graph, int numInputs)
        : PlainGenerator(graph, numInputs), master_(graph.random().unipolar()) {}

    void setMasterPhase(float m) { master_ = m; }

protected:
    float masterIncrement() const { return wave::clampIncrement(inputValue(kMasterIncrement)); }
    // Slave phase per master phase: where the slave stands when the master wraps a fraction past 0. A master
    // that stands still never wraps, and the ratio is 0.
    static float slavePerMaster(float f, float F) { return F > 0.0f ? f / F : 0.0f; }
    float master_;
};

// Low quality: cosine (restarts at its positive peak), falling triangle, sawtooth and pulse, restarted
// without a transition.
template <class Shape>
class LowSyncGenerator : public SyncGenerator {
public:
    explicit LowSyncGenerator(ModuleGraph& graph) : SyncGenerator(graph, 3) {}

protected:
    void renderPlain() override {
        float f = blockIncrement();
        float F = masterIncrement();
        float ratio = slavePerMaster(f, F);
        float w0, ws;
        beginWidth(Shape::kPulse, w0, ws);
        Shape shape(f);
        float* out = block();
        float p = phase_;
        float m = master_;
        forEachSample(blockSize_, [&](int n) {
            float w = wave::clampWidth(w0 + ws * static_cast<float>(n + 1));
            out[n] = wave::evaluate(shape, p, w);
            m += F;
            if (m >= 1.0f) {
                m -= 1.0f;
                p = m * ratio;
            } else {
                p = wave::advance(p, f);
            }
        });
        phase_ = p;
        master_ = m;
    }
};

// Middle quality (and High quality while synced): the Middle waveforms with the reset transition.
template <class Shape>
class MiddleSyncGenerator : public SyncGenerator {
public:
    explicit MiddleSyncGenerator(ModuleGraph& graph) : SyncGenerator(graph, 3) {}

protected:
    void resetInterpolation() override {
        SyncGenerator::resetInterpolation();
        transitionValue_ = 0.0f;
        transitionSlope_ = 0.0f;
        naturalWrap_ = true;
    }

    void renderPlain() override {
        float f = blockIncrement();
        float F = masterIncrement();
        float ratio = slavePerMaster(f, F);
        float w0, ws;
        beginWidth(Shape::kPulse, w0, ws);
        const Shape shape(f);
        const float twoF = 2.0f * f;
        const float perIncrement = 1.0f / f;
        float* out = block();
        float p = phase_;
        float m = master_;
        float y0 = transitionValue_;
        float g0 = transitionSlope_;
        bool natural = naturalWrap_;
        forEachSample(blockSize_, [&](int n) {
            float w = wave::clampWidth(w0 + ws * static_cast<float>(n + 1));
            if (!natural && p < twoF) {
                float y1 = wave::evaluate(shape, twoF, w);
                float g1 = f * wave::slopeOf(shape, twoF, w);
                out[n] = transition(p * perIncrement, y0, g0, y1, g1);
            } else {
                out[n] = wave::evaluate(shape, p, w);
            }
            m += F;
            if (m >= 1.0f) {
                m -= 1.0f;
                // The slave's phase at the instant of the master's wrap, where the waveform is cut.
                float cut = p + (F - m) * ratio;
                if (cut >= 1.0f) cut -= 1.0f;
                y0 = wave::evaluate(shape, cut, w);
                g0 = f * wave::slopeOf(shape, cut, w);
                natural = false;
                p = m * ratio;
            } else {
                p += f;
                if (p >= 1.0f) {
                    p -= 1.0f;
                    natural = true;
                }
            }
        });
        phase_ = p;
        master_ = m;
        transitionValue_ = y0;
        transitionSlope_ = g0;
        naturalWrap_ = natural;
    }

    // From value y0 with slope g0 at u = 0 to value y1 with slope g1 at u = 2 (u in samples).
    static float transition(float u, float y0, float g0, float y1, float g1) {
        if (u < 1.0f) return y0 + g0 * u + (2.0f * (y1 - y0) - 3.0f * g0 - g1) * 0.25f * u * u;
        return (2.0f * (y0 - y1) + g0 + 3.0f * g1) * 0.25f * u * u + (2.0f * (y1 - y0 - g1) - g0) * u +
               (2.0f * y0 - y1 + g0 + g1);
    }

    float transitionValue_ = 0.0f;
    float transitionSlope_ = 0.0f;
    bool naturalWrap_ = true;
};

using LowSyncSineGenerator = LowSyncGenerator<wave::TableCosine>;
using LowSyncTriangleGenerator = LowSyncGenerator<wave::FallingTriangle>;
using LowSyncSawGenerator = LowSyncGenerator<wave::NaiveSaw>;
using LowSyncPulseGenerator = LowSyncGenerator<wave::PulseOf<wave::NaiveSaw>>;
using MiddleSyncSineGenerator = MiddleSyncGenerator<wave::TableCosine>;
using MiddleSyncTriangleGenerator = MiddleSyncGenerator<wave::MiddleTriangle>;
using MiddleSyncSawGenerator = MiddleSyncGenerator<wave::MiddleSaw>;
using MiddleSyncPulseGenerator = MiddleSyncGenerator<wave::PulseOf<wave::MiddleSaw>>;

}  // namespace tolvane
