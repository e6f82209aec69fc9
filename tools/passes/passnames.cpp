#include "tools/passes/passnames.h"

#include <algorithm>
#include <string_view>

namespace Passes {

namespace {

bool Has(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool Always(const PassFacts&) {
    return true;
}

bool TestsDepth(const PassFacts& facts) {
    return facts.depthTested;
}

/// Without a program, one drawing or more, into a texture.
bool IsCopy(const PassFacts& facts) {
    return !facts.screen && facts.programs == std::vector<std::string>{fixedPipeline};
}

bool IsBlendedCopy(const PassFacts& facts) {
    return IsCopy(facts) && facts.blended;
}

/// The step after the colour split copies when it is switched off.
bool IsCopyOfSplit(const PassFacts& facts) {
    return IsCopy(facts) && !facts.before.empty() && facts.before.back() == "colour split";
}

bool IsOverlay(const PassFacts& facts) {
    return facts.screen && facts.blended;
}

bool IsScreen(const PassFacts& facts) {
    return facts.screen;
}

constexpr char any[] = "";
constexpr char counted[] = "blur step"; // there is never only one

struct NameRule {
    const char* name;
    const char* target;  ///< label, or any
    const char* program; ///< label of one that drew, or any
    bool (*fits)(const PassFacts& facts);
};

// The order counts: the first that fits.
constexpr NameRule nameRules[] = {
    {"light depth", "light buffer", any, Always},
    {"shadow", "shadow buffer", any, Always},
    {"reflection", "reflection target", any, Always},
    {"refraction", "refraction target", any, Always},
    {"scene", "scene target", any, TestsDepth},
    {"bright parts", any, "bloom: bright parts", Always},
    {counted, any, "blur", Always},
    {"blur, shrunk", "first blur target", any, IsCopy},
    {"glow", "glow target", any, IsCopy},
    {"bloom", any, any, IsBlendedCopy},
    {"colour split", any, "colour split", Always},
    {"ripple", any, "ripple", Always},
    {"ripple, off", any, any, IsCopyOfSplit},
    {"logo", any, any, IsOverlay},
    {"screen", any, any, IsScreen},
};

bool Fits(const NameRule& rule, const PassFacts& facts) {
    return (rule.target == std::string_view(any) || rule.target == facts.target) &&
           (rule.program == std::string_view(any) || Has(facts.programs, rule.program)) &&
           rule.fits(facts);
}

std::string Unique(const std::string& name, const std::vector<std::string>& before) {
    if (name != counted && !Has(before, name))
        return name;
    int number = name == counted ? 1 : 2;
    while (Has(before, name + " " + std::to_string(number)))
        ++number;
    return name + " " + std::to_string(number);
}

} // namespace

std::string NameOfPass(const PassFacts& facts) {
    for (const NameRule& rule : nameRules)
        if (Fits(rule, facts))
            return Unique(rule.name, facts.before);
    if (!facts.target.empty())
        return Unique(facts.target, facts.before);
    return "pass " + std::to_string(facts.before.size() + 1);
}

} // namespace Passes
