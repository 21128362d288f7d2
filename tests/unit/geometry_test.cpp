// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/geometry.h"

#include <gtest/gtest.h>

#include "tests/unit/nonfinite_floats.h"

namespace {

TEST(OppositeSign, CountsZeroAsPositive) {
    EXPECT_TRUE(OppositeSign(-1, 0));
    EXPECT_TRUE(OppositeSign(0, -1));
    EXPECT_FALSE(OppositeSign(0, 0));
    EXPECT_FALSE(OppositeSign(0, 1));
}

TEST(OppositeSign, IsFalseForTwoOfTheSameSign) {
    EXPECT_FALSE(OppositeSign(-1, -2));
    EXPECT_FALSE(OppositeSign(1, 2));
}

TEST(OppositeSign, IsTrueForOneOfEach) {
    EXPECT_TRUE(OppositeSign(-1, 2));
    EXPECT_TRUE(OppositeSign(2, -1));
}

TEST(OppositeSign, IsFalseForNaN) {
    EXPECT_FALSE(OppositeSign(-1, kNaN));
    EXPECT_FALSE(OppositeSign(kNaN, -1));
}

TEST(SlopeV3F, FromXToYIs90) {
    EXPECT_EQ(SlopeV3F(vector3f(1, 0, 0), vector3f(0, 1, 0)), 90.0F);
}
TEST(SlopeV3F, FromYToXIs270) {
    EXPECT_EQ(SlopeV3F(vector3f(0, 1, 0), vector3f(1, 0, 0)), 270.0F);
}

TEST(SlopeV3F, IgnoresZAndLength) {
    EXPECT_FLOAT_EQ(SlopeV3F(vector3f(3, 3, 7), vector3f(-2, 2, -9)), 90.0F);
    EXPECT_EQ(SlopeV3F(vector3f(1, 0, 5), vector3f(4, 0, -5)), 0.0F);
}

TEST(SlopeV3F, StaysBetween0And360) {
    // From just below the negative x axis to just above it: the raw difference is almost 360.
    EXPECT_NEAR(SlopeV3F(vector3f(-1, -0.001F, 0), vector3f(-1, 0.001F, 0)), 359.8854F, 1e-3F);
    EXPECT_NEAR(SlopeV3F(vector3f(-1, 0.001F, 0), vector3f(-1, -0.001F, 0)), 0.1146F, 1e-3F);
}

TEST(SlopeV3F, Keeps360Itself) {
    EXPECT_EQ(SlopeV3F(vector3f(-1, -0.0F, 0), vector3f(-1, 0, 0)), 360.0F);
    EXPECT_EQ(SlopeV3F(vector3f(1, 1e-9F, 0), vector3f(1, 0, 0)), 360.0F);  // a hair below 0, and 360 more
}

TEST(GetDistanceBetween, IsEuclidean) {
    EXPECT_EQ(GetDistanceBetween(1, 1, 1, 3, 4, 7), 7.0F);
    EXPECT_EQ(GetDistanceBetween(3, 4, 7, 1, 1, 1), 7.0F);
    EXPECT_EQ(GetDistanceBetween(5, 6, 7, 5, 6, 7), 0.0F);
}

TEST(GetDistanceBetween, IsComputedInSinglePrecision) {
    EXPECT_EQ(GetDistanceBetween(0, 0, 0, 1e30F, 0, 0), kInfinity);
}

class SegmentPlane : public testing::Test {
  protected:
    bool Meets(vector3f s0, vector3f s1) { return SegmentPlaneIntersect(s0, s1, a_, b_, c_); }

    vector3f a_{0, 0, 2};
    vector3f b_{1, 0, 2};
    vector3f c_{0, 1, 2};
};

TEST_F(SegmentPlane, IsCrossedFromBothSides) {
    EXPECT_TRUE(Meets({5, 5, 1}, {5, 5, 3}));
    EXPECT_TRUE(Meets({5, 5, 3}, {5, 5, 1}));
}

TEST_F(SegmentPlane, IsTouchedByAnEndpoint) {
    EXPECT_TRUE(Meets({5, 5, 2}, {5, 5, 3}));
    EXPECT_TRUE(Meets({5, 5, 3}, {5, 5, 2}));
    EXPECT_TRUE(Meets({5, 5, 1}, {5, 5, 2}));
    EXPECT_TRUE(Meets({5, 5, 2}, {5, 5, 1}));
}

// Seen from another corner, c would lie beside the plane by a rounding error.
TEST_F(SegmentPlane, IsTouchedByItsThirdCornerExactly) {
    a_.set(0.2F, 0.2F, 0.3F);
    b_.set(1.7F, 0.2F, 0.9F);
    c_.set(0.3F, 1.1F, 1.4F);
    vector3f normal = crossProduct(a_ - c_, b_ - c_);
    normal.normalize();

    EXPECT_TRUE(Meets(c_, c_ + normal));
    EXPECT_TRUE(Meets(c_, c_ - normal));
    EXPECT_TRUE(Meets(c_ + normal, c_));
    EXPECT_TRUE(Meets(c_ - normal, c_));
}

TEST_F(SegmentPlane, IsMissedByASegmentOnOneSide) {
    EXPECT_FALSE(Meets({5, 5, 3}, {5, 5, 4}));
    EXPECT_FALSE(Meets({5, 5, 1}, {5, 5, 0}));
}

TEST_F(SegmentPlane, OfADegenerateTriangleIsNeverMet) {
    b_ = a_;

    EXPECT_FALSE(Meets({0, 0, 1}, {0, 0, 3}));
    EXPECT_FALSE(Meets({0, 0, 2}, {0, 0, 2}));
}

TEST_F(SegmentPlane, LeavesItsArgumentsAlone) {
    vector3f s0(5, 5, 1);
    vector3f s1(5, 5, 3);

    SegmentPlaneIntersect(s0, s1, a_, b_, c_);

    EXPECT_EQ(s0, vector3f(5, 5, 1));
    EXPECT_EQ(s1, vector3f(5, 5, 3));
    EXPECT_EQ(a_, vector3f(0, 0, 2));
    EXPECT_EQ(b_, vector3f(1, 0, 2));
    EXPECT_EQ(c_, vector3f(0, 1, 2));
}

class SegmentTriangle : public testing::Test {
  protected:
    bool Meets(vector3f s0, vector3f s1) {
        return GetIntersectionBetweenSegmentTriangle(a_, b_, c_, s0, s1, hit_);
    }

