#include "web/gl/fixedfunction.h"

#include "web/gl/context.h"

#include <array>
#include <vector>

namespace WebGL {

namespace {

constexpr std::size_t units = 8;

/// One texture unit that is switched on.
struct Stage {
    std::size_t unit;
    GLint environment;
    bool alphaOnly;
};

std::vector<Stage> Stages() {
    std::vector<Stage> stages;
    Textures& textures = Current().textures;
    for (std::size_t unit = 0; unit < units; ++unit) {
        const TextureUnit& state = textures.units[unit];
        if (!state.enabled)
            continue;
        const Texture& texture = textures.Get(state.bound);
        if (texture.Complete())
            stages.push_back({unit, state.environment, texture.IsAlpha()});
    }
    return stages;
}

GLenum FogMode() {
    const Fog& fog = Current().fixed.fog;
    return fog.enabled ? fog.mode : 0;
}

std::string Key(const std::vector<Stage>& stages, GLenum fog) {
    std::string key = std::to_string(fog);
    for (const Stage& stage : stages) {
        for (const GLint number : {static_cast<GLint>(stage.unit), stage.environment})
            key.append(" ").append(std::to_string(number));
        key.append(stage.alphaOnly ? "a" : "");
    }
    return key;
}

std::string VertexText(const std::vector<Stage>& stages, GLenum fog, bool colorVaries) {
    std::string text = "void main()\n{\n"
                       "    gl_Position = ftransform();\n"
                       "    gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;\n";
    if (colorVaries)
        text += "    gl_FrontColor = gl_Color;\n";
    for (const Stage& stage : stages) {
        const std::string n = std::to_string(stage.unit);
        text += "    gl_TexCoord[" + n + "] = gl_TextureMatrix[" + n + "] * gl_MultiTexCoord" + n +
                ";\n";
    }
    if (fog != 0)
        text += "    gl_FogFragCoord = abs((gl_ModelViewMatrix * gl_Vertex).z);\n";
    return text + "}\n";
}

/// What a texture's colour does to the colour so far.
std::string Combined(const Stage& stage) {
    if (stage.alphaOnly)
        return stage.environment == GL_REPLACE ? "color.a = t.a;" : "color.a *= t.a;";
    switch (stage.environment) {
    case GL_REPLACE:
        return "color = t;";
    case GL_DECAL:
        return "color.rgb = mix(color.rgb, t.rgb, t.a);";
    case GL_ADD:
        return "color = vec4(min(color.rgb + t.rgb, 1.0), color.a * t.a);";
    default:
        return "color *= t;";
    }
}

std::string FogFactor(GLenum fog) {
    switch (fog) {
    case GL_LINEAR:
        return "(gl_Fog.end - gl_FogFragCoord) * gl_Fog.scale";
    case GL_EXP2:
        return "exp(-gl_Fog.density * gl_Fog.density * gl_FogFragCoord * gl_FogFragCoord)";
    default:
        return "exp(-gl_Fog.density * gl_FogFragCoord)";
    }
}

std::string FragmentText(const std::vector<Stage>& stages, GLenum fog, bool colorVaries) {
    std::string text = colorVaries ? "" : "uniform vec4 vell_CurrentColor;\n";
    for (const Stage& stage : stages)
        text += "uniform sampler2D texture" + std::to_string(stage.unit) + ";\n";
    text += std::string("void main()\n{\n    vec4 color = ") +
            (colorVaries ? "gl_Color" : "clamp(vell_CurrentColor, 0.0, 1.0)") + ";\n    vec4 t;\n";
    for (const Stage& stage : stages) {
        const std::string n = std::to_string(stage.unit);
        text += "    t = texture2DProj(texture" + n + ", gl_TexCoord[" + n + "]);\n    " +
                Combined(stage) + "\n";
    }
    if (fog != 0)
        text += "    color.rgb = mix(gl_Fog.color.rgb, color.rgb, clamp(" + FogFactor(fog) +
                ", 0.0, 1.0));\n";
    return text + "    gl_FragColor = color;\n}\n";
}

std::shared_ptr<Shader> Compiled(Glsl::Stage stage, const std::string& text) {
    auto shader = std::make_shared<Shader>();
    shader->stage = stage;
    shader->text = text;
    Current().programs.Compile(*shader);
    return shader;
}

std::unique_ptr<Program> Made(const std::vector<Stage>& stages, GLenum fog, bool colorVaries) {
    auto program = std::make_unique<Program>();
    program->attached = {Compiled(Glsl::Stage::Vertex, VertexText(stages, fog, colorVaries)),
                         Compiled(Glsl::Stage::Fragment, FragmentText(stages, fog, colorVaries))};
    program->Link();
    for (const Stage& stage : stages) {
        const auto unit = static_cast<GLint>(stage.unit);
        program->Store(program->Find("texture" + std::to_string(stage.unit)), 1, 1, false, &unit);
    }
    return program;
}

} // namespace

Program& FixedFunction::Now(bool colorVaries) {
    const std::vector<Stage> stages = Stages();
    const GLenum fog = FogMode();
    std::unique_ptr<Program>& program = programs[Key(stages, fog) + (colorVaries ? " colour" : "")];
    if (program == nullptr)
        program = Made(stages, fog, colorVaries);
    return *program;
}

} // namespace WebGL
