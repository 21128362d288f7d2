// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/screen.h"
#include "tests/fakes/fakes.h"

namespace {

struct ScreenCorner {
    fakes::Vec2 texcoord;
    fakes::Vec3 place;
};

// Expects a quad with these corners in this order, in object space.
void ExpectQuad(const fakes::Primitive& quad, const std::vector<ScreenCorner>& corners) {
    EXPECT_EQ(quad.mode, static_cast<GLenum>(GL_QUADS));
    ASSERT_EQ(quad.vertices.size(), corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(quad.vertices[i].texcoord, corners[i].texcoord) << "corner " << i;
        EXPECT_EQ(quad.vertices[i].object, corners[i].place) << "corner " << i;
    }
}

// Expects the one normal at every corner.
void ExpectNormal(const fakes::Primitive& quad, const fakes::Vec3& normal) {
    for (const fakes::Vertex& vertex : quad.vertices) EXPECT_EQ(vertex.normal, normal);
}

// Returns the only primitive drawn.
fakes::Primitive OnlyPrimitive() {
    EXPECT_EQ(fakes::gl().primitives.size(), 1U);
    return fakes::gl().primitives.empty() ? fakes::Primitive() : fakes::gl().primitives[0];
}

// ---- DrawRect ----

using DrawRectTest = fakes::Test;

TEST_F(DrawRectTest, DrawsOneQuadAboutTheOrigin) {
    DrawRect(10, 20, 0);

    ExpectQuad(OnlyPrimitive(),
               {{{0, 0}, {-5, -10, 0}}, {{1, 0}, {5, -10, 0}}, {{1, 1}, {5, 10, 0}}, {{0, 1}, {-5, 10, 0}}});
}

TEST_F(DrawRectTest, OfHeight20AndTopExtra5SpansYFromMinus10To15) {
    DrawRect(10, 20, 5);

    ExpectQuad(OnlyPrimitive(),
               {{{0, 0}, {-5, -10, 0}}, {{1, 0}, {5, -10, 0}}, {{1, 1}, {5, 15, 0}}, {{0, 1}, {-5, 15, 0}}});
}

TEST_F(DrawRectTest, SetsNothingUpOfItsOwn) {
    DrawRect(10, 20, 5);

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glBegin(GL_QUADS)", "glTexCoord2f(0, 0)", "glVertex3f(-5, -10, 0)",
                                        "glTexCoord2f(1, 0)", "glVertex3f(5, -10, 0)", "glTexCoord2f(1, 1)",
                                        "glVertex3f(5, 15, 0)", "glTexCoord2f(0, 1)", "glVertex3f(-5, 15, 0)",
                                        "glEnd()"}));
}

TEST_F(DrawRectTest, DrawsInTheCurrentMatrices) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(0, 512, 0, 512, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(271, 265, 0);

    DrawRect(500, 500, 3);

    EXPECT_EQ(fakes::Bounds(OnlyPrimitive()), (fakes::Rect{21, 15, 521, 518}));
}

// ---- glBillboarding ----

using Billboarding = fakes::Test;

TEST_F(Billboarding, ReadsTheModelViewMatrixLoadsItWithoutItsRotationAndTurnsBy180AboutY) {
    glTranslatef(3, 4, 5);
    glScalef(2, 3, 4);
    fakes::ClearLog();

    glBillboarding();

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glGetFloatv(GL_MODELVIEW_MATRIX)",
                                        "glLoadMatrixf(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 3, 4, 5, 1)",
                                        "glRotatef(180, 0, 1, 0)"}));
}

TEST_F(Billboarding, KeepsTheLowestRowAsItWas) {
    GLfloat odd[16] = {9, 9, 9, 0.5F, 9, 9, 9, 0.25F, 9, 9, 9, 0.125F, 3, 4, 5, 2};
    glLoadMatrixf(odd);
    fakes::ClearLog();

    glBillboarding();

    EXPECT_EQ(
        fakes::Lines({"glLoadMatrixf"}),
        (std::vector<std::string>{"glLoadMatrixf(1, 0, 0, 0.5, 0, 1, 0, 0.25, 0, 0, 1, 0.125, 3, 4, 5, 2)"}));
}

