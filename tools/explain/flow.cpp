#include "tools/explain/flow.h"

#include "tools/explain/html.h"

#include <algorithm>

namespace Explain {

namespace {

// In the drawing's own units.
constexpr int labels = 150; // width
constexpr int heads = 92;   // height
constexpr int columnWidth = 42;
constexpr int laneHeight = 30;

using Names = std::vector<std::string>;

/// Targets in the order in which they are written first.
Names LanesOf(const std::vector<Passes::Pass>& passes) {
    Names lanes;
    for (const Passes::Pass& pass : passes)
        if (std::find(lanes.begin(), lanes.end(), pass.target) == lanes.end())
            lanes.push_back(pass.target);
    return lanes;
}

int ColumnX(std::size_t pass) {
    return labels + static_cast<int>(pass) * columnWidth + columnWidth / 2;
}

int LaneY(const Names& lanes, const std::string& target) {
    const auto lane = std::find(lanes.begin(), lanes.end(), target) - lanes.begin();
    return heads + static_cast<int>(lane) * laneHeight + laneHeight / 2;
}

std::string Attribute(const std::string& name, int value) {
    return name + "=\"" + std::to_string(value) + "\" ";
}

std::string Line(const std::string& kind, int x1, int y1, int x2, int y2) {
    return Element("line", "",
                   Attribute("x1", x1) + Attribute("y1", y1) + Attribute("x2", x2) +
                       Attribute("y2", y2) + "class=\"" + kind + "\"") +
           "\n";
}

std::string Circle(const std::string& kind, int x, int y, int radius) {
    return Element("circle", "",
                   Attribute("cx", x) + Attribute("cy", y) + Attribute("r", radius) + "class=\"" +
                       kind + "\"") +
           "\n";
}

std::string LaneLine(const Passes::Pass& pass, const Names& lanes, std::size_t columns) {
    const int y = LaneY(lanes, pass.target);
    const std::string size = std::to_string(pass.width) + " × " + std::to_string(pass.height);
    return Line("lane", labels, y, labels + static_cast<int>(columns) * columnWidth, y) +
           Element("text", Escape(pass.target) + " " + Element("tspan", size, "opacity=\"0.6\""),
                   Attribute("x", 0) + Attribute("y", y + 4) + "font-size=\"10\"") +
           "\n";
}

std::string Head(const Passes::Pass& pass, std::size_t index) {
    const std::string place = "transform=\"translate(" + std::to_string(ColumnX(index) + 3) + " " +
                              std::to_string(heads - 6) + ") rotate(-50)\"";
    return LinkTo("pass-" + std::to_string(index + 1),
                  Element("text", std::to_string(index + 1) + " " + Escape(pass.name), place)) +
           "\n";
}

/// Bars from what pass `index` reads to here; a target's bars lie over each other.
std::string Lives(const std::vector<Passes::Pass>& passes, const Names& lanes, std::size_t index) {
    std::string drawn;
    for (const Passes::Input& input : passes[index].inputs)
        if (input.pass >= 0) {
            const int y = LaneY(lanes, passes[static_cast<std::size_t>(input.pass)].target);
            drawn +=
                Line("life", ColumnX(static_cast<std::size_t>(input.pass)), y, ColumnX(index), y);
        }
    return drawn;
}

std::string ReadsAndWrite(const std::vector<Passes::Pass>& passes, const Names& lanes,
                          std::size_t index) {
    const int x = ColumnX(index);
    const int written = LaneY(lanes, passes[index].target);
    std::string lines;
    std::string marks;
    for (const Passes::Input& input : passes[index].inputs)
        if (input.pass >= 0) {
            const int y = LaneY(lanes, passes[static_cast<std::size_t>(input.pass)].target);
            lines += Line("read", x, y, x, written);
            marks += Circle("ring", x, y, 4);
        }
    return lines + marks + Circle("dot", x, written, 5);
}

} // namespace

std::string FlowDiagram(const std::vector<Passes::Pass>& passes) {
    const Names lanes = LanesOf(passes);
    std::string drawn;
    for (const std::string& lane : lanes)
        drawn +=
            LaneLine(*std::find_if(passes.begin(), passes.end(),
                                   [&](const Passes::Pass& pass) { return pass.target == lane; }),
                     lanes, passes.size());
    for (std::size_t i = 0; i < passes.size(); ++i)
        drawn += Lives(passes, lanes, i);
    for (std::size_t i = 0; i < passes.size(); ++i)
        drawn += Head(passes[i], i) + ReadsAndWrite(passes, lanes, i);
    const int width =
        labels + static_cast<int>(passes.size()) * columnWidth + 40; // room for the last name
    const int height = heads + static_cast<int>(lanes.size()) * laneHeight;
    return Element("svg", "\n" + drawn,
                   "viewBox=\"0 0 " + std::to_string(width) + " " + std::to_string(height) +
                       "\" role=\"img\" aria-label=\"Which pass writes and reads which target\"");
}

} // namespace Explain
