// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The order of a save's steps, on which it depends that the store outlives a power cut: what a name leads to
// is on the disk before the name leads to it, and the name is on the disk when the save ends.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/store/workshop.h"

namespace store {
namespace {

/// Returns the inode number of a path, as text.
std::string InodeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return std::to_string(status.st_ino);
}

/// The system calls of a save of version 40 over what is in the folder.
class Calls {
  public:
    explicit Calls(const Folder& folder, const Worker::Start& start = {}) : folder_(folder) {
        Worker::Start with_library = start;
        with_library.environment["LD_PRELOAD"] = ULMARO_FAILING_CALLS;
        const End end = RunWorker(folder, "load events 40 watch save release calls", with_library);
        EXPECT_TRUE(end.Well());
        EXPECT_EQ(LinesWith(kFailedLine, end.error), "");
        EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
        std::istringstream lines(end.out);
        for (std::string line; std::getline(lines, line);) lines_.push_back(line);
    }

    /// Returns the places of the calls of a name about a file, "." for the folder, in order.
    std::vector<std::ptrdiff_t> Places(const std::string& name, const std::string& file) const {
        const std::string wanted = name + " " + InodeOf(folder_.Path(file));
        std::vector<std::ptrdiff_t> places;
        for (auto line = lines_.begin(); (line = std::find(line, lines_.end(), wanted)) != lines_.end();)
            places.push_back(line++ - lines_.begin());
        return places;
    }

    /// Returns the place of the last such call; -1 where there is none.
    std::ptrdiff_t Last(const std::string& name, const std::string& file) const {
        const auto places = Places(name, file);
        return places.empty() ? -1 : places.back();
    }

    /// Returns whether there is such a call between two places.
    bool IsBetween(std::ptrdiff_t first, std::ptrdiff_t last, const std::string& name,
                   const std::string& file) const {
        const auto places = Places(name, file);
        return std::any_of(places.begin(), places.end(),
                           [&](std::ptrdiff_t place) { return first < place && place < last; });
    }

    std::ptrdiff_t Count() const { return std::ssize(lines_); }

  private:
    const Folder& folder_;
    std::vector<std::string> lines_;
};

/// Checks that the store's new file was on the disk before it got the store's name, and the name afterwards.
void ExpectFlushedReplacement(const Calls& calls) {
    const std::ptrdiff_t written = calls.Last("write", "database.bin");
    const std::ptrdiff_t permitted = calls.Last("fchmod", "database.bin");
    const std::ptrdiff_t renamed = calls.Last("rename", "database.bin");
    ASSERT_GE(written, 0);
    ASSERT_GT(renamed, written);
    EXPECT_TRUE(calls.IsBetween(std::max(written, permitted), renamed, "fsync", "database.bin"))
        << "the new file is not flushed before it replaces the old one";
    EXPECT_TRUE(calls.IsBetween(renamed, calls.Count(), "fsync", "."))
        << "the replacement in the folder is not flushed";
}

TEST(Flushed, TheNewFileBeforeItReplacesTheOldOneAndTheFolderAfterwards) {
    Folder folder(Place::kMemory);
    folder.Write("database.bin", FileBytes(3));

    const Calls calls(folder);

    ExpectFlushedReplacement(calls);
}

TEST(Flushed, AFirstFileAndItsFolderToo) {
    Folder folder(Place::kMemory);

    const Calls calls(folder);

    ExpectFlushedReplacement(calls);
}

TEST(Flushed, TheNameOfADamagedFileSetAsideBeforeItIsReplaced) {
    Folder folder(Place::kMemory);
    folder.Write("database.bin", "xy");

    const Calls calls(folder);

    ExpectFlushedReplacement(calls);
    const std::ptrdiff_t linked = calls.Last("link", "database.bin.bak");
    ASSERT_GE(linked, 0);
    EXPECT_TRUE(calls.IsBetween(linked, calls.Last("rename", "database.bin"), "fsync", "."));
}

TEST(Flushed, TheNameOfADamagedFileThatAnEarlierSaveSetAsideToo) {
    Folder folder(Place::kMemory);
    folder.Write("database.bin", "xy");
    std::filesystem::create_hard_link(folder.Path("database.bin"), folder.Path("database.bin.bak"));

    const Calls calls(folder);

    const std::ptrdiff_t linked = calls.Last("link", "database.bin.bak");
    ASSERT_GE(linked, 0);
    EXPECT_TRUE(calls.IsBetween(linked, calls.Last("rename", "database.bin"), "fsync", "."))
        << "the earlier save may have failed to flush it";
}

TEST(Flushed, TheCopyOfADamagedFileWhereThereAreNoHardLinks) {
    Folder folder(Place::kMemory);
    folder.Write("database.bin", "xy");
    Worker::Start start;
    start.environment["ULMARO_NO_LINKS"] = "1";

    const Calls calls(folder, start);

    ExpectFlushedReplacement(calls);
    EXPECT_EQ(folder.Read("database.bin.bak"), "xy");
    const std::ptrdiff_t copied = calls.Last("write", "database.bin.bak");
    ASSERT_GE(copied, 0);
    EXPECT_TRUE(calls.IsBetween(copied, calls.Last("rename", "database.bin"), "fsync", "."));
    EXPECT_TRUE(calls.IsBetween(copied, calls.Last("rename", "database.bin"), "fsync", "database.bin.bak"))
        << "the copy is not flushed before its original is replaced";
}

TEST(Flushed, AFolderOfAFileSystemThatHasNoFlushForFoldersIsNoFailure) {
    Folder folder(Place::kMemory);
    folder.Write("database.bin", "xy");
    Worker::Start start;
    start.environment["ULMARO_NO_FOLDER_FLUSH"] = "1";

    const Calls calls(folder, start);  // which checks that nothing failed

    EXPECT_EQ(calls.Places("no flush", ".").size(), 2U) << "it was tried";
}

}  // namespace
}  // namespace store
