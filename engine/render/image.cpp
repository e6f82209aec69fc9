#include "engine/render/image.h"

#include "engine/core/labels.h"
#include "engine/core/logmanager.h"
#include "engine/core/ressourcemanager.h"
#include "engine/render/trust.h"

#include <csetjmp>
#include <cstdio>
#include <memory>
#include <new>
#include <vector>

#include <jpeglib.h>
#include <png.h>
#include <sys/stat.h>

namespace Vell {

namespace {

constexpr int signatureBytes = 8; // a PNG file opens with these
constexpr int rgbBytes = 3;       // a pixel
constexpr int rgbaBytes = 4;

// What one byte of a file can stand for at most. JPEG: each block of 8 x 8 samples costs a bit, and
// no component is coarser than a quarter of the picture in each direction. PNG: deflate needs 2
// bits for its longest run, 258 bytes.
constexpr std::size_t mostPixelsAJpegByte = 8192;
constexpr std::size_t mostBytesAPngByte = 1032;

/// What a decoder makes of a file.
struct Decoded {
    ivec2 size;
    GLenum format = GL_RGB;
    std::unique_ptr<unsigned char[]> pixels;
};

enum class Outcome { Decoded, Refused, TooLarge };

void LogError(const std::string& path) {
    Log::GetInstance().Write("Image", "ERROR", path);
}

/// Closes a file at the end of a block, whichever way the block is left.
struct FileCloser {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, FileCloser>;

/// Whether the driver could take such a picture as a texture. One that names no limit is let try.
bool FitsTexture(unsigned width, unsigned height) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return largest <= 0 ||
           (width <= static_cast<unsigned>(largest) && height <= static_cast<unsigned>(largest));
}

/// Whether a picture of so many bytes may stand in the file, which would need so many for it at
/// least. Asked before memory is taken.
bool IsCredible(FILE* file, std::size_t pictureBytes, std::size_t least) {
    if (pictureBytes <= takenOnTrust)
        return true;
    struct stat status {};
    const bool measured = fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
    return !measured || static_cast<std::size_t>(status.st_size) >= least;
}

/// False when there is no memory for the pixels.
bool MakeRoom(Decoded& picture, unsigned width, unsigned height, int pixelBytes) {
    picture.size = ivec2(static_cast<int>(width), static_cast<int>(height));
    picture.format = pixelBytes == rgbaBytes ? GL_RGBA : GL_RGB;
    picture.pixels.reset(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(width) * height * pixelBytes]);
    return picture.pixels != nullptr;
}

// ---------------------------------------------------------------------------------------- JPEG

/// libjpeg's standard error manager, which would end the program at a damaged file, with a way
/// back.
struct JpegErrors {
    jpeg_error_mgr manager; // first, so that libjpeg's pointer to it is a pointer to this
    std::jmp_buf wayBack;
};

void LeaveDecoder(j_common_ptr jpeg) {
    std::longjmp(reinterpret_cast<JpegErrors*>(jpeg->err)->wayBack, 1);
}

/// What there is to say stands in the log; the terminal is not ours to write on.
void SayNothing(j_common_ptr) {}

/// Decodes top row first. libjpeg may jump back into this function, so nothing in it has a
/// destructor to skip.
Outcome DecodeJpeg(FILE* file, jpeg_decompress_struct& jpeg, JpegErrors& errors, Decoded& picture) {
    if (setjmp(errors.wayBack) != 0)
        return Outcome::Refused;
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, file);
    jpeg_read_header(&jpeg, TRUE);
    if (jpeg.out_color_space != JCS_RGB) // grey or CMYK
        return Outcome::Refused;
    if (!FitsTexture(jpeg.image_width, jpeg.image_height))
        return Outcome::TooLarge;
    const std::size_t pixels = static_cast<std::size_t>(jpeg.image_width) * jpeg.image_height;
    // Arithmetic coding may need next to nothing for any number of flat blocks.
    if (!jpeg.arith_code && !IsCredible(file, pixels * rgbBytes, pixels / mostPixelsAJpegByte))
        return Outcome::Refused;
    if (!MakeRoom(picture, jpeg.image_width, jpeg.image_height, rgbBytes))
        return Outcome::TooLarge;
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = picture.pixels.get() + static_cast<std::size_t>(jpeg.output_scanline) *
                                                  jpeg.output_width * rgbBytes;
        jpeg_read_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_decompress(&jpeg);
    return Outcome::Decoded;
}

