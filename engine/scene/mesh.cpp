#include "engine/scene/mesh.h"

namespace Vell {

Mesh::~Mesh() = default;

void Mesh::Load(const std::string&) {}

void Mesh::DrawShadow() {}

void Mesh::SetDebug(bool on) {
    debug = on;
}

void Mesh::SetShow(bool on) {
    show = on;
}

bool Mesh::GetDebug() const {
    return debug;
}

// Showing and casting a shadow share one flag on purpose: what is hidden throws no shadow.
bool Mesh::GetShadow() const {
    return show;
}

} // namespace Vell
