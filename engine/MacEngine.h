// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The engine's umbrella header: includes the helpers below and declares nothing of its own. Code inside the
// project includes the header that it needs instead.
#pragma once

#include "engine/date_key.h"       // a date and time as one number
#include "engine/geometry.h"       // angles, distances, intersections
#include "engine/interpolation.h"  // percentages and the rule of three
#include "engine/polygon.h"        // the triangle that mesh code fills
#include "engine/random.h"         // a random value on a grid
#include "engine/screen.h"         // rectangles, planes, particles, a sky box
#include "engine/text.h"           // lines and boxes in the bitmap font
#include "engine/texture.h"        // textures from bitmap files
#include "engine/vector3f.h"       // the three-component vector
