#include "art/common/meshwriter.h"
#include "art/common/picture.h"
#include "art/wisp/wisp.h"

#include <cstdio>
#include <filesystem>

/// Writes mesh and light of the three wisps into the folder given.
int main(int count, char** arguments) {
    constexpr int cellPixels = 128;
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    for (const Art::WispKind& kind : Art::WispKinds()) {
        const std::string base = (folder / kind.name).string();
        if (!Art::WritePng(base + ".png", Art::WispLight(kind, cellPixels), 3) ||
            !Art::WriteMesh(base + ".xt3dstatic", Art::WispMesh(kind)))
            return 1;
    }
    return 0;
}
