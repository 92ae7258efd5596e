// Hands parameter changes, program changes and resets from the host's threads to the audio thread
// without locks.
//
// Each index has a latest value and a dirty flag. Writers store the value, then raise the flag; the
// audio thread, at the start of a block, takes every raised flag in index order and applies the value.
//
// A writer that sets many values at once (a program) opens a batch: it marks itself busy and counts
// the batch as begun before its first value. The audio thread leaves the inbox alone while a writer is
// busy, and it applies nothing before its scan is over: what it took is applied only if no batch began
// since the scan started; otherwise it raises the flags again and everything waits a block. Whatever
// the timing, a program is never applied half old, half new.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "params/ParameterIds.h"

namespace tolvane {

class ParameterInbox {
public:
    struct NoHook {
        void operator()(int) const {}
    };

    ParameterInbox() {
        for (auto& v : values_) v.store(0.0f, std::memory_order_relaxed);
        for (auto& d : dirty_) d.store(false, std::memory_order_relaxed);
    }

    // Scope of one writer's changes.
    class Batch {
    public:
        explicit Batch(ParameterInbox& inbox) : inbox_(inbox) {
            inbox_.writers_.fetch_add(1);
            inbox_.batches_.fetch_add(1);
        }
        ~Batch() { inbox_.writers_.fetch_sub(1); }
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
    // reset() if a reset was requested. Answers false, and applies nothing, while a writer is busy or
    // when a batch began during the scan (the changes wait a block). beforeIndex(i) runs before index i
    // is looked at; tests use it to interleave a writer with the scan.
    template <typename Apply, typename Reset, typename BeforeIndex = NoHook>
    bool drain(Apply apply, Reset reset, BeforeIndex beforeIndex = {}) {
        const std::uint32_t batchesBefore = batches_.load();
        if (writers_.load() != 0) return false;
        // Most blocks find nothing: one flag spares the scan of every index.
        if (!anything_.load(std::memory_order_relaxed) || !anything_.exchange(false, std::memory_order_acquire))
            return true;
        std::array<float, kNumParameters> taken;
        std::array<bool, kNumParameters> took;
        for (int i = 0; i < kNumParameters; ++i) {
            const auto k = static_cast<std::size_t>(i);
            beforeIndex(i);
            took[k] = dirty_[k].load(std::memory_order_relaxed) && dirty_[k].exchange(false, std::memory_order_acquire);
            if (took[k]) taken[k] = values_[k].load(std::memory_order_relaxed);
        }
        const bool resetTaken =
            resetPending_.load(std::memory_order_relaxed) && resetPending_.exchange(false, std::memory_order_acquire);
        if (batches_.load() != batchesBefore || writers_.load() != 0) {
            // A batch began while the scan ran: part of it may be among what was taken. Hand it all back
            // (a newer value written meanwhile stays the latest) and try again next block.
            for (std::size_t k = 0; k < took.size(); ++k)
                if (took[k]) dirty_[k].store(true, std::memory_order_release);
            if (resetTaken) resetPending_.store(true, std::memory_order_release);
            anything_.store(true, std::memory_order_release);
            return false;
        }
        for (int i = 0; i < kNumParameters; ++i)
            if (took[static_cast<std::size_t>(i)]) apply(i, taken[static_cast<std::size_t>(i)]);
        if (resetTaken) reset();
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
    std::atomic<std::uint32_t> batches_{0};  // batches begun, wrapping
};

}  // namespace tolvane
