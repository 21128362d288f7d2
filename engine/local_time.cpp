// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/local_time.h"

#include <sys/stat.h>

#include <cstdlib>
#include <tuple>

namespace {

/// Identifies a version of the system's time zone file: device, inode, time of its last change.
using ZoneVersion = std::tuple<dev_t, ino_t, time_t, long>;

ZoneVersion SystemZone() {
    struct stat status {};
    if (stat("/etc/localtime", &status) != 0) return {};
    return {status.st_dev, status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

/// Makes the C library read the system's time zone again when the file has changed; by itself it reads the
/// file only once. A change of TZ forces it to: set to something else and unset again.
void FollowSystemZone() {
    static ZoneVersion known = SystemZone();
    if (std::getenv("TZ") != nullptr) return;
    const ZoneVersion now = SystemZone();
    if (now == known) return;
    known = now;
    setenv("TZ", "UTC0", 1);
    tzset();
    unsetenv("TZ");
    tzset();
}

}  // namespace

const std::tm& LocalTime() {
    static std::time_t broken_down = -1;
    static std::tm local = {};
    const std::time_t now = std::time(nullptr);
    if (now == broken_down) return local;
    FollowSystemZone();
    if (const std::tm* fresh = std::localtime(&now)) {
        local = *fresh;
        broken_down = now;
    }
    return local;
}
