#pragma once

#include "web/gl/matrix.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

/// What comes in at a vertex, and where it is taken from.
namespace WebGL {

/// What a vertex consists of, by OpenGL's own names; generic attributes come after.
namespace Slot {
inline constexpr std::size_t vertex = 0;
inline constexpr std::size_t normal = 1;
inline constexpr std::size_t color = 2;
inline constexpr std::size_t secondaryColor = 3;
inline constexpr std::size_t texCoord = 4; ///< eight of them
inline constexpr std::size_t texCoords = 8;
inline constexpr std::size_t fogCoord = 12;
inline constexpr std::size_t generic = 13; ///< sixteen of them
inline constexpr std::size_t generics = 16;
inline constexpr std::size_t count = 29;
} // namespace Slot

/// One array as glVertexPointer() and its like describe it.
struct VertexArray {
    bool enabled = false;
    GLint size = 4;
    GLenum type = GL_FLOAT;
    bool normalized = false;
    GLsizei stride = 0;            ///< as given: 0 for tightly packed
    const void* pointer = nullptr; ///< into memory, or the offset into the buffer
    GLuint buffer = 0;

    std::size_t ElementSize() const;
    std::size_t Step() const; ///< from one element to the next, in bytes
};

/// Where an attribute of a program is read from in OpenGL ES.
struct AttributeSource {
    GLuint place; ///< the attribute's location
    GLuint buffer;
    std::uint32_t offset;
    std::uint32_t stride;
    GLint size;
    GLenum type;
    bool normalized;

    bool operator==(const AttributeSource&) const = default;
};

/// Buffers of OpenGL ES that hold what programs keep in memory, by their contents: a quad that is
/// drawn a second time with the same corners is not uploaded again, wherever it lies. To compare
/// contents costs far less than to hand them over to a page's other process.
class ContentCache {
public:
    /// A buffer that holds these bytes, bound to GL_ARRAY_BUFFER or GL_ELEMENT_ARRAY_BUFFER as
    /// `target` says when it is first filled.
    GLuint BufferWith(GLenum target, const std::vector<unsigned char>& bytes);

    /// Buffers beyond this many are filled anew, those first that have not been used for longest.
    static constexpr std::size_t mostBuffers = 512;

private:
    struct Entry {
        GLuint buffer;
        GLenum target;
        std::uint64_t hash;
        std::vector<unsigned char> bytes;
    };
    std::list<Entry> entries; ///< the last used one first
    std::unordered_multimap<std::uint64_t, std::list<Entry>::iterator> byHash;

    GLuint Fill(GLenum target, const std::vector<unsigned char>& bytes, std::uint64_t hash);
    GLuint TakeOldest(GLenum target);
};

/// Vertex array objects of OpenGL ES, one for each combination of sources in use.
class VertexArrayCache {
public:
    /// Binds the one for these sources and indices (0: none), made at first use.
    void Bind(const std::vector<AttributeSource>& sources, GLuint indices);

    /// Binds none, so that nobody's indices are changed.
    void Unbind();

    /// To be called before a buffer is deleted.
    void Forget(GLuint buffer);

    /// Those beyond this many are deleted, all together: scenes change seldom.
    static constexpr std::size_t mostArrays = 4096;

private:
    struct Made {
        GLuint name;
        std::vector<AttributeSource> sources;
        GLuint indices;
    };
    std::unordered_multimap<std::uint64_t, Made> all;
    GLuint bound = 0;

    void Make(Made& made);
    void BindName(GLuint name);
};

/// The values of attributes that no array gives.
class CurrentValues {
public:
    CurrentValues();

    std::array<Vector4, Slot::count> values;

    /// Sends the value for a location.
    void Send(GLuint place, std::size_t slot);

private:
    std::array<Vector4, 16> sent;
};

} // namespace WebGL
