// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as the store: the input is the file "database.bin". It is loaded, its events are compared, sorted
// and read in every way that the calendar's screens read them, then saved and loaded again.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "calendar/events.h"
#include "calendar/notices.h"
#include "calendar/store.h"
#include "engine/local_time.h"
#include "fuzz/fuzzer.h"

namespace {

using fuzz::Check;

constexpr std::size_t kRecord = 572;
constexpr std::size_t kMostFreshEvents = 1000;
constexpr std::size_t kElapsed = 564;

constexpr char kFile[] = "database.bin";
constexpr char kBackup[] = "database.bin.bak";
constexpr char kSecondBackup[] = "database.bin.bak.1";

/// Returns the count at the start of a file of at least 4 bytes.
std::int32_t CountOf(std::string_view file) {
    std::int32_t count = 0;
    std::memcpy(&count, file.data(), sizeof count);
    return count;
}

std::string BytesOf(const Event& event) {
    return {reinterpret_cast<const char*>(&event), sizeof event};
}

/// Returns the records of all events, one after the other.
std::string AllBytes() {
    std::string all;
    all.reserve(events.size() * kRecord);
    for (const Event& event : events) all.append(reinterpret_cast<const char*>(&event), sizeof event);
    return all;
}

/// Returns a number that depends on the events, and not on their order.
std::size_t Fingerprint() {
    std::size_t sum = 0;
    for (const Event& event : events) {
        sum += std::hash<std::string_view>()({reinterpret_cast<const char*>(&event), sizeof event});
    }
    return sum;
}

/// Discards what the store says of damaged files, millions of times, while it lives. What the sanitizers say
/// goes past the C stream and is still seen.
class Quiet {
  public:
    Quiet() {
        static std::FILE* const nowhere = std::fopen("/dev/null", "w");
        if (nowhere == nullptr) std::abort();
        stderr = nowhere;
    }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
    ~Quiet() { stderr = before_; }

  private:
    std::FILE* before_ = stderr;
};

void Load() {
    const Quiet quiet;
    LoadEvents();
}

void Save() {
    const Quiet quiet;
    Check(SaveEvents(), "a save works");
}

// ---- What loading must give ----

/// Returns how many events a file has to give.
std::size_t ExpectedCount(std::string_view file) {
    if (file.size() < 4) return 0;
    const std::int32_t count = CountOf(file);
    if (count <= 0) return 0;
    const std::size_t there = (file.size() - 4 + kRecord - 1) / kRecord;
    const auto promised = static_cast<std::size_t>(count);
    return promised <= there + kMostFreshEvents ? promised : there;
}

bool IsWhole(std::string_view file) {
    return file.size() >= 4 &&
           static_cast<std::int64_t>(file.size()) == 4 + std::int64_t{CountOf(file)} * std::int64_t{kRecord};
}

/// Checks an event against its record, of which the file may lack the end. A reminder's `elapsed` is set at
/// start, whatever the file has.
void CheckRecord(const Event& event, std::string_view record) {
    const auto* loaded = reinterpret_cast<const char*>(&event);
    const bool reminder = event.kind == kReminder;
    if (reminder) Check(event.elapsed == 10800, "every reminder is due at start");
    for (std::size_t i = 0; i < record.size(); ++i) {
        const bool set_at_start = reminder && i >= kElapsed && i < kElapsed + sizeof event.elapsed;
        Check(set_at_start || loaded[i] == record[i], "an event has the bytes of its record");
    }
}

void CheckLoaded(std::string_view file) {
    Check(events.size() == ExpectedCount(file), "as many events as promised or there");
    Check(edit_event == nullptr, "no event is being edited");
    std::size_t at = 4;
    for (const Event& event : events) {
        if (at >= file.size()) return;
        CheckRecord(event, file.substr(at, kRecord));
        at += kRecord;
    }
}

// ---- What the screens do ----

void ReadEvents() {
    for (const Event& event : events) {
        Check(NameOf(event).size() <= 20 && DescriptionOf(event).size() <= 512, "texts end in their fields");
        Check(std::strlen(GetWdayStr(event.wday)) <= 4, "a weekday's name is short");
        const double minutes = MinutesToDue(event, LocalTime());
        Check(minutes == minutes, "the minutes to an event are a number");
    }
}

void SortAndCheck() {
    const std::size_t fingerprint = Fingerprint();
    SortEvents();
    Check(Fingerprint() == fingerprint, "sorting keeps every event");
    for (auto next = events.begin(), previous = next; next != events.end(); previous = next++) {
        if (next == events.begin()) continue;
        Check(!sort_by_date(*next, *previous) || sort_by_date(*previous, *next),
              "sorted events are in order");
    }
    const std::string sorted = AllBytes();
    SortEvents();
    Check(AllBytes() == sorted, "sorting again changes nothing");
}

// ---- Saving ----

void SaveAndCheck(std::string_view file) {
    const std::string kept = AllBytes();
    Save();
    const std::string saved = fuzz::ReadFile(kFile);
    Check(saved.size() == 4 + kept.size(), "a saved file has its records and no more");
    Check(access("database.bin.new", F_OK) != 0, "a save leaves nothing beside the file");
    Check((access(kBackup, F_OK) == 0) == !IsWhole(file), "a damaged file is kept, and no other");
    if (!IsWhole(file)) Check(fuzz::ReadFile(kBackup) == file, "what is kept is the damaged file");

    Load();
    Check(AllBytes() == kept, "what was saved is what is loaded");
    Save();
    Check(fuzz::ReadFile(kFile) == saved, "loading and saving gives the same file");
    Check(access(kSecondBackup, F_OK) != 0, "a damaged file is kept once");
}

// ---- Seeds ----

std::string Record(int kind, int number) {
    Event event;
    std::strcpy(event.name, "evento");
    std::strcpy(event.description, "una descrizione");
    event.kind = kind;
    event.date.day = number % 31 + 1;
    event.wday = number % 7;
    event.repeat = number % 3;
    return BytesOf(event);
}

std::string Store(std::int32_t count, int records) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &count, 4);
    for (int i = 0; i < records; ++i) bytes += Record(i % 4, i * 7);
    return bytes;
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    std::vector<std::string> seeds = {
        "",
        "\x03",
        Store(0, 0),
        Store(1, 1),
        Store(4, 4),
        Store(9, 8),  // one promised in vain
        Store(2, 3),  // one too many
        Store(-1, 2),
        Store(1000, 0),
        Store(0x7FFFFFFF, 2),
        Store(3, 3).substr(0, 1500),  // the last cut short
        Store(257, 257),              // more than is read at once
    };
    std::string odd = Store(3, 3);
    std::fill(odd.begin() + 4, odd.end(), '\xFF');
    seeds.push_back(odd);
    std::fill(odd.begin() + 4, odd.end(), '\x80');
    seeds.push_back(odd);
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::InOwnFolder here;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    unlink(kBackup);
    unlink(kSecondBackup);
    fuzz::WriteFile(kFile, data, size);

    Load();
    CheckLoaded(file);
    ReadEvents();
    SortAndCheck();
    SaveAndCheck(file);
    return 0;
}
