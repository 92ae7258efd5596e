// A short text written from the audio thread and from other threads, read by the GUI thread, without
// locks, data races or waiting on the audio thread.
//
// There are two slots: one written only by the audio thread, one by every other thread (those writers
// serialise among themselves by claiming the slot and may wait for each other). Each slot is guarded by
// a sequence counter (odd while it is written) and carries a stamp from a shared counter; the reader
// copies both slots until each copy is consistent and returns the one stored last. All accesses are
// sequentially consistent atomics, so the sequence check needs no separate fences.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <thread>

namespace tolvane {

enum class TextWriter { Audio = 0, Other = 1 };

template <std::size_t Capacity>
class AtomicText {
    static_assert(Capacity % 8 == 0, "capacity is a whole number of words");
    static constexpr std::size_t kWords = Capacity / 8;

public:
    static constexpr std::size_t kCapacity = Capacity;  // bytes, including the terminating zero

    AtomicText() {
        for (Slot& s : slots_)
            for (auto& w : s.words) w.store(0, std::memory_order_relaxed);
    }

    // Stores text, cut to Capacity - 1 characters.
    void store(const char* text, TextWriter writer = TextWriter::Other) {
        char bytes[Capacity] = {};
        if (text) {
            std::size_t n = std::strlen(text);
            if (n > Capacity - 1) n = Capacity - 1;
            std::memcpy(bytes, text, n);
        }
        storeBytes(bytes, writer);
    }

    // Stores exactly Capacity bytes (a record that may contain zeros).
    void storeBytes(const char* bytes, TextWriter writer = TextWriter::Other) {
        Slot& slot = slots_[static_cast<int>(writer)];
        std::uint32_t seq = slot.sequence.load();
        if (writer == TextWriter::Audio) {
            slot.sequence.store(seq + 1);
        } else {
            for (;;) {
                seq = slot.sequence.load();
                if (!(seq & 1u) && slot.sequence.compare_exchange_weak(seq, seq + 1)) break;
                std::this_thread::yield();
            }
        }
        for (std::size_t i = 0; i < kWords; ++i) {
            std::uint64_t w;
            std::memcpy(&w, bytes + 8 * i, 8);
            slot.words[i].store(w);
        }
        slot.stamp.store(stampCounter_.fetch_add(1) + 1);
        slot.sequence.store(seq + 2);
    }

    // Copies the text stored last (Capacity bytes) into out.
    void load(char* out) const {
        char a[Capacity];
        char b[Capacity];
        std::uint64_t stampA = read(slots_[0], a);
        std::uint64_t stampB = read(slots_[1], b);
        std::memcpy(out, stampA > stampB ? a : b, Capacity);
        out[Capacity - 1] = 0;
    }

    // Grows whenever a text is stored.
    std::uint64_t version() const { return stampCounter_.load(); }

private:
    struct Slot {
        std::atomic<std::uint32_t> sequence{0};
        std::atomic<std::uint64_t> stamp{0};
        std::atomic<std::uint64_t> words[kWords];
    };

    static std::uint64_t read(const Slot& slot, char* out) {
        for (;;) {
            std::uint32_t before = slot.sequence.load();
            if (before & 1u) {
                std::this_thread::yield();
                continue;
            }
            for (std::size_t i = 0; i < kWords; ++i) {
                std::uint64_t w = slot.words[i].load();
                std::memcpy(out + 8 * i, &w, 8);
            }
            std::uint64_t stamp = slot.stamp.load();
            if (slot.sequence.load() == before) return stamp;
        }
    }

    Slot slots_[2];
    std::atomic<std::uint64_t> stampCounter_{0};
};

}  // namespace tolvane
