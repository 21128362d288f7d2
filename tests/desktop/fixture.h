// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fixture of the desktop tests: a desktop, and the program on it once the test has started it.
//
// Where a test fails, what the window shows is saved as SUITE.TEST.ppm in the current directory.
#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <string>

#include "tests/desktop/desktop.h"

namespace desktop {

class OnDesktop : public testing::Test {
  protected:
    explicit OnDesktop(WindowManager manager = WindowManager::kOpenbox) : desk(manager) {}

    /// Starts the program; it runs until the test ends.
    Program& Run(Start start = {}) {
        start.pixels_on_demand = true;
        return program_.emplace(desk, start);
    }

    void TearDown() override {
        if (!HasFailure() || !program_ || program_->Handle() == None) return;
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        try {
            program_->Look().SavePpm(std::string(test->test_suite_name()) + "." + test->name() + ".ppm");
        } catch (const std::exception&) {
            return;  // nothing to see: the window is hidden or gone
        }
    }

    Desktop desk;

  private:
    std::optional<Program> program_;
};

}  // namespace desktop
