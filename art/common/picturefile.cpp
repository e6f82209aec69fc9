// Reading and writing of PNG and JPEG files; the picture itself is in picture.cpp.
#include "art/common/picture.h"

#include "tools/picture/encode.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <jpeglib.h>
#include <png.h>

namespace Art {

namespace {

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

bool Complain(const std::string& path, const char* what) {
    std::fprintf(stderr, "%s: %s\n", path.c_str(), what);
    return false;
}

std::vector<std::uint8_t> Bytes(const Picture& picture, int channels, Depth depth) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(picture.Width()) * picture.Height() * channels);
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const Rgba& p = picture.At(x, y);
            const float values[4] = {p.r, p.g, p.b, p.a};
            for (int c = 0; c < channels; ++c)
                bytes.push_back(depth == Depth::Dithered ? Dithered(values[c], x, y, c)
                                                         : Rounded(values[c]));
        }
    }
    return bytes;
}

/// libjpeg's default handler ends the program; this one comes back to the caller.
struct JpegErrors {
    jpeg_error_mgr manager;
    std::jmp_buf back;
};

void OnJpegError(j_common_ptr info) {
    std::longjmp(reinterpret_cast<JpegErrors*>(info->err)->back, 1);
}

enum class Packing { Small, None };

/// With Packing::None every row is stored as it is: neither filtered nor compressed.
void ChoosePacking(png_structp png, Packing packing) {
    constexpr std::size_t pieceBytes = 1 << 20; // of a chunk: few chunks are quickly gone through
    if (packing == Packing::None) {
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
        png_set_compression_buffer_size(png, pieceBytes);
    }
    png_set_compression_level(png, packing == Packing::None ? 0 : 9);
}

bool EncodePng(FILE* file, const Picture& picture, int channels, Packing packing,
               std::uint8_t* bytes) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.Width()),
                 static_cast<png_uint_32>(picture.Height()), 8,
                 channels == 4 ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    ChoosePacking(png, packing);
    png_write_info(png, info);
    for (int y = 0; y < picture.Height(); ++y)
        png_write_row(png, bytes + static_cast<std::size_t>(y) * picture.Width() * channels);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

/// Runs `encode(file)` on a file beside `path` and renames it when all went well.
template <typename Encode>
bool WriteBeside(const std::string& path, Encode encode) {
    const std::string beside = path + ".part";
    File file(std::fopen(beside.c_str(), "wb"));
    if (!file)
        return Complain(path, "cannot be written");
    const bool whole = encode(file.get()) && std::fflush(file.get()) == 0;
    file.reset();
    if (!whole || std::rename(beside.c_str(), path.c_str()) != 0) {
        std::remove(beside.c_str());
        return Complain(path, "was not written whole");
    }
    return true;
}

Picture FromBytes(const std::vector<std::uint8_t>& bytes, int width, int height, int channels) {
    Picture picture(width, height);
    const std::uint8_t* p = bytes.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x, p += channels) {
            const float alpha = channels == 4 ? static_cast<float>(p[3]) / 255 : 1;
            picture.At(x, y) = {static_cast<float>(p[0]) / 255, static_cast<float>(p[1]) / 255,
                                static_cast<float>(p[2]) / 255, alpha};
        }
    }
    return picture;
}

/// Fills `bytes` with the rows of a JPEG from the top; false when it is broken.
bool DecodeJpeg(FILE* file, std::vector<std::uint8_t>& bytes, int& width, int& height) {
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
    width = static_cast<int>(info.output_width);
    height = static_cast<int>(info.output_height);
    bytes.resize(static_cast<std::size_t>(width) * height * 3);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = bytes.data() + static_cast<std::size_t>(info.output_scanline) * width * 3;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return true;
}

Picture ReadJpeg(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    std::vector<std::uint8_t> bytes;
    int width = 0;
    int height = 0;
    if (!file || !DecodeJpeg(file.get(), bytes, width, height)) {
        Complain(path, "is missing or no whole JPEG");
        return {};
    }
    return FromBytes(bytes, width, height, 3);
}

Picture ReadPng(const std::string& path) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        Complain(path, image.message);
        return {};
    }
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) == 0) {
        Complain(path, image.message);
        return {};
    }
    return FromBytes(bytes, static_cast<int>(image.width), static_cast<int>(image.height), 4);
}

/// Left and right exchanged.
Picture MirroredLeftRight(const Picture& p) {
    Picture result(p.Width(), p.Height());
    for (int y = 0; y < p.Height(); ++y)
        for (int x = 0; x < p.Width(); ++x)
            result.At(x, y) = p.At(p.Width() - 1 - x, y);
    return result;
}

bool WritePacked(const std::string& path, const Picture& picture, int channels, Packing packing,
                 Depth depth) {
    if (picture.Width() == 0 || (channels != 3 && channels != 4))
        return Complain(path, "expected a picture of 3 or 4 channels");
    std::vector<std::uint8_t> bytes = Bytes(picture, channels, depth);
    return WriteBeside(path, [&](FILE* file) {
        return EncodePng(file, picture, channels, packing, bytes.data());
    });
}

} // namespace

bool WriteJpeg(const std::string& path, const Picture& picture, int quality, Depth depth) {
    if (picture.Width() == 0)
        return Complain(path, "expected a picture, found an empty one");
    const std::vector<std::uint8_t> bytes = Bytes(picture, 3, depth);
    const Tools::Pixels pixels{picture.Width(), picture.Height(), 3, bytes.data()};
    return WriteBeside(path, [&](FILE* file) { return Tools::WriteJpeg(file, pixels, quality); });
}

bool WriteEngineJpeg(const std::string& path, const Picture& picture, int quality, Depth depth) {
    // In memory the engine's rows run bottom-up while ours run top-down, so the turn by 180
    // degrees and this difference of order leave one mirroring, left to right.
    return WriteJpeg(path, MirroredLeftRight(picture), quality, depth);
}

bool WritePng(const std::string& path, const Picture& picture, int channels, Depth depth) {
    return WritePacked(path, picture, channels, Packing::Small, depth);
}

bool WriteEnginePng(const std::string& path, const Picture& picture, int channels, Depth depth) {
    return WritePacked(path, picture, channels, Packing::None, depth);
}

Picture ReadPicture(const std::string& path) {
    return path.ends_with(".jpg") ? ReadJpeg(path) : ReadPng(path);
}

Picture ReadAsEngine(const std::string& path) {
    const Picture picture = ReadPicture(path);
    return path.ends_with(".jpg") ? MirroredLeftRight(picture) : picture;
}

} // namespace Art
