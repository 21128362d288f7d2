// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: texts, times, what fits and what does not, twice the same, the round trip, files as other programs
// write them.
#include "agenda/calendar_import.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/agenda/helpers.h"

namespace {

/// Returns the only event that a component of these lines becomes.
Event OnlyEvent(const std::string& lines, const ImportSettings& settings = {kSomeNow, {}}) {
    const Import import = ImportOf(Calendar(Vevent(lines)), {}, settings);
    EXPECT_EQ(import.added.size(), 1U) << (import.left_out.empty() ? "" : import.left_out[0].why);
    return import.added.empty() ? ListedEvent() : import.added[0];
}

/// Returns why a component of these lines is left out; empty where it is not.
std::string WhyNot(const std::string& lines, const ImportSettings& settings = {kSomeNow, {}}) {
    const Import import = ImportOf(Calendar(Vevent(lines)), {}, settings);
    return import.left_out.empty() ? "" : import.left_out[0].why;
}

std::string TimeOf(const Event& event) {
    return std::to_string(event.date.day) + '/' + std::to_string(event.date.month) + '/' +
           std::to_string(event.date.year) + ' ' + std::to_string(event.time.hour) + ':' +
           std::to_string(event.time.minute);
}

// ---- Texts ----

TEST(CalendarImport, TypesTheTextsAsTheOwlDoes) {
    const Event event =
        OnlyEvent("DTSTART:20261124T101500\nSUMMARY:Perché Müller\nDESCRIPTION:caffè\\nda 3 €");
    EXPECT_EQ(NameOf(event), "Perche' Muller");
    EXPECT_EQ(DescriptionOf(event), "caffe' da 3 EUR");
}

TEST(CalendarImport, KeepsTheFullNameOfACutOneInTheDescription) {
    const Event event =
        OnlyEvent("DTSTART:20261124T101500\nSUMMARY:Riunione di condominio\nDESCRIPTION:ore piccole");
    EXPECT_EQ(NameOf(event), "Riunione di condo");
    EXPECT_EQ(DescriptionOf(event), "Riunione di condominio - ore piccole");
    EXPECT_EQ(DescriptionOf(OnlyEvent("DTSTART:20261124T101500\nSUMMARY:Riunione di condominio")),
              "Riunione di condominio");
    EXPECT_EQ(DescriptionOf(OnlyEvent("DTSTART:20261124T101500\nSUMMARY:diciassette byte!\nDESCRIPTION:x")),
              "x");
    EXPECT_EQ(NameOf(OnlyEvent("DTSTART:20261124T101500\nSUMMARY:1234567890123456è")), "1234567890123456");
}

TEST(CalendarImport, CutsDescriptionsAt345Bytes) {
    const std::string thousand(1000, 'd');
    EXPECT_EQ(DescriptionOf(OnlyEvent("DTSTART:20261124T101500\nSUMMARY:a\nDESCRIPTION:" + thousand)),
              std::string(345, 'd'));
    const Event event = OnlyEvent("DTSTART:20261124T101500\nSUMMARY:" + thousand + "\nDESCRIPTION:x");
    EXPECT_EQ(DescriptionOf(event), std::string(345, 'd'));
    EXPECT_EQ(NameOf(event), std::string(17, 'd'));
}

// ---- Times ----

TEST(CalendarImport, TurnsTimesIntoLocalOnes) {
    const InZone rome("Europe/Rome");
    const auto time = [](const std::string& start) { return TimeOf(OnlyEvent("DTSTART" + start)); };
    EXPECT_EQ(time(":20261224T101500"), "24/12/2026 10:15");
    EXPECT_EQ(time(":20261224T101500Z"), "24/12/2026 11:15");
    EXPECT_EQ(time(":20270724T101559Z"), "24/7/2027 12:15");
    EXPECT_EQ(time(";TZID=Europe/Rome:20270724T101500"), "24/7/2027 10:15");
    EXPECT_EQ(time(";TZID=America/New_York:20261224T200000"), "25/12/2026 2:0");
    EXPECT_EQ(time(";TZID=Pacific Standard Time:20261224T200000"), "25/12/2026 5:0");
    EXPECT_EQ(time(":20261231T233000Z"), "1/1/2027 0:30");
    // Over both nights of daylight saving.
    EXPECT_EQ(time(":20270328T005900Z"), "28/3/2027 1:59");
    EXPECT_EQ(time(":20270328T010000Z"), "28/3/2027 3:0");
    EXPECT_EQ(time(":20271031T003000Z"), "31/10/2027 2:30");
    EXPECT_EQ(time(":20271031T013000Z"), "31/10/2027 2:30");
    EXPECT_EQ(time(":20271031T020000Z"), "31/10/2027 3:0");
}

TEST(CalendarImport, SetsTheFieldsAsTheEditorWould) {
    const Event event = OnlyEvent("DTSTART:20261124T101500\nSUMMARY:a");
    EXPECT_EQ(event.kind, kAppointment);
    EXPECT_EQ(event.wday, 2);
    EXPECT_TRUE(event.done == 0 && event.warned_60 == 0 && event.warned_30 == 0 && event.elapsed == 0);
    const Event weekly = OnlyEvent("DTSTART:20261124T101500\nRRULE:FREQ=WEEKLY");
    EXPECT_TRUE(weekly.kind == kWeekly && weekly.wday == 2 && weekly.time.hour == 10 &&
                weekly.time.minute == 15);
}

TEST(CalendarImport, TakesWhatIsOverForAcknowledged) {
    EXPECT_EQ(OnlyEvent("DTSTART:20261122T102900").done, 1);
    EXPECT_EQ(OnlyEvent("DTSTART:20261122T103000").done, 0);
}

TEST(CalendarImport, TakesAWholeDayAtTheHourThatIsSaid) {
    const ImportSettings at_eight = {kSomeNow, std::pair{8, 30}};
    EXPECT_EQ(TimeOf(OnlyEvent("DTSTART;VALUE=DATE:20261224", at_eight)), "24/12/2026 8:30");
    EXPECT_EQ(OnlyEvent("DTSTART;VALUE=DATE:20261224\nRRULE:FREQ=WEEKLY", at_eight).time.minute, 30);
    EXPECT_EQ(WhyNot("DTSTART;VALUE=DATE:20261224"),
              "dura tutto il giorno (con --giorno-intero ORA entra a quell'ora)");
}

// ---- What fits and what does not ----

TEST(CalendarImport, MakesAWeeklyEventOfEachWeekday) {
    const Import import =
        ImportOf(Calendar(Vevent("DTSTART:20261124T101500\nRRULE:FREQ=WEEKLY;BYDAY=MO,TU,SA\nSUMMARY:a")));
    ASSERT_EQ(import.added.size(), 3U);
    EXPECT_EQ(import.added[0].wday + import.added[1].wday * 10 + import.added[2].wday * 100, 2 + 60 + 100);
}

TEST(CalendarImport, TakesAWeeklyEventOnlyIfItsHourStays) {
    const InZone rome("Europe/Rome");
    const std::string weekly = "\nRRULE:FREQ=WEEKLY";
    EXPECT_EQ(OnlyEvent("DTSTART;TZID=Europe/Rome:20260601T101500" + weekly).time.hour, 10);
    EXPECT_EQ(OnlyEvent("DTSTART;TZID=Europe/Paris:20260601T101500" + weekly).time.hour, 10);
    const Event london = OnlyEvent("DTSTART;TZID=Europe/London:20260601T233000" + weekly);
    EXPECT_TRUE(london.wday == 2 && london.time.hour == 0 && london.time.minute == 30);
    EXPECT_EQ(OnlyEvent("DTSTART;TZID=Europe/Rome:20260607T023000" + weekly).time.hour, 2)
        << "through the night without 2:30";
    const std::string changes = "non cade sempre alla stessa ora di qui, per l'ora legale";
    EXPECT_EQ(WhyNot("DTSTART:20260601T101500Z" + weekly), changes);
    EXPECT_EQ(WhyNot("DTSTART;TZID=America/New_York:20260601T101500" + weekly), changes);
}

TEST(CalendarImport, LeavesOutWithItsReason) {
    const std::string start = "DTSTART:20261124T101500\n";
    EXPECT_EQ(WhyNot(start + "RRULE:FREQ=DAILY"), "la ripetizione non e' ogni settimana");
    EXPECT_EQ(WhyNot(start + "RRULE:FREQ=HOURLY;INTERVAL=2"), "la ripetizione non e' ogni settimana");
    EXPECT_EQ(WhyNot(start + "RRULE:FREQ=WEEKLY;COUNT=3"), "la ripetizione ha una fine");
    EXPECT_EQ(WhyNot(start + "RRULE:FREQ=WEEKLY;BYDAY=MO"), "la prima volta cade fuori dalla ripetizione");
    EXPECT_EQ(WhyNot(start + "RDATE:20261125T101500"), "la ripetizione non ha una regola sola");
    EXPECT_EQ(WhyNot(start + "STATUS:CANCELLED"), "e' annullato");
    EXPECT_EQ(WhyNot("SUMMARY:a"), "non dice quando comincia");
    EXPECT_EQ(WhyNot(start + "RECURRENCE-ID:20261124T101500"),
              "cambia una sola volta di un evento che si ripete");
    EXPECT_EQ(WhyNot("DTSTART;TZID=Luna:20261124T101500"), "il fuso orario \"Luna\" non e' conosciuto");
    EXPECT_EQ(WhyNot("DTSTART:18991231T101500"),
              "la data e' fuori da quelle dell'agenda, che vanno dal 1900 al 9999");
    EXPECT_EQ(WhyNot("DTSTART:19000101T101500"), "");
    const Import other =
        ImportOf(Calendar("BEGIN:VTODO\r\nSUMMARY:spesa\r\nEND:VTODO\r\nBEGIN:VJOURNAL\r\nEND:VJOURNAL\r\n"));
    ASSERT_EQ(other.left_out.size(), 2U);
    EXPECT_EQ(other.left_out[0].why, "e' un'attivita' e non un evento");
    EXPECT_EQ(other.left_out[0].line, 4);
    EXPECT_EQ(other.left_out[0].name, "spesa");
    EXPECT_EQ(other.left_out[1].why, "e' una nota di diario e non un evento");
}

TEST(CalendarImport, ForgivesExceptionsThatAreOver) {
    const std::string weekly = "UID:1\nDTSTART:20260901T101500\nRRULE:FREQ=WEEKLY";
    EXPECT_EQ(WhyNot(weekly + "\nEXDATE:20261117T101500"), "");
    EXPECT_EQ(WhyNot(weekly + "\nEXDATE:20261124T101500"), "la ripetizione ha eccezioni");
    // The day before today is not over yet in every zone.
    EXPECT_EQ(WhyNot(weekly + "\nEXDATE:20261121T101500"), "la ripetizione ha eccezioni");
    EXPECT_EQ(WhyNot(weekly + "\nEXDATE:20261120T101500"), "");
    const auto replaced = [&](const std::string& day) {
        return ImportOf(
                   Calendar(Vevent("UID:1\nDTSTART:20261124T111500\nRECURRENCE-ID:" + day) + Vevent(weekly)))
            .added.size();
    };
    EXPECT_EQ(replaced("20261117T101500"), 1U);
    EXPECT_EQ(replaced("20261124T101500"), 0U);
}

// ---- Twice the same ----

TEST(CalendarImport, AddsNothingTwice) {
    const std::string text =
        Calendar(Vevent("UID:1\nDTSTART:20261124T101500\nSUMMARY:a") +
                 Vevent("UID:2\nDTSTART:20261124T101500\nRRULE:FREQ=WEEKLY;BYDAY=TU,WE\nSUMMARY:b") +
                 Vevent("DTSTART:20261124T101500\nSUMMARY:senza"));
    const Import first = ImportOf(text);
    ASSERT_EQ(first.added.size(), 4U);
    const Import second = ImportOf(text, {first.added.begin(), first.added.end()});
    EXPECT_EQ(second.added.size(), 0U);
    EXPECT_EQ(second.known, 4);
}

TEST(CalendarImport, AddsNothingTwiceFromTwoFiles) {
    const std::string text = Calendar(Vevent("UID:1\nDTSTART:20261124T101500\nSUMMARY:a"));
    CalendarFile one;
    CalendarFile two;
    ReadCalendarFile(text, one);
    ReadCalendarFile(text, two);
    Importer importer({}, {kSomeNow, {}});
    EXPECT_EQ(importer.Take(one).added.size(), 1U);
    EXPECT_EQ(importer.Take(two).added.size(), 0U);
}

TEST(CalendarImport, TellsAlikeEventsOfOneFileApartByTheirUid) {
    const std::string same = Vevent("UID:1\nDTSTART:20261124T101500\nSUMMARY:a");
    EXPECT_EQ(ImportOf(Calendar(same + same)).added.size(), 1U);
    EXPECT_EQ(ImportOf(Calendar(same + Vevent("UID:2\nDTSTART:20261124T101500\nSUMMARY:a"))).added.size(),
              2U);
}

TEST(CalendarImport, KnowsAnEventThatHasBeenAnnounced) {
    Event announced = Appointment("a", {2026, 11, 24}, 10, 15);
    announced.done = announced.warned_60 = 1;
    EXPECT_EQ(ImportOf(Calendar(Vevent("DTSTART:20261124T101500\nSUMMARY:a")), {announced}).added.size(), 0U);
}

// ---- The round trip ----

std::string RandomText(std::mt19937& random, std::size_t longest) {
    std::string text(std::uniform_int_distribution<std::size_t>(0, longest)(random), ' ');
    for (char& c : text) c = static_cast<char>(std::uniform_int_distribution<int>(' ', '~')(random));
    if (text.size() > 2 && text.size() % 5 == 0) text.front() = text.back() = ' ';
    return text;
}

Event RandomEvent(std::mt19937& random) {
    const auto choose = [&](int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(random);
    };
    ListedEvent event;
    SetField(event.name, RandomText(random, choose(0, 3) == 0 ? 2 : kTypedNameBytes));
    SetField(event.description, RandomText(random, choose(0, 1) == 0 ? 1 : kTypedDescriptionBytes));
    event.kind = choose(0, 2);
    const Day day = DayAfter1970(choose(-25'567, 376'199));  // from 1900 to 3000
    event.date = {day.day, day.month, static_cast<std::int32_t>(day.year)};
    event.time = {choose(0, 23), choose(0, 59)};
    event.wday = choose(0, 6);
    event.repeat = choose(0, 2);
    event.warned_60 = static_cast<std::uint8_t>(choose(0, 1));
    event.warned_30 = static_cast<std::uint8_t>(choose(0, 1));
    event.done = static_cast<std::uint8_t>(choose(0, 1));
    StartReminder(event);  // as loading leaves it
    return event;
}

TEST(CalendarImport, GivesTheBytesOfAnExportBack) {
    const InZone rome("Europe/Rome");
    std::mt19937 random(18);
    std::vector<Event> original;
    for (int i = 0; i < 10'000; ++i) original.push_back(i % 50 == 7 ? original.front() : RandomEvent(random));
    const std::string text = ExportOf(original);
    const Import import = ImportOf(text);
    ASSERT_EQ(import.added.size(), original.size());
    EXPECT_TRUE(import.left_out.empty());
    for (std::size_t i = 0; i < original.size(); ++i)
        ASSERT_EQ(BytesOf(import.added[i]), BytesOf(original[i])) << i;
    EXPECT_EQ(ExportOf({import.added.begin(), import.added.end()}), text);
    EXPECT_EQ(ImportOf(text, original).added.size(), 0U);
}

TEST(CalendarImport, TakesARemindersTaskOnlyFromAnExport) {
    std::string text = ExportOf({Reminder("acqua", 2)});
    EXPECT_EQ(ImportOf(text).added.size(), 1U);
    const std::size_t record = text.find(kRecordProperty);
    text.erase(record, text.find('\n', record) + 1 - record);
    EXPECT_EQ(ImportOf(text).left_out.size(), 1U);
}

TEST(CalendarImport, TakesAnExportThatAnotherCalendarHasChanged) {
    Event event = Appointment("a", {2026, 12, 24}, 10, 15);
    event.done = 1;
    std::string text = ExportOf({event});
    text.replace(text.find("T101500"), 7, "T111500");
    const Import import = ImportOf(text, {event});
    ASSERT_EQ(import.added.size(), 1U);
    EXPECT_TRUE(import.added[0].time.hour == 11 && import.added[0].done == 0);
}

// ---- Files as other programs write them ----

TEST(CalendarImport, TakesFilesAsGoogleWritesThem) {
    const InZone rome("Europe/Rome");
    const Import import = ImportOf(
        "BEGIN:VCALENDAR\r\nPRODID:-//Google Inc//Google Calendar "
        "70.9054//EN\r\nVERSION:2.0\r\nCALSCALE:GREGORIAN\r\n"
        "METHOD:PUBLISH\r\nX-WR-CALNAME:mario@example.org\r\nX-WR-TIMEZONE:Europe/Rome\r\nBEGIN:VTIMEZONE\r\n"
        "TZID:Europe/Rome\r\nX-LIC-LOCATION:Europe/"
        "Rome\r\nBEGIN:DAYLIGHT\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\n"
        "TZNAME:CEST\r\nDTSTART:19700329T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\n"
        "BEGIN:STANDARD\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nTZNAME:CET\r\nDTSTART:"
        "19701025T030000\r\n"
        "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\n"
        "DTSTART:20261130T090000Z\r\nDTEND:20261130T100000Z\r\nDTSTAMP:20261122T090000Z\r\nUID:a1@google."
        "com\r\n"
        "CREATED:20261101T090000Z\r\nDESCRIPTION:\r\nLAST-MODIFIED:20261101T090000Z\r\nLOCATION:\r\nSEQUENCE:"
        "0\r\n"
        "STATUS:CONFIRMED\r\nSUMMARY:Dentista\r\nTRANSP:OPAQUE\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\n"
        "DTSTART;TZID=Europe/Rome:20260910T183000\r\nDTEND;TZID=Europe/Rome:20260910T193000\r\n"
        "RRULE:FREQ=WEEKLY;WKST=MO;BYDAY=TH\r\nEXDATE;TZID=Europe/"
        "Rome:20261029T183000\r\nUID:a2@google.com\r\n"
        "SUMMARY:Pallavolo\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20261225\r\nDTEND;VALUE=DATE:"
        "20261226\r\n"
        "UID:a3@google.com\r\nSUMMARY:Natale\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
    ASSERT_EQ(import.added.size(), 2U);
    EXPECT_EQ(TimeOf(import.added[0]), "30/11/2026 10:0");
    EXPECT_TRUE(import.added[1].kind == kWeekly && import.added[1].wday == 4 &&
                import.added[1].time.hour == 18);
    ASSERT_EQ(import.left_out.size(), 1U);
    EXPECT_EQ(import.left_out[0].name, "Natale");
}

TEST(CalendarImport, TakesFilesAsOutlookWritesThem) {
    const InZone rome("Europe/Rome");
    const Import import = ImportOf(
        "\xEF\xBB\xBF"
        "BEGIN:VCALENDAR\r\nPRODID:-//Microsoft Corporation//Outlook 16.0 "
        "MIMEDIR//EN\r\nVERSION:2.0\r\nMETHOD:PUBLISH\r\n"
        "X-MS-OLK-FORCEINSPECTOROPEN:TRUE\r\nBEGIN:VTIMEZONE\r\nTZID:W. Europe Standard "
        "Time\r\nBEGIN:STANDARD\r\n"
        "DTSTART:16011028T030000\r\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\r\nTZOFFSETFROM:+"
        "0200\r\nTZOFFSETTO:+0100\r\n"
        "END:STANDARD\r\nBEGIN:DAYLIGHT\r\nDTSTART:16010325T020000\r\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH="
        "3\r\n"
        "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\nEND:DAYLIGHT\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\nCLASS:"
        "PUBLIC\r\n"
        "CREATED:20261120T090000Z\r\nDESCRIPTION:Ordine del giorno:\\n\\n1. bilancio\\n2. va\r\n\trie\r\n"
        "DTEND;TZID=\"W. Europe Standard Time\":20270705T110000\r\nDTSTAMP:20261120T090000Z\r\n"
        "DTSTART;TZID=\"W. Europe Standard Time\":20270705T100000\r\nPRIORITY:5\r\nSEQUENCE:0\r\n"
        "SUMMARY;LANGUAGE=it:Assemblea\r\nTRANSP:OPAQUE\r\nUID:040000008200E00074C5B7101A82E008\r\n"
        "X-ALT-DESC;FMTTYPE=text/html:<html><body>x: y</body></html>\r\nX-MICROSOFT-CDO-BUSYSTATUS:BUSY\r\n"
        "BEGIN:VALARM\r\nTRIGGER:-PT15M\r\nACTION:DISPLAY\r\nDESCRIPTION:Reminder\r\nEND:VALARM\r\nEND:"
        "VEVENT\r\n"
        "END:VCALENDAR\r\n");
    ASSERT_EQ(import.added.size(), 1U);
    EXPECT_EQ(TimeOf(import.added[0]), "5/7/2027 10:0");
    EXPECT_EQ(NameOf(import.added[0]), "Assemblea");
    EXPECT_EQ(DescriptionOf(import.added[0]), "Ordine del giorno: 1. bilancio 2. varie");
}

TEST(CalendarImport, TakesFilesAsEvolutionWritesThem) {
    const InZone rome("Europe/Rome");
    const Import import = ImportOf(
        "BEGIN:VCALENDAR\nCALSCALE:GREGORIAN\nPRODID:-//Ximian//NONSGML Evolution Calendar//EN\nVERSION:2.0\n"
        "X-EVOLUTION-DATA-REVISION:2026-11-20T09:00:00.000000Z(0)\nBEGIN:VTIMEZONE\n"
        "TZID:/freeassociation.sourceforge.net/Europe/Rome\nX-LIC-LOCATION:Europe/"
        "Rome\nBEGIN:DAYLIGHT\nTZNAME:CEST\n"
        "DTSTART:19810329T020000\nTZOFFSETFROM:+0100\nTZOFFSETTO:+0200\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH="
        "3\n"
        "END:DAYLIGHT\nBEGIN:STANDARD\nTZNAME:CET\nDTSTART:19961027T030000\nTZOFFSETFROM:+0200\nTZOFFSETTO:+"
        "0100\n"
        "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\nEND:STANDARD\nEND:VTIMEZONE\nBEGIN:VEVENT\nUID:e1\n"
        "DTSTAMP:20261120T090000Z\nDTSTART;TZID=/freeassociation.sourceforge.net/Europe/Rome:\n "
        "20261215T083000\n"
        "DURATION:PT45M\nSEQUENCE:2\nSUMMARY:Colloquio\nCLASS:PUBLIC\nEND:VEVENT\nBEGIN:VEVENT\nUID:e2\n"
        "DTSTART;TZID=/freeassociation.sourceforge.net/Europe/"
        "Rome:20260907T203000\nDURATION:PT2H\nRRULE:FREQ=WEEKLY\n"
        "SUMMARY:Coro\nEND:VEVENT\nBEGIN:VEVENT\nUID:e2\n"
        "RECURRENCE-ID;TZID=/freeassociation.sourceforge.net/Europe/Rome:20261207T203000\n"
        "DTSTART;TZID=/freeassociation.sourceforge.net/Europe/"
        "Rome:20261208T203000\nSUMMARY:Coro\nEND:VEVENT\nEND:VCALENDAR\n");
    ASSERT_EQ(import.added.size(), 1U);
    EXPECT_EQ(TimeOf(import.added[0]), "15/12/2026 8:30");
    ASSERT_EQ(import.left_out.size(), 2U);
    EXPECT_EQ(import.left_out[0].why, "la ripetizione ha eccezioni");
    EXPECT_EQ(import.left_out[1].why, "cambia una sola volta di un evento che si ripete");
}

}  // namespace
