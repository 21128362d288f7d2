// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: what is told, reading, writing, the interface.

#include "calendar/store.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "calendar/events.h"
#include "calendar/notices.h"
#include "engine/memory.h"
#include "engine/open_file.h"
#include "engine/replace_file.h"

namespace {

using EventList = decltype(events);

constexpr char kFile[] = "database.bin";
constexpr std::int64_t kCountBytes = 4;
constexpr std::int64_t kRecordBytes = sizeof(Event);

/// How many records are read or written at once.
constexpr std::int64_t kChunkRecords = 256;

/// How many records may be missing from the file before its count is no longer believed.
constexpr std::int64_t kMostFreshRecords = 1000;

/// The memory that an event takes in the list: itself, the list's two pointers and the allocator's two words.
constexpr std::size_t kNodeBytes = sizeof(EventList::value_type) + 4 * sizeof(void*);

/// The first pause before a save that failed is tried again, and the longest. Each is twice the one before.
constexpr std::uint64_t kFirstPause = 1'000'000'000;  // nanoseconds
constexpr std::uint64_t kLongestPause = 60 * kFirstPause;

/// What reading the file came to.
struct Reading {
    ReplaceError error = {};  ///< why the file could not be read, though it may be in good order
    bool damaged = false;     ///< the file does not hold what its count says
};

/// What is known of the file on disk. Written by LoadEvents(), and by SaveEvents() once the file is read or
/// set aside.
Reading on_disk;

/// Why a save failed.
struct Failure {
    ReplaceError error = {};
    bool unread = false;  ///< the error is of reading the file, which must not be replaced unread

