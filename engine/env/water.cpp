#include "engine/env/water.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/textureunits.h"
#include "engine/env/fog.h"
#include "engine/math/frustum.h"
#include "engine/scene/camera.h"

#include <algorithm>
#include <iterator>

namespace Vell {

namespace {

constexpr int targetSize = 512; // side of both images, in pixels

// Noise repeats per unit of length and UV repeat: one repeat is 200 units.
constexpr float noisePerUnit = 0.005f;

constexpr float halfThickness = 0.1f; // of the box around the flat surface

// Where the corners that SetSize() moves lie in the quad: vertex v has s, t, x, y, z at 5 v.
constexpr int x0 = 2;
constexpr int z0 = 4;
constexpr int z1 = 5 + 4;
constexpr int x2 = 10 + 2;

// In: the vertex in world units. Out: gl_TexCoord[0], where the noise is looked up; EyePos, the
// clip position, which becomes the place on the screen; ShadowVertex, the place in the shadow map.
const char vertexSource[] = R"glsl(
#version 110

uniform vec2 uvrep; // repeats of the noise; the array's own texture coordinates are ignored

varying vec4 EyePos;
varying vec4 ShadowVertex;

void main()
{
    gl_TexCoord[0] = vec4(gl_Vertex.xz * uvrep, 0.0, 1.0);
    gl_Position = ftransform();
    EyePos = gl_Position;
    ShadowVertex = gl_TextureMatrix[0] * gl_Vertex;
}
)glsl";

// Out: the two images mixed and bent, fogged, and at half brightness in shadow.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D reflectionMap; // the mirrored scene, as large as the screen
uniform sampler2D refractionMap; // the scene itself, as large as the screen
uniform sampler2D noiseMap;      // a normal map, 0.5 being no deviation
uniform sampler2D shadowmap;     // depth from the light, 0 to 1

uniform float time;   // seconds
uniform float blend;  // 0 reflection, 1 refraction
uniform float deform; // reach of the bending, in parts of the screen along each axis
uniform float taille; // noise repeats per texture coordinate
uniform vec2 speed;   // scrolling in noise repeats per second

varying vec4 EyePos;
varying vec4 ShadowVertex;

// Where on the screen this fragment lies, 0 to 1. The division has to happen here: after it, the
// place is no longer linear over a triangle that reaches behind the eye.
vec2 ScreenPosition()
{
    return EyePos.xy / EyePos.w / 2.0 + 0.5;
}

// How far the two images are bent here. The noise scrolls twice, on purpose: by the
// speed, and along the diagonal by a thousandth of the time, so still water moves as well.
vec2 Bend()
{
    float t = time / 1000.0;
    vec2 place = (gl_TexCoord[0].xy + vec2(t, t)) * taille + vec2(time, time) * speed;
    return (normalize(texture2D(noiseMap, place).rgb - 0.5) * deform).xy;
}
)glsl" VELL_FOG_FACTOR R"glsl(
// 0.5 where the light sees something nearer, else 1. Outside the shadow map all is lit.
float Shadow()
{
    vec3 v = ShadowVertex.xyz / ShadowVertex.w;
    v.z -= 0.00001; // keeps the surface from shading itself
    bool inside = v.x >= 0.0 && v.x <= 1.0 && v.y >= 0.0 && v.y <= 1.0;
    return inside && texture2D(shadowmap, v.xy).z <= v.z ? 0.5 : 1.0;
}

void main()
{
    vec2 place = ScreenPosition() + Bend();
    vec4 reflected = texture2D(reflectionMap, place);
    vec4 refracted = texture2D(refractionMap, place);
    vec4 color = reflected * (1.0 - blend) + refracted * blend;
    float depth = gl_FragCoord.z / gl_FragCoord.w;
    gl_FragColor = mix(gl_Fog.color, color, FogFactor(depth)) * Shadow();
}
)glsl";

// Bent look-ups near an edge of the screen must not fetch from the opposite edge.
void ClampColour(const FBO& target) {
    glBindTexture(GL_TEXTURE_2D, target.GetColor());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

} // namespace

Water::Water() : speed(1.0f, 1.0f), uvrep(1.0f, 1.0f), size(1024, 1024) {
    BuildShader();
    SetSize(size);
    SetBlend(blend);
    SetDeform(deform);
    SetSpeed(speed);
    SetUVRepeat(uvrep);
    // Intended: a surface whose size was never set is looked for in its positive quarter only, and
    // vanishes while only the others are in view.
    bbox.Set(vec3(0.0f, -halfThickness, 0.0f),
             vec3(static_cast<float>(size.x), halfThickness, static_cast<float>(size.y)));
    SizeTargets();
    WriteQuad();
}

Water::~Water() = default;

void Water::HideShadowStripe() {
    glMatrixMode(GL_TEXTURE);
    glScalef(1.0f, 1.0f, 0.0f); // depth 0, before whatever the shadow map holds
    glMatrixMode(GL_MODELVIEW);
}

