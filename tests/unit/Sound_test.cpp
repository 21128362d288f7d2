// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/Sound.h"

#include <AL/al.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/little_endian.h"
#include "tests/unit/temporary_folder.h"

namespace {

// ---- What there is before main() ----

bool IsEmpty(const Sound& sound) {
    return sound.data == nullptr && sound.format == 0 && sound.freq == 0 && sound.size == 0 &&
           sound.source == 0 && sound.buffer == 0;
}

bool NothingIsSetYet() {
    return std::all_of(AudioEngine.statics, AudioEngine.statics + AudioEngine::kSlots, IsEmpty) &&
           AudioEngine.sounds.empty() && !AudioEngine.initialized &&
           std::all_of(curr_absolute_path, curr_absolute_path + sizeof curr_absolute_path,
                       [](char byte) { return byte == '\0'; }) &&
           std::all_of(retv_absolute_path, retv_absolute_path + sizeof retv_absolute_path,
                       [](char byte) { return byte == '\0'; });
}

const bool nothing_is_set_at_start = NothingIsSetYet();

TEST(SoundsAtStart, AreEmptySlotsNoPathAndNotInitialized) {
    EXPECT_TRUE(nothing_is_set_at_start);
}

TEST(SoundsAtStart, AreTenSlots) {
    EXPECT_EQ(AudioEngine::kSlots, 10);
    EXPECT_EQ(sizeof AudioEngine.statics, 10 * sizeof(Sound));
}

// ---- The fixture ----

/// Returns a WAVE file of 16-bit stereo.
std::string StereoFile(const std::string& audio, std::size_t rate) {
    return "RIFF" + Number(36 + audio.size(), 4) + "WAVEfmt " + Number(16, 4) + Number(1, 2) + Number(2, 2) +
           Number(rate, 4) + Number(rate * 4, 4) + Number(4, 2) + Number(16, 2) + "data" +
           Number(audio.size(), 4) + audio;
}

/// Empty slots, two files in the current folder, and a context whose next names are 11 for a source and 21
/// for a buffer, so that none passes for the other or for a slot.
class SoundTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        Clear();
        fakes::al().next_source = 11;
        fakes::al().next_buffer = 21;
        WriteFile("laugh.wav", StereoFile("ha ha ha ha!", 44100));
        WriteFile("notify.wav", StereoFile("ding dong", 22050));
    }
    void TearDown() override {
        Clear();
        fakes::Test::TearDown();
    }

    static std::string AudioOf(ALuint source) {
        const std::vector<std::uint8_t>& bytes =
            fakes::al().buffers.at(fakes::al().sources.at(source).buffer).data;
        return {bytes.begin(), bytes.end()};
    }

    /// Returns the live names.
    static std::vector<ALuint> Sources() {
        std::vector<ALuint> names;
        for (const auto& [name, source] : fakes::al().sources) names.push_back(name);
        return names;
    }
    static std::vector<ALuint> Buffers() {
        std::vector<ALuint> names;
        for (const auto& [name, buffer] : fakes::al().buffers) names.push_back(name);
        return names;
    }

    using Names = std::vector<ALuint>;
    using Lines = std::vector<std::string>;

  private:
    static void Clear() {
        for (Sound& sound : AudioEngine.statics) sound = Sound();
        AudioEngine.initialized = false;
        std::fill(std::begin(curr_absolute_path), std::end(curr_absolute_path), '\0');
    }

    TemporaryFolder folder_;
};

// ---- One sound ----

TEST_F(SoundTest, LoadMakesItsCallsInOrder) {
    Sound sound;

    sound.Load("laugh.wav", false);

    EXPECT_EQ(fakes::Lines(), (Lines{
                                  "alGenSources(1)",
                                  "alGenBuffers(1)",
                                  "alBufferData(21, AL_FORMAT_STEREO16, 12, 44100)",
                                  "alSourcei(11, AL_BUFFER, 21)",
                                  "alSourcef(11, AL_PITCH, 1)",
                                  "alSourcef(11, AL_GAIN, 1)",
                                  "alSourcei(11, AL_LOOPING, 0)",
                                  "alSourcei(11, AL_SOURCE_RELATIVE, 1)",
                              }));
    EXPECT_EQ(fakes::al().errors, Lines{});
}

