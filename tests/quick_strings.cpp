// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Every function of std::string, optimised. Tests are not, and each of their objects has copies of these
// functions; the linker takes the first that it meets for the whole program, also for the fakes, whose log is
// made of strings. Linked first, this object halves the time of the unit tests.
#include <string>

template class std::basic_string<char>;
