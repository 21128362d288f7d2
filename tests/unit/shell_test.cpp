// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/shell.h"
#include "calendar/store.h"

#include <GL/freeglut.h>
#include <sys/types.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/Sound.h"
#include "quiz/dialog.h"
#include "quiz/questions.h"
#include "tests/unit/app_fixture.h"
#include "tests/unit/effect_files.h"

/// The program's main(), compiled under another name.
int UlmaroMain(int argc, char** argv);

namespace {

using Calls = std::vector<std::string>;

/// A condition that is asked for when standard error says something of a file.
struct Listener {
    std::string file;
    std::function<bool()> condition;
    bool holds = false;
};

/// Takes a line of standard error.
ssize_t Listen(void* listener, const char* line, std::size_t length) {
    auto& to = *static_cast<Listener*>(listener);
    if (std::string(line, length).find(to.file) != std::string::npos) to.holds = to.condition();
    return static_cast<ssize_t>(length);
}

/// Runs a part of the program and returns whether a condition holds at the moment at which it tells that it
/// cannot read that effect. False where it never tells.
bool HoldsWhenMissed(const std::string& effect, const std::function<void()>& run,
                     const std::function<bool()>& condition) {
    Listener listener = {effect, condition};
    std::FILE* before =
        std::exchange(stderr, fopencookie(&listener, "w", {nullptr, Listen, nullptr, nullptr}));
    std::setvbuf(stderr, nullptr, _IOLBF, BUFSIZ);
    run();
    std::fclose(std::exchange(stderr, before));
    return listener.holds;
}

// ---- main ----

class MainTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        window = WindowState();
        listening_to_typing = false;
        listening_to_leaving = false;
    }

    static int RunMain() {
        std::string program = "ulmaro-assistant";
        char* argv[] = {program.data(), nullptr};
        return UlmaroMain(1, argv);
    }

    PictureFolder pictures_;
};

TEST_F(MainTest, StartsWindowThenSoundThenAssetsThenCallbacksThenTheLoop) {
    const int status = RunMain();

    EXPECT_EQ(status, 0);
    const std::initializer_list<std::string_view> order = {"glutInitErrorFunc",
                                                           "glutInit",
                                                           "glutInitDisplayMode",
                                                           "glutCreateWindow",
                                                           "srand",
                                                           "glutInitWindowSize",
                                                           "glutInitWindowPosition",
                                                           "alcOpenDevice",
                                                           "alcCreateContext",
                                                           "alcMakeContextCurrent",
                                                           "glShadeModel",
                                                           "glutDisplayFunc",
                                                           "glutReshapeFunc",
                                                           "glutSpecialFunc",
                                                           "glutSpecialUpFunc",
                                                           "glutMouseFunc",
                                                           "glutPassiveMotionFunc",
                                                           "glutMotionFunc",
                                                           "glutMainLoop"};
    EXPECT_EQ(fakes::Names(order), Calls(order.begin(), order.end()));
}

TEST_F(MainTest, MakesAPlainContextOnTheDefaultSoundDeviceCurrent) {
    RunMain();

    EXPECT_EQ(fakes::Lines({"alcOpenDevice", "alcCreateContext", "alcMakeContextCurrent"}),
              (Calls{"alcOpenDevice(0)", "alcCreateContext(1, 0)", "alcMakeContextCurrent(1)"}));
}

TEST_F(MainTest, EntersTheLoopAsItsLastCall) {
    RunMain();

    EXPECT_TRUE(LogEndsWith({"glutMainLoop()"}));
}

TEST_F(MainTest, LoadsEveryPictureBeforeItRegistersACallback) {
    RunMain();

    EXPECT_LT(fakes::IndexOf("glTexImage2D", 34), fakes::IndexOf("glutDisplayFunc"));
    EXPECT_EQ(fakes::Count("glTexImage2D"), 35U);
}

TEST_F(MainTest, MakesOneDoubleBufferedWindowWithTheProgramsTitle) {
    RunMain();

    EXPECT_EQ(fakes::glut().display_mode, static_cast<unsigned int>(GLUT_DOUBLE));
    EXPECT_EQ(fakes::glut().windows, (Calls{"Ulmaro Assistant"}));
}

