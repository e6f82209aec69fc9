#include "web/gl/depthreading.h"

#include "web/gl/context.h"
#include "web/gl/drawing.h"
#include "web/gl/es.h"

#include <utility>

namespace WebGL {

namespace {

constexpr char vertexText[] = "void main() { gl_Position = gl_Vertex; }";

// 24 bits, eight in each colour: all numbers on the way are whole and exact.
constexpr char fragmentText[] = R"glsl(
uniform sampler2D depth;
uniform vec2 size;
void main()
{
    float exact = texture2D(depth, gl_FragCoord.xy / size).r * 16777215.0;
    float whole = min(floor(exact) + step(0.5, fract(exact)), 16777215.0);
    float high = floor(whole / 65536.0);
    float middle = floor((whole - high * 65536.0) / 256.0);
    float low = whole - high * 65536.0 - middle * 256.0;
    gl_FragColor = vec4(high, middle, low, 255.0) / 255.0;
}
)glsl";

/// Everything that drawing here changes, put back at the end.
class StateKept {
public:
    StateKept()
        : pipeline(context.pipeline.wanted),
          fixed(context.fixed),
          program(context.programs.used),
          framebuffer(context.framebuffers.bound),
          active(context.textures.active),
          unit(context.textures.units[0]) {
        context.fixed = FixedState();
        context.textures.active = 0;
    }
    ~StateKept() {
        context.pipeline.wanted = pipeline;
        context.fixed = fixed;
        context.programs.used = program;
        context.framebuffers.bound = framebuffer;
        context.textures.active = active;
        context.textures.units[0] = unit;
    }
    StateKept(const StateKept&) = delete;
    StateKept& operator=(const StateKept&) = delete;

private:
    Context& context = Current();
    PipelineState pipeline;
    FixedState fixed;
    GLuint program;
    GLuint framebuffer;
    std::size_t active;
    TextureUnit unit;
};

/// A texture in a framebuffer of its own, for as long as it is needed.
class Target {
public:
    Target(GLenum place, const PixelArea& area, GLint internalFormat) {
        context.textures.Generate(1, &texture);
        context.textures.Active().bound = texture;
        context.textures.SetParameter(GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        context.textures.SetParameter(GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        context.textures.SetImage(0, internalFormat, area, nullptr);
        context.framebuffers.Generate(1, &framebuffer);
        context.framebuffers.Bind(GL_FRAMEBUFFER_EXT, framebuffer);
        context.framebuffers.Attach(place, {GL_TEXTURE_2D, texture, 0});
    }
    ~Target() {
        context.framebuffers.Delete(framebuffer);
        context.textures.Delete(texture);
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    GLuint texture = 0;
    GLuint framebuffer = 0;

private:
    Context& context = Current();
};

GLuint ProgramFor(GLsizei width, GLsizei height) {
    Programs& programs = Current().programs;
    const GLuint handle = programs.AddProgram();
    for (const auto& [stage, text] : {std::pair{Glsl::Stage::Vertex, vertexText},
                                      std::pair{Glsl::Stage::Fragment, fragmentText}}) {
        const GLuint shader = programs.AddShader(stage);
        programs.FindShader(shader)->text = text;
        programs.Compile(*programs.FindShader(shader));
        programs.Attach(*programs.FindProgram(handle), shader);
    }
    Program& program = *programs.FindProgram(handle);
    program.Link();
    const float size[] = {static_cast<float>(width), static_cast<float>(height)};
    program.Store(program.Find("size"), 1, 2, true, size);
    return handle;
}

void DrawWhole(GLsizei width, GLsizei height) {
    Context& context = Current();
    context.pipeline.wanted = PipelineState();
    context.pipeline.wanted.viewport = {0, 0, width, height};
    const GLuint program = ProgramFor(width, height);
    context.programs.used = program;
    Immediate corners;
    corners.Begin(GL_TRIANGLES);
    corners.AddVertex({-1, -1, 0, 1});
    corners.AddVertex({3, -1, 0, 1});
    corners.AddVertex({-1, 3, 0, 1});
    DrawPrimitive(*corners.End());
    context.programs.used = 0;
    context.programs.Delete(program);
}

std::vector<float> Unpacked(const std::vector<std::uint8_t>& rgba) {
    std::vector<float> depths;
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const int whole = rgba[i] * 65536 + rgba[i + 1] * 256 + rgba[i + 2];
        depths.push_back(static_cast<float>(whole / 16777215.0));
    }
    return depths;
}

} // namespace

std::vector<float> ReadDepths(GLint x, GLint y, GLsizei width, GLsizei height) {
    Framebuffers& framebuffers = Current().framebuffers;
    const GLuint from = framebuffers.bound;
    const StateKept kept;
    Current().pipeline.wanted.scissorTest = false; // it cuts what is copied, too
    Current().pipeline.Send();
    const PixelArea depthArea{width, height, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, {}};
    const Target copy(GL_DEPTH_ATTACHMENT_EXT, depthArea, GL_DEPTH_COMPONENT24);
    if (!framebuffers.Send())
        return {};
    Es::BindFramebuffer(GL_READ_FRAMEBUFFER, from);
    Es::BlitFramebuffer(x, y, x + width, y + height, 0, 0, width, height, GL_DEPTH_BUFFER_BIT,
                        GL_NEAREST);
    Es::BindFramebuffer(GL_READ_FRAMEBUFFER, copy.framebuffer);
    const PixelArea colorArea{width, height, GL_RGBA, GL_UNSIGNED_BYTE, {}};
    const Target colors(GL_COLOR_ATTACHMENT0_EXT, colorArea, GL_RGBA);
    Current().textures.Active().bound = copy.texture;
    DrawWhole(width, height);
    std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height));
    Es::ReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    return Unpacked(rgba);
}

} // namespace WebGL
