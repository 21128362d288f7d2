// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: finding the file, replacing it, its permissions, the new file's name, replacements that fail,
// setting a file aside. What lies on the disk after a kill at each step, and what a failing call does:
// tests/store.
#include "engine/replace_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <new>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/library_calls.h"
#include "tests/unit/limit_process.h"
#include "tests/unit/temporary_folder.h"

/// Compares errors, for EXPECT_EQ.
bool operator==(const ReplaceError& a, const ReplaceError& b) {
    return a.reason == b.reason && a.number == b.number;
}

/// Writes errors into GoogleTest's messages.
std::ostream& operator<<(std::ostream& out, const ReplaceError& error) {
    return out << "reason " << static_cast<int>(error.reason) << ", errno " << error.number;
}

namespace {

using FileNames = std::set<std::string>;

const ReplaceError kNoError = {};

ReplaceError SystemError(int number) {
    return {ReplaceReason::kSystemCall, number};
}

/// Returns a writer of some bytes.
ContentsWriter Writing(const std::string& bytes) {
    return [bytes](const OpenFile& file) { return file.Write(bytes.data(), bytes.size()); };
}

/// Finds and replaces, as a program does.
ReplaceError Replace(const std::string& path, const std::string& bytes) {
    std::string destination;
    if (const ReplaceError error = FindDestination(path, destination)) return error;
    return ReplaceFile(destination, Writing(bytes));
}

/// Sets a file aside, whatever its second name.
ReplaceError Keep(const std::string& path) {
    std::string kept_as;
    return SetAside(path, kept_as);
}

/// Tests in a folder of their own, which is empty and the current one.
class ReplaceFileTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
};

// ---- Finding the file ----

TEST_F(ReplaceFileTest, TheDestinationOfAFileIsItsOwnPathAlsoWhereItDoesNotExist) {
    WriteFile("here", "old");

    for (const std::string path : {"here", "not-here"}) {
        std::string destination;
        EXPECT_EQ(FindDestination(path, destination), kNoError);
        EXPECT_EQ(destination, path);
    }
}

TEST_F(ReplaceFileTest, TheDestinationOfALinkIsWhereAllItsLinksLead) {
    std::filesystem::create_directory("other");
    std::filesystem::create_symlink("last", "other/second");
    std::filesystem::create_symlink("other/second", "first");
    std::filesystem::create_symlink(folder_.Path() / "other/second", "absolute");

    std::string destination;
    EXPECT_EQ(FindDestination("first", destination), kNoError);
    EXPECT_EQ(destination, "other/last");
    EXPECT_EQ(FindDestination("absolute", destination), kNoError);
    EXPECT_EQ(destination, folder_.Path() / "other/last");
}

TEST_F(ReplaceFileTest, LinksThatLeadInACircleHaveNoDestination) {
    std::filesystem::create_symlink("b", "a");
    std::filesystem::create_symlink("a", "b");

    std::string destination = "untouched";
    EXPECT_EQ(FindDestination("a", destination), (ReplaceError{ReplaceReason::kLinkLoop, ELOOP}));

    EXPECT_EQ(destination, "untouched");
}

TEST_F(ReplaceFileTest, AsManyLinksAreFollowedAsTheKernelFollows) {
    WriteFile("file", "");
    std::filesystem::create_symlink("file", "1");
    for (int link = 2; link <= 41; ++link) {
        std::filesystem::create_symlink(std::to_string(link - 1), std::to_string(link));
    }
    OpenFile file;
    ASSERT_EQ(file.Open("40", O_RDONLY), 0);
    ASSERT_EQ(file.Open("41", O_RDONLY), ELOOP);

    std::string destination;
    EXPECT_EQ(FindDestination("40", destination), kNoError);
    EXPECT_EQ(destination, "file");
    EXPECT_EQ(FindDestination("41", destination).reason, ReplaceReason::kLinkLoop);
}

TEST_F(ReplaceFileTest, LinksToFoldersOnTheWayAreFollowedAndCounted) {
    std::filesystem::create_directories("real/deep");
    std::filesystem::create_symlink("real/deep", "short");
    std::filesystem::create_symlink("short/../there/file", "link");

    std::string destination;
    EXPECT_EQ(FindDestination("link", destination), kNoError);
    EXPECT_EQ(destination, "real/deep/../there/file");

    std::filesystem::create_symlink("short", "1");
    for (int link = 2; link <= 40; ++link) {
        std::filesystem::create_symlink(std::to_string(link - 1), std::to_string(link));
    }
    EXPECT_EQ(FindDestination("39/file", destination), kNoError);
    EXPECT_EQ(FindDestination("40/file", destination).reason, ReplaceReason::kLinkLoop);
}

