#include "art/city/views.h"

#include "art/city/flights.h"
#include "art/city/sightlines.h"
#include "art/common/noise.h"
#include "art/common/parallel.h"
#include "tools/progress/progress.h"

namespace Art {

namespace {

// A ray through every pixel of the picture ...
constexpr int raysAcross = Show::width;
constexpr int raysUp = Show::height;
// ... from this many eyes of each flight.
constexpr int eyesPerFlight = 56;

// More pixels of a picture than this are no mere speck.
constexpr unsigned char speck = 5;

// How far the waves bend the mirror image, in half pictures.
constexpr float waveBend = 0.04f;

bool IsBelow(const Eye& eye) {
    return eye.position.y < eye.waterHeight;
}

/// Keeps the first surface that is met.
auto Keep(int& first) {
    return [&first](int surface, float) {
        first = surface;
        return false;
    };
}

/// The first surface that faces the eye's ray, or -1.
int First(const SightLines& lines, const Eye& eye, vec3 direction, float reach) {
    int first = -1;
    lines.Follow(eye.position, direction, reach, Keep(first));
    return first;
}

/// What the water shows in this direction: from above the world turned over, from below what
/// stands beyond.
int Mirrored(const SightLines& lines, const Eye& eye, vec3 direction) {
    if (IsBelow(eye))
        return First(lines, eye, direction, SightLines::sightEnd);
    const float distance = SightLines::ToWater(eye, direction);
    int first = -1;
    if (distance < SightLines::sightEnd)
        lines.FollowMirrored(eye, direction, distance, Keep(first));
    return first;
}

using Views = std::vector<unsigned>;

/// Of one eye: what its pictures show, and in how many pixels, as far as that matters.
struct Seen {
    explicit Seen(std::size_t surfaces) : views(surfaces), pixels(surfaces) {}

    void Note(int surface, unsigned bit) {
        const auto s = static_cast<std::size_t>(surface);
        views[s] |= 1u << bit;
        if (++pixels[s] > speck) {
            views[s] |= shownLarge;
            pixels[s] = speck;
        }
    }

    Views views;
    std::vector<unsigned char> pixels;
};

void NoteRay(const SightLines& lines, const Eye& eye, const FlightView& view, vec2 at,
             Random& random, Seen& seen) {
    const vec3 direction = RayThrough(eye, at.x, at.y);
    const float toWater = SightLines::ToWater(eye, direction);
    const bool below = IsBelow(eye);
    const int plain = First(lines, eye, direction, below ? SightLines::sightEnd : toWater);
    if (plain >= 0)
        seen.Note(plain, view.plain);
    if (toWater >= SightLines::sightEnd || (plain >= 0 && !below))
        return;
    const float x = at.x + random.Range(-waveBend, waveBend);
    const float y = at.y + random.Range(-waveBend, waveBend);
    const int mirrored = Mirrored(lines, eye, RayThrough(eye, x, y));
    if (mirrored >= 0)
        seen.Note(mirrored, view.mirror);
}

Views ViewsOfEye(const SightLines& lines, const Eye& eye, const FlightView& view, unsigned seed,
                 std::size_t surfaces) {
    Seen seen(surfaces);
    Random random(seed);
    for (int i = 0; i < raysAcross * raysUp; ++i) {
        const int row = i / raysAcross;
        const float x = (static_cast<float>(i % raysAcross) + random.Unit()) / raysAcross * 2 - 1;
        const float y = (static_cast<float>(row) + random.Unit()) / raysUp * 2 - 1;
        NoteRay(lines, eye, view, {x, y}, random, seen);
    }
    return seen.views;
}

} // namespace

// Under water most of the light is lost in the end, when the ripple mixes its blue over the
// picture. Along the canal the picture beats up to twice its brightness, and walls should stay
// dark then.
const std::array<FlightView, Show::flightCount> flightViews = {{
    {0, 6, 1.0f},  // out over the open sea
    {0, 6, 1.0f},  // away from the rising city
    {1, 1, 1.55f}, // under water
    {2, 6, 1.0f},  // between the towers: hardly any water in sight, so its mirror shares a bit
    {3, 7, 0.70f}, // low along the canal
    {4, 8, 1.0f},  // towards the basin
    {5, 9, 1.18f}, // over the roofs
    {5, 9, 1.18f}, // along the basin's edge
}};

std::vector<unsigned> MeasureViews(const std::vector<Surface>& surfaces) {
    const SightLines lines(surfaces);
    const int eyes = static_cast<int>(Show::flightCount) * eyesPerFlight;
    std::vector<Views> ofEyes(static_cast<std::size_t>(eyes));
    Tools::Progress progress("views along the flights, for the marks", eyes);
    ForEachIndex(eyes, 0, [&](int i) {
        const auto flight = static_cast<std::size_t>(i / eyesPerFlight);
        // The first and the last eye are those of the flight's ends.
        const float t = static_cast<float>(i % eyesPerFlight) / (eyesPerFlight - 1);
        ofEyes[static_cast<std::size_t>(i)] =
            ViewsOfEye(lines, EyeAt(Show::flights[flight], t), flightViews[flight],
                       static_cast<unsigned>(i), surfaces.size());
        progress.Add();
    });
    Views all(surfaces.size());
    for (const Views& views : ofEyes)
        for (std::size_t s = 0; s < all.size(); ++s)
            all[s] |= views[s];
    return all;
}

} // namespace Art