TEST_F(MainTest, IntroducesTheWindowAsSoonAsItIsThere) {
    RunMain();

    EXPECT_EQ(fakes::Names({"glutCreateWindow", "SetWindowIdentity", "srand", "glTexImage2D"}).at(1),
              "SetWindowIdentity");
    EXPECT_EQ(fakes::desktop().program, "ulmaro-assistant");
}

TEST_F(MainTest, SeedsRandWithTheTime) {
    fakes::world().now = 123456789;

    RunMain();

    ASSERT_FALSE(fakes::world().seeds.empty());
    EXPECT_EQ(fakes::world().seeds[0], 123456789U);
}

TEST_F(MainTest, AsksForTheMiddleOfTheScreenOnlyAfterTheWindowIsThere) {
    fakes::glut().get[GLUT_SCREEN_WIDTH] = 1281;
    fakes::glut().get[GLUT_SCREEN_HEIGHT] = 1024;

    RunMain();

    EXPECT_EQ(fakes::Lines({"glutCreateWindow", "glutInitWindowSize", "glutInitWindowPosition"}),
              (Calls{"glutCreateWindow(\"Ulmaro Assistant\")", "glutInitWindowSize(300, 300)",
                     "glutInitWindowPosition(490, 362)"}));
}

TEST_F(MainTest, RoundsThePlaceOnAScreenSmallerThanTheWindowTowardZero) {
    fakes::glut().get[GLUT_SCREEN_WIDTH] = 201;
    fakes::glut().get[GLUT_SCREEN_HEIGHT] = 299;

    RunMain();

    EXPECT_EQ(fakes::Lines({"glutInitWindowPosition"}), (Calls{"glutInitWindowPosition(-49, 0)"}));
}

TEST_F(MainTest, RegistersTheCallbacksOfTheScreensAndNothingElse) {
    RunMain();

    const fakes::Glut& glut = fakes::glut();
    EXPECT_EQ(glut.display, &display);
    EXPECT_EQ(glut.reshape, &reshape);
    EXPECT_EQ(glut.special, &keyboard_down);
    EXPECT_EQ(glut.special_up, &keyboard_up);
    EXPECT_EQ(glut.mouse, &mouse_event);
    EXPECT_EQ(glut.passive_motion, &mouse);
    EXPECT_EQ(glut.motion, &mouse);
    EXPECT_EQ(glut.timers.size(), 0U);
    EXPECT_EQ(glut.idle, nullptr);
    EXPECT_EQ(glut.keyboard, nullptr);
    EXPECT_EQ(glut.keyboard_up, nullptr);
}

TEST_F(MainTest, TheFirstFrameListensToTypedCharactersAndNotToTheEnterFlag) {
    fakes::glut().main_loop = [] { fakes::glut().display(); };

    RunMain();

    EXPECT_EQ(fakes::glut().keyboard, &TypeCharacter);
    EXPECT_EQ(fakes::Count("glutKeyboardFunc"), 1U);
    EXPECT_EQ(fakes::glut().keyboard_up, nullptr);
}

TEST_F(MainTest, TheFirstFrameBeginsToWatchOverTheFrames) {
    fakes::glut().main_loop = [] {
        fakes::glut().display();
        fakes::glut().display();
    };

    RunMain();

    EXPECT_NE(fakes::glut().idle, nullptr);
    EXPECT_EQ(fakes::Count("glutIdleFunc"), 1U);
}

TEST_F(MainTest, AWindowThatIsCoveredFromItsStartIsWatchedOverFromItsFirstReshape) {
    fakes::glut().main_loop = [] {
        fakes::glut().reshape(300, 300);
        for (int i = 0; i < 3; ++i) fakes::glut().idle();
    };

    RunMain();

    EXPECT_GE(fakes::glut().redisplays, 1);
}

TEST_F(MainTest, LoadsTheEventsBeforeItRegistersACallback) {
    PictureFolder::WriteBytes("database.bin", {1, 0, 0, 0});
    std::size_t loaded = 0;
    fakes::glut().main_loop = [&] { loaded = events.size(); };

    RunMain();

    EXPECT_EQ(loaded, 1U);
}

TEST_F(MainTest, PreparesTheSoundTableBeforeTheAssets) {
    AudioEngine.initialized = false;

    EXPECT_TRUE(HoldsWhenMissed("sleep.zfx", RunMain, [] { return AudioEngine.initialized; }));
}

