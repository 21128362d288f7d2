// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/shell.h"

#include <GL/freeglut.h>

#include <cstdint>

#include "app/attention.h"
#include "app/character.h"
#include "app/desktop.h"
#include "app/double_click.h"
#include "app/input.h"
#include "app/owl.h"
#include "app/particles.h"
#include "app/sounds.h"
#include "app/textures.h"
#include "app/typing.h"
#include "app/window.h"
#include "calendar/editor.h"
#include "calendar/list.h"
#include "calendar/store.h"
#include "engine/MotionBlur.h"
#include "engine/canvas.h"
#include "engine/local_time.h"
#include "engine/window_metrics.h"
#include "quiz/dialog.h"
#include "quiz/questions.h"

namespace {

/// A longer frame was a stall; the frame after it advances no timer.
constexpr float kLongestFrameSeconds = 0.25F;

void ClearFrame() {
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

/// Enters the canvas from an untouched model-view matrix.
void BeginCanvas() {
    glLoadIdentity();
    EnterCanvas();
    glEnable(GL_TEXTURE_2D);
}

/// Draws the panel picture of the open screen. A waiting quiz offer is dropped as soon as a panel is open.
void DrawPanel() {
    glBindTexture(GL_TEXTURE_2D, GUI[menu_case_id]);
    spawn_question = false;
    RenderOnViewport();
}

bool DrawList() {
    EventList();
    return true;
}

bool DrawQuiz() {
    QuizDialog();
    return true;
}

/// The panel screens, indexed by Screen. Each draws one frame of itself and returns false where the frame
/// must be drawn again from the top.
constexpr bool (*kDrawPanelScreen[kPanelScreens])() = {
    DrawList,     // kListScreen
    EventEditor,  // kEditorScreen
    EventEditor,  // kViewScreen
    DrawQuiz,     // kQuizScreen
};

/// Draws the open screen. Returns false where the frame must be drawn again from the top.
bool DrawScreen() {
    if (menu_case_id <= kOwlScreen) {
        Render();
        return true;
    }
    DrawPanel();
    return kDrawPanelScreen[menu_case_id]();
}

/// Draws a whole frame. Returns false where it must be drawn again at once, for the screen that follows.
bool DrawFrame() {
    frame_time = LocalTime();
    DeliverTyping(EditorRoom());
    DropSecondPress();
    const int screen = menu_case_id;
    ClearFrame();
    BeginCanvas();
    const bool finished = DrawScreen();
    LeaveCanvas();
    if (menu_case_id != screen) NotePressChangedScreen(MonotonicNanoseconds());
    return finished;
}

void AdvanceClock() {
    GetGlobalTime(global_time);
    if (global_time > kLongestFrameSeconds) global_time = 0;
}

/// Tries again to save what a save that failed has left, and shows by the window's title that something is
/// unsaved.
void KeepSaving() {
    if (EventsAreUnsaved()) RetrySave(MonotonicNanoseconds());
    ShowUnsaved(EventsAreUnsaved());
}

}  // namespace

void init() {
    glShadeModel(GL_SMOOTH);
    glClearColor(0.5F, 0.5F, 0.5F, 1.0F);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    glEnable(GL_TEXTURE_2D);
    LoadTextures();
    LoadParticles();
    GenQuestions();
    LoadEvents();
    SetFrame(display);
}

void display() {
    WatchFrames();
    ListenToTyping();
    ListenToLeaving();
    BeginFrame();
    if (!IsFrameHidden()) ForgetWindowPlace();
    while (!DrawFrame()) {
    }
    PresentFrame();
    AdvanceClock();
    ResetFrameInput();
    RestSoundWhenQuiet(window.last_frame);
    KeepSaving();
    KeepAttention();
    glutPostRedisplay();
}

void GetGlobalTime(float& dt) {
    static std::uint32_t last = 0;
    const auto now = static_cast<std::uint32_t>(MonotonicNanoseconds());
    const auto elapsed = static_cast<std::int32_t>(now - last);
    dt = static_cast<float>(elapsed / 1'000'000'000.0);
    if (dt < 0) dt = 0;
    last = now;
}
