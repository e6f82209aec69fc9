#include "art/common/options.h"
#include "art/common/picture.h"
#include "art/logo/logo.h"

#include <filesystem>

int main(int count, char** arguments) {
    constexpr int jpegQuality = 97; // thin light strokes on dark ground show every artefact
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_logo", .purpose = "Writes the title picture into FOLDER."}, count,
        arguments, status);
    if (!operands)
        return status;
    const std::filesystem::path folder = operands->front();
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "logo.jpg").string();
    return Art::WriteEngineJpeg(path, Art::TitlePicture(), jpegQuality) ? 0 : 1;
}
