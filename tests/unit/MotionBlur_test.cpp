// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/MotionBlur.h"

#include "tests/fakes/fakes.h"

namespace {

// What one full-canvas picture asks of GL.
const std::vector<std::string> kFullCanvas = {
    "glMatrixMode(GL_PROJECTION)",
    "glPushMatrix()",
    "glLoadIdentity()",
    "glOrtho(0, 512, 0, 512, -1, 1)",
    "glMatrixMode(GL_MODELVIEW)",
    "glPushMatrix()",
    "glLoadIdentity()",
    "glPushMatrix()",
    "glEnable(GL_TEXTURE_2D)",
    "glTranslatef(256, 256, 0)",
    "glBegin(GL_QUADS)",
    "glNormal3f(0, 0, 1)",
    "glTexCoord2f(0, 0)",
    "glVertex3f(-256, -256, 0)",
    "glTexCoord2f(1, 0)",
    "glVertex3f(256, -256, 0)",
    "glTexCoord2f(1, 1)",
    "glVertex3f(256, 256, 0)",
    "glTexCoord2f(0, 1)",
    "glVertex3f(-256, 256, 0)",
    "glEnd()",
    "glPopMatrix()",
    "glMatrixMode(GL_PROJECTION)",
    "glPopMatrix()",
    "glMatrixMode(GL_MODELVIEW)",
    "glPopMatrix()",
};

// ---- RenderOnViewport ----

using RenderOnViewportTest = fakes::Test;

TEST_F(RenderOnViewportTest, MakesItsCallsInOrder) {
    RenderOnViewport();

    EXPECT_EQ(fakes::Lines(), kFullCanvas);
}

TEST_F(RenderOnViewportTest, FillsTheCanvasWhateverTheMatricesAre) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 5, -7, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(100, 50, 0);
    glScalef(3, 3, 3);

    RenderOnViewport();

    ASSERT_EQ(fakes::gl().primitives.size(), 1U);
    EXPECT_EQ(fakes::Bounds(fakes::gl().primitives[0]), (fakes::Rect{0, 0, 512, 512}));
}

TEST_F(RenderOnViewportTest, PutsTheMatricesBackAndEndsInModelViewMode) {
    glTranslatef(100, 50, 0);
    const std::vector<fakes::Mat4> modelview = fakes::gl().modelview;
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 5, -7, 9, -1, 1);
    const std::vector<fakes::Mat4> projection = fakes::gl().projection;

    RenderOnViewport();

    EXPECT_EQ(fakes::gl().modelview, modelview);
    EXPECT_EQ(fakes::gl().projection, projection);
    EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
}

TEST_F(RenderOnViewportTest, UsesTheCallersTextureColorAndBlendingAndLeavesTexturingEnabled) {
    glBindTexture(GL_TEXTURE_2D, 5);
    glColor4f(0.25F, 0.5F, 0.75F, 0.125F);
    glEnable(GL_BLEND);

    RenderOnViewport();

    const fakes::Primitive& quad = fakes::gl().primitives.at(0);
    EXPECT_EQ(quad.texture, 5U);
    EXPECT_TRUE(quad.textured);
    EXPECT_EQ(quad.color, (fakes::Rgba{0.25F, 0.5F, 0.75F, 0.125F}));
    EXPECT_TRUE(quad.blend);
    EXPECT_TRUE(fakes::gl().Enabled(GL_TEXTURE_2D));
    EXPECT_TRUE(fakes::gl().Enabled(GL_BLEND));
}

// ---- ReshapeViewport ----

using ReshapeViewportTest = fakes::Test;

