#include "bench/yardstick_data.h"

#include "tools/picture/encode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <numbers>
#include <sstream>
#include <stdexcept>

#include <jpeglib.h>
#include <png.h>

namespace Yardstick {

namespace {

using Point = std::array<double, 3>;

// ------------------------------------------------------------------------------------- The town

constexpr int blocksASide = 10;
constexpr double blockSize = 400;
constexpr double quayHalf = 165;
constexpr double quayHeight = 6;
constexpr double seaBed = -40;

/// The same numbers between 0 and 1 in every run.
class Random {
public:
    double Next() {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) / 16777216.0;
    }
    double Between(double low, double high) { return low + (high - low) * Next(); }

private:
    std::uint32_t state = 2026;
};

/// Writes rectangles as triangles, each with a place of its own in the light map.
class Builder {
public:
    /// The rectangle from `at` along `right` and `up`, seen from where the two go round
    /// counter-clockwise, in `pieces` strips.
    void Rectangle(const Point& at, const Point& right, const Point& up, int pieces = 1) {
        const double slot = slots++ % 10'000;
        const Point normal = Across(right, up);
        for (int i = 0; i < pieces; ++i)
            for (const auto& [s, t] :
                 {std::array{0.0, 0.0}, std::array{1.0, 0.0}, std::array{1.0, 1.0},
                  std::array{0.0, 0.0}, std::array{1.0, 1.0}, std::array{0.0, 1.0}})
                Vertex(at, right, up, normal, (i + s) / pieces, t, slot);
    }

    /// The four sides of a box from (x0, z0) to (x1, z1).
    void Walls(double x0, double z0, double x1, double z1, double bottom, double top) {
        const double high = top - bottom;
        Rectangle({x0, bottom, z1}, {x1 - x0, 0, 0}, {0, high, 0});
        Rectangle({x1, bottom, z1}, {0, 0, z0 - z1}, {0, high, 0});
        Rectangle({x1, bottom, z0}, {x0 - x1, 0, 0}, {0, high, 0});
        Rectangle({x0, bottom, z0}, {0, 0, z1 - z0}, {0, high, 0});
    }

    void Flat(double x0, double z0, double x1, double z1, double y, int pieces = 1) {
        Rectangle({x0, y, z1}, {x1 - x0, 0, 0}, {0, 0, z0 - z1}, pieces);
    }

    std::string Text() const { return std::to_string(vertices) + "\n" + text.str(); }

private:
    static double Length(const Point& p) { return std::hypot(p[0], p[1], p[2]); }
    static Point Across(const Point& a, const Point& b) {
        const Point n = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                         a[0] * b[1] - a[1] * b[0]};
        return {n[0] / Length(n), n[1] / Length(n), n[2] / Length(n)};
    }
    void Vertex(const Point& at, const Point& right, const Point& up, const Point& normal, double s,
                double t, double slot) {
        constexpr double metresATexture = 256;
        const double column = std::fmod(slot, 100);
        const double row = std::floor(slot / 100);
        char line[200];
        std::snprintf(line, sizeof line, "%f %f %f %f %f %f %f %f %f %f\n",
                      at[0] + right[0] * s + up[0] * t, at[1] + right[1] * s + up[1] * t,
                      at[2] + right[2] * s + up[2] * t, normal[0], normal[1], normal[2],
                      s * Length(right) / metresATexture, t * Length(up) / metresATexture,
                      (column + 0.05 + 0.9 * s) / 100, (row + 0.05 + 0.9 * t) / 100);
        text << line;
        ++vertices;
    }

    std::ostringstream text;
    int vertices = 0;
    int slots = 0;
};

/// One block of 600 vertices: sea bed, quay, and three rows of six houses, some of them towers.
void BuildBlock(Builder& town, Random& random, double x, double z) {
    constexpr double half = blockSize / 2;
    town.Flat(x - half, z - half, x + half, z + half, seaBed);
    town.Walls(x - quayHalf, z - quayHalf, x + quayHalf, z + quayHalf, seaBed, quayHeight);
    town.Flat(x - quayHalf, z - quayHalf, x + quayHalf, z + quayHalf, quayHeight, 5);
    for (int house = 0; house < 18; ++house) {
        const double middleX = x - quayHalf + 30 + house % 6 * 54.0;
        const double middleZ = z - quayHalf + 55 + std::floor(house / 6) * 110.0;
        const double wide = random.Between(14, 22);
        const double deep = random.Between(25, 45);
        const double low = random.Between(20, 110);
        const double high = random.Next() < 0.06 ? random.Between(180, 320) : low;
        const double roof = quayHeight + high;
        town.Walls(middleX - wide, middleZ - deep, middleX + wide, middleZ + deep, quayHeight,
                   roof);
        town.Flat(middleX - wide, middleZ - deep, middleX + wide, middleZ + deep, roof);
    }
}

