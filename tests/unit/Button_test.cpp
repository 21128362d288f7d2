// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: making, drawing, colour, hovering, clicking.
#include "engine/Button.h"

#include <GL/freeglut.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "engine/host.h"
#include "engine/window_metrics.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/colors.h"

namespace {

/// A window of 512 x 512 pixels, so that a pixel is a canvas unit; the pointer is in its top left corner.
class ButtonTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        SizeWindow(512, 512);
        PointAtPixel(0, 0);
        single_touch = false;
        fakes::ClearLog();
    }
    void TearDown() override {
        PointAtPixel(0, 0);
        single_touch = false;
        ForgetWindowMetrics();
        fakes::Test::TearDown();
    }

    /// Resizes the window. The size is asked for here, so that it is not in the log of what follows.
    static void SizeWindow(int width, int height) {
        fakes::glut().get[GLUT_WINDOW_WIDTH] = width;
        fakes::glut().get[GLUT_WINDOW_HEIGHT] = height;
        ForgetWindowMetrics();
        WindowWidth();
        WindowHeight();
    }

    static void PointAtPixel(float x, float y) {
        touch_coord_x = x;
        touch_coord_y = y;
    }

    /// Puts the pointer on a canvas point of the window of 512 x 512 pixels.
    static void PointAtCanvas(float x, float y) { PointAtPixel(x, 512 - y); }

    /// Returns the one thing drawn.
    static fakes::Primitive Drawn() {
        EXPECT_EQ(fakes::gl().primitives.size(), 1U);
        return fakes::gl().primitives.empty() ? fakes::Primitive() : fakes::gl().primitives.back();
    }
};

// ---- Making ----

TEST_F(ButtonTest, KeepsWhatItIsMadeOf) {
    const Button button(7, 100, 200, 30, 20);

    EXPECT_EQ(button.texture, 7U);
    EXPECT_EQ(button.position.x, 100);
    EXPECT_EQ(button.position.y, 200);
    EXPECT_EQ(button.position.z, 0);
    EXPECT_EQ(button.width, 30);
    EXPECT_EQ(button.height, 20);
    EXPECT_EQ(button.offset_y, 0);
}

TEST_F(ButtonTest, DrawsItsPhaseFromARandomNumberOfWholeDegreesBelow180) {
    for (const auto& [random, phase] :
         std::vector<std::pair<int, float>>{{0, 0}, {1, 1}, {179, 179}, {180, 0}, {541, 1}, {1000, 100}}) {
        fakes::world().rand_values = {random};

        EXPECT_EQ(Button(7, 0, 0, 1, 1).phase, phase) << "rand gave " << random;
    }
}

TEST_F(ButtonTest, TakesOneRandomNumberWhenMadeAndNoneAfterwards) {
    Button button(7, 100, 200, 30, 20);
    EXPECT_EQ(fakes::world().rand_calls, 1);

    button.Display(true);
    button.isSelected();
    button.Repos(1, 2);
    button.Reshape(3, 4);

    EXPECT_EQ(fakes::world().rand_calls, 1);
}

TEST_F(ButtonTest, IsMadeWithoutACallToGl) {
    const Button button(7, 100, 200, 30, 20);

    EXPECT_EQ(button.texture, 7U);
    EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{}));
}

TEST_F(ButtonTest, MovesItsCentreAndKeepsTheRest) {
    Button button(7, 100, 200, 30, 20);
    button.position.z = 9;
    button.offset_y = 5;

    button.Repos(11, 12);

    EXPECT_EQ(button.position.x, 11);
    EXPECT_EQ(button.position.y, 12);
    EXPECT_EQ(button.position.z, 0);
    EXPECT_EQ(button.width, 30);
    EXPECT_EQ(button.height, 20);
    EXPECT_EQ(button.offset_y, 5);
}

TEST_F(ButtonTest, TakesANewHalfWidthAndHalfHeightAndKeepsTheRest) {
    Button button(7, 100, 200, 30, 20);

    button.Reshape(3, 4);

    EXPECT_EQ(button.width, 3);
    EXPECT_EQ(button.height, 4);
    EXPECT_EQ(button.position.x, 100);
    EXPECT_EQ(button.position.y, 200);
}

// ---- Drawing ----

