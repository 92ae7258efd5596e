#include "params/FileCommands.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/FakeFileDialogs.h"
#include "tests/params/FileImage.h"
#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::FileImage;
using testing::TempFolder;
using testing::writeContents;

// A plug-in that records what the file commands did to it.
class FakePlugin : public FileCommandTarget {
public:
    int program = 0;
    std::vector<std::pair<std::string, std::string>> statuses;
    int programsApplied = 0;
    ProgramRecord appliedProgram{};
    int mapsApplied = 0;
    float appliedMaps[32] = {};
    int banksReplaced = 0;
    int replacedBank = -1;
    std::unique_ptr<BankPrograms> replacedPrograms = std::make_unique<BankPrograms>();
    ProgramRecord edit{};
    float editMaps[32] = {};
    mutable int requestedBank = -1;

    FakePlugin() {
        edit.setName("Edited");
        for (int i = 0; i < 144; ++i) edit.values[i] = testing::sampleValue(1, i);
        for (int i = 0; i < 32; ++i) editMaps[i] = testing::sampleValue(2, i);
    }

    int currentProgram() const override { return program; }
    void applyProgramFromFile(const ProgramRecord& r) override {
        ++programsApplied;
        appliedProgram = r;
    }
    void applyControllerMapsFromFile(const float (&values)[32]) override {
        ++mapsApplied;
        std::copy(values, values + 32, appliedMaps);
    }
    void replaceBank(int bank, const BankPrograms& programs) override {
        ++banksReplaced;
        replacedBank = bank;
        *replacedPrograms = programs;
    }
    void editBuffer(ProgramRecord& out) const override { out = edit; }
    void editMapValues(float (&out)[32]) const override { std::copy(editMaps, editMaps + 32, out); }
    void bankPrograms(int bank, BankPrograms& out) const override {
        requestedBank = bank;
        for (int p = 0; p < 128; ++p) {
            out.programs[p].setName(("Bank " + std::to_string(bank) + " #" + std::to_string(p)).c_str());
            for (int i = 0; i < 144; ++i) out.programs[p].values[i] = testing::sampleValue(p + bank, i);
        }
    }
    void showStatus(const char* line1, const char* line2) override { statuses.emplace_back(line1, line2); }

    bool changed() const { return programsApplied + mapsApplied + banksReplaced > 0; }
    std::pair<std::string, std::string> lastStatus() const {
        return statuses.empty() ? std::pair<std::string, std::string>{"(none)", ""} : statuses.back();
    }
};

using Status = std::pair<std::string, std::string>;

class FileCommandsTest : public ::testing::Test {
protected:
    TempFolder folder;
    FakePlugin plugin;
    testing::FakeFileDialogs dialogs;
    FileCommands commands{plugin, dialogs};

    std::string writeFile(const std::string& name, const FileBytes& bytes) {
        std::string path = folder.file(name);
        writeContents(path, {bytes.begin(), bytes.end()});
        return path;
    }
};

TEST_F(FileCommandsTest, EachCommandAsksForItsFileCancelDoesNothingAndNoDialogIsReported) {
    const FileKind kinds[] = {FileKind::Program, FileKind::Bank, FileKind::ControllerMap};
    for (FileAction action : {FileAction::Load, FileAction::Save}) {
        for (FileKind kind : kinds) {
            dialogs.asked.clear();
            commands.run(action, kind);
            ASSERT_EQ(dialogs.asked.size(), 1u);
            EXPECT_EQ(dialogs.asked[0].first, kind);
            EXPECT_EQ(dialogs.asked[0].second, action == FileAction::Save);
        }
    }
    EXPECT_TRUE(plugin.statuses.empty());
    EXPECT_FALSE(plugin.changed());

    // Without a dialog program every command says so.
    dialogs.outcome = DialogChoice::Outcome::Unavailable;
    for (FileAction action : {FileAction::Load, FileAction::Save}) {
        for (FileKind kind : kinds) {
            plugin.statuses.clear();
            commands.run(action, kind);
            EXPECT_EQ(plugin.lastStatus(), Status("File I/O error", "No file dialog"));
        }
    }
    EXPECT_FALSE(plugin.changed());
}

