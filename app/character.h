// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl's screen, put together: background and tree, the owl, the menu, the notices, the particles.
#pragma once

/// Draws one frame of the owl's screen and advances all of it by global_time. The canvas must be set up.
void Render();
