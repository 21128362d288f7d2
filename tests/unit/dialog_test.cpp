// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: opening from the notification button, what is drawn, picking, colours, closing, the verdict.
#include "quiz/dialog.h"

#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "quiz/questions.h"
#include "tests/unit/calendar_fixture.h"

namespace {

using Places = std::vector<fakes::Rect>;
using Rgbas = std::vector<fakes::Rgba>;
using Texts = std::vector<std::string>;

constexpr fakes::Rgba kRed{1, 0, 0, 1};

struct Point {
    double x, y;
};
/// Buttons of the dialog; each draws a random number for itself in every frame.
constexpr int kButtons = 8;

constexpr Point kAnswerPlaces[] = {{138, 110}, {374, 110}, {138, 52}, {374, 52}};

/// A test of the dialog with a question whose answer 1 is right.
class DialogTest : public CalendarTest {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        questions.clear();
        questions.emplace_back("Quanto fa due piu' due?", "tre", "quattro", "cinque", "sei", 1);
        question_id = 0;
        menu_case_id = kQuizScreen;
    }

    void TearDown() override {
        questions.clear();
        CalendarTest::TearDown();
    }

    static void Pick(int answer) { ClickAt(kAnswerPlaces[answer].x, kAnswerPlaces[answer].y); }
    static void Close() { ClickAt(485, 486); }

    /// Closes the dialog with that draw for the verdict; each of the four buttons before it draws once.
    static void CloseWithDraw(int draw) {
        fakes::world().rand_values = {0, 0, 0, 0, draw};
        fakes::world().rand_calls = 0;
        Close();
    }

    /// Returns the places of the answers drawn with that texture, the tabs left out.
    static Places AnswersDrawn(unsigned int texture) {
        Places places = ButtonsDrawn(texture);
        std::erase_if(places, [](const fakes::Rect& place) { return place.top > 400; });
        return places;
    }

    static fakes::Rect AnswerPlace(int answer) {
        return Around(kAnswerPlaces[answer].x, kAnswerPlaces[answer].y, 105, 20);
    }

    /// Returns the colours of the four answers' texts in the next frame.
    static Rgbas TextColours() {
        Frame();
        Rgbas colours;
        for (const PrintedLine& line : PrintedText()) {
            if (line.y < 400) colours.push_back(line.color);
        }
        return colours;
    }

    /// Returns which answer is picked: the one on the plate of a chosen tab.
    static int Picked() {
        Frame();
        const Places chosen = AnswersDrawn(button[kChecked]);
        for (int i = 0; i < 4; ++i) {
            if (chosen == Places{AnswerPlace(i)}) return i;
        }
        EXPECT_TRUE(chosen.empty());
        return kNoAnswer;
    }
};

// ---- Opening ----

TEST_F(DialogTest, OpensByAClickOnTheButtonOfAnOffer) {
    menu_case_id = kOwlScreen;
    spawn_question = true;
    character.laugh = true;
    character.bt = character.lte = 3;
    fakes::world().rand_default = 0;

    ClickAt(435, 440);

    EXPECT_EQ(menu_case_id, kQuizScreen);
    EXPECT_EQ(character.bt, 0);
    EXPECT_EQ(character.lte, 0);
    EXPECT_FALSE(character.laugh);
    EXPECT_EQ(ScreenShown(), kOwlScreen);
    Frame();
    EXPECT_EQ(ScreenShown(), kQuizScreen);
    EXPECT_FALSE(spawn_question);
}

TEST_F(DialogTest, DoesNotOpenWithoutAnOffer) {
    menu_case_id = kOwlScreen;

    ClickAt(435, 440);

    EXPECT_EQ(menu_case_id, kOwlScreen);
}

TEST_F(DialogTest, AsksTheQuestionOfTheRemainderOfTheDraw) {
    questions.clear();
    GenQuestions();
    struct Case {
        int draw;
        int id;
    };
    const Case cases[] = {{0, 0}, {107, 107}, {108, 0}, {1000, 28}, {INT_MAX, 2147483647 % 108}};
    for (const Case& row : cases) {
        fakes::world().rand_values = {row.draw};

        AskQuestion();

        EXPECT_EQ(question_id, row.id);
    }
}

