#include "art/common/options.h"
#include "art/common/picture.h"
#include "art/common/progress.h"
#include "art/sky/dusk.h"
#include "art/sky/faces.h"

#include <filesystem>
#include <string>

int main(int count, char** arguments) {
    constexpr int faceSize = 512;
    // 97 keeps the dither, which is what hides the steps of the slow gradients.
    constexpr int jpegQuality = 97;
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_sky", .purpose = "Paints the six faces of the sky box into FOLDER."},
        count, arguments, status);
    if (!operands)
        return status;
    const std::filesystem::path folder = operands->front();
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
