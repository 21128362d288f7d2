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
#include <array>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// How many symbolic links of a path the kernel follows; it takes more of them for a loop.
constexpr int kMostLinks = 40;

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

/// Returns whether we may not open a folder for a flush at all, because we may write to it but not read it.
bool CannotBeOpened(int error) {
    return error == EACCES || error == EPERM;
}

/// Returns whether the file system has no flush for folders. EROFS is not among these errors: after a rename
/// it means that the file system has given up writing in the meantime.
bool HasNoFlush(int error) {
    return error == EINVAL || error == EOPNOTSUPP || error == ENOSYS;
}

/// Steps 3 and 12: waits until the names in the folder that a file stands in are on the disk, if they can be
/// flushed.
ReplaceError FlushFolderOf(const std::string& path) try {
    OpenFile folder;
    if (const int error = folder.Open(FolderOf(path), O_RDONLY | O_DIRECTORY); error != 0)
        return SystemError(CannotBeOpened(error) ? 0 : error);
    const int error = folder.Flush();
    return SystemError(HasNoFlush(error) ? 0 : error);
} catch (const std::bad_alloc&) {
    return SystemError(ENOMEM);
}

/// Returns why a file of that type must not be replaced, if so.
ReplaceError RefuseType(mode_t mode) {
    if (S_ISDIR(mode)) return {ReplaceReason::kFolder, EISDIR};
    if (!S_ISREG(mode)) return {ReplaceReason::kNotRegular, ENXIO};
    return {};
}

/// Looks at what has a name, without following a link.
int Look(const std::string& name, struct stat& status) {
    return ErrorOf([&] { return lstat(name.c_str(), &status); });
}

// ---- Finding the file ----

using Path = std::filesystem::path;

/// Reads where a symbolic link leads. Refuses a link of anybody but us and root, who could lead us to any
/// file that we may replace.
ReplaceError ReadLink(const std::string& name, const struct stat& status, Path& target) {
    if (status.st_uid != geteuid() && status.st_uid != 0) return {ReplaceReason::kForeignLink, EACCES};
    std::array<char, PATH_MAX> text{};
    ssize_t length = 0;
    const int error = ErrorOf([&] { return length = readlink(name.c_str(), text.data(), text.size()); });
    if (error == 0) target = std::string(text.data(), static_cast<std::size_t>(length));
    return SystemError(error);
}

/// Walks a path part by part as the kernel does, so that every link on the way is seen, also one to a folder.
class Walk {
  public:
    explicit Walk(const Path& path) { PutAhead(path); }

    bool AtEnd() const { return ahead_.empty(); }

    /// Where the walk has come to: no link, and none on the way.
    const Path& Found() const { return found_; }

    /// The type of what is there; a regular file's where nothing is.
    mode_t Type() const { return type_; }

    /// Goes to the next part. Where that is a link, its target's parts come next.
    ReplaceError Step() {
        const Path next = found_ / ahead_.back();
        ahead_.pop_back();
        struct stat status {};
        const int error = missing_ ? ENOENT : Look(next.string(), status);
        if (error != 0 && error != ENOENT) return SystemError(error);
        if (error == 0 && S_ISLNK(status.st_mode)) return Follow(next.string(), status);
        missing_ = error == ENOENT;
        type_ = missing_ ? S_IFREG : status.st_mode;
        found_ = next;
        return {};
    }

  private:
    ReplaceError Follow(const std::string& link, const struct stat& status) {
        if (++links_ > kMostLinks) return {ReplaceReason::kLinkLoop, ELOOP};
        Path target;
        if (const ReplaceError error = ReadLink(link, status, target)) return error;
        PutAhead(target);
        return {};
    }

    void PutAhead(const Path& path) {
        const std::vector<Path> parts(path.begin(), path.end());
        ahead_.insert(ahead_.end(), parts.rbegin(), parts.rend());
    }

    std::vector<Path> ahead_;  ///< the parts to come, the next one last
    Path found_;
    mode_t type_ = S_IFREG;
    bool missing_ = false;  ///< nothing is there, nor anything below it
    int links_ = 0;
};

// ---- Setting aside ----

