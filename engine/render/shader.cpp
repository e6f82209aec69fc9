#include "engine/render/shader.h"

#include "engine/core/labels.h"
#include "engine/core/logmanager.h"
#include "engine/core/regularfile.h"
#include "engine/core/ressourcemanager.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

#include <unistd.h>

namespace Vell {

namespace {

const char* const memoryName = "Internal"; // stands for both paths of a shader built from memory

// Reads up to `size` bytes and ends them with a NUL. Null when there is no memory for them, or they
// cannot be read.
char* ReadText(FILE* file, std::size_t size) {
    char* text = static_cast<char*>(std::malloc(size + 1));
    if (text == nullptr)
        return nullptr;
    text[std::fread(text, 1, size, file)] = '\0';
    if (std::ferror(file) == 0)
        return text;
    std::free(text);
    return nullptr;
}

/// Both paths in one label: "shader.vert and .frag" where they differ by their endings only.
std::string BothPaths(const std::string& vertPath, const std::string& fragPath) {
    const std::size_t dot = fragPath.rfind('.');
    const bool alike = dot != std::string::npos && vertPath.rfind('.') == dot &&
                       vertPath.compare(0, dot, fragPath, 0, dot) == 0;
    return vertPath + " and " + (alike ? fragPath.substr(dot) : fragPath);
}

} // namespace

Shader::Shader() : vertexObject(0), fragmentObject(0), program(0) {}

// Attached to a program, an object outlives its deletion for as long as the program does, so every
// sharer may delete it. One that did not compile is kept until here all the same.
Shader::~Shader() {
    RessourceManager::MarkDeleted(this);
    Unlabel(ObjectKind::Program, program);
    Unlabel(ObjectKind::Shader, vertexObject);
    Unlabel(ObjectKind::Shader, fragmentObject);
    glDeleteObject(vertexObject);
    glDeleteObject(fragmentObject);
    // This entry point deletes programs of the older assembly extension and leaves GLSL programs
    // alone, on purpose: sharers draw on, and the program stays until the process ends.
    glDeletePrograms(1, &program);
    if (vertexName != memoryName)
        Log::GetInstance().Write("Shader", "FREE", vertexName + " " + fragmentName);
}

void Shader::Load(const std::string& vertPath, const std::string& fragPath) {
    RessourceManager& registry = RessourceManager::GetInstance();
    const bool known = registry.IsTaken(vertPath) && registry.Exist(fragPath);
    if (known && registry.IsTakenBy(RessourceKind::Shader, vertPath)) {
        Share(*static_cast<Shader*>(registry.Get(vertPath)));
        return;
    }
    vertexName = vertPath;
    fragmentName = fragPath;
    if (known) { // but the first is a picture or a mesh
        Log::GetInstance().Write("Shader", "ERROR", vertPath);
        return;
    }
    registry.Register(this, vertexName, RessourceKind::Shader);
    registry.Register(this, fragmentName, RessourceKind::Shader);

    CreateObjects();
    char* vertSrc = textFileRead(vertPath.c_str());
    char* fragSrc = textFileRead(fragPath.c_str());
    const bool built = Build(vertSrc, fragSrc);
    std::free(vertSrc);
    std::free(fragSrc);
    LabelAll(BothPaths(vertPath, fragPath), vertPath, fragPath);
    if (built)
        Log::GetInstance().Write("Shader", "LOADED", vertPath + " " + fragPath);
}

void Shader::LoadToChar(const char* vertSrc, const char* fragSrc) {
    vertexName = memoryName;
    fragmentName = memoryName;
    CreateObjects();
    Build(vertSrc, fragSrc);
    SetLabel("program from memory");
}

void Shader::SetLabel(const std::string& text) {
    LabelAll(text, text + ", vertex", text + ", fragment");
}

char* Shader::textFileRead(const char* path) {
    const FileStream file = path != nullptr ? OpenRegularStream(path) : nullptr;
    const off_t size = file != nullptr ? lseek(fileno(file.get()), 0, SEEK_END) : -1;
    const bool readable = size >= 0 && size < std::numeric_limits<int>::max();
    if (readable)
        std::rewind(file.get());
    char* text =
        readable && size > 0 ? ReadText(file.get(), static_cast<std::size_t>(size)) : nullptr;
    if (!readable || (size > 0 && text == nullptr))
        Log::GetInstance().Write("Shader", "ERROR", path != nullptr ? path : "");
    return text;
}

void Shader::Enable() {
    glUseProgramObject(program);
}

void Shader::Disable() {
    glUseProgramObject(0);
}

// Without a program there is nobody to ask for a location, and asking program 0 would leave an
// OpenGL error behind in every frame of a scene whose shader is missing.
void Shader::Send(const std::string& name, float value) {
    if (program != 0)
        glUniform1f(Location(name), value);
}

void Shader::Send(const std::string& name, int value) {
    if (program != 0)
        glUniform1i(Location(name), value);
}

void Shader::Send(const std::string& name, const vec2& value) {
    if (program != 0)
        glUniform2f(Location(name), value.x, value.y);
}

void Shader::Send(const std::string& name, const ivec2& value) {
    if (program != 0)
        glUniform2i(Location(name), value.x, value.y);
}

void Shader::Send(const std::string& name, const vec3& value) {
    if (program != 0)
        glUniform3f(Location(name), value.x, value.y, value.z);
}

void Shader::Send(const std::string& name, const ivec3& value) {
    if (program != 0)
        glUniform3i(Location(name), value.x, value.y, value.z);
}

void Shader::Send(const std::string& name, const vec4& value) {
    if (program != 0)
        glUniform4f(Location(name), value.x, value.y, value.z, value.w);
}

void Shader::Send(const std::string& name, const ivec4& value) {
    if (program != 0)
        glUniform4i(Location(name), value.x, value.y, value.z, value.w);
}

GLint Shader::Location(const std::string& name) const {
    return glGetUniformLocation(program, name.c_str());
}

void Shader::Share(const Shader& other) {
    vertexName = other.vertexName;
    fragmentName = other.fragmentName;
    vertexObject = other.vertexObject;
    fragmentObject = other.fragmentObject;
    program = other.program;
}

void Shader::CreateObjects() {
    vertexObject = glCreateShaderObject(GL_VERTEX_SHADER);
    fragmentObject = glCreateShaderObject(GL_FRAGMENT_SHADER);
}

// Compiles both texts and links them; the new program is left bound, so that the caller can send
// the first uniforms. False, with the program as it was, when one of the two does not compile.
bool Shader::Build(const char* vertSrc, const char* fragSrc) {
    HandOver(vertexObject, vertSrc);
    HandOver(fragmentObject, fragSrc);
    glCompileShader(vertexObject);
    glCompileShader(fragmentObject);
    if (!Compiled(vertexObject, vertSrc)) {
        LogFailure("Vertex Shader");
        return false;
    }
    if (!Compiled(fragmentObject, fragSrc)) {
        LogFailure("Pixel Shader");
        return false;
    }
    program = glCreateProgramObject();
    glAttachObject(program, vertexObject);
    glAttachObject(program, fragmentObject);
    glLinkProgram(program);
    glUseProgramObject(program);
    return true;
}

// Drivers read the text without asking whether there is one (a missing or empty file has none).
void Shader::HandOver(GLuint object, const char* source) {
    if (source != nullptr)
        glShaderSource(object, 1, &source, nullptr);
}

// A shader without a text counts as one that does not compile: drivers disagree about an object
// that was never given a source.
bool Shader::Compiled(GLuint object, const char* source) {
    GLint status = 1;
    glGetObjectParameteriv(object, GL_COMPILE_STATUS, &status);
    return status == 1 && source != nullptr;
}

void Shader::LabelAll(const std::string& whole, const std::string& vertex,
                      const std::string& fragment) {
    Label(ObjectKind::Program, program, whole);
    Label(ObjectKind::Shader, vertexObject, vertex);
    Label(ObjectKind::Shader, fragmentObject, fragment);
}

// Names the vertex shader and shows the vertex shader's message even when the fragment shader
// failed; that is intended, so such a row says to look at both files.
void Shader::LogFailure(const char* section) {
    Log& log = Log::GetInstance();
    log.Write(section, "ERROR", vertexName);
    GLint length = 0;
    glGetShaderiv(vertexObject, GL_INFO_LOG_LENGTH, &length);
    // `length` counts the terminator, so one more than the buffer holds may be offered; with no
    // message at all the terminator still needs its place.
    char* message = new char[length > 0 ? static_cast<std::size_t>(length) : 1];
    message[0] = '\0';
    glGetShaderInfoLog(vertexObject, length + 1, nullptr, message);
    log << "\n" << message << "\n\n";
    delete[] message;
}

} // namespace Vell
