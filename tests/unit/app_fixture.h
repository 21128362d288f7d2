// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fixture for tests of app/: the whole program in one process, put back to its start before every test.
//
// Some things of the program cannot be put back, because they are hidden: the one seeding that the first
// rand_intvf does, the last reading of the frame clock, what the window layer counts, and the last second
// that was broken down. The fixture brings them to a known state instead: seeded, read at the fake clock's
// start, with the swap interval of a shown window, a second that no test uses. Typing is listened to, with
// nothing typed.
//
// The current directory is a folder of the test's own with the program's sounds in it.
//
// Tests of the first call ever run their body in a fresh process (ExpectInFreshProcess).
#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "app/attention.h"
#include "app/character.h"
#include "app/double_click.h"
#include "app/input.h"
#include "app/notifications.h"
#include "app/owl.h"
#include "app/particles.h"
#include "app/shell.h"
#include "app/sound_device.h"
#include "app/state.h"
#include "app/stroke_queue.h"
#include "app/textures.h"
#include "app/typing.h"
#include "app/window.h"
#include "calendar/editor.h"
#include "calendar/events.h"
#include "calendar/list.h"
#include "calendar/notices.h"
#include "engine/Sound.h"
#include "engine/local_time.h"
#include "engine/random.h"
#include "engine/window_metrics.h"
#include "quiz/dialog.h"
#include "quiz/questions.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/picture_folder.h"
#include "tests/unit/sound_files.h"
#include "tests/unit/temporary_folder.h"

/// One picture on the canvas.
struct Sprite {
    unsigned int texture = 0;
    fakes::Rect rect;

    bool operator==(const Sprite& other) const { return texture == other.texture && rect == other.rect; }
};

/// Prints a sprite by the name of its picture file.
inline std::ostream& operator<<(std::ostream& out, const Sprite& sprite) {
    const auto& pictures = Pictures();
    const auto found = std::find_if(pictures.begin(), pictures.end(),
                                    [&](const Picture& picture) { return *picture.name == sprite.texture; });
    const std::string name = found != pictures.end() ? found->file : std::to_string(sprite.texture);
    return out << name << " at " << sprite.rect;
}

class AppTest : public fakes::Test {
  protected:
    void SetUp() override {
        WriteSounds();
        rand_intvf(0, 1, 1);
        fakes::world().now = 1;
        LocalTime();
        CloseSoundDevice();  // with the fakes that it was opened with
        fakes::Test::SetUp();
        ResetProgram();
        SetLastClockReading(fakes::desktop().nanoseconds);
        fakes::desktop().clock_calls = 0;
        fakes::ClearLog();
    }

    /// Puts every global of the program to its value at start, but gives each picture a texture name of its
    /// own.
    static void ResetProgram() {
        global_time = 0;
        menu_case_id = kOwlScreen;
        enable_sfx = true;
        frame_time = {};
        anim = kStanding;
        spawn_question = spawn_laugh = new_notify = false;
        n_notify = 0;
        events.clear();
        edit_event = nullptr;
        force_back_hm = false;
        edit_tf = kNoField;
        caret = CaretState();
        event_list = ListState();
        quiz = QuizState();
        notifications = NotificationState();
        attention = AttentionState();
        listening_to_typing = true;
        listening_to_leaving = true;
        ForgetStrokes();
        FillBank();
        character = CharacterState();
        sleep_fx = ZelvarFX();
        smoke_fx = ZelvarFX();
        std::fill(std::begin(AudioEngine.statics), std::end(AudioEngine.statics), Sound());
        mouse(0, 0);
        single_touch = touch_event = false;
        double_click = DoubleClickState();
        ResetFrameInput();
        ResetWindow();
        ForgetWindowMetrics();
        NameTextures();
    }

    /// Puts the window layer to where it is after a shown frame, with no activity since.
    static void ResetWindow() {
        window = WindowState();
        window.frame = display;
        window.watching = true;
        window.last_frame = fakes::desktop().nanoseconds;
        window.swap_interval = 1;
    }

