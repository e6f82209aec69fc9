#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/env/shadowmapping.h"
#include "engine/math/vec3.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"
#include "tests/support/shapes.h"

#include <algorithm>
#include <cmath>
#include <vector>

OPEN_PRIVATE(shadowMappingLightProjection, &Vell::ShadowMapping::lightProjection);
OPEN_PRIVATE(shadowMappingLightModelview, &Vell::ShadowMapping::lightModelview);
OPEN_PRIVATE(shadowMappingShadowShader, &Vell::ShadowMapping::shadowShader);
OPEN_PRIVATE(shadowMappingCompositeShader, &Vell::ShadowMapping::compositeShader);

namespace Vell {

struct ShadowMappingProbe {
    static Shader& ShadowProgram(ShadowMapping& shadow) {
        return shadow.*shadowMappingShadowShader;
    }
    static Shader& CompositeProgram(ShadowMapping& shadow) {
        return shadow.*shadowMappingCompositeShader;
    }
    static const Matrix& LightProjection(const ShadowMapping& s) {
        return s.*shadowMappingLightProjection;
    }
    static const Matrix& LightModelview(const ShadowMapping& s) {
        return s.*shadowMappingLightModelview;
    }
};

} // namespace Vell

namespace ShadowScene {

// The scene of most tests: a floor at y = 0 and a square of 2 x 2 above it at half the light's
// height. The light, 4 units aside, throws a shadow of 4 x 4: a point x of the square lands at
// 4 + (x - 4) * 2, so -1..1 becomes -6..-2, and z -1..1 becomes -2..2.
inline const Rectangle floorPlane{Vell::vec3(-40, 0, -40), Vell::vec3(80, 0, 0),
                                  Vell::vec3(0, 0, 80)};
inline const Rectangle square{Vell::vec3(-1, 5, -1), Vell::vec3(2, 0, 0), Vell::vec3(0, 0, 2)};
constexpr double lightX = 4.0;
constexpr double lightY = 10.0;
constexpr double squareY = 5.0;
constexpr double tilt = 0.001;

// Down, with a tilt of a thousandth that gives the up vector (0, 1, 0) a direction: -z is up.
inline const Vell::vec3 lightPosition(4, 10, 0);
inline const Vell::vec3 lightTarget(4, 0, -0.01f);

// The camera looks down the same way from (0, 20, 0), with 90 degrees: a point (x, z) of the floor
// is seen at column 64 + 64 x / 20 and row 64 - 64 z / 20.
constexpr double cameraY = 20.0;

inline int Column(double x) {
    return static_cast<int>(std::floor(64.0 + 64.0 * x / cameraY));
}

inline int Row(double z) {
    return static_cast<int>(std::floor(64.0 - 64.0 * z / cameraY));
}

inline void LookDown() {
    gluLookAt(0.0, cameraY, 0.0, 0.0, 0.0, -0.02, 0.0, 1.0, 0.0);
}

inline void DrawOccluderAndFloor(const Rectangle& occluder) {
    DrawRectangle(occluder);
    DrawRectangle(floorPlane);
}

// Both passes as a frame runs them; leaves the share of shadow in the shadow buffer.
inline Picture ShadowsOf(Vell::ShadowMapping& shadow, const Rectangle& occluder) {
    glLoadIdentity();
    shadow.BeginLightDraw();
    glClear(GL_DEPTH_BUFFER_BIT);
    DrawOccluderAndFloor(occluder);
    shadow.EndLightDraw();
    shadow.BindShadowMap();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    LookDown();
    DrawOccluderAndFloor(occluder);
    shadow.UnBindShadowMap();
    return ReadTexture(shadow.GetShadowBuffer().GetColor());
}

// The shader's arithmetic for the floor and the square as the camera sees them.
class Model {
public:
    Model(Vell::ShadowMapping& shadow, int blurPass)
        : side(shadow.GetSize()),
          pass(blurPass),
          depth(ReadDepthTexture(shadow.GetLightBuffer().GetDepth())) {}

    int ShareAt(int column, int row) const {
        const double dx = (column + 0.5 - 64.0) / 64.0; // per unit of height
        const double dz = -(row + 0.5 - 64.0) / 64.0;
        const double atSquare = cameraY - squareY;
        const bool hit = std::abs(dx * atSquare) < 1.0 && std::abs(dz * atSquare) < 1.0;
        const double fall = hit ? atSquare : cameraY;
        return Share(dx * fall, cameraY - fall, dz * fall);
    }

private:
    // The light looks down with 120 degrees: at distance d it sees d * tan 60 to each side, and a
    // depth buffer from 1 to 25000 holds f / (f - n) * (1 - n / d). Its up is -z.
    int Share(double x, double y, double z) const {
        const double d = lightY - y - tilt * z;
        const double u = 0.5 + 0.5 * (x - lightX) / (d * std::sqrt(3.0));
        const double v = 0.5 - 0.5 * (z + tilt * (lightY - y)) / (d * std::sqrt(3.0));
        const double reference = 25000.0 / 24999.0 * (1.0 - 1.0 / d) - 0.0001;
        const double texel = 1.0 / side;
        int occluded = 0;
        for (int i = -pass; i < pass; ++i) {
            occluded += DepthAt(u + i * texel, v) <= reference;
            occluded += DepthAt(u, v + i * texel) <= reference;
            occluded += DepthAt(u + i * texel, v + i * texel) <= reference;
            occluded += DepthAt(u + (pass - i) * texel, v + i * texel) <= reference;
        }
        return static_cast<int>(std::lround(255.0 * std::min(1.0, occluded / (pass * 4.0))));
    }

    double DepthAt(double u, double v) const {
        const auto texel = [this](double c) {
            return std::clamp(static_cast<int>(std::floor(c * side)), 0, side - 1);
        };
        return static_cast<double>(
            depth[static_cast<std::size_t>(texel(v)) * static_cast<std::size_t>(side) +
                  static_cast<std::size_t>(texel(u))]);
    }

    int side;
    int pass;
    std::vector<float> depth;
};

} // namespace ShadowScene
