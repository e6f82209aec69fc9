#include "tools/picture/encode.h"

#include <csetjmp>
#include <stdexcept>
#include <string>

#include <jpeglib.h>
#include <png.h>

namespace Tools {

namespace {

// By the number of channels.
constexpr png_uint_32 pngFormats[] = {0, PNG_FORMAT_GRAY, PNG_FORMAT_GA, PNG_FORMAT_RGB,
                                      PNG_FORMAT_RGBA};

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

std::vector<unsigned char> PngOf(const Pixels& pixels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(pixels.width);
    image.height = png_uint_32(pixels.height);
    image.format = pngFormats[pixels.channels];
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<unsigned char> bytes(size);
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.bytes, 0, nullptr))
        throw std::runtime_error(std::string("cannot make a PNG: ") + image.message);
    bytes.resize(size);
    return bytes;
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
