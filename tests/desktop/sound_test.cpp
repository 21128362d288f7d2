// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What the program plays, heard in the recording of its OpenAL. The clock on the wall goes, since OpenAL
// plays by it; the owl's own is in the test's hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "quiz/questions.h"
#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"
#include "tests/desktop/sound.h"

namespace desktop {
namespace {

using Sounds = std::vector<std::string>;

constexpr CanvasPoint kMenuSound = {44.5, 45};

/// Returns an event that was due long ago.
Record Late() {
    Record late;
    late.day = late.month = 1;
    late.year = 2020;
    return late;
}

class TheSound : public OnDesktop {
  protected:
    void SetUp() override {
        questions.clear();
        GenQuestions();
    }

    /// Starts the program with these events, its clock in hand.
    void Begin(const std::vector<Record>& records = {}) {
        Start start;
        start.clock = Clock::kInHand;
        start.spoilt[kStoreFile] = StoreBytes(records);
        recorder_.Record(start);
        program_ = &Run(start);
    }

    Program& program() { return *program_; }

    /// Returns the sounds played since the last call, after time for one to be heard.
    Sounds Heard() {
        recorder_.Wait(2.1);
        const Waveform played = recorder_.Played();
        const Sounds sounds = SoundsIn(played, heard_);
        heard_ = static_cast<double>(played.size()) / 44100;
        return sounds;
    }

    /// Does the same after an answer. The offer of its question sounds first where the clicks to it take
    /// long.
    Sounds HeardOfAnAnswer() {
        Sounds sounds = Heard();
        if (sounds.size() > 1 && sounds.front() == "question.wav") sounds.erase(sounds.begin());
        return sounds;
    }

    /// Returns the loudest sample of the last second played.
    float LoudestOfTheLastSecond() {
        const Waveform played = recorder_.Played();
        float loudest = 0;
        for (auto at = played.end() - 44100; at != played.end(); ++at)
            loudest = std::max(loudest, std::fabs(*at));
        return loudest;
    }

    /// Asks for the bank's first question and gives that answer; the verdict's draw is `draw`.
    void Answer(int answer, int draw) {
        program_->Click(kMenuAsk);
        program_->LoadDice(0);
        program_->Click(kBell);
        program_->LoadDice(draw);
        program_->Click(kAnswers.at(static_cast<std::size_t>(answer)));
        program_->Click(kCorner);
        program_->ReleaseDice();
    }

  private:
    Recorder recorder_;
    Program* program_ = nullptr;
    double heard_ = 0;  ///< seconds of the recording
};

TEST_F(TheSound, IsSilentAtFirst) {
    Begin();

    EXPECT_EQ(Heard(), Sounds());
}

TEST_F(TheSound, OffersAQuestion) {
    Begin();

    program().Click(kMenuAsk);

    EXPECT_EQ(Heard(), (Sounds{"question.wav"}));
}

TEST_F(TheSound, IsGladOfARightAnswer) {
    Begin();
    program().Click(kMenuAsk);
    Heard();

    Answer(questions[0].right_answer, 0);

    EXPECT_EQ(HeardOfAnAnswer(), (Sounds{"right.wav"}));
}

TEST_F(TheSound, LaughsOrIsDisappointedByAWrongAnswer) {
    Begin();
    program().Click(kMenuAsk);
    Heard();
    const Sounds expected = {"laugh.wav", "wrong_1.wav", "wrong_2.wav", "wrong_3.wav"};
    for (int draw = 0; draw < 4; ++draw) {
        Answer((questions[0].right_answer + 1) % 4, draw);

        EXPECT_EQ(HeardOfAnAnswer(), Sounds{expected[static_cast<std::size_t>(draw)]});
    }
}

TEST_F(TheSound, CallsForADueEventAtOnceAndAfter35Seconds) {
    Begin({Late()});
    EXPECT_EQ(Heard(), (Sounds{"notify.wav"}));

    program().LetTimePass(34);
    EXPECT_EQ(Heard(), Sounds());
    program().LetTimePass(1.5);
    EXPECT_EQ(Heard(), (Sounds{"notify.wav"}));
}

TEST_F(TheSound, CallsForADueEventAlsoWhenItIsSwitchedOff) {
    Begin({Late()});
    Heard();
    program().Click(kMenuSound);

    program().LetTimePass(36);

    EXPECT_EQ(Heard(), (Sounds{"notify.wav"}));
}

TEST_F(TheSound, SwitchedOffLetsOffersVerdictsAndLaughsBeSilent) {
    Begin();
    program().Click(kMenuSound);

    program().Click(kMenuAsk);
    EXPECT_EQ(Heard(), Sounds());
    Answer(questions[0].right_answer, 0);
    EXPECT_EQ(Heard(), Sounds());
    for (const int draw : {0, 1}) {
        Answer((questions[0].right_answer + 1) % 4, draw);
        EXPECT_EQ(Heard(), Sounds()) << draw;
    }
}

TEST_F(TheSound, StopsWhenItIsSwitchedOff) {
    Begin();
    program().Click(kMenuAsk);
    Answer((questions[0].right_answer + 1) % 4, 0);
    EXPECT_EQ(Heard().back(), "laugh.wav");  // of the question as much as came before the quiz was opened

    program().Click(kMenuSound);
    Heard();

    EXPECT_EQ(LoudestOfTheLastSecond(), 0);
}

// ---- Rest ----

/// A program on OpenAL's null device, which wakes it as often as a sound card does.
class TheSoundsRest : public OnDesktop {
  protected:
    /// Returns how often the threads beside the main one were woken in two seconds, a second.
    static double Wakeups(Program& program) {
        const long before = Switches(program);
        const double start = Now();
        SleepSeconds(2);
        return static_cast<double>(Switches(program) - before) / (Now() - start);
    }