Outcome ReadJpeg(FILE* file, Decoded& picture) {
    jpeg_decompress_struct jpeg{};
    JpegErrors errors{};
    jpeg.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = LeaveDecoder;
    errors.manager.output_message = SayNothing;
    const Outcome outcome = DecodeJpeg(file, jpeg, errors, picture);
    jpeg_destroy_decompress(&jpeg);
    return outcome;
}

/// The pixels in reverse order, which turns the picture by 180 degrees: flipped for OpenGL, and
/// mirrored as well. PNG files are only flipped; the difference is intended: the same picture looks
/// mirrored as a JPEG.
std::unique_ptr<unsigned char[]> Turned(const Decoded& picture) {
    const std::size_t count =
        static_cast<std::size_t>(picture.size.x) * static_cast<std::size_t>(picture.size.y);
    std::unique_ptr<unsigned char[]> turned(new (std::nothrow) unsigned char[count * rgbBytes]);
    if (turned == nullptr)
        return nullptr;
    const unsigned char* from = picture.pixels.get() + count * rgbBytes;
    for (unsigned char* to = turned.get(); from != picture.pixels.get(); to += rgbBytes) {
        from -= rgbBytes;
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    }
    return turned;
}

// ----------------------------------------------------------------------------------------- PNG

bool HasPngSignature(FILE* file) {
    unsigned char signature[signatureBytes];
    return std::fread(signature, 1, signatureBytes, file) == signatureBytes &&
           png_sig_cmp(signature, 0, signatureBytes) == 0;
}

/// libpng's own handlers, but for what they would print.
void LeavePngDecoder(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}
void IgnorePngWarning(png_structp, png_const_charp) {}

/// libpng's two structures, released together.
struct PngReader {
    png_structp png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, LeavePngDecoder, IgnorePngWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;

    PngReader() = default;
    ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
};

/// Asks for 8 bits a channel, palettes as colours, and transparent colours as alpha.
void AskForTransforms(png_structp png, png_infop info) {
    const int type = png_get_color_type(png, info);
    const int depth = png_get_bit_depth(png, info);
    if (type == PNG_COLOR_TYPE_PALETTE)
        png_set_palette_to_rgb(png);
    if (type == PNG_COLOR_TYPE_GRAY && depth < 8)
        png_set_expand_gray_1_2_4_to_8(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS) != 0)
        png_set_tRNS_to_alpha(png);
    if (depth == 16)
        png_set_strip_16(png);
    else if (depth < 8)
        png_set_packing(png);
    png_set_interlace_handling(png); // libpng wants to know before the update
    png_read_update_info(png, info);
}

/// 0 for what is not to become a texture: grey, with or without alpha.
int PixelBytes(png_structp png, png_infop info) {
    switch (png_get_color_type(png, info)) {
    case PNG_COLOR_TYPE_RGB:
        return rgbBytes;
    case PNG_COLOR_TYPE_RGB_ALPHA:
        return rgbaBytes;
    default:
        return 0;
    }
}

/// Where libpng puts its rows, top row first: into the picture from the last row down, which flips
/// it for OpenGL.
void PointAtRows(std::vector<png_bytep>& rows, const Decoded& picture, std::size_t rowBytes) {
    rows.resize(static_cast<std::size_t>(picture.size.y));
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = picture.pixels.get() + (rows.size() - 1 - i) * rowBytes;
}

/// Decodes bottom row first. libpng may jump back into this function, so nothing in it has a
/// destructor to skip; `rows` belongs to the caller for that reason.
Outcome DecodePng(FILE* file, PngReader& reader, std::vector<png_bytep>& rows, Decoded& picture) {
    if (setjmp(png_jmpbuf(reader.png)) != 0)
        return Outcome::Refused;
    png_init_io(reader.png, file);
    png_set_sig_bytes(reader.png, signatureBytes);
    png_read_info(reader.png, reader.info);
    const std::size_t packedRow =
        png_get_rowbytes(reader.png, reader.info); // before the transforms
    AskForTransforms(reader.png, reader.info);
    const int pixelBytes = PixelBytes(reader.png, reader.info);
    if (pixelBytes == 0)
        return Outcome::Refused;
    const unsigned width = png_get_image_width(reader.png, reader.info);
    const unsigned height = png_get_image_height(reader.png, reader.info);
    if (!FitsTexture(width, height))
        return Outcome::TooLarge;
    if (!IsCredible(file,
                    static_cast<std::size_t>(width) * height * static_cast<std::size_t>(pixelBytes),
                    packedRow * height / mostBytesAPngByte))
        return Outcome::Refused;
    if (!MakeRoom(picture, width, height, pixelBytes))
        return Outcome::TooLarge;
    PointAtRows(rows, picture,
                static_cast<std::size_t>(picture.size.x) * static_cast<std::size_t>(pixelBytes));
    png_read_image(reader.png, rows.data());
    png_read_end(reader.png, nullptr);
    return Outcome::Decoded;
}

