#include "engine/render/pngfile.h"

#include <csetjmp>
#include <vector>

#include <png.h>

namespace Vell {

namespace {

constexpr int signatureBytes = 8; // a PNG file opens with these
constexpr int rgbBytes = DecodedPicture::rgbBytes;
constexpr int rgbaBytes = DecodedPicture::rgbaBytes;

// Deflate needs 2 bits for its longest run, 258 bytes.
constexpr std::size_t mostBytesAPngByte = 1032;

// For a chunk that is read; the longest, a palette, has 768 bytes. Pixels are read in pieces.
constexpr png_alloc_size_t mostChunkBytes = 1 << 20;

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

/// Steps over every chunk but those of the pixels, the palette and its transparency, whatever there
/// is in them: libpng would take memory for as much as a chunk says that it holds.
void SkipOtherChunks(png_structp png) {
    constexpr int allOthers = -1; // in place of a list
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, allOthers);
    png_set_chunk_malloc_max(png, mostChunkBytes);
}

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
void PointAtRows(std::vector<png_bytep>& rows, const DecodedPicture& picture,
                 std::size_t rowBytes) {
    rows.resize(static_cast<std::size_t>(picture.size.y));
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = picture.pixels.get() + (rows.size() - 1 - i) * rowBytes;
}

/// Decodes bottom row first. libpng may jump back into this function, so nothing in it has a
/// destructor to skip; `rows` belongs to the caller for that reason.
DecodeOutcome Decode(FILE* file, FitsCheck fits, PngReader& reader, std::vector<png_bytep>& rows,
                     DecodedPicture& picture) {
    if (setjmp(png_jmpbuf(reader.png)) != 0)
        return DecodeOutcome::Refused;
    png_init_io(reader.png, file);
    png_set_sig_bytes(reader.png, signatureBytes);
    SkipOtherChunks(reader.png);
    png_read_info(reader.png, reader.info);
    const std::size_t packedRow =
        png_get_rowbytes(reader.png, reader.info); // before the transforms
    AskForTransforms(reader.png, reader.info);
    const int pixelBytes = PixelBytes(reader.png, reader.info);
    if (pixelBytes == 0)
        return DecodeOutcome::Refused;
    const unsigned width = png_get_image_width(reader.png, reader.info);
    const unsigned height = png_get_image_height(reader.png, reader.info);
    if (!fits(width, height))
        return DecodeOutcome::TooLarge;
    if (!IsCredible(file,
                    static_cast<std::size_t>(width) * height * static_cast<std::size_t>(pixelBytes),
                    packedRow * height / mostBytesAPngByte))
        return DecodeOutcome::Refused;
    if (!picture.MakeRoom(width, height, pixelBytes))
        return DecodeOutcome::TooLarge;
    PointAtRows(rows, picture,
                static_cast<std::size_t>(picture.size.x) * static_cast<std::size_t>(pixelBytes));
    png_read_image(reader.png, rows.data());
    png_read_end(reader.png, nullptr);
    return DecodeOutcome::Decoded;
}

} // namespace

bool HasPngSignature(FILE* file) {
    unsigned char signature[signatureBytes];
    return std::fread(signature, 1, signatureBytes, file) == signatureBytes &&
           png_sig_cmp(signature, 0, signatureBytes) == 0;
}

DecodeOutcome DecodePng(FILE* file, FitsCheck fits, DecodedPicture& picture) {
    PngReader reader;
    if (reader.info == nullptr)
        return DecodeOutcome::Refused;
    std::vector<png_bytep> rows;
    return Decode(file, fits, reader, rows, picture);
}

} // namespace Vell
