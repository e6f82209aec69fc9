#include "web/gl/vertices.h"

#include "web/gl/context.h"
#include "web/gl/es.h"

#include <algorithm>

namespace WebGL {

namespace {

std::size_t TypeSize(GLenum type) {
    switch (type) {
    case GL_BYTE:
    case GL_UNSIGNED_BYTE:
        return 1;
    case GL_SHORT:
    case GL_UNSIGNED_SHORT:
        return 2;
    case GL_DOUBLE:
        return 8;
    default:
        return 4;
    }
}

/// FNV-1a over eight bytes at a time.
std::uint64_t Mixed(std::uint64_t hash, std::uint64_t value) {
    hash = (hash ^ value) * 0x100000001b3U;
    return hash ^ (hash >> 29U);
}

constexpr std::uint64_t hashStart = 0xcbf29ce484222325U;

std::uint64_t Hash(const std::vector<unsigned char>& bytes) {
    std::uint64_t hash = Mixed(hashStart, bytes.size());
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word = 0;
        std::copy_n(&bytes[i], 8, reinterpret_cast<unsigned char*>(&word));
        hash = Mixed(hash, word);
    }
    for (; i < bytes.size(); ++i)
        hash = Mixed(hash, bytes[i]);
    return hash;
}

std::uint64_t Hash(const std::vector<AttributeSource>& sources, GLuint indices) {
    std::uint64_t hash = Mixed(hashStart, indices);
    for (const AttributeSource& source : sources) {
        hash = Mixed(hash, static_cast<std::uint64_t>(source.place) << 32U | source.buffer);
        hash = Mixed(hash, static_cast<std::uint64_t>(source.offset) << 32U | source.stride);
        hash = Mixed(hash, static_cast<std::uint64_t>(source.type) << 32U |
                               static_cast<std::uint64_t>(source.size));
    }
    return hash;
}

} // namespace

std::size_t VertexArray::ElementSize() const {
    return TypeSize(type) * static_cast<std::size_t>(size);
}

std::size_t VertexArray::Step() const {
    return stride != 0 ? static_cast<std::size_t>(stride) : ElementSize();
}

GLuint ContentCache::BufferWith(GLenum target, const std::vector<unsigned char>& bytes) {
    const std::uint64_t hash = Hash(bytes);
    const auto [first, last] = byHash.equal_range(hash);
    for (auto found = first; found != last; ++found) {
        const auto entry = found->second;
        if (entry->target != target || entry->bytes != bytes)
            continue;
        entries.splice(entries.begin(), entries, entry);
        return entry->buffer;
    }
    return Fill(target, bytes, hash);
}

GLuint ContentCache::Fill(GLenum target, const std::vector<unsigned char>& bytes,
                          std::uint64_t hash) {
    const GLuint buffer = TakeOldest(target);
    if (target == GL_ARRAY_BUFFER) {
        Current().buffers.SendArray(buffer);
    } else {
        Current().vertexArrays.Unbind();
        Es::BindBuffer(target, buffer);
    }
    Es::BufferData(target, static_cast<GLsizeiptr>(bytes.size()), bytes.data(), GL_STATIC_DRAW);
    Current().counts.uploads += 1;
    entries.push_front({buffer, target, hash, bytes});
    byHash.emplace(hash, entries.begin());
    return buffer;
}

/// A buffer for this target that may be filled: a new one, or the one that was not used for
/// longest.
GLuint ContentCache::TakeOldest(GLenum target) {
    GLuint buffer = 0;
    const auto oldest = std::find_if(entries.rbegin(), entries.rend(),
                                     [&](const Entry& entry) { return entry.target == target; });
    if (entries.size() < mostBuffers || oldest == entries.rend()) {
        Es::GenBuffers(1, &buffer);
        return buffer;
    }
    buffer = oldest->buffer;
    const auto entry = std::prev(oldest.base());
    std::erase_if(byHash, [&](const auto& pair) { return pair.second == entry; });
    entries.erase(entry);
    return buffer;
}

void VertexArrayCache::BindName(GLuint name) {
    if (bound != name)
        Es::BindVertexArray(name);
    bound = name;
}

void VertexArrayCache::Unbind() {
    BindName(0);
}

void VertexArrayCache::Bind(const std::vector<AttributeSource>& sources, GLuint indices) {
    const std::uint64_t hash = Hash(sources, indices);
    const auto [first, last] = all.equal_range(hash);
    for (auto found = first; found != last; ++found)
        if (found->second.indices == indices && found->second.sources == sources) {
            BindName(found->second.name);
            return;
        }
    if (all.size() >= mostArrays) {
        Unbind();
        for (const auto& [key, made] : all)
            Es::DeleteVertexArrays(1, &made.name);
        all.clear();
    }
    Make(all.emplace(hash, Made{0, sources, indices})->second);
}

void VertexArrayCache::Make(Made& made) {
    Es::GenVertexArrays(1, &made.name);
    BindName(made.name);
    for (const AttributeSource& source : made.sources) {
        Current().buffers.SendArray(source.buffer);
        Es::EnableVertexAttribArray(source.place);
        Es::VertexAttribPointer(
            source.place, source.size, source.type,
            static_cast<GLboolean>(source.normalized ? GL_TRUE : GL_FALSE),
            static_cast<GLsizei>(source.stride),
            reinterpret_cast<const void*>(static_cast<std::uintptr_t>(source.offset)));
    }
    if (made.indices != 0)
        Es::BindBuffer(GL_ELEMENT_ARRAY_BUFFER, made.indices);
}

void VertexArrayCache::Forget(GLuint buffer) {
    const auto uses = [&](const Made& made) {
        return std::any_of(made.sources.begin(), made.sources.end(),
                           [&](const AttributeSource& s) { return s.buffer == buffer; });
    };
    for (auto made = all.begin(); made != all.end();) {
        if (!uses(made->second)) {
            ++made;
            continue;
        }
        if (bound == made->second.name)
            Unbind();
        Es::DeleteVertexArrays(1, &made->second.name);
        made = all.erase(made);
    }
}

CurrentValues::CurrentValues() {
    values.fill({0, 0, 0, 1});
    values[Slot::normal] = {0, 0, 1, 1};
    values[Slot::color] = {1, 1, 1, 1};
    sent.fill({0, 0, 0, 1}); // as OpenGL ES begins
}

void CurrentValues::Send(GLuint place, std::size_t slot) {
    if (sent[place] == values[slot])
        return;
    sent[place] = values[slot];
    Es::VertexAttrib4fv(place, values[slot].data());
}

} // namespace WebGL
