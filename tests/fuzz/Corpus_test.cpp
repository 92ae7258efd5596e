#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "params/FileStorage.h"
#include "params/ProgramFiles.h"
#include "params/SessionState.h"

namespace tolvane {
namespace {

// The seeds exist to lead the fuzzers into the deep parts of the readers: each must load.
TEST(FuzzCorpus, EverySeedIsAFileItsReaderAccepts) {
    namespace fs = std::filesystem;
    const fs::path root = fs::path(TOLVANE_SOURCE_DIR) / "fuzz" / "corpus";
    for (const char* target :
         {"fuzz_program_reader", "fuzz_bank_reader", "fuzz_controller_map_reader", "fuzz_session_state_reader"}) {
        int inTarget = 0;
        for (const auto& entry : fs::directory_iterator(root / target)) {
            FileBytes bytes;
            ASSERT_EQ(readWholeFile(entry.path().string(), bytes), FileResult::Ok) << entry.path();
            FileResult result;
            const std::string name = target;
            if (name == "fuzz_program_reader") {
                ProgramRecord r;
                result = readProgramFile(bytes.data(), bytes.size(), r);
            } else if (name == "fuzz_session_state_reader") {
                auto state = std::make_unique<SessionState>();
                result = readSessionState(bytes.data(), bytes.size(), *state);
            } else if (name == "fuzz_bank_reader") {
                auto bank = std::make_unique<BankPrograms>();
                result = readBankFile(bytes.data(), bytes.size(), *bank);
            } else {
                float maps[kNumMapValues];
                result = readControllerMapFile(bytes.data(), bytes.size(), maps);
            }
            EXPECT_EQ(result, FileResult::Ok) << entry.path();
            ++inTarget;
        }
        EXPECT_GE(inTarget, 2) << target;
    }
}

}  // namespace
}  // namespace tolvane
