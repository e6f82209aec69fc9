// Between files of 8 bits and pictures in floats; the picture itself is in picture.cpp.
#include "art/common/picture.h"

#include "tools/picture/decode.h"
#include "tools/picture/encode.h"

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

namespace Art {

namespace {

struct CloseFile {
    void operator()(FILE* file) const {
        static_cast<void>(std::fclose(file)); // what was written has been flushed
    }
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
        static_cast<void>(std::remove(beside.c_str()));
        return Complain(path, "was not written whole");
    }
    return true;
}

Picture FromDecoded(const Tools::DecodedPicture& decoded, int channels) {
    Picture picture(decoded.width, decoded.height);
    const std::uint8_t* p = decoded.bytes.data();
    for (int y = 0; y < decoded.height; ++y) {
        for (int x = 0; x < decoded.width; ++x, p += channels) {
            const float alpha = channels == 4 ? static_cast<float>(p[3]) / 255 : 1;
            picture.At(x, y) = {static_cast<float>(p[0]) / 255, static_cast<float>(p[1]) / 255,
                                static_cast<float>(p[2]) / 255, alpha};
        }
    }
    return picture;
}

/// Left and right exchanged.
Picture MirroredLeftRight(const Picture& p) {
    Picture result(p.Width(), p.Height());
    for (int y = 0; y < p.Height(); ++y)
        for (int x = 0; x < p.Width(); ++x)
            result.At(x, y) = p.At(p.Width() - 1 - x, y);
    return result;
}

bool WriteStyled(const std::string& path, const Picture& picture, int channels,
                 const Tools::PngStyle& style, Depth depth) {
    if (picture.Width() == 0 || (channels != 3 && channels != 4))
        return Complain(path, "expected a picture of 3 or 4 channels");
    const std::vector<std::uint8_t> bytes = Bytes(picture, channels, depth);
    const std::vector<std::uint8_t> png =
        Tools::PngOf({picture.Width(), picture.Height(), channels, bytes.data()}, style);
    return WriteBeside(path, [&](FILE* file) {
        return std::fwrite(png.data(), 1, png.size(), file) == png.size();
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
    return WriteStyled(path, picture, channels, {.level = 9, .marked = false}, depth);
}

bool WriteEnginePng(const std::string& path, const Picture& picture, int channels, Depth depth) {
    return WriteStyled(path, picture, channels, {.level = 0, .marked = false}, depth);
}

Picture ReadPicture(const std::string& path) {
    try {
        return path.ends_with(".jpg") ? FromDecoded(Tools::DecodeJpeg(path), 3)
                                      : FromDecoded(Tools::DecodePng(path, 4), 4);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return {};
    }
}

Picture ReadAsEngine(const std::string& path) {
    const Picture picture = ReadPicture(path);
    return path.ends_with(".jpg") ? MirroredLeftRight(picture) : picture;
}

} // namespace Art
