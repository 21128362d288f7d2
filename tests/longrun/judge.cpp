// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/longrun/judge.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace longrun {

namespace {

constexpr std::uint32_t kPoses = kStands | kPerches | kSleeps;

/// Laughter, 15.5 s long, keeps the owl standing after a click; then its poses are its own again.
constexpr double kCalmAfterSeconds = 20;

/// Rounding of sums in single precision, seconds.
constexpr double kRounding = 0.05;

constexpr std::size_t kMostComplaints = 20;

/// Returns the minutes of a calendar whose months all have 31 days.
double Minutes(double day, double month, double year, double hour, double minute) {
    return minute + 60 * (hour + 24 * (day + 31 * (month + 12 * year)));
}

bool IsReminderDue(int repeat, float waited) {
    switch (repeat) {
        case 0:
            return waited > 3600;
        case 1:
            return waited > 7200;
        case 2:
            return waited >= 10800;
        default:
            return false;
    }
}

/// Returns whether an appointment or a weekly event is due.
bool IsDatedDue(const desktop::Record& event, const std::tm& now) {
    if (event.done != 0) return false;
    if (event.kind == desktop::kWeekly && event.wday != now.tm_wday) return false;
    const bool weekly = event.kind == desktop::kWeekly;
    const int day = weekly ? now.tm_mday : event.day;
    const int month = weekly ? now.tm_mon + 1 : event.month;
    const int year = weekly ? now.tm_year + 1900 : event.year;
    const double left = Minutes(day, month, year, event.hour, event.minute) -
                        Minutes(now.tm_mday, now.tm_mon + 1, now.tm_year + 1900, now.tm_hour, now.tm_min);
    return left <= 0 || (left <= 30 && event.warned_30 == 0) || (left <= 60 && event.warned_60 == 0);
}

}  // namespace

/// Returns how long a reminder that the store has has waited by now. What it is known to have waited is more
/// exact than the store's float, and is so where the two agree.
double Judge::Waited(const desktop::Record& reminder) const {
    constexpr double kRoundingOfFloat = 0.001;
    const double waited = static_cast<double>(reminder.elapsed) + since_saved_;
    const auto known = std::find_if(events_.begin(), events_.end(), [&](const Watched& event) {
        return event.record.kind == desktop::kReminder && std::abs(event.waited - waited) < kRoundingOfFloat;
    });
    return known == events_.end() ? waited : known->waited;
}

void Judge::SetEvents(const std::vector<desktop::Record>& events) {
    std::vector<Watched> watched;
    watched.reserve(events.size());
    for (const desktop::Record& record : events) {
        watched.push_back({record, record.kind == desktop::kReminder ? Waited(record) : 0});
    }
    events_ = std::move(watched);
}

bool Judge::IsDue(const Watched& event) const {
    if (event.record.kind != desktop::kReminder) return IsDatedDue(event.record, wall_);
    return IsReminderDue(event.record.repeat, static_cast<float>(event.waited));
}

void Judge::Complain(const std::string& text) {
    char when[64];
    std::snprintf(when, sizeof when, "frame %llu, %.2f s: ", static_cast<unsigned long long>(seen_.frames),
                  seen_.seconds);
    if (complaints_.size() < kMostComplaints) complaints_.push_back(when + text);
}

void Judge::Expect(bool holds, const std::string& text, double number) {
    if (!holds) Complain(text + ": " + std::to_string(number));
}

void Judge::Restart() {
    const std::tm wall = wall_;
    const Figures seen = seen_;
    const std::vector<std::string> complaints = complaints_;
    *this = Judge(step_);
    wall_ = wall;
    seen_ = seen;
    complaints_ = complaints;
}

