#include "art/common/options.h"
#include "art/gallery/balloon.h"
#include "art/gallery/court.h"
#include "art/gallery/island.h"
#include "art/gallery/temple.h"
#include "art/lightmap/baker.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

using namespace Art;

bool WriteShapes(const fs::path& folder) {
    return WriteMesh(folder / "balloon.xt3dstatic", BalloonMesh()) &&
           WriteMesh(folder / "knot.xt3dstatic", KnotMesh()) &&
           WriteMesh(folder / "temple.xt3dstatic", TempleMesh()) &&
           WriteMesh(folder / "island.xt3dstatic", IslandMesh()) &&
           WriteMesh(folder / "court/court.xt3dstatic", CourtMesh());
}

bool WritePictures(const fs::path& folder) {
    return WritePng(folder / "balloon.png", BalloonSilk(), 3) &&
           WritePng(folder / "island.png", IslandGround(), 3) &&
           WritePng(folder / "rock.png", RockHeights(), 3, Depth::Rounded) &&
           WritePng(folder / "flake.png", Flake(), 4);
}

bool WriteLight(const fs::path& folder, const std::string& textures) {
    constexpr int quality = 93;
    return WriteEngineJpeg(folder / "court/lightmap.jpg",
                           EncodeLight(CourtLight(CourtMesh(), textures)), quality);
}

} // namespace

int main(int count, char** arguments) {
    std::string textures;
    int status = 0;
    const auto operands = ReadArguments(
        {.program = "make_gallery",
         .purpose = "Writes the meshes and pictures that the gallery shows into FOLDER.",
         .options = {{.name = "--light",
                      .value = "TEXTURES",
                      .help = "bakes the court's light map too, with the city's textures there",
                      .apply =
                          [&](const std::string& folder) {
                              textures = folder;
                              return fs::is_directory(folder);
                          }}}},
        count, arguments, status);
    if (!operands)
        return status;
    const fs::path folder = operands->front();
    fs::create_directories(folder / "court");
    const bool written = WriteShapes(folder) && WritePictures(folder) &&
                         (textures.empty() || WriteLight(folder, textures));
    return written ? 0 : 1;
}
