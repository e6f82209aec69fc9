#include "tests/recording/recorder.h"

#include <gtest/gtest.h>

#include <utility>

Recorder gl;

void Recorder::Reset() {
    *this = Recorder();
    context = true;
    for (const RecordedGroup& group : RecordedGroups())
        extensions += group.extension + " ";
    largestTexture = 4096;
}

std::vector<std::string> Recorder::Take() {
    return std::exchange(lines, {});
}

void Recorder::Name(const std::string& kind, std::span<const std::string> newLabels) {
    std::vector<std::string>& queue = queues[kind];
    queue.insert(queue.end(), newLabels.begin(), newLabels.end());
}

void Recorder::NameTarget(const std::string& label) {
    const std::string one[] = {label};
    const std::string both[] = {label + " colour", label + " depth"};
    Name("framebuffer", one);
    Name("renderbuffer", one);
    Name("texture", both);
}

void Recorder::NameProgram(const std::string& label) {
    const std::string vertex[] = {label + " vertex"};
    const std::string fragment[] = {label + " fragment"};
    const std::string whole[] = {label};
    Name("vertex", vertex);
    Name("fragment", fragment);
    Name("program", whole);
}

void Recorder::CheckContext(const char* name) const {
    EXPECT_TRUE(context) << name << " was called without a current context";
}

void Recorder::Note(const std::string& name, std::span<const std::string> arguments) {
    std::string line = name + "(";
    const char* separator = "";
    for (const std::string& argument : arguments) {
        if (argument.empty())
            continue; // left out by its printer
        line += separator + argument;
        separator = ", ";
    }
    lines.push_back(line + ")");
}

GLuint Recorder::NewObject(const std::string& kind, const std::string& space) {
    const GLuint name = ++counters["every " + space];
    const GLuint number = ++counters[kind];
    std::vector<std::string>& queue = queues[kind];
    std::string& label = labels[{space, name}];
    label = kind + " " + std::to_string(number);
    if (!queue.empty()) {
        label = queue.front();
        queue.erase(queue.begin());
    }
    return name;
}

void Recorder::NewObjects(const std::string& kind, GLsizei count, GLuint* names) {
    for (GLsizei i = 0; i < count; ++i)
        names[i] = NewObject(kind, kind);
}

std::string Recorder::LabelOf(const std::string& space, GLuint name) const {
    if (name == 0)
        return "0";
    const auto label = labels.find({space, name});
    if (label != labels.end())
        return label->second;
    ADD_FAILURE() << "there is no " << space << " " << name;
    return "unknown";
}

std::vector<Recorder::Object> Recorder::Objects() const {
    using Vell::ObjectKind;
    const std::map<std::string, ObjectKind> kindOf = {{"texture", ObjectKind::Texture},
                                                      {"framebuffer", ObjectKind::Framebuffer},
                                                      {"renderbuffer", ObjectKind::Renderbuffer},
                                                      {"buffer", ObjectKind::Buffer},
                                                      {"list", ObjectKind::List},
                                                      {"object", ObjectKind::Shader}};
    std::vector<Object> objects;
    for (const auto& [object, label] : labels) {
        const auto& [space, name] = object;
        const bool isProgram = space == "object" && kinds.count(name) == 0;
        objects.push_back({isProgram ? ObjectKind::Program : kindOf.at(space), name, label});
    }
    return objects;
}

std::string Recorder::UniformAt(GLint location) const {
    if (location == -1)
        return "-1";
    const Uniform& uniform = uniforms.at(static_cast<std::size_t>(location));
    EXPECT_EQ(uniform.program, program)
        << "the uniform '" << uniform.name << "' is sent while its program is not in use";
    return uniform.name;
}

GLint Recorder::LocationOf(GLuint ofProgram, const std::string& name) {
    if (unusedUniforms.count(name) != 0)
        return -1;
    uniforms.push_back({ofProgram, name});
    return static_cast<GLint>(uniforms.size()) - 1;
}
