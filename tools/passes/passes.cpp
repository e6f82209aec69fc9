#include "tools/passes/passes.h"

#include "engine/core/labels.h"
#include "tools/stage/tracedobjects.h"

#include <algorithm>
#include <tuple>

namespace Passes {

namespace {

using Vell::LabelOf;
using Vell::ObjectKind;

template <class Number>
int Sum(const Pass& pass, Number Draw::*number) {
    int sum = 0;
    for (const Draw& draw : pass.draws)
        sum += draw.*number;
    return sum;
}

std::string BuffersInWords(GLbitfield buffers) {
    const bool colour = (buffers & GL_COLOR_BUFFER_BIT) != 0;
    const bool depth = (buffers & GL_DEPTH_BUFFER_BIT) != 0;
    if (colour && depth)
        return "colour and depth";
    return colour ? "colour" : depth ? "depth" : "neither colour nor depth";
}

std::string SizeInWords(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

/// A display list that binds textures of its own reads no others.
std::vector<BoundTexture> TexturesOf(const Stage::DrawCall& call, const DrawState& state) {
    std::vector<BoundTexture> textures;
    for (const GLuint texture : Stage::FindList(call.list).textures)
        textures.emplace_back(texture, "display list");
    return textures.empty() ? ReadBoundTextures(state.program) : textures;
}

/// Which of the pass's buffers the texture is; null when it is none.
const char* BufferOf(const Pass& pass, GLuint texture) {
    if (texture == pass.colourTexture)
        return "colour";
    return texture == pass.depthTexture ? "depth" : nullptr;
}

std::string NameOf(const TargetNow& target) {
    if (target.framebuffer == 0)
        return "screen";
    const std::string& label = LabelOf(ObjectKind::Framebuffer, target.framebuffer);
    return label.empty() ? SizeInWords(target.width, target.height) + " target" : label;
}

std::string ProgramName(GLuint program) {
    if (program == 0)
        return fixedPipeline;
    const std::string& label = LabelOf(ObjectKind::Program, program);
    return label.empty() ? "program" : label;
}

/// A texture without pixels of its own is one to draw into.
std::string TextureName(const Input& input) {
    if (input.texture == 0)
        return "no texture";
    const Stage::TracedTexture texture = Stage::FindTexture(input.texture);
    std::string name = LabelOf(ObjectKind::Texture, input.texture);
    if (name.empty())
        name = SizeInWords(texture.width, texture.height) + " texture";
    return texture.picture || input.pass >= 0 ? name : name + ", not drawn in this frame";
}

} // namespace

int Vertices(const Pass& pass) {
    return Sum(pass, &Draw::vertices);
}

int Triangles(const Pass& pass) {
    return Sum(pass, &Draw::triangles);
}

PassRecorder::~PassRecorder() {
    if (Stage::watching == this)
        Stage::Watch(nullptr);
}

void PassRecorder::BeginFrame() {
    passes.clear();
    sent.clear();
    open = false;
    part = 0;
    facts = {};
    Stage::Watch(this);
}

void PassRecorder::EndFrame() {
    Stage::Watch(nullptr);
    Close();
}

std::vector<Pass> PassRecorder::Take() {
    return std::exchange(passes, {});
}

// ------------------------------------------------------------------------------ what is told

void PassRecorder::LeavingTarget() {
    Close();
    ++part;
}

// Overlays on the finished picture go to the same target; that they are blended tells them apart.
void PassRecorder::Drawing(const Stage::DrawCall& call) {
    const DrawState state = ReadDrawState();
    if (open && facts.screen && facts.draws > 0 && facts.blended != state.blend)
        LeavingTarget();
    Open();
    NoteFacts(state);
    NoteDraw(call, state);
}

void PassRecorder::Clearing(GLbitfield buffers) {
    Open();
    depthTouched |= (buffers & GL_DEPTH_BUFFER_BIT) != 0;
    passes.back().clears.push_back(BuffersInWords(buffers));
}

void PassRecorder::UniformSent(GLint location) {
    const GLuint program = ReadDrawState().program;
    sent[{program, location}] = part;
    unread.insert(program);
}

void PassRecorder::LookingAt(const double* eye, const double* centre) {
    std::copy_n(eye, 3, view.eye);
    std::copy_n(centre, 3, view.centre);
}

// ------------------------------------------------------------------------- a pass from end to end

void PassRecorder::Open() {
    if (open)
        return;
    open = true;
    depthTouched = false;
    const TargetNow target = ReadTarget();
    Pass pass;
    pass.width = target.width;
    pass.height = target.height;
    pass.colourTexture = target.colour;
    pass.depthTexture = target.depth;
    pass.target = NameOf(target);
    PassFacts fresh;
    fresh.screen = target.framebuffer == 0;
    fresh.target = LabelOf(ObjectKind::Framebuffer, target.framebuffer);
    for (const Pass& earlier : passes)
        fresh.before.push_back(earlier.name);
    facts = fresh;
    passes.push_back(std::move(pass));
    glFinish();
    begin = Clock::now();
}

void PassRecorder::Close() {
    if (!open)
        return;
    open = false;
    glFinish();
    const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
    passes.back().milliseconds = detail == Detail::Everything ? time.count() : 0.0;
    passes.back().name = NameOfPass(facts);
    ReadColours();
    if (detail == Detail::Everything)
        ReadDepth();
}

// The framebuffer of the pass is still bound.
void PassRecorder::ReadColours() {
    Pass& pass = passes.back();
    constexpr std::size_t pixelBytes = 4;
    pass.pixels.resize(static_cast<std::size_t>(pass.width) *
                       static_cast<std::size_t>(pass.height) * pixelBytes);
    glReadPixels(0, 0, pass.width, pass.height, GL_RGBA, GL_UNSIGNED_BYTE, pass.pixels.data());
}

void PassRecorder::ReadDepth() {
    Pass& pass = passes.back();
    if (!depthTouched)
        return;
    pass.depth.resize(static_cast<std::size_t>(pass.width) * static_cast<std::size_t>(pass.height));
    glReadPixels(0, 0, pass.width, pass.height, GL_DEPTH_COMPONENT, GL_FLOAT, pass.depth.data());
}

// -------------------------------------------------------------------------------------- a drawing

void PassRecorder::NoteFacts(const DrawState& state) {
    ++facts.draws;
    facts.depthTested |= state.depthTest;
    facts.blended = state.blend;
    const std::string name = ProgramName(state.program);
    if (std::find(facts.programs.begin(), facts.programs.end(), name) == facts.programs.end())
        facts.programs.push_back(name);
}

void PassRecorder::NoteDraw(const Stage::DrawCall& call, const DrawState& state) {
    depthTouched |= state.depthWritten;
    if (detail != Detail::Everything)
        return;
    Pass& pass = passes.back();
    if (state.depthWritten)
        std::tie(pass.nearPlane, pass.farPlane) = ReadClipPlanes();
    Draw draw;
    draw.call = call.function;
    draw.vertices = call.vertices;
    draw.triangles = call.triangles;
    draw.program = ProgramIndex(state.program);
    glGetFloatv(GL_CURRENT_COLOR, draw.colour.data());
    for (const BoundTexture& bound : TexturesOf(call, state))
        draw.inputs.push_back(InputIndex(bound));
    draw.state = UnusualState(pass.width, pass.height);
    pass.draws.push_back(std::move(draw));
}

int PassRecorder::ProgramIndex(GLuint program) {
    std::vector<Program>& programs = passes.back().programs;
    auto found = std::find_if(programs.begin(), programs.end(),
                              [&](const Program& known) { return known.program == program; });
    const bool fresh = found == programs.end();
    if (fresh)
        found = programs.insert(found, {program, ProgramName(program), {}});
    if (program != 0 && (fresh || unread.count(program) != 0))
        NoteUniforms(*found);
    return static_cast<int>(found - programs.begin());
}

void PassRecorder::NoteUniforms(Program& program) {
    const std::vector<UniformNow> now = ReadUniforms(program.program);
    program.uniforms.resize(now.size());
    for (std::size_t i = 0; i < now.size(); ++i) {
        Uniform& uniform = program.uniforms[i];
        uniform.name = now[i].name;
        uniform.type = now[i].type;
        uniform.sent = WhenSent({program.program, now[i].location});
        if (uniform.values.empty() || uniform.values.back() != now[i].value)
            uniform.values.push_back(now[i].value);
    }
    unread.erase(program.program);
}

std::string PassRecorder::WhenSent(const Place& place) const {
    const auto found = sent.find(place);
    if (found == sent.end())
        return "before this frame";
    return found->second == part ? "in this pass" : "earlier in this frame";
}

int PassRecorder::InputIndex(const BoundTexture& bound) {
    std::vector<Input>& inputs = passes.back().inputs;
    for (std::size_t i = 0; i < inputs.size(); ++i)
        if (inputs[i].texture == bound.first && inputs[i].reader == bound.second)
            return static_cast<int>(i);
    Input input;
    input.texture = bound.first;
    input.reader = bound.second;
    const Stage::TracedTexture texture = Stage::FindTexture(bound.first);
    input.width = texture.width;
    input.height = texture.height;
    for (std::size_t i = 0; i + 1 < passes.size(); ++i)
        if (BufferOf(passes[i], bound.first))
            input.pass = static_cast<int>(i);
    input.name = TextureName(input);
    inputs.push_back(std::move(input));
    return static_cast<int>(inputs.size()) - 1;
}

} // namespace Passes
