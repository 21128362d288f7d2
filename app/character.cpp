// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: frame data, timers (steps in the order of Render), drawing, Render.
#include "app/character.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdlib>

#include "app/desktop.h"
#include "app/input.h"
#include "app/menu.h"
#include "app/notifications.h"
#include "app/shell.h"
#include "app/textures.h"
#include "engine/MacEngine.h"
#include "engine/MotionBlur.h"
#include "engine/Sound.h"
#include "engine/vector3f.h"
#include "engine/window_metrics.h"

int anim = kStanding;
bool spawn_question = false;
bool spawn_laugh = false;
CharacterState character;

namespace {

/// The owl's frame on the canvas: the middle of its pictures, canvas units.
const vector3f kOwlOrigin(271, 265, 0);

/// Added to a point of the owl's frame to get the point that eyes and waking go by. Meant to be 4 units right
/// of the owl's origin.
const vector3f kPointerOrigin(275, 265, 0);

// Where the eyes look from, canvas units.
const vector3f kLeftEye(237.28F, 392.248F, 0);
const vector3f kRightEye(287.52F, 389.804F, 0);

constexpr float kPictureEdge = 500;  ///< the owl's pictures are drawn this large, canvas units
constexpr float kHatHeight = 490;

/// The animation clock starts again after this many seconds, a whole number of periods of all that swings by
/// it. So nothing jumps, and the clock keeps its resolution however long the program runs.
constexpr float kAnimationClockSeconds = 628.31853F;

/// What one frame of the owl works out for itself.
struct OwlFrame {
    vector3f pointer;           ///< the pointer, canvas units, also outside the canvas
    float bob = 0;              ///< how far breathing raises the owl's head, canvas units
    vector3f left, right;       ///< the pupils' offsets from rest, canvas units
    bool eyes_centred = false;  ///< the owl looks straight ahead
};

// ---- Timers ----

void DrawFirstDelays() {
    if (character.drawn_delays) return;
    character.drawn_delays = true;
    character.next_sq = rand_intvf(900, 1800, 1);
    character.next_ce = rand_intvf(1.5F, 6, 10);
    character.next_st = rand_intvf(5, 15, 10);
    character.next_std = rand_intvf(3, 8, 10);
    character.next_swap = rand_intvf(20, 60, 10);
}

/// Returns the desktop's pointer on the canvas. The owl's frame must be the current one.
vector3f PointerOnCanvas() {
    const ScreenPoint screen = GlobalPointer();
    return GetOGLPos(screen.x - WindowX(), screen.y - WindowY()) + kPointerOrigin;
}

float Breathe() {
    character.bt += global_time;
    if (character.bt > kAnimationClockSeconds) character.bt -= kAnimationClockSeconds;
    return 3 * std::sin(2 * character.bt);
}

/// Returns the pupil's offset for an eye that looks at the pointer. Offsets up to 4 units long are used as
/// they are, longer ones become exactly 5 long: the jump is meant.
vector3f EyeOffset(const vector3f& pointer, const vector3f& eye, float bob) {
    vector3f offset = pointer - (eye + vector3f(0, bob, 0));
    if (offset.length() <= 4) return offset;
    offset.normalize();
    return offset * 5.0F;
}

/// Offers a quiz every 15 to 30 minutes. Asleep the timer goes on, and the offer comes with the waking.
void TickQuizOffer() {
    character.sqt += global_time;
    if (spawn_question) character.sqt = 0;
    if (character.sqt <= character.next_sq || anim == kSleeping) return;
    character.next_sq = rand_intvf(900, 1800, 1);
    spawn_question = true;
    character.sqt = 0;
}

void Blink() {
    character.cet += global_time;
    if (character.cet > character.next_ce) {
        character.next_ce = rand_intvf(1.5F, 6, 10);
        character.close_eyes = true;
        character.cet = 0;
    }
    if (!character.close_eyes) return;
    character.cst += global_time;
    if (character.cst <= 0.1F) return;
    character.close_eyes = false;
    character.cst = 0;
}

/// Lets the owl look straight ahead for some seconds now and then.
void Stare(OwlFrame& frame) {
    character.ste += global_time;
    if (character.ste <= character.next_st) return;
    frame.eyes_centred = true;
    if (character.ste <= character.next_st + character.next_std) return;
    character.next_st = rand_intvf(5, 15, 10);
    character.next_std = rand_intvf(3, 8, 10);
    character.ste = 0;
}

/// Returns how long the owl stays in a pose it has just taken, seconds.
float TimeInPose(int pose) {
    if (pose == kPerching) return rand_intvf(10, 20, 10);
    if (pose == kSleeping) return rand_intvf(30, 60, 10);
    return rand_intvf(20, 60, 10);
}

int AnotherPose() {
    int pose = anim;
    while (pose == anim) pose = std::rand() % 3;
    return pose;
}

void ChangePose() {
    character.swap_te += global_time;
    if (character.swap_te <= character.next_swap) return;
    character.swap_te = 0;
    if (anim == kSleeping) {
        character.sleep_state = 3;
        character.next_swap = TimeInPose(kStanding);
        return;
    }
    anim = AnotherPose();
    character.next_swap = TimeInPose(anim);
}

/// With the pointer over the canvas the owl stands and follows it with its eyes, or wakes up.
void MeetPointer(OwlFrame& frame) {
    const vector3f& p = frame.pointer;
    if (!(0 < p.x && p.x < 512 && 0 < p.y && p.y < 512)) return;
    frame.eyes_centred = false;
    if (anim == kSleeping) {
        character.sleep_state = 3;
    } else {
        anim = kStanding;
    }
}

/// Walks the sleep's stages, a second each: falling asleep 0 and 1, asleep 2 (holds until something wakes
/// it), waking 3. A stage that has begun is not begun again by waking.
void Sleep() {
    if (anim != kSleeping) return;
    if (character.sleep_state == 2) {
        character.close_eyes = true;
        return;
    }
    character.te += global_time;
    if (character.te <= 1.0F) return;
    character.te = 0;
    character.sleep_state += 1;
    if (character.sleep_state <= 2) return;
    character.sleep_state = 0;
    anim = kStanding;
}

void StartLaugh() {
    if (!spawn_laugh) return;
    spawn_laugh = false;
    if (enable_sfx) AudioEngine.spawn_static(0, "laugh.wav", false);
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
    if (character.lte <= 15.5F) return;
    character.laugh = false;
    character.lte = 0;
}

/// Makes the owl look at its user when it has something to say; it stops laughing.
void PayAttention(OwlFrame& frame) {
    if (!new_notify && !spawn_question) return;
    anim = kStanding;
    frame.eyes_centred = true;
    character.laugh = false;
    character.lte = 0;
}

/// An offer that is not taken within 20 seconds disappears.
void EndQuizOffer() {
    if (!spawn_question) {
        character.sqte = 0;
        return;
    }
    character.sqte += global_time;
    if (character.sqte <= 20) return;
    spawn_question = false;
    character.sqte = 0;
}

// ---- Drawing ----

void DrawBackground() {
    glBindTexture(GL_TEXTURE_2D, background);
    RenderOnViewport();
}

void BeginSprites() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
}

