// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/canvas.h"

#include <GL/gl.h>

#include <string>
#include <vector>

#include "tests/fakes/fakes.h"

namespace {

using CanvasTest = fakes::Test;

/// Draws a point where a caller asks for it and returns where it came to be.
fakes::Vertex PointAt(float x, float y) {
    glBegin(GL_POINTS);
    glVertex2f(x, y);
    glEnd();
    return fakes::gl().primitives.back().vertices.at(0);
}

TEST_F(CanvasTest, Measures512Units) {
    EXPECT_EQ(kCanvasEdge, 512);
}

TEST_F(CanvasTest, IsEnteredByTheProjectionFirstAndLeavesTheModelViewTwoLevelsDeep) {
    EnterCanvas();

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glLoadIdentity()",
                                        "glOrtho(0, 512, 0, 512, -1, 1)", "glMatrixMode(GL_MODELVIEW)",
                                        "glPushMatrix()", "glLoadIdentity()", "glPushMatrix()"}));
    EXPECT_EQ(fakes::gl().modelview.size(), 3U);
    EXPECT_EQ(fakes::gl().projection.size(), 2U);
}

TEST_F(CanvasTest, IsLeftByTheModelViewFirst) {
    EnterCanvas();
    fakes::ClearLog();

    LeaveCanvas();

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glPopMatrix()", "glMatrixMode(GL_PROJECTION)", "glPopMatrix()",
                                        "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()"}));
}

TEST_F(CanvasTest, ReachesOverTheWholeWindowWhateverItsSizeAndTheMatrices) {
    fakes::gl().viewport = {0, 0, 900, 70};
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(50, 60, 70);

    EnterCanvas();

    const fakes::Vertex bottom_left = PointAt(0, 0);
    const fakes::Vertex top_right = PointAt(512, 512);
    const fakes::Vertex inside = PointAt(128, 384);
    EXPECT_NEAR(bottom_left.x, 0, 1e-6);
    EXPECT_NEAR(bottom_left.y, 0, 1e-6);
    EXPECT_NEAR(top_right.x, 512, 1e-6);
    EXPECT_NEAR(top_right.y, 512, 1e-6);
    EXPECT_NEAR(inside.x, 128, 1e-6);
    EXPECT_NEAR(inside.y, 384, 1e-6);
    EXPECT_NEAR(inside.z, 0, 1e-6) << "between the near and the far plane";
}

TEST_F(CanvasTest, LeavesTheMatricesAsTheyWere) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glTranslatef(50, 60, 70);
    const std::vector<fakes::Mat4> modelview = fakes::gl().modelview;
    const std::vector<fakes::Mat4> projection = fakes::gl().projection;

    EnterCanvas();
    glTranslatef(1, 2, 3);
    LeaveCanvas();

    EXPECT_EQ(fakes::gl().modelview, modelview);
    EXPECT_EQ(fakes::gl().projection, projection);
    EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
}

TEST_F(CanvasTest, MayBeEnteredWithinItself) {
    EnterCanvas();
    glTranslatef(100, 0, 0);
    EnterCanvas();
    const fakes::Vertex inner = PointAt(10, 20);
    LeaveCanvas();
    const fakes::Vertex outer = PointAt(10, 20);
    LeaveCanvas();

    EXPECT_NEAR(inner.x, 10, 1e-6);
    EXPECT_NEAR(outer.x, 110, 1e-6);
    EXPECT_EQ(fakes::gl().modelview.size(), 1U);
    EXPECT_EQ(fakes::gl().projection.size(), 1U);
}

TEST_F(CanvasTest, ChangesNothingButMatrices) {
    EnterCanvas();
    LeaveCanvas();

    for (const std::string& name : fakes::Names()) {
        EXPECT_TRUE(name == "glMatrixMode" || name == "glPushMatrix" || name == "glPopMatrix" ||
                    name == "glLoadIdentity" || name == "glOrtho")
            << name;
    }
}

}  // namespace
