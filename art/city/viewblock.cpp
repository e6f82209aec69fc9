#include "art/city/viewblock.h"

#include "art/city/views.h"

#include <cstdio>
#include <map>
#include <set>

namespace Art {

namespace {

// The longest frame whose overshoot past a flight's end still counts as this flight, seconds.
constexpr float longestFrame = 0.25f;

// How far, in units, an eye may be beside where it is worked out to be. While the city rises a
// flight lags behind demo time by up to a frame, and the city's height does not: it moves by 2.3
// units a second at most.
constexpr float margin = 1.0f;

constexpr int eyesPerFlight = 500;

constexpr const char* blockBegins = "// >>> Generated from demo/show.h by `art/make views`.\n";
constexpr const char* blockEnds = "// <<< End of what is generated.\n";

constexpr const char* viewComment =
    R"(// Which bit of the view marks speaks of the picture seen from here, 0 to 9; -1 away from all
// flights, where everything is drawn. The water mirrors the eye downwards: `over` is turned up
// again, but while the city is low or rises, the mirrored eye is anywhere in its coordinates.
)";

void Include(EyeBox& box, vec3 p) {
    box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
    box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y), std::max(box.high.z, p.z)};
}

/// Under water nothing is mirrored.
bool IsMirrored(const Eye& eye) {
    return eye.position.y > eye.waterHeight;
}

void IncludeEye(EyeBox& box, const Eye& eye) {
    Include(box, eye.position);
    if (IsMirrored(eye) && !box.folded)
        Include(box, {eye.position.x, 2 * eye.waterHeight - eye.position.y, eye.position.z});
}

vec3 Rounded(vec3 p, float (*to)(float)) {
    return {to(p.x * 10) / 10, to(p.y * 10) / 10, to(p.z * 10) / 10};
}

/// A number as GLSL 1.10 wants it, with a point.
std::string Number(float x, int digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", digits, static_cast<double>(x));
    return text;
}

std::string Vector(vec3 p) {
    return "vec3(" + Number(p.x, 1) + ", " + Number(p.y, 1) + ", " + Number(p.z, 1) + ")";
}

std::string BitText(unsigned bit) {
    return std::to_string(bit) + ".0";
}

/// The row of one flight in View.
std::string BoxRow(const Show::Flight& flight, const FlightView& view) {
    const EyeBox box = BoxOf(flight);
    const std::string plain = BitText(view.plain);
    const std::string bit =
        view.plain == view.mirror ? plain : "mirrored ? " + BitText(view.mirror) + " : " + plain;
    return std::string("if (Within(") + (box.folded ? "over" : "eye") + ", " + Vector(box.low) +
           ", " + Vector(box.high) + "))\n        view = " + bit + "; // " + flight.name + "\n";
}

std::string ViewFunction(std::span<const Show::Flight> flights) {
    std::string text = "float View(vec3 eye, bool mirrored)\n{\n"
                       "    vec3 over = vec3(eye.x, abs(eye.y), eye.z);\n"
                       "    float view = -1.0;\n";
    for (std::size_t i = 0; i < flights.size(); ++i)
        text += (i == 0 ? "    " : "    else ") + BoxRow(flights[i], flightViews[i]);
    return text + "    return view;\n}\n";
}

std::map<unsigned, float> ExposuresOfBits() {
    std::map<unsigned, float> exposures;
    for (const FlightView& view : flightViews)
        exposures[view.plain] = exposures[view.mirror] = view.exposure;
    return exposures;
}

/// Whether a view is one of those with this exposure.
std::string IsExposedSo(const std::map<unsigned, float>& exposures, float wanted) {
    std::string condition;
    for (const auto& [bit, exposure] : exposures)
        if (exposure == wanted)
            condition += (condition.empty() ? "view == " : " || view == ") + BitText(bit);
    return condition;
}

std::string ExposureFunction() {
    std::string text = "float Exposure(float view)\n{\n    float exposure = 1.0;\n";
    const char* start = "    if (";
    const std::map<unsigned, float> exposures = ExposuresOfBits();
    std::set<float> said{1.0f};
    for (const auto& [bit, exposure] : exposures)
        if (said.insert(exposure).second) {
            text += start + IsExposedSo(exposures, exposure) +
                    ")\n        exposure = " + Number(exposure, 2) + ";\n";
            start = "    else if (";
        }
    return text + "    return exposure;\n}\n";
}

} // namespace

EyeBox BoxOf(const Show::Flight& flight) {
    constexpr float beyondAll = 1e9f;
    EyeBox box{{beyondAll, beyondAll, beyondAll},
               {-beyondAll, -beyondAll, -beyondAll},
               flight.city == Show::City::Risen && flight.start.y > 0 && flight.end.y > 0};
    const float last = 1 + longestFrame / flight.duration;
    for (int i = 0; i <= eyesPerFlight; ++i)
        IncludeEye(box, EyeAt(flight, last * static_cast<float>(i) / eyesPerFlight));
    constexpr vec3 wider{margin, margin, margin};
    return {Rounded(box.low - wider, std::floor), Rounded(box.high + wider, std::ceil), box.folded};
}

std::string ViewFunctions(std::span<const Show::Flight> flights) {
    return std::string(viewComment) + ViewFunction(flights) +
           "\n// How far the camera's iris is open in the picture of this bit.\n" +
           ExposureFunction();
}

std::optional<std::string> WithViewFunctions(const std::string& shader,
                                             const std::string& functions) {
    const std::size_t begin = shader.find(blockBegins);
    const std::size_t end = shader.find(blockEnds);
    if (begin == std::string::npos || end == std::string::npos || end < begin ||
        shader.find(blockBegins, begin + 1) != std::string::npos)
        return std::nullopt;
    return shader.substr(0, begin) + blockBegins + functions + shader.substr(end);
}

} // namespace Art
