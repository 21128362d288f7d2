// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/store.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "calendar/events.h"
#include "calendar/notices.h"
#include "engine/memory.h"
#include "engine/open_file.h"
#include "engine/replace_file.h"

namespace {

constexpr char kFile[] = "database.bin";
constexpr std::int64_t kCountBytes = 4;
constexpr std::int64_t kRecordBytes = sizeof(Event);

/// How many records are read or written at once.
constexpr std::int64_t kChunkRecords = 256;

/// How many records may be missing from the file before its count is no longer believed.
constexpr std::int64_t kMostFreshRecords = 1000;

/// The memory that an event takes in the list: itself, the list's two pointers and the allocator's two words.
constexpr std::size_t kNodeBytes = sizeof(Event) + 4 * sizeof(void*);

/// The file on disk could not be read whole as its count says. Written by LoadEvents(), and by SaveEvents()
/// once the file is set aside.
bool damaged = false;

// ---- Reading ----

/// Appends `count` events, the first of them read from the file as far as its `bytes` go. Returns whether all
/// were.
bool ReadRecords(const OpenFile& file, std::int64_t count, std::int64_t bytes) {
    std::vector<Event> chunk(static_cast<std::size_t>(std::min(count, kChunkRecords)));
    while (count > 0 && bytes > 0) {
        const std::int64_t wanted = std::min(bytes, std::min(count, std::ssize(chunk)) * kRecordBytes);
        const std::int64_t got = file.Read(chunk.data(), wanted).bytes;
        const std::int64_t whole = got / kRecordBytes;
        events.insert(events.end(), chunk.begin(), chunk.begin() + whole);
        count -= whole;
        bytes -= got;
        if (got % kRecordBytes > 0) {
            const auto* part = reinterpret_cast<const char*>(&chunk[static_cast<std::size_t>(whole)]);
            std::copy_n(part, got % kRecordBytes, reinterpret_cast<char*>(&events.emplace_back()));
            --count;
        }
        if (got < wanted) break;  // the file shrank meanwhile, or cannot be read
    }
    const bool all_read = bytes == 0 && count == 0;
    for (std::int64_t i = 0; i < std::min(count, kMostFreshRecords); ++i) events.emplace_back();
    return all_read;
}

/// Reads the file into `events`. Returns whether it was whole; a file that is not there is.
bool ReadStore() {
    // Not blocking, because the name may belong to a pipe that nobody writes to.
    OpenFile file;
    const int error = file.Open(kFile, O_RDONLY | O_NONBLOCK);
    if (error != 0) return error == ENOENT;
    const std::int64_t length = file.Length();
    std::int32_t count = 0;
    if (length < kCountBytes || file.Read(&count, kCountBytes).bytes != kCountBytes) return false;

    const std::int64_t bytes = length - kCountBytes;
    const std::int64_t there = (bytes + kRecordBytes - 1) / kRecordBytes;
    const std::int64_t wanted = std::max<std::int64_t>(count, 0);
    const bool believed = wanted <= there + kMostFreshRecords;
    PrepareLargePages(static_cast<std::size_t>(std::min(wanted, there)) * kNodeBytes);
    const bool all_read =
        ReadRecords(file, believed ? wanted : there, std::min(bytes, wanted * kRecordBytes));
    return all_read && bytes == std::int64_t{count} * kRecordBytes;
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

/// Replaces the file by the events, after setting it aside if it is damaged.
ReplaceError WriteStore() {
    std::string path;
    if (const ReplaceError error = FindDestination(kFile, path)) return error;
    if (damaged) {
        if (const ReplaceError error = SetAside(path)) return error;
    }
    damaged = false;
    return ReplaceFile(path, WriteEvents);
}

/// Returns what went wrong, in Italian.
std::string InItalian(const ReplaceError& error) {
    if (error.reason == ReplaceReason::kOtherProgram) return "un altro programma li sta salvando";
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
        default:
            return "errore di sistema numero " + std::to_string(error.number);
    }
}

}  // namespace

void LoadEvents() {
    events.clear();
    edit_event = nullptr;
    damaged = !ReadStore();
    ReturnFreedMemory();
    for (ListedEvent& event : events) StartReminder(event);
}

bool SaveEvents() {
    const ReplaceError error = WriteStore();
    if (!error) return true;
    std::fprintf(stderr, "Ulmaro Assistant: non riesco a salvare gli eventi in \"%s\": %s.\n", kFile,
                 InItalian(error).c_str());
    return false;
}

void ResetEvents() {
    events.clear();
    edit_event = nullptr;
    SaveEvents();
}
