#include "art/lightmap/baker.h"

#include "art/common/noise.h"
#include "art/common/palette.h"
#include "art/common/parallel.h"
#include "art/lightmap/raytracer.h"
#include "art/lightmap/texels.h"
#include "tools/progress/progress.h"

#include <cstdint>

namespace Art {

namespace {

constexpr float sceneReach = 10000;
// How far off its surface a ray starts, so that it does not meet the surface itself.
constexpr float liftOff = 0.003f;
// A texel most of whose rays end on the inside of walls lies within a solid.
constexpr float insideShare = 0.5f;

/// A triangle as rays see it.
struct Facet {
    vec3 normal;
    vec2 texcoord[3];
    vec2 lightmap[3];
    const Picture* surface;
};

vec2 Interpolated(const vec2 (&corners)[3], const Hit& hit) {
    return corners[0] + (corners[1] - corners[0]) * hit.u + (corners[2] - corners[0]) * hit.v;
}

/// Two axes that make a right-handed frame with the normal.
void FrameAround(vec3 normal, vec3& a, vec3& b) {
    const vec3 other = std::abs(normal.y) < 0.9f ? vec3{0, 1, 0} : vec3{1, 0, 0};
    a = Normalized(Cross(other, normal));
    b = Cross(normal, a);
}

/// Point `i` of an even, endless sequence over the unit square (generalised golden ratio),
/// moved by `shift` around the square.
vec2 EvenPoint(int i, vec2 shift) {
    const auto part = [&](double step, float by) {
        const double v = static_cast<double>(by) + step * (i + 1);
        return static_cast<float>(v - std::floor(v));
    };
    return {part(0.7548776662466927, shift.x), part(0.5698402909980532, shift.y)};
}

vec3 CosineDirection(vec2 p, vec3 normal, vec3 a, vec3 b) {
    const float radius = std::sqrt(p.x);
    const float angle = 2 * pi * p.y;
    return a * (radius * std::cos(angle)) + b * (radius * std::sin(angle)) +
           normal * std::sqrt(1 - p.x);
}

/// One bake in progress.
class Bake {
public:
    Bake(const BakeScene& s, const BakeQuality& q);

    Picture Run();

private:
    vec3 Direct(const Texel& texel) const;
    vec3 Sun(const Texel& texel, vec3 from, vec2 shift) const;
    /// What one ray to a point of the lamp brings; `jitter` is within -0.5..0.5 each way.
    vec3 Lamp(const Texel& texel, vec3 from, const PointLight& lamp, vec3 jitter) const;
    vec3 Lamps(const Texel& texel, vec3 from, unsigned id) const;
    vec3 Gather(const Texel& texel, int rays, unsigned pass, float& inside) const;
    vec3 Leaving(const Hit& hit) const;
    void Pass(const char* title,
              const std::function<vec3(const Texel&, std::uint8_t&)>& texelLight);
    void Finish();
    vec3 Smoothed(const Texel& texel, const std::vector<int>& texelAt) const;

    std::size_t IndexOf(const Texel& t) const {
        return static_cast<std::size_t>(t.y) * quality.size + t.x;
    }
    unsigned IdOf(const Texel& t) const {
        return Hash(static_cast<unsigned>(t.x), static_cast<unsigned>(t.y), 77);
    }