/// Copies a regular file to another.
ReplaceError CopyBytes(const OpenFile& from, const OpenFile& to) {
    struct stat status {};
    if (const int error = from.Status(status); error != 0) return SystemError(error);
    if (!S_ISREG(status.st_mode)) return {ReplaceReason::kNotCopied};
    std::int64_t left = status.st_size;
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
ReplaceError CopyAndFlush(const OpenFile& from, OpenFile& to) try {
    if (const ReplaceError error = CopyBytes(from, to)) return error;
    if (const int error = to.Flush(); error != 0) return SystemError(error);
    return SystemError(to.Close());
} catch (const std::bad_alloc&) {
    return SystemError(ENOMEM);
}

/// Copies a file under a name that no file has yet, down to the disk. Returns EEXIST where one has; no part
/// of a copy stays.
ReplaceError CopyUnder(const std::string& path, const std::string& name) {
    OpenFile from;
    OpenFile to;
    // Not blocking, because the path may belong to a pipe that nobody writes to.
    if (const int error = from.Open(path, O_RDONLY | O_NONBLOCK); error != 0) return SystemError(error);
    if (const int error = to.Open(name, O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR); error != 0)
        return SystemError(error);
    ReplaceError error = CopyAndFlush(from, to);
    if (!error) error = FlushFolderOf(name);
    if (error) unlink(name.c_str());
    return error;
}

/// Returns whether two names belong to one file. A link and the file that it leads to are two.
bool IsSameFile(const std::string& a, const std::string& b) {
    struct stat first {};
    struct stat second {};
    return Look(a, first) == 0 && Look(b, second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

/// Steps 2 and 3: gives a file a second name that no file has yet, by a hard link or else by a copy. Returns
/// EEXIST where another file has the name. A link that an earlier try left there is as good as a new one.
ReplaceError KeepUnder(const std::string& path, const std::string& name) {
    const int no_link = ErrorOf([&] { return link(path.c_str(), name.c_str()); });
    if (no_link == 0 || (no_link == EEXIST && IsSameFile(path, name))) return FlushFolderOf(name);
    if (no_link == EEXIST) return SystemError(no_link);
    ReplaceError error = CopyUnder(path, name);
    if (error.reason == ReplaceReason::kNotCopied) error.number = no_link;
    return error;
}

/// Returns the names under which a file may be kept, from number 0.
std::string BackupName(const std::string& destination, int number) {
    const std::string name = destination + ".bak";
    return number == 0 ? name : name + "." + std::to_string(number);
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
    return file.Status(opened) == 0 && Look(name, named) == 0 && opened.st_dev == named.st_dev &&
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

/// Step 7: calls the writer. Returns 0, or an errno.
int WriteContents(const OpenFile& file, const ContentsWriter& write_contents) try {
    return write_contents(file);
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

/// Step 8: gives the new file the owner and the permissions of the one that it replaces. Its owner may always
/// read it, or the next start of the program could not. No error where there is no old file.
ReplaceError TakeOverPermissions(const OpenFile& file, const std::string& replaced) {
    struct stat old {};
    const int error = ErrorOf([&] { return stat(replaced.c_str(), &old); });
    if (error != 0) return SystemError(error == ENOENT ? 0 : error);
    if (const ReplaceError refused = RefuseType(old.st_mode)) return refused;
    if (old.st_uid != geteuid() || old.st_gid != getegid()) {
        const int not_owned = ErrorOf([&] { return fchown(file.Descriptor(), old.st_uid, old.st_gid); });
        // Only root can give a file away; any other user keeps the new one, and that is no error.
        if (not_owned != 0 && geteuid() == 0) return SystemError(not_owned);
    }
    const mode_t mode = (old.st_mode & 07777U) | S_IRUSR;
    return SystemError(ErrorOf([&] { return fchmod(file.Descriptor(), mode); }));
}

/// Steps 7 to 9: fills the new file, down to the disk.
ReplaceError FillNew(const OpenFile& file, const std::string& replaced,
                     const ContentsWriter& write_contents) {
    if (const int error = WriteContents(file, write_contents); error != 0) return SystemError(error);
    if (const ReplaceError error = TakeOverPermissions(file, replaced)) return error;
    return SystemError(file.Flush());
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
    ReplaceError error = FillNew(file, replaced, write_contents);
    if (!error) error = PutInPlace(file, beside, replaced);
    if (error && StillHasName(file, beside)) unlink(beside.c_str());
    return error;
}

}  // namespace

ReplaceError FindDestination(const std::string& path, std::string& destination) {
    Walk walk(path);
    while (!walk.AtEnd()) {
        if (const ReplaceError error = walk.Step()) return error;
    }
    const ReplaceError refused = RefuseType(walk.Type());
    if (refused.reason == ReplaceReason::kNotRegular) return refused;
    destination = walk.Found().string();
    return {};
}

std::string NextBackupName(const std::string& destination) {
    for (int number = 0;; ++number) {
        std::string name = BackupName(destination, number);
        struct stat status {};
        if (Look(name, status) != 0 || IsSameFile(destination, name)) return name;
    }
}

ReplaceError SetAside(const std::string& destination, std::string& kept_as) {
    kept_as.clear();
    struct stat status {};
    const int missing = Look(destination, status);
    if (missing != 0) return SystemError(missing == ENOENT ? 0 : missing);
    if (S_ISDIR(status.st_mode)) return {ReplaceReason::kFolder, EISDIR};
    for (int number = 0;; ++number) {
        std::string name = BackupName(destination, number);
        const ReplaceError error = KeepUnder(destination, name);
        if (error.number == EEXIST) continue;
        if (!error) kept_as = std::move(name);
        return error;
    }
}

ReplaceError ReplaceFile(const std::string& destination, const ContentsWriter& write_contents) {
    const std::string beside = destination + ".new";
    OpenFile file;
    if (const ReplaceError error = MakeNew(beside, file)) return error;
    if (const ReplaceError error = FillAndPutInPlace(file, beside, destination, write_contents)) return error;
    file.Close();
    return FlushFolderOf(destination);
}
