// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: one after another, where a press waits, dropping, the longest queue.
#include "app/stroke_queue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// A queue with nothing in it.
class StrokeQueueTest : public testing::Test {
  protected:
    void SetUp() override { ForgetStrokes(); }
    void TearDown() override { ForgetStrokes(); }

    static void Enqueue(const std::string& characters) {
        for (const char c : characters) EnqueueCharacter(static_cast<unsigned char>(c));
    }

    /// Lets a press happen now and arrive at once.
    static void Press(float x, float y) {
        MarkPress();
        EnqueuePress(x, y, 0);
    }

    /// Takes so many strokes.
    static void Dequeue(int count) {
        Stroke stroke;
        for (int i = 0; i < count; ++i) EXPECT_TRUE(DequeueStroke(stroke));
    }

    /// Takes all strokes and returns them in order: a character as itself, a press as its place in brackets.
    static std::string Rest() {
        std::string strokes;
        Stroke stroke;
        while (DequeueStroke(stroke)) {
            if (stroke.IsPress()) {
                strokes += '(' + std::to_string(static_cast<int>(stroke.x)) + ',' +
                           std::to_string(static_cast<int>(stroke.y)) + ')';
            } else {
                strokes += static_cast<char>(stroke.character);
            }
        }
        return strokes;
    }
};

// ---- One after another ----

TEST_F(StrokeQueueTest, IsEmptyAtFirstAndThenLeavesTheStrokeAlone) {
    Stroke stroke = {'k', 1, 3, 4};

    EXPECT_FALSE(DequeueStroke(stroke));

    EXPECT_EQ(stroke.character, 'k');
    EXPECT_EQ(stroke.x, 3);
    EXPECT_EQ(stroke.y, 4);
}

TEST_F(StrokeQueueTest, GivesCharactersInTheOrderOfTyping) {
    Enqueue("zbba");

    EXPECT_EQ(Rest(), "zbba");
}

TEST_F(StrokeQueueTest, GivesEachStrokeOnce) {
    Enqueue("a");
    Stroke stroke;

    EXPECT_TRUE(DequeueStroke(stroke));
    EXPECT_FALSE(DequeueStroke(stroke));
}

TEST_F(StrokeQueueTest, ACharacterIsNoPressAndKeepsItsCode) {
    for (int code = 1; code < 256; ++code) {
        EnqueueCharacter(static_cast<unsigned char>(code));
        Stroke stroke;
        ASSERT_TRUE(DequeueStroke(stroke));

        EXPECT_FALSE(stroke.IsPress()) << code;
        EXPECT_EQ(stroke.character, code);
    }
}

TEST_F(StrokeQueueTest, APressIsAPressAndKeepsItsPlace) {
    EnqueuePress(12.5F, -7, 0);
    Stroke stroke;
    ASSERT_TRUE(DequeueStroke(stroke));

    EXPECT_TRUE(stroke.IsPress());
    EXPECT_EQ(stroke.x, 12.5F);
    EXPECT_EQ(stroke.y, -7);
}

TEST_F(StrokeQueueTest, CharactersThatGoTogetherSaySoAtTheirFirst) {
    Enqueue("x");
    EnqueueTogether("1/2");
    Enqueue("y");

    std::vector<int> together;
    Stroke stroke;
    while (DequeueStroke(stroke)) together.push_back(stroke.together);

    EXPECT_EQ(together, (std::vector<int>{1, 3, 1, 1, 1}));
}

TEST_F(StrokeQueueTest, CharactersThatGoTogetherComeOneAfterAnother) {
    EnqueueTogether("1/2");
    EnqueueTogether("");
    EnqueueTogether("y");

    EXPECT_EQ(Rest(), "1/2y");
}

// ---- Where a press waits ----

TEST_F(StrokeQueueTest, APressWaitsBehindWhatWasTypedBeforeItAndBeforeWhatWasTypedAfterIt) {
    Enqueue("ab");
    MarkPress();
    Enqueue("cd");

    EnqueuePress(1, 2, 0);

    EXPECT_EQ(Rest(), "ab(1,2)cd");
}

