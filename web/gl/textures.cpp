#include "web/gl/textures.h"

#include "web/gl/errors.h"
#include "web/gl/es.h"
#include "web/gl/textureformats.h"

#include <algorithm>

namespace WebGL {

namespace {

bool NeedsLevels(GLint filter) {
    return filter != GL_NEAREST && filter != GL_LINEAR;
}

GLint EsWrap(GLint wrap) {
    return wrap == GL_CLAMP || wrap == GL_CLAMP_TO_BORDER ? GL_CLAMP_TO_EDGE : wrap;
}

bool HasAllLevels(const std::vector<TextureLevel>& levels) {
    GLsizei size = std::max(levels[0].width, levels[0].height);
    std::size_t needed = 1;
    for (; size > 1; size /= 2)
        ++needed;
    return levels.size() >= needed;
}

} // namespace

bool Texture::IsDepth() const {
    return !levels.empty() && levels[0].base == GL_DEPTH_COMPONENT;
}

bool Texture::IsAlpha() const {
    return !levels.empty() && levels[0].base == GL_ALPHA;
}

bool Texture::Complete() const {
    if (levels.empty() || levels[0].width == 0)
        return false;
    return !NeedsLevels(minFilter) || HasAllLevels(levels);
}

void Textures::Generate(GLsizei count, GLuint* names) {
    Es::GenTextures(count, names);
}

void Textures::Delete(GLuint name) {
    if (name == 0)
        return;
    Es::DeleteTextures(1, &name);
    all.erase(name);
    for (TextureUnit& unit : units)
        if (unit.bound == name)
            unit.bound = 0;
    std::replace(sent.begin(), sent.end(), name, 0U); // as OpenGL ES has done
}

// Texture 0 is one in OpenGL as well, but nothing in WebGL.
void Textures::MakeDefault(Texture& texture) {
    Es::GenTextures(1, &texture.esName);
    Activate();
    SendParameters(texture);
}

void Textures::SendParameters(const Texture& texture) {
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, texture.minFilter);
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, texture.magFilter);
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, EsWrap(texture.wrapS));
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, EsWrap(texture.wrapT));
}

void Textures::Send(std::size_t unit, GLuint instead) {
    Texture& texture = Get(units[unit].bound);
    if (units[unit].bound != 0)
        texture.esName = units[unit].bound;
    const GLuint wanted = instead != 0 ? instead : texture.esName;
    if (sent[unit] == wanted)
        return;
    if (sentActive != unit)
        Es::ActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    sentActive = unit;
    Es::BindTexture(GL_TEXTURE_2D, wanted);
    sent[unit] = wanted;
}

bool Textures::IsGrey(std::size_t unit) {
    const auto found = all.find(units[unit].bound);
    return found != all.end() && found->second.IsDepth() && found->second.depthMode == GL_LUMINANCE;
}

void Textures::SendUnpack(const PixelStore& store) {
    const auto send = [](GLenum name, GLint value, GLint& last) {
        if (value != last)
            Es::PixelStorei(name, value);
        last = value;
    };
    send(GL_UNPACK_ALIGNMENT, store.alignment, sentUnpack.alignment);
    send(GL_UNPACK_ROW_LENGTH, store.rowLength, sentUnpack.rowLength);
    send(GL_UNPACK_SKIP_ROWS, store.skipRows, sentUnpack.skipRows);
    send(GL_UNPACK_SKIP_PIXELS, store.skipPixels, sentUnpack.skipPixels);
}

void Textures::SetImage(GLint level, GLint internalFormat, const PixelArea& area,
                        const void* pixels) {
    Texture& texture = Bound();
    if (texture.esName == 0 && Active().bound == 0)
        MakeDefault(texture);
    const TextureLevel as = LevelFor(internalFormat, area);
    if (as.base == 0) {
        errors.Raise(GL_INVALID_VALUE);
        return;
    }
    const auto place = static_cast<std::size_t>(level);
    texture.levels.resize(std::max(texture.levels.size(), place + 1));
    texture.levels[place] = as;
    Activate();
    if (as.base == GL_DEPTH_COMPONENT)
        UploadDepth(level, as, area, pixels);
    else
        UploadColor(level, as, area, pixels);
    errors.Suspect();
    SendFilter(texture);
    if (texture.generateMipmap && level == 0 && pixels != nullptr)
        GenerateMipmap();
}