TEST_F(ReplaceFileTest, ALinkOfAnotherUserIsNotFollowedAlsoNotOnTheWay) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make another user's link";
    constexpr uid_t kNobody = 65534;
    std::filesystem::create_directory("folder");
    WriteFile("folder/file", "old");
    std::filesystem::create_symlink("folder/file", "direct");
    std::filesystem::create_symlink("folder", "short");
    std::filesystem::create_symlink("short/file", "through");
    ASSERT_EQ(lchown("direct", kNobody, kNobody), 0);
    ASSERT_EQ(lchown("short", kNobody, kNobody), 0);

    const ReplaceError foreign = {ReplaceReason::kForeignLink, EACCES};
    EXPECT_EQ(Replace("direct", "new"), foreign);
    EXPECT_EQ(Replace("through", "new"), foreign);
    EXPECT_EQ(ReadFile("folder/file"), "old");

    ASSERT_EQ(chmod(".", 0755), 0);
    const NotRoot nobody;  // to whom they belong, while "through" is root's
    ASSERT_TRUE(nobody.Works());
    std::string destination;
    EXPECT_EQ(FindDestination("direct", destination), kNoError);
    EXPECT_EQ(FindDestination("through", destination), kNoError);
    EXPECT_EQ(destination, "folder/file");
}

/// Makes a device, a pipe or a socket; returns whether that worked.
bool MakeSpecial(mode_t type, const std::string& name) {
    return mknod(name.c_str(), type | 0600, type == S_IFCHR ? makedev(1, 3) : 0) == 0;
}

TEST_F(ReplaceFileTest, OnlyRegularFilesAreReplaced) {
    const ReplaceError special = {ReplaceReason::kNotRegular, ENXIO};
    for (const mode_t type : {S_IFIFO, S_IFSOCK, S_IFCHR, S_IFBLK}) {
        SCOPED_TRACE(type);
        if (!MakeSpecial(type, "special")) {
            ASSERT_NE(geteuid(), 0U) << "root can make any";
            continue;
        }
        std::filesystem::create_symlink("special", "link");

        std::string destination;
        EXPECT_EQ(FindDestination("special", destination), special);
        EXPECT_EQ(Replace("special", "new"), special);
        EXPECT_EQ(Replace("link", "new"), special);
        EXPECT_EQ(ReplaceFile("special", Writing("new")), special) << "it came after the path was found";

        struct stat status {};
        ASSERT_EQ(lstat("special", &status), 0);
        EXPECT_EQ(status.st_mode & S_IFMT, type);
        EXPECT_EQ(folder_.Names(), (FileNames{"link", "special"}));
        unlink("special");
        unlink("link");
    }
}

TEST_F(ReplaceFileTest, APathThroughAFileHasNoDestination) {
    WriteFile("file", "");

    std::string destination;
    EXPECT_EQ(FindDestination("file/name", destination), SystemError(ENOTDIR));
}

// ---- Replacing ----

