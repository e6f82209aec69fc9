#pragma once

#include "engine/core/clock.h"
#include "engine/core/fbo.h"
#include "engine/math/vec2.h"
#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/scene/mesh.h"

#include <string>

namespace Vell {

class Camera;

/// Flat water at world height y = 0 that mirrors the scene above it.
///
/// Each frame, when the previous frame saw the surface, the scene manager renders the mirrored
/// scene and the plain scene into two 512 x 512 targets; Draw() mixes both in screen space, bent by
/// a scrolling normal map, fogged with the fixed-function fog, and halves the light where the
/// shadow map says so. The place in the shadow map comes from texture matrix 0, which leads there
/// only between ShadowMapping's BindShadowMap() and UnBindShadowMap(); in the main pass it is the
/// identity, so that the shadow can fall on 0 <= x <= 1 only. That is how the frame is ordered.
///
/// Without shadow mapping this shows as a stripe of half the light at 0 <= x <= 1, z > 0;
/// HideShadowStripe() takes it away.
///
/// Until SetSize() the surface counts as in view only where its positive quarter is, from (0, 0) to
/// (1024, 1024): with that out of view nothing of it is drawn.
///
/// Space:   world; +y is up, units are the scene's.
/// Texture: unit 0 normal map, 1 reflection, 2 refraction, 6 shadow map (bound by ShadowMapping).
/// Needs:   a current context on which InitEngine() succeeded.
///
/// Every setter of a shader parameter sends its uniform at once, so parameters may change at any
/// time outside a draw; each one leaves no program bound.
class Water : public Mesh {
public:
    /// A surface from (-1024, -1024) to (1024, 1024) with its defaults: blend 0.5, deform 0.035,
    /// speed (1, 1), UV repeat (1, 1), no normal map.
    Water();
    ~Water() override;
    Water(const Water&) = delete;
    Water& operator=(const Water&) = delete;

    /// Sets how far the surface reaches along +x (`extent.x`) and +z (`extent.y`), in units.
    /// The edges at -x and -z stay where construction put them, on purpose: at -1024. The box that
    /// decides about visibility becomes (-extent.x, -0.1, -extent.y) to (2 extent.x, 0.1, 2
    /// extent.y). Beyond 16,777,216 units an extent is rounded to the next float.
    void SetSize(const ivec2& extent);
    ivec2 GetSize() const { return size; }

    /// Takes the stripe of shadow away that water has without shadow mapping: sets texture matrix 0
    /// so that every place in the shadow map lies before all shadow. Once after InitEngine() is
    /// enough, with unit 0 active, for as long as nobody else sets that matrix, as ShadowMapping
    /// does in each frame.
    static void HideShadowStripe();

    /// 0 shows the reflection alone, 1 the refraction alone.
    void SetBlend(float share);
    float GetBlend() const { return blend; }

    /// How far the normal map bends the two images: along x in screen widths, along y in screen
    /// heights (0.02 is a fiftieth of either).
    void SetDeform(float reach);
    float GetDeform() const { return deform; }

    /// How fast the normal map scrolls, in repeats per second along x and z.
    void SetSpeed(const vec2& repeats);
    vec2 GetSpeed() const { return speed; }

    /// How often the normal map repeats: a repeat is 200 / repeats.x units of x long and
    /// 200 / repeats.y of z.
    void SetUVRepeat(const vec2& repeats);
    vec2 GetUVRepeat() const { return uvrep; }

    /// Loads the normal map from a ".jpg" or ".png" file; Image::Load() says which failures it
    /// logs.
    void SetNormalMap(const std::string& path);
    Image& GetNormalMap() { return normalMap; }

    /// Whether the last Draw() found the surface in view; false before the first one. The scene
    /// manager renders the two images only when it is, so the first frame in view shows old ones.
    bool GetInFrustum() const { return inFrustum; }

    /// Binds the cleared reflection target and loads the camera's view. With the camera strictly
    /// above the surface the world is mirrored about y = 0 and clip plane 0 keeps what lies above
    /// it; at or below the surface the scene is taken unmirrored and unclipped.
    void BeginReflection(Camera& camera);

    /// Switches clip plane 0 off and returns to the screen and to the matrix before.
    void EndReflection();

    /// Binds the cleared refraction target and loads the camera's view; nothing is clipped.
    void BeginRefraction(Camera& camera);

    /// Returns to the screen and to the matrix before.
    void EndRefraction();

    /// Draws the surface when its box is in the view frustum, else nothing. Unit 0 is active
    /// afterwards; the vertex and texture-coordinate arrays stay enabled. SetShow() has no effect
    /// on the surface, only SetDebug() has: it adds the box, in blue.
    void Draw() override;

    /// Draws the bare quad, whatever the frustum says and with whatever program is bound; the
    /// vertex and texture-coordinate arrays stay enabled.
    void DrawShadow() override;

private:
    static constexpr int quadFloats = 4 * 5;

    template <typename T>
    void SendParameter(const char* name, const T& value);
    void BuildShader();
    void SizeTargets();
    void WriteQuad();
    void DrawQuad();
    void BindTextures();
    void UnbindTextures();
    void BeginPass(FBO& target, Camera& camera);

    float quad[quadFloats] = {}; // four vertices of s, t, x, y, z as a triangle strip
    FBO reflection;
    FBO refraction;
    Clock clock; // drives the scrolling; never reset
    Shader shader;
    Image normalMap;
    float blend = 0.5f;
    float deform = 0.035f;
    vec2 speed;
    vec2 uvrep;
    ivec2 size;
    bool inFrustum = false;
};

} // namespace Vell
