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
    const size_t count = size_t(image.GetSize().x) * size_t(image.GetSize().y);
    return {image.GetData(), image.GetData() + count * size_t(pixelBytes)};
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

/// Loads every beginning of the file, from no byte to all but the last: whatever comes of it, the
/// image is either whole or empty. Returns how many loaded.
inline int LoadEveryBeginning(const std::string& file, const std::string& ending,
                              const Vell::ivec2& size) {
    const std::string bytes = ReadFile(file);
    int loaded = 0;
    for (size_t length = 0; length < bytes.size(); ++length) {
        SCOPED_TRACE(length);
        const std::string name = NewName(ending);
        WriteFile(name, bytes.substr(0, length));
        Vell::Image image;
        if (image.Load(name)) {
            ++loaded;
            EXPECT_EQ(image.GetSize(), size);
            EXPECT_NE(image.GetID(), 0u);
            EXPECT_NE(image.GetData(), nullptr);
        } else {
            ExpectEmpty(image);
        }
    }
    return loaded;
}
