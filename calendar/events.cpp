#include "calendar/events.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

char wdaystr[5];

constexpr const char* kWeekdays[] = {"dom", "lun", "mar", "merc", "giov", "ven", "sab"};

}  // namespace

const char* GetWdayStr(int wday) {
    std::fill(std::begin(wdaystr), std::end(wdaystr), '\0');
    if (wday >= 0 && wday < static_cast<int>(std::size(kWeekdays))) {
        std::snprintf(wdaystr, sizeof wdaystr, "%s", kWeekdays[wday]);
    }
    return wdaystr;
}
