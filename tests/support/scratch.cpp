#include "tests/support/scratch.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <jpeglib.h>
#include <png.h>

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

void DemandSize(const fs::path& path, size_t found, size_t expected) {
    Demand(found == expected, path.string() + ": expected " + std::to_string(expected) +
                                  " bytes of pixels, found " + std::to_string(found));
}

void WriteJpegOf(const fs::path& path, int width, int height, int channels,
                 const std::vector<unsigned char>& bytes, int quality) {
    DemandSize(path, bytes.size(), size_t(width) * height * channels);
    MakeFolderOf(path);
    FILE* file = std::fopen(path.c_str(), "wb");
    Demand(file != nullptr, "cannot write " + path.string());
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file);
    jpeg.image_width = JDIMENSION(width);
    jpeg.image_height = JDIMENSION(height);
    jpeg.input_components = channels;
    jpeg.in_color_space = channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    for (int c = 0; c < jpeg.num_components; ++c) {
        jpeg.comp_info[c].h_samp_factor = 1;
        jpeg.comp_info[c].v_samp_factor = 1;
    }
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<unsigned char> row(size_t(width) * channels);
    while (jpeg.next_scanline < jpeg.image_height) {
        const auto begin = bytes.begin() + std::ptrdiff_t(jpeg.next_scanline * row.size());
        std::copy(begin, begin + std::ptrdiff_t(row.size()), row.begin());
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::fclose(file);
}

} // namespace

ScratchDir::ScratchDir() : previous(fs::current_path()) {
    std::string pattern = (fs::temp_directory_path() / "vell_test_XXXXXX").string();
    Demand(mkdtemp(pattern.data()) != nullptr, "cannot make a temporary directory " + pattern);
    path = pattern;
    fs::current_path(path);
}

ScratchDir::~ScratchDir() {
    std::error_code ignored;
    fs::current_path(previous, ignored);
    fs::remove_all(path, ignored);
}

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
    static constexpr png_uint_32 formats[] = {0, PNG_FORMAT_GRAY, PNG_FORMAT_GA, PNG_FORMAT_RGB,
                                              PNG_FORMAT_RGBA};
    DemandSize(path, bytes.size(), size_t(width) * height * channels);
    MakeFolderOf(path);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(width);
    image.height = png_uint_32(height);
    image.format = formats[channels];
    Demand(png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr) != 0,
           "cannot write " + path.string() + ": " + image.message);
}

void WriteJpeg(const fs::path& path, int width, int height, const std::vector<unsigned char>& rgb,
               int quality) {
    WriteJpegOf(path, width, height, 3, rgb, quality);
}

void WriteGreyJpeg(const fs::path& path, int width, int height,
                   const std::vector<unsigned char>& grey, int quality) {
    WriteJpegOf(path, width, height, 1, grey, quality);
}
