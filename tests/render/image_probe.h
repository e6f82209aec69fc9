#pragma once

#include "engine/render/image.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"

#include <string>
#include <vector>

// What the tests of the images share.

OPEN_PRIVATE(imageShared, &Vell::Image::shared);
OPEN_PRIVATE(imageName, &Vell::Image::name);
OPEN_PRIVATE(imageFilter, &Vell::Image::filter);
OPEN_PRIVATE(imageMipmap, &Vell::Image::mipmap);
OPEN_PRIVATE(imageSize, &Vell::Image::size);
OPEN_PRIVATE(imageFormat, &Vell::Image::format);
OPEN_PRIVATE(imageTexture, &Vell::Image::texture);
OPEN_PRIVATE(imageData, &Vell::Image::data);

namespace Vell {

struct ImageProbe {
    static bool Shared(const Image& image) { return image.*imageShared; }
    static int Filter(const Image& image) { return image.*imageFilter; }
    static bool Mipmap(const Image& image) { return image.*imageMipmap; }
    static GLenum Format(const Image& image) { return image.*imageFormat; }
    static std::vector<const void*> Fields(const Image& i) {
        return {&(i.*imageShared), &(i.*imageName),   &(i.*imageFilter),  &(i.*imageMipmap),
                &(i.*imageSize),   &(i.*imageFormat), &(i.*imageTexture), &(i.*imageData)};
    }
};

} // namespace Vell

using Rows = std::vector<LogRow>;
using Bytes = std::vector<unsigned char>;

/// A file name that no other test uses: the registry remembers paths longer than images live.
inline std::string NewName(const std::string& ending) {
    static int count = 0;
    return "image" + std::to_string(++count) + ending;
}

/// The image's pixels as it keeps them: rows bottom-up, without gaps.
inline Bytes Pixels(const Vell::Image& image, int pixelBytes) {
    const std::size_t count =
        static_cast<std::size_t>(image.GetSize().x) * static_cast<std::size_t>(image.GetSize().y);
    return {image.GetData(), image.GetData() + count * static_cast<std::size_t>(pixelBytes)};
}

/// What a failed load leaves.
inline void ExpectEmpty(const Vell::Image& image) {
    EXPECT_EQ(image.GetID(), 0u);
    EXPECT_EQ(image.GetData(), nullptr);
    EXPECT_EQ(image.GetSize(), Vell::ivec2(0, 0));
}

/// Expects that nothing is written to the terminal, where the libraries would complain about
/// damaged files.
class ExpectSilence {
public:
    ExpectSilence() { testing::internal::CaptureStderr(); }
    ~ExpectSilence() { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
    ExpectSilence(const ExpectSilence&) = delete;
    ExpectSilence& operator=(const ExpectSilence&) = delete;
};

/// Loads a file of these bytes: whatever comes of it, the image is either whole or empty. True when
/// it is whole.
inline bool LoadsOrStaysEmpty(const std::string& bytes, const std::string& ending) {
    const std::string name = NewName(ending);
    WriteFile(name, bytes);
    Vell::Image image;
    if (!image.Load(name)) {
        ExpectEmpty(image);
        return false;
    }
    EXPECT_NE(image.GetID(), 0u);
    EXPECT_NE(image.GetData(), nullptr);
    EXPECT_GT(image.GetSize().x * image.GetSize().y, 0);
    return true;
}

/// Loads every beginning of the file (or every so many bytes one), from no byte to all but the
/// last. Returns how many loaded.
inline int LoadEveryBeginning(const std::string& bytes, const std::string& ending,
                              std::size_t step = 1) {
    int loaded = 0;
    for (std::size_t length = 0; length < bytes.size(); length += step) {
        SCOPED_TRACE(length);
        loaded += LoadsOrStaysEmpty(bytes.substr(0, length), ending) ? 1 : 0;
    }
    return loaded;
}
