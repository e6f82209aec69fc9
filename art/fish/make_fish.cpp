#include "art/common/meshwriter.h"
#include "art/common/options.h"
#include "art/common/picture.h"
#include "art/fish/fish.h"
#include "art/fish/fishskin.h"

#include <filesystem>

int main(int count, char** arguments) {
    constexpr int skinHeight = 128;
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_fish",
         .purpose = "Writes the school's mesh and the skin of its fish into FOLDER."},
        count, arguments, status);
    if (!operands)
        return status;
    const std::filesystem::path folder = operands->front();
    std::filesystem::create_directories(folder);
    const bool written =
        Art::WritePng((folder / "fish.png").string(), Art::FishSkin(skinHeight), 3) &&
        Art::WriteMesh((folder / "fish.xt3dstatic").string(), Art::FishMesh());
    return written ? 0 : 1;
}
