#include "tools/doctor/glgroups.h"

#include "engine/core/GLExtensions.h"

namespace Doctor {

const std::array<GlGroup, 6>& GlGroups() {
    static const std::array<GlGroup, 6> groups = {{
        {"shader_objects", "Shaders", "GL_ARB_shader_objects", ARBShaderObjectProcName,
         ARBShaderObjectProcAddress},
        {"vertex_program", "Vertex attributes", "GL_ARB_vertex_program", ARBVertexProgramProcName,
         ARBVertexProgramProcAddress},
        {"vertex_shader", "Vertex shaders", "GL_ARB_vertex_shader", ARBVertexShaderProcName,
         ARBVertexShaderProcAddress},
        {"vertex_buffers", "Vertex buffers", "GL_ARB_vertex_buffer_object", ARBBufferObjectProcName,
         ARBBufferObjectProcAddress},
        {"point_sprites", "Point sizes", "GL_ARB_point_sprite", ARBPointSpriteProcName,
         ARBPointSpriteProcAddress},
        {"framebuffers", "Framebuffer objects", "EXT_framebuffer_object", EXTFrameBufferProcName,
         EXTFrameBufferProcAddress},
    }};
    return groups;
}

} // namespace Doctor
