#pragma once

#include "web/gl/immediate.h"
#include "web/gl/programs.h"
#include "web/gl/vertices.h"

/// Where a program's attributes come from, draw by draw.
namespace WebGL {

/// The vertices that are drawn: from the first up to, and without, the last.
struct VertexRange {
    GLuint first = 0;
    GLuint end = 0;
};

/// Whether any array gives positions; without, nothing is drawn.
bool HasVertices();

/// Whether an array that is switched on lies in memory, not in a buffer.
bool AnyInMemory();

/// From the arrays of the context. What lies in memory is brought into buffers, `range` of it; then
/// all sources begin with the first vertex of the range. Values that no array gives are sent.
std::vector<AttributeSource> SourcesFor(const Linked& variant, const VertexRange& range);

/// From what was collected.
std::vector<AttributeSource> SourcesFor(const Linked& variant, const Primitive& primitive);

} // namespace WebGL