  private:
    static long Switches(Program& program) {
        const std::string process = std::to_string(program.Child().Id());
        long sum = 0;
        for (const auto& task : std::filesystem::directory_iterator("/proc/" + process + "/task")) {
            if (task.path().filename() == process) continue;
            std::ifstream status(task.path() / "status");
            for (std::string word; status >> word;) {
                long count = 0;
                if (word == "voluntary_ctxt_switches:" && status >> count) sum += count;
            }
        }
        return sum;
    }
};

TEST_F(TheSoundsRest, WakesNobodyFromTwoSecondsAfterTheLastSoundOn) {
    Start start;
    start.environment["ALSOFT_DRIVERS"] = "null";
    start.environment["LP_NUM_THREADS"] = "0";  // no threads of the software GL
    start.clock = Clock::kInHand;
    Program& program = Run(start);
    EXPECT_GT(Wakeups(program), 20) << "awake: time stands still";

    program.LetTimePass(2.5);

    EXPECT_LT(Wakeups(program), 5);
}

// ---- The end ----

/// The end of a program that plays on OpenAL's null device.
class TheSoundsEnd : public OnDesktop {
  protected:
    /// Returns a start with an event that is due: "notify.wav" is played at once.
    static Start WithNotice() {
        Start start;
        start.environment["ALSOFT_DRIVERS"] = "null";
        start.spoilt[kStoreFile] = StoreBytes({Late()});
        return start;
    }
};

TEST_F(TheSoundsEnd, IsTheProgramsWithoutAWordWhereASoundIsMissing) {
    Start start = WithNotice();
    start.missing = {"notify.wav"};
    start.wait_for_window = false;
    Program& program = Run(start);

    EXPECT_EQ(program.Child().WaitForEnd(10), 1);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheSoundsEnd, IsTheProgramsWithoutAWordWhereAPipeIsInASoundsPlace) {
    Start start = WithNotice();
    start.pipes = {"notify.wav"};
    start.wait_for_window = false;
    Program& program = Run(start);

    EXPECT_EQ(program.Child().WaitForEnd(10), 1);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheSoundsEnd, ComesWithoutAWordWhenTheWindowIsClosedWhileASoundIsPlayed) {
    Program& program = Run(WithNotice());

    program.Close();

    EXPECT_EQ(program.Child().WaitForEnd(10), 0);
    EXPECT_EQ(program.Said(), "");
}

TEST_F(TheSoundsEnd, ComesWithoutAWordWhenTheWindowIsClosedAndThereIsNoDevice) {
    Start start = WithNotice();
    start.environment["ALSOFT_DRIVERS"] = "none";
    Program& program = Run(start);

    program.Close();

    EXPECT_EQ(program.Child().WaitForEnd(10), 0);
    EXPECT_EQ(program.Said(), "");
}

}  // namespace
}  // namespace desktop
