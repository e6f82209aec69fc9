#pragma once

#include "engine/math/vec2.h"

namespace Vell {

/// Starts the engine: sets the screen, enables depth testing and fetches the extension entry points
/// of GLExtensions.h. Call it once, before whatever says that it needs its success, with the
/// window's context current; its first log row creates the log page.
///
/// After a failure, and without this call, nothing may be made of the classes that need its success
/// and say so: the entry points that they call may be null pointers, and that ends the program.
///
/// @param size  screen size in pixels, both at least 1.
/// @return false, with an "ERROR" row in the log, when there is no context or an extension or entry
///         point is missing. The screen is set all the same; the pointers of the groups after the
///         failing one stay null.
bool InitEngine(const ivec2& size);

/// Distances from the eye between which the projection shows things, in units. The near one is the
/// float 0.1 widened to double, not the double 0.1.
constexpr double nearPlane = 0.1f;
constexpr double farPlane = 25000.0;

/// Stores the screen size, sets the viewport to it and rebuilds the projection. The size is stored
/// without a context too.
///
/// The ratio becomes the integer quotient width / height, which is intended: 1280 x 720 gives 1.0
/// and only shapes at least twice as wide as high give 2.0 or more. Call SetRatio() afterwards for
/// the true ratio.
/// @param size  in pixels. A height of 0 is a division by zero. A negative size is stored, but
///              leaves the viewport as it is and an OpenGL error behind.
void SetScreen(const ivec2& size);

/// Sets the vertical field of view, in degrees above 0 and below 180, and rebuilds the projection;
/// 70 before the first call. At 0 the projection becomes the identity.
void SetFovy(float degrees);

/// Sets width / height of the projection and rebuilds it; holds until the next SetScreen(). At 0
/// the projection becomes the identity.
void SetRatio(float ratio);

/// Vertical field of view in degrees.
float GetFov();

/// Width / height handed to the projection; 0 before the first SetScreen().
float GetRatio();

/// Screen size in pixels; (0, 0) before the first SetScreen(). Render targets and effects take
/// their size from it when they are constructed, so the screen must be set before them.
ivec2 GetScreen();

} // namespace Vell
