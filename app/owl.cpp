// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: how often and how long, timers (steps in the order of AdvanceOwl), drawing, the offer.
#include "app/owl.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdlib>

#include "app/desktop.h"
#include "app/input.h"
#include "app/sounds.h"
#include "app/state.h"
#include "app/textures.h"
#include "app/window.h"
#include "engine/canvas.h"
#include "engine/compensated_sum.h"
#include "engine/random.h"
#include "engine/screen.h"
#include "engine/window_metrics.h"

int anim = kStanding;
bool spawn_question = false;
bool spawn_laugh = false;
CharacterState character;

namespace {

// ---- How often and how long ----

/// A range that delays are chosen from, on a grid: seconds, steps a second.
struct DelayRange {
    float shortest, longest, steps;
};

constexpr DelayRange kOfferDelay = {900, 1800, 1};          ///< from one quiz offer to the next
constexpr DelayRange kBlinkDelay = {1.5F, 6, 10};           ///< from one blink to the next
constexpr DelayRange kStareDelay = {5, 15, 10};             ///< before the owl looks straight ahead
constexpr DelayRange kStareLength = {3, 8, 10};             ///< how long that look lasts
constexpr DelayRange kTimeInPose[kPoses] = {{20, 60, 10},   ///< kStanding
                                            {10, 20, 10},   ///< kPerching
                                            {30, 60, 10}};  ///< kSleeping
constexpr float kBlinkSeconds = 0.1F;
constexpr float kSleepStageSeconds = 1;
constexpr float kLaughSeconds = 15.5F;
constexpr float kOfferSeconds = 20;

/// The animation clock starts again after this many seconds, a whole number of periods of all that swings by
/// it. So nothing jumps, and the clock keeps its resolution however long the program runs.
constexpr float kAnimationClockSeconds = 628.31853F;

// ---- Where (canvas units) ----

/// Turns a point of the owl's frame into the canvas point that eyes and waking go by. Deliberate: it lies 4
/// units to the right of the owl's origin.
const vector3f kPointerOrigin(275, 265, 0);

// Where the eyes look from.
const vector3f kLeftEye(237.28F, 392.248F, 0);
const vector3f kRightEye(287.52F, 389.804F, 0);

constexpr float kNearOffset = 4;  ///< a pointer within this distance of the eye is where the pupil goes
constexpr float kFarOffset = 5;   ///< how far the pupil goes for a pointer farther away

constexpr float kPictureEdge = 500;  ///< the owl's pictures are drawn this large
constexpr float kHatHeight = 490;

// ---- Timers ----

float ChooseDelay(const DelayRange& range) {
    return rand_intvf(range.shortest, range.longest, range.steps);
}

void ChooseFirstDelays() {
    if (character.has_delays) return;
    character.has_delays = true;
    character.next_sq = ChooseDelay(kOfferDelay);
    character.next_ce = ChooseDelay(kBlinkDelay);
    character.next_st = ChooseDelay(kStareDelay);
    character.next_std = ChooseDelay(kStareLength);
    character.next_swap = ChooseDelay(kTimeInPose[kStanding]);
}

/// Returns the desktop's pointer on the canvas. The owl's frame must be the current one. In a frame that
/// nobody sees the pointer counts as where it was.
vector3f PointerOnCanvas() {
    static ScreenPoint screen;
    const ScreenPoint before = screen;
    if (!IsFrameHidden()) screen = GlobalPointer();
    if (screen.x != before.x || screen.y != before.y) NoteActivity();
    return GetOGLPos(screen.x - WindowX(), screen.y - WindowY()) + kPointerOrigin;
}

float Breathe() {
    character.bt += global_time;
    if (character.bt > kAnimationClockSeconds) character.bt -= kAnimationClockSeconds;
    return 3 * std::sin(2 * character.bt);
}

/// Returns the pupil's offset for an eye that looks at the pointer. Deliberate: a pointer farther away than
/// the near offset moves the pupil by the far one, so it jumps from 4 to 5.
vector3f EyeOffset(const vector3f& pointer, const vector3f& eye, float bob) {
    vector3f offset = pointer - (eye + vector3f(0, bob, 0));
    if (offset.length() <= kNearOffset) return offset;
    offset.normalize();
    return offset * kFarOffset;
}

void RestartOfferTimer() {
    character.sqt = 0;
    character.sqt_lost = 0;
}

/// Offers a quiz now and then. Asleep the timer goes on, and the offer comes with the waking.
void TickOffer() {
    AddCompensated(character.sqt, character.sqt_lost, global_time);
    if (spawn_question) RestartOfferTimer();
    if (character.sqt <= character.next_sq || anim == kSleeping) return;
    character.next_sq = ChooseDelay(kOfferDelay);
    spawn_question = true;
    RestartOfferTimer();
}

void Blink() {
    character.cet += global_time;
    if (character.cet > character.next_ce) {
        character.next_ce = ChooseDelay(kBlinkDelay);
        character.close_eyes = true;
        character.cet = 0;
    }
    if (!character.close_eyes) return;
    character.cst += global_time;
    if (character.cst <= kBlinkSeconds) return;
    character.close_eyes = false;
    character.cst = 0;
}

/// Lets the owl look straight ahead for some seconds now and then.
void Stare(OwlFrame& frame) {
    character.ste += global_time;
    if (character.ste <= character.next_st) return;
    frame.eyes_centred = true;
    if (character.ste <= character.next_st + character.next_std) return;
    character.next_st = ChooseDelay(kStareDelay);
    character.next_std = ChooseDelay(kStareLength);
    character.ste = 0;
}

int AnotherPose() {
    int pose = anim;
    while (pose == anim) pose = std::rand() % kPoses;
    return pose;
}

void ChangePose() {
    character.swap_te += global_time;
    if (character.swap_te <= character.next_swap) return;
    character.swap_te = 0;
    if (anim == kSleeping) {
        character.sleep_state = kWaking;
        character.next_swap = ChooseDelay(kTimeInPose[kStanding]);
        return;
    }
    anim = AnotherPose();
    character.next_swap = ChooseDelay(kTimeInPose[anim]);
}

/// With the pointer over the canvas the owl stands and follows it with its eyes, or wakes up.
void MeetPointer(OwlFrame& frame) {
    const vector3f& p = frame.pointer;
    if (!(0 < p.x && p.x < kCanvasEdge && 0 < p.y && p.y < kCanvasEdge)) return;
    frame.eyes_centred = false;
    if (anim == kSleeping) {
        character.sleep_state = kWaking;
    } else {
        anim = kStanding;
    }
}

/// Walks through the stages of a sleep. kAsleep holds until something wakes the owl; the other stages last a
/// second each.
/// Deliberate: waking does not restart the second. An owl that is woken while it dozes or nods stands up when
/// the second that had begun is over.
void Sleep() {
    if (anim != kSleeping) return;
    if (character.sleep_state == kAsleep) {
        character.close_eyes = true;
        return;
    }
    character.te += global_time;
    if (character.te <= kSleepStageSeconds) return;
    character.te = 0;
    character.sleep_state += 1;
    if (character.sleep_state <= kAsleep) return;
    character.sleep_state = kDozing;
    anim = kStanding;
}

void StartLaugh() {
    if (!spawn_laugh) return;
    spawn_laugh = false;
    PlayEffect("laugh.wav");
    character.laugh = true;
    character.lte = 0;
    character.bt = 0;
}

/// Shakes the owl with laughter, slower and slower.
void Laugh(OwlFrame& frame) {
    if (!character.laugh) return;
    anim = kStanding;
    frame.eyes_centred = true;
    character.close_eyes = true;
    character.lte += global_time;
    frame.bob += 10 * std::sin(30 * character.bt / (1 + 0.025F * character.lte));
    if (character.lte <= kLaughSeconds) return;
    character.laugh = false;
    character.lte = 0;
}

/// Returns whether the owl has something to say.
bool WantsAttention() {
    return new_notify || spawn_question;
}

/// Makes the owl look at its user when it has something to say; it stops laughing.
void PayAttention(OwlFrame& frame) {
    if (!WantsAttention()) return;
    anim = kStanding;
    frame.eyes_centred = true;
    character.laugh = false;
    character.lte = 0;
}

// ---- Drawing ----

/// Draws a picture as DrawRect does, with its middle at a point of the current frame.
void DrawRectAt(unsigned int texture, float x, float y, float w, float h) {
    glPushMatrix();
    glTranslatef(x, y, 0);
    glBindTexture(GL_TEXTURE_2D, texture);
    DrawRect(w, h, 0);
    glPopMatrix();
}

void DrawBody(const OwlFrame& frame) {
    const unsigned int* pictures = character.close_eyes ? owl_ce : owl;
    glBindTexture(GL_TEXTURE_2D, pictures[anim]);
    DrawRect(kPictureEdge, kPictureEdge, frame.bob);
}

/// Draws the pupils of an owl that stands with open eyes; the other pictures have theirs painted in.
void DrawEyes(const OwlFrame& frame) {
    if (character.close_eyes || anim != kStanding) return;
    DrawRectAt(eye_l, frame.left.x, frame.left.y + frame.bob, kPictureEdge, kPictureEdge);
    DrawRectAt(eye_r, frame.right.x, frame.right.y + frame.bob, kPictureEdge, kPictureEdge);
}

void DrawHat(const OwlFrame& frame) {
    if (!spawn_question) return;
    glBindTexture(GL_TEXTURE_2D, hat);
    DrawRect(kPictureEdge, kHatHeight, frame.bob);
}

/// Draws the thought bubble, which swells sideways while it shrinks in height, and three dots trailing to the
/// owl.
void DrawThoughtBubble() {
    if (!WantsAttention()) return;
    const float bt = character.bt;
    const float swell = 5 * std::sin(8 * bt);
    DrawRectAt(cloud, 164, 175 + ThoughtBob(), 150 + swell, 150 - swell);
    DrawRectAt(circle, 74, 165 + ThoughtBob(), 30, 30);
    DrawRectAt(circle, 47.5F, 161 + 3 * std::sin(4 * bt + 1), 15, 15);
    DrawRectAt(circle, 33, 154 + 2.5F * std::sin(4 * bt + 2), 10, 10);
}

}  // namespace

