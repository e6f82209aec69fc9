#pragma once

#include "tests/recording/matrixstack.h"

#include "engine/core/labels.h"
#include "tests/support/instructions.h"

#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

/// An OpenGL that draws nothing and writes down every call.
///
/// The executable that links this defines the entry points of libGL and libGLU itself, so the
/// engine's library calls them instead. A call without a current context, with an enum that no call
/// uses, or of an entry point that is only ever fetched, fails the running test.
///
/// A call is written as its name and arguments: "glBindTexture(GL_TEXTURE_2D, texture 1)". Entry
/// points fetched by name are written without their vendor suffix where the engine's own pointer
/// has none: "glUniform1f(time, 2.5)". Objects are written by their label: what Name() said, or
/// kind and number ("texture 1" is the first since Reset()).
class Recorder {
public:
    /// A driver that has everything and compiles every shader; no calls, no objects.
    void Reset();

    /// What was called, in order, since Reset() or the last Take().
    std::vector<std::string> Take();

    // What the driver answers.
    bool context = false;          ///< whether a context is current
    std::string extensions;        ///< GL_EXTENSIONS
    std::set<std::string> missing; ///< entry points that glXGetProcAddress does not find
    std::set<GLenum> refused;      ///< GL_VERTEX_SHADER, GL_FRAGMENT_SHADER: these do not compile
    std::map<GLenum, std::string> infoLogs; ///< by kind of shader
    std::set<std::string> unusedUniforms;   ///< location -1
    GLint largestTexture = 0;               ///< GL_MAX_TEXTURE_SIZE
    std::vector<GLenum> errors;             ///< pending, until glGetError() has told them

    /// Labels for the next objects of a kind: "texture", "framebuffer", "renderbuffer", "buffer",
    /// "list", "vertex", "fragment" or "program".
    void Name(const std::string& kind, std::span<const std::string> labels);
    /// Labels what the next render target generates.
    void NameTarget(const std::string& label);
    /// Labels what the next program is made of.
    void NameProgram(const std::string& label);

    // What drawing calls were given.
    const std::vector<float>& Drawn() const { return drawn; }
    /// Bytes that the buffer of that label was filled with.
    const std::vector<unsigned char>& Content(const std::string& buffer) {
        return contents[buffer];
    }
    /// Pixels of the last upload, tightly packed.
    const std::vector<unsigned char>& Pixels() const { return pixels; }
    /// Text that the shader object of that label was given.
    const std::string& Source(const std::string& object) { return sources[object]; }

    /// An object that was made since Reset(), deleted or not.
    struct Object {
        Vell::ObjectKind kind;
        GLuint name;
        std::string label; ///< as calls are written with it
    };
    std::vector<Object> Objects() const;

    MatrixStacks matrices;

    // For the entry points.
    void CheckContext(const char* name) const;
    void Note(const std::string& name, std::span<const std::string> arguments);
    GLuint NewObject(const std::string& kind, const std::string& space);
    void NewObjects(const std::string& kind, GLsizei count, GLuint* names);
    std::string LabelOf(const std::string& space, GLuint name) const;
    std::string UniformAt(GLint location) const;
    GLint LocationOf(GLuint program, const std::string& name);
    GLenum KindOf(GLuint object) const { return kinds.at(object); }

    int writing = 0;                ///< 1 while a call is written down
    GLuint program = 0;             ///< in use
    std::map<GLenum, GLuint> bound; ///< buffers, by target
    std::map<GLuint, GLenum> kinds; ///< GL_VERTEX_SHADER or GL_FRAGMENT_SHADER of shader objects
    const float* interleaved = nullptr; ///< the arrays in memory that the next drawing reads
    int interleavedFloats = 0;          ///< a vertex
    std::vector<float> drawn;
    std::map<std::string, std::vector<unsigned char>> contents;
    std::vector<unsigned char> pixels;
    std::map<std::string, std::string> sources;

private:
    struct Uniform {
        GLuint program;
        std::string name;
    };

    std::vector<std::string> lines;
    std::map<std::string, GLuint> counters;                 // objects made, by kind or space
    std::map<std::string, std::vector<std::string>> queues; // labels to come, by kind
    std::map<std::pair<std::string, GLuint>, std::string> labels;
    std::vector<Uniform> uniforms; // by location
};

extern Recorder gl;

/// One of the six groups of entry points fetched by name.
struct RecordedGroup {
    std::string extension;
    std::vector<std::string> names;
};

/// The groups in the order in which they are fetched.
const std::vector<RecordedGroup>& RecordedGroups();

/// Where the functions of the recording OpenGL lie in this program, all but glXGetProcAddress().
Stretch RecordedFunctions();
