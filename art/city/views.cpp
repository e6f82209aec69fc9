#include "art/city/views.h"

#include "art/city/flights.h"
#include "art/city/ordering.h"
#include "art/common/noise.h"
#include "art/common/progress.h"
#include "art/lightmap/raytracer.h"

namespace Art {

namespace {

// A ray through every pixel of the picture ...
constexpr int kAcross = 960;
constexpr int kUp = 89;
// ... from this many eyes of each flight.
constexpr int kEyesPerFlight = 56;

constexpr float kFar = 1000;

// How far the waves bend the mirror image, in half pictures.
constexpr float kBend = 0.04f;

struct Viewer {
    const RayTracer& rays;
    const std::vector<Vec3>& corners;
    const std::vector<int>& owner;

    /// The first surface that faces the ray, or -1.
    int First(Vec3 from, Vec3 direction, float reach) const {
        constexpr float kStep = 0.002f;
        float way = 0;
        Hit hit;
        while (rays.Closest(from + direction * way, direction, reach - way, hit)) {
            const Vec3* c = &corners[static_cast<size_t>(hit.triangle) * 3];
            if (Dot(Cross(c[1] - c[0], c[2] - c[0]), direction) < 0)
                return owner[hit.triangle];
            way += hit.distance + kStep;
        }
        return -1;
    }

    /// Way along the ray to the water, or kFar.
    static float ToWater(const Eye& eye, Vec3 direction) {
        const float height = eye.position.y - eye.waterHeight;
        return height * direction.y < 0 ? -height / direction.y : kFar;
    }

    /// What the water shows in this direction: from above the world turned over, from below
    /// what stands beyond.
    int Mirrored(const Eye& eye, Vec3 direction) const {
        if (eye.position.y < eye.waterHeight)
            return First(eye.position, direction, kFar);
        const float way = ToWater(eye, direction);
        if (way >= kFar)
            return -1;
        const Vec3 point = eye.position + direction * way + Vec3{0, 0.001f, 0};
        return First(point, {direction.x, -direction.y, direction.z}, kFar);
    }
};

using Views = std::vector<unsigned>;

void NoteRay(const Viewer& viewer, const Eye& eye, ViewBits bits, Vec2 at, Random& random,
             Views& views) {
    const Vec3 direction = RayThrough(eye, at.x, at.y);
    const float toWater = Viewer::ToWater(eye, direction);
    const bool below = eye.position.y < eye.waterHeight;
    const int plain = viewer.First(eye.position, direction, below ? kFar : toWater);
    if (plain >= 0)
        views[plain] |= 1u << bits.plain;
    if (toWater >= kFar || (plain >= 0 && !below))
        return;
    const float x = at.x + random.Range(-kBend, kBend);
    const float y = at.y + random.Range(-kBend, kBend);
    const int mirrored = viewer.Mirrored(eye, RayThrough(eye, x, y));
    if (mirrored >= 0)
        views[mirrored] |= 1u << bits.mirror;
}

Views ViewsOfEye(const Viewer& viewer, const Eye& eye, ViewBits bits, unsigned seed,
                 size_t surfaces) {
    Views views(surfaces);
    Random random(seed);
    for (int i = 0; i < kAcross * kUp; ++i) {
        const int row = i / kAcross;
        const float x = (static_cast<float>(i % kAcross) + random.Unit()) / kAcross * 2 - 1;
        const float y = (static_cast<float>(row) + random.Unit()) / kUp * 2 - 1;
        NoteRay(viewer, eye, bits, {x, y}, random, views);
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
    std::vector<int> owner;
    const std::vector<Vec3> corners = Corners(surfaces, owner);
    const RayTracer rays(corners);
    const Viewer viewer{rays, corners, owner};
    const int eyes = static_cast<int>(Flights().size()) * kEyesPerFlight;
    std::vector<Views> ofEyes(static_cast<size_t>(eyes));
    Progress progress("what each flight shows", eyes);
    ForEachIndex(eyes, 0, [&](int i) {
        const auto flight = static_cast<size_t>(i / kEyesPerFlight);
        // The first and the last eye are those of the flight's ends.
        const float t = static_cast<float>(i % kEyesPerFlight) / (kEyesPerFlight - 1);
        ofEyes[static_cast<size_t>(i)] =
            ViewsOfEye(viewer, EyeAt(Flights()[flight], t), BitsOfFlights()[flight],
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
