#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec2.h"

#include <string>

namespace Vell {

/// A picture from a ".png" or ".jpg" file: its pixels in memory and one OpenGL texture of them.
///
/// Pixels: rows bottom-up without gaps, 3 (RGB) or 4 (RGBA) bytes each. A PNG keeps left and
/// right; a JPEG is turned by 180 degrees, so it is mirrored as well.
/// Shared: a path that was loaded before is not read again as long as the image lives that loaded
/// it. The later image points at the texture and pixels of the first, owns nothing, and must not
/// outlive it. Once the first is gone the file is read afresh.
/// Needs:  a current context on which InitEngine() succeeded.
class Image {
public:
    Image();

    /// Releases texture, with its label, and pixels and logs "FREE"; a shared image does neither.
    ~Image();

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    /// Loads the file, or shares what is registered under `path`; to be called once an image. A
    /// second file would forget the first without releasing it: others may share it. The same path
    /// once more makes the image share with itself: it then owns nothing, like every sharer, so its
    /// texture and pixels are never released and its end is not logged.
    /// The ending decides the format and is case-sensitive: ".png" or ".jpg", anything else is
    /// refused. Blanks in a path are part of it; one that is longer than the system takes (4,095
    /// bytes on Linux) counts as missing. Registers the path even when loading fails. Leaves the
    /// texture bound.
    /// True when there is a texture afterwards; false, with texture 0 and size (0, 0), otherwise.
    /// Logs "LOADED", or "ERROR" for a path that a mesh or a shader was loaded from, a wrong
    /// ending, a file that is missing, may not be read or is no regular one (a pipe is not waited
    /// for), a grey, CMYK or damaged JPEG, no PNG signature, and a picture wider or higher than the
    /// driver's largest texture (when the driver names one) or too large for the memory; other
    /// unsuitable PNG files (grey, damaged) fail without a row. A JPEG that breaks off behind its
    /// header loads as far as it goes, unless it promises more than `takenOnTrust` bytes and the
    /// file could not hold that (at a bit for each block of 8 x 8 samples; in arithmetic coding,
    /// never): such a file counts as damaged, and so does a JPEG of more than 100 scans. Whatever
    /// the file says, loading takes at most four times the bytes of the pixels and 64 MiB, beside
    /// what the driver takes: a PNG is read without its texts, profiles and other chunks that do
    /// not bear on the pixels.
    bool Load(const std::string& path);

    /// What Load calls by ending: decode and upload, without registry or "LOADED" row. The texture
    /// is labelled with the path.
    /// JPEG: colour only (the file's three components end as RGB).
    bool LoadJPG(const std::string& path);
    /// PNG: RGB, RGBA and palette pictures of any depth; transparency given as a colour or with
    /// the palette becomes alpha.
    bool LoadPNG(const std::string& path);

    /// Stores and applies the filter: 0 nearest, 1 linear, other values keep OpenGL's present one.
    /// `mipmap` lets OpenGL make mip-maps at every upload. Wrapping stays at OpenGL's repeat.
    /// Before Load this chooses what the loader applies. Leaves the texture bound.
    void SetParameter(int kind, bool withMipmaps);

    /// Uploads the pixels again after a caller changed them through GetData(); leaves the texture
    /// bound. To be called on the image that loaded the file, not on one that shares it.
    void Update();

    /// Binds the texture on the active texture unit.
    void Bind() const;

    /// Texture name; 0 when nothing was loaded.
    GLuint GetID() const { return texture; }
    /// The path given to Load.
    const std::string& GetName() const { return name; }
    /// The pixels, to read or to change; null when nothing was loaded. Owned by the first image.
    unsigned char* GetData() const { return data; }
    /// Width and height in pixels.
    ivec2 GetSize() const { return size; }

private:
    bool LoadByEnding(const std::string& path);
    void Share(const Image& other);
    void Upload() const;
    void Adopt(unsigned char* pixels, const ivec2& pixelSize, GLenum pixelFormat,
               const std::string& label);

    bool shared; // copied from the registry: owns nothing
    std::string name;
    int filter; // 0 nearest, 1 linear
    bool mipmap;
    ivec2 size;    // pixels
    GLenum format; // GL_RGB or GL_RGBA, inside and outside the texture
    GLuint texture;
    unsigned char* data; // new[]; size.x * size.y pixels
};

} // namespace Vell
