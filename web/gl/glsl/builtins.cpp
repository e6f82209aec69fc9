#include "web/gl/glsl/builtins.h"

#include <string_view>
#include <vector>

namespace WebGL::Glsl {

namespace {

enum Where : unsigned { InVertex = 1, InFragment = 2, InBoth = 3 };

struct Row {
    std::string_view name;
    Where where;
    std::string_view text;
    std::vector<std::string_view> needs = {}; ///< rows whose names the text uses
};

std::vector<Row> AttributeRows() {
    return {
        {"gl_Vertex", InVertex, "in vec4 vell_Vertex;"},
        {"gl_Normal", InVertex, "in vec3 vell_Normal;"},
        {"gl_Color", InVertex, "in vec4 vell_Color;"},
        {"gl_SecondaryColor", InVertex, "in vec4 vell_SecondaryColor;"},
        {"gl_FogCoord", InVertex, "in float vell_FogCoord;"},
        {"gl_MultiTexCoord0", InVertex, "in vec4 vell_MultiTexCoord0;"},
        {"gl_MultiTexCoord1", InVertex, "in vec4 vell_MultiTexCoord1;"},
        {"gl_MultiTexCoord2", InVertex, "in vec4 vell_MultiTexCoord2;"},
        {"gl_MultiTexCoord3", InVertex, "in vec4 vell_MultiTexCoord3;"},
        {"gl_MultiTexCoord4", InVertex, "in vec4 vell_MultiTexCoord4;"},
        {"gl_MultiTexCoord5", InVertex, "in vec4 vell_MultiTexCoord5;"},
        {"gl_MultiTexCoord6", InVertex, "in vec4 vell_MultiTexCoord6;"},
        {"gl_MultiTexCoord7", InVertex, "in vec4 vell_MultiTexCoord7;"},
    };
}

/// A matrix in its four forms.
void AddMatrix(std::vector<Row>& rows, std::string_view name, std::string_view array) {
    for (const std::string_view form : {"", "Inverse", "Transpose", "InverseTranspose"}) {
        static std::set<std::string> texts; // rows hold views of them
        const std::string whole = std::string(name).append(form);
        const auto keep = [](const std::string& text) -> std::string_view {
            return *texts.insert(text).first;
        };
        rows.push_back({keep("gl_" + whole), InBoth,
                        keep("uniform mat4 vell_" + whole + std::string(array) + ";")});
    }
}

std::vector<Row> UniformRows() {
    std::vector<Row> rows = {
        {"gl_NormalMatrix", InBoth, "uniform mat3 vell_NormalMatrix;"},
        {"gl_ClipPlane", InBoth, "uniform vec4 vell_ClipPlane[6];"},
        {"gl_FogParameters", InBoth,
         "struct vell_FogParameters { vec4 color; float density; float start; float end;"
         " float scale; };"},
        {"gl_Fog", InBoth, "uniform vell_FogParameters vell_Fog;", {"gl_FogParameters"}},
    };
    for (const std::string_view name :
         {"ModelViewMatrix", "ProjectionMatrix", "ModelViewProjectionMatrix"})
        AddMatrix(rows, name, "");
    AddMatrix(rows, "TextureMatrix", "[8]");
    return rows;
}

std::vector<Row> VariableRows() {
    return {
        {"gl_ClipVertex", InVertex, "vec4 vell_ClipVertex;"},
        {"gl_BackColor", InVertex, "vec4 vell_BackColor;"},
        {"gl_BackSecondaryColor", InVertex, "vec4 vell_BackSecondaryColor;"},
        {"gl_FragColor", InFragment, "layout(location = 0) out vec4 vell_FragColor;"},
        {"gl_FragData", InFragment, "layout(location = 0) out vec4 vell_FragData[1];"},
    };
}

std::vector<Row> FunctionRows() {
    return {
        {"ftransform",
         InVertex,
         "vec4 ftransform() { return vell_ModelViewProjectionMatrix * vell_Vertex; }",
         {"gl_Vertex", "gl_ModelViewProjectionMatrix"}},
        {"texture1D", InBoth,
         "vec4 vell_texture1D(sampler2D s, float x) { return texture(s, vec2(x, 0.5)); }"},
        {"shadow2D", InBoth,
         "vec4 vell_shadow2D(sampler2DShadow s, vec3 p) { return vec4(vec3(texture(s, p)), 1.0); "
         "}"},
        {"shadow2DProj", InBoth,
         "vec4 vell_shadow2DProj(sampler2DShadow s, vec4 p)"
         " { return vec4(vec3(textureProj(s, p)), 1.0); }"},
        {"noise1", InBoth, "float noise1(float x) { return 0.0; }"},
    };
}

/// Those that others need come before them.
const std::vector<Row>& Rows() {
    static const std::vector<Row> rows = [] {
        std::vector<Row> all = AttributeRows();
        for (const auto& group : {UniformRows(), VariableRows(), FunctionRows()})
            all.insert(all.end(), group.begin(), group.end());
        return all;
    }();
    return rows;
}

} // namespace

std::string Declarations(const std::set<std::string>& used, Stage stage) {
    const unsigned here = stage == Stage::Vertex ? InVertex : InFragment;
    std::set<std::string, std::less<>> wanted(used.begin(), used.end());
    for (const Row& row : Rows())
        if (wanted.contains(row.name) && (row.where & here) != 0)
            wanted.insert(row.needs.begin(), row.needs.end());
    std::string text;
    for (const Row& row : Rows())
        if (wanted.contains(row.name) && (row.where & here) != 0)
            text.append(row.text).append("\n");
    return text;
}

} // namespace WebGL::Glsl
