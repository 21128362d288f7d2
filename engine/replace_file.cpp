// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: finding the file, setting it aside, the new file and its lock, the replacement. The numbers of steps
// are those of the header.
#include "engine/replace_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <thread>
#include <vector>

namespace {

/// A chain of so many symbolic links is taken for a loop.
constexpr int kLinksOfALoop = 40;

/// How many bytes are copied at once.
constexpr std::int64_t kCopyBytes = 65536;

/// How often we look whether another program's new file is gone, and the pause between two looks. Together
/// they are how long we wait for it: about a second.
constexpr int kMostLooks = 1000;
constexpr std::chrono::milliseconds kPauseBetweenLooks(1);

/// Makes an error of an errno; no error of 0.
ReplaceError SystemError(int number) {
    return {number == 0 ? ReplaceReason::kNone : ReplaceReason::kSystemCall, number};
}

/// Returns the folder that a file stands in.
std::string FolderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

/// Waits until the names in a folder are on the disk. Returns 0, or an errno.
int FlushFolder(const std::string& folder) {
    OpenFile file;
    const int error = file.Open(folder, O_RDONLY | O_DIRECTORY);
    return error != 0 ? error : file.Flush();
}

/// Steps 3 and 12: flushes the folder that a file stands in, if the file system can do that.
void TryToFlushFolderOf(const std::string& path) {
    static_cast<void>(FlushFolder(FolderOf(path)));
}

// ---- Setting aside ----

/// Copies a regular file to another.
ReplaceError CopyBytes(const OpenFile& from, const OpenFile& to) {
    std::int64_t left = from.Length();
    if (left < 0) return {ReplaceReason::kNotCopied};
    std::vector<char> bytes;
    while (left > 0) {
        bytes.resize(static_cast<std::size_t>(std::min(left, kCopyBytes)));
        const ReadResult got = from.Read(bytes.data(), std::ssize(bytes));
        if (got.error != 0) return SystemError(got.error);
        if (got.bytes < std::ssize(bytes)) return {ReplaceReason::kNotCopied};
        if (const int error = to.Write(bytes.data(), bytes.size()); error != 0) return SystemError(error);
        left -= got.bytes;
    }
    return {};
}

/// Copies a regular file to another, down to the disk, and closes the copy.
ReplaceError CopyAndFlush(const OpenFile& from, OpenFile& to) {
    if (const ReplaceError error = CopyBytes(from, to)) return error;
    if (const int error = to.Flush(); error != 0) return SystemError(error);
    return SystemError(to.Close());
}

/// Copies a file under a name that no file has yet. Returns EEXIST where one has; no part of a copy stays.
ReplaceError CopyUnder(const std::string& path, const std::string& name) {
    OpenFile from;
    OpenFile to;
    // Not blocking, because the path may belong to a pipe that nobody writes to.
    if (const int error = from.Open(path, O_RDONLY | O_NONBLOCK); error != 0) return SystemError(error);
    if (const int error = to.Open(name, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR); error != 0)
        return SystemError(error);
    const ReplaceError error = CopyAndFlush(from, to);
    if (error) unlink(name.c_str());
    return error;
}

/// Step 2: gives a file a second name that no file has yet, by a hard link or else by a copy. Returns EEXIST
/// where the name is taken.
ReplaceError KeepUnder(const std::string& path, const std::string& name) {
    const int no_link = ErrorOf([&] { return link(path.c_str(), name.c_str()); });
    if (no_link == 0 || no_link == EEXIST) return SystemError(no_link);
    ReplaceError error = CopyUnder(path, name);
    if (error.reason == ReplaceReason::kNotCopied) error.number = no_link;
    return error;
}

/// Returns whether two names belong to one file.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code unknown;
    return std::filesystem::equivalent(a, b, unknown) && !unknown;
}

// ---- The new file and its lock ----

/// Locks a file until it is closed. Returns false where another program has locked it. Where the file system
/// has no locks, nobody can have locked it.
bool Lock(const OpenFile& file) {
    return ErrorOf([&] { return flock(file.Descriptor(), LOCK_EX | LOCK_NB); }) != EWOULDBLOCK;
}

