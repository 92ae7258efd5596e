// Fuzzes the bank file reader: it must never read outside the buffer, and whatever it accepts saves
// and loads again unchanged.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "params/ProgramFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tolvane;
    auto bank = std::make_unique<BankPrograms>();
    if (readBankFile(data, size, *bank) != FileResult::Ok) return 0;

    for (const ProgramRecord& record : bank->programs) {
        for (float v : record.values) {
            if (!(v >= 0.0f && v <= 1.0f)) __builtin_trap();
        }
    }
    FileBytes saved = writeBankFile(*bank);
    auto again = std::make_unique<BankPrograms>();
    if (readBankFile(saved.data(), saved.size(), *again) != FileResult::Ok) __builtin_trap();
    if (std::memcmp(again.get(), bank.get(), sizeof(BankPrograms)) != 0) __builtin_trap();
    return 0;
}
