// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Every system call of a save fails once, in every way, in stores of every kind: the file stays one complete
// version, the failure is told in one line, and the next save works. So does every call of a load and the
// save after it: no event is lost. And so does every allocation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/store/workshop.h"

namespace store {
namespace {

/// The store before the save.
struct Scene {
    const char* name;
    void (*prepare)(const Folder&);
    std::string old;                                      ///< the bytes before the save; "-" for no file
    bool damaged = false;                                 ///< the old bytes must be kept aside
    bool link = false;                                    ///< the store is a symbolic link
    std::map<std::string, std::string> environment = {};  ///< of the worker
};

/// Names a scene in GoogleTest's messages.
std::ostream& operator<<(std::ostream& out, const Scene& scene) {
    return out << scene.name;
}

const std::string kNoFile = "-";
const std::string kDamaged = FileBytes(3).substr(0, 1000);

void WriteWhole(const Folder& folder) {
    folder.Write("database.bin", FileBytes(3));
}

void WriteDamaged(const Folder& folder) {
    folder.Write("database.bin", kDamaged);
}

void WriteLink(const Folder& folder) {
    std::filesystem::create_directory(folder.Path("elsewhere"));
    folder.Write("elsewhere/real.bin", FileBytes(3));
    std::filesystem::create_symlink("elsewhere/real.bin", folder.Path("database.bin"));
}

const Scene kScenes[] = {
    {.name = "AFile", .prepare = WriteWhole, .old = FileBytes(3)},
    {.name = "NoFile", .prepare = [](const Folder&) {}, .old = kNoFile},
    {.name = "ALink", .prepare = WriteLink, .old = FileBytes(3), .link = true},
    {.name = "ADamagedFile", .prepare = WriteDamaged, .old = kDamaged, .damaged = true},
    {.name = "ADamagedFileWithoutHardLinks",
     .prepare = WriteDamaged,
     .old = kDamaged,
     .damaged = true,
     .environment = {{"ULMARO_NO_LINKS", "1"}}},
};

const char* const kWays[] = {"eio",   "enospc", "eintr", "emfile",    "eacces",
                             "short", "full",   "kill",  "kill-after"};

class FailingCalls : public testing::TestWithParam<std::tuple<Scene, const char*>> {
  protected:
    const Scene& Before() const { return std::get<0>(GetParam()); }
    std::string Way() const { return std::get<1>(GetParam()); }

    /// Saves version 40 over the scene, the n-th call spoilt; afterwards the worker, if it still lives,
    /// copies the store to "seen" and saves once more.
    End SaveSpoilt(int n) {
        folder_.Empty();
        Before().prepare(folder_);
        Worker::Start start;
        start.environment = Before().environment;
        start.environment["LD_PRELOAD"] = ULMARO_FAILING_CALLS;
        start.environment["ULMARO_SPOIL_CALL"] = std::to_string(n);
        start.environment["ULMARO_SPOIL_WAY"] = Way();
        return RunWorker(folder_, "load events 40 watch save release copy seen save", start);
    }

    /// Returns whether a save must not be told as done after what was spoilt: a step before the replacement,
    /// on which the new file's bytes, their safety on the disk or its permissions depend, or the flush after
    /// it.
    bool MustFail(const std::string& call) const {
        if (call == "none" || Way() == "short" || Way() == "eintr") return false;
        if (Way() == "full") return call == "write";
        if (call == "late fsync") return true;
        if (call == "late open") return Way() != "eacces";  // a folder that may not be read is not flushed
        if (Before().damaged || IsLate(call)) return false;
        return call != "unlink" && !IsAboutOthers(call);
    }

    static bool IsLate(const std::string& call) { return call.starts_with("late "); }

    /// Returns whether a call only finds out about other programs that save. Without a damaged file no other
    /// call of these names comes before the replacement.
    static bool IsAboutOthers(const std::string& call) {
        return call == "flock" || call == "fstat" || call == "lstat";
    }

    /// Returns whether a save must get over what was spoilt: a write that stops short, a call that is
    /// interrupted, and a lock, which some file systems do not know.
    bool MustWork(const std::string& call) const {
        return Way() == "short" || Way() == "eintr" || call == "flock";
    }

