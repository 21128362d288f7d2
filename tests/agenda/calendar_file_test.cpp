// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/calendar_file.h"

#include <gtest/gtest.h>

#include "tests/agenda/helpers.h"

namespace {

/// Returns "LINE: what is wrong" with a file; empty for a good one.
std::string Problem(const std::string& text) {
    CalendarFile file;
    const auto problem = ReadCalendarFile(text, file);
    return problem ? std::to_string(problem->line) + ": " + problem->what : "";
}

std::vector<Entry> EntriesOf(const std::string& text) {
    CalendarFile file;
    EXPECT_EQ(Problem(text), "");
    ReadCalendarFile(text, file);
    return file.entries;
}

Entry EntryOf(const std::string& lines) {
    const std::vector<Entry> entries = EntriesOf(Calendar(Vevent(lines)));
    return entries.size() == 1 ? entries[0] : Entry();
}

TEST(CalendarFile, ReadsWhatAnEventSays) {
    const Entry entry = EntryOf(
        "UID:u1\nSUMMARY:a\\, b\nDESCRIPTION:c\\nd\nDTSTART;TZID=Europe/Rome:20261124T101500\nLOCATION:");
    EXPECT_EQ(entry.line, 4);
    EXPECT_EQ(entry.uid, "u1");
    EXPECT_EQ(entry.name, "a, b");
    EXPECT_EQ(entry.description, "c\nd");
    EXPECT_EQ(entry.zone, "Europe/Rome");
    EXPECT_EQ(entry.start, (WallTime{{2026, 11, 24}, 10, 15}));
    EXPECT_FALSE(entry.utc || entry.all_day || entry.cancelled);
    EXPECT_TRUE(EntryOf("DTSTART:20261124T101500Z").utc);
    EXPECT_TRUE(EntryOf("DTSTART;VALUE=DATE:20261124").all_day);
    EXPECT_TRUE(EntryOf("DTSTART:20261124").all_day);
    EXPECT_EQ(EntryOf("DTSTART;TZID=\"(UTC+01:00) Roma, Berna\":20261124T101500").zone,
              "(UTC+01:00) Roma, Berna");
}

TEST(CalendarFile, TellsRepetitionsApart) {
    const auto repetition = [](const std::string& rule) {
        return EntryOf("DTSTART:20261126T101500\n" + rule).repetition;
    };
    for (const char* weekly : {"RRULE:FREQ=WEEKLY", "RRULE:FREQ=WEEKLY;BYDAY=TH",
                               "RRULE:FREQ=WEEKLY;WKST=SU;INTERVAL=1;BYDAY=MO,TH"})
        EXPECT_EQ(repetition(weekly), Repetition::kWeekly) << weekly;
    for (const char* other :
         {"RRULE:FREQ=WEEKLY;INTERVAL=2", "RRULE:FREQ=WEEKLY;COUNT=5", "RRULE:FREQ=WEEKLY;UNTIL=20300101",
          "RRULE:FREQ=DAILY", "RRULE:FREQ=YEARLY", "RRULE:FREQ=MONTHLY;BYDAY=1TH",
          "RRULE:FREQ=WEEKLY;BYHOUR=1,2", "RRULE:FREQ=WEEKLY;BYMONTH=1", "RDATE:20261127T101500",
          "RRULE:FREQ=WEEKLY\nRRULE:FREQ=DAILY", "RRULE:FREQ=WEEKLY;BYDAY=MO", "RRULE:FREQ=HOURLY;BYDAY=MO"})
        EXPECT_EQ(repetition(other), Repetition::kOther) << other;
    EXPECT_EQ(repetition("RRULE:FREQ=HOURLY;INTERVAL=2"), Repetition::kHourly);
    EXPECT_EQ(repetition("SUMMARY:x"), Repetition::kOnce);
}

TEST(CalendarFile, KeepsTheLastException) {
    const Entry entry = EntryOf(
        "DTSTART:20261126T101500\nRRULE:FREQ=WEEKLY\nEXDATE;TZID=Europe/"
        "Rome:20261203T101500,20261217T101500\nEXDATE:20261210T091500Z");
    EXPECT_EQ(entry.last_exception, (Day{2026, 12, 17}));
    EXPECT_EQ(EntryOf("DTSTART:20261126T101500\nRECURRENCE-ID:20261203T101500").replaces, (Day{2026, 12, 3}));
}

TEST(CalendarFile, KnowsWhatIsCancelled) {
    EXPECT_TRUE(EntryOf("DTSTART:20261126T101500\nSTATUS:CANCELLED").cancelled);
    EXPECT_FALSE(EntryOf("DTSTART:20261126T101500\nSTATUS:TENTATIVE").cancelled);
    const auto entries = EntriesOf(Calendar("METHOD:CANCEL\r\n" + Vevent("DTSTART:20261126T101500")));
    EXPECT_TRUE(entries.size() == 1 && entries[0].cancelled);
}

TEST(CalendarFile, PassesOverWhatItNeedsNot) {
    const auto entries = EntriesOf(
        "begin:vcalendar\nX-WR-CALNAME:mio\nBEGIN:VTODO\nUID:t\nEND:VTODO\nBEGIN:VFREEBUSY\nEND:VFREEBUSY\n"
        "BEGIN:VEVENT\nDTSTART:20261126T101500\nFOO:bar\nSUMMARY:\nATTENDEE;CN=\"A:B\":mailto:a\nBEGIN:"
        "VALARM\n"
        "TRIGGER:pfui\nSUMMARY:altro\nEND:VALARM\nend:vevent\nBEGIN:VJOURNAL\nEND:VJOURNAL\nEND:VCALENDAR\n");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].kind, Entry::Kind::kTask);
    EXPECT_EQ(entries[1].name, "");
    EXPECT_EQ(entries[2].kind, Entry::Kind::kJournal);
}

