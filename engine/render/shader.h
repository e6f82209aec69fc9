#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec2.h"
#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

#include <string>

namespace Vell {

/// One GLSL program: exactly one vertex and one fragment shader, and its uniforms by name.
///
/// Built once, from two files (Load) or from two texts in memory (LoadToChar). Nothing throws or
/// reports an error to the caller: failures are rows of the log page, and the program then stays 0,
/// with which everything here is still safe to call and the fixed-function pipeline draws.
///
/// Needs: a current context on which InitEngine() succeeded.
class Shader {
public:
    Shader();

    /// Deletes both shader objects, takes their and the program's labels away and logs "FREE" for a
    /// program built from files.
    /// Handles shared through the registry are deleted by every sharer alike. That is harmless: the
    /// program object itself is never released, so what is left of a pair goes on drawing, and
    /// OpenGL ignores the second deletion of a shader object (when the pair did not compile there
    /// is no program, and it refuses that deletion without harm). Once the object that compiled a
    /// pair is gone, the pair is compiled afresh when it is loaded again.
    ~Shader();

    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    /// Builds the program from a vertex and a fragment source file and leaves it bound.
    /// When both paths are registered already, the handles of the shader under `vertPath` are
    /// shared instead: no file is read, nothing is bound, nothing is logged. Otherwise this object
    /// is registered under both paths, whether or not it compiles.
    /// Logs "LOADED", or "ERROR" for a pair of registered paths of which the first is a mesh's or
    /// an image's, for a file that cannot be read and for a shader that does not compile; the
    /// compiler's message follows the row. A link failure is not noticed.
    void Load(const std::string& vertPath, const std::string& fragPath);

    /// Builds the program from two NUL-terminated texts and leaves it bound.
    /// Not shared and, but for compile failures, not logged.
    void LoadToChar(const char* vertSrc, const char* fragSrc);

    /// Labels the program with what it is for, "blur", and its shader objects after it, "blur,
    /// vertex". A program from files is labelled by their paths, each of its shader objects by its
    /// own; one from memory is "program from memory" until its owner calls this.
    void SetLabel(const std::string& text);

    /// Reads a whole text file into a NUL-terminated buffer that the caller releases with free().
    /// Null for an empty file, and, with an "ERROR" row, for a null path, a file that is missing,
    /// may not be read or is no regular one, and one of 2 GB or more.
    static char* textFileRead(const char* path);

    /// Makes the program current; program 0, the fixed-function pipeline, after a failure.
    void Enable();
    /// Makes the fixed-function pipeline current.
    void Disable();

    /// Sets a uniform of the program, which must be current: Send does not bind it.
    /// The name is looked up on every call; one that the program does not use is ignored, and so
    /// is every name while there is no program. An int also gives a sampler its texture unit.
    /// Elements and members have names of their own, "lights[2]" and "lamp.colour"; a name may be
    /// of any length.
    void Send(const std::string& name, float value);
    void Send(const std::string& name, int value);
    void Send(const std::string& name, const vec2& value);
    void Send(const std::string& name, const ivec2& value);
    void Send(const std::string& name, const vec3& value);
    void Send(const std::string& name, const ivec3& value);
    void Send(const std::string& name, const vec4& value);
    void Send(const std::string& name, const ivec4& value);

private:
    void Share(const Shader& other);
    void CreateObjects();
    bool Build(const char* vertSrc, const char* fragSrc);
    static void HandOver(GLuint object, const char* source);
    static bool Compiled(GLuint object, const char* source);
    void LogFailure(const char* section);
    void LabelAll(const std::string& whole, const std::string& vertex, const std::string& fragment);
    GLint Location(const std::string& name) const;

    std::string vertexName;   // source path, or "Internal" when built from memory
    std::string fragmentName; // likewise
    GLuint vertexObject;      // both 0 until a build; kept when one of them does not compile
    GLuint fragmentObject;
    GLuint program; // 0 until both shaders have compiled
};

} // namespace Vell
