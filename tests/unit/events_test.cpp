#include "calendar/events.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

TEST(GetWdayStrTest, NamesTheSevenDaysFromSundayOn) {
    EXPECT_STREQ(GetWdayStr(0), "dom");
    EXPECT_STREQ(GetWdayStr(1), "lun");
    EXPECT_STREQ(GetWdayStr(2), "mar");
    EXPECT_STREQ(GetWdayStr(3), "merc");
    EXPECT_STREQ(GetWdayStr(4), "giov");
    EXPECT_STREQ(GetWdayStr(5), "ven");
    EXPECT_STREQ(GetWdayStr(6), "sab");
}

TEST(GetWdayStrTest, GivesAnEmptyTextForAnyOtherNumber) {
    for (const int wday : {-1, 7, 8, 100, -7, INT_MAX, INT_MIN}) {
        GetWdayStr(3);

        EXPECT_STREQ(GetWdayStr(wday), "") << wday;
    }
}

TEST(GetWdayStrTest, KeepsItsTextInOneBufferThatTheNextCallOverwrites) {
    const char* first = GetWdayStr(3);

    const char* second = GetWdayStr(0);

    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "dom");
}

TEST(GetWdayStrTest, EmptiesTheWholeBufferBeforeItWrites) {
    GetWdayStr(3);

    const char* text = GetWdayStr(0);

    EXPECT_EQ(std::string(text, 5), std::string("dom\0\0", 5));
    EXPECT_EQ(std::string(GetWdayStr(7), 5), std::string(5, '\0'));
}

}  // namespace
