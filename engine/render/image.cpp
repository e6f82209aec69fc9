#include "engine/render/image.h"

#include "engine/core/labels.h"
#include "engine/core/logmanager.h"
#include "engine/core/regularfile.h"
#include "engine/core/ressourcemanager.h"
#include "engine/render/jpegfile.h"
#include "engine/render/pngfile.h"

namespace Vell {

namespace {

void LogError(const std::string& path) {
    Log::GetInstance().Write("Image", "ERROR", path);
}

/// Whether the driver could take such a picture as a texture. One that names no limit is let try.
bool FitsTexture(unsigned width, unsigned height) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return largest <= 0 ||
           (width <= static_cast<unsigned>(largest) && height <= static_cast<unsigned>(largest));
}

} // namespace

Image::Image()
    : shared(false), filter(1), mipmap(true), size(0, 0), format(0), texture(0), data(nullptr) {}

// A failed image frees nothing, texture 0 and null being nothing, yet still logs that it ends.
Image::~Image() {
    RessourceManager::MarkDeleted(this);
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
    if (registry.IsTakenBy(RessourceKind::Image, path)) {
        Share(*static_cast<Image*>(registry.Get(path)));
        return texture != 0;
    }
    name = path;
    if (registry.IsTaken(path)) { // by a mesh or a shader, whose file is no picture
        LogError(path);
        return false;
    }
    // Before the outcome is known: a failed path stays taken, so that a missing file is tried, and
    // logged, once.
    registry.Register(this, path, RessourceKind::Image);
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
    const FileStream file = OpenRegularStream(path);
    DecodedPicture picture;
    if (file == nullptr || DecodeJpeg(file.get(), FitsTexture, picture) != DecodeOutcome::Decoded) {
        LogError(path);
        return false;
    }
    Adopt(picture.pixels.release(), picture.size, picture.format, path);
    return true;
}

bool Image::LoadPNG(const std::string& path) {
    const FileStream file = OpenRegularStream(path);
    if (file == nullptr || !HasPngSignature(file.get())) {
        LogError(path);
        return false;
    }
    DecodedPicture picture;
    const DecodeOutcome outcome = DecodePng(file.get(), FitsTexture, picture);
    if (outcome == DecodeOutcome::TooLarge)
        LogError(path);
    if (outcome != DecodeOutcome::Decoded)
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
