#include "art/city/plan.h"
#include "art/common/options.h"
#include "art/common/palette.h"
#include "art/lightmap/baker.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace Art;

/// Fewer rays and one bounce, for a look.
bool MakeQuick(BakeQuality& quality) {
    quality.sunRays = 6;
    quality.bounceRays = 12;
    quality.finalRays = 28;
    quality.bounces = 1;
    return true;
}

bool SetThreads(BakeQuality& quality, const std::string& number) {
    quality.threads = std::atoi(number.c_str());
    return quality.threads > 0;
}

/// Small surfaces are enough for light: one texel of them a window or so.
Picture Coarse(Picture picture) {
    while (picture.Width() > 128 && picture.Width() % 2 == 0 && picture.Height() % 2 == 0)
        picture = Halved(picture);
    return picture;
}

/// Display values to linear ones.
Picture Linear(Picture picture) {
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            Rgba& p = picture.At(x, y);
            const vec3 c = ToLinear({p.r, p.g, p.b});
            p = {c.x, c.y, c.z, p.a};
        }
    }
    return picture;
}

/// Sea water swallows light with depth, red first.
vec3 Veil(vec3 p) {
    const float depth = std::max(-p.y, 0.0f);
    return {std::exp(-0.07f * depth), std::exp(-0.02f * depth), std::exp(-0.012f * depth)};
}

/// Under water the light comes from above; over it the dusk.
vec3 Sky(vec3 direction) {
    constexpr vec3 seaLight{0.16f, 0.25f, 0.28f};
    return direction.y > 0 ? SkyRadiance(direction) * 2.2f : seaLight;
}

/// The last light has left the streets and still stands on the towers.
float SunShare(vec3 p) {
    return 0.06f + 0.94f * SmoothStep(2.5f, 17.0f, p.y);
}

BakeScene CityScene(const std::string& folder, bool& whole) {
    constexpr vec3 lampColour{1.0f, 0.62f, 0.26f};
    constexpr float lampPower = 0.45f;
    BakeScene scene;
    std::string error;
    whole = ReadMesh(folder + "/city.xt3dstatic", scene.mesh, error);
    if (!whole)
        std::fprintf(stderr, "%s\n", error.c_str());
    for (const SubMesh& sub : scene.mesh.subMeshes) {
        const std::string& name = sub.textures[0];
        if (!scene.surfaces.contains(name))
            scene.surfaces[name] = Linear(Coarse(ReadAsEngine((folder + "/").append(name))));
        whole = whole && scene.surfaces[name].Width() > 0;
    }
    for (const LampLight& lamp : BuildCity(citySeed).lamps)
        scene.lamps.push_back({lamp.position, lampColour * (lampPower * lamp.power), 0.14f});
    scene.sun = {LightDirection(), LightIrradiance(), 0.035f, SunShare};
    scene.sky = Sky;
    scene.veil = Veil;
    scene.glow = 1.6f;
    return scene;
}

} // namespace

int main(int count, char** arguments) {
    BakeQuality quality;
    int status = 0;
    const auto operands = ReadArguments(
        {.program = "bake_lightmap",
         .purpose = "Bakes FOLDER/lightmap.jpg for the city whose mesh and textures lie in FOLDER.",
         .options = {{.name = "--quick",
                      .help = "takes fewer rays, for a look",
                      .apply = [&](const std::string&) { return MakeQuick(quality); }},
                     {.name = "--threads",
                      .value = "N",
                      .help = "works on N threads (one per core)",
                      .apply = [&](const std::string& n) { return SetThreads(quality, n); }}}},
        count, arguments, status);
    if (!operands)
        return status;
    const std::string& folder = operands->front();
    bool whole = false;
    const BakeScene scene = CityScene(folder, whole);
    if (!whole)
        return 1;
    const Picture light = BakeLight(scene, quality);
    constexpr int jpegQuality = 93;
    return WriteEngineJpeg(folder + "/lightmap.jpg", EncodeLight(light), jpegQuality) ? 0 : 1;
}
