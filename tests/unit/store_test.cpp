// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the file's bytes, loading, loading damaged files, setting damaged files aside, files that cannot be
// read, links and permissions, saves that fail, trying again, emptying the store.
#include "calendar/store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/calendar_fixture.h"
#include "tests/unit/library_calls.h"
#include "tests/unit/limit_memory.h"
#include "tests/unit/limit_process.h"

namespace {

using Names = std::vector<std::string>;
using FileNames = std::set<std::string>;

constexpr std::size_t kRecord = 572;

/// Writes numbers and texts as the file holds them: little-endian, one after another.
class Bytes {
  public:
    Bytes& Int32(std::int32_t number) {
        const auto bits = static_cast<std::uint32_t>(number);
        for (int shift = 0; shift < 32; shift += 8) text_.push_back(static_cast<char>(bits >> shift));
        return *this;
    }
    Bytes& Byte(int byte) {
        text_.push_back(static_cast<char>(byte));
        return *this;
    }
    Bytes& Text(const std::string& text, std::size_t field) {
        std::string padded = text;
        padded.resize(field, '\0');
        text_ += padded;
        return *this;
    }
    Bytes& Raw(const std::string& bytes) {
        text_ += bytes;
        return *this;
    }
    const std::string& Get() const { return text_; }

  private:
    std::string text_;
};

/// Returns a record in which no two numbers are the same.
std::string Record(const std::string& name, std::int32_t kind) {
    return Bytes()
        .Text(name, 20)
        .Text("descrizione di " + name, 512)
        .Int32(17)
        .Int32(6)
        .Int32(2014)
        .Int32(21)
        .Int32(45)
        .Int32(4)
        .Int32(kind)
        .Int32(2)
        .Int32(0x42F60000)  // 123.0
        .Byte(1)
        .Byte(0)
        .Byte(1)
        .Byte(0)
        .Get();
}

/// Returns a file of three appointments.
std::string ThreeRecords() {
    return Bytes().Int32(3).Raw(Record("uno", 0)).Raw(Record("due", 1)).Raw(Record("tre", 0)).Get();
}

/// The one line that a failed save says, with its reason.
std::string Complaint(const std::string& reason) {
    return "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": " + reason + ".\n";
}

class StoreTest : public CalendarTest {
  protected:
    /// Leaves the folder empty.
    void SetUp() override {
        CalendarTest::SetUp();
        for (const std::string& sound : SoundFiles()) std::filesystem::remove(sound);
    }

    /// Loads what is there and returns what is said on standard error.
    static std::string Load() {
        testing::internal::CaptureStderr();
        LoadEvents();
        return testing::internal::GetCapturedStderr();
    }
    static std::string Load(const std::string& bytes) {
        WriteFile("database.bin", bytes);
        return Load();
    }

    /// Loads while no file can be opened, and returns what is said on standard error.
    static std::string LoadInVain() {
        testing::internal::CaptureStderr();  // which opens a file
        {
            const NoMoreFiles none;
            LoadEvents();
        }
        return testing::internal::GetCapturedStderr();
    }

    /// Tries again what is unsaved, at a time in seconds, and returns what is said on standard error.
    static std::string RetryAt(double seconds) {
        testing::internal::CaptureStderr();
        RetrySave(static_cast<std::uint64_t>(seconds * 1e9));
        return testing::internal::GetCapturedStderr();
    }

    /// Saves and returns what is said on standard error.
    static std::string Save() {
        testing::internal::CaptureStderr();
        SaveEvents();
        return testing::internal::GetCapturedStderr();
    }

