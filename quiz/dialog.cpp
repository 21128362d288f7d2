// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "quiz/dialog.h"

#include <GL/gl.h>

#include <cstdlib>

#include "app/owl.h"
#include "app/panel.h"
#include "app/sounds.h"
#include "app/state.h"
#include "app/textures.h"
#include "engine/text.h"
#include "quiz/questions.h"

std::int32_t question_id = 0;
QuizState quiz;

namespace {

constexpr int kAnswers = 4;

/// The answers' places, in pairs from left to right, the upper pair first.
constexpr ButtonPlace kAnswerPlaces[kAnswers] = {
    {138, 110, 105, 20},
    {374, 110, 105, 20},
    {138, 52, 105, 20},
    {374, 52, 105, 20},
};

bool IsAnswered() {
    return quiz.user_answer != kNoAnswer;
}

const Question& Asked() {
    return questions[static_cast<std::size_t>(question_id)];
}

/// Lets the owl react to the answer: to one wrong answer in four it laughs, whether sound is on or off.
void Judge() {
    constexpr const char* kWrong[] = {nullptr, "wrong_1.wav", "wrong_2.wav", "wrong_3.wav"};
    if (quiz.user_answer == Asked().right_answer) {
        PlayEffect("right.wav");
        return;
    }
    const int reaction = std::rand() % 4;
    if (reaction == 0) {
        spawn_laugh = true;
    } else {
        PlayEffect(kWrong[reaction]);
    }
}

// ---- Steps ----

void ShowCloseButton() {
    if (!ShowButton(kCloseButton, button_close)) return;
    menu_case_id = kOwlScreen;
    if (IsAnswered()) Judge();
    quiz.user_answer = kNoAnswer;
}

void ShowAnswerButtons() {
    for (int i = 0; i < kAnswers; ++i) {
        const Button answer =
            ButtonAt(kAnswerPlaces[i], button[quiz.user_answer == i ? kChecked : kUnchecked]);
        answer.Display(!IsAnswered());
        if (answer.isClicked() && !IsAnswered()) quiz.user_answer = i;
    }
}

void PrintQuestion() {
    glPrintTextBox(28, 420, 10, 43, "%s", Asked().question);
}

/// Chooses an answer's colour: once one is picked, the right one is green and a wrong pick red.
void ColorAnswer(int i) {
    if (!IsAnswered()) return;
    if (i == Asked().right_answer) {
        glColor4f(0, 1, 0, 1);
    } else if (i == quiz.user_answer) {
        glColor4f(1, 0, 0, 1);
    }
}

void PrintAnswers() {
    constexpr float kSize = 8;
    constexpr float kDrop = 9;  // from a plate's middle to the lower edge of its text, canvas units
    for (int i = 0; i < kAnswers; ++i) {
        const ButtonPlace& place = kAnswerPlaces[i];
        ColorAnswer(i);
        glPrintText(place.x, place.y - kDrop, kSize, true, "%s", Asked().answers[i]);
        glColor4f(1, 1, 1, 1);
    }
}

}  // namespace

void AskQuestion() {
    const auto number = static_cast<unsigned int>(std::rand());
    question_id = static_cast<std::int32_t>(number % questions.size());
}

void QuizDialog() {
    DrawTabs(button[kUnchecked]);
    ShowCloseButton();
    ShowAnswerButtons();
    PrintQuestion();
    PrintAnswers();
}
