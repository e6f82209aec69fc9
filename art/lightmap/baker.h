#pragma once

#include "art/common/meshwriter.h"
#include "art/common/picture.h"

#include <functional>
#include <map>

namespace Art {

/// A light of a small sphere, seen by what its light reaches.
struct PointLight {
    vec3 position;
    vec3 intensity; ///< linear, radiant intensity: irradiance at distance 1
    float radius = 0.1f;
};

/// The one distant light.
struct SunLight {
    vec3 direction;   ///< towards it, unit length
    vec3 irradiance;  ///< linear, on a surface that faces it
    float spread = 0; ///< half angle of its disc in radians: how soft its shadows are
    /// Share of it that reaches a point past what stands out of the picture, such as hills on
    /// the horizon; 1 for all.
    std::function<float(vec3)> share = [](vec3) { return 1.0f; };
};

/// What light meets and where it comes from.
struct BakeScene {
    MeshFile mesh; ///< with light-map coordinates on a map of `size` texels
    /// Surfaces by texture name, as the engine sees them: rgb reflects (display values), and
    /// 1 - alpha glows with that colour. A texture that is missing here is white.
    std::map<std::string, Picture> surfaces;
    std::vector<PointLight> lamps;
    SunLight sun;
    /// Linear radiance of the sky at a unit direction; called from several threads.
    std::function<vec3(vec3)> sky = [](vec3) { return vec3{}; };
    /// Extra dimming of all light that reaches a point, such as water over it; 1 for none.
    std::function<vec3(vec3)> veil = [](vec3) { return vec3{1, 1, 1}; };
    /// Triangles with all their second texture coordinates over this glow in all of their colour.
    float shiningFrom = 1e9f;
    /// How strongly a glowing texture shines, linear radiance at alpha 0.
    float glow = 1;
};

/// How well.
struct BakeQuality {
    int size = 2048;
    int sunRays = 16;    ///< per texel
    int bounceRays = 32; ///< per texel and bounce before the last
    int finalRays = 128; ///< per texel in the last gathering
    int bounces = 2;     ///< how often light is thrown on, at least 0
    int threads = 0;     ///< 0: one per core
};

/// The light that falls on every texel: linear irradiance / pi, that is, the radiance of a
/// white surface there. Rows from the top (v = 1) down; texels that no chart covers hold the
/// nearest chart's light. The same on any number of threads.
Picture BakeLight(const BakeScene& scene, const BakeQuality& quality);

/// Half of full scale is white: the value a shader must multiply by 2. Display encoding.
Picture EncodeLight(const Picture& light);

} // namespace Art