TEST_F(Billboarding, LeavesHalfATurnAboutYAndTheTranslation) {
    glTranslatef(3, 4, 5);
    glRotatef(37, 1, 2, 3);

    glBillboarding();

    const fakes::Mat4 expected = {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 3, 4, 5, 1};
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(fakes::gl().modelview.back()[i], expected[i], 1e-6) << "index " << i;
}

// ---- RenderPlane ----

using RenderPlaneTest = fakes::Test;

TEST_F(RenderPlaneTest, DrawsOneLevelQuad) {
    RenderPlane(8, 3);

    const fakes::Primitive quad = OnlyPrimitive();
    ExpectQuad(quad,
               {{{3, 0}, {-8, 0, -8}}, {{0, 0}, {8, 0, -8}}, {{0, 3}, {8, 0, 8}}, {{3, 3}, {-8, 0, 8}}});
    ExpectNormal(quad, {0, 1, 0});
    EXPECT_EQ(fakes::Names({"glPushMatrix", "glEnable", "glBindTexture"}), std::vector<std::string>{});
}

// ---- RenderParticle ----

class RenderParticleTest : public fakes::Test {
  protected:
    static void ExpectParticle() {
        const fakes::Primitive quad = OnlyPrimitive();
        ExpectQuad(quad,
                   {{{1, 0}, {-4, -4, 0}}, {{0, 0}, {4, -4, 0}}, {{0, 1}, {4, 4, 0}}, {{1, 1}, {-4, 4, 0}}});
        ExpectNormal(quad, {0, 0, 1});
    }
};

TEST_F(RenderParticleTest, WithoutRollFacesTheViewerInItsOwnMatrix) {
    RenderParticle(4, false);

    ExpectParticle();
    EXPECT_EQ(
        fakes::Names({"glPushMatrix", "glGetFloatv", "glLoadMatrixf", "glRotatef", "glBegin", "glPopMatrix"}),
        (std::vector<std::string>{"glPushMatrix", "glGetFloatv", "glLoadMatrixf", "glRotatef", "glBegin",
                                  "glPopMatrix"}));
    EXPECT_EQ(fakes::world().rand_calls, 0);
    EXPECT_EQ(fakes::gl().modelview, std::vector<fakes::Mat4>{fakes::Identity()});
}

TEST_F(RenderParticleTest, HasANormalTowardsTheViewer) {
    RenderParticle(4, false);

    EXPECT_EQ(fakes::Lines({"glNormal3f"}), (std::vector<std::string>{"glNormal3f(0, 0, 1)"}));
}

TEST_F(RenderParticleTest, WithRollTurnsByARandomWholeDegreeAfterItFacesTheViewer) {
    fakes::world().rand_values = {360 * 5 + 42};

    RenderParticle(4, true);

    ExpectParticle();
    EXPECT_EQ(fakes::Lines({"glRotatef"}),
              (std::vector<std::string>{"glRotatef(180, 0, 1, 0)", "glRotatef(42, 0, 0, 1)"}));
    EXPECT_LT(fakes::IndexOf("glRotatef", 1), fakes::IndexOf("glBegin"));
    EXPECT_EQ(fakes::world().rand_calls, 1);
    EXPECT_EQ(fakes::gl().modelview.size(), 1U);
}

TEST_F(RenderParticleTest, RollsByAtMost359Degrees) {
    fakes::world().rand_values = {359, 360};

    RenderParticle(4, true);
    RenderParticle(4, true);

    EXPECT_EQ(fakes::Calls("glRotatef").at(1).args, (std::vector<double>{359, 0, 0, 1}));
    EXPECT_EQ(fakes::Calls("glRotatef").at(3).args, (std::vector<double>{0, 0, 0, 1}));
}