    /// Returns how many files that were set aside there are.
    std::ptrdiff_t FilesSetAside() const {
        const auto names = folder_.Names();
        return std::count_if(names.begin(), names.end(),
                             [](const auto& name) { return name.starts_with("database.bin.bak"); });
    }

    /// Returns the bytes of a file, or that there is none.
    std::string Bytes(const std::string& file) const { return folder_.Read(file).value_or(kNoFile); }

    /// Returns whether the damaged bytes are still there under some name.
    bool DamagedBytesAreKept() const {
        const auto names = folder_.Names();
        return std::any_of(names.begin(), names.end(),
                           [&](const auto& name) { return Bytes(name) == Before().old; });
    }

    /// Checks the store after a save that went on: what is seen fits with what is said, and the second save
    /// has worked.
    void CheckSpoiltSave(const End& end) {
        EXPECT_TRUE(end.Well());
        const std::string call =
            end.out.substr(end.out.find(' ') + 1, end.out.find('\n') - end.out.find(' ') - 1);
        const std::string complaint = LinesWith(kFailedLine, end.error);
        if (MustWork(call)) {
            EXPECT_EQ(complaint, "") << "the save gave up";
        }
        if (MustFail(call)) {
            EXPECT_FALSE(complaint.empty()) << "the error of " << call << " was ignored";
        }
        if (!complaint.empty()) {
            EXPECT_TRUE(IsOneComplaint(complaint)) << complaint;
        }
        if (Bytes("seen") == FileBytes(40)) {
            EXPECT_TRUE(complaint.empty() || IsLate(call)) << "a save that worked has nothing to say";
        } else {
            EXPECT_EQ(Bytes("seen"), Before().old) << "the store is neither the old nor the new version";
            EXPECT_FALSE(complaint.empty());
        }
        EXPECT_EQ(Bytes("database.bin"), FileBytes(40)) << "the next save must work";
        CheckSetAside(end);
    }

    /// Checks that a damaged file is told once, kept and told once again.
    void CheckSetAside(const End& end) {
        const auto lines = [&](const char* part) {
            return std::ranges::count(LinesWith(part, end.error), '\n');
        };
        EXPECT_EQ(lines(kDamagedLine), Before().damaged ? 1 : 0);
        EXPECT_EQ(lines(kKeptLine), Before().damaged ? 1 : 0);
        EXPECT_EQ(std::ranges::count(end.error, '\n'),
                  lines(kDamagedLine) + lines(kKeptLine) + lines(kFailedLine));
        for (const std::string& name : folder_.Names()) {
            if (name.find(".bak") == std::string::npos) continue;
            EXPECT_EQ(Bytes(name), Before().old) << name << " is half a copy";
        }
        if (Before().environment.empty()) {
            EXPECT_EQ(FilesSetAside(), Before().damaged ? 1 : 0);
        }
    }

    /// Checks the store after a save that was killed, and that a new worker saves over what it left.
    void CheckKilledSave() {
        const std::string bytes = Bytes("database.bin");
        EXPECT_TRUE(bytes == FileBytes(40) || bytes == Before().old)
            << "the store is neither the old nor the new version";
        if (Before().damaged) {
            EXPECT_TRUE(DamagedBytesAreKept());
        }
        const End end = RunWorker(folder_, "load events 40 save");
        EXPECT_EQ(LinesWith(kFailedLine, end.error), "");
        EXPECT_EQ(Bytes("database.bin"), FileBytes(40));
        if (Before().damaged && Before().environment.empty()) {
            EXPECT_EQ(FilesSetAside(), 1) << "one link is enough, whichever save has made it";
        }
    }

    /// Checks what holds after any second save.
    void CheckFolder() {
        EXPECT_EQ(std::filesystem::is_symlink(folder_.Path("database.bin")), Before().link)
            << "a link stays a link, a file a file";
        EXPECT_EQ(Bytes("database.bin.new"), kNoFile);
        if (Before().damaged) {
            EXPECT_TRUE(DamagedBytesAreKept());
        }
    }