    /// Fills the bank of questions, if a test has left it otherwise.
    static void FillBank() {
        if (questions.size() == 108) return;
        questions.clear();
        GenQuestions();
    }

    /// Names the textures 101, 102 ... in the order of their files, and GUI[kViewScreen] 100, so that no two
    /// are the same.
    static void NameTextures() {
        unsigned int name = 101;
        for (const Picture& picture : Pictures()) *picture.name = name++;
        GUI[kViewScreen] = 100;
    }

    /// Lets the frame clock have been read last at that time.
    static void SetLastClockReading(std::uint64_t nanoseconds) {
        fakes::desktop().nanoseconds = nanoseconds;
        float ignored = 0;
        GetGlobalTime(ignored);
    }

    /// Draws one frame of the character screen that advances the owl by `seconds`, in the canvas that the
    /// frame sets up. Only this frame's calls and drawing are in the log and in the list of primitives
    /// afterwards.
    static void RunFrame(float seconds) {
        EnterCanvas();
        fakes::ClearLog();
        fakes::gl().primitives.clear();
        global_time = seconds;
        ForgetWindowMetrics();

        Render();

        EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
        EXPECT_EQ(fakes::gl().modelview.size(), 2U) << "Render must leave the model-view stack as it was";
        EXPECT_EQ(fakes::gl().projection.size(), 2U) << "Render must leave the projection stack as it was";
        LeaveCanvas();
    }

    /// Returns the pictures of the owl's scene that the last frame drew, in order; the menu's and the
    /// effects' are left out.
    static std::vector<Sprite> Scene() {
        const std::vector<unsigned int> scene = {background,
                                                 tree,
                                                 owl[kStanding],
                                                 owl[kPerching],
                                                 owl[kSleeping],
                                                 owl_ce[kStanding],
                                                 owl_ce[kPerching],
                                                 owl_ce[kSleeping],
                                                 eye_l,
                                                 eye_r,
                                                 hat,
                                                 cloud,
                                                 circle};
        std::vector<Sprite> sprites;
        for (const fakes::Primitive& primitive : fakes::gl().primitives) {
            if (std::find(scene.begin(), scene.end(), primitive.texture) == scene.end()) continue;
            sprites.push_back({primitive.texture, fakes::Bounds(primitive)});
        }
        return sprites;
    }

    /// Says whether `calls` are in the log, one right after the other, from place `start` on.
    static testing::AssertionResult LogHas(const std::vector<std::string>& calls, std::size_t start) {
        const std::vector<std::string> lines = fakes::Lines();
        const auto from = lines.begin() + static_cast<std::ptrdiff_t>(std::min(start, lines.size()));
        const auto size = std::min(static_cast<std::ptrdiff_t>(calls.size()), lines.end() - from);
        const std::vector<std::string> found(from, from + size);
        if (found == calls) return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the log has " << testing::PrintToString(found)
                                           << " instead of " << testing::PrintToString(calls);
    }
    static testing::AssertionResult LogBeginsWith(const std::vector<std::string>& calls) {
        return LogHas(calls, 0);
    }
    static testing::AssertionResult LogEndsWith(const std::vector<std::string>& calls) {
        const std::size_t size = fakes::Log().size();
        return LogHas(calls, size - std::min(size, calls.size()));
    }

    TemporaryFolder folder_;

  private:
    static void EnterCanvas() {
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        glOrtho(0, 512, 0, 512, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
        glEnable(GL_TEXTURE_2D);
    }

    static void LeaveCanvas() {
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
    }
};

/// Checks a condition in a process of its own, in which nothing of the program has run yet. The test that
/// uses it must be a plain TEST, so that no fixture runs there first.
template <typename Condition>
void ExpectInFreshProcess(Condition condition) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(condition() ? 0 : 1), testing::ExitedWithCode(0), "");
    GTEST_FLAG_SET(death_test_style, "fast");
}