Outcome ReadPng(FILE* file, Decoded& picture) {
    PngReader reader;
    if (reader.info == nullptr)
        return Outcome::Refused;
    std::vector<png_bytep> rows;
    return DecodePng(file, reader, rows, picture);
}

} // namespace

Image::Image()
    : shared(false), filter(1), mipmap(true), size(0, 0), format(0), texture(0), data(nullptr) {}

// A failed image frees nothing, texture 0 and null being nothing, yet still logs that it ends.
Image::~Image() {
    if (shared)
        return;
    delete[] data;
    Unlabel(ObjectKind::Texture, texture);
    glDeleteTextures(1, &texture);
    if (!name.empty())
        Log::GetInstance().Write("Image", "FREE", name);
}

bool Image::Load(const std::string& path) {
    RessourceManager& registry = RessourceManager::GetInstance();
    if (registry.Exist(path)) {
        Share(*static_cast<Image*>(registry.Get(path)));
        return texture != 0;
    }
    // Before the outcome is known: a failed path stays taken, so that a missing file is tried, and
    // logged, once.
    name = path;
    registry.Register(this, path);
    if (!LoadByEnding(path))
        return false;
    Log::GetInstance().Write("Image", "LOADED", path);
    return true;
}

bool Image::LoadByEnding(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    const std::string ending = dot == std::string::npos ? "" : path.substr(dot);
    if (ending == ".png")
        return LoadPNG(path);
    if (ending == ".jpg")
        return LoadJPG(path);
    LogError(path);
    return false;
}

bool Image::LoadJPG(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    Decoded picture;
    const bool decoded = file != nullptr && ReadJpeg(file.get(), picture) == Outcome::Decoded;
    std::unique_ptr<unsigned char[]> turned = decoded ? Turned(picture) : nullptr;
    if (turned == nullptr) {
        LogError(path);
        return false;
    }
    Adopt(turned.release(), picture.size, picture.format, path);
    return true;
}

bool Image::LoadPNG(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr || !HasPngSignature(file.get())) {
        LogError(path);
        return false;
    }
    Decoded picture;
    const Outcome outcome = ReadPng(file.get(), picture);
    if (outcome == Outcome::TooLarge)
        LogError(path);
    if (outcome != Outcome::Decoded)
        return false;
    Adopt(picture.pixels.release(), picture.size, picture.format, path);
    return true;
}

void Image::SetParameter(int kind, bool withMipmaps) {
    // Mip-mapped minification of a texture without mip-maps would show no texture at all, so the
    // two always change together.
    filter = kind;
    mipmap = withMipmaps;
    Bind();
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, mipmap ? 1 : 0);
    if (filter == 0) {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        mipmap ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    } else if (filter == 1) {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        mipmap ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    }
}

void Image::Update() {
    Bind();
    Upload();
}

void Image::Upload() const {
    // Rows are packed: with OpenGL's usual alignment of 4 an RGB picture whose width is no multiple
    // of 4 would be read askew, and past its end.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), size.x, size.y, 0, format,
                 GL_UNSIGNED_BYTE, data);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

void Image::Bind() const {
    glBindTexture(GL_TEXTURE_2D, texture);
}

// The format stays as it is, by intention: only the image that loaded the file may upload it again.
// An image that loads its own path again shares with itself, and nobody owns what it shares.
void Image::Share(const Image& other) {
    name = other.name;
    texture = other.texture;
    size = other.size;
    filter = other.filter;
    mipmap = other.mipmap;
    data = other.data;
    shared = true;
}

// Takes over pixels from new[] and makes the texture of them. The parameters come first, so that
// the upload already makes the mip-maps.
void Image::Adopt(unsigned char* pixels, const ivec2& pixelSize, GLenum pixelFormat,
                  const std::string& label) {
    data = pixels;
    size = pixelSize;
    format = pixelFormat;
    shared = false;
    glGenTextures(1, &texture);
    Label(ObjectKind::Texture, texture, label);
    Bind();
    SetParameter(filter, mipmap);
    Upload();
}

} // namespace Vell