TEST_F(ReplaceFileTest, AFileThatIsNotThereIsMade) {
    EXPECT_EQ(Replace("file", "new"), kNoError);

    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFileGetsTheNewContentsWhateverTheirLength) {
    WriteFile("file", "old");

    for (const std::string& contents :
         {std::string("a longer text"), std::string("short"), std::string(), std::string(300'000, 'x')}) {
        EXPECT_EQ(Replace("file", contents), kNoError);

        EXPECT_EQ(ReadFile("file"), contents);
        EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
    }
}

TEST_F(ReplaceFileTest, TheOldFileIsWholeWhileTheNewOneIsWritten) {
    WriteFile("file", "old");
    std::string seen;

    EXPECT_EQ(ReplaceFile("file",
                          [&](const OpenFile& file) {
                              const int error = file.Write("new", 3);
                              seen = ReadFile("file") + " " + ReadFile("file.new");
                              return error;
                          }),
              kNoError);

    EXPECT_EQ(seen, "old new");
    EXPECT_EQ(ReadFile("file"), "new");
}

TEST_F(ReplaceFileTest, TheNewFileIsLockedWhileItIsWrittenAndTheFileIsNotAfterwards) {
    const auto is_locked = [](const char* name) {
        OpenFile file;
        EXPECT_EQ(file.Open(name, O_RDONLY), 0);
        return flock(file.Descriptor(), LOCK_EX | LOCK_NB) != 0;
    };
    bool locked = false;

    EXPECT_EQ(ReplaceFile("file",
                          [&](const OpenFile&) {
                              locked = is_locked("file.new");
                              return 0;
                          }),
              kNoError);

    EXPECT_TRUE(locked);
    EXPECT_FALSE(is_locked("file"));
}

TEST_F(ReplaceFileTest, WhoHasTheOldFileOpenKeepsIt) {
    WriteFile("file", "old");
    OpenFile reader;
    ASSERT_EQ(reader.Open("file", O_RDONLY), 0);

    EXPECT_EQ(Replace("file", "new"), kNoError);

    std::string seen(3, ' ');
    EXPECT_EQ(reader.Read(seen.data(), 3).bytes, 3);
    EXPECT_EQ(seen, "old");
}

TEST_F(ReplaceFileTest, ALinkStaysALinkAndTheNewFileStandsInItsTargetsFolder) {
    std::filesystem::create_directory("other");
    WriteFile("other/target", "old");
    std::filesystem::create_symlink("other/target", "link");

    EXPECT_EQ(Replace("link", "new"), kNoError);

    EXPECT_EQ(std::filesystem::read_symlink("link"), "other/target");
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status("other/target")));
    EXPECT_EQ(ReadFile("other/target"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"link", "other"}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("other"), {}), 1);
}

TEST_F(ReplaceFileTest, ALinkToNothingGetsItsTarget) {
    std::filesystem::create_symlink("target", "link");

    EXPECT_EQ(Replace("link", "new"), kNoError);

    EXPECT_TRUE(std::filesystem::is_symlink("link"));
    EXPECT_EQ(ReadFile("target"), "new");
}

// ---- Permissions ----

TEST_F(ReplaceFileTest, ANewFileIsReadableByItsOwnerAloneAlsoWhileItIsWritten) {
    const NoMask no_mask;
    mode_t while_written = 0;

    EXPECT_EQ(ReplaceFile("file",
                          [&](const OpenFile&) {
                              while_written = ModeOf("file.new");
                              return 0;
                          }),
              kNoError);

    EXPECT_EQ(while_written, 0600U);
    EXPECT_EQ(ModeOf("file"), 0600U);
}

TEST_F(ReplaceFileTest, TheNewFileHasThePermissionsOfTheOldOne) {
    for (const mode_t mode : {0644U, 0600U, 0640U, 0444U, 0777U, 04755U, 02640U}) {
        WriteFile("file", "old");
        ASSERT_EQ(chmod("file", mode), 0);

        EXPECT_EQ(Replace("file", "new"), kNoError);

        EXPECT_EQ(ModeOf("file"), mode);
        EXPECT_EQ(ReadFile("file"), "new");
        std::filesystem::remove("file");
    }
}

TEST_F(ReplaceFileTest, AReplacedFileIsAtLeastReadableByItsOwner) {
    for (const auto& [before, after] : {std::pair(0U, 0400U), std::pair(0244U, 0644U)}) {
        WriteFile("file", "old");
        ASSERT_EQ(chmod("file", before), 0);

        EXPECT_EQ(Replace("file", "new"), kNoError);

        EXPECT_EQ(ModeOf("file"), after);
    }
}

// ---- The new file's name ----

TEST_F(ReplaceFileTest, WhatWasLeftBehindUnderTheNewFilesNameIsRemoved) {
    for (const mode_t mode : {0600U, 0U}) {
        WriteFile("file.new", "a longer text that was left behind");
        ASSERT_EQ(chmod("file.new", mode), 0);

        EXPECT_EQ(Replace("file", "new"), kNoError);

        EXPECT_EQ(ReadFile("file"), "new");
        EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
    }
}

TEST_F(ReplaceFileTest, ALinkUnderTheNewFilesNameIsRemovedAndNotWrittenThrough) {
    WriteFile("other", "untouched");
    std::filesystem::create_symlink("other", "file.new");

    EXPECT_EQ(Replace("file", "new"), kNoError);

    EXPECT_EQ(ReadFile("other"), "untouched");
    EXPECT_FALSE(std::filesystem::is_symlink("file"));
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "other"}));
}

