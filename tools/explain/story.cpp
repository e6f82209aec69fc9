#include "tools/explain/story.h"

#include "tools/explain/picture.h"
#include "tools/stage/show.h"
#include "tools/stage/tracedobjects.h"

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
        story.lowestBand = Stage::LowestBand();
        story.renderer = GlString(GL_RENDERER) + ", OpenGL " + GlString(GL_VERSION);
        for (const Passes::Pass& pass : story.passes)
            for (const Passes::Input& input : pass.inputs)
                TakeTexture(input.texture);
    }

    void TakeTexture(GLuint texture) {
        if (!Stage::FindTexture(texture).picture || story.textures.count(texture) != 0)
            return;
        const Picture whole = ReadTexturePicture(texture);
        const int factor = FactorFor(whole.width, whole.height, textureSide, textureSide);
        story.textures[texture] = Shrunk(whole, factor);
    }

    Story& story;
    Passes::PassRecorder recorder{Passes::Detail::Everything};
};

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

} // namespace Explain