TEST_F(MainTest, StartsWithoutASoundDevice) {
    fakes::al().has_device = false;

    const int status = RunMain();

    EXPECT_EQ(status, 0);
    EXPECT_EQ(fakes::glut().main_loops, 1);
}

/// Runs main with options; returns the calls that open the window and the sound device.
Calls StartWith(Calls options) {
    const PictureFolder pictures;
    options.insert(options.begin(), "ulmaro-assistant");
    std::vector<char*> argv;
    for (std::string& option : options) argv.push_back(option.data());
    argv.push_back(nullptr);
    UlmaroMain(static_cast<int>(options.size()), argv.data());
    return fakes::Lines(
        {"glutInitErrorFunc", "glutInit", "glutCreateWindow", "MinimiseWindow", "alcOpenDevice"});
}

TEST(MainOptionsTest, TheyAreReadBeforeGlutReadsThemAndTheWindowIsMinimisedWhenItIsThere) {
    ExpectInFreshProcess([] {
        return StartWith({"-iconic"}) == Calls{"glutInitErrorFunc()", "glutInit(1)",
                                               "glutCreateWindow(\"Ulmaro Assistant\")", "MinimiseWindow()",
                                               "alcOpenDevice(0)"};
    });
}

TEST(MainOptionsTest, WithoutThemTheWindowIsNotMinimised) {
    ExpectInFreshProcess([] {
        return StartWith({}) == Calls{"glutInitErrorFunc()", "glutInit(1)",
                                      "glutCreateWindow(\"Ulmaro Assistant\")", "alcOpenDevice(0)"};
    });
}

// ---- Values at start ----

TEST(ProgramStartTest, GlobalsOfTheShellHaveTheirStartValues) {
    ExpectInFreshProcess([] { return global_time == 0 && menu_case_id == kOwlScreen && enable_sfx; });
    ExpectInFreshProcess([] { return !AudioEngine.initialized && questions.empty() && question_id == 0; });
}

TEST(ProgramStartTest, GlobalsOfTheCharacterStartAtZeroAndFalse) {
    ExpectInFreshProcess([] { return anim == kStanding && !spawn_question && !spawn_laugh; });
}

TEST(ProgramStartTest, NoNoticeIsPendingAtTheStart) {
    ExpectInFreshProcess([] { return n_notify == 0 && !new_notify; });
}

TEST(ProgramStartTest, NoEventIsOpenAndNoFieldHasFocusAtTheStart) {
    ExpectInFreshProcess(
        [] { return events.empty() && edit_event == nullptr && edit_tf == kNoField && !force_back_hm; });
}

TEST(ProgramStartTest, InputStartsAtZeroAndFalse) {
    ExpectInFreshProcess([] {
        return touch_coord_x == 0 && touch_coord_y == 0 && !single_touch && !touch_event &&
               std::none_of(std::begin(key_state), std::end(key_state), [](bool pressed) { return pressed; });
    });
}

TEST(ProgramStartTest, TexturesStartUnnamed) {
    ExpectInFreshProcess([] {
        return GUI[kViewScreen] == 0 &&
               std::all_of(Pictures().begin(), Pictures().end(),
                           [](const Picture& picture) { return *picture.name == 0; });
    });
}

TEST(ProgramStartTest, TheFirstReadingOfTheClockMeasuresFromZero) {
    ExpectInFreshProcess([] {
        fakes::desktop().nanoseconds = (std::uint64_t{7} << 32U) + 1'500'000'000;
        float dt = -1;
        GetGlobalTime(dt);
        return dt == 1.5F;
    });
}

TEST(ProgramStartTest, TheFirstFrameAdvancesNoTimer) {
    ExpectInFreshProcess([] {
        fakes::desktop().nanoseconds = 200'000'000;
        display();
        return character.bt == 0 && character.cet == 0 && global_time == 0.2F;
    });
}

TEST(ProgramStartTest, AnEventThatIsDueSoundsInTheFirstFrame) {
    ExpectInFreshProcess([] {
        const TemporaryFolder folder;
        WriteSounds();
        Event& reminder = events.emplace_back();
        reminder.kind = kReminder;
        reminder.elapsed = 4000;
        display();
        return SoundsStarted() == Calls{"notify.wav"};
    });
}

