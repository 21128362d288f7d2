// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Effects, notices and silence. What is baked into the sound files is tested in tests/tools.
#include "app/sounds.h"

#include <string>
#include <vector>

#include "tests/unit/app_fixture.h"

namespace {

using Sounds = std::vector<std::string>;
using SoundsTest = AppTest;

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

}  // namespace
