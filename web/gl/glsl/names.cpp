#include "web/gl/glsl/names.h"

#include "web/gl/glsl/tokens.h"

#include <algorithm>
#include <iterator>

namespace WebGL::Glsl {

namespace {

struct Pair {
    std::string_view from;
    std::string_view to;
};

/// Everywhere the same.
constexpr Pair common[] = {
    {"GL_ES", "vell_user_GL_ES"}, // so that a shader's own question is answered as by a desktop
    {"__VERSION__", "110"},
    {"main", "vell_main"},
    {"attribute", "in"},
    {"sampler1D", "sampler2D"},
    {"shadow2D", "vell_shadow2D"},
    {"shadow2DProj", "vell_shadow2DProj"},
    {"texture1D", "vell_texture1D"},
    {"texture2D", "texture"},
    {"texture2DLod", "textureLod"},
    {"texture2DProj", "textureProj"},
    {"texture2DProjLod", "textureProjLod"},
    {"texture3D", "texture"},
    {"texture3DLod", "textureLod"},
    {"texture3DProj", "textureProj"},
    {"texture3DProjLod", "textureProjLod"},
    {"textureCube", "texture"},
    {"textureCubeLod", "textureLod"},
    {"gl_MaxClipPlanes", "6"},
    {"gl_MaxFragmentUniformComponents", "896"},
    {"gl_MaxLights", "8"},
    {"gl_MaxTextureCoords", "8"},
    {"gl_MaxTextureUnits", "8"},
    {"gl_MaxVaryingFloats", "60"},
    {"gl_MaxVertexUniformComponents", "1024"},
};

/// Names of GLSL that GLSL ES has as well.
constexpr std::string_view kept[] = {
    "gl_DepthRange",       "gl_DepthRangeParameters",
    "gl_FragCoord",        "gl_FragDepth",
    "gl_FrontFacing",      "gl_MaxCombinedTextureImageUnits",
    "gl_MaxDrawBuffers",   "gl_MaxTextureImageUnits",
    "gl_MaxVertexAttribs", "gl_MaxVertexTextureImageUnits",
    "gl_PointCoord",       "gl_PointSize",
    "gl_Position",
};

/// What GLSL ES 3.00 keeps for itself and GLSL 1.10 leaves to the shader: functions and keywords.
constexpr std::string_view taken[] = {
    "acosh",
    "asinh",
    "atanh",
    "atomic_uint",
    "buffer",
    "case",
    "coherent",
    "cosh",
    "demote",
    "determinant",
    "filter",
    "flat",
    "floatBitsToInt",
    "floatBitsToUint",
    "iimage2D",
    "image2D",
    "intBitsToFloat",
    "inverse",
    "isampler2D",
    "isampler3D",
    "isamplerCube",
    "isinf",
    "isnan",
    "isampler2DArray",
    "layout",
    "mat2x2",
    "mat2x3",
    "mat2x4",
    "mat3x2",
    "mat3x3",
    "mat3x4",
    "mat4x2",
    "mat4x3",
    "mat4x4",
    "modf",
    "outerProduct",
    "packHalf2x16",
    "packSnorm2x16",
    "packUnorm2x16",
    "patch",
    "precise",
    "readonly",
    "resource",
    "restrict",
    "round",
    "roundEven",
    "sample",
    "sampler2DArray",
    "samplerBuffer",
    "sinh",
    "smooth",
    "subroutine",
    "tanh",
    "texelFetch",
    "texture",
    "textureGrad",
    "textureLod",
    "textureOffset",
    "textureProj",
    "textureProjLod",
    "textureSize",
    "transpose",
    "trunc",
    "uint",
    "uintBitsToFloat",
    "unpackHalf2x16",
    "usampler2D",
    "usampler3D",
    "usamplerCube",
    "uvec2",
    "uvec3",
    "uvec4",
    "volatile",
    "writeonly",
};

/// What each stage calls the things that go from one to the other, and what comes out in the end.
constexpr Pair inFragment[] = {
    {"varying", "in"},
    {"gl_Color", "vell_FrontColor"},
    {"gl_SecondaryColor", "vell_FrontSecondaryColor"},
};
constexpr Pair inVertex[] = {
    {"varying", "out"},
};

template <class Table>
const Pair* Find(const Table& table, std::string_view name) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const Pair& pair) { return pair.from == name; });
    return found != std::end(table) ? &*found : nullptr;
}

bool IsKept(std::string_view name) {
    return std::find(std::begin(kept), std::end(kept), name) != std::end(kept);
}

// The last: OpenGL ES leaves two underscores to the implementation, and WebGL its own prefix.
bool IsTaken(std::string_view name) {
    return std::find(std::begin(taken), std::end(taken), name) != std::end(taken) ||
           name.starts_with("webgl_") || name.starts_with("_webgl_");
}

const Pair* FindPair(std::string_view name, Stage stage) {
    if (const Pair* pair = Find(common, name))
        return pair;
    return stage == Stage::Vertex ? Find(inVertex, name) : Find(inFragment, name);
}

std::string Joined(std::string_view a, std::string_view b) {
    return std::string(a).append(b);
}

} // namespace

std::string Translated(std::string_view identifier, Stage stage) {
    if (const Pair* pair = FindPair(identifier, stage))
        return std::string(pair->to);
    if (identifier.starts_with("gl_") && !IsKept(identifier))
        return Joined(ownPrefix, identifier.substr(3));
    if (IsTaken(identifier))
        return Joined(userPrefix, identifier);
    return std::string(identifier);
}

std::string TranslatedPath(std::string_view path) {
    std::string translated;
    for (const Token& token : Tokenize(path))
        translated += token.kind == TokenKind::Identifier && IsTaken(token.text)
                          ? Joined(userPrefix, token.text)
                          : token.text;
    return translated;
}

std::string OriginalPath(std::string_view path) {
    std::string original;
    for (const Token& token : Tokenize(path))
        original +=
            token.text.starts_with(userPrefix) ? token.text.substr(userPrefix.size()) : token.text;
    return original;
}

} // namespace WebGL::Glsl
