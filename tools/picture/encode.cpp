#include "tools/picture/encode.h"

#include <csetjmp>
#include <stdexcept>
#include <string>

#include <jpeglib.h>
#include <png.h>

namespace Tools {

namespace {

// By the number of channels.
constexpr int colourTypes[] = {0, PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA,
                               PNG_COLOR_TYPE_RGB, PNG_COLOR_TYPE_RGB_ALPHA};

/// What libpng has written and what it complained of.
struct PngFile {
    std::vector<unsigned char> bytes;
    std::string complaint;
};

void TakePng(png_structp png, png_bytep bytes, png_size_t count) {
    std::vector<unsigned char>& file = static_cast<PngFile*>(png_get_io_ptr(png))->bytes;
    file.insert(file.end(), bytes, bytes + count);
}

/// libpng's default handler says it on standard error; this one keeps it for the caller.
void OnPngError(png_structp png, png_const_charp complaint) {
    static_cast<PngFile*>(png_get_error_ptr(png))->complaint = complaint;
    png_longjmp(png, 1);
}

void IgnorePngWarning(png_structp, png_const_charp) {}

void ChoosePacking(png_structp png, int level) {
    constexpr std::size_t pieceBytes = 1 << 20; // of a chunk: few chunks are quickly gone through
    if (level == 0) {
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
        png_set_compression_buffer_size(png, pieceBytes);
    }
    png_set_compression_level(png, level);
}

void WriteRows(png_structp png, png_infop info, const Pixels& pixels, const PngStyle& style) {
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.width),
                 static_cast<png_uint_32>(pixels.height), 8, colourTypes[pixels.channels],
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    ChoosePacking(png, style.level);
    if (style.marked)
        png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
    png_write_info(png, info);
    const auto rowBytes =
        static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.channels);
    for (int y = 0; y < pixels.height; ++y)
        png_write_row(png, pixels.bytes + static_cast<std::size_t>(y) * rowBytes);
    png_write_end(png, info);
}

/// libjpeg's default handler ends the program; this one comes back to the caller.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf back;
};

void OnJpegError(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->back, 1);
}

void Describe(jpeg_compress_struct& info, const Pixels& pixels, int quality) {
    info.image_width = static_cast<JDIMENSION>(pixels.width);
    info.image_height = static_cast<JDIMENSION>(pixels.height);
    info.input_components = pixels.channels;
    info.in_color_space = pixels.channels == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    info.optimize_coding = TRUE;
    info.dct_method = JDCT_ISLOW;
    for (int c = 0; c < info.num_components; ++c)
        info.comp_info[c].h_samp_factor = info.comp_info[c].v_samp_factor = 1;
}

} // namespace

std::vector<unsigned char> PngOf(const Pixels& pixels, const PngStyle& style) {
    PngFile file;
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, &file, OnPngError, IgnorePngWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        throw std::runtime_error("cannot make a PNG: " + file.complaint);
    }
    png_set_write_fn(png, &file, TakePng, nullptr);
    WriteRows(png, info, pixels, style);
    png_destroy_write_struct(&png, &info);
    return file.bytes;
}

bool WriteJpeg(FILE* file, const Pixels& pixels, int quality) {
    jpeg_compress_struct info{};
    JpegErrors errors;
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = OnJpegError;
    if (setjmp(errors.back) != 0) {
        jpeg_destroy_compress(&info);
        return false;
    }
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, file);
    Describe(info, pixels, quality);
    jpeg_start_compress(&info, TRUE);
    const std::size_t rowBytes =
        static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.channels);
    while (info.next_scanline < info.image_height) {
        // libjpeg takes rows that it could write to, and does not.
        JSAMPROW row = const_cast<JSAMPROW>(pixels.bytes) + info.next_scanline * rowBytes;
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    return true;
}

} // namespace Tools
