#include "web/gl/drawing.h"

#include "web/gl/context.h"
#include "web/gl/es.h"
#include "web/gl/primitives.h"
#include "web/gl/sources.h"
#include "web/gl/stateuniforms.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace WebGL {

namespace {

/// How a primitive is drawn.
enum class Look { Native, Triangles, Outline, Points };

Look LookOf(GLenum mode) {
    const GLenum polygons = Current().fixed.polygonMode[0];
    if (IsArea(mode) && polygons == GL_LINE)
        return Look::Outline;
    if (IsArea(mode) && polygons == GL_POINT)
        return Look::Points;
    return IsNative(mode) ? Look::Native : Look::Triangles;
}

GLenum EsMode(GLenum mode, Look look) {
    switch (look) {
    case Look::Triangles:
        return GL_TRIANGLES;
    case Look::Outline:
        return GL_LINES;
    case Look::Points:
        return GL_POINTS;
    default:
        return mode;
    }
}

std::vector<GLuint> Converted(GLenum mode, Look look, std::vector<GLuint> corners) {
    if (look == Look::Triangles)
        return Triangles(mode, corners);
    return look == Look::Outline ? Outlines(mode, corners) : corners;
}

Program& ProgramInUse(bool colorVaries) {
    Program* const used = Current().programs.Used();
    return used != nullptr && used->linked ? *used : Current().fixedFunction.Now(colorVaries);
}

bool ColorArray() {
    return Current().arrays[Slot::color].enabled;
}

VariantKey KeyFor(const Program& program, Look look) {
    const FixedState& fixed = Current().fixed;
    VariantKey key;
    if (fixed.alphaTest && fixed.alphaFunction != GL_ALWAYS)
        key.alphaFunction = fixed.alphaFunction;
    key.clipPlanes = fixed.clipEnabled;
    key.lineOffset = look == Look::Outline && fixed.offsetLine;
    for (std::size_t i = 0; i < program.samplers.size(); ++i)
        if (Current().textures.IsGrey(program.UnitOf(program.samplers[i])))
            key.grey |= 1U << i;
    return key;
}

/// A texture for a sampler that would read what is being drawn: OpenGL leaves open what comes of
/// that, WebGL refuses to draw.
GLuint BlackTexture() {
    static GLuint black = 0;
    Textures& textures = Current().textures;
    if (!textures.Exists(black)) {
        textures.Generate(1, &black);
        const GLuint before = std::exchange(textures.Active().bound, black);
        const PixelArea one{1, 1, GL_RGBA, GL_UNSIGNED_BYTE, {}};
        constexpr unsigned char pixel[] = {0, 0, 0, 255};
        textures.SetImage(0, GL_RGBA, one, pixel);
        textures.SetParameter(GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        textures.Active().bound = before;
    }
    return black;
}

void SendTextures(const Program& program) {
    Context& context = Current();
    for (const Sampler& sampler : program.samplers) {
        const std::size_t unit = program.UnitOf(sampler);
        if (unit >= Textures::unitCount)
            continue;
        const GLuint bound = context.textures.units[unit].bound;
        const bool loops = bound != 0 && context.framebuffers.DrawsTo(bound);
        context.textures.Send(unit, loops ? BlackTexture() : 0);
    }
}

// Depth counts 2^-24 a unit, and clip coordinates go from -1 to 1. How steep the area lies, which
// the factor counts, a line does not know.
float LineOffset() {
    constexpr float clipPerUnit = 2.0f / 16777216.0f;
    const PipelineState& state = Current().pipeline.wanted;
    return (state.offsetUnits + state.offsetFactor) * clipPerUnit;
}

/// Everything but vertices. Null where nothing can be drawn.
Linked* Prepare(Look look, bool colorVaries) {
    Context& context = Current();
    if (!context.framebuffers.Send())
        return nullptr;
    Program& program = ProgramInUse(colorVaries);
    if (!program.linked)
        return nullptr;
    Linked& variant = program.For(KeyFor(program, look));
    SendTextures(program);
    context.pipeline.Send();
    context.programs.SendUse(variant.name);
    context.lineOffset = LineOffset();
    SendUniforms(program, variant);
    SendStateUniforms(variant);
    return &variant;
}

GLuint IndexBuffer(const std::vector<GLuint>& indices) {
    const auto* const first = reinterpret_cast<const unsigned char*>(indices.data());
    return Current().contents.BufferWith(
        GL_ELEMENT_ARRAY_BUFFER,
        std::vector<unsigned char>(first, first + indices.size() * sizeof(GLuint)));
}

void DrawIndexed(GLenum esMode, const std::vector<AttributeSource>& sources,
                 const std::vector<GLuint>& indices) {
    if (indices.empty())
        return;
    Current().vertexArrays.Bind(sources, IndexBuffer(indices));
    Es::DrawElements(esMode, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_INT, nullptr);
    ++Current().counts.draws;
}

std::vector<GLuint> Row(GLuint first, GLsizei count) {
    std::vector<GLuint> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

/// Vertices one after the other, from sources that begin with the first of them or before.
void DrawRow(GLenum mode, Look look, const std::vector<AttributeSource>& sources, GLint first,
             GLsizei count) {
    if (look == Look::Native) {
        Current().vertexArrays.Bind(sources, 0);
        Es::DrawArrays(mode, first, count);
        ++Current().counts.draws;
        return;
    }
    DrawIndexed(EsMode(mode, look), sources,
                Converted(mode, look, Row(static_cast<GLuint>(first), count)));
}

bool MayDraw(GLenum mode, GLsizei count) {
    Context& context = Current();
    if (mode > GL_POLYGON)
        context.errors.Raise(GL_INVALID_ENUM);
    else if (count < 0)
        context.errors.Raise(GL_INVALID_VALUE);
    else if (context.immediate.Begun())
        context.errors.Raise(GL_INVALID_OPERATION);
    else
        return count > 0 && HasVertices();
    return false;
}

template <class T>
std::vector<GLuint> Numbers(const void* indices, GLsizei count) {
    std::vector<GLuint> numbers;
    for (GLsizei i = 0; i < count; ++i) {
        T value;
        std::memcpy(&value, static_cast<const T*>(indices) + i, sizeof(T));
        numbers.push_back(value);
    }
    return numbers;
}

std::vector<GLuint> ReadIndices(GLenum type, const void* indices, GLsizei count) {
    if (type == GL_UNSIGNED_BYTE)
        return Numbers<GLubyte>(indices, count);
    if (type == GL_UNSIGNED_SHORT)
        return Numbers<GLushort>(indices, count);
    return Numbers<GLuint>(indices, count);
}

/// Where in memory the indices lie: those of a bound buffer are kept there as well. Null where the
/// buffer has fewer.
const void* IndexMemory(const void* indices, GLsizei count, GLenum type) {
    Buffers& buffers = Current().buffers;
    if (buffers.element == 0)
        return indices;
    const std::vector<unsigned char>& kept = buffers.Get(buffers.element).indices;
    const auto offset = reinterpret_cast<std::size_t>(indices);
    const std::size_t size = type == GL_UNSIGNED_BYTE ? 1 : type == GL_UNSIGNED_SHORT ? 2 : 4;
    return offset + size * static_cast<std::size_t>(count) <= kept.size() ? kept.data() + offset
                                                                          : nullptr;
}

/// Indices that lie in a buffer and mean the same to OpenGL ES.
void DrawFromBuffer(GLenum mode, GLsizei count, GLenum type, const void* offset) {
    const Linked* const variant = Prepare(Look::Native, ColorArray());
    if (variant == nullptr)
        return;
    const std::vector<AttributeSource> sources = SourcesFor(*variant, VertexRange());
    Current().vertexArrays.Bind(sources, Current().buffers.element);
    Es::DrawElements(mode, count, type, offset);
    ++Current().counts.draws;
}

void DrawNumbers(GLenum mode, std::vector<GLuint> numbers) {
    const Look look = LookOf(mode);
    const Linked* const variant = Prepare(look, ColorArray());
    if (variant == nullptr)
        return;
    const auto [low, high] = std::minmax_element(numbers.begin(), numbers.end());
    const VertexRange range{*low, *high + 1};
    const std::vector<AttributeSource> sources = SourcesFor(*variant, range);
    if (AnyInMemory())
        for (GLuint& number : numbers)
            number -= range.first;
    DrawIndexed(EsMode(mode, look), sources, Converted(mode, look, std::move(numbers)));
}

} // namespace

void DrawArrays(GLenum mode, GLint first, GLsizei count) {
    if (!MayDraw(mode, count))
        return;
    const Look look = LookOf(mode);
    const Linked* const variant = Prepare(look, ColorArray());
    if (variant == nullptr)
        return;
    const VertexRange range{static_cast<GLuint>(first), static_cast<GLuint>(first + count)};
    DrawRow(mode, look, SourcesFor(*variant, range), AnyInMemory() ? 0 : first, count);
}

void DrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices) {
    if (!MayDraw(mode, count))
        return;
    const bool buffered = Current().buffers.element != 0;
    if (buffered && LookOf(mode) == Look::Native && !AnyInMemory()) {
        DrawFromBuffer(mode, count, type, indices);
        return;
    }
    const void* const memory = IndexMemory(indices, count, type);
    if (memory != nullptr)
        DrawNumbers(mode, ReadIndices(type, memory, count));
}

void DrawPrimitive(const Primitive& primitive) {
    const Look look = LookOf(primitive.mode);
    const Linked* const variant =
        primitive.count > 0 ? Prepare(look, primitive.slots.test(Slot::color)) : nullptr;
    if (variant != nullptr)
        DrawRow(primitive.mode, look, SourcesFor(*variant, primitive), 0, primitive.count);
    for (std::size_t slot = 1; slot < Slot::count; ++slot)
        if (primitive.slots.test(slot))
            Current().current.values[slot] = primitive.last[slot];
}

void Clear(GLbitfield mask) {
    Context& context = Current();
    constexpr GLbitfield known =
        GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_ACCUM_BUFFER_BIT;
    if ((mask & ~known) != 0) {
        context.errors.Raise(GL_INVALID_VALUE);
        return;
    }
    if (!context.framebuffers.Send())
        return;
    context.pipeline.Send();
    Es::Clear(mask & ~static_cast<GLbitfield>(GL_ACCUM_BUFFER_BIT));
}

} // namespace WebGL
