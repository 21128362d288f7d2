// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as an iCalendar file that is imported into an empty store. What is added must be events that the
// owl could have made, must be known when the same file comes again, and must come back from an export byte
// for byte. The same bytes as a store are looked at by the check and exported.
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "agenda/calendar_export.h"
#include "agenda/calendar_file.h"
#include "agenda/calendar_import.h"
#include "agenda/listing.h"
#include "agenda/record.h"
#include "agenda/store_check.h"
#include "fuzz/fuzzer.h"

namespace {

using fuzz::Check;
using EventList = std::list<ListedEvent>;

const ImportSettings kSettings = {{{2026, 11, 22}, 10, 30}, std::pair{8, 0}};

/// Returns 22 November 2026, 10:30, a Sunday.
Moment Now() {
    std::tm now = {};
    now.tm_year = 126;
    now.tm_mon = 10;
    now.tm_mday = 22;
    now.tm_hour = 10;
    now.tm_min = 30;
    return now;
}

std::string BytesOf(const Event& event) {
    return {reinterpret_cast<const char*>(&event), sizeof event};
}

bool IsTyped(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

std::string ExportOf(const EventList& list, std::size_t& left_out) {
    std::string text;
    left_out = ExportEvents(list, 0, [&](const std::string& part) {
                   text += part;
                   return true;
               }).size();
    return text;
}

// ---- What an import must give ----

void CheckEvent(const Event& event) {
    Check(IsTyped(NameOf(event)) && IsTyped(DescriptionOf(event)), "texts are what the owl writes");
    Check(event.kind >= kAppointment && event.kind <= kReminder, "an event is of a known kind");
    if (event.kind == kAppointment)
        Check(IsDay({event.date.year, event.date.month, event.date.day}) && event.date.year >= 1900,
              "the day exists");
    if (event.kind == kWeekly) Check(event.wday >= 0 && event.wday <= 6, "the weekday exists");
    if (event.kind == kReminder) Check(RepeatOf(event) != nullptr, "a reminder is announced");
    if (event.kind != kReminder) Check(IsTime(event.time.hour, event.time.minute), "the time exists");
    Check(LineOf(event, Now()).find('\n') == std::string::npos, "an event is one line");
}

/// Says whether an export of the event holds all of it: up to the year 3000, and without what only a forged
/// X-ULMARO-RECORD brings, or what is longer than the editor lets it be typed.
bool ComesBackWhole(const Event& event) {
    return NameOf(event).size() <= kTypedNameBytes && DescriptionOf(event).size() <= kTypedDescriptionBytes &&
           (event.kind != kAppointment || event.date.year <= 3000);
}

void CheckImport(const Import& import) {
    for (const Event& event : import.added) CheckEvent(event);
    for (const LeftOut& event : import.left_out)
        Check(!event.why.empty() && event.line > 0, "what is left out has a reason");
}

void CheckAgain(std::string_view bytes, const Import& first) {
    CalendarFile file;
    Check(!ReadCalendarFile(bytes, file), "a file that was good is good again");
    const Import second = Importer(EventList(first.added.begin(), first.added.end()), kSettings).Take(file);
    Check(second.added.empty(), "nothing is added twice");
    Check(second.left_out.size() == first.left_out.size(), "what does not fit never does");
}

void CheckRoundTrip(const Import& import) {
    EventList list;
    for (const ListedEvent& event : import.added) {
        if (ComesBackWhole(event)) list.push_back(event);
    }
    std::size_t left_out = 0;
    const std::string text = ExportOf(list, left_out);
    Check(left_out == 0, "all of an import can be exported");
    CalendarFile file;
    Check(!ReadCalendarFile(text, file), "an export is a good file");
    const Import back = Importer({}, kSettings).Take(file);
    Check(back.added.size() == list.size() && back.left_out.empty(), "an export comes in whole");
    auto original = list.begin();
    for (const ListedEvent& event : back.added)
        Check(BytesOf(event) == BytesOf(*original++), "an export gives the same bytes");
}

// ---- Any records ----

void CheckRecords(std::string_view bytes) {
    std::int64_t records = 0;
    CheckStore(bytes, records);
    EventList list;
    for (std::size_t at = 4; at + sizeof(Event) <= bytes.size(); at += sizeof(Event)) {
        Event event;
        std::copy_n(bytes.data() + at, sizeof event, reinterpret_cast<char*>(&event));
        list.emplace_back(event);
        Check(LineOf(event, Now()).find('\n') == std::string::npos, "an event is one line");
        JsonOf(event, Now());
        TakesPlaceIn(event, {Day{2026, 1, 1}, Day{2026, 1, 2}});
    }
    std::size_t left_out = 0;
    const std::string text = ExportOf(list, left_out);
    CalendarFile file;
    Check(!ReadCalendarFile(text, file), "whatever is stored, an export is a good file");
    Check(file.entries.size() + left_out == list.size(), "each event is exported or left out");
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    const std::string head = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n";
    const std::string foot = "END:VCALENDAR\r\n";
    const auto calendar = [&](const std::string& lines) {
        return head + "BEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\n" + foot;
    };
    EventList kinds(3);
    int kind = 0;
    for (ListedEvent& event : kinds) {
        event.kind = kind++;
        SetField(event.name, "evento, con virgola");
        SetField(event.description,
                 " una descrizione che e' lunga quanto basta perche' la riga si pieghi almeno una volta ");
    }
    std::size_t ignored = 0;
    std::string store = {3, 0, 0, 0};
    for (const Event& event : kinds) store += BytesOf(event);
    return {
        "",
        head + foot,
        "\xEF\xBB\xBF" + head + foot,
        calendar("UID:1\r\nDTSTART:20261124T101500\r\nSUMMARY:Perch\xC3\xA9 "
                 "s\xC3\xAC\r\nDESCRIPTION:a\\nb\r\n c\r\n"),
        calendar("UID:1\r\nDTSTART:20261124T101500Z\r\nDTEND:20261124T111500Z\r\nSTATUS:CANCELLED\r\n"),
        calendar(
            "DTSTART;TZID=Europe/Rome:20261124T101500\r\nRRULE:FREQ=WEEKLY;BYDAY=TU,WE\r\nEXDATE;TZID=Europe/"
            "Rome:20261201T101500\r\n"),
        calendar("DTSTART;TZID=\"W. Europe Standard "
                 "Time\":20261124T101500\r\nDURATION:PT1H\r\nRRULE:FREQ=WEEKLY;COUNT=3\r\n"),
        calendar("DTSTART;VALUE=DATE:20261124\r\nRECURRENCE-ID;VALUE=DATE:20261123\r\nRDATE:20261124\r\n"),
        head +
            "BEGIN:VTIMEZONE\r\nTZID:Z\r\nBEGIN:STANDARD\r\nDTSTART:16011028T030000\r\nRRULE:FREQ=YEARLY;"
            "BYDAY=-1SU;BYMONTH=10\r\n"
            "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\nBEGIN:DAYLIGHT\r\nDTSTART:"
            "16010325T020000\r\n"
            "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=3\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\nRDATE:"
            "20270101T000000\r\nEND:DAYLIGHT\r\n"
            "END:VTIMEZONE\r\nBEGIN:VEVENT\r\nDTSTART;TZID=Z:20270724T101500\r\nRRULE:FREQ=WEEKLY\r\nEND:"
            "VEVENT\r\n" +
            foot,
        ExportOf(kinds, ignored),
        store,
    };
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool in_rome = setenv("TZ", "Europe/Rome", 1) == 0;
    Check(in_rome, "the user lives in Rome");
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    CheckRecords(bytes);
    CalendarFile file;
    if (const auto problem = ReadCalendarFile(bytes, file)) {
        Check(problem->line > 0 && !problem->what.empty(), "what is wrong has a line and a reason");
        return 0;
    }
    const Import import = Importer({}, kSettings).Take(file);
    CheckImport(import);
    CheckAgain(bytes, import);
    CheckRoundTrip(import);
    return 0;
}