std::string Town() {
    Builder town;
    Random random;
    for (int row = 0; row < blocksASide; ++row)
        for (int column = 0; column < blocksASide; ++column)
            BuildBlock(town, random, (column - 4.5) * blockSize, (row - 4.5) * blockSize);
    return town.Text();
}

// --------------------------------------------------------------------------------- The pictures

double Grain(int x, int y, int seed) {
    auto h = static_cast<std::uint32_t>(x) * 374761393u +
             static_cast<std::uint32_t>(y) * 668265263u +
             static_cast<std::uint32_t>(seed) * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return ((h ^ (h >> 16)) & 0xFFFFFF) / 16777216.0;
}

/// Smooth noise of several sizes, 0 to 1.
double Cloud(double x, double y, int seed, int octaves) {
    double sum = 0;
    double weight = 0.5;
    for (int i = 0; i < octaves; ++i, x *= 2.03, y *= 2.03, weight /= 2) {
        const double left = std::floor(x);
        const double top = std::floor(y);
        const auto ease = [](double f) { return f * f * (3 - 2 * f); };
        const auto at = [&](int across, int down) {
            return Grain(static_cast<int>(left) + across, static_cast<int>(top) + down, seed + i);
        };
        const double u = ease(x - left);
        const double v = ease(y - top);
        sum += weight *
               std::lerp(std::lerp(at(0, 0), at(1, 0), u), std::lerp(at(0, 1), at(1, 1), u), v);
    }
    return sum;
}

using Colour = std::array<double, 3>; // 0 to 255
using Painter = std::function<Colour(int x, int y)>;

Colour Wall(int x, int y) {
    const double stain = Cloud(x * 0.05, y * 0.05, 3, 5) * 60 + (Grain(x, y, 1) - 0.5) * 14;
    const bool window = x % 64 > 14 && x % 64 < 50 && y % 64 > 12 && y % 64 < 52;
    const double lit = Grain(x / 64, y / 64, 9);
    const double plain = 90 + 70 * Grain(x / 256, y / 256, 7);
    return window ? Colour{40 + 120 * lit + 0.3 * stain, 50 + 100 * lit + 0.3 * stain,
                           70 + 60 * lit + 0.3 * stain}
                  : Colour{plain + stain, 0.95 * plain + stain, 0.88 * plain + stain};
}

Colour Light(int x, int y) {
    const double bright = 90 + 165 * Cloud(x * 0.03, y * 0.03, 21, 4);
    return {1.02 * bright, bright, 0.93 * bright};
}

Colour Waves(int x, int y) {
    constexpr double k = 2 * std::numbers::pi / 256;
    const double across = std::cos(k * (3 * x + 2 * y)) + std::cos(k * (5 * x - 4 * y));
    const double along = std::cos(k * (2 * y - 3 * x)) + std::cos(k * (4 * y + 6 * x));
    return {128 + 50 * across, 128 + 50 * along, 230};
}

Colour Sky(int x, int y, int face) {
    const double cloud = std::max(0.0, Cloud(x * 0.008, y * 0.008, 50 + face, 7) - 0.42) * 2;
    const double grain = (Grain(x, y, 77) - 0.5) * 6;
    return {std::lerp(90.0, 245.0, cloud) + grain, std::lerp(130.0, 240.0, cloud) + grain,
            std::lerp(200.0, 235.0, cloud) + grain};
}

/// What is to be painted.
struct Sheet {
    std::string name;
    int size; // pixels a side
    Painter paint;
};

std::vector<Sheet> Sheets() {
    std::vector<Sheet> sheets = {
        {"wall.jpg", 2048, Wall}, {"light.png", 1024, Light}, {"normals.png", 256, Waves}};
    for (int face = 0; face < 6; ++face)
        sheets.push_back({"sky" + std::to_string(face) + ".jpg", 1024,
                          [face](int x, int y) { return Sky(x, y, face); }});
    return sheets;
}

