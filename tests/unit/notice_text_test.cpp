// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "calendar/notice_text.h"

#include <climits>
#include <string>

#include "engine/plain_text.h"
#include "tests/unit/calendar_fixture.h"

namespace {

/// It is Wednesday, 16 May 2012, 10:30.
class NoticeTextTest : public CalendarTest {
  protected:
    static std::string TimeOf(const Event& event) { return NoticeTime(event, frame_time); }
    static std::string TextOf(const Event& event) { return NoticeText(event, frame_time); }

    static Event Described(const std::string& description) {
        Event event = MakeWeekly("lezione", 4, 17, 30);
        SetText(event.description, description);
        return event;
    }
};

// ---- The title ----

TEST_F(NoticeTextTest, TheTitleIsTheName) {
    EXPECT_EQ(NoticeTitle(MakeReminder("acqua & sale", 0, 0)), "acqua & sale");
    EXPECT_EQ(NoticeTitle(MakeReminder("caff\u00e8", 0, 0)), "caff\u00e8");
    EXPECT_EQ(NoticeTitle(MakeReminder("un nome di 20 lettere", 0, 0)), "un nome di 20 letter");
}

TEST_F(NoticeTextTest, ANameThatIsNotThereOrCannotBeReadIsSaid) {
    for (const std::string name : {"", "  ", "\xE9", "\x01\n"}) {
        EXPECT_EQ(NoticeTitle(MakeReminder(name, 0, 0)), "evento senza nome");
    }
}

TEST_F(NoticeTextTest, ACharacterThatTheNameHasNoRoomForIsLeftOut) {
    EXPECT_EQ(NoticeTitle(MakeReminder("diciannove lettere \u00e9", 0, 0)), "diciannove lettere ");
}

// ---- The time ----

TEST_F(NoticeTextTest, AnAppointmentOfTodayTellsTheMinutesUpToAnHour) {
    struct Case {
        int hour, minute;
        std::string text;
    };
    const Case cases[] = {
        {11, 12, "Oggi alle 11:12, tra 42 minuti"},
        {11, 30, "Oggi alle 11:30, tra 60 minuti"},
        {11, 31, "Oggi alle 11:31"},
        {10, 32, "Oggi alle 10:32, tra 2 minuti"},
        {10, 31, "Oggi alle 10:31, tra un minuto"},
        {10, 30, "Oggi alle 10:30, adesso"},
        {10, 29, "Oggi alle 10:29, un minuto fa"},
        {10, 28, "Oggi alle 10:28, 2 minuti fa"},
        {9, 30, "Oggi alle 9:30, 60 minuti fa"},
        {9, 29, "Oggi alle 9:29"},
        {10, 5, "Oggi alle 10:05, 25 minuti fa"},
        {0, 0, "Oggi alle 0:00"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(TimeOf(MakeAppointment("", 16, 5, 2012, row.hour, row.minute)), row.text);
    }
}

TEST_F(NoticeTextTest, OneOClockIsInTheSingular) {
    SetNow(2012, 5, 16, 0, 35);

    EXPECT_EQ(TimeOf(MakeAppointment("", 16, 5, 2012, 1, 15)), "Oggi all'1:15, tra 40 minuti");
    EXPECT_EQ(TimeOf(MakeAppointment("", 16, 5, 2012, 11, 15)), "Oggi alle 11:15");
    EXPECT_EQ(TimeOf(MakeWeekly("", 3, 1, 0)), "ogni merc all'1:00");
}

TEST_F(NoticeTextTest, AnAppointmentOfAnotherDayTellsItsDate) {
    EXPECT_EQ(TimeOf(MakeAppointment("", 16, 6, 2012, 10, 30)), "16/6/2012 alle 10:30");
    EXPECT_EQ(TimeOf(MakeAppointment("", 16, 5, 2011, 10, 30)), "16/5/2011 alle 10:30");
    EXPECT_EQ(TimeOf(MakeAppointment("", 15, 5, 2012, 10, 30)), "15/5/2012 alle 10:30");

    SetNow(2012, 5, 16, 23, 40);
    EXPECT_EQ(TimeOf(MakeAppointment("", 17, 5, 2012, 0, 5)), "17/5/2012 alle 0:05, tra 25 minuti");
}

TEST_F(NoticeTextTest, AWeeklyEventTellsItsWeekday) {
    EXPECT_EQ(TimeOf(MakeWeekly("", 4, 17, 30)), "ogni giov alle 17:30");
    EXPECT_EQ(TimeOf(MakeWeekly("", 0, 9, 5)), "ogni dom alle 9:05");
    EXPECT_EQ(TimeOf(MakeWeekly("", 7, 9, 5)), "ogni settimana alle 9:05");
}

TEST_F(NoticeTextTest, AReminderTellsItsPeriod) {
    EXPECT_EQ(TimeOf(MakeReminder("", 0, 0)), "promemoria: ogni ora");
    EXPECT_EQ(TimeOf(MakeReminder("", 1, 0)), "promemoria: ogni 2 ore");
    EXPECT_EQ(TimeOf(MakeReminder("", 2, 0)), "promemoria: ogni 3 ore");
    EXPECT_EQ(TimeOf(MakeReminder("", 3, 0)), "");
}

TEST_F(NoticeTextTest, AKindThatThereIsNoneOfTellsNothing) {
    Event event = MakeReminder("", 0, 0);
    for (const int kind : {-1, 3, INT_MIN, INT_MAX}) {
        event.kind = kind;
        EXPECT_EQ(TimeOf(event), "");
    }
}

TEST_F(NoticeTextTest, NumbersThatAreNoTimeAreToldAsTheyAre) {
    for (const Event& event : EventsOfExtremes()) {
        const std::string text = TextOf(event);

        EXPECT_EQ(OneLineOfText(text), text);
    }
    EXPECT_EQ(TimeOf(MakeWeekly("", 4, INT_MIN, INT_MIN)), "ogni giov alle -2147483648:-2147483648");
}

// ---- The text ----

TEST_F(NoticeTextTest, TheDescriptionsFirstLineStandsBelowTheTime) {
    EXPECT_EQ(TextOf(Described("")), "ogni giov alle 17:30");
    EXPECT_EQ(TextOf(Described("aula 3")), "ogni giov alle 17:30\naula 3");
    EXPECT_EQ(TextOf(Described("\naula 3\nprimo piano")), "ogni giov alle 17:30\naula 3");
    EXPECT_EQ(TextOf(Described("caff\u00e8 <b>& altro\xE9\x1B")),
              "ogni giov alle 17:30\ncaff\u00e8 <b>& altro");
    EXPECT_EQ(TextOf(Described(std::string(512, 'a'))), "ogni giov alle 17:30\n" + std::string(512, 'a'));
}

}  // namespace
