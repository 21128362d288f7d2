// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "calendar/events.h"
#include "engine/memory.h"

namespace {

constexpr char kFile[] = "database.bin";
constexpr std::int64_t kCountBytes = 4;
constexpr std::int64_t kRecordBytes = sizeof(Event);

/// So many bytes are copied at once.
constexpr std::int64_t kCopyBytes = 65536;

/// So many records are read or written at once.
constexpr std::int64_t kChunkRecords = 256;

/// So many records may be missing from the file before its count is no longer believed.
constexpr std::int64_t kMostFreshRecords = 1000;

/// A save waits so long before it looks again whether another program's is done, and looks at most so often:
/// about a second in all.
constexpr std::chrono::milliseconds kPause(1);
constexpr int kMostLooks = 1000;

/// A loaded reminder has waited this long, the longest period, so that every reminder is due at start.
constexpr float kReminderAtStartSeconds = 10800.0F;

/// The file on disk could not be read whole as its count says. Written by LoadEvents(), and by SaveEvents()
/// once the file is set aside.
bool damaged = false;

/// An open file that closes itself.
class OpenFile {
  public:
    explicit OpenFile(int descriptor = -1) : descriptor_(descriptor) {}
    ~OpenFile() { Close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }
    int Descriptor() const { return descriptor_; }

    /// Takes another file instead.
    void Take(int descriptor) {
        Close();
        descriptor_ = descriptor;
    }

    /// Returns whether the file was closed without an error that had been waiting.
    bool Close() {
        const int descriptor = std::exchange(descriptor_, -1);
        return descriptor < 0 || close(descriptor) == 0;
    }

