#include "art/city/ordering.h"

#include "art/city/flights.h"
#include "art/city/sightlines.h"
#include "art/common/noise.h"
#include "tools/progress/progress.h"

namespace Art {

namespace {

// How far off its surface a ray starts.
constexpr float liftOff = 0.004f;

/// A point inside a random triangle of the polygons.
vec3 PointOn(const Surface& surface, Random& random) {
    const auto& polygon =
        surface.polygons[random.Int(0, static_cast<int>(surface.polygons.size()) - 1)];
    const int i = random.Int(1, static_cast<int>(polygon.size()) - 2);
    float a = random.Unit();
    float c = random.Unit();
    if (a + c > 1) {
        a = 1 - a;
        c = 1 - c;
    }
    const vec2 p = polygon[0] + (polygon[i] - polygon[0]) * a + (polygon[i + 1] - polygon[0]) * c;
    return surface.World(p) + surface.Normal() * liftOff;
}

vec3 DirectionOver(vec3 normal, Random& random) {
    const float z = random.Range(-1, 1);
    const float angle = random.Range(0, 2 * pi);
    const float ring = std::sqrt(1 - z * z);
    const vec3 sphere{ring * std::cos(angle), ring * std::sin(angle), z};
    return Normalized(sphere + normal * 1.01f);
}

bool IsOpen(const Surface& surface, const SightLines& lines, Random& random) {
    constexpr int tryCount = 160;
    for (int i = 0; i < tryCount; ++i) {
        const vec3 point = PointOn(surface, random);
        const vec3 direction = DirectionOver(surface.Normal(), random);
        Hit hit;
        if (!lines.Closest(point, direction, hit))
            return true;
        if (lines.Faces(hit.triangle, direction) && hit.distance > 0.02f)
            return true;
    }
    return false;
}

} // namespace

std::vector<bool> FindOpenSurfaces(const std::vector<Surface>& surfaces) {
    const SightLines lines(surfaces);
    std::vector<bool> open(surfaces.size());
    for (std::size_t i = 0; i < surfaces.size(); ++i) {
        Random random(static_cast<unsigned>(i));
        open[i] = IsOpen(surfaces[i], lines, random);
    }
    return open;
}

namespace {

constexpr int raysAcross = 480;
constexpr int raysUp = 45;
constexpr int eyesPerFlight = 48;

struct Crossing {
    int surface;
    float distance;
};

/// The surfaces that face the eye along a ray, near first, at most this many.
constexpr std::size_t deepest = 10;

/// What lies along a picture ray; the mirror image in the water is another picture, so it comes as
/// a list of its own.
void FollowRay(const SightLines& lines, const Eye& eye, vec3 direction, std::vector<Crossing>& seen,
               std::vector<Crossing>& mirrored) {
    const auto collect = [](std::vector<Crossing>& found, float start) {
        return [&found, start](int surface, float distance) {
            if (found.empty() || found.back().surface != surface)
                found.push_back({surface, start + distance});
            return found.size() < deepest;
        };
    };
    seen.clear();
    mirrored.clear();
    const bool meetsWater = eye.position.y > eye.waterHeight && direction.y < 0;
    const float toWater = meetsWater ? SightLines::ToWater(eye, direction) : SightLines::sightEnd;
    lines.Follow(eye.position, direction, toWater, collect(seen, 0));
    if (meetsWater)
        lines.FollowMirrored(eye, direction, toWater, collect(mirrored, toWater));
}

/// Notes what is first on a ray (when nothing else is before the water) and who hides whom.
void NoteRay(const std::vector<Crossing>& crossings, bool first, std::vector<Sight>& sights) {
    for (std::size_t i = 0; i < crossings.size(); ++i) {
        Sight& sight = sights[crossings[i].surface];
        if (i == 0 && first) {
            sight.rays += 1;
            sight.distance += crossings[i].distance;
        }
        sight.behind += static_cast<float>(i);
        sight.before += static_cast<float>(crossings.size() - 1 - i);
    }
}

vec3 Middle(const Surface& surface) {
    vec2 low{1e9f, 1e9f};
    vec2 high{-1e9f, -1e9f};
    for (const auto& polygon : surface.polygons)
        for (const vec2 p : polygon) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    return surface.World((low + high) * 0.5f);
}

void NoteNearest(const Eye& eye, const std::vector<Surface>& surfaces, std::vector<Sight>& sights) {
    for (std::size_t i = 0; i < surfaces.size(); ++i) {
        const vec3 middle = Middle(surfaces[i]);
        // Across the water's surface nothing is seen closely.
        const bool apart = (middle.y < -0.05f) != (eye.position.y < 0);
        const float distance = Length(middle - eye.position) * (apart ? 6.0f : 1.0f);
        sights[i].nearest = std::min(sights[i].nearest, distance);
    }
}

} // namespace

std::vector<Sight> MeasureSights(const std::vector<Surface>& surfaces) {
    const SightLines lines(surfaces);
    std::vector<Crossing> seen;
    std::vector<Crossing> mirrored;
    std::vector<Sight> sights(surfaces.size());
    Tools::Progress progress("views along the flights, for the order",
                             static_cast<int>(Show::flightCount) * eyesPerFlight);
    unsigned pixel = 0;
    for (const Show::Flight& flight : Show::flights) {
        for (int e = 0; e < eyesPerFlight; ++e) {
            const Eye eye = EyeAt(flight, (static_cast<float>(e) + 0.5f) / eyesPerFlight);
            NoteNearest(eye, surfaces, sights);
            for (int i = 0; i < raysAcross * raysUp; ++i) {
                // Anywhere in the cell, so that from eye to eye the rays fall between each other.
                const float dx = HashUnit(++pixel, 1);
                const float dy = HashUnit(pixel, 2);
                const int row = i / raysAcross;
                const float x = (static_cast<float>(i % raysAcross) + dx) / raysAcross * 2 - 1;
                const float y = (static_cast<float>(row) + dy) / raysUp * 2 - 1;
                FollowRay(lines, eye, RayThrough(eye, x, y), seen, mirrored);
                NoteRay(seen, true, sights);
                NoteRay(mirrored, seen.empty(), sights);
            }
            progress.Add();
        }
    }
    for (Sight& sight : sights)
        sight.distance = sight.rays > 0 ? sight.distance / sight.rays : SightLines::sightEnd;
    return sights;
}

} // namespace Art
