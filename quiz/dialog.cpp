// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "quiz/dialog.h"

#include <GL/gl.h>

#include <cstdlib>

#include "app/character.h"
#include "app/panel.h"
#include "app/shell.h"
#include "app/textures.h"
#include "engine/MacEngine.h"
#include "engine/Sound.h"
#include "quiz/questions.h"

std::int32_t question_id = 0;

namespace {

constexpr int kNone = -1;
constexpr int kAnswers = 4;

/// The answers' places, in pairs from left to right, the upper pair first.
constexpr ButtonPlace kAnswerPlaces[kAnswers] = {
    {138, 110, 105, 20},
    {374, 110, 105, 20},
    {138, 52, 105, 20},
    {374, 52, 105, 20},
};

/// The answer picked, or none.
int user_answer = kNone;

bool IsAnswered() {
    return user_answer != kNone;
}

const Question& Asked() {
    return questions[static_cast<std::size_t>(question_id)];
}

void PlayVerdict(const char* sound) {
    if (enable_sfx) AudioEngine.spawn_static(0, sound, false);
}

/// Lets the owl react to the answer: to one wrong answer in four it laughs, whether sound is on or off.
void Judge() {
    constexpr const char* kWrong[] = {nullptr, "wrong_1.wav", "wrong_2.wav", "wrong_3.wav"};
    if (user_answer == Asked().right_answer) {
        PlayVerdict("right.wav");
        return;
    }
    const int draw = std::rand() % 4;
    if (draw == 0) {
        spawn_laugh = true;
    } else {
        PlayVerdict(kWrong[draw]);
    }
}

// ---- Steps ----

void ShowCloseButton() {
    if (!ShowButton(kCloseButton, button_close)) return;
    menu_case_id = -1;
    if (IsAnswered()) Judge();
    user_answer = kNone;
}

void ShowAnswerButtons() {
    for (int i = 0; i < kAnswers; ++i) {
        const Button answer = ButtonAt(kAnswerPlaces[i], button[user_answer == i ? 1 : 0]);
        answer.Display(!IsAnswered());
        if (answer.isClicked() && !IsAnswered()) user_answer = i;
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
    } else if (i == user_answer) {
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
    const auto draw = static_cast<unsigned int>(std::rand());
    question_id = static_cast<std::int32_t>(draw % questions.size());
}

void QuizDialog() {
    DrawTabs(button[0]);
    ShowCloseButton();
    ShowAnswerButtons();
    PrintQuestion();
    PrintAnswers();
}