  private:
    int descriptor_;
};

// ---- Reading ----

/// Reads until the buffer is full, the file ends or an error comes; returns how many bytes were read.
std::int64_t ReadFully(const OpenFile& file, void* buffer, std::int64_t bytes) {
    std::int64_t got = 0;
    while (got < bytes) {
        const ssize_t n =
            read(file.Descriptor(), static_cast<char*>(buffer) + got, static_cast<std::size_t>(bytes - got));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        got += n;
    }
    return got;
}

/// Returns the length of a regular file, or -1 for anything else.
std::int64_t Length(const OpenFile& file) {
    struct stat status {};
    if (fstat(file.Descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
    return status.st_size;
}

/// Appends `count` events, the first of them read from the file as far as its `bytes` go. Returns whether all
/// were.
bool ReadRecords(const OpenFile& file, std::int64_t count, std::int64_t bytes) {
    std::vector<Event> chunk(static_cast<std::size_t>(std::min(count, kChunkRecords)));
    while (count > 0 && bytes > 0) {
        const std::int64_t wanted = std::min(bytes, std::min(count, std::ssize(chunk)) * kRecordBytes);
        const std::int64_t got = ReadFully(file, chunk.data(), wanted);
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

/// Asks for large memory pages under many events to come: with small ones most of the time of loading goes
/// into the first touch of each page. Measured on 100,000 events, 60 MB: 15 ms instead of 40.
void MakeRoom(std::int64_t count) {
    constexpr std::size_t kNodeBytes = sizeof(Event) + 4 * sizeof(void*);
    constexpr std::size_t kLargePage = std::size_t{2} << 20;
    const std::size_t bytes = static_cast<std::size_t>(count) * kNodeBytes;
    if (bytes < 2 * kLargePage) return;
    KeepFreedMemory();  // once given back, the room is where the list's own memory comes from
    void* room = std::malloc(bytes);
    void* start = room;
    std::size_t space = bytes;
    if (std::align(kLargePage, kLargePage, start, space) != nullptr) madvise(start, space, MADV_HUGEPAGE);
    std::free(room);
}

/// Reads the file into `events`. Returns whether it was whole; a file that is not there is.
bool ReadStore() {
    // Not blocking, because the name may belong to a pipe that nobody writes to.
    const OpenFile file(open(kFile, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen()) return errno == ENOENT;
    const std::int64_t length = Length(file);
    std::int32_t count = 0;
    if (length < kCountBytes || ReadFully(file, &count, kCountBytes) != kCountBytes) return false;

    const std::int64_t bytes = length - kCountBytes;
    const std::int64_t there = (bytes + kRecordBytes - 1) / kRecordBytes;
    const std::int64_t wanted = std::max<std::int64_t>(count, 0);
    const bool believed = wanted <= there + kMostFreshRecords;
    MakeRoom(std::min(wanted, there));
    const bool all_read =
        ReadRecords(file, believed ? wanted : there, std::min(bytes, wanted * kRecordBytes));
    return all_read && bytes == std::int64_t{count} * kRecordBytes;
}

// ---- Writing ----

/// Returns what went wrong, in Italian.
std::string Reason(int error) {
    switch (error) {
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
        case EWOULDBLOCK:  // from BeginNew() and PutInPlace()
            return "un altro programma li sta salvando";
        default:
            return "errore di sistema numero " + std::to_string(error);
    }
}

/// Finds the file that is to be replaced: the target, if the store is a symbolic link, so that it stays a
/// link. Returns false where that cannot be told.
bool FindDestination(std::string& destination) {
    constexpr int kMostLinks = 40;  // as the system has it
    std::filesystem::path path = kFile;
    for (int links = 0; links < kMostLinks; ++links) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error == std::errc::invalid_argument || error == std::errc::no_such_file_or_directory) {
            destination = path.string();  // no link, or nothing there yet
            return true;
        }
        errno = error.value();
        if (error) return false;
        path = path.parent_path() / target;
    }
    errno = ELOOP;
    return false;
}

/// Returns the folder that a file stands in.
std::string FolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

bool WriteFully(const OpenFile& file, const std::vector<char>& bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = write(file.Descriptor(), bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        written += static_cast<std::size_t>(n);
    }
    return true;
}

/// Writes the store's contents: the count, then the records, some at a time.
bool WriteEvents(const OpenFile& file) {
    const auto count = static_cast<std::uint32_t>(events.size());
    const auto* count_bytes = reinterpret_cast<const char*>(&count);
    std::vector<char> bytes(count_bytes, count_bytes + kCountBytes);
    for (const Event& event : events) {
        const auto* record = reinterpret_cast<const char*>(&event);
        bytes.insert(bytes.end(), record, record + kRecordBytes);
        if (std::ssize(bytes) < kChunkRecords * kRecordBytes) continue;
        if (!WriteFully(file, bytes)) return false;
        bytes.clear();
    }
    return WriteFully(file, bytes);
}

/// Gives the new file the permissions of the one that it replaces, which its owner may at least read, or the
/// next start would find no events; without one it stays readable by its owner alone.
bool KeepPermissions(const OpenFile& file, const std::string& replaced) {
    struct stat old {};
    if (stat(replaced.c_str(), &old) != 0) return errno == ENOENT;
    // Another owner can only be kept by root, whose file it would become otherwise.
    if (old.st_uid != geteuid() || old.st_gid != getegid()) {
        if (fchown(file.Descriptor(), old.st_uid, old.st_gid) != 0 && geteuid() == 0) return false;
    }
    return fchmod(file.Descriptor(), (old.st_mode & 07777U) | S_IRUSR) == 0;
}

/// Locks a file for as long as it is open. Returns false where another program has locked it; where the file
/// system knows no locks nobody has.
bool Lock(const OpenFile& file) {
    return flock(file.Descriptor(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// Returns whether a name leads to an open file. The name is looked at last, as it may be another's any time.
bool LeadsTo(const std::string& name, const OpenFile& file) {
    struct stat opened {};
    struct stat named {};
    return fstat(file.Descriptor(), &opened) == 0 && lstat(name.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// Makes the new file and locks it. Returns false with EEXIST where there is one already.
bool MakeLocked(const std::string& beside, OpenFile& file) {
    file.Take(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.IsOpen()) return false;
    if (Lock(file) && LeadsTo(beside, file)) return true;
    file.Close();
    errno = EEXIST;  // not locked yet, it was cleared away by another program as one that was left behind
    return false;
}

/// Clears away a new file that a save has left behind. Returns false with EWOULDBLOCK where another program's
/// save is at it, with EEXIST where it cannot be removed.
bool ClearAway(const std::string& beside) {
    const OpenFile file(open(beside.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.IsOpen() && errno == ENOENT) return true;
    if (file.IsOpen() && !(Lock(file) && LeadsTo(beside, file))) {
        errno = EWOULDBLOCK;
        return false;
    }
    if (unlink(beside.c_str()) == 0 || errno == ENOENT) return true;
    errno = EEXIST;
    return false;
}

/// Makes the new file, locked for as long as it is open, once no other program's save is at it.
bool BeginNew(const std::string& beside, OpenFile& file) {
    for (int looks = 0; looks < kMostLooks; ++looks) {
        if (MakeLocked(beside, file)) return true;
        if (errno != EEXIST) return false;
        if (ClearAway(beside)) continue;
        if (errno != EWOULDBLOCK) return false;
        std::this_thread::sleep_for(kPause);
    }
    errno = EWOULDBLOCK;
    return false;
}

/// Writes the new file, down to the disk.
bool WriteNew(const OpenFile& file, const std::string& replaced) {
    return WriteEvents(file) && KeepPermissions(file, replaced) && fsync(file.Descriptor()) == 0;
}

/// Puts the new file in the old one's place, if its name still leads to it: where there are no locks another
/// program may have cleared it away and begun its own.
bool PutInPlace(const OpenFile& file, const std::string& beside, const std::string& replaced) {
    if (LeadsTo(beside, file)) return rename(beside.c_str(), replaced.c_str()) == 0;
    errno = EWOULDBLOCK;
    return false;
}

/// Replaces a file by one that is written beside it. Returns whether it did; else the old one stands. The new
/// one is closed last, as that unlocks it; no error can wait for that, since it was flushed.
bool Replace(const std::string& path) {
    const std::string beside = path + ".new";
    OpenFile file;
    if (!BeginNew(beside, file)) return false;
    if (WriteNew(file, path) && PutInPlace(file, beside, path)) return true;
    const int error = errno;
    if (LeadsTo(beside, file)) unlink(beside.c_str());
    errno = error;
    return false;
}

/// Makes a replacement in the folder last.
bool FlushFolder(const std::string& folder) {
    OpenFile file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return file.IsOpen() && fsync(file.Descriptor()) == 0;
}

/// Copies a regular file to another. Returns whether all of it was read and written.
bool CopyBytes(const OpenFile& from, const OpenFile& to) {
    std::int64_t left = Length(from);
    if (left < 0) return false;
    std::vector<char> bytes;
    while (left > 0) {
        bytes.resize(static_cast<std::size_t>(std::min(left, kCopyBytes)));
        if (ReadFully(from, bytes.data(), std::ssize(bytes)) != std::ssize(bytes)) return false;
        if (!WriteFully(to, bytes)) return false;
        left -= std::ssize(bytes);
    }
    return true;
}

/// Copies a file under a name that no file has yet.
bool CopyUnder(const std::string& path, const std::string& name) {
    const OpenFile from(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!from.IsOpen()) return false;
    OpenFile to(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!to.IsOpen()) return false;
    if (CopyBytes(from, to) && fsync(to.Descriptor()) == 0 && to.Close()) return true;
    const int error = errno;
    unlink(name.c_str());
    errno = error;
    return false;
}

/// Gives a file a second name that no file has yet: by a link, which needs neither space nor the right to
/// read, or where there are none by a copy.
bool SaveUnder(const std::string& path, const std::string& name) {
    if (link(path.c_str(), name.c_str()) == 0) return true;
    return errno != EEXIST && CopyUnder(path, name);
}

/// Returns whether both names are one file's already.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code unknown;
    return std::filesystem::equivalent(a, b, unknown) && !unknown;
}

/// Keeps a damaged file under a name of its own, which outlives its replacement. Returns whether it is kept;
/// a file that is not there needs no keeping.
bool SetAside(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return errno == ENOENT;
    if (S_ISDIR(status.st_mode)) {
        errno = EISDIR;
        return false;
    }
    const std::string backup = path + ".bak";
    std::string name = backup;
    for (int number = 1; !SaveUnder(path, name); ++number) {
        if (errno != EEXIST) return false;
        if (IsSameFile(path, name)) return true;
        name = backup + "." + std::to_string(number);
    }
    FlushFolder(FolderOf(path));  // as far as this file system knows how: without it nothing could be saved
    return true;
}

/// Replaces the file by the events. Returns 0, or the error that kept the old one.
int ReplaceStore() {
    std::string path;
    if (!FindDestination(path)) return errno;
    if (damaged && !SetAside(path)) return errno;
    damaged = false;
    if (!Replace(path)) return errno;
    FlushFolder(FolderOf(path));
    return 0;
}

}  // namespace

void LoadEvents() {
    events.clear();
    edit_event = nullptr;
    damaged = !ReadStore();
    ReturnFreedMemory();
    for (Event& event : events) {
        if (event.kind == kReminder) event.elapsed = kReminderAtStartSeconds;
    }
}

void SaveEvents() {
    const int error = ReplaceStore();
    if (error == 0) return;
    std::fprintf(stderr, "Ulmaro Assistant: non riesco a salvare gli eventi in \"%s\": %s.\n", kFile,
                 Reason(error).c_str());
}

void ResetEvents() {
    events.clear();
    edit_event = nullptr;
    SaveEvents();
}
