// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How the owl's screen is put together: background and tree, the owl in front of them, and the states of GL.
#include "app/character.h"

#include <GL/gl.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/owl_fixture.h"

namespace {

using CharacterTest = OwlFixture;

TEST_F(CharacterTest, SceneIsBackgroundTreeOwlAndEyesInThisOrder) {
    RunFrame(0);

    EXPECT_EQ(Scene(), InFrontOfTheTree({Body(owl[kStanding]), Eye(eye_l), Eye(eye_r)}));
}

TEST_F(CharacterTest, BackgroundIsDrawnBeforeBlendingIsSwitchedOn) {
    RunFrame(0);

    const std::vector<std::string> calls =
        fakes::Lines({"glBindTexture", "glEnd", "glBlendFunc", "glDepthMask"});
    ASSERT_GE(calls.size(), 6U);
    EXPECT_EQ(std::vector<std::string>(calls.begin(), calls.begin() + 6),
              (std::vector<std::string>{
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(background) + ")",
                  "glEnd()",
                  "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
                  "glDepthMask(GL_FALSE)",
                  "glBindTexture(GL_TEXTURE_2D, " + std::to_string(tree) + ")",
                  "glEnd()",
              }));
    EXPECT_FALSE(fakes::gl().DrawnWith(background).at(0).blend);
    EXPECT_TRUE(fakes::gl().DrawnWith(background).at(0).depth_mask);
}

TEST_F(CharacterTest, TreeIsOneQuadOverTheCanvasWithTheWholePicture) {
    RunFrame(0);

    const fakes::Primitive quad = fakes::gl().DrawnWith(tree).at(0);
    EXPECT_EQ(quad.mode, static_cast<GLenum>(GL_QUADS));
    ASSERT_EQ(quad.vertices.size(), 4U);
    const std::array<std::pair<fakes::Vec3, fakes::Vec2>, 4> corners = {{
        {{0, 0, 0}, {0, 0}},
        {{512, 0, 0}, {1, 0}},
        {{512, 512, 0}, {1, 1}},
        {{0, 512, 0}, {0, 1}},
    }};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(quad.vertices[i].object, corners[i].first) << "corner " << i;
        EXPECT_EQ(quad.vertices[i].texcoord, corners[i].second) << "corner " << i;
    }
}

TEST_F(CharacterTest, EverythingButTheBackgroundIsBlendedInWhiteWithoutWritingDepth) {
    spawn_question = new_notify = true;

    RunFrame(0.125F);

    std::size_t seen = 0;
    for (const Sprite& sprite : Scene()) {
        for (const fakes::Primitive& primitive : fakes::gl().DrawnWith(sprite.texture)) {
            EXPECT_EQ(primitive.color, (fakes::Rgba{1, 1, 1, 1})) << sprite;
            EXPECT_TRUE(primitive.textured) << sprite;
            if (sprite.texture == background) continue;
            EXPECT_TRUE(primitive.blend) << sprite;
            EXPECT_EQ(primitive.blend_source, static_cast<GLenum>(GL_SRC_ALPHA)) << sprite;
            EXPECT_EQ(primitive.blend_destination, static_cast<GLenum>(GL_ONE_MINUS_SRC_ALPHA)) << sprite;
            EXPECT_FALSE(primitive.depth_mask) << sprite;
            ++seen;
        }
    }
    EXPECT_GE(seen, 9U);
}

TEST_F(CharacterTest, TheFramesEndPopsTheOwlsFrameThenWritesDepthAgainThenStopsBlending) {
    RunFrame(0);

    EXPECT_TRUE(LogEndsWith({"glPopMatrix()", "glDepthMask(GL_TRUE)", "glDisable(GL_BLEND)",
                             // the test's own leaving of the canvas
                             "glMatrixMode(GL_PROJECTION)", "glPopMatrix()", "glMatrixMode(GL_MODELVIEW)",
                             "glPopMatrix()"}));
    EXPECT_TRUE(fakes::gl().depth_mask);
    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
}

}  // namespace
