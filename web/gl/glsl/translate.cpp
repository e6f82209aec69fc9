#include "web/gl/glsl/translate.h"

#include "web/gl/glsl/builtins.h"

#include <algorithm>
#include <cstdlib>

#include <GL/gl.h>

namespace WebGL::Glsl {

namespace {

constexpr int allTexCoords = 8;

// No shader of GLSL 1.10 says how exact it is to be: as exact as there is.
constexpr std::string_view head = "precision highp float;\n"
                                  "precision highp int;\n"
                                  "precision highp sampler2D;\n"
                                  "precision highp sampler3D;\n"
                                  "precision highp samplerCube;\n"
                                  "precision highp sampler2DShadow;\n";

/// The next token that is no space, from `index` on; one past the end when there is none.
std::size_t NextSolid(const std::vector<Token>& tokens, std::size_t index) {
    while (index < tokens.size() && tokens[index].kind == TokenKind::Space)
        ++index;
    return index;
}

bool IsSymbol(const std::vector<Token>& tokens, std::size_t index, char symbol) {
    return index < tokens.size() && tokens[index].kind == TokenKind::Symbol &&
           tokens[index].text[0] == symbol;
}

bool EndsLine(const Token& token) {
    return token.kind == TokenKind::Space && token.text.find('\n') != std::string::npos;
}

bool IsDesktopExtension(const std::string& name) {
    return name == "all" || name.starts_with("GL_ARB_") || name.starts_with("GL_EXT_");
}

/// How many texture coordinates the name at `index` asks for: one more than the number in the
/// brackets behind it, or all, where it is not a plain number.
int TexCoordsNamed(const std::vector<Token>& tokens, std::size_t index) {
    const std::size_t bracket = NextSolid(tokens, index + 1);
    const std::size_t number = NextSolid(tokens, bracket + 1);
    const std::size_t end = NextSolid(tokens, number + 1);
    if (!IsSymbol(tokens, bracket, '[') || !IsSymbol(tokens, end, ']') ||
        tokens[number].kind != TokenKind::Number)
        return allTexCoords;
    return std::clamp(std::atoi(tokens[number].text.c_str()) + 1, 1, allTexCoords);
}

void Note(Source& source, std::size_t index) {
    const std::string& name = source.tokens[index].text;
    const bool vertex = source.stage == Stage::Vertex;
    Interface& all = source.interface;
    if (name == "gl_TexCoord")
        all.texCoords = std::max(all.texCoords, TexCoordsNamed(source.tokens, index));
    else if (name == (vertex ? "gl_FrontColor" : "gl_Color"))
        all.frontColor = true;
    else if (name == (vertex ? "gl_FrontSecondaryColor" : "gl_SecondaryColor"))
        all.frontSecondaryColor = true;
    else if (name == "gl_FogFragCoord")
        all.fogFragCoord = true;
}

std::set<std::string> NamesIn(const std::vector<Token>& tokens) {
    std::set<std::string> names;
    for (const Token& token : tokens)
        if (token.kind == TokenKind::Identifier)
            names.insert(token.text);
    return names;
}

/// Writes one stage.
class Writer {
public:
    Writer(const Source& from, const Interface& both, const Variant& state)
        : source(from),
          interface(both),
          variant(state),
          used(NamesIn(from.tokens)),
          vertex(from.stage == Stage::Vertex) {}

    std::string Write();

private:
    const Source& source;
    const Interface& interface;
    const Variant& variant;
    std::set<std::string> used;
    bool vertex;
    std::string text;
    std::vector<int> greyCalls; ///< open parentheses within each look-up that is to become grey
    std::size_t index = 0;

    bool Uses(const std::string& name) const { return used.contains(name); }

