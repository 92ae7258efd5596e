// One thread renders while others automate parameters, switch programs, load banks and read displays,
// as hosts do. Built and run under ThreadSanitizer by the test command; any data race fails it, and so
// does a program that reaches the audio thread in part.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "params/FactoryBank.h"
#include "params/ProgramFiles.h"
#include "support/PluginFixture.h"
#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::PluginFixture;

TEST(ThreadedAutomation, RenderingWhileOtherThreadsChangeEverything) {
    PluginFixture f;
    testing::TempFolder folder;
    BankPrograms bank;
    for (int i = 0; i < kProgramsPerBank; ++i) bank.programs[i] = factoryProgram(i);
    testing::writeContents(folder.file("stress.bank"), writeBankFile(bank));
    f.dialogs->outcome = DialogChoice::Outcome::Chosen;
    f.dialogs->path = folder.file("stress.bank");
    f.host.record = false;  // the fake host's call log is not thread-safe

    std::atomic<bool> stop{false};
    std::atomic<long> blocks{0};

    std::thread audio([&] {
        std::mt19937 rng(1);
        const int sizes[] = {1, 7, 64, 100, 512, 4096};
        while (!stop.load()) {
            std::vector<std::array<unsigned char, 3>> midi;
            int n = static_cast<int>(rng() % 4);
            for (int i = 0; i < n; ++i) {
                unsigned char status = static_cast<unsigned char>(0x80 | ((rng() % 7) << 4));
                midi.push_back({status, static_cast<unsigned char>(rng() % 128), static_cast<unsigned char>(rng() % 128)});
            }
            f.render(sizes[rng() % 6], midi);
            blocks.fetch_add(1);
        }
    });

    std::thread automation([&] {
        std::mt19937 rng(2);
        while (!stop.load()) {
            int index = static_cast<int>(rng() % kNumParameters);
            f.effect->setParameter(f.effect, index, static_cast<float>(rng() % 1001) / 1000.0f);
            if (rng() % 50 == 0) f.dispatch(vst2::effSetProgram, 0, static_cast<vst2::intptr>(rng() % 512));
        }
    });

    std::thread interface([&] {
        std::mt19937 rng(3);
        char text[256];
        int loads = 0;
        while (!stop.load()) {
            int index = static_cast<int>(rng() % kNumParameters);
            f.dispatch(vst2::effGetParamDisplay, index, 0, text);
            f.dispatch(vst2::effGetProgramNameIndexed, static_cast<int>(rng() % 512), 0, text);
            f.dispatch(vst2::effGetProgramName, 0, 0, text);
            f.effect->getParameter(f.effect, index);
            std::string l1, l2;
            f.status(l1, l2);
            f.plugin->synthEditor().takeChanged(index);
            if (loads < 20 && rng() % 200 == 0) {
                f.dispatch(vst2::effSetProgram, 0, -4);  // load the bank file
                ++loads;
            }
            if (rng() % 100 == 0) {  // a host saving and restoring its session
                void* chunk = nullptr;
                const int which = static_cast<int>(rng() % 2);
                vst2::intptr size = f.dispatch(vst2::effGetChunk, which, 0, &chunk);
                std::vector<unsigned char> saved(static_cast<unsigned char*>(chunk),
                                                 static_cast<unsigned char*>(chunk) + size);
                f.dispatch(vst2::effSetChunk, which, size, saved.data());
            }
        }
    });

    std::this_thread::sleep_for(std::chrono::seconds(3));
    stop.store(true);
    audio.join();
    automation.join();
    interface.join();
    EXPECT_GT(blocks.load(), 100);
}

// Programs selected on one thread while another renders reach the audio thread whole: after every
// host buffer the values the setters last ran with are exactly one program's, never a mix of two.
TEST(ThreadedAutomation, ProgramsSelectedWhileRenderingAreAppliedWhole) {
    PluginFixture f;
    f.host.record = false;
    std::vector<ProgramRecord> programs;
    for (int p = 0; p < kNumPrograms; ++p) programs.push_back(factoryProgram(p));
    auto wholeProgram = [&]() {
        for (const ProgramRecord& record : programs) {
            bool same = true;
            for (int i = 0; i < kNumProgramValues && same; ++i) {
                const float v = std::min(1.0f, std::max(0.0f, record.values[i]));
                same = f.plugin->appliedValue(i) == v;
            }
            if (same) return true;
        }
        return false;
    };

    std::atomic<bool> stop{false};
    std::atomic<long> selections{0};
    std::thread selector([&] {
        std::mt19937 rng(4);
        while (!stop.load()) {
            f.dispatch(vst2::effSetProgram, 0, static_cast<vst2::intptr>(rng() % programs.size()));
            selections.fetch_add(1);
        }
    });
    long checks = 0, mixed = 0;
    std::mt19937 rng(5);
    const int sizes[] = {1, 64, 100, 512};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    while (std::chrono::steady_clock::now() < end) {
        f.render(sizes[rng() % 4]);
        ++checks;
        if (!wholeProgram()) ++mixed;
    }
    stop.store(true);
    selector.join();
    EXPECT_EQ(mixed, 0) << "of " << checks << " buffers, with " << selections.load() << " selections";
    EXPECT_GT(checks, 100);
    EXPECT_GT(selections.load(), 100);
}

}  // namespace
}  // namespace tolvane
