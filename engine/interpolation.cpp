// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/interpolation.h"

float RateInterpole(float from, float to, float rate) {
    return to / 100.0F * rate + from - from / 100.0F * rate;
}

float GetRate(float value, float total) {
    float rate = value * 100.0F / total;
    if (rate > 100.0F) rate = 100.0F;
    if (rate < 0.0F) rate = 0.0F;
    return rate;
}
