// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The log that every fake writes to.
//
// The fakes stand in for GL, GLU, GLUT, OpenAL and a few calls of the C library: the program's
// sources are linked against them unchanged. Every call that the program makes is appended to one
// log shared by all of them, so that a test can assert an order across libraries.
//
// How to use it:
//
//     DrawRect(10, 20, 5);
//     EXPECT_EQ(fakes::Names(), (std::vector<std::string>{"glBegin", ...}));   // names, in order
//     EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{"glBegin(GL_QUADS)", ...}));
//     EXPECT_EQ(fakes::Lines({"glBindTexture", "alSourcePlay"}), ...);         // only these calls
//     EXPECT_EQ(fakes::Count("glEnd"), 1U);
//     EXPECT_EQ(fakes::Calls("glRotatef").at(0).args, (std::vector<double>{180, 0, 1, 0}));
//     EXPECT_LT(fakes::IndexOf("glFlush"), fakes::IndexOf("glutSwapBuffers"));
//     fakes::ClearLog();                  // forgets the calls and keeps the state
//
// A line is the call as one would write it: constants by their name where they have one, numbers
// in their shortest form ("0.1", "256"), text in quotes. GoogleTest prints the lines when an
// expectation fails. Asking (glGet*, glutGet, glIsEnabled ...) is logged like any other call; rand,
// time and localtime are counted in world.h and not logged.

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace fakes {

/// One numeric argument: its value and, when it is a constant with a name, that name.
struct Arg {
    double value = 0;
    std::string name;

    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    Arg(Number number)  // NOLINT(google-explicit-constructor): arguments are written as plain numbers
        : value(static_cast<double>(number)), name(Shortest(number)) {}
    Arg(double number, std::string_view label) : value(number), name(label) {}

  private:
    /// Writes a float with the digits of a float: 0.1f is "0.1".
    static std::string Shortest(double number, bool single_precision);
    template <typename Number>
    static std::string Shortest(Number number) {
        return Shortest(static_cast<double>(number), std::is_same_v<Number, float>);
    }
};

/// One recorded call.
struct Call {
    std::string name;                ///< "glBindTexture"
    std::vector<double> args;        ///< numeric arguments in order; pointers are left out
    std::string text;                ///< the text argument, if the call has one
    std::vector<std::uint8_t> blob;  ///< the bytes that the call handed over, if any
    std::string line;                ///< "glBindTexture(GL_TEXTURE_2D, 7)"
};

/// What IndexOf gives for a call that was not made: larger than any index.
constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

/// Appends a call to the log; fakes of other things (a desktop, say) may use it as well.
void Record(std::string_view name, std::initializer_list<Arg> args = {}, std::string_view text = {},
            std::vector<std::uint8_t> blob = {});

/// Returns every call since the last Reset or ClearLog.
const std::vector<Call>& Log();

/// Returns copies of the calls of one function, in order; hold an element by value, not by reference.
std::vector<Call> Calls(std::string_view name);

/// Returns how often a function was called.
std::size_t Count(std::string_view name);

/// Returns the place in the log of the nth call (from 0) of a function, or kNever.
std::size_t IndexOf(std::string_view name, std::size_t nth = 0);

/// Returns the names of all calls in order, or only those of the given functions.
std::vector<std::string> Names();
std::vector<std::string> Names(std::initializer_list<std::string_view> only);

/// Returns the calls as lines in order, or only those of the given functions.
std::vector<std::string> Lines();
std::vector<std::string> Lines(std::initializer_list<std::string_view> only);

/// Returns lists of lines one after another.
std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts);

/// Forgets the calls so far; the state of GL, GLUT, OpenAL and the world stays.
void ClearLog();

std::ostream& operator<<(std::ostream& out, const Call& call);

}  // namespace fakes
