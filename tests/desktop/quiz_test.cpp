// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The quiz with a real pointer: asked for in the menu, taken by the bobbing button, answered, closed.
//
// Which question is asked is drawn at random, so it is read from the window and looked up in the bank.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "quiz/questions.h"
#include "tests/desktop/calendar.h"
#include "tests/desktop/fixture.h"
#include "tests/desktop/reading.h"
#include "tests/desktop/scene.h"

namespace desktop {
namespace {

/// What an answer's text looks like.
enum class Ink { kWhite, kGreen, kRed };

/// Returns a question's first line as it is read from the panel: the font has no È, whose two bytes stay
/// blank.
std::string FirstLine(const Question& entry) {
    std::string line = std::string(entry.question).substr(0, 44);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) > '~'; }, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

class TheQuiz : public OnDesktop {
  protected:
    void SetUp() override {
        Start start;
        start.clock = Clock::kInHand;
        start.longest_step = 240'000'000;
        program_ = &Run(start);
        program_->Resize({300, 200, 600, 600});
        questions.clear();
        GenQuestions();
    }

    Program& program() { return *program_; }

    void Click(CanvasPoint point) { program_->Click(point); }

    Image Look() {
        program_->MovePointer(kNowhere);
        return program_->Look();
    }

    bool ShowsOwl() { return Misfit(Look(), Picture("ic8"), {4.5, 215, 84.5, 295}) < 20; }
    /// Says whether the offer's button hangs in its thought bubble, at any height of their bobbing.
    bool ShowsOffer() {
        const Image image = Look();
        const RawPicture icon = Picture("ic6");
        double misfit = 255;
        for (double up = -3.5; up <= 3.5; up += 0.5) {
            misfit = std::min(misfit, Misfit(image, icon, {395, 400 + up, 475, 480 + up}));
        }
        return misfit < 15;
    }

    /// Asks for a question in the menu and takes the offer.
    void Open() {
        Click(kMenuAsk);
        EXPECT_TRUE(ShowsOffer());
        Click(kBell);
        EXPECT_FALSE(ShowsOwl());
    }

    void Pick(int answer) { Click(kAnswers.at(static_cast<std::size_t>(answer))); }

    /// Returns the entry of the bank that is asked: the only one that begins as the panel's first line does.
    const Question* Asked() {
        const std::string line = ReadText(Look(), {28, 420}, 44);
        const Question* found = nullptr;
        for (const Question& entry : questions) {
            if (FirstLine(entry) != line) continue;
            EXPECT_EQ(found, nullptr) << "two questions begin like this: " << line;
            found = &entry;
        }
        EXPECT_NE(found, nullptr) << "no question begins like this: " << line;
        return found;
    }

    /// Returns the colour of an answer's text: which of its channels are left where the ink is brightest.
    Ink InkOf(int answer) {
        const Image image = Look();
        Colour brightest = {};
        const CanvasPoint middle = kAnswers.at(static_cast<std::size_t>(answer));
        const auto sum = [](const Colour& c) { return int{c.r} + c.g + c.b; };
        const auto vivid = [](const Colour& c) { return std::max(c.r, c.g) > 215; };
        int red = 0;
        int green = 0;
        int white = 0;
        for (double y = middle.y - 12; y < middle.y + 12; y += 0.5) {
            for (double x = middle.x - 95; x < middle.x + 95; x += 0.5) {
                const Colour& c = image.AtCanvas({x, y});
                if (!vivid(c)) continue;
                if (sum(c) > sum(brightest)) brightest = c;
                white += c.r > 215 && c.g > 215 ? 1 : 0;
                red += c.r > 215 && c.g < 90 ? 1 : 0;
                green += c.g > 215 && c.r < 90 ? 1 : 0;
            }
        }
        if (white > red && white > green) return Ink::kWhite;
        return red > green ? Ink::kRed : Ink::kGreen;
    }

