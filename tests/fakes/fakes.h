// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// All fakes at once, and the fixture for tests that use them.
//
// The fakes (log.h, gl.h, glut.h, al.h, world.h, desktop.h) replace GL, GLU, GLUT, OpenAL, a part of the C
// library and the program's desktop at link time; the program has no hooks for them. Link a test program
// against the CMake target ulmaro_fakes and against none of the real libraries.
//
// How to use it:
//
//     using ButtonTest = fakes::Test;                 // or: class ButtonTest : public fakes::Test {...}
//     TEST_F(ButtonTest, IsDrawnAroundItsCentre) { ... }
//
// The fixture resets all fakes before each test, and fails a test that leaves GL misused (see gl.h).

#pragma once

#include <gtest/gtest.h>

#include "tests/fakes/al.h"
#include "tests/fakes/desktop.h"
#include "tests/fakes/gl.h"
#include "tests/fakes/glut.h"
#include "tests/fakes/log.h"
#include "tests/fakes/world.h"

namespace fakes {

/// Puts every fake back to its start and empties the log.
void Reset();

class Test : public testing::Test {
  protected:
    /// A derived fixture that overrides one of these calls this one too.
    void SetUp() override { Reset(); }
    void TearDown() override {
        EXPECT_TRUE(gl().misuse.empty()) << "GL was misused: " << testing::PrintToString(gl().misuse);
    }
};

}  // namespace fakes
