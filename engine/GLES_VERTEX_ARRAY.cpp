// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/GLES_VERTEX_ARRAY.h"

#include <algorithm>

std::vector<VertexShader> VertexShaderStack;

void glFlushShaderPipeline() {
    VertexShaderStack.clear();
}

bool glEnableVertexShader(VertexShader callback) {
    VertexShaderStack.push_back(callback);
    return true;
}

bool glDisableVertexShader() {
    if (VertexShaderStack.empty()) return false;
    VertexShaderStack.pop_back();
    return true;
}

bool glIsShaderEngaged(VertexShader callback) {
    return std::find(VertexShaderStack.begin(), VertexShaderStack.end(), callback) != VertexShaderStack.end();
}