namespace {

/// Returns by how many seconds the timers go on when the clock has gone on by so many nanoseconds.
float FrameSeconds(std::int64_t passed) {
    constexpr float kStall = 0.25F;
    const auto known = static_cast<std::int32_t>(static_cast<std::uint32_t>(passed));
    const auto seconds = static_cast<float>(known / 1'000'000'000.0);
    return seconds < 0 || seconds > kStall ? 0 : seconds;
}

}  // namespace

void Judge::Follow(const FrameRecord& record) {
    const float dt = FrameSeconds(last_clock_ < 0 ? 0 : record.clock - last_clock_);
    const std::uint32_t marks = record.marks;
    last_clock_ = record.clock;
    ++seen_.frames;
    seen_.seconds += dt;
    if ((marks & kSaved) != 0) since_saved_ = 0;
    if ((marks & kQuizSound) != 0) ++seen_.quiz_sounds;
    if ((marks & kLaughSound) != 0) ++seen_.laughs;
    if ((marks & (kOwlScreen | kListScreen | kEventScreen | kQuizScreen)) == 0)
        Complain("a frame shows no screen");
    if ((marks & kOwlScreen) != 0) {
        seen_.owl_seconds += dt;
        FollowOffers(dt, marks);
        FollowNotices(dt, marks);
        FollowPoses(dt, marks);
        FollowWaking(dt, marks);
        FollowLetters(dt, marks);
    } else {
        calm_ = 0;
        offer_ = 0;
        waking_ = 0;
        no_letters_ = 0;
        pose_timed_ = false;
        Expect((marks & (kLetters | kSmoke)) == 0, "an effect is drawn without the owl, marks", marks);
    }
    last_ = marks;
}

/// The hat is drawn before the menu is asked and the button after it. So the first frame of an offer that
/// came by itself shows both, that of an offer from the menu the button alone.
void Judge::FollowOffers(float dt, std::uint32_t marks) {
    const bool stands = (marks & kOfferButton) != 0;
    const bool hat = (marks & kHat) != 0;
    const bool begins = stands && ((last_ & kOfferButton) == 0 || !hat);
    no_offer_ += dt;
    if (begins && hat) {
        ++seen_.offers;
        seen_.offer_gaps += no_offer_;
        Expect(no_offer_ > 900 - kRounding, "an offer came too soon, seconds", no_offer_);
    }
    if (begins && !hat) ++seen_.asked_offers;
    if ((marks & kOfferSound) != 0) {
        ++seen_.offer_sounds;
        Expect(begins, "an offer sounded that did not begin", no_offer_);
    }
    if (hat) {
        Expect((marks & kStands) != 0, "an owl with a hat does not stand", no_offer_);
        no_offer_ = 0;
    }
    const bool awake = (last_ & kSleeps) == 0;
    Expect(no_offer_ <= 1800 + step_ + kRounding || !awake, "no offer came, seconds", no_offer_);

    const bool ended = !stands && (last_ & kOfferButton) != 0;
    if (ended && (last_ & kOwlScreen) != 0) {
        Expect(offer_ > 20 - kRounding, "an offer ended too soon, seconds", offer_);
    }
    Expect(((marks & kSmoke) != 0) == stands,
           "smoke is drawn (1) or missing (0) otherwise than the offer says", (marks & kSmoke) != 0 ? 1 : 0);
    offer_ = stands ? (begins ? 0 : offer_) + dt : 0;
    Expect(offer_ <= 20 + step_ + kRounding, "an offer stands too long, seconds", offer_);
}

void Judge::FollowNotices(float dt, std::uint32_t marks) {
    bool due = false;
    since_saved_ += dt;
    for (Watched& event : events_) {
        event.waited += dt;
        due = due || IsDue(event);
    }
    const bool badge = (marks & kBadge) != 0;
    // In frames that take no time the user clicks and the clock on the wall is set.
    if (dt > 0 && store_holds_)
        Expect(badge == due, "a badge is shown (1) or missing (0) otherwise than the events say", badge);

    constexpr float kLongAgo = 999;
    const bool sounds = (marks & kNoticeSound) != 0;
    if (!badge) {
        sound_ = kLongAgo;
        Expect(!sounds, "a notice sounds without a badge", 0);
        return;
    }
    if (sound_ == kLongAgo) ++seen_.notices;
    seen_.badge_seconds += dt;
    sound_ += dt;
    Expect(sounds == (sound_ > 35), "a notice sounds too soon or not at all, seconds since the last", sound_);
    if (!sounds) return;
    ++seen_.notice_sounds;
    sound_ = 0;
}

void Judge::FollowPoses(float dt, std::uint32_t marks) {
    const std::uint32_t pose = marks & kPoses;
    const std::uint32_t before = last_ & kPoses;
    if (pose != kStands && pose != kPerches && pose != kSleeps) {
        Complain("not exactly one pose is shown");
        return;
    }
    const bool bubble = (marks & kBubble) != 0;
    if (pointer_inside_ || bubble) {
        calm_ = 0;
        pose_timed_ = false;
    } else {
        calm_ += dt;
        seen_.calm_seconds += dt;
    }
    pose_ += dt;
    if (pose == kSleeps && before != kSleeps) ++seen_.sleeps;
    if (last_pose_ == kSleeps && pose != kSleeps) sleep_unfinished_ = before == 0;  // laughter ended it
    if (bubble) sleep_unfinished_ = true;
    last_pose_ = pose;
    const bool calm = calm_ > kCalmAfterSeconds;
    if (pose != before && before != 0) {
        if (calm) EndPose(before, pose);
        pose_ = 0;
        pose_timed_ = calm;
        after_sleep_ = before == kSleeps;
        if (calm && pose == kSleeps) ++seen_.calm_sleeps;
        if (pose == kSleeps && sleep_unfinished_) pose_timed_ = false;
    }
    if (!pose_timed_) return;
    // The rest of a sleep may pass before it is drawn: then the owl seems to stand on.
    if (pose == kStands && sleep_unfinished_) return;
    const double longest = pose == kPerches ? 20 : pose == kStands ? 60 : 61 + step_;
    Expect(pose_ <= longest + step_ + kRounding, "a pose lasts too long, seconds", pose_);
}

void Judge::EndPose(std::uint32_t pose, std::uint32_t next) {
    if (pose != kSleeps && (after_sleep_ || pose_timed_)) {
        ++seen_.chances;
        if (next == kSleeps) ++seen_.chances_taken;
    }
    if (!pose_timed_) return;
    ++seen_.timed_poses;
    // The second of waking ends up to a step early where a stage was already under way.
    const double waking = 1 + step_;
    double shortest = pose == kPerches ? 10 : pose == kStands ? 20 : 30;
    if (pose == kStands && after_sleep_) shortest -= waking;
    Expect(pose_ > shortest - kRounding, "a pose ended too soon, seconds", pose_);
    if (pose == kSleeps) Expect(next == kStands, "a sleep does not end standing", next);
}

void Judge::FollowWaking(float dt, std::uint32_t marks) {
    const bool asleep = (marks & kSleeps) != 0;
    if (!asleep && waking_ > 0) ++seen_.pointer_wakings;
    waking_ = asleep && pointer_inside_ ? waking_ + dt : 0;
    Expect(waking_ <= 1 + step_ + kRounding, "the owl sleeps on under the pointer, seconds", waking_);
}

/// The stages of falling asleep and of waking are a second each and end up to a step late. However they are
/// cut short and gone on with, no sleep has more than two of them in a row.
void Judge::FollowLetters(float dt, std::uint32_t marks) {
    const bool asleep = (marks & kSleeps) != 0;
    const bool letters = (marks & kLetters) != 0;
    if (letters && (last_ & kLetters) == 0) ++seen_.letters;
    Expect(!letters || asleep, "an owl that is awake has letters", no_letters_);
    no_letters_ = asleep && !letters ? no_letters_ + dt : 0;
    Expect(no_letters_ <= 2 * (1 + step_) + kRounding, "a sleep without letters, seconds", no_letters_);
    if (!asleep || !pose_timed_) return;
    // The first frame of falling asleep has taken a step already.
    const bool still_dozing = pose_ < 2 - step_ - kRounding;
    Expect(!letters || !still_dozing, "letters come too soon, seconds asleep", pose_);
    const bool surely_asleep = pose_ > 2 * (1 + step_) + kRounding && pose_ < 30 - kRounding;
    Expect(letters || !surely_asleep, "letters are missing, seconds asleep", pose_);
}

void Judge::Conclude() {
    // Waits are drawn evenly from 900 to 1800 s: 1350 s in the mean, 260 s of standard deviation. Waiting for
    // an owl that sleeps adds at most 62 s. Waits that an asked offer or the run's end cut off are missing,
    // the longer the sooner, which shortens the mean; so it has only an upper bound, five deviations away.
    if (seen_.offers > 0) {
        const double mean = seen_.offer_gaps / seen_.offers;
        Expect(mean < 1350 + 62 + 5 * 260 / std::sqrt(seen_.offers), "mean wait for an offer, seconds", mean);
    }
    const double even = 0.5 * seen_.chances;
    Expect(std::abs(seen_.chances_taken - even) <= 5 * 0.5 * std::sqrt(seen_.chances) + 0.5,
           "sleep's share of the poses is not even: " + std::to_string(seen_.chances) + " chances, taken",
           seen_.chances_taken);
}

}  // namespace longrun
