#pragma once

#include <array>
#include <bitset>
#include <cstddef>

namespace Art {

/// What the mesh does to be cheap to draw, each step on its own. No flight looks different for
/// any of them; without one the city takes longer to draw, and bench/city says how much.
enum class Step : std::size_t { Hidden, Order, Marks, Curtain, Count };

inline constexpr std::size_t stepCount = static_cast<std::size_t>(Step::Count);

/// A step as one calls it, and in a line what it does.
struct StepRow {
    const char* name;
    const char* what;
};

/// In the order of Step.
inline constexpr std::array<StepRow, stepCount> stepRows = {{
    {"hidden", "leaves out what lies inside others, and details that hardly any flight shows"},
    {"order", "draws what hides others first, a thousand vertices of one texture at a time"},
    {"marks", "tells the material which flights show a surface, so that it drops the others"},
    {"curtain", "keeps the material out of the refraction image, which nobody sees"},
}};

/// The steps that are taken, by their place in stepRows.
using Steps = std::bitset<stepCount>;

inline constexpr Steps allSteps{(1u << stepCount) - 1};

inline bool Takes(const Steps& steps, Step step) {
    return steps[static_cast<std::size_t>(step)];
}

} // namespace Art
