#include "tools/passes/passnames.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace Passes {

namespace {

// ------------------------------------------------------------------------------------- programs

/// Words that only one program's texts have, and where these stand.
struct ProgramMark {
    const char* words;
    const char* name;
};

constexpr char waterProgram[] = "Vell::Water";
constexpr char terrainProgram[] = "Vell::Terrain";
constexpr char shadowProgram[] = "Vell::ShadowMapping, shadow pass";
constexpr char compositeProgram[] = "Vell::ShadowMapping, composite";
constexpr char brightProgram[] = "Vell::PostBloom";
constexpr char blurProgram[] = "Vell::PostBlur";
constexpr char splitProgram[] = "PostRGB";
constexpr char rippleProgram[] = "PostWater";

constexpr ProgramMark marks[] = {
    {"reflectionMap", waterProgram}, {"heightmap", terrainProgram},
    {"lightbuffer", shadowProgram},  {"shadow * intensity", compositeProgram},
    {"threshold", brightProgram},    {"sum / 9.0", blurProgram},
    {"st - shift", splitProgram},    {"cos(st.x", rippleProgram},
};

std::string TextOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string FileOf(const std::string& text, const std::vector<std::string>& files) {
    for (const std::string& file : files)
        if (TextOf(file) == text)
            return file;
    return "";
}

/// "shader.vert and .frag" when they differ by their endings only.
std::string BothFiles(const std::string& vertex, const std::string& fragment) {
    const std::size_t dot = fragment.rfind('.');
    const bool alike =
        dot != std::string::npos && vertex.substr(0, vertex.rfind('.')) == fragment.substr(0, dot);
    return vertex + " and " + (alike ? fragment.substr(dot) : fragment);
}

// --------------------------------------------------------------------------------------- passes

bool Has(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool HasSize(const PassFacts& facts, int size) {
    return facts.width == size && facts.height == size;
}

/// Without a program, one drawing or more, into a texture.
bool IsCopy(const PassFacts& facts) {
    return !facts.screen && facts.programs == std::vector<std::string>{"fixed pipeline"};
}

bool Follows(const PassFacts& facts, const std::string& beginning) {
    return !facts.before.empty() && facts.before.back().starts_with(beginning);
}

constexpr int waterTarget = 512;        // side, in pixels
constexpr char counted[] = "blur step"; // there is never only one

struct NameRule {
    const char* name;
    bool (*fits)(const PassFacts& facts);
};

// The order counts: the first that fits.
const NameRule nameRules[] = {
    {"light depth", [](const PassFacts& facts) { return facts.colourOff; }},
    {"shadow", [](const PassFacts& facts) { return Has(facts.programs, shadowProgram); }},
    {"reflection",
     [](const PassFacts& facts) {
         return HasSize(facts, waterTarget) && !Has(facts.before, "reflection");
     }},
    {"refraction", [](const PassFacts& facts) { return HasSize(facts, waterTarget); }},
    {"scene", [](const PassFacts& facts) { return !facts.screen && facts.depthTested; }},
    {"bright parts", [](const PassFacts& facts) { return Has(facts.programs, brightProgram); }},
    {counted, [](const PassFacts& facts) { return Has(facts.programs, blurProgram); }},
    {"blur, shrunk",
     [](const PassFacts& facts) { return IsCopy(facts) && facts.width < facts.screenWidth; }},
    {"glow", [](const PassFacts& facts) { return IsCopy(facts) && Follows(facts, "blur"); }},
    {"bloom", [](const PassFacts& facts) { return IsCopy(facts) && facts.blended; }},
    {"colour split", [](const PassFacts& facts) { return Has(facts.programs, splitProgram); }},
    {"ripple", [](const PassFacts& facts) { return Has(facts.programs, rippleProgram); }},
    {"ripple, off",
     [](const PassFacts& facts) { return IsCopy(facts) && Follows(facts, "colour split"); }},
    {"logo", [](const PassFacts& facts) { return facts.screen && facts.blended; }},
    {"screen", [](const PassFacts& facts) { return facts.screen; }},
};

std::string Unique(const std::string& name, const std::vector<std::string>& before) {
    if (name != counted && !Has(before, name))
        return name;
    int number = name == counted ? 1 : 2;
    while (Has(before, name + " " + std::to_string(number)))
        ++number;
    return name + " " + std::to_string(number);
}

/// What a target is called after the pass that drew into it first.
struct TargetRule {
    const char* pass;
    const char* target;
};

constexpr TargetRule targetRules[] = {
    {"light depth", "light buffer"},
    {"shadow", "shadow buffer"},
    {"reflection", "reflection target"},
    {"refraction", "refraction target"},
    {"scene", "scene target"},
    {"bright parts", "spare target"},
    {"colour split", "spare target"},
    {"blur, shrunk", "first blur target"},
    {"blur step 1", "second blur target"},
    {"glow", "glow target"},
};

} // namespace

std::string NameOfPass(const PassFacts& facts) {
    for (const NameRule& rule : nameRules)
        if (rule.fits(facts))
            return Unique(rule.name, facts.before);
    return "pass " + std::to_string(facts.before.size() + 1);
}

std::string TargetNamedBy(const std::string& pass) {
    for (const TargetRule& rule : targetRules)
        if (pass == rule.pass)
            return rule.target;
    return "";
}

std::string NameOfProgram(const std::string& vertexText, const std::string& fragmentText,
                          const std::vector<std::string>& textFiles) {
    const std::string vertexFile = FileOf(vertexText, textFiles);
    const std::string fragmentFile = FileOf(fragmentText, textFiles);
    if (!vertexFile.empty() && !fragmentFile.empty())
        return BothFiles(vertexFile, fragmentFile);
    for (const ProgramMark& mark : marks)
        if (fragmentText.find(mark.words) != std::string::npos)
            return mark.name;
    return "program";
}

} // namespace Passes
