// The hand-over of values from host threads to the audio thread, with a writer interleaved by hand at
// chosen points of the audio thread's scan.
#include "host/ParameterInbox.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct Drained {
    std::vector<std::pair<int, float>> values;
    int resets = 0;
    bool done = false;
};

// One drain; at scan position `at` (if any) the writer runs.
template <typename Writer>
Drained drain(ParameterInbox& inbox, int at, Writer writer) {
    Drained d;
    d.done = inbox.drain([&](int i, float v) { d.values.emplace_back(i, v); }, [&] { ++d.resets; },
                         [&](int i) {
                             if (i == at) writer();
                         });
    return d;
}

Drained drain(ParameterInbox& inbox) {
    return drain(inbox, -1, [] {});
}

using Values = std::vector<std::pair<int, float>>;

// A program arrives as one batch. Whenever that batch begins relative to the audio thread's scan, the
// audio thread applies all of it in one block, or none of it; it never applies the part the scan has
// not passed yet and the rest a block later.
TEST(ParameterInbox, ABatchIsNeverSplitAcrossBlocks) {
    auto program = [](ParameterInbox& inbox) {
        ParameterInbox::Batch batch(inbox);
        batch.set(10, 0.1f);
        batch.set(100, 0.9f);
        batch.requestReset();
    };
    // Begun before the scan, at the start of it, between its two indices, at its last index.
    for (int at : {-1, 0, 50, kNumParameters - 1}) {
        ParameterInbox inbox;
        inbox.set(3, 0.3f);  // an earlier single change, complete before the drain
        Drained first = at < 0 ? (program(inbox), drain(inbox)) : drain(inbox, at, [&] { program(inbox); });
        Drained second = drain(inbox);
        const Values whole{{3, 0.3f}, {10, 0.1f}, {100, 0.9f}};
        // All in the first block (the scan took none of it before it began) or all in the second.
        const Drained& applied = first.values.empty() ? second : first;
        const Drained& other = first.values.empty() ? first : second;
        EXPECT_EQ(applied.values, whole) << at;
        EXPECT_EQ(applied.resets, 1) << at;
        EXPECT_TRUE(other.values.empty()) << at;
        EXPECT_EQ(other.resets, 0) << at;
        if (at < 0) {
            EXPECT_TRUE(first.done && !first.values.empty()) << "a batch complete before the scan is applied at once";
        }
        EXPECT_TRUE(drain(inbox).values.empty()) << at << ": each value is applied once";
    }
}

// While a writer is inside a batch nothing is applied; a value written again during a scan that had
// taken its older value is applied with the newer one.
TEST(ParameterInbox, OpenBatchesWaitAndTheLatestValueWins) {
    ParameterInbox inbox;
    {
        ParameterInbox::Batch open(inbox);
        open.set(7, 0.7f);
        Drained busy = drain(inbox);
        EXPECT_FALSE(busy.done);
        EXPECT_TRUE(busy.values.empty());
    }
    Drained retaken = drain(inbox, 120, [&] { inbox.set(7, 0.75f); });
    EXPECT_TRUE(retaken.values.empty());
    EXPECT_EQ(drain(inbox).values, (Values{{7, 0.75f}}));
}

}  // namespace
}  // namespace tolvane
