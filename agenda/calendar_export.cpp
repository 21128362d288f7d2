// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/calendar_export.h"

#include <libical/ical.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "agenda/ical_types.h"
#include "agenda/record.h"
#include "agenda/wall_time.h"
#include "calendar/notices.h"

namespace {

constexpr char kHead[] =
    "BEGIN:VCALENDAR\r\n"
    "VERSION:2.0\r\n"
    "PRODID:-//Ulmaro//Ulmaro Assistant//IT\r\n";
constexpr char kFoot[] = "END:VCALENDAR\r\n";

/// The last year that libical writes; a later one becomes zeros.
constexpr std::int64_t kLastYear = 3000;

/// Where a repetition begins whose stored date is none: a Saturday.
constexpr Day kSomeDay = {2000, 1, 1};

/// Returns a stored text in UTF-8: bytes beyond ASCII are Latin-1, as they are typed; control characters are
/// blanks.
std::string Utf8(const std::string& stored) {
    std::string text;
    for (const char c : stored) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) {
            text += static_cast<char>(0xC0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3F));
        } else {
            text += byte < ' ' || byte == 0x7F ? ' ' : c;
        }
    }
    return text;
}

std::string TitleOf(const Event& event) {
    const std::string name = WithoutBlanks(Utf8(NameOf(event)));
    return name.empty() ? kUnnamed : name;
}

/// A 64-bit hash that is the same in every run, FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/).
std::uint64_t Hash(std::string_view text) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    return hash;
}

// ---- When ----

/// When an event begins in the file and how it repeats.
struct Schedule {
    WallTime start;
    icalcomponent_kind component = ICAL_VEVENT_COMPONENT;
    icalrecurrencetype_frequency frequency = ICAL_NO_RECURRENCE;
    int interval = 1;
    int weekday = -1;  ///< of a weekly event, 0 = Sunday
};

Day StoredDay(const Event& event) {
    return {event.date.year, event.date.month, event.date.day};
}

/// Returns when an event takes place; sets `why` and returns nothing where iCalendar has no such thing.
std::optional<Schedule> ScheduleOf(const Event& event, std::string& why) {
    Schedule schedule = {{StoredDay(event), event.time.hour, event.time.minute}};
    const bool has_time = IsTime(event.time.hour, event.time.minute);
    if (event.kind == kAppointment) {
        if (schedule.start.day.year > kLastYear) why = "la data e' dopo l'anno 3000";
        if (!IsDay(schedule.start.day)) why = "la data non esiste";
        if (!has_time) why = "l'ora non esiste";
    } else if (event.kind == kWeekly) {
        if (event.wday < 0 || event.wday > 6) {
            why = "il giorno della settimana non esiste";
            return std::nullopt;
        }
        if (!has_time) why = "l'ora non esiste";
        // The day that is looked for may be in the next year.
        if (!IsDay(schedule.start.day) || schedule.start.day.year >= kLastYear) schedule.start.day = kSomeDay;
        const int days = (event.wday - WeekdayOf(schedule.start.day) + 7) % 7;
        schedule.start.day = DayAfter1970(DaysSince1970(schedule.start.day) + days);
        schedule.frequency = ICAL_WEEKLY_RECURRENCE;
        schedule.weekday = event.wday;
    } else if (const Repeat* repeat = RepeatOf(event); event.kind == kReminder && repeat != nullptr) {
        if (!IsDay(schedule.start.day) || schedule.start.day.year > kLastYear) schedule.start.day = kSomeDay;
        if (!has_time) schedule.start.hour = schedule.start.minute = 0;
        schedule.component = ICAL_VTODO_COMPONENT;
        schedule.frequency = ICAL_HOURLY_RECURRENCE;
        schedule.interval = static_cast<int>(repeat->seconds) / 3600;
    } else {
        why = event.kind == kReminder ? "la ripetizione non esiste" : "il tipo non esiste";
    }
    if (!why.empty()) return std::nullopt;
    return schedule;
}

// ---- Components ----

/// Returns the moment of the last save, in UTC.
icaltimetype Stamp(std::int64_t seconds) {
    icaltimetype time = IcalTime(TimeAfter1970(seconds));
    time.second = static_cast<int>((seconds % 60 + 60) % 60);
    time.zone = icaltimezone_get_utc_timezone();
    return time;
}

