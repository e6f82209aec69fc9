#include "engine/core/GLExtensions.h"

#include <GL/glx.h>

#include <cstring>

#define VELL_DEFINE_ENTRY_POINT(type, pointer, name) type pointer = nullptr;
#define VELL_NAME(type, pointer, name) name,
#define VELL_ADDRESS(type, pointer, name) reinterpret_cast<void**>(&(pointer)),
#define VELL_DEFINE_GROUP(extension, entryPoints, lists)                                           \
    entryPoints(VELL_DEFINE_ENTRY_POINT)                                                           \
        const char* lists##Name[] = {entryPoints(VELL_NAME) nullptr};                              \
    void** lists##Address[] = {entryPoints(VELL_ADDRESS)};
VELL_EXTENSION_GROUPS(VELL_DEFINE_GROUP)

#define VELL_GROUP(extension, entryPoints, lists) {extension, lists##Name, lists##Address},
const ExtensionGroup extensionGroups[] = {VELL_EXTENSION_GROUPS(VELL_GROUP)};

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
    for (const ExtensionGroup& group : extensionGroups)
        if (InitializeGLExtension(group.extension, group.names, group.pointers) != 0)
            return false;
    return true;
}