TEST_F(SoundTest, LoadHandsTheFilesBytesOver) {
    Sound sound;

    sound.Load("laugh.wav", false);

    EXPECT_EQ(AudioOf(11), "ha ha ha ha!");
    EXPECT_EQ(fakes::al().buffers.at(21).frequency, 44100);
    EXPECT_EQ(fakes::al().buffers.at(21).format, AL_FORMAT_STEREO16);
}

TEST_F(SoundTest, LoadKeepsWhatTheFileIsAndTheNames) {
    Sound sound;

    sound.Load("notify.wav", false);

    EXPECT_EQ(sound.format, AL_FORMAT_STEREO16);
    EXPECT_EQ(sound.freq, 22050);
    EXPECT_EQ(sound.size, 9);
    EXPECT_EQ(sound.source, 11U);
    EXPECT_EQ(sound.buffer, 21U);
}

TEST_F(SoundTest, LoadLoopsIfAskedTo) {
    Sound once;
    Sound for_ever;

    once.Load("laugh.wav", false);
    for_ever.Load("laugh.wav", true);

    EXPECT_FALSE(fakes::al().sources.at(once.source).looping);
    EXPECT_TRUE(fakes::al().sources.at(for_ever.source).looping);
}

TEST_F(SoundTest, LoadDoesNotPlay) {
    Sound sound;

    sound.Load("laugh.wav", true);

    EXPECT_EQ(fakes::al().Playing(), Names{});
}

TEST_F(SoundTest, AMissingOrUnfitFileEndsTheProgramWithTheReadersStatus) {
    WriteFile("text.wav", "Un file di testo.\n");
    WriteFile("cut.wav", StereoFile("ding dong", 22050).substr(0, 50));

    EXPECT_EXIT(AudioEngine.spawn_static(0, "missing.wav", false), testing::ExitedWithCode(1), "^$");
    EXPECT_EXIT(AudioEngine.spawn_static(0, "text.wav", false), testing::ExitedWithCode(1), "^$");
    EXPECT_EXIT(AudioEngine.spawn_static(0, "cut.wav", false), testing::ExitedWithCode(11), "^$");
}

TEST_F(SoundTest, AMissingFileEndsTheProgramWithoutADeviceToo) {
    fakes::al().context_current = false;

    EXPECT_EXIT(AudioEngine.spawn_static(0, "missing.wav", false), testing::ExitedWithCode(1), "^$");
}

// Under the sanitizers, which count memory themselves, it is their search for leaks that tells.
TEST_F(SoundTest, TheFilesBytesAreFreedOnceOpenAlHasThem) {
    constexpr std::size_t kAudio = 1000000;
    constexpr int kTimes = 20;
    WriteFile("long.wav", StereoFile(std::string(kAudio, 'x'), 44100));
    const auto in_use = [] {
        const struct mallinfo2 memory = mallinfo2();
        return memory.uordblks + memory.hblkhd;
    };
    const std::size_t before = in_use();

    for (int i = 0; i < kTimes; ++i) {
        AudioEngine.spawn_static(0, "long.wav", false);
        AudioEngine.kill_static(0);
        fakes::ClearLog();  // keeps a copy
    }

    EXPECT_EQ(AudioEngine.statics[0].data, nullptr);
    EXPECT_LT(in_use(), before + kAudio);
}

TEST_F(SoundTest, PlayStopAndPauseAreOpenAlsOnTheSource) {
    Sound sound;
    sound.Load("laugh.wav", false);
    fakes::ClearLog();

    sound.Play();
    EXPECT_EQ(fakes::al().sources.at(11).state, AL_PLAYING);
    sound.Pause();
    EXPECT_EQ(fakes::al().sources.at(11).state, AL_PAUSED);
    sound.Stop();
    EXPECT_EQ(fakes::al().sources.at(11).state, AL_STOPPED);

    EXPECT_EQ(fakes::Lines(), (Lines{"alSourcePlay(11)", "alSourcePause(11)", "alSourceStop(11)"}));
}

TEST_F(SoundTest, SetSourceRelativeIsOneCall) {
    Sound sound;
    sound.source = 7;

    sound.SetSourceRelative();

    EXPECT_EQ(fakes::Lines(), Lines{"alSourcei(7, AL_SOURCE_RELATIVE, 1)"});
}

