#include "art/common/picture.h"
#include "art/common/progress.h"
#include "art/sky/dusk.h"
#include "art/sky/faces.h"

#include <cstdio>
#include <filesystem>
#include <string>

/// Paints the six faces of the sky box into the folder given.
int main(int count, char** arguments) {
    constexpr int faceSize = 512;
    // 97 keeps the dither, which is what hides the steps of the slow gradients.
    constexpr int jpegQuality = 97;
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    Art::Progress progress("sky", static_cast<std::int64_t>(Art::SkyFaces().size()));
    for (const Art::SkyFace& face : Art::SkyFaces()) {
        const Art::Picture picture = Art::PaintFace(face, faceSize, Art::DuskColour);
        if (!Art::WriteEngineJpeg((folder / face.file).string(), picture, jpegQuality))
            return 1;
        progress.Add(1);
    }
    return 0;
}
