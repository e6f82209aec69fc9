#include "art/common/foldertofill.h"
#include "art/gallery/balloon.h"
#include "art/gallery/court.h"
#include "art/gallery/island.h"
#include "art/gallery/temple.h"
#include "art/lightmap/baker.h"
#include "tools/options/commandline.h"

#include <filesystem>

namespace {

using namespace Art;

bool WriteShapes(FolderToFill& folder) {
    return WriteMesh(folder.File("balloon.xt3dstatic"), BalloonMesh()) &&
           WriteMesh(folder.File("knot.xt3dstatic"), KnotMesh()) &&
           WriteMesh(folder.File("temple.xt3dstatic"), TempleMesh()) &&
           WriteMesh(folder.File("island.xt3dstatic"), IslandMesh()) &&
           WriteMesh(folder.File("court/court.xt3dstatic"), CourtMesh());
}

bool WritePictures(FolderToFill& folder) {
    return WritePng(folder.File("balloon.png"), BalloonSilk(), 3) &&
           WritePng(folder.File("island.png"), IslandGround(), 3) &&
           WritePng(folder.File("rock.png"), RockHeights(), 3, Depth::Rounded) &&
           WritePng(folder.File("flake.png"), Flake(), 4);
}

bool WriteLight(FolderToFill& folder, const std::string& textures) {
    constexpr int quality = 93;
    return WriteEngineJpeg(folder.File("court/lightmap.jpg"),
                           EncodeLight(CourtLight(CourtMesh(), textures)), quality);
}

int Make(const Tools::Arguments& arguments) {
    FolderToFill folder(arguments.operands[0]);
    std::filesystem::create_directory(std::filesystem::path(arguments.operands[0]) / "court");
    const std::string textures = arguments.Text("--light", "");
    return folder.Finish(WriteShapes(folder) && WritePictures(folder) &&
                         (textures.empty() || WriteLight(folder, textures)));
}

const Tools::Program program = {
    .name = "make_gallery",
    .purpose = "Writes the meshes and pictures that the gallery shows into FOLDER.",
    .options = {{.name = "--light",
                 .value = "TEXTURES",
                 .kind = Tools::FolderToRead(),
                 .example = "Data/Gfx/City",
                 .meaning = "bakes the court's light map too, with the city's textures there"}},
    .modes = {
        {.operands = {{"FOLDER", Tools::FolderToFill()}}, .example = "gallery/data", .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
