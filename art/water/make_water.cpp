#include "art/common/picture.h"
#include "art/water/waves.h"

#include <cstdio>
#include <filesystem>

/// Writes the sea's normal map into the folder given.
int main(int count, char** arguments) {
    constexpr int tileSize = 1024;
    // 96: finer than the eye can follow in a shift of the mirror image by half a pixel.
    constexpr int jpegQuality = 96;
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    const Art::Picture normals = Art::NormalPicture(Art::MakeWaves(tileSize));
    const std::string path = (folder / "water.jpg").string();
    return Art::WriteEngineJpeg(path, normals, jpegQuality) ? 0 : 1;
}
