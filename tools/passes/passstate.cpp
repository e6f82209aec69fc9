#include "tools/passes/passstate.h"

#include "tools/stage/tracedobjects.h"

#include <GL/glx.h>

#include <algorithm>
#include <cstdio>

namespace Passes {

namespace {

constexpr int textureUnits = 8; // what every driver has with OpenGL 2

bool On(GLenum cap) {
    return glIsEnabled(cap) == GL_TRUE;
}

GLint Integer(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

std::string Numbers(const double* values, int count) {
    std::string text = "(";
    for (int i = 0; i < count; ++i) {
        char number[32];
        std::snprintf(number, sizeof number, "%s%.4g", i > 0 ? ", " : "", values[i]);
        text += number;
    }
    return text + ")";
}

// ---------------------------------------------------------------------------- state in words

struct BlendWords {
    GLenum source;
    GLenum destination;
    const char* words;
};

constexpr BlendWords blendWords[] = {
    {GL_ONE, GL_ONE, "added to what is there"},
    {GL_SRC_ALPHA, GL_ONE, "added to what is there, by alpha"},
    {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, "mixed with what is there, by alpha"},
};

std::string Blending() {
    if (!On(GL_BLEND))
        return "";
    const GLenum source = static_cast<GLenum>(Integer(GL_BLEND_SRC));
    const GLenum destination = static_cast<GLenum>(Integer(GL_BLEND_DST));
    for (const BlendWords& row : blendWords)
        if (row.source == source && row.destination == destination)
            return row.words;
    return "blended by factors " + std::to_string(source) + " and " + std::to_string(destination);
}

std::string DepthUse() {
    if (!On(GL_DEPTH_TEST))
        return "no depth test";
    return Integer(GL_DEPTH_WRITEMASK) == 0 ? "writes no depth" : "";
}

std::string AlphaTest() {
    if (!On(GL_ALPHA_TEST))
        return "";
    GLfloat reference = 0.0f;
    glGetFloatv(GL_ALPHA_TEST_REF, &reference);
    char text[32];
    std::snprintf(text, sizeof text, "alpha test against %.4g", static_cast<double>(reference));
    return text;
}

std::string ClipPlane() {
    if (!On(GL_CLIP_PLANE0))
        return "";
    double plane[4] = {};
    glGetClipPlane(GL_CLIP_PLANE0, plane);
    return "cut at clip plane " + Numbers(plane, 4) + " of eye space";
}

/// A view that swaps left and right.
std::string Mirroring() {
    GLdouble m[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    const double determinant = m[0] * (m[5] * m[10] - m[6] * m[9]) -
                               m[4] * (m[1] * m[10] - m[2] * m[9]) +
                               m[8] * (m[1] * m[6] - m[2] * m[5]);
    return determinant < 0.0 ? "mirrored view" : "";
}

std::string ColourMask() {
    GLboolean mask[4];
    glGetBooleanv(GL_COLOR_WRITEMASK, mask);
    const bool all = mask[0] && mask[1] && mask[2] && mask[3];
    return all ? "" : "writes not all of red, green, blue and alpha";
}

std::string PlainColour() {
    GLdouble colour[4];
    glGetDoublev(GL_CURRENT_COLOR, colour);
    const bool white = std::all_of(colour, colour + 4, [](double c) { return c == 1.0; });
    return white ? "" : "colour " + Numbers(colour, 4);
}

std::string Outlines() {
    GLint modes[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, modes);
    return modes[0] == GL_LINE ? "outlines only" : "";
}

using Words = std::string (*)();
constexpr Words differences[] = {Mirroring, ClipPlane, DepthUse,    AlphaTest,
                                 Blending,  Outlines,  PlainColour, ColourMask};

// ------------------------------------------------------------------------------------ uniforms

struct TypeName {
    GLenum type;
    const char* name;
    int values;
    bool whole; ///< read as whole numbers
};

constexpr TypeName typeNames[] = {
    {GL_FLOAT, "float", 1, false},
    {GL_FLOAT_VEC2, "vec2", 2, false},
    {GL_FLOAT_VEC3, "vec3", 3, false},
    {GL_FLOAT_VEC4, "vec4", 4, false},
    {GL_INT, "int", 1, true},
    {GL_INT_VEC2, "ivec2", 2, true},
    {GL_INT_VEC3, "ivec3", 3, true},
    {GL_INT_VEC4, "ivec4", 4, true},
    {GL_BOOL, "bool", 1, true},
    {GL_FLOAT_MAT2, "mat2", 4, false},
    {GL_FLOAT_MAT3, "mat3", 9, false},
    {GL_FLOAT_MAT4, "mat4", 16, false},
    {GL_SAMPLER_2D, "sampler2D", 1, true},
};

constexpr int mostValues = 16;

const TypeName* FindType(GLenum type) {
    for (const TypeName& row : typeNames)
        if (row.type == type)
            return &row;
    return nullptr;
}

std::vector<float> ReadValue(GLuint program, GLint location, const TypeName& type) {
    GLfloat floats[mostValues] = {};
    GLint wholes[mostValues] = {};
    if (type.whole) {
        glGetUniformiv(program, location, wholes);
        std::copy_n(wholes, type.values, floats);
    } else {
        glGetUniformfv(program, location, floats);
    }
    return {floats, floats + type.values};
}

// ------------------------------------------------------------------------------------ textures

std::vector<BoundTexture> SamplersOf(GLuint program) {
    std::vector<BoundTexture> found;
    const GLint active = Integer(GL_ACTIVE_TEXTURE);
    for (const UniformNow& uniform : ReadUniforms(program)) {
        if (uniform.type != "sampler2D")
            continue;
        const int unit = static_cast<int>(uniform.value[0]);
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        found.emplace_back(static_cast<GLuint>(Integer(GL_TEXTURE_BINDING_2D)),
                           uniform.name + ", unit " + std::to_string(unit));
    }
    glActiveTexture(static_cast<GLenum>(active));
    return found;
}

std::vector<BoundTexture> UnitsThatAreOn() {
    std::vector<BoundTexture> found;
    const GLint active = Integer(GL_ACTIVE_TEXTURE);
    for (int unit = 0; unit < textureUnits; ++unit) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        if (On(GL_TEXTURE_2D))
            found.emplace_back(static_cast<GLuint>(Integer(GL_TEXTURE_BINDING_2D)),
                               "unit " + std::to_string(unit));
    }
    glActiveTexture(static_cast<GLenum>(active));
    return found;
}

GLuint Attached(GLenum attachment) {
    static const auto ask =
        reinterpret_cast<PFNGLGETFRAMEBUFFERATTACHMENTPARAMETERIVEXTPROC>(glXGetProcAddress(
            reinterpret_cast<const GLubyte*>("glGetFramebufferAttachmentParameterivEXT")));
    GLint kind = GL_NONE;
    GLint name = 0;
    ask(GL_FRAMEBUFFER_EXT, attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT, &kind);
    if (kind == GL_TEXTURE)
        ask(GL_FRAMEBUFFER_EXT, attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT, &name);
    return static_cast<GLuint>(name);
}

} // namespace

DrawState ReadDrawState() {
    DrawState state;
    state.program = static_cast<GLuint>(Integer(GL_CURRENT_PROGRAM));
    state.depthTest = On(GL_DEPTH_TEST);
    state.depthWritten = state.depthTest && Integer(GL_DEPTH_WRITEMASK) != 0;
    state.blend = On(GL_BLEND);
    return state;
}

std::vector<std::string> UnusualState(int targetWidth, int targetHeight) {
    std::vector<std::string> phrases;
    for (const Words words : differences)
        if (const std::string phrase = words(); !phrase.empty())
            phrases.push_back(phrase);
    GLint v[4] = {};
    glGetIntegerv(GL_VIEWPORT, v);
    if (v[0] != 0 || v[1] != 0 || v[2] != targetWidth || v[3] != targetHeight)
        phrases.push_back("viewport of " + std::to_string(v[2]) + " x " + std::to_string(v[3]) +
                          " at " + std::to_string(v[0]) + ", " + std::to_string(v[1]));
    return phrases;
}

std::vector<BoundTexture> ReadBoundTextures(GLuint program) {
    return program != 0 ? SamplersOf(program) : UnitsThatAreOn();
}

std::pair<double, double> ReadClipPlanes() {
    GLdouble m[16];
    glGetDoublev(GL_PROJECTION_MATRIX, m);
    if (m[11] != -1.0)
        return {0.0, 0.0};
    // A perspective's third row is -(far + near) / (far - near), -2 far near / (far - near).
    return {m[14] / (m[10] - 1.0), m[14] / (m[10] + 1.0)};
}

std::vector<UniformNow> ReadUniforms(GLuint program) {
    GLint count = 0;
    glGetObjectParameteriv(program, GL_OBJECT_ACTIVE_UNIFORMS_ARB, &count);
    std::vector<UniformNow> uniforms;
    for (GLint i = 0; i < count; ++i) {
        char name[128];
        GLint size = 0;
        GLenum type = 0;
        glGetActiveUniform(program, static_cast<GLuint>(i), sizeof name, nullptr, &size, &type,
                           name);
        const GLint location = glGetUniformLocation(program, name);
        const TypeName* const known = FindType(type);
        if (location >= 0 && known) // OpenGL's own have no location
            uniforms.push_back({location, name, known->name, ReadValue(program, location, *known)});
    }
    return uniforms;
}

TargetNow ReadTarget() {
    TargetNow target;
    target.framebuffer = static_cast<GLuint>(Integer(GL_FRAMEBUFFER_BINDING_EXT));
    if (target.framebuffer != 0) {
        target.colour = Attached(GL_COLOR_ATTACHMENT0_EXT);
        target.depth = Attached(GL_DEPTH_ATTACHMENT_EXT);
        const Stage::TracedTexture texture = Stage::FindTexture(target.colour);
        target.width = texture.width;
        target.height = texture.height;
        return target;
    }
    GLint v[4] = {};
    glGetIntegerv(GL_VIEWPORT, v); // the engine keeps it at the whole window
    target.width = v[2];
    target.height = v[3];
    return target;
}

} // namespace Passes