TEST_F(StrokeQueueTest, PressesWaitInTheirOrder) {
    Enqueue("a");
    Press(1, 1);
    Enqueue("b");
    Press(2, 2);
    Press(3, 3);
    Enqueue("c");

    EXPECT_EQ(Rest(), "a(1,1)b(2,2)(3,3)c");
}

TEST_F(StrokeQueueTest, APressThatWasMarkedTwiceGoesToTheLatestMark) {
    Enqueue("a");
    MarkPress();
    Enqueue("b");
    MarkPress();
    Enqueue("c");

    EnqueuePress(1, 2, 0);

    EXPECT_EQ(Rest(), "ab(1,2)c");
}

TEST_F(StrokeQueueTest, AMarkBeyondTheEndOfAQueueThatHasBecomeShorterIsItsEnd) {
    Enqueue("abc");
    MarkPress();
    Dequeue(2);

    EnqueuePress(1, 2, 0);

    EXPECT_EQ(Rest(), "c(1,2)");
}

TEST_F(StrokeQueueTest, AMarkOfAnEmptyQueueIsItsBeginning) {
    MarkPress();
    Enqueue("ab");

    EnqueuePress(1, 2, 0);

    EXPECT_EQ(Rest(), "(1,2)ab");
}

// ---- Dropping ----

TEST_F(StrokeQueueTest, DropsAllCharactersWhereNoPressWaits) {
    Enqueue("abc");

    DropCharacters();

    EXPECT_EQ(Rest(), "");
}

TEST_F(StrokeQueueTest, DropsSoManyOfTheOldestStrokes) {
    Enqueue("abcd");

    DropStrokes(0);
    DropStrokes(2);
    EXPECT_EQ(Rest(), "cd");
    Enqueue("ab");
    DropStrokes(3);

    EXPECT_EQ(Rest(), "");
}

TEST_F(StrokeQueueTest, DropsTheCharactersBeforeTheNextPressAlone) {
    Enqueue("ab");
    Press(1, 1);
    Enqueue("c");
    Press(2, 2);

    DropCharacters();

    EXPECT_EQ(Rest(), "(1,1)c(2,2)");
}

TEST_F(StrokeQueueTest, DropsNothingWhereAPressIsNextOrNothingWaits) {
    DropCharacters();
    EXPECT_EQ(Rest(), "");

    Press(1, 1);
    Enqueue("c");
    DropCharacters();
    EXPECT_EQ(Rest(), "(1,1)c");
}

TEST_F(StrokeQueueTest, ForgetsAllStrokesAndTheMark) {
    Enqueue("ab");
    Press(1, 1);
    Enqueue("c");
    MarkPress();

    ForgetStrokes();
    EXPECT_EQ(Rest(), "");

    Enqueue("xyz");
    EnqueuePress(2, 2, 0);
    EXPECT_EQ(Rest(), "(2,2)xyz");
}

// ---- The longest queue ----

TEST_F(StrokeQueueTest, TakesCharactersThatGoTogetherOnlyWhereAllHaveRoom) {
    Enqueue(std::string(343, 'a'));
    EnqueueTogether("EUR");
    EnqueueTogether("e'");
    EnqueueTogether("x");

    EXPECT_EQ(Rest(), std::string(343, 'a') + "e'");
}

TEST_F(StrokeQueueTest, KeepsAsManyCharactersAsTheLargestFieldTakes) {
    Enqueue(std::string(345, 'a') + "b");

    EXPECT_EQ(Rest(), std::string(345, 'a'));
}

TEST_F(StrokeQueueTest, TakesACharacterAgainAsSoonAsThereIsRoom) {
    Enqueue(std::string(345, 'a'));
    Dequeue(1);

    Enqueue("bc");

    EXPECT_EQ(Rest(), std::string(344, 'a') + "b");
}

TEST_F(StrokeQueueTest, APressIsNeverTurnedAway) {
    Enqueue(std::string(345, 'a'));

    Press(1, 2);

    EXPECT_EQ(Rest(), std::string(345, 'a') + "(1,2)");
}

}  // namespace
