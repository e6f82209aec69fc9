#include "tools/explain/shots.h"

#include "tools/explain/html.h"
#include "tools/explain/picture.h"

#include <algorithm>
#include <cmath>

namespace Explain {

namespace {

// A pass's picture on the page, at most, in pixels: the show's own at half its size.
constexpr int mostWidth = 480;
constexpr int mostHeight = 172;
constexpr int smallHeight = 24;
constexpr int smallWidth = 130;

Picture Thumbnail(const Picture& picture) {
    const int factor = FactorFor(picture.width, picture.height, mostWidth, mostHeight);
    return Rounded(Shrunk(picture, factor));
}

std::string Scale(const Passes::Pass& pass) {
    const int factor = FactorFor(pass.width, pass.height, mostWidth, mostHeight);
    return factor == 1 ? "pixel by pixel" : "at 1 : " + std::to_string(factor);
}

std::string Percent(double share) {
    return Number(std::round(share * 1000.0) / 10.0) + " %";
}

std::string Short(double distance) {
    return Number(std::round(distance * 10.0) / 10.0);
}

} // namespace

Shots::Shots(const FrameRecord& shown) : record(shown) {
    for (const Passes::Pass& pass : record.passes) {
        colours.push_back(Add(Thumbnail(FromPixels(pass.pixels, pass.width, pass.height))));
        const DepthRange range = RangeOf(pass);
        depths.push_back(range.farthest > 0.0 ? Add(Thumbnail(DepthPicture(pass, range))) : Shot());
    }
    for (const auto& [texture, picture] : record.textures)
        textures[texture] = Add(Rounded(picture));
    const Passes::Pass& last = record.passes.back();
    final = Add(FromPixels(last.pixels, last.width, last.height));
}

Shots::Shot Shots::Add(const Picture& picture) {
    const std::string uri = DataUri(picture);
    std::string& kind = kinds[uri];
    if (kind.empty()) {
        kind.append("i").append(std::to_string(kinds.size()));
        style += "." + kind + " { background-image: url(" + uri + "); }\n";
    }
    return {kind, picture.width, picture.height};
}

std::string Shots::Show(const Shot& shot, const std::string& words) const {
    return Element("span", "",
                   "class=\"pic " + shot.kind + "\" role=\"img\" aria-label=\"" + Escape(words) +
                       "\" style=\"width: " + std::to_string(shot.width) +
                       "px; height: " + std::to_string(shot.height) + "px\"");
}

std::string Shots::ShowSmall(const Shot& shot, const std::string& words) const {
    if (shot.kind.empty())
        return "";
    Shot small = shot;
    small.height = std::min(smallHeight, shot.height);
    small.width = shot.width * small.height / shot.height;
    if (small.width > smallWidth) {
        small.width = smallWidth;
        small.height = std::max(1, shot.height * smallWidth / shot.width);
    }
    return Show(small, words);
}

std::string Shots::Figure(const Shot& shot, const std::string& caption) const {
    return Element("figure", Show(shot, caption) + Element("figcaption", Escape(caption))) + "\n";
}

std::string Shots::Final() const {
    return Element("div", Show(final, "the finished picture"), "class=\"wide\"") + "\n";
}

std::string Shots::PassFigures(std::size_t index) const {
    const Passes::Pass& pass = record.passes[index];
    std::string figures = Figure(colours[index], "Colour it left, " + Scale(pass) + ".");
    if (!depths[index].kind.empty())
        figures += DepthFigure(index);
    return Element("div", "\n" + figures, "class=\"shots\"") + "\n";
}

std::string Shots::DepthFigure(std::size_t index) const {
    const DepthRange range = RangeOf(record.passes[index]);
    return Figure(depths[index], "Depth it left: white at " + Short(range.nearest) +
                                     " units from the eye, darkest at " + Short(range.farthest) +
                                     ", by the logarithm; blue is untouched (" +
                                     Percent(range.untouched) + ").");
}

std::string Shots::SmallPass(std::size_t pass) const {
    return ShowSmall(colours[pass], "what pass " + std::to_string(pass + 1) + " left");
}

std::string Shots::SmallInput(const Passes::Input& input) const {
    if (input.pass >= 0) {
        const std::size_t pass = static_cast<std::size_t>(input.pass);
        const bool depth = input.texture == record.passes[pass].depthTexture;
        return ShowSmall(depth ? depths[pass] : colours[pass], input.name);
    }
    const auto texture = textures.find(input.texture);
    return texture == textures.end() ? "" : ShowSmall(texture->second, input.name);
}

} // namespace Explain
