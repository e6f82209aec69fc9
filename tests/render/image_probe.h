#pragma once

#include "engine/render/image.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"

#include <string>
#include <vector>

// What the tests of the images share.

namespace Vell {

struct ImageProbe {
    static bool Shared(const Image& image) { return image.shared; }
    static int Filter(const Image& image) { return image.filter; }
    static bool Mipmap(const Image& image) { return image.mipmap; }
    static GLenum Format(const Image& image) { return image.format; }
    static std::vector<const void*> Fields(const Image& i) {
        return {&i.shared, &i.name, &i.filter, &i.mipmap, &i.size, &i.format, &i.texture, &i.data};
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
