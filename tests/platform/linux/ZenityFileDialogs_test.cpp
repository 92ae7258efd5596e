#include "platform/linux/ZenityFileDialogs.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::TempFolder;

// Runs each test with PATH holding only a folder of fake dialog programs. A fake program writes each
// argument it receives to its own file (<program>.arg1, .arg2, ...), prints a line and exits with a
// chosen status.
class ZenityFileDialogsTest : public ::testing::Test {
protected:
    TempFolder bin;
    std::string savedPath;

    void SetUp() override {
        const char* path = std::getenv("PATH");
        savedPath = path ? path : "";
        setenv("PATH", bin.path().c_str(), 1);
    }
    void TearDown() override { setenv("PATH", savedPath.c_str(), 1); }

    void fakeProgram(const std::string& name, const std::string& printed, int status, bool executable = true) {
        std::string path = bin.file(name);
        std::ofstream script(path);
        script << "#!/bin/sh\n"
                  "n=0\n"
                  "for a in \"$@\"; do n=$((n+1)); printf '%s' \"$a\" > \"$0.arg$n\"; done\n"
                  "printf '%s\\n' '" << printed << "'\n"
                  "printf 'noise on the error stream\\n' >&2\n"
                  "exit " << status << "\n";
        script.close();
        chmod(path.c_str(), executable ? 0755 : 0644);
    }

    std::vector<std::string> argumentsOf(const std::string& name) {
        std::vector<std::string> args;
        for (int i = 1;; ++i) {
            std::ifstream in(bin.file(name + ".arg" + std::to_string(i)), std::ios::binary);
            if (!in) return args;
            args.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        }
    }

    ZenityFileDialogs dialogs;
};

TEST_F(ZenityFileDialogsTest, LoadAnswersThePathZenityPrints) {
    fakeProgram("zenity", "/home/me/My Sounds/warm pad.prog", 0);
    fakeProgram("kdialog", "/never/used.prog", 0);
    DialogChoice choice = dialogs.openLoad(FileKind::Program);
    EXPECT_EQ(choice.outcome, DialogChoice::Outcome::Chosen);
    EXPECT_EQ(choice.path, "/home/me/My Sounds/warm pad.prog");
    EXPECT_EQ(argumentsOf("zenity"), (std::vector<std::string>{
        "--file-selection", "--title=Load Program",
        "--file-filter=Tolvane Programs(*.prog) | *.prog",
        "--file-filter=Ver.1 Programs(*.prg) | *.prg",
        "--file-filter=All Files(*.*) | *"}));
    EXPECT_TRUE(argumentsOf("kdialog").empty());
}

TEST_F(ZenityFileDialogsTest, SaveAsksBeforeOverwritingAndAddsTheExtension) {
    fakeProgram("zenity", "/tmp/my bank", 0);
    DialogChoice choice = dialogs.openSave(FileKind::Bank);
    EXPECT_EQ(choice.outcome, DialogChoice::Outcome::Chosen);
    EXPECT_EQ(choice.path, "/tmp/my bank.bank");
    EXPECT_EQ(argumentsOf("zenity"), (std::vector<std::string>{
        "--file-selection", "--title=Save Bank",
        "--file-filter=Tolvane Banks(*.bank) | *.bank",
        "--file-filter=Ver.1 Banks(*.bnk) | *.bnk",
        "--file-filter=All Files(*.*) | *",
        "--save", "--confirm-overwrite"}));

    fakeProgram("zenity", "/tmp/maps.v2.cmap", 0);
    EXPECT_EQ(dialogs.openSave(FileKind::ControllerMap).path, "/tmp/maps.v2.cmap");
    EXPECT_EQ(argumentsOf("zenity")[1], "--title=Save Controller Map");
}

