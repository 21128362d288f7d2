// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/local_time.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/library_calls.h"
#include "tests/unit/temporary_folder.h"

namespace {

class LocalTimeTest : public fakes::Test {
  protected:
    /// Lets the program have broken a time down that no test uses.
    void SetUp() override {
        fakes::Test::SetUp();
        fakes::world().now = 1;
        LocalTime();
        fakes::Reset();
    }
};

/// The environment variable TZ, put back at the end.
class ZoneVariable {
  public:
    ZoneVariable() {
        if (const char* value = std::getenv("TZ")) before_ = value;
    }
    ZoneVariable(const ZoneVariable&) = delete;
    ZoneVariable& operator=(const ZoneVariable&) = delete;
    ~ZoneVariable() {
        if (before_)
            setenv("TZ", before_->c_str(), 1);
        else
            unsetenv("TZ");
    }

  private:
    std::optional<std::string> before_;
};

TEST_F(LocalTimeTest, IsTheCurrentLocalTimeBrokenDown) {
    fakes::SetLocalTime(2013, 2, 28, 23, 59, 58);

    const std::tm now = LocalTime();

    EXPECT_EQ(now.tm_year, 113);
    EXPECT_EQ(now.tm_mon, 1);
    EXPECT_EQ(now.tm_mday, 28);
    EXPECT_EQ(now.tm_wday, 4);
    EXPECT_EQ(now.tm_hour, 23);
    EXPECT_EQ(now.tm_min, 59);
    EXPECT_EQ(now.tm_sec, 58);
}

TEST_F(LocalTimeTest, IsBrokenDownOnceASecondHoweverOftenItIsAsked) {
    for (int i = 0; i < 1000; ++i) LocalTime();

    EXPECT_EQ(fakes::world().localtime_calls, 1);
}

TEST_F(LocalTimeTest, IsBrokenDownAnewInTheNextSecond) {
    fakes::SetLocalTime(2012, 5, 16, 10, 30, 0);
    LocalTime();
    fakes::world().now += 1;

    EXPECT_EQ(LocalTime().tm_sec, 1);
    EXPECT_EQ(fakes::world().localtime_calls, 2);
}

TEST_F(LocalTimeTest, NoticesMidnight) {
    fakes::SetLocalTime(2012, 12, 31, 23, 59, 59);
    LocalTime();
    fakes::world().now += 1;

    const std::tm now = LocalTime();

    EXPECT_EQ(now.tm_mday, 1);
    EXPECT_EQ(now.tm_mon, 0);
    EXPECT_EQ(now.tm_year, 113);
    EXPECT_EQ(now.tm_wday, 2);
    EXPECT_EQ(now.tm_hour, 0);
}

TEST_F(LocalTimeTest, NoticesThatTheClockWasPutBack) {
    fakes::SetLocalTime(2012, 5, 16, 10, 30, 0);
    LocalTime();
    fakes::SetLocalTime(2011, 1, 2, 3, 4, 5);

    EXPECT_EQ(LocalTime().tm_year, 111);
    EXPECT_EQ(LocalTime().tm_hour, 3);
}

TEST_F(LocalTimeTest, NoticesAChangedZoneWithinASecond) {
    fakes::SetLocalTime(2012, 5, 16, 10, 30, 0);
    std::tm elsewhere = LocalTime();
    elsewhere.tm_hour = 22;
    fakes::world().local = elsewhere;
    fakes::world().now += 1;

    EXPECT_EQ(LocalTime().tm_hour, 22);
}

TEST_F(LocalTimeTest, ATimeThatHasNoDateLeavesTheLastOneAndIsTriedAgain) {
    fakes::SetLocalTime(2012, 5, 16, 10, 30, 0);
    LocalTime();
    fakes::world().now = std::numeric_limits<std::time_t>::max();

    EXPECT_EQ(LocalTime().tm_year, 112);
    EXPECT_EQ(LocalTime().tm_hour, 10);
    EXPECT_EQ(fakes::world().localtime_calls, 3);
}

/// The system's zone file, which tests may change, without the variable that would come first.
class SystemZoneTest : public LocalTimeTest {
  protected:
    using Zones = std::vector<std::string>;

    /// Lets the program have seen the file as it is.
    void SetUp() override {
        LocalTimeTest::SetUp();
        unsetenv("TZ");
        WriteFile("zone", "Rome");
        ZonesSetByNextSecond();
    }

    /// Returns what TZ was whenever the C library had to read the zone anew.
    static Zones ZonesSetByNextSecond() {
        const ZonesSet zones;
        fakes::world().now += 1;
        LocalTime();
        return zones.Names();
    }

    const ZoneVariable put_back_;
    TemporaryFolder folder_;
    const StandIn zone_file_{"/etc/localtime", "zone"};
};

TEST_F(SystemZoneTest, IsReadOnceWhileItsFileStaysTheSame) {
    EXPECT_EQ(ZonesSetByNextSecond(), Zones{});
    EXPECT_EQ(ZonesSetByNextSecond(), Zones{});
}

TEST_F(SystemZoneTest, IsReadAnewWhenAnotherFileHasItsName) {
    WriteFile("other", "Cairo");
    std::filesystem::rename("other", "zone");

    EXPECT_EQ(ZonesSetByNextSecond(), (Zones{"UTC0", "unset"}));
    EXPECT_EQ(ZonesSetByNextSecond(), Zones{}) << "it is known now";
}

TEST_F(SystemZoneTest, IsReadAnewWhenItsFileIsWrittenTo) {
    const auto written = std::filesystem::last_write_time("zone");

    std::filesystem::last_write_time("zone", written + std::chrono::nanoseconds(1));
    EXPECT_EQ(ZonesSetByNextSecond(), (Zones{"UTC0", "unset"}));
    std::filesystem::last_write_time("zone", written + std::chrono::hours(1));
    EXPECT_EQ(ZonesSetByNextSecond(), (Zones{"UTC0", "unset"}));
}

TEST_F(SystemZoneTest, IsReadAnewWhenItsFileGoesAndComes) {
    std::filesystem::rename("zone", "elsewhere");
    EXPECT_EQ(ZonesSetByNextSecond(), (Zones{"UTC0", "unset"}));
    EXPECT_EQ(ZonesSetByNextSecond(), Zones{});

    std::filesystem::rename("elsewhere", "zone");
    EXPECT_EQ(ZonesSetByNextSecond(), (Zones{"UTC0", "unset"}));
}

TEST_F(SystemZoneTest, IsNotReadWhereTheVariableNamesAZone) {
    setenv("TZ", "Europe/Rome", 1);
    std::filesystem::remove("zone");

    EXPECT_EQ(ZonesSetByNextSecond(), Zones{});
    EXPECT_STREQ(std::getenv("TZ"), "Europe/Rome");
}

TEST_F(LocalTimeTest, LeavesTheZoneVariableAlone) {
    const ZoneVariable put_back;
    setenv("TZ", "Europe/Rome", 1);
    LocalTime();
    EXPECT_STREQ(std::getenv("TZ"), "Europe/Rome");

    unsetenv("TZ");
    fakes::world().now += 1;
    LocalTime();

    EXPECT_EQ(std::getenv("TZ"), nullptr);
}

}  // namespace