    void WriteExtensions();
    void WriteDeclarations();
    void WriteInterface();
    void WriteVariantDeclarations();
    void WriteDistances(const char* direction);
    void WriteTokens();
    void WriteDirective();
    void WriteIdentifier();
    void WriteSymbol();
    void WriteMain();
    void WriteVertexEnd();
    void WriteFragmentEnd();
    void WriteAlphaTest();
    bool IsGreyLookUp() const;
};

std::string Writer::Write() {
    text = "#version 300 es\n";
    WriteExtensions();
    text += head;
    WriteDeclarations();
    text += "#line 1\n";
    WriteTokens();
    WriteMain();
    return text;
}

// They come before all else in GLSL ES. Those of desktops' own are part of it or nothing that it
// knows; what is left, the driver is to judge.
void Writer::WriteExtensions() {
    const std::vector<Token>& tokens = source.tokens;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const std::size_t word = NextSolid(tokens, i + 1);
        const std::size_t name = NextSolid(tokens, word + 1);
        if (tokens[i].kind != TokenKind::Hash || name >= tokens.size() ||
            tokens[word].text != "extension" || IsDesktopExtension(tokens[name].text))
            continue;
        text += "#extension ";
        for (i = name; i < tokens.size() && !EndsLine(tokens[i]); ++i)
            text += tokens[i].text;
        text += "\n";
    }
}

void Writer::WriteDeclarations() {
    if (!vertex && !Uses("gl_FragData"))
        used.insert("gl_FragColor");
    if (vertex && variant.clipPlanes != 0)
        used.insert("gl_ClipPlane");
    text += Declarations(used, source.stage);
    WriteInterface();
    WriteVariantDeclarations();
}

// The vertex stage declares all, so that no input of the other is without its output.
void Writer::WriteInterface() {
    const Interface& here = vertex ? interface : source.interface;
    const std::string direction = vertex ? "out " : "in ";
    if (here.texCoords > 0)
        text += direction + "vec4 vell_TexCoord[" + std::to_string(interface.texCoords) + "];\n";
    if (here.frontColor)
        text += direction + "vec4 vell_FrontColor;\n";
    if (here.frontSecondaryColor)
        text += direction + "vec4 vell_FrontSecondaryColor;\n";
    if (here.fogFragCoord)
        text += direction + "float vell_FogFragCoord;\n";
}

void Writer::WriteVariantDeclarations() {
    WriteDistances(vertex ? "out" : "in");
    if (vertex) {
        text += "uniform float vell_SizeOfPoints;\n";
        if (variant.lineOffset)
            text += "uniform float vell_LineOffset;\n";
        return;
    }
    if (variant.alphaFunction != 0)
        text += "uniform float vell_AlphaReference;\n";
    if (!variant.grey.empty())
        text += "vec4 vell_Grey(vec4 depth) { return vec4(depth.rrr, 1.0); }\n";
}

void Writer::WriteDistances(const char* direction) {
    for (unsigned plane = 0; plane < 6; ++plane)
        if ((variant.clipPlanes >> plane & 1U) != 0)
            text += std::string(direction) + " float vell_Distance" + std::to_string(plane) + ";\n";
}

void Writer::WriteTokens() {
    for (index = 0; index < source.tokens.size(); ++index) {
        const Token& token = source.tokens[index];
        if (token.kind == TokenKind::Hash)
            WriteDirective();
        else if (token.kind == TokenKind::Identifier)
            WriteIdentifier();
        else if (token.kind == TokenKind::Symbol)
            WriteSymbol();
        else
            text += token.text;
    }
    text += "\n";
}

// Which version and which extensions the shader wants is for the translation, not for the driver.
void Writer::WriteDirective() {
    const std::size_t name = NextSolid(source.tokens, index + 1);
    const bool drop = name < source.tokens.size() && (source.tokens[name].text == "version" ||
                                                      source.tokens[name].text == "extension");
    if (!drop) {
        text += "#";
        return;
    }
    while (index + 1 < source.tokens.size() && !EndsLine(source.tokens[index + 1]))
        ++index;
}

bool Writer::IsGreyLookUp() const {
    const std::vector<Token>& tokens = source.tokens;
    if (!tokens[index].text.starts_with("texture2D"))
        return false;
    const std::size_t open = NextSolid(tokens, index + 1);
    const std::size_t sampler = NextSolid(tokens, open + 1);
    return IsSymbol(tokens, open, '(') && sampler < tokens.size() &&
           variant.grey.contains(tokens[sampler].text);
}

void Writer::WriteIdentifier() {
    if (IsGreyLookUp()) {
        text += "vell_Grey(";
        greyCalls.push_back(0);
    }
    text += Translated(source.tokens[index].text, source.stage);
}

void Writer::WriteSymbol() {
    const char symbol = source.tokens[index].text[0];
    text += symbol;
    if (greyCalls.empty())
        return;
    greyCalls.back() += symbol == '(' ? 1 : symbol == ')' ? -1 : 0;
    if (symbol == ')' && greyCalls.back() == 0) {
        text += ")";
        greyCalls.pop_back();
    }
}

void Writer::WriteMain() {
    if (!Uses("main"))
        return; // for the driver to complain about
    text += "void main()\n{\n    vell_main();\n";
    if (vertex)
        WriteVertexEnd();
    else
        WriteFragmentEnd();
    text += "}\n";
}

// Without a gl_ClipVertex the position is measured, though the planes are in eye coordinates: what
// comes of that OpenGL leaves open, and this is what Mesa does.
void Writer::WriteVertexEnd() {
    const char* const place = Uses("gl_ClipVertex") ? "vell_ClipVertex" : "gl_Position";
    for (unsigned plane = 0; plane < 6; ++plane) {
        const std::string number = std::to_string(plane);
        if ((variant.clipPlanes >> plane & 1U) != 0)
            text.append("    vell_Distance")
                .append(number)
                .append(" = dot(vell_ClipPlane[")
                .append(number)
                .append("], ")
                .append(place)
                .append(");\n");
    }
    for (const char* name : {"FrontColor", "FrontSecondaryColor"})
        if (Uses(std::string("gl_") + name))
            text += std::string("    vell_") + name + " = clamp(vell_" + name + ", 0.0, 1.0);\n";
    if (variant.lineOffset)
        text += "    gl_Position.z += vell_LineOffset * gl_Position.w;\n";
    if (!Uses("gl_PointSize"))
        text += "    gl_PointSize = vell_SizeOfPoints;\n";
}

// At the end, for what is discarded earlier may not be relied on by its neighbours' mip levels.
void Writer::WriteFragmentEnd() {
    for (unsigned plane = 0; plane < 6; ++plane)
        if ((variant.clipPlanes >> plane & 1U) != 0)
            text += "    if (vell_Distance" + std::to_string(plane) + " < 0.0) discard;\n";
    if (variant.alphaFunction != 0)
        WriteAlphaTest();
}

void Writer::WriteAlphaTest() {
    const char* const alpha = Uses("gl_FragData") ? "vell_FragData[0].a" : "vell_FragColor.a";
    if (variant.alphaFunction == GL_NEVER) {
        text += "    discard;\n";
        return;
    }
    struct Comparison {
        unsigned function;
        const char* sign;
    };
    constexpr Comparison comparisons[] = {{GL_LESS, "<"},      {GL_EQUAL, "=="},
                                          {GL_LEQUAL, "<="},   {GL_GREATER, ">"},
                                          {GL_NOTEQUAL, "!="}, {GL_GEQUAL, ">="}};
    for (const Comparison& comparison : comparisons)
        if (comparison.function == variant.alphaFunction)
            text += std::string("    if (!(clamp(") + alpha + ", 0.0, 1.0) " + comparison.sign +
                    " vell_AlphaReference)) discard;\n";
}

} // namespace

Interface Together(const Interface& a, const Interface& b) {
    return {.texCoords = std::max(a.texCoords, b.texCoords),
            .frontColor = a.frontColor || b.frontColor,
            .frontSecondaryColor = a.frontSecondaryColor || b.frontSecondaryColor,
            .fogFragCoord = a.fogFragCoord || b.fogFragCoord};
}

Source Parse(Stage stage, std::string_view text) {
    Source source{.stage = stage, .tokens = Tokenize(text), .interface = {}};
    for (std::size_t i = 0; i < source.tokens.size(); ++i)
        if (source.tokens[i].kind == TokenKind::Identifier)
            Note(source, i);
    return source;
}

std::string Translate(const Source& source, const Interface& interface, const Variant& variant) {
    return Writer(source, interface, variant).Write();
}

} // namespace WebGL::Glsl
