#include "art/city/ordering.h"

#include "art/city/flights.h"
#include "art/common/noise.h"
#include "art/common/progress.h"
#include "art/lightmap/raytracer.h"

namespace Art {

namespace {

constexpr float kFar = 1000;
// How far off its surface a ray starts.
constexpr float kLift = 0.004f;

Vec3 TriangleNormal(const std::vector<Vec3>& corners, int triangle) {
    const Vec3* c = &corners[static_cast<size_t>(triangle) * 3];
    return Cross(c[1] - c[0], c[2] - c[0]);
}

/// A point inside a random triangle of the polygons.
Vec3 PointOn(const Surface& surface, Random& random) {
    const auto& polygon =
        surface.polygons[random.Int(0, static_cast<int>(surface.polygons.size()) - 1)];
    const int i = random.Int(1, static_cast<int>(polygon.size()) - 2);
    float a = random.Unit();
    float c = random.Unit();
    if (a + c > 1) {
        a = 1 - a;
        c = 1 - c;
    }
    const Vec2 p = polygon[0] + (polygon[i] - polygon[0]) * a + (polygon[i + 1] - polygon[0]) * c;
    return surface.World(p) + surface.Normal() * kLift;
}

Vec3 DirectionOver(Vec3 normal, Random& random) {
    const float z = random.Range(-1, 1);
    const float angle = random.Range(0, 2 * kPi);
    const float ring = std::sqrt(1 - z * z);
    const Vec3 sphere{ring * std::cos(angle), ring * std::sin(angle), z};
    return Normalize(sphere + normal * 1.01f);
}

bool IsOpen(const Surface& surface, const RayTracer& rays, const std::vector<Vec3>& corners,
            Random& random) {
    constexpr int kTries = 160;
    for (int i = 0; i < kTries; ++i) {
        const Vec3 point = PointOn(surface, random);
        const Vec3 direction = DirectionOver(surface.Normal(), random);
        Hit hit;
        if (!rays.Closest(point, direction, kFar, hit))
            return true;
        if (Dot(TriangleNormal(corners, hit.triangle), direction) < 0 && hit.distance > 0.02f)
            return true;
    }
    return false;
}

} // namespace

std::vector<Vec3> Corners(const std::vector<Surface>& surfaces, std::vector<int>& owner) {
    std::vector<Vec3> corners;
    owner.clear();
    for (size_t s = 0; s < surfaces.size(); ++s) {
        for (const auto& polygon : surfaces[s].polygons) {
            for (size_t i = 2; i < polygon.size(); ++i) {
                for (const Vec2 p : {polygon[0], polygon[i - 1], polygon[i]})
                    corners.push_back(surfaces[s].World(p));
                owner.push_back(static_cast<int>(s));
            }
        }
    }
    return corners;
}

std::vector<bool> FindOpenSurfaces(const std::vector<Surface>& surfaces) {
    std::vector<int> owner;
    const std::vector<Vec3> corners = Corners(surfaces, owner);
    const RayTracer rays(corners);
    std::vector<bool> open(surfaces.size());
    for (size_t i = 0; i < surfaces.size(); ++i) {
        Random random(static_cast<unsigned>(i));
        open[i] = IsOpen(surfaces[i], rays, corners, random);
    }
    return open;
}

namespace {

constexpr int kAcross = 480;
constexpr int kUp = 45;
constexpr int kEyesPerFlight = 48;

struct Crossing {
    int surface;
    float way;
};

/// The surfaces that face the eye along a ray, near first, at most this many.
constexpr size_t kDeepest = 10;

struct Tracer {
    const RayTracer& rays;
    const std::vector<Vec3>& corners;
    const std::vector<int>& owner;

    void Collect(Vec3 from, Vec3 direction, float reach, float start,
                 std::vector<Crossing>& found) const {
        constexpr float kStep = 0.002f;
        float way = 0;
        Hit hit;
        while (found.size() < kDeepest &&
               rays.Closest(from + direction * way, direction, reach - way, hit)) {
            way += hit.distance + kStep;
            const int surface = owner[hit.triangle];
            const bool faces = Dot(TriangleNormal(corners, hit.triangle), direction) < 0;
            if (faces && (found.empty() || found.back().surface != surface))
                found.push_back({surface, start + way});
        }
    }

