// The plug-in's writable copy of the 512 programs, initialised from the factory bank.
//
// Loading a bank replaces the 128 records of one bank on a host thread while the audio thread may be
// reading a record for a MIDI program change. Banks are swapped as whole blocks: the writer publishes
// the new block, waits until no reader is inside a read (reads are a 608-byte copy, the audio thread
// never waits), and only then frees the old block.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>

#include "params/ParameterIds.h"
#include "params/ProgramRecord.h"

namespace tolvane {

class ProgramStore {
public:
    struct Bank {
        ProgramRecord records[kProgramsPerBank];
    };

    // Starts with a copy of the given 512 records.
    explicit ProgramStore(const ProgramRecord* (*factory)(int index));
    ~ProgramStore();
    ProgramStore(const ProgramStore&) = delete;
    ProgramStore& operator=(const ProgramStore&) = delete;

    // Copies record p (0..511). Safe on the audio thread.
    void read(int program, ProgramRecord& out) const;
    // Copies the name of record p.
    void readName(int program, char (&out)[32]) const;
    // Replaces bank b (0..3). Host threads only.
    void replaceBank(int bank, const ProgramRecord (&records)[kProgramsPerBank]);
    // Replaces all 512 records, bank by bank. Host threads only.
    void replaceAll(const ProgramRecord (&records)[kNumPrograms]);
    // Renames record p. Host threads only.
    void rename(int program, const char* name);

private:
    void publish(int bank, Bank* fresh);

    std::array<std::atomic<Bank*>, kNumPrograms / kProgramsPerBank> banks_{};
    mutable std::atomic<int> readers_{0};
    std::mutex writers_;  // host threads only: one bank swap at a time
};

}  // namespace tolvane