TEST_F(DialogTest, MayAskTheSameQuestionTwiceInARow) {
    questions.emplace_back("E tre?", "1", "2", "3", "4", 2);
    fakes::world().rand_values = {1, 1};

    AskQuestion();
    AskQuestion();

    EXPECT_EQ(question_id, 1);
}

TEST_F(DialogTest, DrawsOneRandomNumberPerOpening) {
    fakes::world().rand_default = 0;
    fakes::world().rand_calls = 0;

    AskQuestion();

    EXPECT_EQ(fakes::world().rand_calls, 1);
}

// ---- What is drawn ----

TEST_F(DialogTest, IsDrawnOnItsPanelPicture) {
    Frame();

    EXPECT_EQ(ButtonsDrawn(GUI[kQuizScreen]), (Places{{0, 0, 512, 512}}));
}

TEST_F(DialogTest, ShowsThreeTabsAsAHeaderThatDoesNotLightUp) {
    PointAt(87, 486);
    Frame();

    Places tabs = ButtonsDrawn(button[kUnchecked]);
    tabs.resize(3);
    EXPECT_EQ(tabs, (Places{Around(87, 486, 75.5, 15), Around(243.5, 486, 70.5, 15),
                            Around(391.5, 486, 67.75, 15)}));
    EXPECT_EQ(Colours(button[kUnchecked]), (Rgbas(7, kWhite)));
}

TEST_F(DialogTest, ShowsItsCloseButtonWhichLightsUp) {
    Frame();
    EXPECT_EQ(ButtonsDrawn(button_close), (Places{Around(485.12, 486, 15.5, 15)}));
    EXPECT_EQ(Colours(button_close), (Rgbas{kWhite}));

    PointAt(485, 486);
    Frame();
    EXPECT_EQ(Colours(button_close), (Rgbas{kYellow}));
}

TEST_F(DialogTest, ShowsFourAnswersInPairs) {
    Frame();

    EXPECT_EQ(AnswersDrawn(button[kUnchecked]),
              (Places{AnswerPlace(0), AnswerPlace(1), AnswerPlace(2), AnswerPlace(3)}));
    EXPECT_TRUE(AnswersDrawn(button[kChecked]).empty());
}

TEST_F(DialogTest, LightsUpTheAnswerUnderThePointerUntilOneIsPicked) {
    PointAt(374, 52);
    Frame();
    EXPECT_EQ(Colours(button[kUnchecked]), (Rgbas{kWhite, kWhite, kWhite, kWhite, kWhite, kWhite, kYellow}));

    quiz.user_answer = 0;
    PointAt(374, 52);
    Frame();
    EXPECT_EQ(Colours(button[kUnchecked]), (Rgbas(6, kWhite)));
    EXPECT_EQ(Colours(button[kChecked]), (Rgbas{kWhite}));
}

TEST_F(DialogTest, PrintsQuestionAndAnswersAtTheirPlaces) {
    Frame();

    const std::vector<PrintedLine> lines = PrintedText();
    ASSERT_EQ(Words(lines), (Texts{"Quanto fa due piu' due?", "tre", "quattro", "cinque", "sei"}));
    EXPECT_NEAR(lines[0].x, 28, 0.01);
    EXPECT_NEAR(lines[0].y, 420, 0.01);
    EXPECT_NEAR(lines[0].size, 10, 0.01);
    for (std::size_t i = 0; i < 4; ++i) {
        const PrintedLine& line = lines[i + 1];
        EXPECT_NEAR(line.centre_x, kAnswerPlaces[i].x, 0.01) << line;
        EXPECT_NEAR(line.y, i < 2 ? 101 : 43, 0.01) << line;
        EXPECT_NEAR(line.size, 8, 0.01) << line;
    }
}

TEST_F(DialogTest, WrapsALongQuestionAfter44And43Characters) {
    questions[0] = Question(std::string(118, 'x').c_str(), "a", "b", "c", "d", 0);
    Frame();

    const Texts words = Words(PrintedText());
    ASSERT_EQ(words.size(), 7);
    EXPECT_EQ(words[0], std::string(44, 'x'));
    EXPECT_EQ(words[1], std::string(43, 'x'));
    EXPECT_EQ(words[2], std::string(31, 'x'));
}

