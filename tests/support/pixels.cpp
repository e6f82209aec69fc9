#include "tests/support/pixels.h"

#include "tests/support/scratch.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace {

constexpr int channels = 4;

/// What Matches() found out about two pictures of one size.
struct Comparison {
    double mean = 0.0;
    int max = 0;
    std::size_t failing = 0;
    int worstX = 0;
    int worstY = 0;
    Picture difference;
};

int WorstChannel(Rgba a, Rgba b) {
    return std::max(
        {std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b), std::abs(a.a - b.a)});
}

Rgba Enlarged(Rgba a, Rgba b) {
    const auto value = [](int p, int q) { return std::min(255, 8 * std::abs(p - q)); };
    return {value(a.r, b.r), value(a.g, b.g), value(a.b, b.b), 255};
}

Comparison Compare(const Picture& actual, const Picture& expected, double allowedMax) {
    Comparison found;
    found.difference = Picture(actual.Width(), actual.Height());
    for (int y = 0; y < actual.Height(); ++y)
        for (int x = 0; x < actual.Width(); ++x) {
            const Rgba a = actual.At(x, y);
            const Rgba e = expected.At(x, y);
            const int worst = WorstChannel(a, e);
            found.mean += std::abs(a.r - e.r) + std::abs(a.g - e.g) + std::abs(a.b - e.b) +
                          std::abs(a.a - e.a);
            found.failing += worst > allowedMax;
            if (worst > found.max) {
                found.max = worst;
                found.worstX = x;
                found.worstY = y;
            }
            found.difference.Set(x, y, Enlarged(a, e));
        }
    found.mean /= static_cast<double>(channels) * actual.Width() * actual.Height();
    return found;
}

std::string OutputName(const std::string& suffix) {
    const char* folder = std::getenv("VELL_TEST_OUTPUT");
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info ? std::string(info->test_suite_name()) + "_" + info->name() : "picture";
    std::replace(name.begin(), name.end(), '/', '_');
    const std::filesystem::path base =
        folder ? std::filesystem::path(folder) : std::filesystem::temp_directory_path();
    return (base / (name + suffix + ".png")).string();
}

::testing::AssertionResult Report(const Picture& actual, const Picture& expected,
                                  const Comparison& found, const Thresholds& allowed) {
    WritePicture(OutputName("_actual"), actual);
    WritePicture(OutputName("_expected"), expected);
    WritePicture(OutputName("_difference"), found.difference);
    const auto text = [](Rgba colour) {
        std::ostringstream out;
        PrintTo(colour, &out);
        return out.str();
    };
    return ::testing::AssertionFailure()
           << "largest difference " << found.max << " (allowed " << allowed.max << ") at ("
           << found.worstX << ", " << found.worstY << "): actual "
           << text(actual.At(found.worstX, found.worstY)) << ", expected "
           << text(expected.At(found.worstX, found.worstY)) << "; mean " << found.mean
           << " (allowed " << allowed.mean << "); " << found.failing
           << " pixels over the largest allowed difference; pictures in "
           << OutputName("_difference");
}

} // namespace

void PrintTo(const Rgba& colour, std::ostream* out) {
    *out << '(' << colour.r << ", " << colour.g << ", " << colour.b << ", " << colour.a << ')';
}

Picture::Picture(int pictureWidth, int pictureHeight, Rgba fill)
    : width(pictureWidth),
      height(pictureHeight),
      bytes(static_cast<std::size_t>(pictureWidth) * static_cast<std::size_t>(pictureHeight) *
            channels) {
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            Set(x, y, fill);
}

std::size_t Picture::Offset(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height)
        throw std::out_of_range("pixel (" + std::to_string(x) + ", " + std::to_string(y) +
                                ") of a picture of " + std::to_string(width) + " x " +
                                std::to_string(height));
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
            static_cast<std::size_t>(x)) *
           channels;
}

Rgba Picture::At(int x, int y) const {
    const unsigned char* p = bytes.data() + Offset(x, y);
    return {p[0], p[1], p[2], p[3]};
}

