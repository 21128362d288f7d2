// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// ulmaro-agenda: brings the owl's events in and out.

#include <cstdio>
#include <ctime>
#include <new>
#include <string>
#include <vector>

#include "agenda/commands.h"

int main(int argc, char** argv) try {
    tzset();
    return RunAgenda(std::vector<std::string>(argv + 1, argv + argc));
} catch (const std::bad_alloc&) {
    std::fputs("ulmaro-agenda: non c'e' abbastanza memoria.\n", stderr);
    return kFailed;
}