/// Returns whether an open file still has the name `name`. lstat comes last: another program may take the
/// name at any moment, and the answer is as fresh as the look at the name.
bool StillHasName(const OpenFile& file, const std::string& name) {
    struct stat opened {};
    struct stat named {};
    return ErrorOf([&] { return fstat(file.Descriptor(), &opened); }) == 0 &&
           ErrorOf([&] { return lstat(name.c_str(), &named); }) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/// Removes a new file that was left behind. Returns kOtherProgram where a program is writing it.
ReplaceError ClearAway(const std::string& beside) {
    OpenFile file;
    const int unopened = file.Open(beside, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (unopened == ENOENT) return {};
    if (unopened == 0 && !(Lock(file) && StillHasName(file, beside)))
        return {ReplaceReason::kOtherProgram, EWOULDBLOCK};
    // One that cannot be opened cannot be locked either; it may be a link, or may be another user's.
    const int error = ErrorOf([&] { return unlink(beside.c_str()); });
    if (error == 0 || error == ENOENT) return {};
    return {ReplaceReason::kObstacle, EEXIST};
}

/// Steps 4 to 6: makes the new file, which stays locked while it is open. Waits while another program writes
/// one.
ReplaceError MakeNew(const std::string& beside, OpenFile& file) {
    for (int looks = 0; looks < kMostLooks; ++looks) {
        const int error = file.Open(beside, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
        if (error == 0 && Lock(file) && StillHasName(file, beside)) return {};
        file.Close();
        if (error != 0 && error != EEXIST) return SystemError(error);
        const ReplaceError in_the_way = ClearAway(beside);
        if (!in_the_way) continue;
        if (in_the_way.reason != ReplaceReason::kOtherProgram) return in_the_way;
        std::this_thread::sleep_for(kPauseBetweenLooks);
    }
    return {ReplaceReason::kOtherProgram, EWOULDBLOCK};
}

// ---- The replacement ----

/// Step 8: gives the new file the owner and the permissions of the one that it replaces. Its owner may always
/// read it, or the next start of the program could not. Returns 0, also where there is no old file, or an
/// errno.
int TakeOverPermissions(const OpenFile& file, const std::string& replaced) {
    struct stat old {};
    const int error = ErrorOf([&] { return stat(replaced.c_str(), &old); });
    if (error != 0) return error == ENOENT ? 0 : error;
    if (old.st_uid != geteuid() || old.st_gid != getegid()) {
        const int not_owned = ErrorOf([&] { return fchown(file.Descriptor(), old.st_uid, old.st_gid); });
        // Only root can give a file away; any other user keeps the new one, and that is no error.
        if (not_owned != 0 && geteuid() == 0) return not_owned;
    }
    return ErrorOf([&] { return fchmod(file.Descriptor(), (old.st_mode & 07777U) | S_IRUSR); });
}

/// Steps 7 to 9: fills the new file, down to the disk. Returns 0, or an errno.
int FillNew(const OpenFile& file, const std::string& replaced, const ContentsWriter& write_contents) {
    if (const int error = write_contents(file); error != 0) return error;
    if (const int error = TakeOverPermissions(file, replaced); error != 0) return error;
    return file.Flush();
}

/// Step 10: puts the new file in the old one's place.
ReplaceError PutInPlace(const OpenFile& file, const std::string& beside, const std::string& replaced) {
    if (!StillHasName(file, beside)) return {ReplaceReason::kOtherProgram, EWOULDBLOCK};
    const int error = ErrorOf([&] { return std::rename(beside.c_str(), replaced.c_str()); });
    if (error == EISDIR) return {ReplaceReason::kFolder, error};
    return SystemError(error);
}

/// Steps 7 to 10. After an error the new file is gone.
ReplaceError FillAndPutInPlace(const OpenFile& file, const std::string& beside, const std::string& replaced,
                               const ContentsWriter& write_contents) {
    ReplaceError error = SystemError(FillNew(file, replaced, write_contents));
    if (!error) error = PutInPlace(file, beside, replaced);
    if (error && StillHasName(file, beside)) unlink(beside.c_str());
    return error;
}

}  // namespace

ReplaceError FindDestination(const std::string& path, std::string& destination) {
    std::filesystem::path found = path;
    for (int links = 0; links < kLinksOfALoop; ++links) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(found, error);
        if (error == std::errc::invalid_argument || error == std::errc::no_such_file_or_directory) {
            destination = found.string();  // no link, or nothing there yet
            return {};
        }
        if (error) return SystemError(error.value());
        found = found.parent_path() / target;
    }
    return {ReplaceReason::kLinkLoop, ELOOP};
}

ReplaceError SetAside(const std::string& destination) {
    struct stat status {};
    const int missing = ErrorOf([&] { return lstat(destination.c_str(), &status); });
    if (missing != 0) return SystemError(missing == ENOENT ? 0 : missing);
    if (S_ISDIR(status.st_mode)) return {ReplaceReason::kFolder, EISDIR};
    const std::string backup = destination + ".bak";
    std::string name = backup;
    for (int number = 1;; ++number) {
        const ReplaceError error = KeepUnder(destination, name);
        if (!error) break;
        if (error.number != EEXIST) return error;
        if (IsSameFile(destination, name)) return {};  // by a save that was killed or failed after step 2
        name = backup + "." + std::to_string(number);
    }
    TryToFlushFolderOf(destination);
    return {};
}

ReplaceError ReplaceFile(const std::string& destination, const ContentsWriter& write_contents) {
    const std::string beside = destination + ".new";
    OpenFile file;
    if (const ReplaceError error = MakeNew(beside, file)) return error;
    if (const ReplaceError error = FillAndPutInPlace(file, beside, destination, write_contents)) return error;
    file.Close();
    TryToFlushFolderOf(destination);
    return {};
}
