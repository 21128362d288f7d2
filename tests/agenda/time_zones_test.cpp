// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/time_zones.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

/// Returns the UTC time at which a zone shows a time.
std::optional<WallTime> Utc(TimeZones& zones, const std::string& zone, const WallTime& time) {
    const auto seconds = zones.Seconds(zone, time);
    return seconds ? std::optional(TimeAfter1970(*seconds)) : std::nullopt;
}

Component Zone(const std::string& rule) {
    return Component(icalcomponent_new_from_string(
        ("BEGIN:VTIMEZONE\r\nTZID:Nostro\r\nBEGIN:STANDARD\r\nDTSTART:16011028T030000\r\n" + rule +
         "TZOFFSETFROM:+0500\r\nTZOFFSETTO:+0400\r\nEND:STANDARD\r\nBEGIN:DAYLIGHT\r\nDTSTART:"
         "16010325T020000\r\n"
         "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=3\r\nTZOFFSETFROM:+0400\r\nTZOFFSETTO:+0500\r\nEND:"
         "DAYLIGHT\r\n"
         "END:VTIMEZONE\r\n")
            .c_str()));
}

TEST(TimeZones, KnowsThoseOfTheSystemOfWindowsAndOfEvolution) {
    TimeZones zones;
    for (const char* rome :
         {"Europe/Rome", "W. Europe Standard Time", "/freeassociation.sourceforge.net/Europe/Rome"}) {
        EXPECT_EQ(Utc(zones, rome, {{2026, 1, 10}, 12, 0}), (WallTime{{2026, 1, 10}, 11, 0})) << rome;
        EXPECT_EQ(Utc(zones, rome, {{2026, 7, 10}, 12, 0}), (WallTime{{2026, 7, 10}, 10, 0})) << rome;
    }
    EXPECT_EQ(Utc(zones, "Marte/Olympus", {{2026, 7, 10}, 12, 0}), std::nullopt);
}

TEST(TimeZones, TakesTheFirstOfTwoAndTheClockThatWasNotPutForward) {
    TimeZones zones;
    EXPECT_EQ(Utc(zones, "Europe/Rome", {{2026, 10, 25}, 2, 30}), (WallTime{{2026, 10, 25}, 0, 30}));
    EXPECT_EQ(Utc(zones, "Europe/Rome", {{2026, 10, 25}, 3, 0}), (WallTime{{2026, 10, 25}, 2, 0}));
    EXPECT_EQ(Utc(zones, "Europe/Rome", {{2026, 3, 29}, 2, 30}), (WallTime{{2026, 3, 29}, 1, 30}));
    EXPECT_TRUE(zones.LeavesOut("Europe/Rome", {{2026, 3, 29}, 2, 30}));
    EXPECT_FALSE(zones.LeavesOut("Europe/Rome", {{2026, 3, 29}, 3, 0}));
    EXPECT_FALSE(zones.LeavesOut("Europe/Rome", {{2026, 10, 25}, 2, 30}));
}

TEST(TimeZones, BelievesAFileThatDescribesAZone) {
    TimeZones zones;
    zones.Add(Zone("RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\r\n"));
    EXPECT_EQ(Utc(zones, "Nostro", {{2026, 1, 10}, 12, 0}), (WallTime{{2026, 1, 10}, 8, 0}));
    EXPECT_EQ(Utc(zones, "Nostro", {{2026, 7, 10}, 12, 0}), (WallTime{{2026, 7, 10}, 7, 0}));
}

TEST(TimeZones, BelievesTheSystemMoreThanAFile) {
    TimeZones zones;
    zones.Add(Component(icalcomponent_new_from_string(
        "BEGIN:VTIMEZONE\r\nTZID:Europe/"
        "Rome\r\nBEGIN:DAYLIGHT\r\nDTSTART:20270328T030000\r\nTZOFFSETFROM:+0100\r\n"
        "TZOFFSETTO:+0200\r\nEND:DAYLIGHT\r\nEND:VTIMEZONE\r\n")));
    EXPECT_EQ(Utc(zones, "Europe/Rome", {{2028, 1, 10}, 12, 0}), (WallTime{{2028, 1, 10}, 11, 0}));
}

TEST(TimeZones, RefusesRulesThatWouldFillTheMemory) {
    for (const char* rule :
         {"RRULE:FREQ=SECONDLY\r\n", "RRULE:FREQ=YEARLY;BYSECOND=1,2\r\n", "RRULE:FREQ=DAILY\r\n"}) {
        TimeZones zones;
        zones.Add(Zone(rule));
        EXPECT_EQ(Utc(zones, "Nostro", {{2026, 1, 10}, 12, 0}), std::nullopt) << rule;
    }
}

}  // namespace