// ---- init ----

class InitTest : public AppTest {
  protected:
    PictureFolder pictures_;
};

TEST_F(InitTest, SetsTheGlStateBeforeTheFirstPicture) {
    init();

    EXPECT_TRUE(LogBeginsWith({
        "glShadeModel(GL_SMOOTH)",
        "glClearColor(0.5, 0.5, 0.5, 1)",
        "glClearDepth(1)",
        "glEnable(GL_DEPTH_TEST)",
        "glDepthFunc(GL_LEQUAL)",
        "glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST)",
        "glEnable(GL_TEXTURE_2D)",
        "glGenTextures(1)",
    }));
}

TEST_F(InitTest, LoadsEveryPicture) {
    init();

    for (const Picture& picture : Pictures()) {
        EXPECT_EQ(fakes::gl().textures.count(*picture.name), 1U) << picture.file;
    }
}

TEST_F(InitTest, LoadsTheEventsOfTheCurrentFolder) {
    PictureFolder::WriteBytes("database.bin", {2, 0, 0, 0});

    init();

    EXPECT_EQ(events.size(), 2U);
}

TEST_F(InitTest, StartsWithoutEventsWhereThereIsNoFile) {
    events.emplace_back();

    init();

    EXPECT_TRUE(events.empty());
}

TEST_F(InitTest, LoadsTheEffectsAfterThePicturesSleepBeforeSmoke) {
    WriteEffect("sleep.zfx", 201, 0);
    WriteEffect("smoke.zfx", 202, 0);

    init();

    const auto uploads = fakes::Calls("glTexImage2D");
    ASSERT_EQ(uploads.size(), 37U);
    EXPECT_EQ(uploads[35].args.at(3), 201);
    EXPECT_EQ(uploads[36].args.at(3), 202);
}

TEST_F(InitTest, LetsTheEffectsBeWatchedFromTheCamera) {
    init();

    EXPECT_EQ(ZFX::watcher_x, &cam.x);
    EXPECT_EQ(ZFX::watcher_y, &cam.y);
    EXPECT_EQ(ZFX::watcher_z, &cam.z);
    EXPECT_EQ(cam.x, 0);
    EXPECT_EQ(cam.y, 0);
    EXPECT_EQ(cam.z, 0);
}

TEST_F(InitTest, SaysWhereTheEffectsAreWatchedFromBeforeItLoadsThem) {
    ZFX::SetWatcher(nullptr, nullptr, nullptr);

    EXPECT_TRUE(HoldsWhenMissed("sleep.zfx", init, [] { return ZFX::watcher_x == &cam.x; }));
}

TEST_F(InitTest, FillsTheBankOfQuestionsAndTheListOfEventsAfterTheEffects) {
    PictureFolder::WriteBytes("database.bin", {2, 0, 0, 0});
    questions.clear();

    EXPECT_TRUE(HoldsWhenMissed("smoke.zfx", init, [] { return questions.empty() && events.empty(); }));

    EXPECT_EQ(questions.size(), 108U);
    EXPECT_EQ(events.size(), 2U);
}

TEST_F(InitTest, GoesOnWithoutTheEffects) {
    init();

    EXPECT_EQ(fakes::Count("glTexImage2D"), 35U);
}

// ---- display ----

class DisplayTest : public AppTest {
  protected:
    /// Lets the next display() measure that its frame took so long.
    static void LetFrameTake(std::uint64_t nanoseconds) { fakes::desktop().nanoseconds += nanoseconds; }
};

TEST_F(DisplayTest, ClearsAndEntersTheCanvasBeforeItDraws) {
    display();

    EXPECT_TRUE(LogBeginsWith({
        "IsWindowSeen()",
        "MonotonicNanoseconds()",
        "RequestRefresh()",
        "glClearColor(0, 0, 0, 0)",
        "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)",
        "glLoadIdentity()",
        "glMatrixMode(GL_PROJECTION)",
        "glPushMatrix()",
        "glLoadIdentity()",
        "glOrtho(0, 512, 0, 512, -1, 1)",
        "glMatrixMode(GL_MODELVIEW)",
        "glPushMatrix()",
        "glLoadIdentity()",
        "glPushMatrix()",
        "glEnable(GL_TEXTURE_2D)",
        "glBindTexture(GL_TEXTURE_2D, " + std::to_string(background) + ")",
    }));
}