void EndSprites() {
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

void DrawTree() {
    glBindTexture(GL_TEXTURE_2D, tree);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(0, 0);
    glTexCoord2f(1, 0);
    glVertex2f(512, 0);
    glTexCoord2f(1, 1);
    glVertex2f(512, 512);
    glTexCoord2f(0, 1);
    glVertex2f(0, 512);
    glEnd();
}

void EnterOwlFrame() {
    glPushMatrix();
    glTranslatef(kOwlOrigin.x, kOwlOrigin.y, kOwlOrigin.z);
}

/// Draws a picture as DrawRect does, with its middle at a point of the current frame.
void DrawRectAt(unsigned int texture, float x, float y, float w, float h) {
    glPushMatrix();
    glTranslatef(x, y, 0);
    glBindTexture(GL_TEXTURE_2D, texture);
    DrawRect(w, h, 0);
    glPopMatrix();
}

void DrawOwl(const OwlFrame& frame) {
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
    if (!new_notify && !spawn_question) return;
    const float bt = character.bt;
    const float swell = 5 * std::sin(8 * bt);
    DrawRectAt(cloud, 164, 175 + 3.5F * std::sin(4 * bt), 150 + swell, 150 - swell);
    DrawRectAt(circle, 74, 165 + 3.5F * std::sin(4 * bt), 30, 30);
    DrawRectAt(circle, 47.5F, 161 + 3 * std::sin(4 * bt + 1), 15, 15);
    DrawRectAt(circle, 33, 154 + 2.5F * std::sin(4 * bt + 2), 10, 10);
}

/// Draws the z's of a sleeping owl.
void DrawSleep() {
    if (anim == kSleeping && character.sleep_state == 2) {
        sleep_fx.render(36, 130, 0, 50, global_time);
    } else {
        sleep_fx.reset();
    }
}

/// Draws the smoke out of the hat as long as an offer stands, five times as fast as real time, and sounds the
/// offer once.
void DrawSmoke() {
    if (!spawn_question) {
        smoke_fx.reset();
        character.play_sfx = false;
        return;
    }
    smoke_fx.render(-8, 185, 0, 45, 5 * global_time);
    if (character.play_sfx) return;
    if (enable_sfx) AudioEngine.spawn_static(0, "question.wav", false);
    character.play_sfx = true;
}

}  // namespace

void StopLaughing() {
    character.laugh = false;
    character.bt = 0;
    character.lte = 0;
}

// ---- Render ----

void Render() {
    OwlFrame frame;
    DrawFirstDelays();

    DrawBackground();
    BeginSprites();
    DrawTree();
    EnterOwlFrame();

    frame.pointer = PointerOnCanvas();
    frame.bob = Breathe();
    frame.left = EyeOffset(frame.pointer, kLeftEye, frame.bob);
    frame.right = EyeOffset(frame.pointer, kRightEye, frame.bob);
    TickQuizOffer();
    Blink();
    Stare(frame);
    ChangePose();
    MeetPointer(frame);
    Sleep();
    StartLaugh();
    Laugh(frame);
    PayAttention(frame);
    if (frame.eyes_centred) frame.left = frame.right = vector3f();

    DrawOwl(frame);
    DrawEyes(frame);
    DrawHat(frame);
    DrawThoughtBubble();
    ActionMenu();
    Notifications();

    DrawSleep();
    DrawSmoke();
    EndQuizOffer();
    glPopMatrix();
    EndSprites();
}