/// Returns the calls of a button with the texture 7 at (100, 200), half 30 by 20, up to where it is coloured.
const std::vector<std::string> kEntering = {"glMatrixMode(GL_PROJECTION)",
                                            "glPushMatrix()",
                                            "glLoadIdentity()",
                                            "glOrtho(0, 512, 0, 512, -1, 1)",
                                            "glMatrixMode(GL_MODELVIEW)",
                                            "glPushMatrix()",
                                            "glLoadIdentity()",
                                            "glPushMatrix()",
                                            "glEnable(GL_BLEND)",
                                            "glDepthMask(GL_FALSE)",
                                            "glEnable(GL_TEXTURE_2D)",
                                            "glBindTexture(GL_TEXTURE_2D, 7)",
                                            "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"};
const std::vector<std::string> kDrawing = {"glTranslatef(100, 200, 0)",
                                           "glScalef(30, 20, 1)",
                                           "glEnableClientState(GL_VERTEX_ARRAY)",
                                           "glEnableClientState(GL_TEXTURE_COORD_ARRAY)",
                                           "glVertexPointer(3, GL_FLOAT, 0)",
                                           "glTexCoordPointer(2, GL_FLOAT, 0)",
                                           "glDrawArrays(GL_TRIANGLES, 0, 6)",
                                           "glDisableClientState(GL_TEXTURE_COORD_ARRAY)"};
const std::vector<std::string> kLeaving = {
    "glDepthMask(GL_TRUE)", "glDisable(GL_BLEND)",        "glPopMatrix()", "glMatrixMode(GL_PROJECTION)",
    "glPopMatrix()",        "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()"};

TEST_F(ButtonTest, IsDrawnInThisOrderWithoutHighlight) {
    Button(7, 100, 200, 30, 20).Display(false);

    EXPECT_EQ(fakes::Lines(), fakes::Joined({kEntering, kDrawing, kLeaving}));
}

TEST_F(ButtonTest, IsDrawnInThisOrderWithHighlight) {
    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(
        fakes::Lines(),
        fakes::Joined({kEntering, {"glColor4f(1, 1, 1, 1)"}, kDrawing, {"glColor4f(1, 1, 1, 1)"}, kLeaving}));
}

TEST_F(ButtonTest, IsDrawnInThisOrderWithHighlightUnderThePointer) {
    PointAtCanvas(100, 200);

    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(fakes::Lines(),
              fakes::Joined(
                  {kEntering, {"glColor4f(1, 1, 0.5, 1)"}, kDrawing, {"glColor4f(1, 1, 1, 1)"}, kLeaving}));
}

TEST_F(ButtonTest, ShowsItsWholeTextureUprightOnTwoTriangles) {
    Button(7, 100, 200, 30, 20).Display(false);

    const fakes::Primitive drawn = Drawn();
    struct Corner {
        fakes::Vec3 place;
        fakes::Vec2 texcoord;
    };
    const std::array<Corner, 6> corners = {{
        {{-1, 1, 0}, {0, 1}},
        {{-1, -1, 0}, {0, 0}},
        {{1, 1, 0}, {1, 1}},
        {{1, 1, 0}, {1, 1}},
        {{1, -1, 0}, {1, 0}},
        {{-1, -1, 0}, {0, 0}},
    }};
    EXPECT_EQ(drawn.mode, static_cast<GLenum>(GL_TRIANGLES));
    ASSERT_EQ(drawn.vertices.size(), corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(drawn.vertices[i].object, corners[i].place) << "corner " << i;
        EXPECT_EQ(drawn.vertices[i].texcoord, corners[i].texcoord) << "corner " << i;
    }
}

TEST_F(ButtonTest, IsDrawnAroundItsCentre) {
    Button(7, 100, 200, 30, 20).Display(false);

    EXPECT_EQ(fakes::Bounds(Drawn()), (fakes::Rect{70, 180, 130, 220}));
}

TEST_F(ButtonTest, IsDrawnRaisedByItsOffset) {
    Button button(7, 100, 200, 30, 20);
    button.offset_y = 12.5F;

    button.Display(false);

    EXPECT_EQ(fakes::Bounds(Drawn()), (fakes::Rect{70, 192.5, 130, 232.5}));
}

TEST_F(ButtonTest, IsDrawnWhereItWasMovedAndAsLargeAsItWasMade) {
    Button button(7, 100, 200, 30, 20);
    button.Repos(300, 400);
    button.Reshape(5, 6);

    button.Display(false);

    EXPECT_EQ(fakes::Bounds(Drawn()), (fakes::Rect{295, 394, 305, 406}));
}

