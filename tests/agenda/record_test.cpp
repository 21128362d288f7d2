// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/record.h"

#include <gtest/gtest.h>

#include "tests/agenda/helpers.h"

namespace {

TEST(Record, RestoresWhatWasKept) {
    Event original = Appointment("  dentista ", {2026, 11, 24}, 10, 15);
    SetField(original.description, " x");
    original.wday = 5;
    original.repeat = 2;
    original.warned_60 = original.done = 1;
    Event remade = Appointment("dentista", {2026, 11, 24}, 10, 15);
    SetField(remade.description, "x");
    Restore(KeptOf(original), remade);
    EXPECT_EQ(BytesOf(remade), BytesOf(original));
}

TEST(Record, GivesAnUnnamedEventItsEmptyNameBack) {
    Event remade = Appointment(kUnnamed, {2026, 11, 24}, 10, 15);
    Restore(KeptOf(Appointment("", {2026, 11, 24}, 10, 15)), remade);
    EXPECT_EQ(NameOf(remade), "");
    Event renamed = Appointment("nuovo", {2026, 11, 24}, 10, 15);
    Restore(KeptOf(Appointment("", {2026, 11, 24}, 10, 15)), renamed);
    EXPECT_EQ(NameOf(renamed), "nuovo");
}

TEST(Record, CountsForNothingOnceTheEventIsMoved) {
    Event original = Appointment("a", {2026, 11, 24}, 10, 15);
    original.done = 1;
    for (const Event& moved :
         {Appointment("a", {2026, 11, 25}, 10, 15), Appointment("a", {2026, 11, 24}, 10, 16)}) {
        Event remade = moved;
        Restore(KeptOf(original), remade);
        EXPECT_EQ(BytesOf(remade), BytesOf(moved));
    }
    Event weekly = Weekly("a", 3, 10, 15);
    weekly.done = 1;
    Event other_day = Weekly("a", 4, 10, 15);
    Restore(KeptOf(weekly), other_day);
    EXPECT_EQ(other_day.done, 0);
}

TEST(Record, IsNotDeceived) {
    const Event event = Appointment("a", {2026, 11, 24}, 10, 15);
    const std::string kept = KeptOf(event);
    const std::string many = "24 11 2026 10 15 2 0 0 0 0 0 2147483647 -1 99999 -5";
    for (const std::string& bad : {std::string(), std::string("x"), kept + " 1",
                                   kept.substr(0, kept.size() - 2), " " + kept, kept + "x", many}) {
        Event remade = event;
        Restore(bad, remade);
        EXPECT_EQ(BytesOf(remade), BytesOf(event)) << bad;
    }
}

TEST(Record, TellsEventsApartByWhatTheyAre) {
    const Event event = Weekly("a", 3, 10, 15);
    Event announced = event;
    announced.done = announced.warned_30 = 1;
    announced.date.day += 1;
    EXPECT_EQ(IdentityOf(announced), IdentityOf(event));
    for (const Event& other :
         {Weekly("b", 3, 10, 15), Weekly("a", 4, 10, 15), Weekly("a", 3, 11, 15), Weekly("a", 3, 10, 16),
          Appointment("a", {2026, 11, 24}, 10, 15), Reminder("a", 1)})
        EXPECT_NE(IdentityOf(other), IdentityOf(event));
    Event split = event;
    SetField(split.name, "");
    SetField(split.description, "a");
    EXPECT_NE(IdentityOf(split), IdentityOf(event));
}

}  // namespace