    Folder folder_{Place::kMemory};  // hundreds of saves, none of which the disk could spoil
};

TEST_P(FailingCalls, EachInItsTurnLeavesOneCompleteVersionAndANextSaveThatWorks) {
    int n = 0;
    bool spoilt = true;  // a save makes at least n calls
    while (spoilt && !HasFailure()) {
        SCOPED_TRACE("call " + std::to_string(++n));
        const End end = SaveSpoilt(n);
        if (end.Killed()) {
            CheckKilledSave();
        } else {
            CheckSpoiltSave(end);
            spoilt = n <= std::atoi(end.out.c_str());
        }
        CheckFolder();
    }
    RecordProperty("calls", n - 1);
    EXPECT_GT(n - 1, 8) << "the library saw too few calls";
}

std::string NameOf(const testing::TestParamInfo<FailingCalls::ParamType>& info) {
    std::string name = std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, FailingCalls,
                         testing::Combine(testing::ValuesIn(kScenes), testing::ValuesIn(kWays)), NameOf);

// ---- Loads ----

/// Returns the file of a version and, after its events, those of version 40.
std::string JoinedBytes(int version) {
    return FileBytes(version + 40).substr(0, 4) + FileBytes(version).substr(4) + FileBytes(40).substr(4);
}

/// A store of so many events is read in more than one piece.
constexpr int kManyEvents = 300;

class FailingLoads : public testing::TestWithParam<const char*> {
  protected:
    /// Loads many events, adds 40 events and saves, the n-th call spoilt. Copies the store to "seen"; two
    /// seconds pass.
    End LoadAndSave(int n) {
        folder_.Empty();
        folder_.Write("database.bin", FileBytes(kManyEvents));
        Worker::Start start;
        start.environment = {{"LD_PRELOAD", ULMARO_FAILING_CALLS},
                             {"ULMARO_SPOIL_CALL", std::to_string(n)},
                             {"ULMARO_SPOIL_WAY", GetParam()}};
        return RunWorker(folder_, "watch load add 40 save release copy seen retry 2", start);
    }

