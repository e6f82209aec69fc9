#pragma once

#include "tools/passes/passnames.h"
#include "tools/passes/passstate.h"
#include "tools/stage/trace.h"

#include <array>
#include <chrono>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Passes {

/// A uniform of a program, with what it held in one pass.
struct Uniform {
    std::string name;
    std::string type; ///< as GLSL writes it: "float", "vec3", "sampler2D"
    /// Each value that a drawing used, in order, without repetition of the one before.
    std::vector<std::vector<float>> values;
    std::string sent; ///< last: "in this pass", "earlier in this frame" or "before this frame"
};

/// A program that drew in a pass.
struct Program {
    GLuint program = 0;            ///< 0: OpenGL's fixed pipeline
    std::string name;              ///< label: its files, or what it is for
    std::vector<Uniform> uniforms; ///< in the driver's order
};

/// A texture that drawings of a pass could read.
struct Input {
    GLuint texture = 0;
    std::string name;   ///< label: its file, or whose colour or depth it is
    std::string reader; ///< the sampler, if a program reads it, and the texture unit
    int width = 0;      ///< pixels
    int height = 0;
    int pass = -1; ///< index of the pass of the same frame that wrote it last, or -1
};

/// A call that drew.
struct Draw {
    std::string call;
    int vertices = 0;
    int triangles = 0;
    int program = 0;                ///< index into the pass's programs
    std::vector<int> inputs;        ///< indices into the pass's inputs
    std::array<float, 4> colour{};  ///< OpenGL's current one
    std::vector<std::string> state; ///< in words, what is not as the demo has it at rest
};

/// What was drawn from one change of the target to the next.
struct Pass {
    std::string name;   ///< "scene"; the same in every frame, and each of a frame has its own
    std::string target; ///< where it went: "scene target", "screen"
    int width = 0;      ///< of the target, in pixels
    int height = 0;

    /// The colour that it left in the target: RGBA, 8 bits each, bottom row first, no padding.
    std::vector<unsigned char> pixels;

    // From here on: empty and 0 unless everything is recorded.

    /// The depth that it left, 0 to 1, bottom row first; empty when it neither wrote nor cleared
    /// it.
    std::vector<float> depth;
    double nearPlane = 0.0; ///< of the view that wrote the depth, in world units
    double farPlane = 0.0;

    double milliseconds =
        0.0; ///< from glFinish() before the first call to glFinish() after the last
    std::vector<std::string> clears; ///< "colour and depth", one a call
    std::vector<Draw> draws;
    std::vector<Program> programs;
    std::vector<Input> inputs;

    GLuint colourTexture = 0; ///< 0 for the screen
    GLuint depthTexture = 0;  ///< 0 for none
};

/// Sums over the calls of a pass.
int Vertices(const Pass& pass);
int Triangles(const Pass& pass);

/// A camera as it was set last: points in world units.
struct View {
    double eye[3] = {};
    double centre[3] = {};
};

/// How much a recorder keeps of a frame.
enum class Detail {
    Colours,   ///< each pass's name, target, size and pixels
    Everything ///< all that Pass can hold
};

/// Takes a frame apart into its passes while it is drawn, without a change to its picture.
///
/// Use: BeginFrame() and EndFrame() from Visitor::Begin() and End(), then Take(). One recorder at a
/// time, on the thread that draws. Programs, targets and textures are called by their labels
/// (engine/core/labels.h), the texts of programs and the sizes of targets count for nothing.
class PassRecorder : private Stage::Watcher {
public:
    explicit PassRecorder(Detail newDetail) : detail(newDetail) {}
    ~PassRecorder() override;
    PassRecorder(const PassRecorder&) = delete;
    PassRecorder& operator=(const PassRecorder&) = delete;

    /// From here on calls belong to the frame. What an earlier frame left is forgotten.
    void BeginFrame();

    /// Up to here. Reads the last pass's colours.
    void EndFrame();

    /// The frame's passes in order, without those that drew and cleared nothing. Empties the
    /// recorder.
    std::vector<Pass> Take();

    /// The camera of the frame's last view.
    const View& LastView() const { return view; }

private:
    using Clock = std::chrono::steady_clock;
    using Place = std::pair<GLuint, GLint>; // program and location of a uniform

    void LeavingTarget() override;
    void Drawing(const Stage::DrawCall& call) override;
    void Clearing(GLbitfield buffers) override;
    void UniformSent(GLint location) override;
    void LookingAt(const double* eye, const double* centre) override;

    void Open();
    void Close();
    void NoteFacts(const DrawState& state);
    void NoteDraw(const Stage::DrawCall& call, const DrawState& state);
    int ProgramIndex(GLuint program);
    void NoteUniforms(Program& program);
    std::string WhenSent(const Place& place) const;
    int InputIndex(const BoundTexture& bound);
    void ReadColours();
    void ReadDepth();

    const Detail detail;
    std::vector<Pass> passes; // the last one is still drawn into while `open`
    bool open = false;
    int part = 0; // of the frame: how often the target was left
    PassFacts facts;
    bool depthTouched = false;
    Clock::time_point begin;
    View view;
    std::map<Place, int> sent; // in which part of the frame, last
    std::set<GLuint> unread;   // programs that were sent something since their uniforms were read
};

} // namespace Passes