TEST_F(SoundTest, SetPropertiesIsPositionThenVelocity) {
    Sound sound;
    sound.Load("laugh.wav", false);
    fakes::ClearLog();

    sound.SetProperties(1, 2.5F, -3, 4, -5.5F, 6);

    EXPECT_EQ(fakes::Lines(),
              (Lines{"alSource3f(11, AL_POSITION, 1, 2.5, -3)", "alSource3f(11, AL_VELOCITY, 4, -5.5, 6)"}));
}

TEST_F(SoundTest, DestroyDeletesTheSourceThenTheBuffer) {
    Sound sound;
    sound.Load("laugh.wav", false);
    fakes::ClearLog();

    sound.Destroy();

    EXPECT_EQ(fakes::Lines(), (Lines{"alDeleteSources(1, 11)", "alDeleteBuffers(1, 21)"}));
    EXPECT_EQ(Sources(), Names{});
    EXPECT_EQ(Buffers(), Names{});
    EXPECT_EQ(fakes::al().errors, Lines{});
}

TEST_F(SoundTest, DestroyForgetsTheNames) {
    Sound sound;
    sound.Load("laugh.wav", false);
    sound.Destroy();
    fakes::ClearLog();

    sound.Destroy();

    EXPECT_EQ(sound.source, 0U);
    EXPECT_EQ(sound.buffer, 0U);
    EXPECT_EQ(fakes::Lines(), (Lines{"alDeleteSources(1, 0)", "alDeleteBuffers(1, 0)"}));
}

// ---- Starting ----

using AudioEngineTest = SoundTest;

TEST_F(AudioEngineTest, InitializeOnlyNotesThatItWasCalled) {
    AudioEngine.initialize();
    EXPECT_TRUE(AudioEngine.initialized);

    AudioEngine.initialize();
    EXPECT_TRUE(AudioEngine.initialized);
    EXPECT_EQ(fakes::Lines(), Lines{});
}

TEST_F(AudioEngineTest, SpawnDoesNotAskWhetherItIsInitialized) {
    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(fakes::al().Playing(), Names{11});
    EXPECT_FALSE(AudioEngine.initialized);
}

TEST_F(AudioEngineTest, SpawnInAnEmptySlotMakesItsCallsInOrder) {
    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(fakes::Lines(), (Lines{
                                  "alDeleteSources(1, 0)",
                                  "alDeleteBuffers(1, 0)",
                                  "alGenSources(1)",
                                  "alGenBuffers(1)",
                                  "alBufferData(21, AL_FORMAT_STEREO16, 12, 44100)",
                                  "alSourcei(11, AL_BUFFER, 21)",
                                  "alSourcef(11, AL_PITCH, 1)",
                                  "alSourcef(11, AL_GAIN, 1)",
                                  "alSourcei(11, AL_LOOPING, 0)",
                                  "alSourcei(11, AL_SOURCE_RELATIVE, 1)",
                                  "alSourcePlay(11)",
                              }));
    EXPECT_EQ(fakes::al().Playing(), Names{11});
}

TEST_F(AudioEngineTest, SpawnInAUsedSlotReplacesItsSound) {
    AudioEngine.spawn_static(0, "laugh.wav", true);
    fakes::ClearLog();

    AudioEngine.spawn_static(0, "notify.wav", false);

    EXPECT_EQ(fakes::Lines(), (Lines{
                                  "alDeleteSources(1, 11)",
                                  "alDeleteBuffers(1, 21)",
                                  "alGenSources(1)",
                                  "alGenBuffers(1)",
                                  "alBufferData(22, AL_FORMAT_STEREO16, 9, 22050)",
                                  "alSourcei(12, AL_BUFFER, 22)",
                                  "alSourcef(12, AL_PITCH, 1)",
                                  "alSourcef(12, AL_GAIN, 1)",
                                  "alSourcei(12, AL_LOOPING, 0)",
                                  "alSourcei(12, AL_SOURCE_RELATIVE, 1)",
                                  "alSourcePlay(12)",
                              }));
    EXPECT_EQ(Sources(), Names{12});
    EXPECT_EQ(Buffers(), Names{22});
    EXPECT_EQ(fakes::al().Playing(), Names{12});
    EXPECT_EQ(AudioOf(12), "ding dong");
}

