// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/GLES_VERTEX_ARRAY.h"

#include <gtest/gtest.h>

namespace {

void First(POLYGONPOINTER* /*polygon*/) {}
void Second(POLYGONPOINTER* /*polygon*/) {}

class VertexShaders : public testing::Test {
  protected:
    void TearDown() override { VertexShaderStack.clear(); }
};

TEST_F(VertexShaders, AreNoneAtStart) {
    EXPECT_TRUE(VertexShaderStack.empty());
}

TEST_F(VertexShaders, EnableAppendsAndReturnsTrue) {
    EXPECT_TRUE(glEnableVertexShader(First));
    EXPECT_TRUE(glEnableVertexShader(Second));

    EXPECT_EQ(VertexShaderStack, (std::vector<VertexShader>{First, Second}));
}

TEST_F(VertexShaders, EnableAllowsDuplicates) {
    glEnableVertexShader(First);

    EXPECT_TRUE(glEnableVertexShader(First));
    EXPECT_EQ(VertexShaderStack, (std::vector<VertexShader>{First, First}));
}

TEST_F(VertexShaders, DisableOnAnEmptyStackReturnsFalseAndChangesNothing) {
    EXPECT_FALSE(glDisableVertexShader());
    EXPECT_TRUE(VertexShaderStack.empty());
}

TEST_F(VertexShaders, DisableRemovesTheLastAndReturnsTrue) {
    glEnableVertexShader(First);
    glEnableVertexShader(Second);

    EXPECT_TRUE(glDisableVertexShader());
    EXPECT_EQ(VertexShaderStack, (std::vector<VertexShader>{First}));
}

TEST_F(VertexShaders, EngagedIsAnyCallbackInTheStack) {
    EXPECT_FALSE(glIsShaderEngaged(First));

    glEnableVertexShader(First);
    EXPECT_TRUE(glIsShaderEngaged(First));
    EXPECT_FALSE(glIsShaderEngaged(Second));

    glEnableVertexShader(Second);
    EXPECT_TRUE(glIsShaderEngaged(First));
    EXPECT_TRUE(glIsShaderEngaged(Second));
}

TEST_F(VertexShaders, ADuplicateStaysEngagedUntilItsLastIsGone) {
    glEnableVertexShader(First);
    glEnableVertexShader(First);

    glDisableVertexShader();
    EXPECT_TRUE(glIsShaderEngaged(First));
    glDisableVertexShader();
    EXPECT_FALSE(glIsShaderEngaged(First));
}

TEST_F(VertexShaders, FlushEmptiesTheStack) {
    glEnableVertexShader(First);
    glEnableVertexShader(Second);

    glFlushShaderPipeline();

    EXPECT_TRUE(VertexShaderStack.empty());
    EXPECT_FALSE(glIsShaderEngaged(First));
}

}  // namespace
