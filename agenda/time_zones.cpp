// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/time_zones.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace {

constexpr std::int64_t kSecondsOfDay = 86'400;

/// The most changes of the clock that a VTIMEZONE may list one by one.
constexpr int kMostObservances = 2000;

struct WindowsZone {
    std::string_view windows;
    const char* name;  ///< the system's
};

/// What Windows calls its zones, as far as its calendars leave out the description: the rows for the golden
/// territory "001" of Unicode's windowsZones, https://github.com/unicode-org/cldr.
constexpr WindowsZone kWindowsZones[] = {
    {"AUS Eastern Standard Time", "Australia/Sydney"},
    {"Alaskan Standard Time", "America/Anchorage"},
    {"Arab Standard Time", "Asia/Riyadh"},
    {"Arabian Standard Time", "Asia/Dubai"},
    {"Argentina Standard Time", "America/Buenos_Aires"},
    {"Atlantic Standard Time", "America/Halifax"},
    {"Central America Standard Time", "America/Guatemala"},
    {"Central Europe Standard Time", "Europe/Budapest"},
    {"Central European Standard Time", "Europe/Warsaw"},
    {"Central Standard Time", "America/Chicago"},
    {"China Standard Time", "Asia/Shanghai"},
    {"E. Australia Standard Time", "Australia/Brisbane"},
    {"E. Europe Standard Time", "Europe/Chisinau"},
    {"E. South America Standard Time", "America/Sao_Paulo"},
    {"Eastern Standard Time", "America/New_York"},
    {"Egypt Standard Time", "Africa/Cairo"},
    {"FLE Standard Time", "Europe/Kiev"},
    {"GMT Standard Time", "Europe/London"},
    {"GTB Standard Time", "Europe/Bucharest"},
    {"Greenwich Standard Time", "Atlantic/Reykjavik"},
    {"Hawaiian Standard Time", "Pacific/Honolulu"},
    {"India Standard Time", "Asia/Calcutta"},
    {"Israel Standard Time", "Asia/Jerusalem"},
    {"Jordan Standard Time", "Asia/Amman"},
    {"Korea Standard Time", "Asia/Seoul"},
    {"Middle East Standard Time", "Asia/Beirut"},
    {"Morocco Standard Time", "Africa/Casablanca"},
    {"Mountain Standard Time", "America/Denver"},
    {"New Zealand Standard Time", "Pacific/Auckland"},
    {"Pacific Standard Time", "America/Los_Angeles"},
    {"Romance Standard Time", "Europe/Paris"},
    {"Russian Standard Time", "Europe/Moscow"},
    {"SE Asia Standard Time", "Asia/Bangkok"},
    {"Singapore Standard Time", "Asia/Singapore"},
    {"South Africa Standard Time", "Africa/Johannesburg"},
    {"Tokyo Standard Time", "Asia/Tokyo"},
    {"Turkey Standard Time", "Europe/Istanbul"},
    {"US Mountain Standard Time", "America/Phoenix"},
    {"UTC", "UTC"},
    {"W. Europe Standard Time", "Europe/Berlin"},
};

/// Returns the system's name of a zone of Windows; the name itself where it is none.
const char* SystemName(const std::string& name) {
    const auto* row = std::find_if(std::begin(kWindowsZones), std::end(kWindowsZones),
                                   [&](const WindowsZone& zone) { return zone.windows == name; });
    return row == std::end(kWindowsZones) ? name.c_str() : row->name;
}

/// Returns whether an observance's rules, if it has any, are yearly. Others could fill the memory.
bool IsYearly(icalcomponent* observance) {
    for (icalproperty* rule = icalcomponent_get_first_property(observance, ICAL_RRULE_PROPERTY);
         rule != nullptr; rule = icalcomponent_get_next_property(observance, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
        const auto given = [](const short* values) { return values[0] != ICAL_RECURRENCE_ARRAY_MAX; };
        if (recurrence.freq != ICAL_YEARLY_RECURRENCE || given(recurrence.by_hour) ||
            given(recurrence.by_minute) || given(recurrence.by_second))
            return false;
    }
    return true;
}

/// Returns whether libical may take the description of a zone.
bool IsPlain(icalcomponent* description) {
    int observances = 0;
    for (icalcomponent* part = icalcomponent_get_first_component(description, ICAL_ANY_COMPONENT);
         part != nullptr; part = icalcomponent_get_next_component(description, ICAL_ANY_COMPONENT)) {
        if (!IsYearly(part) || ++observances > kMostObservances) return false;
    }
    return observances > 0;
}

/// Returns the seconds that a zone is ahead of UTC so many seconds after the start of 1970.
std::int64_t OffsetAt(icaltimezone* zone, std::int64_t seconds) {
    icaltimetype time = IcalTime(TimeAfter1970(seconds));
    int is_daylight = 0;
    return icaltimezone_get_utc_offset_of_utc_time(zone, &time, &is_daylight);
}

}  // namespace

void TimeZones::Add(Component description) {
    const icalproperty* id = icalcomponent_get_first_property(description.get(), ICAL_TZID_PROPERTY);
    if (id == nullptr || !IsPlain(description.get())) return;
    const std::string name = icalproperty_get_tzid(id);
    std::unique_ptr<icaltimezone, FreeZone> zone(icaltimezone_new());
    if (icaltimezone_set_component(zone.get(), description.get()) == 0) return;
    static_cast<void>(description.release());  // it is the zone's now
    described_[name] = std::move(zone);
    found_.clear();
}

icaltimezone* TimeZones::Find(const std::string& name) {
    const auto known = found_.find(name);
    if (known != found_.end()) return known->second;
    // Where the system knows the name its rules count: some programs describe a zone by its next two changes
    // only, so that a repetition would lose its summer time after a year.
    icaltimezone* zone = icaltimezone_get_builtin_timezone_from_tzid(name.c_str());
    if (zone == nullptr) zone = icaltimezone_get_builtin_timezone(name.c_str());
    if (const auto described = described_.find(name); zone == nullptr && described != described_.end())
        zone = described->second.get();
    if (zone == nullptr) zone = icaltimezone_get_builtin_timezone(SystemName(name));
    return found_[name] = zone;
}

std::optional<std::int64_t> TimeZones::Seconds(const std::string& name, const WallTime& time) {
    icaltimezone* zone = Find(name);
    if (zone == nullptr) return std::nullopt;
    const std::int64_t shown = SecondsSince1970(time);
    const std::int64_t before = OffsetAt(zone, shown - kSecondsOfDay);
    const std::int64_t after = OffsetAt(zone, shown + kSecondsOfDay);
    if (before == after || OffsetAt(zone, shown - before) == before) return shown - before;
    const bool left_out = OffsetAt(zone, shown - after) != after;
    return shown - (left_out ? before : after);
}

bool TimeZones::LeavesOut(const std::string& name, const WallTime& time) {
    const std::optional<std::int64_t> seconds = Seconds(name, time);
    return seconds && *seconds + OffsetAt(Find(name), *seconds) != SecondsSince1970(time);
}