TEST_F(DisplayTest, LeavesTheCanvasPresentsMeasuresAndAsksForTheNextFrame) {
    display();

    EXPECT_TRUE(LogEndsWith({
        "glPopMatrix()",
        "glMatrixMode(GL_PROJECTION)",
        "glPopMatrix()",
        "glMatrixMode(GL_MODELVIEW)",
        "glPopMatrix()",
        "glFlush()",
        "glFinish()",
        "MonotonicNanoseconds()",
        "glutSwapBuffers()",
        "MonotonicNanoseconds()",
        "ProcessorNanoseconds()",
        "MonotonicNanoseconds()",
        "MonotonicNanoseconds()",
        "glutPostRedisplay()",
    }));
}

TEST_F(DisplayTest, LeavesAPanelAsItLeavesTheCharacter) {
    menu_case_id = kListScreen;

    display();

    EXPECT_TRUE(LogEndsWith({"glPopMatrix()", "glMatrixMode(GL_PROJECTION)", "glPopMatrix()",
                             "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()", "glFlush()", "glFinish()",
                             "MonotonicNanoseconds()", "glutSwapBuffers()", "MonotonicNanoseconds()",
                             "ProcessorNanoseconds()", "MonotonicNanoseconds()", "MonotonicNanoseconds()",
                             "glutPostRedisplay()"}));
}

TEST_F(DisplayTest, BalancesItsStacksOnEveryScreen) {
    for (menu_case_id = kOwlScreen; menu_case_id <= kQuizScreen; ++menu_case_id) {
        display();

        EXPECT_EQ(fakes::gl().modelview.size(), 1U) << "screen " << menu_case_id;
        EXPECT_EQ(fakes::gl().projection.size(), 1U) << "screen " << menu_case_id;
        EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW)) << "screen " << menu_case_id;
    }
}

TEST_F(DisplayTest, KeepsThePerspectiveBetweenFrames) {
    reshape(300, 300);
    const fakes::Mat4 perspective = fakes::gl().projection.back();

    display();

    EXPECT_EQ(fakes::gl().projection.back(), perspective);
}

TEST_F(DisplayTest, DrawsTheCanvasOverTheWholeWindowWhateverWasInTheModelView) {
    glTranslatef(5, 6, 0);

    display();

    EXPECT_EQ(fakes::Bounds(fakes::gl().DrawnWith(background).at(0)), (fakes::Rect{0, 0, 512, 512}));
    EXPECT_EQ(fakes::Bounds(fakes::gl().DrawnWith(tree).at(0)), (fakes::Rect{0, 0, 512, 512}));
}

TEST_F(DisplayTest, TakesTheLocalTimeOnceAFrame) {
    fakes::SetLocalTime(2013, 2, 28, 23, 59, 58);

    display();

    EXPECT_EQ(fakes::world().localtime_calls, 1);
    EXPECT_EQ(frame_time.tm_year, 113);
    EXPECT_EQ(frame_time.tm_mon, 1);
    EXPECT_EQ(frame_time.tm_mday, 28);
    EXPECT_EQ(frame_time.tm_hour, 23);
    EXPECT_EQ(frame_time.tm_min, 59);
    EXPECT_EQ(frame_time.tm_sec, 58);
}

TEST_F(DisplayTest, TakesTheLocalTimeAnewInEveryFrame) {
    fakes::SetLocalTime(2013, 2, 28, 23, 59, 59);
    display();
    fakes::world().now += 1;

    display();

    EXPECT_EQ(frame_time.tm_mon, 2);
    EXPECT_EQ(frame_time.tm_mday, 1);
    EXPECT_EQ(frame_time.tm_sec, 0);
}

TEST_F(DisplayTest, DrawsTheCharacterWhileNoPanelIsOpen) {
    display();

    EXPECT_EQ(fakes::gl().DrawnWith(tree).size(), 1U);
    for (const unsigned int panel : GUI) EXPECT_TRUE(fakes::gl().DrawnWith(panel).empty());
}

