#include "tools/stage/drawing.h"

#include "tools/stage/trace.h"
#include "tools/stage/tracedobjects.h"

// The linker leads every call of the demo and the engine here first (--wrap in CMakeLists.txt).

namespace {

using Stage::watching;

bool skipping = false;

void TellOfDrawing(const char* function, GLenum mode, GLsizei count) {
    if (watching)
        watching->Drawing({function, count, Stage::TriangleCount(mode, count), 0});
}

void TellOfList(GLuint list) {
    if (!watching)
        return;
    const Stage::TracedList drawn = Stage::FindList(list);
    watching->Drawing({"glCallList", drawn.vertices, drawn.triangles, list});
}

} // namespace

namespace Stage {

void SkipDrawing(bool skip) {
    skipping = skip;
}

} // namespace Stage

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {

void __real_glCallList(GLuint list);
void __real_glClear(GLbitfield buffers);
void __real_glDrawArrays(GLenum mode, GLint first, GLsizei count);
void __real_glDrawElements(GLenum mode, GLsizei count, GLenum type, const GLvoid* indices);

void __wrap_glCallList(GLuint list) {
    if (skipping)
        return;
    TellOfList(list);
    __real_glCallList(list);
}

void __wrap_glClear(GLbitfield buffers) {
    if (skipping)
        return;
    if (watching)
        watching->Clearing(buffers);
    __real_glClear(buffers);
}

void __wrap_glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    if (skipping)
        return;
    TellOfDrawing("glDrawArrays", mode, count);
    __real_glDrawArrays(mode, first, count);
}

void __wrap_glDrawElements(GLenum mode, GLsizei count, GLenum type, const GLvoid* indices) {
    if (skipping)
        return;
    TellOfDrawing("glDrawElements", mode, count);
    __real_glDrawElements(mode, count, type, indices);
}
}
// NOLINTEND(bugprone-reserved-identifier)
