// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Disks and folders as they are found: full, read-only, linked, with permissions of their own.
#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <string>

#include "tests/store/workshop.h"

namespace store {
namespace {

namespace files = std::filesystem;

using Names = std::vector<std::string>;

mode_t ModeOf(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

// ---- Full ----

/// Hides a small file system of its own over a folder, seen by this process and its children alone; it goes
/// with the process. Returns what is in the way, empty for nothing.
std::string MountSmallDisk(const std::string& folder, const std::string& size) {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0) {
        return std::strerror(errno);
    }
    return "";
}

TEST(Disk, AFullOneKeepsTheOldFileAndTheEventsUntilThereIsSpace) {
    Folder folder;
    const std::string obstacle = MountSmallDisk(folder.Path(), "40k");
    if (!obstacle.empty()) GTEST_SKIP() << "cannot mount a small disk (needs root): " << obstacle;
    folder.Write("database.bin", FileBytes(3));
    folder.Write("films", std::string(std::size_t{20} * 1024, 'x'));

    Worker worker(folder, "load events 40 save wait save");
    worker.Line();
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    EXPECT_EQ(folder.Names(), (Names{"database.bin", "films"}));
    files::remove(folder.Path("films"));
    worker.GoOn();
    const End end = worker.WaitForEnd();

    EXPECT_TRUE(IsOneComplaint(end.error, "il disco e' pieno")) << end.error;
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
    umount2(folder.Path().c_str(), MNT_DETACH);
}

/// Lets no file of this process grow beyond so many bytes.
void LimitFiles(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

TEST(Disk, AFileThatMustNotGrowFailsTheSaveAndKeepsTheOld) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    Worker::Start start;
    start.before = [] {
        std::signal(SIGXFSZ, SIG_IGN);
        LimitFiles(5000);
    };

    const End end = RunWorker(folder, "load events 40 save copy seen events 3 save", start);

    EXPECT_TRUE(end.Well());
    EXPECT_TRUE(IsOneComplaint(end.error)) << end.error;
    EXPECT_EQ(folder.Read("seen"), FileBytes(3));
    EXPECT_EQ(folder.Names(), (Names{"database.bin", "seen"}));
}

TEST(Disk, ADeathInTheMiddleOfAWriteKeepsTheOldFile) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    Worker::Start start;
    start.before = [] { LimitFiles(5000); };

    const End end = RunWorker(folder, "load events 40 save", start);

    EXPECT_FALSE(end.Well());
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
}

// ---- Read-only ----

constexpr uid_t kNobody = 65534;

/// Gives up root, for whom no folder is read-only.
void BecomeNobody() {
    if (geteuid() != 0) return;
    if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(125);
}

/// Gives a path to the one that BecomeNobody() makes us.
void GiveToNobody(const std::string& path) {
    if (geteuid() == 0 && chown(path.c_str(), kNobody, kNobody) != 0) FAIL() << path;
}

TEST(Disk, AReadOnlyFolderKeepsTheOldFileAndTheEventsUntilItIsWritable) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    GiveToNobody(folder.Path());
    GiveToNobody(folder.Path("database.bin"));
    files::permissions(folder.Path(), files::perms(0555));
    Worker::Start start;
    start.before = BecomeNobody;

    Worker worker(folder, "load events 40 save wait save", start);
    worker.Line();
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
    files::permissions(folder.Path(), files::perms(0755));
    worker.GoOn();
    const End end = worker.WaitForEnd();

    EXPECT_TRUE(end.Well());
    EXPECT_TRUE(IsOneComplaint(end.error, "la cartella e' in sola lettura")) << end.error;
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
}

TEST(Disk, AFolderThatIsGoneFailsTheSaveInOneLine) {
    Folder folder;
    files::create_directory(folder.Path("gone"));
    Worker::Start start;
    start.before = [] {
        if (chdir("gone") != 0 || rmdir("../gone") != 0) _exit(125);
    };

    const End end = RunWorker(folder, "load events 40 save", start);

    EXPECT_TRUE(end.Well());
    EXPECT_TRUE(IsOneComplaint(end.error, "la cartella non c'e' piu'")) << end.error;
}

// ---- Links ----

TEST(Disk, ALinkStaysALinkAndItsTargetIsReplaced) {
    Folder folder;
    files::create_directory(folder.Path("elsewhere"));
    folder.Write("elsewhere/real.bin", FileBytes(3));
    files::create_symlink("real.bin", folder.Path("elsewhere/second"));
    files::create_symlink("elsewhere/second", folder.Path("database.bin"));

    const End end = RunWorker(folder, "load events 40 save");

    EXPECT_EQ(end.error, "");
    EXPECT_EQ(files::read_symlink(folder.Path("database.bin")), "elsewhere/second");
    EXPECT_EQ(files::read_symlink(folder.Path("elsewhere/second")), "real.bin");
    EXPECT_TRUE(files::is_regular_file(files::symlink_status(folder.Path("elsewhere/real.bin"))));
    EXPECT_EQ(folder.Read("elsewhere/real.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), (Names{"database.bin", "elsewhere"}));
}

TEST(Disk, ALinkToNothingGetsItsTarget) {
    Folder folder;
    files::create_symlink("later.bin", folder.Path("database.bin"));

    const End end = RunWorker(folder, "load events 40 save");

    EXPECT_EQ(end.error, "");
    EXPECT_EQ(files::read_symlink(folder.Path("database.bin")), "later.bin");
    EXPECT_EQ(folder.Read("later.bin"), FileBytes(40));
}

// ---- Permissions ----

TEST(Disk, ANewFileIsReadableByItsOwnerAlone) {
    Folder folder;
    Worker::Start start;
    start.before = [] { umask(0); };

    RunWorker(folder, "load events 3 save", start);

    EXPECT_EQ(ModeOf(folder.Path("database.bin")), 0600U);
}

TEST(Disk, AReplacedFileKeepsItsPermissions) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    files::permissions(folder.Path("database.bin"), files::perms(0640));
    Worker::Start start;
    start.before = [] { umask(077); };

    RunWorker(folder, "load events 40 save", start);

    EXPECT_EQ(ModeOf(folder.Path("database.bin")), 0640U);
}

/// Puts a store of three events into a folder, which its owner, nobody, may not read. Returns how nobody
/// starts.
Worker::Start StartOverUnreadableStore(const Folder& folder) {
    folder.Write("database.bin", FileBytes(3));
    GiveToNobody(folder.Path());
    GiveToNobody(folder.Path("database.bin"));
    files::permissions(folder.Path("database.bin"), files::perms(0));
    Worker::Start start;
    start.before = BecomeNobody;
    return start;
}

TEST(Disk, AReplacedFileIsReadableByItsOwnerWhateverItWas) {
    Folder folder;
    const Worker::Start start = StartOverUnreadableStore(folder);

    const End first = RunWorker(folder, "events 40 save", start);
    EXPECT_EQ(ModeOf(folder.Path("database.bin")), 0400U);
    const End second = RunWorker(folder, "load save", start);

    EXPECT_EQ(first.error + second.error, "");
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40)) << "the next start must find the events";
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