TEST_F(ZenityFileDialogsTest, NonZeroExitOrNoPathIsACancelAndNoProgramIsUnavailable) {
    EXPECT_EQ(dialogs.openLoad(FileKind::Program).outcome, DialogChoice::Outcome::Unavailable);
    EXPECT_EQ(dialogs.openSave(FileKind::Bank).outcome, DialogChoice::Outcome::Unavailable);
    fakeProgram("zenity", "/tmp/half-typed.prog", 1);
    EXPECT_EQ(dialogs.openLoad(FileKind::Program).outcome, DialogChoice::Outcome::Cancelled);
    EXPECT_EQ(dialogs.openSave(FileKind::Program).outcome, DialogChoice::Outcome::Cancelled);
    fakeProgram("zenity", "", 0);
    EXPECT_EQ(dialogs.openLoad(FileKind::Program).outcome, DialogChoice::Outcome::Cancelled);
    unsetenv("PATH");
    EXPECT_EQ(dialogs.openLoad(FileKind::ControllerMap).outcome, DialogChoice::Outcome::Unavailable);
}

TEST_F(ZenityFileDialogsTest, KdialogWhenThereIsNoZenity) {
    fakeProgram("zenity", "/not/executable.prog", 0, false);
    fakeProgram("kdialog", "/home/me/live.cmap", 0);
    DialogChoice choice = dialogs.openLoad(FileKind::ControllerMap);
    EXPECT_EQ(choice.outcome, DialogChoice::Outcome::Chosen);
    EXPECT_EQ(choice.path, "/home/me/live.cmap");
    EXPECT_EQ(argumentsOf("kdialog"), (std::vector<std::string>{
        "--title", "Load Controller Map", "--getopenfilename", ".",
        "*.cmap|Tolvane Controller Maps(*.cmap)\n*|All Files(*.*)"}));

    fakeProgram("kdialog", "/home/me/new", 0);
    EXPECT_EQ(dialogs.openSave(FileKind::Program).path, "/home/me/new.prog");
    EXPECT_EQ(argumentsOf("kdialog")[2], "--getsavefilename");

    fakeProgram("kdialog", "", 1);
    EXPECT_EQ(dialogs.openLoad(FileKind::Bank).outcome, DialogChoice::Outcome::Cancelled);
}

// The dialog runs while the caller goes on: the request has no answer until the program prints one, and a
// request dropped while the dialog is open ends the program.
TEST_F(ZenityFileDialogsTest, AStartedDialogAnswersLaterAndEndsWhenDropped) {
    const std::string zenity = bin.file("zenity");
    {
        std::ofstream script(zenity);
        script << "#!/bin/sh\n"
                  "echo $$ > \"$0.pid\"\n"
                  "while [ ! -e \"$0.gate\" ]; do sleep 0.02; done\n"
                  "printf '%s\\n' '/home/me/later.prog'\n";
    }
    chmod(zenity.c_str(), 0755);
    auto pidOf = [&] {
        int pid = 0;
        for (int i = 0; i < 200 && pid == 0; ++i) {
            std::ifstream(zenity + ".pid") >> pid;
            if (pid == 0) usleep(10000);
        }
        return pid;
    };

    std::unique_ptr<DialogRequest> request = dialogs.startLoad(FileKind::Program);
    DialogChoice choice;
    ASSERT_GT(pidOf(), 0) << "the program runs";
    EXPECT_FALSE(request->poll(choice)) << "no answer while the dialog is open";
    std::ofstream(zenity + ".gate").put('x');
    for (int i = 0; i < 300 && !request->poll(choice); ++i) usleep(10000);
    EXPECT_EQ(choice.path, "/home/me/later.prog");

    std::remove((zenity + ".gate").c_str());
    std::remove((zenity + ".pid").c_str());
    request = dialogs.startSave(FileKind::Program);
    const int pid = pidOf();
    ASSERT_GT(pid, 0);
    request.reset();
    EXPECT_NE(kill(pid, 0), 0) << "the dropped dialog's program has ended and been collected";
}

}  // namespace
}  // namespace tolvane
