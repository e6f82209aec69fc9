// The page's program: the demo's own main(), played live, or stepped from outside as for a film.

#include "demo/show.h"
#include "tools/stage/show.h"
#include "web/shell/page.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

// The demo's main(), compiled under this name.
int NimbrelMain();

namespace {

/// Hands the frames that were asked for to the page.
class Pictures : public Stage::Visitor {
public:
    explicit Pictures(std::vector<int> frameNumbers) : numbers(std::move(frameNumbers)) {}

    bool Wants(int number) override {
        return std::binary_search(numbers.begin(), numbers.end(), number);
    }

    void End(int number) override {
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, Show::width, Show::height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        page_take_picture(number, pixels.data(), Show::width, Show::height);
    }

private:
    const std::vector<int> numbers; ///< rising
    std::vector<unsigned char> pixels =
        std::vector<unsigned char>(std::size_t{4} * Show::width * Show::height);
};

/// The frames of these moments, in seconds, as the film of 60 frames a second shows them.
int DrawMoments(int count, char** moments) {
    const Stage::Rate rate;
    std::vector<int> numbers;
    for (int i = 0; i < count; ++i)
        numbers.push_back(rate.FrameAt(std::atof(moments[i])));
    std::sort(numbers.begin(), numbers.end());
    try {
        Pictures pictures(numbers);
        Stage::PlayShow(rate, numbers.back(), pictures);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace

/// Without arguments the show; with moments their pictures. By exit(), for a main() that has been
/// away between two frames has nobody left to return to.
int main(int count, char** words) {
    if (count > 1)
        return DrawMoments(count - 1, words + 1);
    std::exit(NimbrelMain());
}
