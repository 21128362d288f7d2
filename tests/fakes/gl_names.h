// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// GL's constants as the log of calls shows them: by their names. Tests have no use for it.
#pragma once

#include <GL/gl.h>

#include "tests/fakes/log.h"

namespace fakes {

/// Returns a log argument that shows a constant by its name.
Arg Constant(GLenum value);
/// Returns a log argument for what glBegin draws; these constants overlap others in value.
Arg Shape(GLenum value);
/// Returns a log argument for a blend factor; GL_ZERO and GL_ONE overlap others in value.
Arg Factor(GLenum value);
/// Returns a log argument for a GLboolean.
Arg Truth(GLboolean value);

}  // namespace fakes
