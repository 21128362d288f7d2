// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/matrix4x4f.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <string>

namespace {

using Elements = std::array<float, 16>;

constexpr Elements kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Elements ElementsOf(const matrix4x4f& matrix) {
    Elements elements{};
    for (std::size_t i = 0; i < elements.size(); ++i) elements[i] = matrix.m[i];
    return elements;
}

// Returns a matrix that holds `first`, `first` + 1 ... at the indices 0, 1 ...
matrix4x4f Counting(float first) {
    matrix4x4f matrix;
    for (float& element : matrix.m) element = first++;
    return matrix;
}

// Expects sixteen elements up to rounding.
void ExpectNear(const matrix4x4f& matrix, const Elements& expected) {
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(matrix.m[i], expected[i], 1e-6F) << "index " << i;
}

// The sine and cosine of 30 degrees.
constexpr float kSin = 0.5F;
const float kCos = std::sqrt(3.0F) / 2.0F;

TEST(Matrix4x4f, IsMadeAsTheIdentity) {
    EXPECT_EQ(ElementsOf(matrix4x4f()), kIdentity);
}

TEST(Matrix4x4f, MadeFromSixteenArgumentsHolds_0_4_8_12_InItsFirstColumn) {
    const matrix4x4f matrix(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);

    EXPECT_EQ(ElementsOf(matrix), (Elements{0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15}));
}

TEST(Matrix4x4f, IdentityOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.identity(), &matrix);
    EXPECT_EQ(ElementsOf(matrix), kIdentity);
}

TEST(Matrix4x4f, TranslateOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.translate(vector3f(2, 3, 4)), &matrix);
    EXPECT_EQ(ElementsOf(matrix), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 1}));
}

TEST(Matrix4x4f, TranslationsAlongOneAxisOverwriteTheWholeMatrixAndReturnIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.translate_x(5), &matrix);
    EXPECT_EQ(ElementsOf(matrix), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1}));
    EXPECT_EQ(&matrix.translate_y(6), &matrix);
    EXPECT_EQ(ElementsOf(matrix), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 6, 0, 1}));
    EXPECT_EQ(&matrix.translate_z(7), &matrix);
    EXPECT_EQ(ElementsOf(matrix), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 7, 1}));
}

TEST(Matrix4x4f, TranslatesByOneOfItsOwnElements) {
    matrix4x4f matrix;
    matrix.translate_x(5);

    matrix.translate_y(matrix.m[12]);

    EXPECT_EQ(matrix.m[13], 5.0F);
}

TEST(Matrix4x4f, RotateXOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.rotate_x(30), &matrix);
    ExpectNear(matrix, {1, 0, 0, 0, 0, kCos, kSin, 0, 0, -kSin, kCos, 0, 0, 0, 0, 1});
}

TEST(Matrix4x4f, RotateYOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.rotate_y(30), &matrix);
    ExpectNear(matrix, {kCos, 0, -kSin, 0, 0, 1, 0, 0, kSin, 0, kCos, 0, 0, 0, 0, 1});
}