    vector3f a_{0, 0, 0};
    vector3f b_{1, 0, 0};
    vector3f c_{0, 1, 0};
    vector3f hit_{7, 8, 9};
};

TEST_F(SegmentTriangle, IsHitInside) {
    EXPECT_TRUE(Meets({0.25F, 0.25F, -1}, {0.25F, 0.25F, 1}));
    EXPECT_EQ(hit_, vector3f(0.25F, 0.25F, 0));
}

TEST_F(SegmentTriangle, IsMissedOutsideButThePointIsStillWritten) {
    EXPECT_FALSE(Meets({2, 2, -1}, {2, 2, 1}));
    EXPECT_EQ(hit_, vector3f(2, 2, 0));
}

TEST_F(SegmentTriangle, IsMissedByASegmentOnOneSideAndThePointIsLeftUnchanged) {
    EXPECT_FALSE(Meets({0.25F, 0.25F, 1}, {0.25F, 0.25F, 2}));
    EXPECT_EQ(hit_, vector3f(7, 8, 9));
}

TEST_F(SegmentTriangle, HasAToleranceOfOnePerCentOfItsArea) {
    // A point (x, y) beyond the longest side makes the three areas x + y - 1 larger than the whole, which is
    // 1/2.
    const float just_in = 0.5F + 0.0024F;   // 0.0096 of the area more
    const float just_out = 0.5F + 0.0026F;  // 0.0104 of the area more

    EXPECT_TRUE(Meets({just_in, just_in, -1}, {just_in, just_in, 1}));
    EXPECT_FALSE(Meets({just_out, just_out, -1}, {just_out, just_out, 1}));
}

TEST_F(SegmentTriangle, IsMissedBeyondEachOfItsSides) {
    EXPECT_FALSE(Meets({0.5F, -0.1F, -1}, {0.5F, -0.1F, 1}));
    EXPECT_FALSE(Meets({-0.1F, 0.5F, -1}, {-0.1F, 0.5F, 1}));
    EXPECT_FALSE(Meets({0.6F, 0.6F, -1}, {0.6F, 0.6F, 1}));
}

TEST_F(SegmentTriangle, IsHitBySlantedSegmentsInAnyPosition) {
    // The plane x + 2 y + 3 z = 6, met by a segment that runs along no axis.
    a_.set(6, 0, 0);
    b_.set(0, 3, 0);
    c_.set(0, 0, 2);

    EXPECT_TRUE(Meets({1, 0.5F, 0.25F}, {4, 1.5F, 1.25F}));
    EXPECT_NEAR(hit_.x + 2 * hit_.y + 3 * hit_.z, 6.0F, 1e-5F);
    EXPECT_NEAR(hit_.x, 2.21875F, 1e-5F);  // t = 3.25 / 8
    EXPECT_NEAR(hit_.y, 0.90625F, 1e-5F);
    EXPECT_NEAR(hit_.z, 0.65625F, 1e-5F);
}

TEST_F(SegmentTriangle, ForgetsTheCallBefore) {
    Meets({2, 2, -1}, {2, 2, 1});

    EXPECT_TRUE(Meets({0.25F, 0.25F, -1}, {0.25F, 0.25F, 1}));
    EXPECT_EQ(hit_, vector3f(0.25F, 0.25F, 0));
}

TEST_F(SegmentTriangle, IsNotHitByASegmentInItsPlane) {
    EXPECT_FALSE(Meets({0.2F, 0.2F, 0}, {0.3F, 0.3F, 0}));
    EXPECT_TRUE(std::isnan(hit_.x));
}

TEST(GetIntersectionBetweenSegmentTriangle, StillHitsWhereTheAreasAreExactlyOnePerCentMore) {
    const vector3f a(0, 0, 0);
    const vector3f b(12, 0, 0);
    const vector3f c(18, 8, 0);
    const auto hits = [&](float y) {
        vector3f hit;
        return GetIntersectionBetweenSegmentTriangle(a, b, c, vector3f(8, y, 1), vector3f(8, y, -1), hit);
    };

    EXPECT_TRUE(hits(-0.0400390625F)) << "where both are equal to the last bit";
    EXPECT_FALSE(hits(-0.0401F));
}

TEST(GetIntersectionBetweenSegmentTriangle, HitsAnObliqueTriangleWhereTheParametersSay) {
    // No component of anything is 0, nor are two alike.
    const vector3f a(1, 2, 3);
    const vector3f b(7, 3, 5);
    const vector3f c(2, 9, 4);
    const vector3f wanted = a + (b - a) * 0.25F + (c - a) * 0.5F;
    const vector3f direction(3, -2, 7);

    vector3f hit;
    EXPECT_TRUE(GetIntersectionBetweenSegmentTriangle(a, b, c, wanted - direction * 0.5F,
                                                      wanted + direction * 1.5F, hit));

    EXPECT_NEAR(hit.x, wanted.x, 1e-4);
    EXPECT_NEAR(hit.y, wanted.y, 1e-4);
    EXPECT_NEAR(hit.z, wanted.z, 1e-4);
}

}  // namespace