TEST_F(AudioEngineTest, SpawnTwiceRestartsTheSoundFromItsFile) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    WriteFile("laugh.wav", StereoFile("hi hi hi", 11025));

    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(fakes::al().Playing(), Names{12});
    EXPECT_EQ(AudioOf(12), "hi hi hi");
    EXPECT_EQ(fakes::al().buffers.at(22).frequency, 11025);
}

TEST_F(AudioEngineTest, SpawnReplacesASoundThatHasFinished) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    fakes::al().sources.at(11).state = AL_STOPPED;

    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(Sources(), Names{12});
    EXPECT_EQ(fakes::al().Playing(), Names{12});
}

TEST_F(AudioEngineTest, SpawnDoesNotPutTheFolderBeforeTheName) {
    std::strcpy(curr_absolute_path, "/missing/");

    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(fakes::al().Playing(), Names{11});
}

TEST_F(AudioEngineTest, TwoSlotsPlayAtOnce) {
    AudioEngine.spawn_static(3, "laugh.wav", false);
    AudioEngine.spawn_static(4, "notify.wav", false);

    EXPECT_EQ(fakes::al().Playing(), (Names{11, 12}));
    EXPECT_EQ(AudioOf(11), "ha ha ha ha!");
    EXPECT_EQ(AudioOf(12), "ding dong");
}

TEST_F(AudioEngineTest, AllTenSlotsPlayAtOnce) {
    for (int slot = 0; slot < 10; ++slot) AudioEngine.spawn_static(slot, "laugh.wav", false);

    EXPECT_EQ(fakes::al().Playing().size(), 10U);
    for (int slot = 0; slot < 10; ++slot) {
        EXPECT_EQ(AudioEngine.statics[slot].source, 11U + static_cast<ALuint>(slot));
        EXPECT_EQ(AudioEngine.statics[slot].buffer, 21U + static_cast<ALuint>(slot));
    }
}

TEST_F(AudioEngineTest, SlotsThatDoNotExistAreIgnored) {
    for (const int slot : {-1, 10, 11, -2147483647 - 1, 2147483647}) {
        AudioEngine.spawn_static(slot, "laugh.wav", false);
        AudioEngine.spawn_static(slot, "missing.wav", true);
        AudioEngine.kill_static(slot);
    }

    EXPECT_EQ(fakes::Lines(), Lines{});
    EXPECT_TRUE(std::all_of(AudioEngine.statics, AudioEngine.statics + 10, IsEmpty));
    EXPECT_TRUE(AudioEngine.sounds.empty());
}

TEST_F(AudioEngineTest, ErrorsAreNeverAskedFor) {
    AudioEngine.initialize();
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.kill_static(0);
    AudioEngine.kill_static(0);

    EXPECT_EQ(fakes::Count("alGetError"), 0U);
}

// ---- Stopping ----

TEST_F(AudioEngineTest, KillStopsThenDeletes) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    fakes::ClearLog();

    AudioEngine.kill_static(0);

    EXPECT_EQ(fakes::Lines(),
              (Lines{"alSourceStop(11)", "alDeleteSources(1, 11)", "alDeleteBuffers(1, 21)"}));
    EXPECT_EQ(Sources(), Names{});
    EXPECT_EQ(Buffers(), Names{});
}

TEST_F(AudioEngineTest, KillEndsALoopingSound) {
    AudioEngine.spawn_static(9, "laugh.wav", true);
    EXPECT_TRUE(fakes::al().sources.at(11).looping);

    AudioEngine.kill_static(9);

    EXPECT_EQ(fakes::al().Playing(), Names{});
}

TEST_F(AudioEngineTest, KillOfAnEmptySlotDeletesTheName0) {
    AudioEngine.kill_static(5);

    EXPECT_EQ(fakes::Lines(), (Lines{"alSourceStop(0)", "alDeleteSources(1, 0)", "alDeleteBuffers(1, 0)"}));
}

