#include "tools/explain/picture.h"

#include "tools/stage/tracedobjects.h"

#include <algorithm>
#include <cmath>

namespace Explain {

namespace {

constexpr std::size_t pixelBytes = 4; // RGBA

std::string Base64(const std::vector<unsigned char>& bytes) {
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned int bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? bytes[i + k] : 0);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? digits[bits >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

/// First and last pixel, exclusive, that one of `count` pixels stands for.
struct Span {
    int begin;
    int end;
};

Span SpanOf(int index, int count, int factor, int whole) {
    return {index * factor, index + 1 == count ? whole : (index + 1) * factor};
}

unsigned char Mean(const Picture& picture, Span x, Span y, int channel) {
    int sum = 0;
    for (int row = y.begin; row < y.end; ++row)
        for (int column = x.begin; column < x.end; ++column)
            sum += picture.At(column, row)[channel];
    const int count = (x.end - x.begin) * (y.end - y.begin);
    return static_cast<unsigned char>((sum + count / 2) / count);
}

constexpr float untouchedDepth = 1.0f; // what glClear() leaves

/// Distance from the eye along the view, from a depth of 0 to 1.
double Distance(const Passes::Pass& pass, float depth) {
    const double n = pass.nearPlane;
    const double f = pass.farPlane;
    return n * f / (f - static_cast<double>(depth) * (f - n));
}

constexpr unsigned char nothing[] = {24, 34, 74};
constexpr double darkest = 30.0;
constexpr double brightest = 255.0;

unsigned char Grey(double distance, const DepthRange& range) {
    const double span = std::log(range.farthest / range.nearest);
    const double t = span > 0.0 ? std::log(distance / range.nearest) / span : 0.0;
    return static_cast<unsigned char>(std::lround(brightest + (darkest - brightest) * t));
}

} // namespace

std::string DataUri(const Picture& picture) {
    return "data:image/png;base64," + Base64(Tools::PngOf(picture));
}

Picture FromPixels(const std::vector<unsigned char>& pixels, int width, int height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::size_t from =
                static_cast<std::size_t>(height - 1 - y) * static_cast<std::size_t>(width) +
                static_cast<std::size_t>(x);
            std::copy_n(&pixels[from * pixelBytes], Picture::channels, picture.At(x, y));
        }
    return picture;
}

Picture Shrunk(const Picture& picture, int factor) {
    Picture shrunk(std::max(picture.width / factor, 1), std::max(picture.height / factor, 1));
    for (int y = 0; y < shrunk.height; ++y)
        for (int x = 0; x < shrunk.width; ++x)
            for (int channel = 0; channel < Picture::channels; ++channel)
                shrunk.At(x, y)[channel] =
                    Mean(picture, SpanOf(x, shrunk.width, factor, picture.width),
                         SpanOf(y, shrunk.height, factor, picture.height), channel);
    return shrunk;
}

Picture Rounded(const Picture& picture) {
    Picture rounded = picture;
    for (unsigned char& value : rounded.bytes) {
        const int level = (value * 63 + 127) / 255;
        value = static_cast<unsigned char>((level * 255 + 31) / 63);
    }
    return rounded;
}

int FactorFor(int width, int height, int mostWidth, int mostHeight) {
    return std::max(
        {1, (width + mostWidth - 1) / mostWidth, (height + mostHeight - 1) / mostHeight});
}

DepthRange RangeOf(const Passes::Pass& pass) {
    DepthRange range;
    std::size_t drawn = 0;
    for (const float depth : pass.depth) {
        if (depth >= untouchedDepth)
            continue;
        const double distance = Distance(pass, depth);
        range.nearest = drawn == 0 ? distance : std::min(range.nearest, distance);
        range.farthest = std::max(range.farthest, distance);
        ++drawn;
    }
    if (!pass.depth.empty())
        range.untouched = 1.0 - static_cast<double>(drawn) / static_cast<double>(pass.depth.size());
    return range;
}

Picture DepthPicture(const Passes::Pass& pass, const DepthRange& range) {
    Picture picture(pass.width, pass.height);
    for (int y = 0; y < pass.height; ++y)
        for (int x = 0; x < pass.width; ++x) {
            const std::size_t from = static_cast<std::size_t>(pass.height - 1 - y) *
                                         static_cast<std::size_t>(pass.width) +
                                     static_cast<std::size_t>(x);
            unsigned char* const to = picture.At(x, y);
            if (pass.depth[from] < untouchedDepth)
                std::fill_n(to, Picture::channels, Grey(Distance(pass, pass.depth[from]), range));
            else
                std::copy_n(nothing, Picture::channels, to);
        }
    return picture;
}

Picture ReadTexturePicture(GLuint texture) {
    const Stage::TracedTexture known = Stage::FindTexture(texture);
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(known.width) *
                                      static_cast<std::size_t>(known.height) * pixelBytes);
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(bound));
    return FromPixels(pixels, known.width, known.height);
}

} // namespace Explain
