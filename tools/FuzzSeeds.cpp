// tolvane2-fuzz-seeds <folder>: writes the seed files of the four reader fuzz targets into
// <folder>/fuzz_program_reader, <folder>/fuzz_bank_reader, <folder>/fuzz_controller_map_reader and
// <folder>/fuzz_session_state_reader. Every seed is valid; the committed seeds under fuzz/corpus were
// made with it.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "dsp/Mappings.h"
#include "params/FactoryBank.h"
#include "params/ProgramFiles.h"
#include "params/SessionState.h"

namespace {

using namespace tolvane;

float sampleValue(int record, int index) {
    return static_cast<float>((record * 131 + index * 17) % 1000) / 999.0f;
}

ProgramRecord sampleProgram(int seed, const char* name) {
    ProgramRecord r{};
    r.setName(name);
    for (int i = 0; i < kFirstReserved; ++i) r.values[i] = sampleValue(seed, i);
    return r;
}

void appendU32(FileBytes& b, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) b.push_back(static_cast<std::uint8_t>(v >> shift));
}

// A version-1 record: name, 70 values, 8 unused bytes. Nothing in the plug-in writes these any more.
void appendVersion1Record(FileBytes& b, int seed, const std::string& name) {
    for (std::size_t i = 0; i < 32; ++i) b.push_back(i < name.size() ? static_cast<std::uint8_t>(name[i]) : 0);
    for (int i = 0; i < 70; ++i) {
        float v = sampleValue(seed, i);
        std::uint32_t bits;
        std::memcpy(&bits, &v, 4);
        appendU32(b, bits);
    }
    b.insert(b.end(), 8, 0);
}

FileBytes version1Header(const char* magic, std::uint32_t count) {
    FileBytes b(magic, magic + 16);
    appendU32(b, 0x00010000);
    appendU32(b, count);
    return b;
}

bool save(const std::filesystem::path& path, const FileBytes& bytes) {
    std::FILE* f = std::fopen(path.string().c_str(), "wb");
    if (!f) return false;
    bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <corpus folder>\n", argv[0]);
        return 2;
    }
    namespace fs = std::filesystem;
    const fs::path root(argv[1]);
    const fs::path program = root / "fuzz_program_reader";
    const fs::path bank = root / "fuzz_bank_reader";
    const fs::path maps = root / "fuzz_controller_map_reader";
    const fs::path session = root / "fuzz_session_state_reader";
    for (const fs::path& p : {program, bank, maps, session}) fs::create_directories(p);

    bool ok = true;
    ok &= save(program / "program-v2.prog", writeProgramFile(sampleProgram(1, "Lavender Pad")));
    ProgramRecord edges = sampleProgram(2, "Twenty-four characters!!");
    for (int i = 0; i < kNumProgramValues; i += 2) edges.values[i] = (i % 4) ? 1.0f : 0.0f;
    ok &= save(program / "program-v2-edges.prog", writeProgramFile(edges));
    FileBytes oldProgram = version1Header("Tolvane program", 1);
    appendVersion1Record(oldProgram, 3, "Old Brass");
    ok &= save(program / "program-v1.prg", oldProgram);

    auto programs = std::make_unique<BankPrograms>();
    for (int p = 0; p < kProgramsPerBank; ++p) {
        programs->programs[p] = sampleProgram(p, ("Seed " + std::to_string(p + 1)).c_str());
    }
    ok &= save(bank / "bank-v2.bank", writeBankFile(*programs));
    FileBytes oldBank = version1Header("Tolvane bank   ", kProgramsPerBank);
    for (int p = 0; p < kProgramsPerBank; ++p) appendVersion1Record(oldBank, p, "Old " + std::to_string(p + 1));
    ok &= save(bank / "bank-v1.bnk", oldBank);

    float start[kNumMapValues];
    float learned[kNumMapValues];
    for (int i = 0; i < kNumControllerMaps; ++i) {
        start[i] = optionValue(0, 129);
        start[kNumControllerMaps + i] = optionValue(99, 100);
        learned[i] = optionValue(i == 0 ? 128 : 1 + 7 * i, 129);
        learned[kNumControllerMaps + i] = optionValue(6 * i, 100);
    }
    ok &= save(maps / "maps-start.cmap", writeControllerMapFile(start));
    ok &= save(maps / "maps-assigned.cmap", writeControllerMapFile(learned));

    // Session states: an untouched bank (no program entries), and one with a few edited programs spread
    // over the banks, the first and the last included.
    auto state = std::make_unique<SessionState>();
    for (int p = 0; p < kNumPrograms; ++p) state->programs[p] = factoryProgram(p);
    state->editBuffer = sampleProgram(4, "Edit Buffer");
    std::memcpy(state->mapValues, start, sizeof start);
    ok &= save(session / "state-factory.state", writeSessionState(*state));
    state->currentProgram = 300;
    std::memcpy(state->mapValues, learned, sizeof learned);
    for (int p : {0, 127, 128, 300, 511}) state->programs[p] = sampleProgram(p, ("Edited " + std::to_string(p)).c_str());
    ok &= save(session / "state-edited.state", writeSessionState(*state));

    if (!ok) {
        std::fprintf(stderr, "cannot write the seeds under %s\n", argv[1]);
        return 1;
    }
    return 0;
}
