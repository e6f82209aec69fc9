#include "web/gl/programs.h"

#include "web/gl/es.h"
#include "web/gl/stateuniforms.h"
#include "web/gl/vertices.h"

#include <algorithm>
#include <utility>

namespace WebGL {

namespace {

/// The shader's text for this variant, compiled. Texts that several variants share are compiled
/// once.
GLuint CompiledFor(Shader& shader, const Glsl::Interface& interface, const Glsl::Variant& variant) {
    const std::string text = Glsl::Translate(shader.source, interface, variant);
    const auto [found, added] = shader.made.try_emplace(text, 0);
    if (!added)
        return found->second;
    const bool vertex = shader.stage == Glsl::Stage::Vertex;
    const GLuint name = Es::CreateShader(vertex ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
    const char* const pointer = text.c_str();
    Es::ShaderSource(name, 1, &pointer, nullptr);
    Es::CompileShader(name);
    found->second = name;
    return name;
}

template <class Length, class Text>
std::string LogOf(GLuint name, Length askLength, Text askText) {
    GLint length = 0;
    askLength(name, GL_INFO_LOG_LENGTH, &length);
    std::string log(static_cast<std::size_t>(std::max(length, 1)), '\0');
    askText(name, length, nullptr, log.data());
    log.resize(log.find('\0') != std::string::npos ? log.find('\0') : log.size());
    return log;
}

} // namespace

GLuint Programs::AddShader(Glsl::Stage stage) {
    auto shader = std::make_shared<Shader>();
    shader->stage = stage;
    shaders[++lastHandle] = shader;
    return lastHandle;
}

GLuint Programs::AddProgram() {
    programs[++lastHandle] = std::make_unique<Program>();
    return lastHandle;
}

Shader* Programs::FindShader(GLuint handle) {
    const auto found = shaders.find(handle);
    return found != shaders.end() ? found->second.get() : nullptr;
}

Program* Programs::FindProgram(GLuint handle) {
    const auto found = programs.find(handle);
    return found != programs.end() ? found->second.get() : nullptr;
}

void Programs::Compile(Shader& shader) {
    shader.source = Glsl::Parse(shader.stage, shader.text);
    const GLuint name = CompiledFor(shader, shader.source.interface, Glsl::Variant());
    GLint status = 0;
    Es::GetShaderiv(name, GL_COMPILE_STATUS, &status);
    shader.compiled = status != 0;
    shader.log = LogOf(
        name, [](auto... a) { Es::GetShaderiv(a...); },
        [](auto... a) { Es::GetShaderInfoLog(a...); });
}

void Programs::Attach(Program& program, GLuint handle) {
    program.attached.push_back(shaders[handle]);
    program.attachedNames.push_back(handle);
}

bool Programs::IsAttached(GLuint shader) const {
    return std::any_of(programs.begin(), programs.end(), [&](const auto& row) {
        const std::vector<GLuint>& names = row.second->attachedNames;
        return std::find(names.begin(), names.end(), shader) != names.end();
    });
}

// A shader that is attached keeps its name for as long as that, and a program in use until another
// is used.
void Programs::Delete(GLuint handle) {
    if (handle == used && handle != 0) {
        programs[handle]->deleted = true;
        return;
    }
    if (Shader* const shader = FindShader(handle); shader != nullptr && IsAttached(handle)) {
        shader->deleted = true;
        return;
    }
    shaders.erase(handle);
    programs.erase(handle);
}

void Programs::Use(GLuint handle) {
    const GLuint before = std::exchange(used, handle);
    if (before != handle && before != 0 && programs[before]->deleted)
        programs.erase(before);
}

Program* Programs::Used() {
    return used != 0 ? FindProgram(used) : nullptr;
}

void Programs::SendUse(GLuint esProgram) {
    if (sentProgram != esProgram)
        Es::UseProgram(esProgram);
    sentProgram = esProgram;
}

void Program::Link() {
    variants.clear();
    uniforms.clear();
    locations.clear();
    locationOf.clear();
    samplers.clear();
    vertex.reset();
    fragment.reset();
    for (const auto& shader : attached)
        (shader->stage == Glsl::Stage::Vertex ? vertex : fragment) = shader;
    linked = vertex != nullptr && fragment != nullptr && vertex->compiled && fragment->compiled;
    log = linked ? "" : "error: a vertex and a fragment shader that compile are needed\n";
    if (!linked)
        return;
    interface = Glsl::Together(vertex->source.interface, fragment->source.interface);
    std::unique_ptr<Linked> plain = Make(VariantKey());
    GLint status = 0;
    Es::GetProgramiv(plain->name, GL_LINK_STATUS, &status);
    log = LogOf(
        plain->name, [](auto... a) { Es::GetProgramiv(a...); },
        [](auto... a) { Es::GetProgramInfoLog(a...); });
    linked = status != 0;
    if (linked)
        variants.push_back(std::move(plain));
}

std::unique_ptr<Linked> Program::Make(const VariantKey& key) {
    Glsl::Variant variant{.alphaFunction = key.alphaFunction,
                          .clipPlanes = key.clipPlanes,
                          .lineOffset = key.lineOffset,
                          .grey = {}};
    for (std::size_t i = 0; i < samplers.size(); ++i)
        if ((key.grey >> i & 1U) != 0)
            variant.grey.insert(samplers[i].name);
    auto made = std::make_unique<Linked>();
    made->key = key;
    made->name = Es::CreateProgram();
    Es::AttachShader(made->name, CompiledFor(*vertex, interface, variant));
    Es::AttachShader(made->name, CompiledFor(*fragment, interface, variant));
    for (const AttributeName& own : ownAttributes)
        Es::BindAttribLocation(made->name, own.place, own.name);
    Es::LinkProgram(made->name);
    if (variants.empty())
        ListUniforms(made->name);
    ListAttributes(*made);
    FindPlaces(*made);
    return made;
}

Linked& Program::For(const VariantKey& key) {
    for (const auto& made : variants)
        if (made->key == key)
            return *made;
    variants.push_back(Make(key));
    return *variants.back();
}

void Program::ListUniforms(GLuint name) {
    GLint count = 0;
    Es::GetProgramiv(name, GL_ACTIVE_UNIFORMS, &count);
    for (GLint i = 0; i < count; ++i) {
        std::array<char, 1024> text{};
        GLint size = 0;
        GLenum type = 0;
        Es::GetActiveUniform(name, static_cast<GLuint>(i), static_cast<GLsizei>(text.size()),
                             nullptr, &size, &type, text.data());
        const std::string whole = text.data();
        if (!IsStateUniform(whole))
            AddUniform(whole.ends_with("[0]") ? whole.substr(0, whole.size() - 3) : whole, type,
                       size);
    }
}

void Program::AddUniform(const std::string& name, GLenum type, GLint size) {
    const auto words = static_cast<std::size_t>(ComponentsOf(type) * size);
    const std::string original = Glsl::OriginalPath(name);
    const auto first = static_cast<GLint>(locations.size());
    locationOf[original] = first;
    for (GLint element = 0; element < size; ++element) {
        locationOf[original + "[" + std::to_string(element) + "]"] = first + element;
        locations.push_back({uniforms.size(), element});
    }
    if (IsSampler(type))
        samplers.push_back({uniforms.size(), original});
    uniforms.push_back({name, type, size, std::vector<std::uint32_t>(words), 1});
}

void Program::ListAttributes(Linked& made) {
    GLint count = 0;
    Es::GetProgramiv(made.name, GL_ACTIVE_ATTRIBUTES, &count);
    GLuint next = 1;
    for (GLint i = 0; i < count; ++i) {
        std::array<char, 256> text{};
        GLint size = 0;
        GLenum type = 0;
        Es::GetActiveAttrib(made.name, static_cast<GLuint>(i), static_cast<GLsizei>(text.size()),
                            nullptr, &size, &type, text.data());
        const GLint place = Es::GetAttribLocation(made.name, text.data());
        if (place < 0)
            continue;
        const auto* const own = std::find_if(
            std::begin(ownAttributes), std::end(ownAttributes),
            [&](const AttributeName& row) { return row.name == std::string(text.data()); });
        if (own != std::end(ownAttributes)) {
            made.attributes.push_back({static_cast<GLuint>(place), own->place});
            continue;
        }
        const std::string original = Glsl::OriginalPath(text.data());
        const auto asked = boundAttributes.find(original);
        const auto known =
            generic.try_emplace(original, asked != boundAttributes.end() ? asked->second : next++);
        made.attributes.push_back(
            {static_cast<GLuint>(place), Slot::generic + known.first->second});
    }
}

void Program::FindPlaces(Linked& made) {
    for (const Uniform& uniform : uniforms)
        made.places.push_back(Es::GetUniformLocation(made.name, uniform.name.c_str()));
    made.versions.assign(uniforms.size(), 0);
    made.state = StateUniformsOf(made.name);
}

GLint Program::Find(const std::string& name) const {
    const auto found = locationOf.find(name);
    return found != locationOf.end() ? found->second : -1;
}

bool Program::Store(GLint location, GLsizei count, GLint components, bool floats,
                    const void* values) {
    if (location < 0 || static_cast<std::size_t>(location) >= locations.size())
        return false;
    const Location& at = locations[static_cast<std::size_t>(location)];
    Uniform& uniform = uniforms[at.uniform];
    if (!Takes(uniform.type, components, floats) || (count > 1 && uniform.size == 1))
        return false;
    const GLint elements = std::min(count, uniform.size - at.element);
    const auto words = static_cast<std::size_t>(elements * components);
    const auto first = static_cast<std::size_t>(at.element * components);
    std::vector<std::uint32_t> next(words);
    std::copy_n(static_cast<const unsigned char*>(values), 4 * words,
                reinterpret_cast<unsigned char*>(next.data()));
    const auto place = uniform.words.begin() + static_cast<std::ptrdiff_t>(first);
    if (std::equal(next.begin(), next.end(), place))
        return true;
    std::copy(next.begin(), next.end(), place);
    ++uniform.version;
    return true;
}

} // namespace WebGL
