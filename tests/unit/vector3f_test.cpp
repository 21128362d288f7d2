// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/vector3f.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <type_traits>

#include "tests/unit/nonfinite_floats.h"

// Shows a vector in a failed expectation.
static void PrintTo(const vector3f& v, std::ostream* out) {
    *out << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}

namespace {

TEST(Vector3f, IsMadeAsZero) {
    const vector3f v;

    EXPECT_EQ(v.x, 0.0F);
    EXPECT_EQ(v.y, 0.0F);
    EXPECT_EQ(v.z, 0.0F);
}

TEST(Vector3f, IsMadeFromThreeComponentsInTheirOrder) {
    const vector3f v(1, 2, 3);

    EXPECT_EQ(v.x, 1.0F);
    EXPECT_EQ(v.y, 2.0F);
    EXPECT_EQ(v.z, 3.0F);
}

TEST(Vector3f, HoldsThreeFloatsOneAfterAnother) {
    const vector3f v(1, 2, 3);

    EXPECT_EQ(sizeof(vector3f), 3 * sizeof(float));
    EXPECT_TRUE(std::is_standard_layout_v<vector3f>);
    EXPECT_EQ(&v.y, &v.x + 1);
    EXPECT_EQ(&v.z, &v.x + 2);
}

TEST(Vector3f, SetAssignsAndReturnsTheVectorItself) {
    vector3f v(9, 9, 9);

    vector3f& returned = v.set(1, 2, 3);

    EXPECT_EQ(&returned, &v);
    EXPECT_EQ(v, vector3f(1, 2, 3));
}

TEST(Vector3f, LengthIsTheEuclideanOne) {
    EXPECT_EQ(vector3f(2, 3, 6).length(), 7.0F);
    EXPECT_EQ(vector3f(-2, -3, -6).length(), 7.0F);
    EXPECT_EQ(vector3f().length(), 0.0F);
}

TEST(Vector3f, LengthIsComputedInDoublePrecision) {
    EXPECT_EQ(vector3f(1e30F, 0, 0).length(), 1e30F);    // the square fits no float
    EXPECT_EQ(vector3f(0, 1e-30F, 0).length(), 1e-30F);  // the square vanishes in a float
    EXPECT_FLOAT_EQ(vector3f(0, 3e30F, 4e30F).length(), 5e30F);
}

TEST(Vector3f, QuadraticLengthIsTheSumOfTheSquares) {
    EXPECT_EQ(vector3f(1, -2, 3).quadratic_length(), 14.0F);
    EXPECT_EQ(vector3f(1e30F, 0, 0).quadratic_length(), kInfinity);  // in single precision
}

TEST(Vector3f, NormalizeDividesEachComponentByTheLengthInPlace) {
    vector3f v(2, -3, 6);

    v.normalize();

    EXPECT_EQ(v, vector3f(2.0F / 7.0F, -3.0F / 7.0F, 6.0F / 7.0F));
}

TEST(Vector3f, NormalizeMakesAZeroVectorNaN) {
    vector3f v;

    v.normalize();

    EXPECT_TRUE(std::isnan(v.x));
    EXPECT_TRUE(std::isnan(v.y));
    EXPECT_TRUE(std::isnan(v.z));
}

TEST(Vector3f, SumAndDifferenceAreNewVectors) {
    const vector3f a(1, 2, 3);
    const vector3f b(10, 30, 50);

    EXPECT_EQ(a + b, vector3f(11, 32, 53));
    EXPECT_EQ(b - a, vector3f(9, 28, 47));
    EXPECT_EQ(a, vector3f(1, 2, 3));
    EXPECT_EQ(b, vector3f(10, 30, 50));
}

TEST(Vector3f, UnaryPlusCopiesAndUnaryMinusNegatesEveryComponent) {
    const vector3f v(1, -2, 3);

    EXPECT_EQ(+v, vector3f(1, -2, 3));
    EXPECT_EQ(-v, vector3f(-1, 2, -3));
    EXPECT_TRUE(std::signbit((-vector3f()).x));
}

TEST(Vector3f, ProductOfVectorsIsComponentWise) {
    EXPECT_EQ(vector3f(1, 2, 3) * vector3f(2, 2, 2), vector3f(2, 4, 6));
}

TEST(Vector3f, ProductKeepsEachComponentToItself) {
    EXPECT_EQ(vector3f(1, 2, 3) * vector3f(5, 7, 11), vector3f(5, 14, 33));
}

TEST(Vector3f, ScalesFromBothSides) {
    EXPECT_EQ(vector3f(1, 2, 3) * 2.0F, vector3f(2, 4, 6));
    EXPECT_EQ(2.0F * vector3f(1, 2, 3), vector3f(2, 4, 6));
}

TEST(Vector3f, QuotientOfVectorsIsComponentWiseWithoutGuard) {
    EXPECT_EQ(vector3f(10, 14, 33) / vector3f(5, 7, 11), vector3f(2, 2, 3));
    EXPECT_EQ(vector3f(1, -1, 4) / vector3f(0, 0, 2), vector3f(kInfinity, -kInfinity, 2));
}

TEST(Vector3f, DividesByAScalarWithoutGuard) {
    EXPECT_EQ(vector3f(2, 4, 6) / 2.0F, vector3f(1, 2, 3));
    EXPECT_EQ(vector3f(1, -1, 2) / 0.0F, vector3f(kInfinity, -kInfinity, kInfinity));
}

TEST(Vector3f, AssignmentsReturnTheLeftOperand) {
    vector3f v;

    EXPECT_EQ(&(v = vector3f(1, 2, 3)), &v);
    EXPECT_EQ(v, vector3f(1, 2, 3));
    EXPECT_EQ(&(v += vector3f(10, 20, 30)), &v);
    EXPECT_EQ(v, vector3f(11, 22, 33));
    EXPECT_EQ(&(v -= vector3f(1, 1, 2)), &v);
    EXPECT_EQ(v, vector3f(10, 21, 31));
}

TEST(Vector3f, AddingAVectorToItselfDoublesIt) {
    vector3f v(1, 2, 3);

    v += v;

    EXPECT_EQ(v, vector3f(2, 4, 6));
}

TEST(Vector3f, EqualityNeedsAllThreeComponents) {
    EXPECT_TRUE(vector3f(1, 2, 3) == vector3f(1, 2, 3));
    EXPECT_FALSE(vector3f(1, 2, 3) == vector3f(0, 2, 3));
    EXPECT_FALSE(vector3f(1, 2, 3) == vector3f(1, 0, 3));
    EXPECT_FALSE(vector3f(1, 2, 3) == vector3f(1, 2, 0));
    EXPECT_TRUE(vector3f(0, 0, 0) == vector3f(-0.0F, -0.0F, -0.0F));
}

TEST(Vector3f, InequalityIsTheNegationOfEquality) {
    EXPECT_FALSE(vector3f(1, 2, 3) != vector3f(1, 2, 3));
    EXPECT_TRUE(vector3f(1, 2, 3) != vector3f(0, 2, 3));
    EXPECT_TRUE(vector3f(1, 2, 3) != vector3f(1, 0, 3));
    EXPECT_TRUE(vector3f(1, 2, 3) != vector3f(1, 2, 0));
}

TEST(Vector3f, AVectorHoldingNaNIsNotEqualToItself) {
    for (const vector3f& v : {vector3f(kNaN, 2, 3), vector3f(1, kNaN, 3), vector3f(1, 2, kNaN)}) {
        const vector3f& same = v;
        EXPECT_FALSE(v == same);
        EXPECT_TRUE(v != same);
    }
}

TEST(Vector3f, CrossProductIsPerpendicularInTheSenseOfTheRightHand) {
    EXPECT_EQ(crossProduct(vector3f(1, 0, 0), vector3f(0, 1, 0)), vector3f(0, 0, 1));
    EXPECT_EQ(crossProduct(vector3f(2, 3, 5), vector3f(7, 11, 13)), vector3f(-16, 9, 1));
}

TEST(Vector3f, DotProductSumsTheProducts) {
    EXPECT_EQ(dotProduct(vector3f(2, 3, 5), vector3f(7, 11, 13)), 112.0F);
}

}  // namespace