TEST_F(DialogTest, PrintsPercentSignsAsTheyAre) {
    questions[0] = Question("%n %s", "100%", "%d", "%%", "%s", 0);
    Frame();

    EXPECT_EQ(Words(PrintedText()), (Texts{"%n %s", "100%", "%d", "%%", "%s"}));
}

TEST_F(DialogTest, DrawsHeaderThenCloseButtonThenAnswersThenTexts) {
    Frame();

    std::vector<unsigned int> textures;
    for (const fakes::Primitive& drawn : fakes::gl().primitives) {
        if (textures.empty() || textures.back() != drawn.texture) textures.push_back(drawn.texture);
    }
    EXPECT_EQ(textures, (std::vector<unsigned int>{GUI[kQuizScreen], button[kUnchecked], button_close,
                                                   button[kUnchecked], font}));
}

// ---- Picking ----

TEST_F(DialogTest, AClickPicksAnAnswer) {
    for (int i = 0; i < 4; ++i) {
        quiz.user_answer = kNoAnswer;

        Pick(i);

        EXPECT_EQ(Picked(), i);
        EXPECT_EQ(quiz.user_answer, i);
    }
}

TEST_F(DialogTest, TheFirstPickIsFinal) {
    for (int first = 0; first < 4; ++first) {
        quiz.user_answer = first;

        for (int second = 0; second < 4; ++second) Pick(second);

        EXPECT_EQ(Picked(), first);
    }
}

TEST_F(DialogTest, AsksShowsAndJudgesTheQuestionOfItsIndex) {
    questions.emplace_back("E tre?", "uno", "due", "tre", "nove", 3);
    question_id = 1;
    Frame();
    EXPECT_EQ(Words(PrintedText()), (Texts{"E tre?", "uno", "due", "tre", "nove"}));

    quiz.user_answer = 3;
    EXPECT_EQ(TextColours(), (Rgbas{kWhite, kWhite, kWhite, kGreen}));
    CloseWithDraw(1);

    EXPECT_EQ(SoundsStarted(), (Texts{"right.wav"}));
    EXPECT_NE(AudioEngine.statics[0].source, 0U) << "verdicts play in slot 0";
}

TEST_F(DialogTest, AClickBetweenTheAnswersPicksNone) {
    ClickAt(256, 110);
    ClickAt(138, 81);

    EXPECT_EQ(Picked(), kNoAnswer);
}

TEST_F(DialogTest, AClickOnAPlatesEdgePicksNothing) {
    ClickAt(243, 110);
    ClickAt(138, 130);
    EXPECT_EQ(Picked(), kNoAnswer);

    ClickAt(242, 129);
    EXPECT_EQ(Picked(), 0);
}

// ---- Colours ----

TEST_F(DialogTest, AllAnswersAreWhiteUntilOneIsPicked) {
    EXPECT_EQ(TextColours(), (Rgbas(4, kWhite)));
}

TEST_F(DialogTest, ARightPickTurnsGreen) {
    quiz.user_answer = 1;

    EXPECT_EQ(TextColours(), (Rgbas{kWhite, kGreen, kWhite, kWhite}));
}

TEST_F(DialogTest, AWrongPickTurnsRedAndTheRightAnswerGreen) {
    const Rgbas expected[] = {
        {kRed, kGreen, kWhite, kWhite},
        {},
        {kWhite, kGreen, kRed, kWhite},
        {kWhite, kGreen, kWhite, kRed},
    };
    for (const int wrong : {0, 2, 3}) {
        quiz.user_answer = wrong;
        EXPECT_EQ(TextColours(), expected[wrong]);
    }
}

TEST_F(DialogTest, TheQuestionStaysWhiteAndSoDoesWhatFollowsTheAnswers) {
    quiz.user_answer = 3;
    Frame();

    EXPECT_EQ(PrintedText().at(0).color, kWhite);
    EXPECT_EQ(fakes::gl().color, kWhite);
}

// ---- Closing ----

TEST_F(DialogTest, ClosingLeadsBackToTheOwl) {
    Close();

    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_EQ(ScreenShown(), kQuizScreen) << "the frame is finished as the dialog's";
    Frame();
    EXPECT_EQ(ScreenShown(), kOwlScreen);
}

