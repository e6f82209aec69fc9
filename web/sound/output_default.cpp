#include "sound/output_default.h"

#include "web/shell/page.h"

#include <cmath>

namespace Vell::Sound {

namespace {

/// What the page plays: it has the track's samples already (web/sound/decode.cpp) and knows the
/// audio clock.
class PageOutput : public Output {
public:
    explicit PageOutput(int framesPerSecond) : rate(framesPerSecond) { page_play_music(); }
    ~PageOutput() override { page_stop_music(); }
    PageOutput(const PageOutput&) = delete;
    PageOutput& operator=(const PageOutput&) = delete;

    std::int64_t FramesHeard() const override { return std::llround(page_seconds_heard() * rate); }

private:
    const int rate;
};

} // namespace

std::unique_ptr<Output> MakeDefaultOutput(std::shared_ptr<const Track> track) {
    return std::make_unique<PageOutput>(track->Rate());
}

} // namespace Vell::Sound
