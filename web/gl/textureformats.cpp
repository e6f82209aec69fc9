#include "web/gl/textureformats.h"

#include <algorithm>
#include <iterator>

#include <GL/glext.h>

namespace WebGL {

namespace {

struct BaseRow {
    GLenum internal;
    GLenum base;
};

constexpr BaseRow bases[] = {
    {1, GL_LUMINANCE},
    {2, GL_LUMINANCE_ALPHA},
    {3, GL_RGB},
    {4, GL_RGBA},
    {GL_ALPHA, GL_ALPHA},
    {GL_ALPHA8, GL_ALPHA},
    {GL_LUMINANCE, GL_LUMINANCE},
    {GL_LUMINANCE8, GL_LUMINANCE},
    {GL_LUMINANCE_ALPHA, GL_LUMINANCE_ALPHA},
    {GL_LUMINANCE8_ALPHA8, GL_LUMINANCE_ALPHA},
    {GL_INTENSITY, GL_INTENSITY},
    {GL_INTENSITY8, GL_INTENSITY},
    {GL_R3_G3_B2, GL_RGB},
    {GL_RGB4, GL_RGB},
    {GL_RGB5, GL_RGB},
    {GL_RGB, GL_RGB},
    {GL_RGB8, GL_RGB},
    {GL_RGB10, GL_RGB},
    {GL_RGB12, GL_RGB},
    {GL_RGB16, GL_RGB},
    {GL_RGBA2, GL_RGBA},
    {GL_RGBA4, GL_RGBA},
    {GL_RGB5_A1, GL_RGBA},
    {GL_RGBA, GL_RGBA},
    {GL_RGBA8, GL_RGBA},
    {GL_RGB10_A2, GL_RGBA},
    {GL_RGBA12, GL_RGBA},
    {GL_RGBA16, GL_RGBA},
    {GL_DEPTH_COMPONENT, GL_DEPTH_COMPONENT},
    {GL_DEPTH_COMPONENT16, GL_DEPTH_COMPONENT},
    {GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT},
    {GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT},
};

GLenum BaseOf(GLint internalFormat) {
    for (const BaseRow& row : bases)
        if (row.internal == static_cast<GLenum>(internalFormat))
            return row.base;
    return 0;
}

/// What a shader reads from a picture of this base, from what the pixels were given as.
void Spread(std::uint8_t* rgba, GLenum base) {
    if (base == GL_ALPHA)
        std::fill_n(rgba, 3, static_cast<std::uint8_t>(0));
    if (base == GL_LUMINANCE || base == GL_LUMINANCE_ALPHA || base == GL_INTENSITY)
        std::fill_n(rgba + 1, 2, rgba[0]);
    if (base == GL_INTENSITY)
        rgba[3] = rgba[0];
    if (base == GL_LUMINANCE || base == GL_RGB)
        rgba[3] = 255;
}

} // namespace

TextureLevel LevelFor(GLint internalFormat, const PixelArea& area) {
    const GLenum base = PixelSize(area.format, area.type) != 0 ? BaseOf(internalFormat) : 0;
    const GLenum format = base == GL_DEPTH_COMPONENT                ? GL_DEPTH_COMPONENT
                          : base == GL_RGB && area.format == GL_RGB ? GL_RGB
                                                                    : GL_RGBA;
    return {.width = area.width,
            .height = area.height,
            .internalFormat = internalFormat,
            .base = base,
            .esFormat = format};
}

GLint EsInternalFormat(const TextureLevel& level) {
    return level.esFormat == GL_RGB ? GL_RGB8 : GL_RGBA8;
}

bool IsTakenAsItIs(const TextureLevel& level, const PixelArea& area) {
    return level.base == level.esFormat && area.format == level.esFormat &&
           area.type == GL_UNSIGNED_BYTE;
}

std::vector<std::uint8_t> PixelsFor(const TextureLevel& level, const PixelArea& area,
                                    const void* pixels) {
    std::vector<std::uint8_t> rgba = ToRgba(pixels, area);
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        Spread(&rgba[i], level.base);
    if (level.esFormat != GL_RGB)
        return rgba;
    std::vector<std::uint8_t> rgb(rgba.size() / 4 * 3);
    const PixelArea tight{area.width, area.height, GL_RGB, GL_UNSIGNED_BYTE, {.alignment = 1}};
    FromRgba(rgba, rgb.data(), tight);
    return rgb;
}

GLint* ParameterOf(Texture& texture, GLenum name) {
    switch (name) {
    case GL_TEXTURE_MIN_FILTER:
        return &texture.minFilter;
    case GL_TEXTURE_MAG_FILTER:
        return &texture.magFilter;
    case GL_TEXTURE_WRAP_S:
        return &texture.wrapS;
    case GL_TEXTURE_WRAP_T:
        return &texture.wrapT;
    case GL_DEPTH_TEXTURE_MODE:
        return &texture.depthMode;
    default:
        return nullptr;
    }
}

const GLint* FixedParameter(GLenum name) {
    struct Row {
        GLenum name;
        GLint value;
    };
    static constexpr Row rows[] = {
        {GL_TEXTURE_PRIORITY, 1},           {GL_TEXTURE_WRAP_R, GL_REPEAT},
        {GL_TEXTURE_COMPARE_MODE, GL_NONE}, {GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL},
        {GL_TEXTURE_BASE_LEVEL, 0},         {GL_TEXTURE_MAX_LEVEL, 1000},
        {GL_TEXTURE_MIN_LOD, -1000},        {GL_TEXTURE_MAX_LOD, 1000},
        {GL_TEXTURE_MAX_ANISOTROPY_EXT, 1},
    };
    const auto* const found = std::find_if(std::begin(rows), std::end(rows),
                                           [&](const Row& row) { return row.name == name; });
    return found != std::end(rows) ? &found->value : nullptr;
}

} // namespace WebGL