TEST_F(RenderParticleTest, KeepsItsPlace) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(0, 512, 0, 512, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(100, 200, 0);

    RenderParticle(4, false);

    EXPECT_EQ(fakes::Bounds(OnlyPrimitive()), (fakes::Rect{96, 196, 104, 204}));
}

// ---- RenderSkyBoxMask ----

class SkyBox : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        RenderSkyBoxMask(10, 11, 12, 13, 14, 15);
    }

    // Expects the side that is drawn in this place (from 0).
    static void ExpectSide(std::size_t place, unsigned int texture, const fakes::Vec3& normal,
                           const std::vector<ScreenCorner>& corners) {
        ASSERT_EQ(fakes::gl().primitives.size(), 6U);
        EXPECT_EQ(fakes::gl().primitives[place].texture, texture);
        ExpectNormal(fakes::gl().primitives[place], normal);
        ExpectQuad(fakes::gl().primitives[place], corners);
    }
};

TEST_F(SkyBox, DrawsTexture2AtTheBackFirst) {
    ExpectSide(0, 12, {0, 0, -1},
               {{{0, 0}, {-1, -1, 1}}, {{1, 0}, {1, -1, 1}}, {{1, 1}, {1, 1, 1}}, {{0, 1}, {-1, 1, 1}}});
}

TEST_F(SkyBox, DrawsTexture3AtTheFrontSecond) {
    ExpectSide(1, 13, {0, 0, 1},
               {{{1, 0}, {-1, -1, -1}}, {{1, 1}, {-1, 1, -1}}, {{0, 1}, {1, 1, -1}}, {{0, 0}, {1, -1, -1}}});
}

TEST_F(SkyBox, DrawsTexture4AtTheTopThird) {
    ExpectSide(2, 14, {0, -1, 0},
               {{{0, 1}, {-1, 1, -1}}, {{0, 0}, {-1, 1, 1}}, {{1, 0}, {1, 1, 1}}, {{1, 1}, {1, 1, -1}}});
}

TEST_F(SkyBox, DrawsTexture5AtTheBottomFourth) {
    ExpectSide(3, 15, {0, 1, 0},
               {{{1, 1}, {-1, -1, -1}}, {{0, 1}, {1, -1, -1}}, {{0, 0}, {1, -1, 1}}, {{1, 0}, {-1, -1, 1}}});
}

TEST_F(SkyBox, DrawsTexture1AtTheRightFifth) {
    ExpectSide(4, 11, {-1, 0, 0},
               {{{1, 0}, {1, -1, -1}}, {{1, 1}, {1, 1, -1}}, {{0, 1}, {1, 1, 1}}, {{0, 0}, {1, -1, 1}}});
}

TEST_F(SkyBox, DrawsTexture0AtTheLeftLast) {
    ExpectSide(5, 10, {1, 0, 0},
               {{{0, 0}, {-1, -1, -1}}, {{1, 0}, {-1, -1, 1}}, {{1, 1}, {-1, 1, 1}}, {{0, 1}, {-1, 1, -1}}});
}

TEST_F(SkyBox, TouchesNoOtherState) {
    EXPECT_EQ(fakes::Log().size(), 6 * (1 + 3 + 8U));  // bind; begin, normal, end; four corners of two calls
    EXPECT_EQ(fakes::Count("glBindTexture"), 6U);
    EXPECT_EQ(fakes::Count("glBegin"), 6U);
    EXPECT_EQ(fakes::Count("glNormal3f"), 6U);
    EXPECT_EQ(fakes::Count("glTexCoord2f"), 24U);
    EXPECT_EQ(fakes::Count("glVertex3f"), 24U);
    EXPECT_EQ(fakes::Count("glEnd"), 6U);
}

}  // namespace
