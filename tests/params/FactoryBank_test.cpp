#include "params/FactoryBank.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "params/ParameterTable.h"

namespace tolvane {
namespace {

using namespace param;

TEST(FactoryBank, NamesAndInitSlots) {
    ParameterTable table;
    std::set<std::string> designed;
    for (int p = 0; p < kNumDesignedPrograms; ++p) designed.insert(factoryProgram(p).name);
    EXPECT_EQ(designed.size(), static_cast<size_t>(kNumDesignedPrograms)) << "designed names are distinct";

    for (int p = 0; p < kNumPrograms; ++p) {
        const ProgramRecord& record = factoryProgram(p);
        if (p >= kNumDesignedPrograms) {
            ASSERT_STREQ(record.name, "InitProg") << p;
        }
        // Zero-terminated and zero-padded.
        size_t length = std::char_traits<char>::length(record.name);
        ASSERT_LT(length, sizeof record.name);
        for (size_t i = length; i < sizeof record.name; ++i) ASSERT_EQ(record.name[i], '\0') << p;
        for (int i = 0; i < kNumProgramValues; ++i) {
            ASSERT_GE(record.values[i], 0.0f) << p << "/" << i;
            ASSERT_LE(record.values[i], i >= kFirstReserved ? 0.0f : 1.0f) << p << "/" << i;
            if (p >= kNumDesignedPrograms) {
                ASSERT_EQ(record.values[i], table.initValue(i)) << p << "/" << i;
            }
        }
    }
    EXPECT_NE(factoryProgram(0).values[Osc1Waveform], table.initValue(Osc1Waveform));
}

}  // namespace
}  // namespace tolvane
