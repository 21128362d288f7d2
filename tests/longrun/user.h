// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The user of a long run: away for minutes, then back at the desk for a minute or two of looking around and
// clicking, wherever chance says.
#pragma once

#include <random>
#include <string>
#include <utility>

#include "tests/desktop/desktop.h"
#include "tests/longrun/judge.h"

namespace longrun {

/// The frames that the program has drawn since the last look, shown to a judge.
class Follower {
  public:
    Follower(desktop::Program& program, Judge& judge, std::string witness_file)
        : program_(program), judge_(judge), file_(std::move(witness_file)) {}

    /// Follows the frames so far, then reads the store.
    void CatchUp();

    /// Returns the marks of the last whole frame.
    std::uint32_t Marks() const { return last_.marks; }

    /// Returns the size of the last whole frame's viewport, pixels.
    int Width() const { return last_.width; }
    int Height() const { return last_.height; }

    /// Returns the marks of all frames since the last call.
    std::uint32_t TakeMarks() { return std::exchange(all_marks_, 0); }

    /// Takes that the program was started again: it takes every reminder for due.
    void Restart() { store_.clear(); }

    /// Returns the number of events in the store.
    std::size_t Events() const { return events_; }

    /// Returns how often the store was found changed.
    int Saves() const { return saves_; }

  private:
    desktop::Program& program_;
    Judge& judge_;
    std::string file_;
    long read_ = 0;
    FrameRecord last_;
    std::uint32_t all_marks_ = 0;  ///< since TakeMarks()
    std::string store_;
    std::size_t events_ = 0;
    int saves_ = 0;
};

class User {
  public:
    User(desktop::Desktop& desk, desktop::Program& program, Judge& judge, Follower& follower,
         unsigned int seed)
        : desk_(desk), program_(program), judge_(judge), follower_(follower), dice_(seed) {}

    /// Lets the user do as it likes for a moment; then some time must pass. Returns how much, seconds.
    double Act();

    /// Lets the user open every screen and answer some questions, until the owl has most likely laughed.
    void TryEverything();

    /// Sends the user back to the owl's screen and away from the window, with nothing due and no sound left.
    void Settle();

    /// Closes screens until the owl is back.
    void GoHome();

    /// Opens and closes what is due, for as long as something is.
    void Acknowledge();

    /// Points at some place of the window.
    void Wander();

    /// Points at some place beside the window.
    void Leave();

    /// Clicks a place of the window.
    void Click(desktop::CanvasPoint point);

    /// Returns a number between two, by the user's dice.
    double Chance(double from, double to) { return std::uniform_real_distribution(from, to)(dice_); }

    long Clicks() const { return clicks_; }

  private:
    void ClickSomething();
    void Tidy();

    desktop::Desktop& desk_;
    desktop::Program& program_;
    Judge& judge_;
    Follower& follower_;
    std::mt19937 dice_;
    double present_ = 0;  ///< seconds that the user stays, 0 while away
    double away_ = 60;    ///< seconds that the user stays away
    long clicks_ = 0;
};

}  // namespace longrun