TEST(CalendarFile, NamesTheLineOfWhatIsBad) {
    const std::string none = "1: non e' un calendario iCalendar, manca BEGIN:VCALENDAR";
    EXPECT_EQ(Problem(""), none);
    EXPECT_EQ(Problem("Caro diario"), none);
    EXPECT_EQ(Problem("BEGIN:VEVENT\nEND:VEVENT\n"), none);
    EXPECT_EQ(Problem(std::string("B\0E", 3)), "1: la riga non e' in UTF-8");
    EXPECT_EQ(Problem("BEGIN:VCALENDAR\nVERSION:2.0\n"),
              "2: il file finisce dentro VCALENDAR, che comincia alla riga 1");
    EXPECT_EQ(Problem("BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VCALENDAR\n"),
              "3: END:VCALENDAR dove finisce VEVENT, che comincia alla riga 2");
    EXPECT_EQ(Problem("BEGIN:VCALENDAR\nEND:VCALENDAR\nEND:VCALENDAR\n"), "3" + none.substr(1));
    EXPECT_EQ(Problem(Calendar("senza due punti\n")), "4: la riga non e' una proprieta' iCalendar");
    EXPECT_EQ(Problem(Calendar("X-A:caff\xE8\n")), "4: la riga non e' in UTF-8");
    EXPECT_EQ(Problem(Calendar(Vevent("SUMMARY:a\n b\nDTSTART:domani"))),
              "7: il valore di DTSTART non e' valido");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:20260230T101500"))), "5: la data di DTSTART non esiste");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:20260210T251500"))), "5: l'ora di DTSTART non esiste");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:20260210T101500\nDTEND:x"))),
              "6: il valore di DTEND non e' valido");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:20260210T101500\nRRULE:FREQ=A"))),
              "6: il valore di RRULE non e' valido");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:20260210T101500\nEXDATE:20260217T101500,x"))),
              "6: il valore di EXDATE non e' valido");
    EXPECT_EQ(Problem(Calendar(Vevent("DTSTART:"))), "5: il valore di DTSTART non e' valido");
    std::string deep;
    for (int i = 0; i < 20; ++i) deep += "BEGIN:X\n";
    EXPECT_EQ(Problem(Calendar(deep)), "19: troppi componenti uno dentro l'altro");
}

}  // namespace