    static void ExpectFresh(const Event& event) { EXPECT_TRUE(SameBytes(event, Event())); }
};

// ---- The file's bytes ----

TEST_F(StoreTest, SavingAnEmptyListMakesAFileOfExactlyFourZeroBytes) {
    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
}

TEST_F(StoreTest, AFileOfFourZeroBytesLoadsAnEmptyListAndIsNotDamaged) {
    events.emplace_back();
    Load(std::string(4, '\0'));

    EXPECT_TRUE(events.empty());
    SaveEvents();
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
}

TEST_F(StoreTest, SavingThreeEventsMakesAFileOf1720BytesThatBeginsWithThree) {
    AddAppointments(3);

    SaveEvents();

    const std::string bytes = ReadFile("database.bin");
    EXPECT_EQ(bytes.size(), 1720U);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\3\0\0\0", 4));
}

TEST_F(StoreTest, TheCountIsLittleEndian) {
    for (int i = 0; i < 258; ++i) events.emplace_back();

    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin").substr(0, 4), std::string("\2\1\0\0", 4));
}

TEST_F(StoreTest, SavesEveryFieldAtItsPlaceAndZeroAsFiller) {
    Event& event = AddAppointment("uno", 17, 6, 2014, 21, 45);
    SetText(event.description, "descrizione di uno");
    event.wday = 4;
    event.repeat = 2;
    event.elapsed = 123;
    event.warned_60 = event.done = 1;

    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin"), Bytes().Int32(1).Raw(Record("uno", 0)).Get());
}

TEST_F(StoreTest, SavesTheEventsFromFrontToBackWithoutSortingThem) {
    AddAppointment("domani", 17, 5, 2012, 9, 0);
    AddAppointment("oggi", 16, 5, 2012, 9, 0);

    SaveEvents();

    EXPECT_EQ(StoredNames(), (Names{"domani", "oggi"}));
    EXPECT_EQ(NamesOf(events), (Names{"domani", "oggi"}));
}

TEST_F(StoreTest, SavesMoreEventsThanOneReadTakes) {
    for (int i = 0; i < 1000; ++i) AddAppointment(std::to_string(i), 1, 1, 2013, 0, 0);
    SaveEvents();
    const Names before = NamesOf(events);

    LoadEvents();

    EXPECT_EQ(NamesOf(events), before);
}

TEST_F(StoreTest, AtMost256EventsAreReadOrWrittenAtOnce) {
    AddAppointments(513);
    {
        const FailingCall writes("write", 0, INT_MAX);  // counted only
        SaveEvents();
        EXPECT_EQ(writes.Calls(), 3);
    }
    const FailingCall reads("read", 0, INT_MAX);
    LoadEvents();
    EXPECT_EQ(events.size(), 513U);
    EXPECT_EQ(reads.Calls(), 1 + 3) << "first that of the number";
}

TEST_F(StoreTest, SaysNothingWhenItSaves) {
    AddAppointments(3);

    EXPECT_EQ(Save(), "");
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, ASaveThatHasFewerEventsShortensTheFile) {
    AddAppointments(3);
    SaveEvents();
    events.pop_back();

    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin").size(), 4 + 2 * kRecord);
}

// ---- Loading ----

TEST_F(StoreTest, LoadsEveryFieldFromItsPlace) {
    Load(Bytes().Int32(1).Raw(Record("uno", 1)).Get());

    ASSERT_EQ(events.size(), 1U);
    const Event& event = events.front();
    EXPECT_EQ(NameOf(event), "uno");
    EXPECT_EQ(DescriptionOf(event), "descrizione di uno");
    EXPECT_EQ(event.date.day, 17);
    EXPECT_EQ(event.date.month, 6);
    EXPECT_EQ(event.date.year, 2014);
    EXPECT_EQ(event.time.hour, 21);
    EXPECT_EQ(event.time.minute, 45);
    EXPECT_EQ(event.wday, 4);
    EXPECT_EQ(event.kind, 1);
    EXPECT_EQ(event.repeat, 2);
    EXPECT_EQ(event.elapsed, 123);
    EXPECT_EQ(event.warned_60, 1);
    EXPECT_EQ(event.warned_30, 0);
    EXPECT_EQ(event.done, 1);
}

TEST_F(StoreTest, LoadsTheEventsInTheFilesOrderWithoutSortingThem) {
    Load(ThreeRecords());

    EXPECT_EQ(NamesOf(events), (Names{"uno", "due", "tre"}));
}

TEST_F(StoreTest, LoadingReplacesTheListAndForgetsTheOpenEvent) {
    AddAppointments(2);
    edit_event = &events.front();

    Load(ThreeRecords());

    EXPECT_EQ(events.size(), 3U);
    EXPECT_EQ(edit_event, nullptr);
}

TEST_F(StoreTest, ALoadedReminderHasElapsed10800SecondsWhateverIsStored) {
    std::string record = Record("r", 2);
    for (const std::int32_t stored : {0, 0x42F60000, 0x7F800000, 0x7FC00000, -1}) {
        record.replace(564, 4, Bytes().Int32(stored).Get());
        Load(Bytes().Int32(1).Raw(record).Get());

        ASSERT_EQ(events.size(), 1U);
        EXPECT_EQ(events.front().elapsed, 10800.0F);
    }
}

TEST_F(StoreTest, AnyOtherKindKeepsItsElapsed) {
    for (const int kind : {0, 1, 3, -1}) {
        Load(Bytes().Int32(1).Raw(Record("e", kind)).Get());

        EXPECT_EQ(events.front().elapsed, 123.0F) << kind;
    }
}

TEST_F(StoreTest, LoadingAndSavingReproducesTheFileButForTheRemindersElapsed) {
    std::string full(kRecord, '\0');
    for (std::size_t i = 0; i < kRecord - 1; ++i) full[i] = static_cast<char>(i * 7 + 1);
    const std::string before = Bytes().Int32(3).Raw(full).Raw(Record("due", 2)).Raw(Record("tre", 1)).Get();
    Load(before);

    SaveEvents();

    std::string expected = before;
    expected.replace(4 + kRecord + 564, 4, Bytes().Int32(0x4628C000).Get());  // 10800.0
    EXPECT_EQ(ReadFile("database.bin"), expected);
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, TextsWithoutNulAndBytesAfterANulAreKept) {
    std::string record = Record("x", 0);
    record.replace(0, 20, "ab" + std::string(1, '\0') + std::string(17, 'Z'));
    record.replace(20, 512, std::string(512, 'd'));
    const std::string before = Bytes().Int32(1).Raw(record).Get();
    Load(before);

    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin"), before);
}

TEST_F(StoreTest, FlagsOtherThanZeroAndOneCountAsSetAndAreKept) {
    std::string record = Record("x", 0);
    record.replace(568, 3, "\x02\x80\xFF");
    const std::string before = Bytes().Int32(1).Raw(record).Get();
    Load(before);
    EXPECT_EQ(events.front().warned_60, 2);
    EXPECT_EQ(events.front().warned_30, 0x80);
    EXPECT_EQ(events.front().done, 0xFF);

    SaveEvents();

    EXPECT_EQ(ReadFile("database.bin"), before);
}

TEST_F(StoreTest, AMissingFileIsAnEmptyListAndNotDamaged) {
    events.emplace_back();
    testing::internal::CaptureStderr();

    LoadEvents();

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(folder_.Names().empty());
    SaveEvents();
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, LoadingNeverWrites) {
    for (const std::string& bytes : {std::string(4, '\0'), ThreeRecords(), std::string("xy"),
                                     Bytes().Int32(9).Raw(Record("x", 2)).Get()}) {
        Load(bytes);

        EXPECT_EQ(ReadFile("database.bin"), bytes);
        EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    }
}

// ---- Loading damaged files ----

TEST_F(StoreTest, AFileOfFewerThanFourBytesLoadsNothing) {
    for (const char* bytes : {"", "\1", "\1\1", "\1\1\1"}) {
        events.emplace_back();

        Load(bytes);

        EXPECT_TRUE(events.empty()) << std::strlen(bytes);
    }
}

TEST_F(StoreTest, ANegativeCountLoadsNothing) {
    for (const std::int32_t count : {-1, -3, INT32_MIN}) {
        Load(Bytes().Int32(count).Raw(Record("uno", 0)).Get());

        EXPECT_TRUE(events.empty()) << count;
    }
}

TEST_F(StoreTest, ARecordCutShortKeepsItsBytesOverThoseOfAFreshEvent) {
    const std::string record = Record("meta", 1);
    for (const std::size_t length : {1U, 3U, 19U, 20U, 534U, 540U, 556U, 568U, 571U}) {
        Load(Bytes().Int32(2).Raw(Record("uno", 0)).Raw(record.substr(0, length)).Get());

        ASSERT_EQ(events.size(), 2U) << length;
        Event expected;
        std::memcpy(static_cast<void*>(&expected), record.data(), length);
        EXPECT_TRUE(SameBytes(events.back(), expected)) << length;
        EXPECT_EQ(NameOf(events.front()), "uno");
    }
}

TEST_F(StoreTest, ARecordCutShortHasNothingOfTheRecordsBeforeIt) {
    constexpr int kMany = 600;  // more than are read at once, twice
    std::string file = Bytes().Int32(kMany).Get();
    for (int i = 0; i < kMany; ++i) file += std::string(kRecord, '\x7F');
    const Event fresh;
    for (const std::size_t missing : {std::size_t{1}, std::size_t{40}, std::size_t{571}}) {
        Load(file.substr(0, file.size() - missing));

        ASSERT_EQ(events.size(), kMany);
        const auto* last = reinterpret_cast<const char*>(&events.back());
        const std::string rest(last + kRecord - missing, missing);
        const std::string expected(reinterpret_cast<const char*>(&fresh) + kRecord - missing, missing);
        EXPECT_TRUE(rest == expected) << "without the last " << missing << " bytes";
    }
}

TEST_F(StoreTest, AReminderCutShortIsDueAtStartLikeAnyOther) {
    Load(Bytes().Int32(1).Raw(Record("r", 2).substr(0, 560)).Get());

    EXPECT_EQ(events.front().kind, 2);
    EXPECT_EQ(events.front().elapsed, 10800.0F);
}

TEST_F(StoreTest, RecordsThatTheFileDoesNotHoldAreFreshEvents) {
    SetNow(2013, 3, 4, 15, 16);

    Load(Bytes().Int32(3).Raw(Record("uno", 0)).Get());

    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(NameOf(events.front()), "uno");
    ExpectFresh(*std::next(events.begin()));
    ExpectFresh(events.back());
    EXPECT_EQ(events.back().date.day, 4);
    EXPECT_EQ(events.back().time.hour, 15);
}

TEST_F(StoreTest, UpToAThousandMissingRecordsAreFreshEvents) {
    Load(Bytes().Int32(1002).Raw(Record("uno", 0)).Raw(Record("due", 0)).Get());

    EXPECT_EQ(events.size(), 1002U);
    ExpectFresh(events.back());
}

TEST_F(StoreTest, MoreMissingRecordsThanThatAreNotBelieved) {
    Load(Bytes().Int32(1003).Raw(Record("uno", 0)).Raw(Record("due", 0)).Get());

    EXPECT_EQ(NamesOf(events), (Names{"uno", "due"}));
}

TEST_F(StoreTest, ARecordCutShortCountsAsThereForTheThousandMissing) {
    const std::string partial = Record("due", 0).substr(0, 30);
    Load(Bytes().Int32(1002).Raw(Record("uno", 0)).Raw(partial).Get());
    EXPECT_EQ(events.size(), 1002U);

    Load(Bytes().Int32(1003).Raw(Record("uno", 0)).Raw(partial).Get());

    EXPECT_EQ(NamesOf(events), (Names{"uno", "due"}));
}

TEST_F(StoreTest, AThousandAndOneRecordsInAnEmptyFileAreNotBelieved) {
    Load(Bytes().Int32(1000).Get());
    EXPECT_EQ(events.size(), 1000U);

    Load(Bytes().Int32(1001).Get());
    EXPECT_TRUE(events.empty());

    Load(Bytes().Int32(INT32_MAX).Get());
    EXPECT_TRUE(events.empty());
}

TEST_F(StoreTest, BytesBeyondTheCountAreNotLoaded) {
    Load(Bytes().Int32(1).Raw(Record("uno", 0)).Raw(Record("due", 0)).Get());

    EXPECT_EQ(NamesOf(events), (Names{"uno"}));
}

TEST_F(StoreTest, AFolderInTheFilesPlaceLoadsNothing) {
    events.emplace_back();
    std::filesystem::create_directory("database.bin");

    LoadEvents();

    EXPECT_TRUE(events.empty());
}

TEST_F(StoreTest, APipeInTheFilesPlaceLoadsNothingAndDoesNotBlock) {
    ASSERT_EQ(mkfifo("database.bin", 0600), 0);

    LoadEvents();

    EXPECT_TRUE(events.empty());
}

#ifndef __SANITIZE_ADDRESS__  // which ends the process itself where memory is short

TEST_F(StoreTest, MoreEventsThanTheMemoryHoldsEndTheProgramWithALine) {
    constexpr std::int32_t kCount = 1'000'000;
    WriteFile("database.bin", Bytes().Int32(kCount).Get());
    std::filesystem::resize_file("database.bin", 4 + kCount * std::uintmax_t{kRecord});  // a hole

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte / 2);
            LoadEvents();
            std::_Exit(0);
        },
        testing::ExitedWithCode(1),
        "^Ulmaro Assistant: non c'e' abbastanza memoria per gli eventi di \"database\\.bin\"\\.\n$");
}

