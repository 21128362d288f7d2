// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The quiz dialog: one question of the bank, four answers to choose from.
//
// The first pick is final; the right answer then turns green and a wrong pick red. The owl reacts only when
// the dialog is closed. There is no score, and nothing is stored.
#pragma once

#include <cstdint>

/// Index into `questions` of the question asked. Written by AskQuestion().
extern std::int32_t question_id;

/// No answer has been picked.
constexpr int kNoAnswer = -1;

/// What the dialog remembers from frame to frame.
struct QuizState {
    int user_answer = kNoAnswer;  ///< index of the answer picked
};

/// Written by the dialog; tests set it.
extern QuizState quiz;

/// Chooses a question at random, the last one not excepted. The bank must not be empty.
void AskQuestion();

/// Draws one frame of the dialog over its panel and acts on clicks; the close button leads back to the owl.
/// The canvas must be set up.
void QuizDialog();
