// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: texts, times, repetitions, entries, the importer.

#include "agenda/calendar_import.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <tuple>
#include <unordered_set>

#include "agenda/record.h"
#include "calendar/notices.h"
#include "engine/typed_text.h"

namespace {

/// The first year that the editor's arrows reach.
constexpr std::int64_t kFirstYear = 1900;

using Events = std::vector<ListedEvent>;

// ---- Texts ----

void SetTexts(const Entry& entry, Event& event) {
    const std::string full = TypedText(entry.name);
    const std::string name = TypedText(entry.name, kTypedNameBytes);
    std::string description;
    if (name != full) {
        description = TypedText(entry.name, kTypedDescriptionBytes);
        if (!entry.description.empty()) description += kAfterFullName;
    }
    if (description.size() < kTypedDescriptionBytes)
        description += TypedText(entry.description, kTypedDescriptionBytes - description.size());
    SetField(event.name, name);
    SetField(event.description, description.substr(0, kTypedDescriptionBytes));
}

// ---- Times ----

bool IsOtherTimeOfWeek(const WallTime& a, const WallTime& b) {
    return a.hour != b.hour || a.minute != b.minute || WeekdayOf(a.day) != WeekdayOf(b.day);
}

/// Works out what becomes of the entries of one file.
class Fitting {
  public:
    Fitting(CalendarFile& file, const ImportSettings& settings) : file_(file), settings_(settings) {
        for (const Entry& entry : file.entries) {
            if (!entry.replaces || entry.uid.empty()) continue;
            std::optional<Day>& last = replaced_[entry.uid];
            last = std::max(last.value_or(*entry.replaces), *entry.replaces);
        }
    }

    /// Returns the events that an entry becomes; sets `why` where there are none.
    Events EventsOf(const Entry& entry, std::string& why) {
        why = WhyNot(entry);
        if (!why.empty()) return {};
        if (entry.repetition == Repetition::kHourly) return Reminder(entry, why);
        if (entry.repetition == Repetition::kWeekly) return Weekly(entry, why);
        return OneOff(entry, why);
    }

  private:
    /// Returns why an entry has no place in the store whatever its time; empty for others.
    std::string WhyNot(const Entry& entry) const {
        const bool reminder = entry.repetition == Repetition::kHourly && !entry.record.empty();
        if (entry.kind == Entry::Kind::kTask && !reminder) return "e' un'attivita' e non un evento";
        if (entry.kind == Entry::Kind::kJournal) return "e' una nota di diario e non un evento";
        if (entry.cancelled) return "e' annullato";
        if (!entry.has_start) return "non dice quando comincia";
        if (entry.replaces) return "cambia una sola volta di un evento che si ripete";
        if (entry.repetition == Repetition::kOther) return entry.why_other;
        if (entry.repetition == Repetition::kHourly && !reminder)
            return "la ripetizione non e' ogni settimana";
        if (entry.all_day && !settings_.all_day_time)
            return "dura tutto il giorno (con --giorno-intero ORA entra a quell'ora)";
        return {};
    }

    /// Returns what the user's clock shows when a clock of the entry's zone shows a time; nothing and `why`
    /// where that is not known.
    std::optional<WallTime> Local(const Entry& entry, WallTime time, std::string& why) {
        if (entry.all_day) std::tie(time.hour, time.minute) = *settings_.all_day_time;
        const bool floating = entry.all_day || (!entry.utc && entry.zone.empty());
        if (!floating) {
            const std::optional<std::int64_t> seconds =
                entry.utc ? SecondsSince1970(time) : file_.zones.Seconds(entry.zone, time);
            if (!seconds) {
                why = "il fuso orario \"" + TypedText(entry.zone) + "\" non e' conosciuto";
                return std::nullopt;
            }
            time = LocalWallTime(*seconds);
        }
        if (time.day.year < kFirstYear || !IsDay(time.day)) {
            why = "la data e' fuori da quelle dell'agenda, che vanno dal 1900 al 9999";
            return std::nullopt;
        }
        return time;
    }

    // ---- Repetitions ----

    Events OneOff(const Entry& entry, std::string& why) {
        const std::optional<WallTime> time = Local(entry, entry.start, why);
        if (!time) return {};
        ListedEvent event;
        event.kind = kAppointment;
        event.date = {time->day.day, time->day.month, static_cast<std::int32_t>(time->day.year)};
        event.time = {time->hour, time->minute};
        event.wday = WeekdayOf(time->day);
        // What is over would be announced at once, and a calendar may hold years of it.
        event.done = *time < settings_.now ? 1 : 0;
        SetTexts(entry, event);
        Restore(entry.record, event);
        return {event};
    }

    /// Says whether a repetition has exceptions that lie ahead. Those that are over matter to nobody; a day
    /// may begin sooner in the user's zone than in the entry's.
    bool HasExceptions(const Entry& entry) const {
        std::optional<Day> last = entry.last_exception;
        if (const auto replaced = replaced_.find(entry.uid);
            replaced != replaced_.end() && !entry.uid.empty())
            last = std::max(last, replaced->second);
        return last && DaysSince1970(*last) >= DaysSince1970(settings_.now.day) - 1;
    }