TEST_F(ReplaceFileTest, APipeUnderTheNewFilesNameIsRemovedAndDoesNotBlock) {
    ASSERT_EQ(mkfifo("file.new", 0600), 0);

    EXPECT_EQ(Replace("file", "new"), kNoError);

    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFolderUnderTheNewFilesNameIsAnObstacle) {
    WriteFile("file", "old");
    std::filesystem::create_directory("file.new");

    EXPECT_EQ(Replace("file", "new"), (ReplaceError{ReplaceReason::kObstacle, EEXIST}));

    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "file.new"}));
}

TEST_F(ReplaceFileTest, ANewFileThatAnotherProgramHasLockedIsLeftAloneUntilItIsUnlocked) {
    WriteFile("file", "old");
    WriteFile("file.new", "half");
    OpenFile other;
    ASSERT_EQ(other.Open("file.new", O_RDONLY), 0);
    ASSERT_EQ(flock(other.Descriptor(), LOCK_EX | LOCK_NB), 0);

    EXPECT_EQ(Replace("file", "new"), (ReplaceError{ReplaceReason::kOtherProgram, EWOULDBLOCK}));
    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(ReadFile("file.new"), "half");

    other.Close();
    EXPECT_EQ(Replace("file", "new"), kNoError);
    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, ANewFileThatAnotherProgramPutInThePlaceOfOursIsNeitherRenamedNorRemoved) {
    WriteFile("file", "old");
    const auto steal = [](int error) {
        return [error](const OpenFile&) {
            unlink("file.new");
            WriteFile("file.new", "another's");
            return error;
        };
    };

    EXPECT_EQ(ReplaceFile("file", steal(0)), (ReplaceError{ReplaceReason::kOtherProgram, EWOULDBLOCK}));
    EXPECT_EQ(ReadFile("file.new"), "another's");
    EXPECT_EQ(ReplaceFile("file", steal(EIO)), SystemError(EIO));
    EXPECT_EQ(ReadFile("file.new"), "another's");
    EXPECT_EQ(ReadFile("file"), "old");
}

TEST_F(ReplaceFileTest, AFileOfAnotherOwnerOrGroupStaysTheirs) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
    constexpr uid_t kNobody = 65534;
    const std::pair<uid_t, gid_t> owners[] = {{kNobody, getegid()}, {geteuid(), kNobody}, {kNobody, kNobody}};
    for (const auto& [user, group] : owners) {
        WriteFile("file", "old");
        ASSERT_EQ(chown("file", user, group), 0);

        EXPECT_EQ(Replace("file", "new"), kNoError);

        struct stat status {};
        ASSERT_EQ(stat("file", &status), 0);
        EXPECT_EQ(status.st_uid, user);
        EXPECT_EQ(status.st_gid, group);
        EXPECT_EQ(ReadFile("file"), "new");
        std::filesystem::remove("file");
    }
}

TEST_F(ReplaceFileTest, ANewFileThatAnotherProgramLocksFirstIsNotWrittenTo) {
    const FailingCall locks("flock", EWOULDBLOCK, 1, 2);  // of the new file, then of it as one left behind
    int calls = 0;

    EXPECT_EQ(ReplaceFile("file",
                          [&](const OpenFile& file) {
                              calls = locks.Calls();
                              return file.Write("new", 3);
                          }),
              kNoError);

    EXPECT_EQ(calls, 4) << "the last two clear the first file away and lock the second";
    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, ANewFileThatAnotherProgramRemovesMeanwhileIsNotInTheWay) {
    WriteFile("file.new", "left behind");
    {
        const FailingCall removed_first("unlink", ENOENT, 1, 1);
        EXPECT_EQ(Replace("file", "new"), kNoError);
        EXPECT_EQ(removed_first.Calls(), 2);
    }
    const FailingCall was_there("open", EEXIST, 1, 1);
    EXPECT_EQ(Replace("file", "newer"), kNoError);

    EXPECT_EQ(ReadFile("file"), "newer");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, ANewFileThatCannotBeLookedAtIsNotTakenForOurs) {
    WriteFile("file", "old");
    for (const char* call : {"fstat", "lstat"}) {
        const FailingCall look(call, EIO, 1, 1);  // right after it was locked
        EXPECT_EQ(ReplaceFile("file", Writing("new")), kNoError) << call;
        EXPECT_GT(look.Calls(), 2) << "it was made once more";
    }
    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, OnlyForRootIsItAnErrorThatAFileCannotBeGivenToItsOwner) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away";
    constexpr uid_t kNobody = 65534;
    WriteFile("file", "old");
    ASSERT_EQ(chown("file", kNobody, kNobody), 0);
    const FailingCall give("fchown", EPERM);
    EXPECT_EQ(Replace("file", "new"), SystemError(EPERM));
    EXPECT_EQ(ReadFile("file"), "old");

    ASSERT_EQ(chown("file", 0, 0), 0);
    ASSERT_EQ(chmod(".", 0777), 0);
    const NotRoot nobody;
    ASSERT_TRUE(nobody.Works());
    EXPECT_EQ(Replace("file", "new"), kNoError);
    EXPECT_EQ(ReadFile("file"), "new");
}