TEST_F(DisplayTest, DrawsThePictureOfTheOpenPanelOverTheWholeCanvasAndNoCharacter) {
    for (int panel = kListScreen; panel <= kQuizScreen; ++panel) {
        fakes::gl().primitives.clear();
        menu_case_id = panel;

        display();

        ASSERT_FALSE(fakes::gl().primitives.empty());
        EXPECT_EQ(fakes::gl().primitives[0].texture, GUI[panel]) << "panel " << panel;
        EXPECT_EQ(fakes::Bounds(fakes::gl().primitives[0]), (fakes::Rect{0, 0, 512, 512}));
        EXPECT_TRUE(Scene().empty());
    }
}

TEST_F(DisplayTest, DrawsThePanelPicturesOnceBeforeEverythingOnThem) {
    for (const int screen : {kListScreen, kEditorScreen, kViewScreen}) {
        events.clear();
        events.emplace_back();
        edit_event = &events.back();
        menu_case_id = screen;
        fakes::gl().primitives.clear();

        display();

        EXPECT_GT(fakes::gl().primitives.size(), 20U) << "screen " << screen;
        EXPECT_EQ(fakes::gl().primitives[0].texture, GUI[screen]);
        EXPECT_EQ(fakes::gl().primitives[0].color, (fakes::Rgba{1, 1, 1, 1}));
        EXPECT_EQ(fakes::gl().DrawnWith(GUI[screen]).size(), 1U) << "screen " << screen;
    }
}

TEST_F(DisplayTest, ShowsTheSamePictureForTheEditorAndTheView) {
    const PictureFolder pictures;
    LoadTextures();

    menu_case_id = kEditorScreen;
    display();
    menu_case_id = kViewScreen;
    display();

    EXPECT_EQ(fakes::gl().DrawnWith(GUI[kEditorScreen]).size(), 2U);
}

TEST_F(DisplayTest, OpeningAnyPanelDropsAQuizOffer) {
    for (menu_case_id = kListScreen; menu_case_id <= kQuizScreen; ++menu_case_id) {
        spawn_question = true;

        display();

        EXPECT_FALSE(spawn_question) << "panel " << menu_case_id;
    }
}

TEST_F(DisplayTest, TheCharacterScreenKeepsAQuizOffer) {
    spawn_question = true;

    display();

    EXPECT_TRUE(spawn_question);
}

TEST_F(DisplayTest, TheOwlsTimersStandStillWhileAPanelIsOpen) {
    display();
    const CharacterState before = character;
    menu_case_id = kListScreen;

    for (int frame = 0; frame < 10; ++frame) {
        LetFrameTake(100'000'000);
        display();
    }

    EXPECT_EQ(character.bt, before.bt);
    EXPECT_EQ(character.sqt, before.sqt);
    EXPECT_EQ(character.cet, before.cet);
    EXPECT_EQ(character.ste, before.ste);
    EXPECT_EQ(character.swap_te, before.swap_te);
    EXPECT_EQ(fakes::desktop().pointer_calls, 1);
}

TEST_F(DisplayTest, AFramesDurationIsTheStepOfTheNextFrame) {
    LetFrameTake(125'000'000);
    display();
    EXPECT_EQ(global_time, 0.125F);
    EXPECT_EQ(character.bt, 0);

    display();

    EXPECT_EQ(character.bt, 0.125F);
    EXPECT_EQ(global_time, 0);
}

TEST_F(DisplayTest, AFrameOfAQuarterSecondCounts) {
    LetFrameTake(250'000'000);

    display();

    EXPECT_EQ(global_time, 0.25F);
}

TEST_F(DisplayTest, ALongerFrameCountsAsNothing) {
    LetFrameTake(250'000'030);

    display();

    EXPECT_EQ(global_time, 0);
}

TEST_F(DisplayTest, AfterAFrameOfThreeTenthsOfASecondNoTimerAdvances) {
    LetFrameTake(300'000'000);
    display();

    display();

    EXPECT_EQ(character.bt, 0);
    EXPECT_EQ(character.cet, 0);
    EXPECT_EQ(character.swap_te, 0);
}

TEST_F(DisplayTest, ClearsTheFlagsThatLastOneFrame) {
    single_touch = true;
    touch_event = true;
    key_state[GLUT_KEY_F1] = key_state[255] = true;

    display();

    EXPECT_FALSE(single_touch);
    EXPECT_TRUE(touch_event);  // nothing reads it, so nothing clears it
    EXPECT_TRUE(
        std::none_of(std::begin(key_state), std::end(key_state), [](bool pressed) { return pressed; }));
}