TEST_F(AudioEngineTest, KillLeavesTheOtherSlotsAlone) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.spawn_static(1, "notify.wav", false);
    AudioEngine.spawn_static(2, "laugh.wav", false);

    AudioEngine.kill_static(1);

    EXPECT_EQ(fakes::al().Playing(), (Names{11, 13}));
    EXPECT_EQ(Buffers(), (Names{21, 23}));
}

TEST_F(AudioEngineTest, ASlotCanBeStartedAgainAfterItWasKilled) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.kill_static(0);

    AudioEngine.spawn_static(0, "notify.wav", false);

    EXPECT_EQ(fakes::al().Playing(), Names{12});
    EXPECT_EQ(AudioOf(12), "ding dong");
}

// OpenAL gives the names of deleted sources and buffers to others.
TEST_F(AudioEngineTest, ANameThatAnotherSlotHasGotSinceIsNotDeleted) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.kill_static(0);
    fakes::al().next_source = 11;
    fakes::al().next_buffer = 21;
    AudioEngine.spawn_static(1, "notify.wav", true);

    AudioEngine.kill_static(0);
    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(fakes::al().Playing(), (Names{11, 12}));
    EXPECT_EQ(AudioOf(11), "ding dong");
    EXPECT_EQ(AudioOf(12), "ha ha ha ha!");
}

// ---- Without a sound device ----

TEST_F(AudioEngineTest, WithoutAContextTheCallsAreMadeWithTheName0) {
    fakes::al().context_current = false;

    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.kill_static(0);

    EXPECT_EQ(fakes::Lines(), (Lines{
                                  "alDeleteSources(1, 0)",
                                  "alDeleteBuffers(1, 0)",
                                  "alGenSources(1)",
                                  "alGenBuffers(1)",
                                  "alBufferData(0, AL_FORMAT_STEREO16, 12, 44100)",
                                  "alSourcei(0, AL_BUFFER, 0)",
                                  "alSourcef(0, AL_PITCH, 1)",
                                  "alSourcef(0, AL_GAIN, 1)",
                                  "alSourcei(0, AL_LOOPING, 0)",
                                  "alSourcei(0, AL_SOURCE_RELATIVE, 1)",
                                  "alSourcePlay(0)",
                                  "alSourceStop(0)",
                                  "alDeleteSources(1, 0)",
                                  "alDeleteBuffers(1, 0)",
                              }));
    EXPECT_EQ(Sources(), Names{});
}

TEST_F(AudioEngineTest, ASlotThatLosesItsContextForgetsItsNames) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    fakes::al().context_current = false;

    AudioEngine.spawn_static(0, "laugh.wav", false);

    EXPECT_EQ(AudioEngine.statics[0].source, 0U);
    EXPECT_EQ(AudioEngine.statics[0].buffer, 0U);
    EXPECT_EQ(AudioEngine.statics[0].data, nullptr);
}

// ---- The listener ----

using ListenerTest = SoundTest;

TEST_F(ListenerTest, SetListenerPositionIsOneCall) {
    SetListenerPosition(1, -2.5F, 3);

    EXPECT_EQ(fakes::Lines(), Lines{"alListener3f(AL_POSITION, 1, -2.5, 3)"});
    EXPECT_EQ(fakes::al().listener.position, (std::array<float, 3>{1, -2.5F, 3}));
}

TEST_F(ListenerTest, SetListenerOrientationIsAtThenUp) {
    SetListenerOrientation(1, -2.5F, 3, 4, 5, -6);

    EXPECT_EQ(fakes::Lines(), Lines{"alListenerfv(AL_ORIENTATION, 1, -2.5, 3, 4, 5, -6)"});
    EXPECT_EQ(fakes::al().listener.orientation, (std::array<float, 6>{1, -2.5F, 3, 4, 5, -6}));
}

// ---- Paths ----

using GetAbsPathTest = SoundTest;

constexpr std::size_t kPathBytes = 512;

TEST_F(GetAbsPathTest, ReturnsTheNameWhileThereIsNoFolder) {
    EXPECT_STREQ(GetAbsPath("laugh.wav"), "laugh.wav");
    EXPECT_STREQ(GetAbsPath(""), "");
}

