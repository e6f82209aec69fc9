#include "web/gl/stateuniforms.h"

#include "web/gl/context.h"
#include "web/gl/es.h"
#include "web/gl/glsl/names.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

namespace WebGL {

namespace {

enum Kind : unsigned {
    Matrix,
    NormalTurn,
    FogColor,
    FogDensity,
    FogStart,
    FogEnd,
    FogScale,
    ClipPlane,
    AlphaReference,
    CurrentColor,
    SizeOfPoints,
    LineOffset,
};

/// What `source` of a StateUniform holds: the kind, the form of a matrix, and a number: of the
/// matrix, of the plane.
unsigned Packed(Kind kind, unsigned number = 0, unsigned form = 0) {
    return static_cast<unsigned>(kind) | number << 8U | form << 16U;
}

struct Name {
    const char* text;
    unsigned source;
    unsigned elements; ///< one after the other, each a place of its own
};

constexpr const char* forms[] = {"", "Inverse", "Transpose", "InverseTranspose"};

struct MatrixName {
    const char* text;
    unsigned base;
    unsigned elements;
};

constexpr MatrixName matrices[] = {
    {"vell_ModelViewMatrix", DerivedMatrices::Modelview, 1},
    {"vell_ProjectionMatrix", DerivedMatrices::Projection, 1},
    {"vell_ModelViewProjectionMatrix", DerivedMatrices::ModelviewProjection, 1},
    {"vell_TextureMatrix", DerivedMatrices::Texture, 8},
};

const Name others[] = {
    {"vell_NormalMatrix", Packed(NormalTurn), 1},
    {"vell_Fog.color", Packed(FogColor), 1},
    {"vell_Fog.density", Packed(FogDensity), 1},
    {"vell_Fog.start", Packed(FogStart), 1},
    {"vell_Fog.end", Packed(FogEnd), 1},
    {"vell_Fog.scale", Packed(FogScale), 1},
    {"vell_ClipPlane", Packed(ClipPlane), FixedState::planes},
    {"vell_AlphaReference", Packed(AlphaReference), 1},
    {"vell_CurrentColor", Packed(CurrentColor), 1},
    {"vell_SizeOfPoints", Packed(SizeOfPoints), 1},
    {"vell_LineOffset", Packed(LineOffset), 1},
};

struct UniformType {
    GLenum name;
    GLint components;
    bool floats;
    bool integers; ///< bools are both
};

constexpr UniformType uniformTypes[] = {
    {GL_FLOAT, 1, true, false},       {GL_FLOAT_VEC2, 2, true, false},
    {GL_FLOAT_VEC3, 3, true, false},  {GL_FLOAT_VEC4, 4, true, false},
    {GL_INT, 1, false, true},         {GL_INT_VEC2, 2, false, true},
    {GL_INT_VEC3, 3, false, true},    {GL_INT_VEC4, 4, false, true},
    {GL_BOOL, 1, true, true},         {GL_BOOL_VEC2, 2, true, true},
    {GL_BOOL_VEC3, 3, true, true},    {GL_BOOL_VEC4, 4, true, true},
    {GL_FLOAT_MAT2, 4, true, false},  {GL_FLOAT_MAT3, 9, true, false},
    {GL_FLOAT_MAT4, 16, true, false},
};

const UniformType samplerType{GL_SAMPLER_2D, 1, false, true};

const UniformType& TypeRow(GLenum type) {
    for (const UniformType& row : uniformTypes)
        if (row.name == type)
            return row;
    return samplerType;
}

/// One over the distance in which fog thickens, as shaders have it.
float Scale(const Fog& fog) {
    return fog.end != fog.start ? 1.0f / (fog.end - fog.start) : 0.0f;
}

template <class Values>
std::span<const float> Kept(Values&& values, std::array<float, 4>& room) {
    std::copy(std::begin(values), std::end(values), room.begin());
    return {room.data(), std::size(values)};
}

/// The value as it is now; `room` is for those that are nowhere else.
std::span<const float> Value(unsigned source, std::array<float, 4>& room) {
    Context& context = Current();
    const FixedState& fixed = context.fixed;
    const unsigned number = source >> 8U & 0xffU;
    const auto one = [&](float value) { return Kept(std::array{value}, room); };
    switch (source & 0xffU) {
    case Matrix:
        return context.derived.Get(number, static_cast<DerivedMatrices::Form>(source >> 16U));
    case NormalTurn:
        return context.derived.Normal();
    case FogColor:
        return fixed.fog.color;
    case FogDensity:
        return one(fixed.fog.density);
    case FogStart:
        return one(fixed.fog.start);
    case FogEnd:
        return one(fixed.fog.end);
    case FogScale:
        return one(Scale(fixed.fog));
    case ClipPlane:
        return fixed.clipPlanes[number];
    case AlphaReference:
        return one(fixed.alphaReference);
    case CurrentColor:
        return context.current.values[Slot::color];
    case SizeOfPoints:
        return one(fixed.pointSize);
    default:
        return one(context.lineOffset);
    }
}

void Send(GLint place, std::span<const float> value) {
    switch (value.size()) {
    case 1:
        return Es::Uniform1fv(place, 1, value.data());
    case 4:
        return Es::Uniform4fv(place, 1, value.data());
    case 9:
        return Es::UniformMatrix3fv(place, 1, GL_FALSE, value.data());
    default:
        return Es::UniformMatrix4fv(place, 1, GL_FALSE, value.data());
    }
}

void AddPlaces(std::vector<StateUniform>& all, GLuint program, const Name& name) {
    for (unsigned i = 0; i < name.elements; ++i) {
        const std::string element =
            name.elements > 1 ? std::string(name.text) + "[" + std::to_string(i) + "]" : name.text;
        const GLint place = Es::GetUniformLocation(program, element.c_str());
        if (place >= 0)
            all.push_back({place, name.source + (i << 8U), {}});
    }
}

using SendFloats = void (*)(GLint, GLsizei, const GLfloat*);
using SendIntegers = void (*)(GLint, GLsizei, const GLint*);

void SendWords(const Uniform& uniform, GLint place) {
    constexpr SendFloats floats[] = {Es::Uniform1fv, Es::Uniform2fv, Es::Uniform3fv,
                                     Es::Uniform4fv};
    constexpr SendIntegers integers[] = {Es::Uniform1iv, Es::Uniform2iv, Es::Uniform3iv,
                                         Es::Uniform4iv};
    const auto* const asFloats = reinterpret_cast<const GLfloat*>(uniform.words.data());
    const UniformType& row = TypeRow(uniform.type);
    const auto kind = static_cast<std::size_t>(row.components - 1);
    if (uniform.type == GL_FLOAT_MAT2)
        Es::UniformMatrix2fv(place, uniform.size, GL_FALSE, asFloats);
    else if (uniform.type == GL_FLOAT_MAT3)
        Es::UniformMatrix3fv(place, uniform.size, GL_FALSE, asFloats);
    else if (uniform.type == GL_FLOAT_MAT4)
        Es::UniformMatrix4fv(place, uniform.size, GL_FALSE, asFloats);
    else if (row.integers)
        integers[kind](place, uniform.size, reinterpret_cast<const GLint*>(uniform.words.data()));
    else
        floats[kind](place, uniform.size, asFloats);
}

} // namespace

GLint ComponentsOf(GLenum type) {
    return TypeRow(type).components;
}

bool IsSampler(GLenum type) {
    return &TypeRow(type) == &samplerType;
}

bool Takes(GLenum type, GLint components, bool floats) {
    const UniformType& row = TypeRow(type);
    return row.components == components && (floats ? row.floats : row.integers);
}

bool IsStateUniform(const std::string& name) {
    return name.starts_with(Glsl::ownPrefix) && !name.starts_with(Glsl::userPrefix);
}

std::vector<StateUniform> StateUniformsOf(GLuint program) {
    std::vector<StateUniform> all;
    for (const MatrixName& row : matrices)
        for (unsigned form = 0; form < std::size(forms); ++form) {
            const std::string name = std::string(row.text) + forms[form];
            AddPlaces(all, program, {name.c_str(), Packed(Matrix, row.base, form), row.elements});
        }
    for (const Name& row : others)
        AddPlaces(all, program, row);
    return all;
}

void SendStateUniforms(Linked& program) {
    for (StateUniform& uniform : program.state) {
        std::array<float, 4> room{};
        const std::span<const float> value = Value(uniform.source, room);
        if (std::equal(value.begin(), value.end(), uniform.sent.begin(), uniform.sent.end()))
            continue;
        uniform.sent.assign(value.begin(), value.end());
        Send(uniform.place, value);
    }
}

void SendUniforms(const Program& program, Linked& variant) {
    for (std::size_t i = 0; i < program.uniforms.size(); ++i) {
        const Uniform& uniform = program.uniforms[i];
        if (variant.versions[i] == uniform.version || variant.places[i] < 0)
            continue;
        variant.versions[i] = uniform.version;
        SendWords(uniform, variant.places[i]);
    }
}

} // namespace WebGL
