#include "art/common/picture.h"
#include "art/logo/logo.h"

#include <cstdio>
#include <filesystem>

/// Writes the title picture into the folder given.
int main(int count, char** arguments) {
    constexpr int jpegQuality = 97; // thin light strokes on dark ground show every artefact
    if (count != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    const std::string path = (folder / "logo.jpg").string();
    return Art::WriteEngineJpeg(path, Art::TitlePicture(), jpegQuality) ? 0 : 1;
}
