// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/calendar_export.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/agenda/helpers.h"

namespace {

bool Has(const std::string& text, const std::string& line) {
    return text.find("\r\n" + line + "\r\n") != std::string::npos;
}

TEST(CalendarExport, WritesAnAppointmentInLocalTimeWithItsAlarms) {
    const std::string text = ExportOf({Appointment("dentista", {2026, 11, 24}, 10, 15)});
    for (const char* line : {"BEGIN:VEVENT", "DTSTART:20261124T101500", "SUMMARY:dentista", "TRIGGER:-PT1H",
                             "TRIGGER:-PT30M", "TRIGGER:PT0S", "ACTION:DISPLAY", "DTSTAMP:20231114T221320Z"})
        EXPECT_TRUE(Has(text, line)) << line << "\n" << text;
    EXPECT_EQ(text.find("RRULE"), std::string::npos);
    EXPECT_TRUE(text.starts_with("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n") &&
                text.ends_with("END:VCALENDAR\r\n"));
}

TEST(CalendarExport, BeginsAWeeklyEventOnItsWeekday) {
    Event event = Weekly("corso", 4, 17, 30);
    event.date = {22, 11, 2026};  // a Sunday
    std::string text = ExportOf({event});
    EXPECT_TRUE(Has(text, "DTSTART:20261126T173000") && Has(text, "RRULE:FREQ=WEEKLY;BYDAY=TH")) << text;
    event.date = {31, 2, 2026};
    text = ExportOf({event});
    EXPECT_TRUE(Has(text, "DTSTART:20000106T173000")) << text;
}

TEST(CalendarExport, MakesATaskOfAReminder) {
    const std::string text = ExportOf({Reminder("acqua", 1)});
    EXPECT_TRUE(Has(text, "BEGIN:VTODO") && Has(text, "RRULE:FREQ=HOURLY;INTERVAL=2") &&
                Has(text, "TRIGGER:PT0S"))
        << text;
    EXPECT_FALSE(Has(text, "TRIGGER:-PT1H"));
}

TEST(CalendarExport, GivesEachEventAUidOfItsOwnThatStays) {
    const Event event = Appointment("a", {2026, 11, 24}, 10, 15);
    const std::string once = ExportOf({event, event, Weekly("a", 2, 10, 15)});
    EXPECT_EQ(ExportOf({event, event, Weekly("a", 2, 10, 15)}), once);
    std::set<std::string> uids;
    for (std::size_t at = once.find("\r\nUID:"); at != std::string::npos; at = once.find("\r\nUID:", at + 1))
        uids.insert(once.substr(at, once.find("\r\n", at + 2) - at));
    EXPECT_EQ(uids.size(), 3U);
    const std::string other = ExportOf({Appointment("b", {2026, 11, 24}, 10, 15), event});
    EXPECT_NE(other.find(once.substr(once.find("\r\nUID:"), 25)), std::string::npos)
        << "another event changes the UID";
}

TEST(CalendarExport, BeginsWhatRepeatsInAYearThatCalendarsHave) {
    Event weekly = Weekly("corso", 4, 17, 30);
    Event reminder = Reminder("acqua", 1);
    weekly.date = reminder.date = {31, 12, 3001};
    const std::string text = ExportOf({weekly, reminder});
    EXPECT_TRUE(Has(text, "DTSTART:20000106T173000")) << text;
    EXPECT_NE(text.find("DTSTART:20000101T"), std::string::npos) << text;
    EXPECT_EQ(ImportOf(text).added.size(), 2U);
}

TEST(CalendarExport, SaysWhatItCannotWrite) {
    Event kind = Weekly("tipo", 1, 1, 1);
    kind.kind = 3;
    const std::vector<Event> some = {Appointment("febbraio", {2026, 2, 31}, 10, 15),
                                     Appointment("ora", {2026, 2, 1}, 24, 0),
                                     Weekly("giorno", 7, 10, 15),
                                     Weekly("ora2", 1, 10, 60),
                                     Reminder("ripetizione", 3),
                                     Appointment("tardi", {3001, 1, 1}, 10, 15),
                                     kind};
    std::string text;
    const std::list<ListedEvent> list(some.begin(), some.end());
    const auto left_out = ExportEvents(list, 0, [&](const std::string& part) {
        text += part;
        return true;
    });
    ASSERT_EQ(left_out.size(), some.size());
    EXPECT_EQ(left_out[0].name, "febbraio");
    EXPECT_EQ(left_out[0].why, "la data non esiste");
    EXPECT_EQ(text.find("BEGIN:VEVENT"), std::string::npos);
}

TEST(CalendarExport, EndsWhenTheSinkIsFull) {
    int parts = 0;
    ExportEvents({ListedEvent(), ListedEvent()}, 0, [&](const std::string&) { return ++parts < 2; });
    EXPECT_EQ(parts, 2);
}

TEST(CalendarExport, TakesStoredBytesForLatin1) {
    const std::string text = ExportOf({Appointment("caff\xE8\x01", {2026, 11, 24}, 10, 15)});
    EXPECT_TRUE(Has(text, "SUMMARY:caff\xC3\xA8")) << text;
}

}  // namespace
