#include "web/gl/pipeline.h"

#include "web/gl/es.h"

namespace WebGL {

namespace {

struct SwitchRow {
    GLenum capability;
    bool PipelineState::*value;
};

constexpr SwitchRow switches[] = {
    {GL_BLEND, &PipelineState::blend},
    {GL_DEPTH_TEST, &PipelineState::depthTest},
    {GL_CULL_FACE, &PipelineState::cullFace},
    {GL_SCISSOR_TEST, &PipelineState::scissorTest},
    {GL_POLYGON_OFFSET_FILL, &PipelineState::offsetFill},
    {GL_DITHER, &PipelineState::dither},
};

/// Whether a value has to be sent; from here on it counts as sent.
template <class T>
bool Changed(const T& wanted, T& sent) {
    if (wanted == sent)
        return false;
    sent = wanted;
    return true;
}

template <class T>
bool Changed(const T& wantedA, T& sentA, const T& wantedB, T& sentB) {
    const bool first = Changed(wantedA, sentA);
    return Changed(wantedB, sentB) || first;
}

} // namespace

void Pipeline::Begin(int width, int height) {
    wanted = PipelineState();
    wanted.viewport = {0, 0, width, height};
    wanted.scissor = {0, 0, width, height};
    sent = PipelineState(); // the places are sent with the first draw
}

bool* Pipeline::Switch(GLenum capability) {
    for (const SwitchRow& row : switches)
        if (row.capability == capability)
            return &(wanted.*row.value);
    return nullptr;
}

void Pipeline::Send() {
    SendSwitches();
    SendFragmentState();
    SendPlaces();
    SendValues();
}

void Pipeline::SendSwitches() {
    for (const SwitchRow& row : switches) {
        if (!Changed(wanted.*row.value, sent.*row.value))
            continue;
        if (wanted.*row.value)
            Es::Enable(row.capability);
        else
            Es::Disable(row.capability);
    }
}

// What a switched-off part is set to does not matter until it is switched on.
void Pipeline::SendFragmentState() {
    const PipelineState& w = wanted;
    if (w.blend &&
        Changed(w.blendSource, sent.blendSource, w.blendDestination, sent.blendDestination))
        Es::BlendFunc(w.blendSource, w.blendDestination);
    if (w.blend && Changed(w.blendEquation, sent.blendEquation))
        Es::BlendEquation(w.blendEquation);
    if (w.depthTest && Changed(w.depthFunction, sent.depthFunction))
        Es::DepthFunc(w.depthFunction);
    if (Changed(w.depthMask, sent.depthMask))
        Es::DepthMask(w.depthMask);
    if (Changed(w.colorMask, sent.colorMask))
        Es::ColorMask(w.colorMask[0], w.colorMask[1], w.colorMask[2], w.colorMask[3]);
}

void Pipeline::SendPlaces() {
    const auto& view = wanted.viewport;
    const auto& box = wanted.scissor;
    if (Changed(view, sent.viewport))
        Es::Viewport(view[0], view[1], view[2], view[3]);
    if (wanted.scissorTest && Changed(box, sent.scissor))
        Es::Scissor(box[0], box[1], box[2], box[3]);
}

void Pipeline::SendValues() {
    const PipelineState& w = wanted;
    if (w.cullFace && Changed(w.culledFace, sent.culledFace))
        Es::CullFace(w.culledFace);
    if (Changed(w.frontFace, sent.frontFace))
        Es::FrontFace(w.frontFace);
    if (Changed(w.clearColor, sent.clearColor))
        Es::ClearColor(w.clearColor[0], w.clearColor[1], w.clearColor[2], w.clearColor[3]);
    if (Changed(w.clearDepth, sent.clearDepth))
        Es::ClearDepthf(w.clearDepth);
    if (Changed(w.depthRange, sent.depthRange))
        Es::DepthRangef(w.depthRange[0], w.depthRange[1]);
    if (Changed(w.lineWidth, sent.lineWidth))
        Es::LineWidth(w.lineWidth);
    if (w.offsetFill && Changed(w.offsetFactor, sent.offsetFactor, w.offsetUnits, sent.offsetUnits))
        Es::PolygonOffset(w.offsetFactor, w.offsetUnits);
}

} // namespace WebGL
