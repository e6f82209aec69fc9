#include "tools/doctor/glgroups.h"

#include "engine/core/GLExtensions.h"

namespace Doctor {

namespace {

struct Row {
    const char* id;
    const char* title;
};

// In the order of the engine's groups.
constexpr Row rows[] = {
    {"shader_objects", "Shaders"},       {"vertex_program", "Vertex attributes"},
    {"vertex_shader", "Vertex shaders"}, {"vertex_buffers", "Vertex buffers"},
    {"point_sprites", "Point sizes"},    {"framebuffers", "Framebuffer objects"},
};

std::array<GlGroup, 6> WithTheirRows() {
    std::array<GlGroup, 6> groups{};
    for (std::size_t i = 0; i < groups.size(); ++i)
        groups[i] = {rows[i].id, rows[i].title, extensionGroups[i].extension,
                     extensionGroups[i].names, extensionGroups[i].pointers};
    return groups;
}

} // namespace

const std::array<GlGroup, 6>& GlGroups() {
    static const std::array<GlGroup, 6> groups = WithTheirRows();
    return groups;
}

} // namespace Doctor
