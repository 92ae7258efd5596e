// Rendering runs with denormal numbers flushed to zero; the caller's floating-point modes come back.
#include "engine/framework/DenormalGuard.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// Called through a volatile pointer, so that the compiler neither folds the products nor moves them
// across the guard's mode changes.
float multiply(float a, float b) { return a * b; }
float (*volatile product)(float, float) = &multiply;

TEST(DenormalGuard, FlushesDenormalResultsAndInputsWhileAliveAndRestoresAfter) {
    if (!DenormalGuard::kEffective) GTEST_SKIP() << "this target has no flush-to-zero mode";
    const float smallest = std::numeric_limits<float>::min();  // the smallest normal number
    const float denormal = smallest / 1024.0f;
    ASSERT_EQ(std::fpclassify(denormal), FP_SUBNORMAL);
    ASSERT_EQ(std::fpclassify(product(smallest, 0.5f)), FP_SUBNORMAL);
    {
        DenormalGuard guard;
        EXPECT_EQ(product(smallest, 0.5f), 0.0f) << "a denormal result is flushed to zero";
        EXPECT_EQ(product(denormal, 1024.0f), 0.0f) << "a denormal input counts as zero";
        EXPECT_EQ(product(smallest, 2.0f), 2.0f * smallest) << "normal numbers are untouched";
        {
            DenormalGuard nested;
            EXPECT_EQ(product(smallest, 0.5f), 0.0f);
        }
        EXPECT_EQ(product(smallest, 0.5f), 0.0f) << "an inner guard restores the outer one's modes";
    }
    EXPECT_EQ(std::fpclassify(product(smallest, 0.5f)), FP_SUBNORMAL) << "the caller's modes are back";
    EXPECT_EQ(product(denormal, 1024.0f), smallest);
}

}  // namespace
}  // namespace tolvane
