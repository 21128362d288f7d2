// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The durable replacement of a file: whatever happens to the program or the machine, the file is the complete
// old one or the complete new one.
//
// A file that is overwritten in place is lost when the program is killed halfway. So the new contents go into
// a second file beside it, "NAME.new", which takes over the old one's name in one step once it is complete
// and on the disk.
//
// ---- The steps in their order, and why each stands where it stands ----
//
// FindDestination()
//    1  lstat, readlink  Where NAME is a symbolic link, the file that it leads to is the one to replace,
//                        so that the link stays. This comes first because NAME.new and NAME.bak must
//                        stand in that file's folder: a rename or a hard link cannot cross file systems.
//                        The path is walked part by part, since a link to a folder may stand on the way
//                        too. A link that belongs neither to us nor to root is not followed: whoever
//                        made it could lead us to any file. Only a regular file is replaced, never a
//                        device, a pipe or a socket, which a program that runs as root could remove.
//
// SetAside(), only where the old file is damaged and its bytes are worth keeping
//    2  link NAME.bak    Gives the old file a second name. A hard link needs neither space on the disk
//                        nor the right to read. It never overwrites: a name that is taken is skipped for
//                        NAME.bak.1, NAME.bak.2 ... Where the file system has no hard links, the bytes
//                        are copied, and the copy is flushed. A name that the old file has already, from
//                        an earlier try, is as good as a new link.
//    3  fsync folder     The second name must be on the disk before step 10 takes the first one away,
//                        also a name from an earlier try: that try may have failed here.
//
// ReplaceFile()
//    4  open NAME.new    With O_EXCL, so that it is a file of our own and no link is followed. With mode
//                        0600, so that nobody else can open it before it has the old file's permissions.
//    5  flock            Keeps the new file locked until step 11. A locked NAME.new belongs to a program
//                        that is writing it: we wait for it, at most about a second. An unlocked one was
//                        left behind when a program was killed, because the kernel releases the locks of
//                        a program that ends: it is removed. A file system that has no locks is used
//                        without them.
//    6  fstat, lstat     Between 4 and 5 the new file is not locked, and another program may have
//                        removed it as one that was left behind. If NAME.new is no longer our file, we
//                        start again at 4.
//    7  write            The new contents, by the caller's function.
//    8  stat, fchown,    The old file's owner and permissions. After the writing and in this order,
//       fchmod           because both a write and a change of owner clear the setuid and setgid bits. The
//                        file's type is looked at once more.
//    9  fsync NAME.new   Contents and permissions must be on the disk before the name leads to them.
//                        Otherwise some file systems write the rename to the disk first, and a power cut
//                        leaves an empty file.
//   10  rename           Replaces the old file in one step: whoever opens NAME gets the old file or the
//                        new one. Just before it, fstat and lstat as in 6: without locks another program
//                        may have removed our file and begun its own, which must not be renamed half
//                        written. (Without locks that can still happen between this look and the
//                        rename.)
//   11  close            Releases the lock; only now, when NAME.new no longer exists. No error can be
//                        left for it to report, since the file was flushed.
//   12  fsync folder     When the caller is told of success, the new name is on the disk.
//
// ---- What lies on the disk after a kill or a power cut ----
//
//   in 1           The old file.
//   in 2, 3        The old file; perhaps also NAME.bak. If that is a copy, it may be incomplete; the
//                  next SetAside() leaves it alone and takes the next name. If it is a hard link, the
//                  next SetAside() recognizes the old file in it and is done.
//   in 4 to 10     The old file; also NAME.new, no longer locked, and incomplete until 9 is done. The
//                  next ReplaceFile() removes it.
//   after 10       The new file. After a power cut before 12 is done, perhaps still the old one and a
//                  complete NAME.new, which the next ReplaceFile() removes.
//
// ---- What an error means, and what the caller must do ----
//
// After every error but one the old file is whole and has its name; a NAME.new of our own is removed. The one
// is an error of 12: the new file has taken the old one's place, but after a power cut the old one may be
// back. Nothing needs to be undone in either case: keep the contents in memory, tell the user, and try again
// at the next opportunity. What each error means stands at ReplaceReason.
//
// A call that a signal interrupts (EINTR) is repeated and is no error, except close: it is never repeated,
// because the descriptor is free even then.
//
// A folder that cannot be flushed at all (3, 12) is no error: some file systems have no flush for folders
// (EINVAL, EOPNOTSUPP, ENOSYS), and a folder that may be written to but not read (EACCES, EPERM) cannot be
// opened for it. Every other failure of the flush is an error, since a later one may succeed.
#pragma once

#include <functional>
#include <string>

#include "engine/open_file.h"

/// Why a file was not replaced.
enum class ReplaceReason {
    kNone,          ///< no error
    kSystemCall,    ///< a system call failed: the disk is full (ENOSPC, EDQUOT), the folder is gone (ENOENT)
                    ///< or cannot be written to (EACCES, EPERM, EROFS), and so on
    kOtherProgram,  ///< another program is replacing the same file; a later try is likely to succeed
    kObstacle,      ///< something that cannot be removed has the new file's name, such as a folder (EEXIST)
    kFolder,        ///< a folder has the file's name (EISDIR)
    kNotRegular,    ///< a device, a pipe or a socket has the file's name (ENXIO)
    kForeignLink,   ///< a symbolic link on the way belongs neither to the user nor to root (EACCES)
    kLinkLoop,      ///< the symbolic links lead in a circle, or there are more than 40 of them (ELOOP)
    kNotCopied,     ///< the file cannot be set aside: no hard link could be made, with the errno of that, and
                    ///< no copy, because it is no regular file or became shorter meanwhile
};

/// What came of a step; converts to true where it failed.
struct [[nodiscard]] ReplaceError {
    ReplaceReason reason = ReplaceReason::kNone;
    int number = 0;  ///< the errno of the call that failed, or the one that comes nearest to the reason

    explicit operator bool() const { return reason != ReplaceReason::kNone; }
};

/// Writes the new contents to a file that is open for writing. Returns 0, or the errno that
/// OpenFile::Write() returned; then the old file stays. It stays also where this throws std::bad_alloc, which
/// is ENOMEM.
using ContentsWriter = std::function<int(const OpenFile&)>;

/// Finds the file that is to be replaced: `path`, or what it leads to if it is a symbolic link. The file need
/// not exist. `destination` is set unless there is an error. A folder is found like a file; the other
/// functions refuse it.
///
/// This and the functions below throw std::bad_alloc where there is no memory for a name; nothing is left
/// behind then.
ReplaceError FindDestination(const std::string& path, std::string& destination);

/// Keeps a file under a second name that no file has yet: its own with ".bak" added, then ".bak.1" and so on.
/// It keeps its first name too. A file that does not exist needs no keeping. `destination` comes from
/// FindDestination(). `kept_as` is set to the second name; to an empty one where there was no file, or an
/// error.
ReplaceError SetAside(const std::string& destination, std::string& kept_as);

/// Returns the name under which SetAside() would keep a file now.
std::string NextBackupName(const std::string& destination);

/// Replaces a file, or makes it: see above. A new file can be read and written by its owner alone; one that
/// replaces another takes over its permissions, and is always readable by its owner. `destination` comes from
/// FindDestination(): a symbolic link would itself be replaced.
ReplaceError ReplaceFile(const std::string& destination, const ContentsWriter& write_contents);
