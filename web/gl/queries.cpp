#include "web/gl/queries.h"

#include "web/gl/context.h"
#include "web/gl/es.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

namespace WebGL {

namespace {

using Values = std::vector<double>;
using Asked = std::function<Values(Context&)>;
using Table = std::unordered_map<GLenum, Asked>;

template <class Range>
Values All(const Range& range) {
    return Values(range.begin(), range.end());
}

Values One(double value) {
    return {value};
}

Values Size(std::size_t value) {
    return {static_cast<double>(value)};
}

double EsLimit(GLenum name) {
    GLint value = 0;
    Es::GetIntegerv(name, &value);
    return value;
}

MatrixStack& TextureStack(Context& c) {
    return c.matrices.textures[std::min(c.textures.active, MatrixStacks::textureStacks - 1)];
}

void AddMatrices(Table& table) {
    table[GL_MATRIX_MODE] = [](Context& c) { return One(c.matrices.mode); };
    table[GL_MODELVIEW_MATRIX] = [](Context& c) { return All(c.matrices.modelview.Top()); };
    table[GL_PROJECTION_MATRIX] = [](Context& c) { return All(c.matrices.projection.Top()); };
    table[GL_TEXTURE_MATRIX] = [](Context& c) { return All(TextureStack(c).Top()); };
    table[GL_MODELVIEW_STACK_DEPTH] = [](Context& c) { return Size(c.matrices.modelview.Depth()); };
    table[GL_PROJECTION_STACK_DEPTH] = [](Context& c) {
        return Size(c.matrices.projection.Depth());
    };
    table[GL_TEXTURE_STACK_DEPTH] = [](Context& c) { return Size(TextureStack(c).Depth()); };
    table[GL_MAX_MODELVIEW_STACK_DEPTH] = [](Context&) {
        return Size(MatrixStacks::modelviewDepth);
    };
    table[GL_MAX_PROJECTION_STACK_DEPTH] = [](Context&) {
        return Size(MatrixStacks::projectionDepth);
    };
    table[GL_MAX_TEXTURE_STACK_DEPTH] = [](Context&) { return Size(MatrixStacks::textureDepth); };
}

void AddPipeline(Table& table) {
    const auto add = [&](GLenum name, auto field) {
        table[name] = [=](Context& c) {
            return One(static_cast<double>(c.pipeline.wanted.*field));
        };
    };
    add(GL_BLEND_SRC, &PipelineState::blendSource);
    add(GL_BLEND_DST, &PipelineState::blendDestination);
    add(GL_BLEND_EQUATION, &PipelineState::blendEquation);
    add(GL_DEPTH_FUNC, &PipelineState::depthFunction);
    add(GL_DEPTH_WRITEMASK, &PipelineState::depthMask);
    add(GL_DEPTH_CLEAR_VALUE, &PipelineState::clearDepth);
    add(GL_CULL_FACE_MODE, &PipelineState::culledFace);
    add(GL_FRONT_FACE, &PipelineState::frontFace);
    add(GL_LINE_WIDTH, &PipelineState::lineWidth);
    add(GL_POLYGON_OFFSET_FACTOR, &PipelineState::offsetFactor);
    add(GL_POLYGON_OFFSET_UNITS, &PipelineState::offsetUnits);
    table[GL_VIEWPORT] = [](Context& c) { return All(c.pipeline.wanted.viewport); };
    table[GL_SCISSOR_BOX] = [](Context& c) { return All(c.pipeline.wanted.scissor); };
    table[GL_COLOR_CLEAR_VALUE] = [](Context& c) { return All(c.pipeline.wanted.clearColor); };
    table[GL_COLOR_WRITEMASK] = [](Context& c) { return All(c.pipeline.wanted.colorMask); };
    table[GL_DEPTH_RANGE] = [](Context& c) { return All(c.pipeline.wanted.depthRange); };
}

void AddFixed(Table& table) {
    table[GL_ALPHA_TEST_FUNC] = [](Context& c) { return One(c.fixed.alphaFunction); };
    table[GL_ALPHA_TEST_REF] = [](Context& c) { return One(c.fixed.alphaReference); };
    table[GL_POLYGON_MODE] = [](Context& c) { return All(c.fixed.polygonMode); };
    table[GL_POINT_SIZE] = [](Context& c) { return One(c.fixed.pointSize); };
    table[GL_FOG_COLOR] = [](Context& c) { return All(c.fixed.fog.color); };
    table[GL_FOG_DENSITY] = [](Context& c) { return One(c.fixed.fog.density); };
    table[GL_FOG_START] = [](Context& c) { return One(c.fixed.fog.start); };
    table[GL_FOG_END] = [](Context& c) { return One(c.fixed.fog.end); };
    table[GL_FOG_MODE] = [](Context& c) { return One(c.fixed.fog.mode); };
    table[GL_CURRENT_COLOR] = [](Context& c) { return All(c.current.values[Slot::color]); };
    table[GL_CURRENT_NORMAL] = [](Context& c) { return All(c.current.values[Slot::normal]); };
    table[GL_CURRENT_TEXTURE_COORDS] = [](Context& c) {
        return All(c.current.values[Slot::texCoord +
                                    std::min<std::size_t>(c.textures.active, Slot::texCoords - 1)]);
    };
    table[GL_LIST_INDEX] = [](Context& c) { return One(c.lists.Open()); };
    table[GL_RENDER_MODE] = [](Context&) { return One(GL_RENDER); };
}

void AddBindings(Table& table) {
    table[GL_ACTIVE_TEXTURE] = [](Context& c) { return Size(GL_TEXTURE0 + c.textures.active); };
    table[GL_CLIENT_ACTIVE_TEXTURE] = [](Context& c) { return Size(GL_TEXTURE0 + c.clientUnit); };
    table[GL_TEXTURE_BINDING_2D] = [](Context& c) { return One(c.textures.Active().bound); };
    table[GL_CURRENT_PROGRAM] = [](Context& c) { return One(c.programs.used); };
    table[GL_FRAMEBUFFER_BINDING_EXT] = [](Context& c) { return One(c.framebuffers.bound); };
    table[GL_RENDERBUFFER_BINDING_EXT] = [](Context& c) {
        return One(c.framebuffers.boundRenderbuffer);
    };
    table[GL_ARRAY_BUFFER_BINDING] = [](Context& c) { return One(c.buffers.array); };
    table[GL_ELEMENT_ARRAY_BUFFER_BINDING] = [](Context& c) { return One(c.buffers.element); };
    table[GL_UNPACK_ALIGNMENT] = [](Context& c) { return One(c.textures.unpack.alignment); };
    table[GL_UNPACK_ROW_LENGTH] = [](Context& c) { return One(c.textures.unpack.rowLength); };
    table[GL_PACK_ALIGNMENT] = [](Context& c) { return One(c.pack.alignment); };
    table[GL_PACK_ROW_LENGTH] = [](Context& c) { return One(c.pack.rowLength); };
}

void AddArrays(Table& table) {
    const auto add = [&](GLenum name, std::size_t slot, auto field) {
        table[name] = [=](Context& c) {
            const std::size_t unit = slot == Slot::texCoord ? c.clientUnit : 0;
            return One(static_cast<double>(c.arrays[slot + unit].*field));
        };
    };
    add(GL_VERTEX_ARRAY_SIZE, Slot::vertex, &VertexArray::size);
    add(GL_VERTEX_ARRAY_TYPE, Slot::vertex, &VertexArray::type);
    add(GL_VERTEX_ARRAY_STRIDE, Slot::vertex, &VertexArray::stride);
    add(GL_VERTEX_ARRAY_BUFFER_BINDING, Slot::vertex, &VertexArray::buffer);
    add(GL_NORMAL_ARRAY_TYPE, Slot::normal, &VertexArray::type);
    add(GL_NORMAL_ARRAY_STRIDE, Slot::normal, &VertexArray::stride);
    add(GL_NORMAL_ARRAY_BUFFER_BINDING, Slot::normal, &VertexArray::buffer);
    add(GL_TEXTURE_COORD_ARRAY_SIZE, Slot::texCoord, &VertexArray::size);
    add(GL_TEXTURE_COORD_ARRAY_TYPE, Slot::texCoord, &VertexArray::type);
    add(GL_TEXTURE_COORD_ARRAY_STRIDE, Slot::texCoord, &VertexArray::stride);
    add(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING, Slot::texCoord, &VertexArray::buffer);
}

void AddLimits(Table& table) {
    for (const GLenum name :
         {GL_MAX_TEXTURE_SIZE, GL_MAX_TEXTURE_IMAGE_UNITS, GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS,
          GL_MAX_RENDERBUFFER_SIZE_EXT, GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, GL_RED_BITS,
          GL_GREEN_BITS, GL_BLUE_BITS, GL_ALPHA_BITS, GL_DEPTH_BITS, GL_STENCIL_BITS})
        table[static_cast<GLenum>(name)] = [=](Context&) {
            return One(EsLimit(static_cast<GLenum>(name)));
        };
    table[GL_MAX_TEXTURE_UNITS] = [](Context&) { return Size(Slot::texCoords); };
    table[GL_MAX_TEXTURE_COORDS] = [](Context&) { return Size(Slot::texCoords); };
    table[GL_MAX_CLIP_PLANES] = [](Context&) { return Size(FixedState::planes); };
    table[GL_MAX_LIGHTS] = [](Context&) { return One(8); };
    table[GL_MAX_VERTEX_ATTRIBS] = [](Context&) { return Size(Slot::generics); };
    table[GL_MAX_VIEWPORT_DIMS] = [](Context&) {
        GLint values[2] = {};
        Es::GetIntegerv(GL_MAX_VIEWPORT_DIMS, values);
        return Values{static_cast<double>(values[0]), static_cast<double>(values[1])};
    };
}

const Table& Everything() {
    static const Table table = [] {
        Table all;
        AddMatrices(all);
        AddPipeline(all);
        AddFixed(all);
        AddBindings(all);
        AddArrays(all);
        AddLimits(all);
        return all;
    }();
    return table;
}

/// The array behind the name of a client state; null for another name.
const VertexArray* ClientArray(GLenum name, Context& context) {
    switch (name) {
    case GL_VERTEX_ARRAY:
        return &context.arrays[Slot::vertex];
    case GL_NORMAL_ARRAY:
        return &context.arrays[Slot::normal];
    case GL_COLOR_ARRAY:
        return &context.arrays[Slot::color];
    case GL_TEXTURE_COORD_ARRAY:
        return &context.arrays[Slot::texCoord + context.clientUnit];
    default:
        return nullptr;
    }
}

} // namespace

std::vector<double> Query(GLenum name) {
    const auto found = Everything().find(name);
    if (found != Everything().end())
        return found->second(Current());
    const int value = QuerySwitch(name);
    return value >= 0 ? One(value) : Values();
}

bool IsFraction(GLenum name) {
    return name == GL_CURRENT_COLOR || name == GL_FOG_COLOR || name == GL_COLOR_CLEAR_VALUE ||
           name == GL_DEPTH_CLEAR_VALUE || name == GL_ALPHA_TEST_REF || name == GL_DEPTH_RANGE;
}

int QuerySwitch(GLenum name) {
    Context& context = Current();
    const FixedState& fixed = context.fixed;
    if (const bool* const known = context.pipeline.Switch(name))
        return *known ? 1 : 0;
    if (const VertexArray* const array = ClientArray(name, context))
        return array->enabled ? 1 : 0;
    if (name == GL_TEXTURE_2D)
        return context.textures.Active().enabled ? 1 : 0;
    if (name == GL_ALPHA_TEST)
        return fixed.alphaTest ? 1 : 0;
    if (name == GL_FOG)
        return fixed.fog.enabled ? 1 : 0;
    if (name == GL_POLYGON_OFFSET_LINE)
        return fixed.offsetLine ? 1 : 0;
    if (name >= GL_CLIP_PLANE0 && name < GL_CLIP_PLANE0 + FixedState::planes)
        return static_cast<int>(fixed.clipEnabled >> (name - GL_CLIP_PLANE0) & 1U);
    const auto other = fixed.others.find(name);
    if (other != fixed.others.end())
        return other->second ? 1 : 0;
    return name == GL_LIGHTING || name == GL_STENCIL_TEST || name == GL_NORMALIZE ? 0 : -1;
}

} // namespace WebGL