TEST_F(GetAbsPathTest, PutsTheFolderBeforeTheName) {
    std::strcpy(curr_absolute_path, "/usr/share/ulmaro/");

    EXPECT_STREQ(GetAbsPath("laugh.wav"), "/usr/share/ulmaro/laugh.wav");
    EXPECT_STREQ(GetAbsPath(""), "/usr/share/ulmaro/");
}

TEST_F(GetAbsPathTest, ReturnsThePathInItsOwnBuffer) {
    EXPECT_EQ(GetAbsPath("laugh.wav"), retv_absolute_path);
    EXPECT_EQ(sizeof retv_absolute_path, kPathBytes);
}

TEST_F(GetAbsPathTest, InsertsNoSlash) {
    std::strcpy(curr_absolute_path, "/usr/share/ulmaro");

    EXPECT_STREQ(GetAbsPath("laugh.wav"), "/usr/share/ulmarolaugh.wav");
}

TEST_F(GetAbsPathTest, TakesPercentSignsAsTheyAre) {
    std::strcpy(curr_absolute_path, "/100%s/");

    EXPECT_STREQ(GetAbsPath("%d%n.wav"), "/100%s/%d%n.wav");
}

TEST_F(GetAbsPathTest, LeavesTheFolderAsItIs) {
    std::strcpy(curr_absolute_path, "/usr/share/ulmaro/");

    GetAbsPath("laugh.wav");

    EXPECT_STREQ(curr_absolute_path, "/usr/share/ulmaro/");
}

TEST_F(GetAbsPathTest, OverwritesThePathOfTheCallBefore) {
    const char* first = GetAbsPath("laugh.wav");

    const char* second = GetAbsPath("notify.wav");

    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "notify.wav");
}

TEST_F(GetAbsPathTest, ClearsWhatALongerPathLeft) {
    GetAbsPath(std::string(600, 'x').c_str());

    const char* path = GetAbsPath("short");

    EXPECT_EQ(std::string(path, kPathBytes), "short" + std::string(kPathBytes - 5, '\0'));
}

TEST_F(GetAbsPathTest, CutsAPathTo511Bytes) {
    std::strcpy(curr_absolute_path, "/usr/");

    EXPECT_EQ(GetAbsPath(std::string(506, 'x').c_str()), "/usr/" + std::string(506, 'x'));
    EXPECT_EQ(GetAbsPath(std::string(507, 'x').c_str()), "/usr/" + std::string(506, 'x'));
    EXPECT_EQ(GetAbsPath(std::string(5000, 'x').c_str()), "/usr/" + std::string(506, 'x'));
}

TEST_F(GetAbsPathTest, AFolderOf511BytesLeavesNoPlaceForTheName) {
    std::fill_n(curr_absolute_path, kPathBytes - 1, 'f');

    EXPECT_EQ(GetAbsPath("laugh.wav"), std::string(kPathBytes - 1, 'f'));
}

// ---- What is asked and forgotten ----

TEST_F(SoundTest, PlaysUntilItsEnd) {
    Sound sound;
    EXPECT_FALSE(sound.IsPlaying());
    sound.Load("laugh.wav", false);
    EXPECT_FALSE(sound.IsPlaying());

    sound.Play();
    EXPECT_TRUE(sound.IsPlaying());
    fakes::al().sources.at(11).state = AL_STOPPED;

    EXPECT_FALSE(sound.IsPlaying());
    EXPECT_EQ(fakes::al().errors, Lines{}) << "an empty slot is not asked for";
}

TEST_F(SoundTest, ForgettingTheNamesCallsNothingAndDeletesNothingLater) {
    AudioEngine.spawn_static(0, "laugh.wav", false);
    AudioEngine.spawn_static(9, "laugh.wav", false);
    fakes::ClearLog();

    AudioEngine.ForgetNames();
    EXPECT_EQ(fakes::Lines(), Lines{});

    AudioEngine.spawn_static(0, "notify.wav", false);
    AudioEngine.kill_static(9);
    EXPECT_EQ(fakes::Lines({"alDeleteSources", "alDeleteBuffers"}),
              (Lines{"alDeleteSources(1, 0)", "alDeleteBuffers(1, 0)", "alDeleteSources(1, 0)",
                     "alDeleteBuffers(1, 0)"}));
}

}  // namespace
