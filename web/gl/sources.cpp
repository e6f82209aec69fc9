#include "web/gl/sources.h"

#include "web/gl/context.h"

#include <algorithm>
#include <cstring>

namespace WebGL {

namespace {

/// The array for a slot. Generic attribute 0 is the vertex, in either direction.
const VertexArray& ArrayOf(std::size_t slot) {
    const auto& arrays = Current().arrays;
    if (slot == Slot::vertex && !arrays[slot].enabled)
        return arrays[Slot::generic];
    return arrays[slot];
}

void AppendDoubles(std::vector<unsigned char>& bytes, const unsigned char* from, GLint size) {
    for (GLint i = 0; i < size; ++i) {
        double wide = 0.0;
        std::memcpy(&wide, from + 8 * i, sizeof(wide));
        const auto value = static_cast<float>(wide);
        const auto* const raw = reinterpret_cast<const unsigned char*>(&value);
        bytes.insert(bytes.end(), raw, raw + sizeof(value));
    }
}

/// Copies the range of an array to the end of `bytes`, tightly packed, and tells where it is now.
AttributeSource Gather(std::vector<unsigned char>& bytes, const VertexArray& array,
                       const Attribute& attribute, const VertexRange& range) {
    const bool doubles = array.type == GL_DOUBLE;
    const std::size_t size = array.ElementSize();
    const std::size_t step = doubles ? size / 2 : (size + 3) / 4 * 4;
    const AttributeSource source{
        .place = attribute.place,
        .buffer = 0,
        .offset = static_cast<std::uint32_t>(bytes.size()),
        .stride = static_cast<std::uint32_t>(step),
        .size = array.size,
        .type = doubles ? static_cast<GLenum>(GL_FLOAT) : array.type,
        .normalized = array.normalized,
    };
    const auto* from =
        static_cast<const unsigned char*>(array.pointer) + range.first * array.Step();
    for (GLuint i = range.first; i < range.end; ++i, from += array.Step()) {
        if (doubles) {
            AppendDoubles(bytes, from, array.size);
            continue;
        }
        bytes.insert(bytes.end(), from, from + size);
        bytes.resize(bytes.size() + step - size);
    }
    return source;
}

AttributeSource FromBuffer(const VertexArray& array, const Attribute& attribute, GLuint first) {
    const std::size_t offset = reinterpret_cast<std::size_t>(array.pointer) + first * array.Step();
    return {.place = attribute.place,
            .buffer = array.buffer,
            .offset = static_cast<std::uint32_t>(offset),
            .stride = static_cast<std::uint32_t>(array.Step()),
            .size = array.size,
            .type = array.type,
            .normalized = array.normalized};
}

void FillBuffer(std::vector<AttributeSource>& sources, const std::vector<unsigned char>& bytes) {
    if (bytes.empty())
        return;
    const GLuint buffer = Current().contents.BufferWith(GL_ARRAY_BUFFER, bytes);
    for (AttributeSource& source : sources)
        if (source.buffer == 0)
            source.buffer = buffer;
}

} // namespace

bool HasVertices() {
    return ArrayOf(Slot::vertex).enabled;
}

bool AnyInMemory() {
    const auto& arrays = Current().arrays;
    return std::any_of(arrays.begin(), arrays.end(),
                       [](const VertexArray& array) { return array.enabled && array.buffer == 0; });
}

std::vector<AttributeSource> SourcesFor(const Linked& variant, const VertexRange& range) {
    const GLuint first = AnyInMemory() ? range.first : 0;
    std::vector<AttributeSource> sources;
    std::vector<unsigned char> bytes;
    for (const Attribute& attribute : variant.attributes) {
        const VertexArray& array = ArrayOf(attribute.slot);
        if (!array.enabled)
            Current().current.Send(attribute.place, attribute.slot);
        else if (array.buffer != 0)
            sources.push_back(FromBuffer(array, attribute, first));
        else
            sources.push_back(Gather(bytes, array, attribute, range));
    }
    FillBuffer(sources, bytes);
    return sources;
}

std::vector<AttributeSource> SourcesFor(const Linked& variant, const Primitive& primitive) {
    std::vector<AttributeSource> sources;
    const auto stride = static_cast<std::uint32_t>(primitive.slots.count() * sizeof(Vector4));
    for (const Attribute& attribute : variant.attributes) {
        if (!primitive.slots.test(attribute.slot)) {
            Current().current.Send(attribute.place, attribute.slot);
            continue;
        }
        std::uint32_t offset = 0;
        for (std::size_t slot = 0; slot < attribute.slot; ++slot)
            offset += primitive.slots.test(slot) ? sizeof(Vector4) : 0;
        sources.push_back({attribute.place, 0, offset, stride, 4, GL_FLOAT, false});
    }
    if (!sources.empty())
        FillBuffer(sources, primitive.bytes);
    return sources;
}

} // namespace WebGL