// What is loaded is checked by the round trips of the saved files below; here the statuses and the bank
// replaced.
TEST_F(FileCommandsTest, LoadedFilesReachThePluginWithTheirStatus) {
    dialogs.choose(writeFile("pad.prog", writeProgramFile(ProgramRecord{})));
    commands.run(FileAction::Load, FileKind::Program);
    EXPECT_EQ(plugin.lastStatus(), Status("Program loaded: A-1", ""));
    EXPECT_EQ(plugin.programsApplied, 1);
    plugin.program = 511;
    commands.loadFile(FileKind::Program, folder.file("pad.prog"));
    EXPECT_EQ(plugin.lastStatus(), Status("Program loaded: D-128", ""));

    float maps[32] = {};
    commands.loadFile(FileKind::ControllerMap, writeFile("m.cmap", writeControllerMapFile(maps)));
    EXPECT_EQ(plugin.lastStatus(), Status("Controller Map loaded", ""));
    EXPECT_EQ(plugin.mapsApplied, 1);

    const std::string bankPath = writeFile("b.bank", writeBankFile(*std::make_unique<BankPrograms>()));
    // The bank of the current program is the one replaced, and named in the status.
    const struct { int program; int bank; const char* status; } banks[] = {
        {127, 0, "Bank A loaded"}, {511, 3, "Bank D loaded"}};
    for (const auto& b : banks) {
        plugin.program = b.program;
        commands.loadFile(FileKind::Bank, bankPath);
        EXPECT_EQ(plugin.lastStatus(), Status(b.status, "")) << b.program;
        EXPECT_EQ(plugin.replacedBank, b.bank) << b.program;
    }
}

TEST_F(FileCommandsTest, FailedLoadsChangeNothing) {
    FileImage wrongCount;
    wrongCount.header("Tolvane program", 0x00020000, 2).zeros(608);
    FileImage version3;
    version3.header("Tolvane program", 0x00030000, 1).zeros(608);
    FileImage version1Map;
    version1Map.header("Tolvane ctl.map", 0x00010000, 1).zeros(128);
    FileImage shortBank;
    shortBank.header("Tolvane bank   ", 0x00020000, 128).zeros(608 * 127);

    const struct { FileKind kind; std::string path; const char* reason; } cases[] = {
        {FileKind::Program, folder.file("missing.prog"), "Cannot load file"},
        {FileKind::Program, writeFile("count.prog", wrongCount.bytes), "Invalid format"},
        {FileKind::Program, writeFile("v3.prog", version3.bytes), "Unknown file ver."},
        {FileKind::ControllerMap, writeFile("v1.cmap", version1Map.bytes), "Unknown file ver."},
        {FileKind::Bank, writeFile("short.bank", shortBank.bytes), "Cannot load file"},
        // A valid program file is not a bank.
        {FileKind::Bank, writeFile("p.prog", writeProgramFile(plugin.edit)), "Invalid format"},
    };
    for (const auto& c : cases) {
        dialogs.choose(c.path);
        commands.run(FileAction::Load, c.kind);
        EXPECT_EQ(plugin.lastStatus(), Status("File I/O error", c.reason)) << c.path;
    }
    EXPECT_FALSE(plugin.changed());
}

TEST_F(FileCommandsTest, SavedFilesHoldTheEditBufferAndTheCurrentBank) {
    dialogs.choose(folder.file("mine.prog"));
    commands.run(FileAction::Save, FileKind::Program);
    EXPECT_EQ(plugin.lastStatus(), Status("Program saved", ""));
    commands.loadFile(FileKind::Program, folder.file("mine.prog"));
    EXPECT_EQ(std::memcmp(&plugin.appliedProgram, &plugin.edit, sizeof(ProgramRecord)), 0);

    dialogs.choose(folder.file("mine.cmap"));
    commands.run(FileAction::Save, FileKind::ControllerMap);
    EXPECT_EQ(plugin.lastStatus(), Status("Controller Map saved", ""));
    commands.loadFile(FileKind::ControllerMap, folder.file("mine.cmap"));
    EXPECT_EQ(std::memcmp(plugin.appliedMaps, plugin.editMaps, sizeof plugin.editMaps), 0);

    plugin.program = 400;  // bank D
    dialogs.choose(folder.file("mine.bank"));
    commands.run(FileAction::Save, FileKind::Bank);
    EXPECT_EQ(plugin.lastStatus(), Status("Bank D saved", ""));
    EXPECT_EQ(plugin.requestedBank, 3);
    plugin.program = 5;
    commands.loadFile(FileKind::Bank, folder.file("mine.bank"));
    EXPECT_EQ(plugin.replacedBank, 0);
    auto saved = std::make_unique<BankPrograms>();
    plugin.bankPrograms(3, *saved);
    EXPECT_EQ(std::memcmp(plugin.replacedPrograms.get(), saved.get(), sizeof(BankPrograms)), 0);

    dialogs.choose(folder.file("missing-folder/x.prog"));
    commands.run(FileAction::Save, FileKind::Program);
    EXPECT_EQ(plugin.lastStatus(), Status("File I/O error", "Cannot save file"));
}

