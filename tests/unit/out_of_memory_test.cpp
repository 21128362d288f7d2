// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Every allocation of the program fails in turn in tests/allocations.
#include "app/out_of_memory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <exception>
#include <new>
#include <stdexcept>

namespace {

/// Lets an exception out to where nobody catches it.
void EndWith(void (*throws)()) noexcept {
    EndClearlyWithoutMemory();
    throws();
}

TEST(OutOfMemoryTest, EndsTheProgramWithALineAndTheStatusOne) {
    EXPECT_EXIT(EndWith([] { throw std::bad_alloc(); }), testing::ExitedWithCode(1),
                "^Ulmaro Assistant: non c'e' abbastanza memoria\\.\n$");
}

TEST(OutOfMemoryTest, IsNotWhatOtherExceptionsAre) {
    EXPECT_EXIT(EndWith([] { throw std::runtime_error("other"); }), testing::KilledBySignal(SIGABRT), "^$");
}

TEST(OutOfMemoryTest, IsNotAnEndWithoutAnException) {
    EXPECT_EXIT(
        {
            EndClearlyWithoutMemory();
            std::terminate();
        },
        testing::KilledBySignal(SIGABRT), "^$");
}

}  // namespace
