// What the loaders are tried in: a log that keeps nothing, a registry that forgets at once, so that
// one attempt leaves nothing to the next, and an OpenGL that does nothing. Each takes the place of
// the real one in these programs: the linker finds it first.

#include "engine/core/GLExtensions.h"
#include "engine/core/logmanager.h"
#include "engine/core/ressourcemanager.h"

namespace Vell {

Log::Log() = default;
Log::~Log() = default;

Log& Log::GetInstance() {
    static Log instance;
    return instance;
}

void Log::Write(const std::string&, const std::string&, const std::string&) {}

Log& Log::operator<<(const std::string&) {
    return *this;
}

RessourceManager& RessourceManager::GetInstance() {
    static RessourceManager instance;
    return instance;
}

RessourceManager::~RessourceManager() = default;

void RessourceManager::Register(void*, const std::string&) {}

void RessourceManager::Register(void*, const std::string&, RessourceKind) {}

void RessourceManager::MarkDeleted(const void*) {}

bool RessourceManager::Exist(const std::string&) const {
    return false;
}

bool RessourceManager::IsTaken(const std::string&) const {
    return false;
}

bool RessourceManager::IsTakenBy(RessourceKind, const std::string&) const {
    return false;
}

void* RessourceManager::Get(const std::string&) const {
    return nullptr;
}

} // namespace Vell

extern "C" {

const GLubyte* glGetString(GLenum) {
    return reinterpret_cast<const GLubyte*>("");
}
void glGetIntegerv(GLenum, GLint* value) {
    constexpr GLint largestTexture = 1024; // larger ones take their time and tell nothing new
    *value = largestTexture;
}
void glGenTextures(GLsizei, GLuint* texture) {
    *texture = 1;
}
void glDeleteTextures(GLsizei, const GLuint*) {}
void glBindTexture(GLenum, GLuint) {}
void glTexParameteri(GLenum, GLenum, GLint) {}
void glPixelStorei(GLenum, GLint) {}
void glTexImage2D(GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const void*) {}

} // extern "C"