TEST_F(DisplayTest, KeepsThePointersPlace) {
    mouse(12, 34);

    display();

    EXPECT_EQ(touch_coord_x, 12);
    EXPECT_EQ(touch_coord_y, 34);
}

TEST_F(DisplayTest, AsksForTheNextFrameOnce) {
    display();

    EXPECT_EQ(fakes::glut().redisplays, 1);
    EXPECT_EQ(fakes::glut().swaps, 1);
}

TEST_F(DisplayTest, AsksTheWindowSystemForEachNumberAtMostOnceAFrame) {
    display();

    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_X], 1);
    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_Y], 1);
    EXPECT_LE(fakes::glut().get_calls[GLUT_WINDOW_WIDTH], 1);
    EXPECT_LE(fakes::glut().get_calls[GLUT_WINDOW_HEIGHT], 1);
    EXPECT_EQ(fakes::desktop().pointer_calls, 1);
}

TEST_F(DisplayTest, KeepsTheWindowsSizeOverFrames) {
    EXPECT_EQ(WindowWidth() + WindowHeight(), 600);

    display();
    EXPECT_EQ(WindowWidth() + WindowHeight(), 600);

    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_WIDTH], 1);
    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_HEIGHT], 1);
}

TEST_F(DisplayTest, NoticesInTheNextFrameThatTheWindowHasMoved) {
    fakes::glut().get[GLUT_WINDOW_X] = 100;
    display();
    EXPECT_EQ(WindowX(), 100);
    fakes::glut().get[GLUT_WINDOW_X] = 700;

    display();

    EXPECT_EQ(WindowX(), 700);
    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_X], 2);
}

TEST_F(DisplayTest, AsksForTheRefreshBeforeItDrawsAndWaitsForItBeforeItSwaps) {
    fakes::desktop().tells_of_refreshes = true;

    display();

    EXPECT_EQ(fakes::Names({"RequestRefresh", "glClear", "glFlush", "glFinish", "AwaitRefresh",
                            "glutSwapBuffers", "glutPostRedisplay"}),
              (Calls{"RequestRefresh", "glClear", "glFlush", "glFinish", "AwaitRefresh", "glutSwapBuffers",
                     "glutPostRedisplay"}));
}

TEST_F(DisplayTest, MeasuresTheFrameAfterTheWaitForTheRefresh) {
    fakes::desktop().tells_of_refreshes = true;

    display();

    EXPECT_EQ(global_time, 0.016F);
}

TEST_F(DisplayTest, AFrameThatNobodySeesDoesAllStepsAndAsksTheWindowSystemNothing) {
    display();
    fakes::desktop().seen = false;
    LetFrameTake(50'000'000);
    single_touch = true;
    fakes::ClearLog();

    display();
    display();

    EXPECT_EQ(fakes::Count("glutGet") + fakes::Count("GlobalPointer") + fakes::Count("glutSwapBuffers"), 0U);
    EXPECT_NEAR(character.bt, 0.1, 1e-6);
    EXPECT_EQ(fakes::Count("glutPostRedisplay"), 2U);
    EXPECT_FALSE(single_touch);
}

TEST_F(DisplayTest, AFrameThatNobodySeesKeepsTheWindowsPlace) {
    display();
    fakes::glut().get[GLUT_WINDOW_X] = 700;
    fakes::desktop().seen = false;
    display();
    EXPECT_EQ(WindowX(), 100);

    fakes::desktop().seen = true;
    display();

    EXPECT_EQ(WindowX(), 700);
}

// ---- GetGlobalTime ----

class GlobalTimeTest : public AppTest {
  protected:
    /// Returns what GetGlobalTime stores when the clock shows `last` and then `now`.
    static float Measure(std::uint64_t last, std::uint64_t now) {
        SetLastClockReading(last);
        fakes::desktop().nanoseconds = now;
        float dt = -1;
        GetGlobalTime(dt);
        return dt;
    }
};

constexpr std::uint64_t kWrap = std::uint64_t{1} << 32U;

TEST_F(GlobalTimeTest, IsTheTimeSinceThePreviousCallInSeconds) {
    EXPECT_EQ(Measure(1'000'000'000, 1'016'000'000), 0.016F);
}

