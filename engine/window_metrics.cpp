// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/window_metrics.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <optional>

namespace {

/// A number of the window: GLUT's name for it, and its value once known.
struct Metric {
    GLenum question;
    std::optional<int> answer;

    int Get() {
        if (!answer) answer = glutGet(question);
        return *answer;
    }
};

Metric width{GLUT_WINDOW_WIDTH, {}};
Metric height{GLUT_WINDOW_HEIGHT, {}};
Metric left{GLUT_WINDOW_X, {}};
Metric top{GLUT_WINDOW_Y, {}};

}  // namespace

int WindowWidth() {
    return std::max(width.Get(), 1);
}
int WindowHeight() {
    return std::max(height.Get(), 1);
}
int WindowX() {
    return left.Get();
}
int WindowY() {
    return top.Get();
}

void ForgetWindowPlace() {
    left.answer.reset();
    top.answer.reset();
}

void ForgetWindowMetrics() {
    ForgetWindowPlace();
    width.answer.reset();
    height.answer.reset();
}
