#pragma once

#include "web/gl/glsl/translate.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

namespace WebGL {

/// A shader as the program made it, and what OpenGL ES made of it.
struct Shader {
    Glsl::Stage stage;
    std::string text;
    bool hasText = false;
    Glsl::Source source; ///< of the text that was compiled last
    bool compiled = false;
    bool deleted = false;
    std::string log;
    std::map<std::string, GLuint> made; ///< by the translated text
};

/// One uniform; its values as words, floats or integers, that every variant gets when it is used.
struct Uniform {
    std::string name; ///< in OpenGL ES, without [0]
    GLenum type;
    GLint size; ///< elements of the array; 1 for none
    std::vector<std::uint32_t> words;
    unsigned version = 1;
};

/// Where OpenGL's own state goes in a program of OpenGL ES.
struct StateUniform {
    GLint place;
    unsigned source; ///< see stateuniforms.h
    std::vector<float> sent;
};

/// An attribute that a program reads.
struct Attribute {
    GLuint place; ///< in OpenGL ES
    std::size_t slot;
};

/// State that a program is written for, in numbers that are quick to compare.
struct VariantKey {
    unsigned alphaFunction = 0;
    unsigned clipPlanes = 0;
    bool lineOffset = false;
    std::uint32_t grey = 0; ///< one bit for each sampler

    bool operator==(const VariantKey&) const = default;
};

/// A program of OpenGL ES for one variant.
struct Linked {
    VariantKey key;
    GLuint name = 0;
    std::vector<GLint> places;      ///< of the uniforms, in their order
    std::vector<unsigned> versions; ///< sent last
    std::vector<StateUniform> state;
    std::vector<Attribute> attributes;
};

struct Sampler {
    std::size_t uniform;
    std::string name; ///< in the shader
};

struct Location {
    std::size_t uniform;
    GLint element;
};

struct Program {
    std::vector<std::shared_ptr<Shader>> attached;
    std::vector<GLuint> attachedNames;
    std::shared_ptr<Shader> vertex; ///< those that were linked
    std::shared_ptr<Shader> fragment;
    Glsl::Interface interface;
    bool linked = false;
    bool deleted = false;
    std::string log;
    std::vector<Uniform> uniforms;
    std::vector<Location> locations;
    std::unordered_map<std::string, GLint> locationOf; ///< by the shader's own names
    std::vector<Sampler> samplers;
    std::map<std::string, GLuint> boundAttributes; ///< asked for before linking
    std::map<std::string, GLuint> generic;         ///< attributes of the shader's own, numbered
    std::vector<std::unique_ptr<Linked>> variants; ///< the plain one first

    /// The number of a uniform's element, as glGetUniformLocation() gives it; -1 for none.
    GLint Find(const std::string& name) const;

    /// Makes the plain variant and with it the table of uniforms. Sets `linked` and the log.
    void Link();

    /// The variant for this state, made at first use.
    Linked& For(const VariantKey& key);

    /// Stores values for `count` elements from a location on. False when type or size do not fit.
    bool Store(GLint location, GLsizei count, GLint components, bool floats, const void* values);

    /// The texture unit that a sampler reads.
    std::size_t UnitOf(const Sampler& sampler) const { return uniforms[sampler.uniform].words[0]; }

private:
    std::unique_ptr<Linked> Make(const VariantKey& key);
    void ListUniforms(GLuint name);
    void AddUniform(const std::string& name, GLenum type, GLint size);
    void ListAttributes(Linked& made);
    void FindPlaces(Linked& made);
};

/// Shaders and programs by their handles, which are one sequence, and the program in use.
class Programs {
public:
    GLuint used = 0;

    GLuint AddShader(Glsl::Stage stage);
    GLuint AddProgram();
    Shader* FindShader(GLuint handle);
    Program* FindProgram(GLuint handle);
    void Compile(Shader& shader);
    void Attach(Program& program, GLuint handle);

    /// Shaders and programs alike.
    void Delete(GLuint handle);

    /// The program in use; null for none.
    Program* Used();

    /// 0 or a program that is linked.
    void Use(GLuint handle);

    void SendUse(GLuint esProgram);

private:
    std::unordered_map<GLuint, std::shared_ptr<Shader>> shaders;
    std::unordered_map<GLuint, std::unique_ptr<Program>> programs;
    GLuint lastHandle = 0;
    GLuint sentProgram = 0;

    bool IsAttached(GLuint shader) const;
};

} // namespace WebGL
