#pragma once

/// GLSL source of `float FogFactor(float d)`, to stand between the declarations and main() of
/// either stage: 1 without fog, 0 in full fog, for what lies `d` units from the eye.
///
/// It is OpenGL's squared exponential fog, exp(-(density d)^2), with the scene manager's density:
/// the fixed pipeline's own does not reach programs. A macro, so that it joins the texts around it.
#define VELL_FOG_FACTOR                                                                            \
    "float FogFactor(float d)\n"                                                                   \
    "{\n"                                                                                          \
    "    float density = gl_Fog.density;\n"                                                        \
    "    const float log2e = 1.442695; // 1 / ln 2, for exp2\n"                                    \
    "    return clamp(exp2(-density * density * d * d * log2e), 0.0, 1.0);\n"                      \
    "}\n"
