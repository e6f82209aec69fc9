#include "tools/stage/tracedobjects.h"

#include <fmod.h>

#include <algorithm>
#include <map>

// The linker leads these calls of the demo and the engine here first (--wrap in CMakeLists.txt).

namespace {

using namespace Stage;

/// All that was noted, and the list that is being recorded.
struct Notes {
    std::map<GLuint, TracedTexture> textures;
    std::map<GLuint, TracedList> lists;
    float lowestBand = 0.0f;

    TracedList* recording = nullptr;
    GLenum mode = 0;  // of the glBegin() that is open
    int vertices = 0; // since then
};

Notes notes;

template <class Value>
Value Find(const std::map<GLuint, Value>& known, GLuint name) {
    const auto found = known.find(name);
    return found == known.end() ? Value() : found->second;
}

} // namespace

namespace Stage {

TracedTexture FindTexture(GLuint texture) {
    return Find(notes.textures, texture);
}

TracedList FindList(GLuint list) {
    return Find(notes.lists, list);
}

float LowestBand() {
    return notes.lowestBand;
}

int TriangleCount(GLenum mode, int vertices) {
    switch (mode) {
    case GL_TRIANGLES:
        return vertices / 3;
    case GL_TRIANGLE_STRIP:
    case GL_TRIANGLE_FAN:
    case GL_POLYGON:
        return std::max(vertices - 2, 0);
    case GL_QUADS:
        return vertices / 4 * 2;
    case GL_QUAD_STRIP:
        return std::max(vertices / 2 - 1, 0) * 2;
    default:
        return 0;
    }
}

} // namespace Stage

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {

void __real_glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                         GLsizei height, GLint border, GLenum format, GLenum type,
                         const GLvoid* pixels);
void __real_glNewList(GLuint list, GLenum mode);
void __real_glEndList();
void __real_glBindTexture(GLenum target, GLuint texture);
void __real_glBegin(GLenum mode);
void __real_glEnd();
void __real_glVertex3f(GLfloat x, GLfloat y, GLfloat z);
FMOD_RESULT __real_FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* values, int count,
                                            int offset, int window);

void __wrap_glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                         GLsizei height, GLint border, GLenum format, GLenum type,
                         const GLvoid* pixels) {
    __real_glTexImage2D(target, level, internalFormat, width, height, border, format, type, pixels);
    GLint texture = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    notes.textures[static_cast<GLuint>(texture)] = {width, height, pixels != nullptr};
}

void __wrap_glNewList(GLuint list, GLenum mode) {
    __real_glNewList(list, mode);
    notes.lists[list] = {};
    notes.recording = &notes.lists[list];
}

void __wrap_glEndList() {
    __real_glEndList();
    notes.recording = nullptr;
}

void __wrap_glBindTexture(GLenum target, GLuint texture) {
    __real_glBindTexture(target, texture);
    if (notes.recording)
        notes.recording->textures.push_back(texture);
}

void __wrap_glBegin(GLenum mode) {
    __real_glBegin(mode);
    notes.mode = mode;
    notes.vertices = 0;
}

void __wrap_glVertex3f(GLfloat x, GLfloat y, GLfloat z) {
    __real_glVertex3f(x, y, z);
    ++notes.vertices;
}

void __wrap_glEnd() {
    __real_glEnd();
    if (!notes.recording)
        return;
    notes.recording->vertices += notes.vertices;
    notes.recording->triangles += TriangleCount(notes.mode, notes.vertices);
}

FMOD_RESULT __wrap_FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* values, int count,
                                            int offset, int window) {
    const FMOD_RESULT result =
        __real_FMOD_Channel_GetSpectrum(channel, values, count, offset, window);
    notes.lowestBand = count > 0 ? values[0] : 0.0f;
    return result;
}
}
// NOLINTEND(bugprone-reserved-identifier)
