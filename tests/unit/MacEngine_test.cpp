// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/MacEngine.h"

#include "tests/fakes/fakes.h"

namespace {

using MacEngineTest = fakes::Test;

// One use of each header, so that this compiles only while MacEngine.h includes them.
TEST_F(MacEngineTest, OffersEveryHelper) {
    unsigned int texture = 0;
    DrawRect(1, 1, 0);
    glPrint(0, 0, "a");

    EXPECT_EQ(fakes::Count("glBegin"), 1U);
    EXPECT_EQ(fakes::Count("glutBitmapCharacter"), 1U);
    EXPECT_FALSE(LoadTexture(&texture, "missing.bmp", false));
    EXPECT_EQ(ConvertDAM(1, 0, 1900, 0, 0), 1440.0);
    EXPECT_EQ(GetRate(50, 200), 25.0F);
    EXPECT_EQ(rand_intvf(3, 3, 1), 3.0F);
    EXPECT_TRUE(OppositeSign(-1, 1));
    EXPECT_EQ(POLYGON3D().color[0].r, 1.0F);
    EXPECT_EQ(vector3f(3, 4, 0).length(), 5.0F);
}

}  // namespace
