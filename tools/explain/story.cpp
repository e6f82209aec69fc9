#include "tools/explain/story.h"

#include "tools/explain/picture.h"
#include "tools/stage/show.h"

#include <algorithm>
#include <cmath>

namespace Explain {

namespace {

constexpr int textureSide = 64; // of a file's picture on the page, at most, in pixels

std::string GlString(GLenum name) {
    const auto* text = reinterpret_cast<const char*>(glGetString(name));
    return text ? text : "";
}

/// A driver compiles and uploads at the first use: frames before it that are drawn as well, so that
/// the times are those of a show under way.
constexpr int warmingUp = 5;

/// Takes the last of the frames that it wants apart.
class StoryTaker : public Stage::Visitor {
public:
    explicit StoryTaker(Story& told) : story(told) {}

    bool Wants(int number) override { return number >= story.frame - warmingUp; }
    void Begin(int number) override {
        if (number == story.frame)
            recorder.BeginFrame();
    }
    void End(int number) override {
        if (number == story.frame)
            Take();
    }

private:
    void Take() {
        recorder.EndFrame();
        story.passes = recorder.Take();
        story.view = recorder.LastView();
        story.flights = Stage::Flights();
        story.lowestBand = Stage::LowestBand();
        story.renderer = GlString(GL_RENDERER) + ", OpenGL " + GlString(GL_VERSION);
        for (const Passes::Pass& pass : story.passes)
            for (const Passes::Input& input : pass.inputs)
                TakeTexture(input.texture);
    }

    void TakeTexture(GLuint texture) {
        if (Stage::FindTexture(texture).file.empty() || story.textures.count(texture) != 0)
            return;
        const Picture whole = ReadTexturePicture(texture);
        const int factor = FactorFor(whole.width, whole.height, textureSide, textureSide);
        story.textures[texture] = Shrunk(whole, factor);
    }

    Story& story;
    Passes::PassRecorder recorder{Passes::Detail::Everything};
};

double Component(const Vell::vec3& v, int axis) {
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

double DistanceTo(const Stage::TracedFlight& flight, const Passes::View& view) {
    const double t = std::clamp(ProgressOn(flight, view), 0.0, 1.0);
    double squared = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        const double start = Component(flight.start, axis);
        const double way = Component(flight.end, axis) - start;
        squared += std::pow(view.eye[axis] - (start + t * way), 2);
    }
    return std::sqrt(squared);
}

} // namespace

Story TakeApart(const Stage::Rate& rate, int frame) {
    Story story;
    story.frame = frame;
    story.rate = rate;
    story.time = rate.Seconds(frame);
    StoryTaker taker(story);
    Stage::PlayShow(rate, frame, taker);
    return story;
}

std::size_t FlightOf(const Story& story) {
    const auto nearest = std::min_element(
        story.flights.begin(), story.flights.end(), [&](const auto& a, const auto& b) {
            return DistanceTo(a, story.view) < DistanceTo(b, story.view);
        });
    return static_cast<std::size_t>(nearest - story.flights.begin());
}

double ProgressOn(const Stage::TracedFlight& flight, const Passes::View& view) {
    double along = 0.0;
    double squared = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        const double start = Component(flight.start, axis);
        const double way = Component(flight.end, axis) - start;
        along += (view.eye[axis] - start) * way;
        squared += way * way;
    }
    return squared > 0.0 ? along / squared : 0.0;
}

} // namespace Explain
