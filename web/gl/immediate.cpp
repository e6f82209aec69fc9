#include "web/gl/immediate.h"

#include "web/gl/context.h"

#include <cstring>

namespace WebGL {

void Immediate::Begin(GLenum mode) {
    open = std::make_shared<Primitive>();
    open->mode = mode;
    open->slots.set(Slot::vertex);
    now = Current().current.values;
    corners.clear();
}

void Immediate::Set(std::size_t slot, const Vector4& value) {
    open->slots.set(slot);
    now[slot] = value;
}

void Immediate::AddVertex(const Vector4& position) {
    now[Slot::vertex] = position;
    corners.push_back(now);
}

std::shared_ptr<const Primitive> Immediate::End() {
    open->count = static_cast<GLsizei>(corners.size());
    open->last = now;
    open->bytes.resize(corners.size() * open->slots.count() * sizeof(Vector4));
    unsigned char* to = open->bytes.data();
    for (const Corner& corner : corners)
        for (std::size_t slot = 0; slot < Slot::count; ++slot) {
            if (!open->slots.test(slot))
                continue;
            std::memcpy(to, corner[slot].data(), sizeof(Vector4));
            to += sizeof(Vector4);
        }
    return std::exchange(open, nullptr);
}

} // namespace WebGL
