#include "web/gl/reading.h"

#include "web/gl/context.h"
#include "web/gl/es.h"

#include <cstring>
#include <utility>

namespace WebGL {

namespace {

/// Red, green, blue and alpha of a rectangle, row after row.
std::vector<std::uint8_t> ReadRgba(GLint x, GLint y, const PixelArea& area) {
    std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(area.width) *
                                   static_cast<std::size_t>(area.height));
    Es::ReadPixels(x, y, area.width, area.height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    return rgba;
}

/// Mesa lets depths be read; WebGL does not, and then the call is wrong.
void ReadDepth(GLint x, GLint y, const PixelArea& area, void* pixels) {
    const auto* const extensions = reinterpret_cast<const char*>(Es::GetString(GL_EXTENSIONS));
    if (extensions == nullptr || std::strstr(extensions, "GL_NV_read_depth") == nullptr ||
        area.type != GL_FLOAT) {
        Current().errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    Es::ReadPixels(x, y, area.width, area.height, GL_DEPTH_COMPONENT, GL_FLOAT, pixels);
    Current().errors.Suspect();
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
    if (place >= texture.levels.size() || texture.IsDepth() || texture.esName == 0) {
        context.errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const PixelArea area{texture.levels[place].width, texture.levels[place].height, format, type,
                         context.pack};
    GLuint framebuffer = 0;
    context.framebuffers.Generate(1, &framebuffer);
    const GLuint before = std::exchange(context.framebuffers.bound, framebuffer);
    context.framebuffers.Bind(GL_FRAMEBUFFER_EXT, framebuffer);
    context.framebuffers.Attach(GL_COLOR_ATTACHMENT0_EXT, {GL_TEXTURE_2D, texture.esName, level});
    ReadPixels(0, 0, area, pixels);
    context.framebuffers.Delete(framebuffer);
    context.framebuffers.bound = before;
}

} // namespace WebGL
