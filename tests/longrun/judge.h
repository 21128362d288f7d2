// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The judge of a long run: follows the program frame by frame and says where its timers did otherwise than
// they should.
//
// It goes by the witness's marks, by the records of the store and by the clock on the wall, and by no code of
// the program. Every bound is derived from the timers, which go by the frames of the owl's screen alone:
//
// - Offers. The next offer comes 900 to 1800 s after the end of the last, whether it came by itself or was
//   asked for; asleep it waits for the waking. An offer stands for 20 s. It smokes from its first frame on.
// - Notices. A reminder is due once the steps of its frames have come to 3600, 7200 or 10800 s. The program
//   shows the float that is nearest to their exact sum, and so the very frame is known, also after days.
//   Where it has saved, the store holds that float. An appointment is due from its minute on,
//   and 60 and 30 minutes before until these notices were given; a weekly event the same on its day. While
//   anything is due there is a badge, and never otherwise. The notice sounds at once and then every 35 s.
// - Poses, while nobody disturbs the owl. It perches for 10 to 20 s. It stands for 20 to 60 s; after a sleep
//   the second of waking is part of these. It sleeps for 30 to 60 s and the waking. Out of standing comes
//   sleep or perching with even chances, likewise sleep or standing out of perching.
//   A sleep that a bubble or laughter cuts short, also before it was ever drawn, is gone on with by the next,
//   be it at its waking; such a sleep is not timed.
// - Waking. With the pointer over the window the owl wakes within a second.
// - Letters. They show in a sleep's every frame but those of falling asleep, two stages of a second each, and
//   those of waking, another second. An owl that is awake has none.
//
// A frame may end each of these up to one step late. A frame of more than a quarter of a second is a stall,
// such as a machine's sleep, and advances no timer; the program knows the length of a frame in 32 bits of
// nanoseconds with a sign, so that ten hours are a stall too or nothing at all.
//
// Whatever happens around the program, these bounds hold: hidden, at any size of the window, whatever the
// clock on the wall does. A program that was killed and started again begins anew. What is not saved yet,
// because the disk is full, is not in the store that the judge reads; meanwhile it does not judge what is
// due.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "tests/desktop/calendar.h"
#include "tests/longrun/witness.h"

namespace longrun {

/// What a run has seen.
struct Figures {
    std::uint64_t frames = 0;
    double seconds = 0;       ///< of the program's clock
    double owl_seconds = 0;   ///< of them on the owl's screen
    double calm_seconds = 0;  ///< of them undisturbed
    int offers = 0;           ///< that came by themselves
    int asked_offers = 0;     ///< from the menu
    double offer_gaps = 0;    ///< sum of the waits for offers that came by themselves, seconds
    int offer_sounds = 0;
    int notices = 0;  ///< times that a badge appeared
    double badge_seconds = 0;
    int notice_sounds = 0;
    int laughs = 0;  ///< that were heard
    int quiz_sounds = 0;
    int sleeps = 0;       ///< begun
    int calm_sleeps = 0;  ///< of them begun undisturbed
    int letters = 0;      ///< times that letters appeared
    int pointer_wakings = 0;
    int timed_poses = 0;    ///< whose duration was checked
    int chances = 0;        ///< ends of poses undisturbed, out of which sleep could come
    int chances_taken = 0;  ///< of them with sleep
};

class Judge {
  public:
    /// Takes the longest step of the program's clock, seconds.
    explicit Judge(double step) : step_(step) {}

    /// Takes the events as the store has had them since the last frame that was marked as saved.
    void SetEvents(const std::vector<desktop::Record>& events);

    /// Takes the local time that the clock on the wall shows from now on.
    void SetWallClock(const std::tm& time) { wall_ = time; }

    /// Takes whether the pointer is over the canvas from now on, well inside or well outside.
    void SetPointer(bool inside) { pointer_inside_ = inside; }

    /// Takes that the user has clicked something: the owl's poses are disturbed for some time.
    void Disturb() { calm_ = 0; }

    /// Takes that the program was started again: all its timers begin anew.
    void Restart();

    /// Takes whether the store holds the events that the program has.
    void TrustStore(bool holds) { store_holds_ = holds; }

    /// Takes something else that went wrong.
    void Complain(const std::string& text);

    /// Follows one frame.
    void Follow(const FrameRecord& record);

    /// Checks what only the whole run tells.
    void Conclude();

    const Figures& Seen() const { return seen_; }

    /// Returns what was wrong, one line each; the first of them only.
    const std::vector<std::string>& Complaints() const { return complaints_; }

  private:
    /// An event of the store, and for a reminder how long it has waited.
    struct Watched {
        desktop::Record record;
        double waited = 0;  ///< the exact sum of its frames' steps, seconds
    };

    double Waited(const desktop::Record& reminder) const;
    bool IsDue(const Watched& event) const;
    void FollowOffers(float dt, std::uint32_t marks);
    void FollowNotices(float dt, std::uint32_t marks);
    void FollowPoses(float dt, std::uint32_t marks);
    void FollowWaking(float dt, std::uint32_t marks);
    void FollowLetters(float dt, std::uint32_t marks);
    void EndPose(std::uint32_t pose, std::uint32_t next);
    void Expect(bool holds, const std::string& text, double number);

    double step_;
    std::vector<Watched> events_;
    double since_saved_ = 0;  ///< owl's seconds since the last save
    std::tm wall_ = {};
    bool pointer_inside_ = false;
    bool store_holds_ = true;
    Figures seen_;
    std::vector<std::string> complaints_;
    std::int64_t last_clock_ = -1;
    std::uint32_t last_ = 0;       ///< the marks of the frame before
    std::uint32_t last_pose_ = 0;  ///< in the owl's last frame, also before another screen

    double no_offer_ = 0;            ///< owl's seconds since the last offer
    double offer_ = 0;               ///< seconds that the offer has stood
    float sound_ = 999;              ///< seconds since the notice's last sound
    double calm_ = 0;                ///< undisturbed owl's seconds so far
    double pose_ = 0;                ///< seconds in the pose
    bool pose_timed_ = false;        ///< its beginning was seen undisturbed
    bool after_sleep_ = false;       ///< the pose followed a sleep
    bool sleep_unfinished_ = false;  ///< a sleep may have been cut short before its waking
    double waking_ = 0;              ///< seconds asleep with the pointer over the window
    double no_letters_ = 0;          ///< seconds asleep without letters so far
};

}  // namespace longrun
