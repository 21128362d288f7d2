// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Two programs at one folder, which both save: the file is always one complete version of one of them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/store/workshop.h"

namespace store {
namespace {

using Clock = std::chrono::steady_clock;
using Names = std::vector<std::string>;

constexpr auto kReadFor = std::chrono::seconds(4);
constexpr char kOtherSaves[] = "un altro programma li sta salvando";

// ---- Both for ever ----

/// What a reader found, counted.
struct Reads {
    int short_versions = 0, long_versions = 0;  ///< the file is version 3, version 400
    int others = 0;                             ///< the file is anything else, or not there
    int changes = 0;                            ///< the version is not the one that was read before
};

/// Reads the file again and again for some seconds.
Reads ReadForSeconds(const Folder& folder) {
    const std::string short_version = FileBytes(3);
    const std::string long_version = FileBytes(400);
    Reads reads;
    std::string before;
    for (const auto end = Clock::now() + kReadFor; Clock::now() < end;) {
        const std::string bytes = folder.Read("database.bin").value_or("");
        ++(bytes == short_version  ? reads.short_versions
           : bytes == long_version ? reads.long_versions
                                   : reads.others);
        if (bytes != before) ++reads.changes;
        before = bytes;
    }
    return reads;
}

/// Checks that a worker saved until it was killed, and that no save failed.
void ExpectSavedToTheEnd(Worker& worker) {
    worker.Kill();
    const End end = worker.WaitForEnd();
    EXPECT_TRUE(end.Killed());
    EXPECT_EQ(end.error, "");
}

class TwoSavers : public testing::TestWithParam<Place> {};

TEST_P(TwoSavers, EveryReadIsOneOfTheirTwoVersionsAndNoSaveFails) {
    Folder folder(GetParam());
    folder.Write("database.bin", FileBytes(3));
    Worker first(folder, "repeat 3");
    Worker second(folder, "repeat 400");
    first.Line();
    second.Line();

    const Reads reads = ReadForSeconds(folder);

    ExpectSavedToTheEnd(first);
    ExpectSavedToTheEnd(second);
    EXPECT_EQ(reads.others, 0);
    EXPECT_GT(reads.short_versions, 0);
    EXPECT_GT(reads.long_versions, 0);
    EXPECT_GT(reads.changes, 10) << "they did not save at the same time";
}

std::string PlaceName(const testing::TestParamInfo<Place>& place) {
    return place.param == Place::kDisk ? "OnDisk" : "InMemory";
}

INSTANTIATE_TEST_SUITE_P(All, TwoSavers, testing::Values(Place::kDisk, Place::kMemory), PlaceName);

// ---- One waits for the other ----

/// The new file of a save in another program, which has come half through.
class OtherSave {
  public:
    explicit OtherSave(const Folder& folder) : folder_(folder) {
        folder.Write("database.bin.new", FileBytes(400).substr(0, 5000));
        file_ = open(Path().c_str(), O_RDONLY | O_CLOEXEC);
        if (flock(file_, LOCK_EX | LOCK_NB) != 0) ADD_FAILURE() << "cannot lock " << Path();
    }
    ~OtherSave() { End(); }
    OtherSave(const OtherSave&) = delete;
    OtherSave& operator=(const OtherSave&) = delete;

    /// Writes the rest and replaces the store.
    void Finish() {
        folder_.Write("database.bin.new", FileBytes(400));
        EXPECT_EQ(std::rename(Path().c_str(), folder_.Path("database.bin").c_str()), 0);
        End();
    }

    /// Ends as if killed.
    void End() {
        if (file_ >= 0) close(file_);
        file_ = -1;
    }

  private:
    std::string Path() const { return folder_.Path("database.bin.new"); }

    const Folder& folder_;
    int file_ = -1;
};

TEST(OtherSaver, ASaveWaitsUntilTheOthersIsDone) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    OtherSave other(folder);

    Worker worker(folder, "load events 40 wait save");
    worker.Line();
    worker.GoOn();
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    EXPECT_EQ(folder.Read("database.bin.new"), FileBytes(400).substr(0, 5000));
    other.Finish();
    const End end = worker.WaitForEnd();

    EXPECT_TRUE(end.Well());
    EXPECT_EQ(end.error, "");
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

TEST(OtherSaver, ASaveThatWaitsInVainSaysSoAndTheNextTriesAgain) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    OtherSave other(folder);