TEST_F(ButtonTest, IsBlendedWithItsTextureWithoutWritingDepth) {
    Button(7, 100, 200, 30, 20).Display(true);

    const fakes::Primitive drawn = Drawn();
    EXPECT_EQ(drawn.texture, 7U);
    EXPECT_TRUE(drawn.textured);
    EXPECT_TRUE(drawn.blend);
    EXPECT_EQ(drawn.blend_source, static_cast<GLenum>(GL_SRC_ALPHA));
    EXPECT_EQ(drawn.blend_destination, static_cast<GLenum>(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_FALSE(drawn.depth_mask);
}

TEST_F(ButtonTest, IsOnTheCanvasWhateverTheMatricesAndTheWindow) {
    fakes::gl().viewport = {0, 0, 900, 70};
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(50, 60, 70);

    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(fakes::Bounds(Drawn()), (fakes::Rect{70, 180, 130, 220}));
}

TEST_F(ButtonTest, LeavesTheMatricesAsTheyWere) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glTranslatef(50, 60, 70);
    const std::vector<fakes::Mat4> modelview = fakes::gl().modelview;
    const std::vector<fakes::Mat4> projection = fakes::gl().projection;

    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(fakes::gl().modelview, modelview);
    EXPECT_EQ(fakes::gl().projection, projection);
    EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
}

TEST_F(ButtonTest, LeavesBlendingOffDepthWrittenAndOnlyTheVertexArrayEnabled) {
    Button(7, 100, 200, 30, 20).Display(false);

    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
    EXPECT_TRUE(fakes::gl().depth_mask);
    EXPECT_TRUE(fakes::gl().Enabled(GL_TEXTURE_2D));
    EXPECT_TRUE(fakes::gl().vertex_array.enabled);
    EXPECT_FALSE(fakes::gl().texcoord_array.enabled);
}

TEST_F(ButtonTest, SharesItsTwoArraysWithAllOthers) {
    Button(7, 100, 200, 30, 20).Display(false);
    const void* vertices = fakes::gl().vertex_array.pointer;
    const void* texture = fakes::gl().texcoord_array.pointer;

    Button(8, 1, 2, 3, 4).Display(true);

    EXPECT_EQ(fakes::gl().vertex_array.pointer, vertices);
    EXPECT_EQ(fakes::gl().texcoord_array.pointer, texture);
}

// ---- Colour ----

TEST_F(ButtonTest, WithHighlightIsWhiteAwayFromThePointerWhateverTheColorBefore) {
    glColor4f(0.1F, 0.2F, 0.3F, 0.4F);

    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(Drawn().color, kWhite);
    EXPECT_EQ(fakes::gl().color, kWhite);
}

TEST_F(ButtonTest, WithHighlightIsYellowUnderThePointerAndLeavesWhite) {
    PointAtCanvas(100, 200);

    Button(7, 100, 200, 30, 20).Display(true);

    EXPECT_EQ(Drawn().color, kYellow);
    EXPECT_EQ(fakes::gl().color, kWhite);
}

TEST_F(ButtonTest, WithoutHighlightKeepsTheCallersColorAlsoUnderThePointer) {
    const fakes::Rgba callers{0.1F, 0.2F, 0.3F, 0.4F};
    for (const float x : {100.0F, 400.0F}) {
        PointAtCanvas(x, 200);
        fakes::gl().primitives.clear();
        glColor4f(callers[0], callers[1], callers[2], callers[3]);

        Button(7, 100, 200, 30, 20).Display(false);

        EXPECT_EQ(Drawn().color, callers);
        EXPECT_EQ(fakes::gl().color, callers);
    }
}

// ---- Hovering ----

TEST_F(ButtonTest, ThePointerAtTheMiddleOfAWindowOf300By300IsAtTheCanvasesMiddle) {
    SizeWindow(300, 300);
    PointAtPixel(150, 150);

    EXPECT_TRUE(Button(7, 256, 256, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 255, 256, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 257, 256, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 256, 255, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 256, 257, 0.5F, 0.5F).isSelected());
}

TEST_F(ButtonTest, At256WithHalf32IsSelectedAt257ButNotAt288) {
    const Button button(7, 256, 256, 32, 32);

    PointAtCanvas(257, 256);
    EXPECT_TRUE(button.isSelected());
    PointAtCanvas(288, 256);
    EXPECT_FALSE(button.isSelected());
}

TEST_F(ButtonTest, ExcludesAllFourEdges) {
    const Button button(7, 256, 256, 32, 16);
    struct Case {
        float x, y;
        bool selected;
    };
    const std::vector<Case> cases = {
        {224, 256, false}, {225, 256, true},  {287, 256, true},  {288, 256, false},
        {256, 240, false}, {256, 241, true},  {256, 271, true},  {256, 272, false},
        {225, 241, true},  {224, 240, false}, {287, 271, true},  {288, 272, false},
        {223, 256, false}, {289, 256, false}, {256, 239, false}, {256, 273, false},
    };
    for (const Case& row : cases) {
        PointAtCanvas(row.x, row.y);

        EXPECT_EQ(button.isSelected(), row.selected) << row.x << ", " << row.y;
    }
}

TEST_F(ButtonTest, IsHitRaisedByItsOffset) {
    Button button(7, 256, 256, 32, 16);
    button.offset_y = 100;
    struct Case {
        float y;
        bool selected;
    };
    for (const Case& row :
         {Case{256, false}, Case{340, false}, Case{341, true}, Case{371, true}, Case{372, false}}) {
        PointAtCanvas(256, row.y);

        EXPECT_EQ(button.isSelected(), row.selected) << row.y;
    }
}

TEST_F(ButtonTest, IsHitWhereItWasMovedAndAsLargeAsItWasMade) {
    Button button(7, 256, 256, 32, 16);
    button.Repos(100, 100);
    button.Reshape(2, 2);

    PointAtCanvas(101, 99);
    EXPECT_TRUE(button.isSelected());
    PointAtCanvas(102, 100);
    EXPECT_FALSE(button.isSelected());
    PointAtCanvas(256, 256);
    EXPECT_FALSE(button.isSelected());
}

TEST_F(ButtonTest, CutsThePointersPlaceToWholeUnitsTowardZero) {
    // A pixel is 512 / 300 = 1.7067 units: pixel 100 is at 170.67 from the left, and at 341.33 from below.
    SizeWindow(300, 300);
    PointAtPixel(100, 100);

    EXPECT_TRUE(Button(7, 170, 341, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 171, 341, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 170, 342, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, 170.8F, 341, 0.5F, 0.5F).isSelected());
}

TEST_F(ButtonTest, CutsAPlaceOutsideTheWindowTowardZeroToo) {
    // 1 pixel left of the window is at -1.7067 units, 1 below it at -1.7067 from below.
    SizeWindow(300, 300);
    PointAtPixel(-1, 301);

    EXPECT_TRUE(Button(7, -1, -1, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, -2, -1, 0.5F, 0.5F).isSelected());
    EXPECT_FALSE(Button(7, -1, -2, 0.5F, 0.5F).isSelected());
}

TEST_F(ButtonTest, CutsTheRowOnlyAfterTurningIt) {
    // Half a unit above the bottom is row 0, not row 1.
    PointAtPixel(256, 511.5F);

    EXPECT_TRUE(Button(7, 256, 0, 0.25F, 0.25F).isSelected());
    EXPECT_FALSE(Button(7, 256, 1, 0.25F, 0.25F).isSelected());
}

TEST_F(ButtonTest, GoesByTheWindowsWidthAndHeightEachByItself) {
    SizeWindow(1024, 128);
    PointAtPixel(200, 32);

    EXPECT_TRUE(Button(7, 100, 384, 0.5F, 0.5F).isSelected());
}

// ---- Clicking ----

TEST_F(ButtonTest, IsNotClickedWithoutAClickAlsoUnderThePointer) {
    PointAtCanvas(256, 256);
    const Button button(7, 256, 256, 32, 32);

    EXPECT_TRUE(button.isSelected());
    EXPECT_FALSE(button.isClicked());
}

TEST_F(ButtonTest, IsClickedUnderThePointerAndOnlyThere) {
    single_touch = true;
    const Button button(7, 256, 256, 32, 32);

    PointAtCanvas(287, 225);
    EXPECT_TRUE(button.isClicked());
    PointAtCanvas(288, 256);
    EXPECT_FALSE(button.isClicked());
    PointAtCanvas(256, 224);
    EXPECT_FALSE(button.isClicked());
}

TEST_F(ButtonTest, IsClickedRaisedByItsOffset) {
    single_touch = true;
    PointAtCanvas(256, 300);
    Button button(7, 256, 256, 32, 32);

    EXPECT_FALSE(button.isClicked());
    button.offset_y = 50;
    EXPECT_TRUE(button.isClicked());
}

TEST_F(ButtonTest, SeesAClickThatAnOverlappingOneSawBefore) {
    single_touch = true;
    PointAtCanvas(256, 256);
    const Button first(7, 250, 256, 32, 32);
    const Button second(8, 262, 256, 32, 32);

    EXPECT_TRUE(first.isClicked());
    EXPECT_TRUE(second.isClicked());
    EXPECT_TRUE(first.isClicked());
    EXPECT_TRUE(single_touch);
}

}  // namespace