void EnterOwlFrame() {
    glPushMatrix();
    glTranslatef(kOwlX, kOwlY, 0);
}

void LeaveOwlFrame() {
    glPopMatrix();
}

OwlFrame AdvanceOwl() {
    OwlFrame frame;
    ChooseFirstDelays();
    frame.pointer = PointerOnCanvas();
    frame.bob = Breathe();
    frame.left = EyeOffset(frame.pointer, kLeftEye, frame.bob);
    frame.right = EyeOffset(frame.pointer, kRightEye, frame.bob);
    TickOffer();
    Blink();
    Stare(frame);
    ChangePose();
    MeetPointer(frame);
    Sleep();
    StartLaugh();
    Laugh(frame);
    PayAttention(frame);
    if (frame.eyes_centred) frame.left = frame.right = vector3f();
    return frame;
}

void DrawOwl(const OwlFrame& frame) {
    DrawBody(frame);
    DrawEyes(frame);
    DrawHat(frame);
    DrawThoughtBubble();
}

float ThoughtBob() {
    return 3.5F * std::sin(4 * character.bt);
}

// ---- The offer ----

void SoundOffer() {
    if (!spawn_question) {
        character.play_sfx = false;
        return;
    }
    if (character.play_sfx) return;
    PlayEffect("question.wav");
    character.play_sfx = true;
}

void EndOffer() {
    if (!spawn_question) {
        character.sqte = 0;
        return;
    }
    character.sqte += global_time;
    if (character.sqte <= kOfferSeconds) return;
    spawn_question = false;
    character.sqte = 0;
}

void StopLaughing() {
    character.laugh = false;
    character.bt = 0;
    character.lte = 0;
}