TEST_F(ReshapeViewportTest, DoesNothing) {
    ReshapeViewport(640, 480);

    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

// ---- PerformMotionBlur ----

// What follows the capture of a frame, before any texture is shown.
const std::vector<std::string> kBeforeShowing = {
    "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)",
    "glViewport(0, 0, 640, 480)",
    "glEnable(GL_BLEND)",
    "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
    "glDisable(GL_LIGHTING)",
    "glDepthMask(GL_FALSE)",
    "glColor4f(1, 1, 1, 0.1)",
};

const std::vector<std::string> kAfterShowing = {
    "glColor4f(1, 1, 1, 1)",
    "glDepthMask(GL_TRUE)",
    "glEnable(GL_LIGHTING)",
    "glDisable(GL_BLEND)",
};

std::vector<std::string> CaptureInto(const std::string& texture) {
    return {"glGenTextures(1)",
            "glBindTexture(GL_TEXTURE_2D, " + texture + ")",
            "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 512, 512, 0, GL_RGB, GL_UNSIGNED_BYTE)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 512, 512)"};
}

class MotionBlur : public fakes::Test {
  protected:
    void SetUp() override {
        PerformMotionBlur(0, 1, 1);  // drops the frames of tests before
        fakes::Test::SetUp();
    }

    // Returns the textures shown since the log was cleared, in order.
    static std::vector<GLuint> Shown() {
        std::vector<GLuint> shown;
        for (const fakes::Primitive& primitive : fakes::gl().primitives) shown.push_back(primitive.texture);
        return shown;
    }
};

TEST_F(MotionBlur, CapturesClearsShowsAndPutsBackInOrder) {
    PerformMotionBlur(3, 640, 480);

    EXPECT_EQ(fakes::Lines(), fakes::Joined({CaptureInto("1"),
                                             kBeforeShowing,
                                             {"glBindTexture(GL_TEXTURE_2D, 1)"},
                                             kFullCanvas,
                                             kAfterShowing}));
}

TEST_F(MotionBlur, KeepsTheFrameIn512By512Texels) {
    PerformMotionBlur(3, 640, 480);

    const fakes::Texture& texture = fakes::gl().textures.at(1);
    EXPECT_EQ(texture.width, 512);
    EXPECT_EQ(texture.height, 512);
    EXPECT_EQ(texture.internal_format, GL_RGB);
    EXPECT_EQ(texture.min_filter, GL_LINEAR);
    EXPECT_EQ(texture.mag_filter, GL_LINEAR);
    EXPECT_TRUE(texture.copied_from_frame);
}

TEST_F(MotionBlur, ShowsTheKeptFramesFromTheOldestToTheNewest) {
    PerformMotionBlur(3, 640, 480);
    PerformMotionBlur(3, 640, 480);
    fakes::gl().primitives.clear();

    PerformMotionBlur(3, 640, 480);

    EXPECT_EQ(Shown(), (std::vector<GLuint>{1, 2, 3}));
}

TEST_F(MotionBlur, GivesEveryFrameTheSameTenthBlendedAndUnlit) {
    glEnable(GL_LIGHTING);
    PerformMotionBlur(2, 640, 480);
    fakes::gl().primitives.clear();

    PerformMotionBlur(2, 640, 480);

    ASSERT_EQ(fakes::gl().primitives.size(), 2U);
    for (const fakes::Primitive& quad : fakes::gl().primitives) {
        EXPECT_EQ(quad.color, (fakes::Rgba{1, 1, 1, 0.1F}));
        EXPECT_TRUE(quad.blend);
        EXPECT_FALSE(quad.lighting);
        EXPECT_FALSE(quad.depth_mask);
    }
}

TEST_F(MotionBlur, DeletesTheOldestFrameBeyondTheWantedNumber) {
    PerformMotionBlur(2, 640, 480);
    PerformMotionBlur(2, 640, 480);
    fakes::gl().primitives.clear();

    PerformMotionBlur(2, 640, 480);

    EXPECT_EQ(fakes::gl().deleted_textures, (std::vector<GLuint>{1}));
    EXPECT_EQ(Shown(), (std::vector<GLuint>{2, 3}));
}

TEST_F(MotionBlur, DeletesSeveralFramesWhenFewerAreWanted) {
    for (int frame = 0; frame < 4; ++frame) PerformMotionBlur(4, 640, 480);
    fakes::gl().primitives.clear();

    PerformMotionBlur(1, 640, 480);

    EXPECT_EQ(fakes::gl().deleted_textures, (std::vector<GLuint>{1, 2, 3, 4}));
    EXPECT_EQ(Shown(), (std::vector<GLuint>{5}));
}

TEST_F(MotionBlur, DeletesOnlyWhatIsStillATexture) {
    PerformMotionBlur(1, 640, 480);
    const GLuint gone = 1;
    glDeleteTextures(1, &gone);
    fakes::ClearLog();

    PerformMotionBlur(1, 640, 480);

    EXPECT_EQ(fakes::Lines({"glIsTexture", "glDeleteTextures"}),
              (std::vector<std::string>{"glIsTexture(1)"}));
}

TEST_F(MotionBlur, WithNoFramesDeletesWhatItHasJustCapturedAndShowsOnlyTheClearedScreen) {
    PerformMotionBlur(0, 640, 480);

    EXPECT_EQ(
        fakes::Lines(),
        fakes::Joined(
            {CaptureInto("1"), {"glIsTexture(1)", "glDeleteTextures(1, 1)"}, kBeforeShowing, kAfterShowing}));
    EXPECT_TRUE(fakes::gl().textures.empty());
    EXPECT_TRUE(fakes::gl().primitives.empty());
}

TEST_F(MotionBlur, LeavesWhiteDepthWritesAndLightingOnAndBlendingOff) {
    PerformMotionBlur(1, 640, 480);

    EXPECT_EQ(fakes::gl().color, (fakes::Rgba{1, 1, 1, 1}));
    EXPECT_TRUE(fakes::gl().depth_mask);
    EXPECT_TRUE(fakes::gl().Enabled(GL_LIGHTING));
    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
    EXPECT_EQ(fakes::gl().viewport, (std::array<GLint, 4>{0, 0, 640, 480}));
}

}  // namespace
