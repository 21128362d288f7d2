// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/listing.h"

#include <gtest/gtest.h>

#include "tests/agenda/helpers.h"

namespace {

/// Sunday, 22 November 2026, 10:30.
Moment Now() {
    std::tm now = {};
    now.tm_year = 126;
    now.tm_mon = 10;
    now.tm_mday = 22;
    now.tm_hour = 10;
    now.tm_min = 30;
    return now;
}

TEST(Listing, IsOneLineOfColumns) {
    EXPECT_EQ(LineOf(Appointment("dentista", {2026, 11, 24}, 9, 5), Now()),
              "24/11/2026  09:05  appuntamento  24/11/2026 08:05  dentista");
    EXPECT_EQ(LineOf(Weekly("", 4, 17, 30), Now()),
              "ogni giov   17:30  settimanale   26/11/2026 16:30  evento senza nome");
    EXPECT_EQ(LineOf(Reminder("acqua", 0), Now()),
              "ogni ora    -      promemoria    all'avvio         acqua");
    EXPECT_EQ(LineOf(Reminder("acqua", 2), Now()),
              "ogni 3 ore  -      promemoria    all'avvio         acqua");
    EXPECT_EQ(LineOf(Appointment("a\nb\xE8", {2026, 11, 22}, 10, 0), Now()),
              "22/11/2026  10:00  appuntamento  adesso            a?b?");
}

TEST(Listing, IsJson) {
    Event event = Appointment("a\"b\\\x01\xE8", {2026, 11, 24}, 9, 5);
    SetField(event.description, "due");
    EXPECT_EQ(
        JsonOf(event, Now()),
        R"({"tipo": "appuntamento", "nome": "a\"b\\\u0001\u00e8", "descrizione": "due", "data": "2026-11-24", )"
        R"("ora": "09:05", "prossimo_avviso": "2026-11-24T08:05"})");
    event.done = 1;
    EXPECT_TRUE(JsonOf(event, Now()).ends_with("\"prossimo_avviso\": null}"));
    EXPECT_EQ(
        JsonOf(Reminder("c", 1), Now()),
        R"({"tipo": "promemoria", "nome": "c", "descrizione": "", "ogni_ore": 2, "prossimo_avviso": "avvio"})");
    EXPECT_NE(JsonOf(Weekly("c", 1, 2, 3), Now()).find(R"("giorno": 1, "ora": "02:03")"), std::string::npos);
}

TEST(Listing, KnowsWhatTakesPlaceInARange) {
    const DayRange week_end = {Day{2026, 11, 28}, Day{2026, 11, 29}};  // Saturday and Sunday
    EXPECT_TRUE(TakesPlaceIn(Weekly("", 6, 0, 0), week_end) && TakesPlaceIn(Weekly("", 0, 0, 0), week_end));
    EXPECT_FALSE(TakesPlaceIn(Weekly("", 1, 0, 0), week_end) || TakesPlaceIn(Weekly("", 5, 0, 0), week_end));
    EXPECT_FALSE(TakesPlaceIn(Weekly("", 9, 0, 0), week_end));
    EXPECT_TRUE(TakesPlaceIn(Weekly("", 1, 0, 0), {Day{2026, 11, 28}, {}}));
    EXPECT_TRUE(TakesPlaceIn(Reminder("", 0), week_end));
    for (const int day : {27, 28, 29, 30})
        EXPECT_EQ(TakesPlaceIn(Appointment("", {2026, 11, day}, 0, 0), week_end), day == 28 || day == 29);
    EXPECT_TRUE(TakesPlaceIn(Appointment("", {2026, 11, 27}, 0, 0), {}));
}

}  // namespace