icalproperty* RuleOf(const Schedule& schedule) {
    icalrecurrencetype rule;
    icalrecurrencetype_clear(&rule);
    rule.freq = schedule.frequency;
    rule.interval = static_cast<short>(schedule.interval);
    if (schedule.weekday >= 0) {
        rule.by_day[0] = static_cast<short>(ICAL_SUNDAY_WEEKDAY + schedule.weekday);
        rule.by_day[1] = ICAL_RECURRENCE_ARRAY_MAX;
    }
    return icalproperty_new_rrule(rule);
}

std::string TextOf(icalcomponent* component) {
    const std::unique_ptr<char, decltype(&std::free)> text(icalcomponent_as_ical_string_r(component),
                                                           &std::free);
    return text == nullptr ? "" : text.get();
}

std::string AlarmBefore(double minutes) {
    icaltriggertype trigger = {};
    trigger.time = icaltime_null_time();
    trigger.duration = icaldurationtype_from_int(-static_cast<int>(minutes * 60));
    const Component alarm(
        icalcomponent_vanew(ICAL_VALARM_COMPONENT, icalproperty_new_action(ICAL_ACTION_DISPLAY),
                            icalproperty_new_trigger(trigger),
                            icalproperty_new_description("Ulmaro Assistant"), static_cast<void*>(nullptr)));
    return TextOf(alarm.get());
}

/// The last lines of every event but its end: when it was saved, and its alarms. They are the same in all
/// events of a kind, so they are written once: they would take most of an export's time.
struct LastLines {
    explicit LastLines(std::int64_t saved) {
        icalproperty* const stamp = icalproperty_new_dtstamp(Stamp(saved));
        of_reminders = icalproperty_as_ical_string(stamp);
        icalproperty_free(stamp);
        of_others = of_reminders;
        for (const LeadTime& lead : kLeadTimes) of_others += AlarmBefore(lead.minutes);
        of_others += AlarmBefore(0);
        of_reminders += AlarmBefore(0);
    }

    std::string of_others;
    std::string of_reminders;
};

/// Returns an event's component without its last lines.
Component FirstLines(const Event& event, const Schedule& schedule, const std::string& uid) {
    Component component(icalcomponent_new(schedule.component));
    const auto add = [&](icalproperty* property) { icalcomponent_add_property(component.get(), property); };
    add(icalproperty_new_uid(uid.c_str()));
    add(icalproperty_new_dtstart(IcalTime(schedule.start)));
    if (schedule.frequency != ICAL_NO_RECURRENCE) add(RuleOf(schedule));
    add(icalproperty_new_summary(TitleOf(event).c_str()));
    const std::string description = WithoutBlanks(Utf8(DescriptionOf(event)));
    if (!description.empty()) add(icalproperty_new_description(description.c_str()));
    icalproperty* const kept = icalproperty_new_x(KeptOf(event).c_str());
    icalproperty_set_x_name(kept, kRecordProperty);
    add(kept);
    return component;
}

std::string WriteEvent(const Event& event, const Schedule& schedule, const std::string& uid,
                       const LastLines& last) {
    std::string text = TextOf(FirstLines(event, schedule, uid).get());
    const std::size_t end = text.rfind("END:");
    if (end == std::string::npos) return text;
    return text.insert(end, event.kind == kReminder ? last.of_reminders : last.of_others);
}

}  // namespace

std::vector<NotExported> ExportEvents(const std::list<ListedEvent>& list, std::int64_t saved,
                                      const Sink& sink) {
    std::vector<NotExported> left_out;
    std::unordered_map<std::uint64_t, int>
        taken;  // how many events have a hash: two of the same have two UIDs
    const LastLines last(saved);
    if (!sink(kHead)) return left_out;
    for (const ListedEvent& event : list) {
        std::string why;
        const std::optional<Schedule> schedule = ScheduleOf(event, why);
        if (!schedule) {
            left_out.push_back({TitleOf(event), why});
            continue;
        }
        const std::uint64_t hash = Hash(IdentityOf(event));
        char uid[64];
        std::snprintf(uid, sizeof uid, "%016llx-%d@ulmaro-assistant", static_cast<unsigned long long>(hash),
                      ++taken[hash]);
        if (!sink(WriteEvent(event, *schedule, uid, last))) return left_out;
    }
    sink(kFoot);
    return left_out;
}