void Water::SetSize(const ivec2& extent) {
    size = extent;
    const float x = static_cast<float>(extent.x);
    const float z = static_cast<float>(extent.y);
    // The negative corners are left where the constructor put them: intended, so a surface made
    // smaller still reaches to -1024.
    quad[x0] = x;
    quad[z0] = z;
    quad[z1] = z;
    quad[x2] = x;
    // Twice the size on the positive side: intended, so the surface still counts as in view when
    // only what lies beyond it is.
    bbox.Set(vec3(-x, -halfThickness, -z), vec3(2.0f * x, halfThickness, 2.0f * z));
}

void Water::SetBlend(float share) {
    blend = share;
    SendParameter("blend", share);
}

void Water::SetDeform(float reach) {
    deform = reach;
    SendParameter("deform", reach);
}

void Water::SetSpeed(const vec2& repeats) {
    speed = repeats;
    SendParameter("speed", repeats);
}

void Water::SetUVRepeat(const vec2& repeats) {
    uvrep = repeats;
    SendParameter("uvrep", repeats);
}

void Water::SetNormalMap(const std::string& path) {
    normalMap.Load(path);
}

void Water::BeginReflection(Camera& camera) {
    BeginPass(reflection, camera);
    if (camera.GetPosition().y <= 0.0f)
        return;
    glScalef(1.0f, -1.0f, 1.0f);
    // Given after the mirror, so it keeps what lies above the water in the world.
    const GLdouble aboveWater[] = {0.0, 1.0, 0.0, 0.0};
    glClipPlane(GL_CLIP_PLANE0, aboveWater);
    glEnable(GL_CLIP_PLANE0);
}

void Water::EndReflection() {
    glDisable(GL_CLIP_PLANE0);
    glPopMatrix();
    reflection.Disable();
}

void Water::BeginRefraction(Camera& camera) {
    BeginPass(refraction, camera);
}

void Water::EndRefraction() {
    glPopMatrix();
    refraction.Disable();
}

void Water::Draw() {
    inFrustum = Frustum::GetInstance().BBoxIn(bbox.GetMin(), bbox.GetMax());
    if (!inFrustum)
        return;
    glPushMatrix();
    BindTextures();
    shader.Enable();
    shader.Send("time", clock.GetElapsedTime());
    DrawQuad();
    shader.Disable();
    UnbindTextures();
    if (debug)
        bbox.Draw(debugColour);
    glPopMatrix();
}

void Water::DrawShadow() {
    DrawQuad();
}

template <typename T>
void Water::SendParameter(const char* name, const T& value) {
    shader.Enable();
    shader.Send(name, value);
    shader.Disable();
}

void Water::BuildShader() {
    shader.LoadToChar(vertexSource, fragmentSource);
    shader.SetLabel("water");
    shader.Enable();
    shader.Send("noiseMap", TextureUnit::noise);
    shader.Send("reflectionMap", TextureUnit::reflection);
    shader.Send("refractionMap", TextureUnit::refraction);
    shader.Send("shadowmap", TextureUnit::shadowmap);
    shader.Send("taille", noisePerUnit);
    shader.Disable();
}

void Water::SizeTargets() {
    reflection.SetLabel("reflection target");
    refraction.SetLabel("refraction target");
    for (FBO* target : {&reflection, &refraction}) {
        target->SetSize(ivec2(targetSize, targetSize));
        ClampColour(*target);
    }
}

void Water::WriteQuad() {
    const float x = static_cast<float>(size.x);
    const float z = static_cast<float>(size.y);
    const float vertices[] = {
        1, 1, x,  0, z,  //
        0, 1, -x, 0, z,  //
        1, 0, x,  0, -z, //
        0, 0, -x, 0, -z, //
    };
    std::copy(std::begin(vertices), std::end(vertices), quad);
}

// From client memory: no array buffer may be bound, and no pass leaves one bound.
void Water::DrawQuad() {
    glInterleavedArrays(GL_T2F_V3F, 0, quad);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

// Unit 6 is left alone: the shadow map stays bound there from the shadow pass.
void Water::BindTextures() {
    TextureUnit::Enable(TextureUnit::noise);
    normalMap.Bind();
    TextureUnit::Enable(TextureUnit::reflection);
    glBindTexture(GL_TEXTURE_2D, reflection.GetColor());
    TextureUnit::Enable(TextureUnit::refraction);
    glBindTexture(GL_TEXTURE_2D, refraction.GetColor());
}

void Water::UnbindTextures() {
    TextureUnit::Disable(TextureUnit::noise);
    TextureUnit::Disable(TextureUnit::reflection);
    TextureUnit::Disable(TextureUnit::refraction);
    glActiveTexture(GL_TEXTURE0);
}

void Water::BeginPass(FBO& target, Camera& camera) {
    target.Enable();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glPushMatrix();
    camera.Draw();
}

} // namespace Vell