#endif

// ---- Setting damaged files aside ----

/// The line that tells of a damaged file at start.
std::string Damaged(const std::string& backup) {
    return "Ulmaro Assistant: \"database.bin\" e' danneggiato, uso quello che si legge; prima di sostituirlo "
           "lo "
           "conservo come \"" +
           backup + "\".\n";
}

/// The line of the save that sets it aside.
std::string Kept(const std::string& backup) {
    return "Ulmaro Assistant: il vecchio \"database.bin\" e' conservato come \"" + backup + "\".\n";
}

/// Every way in which a file can contradict its count.
std::vector<std::string> DamagedFiles() {
    return {
        "",
        "\3",
        std::string("\1\0\0", 3),
        Bytes().Int32(1).Get(),
        Bytes().Int32(2).Raw(Record("uno", 0)).Get(),
        Bytes().Int32(1).Raw(Record("uno", 0).substr(0, 571)).Get(),
        Bytes().Int32(1).Raw(Record("uno", 0)).Raw("x").Get(),
        Bytes().Int32(1).Raw(Record("uno", 0)).Raw(Record("due", 0)).Get(),
        Bytes().Int32(0).Raw("x").Get(),
        Bytes().Int32(-1).Get(),
        Bytes().Int32(-1).Raw(Record("uno", 0)).Get(),
        Bytes().Int32(INT32_MAX).Raw(Record("uno", 0)).Get(),
    };
}