    Folder folder_{Place::kMemory};
};

TEST_P(FailingLoads, EachCallInItsTurnLosesNoEventAndIsMadeGoodByItself) {
    int failed = 0;
    bool spoilt = true;
    for (int n = 1; spoilt && !HasFailure(); ++n) {
        SCOPED_TRACE("call " + std::to_string(n));
        const End end = LoadAndSave(n);
        SCOPED_TRACE(end.out + end.error);
        spoilt = n <= std::atoi(end.out.c_str());

        EXPECT_TRUE(end.Well());
        const bool saved = folder_.Read("seen") == JoinedBytes(kManyEvents);
        EXPECT_TRUE(saved || folder_.Read("seen") == FileBytes(kManyEvents));
        EXPECT_EQ(folder_.Read("database.bin"), JoinedBytes(kManyEvents));
        EXPECT_EQ(folder_.Names(), (std::vector<std::string>{"database.bin", "seen"}));
        EXPECT_LE(std::ranges::count(end.error, '\n'), 1);
        const bool told =
            end.error.empty() || !LinesWith(kUnreadLine, end.error).empty() || IsOneComplaint(end.error);
        EXPECT_TRUE(told);
        EXPECT_TRUE(saved || IsOneComplaint(end.error));
        if (!end.error.empty()) ++failed;
    }
    if (GetParam() == std::string("eintr")) {
        EXPECT_EQ(failed, 0) << "an interrupted call is no failure";
    } else {
        EXPECT_GT(failed, 8) << "the library spoilt too few calls";
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailingLoads, testing::Values("eio", "eintr", "emfile", "eacces"),
                         [](const auto& way) { return std::string(way.param); });

// ---- Memory ----

class FailingMemory : public testing::Test {
  protected:
    static Worker::Start Spoiling(int n) {
        Worker::Start start;
        start.environment = {{"LD_PRELOAD", ULMARO_FAILING_CALLS},
                             {"ULMARO_SPOIL_MEMORY", std::to_string(n)}};
        return start;
    }

    Folder folder_{Place::kMemory};
};

TEST_F(FailingMemory, InALoadEndsTheProgramWithALineAndTheStatusOne) {
    for (const std::string& bytes : {FileBytes(3), kDamaged}) {
        folder_.Empty();
        folder_.Write("database.bin", bytes);
        const int allocations = std::atoi(RunWorker(folder_, "watch load memory", Spoiling(0)).out.c_str());
        EXPECT_GE(allocations, 3);
        for (int n = 1; n <= allocations; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));

            const End end = RunWorker(folder_, "watch load memory", Spoiling(n));

            EXPECT_EQ(end.ExitStatus(), 1);
            EXPECT_EQ(end.out, "");
            EXPECT_EQ(end.error,
                      "Ulmaro Assistant: non c'e' abbastanza memoria per gli eventi di \"database.bin\".\n");
            EXPECT_EQ(folder_.Read("database.bin"), bytes);
            EXPECT_EQ(folder_.Names(), std::vector<std::string>{"database.bin"});
        }
    }
}

TEST_F(FailingMemory, InASaveFailsItAndIsMadeGoodByItself) {
    constexpr char kWords[] = "load wait add 40 watch save release memory copy seen retry 2";
    for (const bool unread : {false, true}) {
        int failed = 0;
        for (int n = 1; n == failed + 1 && !HasFailure(); ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            folder_.Empty();
            if (unread)
                std::filesystem::create_directory(folder_.Path("database.bin"));
            else
                folder_.Write("database.bin", FileBytes(3));

            Worker worker(folder_, kWords, Spoiling(n));
            worker.Line();
            if (unread) {
                std::filesystem::remove(folder_.Path("database.bin"));
                folder_.Write("database.bin", FileBytes(3));
            }
            worker.GoOn();
            const End end = worker.WaitForEnd();

            EXPECT_TRUE(end.Well());
            const bool spoilt = n <= std::atoi(end.out.substr(end.out.find('\n') + 1).c_str());
            const std::string complaint = LinesWith(kFailedLine, end.error);
            EXPECT_EQ(IsOneComplaint(complaint, "non c'e' abbastanza memoria"), spoilt) << complaint;
            if (spoilt) ++failed;
            EXPECT_EQ(folder_.Read("database.bin"), JoinedBytes(3));
            const auto seen = folder_.Read("seen");
            EXPECT_TRUE(seen == FileBytes(3) || seen == JoinedBytes(3));
            EXPECT_EQ(folder_.Names(), (std::vector<std::string>{"database.bin", "seen"}));
        }
        EXPECT_GE(failed, unread ? 6 : 3);
    }
}

TEST_F(FailingMemory, WhileADamagedFileIsCopiedFailsTheSaveAndLeavesOneWholeCopyAtLast) {
    const std::string longer(40, 'd');  // than what a string holds without memory of its own
    int failed = 0;
    for (int n = 1; n == failed + 1 && !HasFailure(); ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        folder_.Empty();
        std::filesystem::create_directory(folder_.Path(longer));
        folder_.Write(longer + "/real.bin", kDamaged);
        std::filesystem::create_symlink(longer + "/real.bin", folder_.Path("database.bin"));
        Worker::Start start = Spoiling(n);
        start.environment["ULMARO_NO_LINKS"] = "1";

        const End end =
            RunWorker(folder_, "load events 40 watch save release memory copy seen retry 2", start);

        EXPECT_TRUE(end.Well());
        const bool spoilt = n <= std::atoi(end.out.substr(end.out.find('\n') + 1).c_str());
        const std::string complaint = LinesWith(kFailedLine, end.error);
        EXPECT_EQ(IsOneComplaint(complaint, "non c'e' abbastanza memoria"), spoilt) << complaint;
        if (spoilt) ++failed;
        const auto seen = folder_.Read("seen");
        EXPECT_TRUE(seen == kDamaged || seen == FileBytes(40));
        EXPECT_EQ(folder_.Read(longer + "/real.bin"), FileBytes(40));
        EXPECT_EQ(folder_.Read(longer + "/real.bin.bak"), kDamaged);
        EXPECT_EQ(folder_.Read(longer + "/real.bin.bak.1"), std::nullopt);
        EXPECT_EQ(folder_.Read(longer + "/real.bin.new"), std::nullopt);
    }
    EXPECT_GE(failed, 10);
}

}  // namespace
}  // namespace store
