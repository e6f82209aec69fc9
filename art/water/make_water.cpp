#include "art/common/options.h"
#include "art/common/picture.h"
#include "art/water/waves.h"

#include <filesystem>

int main(int count, char** arguments) {
    constexpr int tileSize = 1024;
    // 96: finer than the eye can follow in a shift of the mirror image by half a pixel.
    constexpr int jpegQuality = 96;
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_water", .purpose = "Writes the normal map of the sea into FOLDER."},
        count, arguments, status);
    if (!operands)
        return status;
    const std::filesystem::path folder = operands->front();
    std::filesystem::create_directories(folder);
    const Art::Picture normals = Art::NormalPicture(Art::MakeWaves(tileSize));
    const std::string path = (folder / "water.jpg").string();
    return Art::WriteEngineJpeg(path, normals, jpegQuality) ? 0 : 1;
}