    const BakeScene& scene;
    BakeQuality quality;
    std::vector<Facet> facets;
    std::vector<vec3> corners;
    std::unique_ptr<RayTracer> rays;
    std::vector<Texel> texels;
    std::vector<vec3> direct;   ///< linear irradiance / pi from sun and lamps, per map texel
    std::vector<vec3> gathered; ///< from the sky and from other surfaces
    std::vector<vec3> total;    ///< the light that surfaces throw on: direct and gathered
    std::vector<std::uint8_t> known;
};

Bake::Bake(const BakeScene& s, const BakeQuality& q) : scene(s), quality(q) {
    for (const SubMesh& sub : scene.mesh.subMeshes) {
        const auto found = scene.surfaces.find(sub.textures[0]);
        const Picture* surface = found == scene.surfaces.end() ? nullptr : &found->second;
        for (std::size_t i = 0; i < sub.vertices.size(); i += 3) {
            const MeshVertex* v = &sub.vertices[i];
            if (v[0].lightmap == v[1].lightmap && v[1].lightmap == v[2].lightmap)
                continue; // the material moves it, so it throws no shadow
            facets.push_back({v->normal,
                              {v[0].texcoord, v[1].texcoord, v[2].texcoord},
                              {v[0].lightmap, v[1].lightmap, v[2].lightmap},
                              surface});
            for (int k = 0; k < 3; ++k)
                corners.push_back(v[k].position);
        }
    }
    rays = std::make_unique<RayTracer>(corners);
    texels = FindTexels(scene.mesh, quality.size);
    const std::size_t count = static_cast<std::size_t>(quality.size) * quality.size;
    direct.resize(count);
    gathered.resize(count);
    total.resize(count);
    known.resize(count);
}

vec3 Bake::Sun(const Texel& texel, vec3 from, vec2 shift) const {
    const float facing = Dot(texel.normal, scene.sun.direction);
    if (facing <= 0 || Dot(scene.sun.irradiance, {1, 1, 1}) <= 0)
        return {};
    vec3 a;
    vec3 b;
    FrameAround(scene.sun.direction, a, b);
    const int count = scene.sun.spread > 0 ? quality.sunRays : 1;
    int open = 0;
    for (int i = 0; i < count; ++i) {
        const vec2 p = EvenPoint(i, shift);
        const float radius = scene.sun.spread * std::sqrt(p.x);
        const float angle = 2 * pi * p.y;
        const vec3 direction = Normalized(scene.sun.direction + a * (radius * std::cos(angle)) +
                                          b * (radius * std::sin(angle)));
        open += rays->Blocked(from, direction, sceneReach) ? 0 : 1;
    }
    return scene.sun.irradiance * (scene.sun.share(texel.position) * facing *
                                   static_cast<float>(open) / static_cast<float>(count) / pi);
}

vec3 Bake::Lamp(const Texel& texel, vec3 from, const PointLight& lamp, vec3 jitter) const {
    const vec3 toLamp = lamp.position - from + jitter * lamp.radius;
    const float squared = std::max({Dot(toLamp, toLamp), lamp.radius * lamp.radius, 0.01f});
    const float distance = Length(toLamp);
    const float facing = Dot(texel.normal, toLamp) / std::max(distance, 1e-6f);
    if (facing <= 0)
        return {};
    // The lamp's own glass and lid stand around its middle and must not shade it.
    if (rays->Blocked(from, toLamp / distance, distance - 2.8f * lamp.radius))
        return {};
    return lamp.intensity * (facing / squared / pi);
}

vec3 Bake::Lamps(const Texel& texel, vec3 from, unsigned id) const {
    // A lamp whose light would be weaker than this is not traced.
    constexpr float negligible = 0.0008f;
    // Within so many of its radii a lamp is so big that one ray to it leaves the wall speckled.
    constexpr float nearRadii = 8;
    constexpr unsigned nearRays = 16;
    vec3 sum;
    for (std::size_t i = 0; i < scene.lamps.size(); ++i) {
        const PointLight& lamp = scene.lamps[i];
        const vec3 middle = lamp.position - from;
        const float brightest = std::max({lamp.intensity.x, lamp.intensity.y, lamp.intensity.z});
        if (brightest < negligible * pi * Dot(middle, middle))
            continue;
        const unsigned count = Length(middle) < nearRadii * lamp.radius ? nearRays : 1;
        for (unsigned r = 0; r < count; ++r) {
            const unsigned n = static_cast<unsigned>(i) + r * 4096;
            const vec3 jitter{HashUnit(id, n, 1) - 0.5f, HashUnit(id, n, 2) - 0.5f,
                              HashUnit(id, n, 3) - 0.5f};
            sum += Lamp(texel, from, lamp, jitter) / static_cast<float>(count);
        }
    }
    return sum;
}

vec3 Bake::Direct(const Texel& texel) const {
    const unsigned id = IdOf(texel);
    const vec3 from = texel.position + texel.normal * liftOff;
    return Sun(texel, from, {HashUnit(id, 1), HashUnit(id, 2)}) + Lamps(texel, from, id);
}

/// Radiance that leaves the surface at a hit: what it throws on and its own glow.
vec3 Bake::Leaving(const Hit& hit) const {
    const Facet& facet = facets[hit.triangle];
    const vec2 map = Interpolated(facet.lightmap, hit) * static_cast<float>(quality.size);
    const int x = std::clamp(static_cast<int>(map.x), 0, quality.size - 1);
    const int y = std::clamp(static_cast<int>(map.y), 0, quality.size - 1);
    const vec3 light = total[static_cast<std::size_t>(y) * quality.size + x];
    if (facet.surface == nullptr)
        return light;
    const vec2 t = Interpolated(facet.texcoord, hit);
    const Rgba pixel = facet.surface->Sample(t.x, t.y);
    const float glow = t.y > scene.shiningFrom ? 1 : 1 - pixel.a;
    return vec3{pixel.r, pixel.g, pixel.b} * (light + vec3{1, 1, 1} * (glow * scene.glow));
}

vec3 Bake::Gather(const Texel& texel, int count, unsigned pass, float& inside) const {
    const unsigned id = Hash(IdOf(texel), pass);
    const vec2 shift{HashUnit(id, 1), HashUnit(id, 2)};
    const vec3 from = texel.position + texel.normal * liftOff;
    vec3 a;
    vec3 b;
    FrameAround(texel.normal, a, b);
    vec3 sum;
    int within = 0;
    for (int i = 0; i < count; ++i) {
        const vec3 direction = CosineDirection(EvenPoint(i, shift), texel.normal, a, b);
        Hit hit;
        if (!rays->Closest(from, direction, sceneReach, hit))
            sum += scene.sky(direction);
        else if (Dot(facets[hit.triangle].normal, direction) < 0)
            sum += Leaving(hit);
        else
            ++within;
    }
    inside = static_cast<float>(within) / static_cast<float>(count);
    return within < count ? sum / static_cast<float>(count - within) : vec3{};
}

void Bake::Pass(const char* title,
                const std::function<vec3(const Texel&, std::uint8_t&)>& texelLight) {
    constexpr int chunkSize = 2048;
    const int chunks = static_cast<int>((texels.size() + chunkSize - 1) / chunkSize);
    std::vector<vec3> result(total.size());
    std::vector<std::uint8_t> valid(total.size());
    {
        Tools::Progress progress("parts of the " + std::string(title), chunks);
        ForEachIndex(chunks, quality.threads, [&](int chunk) {
            const std::size_t end =
                std::min(texels.size(), static_cast<std::size_t>(chunk + 1) * chunkSize);
            for (std::size_t i = static_cast<std::size_t>(chunk) * chunkSize; i < end; ++i) {
                const std::size_t at = IndexOf(texels[i]);
                valid[at] = 1;
                result[at] = texelLight(texels[i], valid[at]) * scene.veil(texels[i].position);
            }
            progress.Add();
        });
    }
    total = std::move(result);
    known = std::move(valid);
}

/// Mean of the gathered light round a texel over texels of the same plane, near ones most.
/// Gathered light changes slowly, its sampling noise does not.
vec3 Bake::Smoothed(const Texel& texel, const std::vector<int>& texelAt) const {
    constexpr int smoothReach = 2;
    vec3 sum;
    float weights = 0;
    for (int y = std::max(texel.y - smoothReach, 0);
         y <= std::min(texel.y + smoothReach, quality.size - 1); ++y) {
        for (int x = std::max(texel.x - smoothReach, 0);
             x <= std::min(texel.x + smoothReach, quality.size - 1); ++x) {
            const std::size_t at = static_cast<std::size_t>(y) * quality.size + x;
            if (texelAt[at] < 0 || known[at] == 0)
                continue;
            const Texel& other = texels[static_cast<std::size_t>(texelAt[at])];
            const float offPlane = std::abs(Dot(other.position - texel.position, texel.normal));
            if (Dot(other.normal, texel.normal) < 0.99f || offPlane > 0.02f)
                continue;
            const float dx = static_cast<float>(x - texel.x);
            const float dy = static_cast<float>(y - texel.y);
            const float weight = std::exp(-0.35f * (dx * dx + dy * dy));
            sum += gathered[at] * weight;
            weights += weight;
        }
    }
    return weights > 0 ? sum / weights : gathered[IndexOf(texel)];
}

/// Adds up direct and smoothed light into the map that is handed out.
void Bake::Finish() {
    std::vector<int> texelAt(total.size(), -1);
    for (std::size_t i = 0; i < texels.size(); ++i)
        texelAt[IndexOf(texels[i])] = static_cast<int>(i);
    for (const Texel& texel : texels)
        total[IndexOf(texel)] =
            (direct[IndexOf(texel)] + Smoothed(texel, texelAt)) * scene.veil(texel.position);
    Dilate(total, known, quality.size);
}

Picture Bake::Run() {
    Pass("direct light",
         [&](const Texel& t, std::uint8_t&) { return direct[IndexOf(t)] = Direct(t); });
    Dilate(total, known, quality.size);
    for (int bounce = 0; bounce <= quality.bounces; ++bounce) {
        const bool last = bounce == quality.bounces;
        const int count = last ? quality.finalRays : quality.bounceRays;
        Pass(last ? "last gathering" : "gathering", [&](const Texel& t, std::uint8_t& valid) {
            float inside = 0;
            const vec3 light = Gather(t, count, static_cast<unsigned>(bounce), inside);
            valid = inside < insideShare ? 1 : 0;
            gathered[IndexOf(t)] = light;
            return direct[IndexOf(t)] + light;
        });
        if (!last)
            Dilate(total, known, quality.size);
    }
    Finish();
    Picture picture(quality.size, quality.size);
    for (int y = 0; y < quality.size; ++y) {
        for (int x = 0; x < quality.size; ++x) {
            const vec3 light = total[static_cast<std::size_t>(y) * quality.size + x];
            picture.At(x, quality.size - 1 - y) = {light.x, light.y, light.z, 1};
        }
    }
    return picture;
}

} // namespace

Picture BakeLight(const BakeScene& scene, const BakeQuality& quality) {
    return Bake(scene, quality).Run();
}

Picture EncodeLight(const Picture& light) {
    Picture encoded(light.Width(), light.Height());
    for (int y = 0; y < light.Height(); ++y) {
        for (int x = 0; x < light.Width(); ++x) {
            const Rgba& p = light.At(x, y);
            const vec3 display = ToDisplay({p.r, p.g, p.b}) * 0.5f;
            encoded.At(x, y) = {display.x, display.y, display.z, 1};
        }
    }
    return encoded;
}

} // namespace Art