// ---- Replacements that fail ----

TEST_F(ReplaceFileTest, AFolderThatTakesTheFilesNameInTheLastMomentIsToldAsOne) {
    const FailingCall taken("rename", EISDIR);

    EXPECT_EQ(Replace("file", "new"), (ReplaceError{ReplaceReason::kFolder, EISDIR}));

    EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(ReplaceFileTest, AFolderThatMayNotBeOpenedIsNotFlushedButAnyOtherFailureIsAnError) {
    for (const int error : {EACCES, EPERM, EMFILE, EIO}) {
        const FailingCall folder("open", error, 2, 1);  // after the new file
        const bool harmless = error == EACCES || error == EPERM;
        EXPECT_EQ(Replace("file", "new"), harmless ? kNoError : SystemError(error)) << error;
    }
}

TEST_F(ReplaceFileTest, AFlushThatFailsIsAnErrorAndKeepsTheOldFileIfItIsThatOfTheNew) {
    WriteFile("file", "old");
    {
        const FailingCall flush("fsync", EIO, 1, 1);
        EXPECT_EQ(Replace("file", "new"), SystemError(EIO));
    }
    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));

    const FailingCall flush_of_folder("fsync", EIO, 2, 1);
    EXPECT_EQ(Replace("file", "new"), SystemError(EIO));
    EXPECT_EQ(ReadFile("file"), "new");
}

TEST_F(ReplaceFileTest, AFolderOfAFileSystemThatHasNoFlushForFoldersIsNoError) {
    for (const int error : {EINVAL, EOPNOTSUPP, ENOSYS}) {
        const FailingCall flush_of_folder("fsync", error, 2, 1);
        EXPECT_EQ(Replace("file", "new"), kNoError) << error;
        EXPECT_EQ(flush_of_folder.Calls(), 2);
    }
}

TEST_F(ReplaceFileTest, TheWritersErrorIsReturnedAndKeepsTheOldFile) {
    WriteFile("file", "old");

    EXPECT_EQ(ReplaceFile("file", [](const OpenFile& file) { return file.Write("n", 1) + ENOSPC; }),
              SystemError(ENOSPC));

    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFileThatMustNotGrowKeepsTheOldOne) {
    WriteFile("file", "old");
    {
        const FileSizeLimit limit(1000);
        EXPECT_EQ(Replace("file", std::string(2000, 'x')), SystemError(EFBIG));
    }

    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AWriterWithoutMemoryKeepsTheOldFileAndLeavesNothing) {
    WriteFile("file", "old");

    EXPECT_EQ(ReplaceFile("file", [](const OpenFile&) -> int { throw std::bad_alloc(); }),
              SystemError(ENOMEM));

    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFolderThatMayNotBeReadCannotBeFlushedAndThatIsNoError) {
    WriteFile("file", "old");
    ASSERT_EQ(chmod("file", 0666), 0);
    ASSERT_EQ(chmod(".", 0333), 0);
    {
        const NotRoot not_root;
        ASSERT_TRUE(not_root.Works());
        EXPECT_EQ(Replace("file", "new"), kNoError);
    }
    ASSERT_EQ(chmod(".", 0755), 0);

    EXPECT_EQ(ReadFile("file"), "new");
}

TEST_F(ReplaceFileTest, AFolderThatIsGoneIsNoEntry) {
    EXPECT_EQ(Replace("gone/file", "new"), SystemError(ENOENT));
}