struct FileCloser {
    void operator()(FILE* file) const {
        static_cast<void>(std::fclose(file)); // what is short does not decode
    }
};
using File = std::unique_ptr<FILE, FileCloser>;

File Opened(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode));
    if (!file)
        throw std::runtime_error(path + ": cannot be opened");
    return file;
}

void Paint(const Sheet& sheet, const std::string& path) {
    constexpr int quality = 90;
    std::vector<unsigned char> bytes;
    for (int y = 0; y < sheet.size; ++y)
        for (int x = 0; x < sheet.size; ++x)
            for (const double value : sheet.paint(x, y))
                bytes.push_back(static_cast<unsigned char>(std::clamp(value, 0.0, 255.0)));
    const Tools::Pixels pixels{sheet.size, sheet.size, 3, bytes.data()};
    const File file = Opened(path, "wb");
    if (path.ends_with(".jpg")) {
        Tools::WriteJpeg(file.get(), pixels, quality);
        return;
    }
    const std::vector<unsigned char> png = Tools::PngOf(pixels);
    if (std::fwrite(png.data(), 1, png.size(), file.get()) != png.size())
        throw std::runtime_error(path + ": cannot be written");
}

// ---------------------------------------------------------------------------------------- Reading

constexpr std::size_t bytesAPixel = 4;

Picture ReadJpeg(const std::string& path) {
    const File file = Opened(path, "rb");
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, file.get());
    jpeg_read_header(&jpeg, TRUE);
    jpeg.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&jpeg);
    Picture picture{static_cast<int>(jpeg.output_width), static_cast<int>(jpeg.output_height), {}};
    const std::size_t rowBytes = jpeg.output_width * bytesAPixel;
    picture.bytes.resize(rowBytes * jpeg.output_height);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = picture.bytes.data() + jpeg.output_scanline * rowBytes;
        jpeg_read_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_decompress(&jpeg);
    jpeg_destroy_decompress(&jpeg);
    return picture;
}

Picture ReadPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error(path + ": " + image.message);
    image.format = PNG_FORMAT_BGRA;
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.bytes.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, picture.bytes.data(), 0, nullptr) == 0)
        throw std::runtime_error(path + ": " + image.message);
    return picture;
}

} // namespace

bool MakeData(const std::string& folder) {
    const std::string mesh = folder + "/town.mesh"; // the last to be made
    if (std::filesystem::exists(mesh))
        return false;
    std::filesystem::create_directories(folder);
    for (const Sheet& sheet : Sheets())
        Paint(sheet, folder + "/" + sheet.name);
    std::ofstream(mesh) << Town();
    return true;
}

std::vector<float> ReadMesh(const std::string& path) {
    const File file = Opened(path, "rb");
    std::string text(std::filesystem::file_size(path), '\0');
    if (std::fread(text.data(), 1, text.size(), file.get()) != text.size())
        throw std::runtime_error(path + ": cannot be read");
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t vertices = 0;
    at = std::from_chars(at, end, vertices).ptr;
    std::vector<float> numbers(vertices * floatsAVertex);
    for (float& number : numbers) {
        while (at != end && *at <= ' ')
            ++at;
        at = std::from_chars(at, end, number).ptr;
    }
    return numbers;
}

Picture ReadPicture(const std::string& path) {
    return path.ends_with(".jpg") ? ReadJpeg(path) : ReadPng(path);
}

std::vector<float> SkyCorners() {
    struct Face {
        std::array<float, 3> ahead, right, up;
    };
    constexpr Face faces[] = {
        {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}},  {{-1, 0, 0}, {0, 0, -1}, {0, 1, 0}},
        {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}},  {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}},
        {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}}, {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}}};
    constexpr float distance = 100;
    std::vector<float> corners;
    for (const Face& face : faces)
        for (const auto& [s, t] : {std::array{0.0f, 1.0f}, std::array{1.0f, 1.0f},
                                   std::array{1.0f, 0.0f}, std::array{0.0f, 0.0f}}) {
            for (std::size_t axis = 0; axis < 3; ++axis)
                corners.push_back(distance * (face.ahead[axis] + face.right[axis] * (2 * s - 1) +
                                              face.up[axis] * (1 - 2 * t)));
            corners.insert(corners.end(), {s, t});
        }
    return corners;
}

} // namespace Yardstick