TEST_F(StoreTest, EveryDamagedFileIsKeptAsBakBeforeTheFirstSaveReplacesIt) {
    for (const std::string& damaged : DamagedFiles()) {
        Load(damaged);
        events.clear();
        AddAppointments(2);

        EXPECT_EQ(Save(), Kept("database.bin.bak"));

        EXPECT_EQ(ReadFile("database.bin.bak"), damaged);
        EXPECT_EQ(StoredNames(), (Names{"01", "02"}));
        EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "database.bin.bak"}));
        std::filesystem::remove("database.bin.bak");
    }
}

TEST_F(StoreTest, ADamagedFileIsToldAtStartWithTheNameThatItWillHave) {
    for (const std::string& damaged : DamagedFiles()) {
        EXPECT_EQ(Load(damaged), Damaged("database.bin.bak"));
    }
    WriteFile("database.bin.bak", "an older one");
    WriteFile("database.bin.bak.1", "another");

    EXPECT_EQ(Load("xy"), Damaged("database.bin.bak.2"));
    EXPECT_EQ(Save(), Kept("database.bin.bak.2"));

    EXPECT_EQ(ReadFile("database.bin.bak.2"), "xy");
    EXPECT_EQ(Save(), "");
}

TEST_F(StoreTest, ADamagedFileThatCannotBeReplacedIsToldWithTheReason) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make another user's link";
    WriteFile("file", "xy");
    std::filesystem::create_symlink("file", "database.bin");
    ASSERT_EQ(lchown("database.bin", 65534, 65534), 0);

    EXPECT_EQ(Load(),
              "Ulmaro Assistant: \"database.bin\" e' danneggiato, uso quello che si legge; non riusciro' a "
              "salvare: "
              "ci porta un collegamento simbolico di un altro utente.\n");
}

TEST_F(StoreTest, AWholeFileIsLoadedWithoutAWord) {
    EXPECT_EQ(Load(ThreeRecords()), "");
    EXPECT_EQ(Load(std::string(4, '\0')), "");
}

TEST_F(StoreTest, ADamagedFileIsSetAsideOnceAndNotAtEverySave) {
    Load("xy");
    SaveEvents();
    AddAppointments(1);

    SaveEvents();
    SaveEvents();

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "database.bin.bak"}));
    EXPECT_EQ(ReadFile("database.bin.bak"), "xy");
}

TEST_F(StoreTest, EveryFurtherDamagedFileGetsTheNextNumber) {
    for (const char* damaged : {"a", "b", "c", "d"}) {
        Load(damaged);
        SaveEvents();
    }

    EXPECT_EQ(ReadFile("database.bin.bak"), "a");
    EXPECT_EQ(ReadFile("database.bin.bak.1"), "b");
    EXPECT_EQ(ReadFile("database.bin.bak.2"), "c");
    EXPECT_EQ(ReadFile("database.bin.bak.3"), "d");
}

