#include "tools/explain/framerecord.h"

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

/// Records the last of the frames that it wants.
class FrameReader : public Stage::Visitor {
public:
    explicit FrameReader(FrameRecord& target) : record(target) {}

    bool Wants(int number) override { return number >= record.frame - warmingUp; }
    void Begin(int number) override {
        if (number == record.frame)
            recorder.BeginFrame();
    }
    void End(int number) override {
        if (number == record.frame)
            Take();
    }

private:
    void Take() {
        recorder.EndFrame();
        record.passes = recorder.Take();
        record.view = recorder.LastView();
        record.lowestBand = Stage::LowestBand();
        record.renderer = GlString(GL_RENDERER) + ", OpenGL " + GlString(GL_VERSION);
        for (const Passes::Pass& pass : record.passes)
            for (const Passes::Input& input : pass.inputs)
                TakeTexture(input.texture);
    }

    void TakeTexture(GLuint texture) {
        if (!Stage::FindTexture(texture).picture || record.textures.count(texture) != 0)
            return;
        const Picture whole = ReadTexturePicture(texture);
        const int factor = FactorFor(whole.width, whole.height, textureSide, textureSide);
        record.textures[texture] = Shrunk(whole, factor);
    }

    FrameRecord& record;
    Passes::PassRecorder recorder{Passes::Detail::Everything};
};

} // namespace

FrameRecord RecordFrame(const Stage::Rate& rate, int frame) {
    FrameRecord record;
    record.frame = frame;
    record.rate = rate;
    record.time = rate.Seconds(frame);
    FrameReader reader(record);
    Stage::PlayShow(rate, frame, reader);
    return record;
}

} // namespace Explain
