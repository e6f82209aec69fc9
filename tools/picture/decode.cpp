#include "tools/picture/decode.h"

#include <csetjmp>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include <jpeglib.h>
#include <png.h>

namespace Tools {

namespace {

struct CloseFile {
    void operator()(FILE* file) const {
        static_cast<void>(std::fclose(file)); // nothing was written
    }
};
using File = std::unique_ptr<FILE, CloseFile>;

/// libjpeg's default handler ends the program; this one comes back to the caller.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf back;
};

void OnJpegError(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->back, 1);
}

/// False when the file is no whole JPEG.
bool ReadJpeg(FILE* file, DecodedPicture& picture) {
    jpeg_decompress_struct info;
    JpegErrors errors;
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = OnJpegError;
    jpeg_create_decompress(&info);
    if (setjmp(errors.back) != 0) {
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_stdio_src(&info, file);
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_RGB;
    jpeg_start_decompress(&info);
    picture.width = static_cast<int>(info.output_width);
    picture.height = static_cast<int>(info.output_height);
    const std::size_t rowBytes = static_cast<std::size_t>(info.output_width) * 3;
    picture.bytes.resize(rowBytes * info.output_height);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = picture.bytes.data() + info.output_scanline * rowBytes;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return true;
}

} // namespace

DecodedPicture DecodePng(const std::string& path, int channels) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    image.format = channels == 4 ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    DecodedPicture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.bytes.resize(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, picture.bytes.data(), 0, nullptr))
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    return picture;
}

DecodedPicture DecodeJpeg(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file)
        throw std::runtime_error("cannot read " + path + ": there is no such file");
    DecodedPicture picture;
    if (!ReadJpeg(file.get(), picture))
        throw std::runtime_error("cannot read " + path + ": it is no whole JPEG");
    return picture;
}

} // namespace Tools