TEST_F(StoreTest, AWholeFileIsNotSetAside) {
    Load(ThreeRecords());
    events.clear();

    SaveEvents();

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, AWholeFileLoadedAfterADamagedOneIsNotSetAside) {
    Load("xy");
    Load(ThreeRecords());

    SaveEvents();

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, ADamagedFileThatIsGoneMeanwhileNeedsNoKeeping) {
    Load("xy");
    std::filesystem::remove("database.bin");

    EXPECT_EQ(Save(), "");

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

// ---- Files that cannot be read ----

/// The line that tells of it at start.
std::string Unread(const std::string& reason) {
    return "Ulmaro Assistant: non riesco a leggere gli eventi da \"database.bin\": " + reason +
           "; ci riprovo prima di salvare e fino ad allora non lo sostituisco.\n";
}

TEST_F(StoreTest, AFileThatCannotBeReadIsToldAtStartAndLoadsNothing) {
    WriteFile("database.bin", ThreeRecords());

    EXPECT_EQ(LoadInVain(), Unread("ci sono troppi file aperti"));

    EXPECT_TRUE(events.empty());
    EXPECT_FALSE(EventsAreUnsaved()) << "nothing was saved yet";
}

TEST_F(StoreTest, WhatWasAddedSinceJoinsTheEventsOfAFileThatIsReadAtLast) {
    WriteFile("database.bin", Bytes().Int32(2).Raw(Record("uno", 0)).Raw(Record("due", 2)).Get());
    LoadInVain();
    AddAppointments(2);
    edit_event = &events.back();
    Event* const edited = edit_event;

    EXPECT_EQ(Save(), "");

    EXPECT_EQ(NamesOf(events), (Names{"uno", "due", "01", "02"}));
    EXPECT_EQ(StoredNames(), (Names{"uno", "due", "01", "02"}));
    EXPECT_EQ(std::next(events.begin())->elapsed, 10800.0F) << "its reminders are due as at start";
    EXPECT_EQ(edit_event, edited);
    EXPECT_EQ(&events.back(), edited);
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(events.size(), 4U) << "they join once";
}

TEST_F(StoreTest, AFileThatIsEmptiedWhileItIsReadIsDamaged) {
    WriteFile("database.bin", Bytes().Int32(0).Get());
    const FailingCall no_more("read", 0);

    EXPECT_EQ(Load(), Damaged("database.bin.bak"));
    EXPECT_TRUE(events.empty());
}

TEST_F(StoreTest, ACallThatFailsWhileTheFileIsReadIsToldAndLoadsNothing) {
    WriteFile("database.bin", ThreeRecords());
    const std::pair<const char*, int> calls[] = {{"fstat", 1}, {"read", 1}, {"read", 2}};
    for (const auto& [call, number] : calls) {
        const FailingCall failing(call, EIO, number, 1);
        EXPECT_EQ(Load(), Unread("il disco ha dato un errore")) << call << " " << number;
        EXPECT_TRUE(events.empty());
    }
}

TEST_F(StoreTest, AFileThatStaysUnreadableIsNotReplaced) {
    WriteFile("database.bin", ThreeRecords());
    ASSERT_EQ(chmod("database.bin", 0), 0);
    ASSERT_EQ(chmod(".", 0777), 0);
    AddAppointments(1);
    {
        const NotRoot not_root;
        ASSERT_TRUE(not_root.Works());
        EXPECT_EQ(Load(), Unread("manca il permesso di leggerlo"));
        AddAppointments(1);
        EXPECT_EQ(Save(),
                  "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": prima devo "
                  "leggerlo, ma manca il permesso di leggerlo.\n");
        EXPECT_TRUE(EventsAreUnsaved());
    }
    ASSERT_EQ(chmod("database.bin", 0600), 0);
    EXPECT_EQ(ReadFile("database.bin"), ThreeRecords());
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));

    EXPECT_EQ(Save(), "");
    EXPECT_EQ(StoredNames(), (Names{"uno", "due", "tre", "01"}));
}

TEST_F(StoreTest, AFileThatProvesDamagedWhenItIsReadAtLastIsSetAside) {
    const std::string damaged = Bytes().Int32(1).Raw(Record("uno", 0)).Raw("x").Get();
    WriteFile("database.bin", damaged);
    LoadInVain();
    AddAppointments(1);

    EXPECT_EQ(Save(), Kept("database.bin.bak"));

    EXPECT_EQ(ReadFile("database.bin.bak"), damaged);
    EXPECT_EQ(StoredNames(), (Names{"uno", "01"}));
}

TEST_F(StoreTest, AFileThatIsGoneWhenItIsToBeReadAtLastHasNoEvents) {
    WriteFile("database.bin", ThreeRecords());
    LoadInVain();
    std::filesystem::remove("database.bin");
    AddAppointments(1);

    EXPECT_EQ(Save(), "");

    EXPECT_EQ(StoredNames(), (Names{"01"}));
}

TEST_F(StoreTest, WhatIsNoFileIsToldAtStartAndAgainWhenItIsNotReplaced) {
    ASSERT_EQ(mkfifo("database.bin", 0600), 0);
    constexpr char kNoFile[] = "al suo posto c'e' qualcosa che non e' un file normale";

    EXPECT_EQ(Load(), Unread(kNoFile));
    AddAppointments(1);
    EXPECT_EQ(Save(), Complaint(kNoFile));

    EXPECT_TRUE(std::filesystem::is_fifo("database.bin"));
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    std::filesystem::remove("database.bin");
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(StoredNames(), (Names{"01"}));
}

TEST_F(StoreTest, ASocketWhichCannotEvenBeOpenedIsToldInTheSameWords) {
    ASSERT_EQ(mknod("database.bin", S_IFSOCK | 0600, 0), 0);
    constexpr char kNoFile[] = "al suo posto c'e' qualcosa che non e' un file normale";

    EXPECT_EQ(Load(), Unread(kNoFile));
    AddAppointments(1);
    EXPECT_EQ(Save(), Complaint(kNoFile));

    EXPECT_TRUE(std::filesystem::is_socket("database.bin"));
}

TEST_F(StoreTest, AFolderInTheFilesPlaceIsToldAtStart) {
    std::filesystem::create_directory("database.bin");

    EXPECT_EQ(Load(), Unread("al suo posto c'e' una cartella"));
}

TEST_F(StoreTest, ALinkToADeviceIsNotReplaced) {
    std::filesystem::create_symlink("/dev/null", "database.bin");
    AddAppointments(1);

    EXPECT_EQ(Save(), Complaint("al suo posto c'e' qualcosa che non e' un file normale"));

    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(StoreTest, ALinkOfAnotherUserIsReadButItsTargetIsNotReplaced) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make another user's link";
    WriteFile("file", ThreeRecords());
    std::filesystem::create_symlink("file", "database.bin");
    ASSERT_EQ(lchown("database.bin", 65534, 65534), 0);

    EXPECT_EQ(Load(), "");
    EXPECT_EQ(events.size(), 3U);
    events.clear();
    EXPECT_EQ(Save(), Complaint("ci porta un collegamento simbolico di un altro utente"));

    EXPECT_EQ(ReadFile("file"), ThreeRecords());
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "file"}));
}

