#include "web/gl/lists.h"

namespace WebGL {

GLuint Lists::Generate(GLsizei count) {
    if (count <= 0)
        return 0;
    const GLuint first = lastName + 1;
    for (GLsizei i = 0; i < count; ++i)
        all[++lastName];
    return first;
}

void Lists::Delete(GLuint first, GLsizei count) {
    for (GLsizei i = 0; i < count; ++i)
        all.erase(first + static_cast<GLuint>(i));
}

bool Lists::Begin(GLuint name, GLenum mode) {
    if (open != 0 || name == 0)
        return false;
    open = name;
    openMode = mode;
    recorded.clear();
    return true;
}

bool Lists::End() {
    if (open == 0)
        return false;
    all[open] = std::move(recorded);
    recorded = Calls();
    open = 0;
    return true;
}

void Lists::Call(GLuint name) {
    const auto found = all.find(name);
    if (found == all.end())
        return;
    for (const auto& call : found->second)
        call();
}

} // namespace WebGL
