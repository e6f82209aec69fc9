#pragma once

#include "engine/core/fbo.h"
#include "engine/math/matrix.h"
#include "engine/math/vec3.h"
#include "engine/render/shader.h"
#include "engine/scene/camera.h"

namespace Vell {

/// Soft shadows of one light.
///
/// Three steps a frame, called by the scene manager: the scene's depth is rendered from the light
/// into the light buffer; the scene is rendered from the camera into the shadow buffer, whose
/// colour is the share of a cross of light-buffer samples that is occluded; and the finished
/// picture is darkened by that share times the intensity.
///
/// Space:   world; the light looks from its position to its target with up vector (0, 1, 0) and a
///          vertical field of view of 120 degrees, from 1 unit away to the camera's far plane.
/// Texture: unit 6 holds the light buffer's depth from BindShadowMap() on, also after
///          UnBindShadowMap() (the water reads it there); texture matrix 0 holds the light's
///          transform between the two and is identity otherwise.
/// Needs:   a current context on which InitEngine() succeeded, with the screen size final: the
///          shadow buffer takes it at construction.
///
/// A node's own transform takes no part in the look-up: shadows fall correctly on meshes whose
/// nodes are not moved, turned or scaled.
class ShadowMapping {
public:
    /// A light buffer of 1024 x 1024 and intensity 1.0, which the composite takes over at the first
    /// SetIntensity(): until then it darkens by half. The light has no place before SetLight().
    ShadowMapping();
    ~ShadowMapping();
    ShadowMapping(const ShadowMapping&) = delete;
    ShadowMapping& operator=(const ShadowMapping&) = delete;

    /// Places the light and captures its matrices; moving it means calling this again. Position and
    /// target must not lie on one vertical line, along which the up vector leaves no view.
    void SetLight(const vec3& position, const vec3& target);

    /// Side of the light buffer in texels, 1 to GL_MAX_TEXTURE_SIZE; beyond, the buffer stays as it
    /// was, see FBO::SetSize(). The samples lie one texel apart.
    void SetSize(int size);

    /// Width of the softened edge: 8 `count` samples, up to `count` texels away along the cross and
    /// the first diagonal and up to twice as far along the second; at least 1 (with 0 the shadow is
    /// undefined). Nothing is stored.
    void SetBlurPass(int count);

    /// How dark a full shadow is: 0 leaves the picture as it is, 1 turns it black.
    void SetIntensity(float darkness);
    float GetIntensity() const { return intensity; }

    /// The two targets, owned by the shadow mapping, and the side of the first as SetSize() was
    /// told it.
    FBO& GetLightBuffer() { return lightBuffer; }
    FBO& GetShadowBuffer() { return shadowBuffer; }
    int GetSize() { return lightBuffer.GetSize().x; }

    /// Binds the light buffer (alpha is the only colour channel that is written) and loads the
    /// light's projection and view. Expects an identity model-view matrix; clears nothing.
    void BeginLightDraw();

    /// Undoes BeginLightDraw(): matrices, colour mask, and the screen as the target.
    void EndLightDraw();

    /// Binds the shadow buffer, the shadow program and the light buffer's depth, and loads the
    /// light's transform into texture matrix 0. Unit 6 stays active until UnBindShadowMap().
    void BindShadowMap();

    /// Undoes BindShadowMap() but for the depth texture, which stays bound to unit 6.
    void UnBindShadowMap();

    /// Darkens the bound target, which is `scene`'s, by the shadow buffer. Depth testing is on
    /// afterwards, blending off; vertex and texture-coordinate arrays stay enabled.
    void Draw(FBO* scene);

private:
    void BuildShadowShader();
    void BuildCompositeShader();

    FBO lightBuffer;
    FBO shadowBuffer;
    float intensity = 1.0f;
    Camera light;
    Shader shadowShader;
    Shader compositeShader;
    Matrix lightModelview;  // the 16 floats as OpenGL returned them, column-major
    Matrix lightProjection; // likewise
};

} // namespace Vell