void Textures::UploadDepth(GLint level, const TextureLevel& as, const PixelArea& area,
                           const void* pixels) {
    SendUnpack(PixelStore());
    std::vector<std::uint32_t> depths;
    if (pixels != nullptr)
        depths = ToDepth(pixels, area);
    Es::TexImage2D(GL_TEXTURE_2D, level, GL_DEPTH_COMPONENT24, as.width, as.height, 0,
                   GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, depths.empty() ? nullptr : depths.data());
}

void Textures::UploadColor(GLint level, const TextureLevel& as, const PixelArea& area,
                           const void* pixels) {
    const GLint sized = EsInternalFormat(as);
    if (pixels == nullptr || IsTakenAsItIs(as, area)) {
        SendUnpack(area.store);
        Es::TexImage2D(GL_TEXTURE_2D, level, sized, as.width, as.height, 0, as.esFormat,
                       GL_UNSIGNED_BYTE, pixels);
        return;
    }
    const std::vector<std::uint8_t> bytes = PixelsFor(as, area, pixels);
    SendUnpack(PixelStore{.alignment = 1});
    Es::TexImage2D(GL_TEXTURE_2D, level, sized, as.width, as.height, 0, as.esFormat,
                   GL_UNSIGNED_BYTE, bytes.data());
}

void Textures::SetPart(GLint level, GLint x, GLint y, const PixelArea& area, const void* pixels) {
    Texture& texture = Bound();
    const auto place = static_cast<std::size_t>(level);
    if (place >= texture.levels.size() || PixelSize(area.format, area.type) == 0) {
        errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const TextureLevel& as = texture.levels[place];
    Activate();
    errors.Suspect();
    if (as.base == GL_DEPTH_COMPONENT) {
        SendUnpack(PixelStore());
        Es::TexSubImage2D(GL_TEXTURE_2D, level, x, y, area.width, area.height, GL_DEPTH_COMPONENT,
                          GL_UNSIGNED_INT, ToDepth(pixels, area).data());
        return;
    }
    const bool plain = IsTakenAsItIs(as, area);
    const std::vector<std::uint8_t> bytes =
        plain ? std::vector<std::uint8_t>() : PixelsFor(as, area, pixels);
    SendUnpack(plain ? area.store : PixelStore{.alignment = 1});
    Es::TexSubImage2D(GL_TEXTURE_2D, level, x, y, area.width, area.height, as.esFormat,
                      GL_UNSIGNED_BYTE, plain ? pixels : bytes.data());
    if (texture.generateMipmap && level == 0)
        GenerateMipmap();
}

void Textures::CopyPart(GLint level, const std::array<GLint, 4>& from, GLint toX, GLint toY) {
    Activate();
    Es::CopyTexSubImage2D(GL_TEXTURE_2D, level, toX, toY, from[0], from[1], from[2], from[3]);
    errors.Suspect();
    if (Bound().generateMipmap && level == 0)
        GenerateMipmap();
}

void Textures::GenerateMipmap() {
    Texture& texture = Bound();
    if (texture.levels.empty())
        return;
    Activate();
    Es::GenerateMipmap(GL_TEXTURE_2D);
    texture.levels.resize(1);
    for (TextureLevel next = texture.levels[0]; next.width > 1 || next.height > 1;) {
        next.width = std::max(next.width / 2, 1);
        next.height = std::max(next.height / 2, 1);
        texture.levels.push_back(next);
    }
}

// Depths are not mixed in OpenGL ES: a filter that mixes would make the texture incomplete.
void Textures::SendFilter(Texture& texture) {
    if (!texture.IsDepth() || (texture.minFilter == GL_NEAREST && texture.magFilter == GL_NEAREST))
        return;
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    Es::TexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
}

void Textures::Activate() {
    Send(active);
    if (sentActive == active)
        return;
    Es::ActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(active));
    sentActive = active;
}

void Textures::SetParameter(GLenum name, GLint value) {
    Texture& texture = Bound();
    if (name == GL_GENERATE_MIPMAP) {
        texture.generateMipmap = value != 0;
        return;
    }
    GLint* const kept = ParameterOf(texture, name);
    if (kept == nullptr) {
        if (FixedParameter(name) == nullptr)
            errors.Raise(GL_INVALID_ENUM);
        return;
    }
    if (*kept == value)
        return;
    *kept = value;
    const bool own = name == GL_DEPTH_TEXTURE_MODE;
    if (own || (texture.esName == 0 && Active().bound == 0))
        return;
    Activate();
    const bool wrap = name == GL_TEXTURE_WRAP_S || name == GL_TEXTURE_WRAP_T;
    Es::TexParameteri(GL_TEXTURE_2D, name, wrap ? EsWrap(value) : value);
    SendFilter(texture);
}

} // namespace WebGL
