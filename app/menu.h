// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The action menu: five round icons down the left edge of the owl's screen, the only way into the
// program's functions, and the status line with date and time.
#pragma once

/// Draws the menu and the status line, and does what a clicked item does; part of each frame of the owl's
/// screen.
void ActionMenu();
