// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What goes wrong around the program in a long run, one thing after the other: its window is hidden or gets
// another size, clocks jump, the machine sleeps, the disk is full, the sound device dies, the program is
// killed. Each of them leaves the run as it found it and says by the judge what was not as it should be.
#pragma once

#include <string>
#include <vector>

#include "tests/longrun/course.h"

namespace longrun {

class Faults {
  public:
    /// Spreads the faults evenly over a run of so many seconds; each kind comes once before any comes again.
    /// The program is killed in the first hour alone, because its memory is judged from then on.
    Faults(Course& course, double seconds);

    /// Lets the next fault happen if its time has come.
    void HappenIfDue();

    /// Returns how many have happened.
    int Count() const { return count_; }

    /// Returns what the program must have said of them.
    const std::string& Sayings() const { return sayings_; }

    /// Returns the names of the kinds that have not happened at all.
    std::vector<std::string> Missing() const;

  private:
    struct Kind {
        const char* name;
        void (Faults::*happen)();
        int times = 0;
    };

    void Hide();
    void OtherSizes();
    void SpringNight();
    void AutumnNight();
    void WallAhead();
    void WallBack();
    void Suspend();
    void FullDisk();
    void LostDevice();
    void KillAndStartAgain();

    void DealWithAll();
    std::string GetReadyToSave();
    bool DiesAtCall(int call);
    void StartAgain(const std::string& old_store);
    void LookAgain();
    std::int64_t AvoidMidnight();
    void MeetInAnHour();
    void Night(std::int64_t change);
    void Expect(bool holds, const std::string& text);
    std::string Store() const;
    std::string Offer();

    Course& course_;
    double period_;
    double next_;
    int count_ = 0;
    std::string sayings_;
    std::vector<Kind> kinds_;
    std::size_t turn_ = 0;
    const char* happening_ = "";
};

}  // namespace longrun