void Picture::Set(int x, int y, Rgba colour) {
    unsigned char* p = bytes.data() + Offset(x, y);
    p[0] = static_cast<unsigned char>(colour.r);
    p[1] = static_cast<unsigned char>(colour.g);
    p[2] = static_cast<unsigned char>(colour.b);
    p[3] = static_cast<unsigned char>(colour.a);
}

Picture MakePicture(int width, int height, const std::function<Rgba(int x, int y)>& colour) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.Set(x, y, colour(x, y));
    return picture;
}

Picture BottomUp(const Tools::Picture& picture) {
    return MakePicture(picture.width, picture.height, [&](int x, int y) {
        const unsigned char* pixel = picture.At(x, picture.height - 1 - y);
        return Rgba{pixel[0], pixel[1], pixel[2], 255};
    });
}

Picture ReadScreen(int width, int height) {
    Picture picture(width, height);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, picture.Data());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    return picture;
}

Picture ReadTexture(GLuint texture) {
    GLint previous = 0;
    GLint width = 0;
    GLint height = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    Picture picture(width, height);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, picture.Data());
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(previous));
    return picture;
}

std::vector<float> ReadDepthTexture(GLuint texture) {
    GLint previous = 0;
    GLint width = 0;
    GLint height = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    std::vector<float> depth(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    glGetTexImage(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(previous));
    return depth;
}

GLuint UploadTexture(const Picture& picture) {
    GLint previous = 0;
    GLuint texture = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    for (GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.Width(), picture.Height(), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, picture.Data());
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(previous));
    return texture;
}

void Fill(Vell::FBO& target, const Picture& picture) {
    const Vell::ivec2 size = target.GetSize();
    if (size.x != picture.Width() || size.y != picture.Height())
        throw std::invalid_argument("Fill: picture and target differ in size");
    GLint previous = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, target.GetColor());
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size.x, size.y, GL_RGBA, GL_UNSIGNED_BYTE,
                    picture.Data());
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(previous));
}

::testing::AssertionResult Near(Rgba actual, Rgba expected, int tolerance) {
    if (WorstChannel(actual, expected) <= tolerance)
        return ::testing::AssertionSuccess();
    ::testing::AssertionResult failure = ::testing::AssertionFailure();
    std::ostringstream text;
    text << "actual ";
    PrintTo(actual, &text);
    text << ", expected ";
    PrintTo(expected, &text);
    text << " within " << tolerance;
    return failure << text.str();
}

::testing::AssertionResult Matches(const Picture& actual, const Picture& expected,
                                   const Thresholds& allowed) {
    if (actual.Width() != expected.Width() || actual.Height() != expected.Height())
        return ::testing::AssertionFailure()
               << "actual is " << actual.Width() << " x " << actual.Height() << ", expected "
               << expected.Width() << " x " << expected.Height();
    const Comparison found = Compare(actual, expected, allowed.max);
    const double pixels = static_cast<double>(actual.Width()) * actual.Height();
    const bool within = static_cast<double>(found.failing) <= allowed.failing * pixels;
    // A mean threshold of zero means "judge by the largest difference alone".
    if (within && (allowed.mean == 0.0 || found.mean <= allowed.mean))
        return ::testing::AssertionSuccess();
    return Report(actual, expected, found, allowed);
}

void WritePicture(const std::string& path, const Picture& picture) {
    std::vector<unsigned char> bytes;
    bytes.reserve(static_cast<std::size_t>(picture.Width()) *
                  static_cast<std::size_t>(picture.Height()) * channels);
    const std::size_t row = static_cast<std::size_t>(picture.Width()) * channels;
    for (int y = picture.Height() - 1; y >= 0; --y) {
        const unsigned char* begin = picture.Data() + static_cast<std::size_t>(y) * row;
        bytes.insert(bytes.end(), begin, begin + row);
    }
    WritePng(path, picture.Width(), picture.Height(), channels, bytes);
}
