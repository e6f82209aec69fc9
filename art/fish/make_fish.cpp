#include "art/common/meshwriter.h"
#include "art/common/picture.h"
#include "art/fish/fish.h"
#include "art/fish/fishskin.h"

#include <cstdio>
#include <filesystem>

/// Writes the school's mesh and the fish's skin into the folder given.
int main(int count, char** arguments) {
    constexpr int skinHeight = 128;
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    const bool written =
        Art::WritePng((folder / "fish.png").string(), Art::FishSkin(skinHeight), 3) &&
        Art::WriteMesh((folder / "fish.xt3dstatic").string(), Art::FishMesh());
    return written ? 0 : 1;
}