    /// Returns what the user's clock shows when an event comes that comes every week from `first` on, in the
    /// first week that is not over. Nothing where weekday or time change within a year from then, as they do
    /// where only one of two zones has summer time, or has it longer.
    std::optional<WallTime> EveryWeek(const Entry& entry, const WallTime& first, std::string& why) {
        constexpr int kWeeks = 53;
        const std::int64_t ahead = DaysSince1970(settings_.now.day) - DaysSince1970(first.day);
        const std::int64_t from = DaysSince1970(first.day) + std::max<std::int64_t>(ahead / 7 * 7, 0);
        const bool floating = entry.all_day || (!entry.utc && entry.zone.empty());
        std::optional<WallTime>& known =
            weeks_[{entry.zone, entry.utc, from, first.hour * 60 + first.minute}];
        if (known && !floating) return known;
        std::optional<WallTime> shown;
        for (int week = 0; week < (floating ? 1 : kWeeks); ++week) {
            const WallTime there = {DayAfter1970(from + std::int64_t{7} * week), first.hour, first.minute};
            // On the night in which the clock there is put forward it may not show the time at all.
            if (!floating && !entry.utc && file_.zones.LeavesOut(entry.zone, there)) continue;
            const std::optional<WallTime> local = Local(entry, there, why);
            if (!local) return std::nullopt;
            if (!shown) shown = local;
            if (IsOtherTimeOfWeek(*local, *shown)) {
                why = "non cade sempre alla stessa ora di qui, per l'ora legale";
                return std::nullopt;
            }
        }
        return known = shown;
    }

    Events Weekly(const Entry& entry, std::string& why) {
        if (HasExceptions(entry)) {
            why = "la ripetizione ha eccezioni";
            return {};
        }
        Events events;
        for (int days = 0; days < 7; ++days) {
            WallTime first = entry.start;
            first.day = DayAfter1970(DaysSince1970(first.day) + days);
            if (!IsDay(first.day)) why = "la data e' fuori da quelle dell'agenda, che vanno dal 1900 al 9999";
            if (!why.empty()) return {};
            if (!entry.weekdays[WeekdayOf(first.day)]) continue;
            const std::optional<WallTime> time = EveryWeek(entry, first, why);
            if (!time) return {};
            ListedEvent event;  // its stored date, which only orders the list, is today
            event.kind = kWeekly;
            event.wday = WeekdayOf(time->day);
            event.time = {time->hour, time->minute};
            SetTexts(entry, event);
            Restore(entry.record, event);
            events.push_back(event);
        }
        return events;
    }

    static Events Reminder(const Entry& entry, std::string& why) {
        ListedEvent event;
        event.kind = kReminder;
        const auto* repeat = std::find_if(std::begin(kRepeats), std::end(kRepeats), [&](const Repeat& row) {
            return row.seconds == static_cast<float>(entry.hours) * 3600;
        });
        if (repeat == std::end(kRepeats)) {
            why = "un promemoria non puo' ripetersi cosi'";
            return {};
        }
        event.repeat = static_cast<std::int32_t>(repeat - kRepeats);
        SetTexts(entry, event);
        Restore(entry.record, event);
        StartReminder(event);
        return {event};
    }

    CalendarFile& file_;
    const ImportSettings& settings_;
    std::map<std::string, std::optional<Day>> replaced_;  ///< the last replaced day, by the UID
    /// What EveryWeek() has found, by zone, UTC, day to begin with and minute of the day.
    std::map<std::tuple<std::string, bool, std::int64_t, int>, std::optional<WallTime>> weeks_;
};

}  // namespace

// ---- The importer ----

Importer::Importer(const std::list<ListedEvent>& list, const ImportSettings& settings) : settings_(settings) {
    for (const Event& event : list) ++have_[IdentityOf(event)];
}

Import Importer::Take(CalendarFile& file) {
    Fitting fitting(file, settings_);
    Import import;
    std::unordered_map<std::string, int> in_file;
    std::unordered_set<std::string> seen;
    for (const Entry& entry : file.entries) {
        std::string why;
        const std::vector<ListedEvent> fitted = fitting.EventsOf(entry, why);
        if (fitted.empty()) import.left_out.push_back({entry.line, TypedText(entry.name), why});
        for (const ListedEvent& event : fitted) {
            const std::string identity = IdentityOf(event);
            if (!entry.uid.empty() && !seen.insert(entry.uid + '\0' + identity).second) {
                ++import.known;
                continue;
            }
            int& have = have_[identity];
            if (++in_file[identity] > have) {
                have = in_file[identity];
                import.added.push_back(event);
            } else {
                ++import.known;
            }
        }
    }
    return import;
}
