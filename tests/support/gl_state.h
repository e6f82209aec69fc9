#pragma once

#include <map>
#include <string>

/// The part of OpenGL's state that a pass could leak, as readable name/value pairs:
/// switches, matrix mode, stack depths and matrices, texture units, client arrays, blending,
/// masks, program, framebuffer, buffers, viewport, colour.
struct GlState {
    std::map<std::string, std::string> values;

    bool operator==(const GlState&) const = default;
};

/// Reads the state back; leaves it as it is.
GlState CaptureGlState();

/// One line per value that differs ("blend: off -> on"); empty when the two are equal.
std::string Differences(const GlState& before, const GlState& after);
