// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/polygon.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

TEST(PolygonRecords, AreZeroAndWhiteWhenMade) {
    const POLYGON3D polygon;

    for (int corner = 0; corner < 3; ++corner) {
        EXPECT_EQ(polygon.vertex[corner].x, 0.0F);
        EXPECT_EQ(polygon.vertex[corner].y, 0.0F);
        EXPECT_EQ(polygon.vertex[corner].z, 0.0F);
        EXPECT_EQ(polygon.normal[corner].x, 0.0F);
        EXPECT_EQ(polygon.normal[corner].y, 0.0F);
        EXPECT_EQ(polygon.normal[corner].z, 0.0F);
        EXPECT_EQ(polygon.color[corner].r, 1.0F);
        EXPECT_EQ(polygon.color[corner].g, 1.0F);
        EXPECT_EQ(polygon.color[corner].b, 1.0F);
        EXPECT_EQ(polygon.txtcoord[corner].u, 0.0F);
        EXPECT_EQ(polygon.txtcoord[corner].v, 0.0F);
    }
}

TEST(PolygonRecords, APolygonHoldsCornersNormalsColorsThenTextureCoordinates) {
    EXPECT_EQ(offsetof(POLYGON3D, vertex), 0U);
    EXPECT_EQ(offsetof(POLYGON3D, normal), 9 * sizeof(float));
    EXPECT_EQ(offsetof(POLYGON3D, color), 18 * sizeof(float));
    EXPECT_EQ(offsetof(POLYGON3D, txtcoord), 27 * sizeof(float));
    EXPECT_EQ(sizeof(POLYGON3D), 33 * sizeof(float));
}

}  // namespace
