#include "engine/env/shadowmapping.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/fast2dquad.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

namespace Vell {

namespace {

constexpr int defaultSize = 1024; // side of the light buffer, in texels

// The light's view: wide enough for a whole scene, and as deep as the camera's.
constexpr double lightFov = 120.0; // degrees
constexpr double lightNear = 1.0;

// The vertex stage of the shadow pass. Out: gl_TexCoord[0] for the surface's own texture;
// ShadowVertex, the place in the light buffer, from the vertex in object space: the node's own
// transform takes no part, on purpose: shadows fall right on meshes of unmoved nodes only.
const char shadowVertexSource[] = R"glsl(
#version 110

varying vec4 ShadowVertex;

void main()
{
    gl_Position = ftransform();
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex; // for passes with a user clip plane
    ShadowVertex = gl_TextureMatrix[0] * gl_Vertex;
}
)glsl";

// Out: red, green and blue 0 (lit) to 1 (in shadow), alpha from the surface's own texture so
// that the alpha test cuts the same holes as in the colour pass.
const char shadowFragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture0;    // the surface
uniform sampler2D lightbuffer; // depth from the light, 0 to 1
uniform int pass;              // reach of the samples in steps, at least 1
uniform float offset;          // one step: a texel of the light buffer

varying vec4 ShadowVertex;

// 1 when the light sees something nearer than this fragment at the given distance from it.
float Occluded(vec3 v, float x, float y)
{
    return texture2D(lightbuffer, v.xy + vec2(x, y)).z <= v.z ? 1.0 : 0.0;
}

void main()
{
    vec3 v = ShadowVertex.xyz / ShadowVertex.w;
    v.z -= 0.0001; // keeps lit surfaces from shading themselves

    // A cross and two diagonals. The second diagonal runs from the side, by (pass - i), on
    // purpose: it reaches twice as far, and soft edges are not symmetrical.
    float shadow = 0.0;
    for (int i = -pass; i < pass; ++i) {
        float d = float(i) * offset;
        shadow += Occluded(v, d, 0.0);
        shadow += Occluded(v, 0.0, d);
        shadow += Occluded(v, d, d);
        shadow += Occluded(v, float(pass - i) * offset, d);
    }
    // 8 pass samples over 4 pass: half of them are enough for a full shadow, for the target
    // stores at most 1. This is the softening that is wanted.
    shadow /= float(pass) * 4.0;

    float a = texture2D(texture0, gl_TexCoord[0].xy).a;
    gl_FragColor = vec4(shadow, shadow, shadow, a);
}
)glsl";

// Out: black, as opaque as the shadow is dark, to be blended over the scene.
const char compositeFragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture0; // red: share of shadow, 0 to 1
uniform float intensity;    // opacity of a full shadow, 0 to 1

void main()
{
    float shadow = texture2D(texture0, gl_TexCoord[0].xy).r;
    gl_FragColor = vec4(0.0, 0.0, 0.0, shadow * intensity);
}
)glsl";

// The aspect is divided as integers on purpose, as the screen's own ratio is: 1024 x 768 gives 1,
// and a screen higher than wide 0, with which nothing is in view of the light.
void PushLightProjection() {
    const ivec2 screen = GetScreen();
    const int aspect = screen.x / screen.y;
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPerspective(lightFov, aspect, lightNear, farPlane);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
}

} // namespace

ShadowMapping::ShadowMapping() {
    BuildShadowShader();
    BuildCompositeShader();
    lightBuffer.SetLabel("light buffer");
    shadowBuffer.SetLabel("shadow buffer");
    shadowBuffer.SetSize(GetScreen());
    SetSize(defaultSize);
}

ShadowMapping::~ShadowMapping() = default;

void ShadowMapping::SetLight(const vec3& position, const vec3& target) {
    light.Set(position, target);
    PushLightProjection();
    glLoadIdentity();
    light.Draw();
    glGetFloatv(GL_MODELVIEW_MATRIX, lightModelview.Get());
    glGetFloatv(GL_PROJECTION_MATRIX, lightProjection.Get());
    PopProjection();
}