TEST_F(ReplaceFileTest, AReadOnlyFolderIsNoAccess) {
    WriteFile("file", "old");
    ASSERT_EQ(chmod("file", 0644), 0);
    ASSERT_EQ(chmod(".", 0555), 0);
    {
        const NotRoot not_root;
        ASSERT_TRUE(not_root.Works());
        EXPECT_EQ(Replace("file", "new"), SystemError(EACCES));
        EXPECT_EQ(Keep("file"), SystemError(EACCES));
    }
    ASSERT_EQ(chmod(".", 0755), 0);

    EXPECT_EQ(ReadFile("file"), "old");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFolderInTheFilesPlaceIsNeitherReplacedNorSetAside) {
    std::filesystem::create_directory("file");
    WriteFile("file/inside", "untouched");

    EXPECT_EQ(Replace("file", "new"), (ReplaceError{ReplaceReason::kFolder, EISDIR}));
    EXPECT_EQ(Keep("file"), (ReplaceError{ReplaceReason::kFolder, EISDIR}));

    EXPECT_EQ(ReadFile("file/inside"), "untouched");
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

// ---- Setting aside ----

TEST_F(ReplaceFileTest, AFileSetAsideHasASecondNameThatOutlivesItsReplacement) {
    WriteFile("file", "damaged");
    ASSERT_EQ(chmod("file", 0640), 0);

    EXPECT_EQ(Keep("file"), kNoError);
    EXPECT_EQ(ReadFile("file"), "damaged");
    EXPECT_EQ(Replace("file", "new"), kNoError);

    EXPECT_EQ(ReadFile("file.bak"), "damaged");
    EXPECT_EQ(ModeOf("file.bak"), 0640U);
    EXPECT_EQ(ReadFile("file"), "new");
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "file.bak"}));
}

TEST_F(ReplaceFileTest, EveryFurtherFileSetAsideGetsTheNextNumber) {
    for (const char* damaged : {"a", "b", "c"}) {
        WriteFile("file", damaged);
        EXPECT_EQ(Keep("file"), kNoError);
        EXPECT_EQ(Replace("file", "new"), kNoError);
    }

    EXPECT_EQ(ReadFile("file.bak"), "a");
    EXPECT_EQ(ReadFile("file.bak.1"), "b");
    EXPECT_EQ(ReadFile("file.bak.2"), "c");
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "file.bak", "file.bak.1", "file.bak.2"}));
}

TEST_F(ReplaceFileTest, WhateverHasABackupsNameIsLeftAlone) {
    std::filesystem::create_directory("file.bak");
    std::filesystem::create_symlink("nowhere", "file.bak.1");
    WriteFile("file", "damaged");

    EXPECT_EQ(Keep("file"), kNoError);

    EXPECT_TRUE(std::filesystem::is_directory("file.bak"));
    EXPECT_EQ(std::filesystem::read_symlink("file.bak.1"), "nowhere");
    EXPECT_EQ(ReadFile("file.bak.2"), "damaged");
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "file.bak", "file.bak.1", "file.bak.2"}));
}

TEST_F(ReplaceFileTest, AFileThatIsSetAsideAlreadyGetsNoThirdName) {
    WriteFile("file", "damaged");
    WriteFile("file.bak", "older");

    EXPECT_EQ(Keep("file"), kNoError);
    EXPECT_EQ(Keep("file"), kNoError);

    EXPECT_EQ(ReadFile("file.bak"), "older");
    EXPECT_EQ(folder_.Names(), (FileNames{"file", "file.bak", "file.bak.1"}));
}

TEST_F(ReplaceFileTest, ANameThatCannotBeLookedAtIsNoSecondNameOfIt) {
    WriteFile("file", "old");
    for (const int look : {2, 3}) {  // at the file, at the name; the first finds out what there is to keep
        std::filesystem::create_hard_link("file", "file.bak");
        const FailingCall failing("lstat", EIO, look, 1);
        std::string kept_as;

        EXPECT_EQ(SetAside("file", kept_as), kNoError);

        EXPECT_EQ(kept_as, "file.bak.1") << look;
        std::filesystem::remove("file.bak");
        std::filesystem::remove("file.bak.1");
    }
}

TEST_F(ReplaceFileTest, ALinkToTheFileIsNoSecondNameOfIt) {
    WriteFile("file", "damaged");
    std::filesystem::create_symlink("file", "file.bak");

    EXPECT_EQ(Keep("file"), kNoError);
    EXPECT_EQ(Replace("file", "new"), kNoError);

    EXPECT_EQ(ReadFile("file.bak.1"), "damaged");
}

