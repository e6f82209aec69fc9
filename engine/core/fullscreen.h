#pragma once

#include "engine/core/GLExtensions.h"

namespace Vell {

// What every full-screen pass shares: its matrices, its vertex shader and its one draw call. All
// three functions need a current context.

/// Pushes projection and model-view and sets both so that x and y run from 0 to 1 over the whole
/// viewport. Leaves model-view current.
void PushUnitProjection();

/// Brings back the projection and model-view of before, whoever pushed both. Leaves model-view
/// current.
void PopProjection();

/// GLSL source of a vertex stage that transforms as the fixed pipeline does and hands on texture
/// coordinate 0.
extern const char passThroughVertexShader[];

/// Covers the viewport with `texture`, drawn by whatever program is bound; under
/// PushUnitProjection(), with the unit that reads it active. The texture stays bound, the vertex
/// and texture-coordinate arrays stay enabled; no vertex buffer may be bound.
void DrawFullScreen(GLuint texture);

} // namespace Vell