    Worker worker(folder, "load events 40 save wait save");
    worker.Line();
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
    EXPECT_EQ(folder.Read("database.bin.new"), FileBytes(400).substr(0, 5000));
    other.End();
    worker.GoOn();
    const End end = worker.WaitForEnd();

    EXPECT_TRUE(end.Well());
    EXPECT_TRUE(IsOneComplaint(end.error, kOtherSaves)) << end.error;
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

TEST(OtherSaver, AFileThatItLocksInTheNewFilesPlaceMeanwhileIsLeftAlone) {
    for (const char* call : {"flock", "fchmod"}) {  // in clearing away, in writing
        SCOPED_TRACE(call);
        Folder folder;
        folder.Write("database.bin", FileBytes(3));
        folder.Write("database.bin.new", "left behind");
        Worker::Start start;
        start.environment = {{"LD_PRELOAD", ULMARO_FAILING_CALLS},
                             {"ULMARO_SPOIL_CALL", call},
                             {"ULMARO_SPOIL_WAY", "steal-locked"}};

        Worker worker(folder, "load events 40 watch save wait release save", start);
        worker.Line();
        EXPECT_EQ(folder.Read("database.bin"), FileBytes(3));
        EXPECT_EQ(folder.Read("database.bin.new"), "half");
        worker.GoOn();
        const End end = worker.WaitForEnd();

        EXPECT_TRUE(end.Well());
        EXPECT_TRUE(IsOneComplaint(end.error, kOtherSaves)) << end.error;
        EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
        EXPECT_EQ(folder.Names(), Names{"database.bin"});
    }
}

// ---- One that knows no locks ----

TEST(OtherSaver, WithoutLocksInTheFileSystemASaveGoesOnAndClearsAwayWhatWasLeftBehind) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    folder.Write("database.bin.new", "left behind");
    Worker::Start start;
    start.environment = {{"LD_PRELOAD", ULMARO_FAILING_CALLS}, {"ULMARO_NO_LOCKS", "1"}};

    const End end = RunWorker(folder, "load events 40 watch save release", start);

    EXPECT_EQ(end.error, "");
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), Names{"database.bin"});
}

/// A save of version 40 over version 3, before whose n-th call another program took the new file's place.
class StolenSave {
  public:
    StolenSave(const Folder& folder, int n) {
        folder.Empty();
        folder.Write("database.bin", FileBytes(3));
        Worker::Start start;
        start.environment = {{"LD_PRELOAD", ULMARO_FAILING_CALLS},
                             {"ULMARO_SPOIL_CALL", std::to_string(n)},
                             {"ULMARO_SPOIL_WAY", "steal"}};
        end_ = RunWorker(folder, "load events 40 watch save release copy seen save", start);
    }

    const End& Result() const { return end_; }

    /// Returns the name of the call.
    std::string Call() const {
        const std::size_t space = end_.out.find(' ');
        return end_.out.substr(space + 1, end_.out.find('\n') - space - 1);
    }

  private:
    End end_;
};

TEST(OtherSaver, OneThatTakesTheNewFilesPlaceNeverGetsHalfAFileIntoTheStores) {
    Folder folder(Place::kMemory);
    int n = 0;
    for (bool before_rename = true; before_rename && !HasFailure();) {
        SCOPED_TRACE("call " + std::to_string(++n));
        const StolenSave save(folder, n);
        before_rename = save.Call() != "rename";
        if (!before_rename) break;  // the instant between the last look and the rename stays
        SCOPED_TRACE(save.Call());

        ASSERT_NE(save.Call(), "none");
        EXPECT_TRUE(save.Result().Well());
        if (folder.Read("seen") == FileBytes(40)) {
            EXPECT_EQ(save.Result().error, "");
        } else {
            EXPECT_EQ(folder.Read("seen"), FileBytes(3)) << "half a file got into the store's place";
            EXPECT_TRUE(IsOneComplaint(save.Result().error, kOtherSaves)) << save.Result().error;
        }
        EXPECT_EQ(folder.Read("database.bin"), FileBytes(40)) << "the next save must work";
        EXPECT_EQ(folder.Names(), (Names{"database.bin", "seen"}));
    }
    EXPECT_GT(n, 8) << "the library saw too few calls";
}

}  // namespace
}  // namespace store
