#include "web/gl/pixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace WebGL {

namespace {

/// Which of red, green, blue and alpha (0 to 3) each value of a pixel is; `grey` stands for the
/// first three.
constexpr int grey = 4;

struct Format {
    GLenum name;
    int count;
    std::array<int, 4> channels;
};

constexpr Format formats[] = {
    {GL_RED, 1, {0}},
    {GL_GREEN, 1, {1}},
    {GL_BLUE, 1, {2}},
    {GL_ALPHA, 1, {3}},
    {GL_LUMINANCE, 1, {grey}},
    {GL_DEPTH_COMPONENT, 1, {0}},
    {GL_LUMINANCE_ALPHA, 2, {grey, 3}},
    {GL_RGB, 3, {0, 1, 2}},
    {GL_BGR, 3, {2, 1, 0}},
    {GL_RGBA, 4, {0, 1, 2, 3}},
    {GL_BGRA, 4, {2, 1, 0, 3}},
};

const Format* FindFormat(GLenum name) {
    const auto* const found = std::find_if(std::begin(formats), std::end(formats),
                                           [&](const Format& row) { return row.name == name; });
    return found != std::end(formats) ? found : nullptr;
}

template <class T>
double ReadAs(const unsigned char* from) {
    T value;
    std::memcpy(&value, from, sizeof(T));
    if constexpr (std::numeric_limits<T>::is_integer)
        return static_cast<double>(value) / static_cast<double>(std::numeric_limits<T>::max());
    else
        return static_cast<double>(value);
}

template <class T>
void WriteAs(unsigned char* to, double value) {
    T written;
    if constexpr (std::numeric_limits<T>::is_integer)
        written =
            static_cast<T>(std::lround(value * static_cast<double>(std::numeric_limits<T>::max())));
    else
        written = static_cast<T>(value);
    std::memcpy(to, &written, sizeof(T));
}

struct Type {
    GLenum name;
    std::size_t size;
    double (*read)(const unsigned char*); ///< 1 is full scale
    void (*write)(unsigned char*, double);
};

constexpr Type types[] = {
    {GL_UNSIGNED_BYTE, 1, ReadAs<GLubyte>, WriteAs<GLubyte>},
    {GL_BYTE, 1, ReadAs<GLbyte>, WriteAs<GLbyte>},
    {GL_UNSIGNED_SHORT, 2, ReadAs<GLushort>, WriteAs<GLushort>},
    {GL_SHORT, 2, ReadAs<GLshort>, WriteAs<GLshort>},
    {GL_UNSIGNED_INT, 4, ReadAs<GLuint>, WriteAs<GLuint>},
    {GL_INT, 4, ReadAs<GLint>, WriteAs<GLint>},
    {GL_FLOAT, 4, ReadAs<GLfloat>, WriteAs<GLfloat>},
};

const Type* FindType(GLenum name) {
    // Four bytes in one word, first value lowest: on these machines the same as four bytes.
    const GLenum plain = name == GL_UNSIGNED_INT_8_8_8_8_REV ? GL_UNSIGNED_BYTE : name;
    const auto* const found = std::find_if(std::begin(types), std::end(types),
                                           [&](const Type& row) { return row.name == plain; });
    return found != std::end(types) ? found : nullptr;
}

std::uint8_t Byte(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

void ReadPixel(const unsigned char* from, const Format& format, const Type& type,
               std::uint8_t* rgba) {
    for (int i = 0; i < format.count; ++i) {
        const std::uint8_t value = Byte(type.read(from + static_cast<std::size_t>(i) * type.size));
        const int channel = format.channels[static_cast<std::size_t>(i)];
        if (channel == grey)
            std::fill_n(rgba, 3, value);
        else
            rgba[channel] = value;
    }
}

void WritePixel(const std::uint8_t* rgba, const Format& format, const Type& type,
                unsigned char* to) {
    for (int i = 0; i < format.count; ++i) {
        const int channel = format.channels[static_cast<std::size_t>(i)];
        type.write(to + static_cast<std::size_t>(i) * type.size,
                   rgba[channel == grey ? 0 : channel] / 255.0);
    }
}

/// Calls work(place of the pixel in the memory, number of the pixel) for each.
template <class Work>
void ForEachPixel(const PixelArea& area, Work work) {
    const std::size_t size = PixelSize(area.format, area.type);
    std::size_t number = 0;
    for (GLsizei y = 0; y < area.height; ++y)
        for (GLsizei x = 0; x < area.width; ++x)
            work(RowStart(area, y) + static_cast<std::size_t>(x) * size, number++);
}

std::size_t PixelCount(const PixelArea& area) {
    return static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height);
}

} // namespace

std::size_t PixelSize(GLenum format, GLenum type) {
    const Format* const row = FindFormat(format);
    const Type* const kind = FindType(type);
    return row != nullptr && kind != nullptr ? static_cast<std::size_t>(row->count) * kind->size
                                             : 0;
}

std::size_t RowStart(const PixelArea& area, GLsizei y) {
    const auto& store = area.store;
    const auto pixels =
        static_cast<std::size_t>(store.rowLength > 0 ? store.rowLength : area.width);
    const auto alignment = static_cast<std::size_t>(store.alignment);
    const std::size_t size = PixelSize(area.format, area.type);
    const std::size_t row = (pixels * size + alignment - 1) / alignment * alignment;
    return static_cast<std::size_t>(store.skipRows + y) * row +
           static_cast<std::size_t>(store.skipPixels) * size;
}

std::vector<std::uint8_t> ToRgba(const void* pixels, const PixelArea& area) {
    std::vector<std::uint8_t> rgba(4 * PixelCount(area));
    const Format& format = *FindFormat(area.format);
    const Type& type = *FindType(area.type);
    const auto* const from = static_cast<const unsigned char*>(pixels);
    ForEachPixel(area, [&](std::size_t place, std::size_t number) {
        rgba[4 * number + 3] = 255;
        ReadPixel(from + place, format, type, &rgba[4 * number]);
    });
    return rgba;
}

void FromRgba(const std::vector<std::uint8_t>& rgba, void* pixels, const PixelArea& area) {
    const Format& format = *FindFormat(area.format);
    const Type& type = *FindType(area.type);
    auto* const to = static_cast<unsigned char*>(pixels);
    ForEachPixel(area, [&](std::size_t place, std::size_t number) {
        WritePixel(&rgba[4 * number], format, type, to + place);
    });
}

std::vector<std::uint32_t> ToDepth(const void* pixels, const PixelArea& area) {
    std::vector<std::uint32_t> depths(PixelCount(area));
    const Type& type = *FindType(area.type);
    const auto* const from = static_cast<const unsigned char*>(pixels);
    ForEachPixel(area, [&](std::size_t place, std::size_t number) {
        const double depth = std::clamp(type.read(from + place), 0.0, 1.0);
        depths[number] = static_cast<std::uint32_t>(std::llround(depth * 4294967295.0));
    });
    return depths;
}

} // namespace WebGL