    explicit operator bool() const { return static_cast<bool>(error); }
    bool operator==(const Failure& other) const {
        return error.reason == other.error.reason && error.number == other.error.number &&
               unread == other.unread;
    }
};

/// Whether and when a save is to be tried again. Written by LoadEvents(), SaveEvents() and RetrySave().
struct Retry {
    bool unsaved = false;
    bool timed = false;       ///< `since` is known; SaveEvents() is not told the time
    std::uint64_t since = 0;  ///< when the pause began, in nanoseconds
    std::uint64_t pause = kFirstPause;
    Failure told;  ///< why the last save failed
};

Retry retry;

// ---- What is told ----

/// A text that needs no memory of its own, since memory may be what is lacking.
using Text = std::array<char, 200>;

/// Returns what is wrong, in Italian; null for what has no words of its own.
const char* WordsFor(const ReplaceError& error) {
    switch (error.reason) {
        case ReplaceReason::kOtherProgram:
            return "un altro programma li sta salvando";
        case ReplaceReason::kNotRegular:
            return "al suo posto c'e' qualcosa che non e' un file normale";
        case ReplaceReason::kForeignLink:
            return "ci porta un collegamento simbolico di un altro utente";
        default:
            break;
    }
    switch (error.number) {
        case ENOSPC:
        case EDQUOT:
            return "il disco e' pieno";
        case EACCES:
        case EPERM:
        case EROFS:
            return "la cartella e' in sola lettura";
        case ENOENT:
            return "la cartella non c'e' piu'";
        case EISDIR:
        case ENOTDIR:
            return "al suo posto c'e' una cartella";
        case ENXIO:
            return "al suo posto c'e' qualcosa che non e' un file normale";
        case EMFILE:
        case ENFILE:
            return "ci sono troppi file aperti";
        case ENOMEM:
            return "non c'e' abbastanza memoria";
        case EIO:
            return "il disco ha dato un errore";
        default:
            return nullptr;
    }
}

/// Returns what went wrong in a save, in Italian.
Text InItalian(const ReplaceError& error) {
    Text text;
    if (const char* words = WordsFor(error))
        std::snprintf(text.data(), text.size(), "%s", words);
    else
        std::snprintf(text.data(), text.size(), "errore di sistema numero %d", error.number);
    return text;
}

/// Returns why the file cannot be read, in Italian.
Text WhyUnread(const ReplaceError& error) {
    if (error.number != EACCES && error.number != EPERM) return InItalian(error);
    Text text;
    std::snprintf(text.data(), text.size(), "manca il permesso di leggerlo");
    return text;
}

void TellUnread(const ReplaceError& error) {
    std::fprintf(
        stderr,
        "Ulmaro Assistant: non riesco a leggere gli eventi da \"%s\": %s; ci riprovo prima di salvare "
        "e fino ad allora non lo sostituisco.\n",
        kFile, WhyUnread(error).data());
}

/// Tells that the file is damaged, and as what the first save will keep it or why it cannot.
void TellDamaged() {
    std::string path;
    if (const ReplaceError error = FindDestination(kFile, path)) {
        std::fprintf(
            stderr,
            "Ulmaro Assistant: \"%s\" e' danneggiato, uso quello che si legge; non riusciro' a salvare: "
            "%s.\n",
            kFile, InItalian(error).data());
        return;
    }
    std::fprintf(stderr,
                 "Ulmaro Assistant: \"%s\" e' danneggiato, uso quello che si legge; prima di sostituirlo lo "
                 "conservo come \"%s\".\n",
                 kFile, NextBackupName(path).c_str());
}

void TellKept(const std::string& kept_as) {
    std::fprintf(stderr, "Ulmaro Assistant: il vecchio \"%s\" e' conservato come \"%s\".\n", kFile,
                 kept_as.c_str());
}

void TellUnsaved(const Failure& failure) {
    std::fprintf(stderr, "Ulmaro Assistant: non riesco a salvare gli eventi in \"%s\": %s%s.\n", kFile,
                 failure.unread ? "prima devo leggerlo, ma " : "",
                 (failure.unread ? WhyUnread(failure.error) : InItalian(failure.error)).data());
}

[[noreturn]] void EndForLackOfMemory() {
    std::fprintf(stderr, "Ulmaro Assistant: non c'e' abbastanza memoria per gli eventi di \"%s\".\n", kFile);
    std::exit(1);
}

// ---- Reading ----

Reading Unread(int number) {
    return {.error = {ReplaceReason::kSystemCall, number}};
}

/// Gives freed memory back at its end, also after an exception.
struct FreedMemoryGoesBack {
    FreedMemoryGoesBack() = default;
    FreedMemoryGoesBack(const FreedMemoryGoesBack&) = delete;
    FreedMemoryGoesBack& operator=(const FreedMemoryGoesBack&) = delete;
    ~FreedMemoryGoesBack() { ReturnFreedMemory(); }
};

/// Appends `count` events, the first of them read from the file as far as its `bytes` go. Damaged where not
/// all were.
Reading ReadRecords(const OpenFile& file, std::int64_t count, std::int64_t bytes, EventList& list) {
    std::vector<Event> chunk(static_cast<std::size_t>(std::min(count, kChunkRecords)));
    while (count > 0 && bytes > 0) {
        const std::int64_t wanted = std::min(bytes, std::min(count, std::ssize(chunk)) * kRecordBytes);
        const auto [got, error] = file.Read(chunk.data(), wanted);
        if (error != 0) return Unread(error);
        const std::int64_t whole = got / kRecordBytes;
        for (std::int64_t i = 0; i < whole; ++i) {
            list.push_back(EventList::value_type{chunk[static_cast<std::size_t>(i)]});
        }
        count -= whole;
        bytes -= got;
        if (got % kRecordBytes > 0) {
            const auto* part = reinterpret_cast<const char*>(&chunk[static_cast<std::size_t>(whole)]);
            Event& cut_short = list.emplace_back();
            std::copy_n(part, got % kRecordBytes, reinterpret_cast<char*>(&cut_short));
            --count;
        }
        if (got < wanted) break;  // the file shrank meanwhile
    }
    const bool all_read = bytes == 0 && count == 0;
    for (std::int64_t i = 0; i < std::min(count, kMostFreshRecords); ++i) list.emplace_back();
    return {.damaged = !all_read};
}

/// Reads an open file of so many bytes.
Reading ReadFile(const OpenFile& file, std::int64_t length, EventList& list) {
    std::int32_t count = 0;
    const auto [got, error] = file.Read(&count, kCountBytes);
    if (error != 0) return Unread(error);
    if (length < kCountBytes || got != kCountBytes) return {.damaged = true};

    const std::int64_t bytes = length - kCountBytes;
    const std::int64_t there = (bytes + kRecordBytes - 1) / kRecordBytes;
    const std::int64_t wanted = std::max<std::int64_t>(count, 0);
    const bool believed = wanted <= there + kMostFreshRecords;
    const FreedMemoryGoesBack afterwards;
    PrepareLargePages(static_cast<std::size_t>(std::min(wanted, there)) * kNodeBytes);
    Reading reading =
        ReadRecords(file, believed ? wanted : there, std::min(bytes, wanted * kRecordBytes), list);
    if (!reading.error && bytes != std::int64_t{count} * kRecordBytes) reading.damaged = true;
    return reading;
}

/// Reads the file into an empty list, which stays empty where the file cannot be read. A file that is not
/// there has no events.
Reading ReadStore(EventList& list) {
    // Not blocking, because the name may belong to a pipe that nobody writes to.
    OpenFile file;
    if (const int error = file.Open(kFile, O_RDONLY | O_NONBLOCK); error != 0)
        return error == ENOENT ? Reading() : Unread(error);
    struct stat status {};
    if (const int error = file.Status(status); error != 0) return Unread(error);
    if (S_ISDIR(status.st_mode)) return {.error = {ReplaceReason::kFolder, EISDIR}};
    if (!S_ISREG(status.st_mode)) return {.error = {ReplaceReason::kNotRegular, ENXIO}};
    const Reading reading = ReadFile(file, status.st_size, list);
    if (reading.error) list.clear();
    for (auto& event : list) StartReminder(event);
    return reading;
}

/// Reads the file that could not be read before; its events come first. Nodes are linked in and none is
/// copied, so that whoever points at an event still does.
ReplaceError ReadAgain() {
    EventList stored;
    const Reading reading = ReadStore(stored);
    if (reading.error) return reading.error;
    events.splice(events.begin(), stored);
    on_disk = reading;
    return {};
}

// ---- Writing ----

/// Writes the store's contents: the count, then the records, some at a time. Returns 0, or the errno of the
/// write that failed.
int WriteEvents(const OpenFile& file) {
    const auto count = static_cast<std::uint32_t>(events.size());
    const auto* count_bytes = reinterpret_cast<const char*>(&count);
    std::vector<char> bytes(count_bytes, count_bytes + kCountBytes);
    for (const Event& event : events) {
        const auto* record = reinterpret_cast<const char*>(&event);
        bytes.insert(bytes.end(), record, record + kRecordBytes);
        if (std::ssize(bytes) < kChunkRecords * kRecordBytes) continue;
        if (const int error = file.Write(bytes.data(), bytes.size()); error != 0) return error;
        bytes.clear();
    }
    return file.Write(bytes.data(), bytes.size());
}

/// Keeps the damaged file under a second name and tells it.
ReplaceError KeepDamaged(const std::string& path) {
    std::string kept_as;
    const ReplaceError error = SetAside(path, kept_as);
    if (!kept_as.empty()) TellKept(kept_as);
    return error;
}

/// Replaces the file by the events, after reading it if it is unread and setting it aside if it is damaged.
Failure WriteStore() try {
    std::string path;
    if (const ReplaceError error = FindDestination(kFile, path)) return {error};
    if (on_disk.error) {
        if (const ReplaceError error = ReadAgain())
            return {error, error.reason == ReplaceReason::kSystemCall};
    }
    if (on_disk.damaged) {
        if (const ReplaceError error = KeepDamaged(path)) return {error};
    }
    on_disk = {};
    return {ReplaceFile(path, WriteEvents)};
} catch (const std::bad_alloc&) {
    return {{ReplaceReason::kSystemCall, ENOMEM}};
}

/// Saves the events, and tells a failure unless it is the one that was told last. Returns whether it worked.
bool Save() {
    const Failure failure = WriteStore();
    if (failure && !(failure == retry.told)) TellUnsaved(failure);
    retry.unsaved = static_cast<bool>(failure);
    retry.told = failure;
    return !failure;
}

}  // namespace

void LoadEvents() try {
    events.clear();
    edit_event = nullptr;
    retry = {};
    on_disk = ReadStore(events);
    if (on_disk.error) TellUnread(on_disk.error);
    if (on_disk.damaged) TellDamaged();
} catch (const std::bad_alloc&) {
    EndForLackOfMemory();
}

bool SaveEvents() {
    retry = {};
    return Save();
}

bool EventsAreUnsaved() {
    return retry.unsaved;
}

void RetrySave(std::uint64_t now) {
    if (!retry.unsaved) return;
    if (!retry.timed) {
        retry.timed = true;
        retry.since = now;
    }
    if (now - retry.since < retry.pause) return;
    retry.since = now;
    retry.pause = std::min(2 * retry.pause, kLongestPause);
    Save();
}

void ResetEvents() {
    events.clear();
    edit_event = nullptr;
    if (on_disk.error) on_disk = {.damaged = true};
    SaveEvents();
}