TEST(Disk, AnUnreadableFileIsNotReplacedUntilItCanBeRead) {
    Folder folder;
    const Worker::Start start = StartOverUnreadableStore(folder);

    Worker worker(folder, "load add 40 save wait retry 2", start);
    worker.Line();
    EXPECT_EQ(ModeOf(folder.Path("database.bin")), 0U);
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
    files::permissions(folder.Path("database.bin"), files::perms(0600));
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    worker.GoOn();
    const End end = worker.WaitForEnd();

    EXPECT_TRUE(end.Well());
    EXPECT_TRUE(IsOneComplaint(LinesWith(kFailedLine, end.error), "manca il permesso di leggerlo"))
        << end.error;
    EXPECT_EQ(folder.Read("database.bin")->substr(4), FileBytes(3).substr(4) + FileBytes(40).substr(4));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

TEST(Disk, AnUnreadableFileThatSomebodyElsesSaveLeftBesideIsClearedAway) {
    Folder folder;
    folder.Write("database.bin.new", FileBytes(3));
    GiveToNobody(folder.Path());
    files::permissions(folder.Path("database.bin.new"), files::perms(0));
    Worker::Start start;
    start.before = BecomeNobody;

    const End end = RunWorker(folder, "load events 40 save", start);

    EXPECT_EQ(end.error, "");
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

TEST(Disk, AFileThatRootReplacesKeepsItsOwnerItsGroupAndItsPermissions) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can keep another owner";
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    GiveToNobody(folder.Path("database.bin"));
    files::permissions(folder.Path("database.bin"), files::perms(02640));

    const End end = RunWorker(folder, "load events 40 save");

    EXPECT_EQ(end.error, "");
    struct stat status {};
    ASSERT_EQ(stat(folder.Path("database.bin").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kNobody);
    EXPECT_EQ(status.st_gid, kNobody);
    EXPECT_EQ(status.st_mode & 07777U, 02640U);
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
}

// ---- Sizes ----

TEST(Disk, AnEmptyListIsExactlyFourZeroBytes) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));

    RunWorker(folder, "load events 0 save");

    EXPECT_EQ(folder.Read("database.bin"), std::string(4, '\0'));
}

TEST(Disk, ADamagedFileIsKeptOnceHoweverOftenItIsSaved) {
    Folder folder;
    const std::string damaged = FileBytes(3).substr(0, 1000);
    folder.Write("database.bin", damaged);

    const End end = RunWorker(folder, "load events 40 save save save");

    EXPECT_EQ(LinesWith(kFailedLine, end.error), "");
    EXPECT_EQ(LinesWith(kKeptLine, end.error),
              "Ulmaro Assistant: il vecchio \"database.bin\" e' conservato come \"database.bin.bak\".\n");
    EXPECT_EQ(folder.Read("database.bin.bak"), damaged);
    EXPECT_EQ(folder.Names(), (Names{"database.bin", "database.bin.bak"}));
}

/// Lets this process have only so many bytes of memory beyond what it has already.
void LimitMemory(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_DATA, &limit);
}

TEST(Disk, MoreEventsThanMemoryEndTheProgramWithALineAndTheStatusOne) {
    Folder folder;
    const std::string bytes = FileBytes(100'000);
    folder.Write("database.bin", bytes);
    Worker::Start start;
    start.before = [] { LimitMemory(rlim_t{16} << 20); };

    const End end = RunWorker(folder, "load save", start);

    EXPECT_EQ(end.ExitStatus(), 1);
    EXPECT_EQ(end.error,
              "Ulmaro Assistant: non c'e' abbastanza memoria per gli eventi di \"database.bin\".\n");
    EXPECT_EQ(folder.Read("database.bin"), bytes);
}

TEST(Disk, ACountOfTwoThousandMillionsTakesNoMoreMemoryThanTheFileAndAThousandEvents) {
    Folder folder;
    std::string bytes = FileBytes(3);
    bytes.replace(0, 4, "\xFF\xFF\xFF\x7F");
    folder.Write("database.bin", bytes);
    Worker::Start start;
    start.before = [] { LimitMemory(rlim_t{16} << 20); };

    const End end = RunWorker(folder, "load save", start);

    EXPECT_TRUE(end.Well());
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    EXPECT_EQ(folder.Read("database.bin.bak"), bytes);
}

}  // namespace
}  // namespace store
