#include "engine/post/post_blur.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/fast2dquad.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

namespace Vell {

namespace {

// Out: the mean of nine samples, alpha included.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture; // never set, so it reads unit 0
uniform float offset;      // distance of the samples in texture coordinates

void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec4 sum = vec4(0.0);
    sum += texture2D(texture, st);
    sum += texture2D(texture, st + vec2(offset, 0.0));
    sum += texture2D(texture, st + vec2(-offset, 0.0));
    sum += texture2D(texture, st + vec2(0.0, offset));
    sum += texture2D(texture, st + vec2(0.0, -offset));
    sum += texture2D(texture, st + vec2(offset, offset));
    sum += texture2D(texture, st + vec2(offset, -offset));
    sum += texture2D(texture, st + vec2(-offset, -offset));
    sum += texture2D(texture, st + vec2(-offset, offset));
    gl_FragColor = sum / 9.0;
}
)glsl";

} // namespace

PostBlur::PostBlur() {
    shader.LoadToChar(passThroughVertexShader, fragmentSource);
    shader.SetLabel("blur");
    first.SetLabel("first blur target");
    second.SetLabel("second blur target");
    SetPass(passes);
    SetSizeRTT(SizeRTT);
    ClampTargets();
    SetOffset(offset);
}

void PostBlur::SetPass(int count) {
    passes = count;
}

void PostBlur::SetSizeRTT(int size) {
    SizeRTT = size;
    first.SetSize(ivec2(size, size));
    second.SetSize(ivec2(size, size));
}

void PostBlur::SetOffset(float distance) {
    offset = distance;
    shader.Enable();
    shader.Send("offset", distance);
    shader.Disable();
}

void PostBlur::Process(FBO* in, FBO* out) {
    TextureUnit::Enable(TextureUnit::surface);
    Copy(*in, first);
    for (int pass = 0; pass < passes; ++pass) {
        Filter(first, second);
        Filter(second, first);
    }
    Copy(first, *out);
    glDisable(GL_TEXTURE_2D);
}

// Samples beyond an edge repeat the edge instead of fetching from the opposite one.
void PostBlur::ClampTargets() {
    for (FBO* target : {&first, &second}) {
        glBindTexture(GL_TEXTURE_2D, target->GetColor());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    }
}

// Stretches `from` over the whole of `to`, with linear filtering where their sizes differ.
void PostBlur::Copy(FBO& from, FBO& to) {
    to.Enable();
    DrawFullScreen(from.GetColor());
    to.Disable();
}

void PostBlur::Filter(FBO& from, FBO& to) {
    to.Enable();
    glBindTexture(GL_TEXTURE_2D, from.GetColor());
    shader.Enable();
    Fast2DQuad::GetInstance().Draw(vec2(1.0f));
    shader.Disable();
    to.Disable();
}

} // namespace Vell
