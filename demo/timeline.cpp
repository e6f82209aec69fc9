#include "demo/timeline.h"

#include "demo/show.h"

#include <cmath>
#include <limits>

using Vell::vec3;

namespace Timeline {

namespace {

constexpr double forever = std::numeric_limits<double>::infinity();

struct Span {
    double begin;
    double end;
    Segment segment;
};

constexpr Span During(Show::FlightNumber flight, Segment segment) {
    return {Show::flights[flight].begin, Show::EndOf(flight), segment};
}

// The last one has no end of its own: the demo ends first.
constexpr Span spans[] = {
    During(Show::CityRise, Segment::CityRise),
    During(Show::UnderWater, Segment::FishSchool),
    During(Show::BetweenTowers, Segment::ColourSplit),
    During(Show::Canal, Segment::Glow),
    {Show::flights[Show::ToBasin].begin, forever, Segment::Wisps},
};

constexpr double approachEnd = Show::EndOf(Show::ToBasin);
constexpr double finaleBegin = Show::flights[Show::Basin].begin;

constexpr double fishSpacing = 2.0;
constexpr double fishDrift = -2.0; // units per second along x
constexpr float fishDepth = -50.0f;

// A float like the magnitudes, so that a band of exactly 0.03f counts as loud.
constexpr float quietBand = 0.03f;
constexpr double levelDecay = -3.0; // units per second

/// Eases from `a` at x = 0 to `b` at x = 1 with zero slope at both ends.
float CosInterpolation(float a, float b, float x) {
    const float f = static_cast<float>((1 - std::cos(x * 3.14159265)) * 0.5);
    return a * (1 - f) + b * f;
}

} // namespace

Segment SegmentAt(double t) {
    for (const Span& span : spans)
        if (span.begin < t && t < span.end)
            return span.segment;
    return Segment::Plain;
}

WispView WispViewAt(double t) {
    if (t < approachEnd)
        return WispView::Approach;
    return t > finaleBegin ? WispView::Finale : WispView::Flight;
}

float CityHeight(float t) {
    return CosInterpolation(Show::sunkenHeight, Show::risenHeight,
                            static_cast<float>(t / Show::phrase - 1.0));
}

int FishIndex(int column, int row, int number) {
    return (row * fishColumns + column) * fishPerCell + number;
}

vec3 FishPosition(const vec3& eye, float t, int column, int row) {
    return vec3(static_cast<float>(eye.x + (fishSpacing * column + t * fishDrift)),
                static_cast<float>(eye.y + fishSpacing * row), fishDepth);
}

vec3 RedWispPosition(float t) {
    return vec3(static_cast<float>(std::sin(t * 0.5) * 2.5 + 30.0), 3.0f, 15.0f);
}

vec3 GreenWispPosition(float t) {
    return vec3(25.0f, static_cast<float>(std::sin(static_cast<double>(t)) * 2.5 + 2.5),
                static_cast<float>(std::cos(static_cast<double>(t)) * 2.5 + 15.0));
}

vec3 BlueWispPosition(float t) {
    return vec3(22.0f, 3.0f, static_cast<float>(std::sin(static_cast<double>(t)) * 2.5 + 15.0));
}

float NextLevel(float level, float band, float dt, const Pulse& pulse) {
    const double next = band < quietBand ? pulse.peak : level + dt * levelDecay;
    return static_cast<float>(next < pulse.rest ? pulse.rest : next);
}

float LogoAlpha(float t) {
    return static_cast<float>(1 + t * (-0.1));
}

} // namespace Timeline
