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