    /// What lies along a picture ray; the mirror image in the water is another picture, so
    /// it comes as a list of its own.
    void Follow(const Eye& eye, Vec3 direction, std::vector<Crossing>& seen,
                std::vector<Crossing>& mirrored) const {
        seen.clear();
        mirrored.clear();
        const float height = eye.position.y - eye.waterHeight;
        const bool meetsWater = height > 0 && direction.y < 0;
        const float toWater = meetsWater ? height / -direction.y : kFar;
        Collect(eye.position, direction, toWater, 0, seen);
        if (!meetsWater)
            return;
        const Vec3 point = eye.position + direction * toWater + Vec3{0, 0.001f, 0};
        Collect(point, {direction.x, -direction.y, direction.z}, kFar, toWater, mirrored);
    }
};

/// Notes what is first on a ray (when nothing else is before the water) and who hides whom.
void NoteRay(const std::vector<Crossing>& crossings, bool first, std::vector<Sight>& sights) {
    for (size_t i = 0; i < crossings.size(); ++i) {
        Sight& sight = sights[crossings[i].surface];
        if (i == 0 && first) {
            sight.rays += 1;
            sight.distance += crossings[i].way;
        }
        sight.behind += static_cast<float>(i);
        sight.before += static_cast<float>(crossings.size() - 1 - i);
    }
}

Vec3 Middle(const Surface& surface) {
    Vec2 low{1e9f, 1e9f};
    Vec2 high{-1e9f, -1e9f};
    for (const auto& polygon : surface.polygons)
        for (const Vec2 p : polygon) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    return surface.World((low + high) * 0.5f);
}

void NoteNearest(const Eye& eye, const std::vector<Surface>& surfaces, std::vector<Sight>& sights) {
    for (size_t i = 0; i < surfaces.size(); ++i) {
        const Vec3 middle = Middle(surfaces[i]);
        // Across the water's surface nothing is seen closely.
        const bool apart = (middle.y < -0.05f) != (eye.position.y < 0);
        const float distance = Length(middle - eye.position) * (apart ? 6.0f : 1.0f);
        sights[i].nearest = std::min(sights[i].nearest, distance);
    }
}

} // namespace

std::vector<Sight> MeasureSights(const std::vector<Surface>& surfaces) {
    std::vector<int> owner;
    const std::vector<Vec3> corners = Corners(surfaces, owner);
    const RayTracer rays(corners);
    const Tracer tracer{rays, corners, owner};
    std::vector<Crossing> seen;
    std::vector<Crossing> mirrored;
    std::vector<Sight> sights(surfaces.size());
    Progress progress("what the flights see", static_cast<int>(Flights().size()) * kEyesPerFlight);
    unsigned pixel = 0;
    for (const Flight& flight : Flights()) {
        for (int e = 0; e < kEyesPerFlight; ++e) {
            const Eye eye = EyeAt(flight, (static_cast<float>(e) + 0.5f) / kEyesPerFlight);
            NoteNearest(eye, surfaces, sights);
            for (int i = 0; i < kAcross * kUp; ++i) {
                // Anywhere in the cell, so that from eye to eye the rays fall between each other.
                const float dx = HashUnit(++pixel, 1);
                const float dy = HashUnit(pixel, 2);
                const int row = i / kAcross;
                const float x = (static_cast<float>(i % kAcross) + dx) / kAcross * 2 - 1;
                const float y = (static_cast<float>(row) + dy) / kUp * 2 - 1;
                tracer.Follow(eye, RayThrough(eye, x, y), seen, mirrored);
                NoteRay(seen, true, sights);
                NoteRay(mirrored, seen.empty(), sights);
            }
            progress.Add(1);
        }
    }
    for (Sight& sight : sights)
        sight.distance = sight.rays > 0 ? sight.distance / sight.rays : kFar;
    return sights;
}

} // namespace Art
