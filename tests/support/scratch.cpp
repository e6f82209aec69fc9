#include "tests/support/scratch.h"

#include "tools/picture/encode.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

void Demand(bool ok, const std::string& what) {
    if (!ok)
        throw std::runtime_error(what);
}

void MakeFolderOf(const fs::path& path) {
    if (path.has_parent_path())
        fs::create_directories(path.parent_path());
}

void DemandSize(const fs::path& path, std::size_t found, std::size_t expected) {
    Demand(found == expected, path.string() + ": expected " + std::to_string(expected) +
                                  " bytes of pixels, found " + std::to_string(found));
}

void WriteJpegOf(const fs::path& path, int width, int height, int channels,
                 const std::vector<unsigned char>& bytes, int quality) {
    DemandSize(path, bytes.size(), static_cast<std::size_t>(width) * height * channels);
    MakeFolderOf(path);
    FILE* file = std::fopen(path.c_str(), "wb");
    Demand(file != nullptr, "cannot write " + path.string());
    const bool whole = Tools::WriteJpeg(file, {width, height, channels, bytes.data()}, quality);
    Demand(std::fclose(file) == 0 && whole, "cannot write " + path.string());
}

} // namespace

void WriteFile(const fs::path& path, const std::string& text) {
    MakeFolderOf(path);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    Demand(file.good(), "cannot write " + path.string());
}

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    Demand(file.is_open(), "cannot read " + path.string());
    return {std::istreambuf_iterator<char>(file), {}};
}

void WritePng(const fs::path& path, int width, int height, int channels,
              const std::vector<unsigned char>& bytes) {
    DemandSize(path, bytes.size(), static_cast<std::size_t>(width) * height * channels);
    const auto png = Tools::PngOf({width, height, channels, bytes.data()});
    WriteFile(path, {png.begin(), png.end()});
}

void WriteJpeg(const fs::path& path, int width, int height, const std::vector<unsigned char>& rgb,
               int quality) {
    WriteJpegOf(path, width, height, 3, rgb, quality);
}

void WriteGreyJpeg(const fs::path& path, int width, int height,
                   const std::vector<unsigned char>& grey, int quality) {
    WriteJpegOf(path, width, height, 1, grey, quality);
}
