#include "art/common/meshwriter.h"
#include "art/common/options.h"
#include "art/common/picture.h"
#include "art/wisp/wisp.h"

#include <filesystem>

int main(int count, char** arguments) {
    constexpr int cellPixels = 128;
    int status = 0;
    const auto operands =
        Art::ReadArguments({.program = "make_wisps",
                            .purpose = "Writes mesh and light of the three wisps into FOLDER."},
                           count, arguments, status);
    if (!operands)
        return status;
    const std::filesystem::path folder = operands->front();
    std::filesystem::create_directories(folder);
    for (const Art::WispKind& kind : Art::WispKinds()) {
        const std::string base = (folder / kind.name).string();
        if (!Art::WritePng(base + ".png", Art::WispLight(kind, cellPixels), 3) ||
            !Art::WriteMesh(base + ".xt3dstatic", Art::WispMesh(kind)))
            return 1;
    }
    return 0;
}
