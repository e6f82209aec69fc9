#include "web/gl/reading.h"

#include "web/gl/context.h"
#include "web/gl/depthreading.h"
#include "web/gl/es.h"

#include <algorithm>
#include <utility>

namespace WebGL {

namespace {

/// The window has no alpha, whatever its picture underneath keeps: it reads as opaque.
void MakeOpaque(std::vector<std::uint8_t>& rgba) {
    for (std::size_t alpha = 3; alpha < rgba.size(); alpha += 4)
        rgba[alpha] = 255;
}

/// Red, green, blue and alpha of a rectangle, row after row.
std::vector<std::uint8_t> ReadRgba(GLint x, GLint y, const PixelArea& area) {
    std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(area.width) *
                                   static_cast<std::size_t>(area.height));
    Es::ReadPixels(x, y, area.width, area.height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    if (Current().framebuffers.bound == 0)
        MakeOpaque(rgba);
    return rgba;
}

/// Depths as the area's type has them.
void ReadDepth(GLint x, GLint y, const PixelArea& area, void* pixels) {
    if (area.type != GL_FLOAT && area.type != GL_UNSIGNED_INT) {
        Current().errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const std::vector<float> depths = ReadDepths(x, y, area.width, area.height);
    if (area.type == GL_FLOAT)
        std::copy(depths.begin(), depths.end(), static_cast<float*>(pixels));
    else
        std::transform(depths.begin(), depths.end(), static_cast<GLuint*>(pixels), [](float depth) {
            return static_cast<GLuint>(static_cast<double>(depth) * 4294967295.0);
        });
}

} // namespace

void ReadPixels(GLint x, GLint y, const PixelArea& area, void* pixels) {
    if (PixelSize(area.format, area.type) == 0) {
        Current().errors.Raise(GL_INVALID_ENUM);
        return;
    }
    if (!Current().framebuffers.Send())
        return;
    if (area.format == GL_DEPTH_COMPONENT)
        ReadDepth(x, y, area, pixels);
    else
        FromRgba(ReadRgba(x, y, area), pixels, area);
}

void ReadTexture(GLint level, GLenum format, GLenum type, void* pixels) {
    Context& context = Current();
    const Texture& texture = context.textures.Bound();
    const auto place = static_cast<std::size_t>(level);
    if (place >= texture.levels.size() || texture.esName == 0) {
        context.errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const PixelArea area{texture.levels[place].width, texture.levels[place].height, format, type,
                         context.pack};
    GLuint framebuffer = 0;
    context.framebuffers.Generate(1, &framebuffer);
    const GLuint before = std::exchange(context.framebuffers.bound, framebuffer);
    context.framebuffers.Bind(GL_FRAMEBUFFER_EXT, framebuffer);
    context.framebuffers.Attach(texture.IsDepth() ? GL_DEPTH_ATTACHMENT_EXT
                                                  : GL_COLOR_ATTACHMENT0_EXT,
                                {GL_TEXTURE_2D, texture.esName, level});
    ReadPixels(0, 0, area, pixels);
    context.framebuffers.Delete(framebuffer);
    context.framebuffers.bound = before;
}

} // namespace WebGL
