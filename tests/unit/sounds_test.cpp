// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Effects, notices and silence. What is baked into the sound files is tested in tests/tools.
#include "app/sounds.h"

#include <cstdint>
#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"

namespace {

using Sounds = std::vector<std::string>;
using SoundsTest = AppTest;

/// With the device open.
class SoundsRestTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        OpenSoundDevice();
        Pass(0);
    }
    void TearDown() override {
        CloseSoundDevice();
        AppTest::TearDown();
    }

    /// Lets some seconds pass and a frame end.
    void Pass(double seconds) {
        now_ += static_cast<std::uint64_t>(seconds * 1e9);
        RestSoundWhenQuiet(now_);
    }

    static void EndSound() { fakes::al().sources.begin()->second.state = AL_STOPPED; }

  private:
    std::uint64_t now_ = 5'000'000'000;
};

TEST_F(SoundsTest, AnEffectSoundsOnceInTheFirstSlot) {
    PlayEffect("right.wav");

    EXPECT_EQ(SoundsStarted(), (Sounds{"right.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
    EXPECT_NE(AudioEngine.statics[0].source, 0U);
}

TEST_F(SoundsTest, ANoticeSoundsOnceInTheFirstSlot) {
    PlayNotice("notify.wav");

    EXPECT_EQ(SoundsStarted(), (Sounds{"notify.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
    EXPECT_NE(AudioEngine.statics[0].source, 0U);
}

TEST_F(SoundsTest, WithSoundSwitchedOffAnEffectDoesNotSoundAndCutsNothingOff) {
    PlayNotice("notify.wav");
    fakes::ClearLog();
    enable_sfx = false;

    PlayEffect("laugh.wav");

    EXPECT_EQ(SoundsStarted(), Sounds());
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(SoundsTest, WithSoundSwitchedOffANoticeSoundsAllTheSame) {
    enable_sfx = false;

    PlayNotice("notify.wav");

    EXPECT_EQ(SoundsStarted(), (Sounds{"notify.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(SoundsTest, TheLatestSoundCutsOffTheOneBefore) {
    PlayEffect("laugh.wav");
    PlayNotice("notify.wav");
    PlayEffect("question.wav");

    EXPECT_EQ(SoundsStarted(), (Sounds{"laugh.wav", "notify.wav", "question.wav"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(SoundsTest, SilenceStopsEffectsAndNotices) {
    PlayEffect("laugh.wav");
    Silence();
    EXPECT_EQ(SoundsPlaying(), 0U);

    PlayNotice("notify.wav");
    Silence();
    EXPECT_EQ(SoundsPlaying(), 0U);
}

TEST_F(SoundsTest, SilenceLeavesTheOtherSlotsAlone) {
    AudioEngine.spawn_static(1, "laugh.wav", false);
    PlayEffect("right.wav");
    ASSERT_EQ(SoundsPlaying(), 2U);

    Silence();

    EXPECT_EQ(SoundsPlaying(), 1U);
    EXPECT_NE(AudioEngine.statics[1].source, 0U);
}

TEST_F(SoundsTest, SilenceWithNothingPlayingDoesNothing) {
    Silence();

    EXPECT_EQ(SoundsPlaying(), 0U);
    PlayEffect("right.wav");
    EXPECT_EQ(SoundsPlaying(), 1U);
}

// ---- Rest ----

TEST_F(SoundsRestTest, TheDeviceSleepsTwoSecondsAfterTheStart) {
    Pass(1.999);
    EXPECT_FALSE(fakes::al().paused);

    Pass(0.001);

    EXPECT_TRUE(fakes::al().paused);
}

TEST_F(SoundsRestTest, TheDeviceSleepsTwoSecondsAfterTheLastSoundHasEnded) {
    PlayEffect("laugh.wav");
    for (int i = 0; i < 10; ++i) Pass(1);
    EXPECT_FALSE(fakes::al().paused) << "it still plays";

    EndSound();
    Pass(0.1);
    Pass(1.99);
    EXPECT_FALSE(fakes::al().paused);
    Pass(0.01);

    EXPECT_TRUE(fakes::al().paused);
}

TEST_F(SoundsRestTest, TheDeviceSleepsTwoSecondsAfterASilencedSound) {
    PlayEffect("laugh.wav");
    Pass(1);
    Silence();

    Pass(0.1);
    Pass(2);

    EXPECT_TRUE(fakes::al().paused);
}

TEST_F(SoundsRestTest, ASoundWakesTheDeviceBeforeItsFirstCall) {
    Pass(2);
    ASSERT_TRUE(fakes::al().paused);
    fakes::ClearLog();

    PlayNotice("notify.wav");

    EXPECT_FALSE(fakes::al().paused);
    EXPECT_EQ(fakes::Names({"alcDeviceResumeSOFT", "alDeleteSources", "alSourcePlay"}),
              (Sounds{"alcDeviceResumeSOFT", "alDeleteSources", "alSourcePlay"}));
}

TEST_F(SoundsRestTest, ASoundStartsTheTwoSecondsAnew) {
    Pass(1.9);
    PlayEffect("laugh.wav");
    EndSound();

    Pass(0.1);
    Pass(1.9);

    EXPECT_FALSE(fakes::al().paused);
}

TEST_F(SoundsRestTest, ASleepingDeviceIsAskedNothing) {
    PlayEffect("laugh.wav");
    EndSound();
    Pass(0.1);
    Pass(2);
    fakes::ClearLog();

    Pass(1);
    Pass(10);

    EXPECT_EQ(fakes::Lines(), Sounds());
}

TEST_F(SoundsRestTest, ALostDevicesNamesAreNotDeletedOnItsSuccessor) {
    PlayEffect("laugh.wav");
    fakes::al().connected = false;
    fakes::ClearLog();

    PlayNotice("notify.wav");

    EXPECT_EQ(fakes::Lines({"alDeleteSources", "alDeleteBuffers"}),
              (Sounds{"alDeleteSources(1, 0)", "alDeleteBuffers(1, 0)"}));
    EXPECT_EQ(SoundsPlaying(), 1U);
}

TEST_F(SoundsRestTest, TheProgramsFramesLetTheDeviceSleep) {
    PlayEffect("laugh.wav");
    EndSound();
    for (int frame = 0; frame < 25; ++frame) {
        fakes::desktop().nanoseconds += 100'000'000;
        display();
    }

    EXPECT_TRUE(fakes::al().paused);
}

}  // namespace