void ShadowMapping::SetSize(int size) {
    lightBuffer.SetSize(ivec2(size, size));
    shadowShader.Enable();
    shadowShader.Send("offset", 1.0f / static_cast<float>(size));
    shadowShader.Disable();
}

void ShadowMapping::SetBlurPass(int count) {
    shadowShader.Enable();
    shadowShader.Send("pass", count);
    shadowShader.Disable();
}

void ShadowMapping::SetIntensity(float darkness) {
    intensity = darkness;
    compositeShader.Enable();
    compositeShader.Send("intensity", darkness);
    compositeShader.Disable();
}

void ShadowMapping::BeginLightDraw() {
    lightBuffer.Enable();
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    PushLightProjection();
    light.Draw();
}

void ShadowMapping::EndLightDraw() {
    PopProjection();
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    lightBuffer.Disable();
}

void ShadowMapping::BindShadowMap() {
    shadowBuffer.Enable();
    shadowShader.Enable();
    // From world space to the light buffer: the light's clip space, -1 to 1, moved to 0 to 1.
    glMatrixMode(GL_TEXTURE);
    glTranslated(0.5, 0.5, 0.5);
    glScaled(0.5, 0.5, 0.5);
    glMultMatrixf(lightProjection.Get());
    glMultMatrixf(lightModelview.Get());
    glMatrixMode(GL_MODELVIEW);
    TextureUnit::Enable(TextureUnit::shadowmap);
    glBindTexture(GL_TEXTURE_2D, lightBuffer.GetDepth());
}

void ShadowMapping::UnBindShadowMap() {
    TextureUnit::Disable(TextureUnit::shadowmap);
    glActiveTexture(GL_TEXTURE0);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    shadowShader.Disable();
    shadowBuffer.Disable();
}

void ShadowMapping::Draw(FBO* scene) {
    PushUnitProjection();
    glDisable(GL_DEPTH_TEST);
    compositeShader.Enable();
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    TextureUnit::Enable(TextureUnit::surface);
    glBindTexture(GL_TEXTURE_2D, shadowBuffer.GetColor());
    // The composite does not read the scene's depth, but finds it bound next to the shadow.
    TextureUnit::Enable(TextureUnit::sceneDepth);
    glBindTexture(GL_TEXTURE_2D, scene->GetDepth());
    Fast2DQuad::GetInstance().Draw(vec2(1.0f));
    TextureUnit::Disable(TextureUnit::sceneDepth);
    TextureUnit::Disable(TextureUnit::surface);
    glEnable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    compositeShader.Disable();
    glEnable(GL_DEPTH_TEST); // once more, on purpose, without effect
    PopProjection();
}

void ShadowMapping::BuildShadowShader() {
    shadowShader.LoadToChar(shadowVertexSource, shadowFragmentSource);
    shadowShader.SetLabel("shadow mapping: how much is shadowed");
    shadowShader.Enable();
    shadowShader.Send("texture0", TextureUnit::surface);
    shadowShader.Send("lightbuffer", TextureUnit::shadowmap);
    shadowShader.Send("pass", 1);
    shadowShader.Send("offset", 1.0f / static_cast<float>(defaultSize));
    shadowShader.Disable();
}

// The program starts at intensity 0.5 while the field says 1, on purpose: until SetIntensity() a
// full shadow darkens by half and the getter tells otherwise.
// It declares neither "depthmap" nor "offset"; OpenGL ignores both.
void ShadowMapping::BuildCompositeShader() {
    compositeShader.LoadToChar(passThroughVertexShader, compositeFragmentSource);
    compositeShader.SetLabel("shadow mapping: composite");
    compositeShader.Enable();
    compositeShader.Send("texture0", TextureUnit::surface);
    compositeShader.Send("depthmap", TextureUnit::sceneDepth);
    compositeShader.Send("offset", 0.01f);
    compositeShader.Send("intensity", 0.5f);
    compositeShader.Disable();
}

} // namespace Vell
