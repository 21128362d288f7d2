// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/sound_device.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"

namespace {

using Calls = std::vector<std::string>;

class SoundDeviceTest : public fakes::Test {
  protected:
    void TearDown() override {
        CloseSoundDevice();
        fakes::Test::TearDown();
    }
};

TEST_F(SoundDeviceTest, OpensTheDefaultDeviceWithAPlainContextAndMakesItCurrent) {
    fakes::al().context_current = false;

    OpenSoundDevice();

    EXPECT_EQ(fakes::Lines(),
              (Calls{"alcOpenDevice(0)", "alcCreateContext(1, 0)", "alcMakeContextCurrent(1)"}));
    EXPECT_TRUE(fakes::al().context_current);
}

TEST_F(SoundDeviceTest, ClosesTheContextBeforeTheDevice) {
    OpenSoundDevice();
    fakes::ClearLog();

    CloseSoundDevice();

    EXPECT_EQ(fakes::Lines(),
              (Calls{"alcMakeContextCurrent(0)", "alcDestroyContext(1)", "alcCloseDevice(1)"}));
    EXPECT_EQ(fakes::al().contexts, 0);
    EXPECT_EQ(fakes::al().open_devices, 0);
}

TEST_F(SoundDeviceTest, ClosesOnce) {
    OpenSoundDevice();
    CloseSoundDevice();
    fakes::ClearLog();

    CloseSoundDevice();

    EXPECT_EQ(fakes::Lines(), Calls());
}

TEST_F(SoundDeviceTest, ClosesNothingWhereThereIsNoDevice) {
    fakes::al().has_device = false;
    OpenSoundDevice();
    fakes::ClearLog();

    CloseSoundDevice();

    EXPECT_EQ(fakes::Lines(), Calls());
}

TEST_F(SoundDeviceTest, ClosesTheDeviceAlsoWithoutAContext) {
    fakes::al().has_context = false;
    OpenSoundDevice();
    fakes::ClearLog();

    CloseSoundDevice();

    EXPECT_EQ(fakes::Lines(), (Calls{"alcMakeContextCurrent(0)", "alcCloseDevice(1)"}));
}

// ---- Sleep ----

TEST_F(SoundDeviceTest, SleepsAndWakes) {
    OpenSoundDevice();
    EXPECT_TRUE(IsSoundDeviceAwake());

    RestSoundDevice();
    EXPECT_TRUE(fakes::al().paused);
    EXPECT_FALSE(IsSoundDeviceAwake());

    EXPECT_FALSE(WakeSoundDevice()) << "the same device";
    EXPECT_FALSE(fakes::al().paused);
    EXPECT_TRUE(IsSoundDeviceAwake());
}

TEST_F(SoundDeviceTest, IsWokenOnlyFromSleep) {
    OpenSoundDevice();

    WakeSoundDevice();

    EXPECT_EQ(fakes::Count("alcDeviceResumeSOFT"), 0U);
}

TEST_F(SoundDeviceTest, CannotSleepWithoutTheExtension) {
    fakes::al().can_pause = false;
    OpenSoundDevice();

    EXPECT_FALSE(IsSoundDeviceAwake());
    EXPECT_FALSE(WakeSoundDevice());
}

// ---- Loss ----

TEST_F(SoundDeviceTest, IsOpenedAgainWhereItWasLostAlsoInItsSleep) {
    OpenSoundDevice();
    RestSoundDevice();
    fakes::al().connected = false;
    fakes::ClearLog();

    EXPECT_TRUE(WakeSoundDevice());

    EXPECT_EQ(fakes::Names({"alcDeviceResumeSOFT", "alcGetIntegerv", "alcMakeContextCurrent",
                            "alcDestroyContext", "alcCloseDevice", "alcOpenDevice", "alcCreateContext"}),
              (Calls{"alcDeviceResumeSOFT", "alcGetIntegerv", "alcMakeContextCurrent", "alcDestroyContext",
                     "alcCloseDevice", "alcOpenDevice", "alcCreateContext", "alcMakeContextCurrent"}));
    EXPECT_EQ(fakes::al().open_devices, 1);
    EXPECT_EQ(fakes::al().contexts, 1);
    EXPECT_TRUE(IsSoundDeviceAwake());
    EXPECT_FALSE(WakeSoundDevice()) << "once";
}

TEST_F(SoundDeviceTest, IsOpenedAgainWhereThereWasNoneAtFirst) {
    fakes::al().has_device = false;
    OpenSoundDevice();
    EXPECT_FALSE(IsSoundDeviceAwake());
    fakes::al().has_device = true;

    EXPECT_TRUE(WakeSoundDevice());

    EXPECT_TRUE(IsSoundDeviceAwake());
    EXPECT_EQ(fakes::al().open_devices, 1);
}

TEST_F(SoundDeviceTest, IsNotTakenForLostWhereItCannotTell) {
    fakes::al().tells_loss = false;
    OpenSoundDevice();
    fakes::al().connected = false;

    EXPECT_FALSE(WakeSoundDevice());
}

TEST_F(SoundDeviceTest, IsNotOpenedByWakingBeforeTheStartNorAfterTheEnd) {
    WakeSoundDevice();
    OpenSoundDevice();
    CloseSoundDevice();
    fakes::ClearLog();

    WakeSoundDevice();

    EXPECT_EQ(fakes::Count("alcOpenDevice"), 0U);
}

void SayWhatIsOpen() {
    std::fprintf(stderr, "open: %d, %d", fakes::al().open_devices, fakes::al().contexts);
}

TEST_F(SoundDeviceTest, IsClosedWhenTheProgramEnds) {
    EXPECT_EXIT(
        {
            std::atexit(SayWhatIsOpen);  // runs last
            OpenSoundDevice();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^open: 0, 0$");
}

}  // namespace
