#include "tests/support/gl_state.h"

#include "engine/core/GLExtensions.h"

#include <array>
#include <sstream>

namespace {

struct Named {
    const char* name;
    GLenum value;
};

constexpr int textureUnits = 8;

constexpr Named switches[] = {
    {"depth test", GL_DEPTH_TEST},
    {"blend", GL_BLEND},
    {"alpha test", GL_ALPHA_TEST},
    {"clip plane 0", GL_CLIP_PLANE0},
    {"cull face", GL_CULL_FACE},
    {"fog", GL_FOG},
    {"lighting", GL_LIGHTING},
    {"scissor test", GL_SCISSOR_TEST},
    {"polygon offset line", GL_POLYGON_OFFSET_LINE},
    {"polygon offset fill", GL_POLYGON_OFFSET_FILL},
    {"vertex array", GL_VERTEX_ARRAY},
    {"normal array", GL_NORMAL_ARRAY},
    {"colour array", GL_COLOR_ARRAY},
};

constexpr Named integers[] = {
    {"matrix mode", GL_MATRIX_MODE},
    {"modelview stack depth", GL_MODELVIEW_STACK_DEPTH},
    {"projection stack depth", GL_PROJECTION_STACK_DEPTH},
    {"active texture", GL_ACTIVE_TEXTURE},
    {"client active texture", GL_CLIENT_ACTIVE_TEXTURE},
    {"blend source", GL_BLEND_SRC},
    {"blend destination", GL_BLEND_DST},
    {"depth mask", GL_DEPTH_WRITEMASK},
    {"depth function", GL_DEPTH_FUNC},
    {"program", GL_CURRENT_PROGRAM},
    {"framebuffer", GL_FRAMEBUFFER_BINDING_EXT},
    {"renderbuffer", GL_RENDERBUFFER_BINDING_EXT},
    {"array buffer", GL_ARRAY_BUFFER_BINDING},
    {"element array buffer", GL_ELEMENT_ARRAY_BUFFER_BINDING},
    {"unpack alignment", GL_UNPACK_ALIGNMENT},
};

constexpr Named matrices[] = {
    {"modelview matrix", GL_MODELVIEW_MATRIX},
    {"projection matrix", GL_PROJECTION_MATRIX},
};

template <typename T>
std::string Joined(const T& values) {
    std::ostringstream out;
    for (const auto& value : values)
        out << value << ' ';
    return out.str();
}

template <int count>
std::string Integers(GLenum name) {
    std::array<GLint, count> values{};
    glGetIntegerv(name, values.data());
    return Joined(values);
}

template <int count>
std::string Floats(GLenum name) {
    std::array<GLfloat, count> values{};
    glGetFloatv(name, values.data());
    return Joined(values);
}

std::string OnOff(GLenum cap) {
    return glIsEnabled(cap) ? "on" : "off";
}

void CaptureUnits(GlState& state) {
    GLint active = 0;
    GLint clientActive = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glGetIntegerv(GL_CLIENT_ACTIVE_TEXTURE, &clientActive);
    for (int unit = 0; unit < textureUnits; ++unit) {
        const std::string name = "unit " + std::to_string(unit) + " ";
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        state.values[name + "texture 2D"] = OnOff(GL_TEXTURE_2D);
        state.values[name + "binding"] = Integers<1>(GL_TEXTURE_BINDING_2D);
        state.values[name + "coordinate array"] = OnOff(GL_TEXTURE_COORD_ARRAY);
        state.values[name + "matrix"] = Floats<16>(GL_TEXTURE_MATRIX);
    }
    glActiveTexture(static_cast<GLenum>(active));
    glClientActiveTexture(static_cast<GLenum>(clientActive));
}

} // namespace

GlState CaptureGlState() {
    GlState state;
    for (const Named& cap : switches)
        state.values[cap.name] = OnOff(cap.value);
    for (const Named& integer : integers)
        state.values[integer.name] = Integers<1>(integer.value);
    for (const Named& matrix : matrices)
        state.values[matrix.name] = Floats<16>(matrix.value);
    state.values["viewport"] = Integers<4>(GL_VIEWPORT);
    state.values["polygon mode"] = Integers<2>(GL_POLYGON_MODE);
    state.values["colour mask"] = Integers<4>(GL_COLOR_WRITEMASK);
    state.values["colour"] = Floats<4>(GL_CURRENT_COLOR);
    CaptureUnits(state);
    return state;
}

std::string Differences(const GlState& before, const GlState& after) {
    std::ostringstream out;
    for (const auto& [name, value] : after.values) {
        const auto old = before.values.find(name);
        if (old == before.values.end() || old->second != value)
            out << name << ": " << (old == before.values.end() ? "?" : old->second) << " -> "
                << value << '\n';
    }
    return out.str();
}