TEST_F(GlobalTimeTest, IsZeroWhenTheClockStoodStill) {
    EXPECT_EQ(Measure(5, 5), 0);
}

TEST_F(GlobalTimeTest, CountsSingleNanoseconds) {
    EXPECT_EQ(Measure(7, 8), 1e-9F);
}

TEST_F(GlobalTimeTest, DividesInDoublePrecision) {
    // In single precision this would come out as 0.10004986.
    EXPECT_EQ(Measure(0, 100'049'866), 0.100049866F);
}

TEST_F(GlobalTimeTest, GoesOnOverTheWrapOf32Bits) {
    EXPECT_EQ(Measure(kWrap - 1'000'000, kWrap + 3'000'000), 0.004F);
}

TEST_F(GlobalTimeTest, KeepsOnlyTheLow32Bits) {
    EXPECT_EQ(Measure(9 * kWrap, 12 * kWrap + 500'000'000), 0.5F);
}

TEST_F(GlobalTimeTest, IsRightUpToTheLargestSignedDifference) {
    EXPECT_EQ(Measure(100, 2'147'483'747), 2.147483647F);
}

TEST_F(GlobalTimeTest, IsZeroForALongerTimeThatLooksNegative) {
    EXPECT_EQ(Measure(100, 2'147'483'748), 0);
    EXPECT_EQ(Measure(0, 4'000'000'000), 0);
}

TEST_F(GlobalTimeTest, IsZeroWhenTheClockGoesBack) {
    EXPECT_EQ(Measure(1'000'000'000, 999'999'999), 0);
}

TEST_F(GlobalTimeTest, MeasuresFromThereAfterTheClockWentBack) {
    Measure(1'000'000'000, 400'000'000);
    fakes::desktop().nanoseconds = 500'000'000;

    float dt = -1;
    GetGlobalTime(dt);

    EXPECT_EQ(dt, 0.1F);
}

TEST_F(GlobalTimeTest, ReadsTheClockOnce) {
    float dt = 0;
    GetGlobalTime(dt);

    EXPECT_EQ(fakes::desktop().clock_calls, 1);
}

// ---- What is unsaved ----

/// A store that cannot be saved, because a folder has its name, until Mend().
class UnsavedTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        LoadEvents();  // of an empty folder
        std::filesystem::create_directory("database.bin");
        testing::internal::CaptureStderr();
        SaveEvents();
        fakes::ClearLog();
    }
    void TearDown() override {
        testing::internal::GetCapturedStderr();
        Mend();
        SaveEvents();  // nothing is unsaved in the next test
    }

    static void Mend() { std::filesystem::remove("database.bin"); }

    /// Draws a frame so many seconds after the last.
    static void FrameAfter(double seconds) {
        fakes::desktop().nanoseconds += static_cast<std::uint64_t>(seconds * 1e9);
        display();
    }

    static Calls Titles() { return fakes::Lines({"glutSetWindowTitle"}); }
};

TEST_F(UnsavedTest, TheTitleHasAnAsteriskFromTheNextFrameOn) {
    FrameAfter(0.02);
    FrameAfter(0.02);

    EXPECT_EQ(Titles(), (Calls{"glutSetWindowTitle(\"*Ulmaro Assistant\")"}));
}

TEST_F(UnsavedTest, TheSaveIsTriedAgainASecondLaterAndTheTitleIsAsBefore) {
    FrameAfter(0.02);
    Mend();
    FrameAfter(0.9);
    EXPECT_FALSE(std::filesystem::exists("database.bin"));

    FrameAfter(0.2);

    EXPECT_TRUE(std::filesystem::is_regular_file("database.bin"));
    EXPECT_EQ(Titles(), (Calls{"glutSetWindowTitle(\"*Ulmaro Assistant\")",
                               "glutSetWindowTitle(\"Ulmaro Assistant\")"}));
}

TEST_F(UnsavedTest, TheTitleStaysAsLongAsTheSaveFails) {
    for (int second = 0; second < 200; ++second) FrameAfter(1);

    EXPECT_EQ(Titles().size(), 1U);
}

TEST_F(DisplayTest, WithoutAFailedSaveTheTitleIsLeftAlone) {
    display();

    EXPECT_EQ(fakes::Count("glutSetWindowTitle"), 0U);
}

}  // namespace