TEST_F(FileCommandsTest, AnOpenDialogIsAnsweredInALaterIdleAndFileCommandsWaitForIt) {
    ProgramRecord record{};
    record.setName("Later");
    dialogs.choose(writeFile("later.prog", writeProgramFile(record)));
    dialogs.waiting = true;
    commands.run(FileAction::Load, FileKind::Program);
    commands.idle();
    EXPECT_TRUE(commands.dialogOpen());
    EXPECT_FALSE(plugin.changed());
    commands.run(FileAction::Load, FileKind::Bank);
    commands.run(FileAction::Save, FileKind::Program);
    commands.run(FileAction::Load, FileKind::Program);
    EXPECT_EQ(dialogs.asked.size(), 1u) << "no second dialog while one is open";

    dialogs.waiting = false;
    commands.idle();
    EXPECT_FALSE(commands.dialogOpen());
    ASSERT_EQ(plugin.programsApplied, 1);
    EXPECT_STREQ(plugin.appliedProgram.name, "Later");
    EXPECT_EQ(plugin.lastStatus(), Status("Program loaded: A-1", ""));
    commands.idle();
    EXPECT_EQ(plugin.programsApplied, 1) << "an answer is carried out once";
    commands.run(FileAction::Load, FileKind::Bank);
    EXPECT_EQ(dialogs.asked.size(), 2u) << "the next command opens a dialog again";
}

// A modal dialog (the Windows form) runs a message loop from which the host idles the editor, and the
// user may pick another file command meanwhile: neither may wait for the dialog that is running.
TEST_F(FileCommandsTest, AModalDialogsLoopMayIdleAndSendCommands) {
    struct ModalDialogs : FileDialogs {
        FileCommands* commands = nullptr;
        std::string path;
        int opened = 0;
        DialogChoice openLoad(FileKind) override {
            ++opened;
            commands->idle();
            commands->run(FileAction::Save, FileKind::Bank);
            return DialogChoice::chosen(path);
        }
        DialogChoice openSave(FileKind kind) override { return openLoad(kind); }
    } modal;
    FileCommands modalCommands{plugin, modal};
    modal.commands = &modalCommands;
    modal.path = writeFile("modal.prog", writeProgramFile(plugin.edit));
    modalCommands.run(FileAction::Load, FileKind::Program);
    EXPECT_EQ(modal.opened, 1);
    EXPECT_EQ(plugin.programsApplied, 1) << "the answer of a modal dialog is carried out at once";
    EXPECT_FALSE(modalCommands.dialogOpen());
}

TEST_F(FileCommandsTest, DroppedFilesLoadAsTheirExtensionSays) {
    ProgramRecord record{};
    const FileBytes program = writeProgramFile(record);
    const FileBytes bank = writeBankFile(*std::make_unique<BankPrograms>());
    float maps[32] = {};
    const FileBytes map = writeControllerMapFile(maps);
    const struct {
        std::string name;
        const FileBytes* bytes;
        int programs, banks, maps;
    } cases[] = {
        {"a.prog", &program, 1, 0, 0}, {"B.PRG", &program, 1, 0, 0},  {"c.Bank", &bank, 0, 1, 0},
        {"d.bnk", &bank, 0, 1, 0},     {"e.CMAP", &map, 0, 0, 1},     {"f.txt", &program, 0, 0, 0},
        {"noext", &program, 0, 0, 0},  {"g.prog.bak", &program, 0, 0, 0},
        // The extension decides, not the contents: a bank named as a program fails as a program.
        {"h.prog", &bank, 0, 0, 0},
    };
    for (const auto& c : cases) {
        plugin.programsApplied = plugin.banksReplaced = plugin.mapsApplied = 0;
        plugin.statuses.clear();
        const FileResult result = commands.loadDroppedFile(writeFile(c.name, *c.bytes));
        EXPECT_EQ(plugin.programsApplied, c.programs) << c.name;
        EXPECT_EQ(plugin.banksReplaced, c.banks) << c.name;
        EXPECT_EQ(plugin.mapsApplied, c.maps) << c.name;
        if (c.programs + c.banks + c.maps == 0) {
            EXPECT_EQ(plugin.lastStatus().first, "File I/O error") << c.name;
        }
        if (c.bytes == &program && c.programs == 0) {
            EXPECT_EQ(plugin.lastStatus(), Status("File I/O error", "Unknown file type")) << c.name;
        }
        EXPECT_EQ(result == FileResult::Ok, c.programs + c.banks + c.maps == 1) << c.name;
    }
    EXPECT_TRUE(dialogs.asked.empty());
}

}  // namespace
}  // namespace tolvane
