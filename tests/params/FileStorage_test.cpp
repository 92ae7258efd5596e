#include "params/FileStorage.h"

#include <csignal>
#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::fileContents;
using testing::TempFolder;
using testing::writeContents;

FileBytes pattern(std::size_t n, unsigned seed) {
    FileBytes b(n);
    for (std::size_t i = 0; i < n; ++i) b[i] = static_cast<std::uint8_t>((i * 31 + seed) >> 2);
    return b;
}

std::vector<unsigned char> asChars(const FileBytes& b) { return {b.begin(), b.end()}; }

TEST(FileStorage, ReadsWholeFilesAndRefusesWhatItCannotRead) {
    TempFolder folder;
    const FileBytes content = pattern(40000, 3);  // more than one read chunk
    writeContents(folder.file("a.bank"), asChars(content));
    writeContents(folder.file("empty"), {});

    FileBytes out;
    ASSERT_EQ(readWholeFile(folder.file("a.bank"), out), FileResult::Ok);
    EXPECT_EQ(out, content);
    ASSERT_EQ(readWholeFile(folder.file("empty"), out), FileResult::Ok);
    EXPECT_TRUE(out.empty());

    // Failures leave the output as it was.
    const FileBytes before = {1, 2, 3};
    out = before;
    EXPECT_EQ(readWholeFile(folder.file("missing.prog"), out), FileResult::CannotLoad);
    EXPECT_EQ(readWholeFile(folder.path().string(), out), FileResult::CannotLoad);
    EXPECT_EQ(readWholeFile(folder.file("a.bank"), out, 39999), FileResult::CannotLoad);
    EXPECT_EQ(out, before);
    EXPECT_EQ(readWholeFile(folder.file("a.bank"), out, 40000), FileResult::Ok);
}

TEST(FileStorage, SaveCreatesOrReplacesAndLeavesNothingElse) {
    TempFolder folder;
    const std::string target = folder.file("sound.prog");
    ASSERT_EQ(writeFileReplacing(target, pattern(632, 1)), FileResult::Ok);
    EXPECT_EQ(fileContents(target), asChars(pattern(632, 1)));

    ASSERT_EQ(writeFileReplacing(target, pattern(100, 2)), FileResult::Ok);
    EXPECT_EQ(fileContents(target), asChars(pattern(100, 2)));
    EXPECT_EQ(folder.entries(), std::vector<std::string>{"sound.prog"});
}

TEST(FileStorage, FailedSaveKeepsTheOldFileAndRemovesTheTemporaryOne) {
    TempFolder folder;
    const std::string target = folder.file("bank.bank");
    const std::vector<unsigned char> old = asChars(pattern(5000, 9));
    writeContents(target, old);

#if !defined(_WIN32)
    // The disk "fills up" while the new file is written: the process may not write files larger
    // than 4 kB, so writing the 78 kB bank fails part-way.
    struct rlimit saved;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = saved;
    small.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    FileResult result = writeFileReplacing(target, pattern(77848, 4));
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_EQ(result, FileResult::CannotSave);
    EXPECT_EQ(fileContents(target), old);
    EXPECT_EQ(folder.entries(), std::vector<std::string>{"bank.bank"});
#endif

    // A target that cannot be replaced (a folder) fails at the rename: nothing is left behind either.
    std::filesystem::create_directory(folder.path() / "taken.cmap");
    EXPECT_EQ(writeFileReplacing(folder.file("taken.cmap"), pattern(152, 1)), FileResult::CannotSave);
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "taken.cmap"));
    EXPECT_EQ(folder.entries(), (std::vector<std::string>{"bank.bank", "taken.cmap"}));

    // A folder that does not exist.
    EXPECT_EQ(writeFileReplacing(folder.file("no/such/folder/x.prog"), pattern(10, 1)), FileResult::CannotSave);
    EXPECT_EQ(folder.entries(), (std::vector<std::string>{"bank.bank", "taken.cmap"}));
}

}  // namespace
}  // namespace tolvane
