// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/fakes.h"

namespace fakes {

void Reset() {
    ResetGl();
    ResetGlut();
    ResetAl();
    ResetWorld();
    ResetDesktop();
    ClearLog();
}

}  // namespace fakes
