// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: components as libical reads them, values, repetitions, the entry, the file.

#include "agenda/calendar_file.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <utility>

#include "agenda/content_lines.h"
#include "engine/typed_text.h"

namespace {

/// What is wrong with the file: the first that was found. Once something is, the reading ends.
class FirstProblem {
  public:
    void Note(int line, std::string what) {
        if (!problem_) problem_ = FileProblem{line, std::move(what)};
    }
    explicit operator bool() const { return problem_.has_value(); }
    const std::optional<FileProblem>& Get() const { return problem_; }

  private:
    std::optional<FileProblem> problem_;
};

// ---- Components as libical reads them ----

/// The properties that libical gets of a component.
constexpr std::string_view kEntryProperties[] = {
    "UID",   "SUMMARY", "DESCRIPTION", "DTSTART",       "DTEND",           "DUE", "DURATION", "RRULE",
    "RDATE", "EXRULE",  "EXDATE",      "RECURRENCE-ID", "X-ULMARO-RECORD",
};
constexpr std::string_view kZoneProperties[] = {
    "TZID", "DTSTART", "TZOFFSETFROM", "TZOFFSETTO", "RRULE", "RDATE", "BEGIN", "END",
};

/// Of these, the texts, which may be empty, and the times.
constexpr std::string_view kTexts[] = {"UID", "SUMMARY", "DESCRIPTION"};
constexpr std::string_view kTimes[] = {"DTSTART", "DTEND", "DUE", "EXDATE", "RECURRENCE-ID"};

template <typename Names>
bool Holds(const Names& names, std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// Feeds libical line by line.
class Parser {
  public:
    Parser() : parser_(icalparser_new()) {}
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;
    ~Parser() { icalparser_free(parser_); }

    /// Reads a component's lines, the first of which begins it and the last ends it. Null where libical does
    /// not accept one of them, which is noted.
    Component Read(std::vector<ContentLine>& lines, FirstProblem& problem) {
        Component whole;
        for (ContentLine& line : lines) {
            whole.reset(icalparser_add_line(parser_, line.text.data()));
            if (icalparser_get_state(parser_) == ICALPARSER_ERROR)
                problem.Note(line.number, "il valore di " + line.Name() + " non e' valido");
        }
        if (whole == nullptr) problem.Note(lines.front().number, "il componente non si legge");
        if (problem) return nullptr;
        return whole;
    }

  private:
    icalparser* parser_;
};

// ---- Values ----

Day DayOf(const icaltimetype& time) {
    return {time.year, time.month, time.day};
}

std::string Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t") - first + 1));
}

/// Notes what is wrong with the times of a line, which commas separate.
void CheckTimes(const ContentLine& line, FirstProblem& problem) {
    std::string_view rest = line.Value();
    while (true) {
        const std::size_t comma = rest.find(',');
        const icaltimetype time = icaltime_from_string(Trimmed(rest.substr(0, comma)).c_str());
        if (icaltime_is_null_time(time) != 0)
            return problem.Note(line.number, "il valore di " + line.Name() + " non e' valido");
        if (!IsDay(DayOf(time)))
            return problem.Note(line.number, "la data di " + line.Name() + " non esiste");
        if (time.is_date == 0 && !IsTime(time.hour, time.minute))
            return problem.Note(line.number, "l'ora di " + line.Name() + " non esiste");
        if (comma == std::string_view::npos) return;
        rest.remove_prefix(comma + 1);
    }
}

/// Returns a property's value as libical keeps it; empty without one.
std::string TextOf(icalcomponent* component, icalproperty_kind kind) {
    const icalproperty* property = icalcomponent_get_first_property(component, kind);
    if (property == nullptr) return {};
    const char* text = icalvalue_get_text(icalproperty_get_value(property));
    return text == nullptr ? "" : text;
}

WallTime WallTimeOf(const icaltimetype& time) {
    if (time.is_date != 0) return {DayOf(time)};
    return {DayOf(time), time.hour, time.minute};
}

void ReadStart(icalcomponent* component, Entry& entry) {
    icalproperty* start = icalcomponent_get_first_property(component, ICAL_DTSTART_PROPERTY);
    if (start == nullptr) return;
    const icaltimetype time = icalproperty_get_dtstart(start);
    entry.has_start = true;
    entry.start = WallTimeOf(time);
    entry.all_day = time.is_date != 0;
    entry.utc = icaltime_is_utc(time) != 0;
    const icalparameter* zone = icalproperty_get_first_parameter(start, ICAL_TZID_PARAMETER);
    if (zone != nullptr && !entry.utc && !entry.all_day) entry.zone = icalparameter_get_tzid(zone);
}

void ReadExceptions(icalcomponent* component, Entry& entry) {
    for (icalproperty* property = icalcomponent_get_first_property(component, ICAL_EXDATE_PROPERTY);
         property != nullptr; property = icalcomponent_get_next_property(component, ICAL_EXDATE_PROPERTY)) {
        const Day day = DayOf(icalproperty_get_exdate(property));
        entry.last_exception = std::max(entry.last_exception.value_or(day), day);
    }
    const icalproperty* replaced = icalcomponent_get_first_property(component, ICAL_RECURRENCEID_PROPERTY);
    if (replaced != nullptr) entry.replaces = DayOf(icalproperty_get_recurrenceid(replaced));
}

// ---- Repetitions ----

bool IsGiven(const short* values) {
    return values[0] != ICAL_RECURRENCE_ARRAY_MAX;
}

/// Says whether a rule names days, hours or weeks by other means than the day of the week.
bool NamesMoreThanDays(const icalrecurrencetype& rule) {
    const std::array<const short*, 8> others = {rule.by_second,    rule.by_minute,   rule.by_hour,
                                                rule.by_month_day, rule.by_year_day, rule.by_week_no,
                                                rule.by_month,     rule.by_set_pos};
    return std::any_of(others.begin(), others.end(), IsGiven);
}

void SetOther(Entry& entry, const char* why) {
    entry.repetition = Repetition::kOther;
    entry.why_other = why;
}

/// Takes over the days of a weekly rule: those that it names, or else the start's.
void ReadWeekdays(const icalrecurrencetype& rule, Entry& entry) {
    const int first = WeekdayOf(entry.start.day);
    for (int i = 0; i < ICAL_BY_DAY_SIZE && rule.by_day[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i) {
        const int weekday = icalrecurrencetype_day_day_of_week(rule.by_day[i]) - ICAL_SUNDAY_WEEKDAY;
        if (weekday < 0 || weekday > 6 || icalrecurrencetype_day_position(rule.by_day[i]) != 0)
            return SetOther(entry, "la ripetizione non e' ogni settimana");
        entry.weekdays[weekday] = true;
    }
    if (!IsGiven(rule.by_day)) entry.weekdays[first] = true;
    if (!entry.weekdays[first]) SetOther(entry, "la prima volta cade fuori dalla ripetizione");
}

void ReadRule(const icalrecurrencetype& rule, Entry& entry) {
    if (rule.count != 0 || icaltime_is_null_time(rule.until) == 0)
        return SetOther(entry, "la ripetizione ha una fine");
    if (rule.freq == ICAL_HOURLY_RECURRENCE && !NamesMoreThanDays(rule) && !IsGiven(rule.by_day)) {
        entry.repetition = Repetition::kHourly;
        entry.hours = rule.interval;
        return;
    }
    if (rule.freq != ICAL_WEEKLY_RECURRENCE || rule.interval != 1 || NamesMoreThanDays(rule))
        return SetOther(entry, "la ripetizione non e' ogni settimana");
    entry.repetition = Repetition::kWeekly;
    ReadWeekdays(rule, entry);
}

void ReadRepetition(icalcomponent* component, Entry& entry) {
    const int rules = icalcomponent_count_properties(component, ICAL_RRULE_PROPERTY);
    const int extras = icalcomponent_count_properties(component, ICAL_RDATE_PROPERTY) +
                       icalcomponent_count_properties(component, ICAL_EXRULE_PROPERTY);
    if (rules > 1 || extras > 0) return SetOther(entry, "la ripetizione non ha una regola sola");
    if (rules == 1 && entry.has_start)
        ReadRule(icalproperty_get_rrule(icalcomponent_get_first_property(component, ICAL_RRULE_PROPERTY)),
                 entry);
}

// ---- The entry ----

std::string RecordOf(icalcomponent* component) {
    const icalproperty* property = icalcomponent_get_first_property(component, ICAL_X_PROPERTY);
    const char* text = property == nullptr ? nullptr : icalproperty_get_x(property);
    return text == nullptr ? "" : text;
}

/// Reads a component; all but its line, its kind and whether it is cancelled.
Entry ReadEntry(icalcomponent* component) {
    Entry entry;
    entry.uid = TextOf(component, ICAL_UID_PROPERTY);
    entry.name = TextOf(component, ICAL_SUMMARY_PROPERTY);
    entry.description = TextOf(component, ICAL_DESCRIPTION_PROPERTY);
    entry.record = RecordOf(component);
    ReadStart(component, entry);
    ReadExceptions(component, entry);
    ReadRepetition(component, entry);
    return entry;
}

// ---- The file ----

std::string Capitals(std::string_view text) {
    std::string capitals = Trimmed(text);
    for (char& c : capitals) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return capitals;
}

/// Walks through a file: keeps the components that are open, and gathers the lines of those that matter.
class Reader {
  public:
    explicit Reader(CalendarFile& file) : file_(file) {}

    std::optional<FileProblem> Read(std::string_view bytes) {
        ContentLines lines(bytes);
        ContentLine line;
        bool any = false;
        while (!problem_ && lines.Next(line)) {
            Take(line);
            any = true;
        }
        if (!open_.empty()) problem_.Note(lines.Number(), "il file finisce dentro " + Innermost());
        if (!any) problem_.Note(1, kNoCalendar);
        return problem_.Get();
    }

  private:
    static constexpr char kNoCalendar[] = "non e' un calendario iCalendar, manca BEGIN:VCALENDAR";

    struct Open {
        std::string name;
        int line;
    };

    /// Names the component in which the walk is.
    std::string Innermost() const {
        return open_.back().name + ", che comincia alla riga " + std::to_string(open_.back().line);
    }

    bool InZone() const { return open_.size() >= 2 && open_[1].name == "VTIMEZONE"; }

    void Take(const ContentLine& line) {
        const std::string name = line.Name();
        if (line.text.find('\0') != std::string::npos || !IsUtf8(line.text))
            return problem_.Note(line.number, "la riga non e' in UTF-8");
        if (open_.empty() && (name != "BEGIN" || Capitals(line.Value()) != "VCALENDAR"))
            return problem_.Note(line.number, kNoCalendar);
        if (name.empty()) return problem_.Note(line.number, "la riga non e' una proprieta' iCalendar");
        if (name == "BEGIN") return Begin(line);
        if (name == "END") return End(line);
        if (open_.size() == 1 && name == "METHOD") calendar_cancelled_ = Capitals(line.Value()) == "CANCEL";
        if (open_.size() == 2 && name == "STATUS") cancelled_ |= Capitals(line.Value()) == "CANCELLED";
        Gather(line, name);
    }

    void Begin(const ContentLine& line) {
        constexpr std::size_t kDeepest = 16;
        if (open_.size() == kDeepest)
            return problem_.Note(line.number, "troppi componenti uno dentro l'altro");
        open_.push_back({Capitals(line.Value()), line.number});
        if (open_.size() == 2) {
            gathered_.clear();
            cancelled_ = calendar_cancelled_;
        }
        if (open_.size() == 2 || InZone()) gathered_.push_back(line);
    }

    void End(const ContentLine& line) {
        const std::string name = Capitals(line.Value());
        if (name != open_.back().name)
            return problem_.Note(line.number, "END:" + name + " dove finisce " + Innermost());
        if (open_.size() == 2 || InZone()) gathered_.push_back(line);
        if (open_.size() == 2) Finish(name);
        open_.pop_back();
        if (open_.empty()) calendar_cancelled_ = false;
    }

    void Gather(const ContentLine& line, std::string_view name) {
        const bool wanted =
            InZone() ? Holds(kZoneProperties, name) : open_.size() == 2 && Holds(kEntryProperties, name);
        if (!wanted || (Holds(kTexts, name) && Trimmed(line.Value()).empty())) return;
        if (Holds(kTimes, name)) CheckTimes(line, problem_);
        gathered_.push_back(line);
    }

    /// Takes the component in which the walk is, now that all its lines are known.
    void Finish(const std::string& name) {
        constexpr std::pair<std::string_view, Entry::Kind> kKinds[] = {{"VEVENT", Entry::Kind::kEvent},
                                                                       {"VTODO", Entry::Kind::kTask},
                                                                       {"VJOURNAL", Entry::Kind::kJournal}};
        const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                        [&](const auto& candidate) { return candidate.first == name; });
        if (kind == std::end(kKinds) && !InZone()) return;
        Component component = Parser().Read(gathered_, problem_);
        if (component == nullptr) return;
        if (InZone()) return file_.zones.Add(std::move(component));
        Entry& entry = file_.entries.emplace_back(ReadEntry(component.get()));
        entry.line = gathered_.front().number;
        entry.kind = kind->second;
        entry.cancelled = cancelled_;
    }

    CalendarFile& file_;
    FirstProblem problem_;
    std::vector<Open> open_;             ///< the components that have begun and not ended
    std::vector<ContentLine> gathered_;  ///< of the component in the calendar
    bool calendar_cancelled_ = false;    ///< the calendar takes its events back
    bool cancelled_ = false;             ///< so does the component
};

}  // namespace

std::optional<FileProblem> ReadCalendarFile(std::string_view bytes, CalendarFile& file) {
    icalerror_set_errors_are_fatal(0);
    return Reader(file).Read(bytes);
}
