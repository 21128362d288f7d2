// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The question bank: 108 questions of general culture, compiled into the program.
//
// There is no question file. GenQuestions() turns the bank, a table in questions.cpp, into the vector that
// the dialog asks from; its size is what the quiz takes as the number of questions.
#pragma once

#include <cstdint>
#include <vector>

/// A question with four answers, of which exactly one is right. Texts are UTF-8, NUL-terminated, the rest of
/// their buffers zero.
struct Question {
    /// Copies the texts, cut to what the buffers hold; no text of the bank is.
    Question(const char* text, const char* answer_0, const char* answer_1, const char* answer_2,
             const char* answer_3, int right);

    /// Empties all texts and makes the first answer the right one.
    void Reset();

    char question[512];
    char answers[4][128];       ///< in the order in which they are shown
    std::int32_t right_answer;  ///< index of the right one, 0 .. 3
};

/// The questions in the bank's order. Filled at start, then only read.
extern std::vector<Question> questions;

/// Appends the whole bank to `questions`; a second call would append it a second time.
void GenQuestions();