    /// Says whether the owl shuts its eyes for longer than it blinks, and is not asleep.
    bool Laughs() {
        for (int looks = 0; looks < 3; ++looks) {
            program_->LetTimePass(0.3);
            if (GazeIn(Look())) return false;
        }
        return scene_.BodyIn(Look()) == "stand_01_close_eyes";
    }

    /// Expects the four texts in these colours.
    void ExpectInks(const std::vector<Ink>& inks) {
        for (int i = 0; i < 4; ++i) EXPECT_EQ(InkOf(i), inks[static_cast<std::size_t>(i)]) << "answer " << i;
    }

  private:
    Program* program_ = nullptr;
    Scene scene_;
};

TEST_F(TheQuiz, AsksAQuestionOfTheBankAndShowsARightAnswerGreen) {
    Open();
    const Question* asked = Asked();
    ASSERT_NE(asked, nullptr);
    ExpectInks({Ink::kWhite, Ink::kWhite, Ink::kWhite, Ink::kWhite});

    Pick(asked->right_answer);

    std::vector<Ink> inks(4, Ink::kWhite);
    inks[static_cast<std::size_t>(asked->right_answer)] = Ink::kGreen;
    ExpectInks(inks);
    Click(kCorner);
    EXPECT_TRUE(ShowsOwl());
    EXPECT_FALSE(ShowsOffer());
    EXPECT_EQ(program().Said(), "");
}

TEST_F(TheQuiz, ShowsAWrongAnswerRedAndTheRightOneGreen) {
    Open();
    const Question* asked = Asked();
    ASSERT_NE(asked, nullptr);
    const int wrong = (asked->right_answer + 1) % 4;

    Pick(wrong);
    Pick((wrong + 1) % 4);  // the first pick is final

    std::vector<Ink> inks(4, Ink::kWhite);
    inks[static_cast<std::size_t>(asked->right_answer)] = Ink::kGreen;
    inks[static_cast<std::size_t>(wrong)] = Ink::kRed;
    ExpectInks(inks);
    Click(kCorner);
    EXPECT_TRUE(ShowsOwl());
}

TEST_F(TheQuiz, ClosesWithoutAnAnswerAndAsksAgain) {
    Open();
    Click(kCorner);
    EXPECT_TRUE(ShowsOwl());

    Open();
    EXPECT_NE(Asked(), nullptr);
    ExpectInks({Ink::kWhite, Ink::kWhite, Ink::kWhite, Ink::kWhite});
}

TEST_F(TheQuiz, AsksTheQuestionThatItDrawsFromTheFirstToTheLast) {
    for (const std::size_t draw : {std::size_t{0}, questions.size() / 2, questions.size() - 1}) {
        program().LoadDice(static_cast<int>(draw));
        Open();
        EXPECT_EQ(Asked(), &questions.at(draw));
        Click(kCorner);
        program().ReleaseDice();
    }
}

TEST_F(TheQuiz, MakesTheOwlLaughAtOneWrongAnswerInFour) {
    for (int draw = 0; draw < 4; ++draw) {
        program().LoadDice(draw);
        Open();
        const Question* asked = Asked();
        ASSERT_EQ(asked, &questions[static_cast<std::size_t>(draw)]);
        Pick((asked->right_answer + 1) % 4);
        Click(kCorner);
        program().ReleaseDice();

        EXPECT_EQ(Laughs(), draw == 0) << draw;
        program().LetTimePass(16);
        EXPECT_FALSE(Laughs()) << draw;
    }
}

TEST_F(TheQuiz, TakesItsOfferBackAfter20Seconds) {
    Click(kMenuAsk);
    program().LetTimePass(19);
    EXPECT_TRUE(ShowsOffer());

    program().LetTimePass(2);

    EXPECT_FALSE(ShowsOffer());
    EXPECT_TRUE(ShowsOwl());
    Click(kBell);
    EXPECT_TRUE(ShowsOwl()) << "a lapsed offer cannot be taken";
}

}  // namespace
}  // namespace desktop
