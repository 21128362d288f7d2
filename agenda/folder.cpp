// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace {

/// Returns a variable of the environment; empty where it is not set.
std::string_view Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

constexpr mode_t kPrivate = 0700;

}  // namespace

std::string FindFolder(std::string& folder) {
    // As in the launcher a relative folder counts as none.
    const std::string_view data = Variable("XDG_DATA_HOME");
    const std::string_view home = Variable("HOME");
    if (data.starts_with('/')) {
        folder = std::string(data) + "/ulmaro-assistant";
    } else if (home.starts_with('/')) {
        folder = std::string(home) + "/.local/share/ulmaro-assistant";
    } else {
        return home.empty() ? "non so dove sono gli eventi, perche' HOME e' vuota"
                            : "non so dove sono gli eventi, perche' HOME non comincia con una barra";
    }
    return {};
}

int MakeFolder(const std::string& folder) {
    for (std::size_t end = folder.find('/', 1);; end = folder.find('/', end + 1)) {
        const std::string part = folder.substr(0, end);
        const int error = ErrorOf([&] { return mkdir(part.c_str(), kPrivate); });
        if (end != std::string::npos) continue;
        if (error == EEXIST) return 0;
        return error;
    }
}

Locking LockFolder(const std::string& folder, OpenFile& lock) {
    if (lock.Open(folder, O_RDONLY | O_DIRECTORY) != 0) return Locking::kFailed;
    const int error = ErrorOf([&] { return flock(lock.Descriptor(), LOCK_EX | LOCK_NB); });
    if (error == 0) return Locking::kLocked;
    return error == EWOULDBLOCK ? Locking::kTaken : Locking::kFailed;
}
