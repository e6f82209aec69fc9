#include "tools/doctor/glgroups.h"

#include "engine/core/GLExtensions.h"

namespace Doctor {

const std::array<GlGroup, 6>& GlGroups() {
    static const std::array<GlGroup, 6> groups = {{
        {"shader_objects", "Shaders", "GL_ARB_shader_objects", ARBShaderObjectProcName,
         ARBShaderObjectProcAddress,
         "no city, no water, no wisps and no effects, since all of them are drawn by shaders"},
        {"vertex_program", "Vertex attributes", "GL_ARB_vertex_program", ARBVertexProgramProcName,
         ARBVertexProgramProcAddress, "no picture, since the engine's start-up ends there"},
        {"vertex_shader", "Vertex shaders", "GL_ARB_vertex_shader", ARBVertexShaderProcName,
         ARBVertexShaderProcAddress,
         "no city, no water and no wisps, since shaders put them in their places"},
        {"vertex_buffers", "Vertex buffers", "GL_ARB_vertex_buffer_object", ARBBufferObjectProcName,
         ARBBufferObjectProcAddress,
         "no city, no fish and no wisps, since their meshes lie in such buffers"},
        {"point_sprites", "Point sizes", "GL_ARB_point_sprite", ARBPointSpriteProcName,
         ARBPointSpriteProcAddress, "no picture, since the engine's start-up ends there"},
        {"framebuffers", "Framebuffer objects", "EXT_framebuffer_object", EXTFrameBufferProcName,
         EXTFrameBufferProcAddress,
         "no picture, since every frame is drawn into such a buffer before its effects"},
    }};
    return groups;
}

} // namespace Doctor
