#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/core/fbo.h"
#include "tools/picture/picture.h"

#include <functional>
#include <iosfwd>
#include <vector>

#include <gtest/gtest.h>

/// A colour as read back from OpenGL, 0..255 per channel.
struct Rgba {
    int r = 0;
    int g = 0;
    int b = 0;
    int a = 255;

    bool operator==(const Rgba&) const = default;
};

void PrintTo(const Rgba& colour, std::ostream* out);

/// RGBA bytes, rows bottom-up as glReadPixels delivers them: At(0, 0) is the lower left pixel.
/// Other than a picture of the tools it has OpenGL's origin and an alpha, which passes are tested
/// for.
class Picture {
public:
    Picture() = default;
    Picture(int width, int height, Rgba fill = {0, 0, 0, 255});

    int Width() const { return width; }
    int Height() const { return height; }
    const unsigned char* Data() const { return bytes.data(); }
    unsigned char* Data() { return bytes.data(); }

    /// Throws std::out_of_range outside the picture.
    Rgba At(int x, int y) const;
    void Set(int x, int y, Rgba colour);

private:
    std::size_t Offset(int x, int y) const;

    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;
};

/// A picture whose pixel (x, y), counted from the lower left, is `colour(x, y)`.
Picture MakePicture(int width, int height, const std::function<Rgba(int x, int y)>& colour);

/// The same picture, its bottom row first, and opaque.
Picture BottomUp(const Tools::Picture& picture);

/// The lower left part of whatever framebuffer is bound for reading.
Picture ReadScreen(int width, int height);

/// Level 0 of a colour texture.
Picture ReadTexture(GLuint texture);

/// Level 0 of a depth texture, 0..1, rows bottom-up.
std::vector<float> ReadDepthTexture(GLuint texture);

/// A new RGBA texture without mip-maps, nearest filter, clamped; the caller deletes it.
GLuint UploadTexture(const Picture& picture);

/// Puts the picture into the target's colour texture. The sizes must agree.
void Fill(Vell::FBO& target, const Picture& picture);

/// True when every channel differs by at most `tolerance`.
::testing::AssertionResult Near(Rgba actual, Rgba expected, int tolerance = 0);

/// How far two pictures may differ; zero unless the test gives a reason.
struct Thresholds {
    double max = 0.0;     ///< largest difference of a channel, 0..255
    double mean = 0.0;    ///< mean difference over all channels, 0..255
    double failing = 0.0; ///< fraction of pixels that may exceed `max`, 0..1
};

/// Compares two pictures; on failure names the worst pixels and writes "<test>_actual.png",
/// "_expected.png" and "_difference.png" (eight times enlarged in value) into the folder named by
/// the environment variable VELL_TEST_OUTPUT, or into the system's temporary folder.
::testing::AssertionResult Matches(const Picture& actual, const Picture& expected,
                                   const Thresholds& allowed = {});

/// Writes the picture as a PNG, the right way up.
void WritePicture(const std::string& path, const Picture& picture);
