// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the record, the bank as a whole, its texts, its answers.
#include "quiz/questions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t kLongestAnswer = 28;

/// Returns the lines of a file of the tests.
Texts ReadLines(const std::string& file) {
    std::ifstream in(std::string(TEST_DATA) + "/" + file);
    EXPECT_TRUE(in) << file;
    Texts lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

Texts AnswersOf(const Question& question) {
    return {std::begin(question.answers), std::end(question.answers)};
}

bool IsZero(const void* bytes, std::size_t count) {
    const auto* first = static_cast<const char*>(bytes);
    return std::all_of(first, first + count, [](char c) { return c == '\0'; });
}

/// A test that has the bank as it is after the start.
class Bank : public testing::Test {
  protected:
    void SetUp() override {
        questions.clear();
        GenQuestions();
    }
    void TearDown() override { questions.clear(); }

    /// Returns a question by its number, 1 .. 108.
    static const Question& Number(std::size_t number) { return questions.at(number - 1); }
};

// ---- The record ----

TEST(AQuestion, HoldsItsTextsAndTheRightIndexAndZerosBehindThem) {
    const Question question("Quanto fa 1 + 1?", "1", "2", "3", "", 1);

    EXPECT_STREQ(question.question, "Quanto fa 1 + 1?");
    EXPECT_EQ(AnswersOf(question), (Texts{"1", "2", "3", ""}));
    EXPECT_EQ(question.right_answer, 1);
    EXPECT_TRUE(IsZero(question.question + 16, sizeof question.question - 16));
    for (const char(&answer)[128] : question.answers) EXPECT_TRUE(IsZero(answer + 1, sizeof answer - 1));
}

TEST(AQuestion, IsAllZeroOnceReset) {
    Question question(std::string(511, 'x').c_str(), "1", "2", "3", std::string(127, 'y').c_str(), 3);

    question.Reset();

    EXPECT_TRUE(IsZero(question.question, sizeof question.question));
    EXPECT_TRUE(IsZero(question.answers, sizeof question.answers));
    EXPECT_EQ(question.right_answer, 0);
}

TEST(AQuestion, CutsTextsThatAreTooLong) {
    const std::string endless(2000, 'x');
    const char* text = endless.c_str();

    const Question question(text, text, "b", text, text, 2);

    EXPECT_EQ(question.question, std::string(511, 'x'));
    EXPECT_EQ(AnswersOf(question),
              (Texts{std::string(127, 'x'), "b", std::string(127, 'x'), std::string(127, 'x')}));
    EXPECT_EQ(question.right_answer, 2);
}

TEST(AQuestion, IsLaidOutWithoutGaps) {
    EXPECT_EQ(sizeof(Question), 512 + 4 * 128 + 4);
    EXPECT_EQ(offsetof(Question, question), 0);
    EXPECT_EQ(offsetof(Question, answers), 512);
    EXPECT_EQ(offsetof(Question, right_answer), 1024);
}

// ---- The bank as a whole ----

TEST_F(Bank, Holds108QuestionsFromTheWhaleToNeorealism) {
    ASSERT_EQ(questions.size(), 108);
    EXPECT_STREQ(questions[0].question, "Quale di queste affermazioni sulla balena e' sbagliata?");
    EXPECT_EQ(questions[0].right_answer, 2);
    EXPECT_STREQ(
        questions[107].question,
        "'Il neorealismo nacque perch\xC3\x88 eravamo cosi' poveri che non c'erano soldi per gli studios'");
    EXPECT_EQ(questions[107].right_answer, 2);
}

TEST_F(Bank, IsAppendedAgainByASecondCall) {
    GenQuestions();

    ASSERT_EQ(questions.size(), 216);
    for (std::size_t i = 0; i < 108; ++i) {
        EXPECT_EQ(std::memcmp(&questions[i], &questions[i + 108], sizeof(Question)), 0) << i;
    }
}

// ---- Its texts ----

TEST_F(Bank, HasItsQuestionsByteForByteInTheirOrder) {
    const Texts texts = ReadLines("questions.txt");

    ASSERT_EQ(texts.size(), questions.size());
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(questions[i].question, texts[i]) << i + 1;
}

TEST_F(Bank, HasEightEntriesExactlyAsTheyHaveAlwaysBeen) {
    struct Entry {
        std::size_t number;
        Texts answers;
        int right;
    };
    const Entry entries[] = {
        {1, {"possiede i fanoni", "e' un cetaceo", "ha 2 piccoli alla volta", "si nutre di krill"}, 2},
        {2, {"Lanterni", "Pincherle", "Manterne", "Fincherni"}, 1},
        {13, {"Giotto e Dante", "Leonardo e Staiseil", "Tiziano e Boccaccio", "Glaisi e Manzoni"}, 0},
        {22, {"Churchill e Dreifikzi", "Steigri e Lanone", "Drifevi e Kriflup", "Dradro e Voprasko"}, 3},
        {24, {"sarto", "tintore", "giardiniere", "tessitore"}, 1},
        {51, {"Francio", "Svezio", "Californio", "Germanio "}, 1},
        {87,
         {"Il quadrato di 4 e' 16", "Chi fa da s\xC3\x88 fa per tre", "Mi Sol Si Re Fa",
          "Ho il colesterolo alto"},
         1},
        {108, {"Vagropro", "Gleigrad", "Zairumis", "Stoklig"}, 2},
    };
    for (const Entry& entry : entries) {
        EXPECT_EQ(AnswersOf(Number(entry.number)), entry.answers) << entry.number;
        EXPECT_EQ(Number(entry.number).right_answer, entry.right) << entry.number;
    }
}

TEST_F(Bank, KeepsTheBlanksAtTheEndsOfQuestion22AndOfTheLastAnswerOf51) {
    EXPECT_EQ(std::string(Number(22).question).back(), ' ');
    EXPECT_STREQ(Number(51).answers[3], "Germanio ");
}

TEST_F(Bank, HasNoBytesBeyondAsciiButThreeAccentedCapitals) {
    for (std::size_t number = 1; number <= questions.size(); ++number) {
        const Question& entry = Number(number);
        Texts texts = AnswersOf(entry);
        texts.emplace_back(entry.question);
        std::string foreign;
        for (const std::string& text : texts) {
            std::copy_if(text.begin(), text.end(), std::back_inserter(foreign),
                         [](char c) { return c < ' ' || c > '~'; });
        }
        const bool accented = number == 23 || number == 87 || number == 108;
        EXPECT_EQ(foreign, accented ? "\xC3\x88" : "") << number;
    }
}

TEST_F(Bank, HasNoQuestionLongerThan118Bytes) {
    std::size_t longest = 0;
    for (const Question& entry : questions) longest = std::max(longest, std::strlen(entry.question));

    EXPECT_EQ(longest, 118);
}

TEST_F(Bank, AsksNothingTwice) {
    std::set<std::string> texts;
    for (const Question& entry : questions) texts.insert(entry.question);

    EXPECT_EQ(texts.size(), questions.size());
}

// ---- Its answers ----

TEST_F(Bank, SpreadsTheRightAnswersOverTheIndexes) {
    std::array<int, 4> spread = {};
    for (const Question& entry : questions) ++spread.at(static_cast<std::size_t>(entry.right_answer));

    EXPECT_EQ(spread, (std::array<int, 4>{35, 31, 26, 16}));
}

TEST_F(Bank, HasAnswersOf28BytesAtMost) {
    std::size_t longest = 0;
    for (const Question& entry : questions) {
        for (const std::string& answer : AnswersOf(entry)) {
            EXPECT_FALSE(answer.empty()) << entry.question;
            longest = std::max(longest, answer.size());
        }
    }
    EXPECT_EQ(longest, kLongestAnswer);
}

TEST_F(Bank, HasFourDifferentAnswersToEachQuestion) {
    for (const Question& entry : questions) {
        const Texts answers = AnswersOf(entry);
        EXPECT_EQ(std::set<std::string>(answers.begin(), answers.end()).size(), 4) << entry.question;
    }
}

TEST_F(Bank, HasTwoAnswersBeyondThe23CharactersThatFitTheirPlatesWell) {
    std::vector<std::size_t> numbers;
    for (std::size_t number = 1; number <= questions.size(); ++number) {
        for (const std::string& answer : AnswersOf(Number(number))) {
            if (answer.size() > 23) numbers.push_back(number);
        }
    }
    EXPECT_EQ(numbers, (std::vector<std::size_t>{33, 87}));
}

/// How often an answer is the only one of that length at an end of the range, and how often that is the right
/// one.
struct Extremes {
    int questions = 0;
    int right = 0;

    double Share() const { return static_cast<double>(right) / questions; }
};

/// Counts the questions in which one answer alone comes first by `before`, a comparison of lengths.
template <typename Comparison>
Extremes CountExtremes(Comparison before) {
    Extremes count;
    for (const Question& entry : questions) {
        const Texts answers = AnswersOf(entry);
        for (std::size_t i = 0; i < answers.size(); ++i) {
            const auto behind = std::count_if(answers.begin(), answers.end(), [&](const std::string& other) {
                return before(answers[i].size(), other.size());
            });
            if (behind != 3) continue;
            ++count.questions;
            if (i == static_cast<std::size_t>(entry.right_answer)) ++count.right;
        }
    }
    return count;
}

// Of four answers each would be the right one a quarter of the times, were there nothing to see in their
// lengths.
TEST_F(Bank, HasTheRightAnswerForTheLongestOrTheShortestAsOftenAsChanceWould) {
    const Extremes longest = CountExtremes(std::greater<>());
    const Extremes shortest = CountExtremes(std::less<>());

    EXPECT_GT(longest.questions, 50);
    EXPECT_GT(longest.Share(), 0.20) << "the longest answer can be ruled out";
    EXPECT_LT(longest.Share(), 0.30) << "guessing the longest answer pays";
    EXPECT_GT(shortest.questions, 50);
    EXPECT_GT(shortest.Share(), 0.20) << "the shortest answer can be ruled out";
    EXPECT_LT(shortest.Share(), 0.30) << "guessing the shortest answer pays";
}

TEST_F(Bank, MarksTheAnswersThatAreRight) {
    const Texts right = ReadLines("right_answers.txt");
    ASSERT_EQ(right.size(), questions.size());
    for (std::size_t i = 0; i < right.size(); ++i) {
        EXPECT_EQ(questions[i].answers[questions[i].right_answer], right[i]) << "question " << i + 1;
    }
}

// The entries, counted from 1, whose answers nobody can look up: they ask about invented people or titles,
// finish a quotation, or have no source that could be found (95 and 96). All others must stay true, whoever
// changes them.
TEST_F(Bank, ListsTheEntriesThatCannotBeLookedUpByAscendingNumbers) {
    int last = 0;
    for (const std::string& line : ReadLines("questions_not_checkable.txt")) {
        const int number = std::stoi(line);
        EXPECT_EQ(line, std::to_string(number));
        EXPECT_GT(number, last);
        EXPECT_LE(number, 108);
        last = number;
    }
    EXPECT_GT(last, 0);
}

}  // namespace
