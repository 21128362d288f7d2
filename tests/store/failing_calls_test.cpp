// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Every system call of a save fails once, in every way, in stores of every kind: the file stays one complete
// version, the failure is told in one line, and the next save works.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <tuple>

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

const char* const kWays[] = {"eio", "enospc", "eintr", "short", "full", "kill", "kill-after"};

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

    /// Returns whether a save must not go on after what was spoilt: a step before the replacement, on which
    /// the new file's bytes, their safety on the disk or its permissions depend.
    bool MustFail(const std::string& call) const {
        if (Before().damaged || call == "none" || call == "late" || Way() == "short") return false;
        if (Way() == "full") return call == "write";
        if (Way() == "eintr" && call == "write") return false;
        return call != "unlink" && !IsAboutOthers(call);
    }

    /// Returns whether a call only finds out about other programs that save. Without a damaged file no other
    /// call of these names comes before the replacement.
    static bool IsAboutOthers(const std::string& call) {
        return call == "flock" || call == "fstat" || call == "lstat";
    }

    /// Returns whether a save must get over what was spoilt: a write that stops short or is interrupted, and
    /// a lock, which some file systems do not know.
    bool MustWork(const std::string& call) const {
        return Way() == "short" || call == "flock" || (Way() == "eintr" && call == "write");
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
        if (MustWork(call)) {
            EXPECT_EQ(end.error, "") << "the save gave up";
        }
        if (MustFail(call)) {
            EXPECT_FALSE(end.error.empty()) << "the error of " << call << " was ignored";
        }
        if (Bytes("seen") == FileBytes(40)) {
            EXPECT_EQ(end.error, "") << "a save that worked has nothing to say";
        } else {
            EXPECT_EQ(Bytes("seen"), Before().old) << "the store is neither the old nor the new version";
            EXPECT_TRUE(IsOneComplaint(end.error)) << end.error;
        }
        EXPECT_EQ(Bytes("database.bin"), FileBytes(40)) << "the next save must work";
        for (const std::string& name : folder_.Names()) {
            if (name.find(".bak") == std::string::npos) continue;
            EXPECT_EQ(Bytes(name), Before().old) << name << " is half a copy";
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
        EXPECT_EQ(end.error, "");
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

}  // namespace
}  // namespace store
