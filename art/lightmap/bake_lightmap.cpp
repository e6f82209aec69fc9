#include "art/city/meshing.h"
#include "art/city/plan.h"
#include "art/common/foldertofill.h"
#include "art/common/palette.h"
#include "art/lightmap/baker.h"
#include "tools/options/commandline.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace Art;

BakeQuality QualityOf(const Tools::Arguments& arguments) {
    BakeQuality quality;
    quality.threads = arguments.WholeNumber("--threads", quality.threads);
    if (arguments.Has("--quick")) {
        quality.sunRays = 6;
        quality.bounceRays = 12;
        quality.finalRays = 28;
        quality.bounces = 1;
    }
    return quality;
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

/// Sea water swallows light with depth, red first and most of it right under the surface: all the
/// ripple leaves of a drowned wall's red would turn its lights pink.
vec3 Veil(vec3 p) {
    constexpr vec3 turquoise{0.10f, 0.62f, 0.40f};
    const float depth = std::max(-p.y, 0.0f);
    const vec3 below = Lerp(vec3{1, 1, 1}, turquoise, SmoothStep(0.0f, 0.5f, depth));
    return below *
           vec3{std::exp(-0.20f * depth), std::exp(-0.03f * depth), std::exp(-0.012f * depth)};
}

/// Under water the light comes from above; over it the dusk.
vec3 Sky(vec3 direction) {
    constexpr vec3 seaLight{0.16f, 0.25f, 0.28f};
    return direction.y > 0 ? SkyRadiance(direction) * 2.2f : seaLight;
}

/// The last light has left the streets and still stands on the towers.
float SunShare(vec3 p) {
    return 0.06f + 0.60f * SmoothStep(2.5f, 17.0f, p.y);
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
    scene.shiningFrom = shiningFrom;
    return scene;
}

int Make(const Tools::Arguments& arguments) {
    constexpr int jpegQuality = 93;
    FolderToFill folder(arguments.operands[0]);
    bool whole = false;
    const BakeScene scene = CityScene(arguments.operands[0], whole);
    if (!whole)
        return EXIT_FAILURE;
    const Picture light = EncodeLight(BakeLight(scene, QualityOf(arguments)));
    return folder.Finish(WriteEngineJpeg(folder.File("lightmap.jpg"), light, jpegQuality));
}

constexpr int mostThreads = 1024;

const Tools::Program program = {
    .name = "bake_lightmap",
    .purpose = "Bakes FOLDER/lightmap.jpg for the city whose mesh and textures lie in FOLDER.",
    .options = {{.name = "--quick", .meaning = "takes fewer rays, for a look"},
                {.name = "--threads",
                 .value = "N",
                 .kind = Tools::WholeNumberKind(1, mostThreads),
                 .example = "2",
                 .meaning = "works on N threads (one per core)"}},
    .modes = {{.operands = {{"FOLDER", Tools::FolderToRead()}},
               .example = "Data/Gfx/City",
               .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
