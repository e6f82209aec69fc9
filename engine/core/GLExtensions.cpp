#include "engine/core/GLExtensions.h"

#include <GL/glx.h>

#include <cstring>

#define VELL_DEFINE_ENTRY_POINT(type, pointer, name) type pointer = nullptr;
VELL_SHADER_OBJECT_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)
VELL_VERTEX_PROGRAM_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)
VELL_VERTEX_SHADER_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)
VELL_BUFFER_OBJECT_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)
VELL_POINT_SPRITE_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)
VELL_FRAMEBUFFER_ENTRY_POINTS(VELL_DEFINE_ENTRY_POINT)

#define VELL_NAME(type, pointer, name) name,
#define VELL_ADDRESS(type, pointer, name) reinterpret_cast<void**>(&(pointer)),

const char* ARBShaderObjectProcName[] = {VELL_SHADER_OBJECT_ENTRY_POINTS(VELL_NAME) nullptr};
const char* ARBVertexProgramProcName[] = {VELL_VERTEX_PROGRAM_ENTRY_POINTS(VELL_NAME) nullptr};
const char* ARBVertexShaderProcName[] = {VELL_VERTEX_SHADER_ENTRY_POINTS(VELL_NAME) nullptr};
const char* ARBBufferObjectProcName[] = {VELL_BUFFER_OBJECT_ENTRY_POINTS(VELL_NAME) nullptr};
const char* ARBPointSpriteProcName[] = {VELL_POINT_SPRITE_ENTRY_POINTS(VELL_NAME) nullptr};
const char* EXTFrameBufferProcName[] = {VELL_FRAMEBUFFER_ENTRY_POINTS(VELL_NAME) nullptr};

void** ARBShaderObjectProcAddress[] = {VELL_SHADER_OBJECT_ENTRY_POINTS(VELL_ADDRESS)};
void** ARBVertexProgramProcAddress[] = {VELL_VERTEX_PROGRAM_ENTRY_POINTS(VELL_ADDRESS)};
void** ARBVertexShaderProcAddress[] = {VELL_VERTEX_SHADER_ENTRY_POINTS(VELL_ADDRESS)};
void** ARBBufferObjectProcAddress[] = {VELL_BUFFER_OBJECT_ENTRY_POINTS(VELL_ADDRESS)};
void** ARBPointSpriteProcAddress[] = {VELL_POINT_SPRITE_ENTRY_POINTS(VELL_ADDRESS)};
void** EXTFrameBufferProcAddress[] = {VELL_FRAMEBUFFER_ENTRY_POINTS(VELL_ADDRESS)};

namespace {

struct ExtensionGroup {
    const char* extension; ///< searched in the extension list
    const char** names;
    void*** pointers;
};

// In the order in which they are fetched; the first that fails ends it.
const ExtensionGroup groups[] = {
    {"GL_ARB_shader_objects", ARBShaderObjectProcName, ARBShaderObjectProcAddress},
    {"GL_ARB_vertex_program", ARBVertexProgramProcName, ARBVertexProgramProcAddress},
    {"GL_ARB_vertex_shader", ARBVertexShaderProcName, ARBVertexShaderProcAddress},
    {"GL_ARB_vertex_buffer_object", ARBBufferObjectProcName, ARBBufferObjectProcAddress},
    {"GL_ARB_point_sprite", ARBPointSpriteProcName, ARBPointSpriteProcAddress},
    // Without "GL_" on purpose: the substring search finds it inside the driver's name for it.
    {"EXT_framebuffer_object", EXTFrameBufferProcName, EXTFrameBufferProcAddress},
};

} // namespace

int CheckForExtension(const char* name) {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return extensions != nullptr && std::strstr(extensions, name) != nullptr ? 1 : 0;
}

int InitializeGLExtension(const char* extension, const char** names, void*** pointers) {
    if (CheckForExtension(extension) < 1)
        return -1;
    for (int i = 0; names[i] != nullptr; ++i) {
        const auto address = glXGetProcAddress(reinterpret_cast<const GLubyte*>(names[i]));
        // Copied as bytes: the variable behind the address is a function pointer, not a void*.
        std::memcpy(static_cast<void*>(pointers[i]), &address, sizeof(address));
        if (address == nullptr)
            return i + 1;
    }
    return 0;
}

bool InitGLEXT() {
    for (const ExtensionGroup& group : groups)
        if (InitializeGLExtension(group.extension, group.names, group.pointers) != 0)
            return false;
    return true;
}
