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

namespace {

/// Whether `name` stands at this place of the list, which may be a shorter one than last time.
bool StandsAt(std::size_t place, const char* extensions, const char* name) {
    const std::size_t end = place + std::strlen(name);
    return strnlen(extensions, end) == end &&
           std::memcmp(extensions + place, name, end - place) == 0;
}

} // namespace

// Meshes ask the same for every sub-mesh of every frame, and lists have thousands of characters:
// what is asked is looked for first where the last name was found. The answer is that of the list
// as it is now, whoever's it is.
int CheckForExtension(const char* name) {
    static std::size_t lastPlace = 0;
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (extensions == nullptr)
        return 0;
    if (StandsAt(lastPlace, extensions, name))
        return 1;
    const char* const found = std::strstr(extensions, name);
    if (found == nullptr)
        return 0;
    lastPlace = static_cast<std::size_t>(found - extensions);
    return 1;
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