TEST(Matrix4x4f, RotateZOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.rotate_z(30), &matrix);
    ExpectNear(matrix, {kCos, kSin, 0, 0, -kSin, kCos, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
}

TEST(Matrix4x4f, RotateZBy90MapsXToYThroughTransformVector) {
    matrix4x4f matrix;
    vector3f v(1, 0, 0);

    matrix.rotate_z(90).transformVector(&v);

    EXPECT_NEAR(v.x, 0.0F, 1e-6F);
    EXPECT_NEAR(v.y, 1.0F, 1e-6F);
    EXPECT_NEAR(v.z, 0.0F, 1e-6F);
}

TEST(Matrix4x4f, AnglesAreConvertedWithASinglePrecisionFactor) {
    const float radians = 123.0F * 0.017453292F;
    matrix4x4f matrix;

    EXPECT_EQ(matrix.rotate_z(123).m[1], std::sin(radians));
    EXPECT_EQ(matrix.rotate_z(123).m[0], std::cos(radians));
}

// Angles whose sine or cosine comes out otherwise in double precision, from a double or from a float.
TEST(Matrix4x4f, SinesAndCosinesAreInSinglePrecision) {
    for (volatile const float angle : {13.0F, 46.5F, 122.0F}) {
        const float degrees = angle;  // as at run time: the compiler's own sines may be others
        const float s = std::sin(degrees * 0.017453292F);
        const float c = std::cos(degrees * 0.017453292F);
        matrix4x4f matrix;

        EXPECT_EQ(ElementsOf(matrix.rotate_x(degrees)),
                  (Elements{1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1}));
        EXPECT_EQ(ElementsOf(matrix.rotate_y(degrees)),
                  (Elements{c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1}));
        EXPECT_EQ(ElementsOf(matrix.rotate_z(degrees)),
                  (Elements{c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    }
}

TEST(Matrix4x4f, RotateAboutAnArbitraryAxisIsInSinglePrecisionToo) {
    for (volatile const float angle : {13.0F, 46.5F, 122.0F}) {
        const float degrees = angle;
        const float s = std::sin(degrees * 0.017453292F);
        const float t = 1.0F - std::cos(degrees * 0.017453292F);
        const float c = 1.0F + t * -1.0F;
        vector3f x_axis(1, 0, 0);
        vector3f y_axis(0, 1, 0);
        vector3f z_axis(0, 0, 1);
        matrix4x4f about_x;
        matrix4x4f about_y;
        matrix4x4f about_z;

        about_x.rotate(degrees, x_axis);
        about_y.rotate(degrees, y_axis);
        about_z.rotate(degrees, z_axis);

        EXPECT_EQ(ElementsOf(about_x), (Elements{1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1}));
        EXPECT_EQ(ElementsOf(about_y), (Elements{c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1}));
        EXPECT_EQ(ElementsOf(about_z), (Elements{c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    }
}

TEST(Matrix4x4f, RotateAboutAnArbitraryAxisWritesTheNineElementsAndTheLast) {
    const float x = 2.0F / 7.0F;
    const float y = 3.0F / 7.0F;
    const float z = 6.0F / 7.0F;
    const float t = 1.0F - kCos;
    matrix4x4f matrix;
    vector3f axis(2, 3, 6);

    matrix.rotate(30, axis);

    ExpectNear(matrix, {1 + t * (x * x - 1), z * kSin + t * x * y, -y * kSin + t * x * z, 0,  //
                        -z * kSin + t * x * y, 1 + t * (y * y - 1), x * kSin + t * y * z, 0,  //
                        y * kSin + t * x * z, -x * kSin + t * y * z, 1 + t * (z * z - 1), 0,  //
                        0, 0, 0, 1});
}

TEST(Matrix4x4f, RotateAboutTheCoordinateAxesAgreesWithTheSpecialRotations) {
    vector3f x_axis(1, 0, 0);
    vector3f y_axis(0, 1, 0);
    vector3f z_axis(0, 0, 1);
    matrix4x4f matrix;
    matrix4x4f special;

    matrix.rotate(40, x_axis);
    ExpectNear(matrix, ElementsOf(special.rotate_x(40)));
    matrix.rotate(40, y_axis);
    ExpectNear(matrix, ElementsOf(special.rotate_y(40)));
    matrix.rotate(40, z_axis);
    ExpectNear(matrix, ElementsOf(special.rotate_z(40)));
}

TEST(Matrix4x4f, RotateNormalisesTheCallersAxis) {
    matrix4x4f matrix;
    vector3f axis(0, 0, 2);

    matrix.rotate(45, axis);

    EXPECT_EQ(axis, vector3f(0, 0, 1));
}

TEST(Matrix4x4f, RotateKeepsATranslation) {
    matrix4x4f matrix;
    vector3f axis(0, 0, 1);
    matrix.translate(vector3f(2, 3, 4));

    matrix.rotate(90, axis);

    EXPECT_EQ(matrix.m[12], 2.0F);
    EXPECT_EQ(matrix.m[13], 3.0F);
    EXPECT_EQ(matrix.m[14], 4.0F);
}

TEST(Matrix4x4f, RotateKeepsWhatItDoesNotWrite) {
    matrix4x4f matrix = Counting(20);
    vector3f axis(1, 2, 2);

    matrix.rotate(30, axis);

    for (const std::size_t i : {3U, 7U, 11U, 12U, 13U, 14U})
        EXPECT_EQ(matrix.m[i], 20.0F + static_cast<float>(i)) << "index " << i;
    for (const std::size_t i : {0U, 1U, 2U, 4U, 5U, 6U, 8U, 9U, 10U})
        EXPECT_LE(std::abs(matrix.m[i]), 1.0F) << "index " << i;
    EXPECT_EQ(matrix.m[15], 1.0F);
}

TEST(Matrix4x4f, ScaleOverwritesTheWholeMatrixAndReturnsIt) {
    matrix4x4f matrix = Counting(20);

    EXPECT_EQ(&matrix.scale(vector3f(2, 3, 4)), &matrix);
    EXPECT_EQ(ElementsOf(matrix), (Elements{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
}

TEST(Matrix4x4f, TransformPointAppliesTheUpperThreeRowsAndReturnsThePoint) {
    const matrix4x4f matrix(1, 2, 3, 4,     //
                            5, 6, 7, 8,     //
                            9, 10, 11, 12,  //
                            99, 99, 99, 99);
    vector3f p(1, 10, 100);

    vector3f* returned = matrix.transformPoint(&p);

    EXPECT_EQ(returned, &p);
    EXPECT_EQ(p.x, 325.0F);   // 1 + 20 + 300 + 4
    EXPECT_EQ(p.y, 773.0F);   // 5 + 60 + 700 + 8
    EXPECT_EQ(p.z, 1221.0F);  // 9 + 100 + 1100 + 12
}

TEST(Matrix4x4f, TransformVectorLeavesOutTheTranslationAndReturnsTheVector) {
    const matrix4x4f matrix(1, 2, 3, 4,     //
                            5, 6, 7, 8,     //
                            9, 10, 11, 12,  //
                            99, 99, 99, 99);
    vector3f v(1, 10, 100);

    vector3f* returned = matrix.transformVector(&v);

    EXPECT_EQ(returned, &v);
    EXPECT_EQ(v.x, 321.0F);
    EXPECT_EQ(v.y, 765.0F);
    EXPECT_EQ(v.z, 1209.0F);
}

TEST(Matrix4x4f, SumAndDifferenceAreElementWise) {
    const matrix4x4f sum = Counting(1) + Counting(100);
    const matrix4x4f difference = Counting(100) - Counting(1);

    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(sum.m[i], 101.0F + 2.0F * static_cast<float>(i));
        EXPECT_EQ(difference.m[i], 99.0F);
    }
}

TEST(Matrix4x4f, ProductIsThisTimesTheOther) {
    const matrix4x4f a(1, 2, 0, 0,  //
                       3, 4, 0, 0,  //
                       0, 0, 1, 5,  //
                       0, 0, 6, 1);
    const matrix4x4f b(5, 6, 0, 0,  //
                       7, 8, 0, 0,  //
                       0, 0, 2, 3,  //
                       0, 0, 4, 7);

    const matrix4x4f product = a * b;

    EXPECT_EQ(ElementsOf(product), ElementsOf(matrix4x4f(19, 22, 0, 0,  //
                                                         43, 50, 0, 0,  //
                                                         0, 0, 22, 38,  //
                                                         0, 0, 16, 25)));
}

TEST(Matrix4x4f, ProductDoesTheOtherFirst) {
    matrix4x4f turn;
    matrix4x4f move;
    vector3f p(1, 0, 0);

    (turn.rotate_z(90) * move.translate_x(2)).transformPoint(&p);

    EXPECT_NEAR(p.x, 0.0F, 1e-6F);
    EXPECT_NEAR(p.y, 3.0F, 1e-6F);
}

TEST(Matrix4x4f, ScalarMultipliesEveryElement) {
    const matrix4x4f scaled = Counting(1) * 3.0F;

    for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(scaled.m[i], 3.0F * static_cast<float>(i + 1));
}

/// Returns whether a matrix that `make` returns leaves the memory behind it alone.
template <typename Make>
bool EndsInTime(const Make& make) {
    constexpr float kUntouched = -77;
    alignas(matrix4x4f) std::array<float, 24> memory{};
    memory.fill(kUntouched);
    new (memory.data()) matrix4x4f(make());  // made where it is, not copied there
    return std::all_of(memory.begin() + 16, memory.end(), [](float number) { return number == kUntouched; });
}

TEST(Matrix4x4f, NoOperationWritesBehindTheMatrix) {
    EXPECT_TRUE(EndsInTime([] { return matrix4x4f(); }));
    EXPECT_TRUE(EndsInTime([] { return Counting(1) + Counting(2); }));
    EXPECT_TRUE(EndsInTime([] { return Counting(1) - Counting(2); }));
    EXPECT_TRUE(EndsInTime([] { return Counting(1) * Counting(2); }));
    EXPECT_TRUE(EndsInTime([] { return Counting(1) * 2; }));
}

}  // namespace