TEST_F(ReplaceFileTest, TheNextBackupsNameIsTheOneThatSettingAsideGives) {
    WriteFile("file", "damaged");
    std::filesystem::create_symlink("nowhere", "file.bak");
    std::string kept_as;

    EXPECT_EQ(NextBackupName("file"), "file.bak.1");
    EXPECT_EQ(SetAside("file", kept_as), kNoError);
    EXPECT_EQ(kept_as, "file.bak.1");
    EXPECT_EQ(NextBackupName("file"), "file.bak.1") << "which it has already";
    EXPECT_EQ(Replace("file", "new"), kNoError);
    EXPECT_EQ(NextBackupName("file"), "file.bak.2");
}

TEST_F(ReplaceFileTest, AFileThatIsNotThereNeedsNoKeeping) {
    std::string kept_as = "before";
    EXPECT_EQ(SetAside("file", kept_as), kNoError);

    EXPECT_EQ(kept_as, "");
    EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(ReplaceFileTest, SettingAsideInAFolderThatCannotBeLookedIntoFails) {
    WriteFile("file", "");

    EXPECT_EQ(Keep("file/inside"), SystemError(ENOTDIR));
}

// ---- Setting a file aside where there are no hard links ----

TEST_F(ReplaceFileTest, WithoutHardLinksACopyIsSetAsideWhateverItsLength) {
    const FailingCall no_links("link", EPERM);
    for (const std::size_t bytes : {0, 1, 65535, 65536, 65537, 200'000}) {
        SCOPED_TRACE(bytes);
        std::string contents(bytes, '\0');
        for (std::size_t i = 0; i < bytes; ++i) contents[i] = static_cast<char>(i * 31 / 7);
        WriteFile("file", contents);
        std::string kept_as;

        EXPECT_EQ(SetAside("file", kept_as), kNoError);

        EXPECT_EQ(kept_as, "file.bak");
        EXPECT_EQ(ReadFile("file.bak"), contents);
        EXPECT_EQ(ModeOf("file.bak"), 0600U);
        EXPECT_FALSE(std::filesystem::equivalent("file", "file.bak"));
        std::filesystem::remove("file.bak");
    }
}

TEST_F(ReplaceFileTest, WithoutHardLinksANameThatIsTakenIsLeftAloneToo) {
    const FailingCall no_links("link", EPERM);
    WriteFile("file", "new");
    WriteFile("file.bak", "another's");
    std::string kept_as;

    EXPECT_EQ(SetAside("file", kept_as), kNoError);

    EXPECT_EQ(kept_as, "file.bak.1");
    EXPECT_EQ(ReadFile("file.bak"), "another's");
    EXPECT_EQ(ReadFile("file.bak.1"), "new");
}

TEST_F(ReplaceFileTest, WithoutHardLinksWhatIsNoRegularFileIsNotCopied) {
    const FailingCall no_links("link", EPERM);
    ASSERT_TRUE(MakeSpecial(S_IFIFO, "file"));

    EXPECT_EQ(Keep("file"), (ReplaceError{ReplaceReason::kNotCopied, EPERM}));

    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, AFileThatGetsShorterWhileItIsCopiedIsNotSetAside) {
    const FailingCall no_links("link", EPERM);
    WriteFile("file", std::string(100'000, 'x'));
    const FailingCall no_more("read", 0, 2);

    EXPECT_EQ(Keep("file"), (ReplaceError{ReplaceReason::kNotCopied, EPERM}));

    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

TEST_F(ReplaceFileTest, NoPartOfACopyStaysWhereItFails) {
    struct Case {
        const char* call;
        int number;
    };
    const FailingCall no_links("link", EPERM);
    WriteFile("file", std::string(100'000, 'x'));
    for (const auto& [call, number] : {Case{"fstat", 1}, Case{"read", 1}, Case{"read", 2}, Case{"fsync", 1},
                                       Case{"fsync", 2}}) {  // of the copy, then of its folder
        const FailingCall failing(call, EIO, number, 1);

        EXPECT_EQ(Keep("file"), SystemError(EIO)) << call << " " << number;

        EXPECT_EQ(folder_.Names(), (FileNames{"file"})) << call << " " << number;
    }
    const FileSizeLimit limit(70'000);
    EXPECT_EQ(Keep("file"), SystemError(EFBIG));
    EXPECT_EQ(folder_.Names(), (FileNames{"file"}));
}

}  // namespace