// ---- Links and permissions ----

TEST_F(StoreTest, ANewFileIsReadableByItsOwnerAlone) {
    const NoMask no_mask;

    SaveEvents();

    EXPECT_EQ(ModeOf("database.bin"), 0600U);
}

TEST_F(StoreTest, AFileKeepsItsPermissions) {
    for (const mode_t mode : {0644U, 0600U, 0640U, 0444U, 0777U}) {
        WriteFile("database.bin", std::string(4, '\0'));
        ASSERT_EQ(chmod("database.bin", mode), 0);
        AddAppointments(1);

        SaveEvents();

        EXPECT_EQ(ModeOf("database.bin"), mode);
        EXPECT_EQ(ReadFile("database.bin").size(), 4 + events.size() * kRecord);
        std::filesystem::remove("database.bin");
    }
}

TEST_F(StoreTest, ASymbolicLinkStaysOneAndItsTargetIsReplaced) {
    std::filesystem::create_directory("altrove");
    WriteFile("altrove/eventi", ThreeRecords());
    std::filesystem::create_symlink("altrove/eventi", "database.bin");
    LoadEvents();
    ASSERT_EQ(events.size(), 3U);
    events.pop_back();

    SaveEvents();

    EXPECT_TRUE(std::filesystem::is_symlink("database.bin"));
    EXPECT_EQ(std::filesystem::read_symlink("database.bin"), "altrove/eventi");
    EXPECT_FALSE(std::filesystem::is_symlink("altrove/eventi"));
    EXPECT_EQ(ReadFile("altrove/eventi").size(), 4 + 2 * kRecord);
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "altrove"}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("altrove"), {}), 1);
}

TEST_F(StoreTest, ADanglingLinkLoadsNothingAndASaveMakesItsTarget) {
    const NoMask no_mask;
    std::filesystem::create_directory("altrove");
    std::filesystem::create_symlink("altrove/eventi", "database.bin");
    LoadEvents();
    EXPECT_TRUE(events.empty());
    AddAppointments(1);

    EXPECT_EQ(Save(), "");

    EXPECT_TRUE(std::filesystem::is_symlink("database.bin"));
    EXPECT_EQ(StoredNames(), (Names{"01"}));
    EXPECT_EQ(ModeOf("altrove/eventi"), 0600U);
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "altrove"}));
}

TEST_F(StoreTest, ADamagedFileBehindALinkIsKeptBesideItsTarget) {
    std::filesystem::create_directory("altrove");
    WriteFile("altrove/eventi", "xy");
    std::filesystem::create_symlink("altrove/eventi", "database.bin");

    EXPECT_EQ(Load(), Damaged("altrove/eventi.bak"));
    EXPECT_EQ(Save(), Kept("altrove/eventi.bak"));

    EXPECT_EQ(ReadFile("altrove/eventi.bak"), "xy");
    EXPECT_EQ(ReadFile("altrove/eventi"), std::string(4, '\0'));
    EXPECT_TRUE(std::filesystem::is_symlink("database.bin"));
}

TEST_F(StoreTest, WhatABrokenOffSaveLeftBesideDoesNotMatter) {
    for (const mode_t mode : {0600U, 0U}) {
        WriteFile("database.bin.new", "rest");
        ASSERT_EQ(chmod("database.bin.new", mode), 0);
        events.clear();
        AddAppointments(2);

        EXPECT_EQ(Save(), "");

        EXPECT_EQ(StoredNames(), (Names{"01", "02"}));
        EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    }
}

TEST_F(StoreTest, AReplacedFileIsAtLeastReadableByItsOwner) {
    WriteFile("database.bin", std::string(4, '\0'));
    for (const auto& [before, after] : {std::pair(0U, 0400U), std::pair(0244U, 0644U)}) {
        ASSERT_EQ(chmod("database.bin", before), 0);

        SaveEvents();

        EXPECT_EQ(ModeOf("database.bin"), after);
    }
}

// ---- Saves that fail ----

TEST_F(StoreTest, WithoutRoomForTheNewFileItKeepsTheOldOneAndSaysWhyInOneItalianLine) {
    Load(ThreeRecords());
    AddAppointments(5);
    std::string said;
    {
        const FileSizeLimit limit(2000);
        said = Save();
    }

    EXPECT_TRUE(std::regex_match(
        said, std::regex("Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": "
                         "errore di sistema numero [0-9]+\\.\n")))
        << said;
    EXPECT_EQ(ReadFile("database.bin"), ThreeRecords());
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_EQ(events.size(), 8U);
}

TEST_F(StoreTest, SavingReturnsWhetherItWorked) {
    AddAppointments(2);
    EXPECT_TRUE(SaveEvents());

    std::filesystem::create_directory("database.bin.new");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(SaveEvents());
    testing::internal::GetCapturedStderr();

    std::filesystem::remove("database.bin.new");
    EXPECT_TRUE(SaveEvents());
}

TEST_F(StoreTest, TheNextSaveAfterOneThatFailedTriesAgain) {
    Load(ThreeRecords());
    {
        const FileSizeLimit limit(500);
        EXPECT_NE(Save(), "");
    }

    EXPECT_EQ(Save(), "");

    EXPECT_EQ(StoredNames(), (Names{"uno", "due", "tre"}));
}

TEST_F(StoreTest, WhereTheFolderIsGoneItSaysSoAndKeepsTheList) {
    AddAppointments(2);
    std::filesystem::remove(folder_.Path());

    EXPECT_EQ(Save(), Complaint("la cartella non c'e' piu'"));

    EXPECT_EQ(events.size(), 2U);
}

