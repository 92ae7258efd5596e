// Hands parameter changes, program changes and resets from the host's threads to the audio thread
// without locks.
//
// Each index has a latest value and a dirty flag. Writers store the value, then raise the flag; the
// audio thread, at the start of a block, takes every raised flag in index order and applies the value.
// A writer that sets many values at once (a program) marks itself busy first, and the audio thread
// leaves the inbox alone while any writer is busy, so a program is never applied half old, half new.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "params/ParameterIds.h"

namespace tolvane {

class ParameterInbox {
public:
    ParameterInbox() {
        for (auto& v : values_) v.store(0.0f, std::memory_order_relaxed);
        for (auto& d : dirty_) d.store(false, std::memory_order_relaxed);
    }

    // Scope of one writer's changes.
    class Batch {
    public:
        explicit Batch(ParameterInbox& inbox) : inbox_(inbox) { inbox_.writers_.fetch_add(1, std::memory_order_acquire); }
        ~Batch() { inbox_.writers_.fetch_sub(1, std::memory_order_release); }
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        void set(int index, float value) { inbox_.post(index, value); }
        void requestReset() {
            inbox_.resetPending_.store(true, std::memory_order_release);
            inbox_.anything_.store(true, std::memory_order_release);
        }

    private:
        ParameterInbox& inbox_;
    };

    void set(int index, float value) {
        Batch batch(*this);
        batch.set(index, value);
    }

    // Audio thread: applies every pending value in index order with apply(index, value), then calls
    // reset() if a reset was requested. Does nothing while a writer is busy (the changes wait a block).
    template <typename Apply, typename Reset>
    bool drain(Apply apply, Reset reset) {
        if (writers_.load(std::memory_order_acquire) != 0) return false;
        // Most blocks find nothing: one flag spares the scan of every index.
        if (!anything_.load(std::memory_order_relaxed) || !anything_.exchange(false, std::memory_order_acquire))
            return true;
        for (int i = 0; i < kNumParameters; ++i) {
            if (!dirty_[static_cast<std::size_t>(i)].load(std::memory_order_relaxed)) continue;
            if (!dirty_[static_cast<std::size_t>(i)].exchange(false, std::memory_order_acquire)) continue;
            apply(i, values_[static_cast<std::size_t>(i)].load(std::memory_order_relaxed));
        }
        if (resetPending_.load(std::memory_order_relaxed) && resetPending_.exchange(false, std::memory_order_acquire))
            reset();
        return true;
    }

    // Audio thread: forget pending values of [first, last), superseded by a change made on the audio thread.
    void discard(int first, int last) {
        for (int i = first; i < last; ++i) dirty_[static_cast<std::size_t>(i)].store(false, std::memory_order_relaxed);
    }

    bool pending(int index) const { return dirty_[static_cast<std::size_t>(index)].load(std::memory_order_acquire); }

private:
    void post(int index, float value) {
        if (index < 0 || index >= kNumParameters) return;
        values_[static_cast<std::size_t>(index)].store(value, std::memory_order_relaxed);
        dirty_[static_cast<std::size_t>(index)].store(true, std::memory_order_release);
        anything_.store(true, std::memory_order_release);
    }

    std::array<std::atomic<float>, kNumParameters> values_;
    std::array<std::atomic<bool>, kNumParameters> dirty_;
    std::atomic<bool> resetPending_{false};
    std::atomic<bool> anything_{false};
    std::atomic<int> writers_{0};
};

}  // namespace tolvane
