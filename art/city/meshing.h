#pragma once

#include "art/city/builder.h"
#include "art/city/ordering.h"
#include "art/city/steps.h"
#include "art/common/meshwriter.h"

namespace Art {

/// What became of the surfaces on the way to the mesh.
struct MeshReport {
    std::size_t surfaces = 0;
    std::size_t hidden = 0; ///< surfaces dropped: enclosed, or details no flight shows
    std::size_t vertices = 0;
    float density = 0; ///< light-map texels per unit where the flights come closest
};

/// Side of the light map in texels.
inline constexpr int lightmapSize = 2048;

/// Texture coordinates from here up belong to what shines by itself: whole repeats of the texture
/// say so to the material, beside the marks of the pictures.
inline constexpr float shiningFrom = 64.0f * 32 - 32;

/// What the flights see of each surface: what the steps below go by.
struct Measures {
    std::vector<bool> open;      ///< FindOpenSurfaces()
    std::vector<Sight> sights;   ///< MeasureSights()
    std::vector<unsigned> views; ///< MeasureViews()
};
Measures MeasureCity(const Builder& city);

/// Turns the city into the mesh that is shipped: hidden surfaces dropped, light-map charts
/// packed, surfaces near the wisps cut small for their light, in sub-meshes of a thousand
/// vertices of one texture, what hides others first.
/// With fewer `steps` than all, it is a mesh to compare with: other surfaces have other charts, and
/// the published light map does not fit them.
MeshFile MeshCity(const Builder& city, const Measures& measures, MeshReport& report,
                  const Steps& steps = allSteps);

} // namespace Art
