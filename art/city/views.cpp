#include "art/city/views.h"

#include "art/city/flights.h"
#include "art/city/sightlines.h"
#include "art/common/noise.h"
#include "art/common/progress.h"

namespace Art {

namespace {

// A ray through every pixel of the picture ...
constexpr int kAcross = 960;
constexpr int kUp = 89;
// ... from this many eyes of each flight.
constexpr int kEyesPerFlight = 56;

// How far the waves bend the mirror image, in half pictures.
constexpr float kBend = 0.04f;

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
int First(const SightLines& lines, const Eye& eye, Vec3 direction, float reach) {
    int first = -1;
    lines.Follow(eye.position, direction, reach, Keep(first));
    return first;
}

/// What the water shows in this direction: from above the world turned over, from below what
/// stands beyond.
int Mirrored(const SightLines& lines, const Eye& eye, Vec3 direction) {
    if (IsBelow(eye))
        return First(lines, eye, direction, SightLines::kFar);
    const float way = SightLines::ToWater(eye, direction);
    int first = -1;
    if (way < SightLines::kFar)
        lines.FollowMirrored(eye, direction, way, Keep(first));
    return first;
}

using Views = std::vector<unsigned>;

void NoteRay(const SightLines& lines, const Eye& eye, ViewBits bits, Vec2 at, Random& random,
             Views& views) {
    const Vec3 direction = RayThrough(eye, at.x, at.y);
    const float toWater = SightLines::ToWater(eye, direction);
    const bool below = IsBelow(eye);
    const int plain = First(lines, eye, direction, below ? SightLines::kFar : toWater);
    if (plain >= 0)
        views[plain] |= 1u << bits.plain;
    if (toWater >= SightLines::kFar || (plain >= 0 && !below))
        return;
    const float x = at.x + random.Range(-kBend, kBend);
    const float y = at.y + random.Range(-kBend, kBend);
    const int mirrored = Mirrored(lines, eye, RayThrough(eye, x, y));
    if (mirrored >= 0)
        views[mirrored] |= 1u << bits.mirror;
}

Views ViewsOfEye(const SightLines& lines, const Eye& eye, ViewBits bits, unsigned seed,
                 size_t surfaces) {
    Views views(surfaces);
    Random random(seed);
    for (int i = 0; i < kAcross * kUp; ++i) {
        const int row = i / kAcross;
        const float x = (static_cast<float>(i % kAcross) + random.Unit()) / kAcross * 2 - 1;
        const float y = (static_cast<float>(row) + random.Unit()) / kUp * 2 - 1;
        NoteRay(lines, eye, bits, {x, y}, random, views);
    }
    return views;
}

} // namespace

const std::vector<ViewBits>& BitsOfFlights() {
    // The water is hardly in the fourth flight's sight, so what it shows there shares a bit.
    static const std::vector<ViewBits> bits = {
        {0, 6}, {0, 6}, {1, 1}, {2, 6}, {3, 7}, {4, 8}, {5, 9}, {5, 9},
    };
    return bits;
}

std::vector<unsigned> MeasureViews(const std::vector<Surface>& surfaces) {
    const SightLines lines(surfaces);
    const int eyes = static_cast<int>(Flights().size()) * kEyesPerFlight;
    std::vector<Views> ofEyes(static_cast<size_t>(eyes));
    Progress progress("what each flight shows", eyes);
    ForEachIndex(eyes, 0, [&](int i) {
        const auto flight = static_cast<size_t>(i / kEyesPerFlight);
        // The first and the last eye are those of the flight's ends.
        const float t = static_cast<float>(i % kEyesPerFlight) / (kEyesPerFlight - 1);
        ofEyes[static_cast<size_t>(i)] =
            ViewsOfEye(lines, EyeAt(Flights()[flight], t), BitsOfFlights()[flight],
                       static_cast<unsigned>(i), surfaces.size());
        progress.Add(1);
    });
    Views all(surfaces.size());
    for (const Views& views : ofEyes)
        for (size_t s = 0; s < all.size(); ++s)
            all[s] |= views[s];
    return all;
}

} // namespace Art
