#pragma once

#include <vector>

#include <GL/gl.h>

namespace WebGL {

/// The values of a piece of state, as numbers; none for a name that is not known. Colours and
/// depths are from 0 to 1, the rest is as it is.
std::vector<double> Query(GLenum name);

/// Whether the state is one of numbers from 0 to 1 (or -1), which glGetIntegerv() stretches over
/// the whole of an integer.
bool IsFraction(GLenum name);

/// -1 for a name that is no switch.
int QuerySwitch(GLenum name);

} // namespace WebGL