TEST_F(StoreTest, WhereTheTargetsFolderOfADanglingLinkIsGoneItSaysSo) {
    std::filesystem::create_symlink("altrove/eventi", "database.bin");
    LoadEvents();

    EXPECT_EQ(Save(), Complaint("la cartella non c'e' piu'"));

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_TRUE(std::filesystem::is_symlink("database.bin"));
}

TEST_F(StoreTest, ALinkThatLeadsToItselfIsNotReplaced) {
    std::filesystem::create_symlink("database.bin", "database.bin");
    LoadEvents();
    AddAppointments(1);

    EXPECT_EQ(Save(), Complaint("errore di sistema numero " + std::to_string(ELOOP)));

    EXPECT_TRUE(std::filesystem::is_symlink("database.bin"));
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(StoreTest, WithAFolderInTheFilesPlaceItSaysSoAndLeavesTheFolder) {
    std::filesystem::create_directory("database.bin");
    WriteFile("database.bin/dentro", "intatto");
    AddAppointments(2);

    EXPECT_EQ(Save(), Complaint("al suo posto c'e' una cartella"));

    EXPECT_EQ(ReadFile("database.bin/dentro"), "intatto");
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
    EXPECT_EQ(events.size(), 2U);
}

TEST_F(StoreTest, AFolderThatWasLoadedInTheFilesPlaceIsNotSetAsideAsAFile) {
    std::filesystem::create_directory("database.bin");
    LoadEvents();

    EXPECT_EQ(Save(), Complaint("al suo posto c'e' una cartella"));

    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, InAReadOnlyFolderItKeepsTheOldFileAndSaysSo) {
    WriteFile("database.bin", ThreeRecords());
    ASSERT_EQ(chmod("database.bin", 0644), 0);
    ASSERT_EQ(chmod(".", 0555), 0);
    LoadEvents();
    events.clear();
    std::string said;
    {
        const NotRoot not_root;
        ASSERT_TRUE(not_root.Works());
        testing::internal::CaptureStderr();
        SaveEvents();
    }
    said = testing::internal::GetCapturedStderr();
    ASSERT_EQ(chmod(".", 0755), 0);

    EXPECT_EQ(said, Complaint("la cartella e' in sola lettura"));
    EXPECT_EQ(ReadFile("database.bin"), ThreeRecords());
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

TEST_F(StoreTest, InAReadOnlyFolderADamagedFileIsNotReplaced) {
    WriteFile("database.bin", "xy");
    ASSERT_EQ(chmod("database.bin", 0644), 0);
    ASSERT_EQ(chmod(".", 0555), 0);
    LoadEvents();
    {
        const NotRoot not_root;
        ASSERT_TRUE(not_root.Works());
        testing::internal::CaptureStderr();
        SaveEvents();
    }
    const std::string said = testing::internal::GetCapturedStderr();
    ASSERT_EQ(chmod(".", 0755), 0);
    EXPECT_EQ(said, Complaint("la cartella e' in sola lettura"));
    EXPECT_EQ(ReadFile("database.bin"), "xy");

    SaveEvents();  // now it works: the damage is not forgotten

    EXPECT_EQ(ReadFile("database.bin.bak"), "xy");
    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
}

TEST_F(StoreTest, EverySaveThatFailsSaysItsOwnLine) {
    std::filesystem::create_directory("database.bin");
    testing::internal::CaptureStderr();

    SaveEvents();
    SaveEvents();

    const std::string line = Complaint("al suo posto c'e' una cartella");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line);
}

TEST_F(StoreTest, WithAFolderInTheNewFilesPlaceItSaysSoAtOnceAndLeavesBoth) {
    Load(ThreeRecords());
    std::filesystem::create_directory("database.bin.new");
    events.clear();

    EXPECT_EQ(Save(), Complaint("errore di sistema numero " + std::to_string(EEXIST)));

    EXPECT_EQ(ReadFile("database.bin"), ThreeRecords());
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin", "database.bin.new"}));
}

TEST_F(StoreTest, ASaveThatAnotherProgramIsAtIsNotClearedAwayAndTheNextTriesAgain) {
    Load(ThreeRecords());
    AddAppointments(1);
    WriteFile("database.bin.new", "half");
    const int other = open("database.bin.new", O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);

    EXPECT_EQ(Save(), Complaint("un altro programma li sta salvando"));

    EXPECT_EQ(ReadFile("database.bin"), ThreeRecords());
    EXPECT_EQ(ReadFile("database.bin.new"), "half");
    close(other);
    EXPECT_EQ(Save(), "");
    EXPECT_EQ(StoredNames(), (Names{"uno", "due", "tre", "01"}));
    EXPECT_EQ(folder_.Names(), (FileNames{"database.bin"}));
}

// ---- Trying again ----

TEST_F(StoreTest, OnlyASaveThatFailedLeavesEventsUnsavedAndOnlyUntilOneWorks) {
    AddAppointments(1);
    EXPECT_FALSE(EventsAreUnsaved());
    std::filesystem::create_directory("database.bin.new");

    Save();
    EXPECT_TRUE(EventsAreUnsaved());

    std::filesystem::remove("database.bin.new");
    Save();
    EXPECT_FALSE(EventsAreUnsaved());
}

TEST_F(StoreTest, ASaveThatFailedIsTriedAgainASecondLaterByItself) {
    AddAppointments(2);
    std::filesystem::create_directory("database.bin.new");
    Save();
    std::filesystem::remove("database.bin.new");

    for (const double now : {50.0, 50.5, 50.999}) {
        RetryAt(now);
        EXPECT_TRUE(EventsAreUnsaved()) << now;
    }
    EXPECT_EQ(RetryAt(51), "");

    EXPECT_FALSE(EventsAreUnsaved());
    EXPECT_EQ(StoredNames(), (Names{"01", "02"}));
}

TEST_F(StoreTest, ThePausesBetweenTriesDoubleUpToAMinute) {
    std::filesystem::create_directory("database.bin");
    AddAppointments(1);
    Save();
    std::vector<int> tried_at;
    for (int second = 0; second < 250; ++second) {
        WriteFile("database.bin.new", "left behind");  // which a try clears away
        RetryAt(second);
        if (!std::filesystem::exists("database.bin.new")) tried_at.push_back(second);
    }

    EXPECT_EQ(tried_at, (std::vector<int>{1, 3, 7, 15, 31, 63, 123, 183, 243}));
}

TEST_F(StoreTest, AnotherSaveThatFailsBeginsWithTheShortPauseAgain) {
    std::filesystem::create_directory("database.bin");
    AddAppointments(1);
    Save();
    for (int second = 0; second < 100; ++second) RetryAt(second);
    Save();
    std::filesystem::remove("database.bin");

    RetryAt(200);
    EXPECT_TRUE(EventsAreUnsaved());
    RetryAt(201);

    EXPECT_FALSE(EventsAreUnsaved());
}

TEST_F(StoreTest, NothingIsTriedAgainWhereNothingIsUnsaved) {
    AddAppointments(1);
    Save();
    AddAppointments(1);

    for (int second = 0; second < 200; ++second) RetryAt(second);

    EXPECT_EQ(StoredNames(), (Names{"01"}));
}

TEST_F(StoreTest, AFailureForTheSameReasonIsNotToldAgainButAnotherIs) {
    AddAppointments(1);
    std::filesystem::create_directory("database.bin.new");
    const std::string in_the_way = Complaint("errore di sistema numero " + std::to_string(EEXIST));
    EXPECT_EQ(Save(), in_the_way);
    RetryAt(1);
    for (int second = 2; second < 500; ++second) EXPECT_EQ(RetryAt(second), "");

    std::filesystem::remove("database.bin.new");
    std::filesystem::create_directory("database.bin");
    std::string said;
    for (int second = 500; second < 1000; ++second) said += RetryAt(second);

    EXPECT_EQ(said, Complaint("al suo posto c'e' una cartella"));
}

TEST_F(StoreTest, TheSameCallThatFailsOtherwiseIsToldAgainAndSoIsTheSameErrorOfAnotherStep) {
    WriteFile("database.bin", ThreeRecords());
    {
        const FailingCall reading("read", EIO);
        Load();
        EXPECT_EQ(Save(), Complaint("prima devo leggerlo, ma il disco ha dato un errore"));
    }
    auto retry_failing = [second = 0.0](int error) mutable {
        const FailingCall flush("fsync", error);
        std::string said = RetryAt(second += 100);
        return said + RetryAt(second += 100);
    };
    EXPECT_EQ(retry_failing(EIO), Complaint("il disco ha dato un errore")) << "of the flush, not of reading";
    EXPECT_EQ(retry_failing(EIO), "");
    EXPECT_EQ(retry_failing(ENOSPC), Complaint("il disco e' pieno"));
}

TEST_F(StoreTest, AFileThatShrinksWhileItIsReadIsDamagedAndItsOtherEventsAreFresh) {
    WriteFile("database.bin", ThreeRecords());
    const FailingCall no_more("read", 0, 2);

    EXPECT_EQ(Load(), Damaged("database.bin.bak"));

    ASSERT_EQ(events.size(), 3U);
    for (const Event& event : events) ExpectFresh(event);
}

TEST_F(StoreTest, WhatMayNotBeReadIsToldAsThat) {
    WriteFile("database.bin", ThreeRecords());
    for (const int error : {EACCES, EPERM}) {
        const FailingCall opening("open", error, 1, 1);
        EXPECT_EQ(Load(), Unread("manca il permesso di leggerlo")) << error;
    }
}

TEST_F(StoreTest, AFileThatCouldNotBeReadIsReadAndJoinedWhenTheSaveIsTriedAgain) {
    WriteFile("database.bin", ThreeRecords());
    LoadInVain();
    AddAppointments(1);
    testing::internal::CaptureStderr();
    {
        const NoMoreFiles none;
        SaveEvents();
    }
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": prima devo leggerlo, ma ci "
        "sono troppi file aperti.\n");

    RetryAt(1);
    EXPECT_EQ(RetryAt(2), "");

    EXPECT_FALSE(EventsAreUnsaved());
    EXPECT_EQ(StoredNames(), (Names{"uno", "due", "tre", "01"}));
}

TEST_F(StoreTest, LoadingForgetsWhatWasUnsaved) {
    AddAppointments(1);
    std::filesystem::create_directory("database.bin.new");
    Save();

    Load();

    EXPECT_FALSE(EventsAreUnsaved());
}

// ---- Emptying the store ----

TEST_F(StoreTest, ResettingAFileThatCouldNotBeReadKeepsItAside) {
    WriteFile("database.bin", ThreeRecords());
    LoadInVain();
    AddAppointments(1);

    testing::internal::CaptureStderr();
    ResetEvents();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Kept("database.bin.bak"));

    EXPECT_TRUE(events.empty());
    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
    EXPECT_EQ(ReadFile("database.bin.bak"), ThreeRecords());
}

TEST_F(StoreTest, ResettingEmptiesTheListAndTheFile) {
    Load(ThreeRecords());
    edit_event = &events.front();

    ResetEvents();

    EXPECT_TRUE(events.empty());
    EXPECT_EQ(edit_event, nullptr);
    EXPECT_EQ(ReadFile("database.bin"), std::string(4, '\0'));
}

}  // namespace