TEST_F(DialogTest, ClosingForgetsThePick) {
    fakes::world().rand_default = 1;
    quiz.user_answer = 0;
    Close();
    menu_case_id = kQuizScreen;

    EXPECT_EQ(Picked(), kNoAnswer);
    EXPECT_EQ(TextColours(), (Rgbas(4, kWhite)));
}

TEST_F(DialogTest, ClosingWithoutAPickJudgesNothing) {
    CloseWithDraw(0);

    EXPECT_EQ(menu_case_id, kOwlScreen);
    EXPECT_EQ(question_id, 0);
    EXPECT_FALSE(spawn_laugh);
    EXPECT_EQ(fakes::world().rand_calls, kButtons) << "the buttons' own draws";
}

TEST_F(DialogTest, TheNextOpeningDrawsANewQuestion) {
    questions.emplace_back("E tre?", "1", "2", "3", "4", 2);
    Close();
    Frame();
    spawn_question = true;
    fakes::world().rand_default = 1;

    ClickAt(435, 440);

    EXPECT_EQ(question_id, 1);
}

// ---- The verdict ----

TEST_F(DialogTest, OfFourDrawsAfterAWrongAnswerTheFirstMakesTheOwlLaugh) {
    for (int draw = 0; draw < 8; ++draw) {
        spawn_laugh = false;
        menu_case_id = kQuizScreen;
        quiz.user_answer = 0;

        CloseWithDraw(draw);

        EXPECT_EQ(spawn_laugh, draw % 4 == 0) << draw;
        EXPECT_EQ(fakes::world().rand_calls, kButtons + 1) << draw;
    }
}

TEST_F(DialogTest, TheLaughIsNotSubjectToTheSoundSwitch) {
    enable_sfx = false;
    quiz.user_answer = 0;

    CloseWithDraw(0);

    EXPECT_TRUE(spawn_laugh);
}

TEST_F(DialogTest, ARightAnswerMakesNoLaughAndDrawsNothing) {
    quiz.user_answer = 1;

    CloseWithDraw(0);

    EXPECT_FALSE(spawn_laugh);
    EXPECT_EQ(fakes::world().rand_calls, kButtons) << "the buttons' own draws";
}

TEST_F(DialogTest, OpeningStopsTheSoundThatPlays) {
    menu_case_id = kOwlScreen;
    spawn_question = true;
    fakes::world().rand_default = 0;
    Frame();
    EXPECT_EQ(SoundsPlaying(), 1U);

    ClickAt(435, 440);

    EXPECT_EQ(SoundsPlaying(), 0U);
}

TEST_F(DialogTest, ARightAnswerSoundsRight) {
    quiz.user_answer = 1;

    CloseWithDraw(0);

    EXPECT_EQ(SoundsStarted(), (Texts{"right.wav"}));
}

TEST_F(DialogTest, OfFourDrawsAfterAWrongAnswerThreeHaveASoundEach) {
    const Texts expected[] = {{}, {"wrong_1.wav"}, {"wrong_2.wav"}, {"wrong_3.wav"}};
    for (int draw = 0; draw < 8; ++draw) {
        menu_case_id = kQuizScreen;
        quiz.user_answer = 0;

        CloseWithDraw(draw);

        EXPECT_EQ(SoundsStarted(), expected[draw % 4]) << draw;
    }
}

TEST_F(DialogTest, WithSoundOffNoVerdictSounds) {
    enable_sfx = false;
    for (const int answer : {0, 1}) {
        for (int draw = 0; draw < 4; ++draw) {
            menu_case_id = kQuizScreen;
            quiz.user_answer = answer;

            CloseWithDraw(draw);

            EXPECT_EQ(SoundsStarted(), Texts()) << answer << ", " << draw;
            EXPECT_EQ(spawn_laugh, answer == 0 && draw == 0) << answer << ", " << draw;
            spawn_laugh = false;
        }
    }
}

TEST_F(DialogTest, ClosingWithoutAPickSoundsNothing) {
    CloseWithDraw(1);

    EXPECT_EQ(SoundsStarted(), Texts());
}

TEST_F(DialogTest, TheOwlLaughsOnceItIsBackOnItsTree) {
    quiz.user_answer = 0;
    CloseWithDraw(0);
    fakes::world().rand_default = 0;

    Frame();

    EXPECT_TRUE(character.laugh);
    EXPECT_FALSE(spawn_laugh);
}

}  // namespace
