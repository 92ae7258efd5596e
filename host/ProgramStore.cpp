#include "host/ProgramStore.h"

#include <cstring>
#include <thread>

namespace tolvane {

ProgramStore::ProgramStore(const ProgramRecord* (*factory)(int index)) {
    for (int b = 0; b < kNumPrograms / kProgramsPerBank; ++b) {
        Bank* bank = new Bank;
        for (int i = 0; i < kProgramsPerBank; ++i) bank->records[i] = *factory(b * kProgramsPerBank + i);
        banks_[static_cast<std::size_t>(b)].store(bank);
    }
}

ProgramStore::~ProgramStore() {
    for (auto& b : banks_) delete b.load();
}

void ProgramStore::read(int program, ProgramRecord& out) const {
    if (program < 0 || program >= kNumPrograms) return;
    readers_.fetch_add(1);
    const Bank* bank = banks_[static_cast<std::size_t>(program / kProgramsPerBank)].load();
    out = bank->records[program % kProgramsPerBank];
    readers_.fetch_sub(1);
}

void ProgramStore::readName(int program, char (&out)[32]) const {
    ProgramRecord r;
    read(program, r);
    std::memcpy(out, r.name, sizeof out);
    out[31] = 0;
}

void ProgramStore::publish(int bank, Bank* fresh) {
    Bank* old = banks_[static_cast<std::size_t>(bank)].exchange(fresh);
    // A reader that started before the exchange may still copy from the old block.
    while (readers_.load() != 0) std::this_thread::yield();
    delete old;
}

void ProgramStore::replaceBank(int bank, const ProgramRecord (&records)[kProgramsPerBank]) {
    if (bank < 0 || bank >= kNumPrograms / kProgramsPerBank) return;
    std::lock_guard<std::mutex> lock(writers_);
    Bank* fresh = new Bank;
    for (int i = 0; i < kProgramsPerBank; ++i) fresh->records[i] = records[i];
    publish(bank, fresh);
}

void ProgramStore::replaceAll(const ProgramRecord (&records)[kNumPrograms]) {
    std::lock_guard<std::mutex> lock(writers_);
    for (int b = 0; b < kNumPrograms / kProgramsPerBank; ++b) {
        Bank* fresh = new Bank;
        for (int i = 0; i < kProgramsPerBank; ++i) fresh->records[i] = records[b * kProgramsPerBank + i];
        publish(b, fresh);
    }
}

void ProgramStore::rename(int program, const char* name) {
    if (program < 0 || program >= kNumPrograms) return;
    std::lock_guard<std::mutex> lock(writers_);
    int bank = program / kProgramsPerBank;
    Bank* fresh = new Bank(*banks_[static_cast<std::size_t>(bank)].load());
    fresh->records[program % kProgramsPerBank].setName(name);
    publish(bank, fresh);
}

}  // namespace tolvane
