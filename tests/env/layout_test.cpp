// Where the classes of the environment keep their fields and their virtual operations: a contract
// with what was compiled against these headers before, see layout.h.
#include "engine/env/shadowmapping.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"
#include "tests/support/private_member.h"

#include <type_traits>

using Fields = std::vector<const void*>;

OPEN_PRIVATE(skyBoxFaces, &Vell::SkyBox::faces);
OPEN_PRIVATE(skyBoxList, &Vell::SkyBox::list);
OPEN_PRIVATE(skyBoxZpos, Vell::SkyBox::ZPOS);
OPEN_PRIVATE(skyBoxZneg, Vell::SkyBox::ZNEG);
OPEN_PRIVATE(skyBoxYpos, Vell::SkyBox::YPOS);
OPEN_PRIVATE(skyBoxYneg, Vell::SkyBox::YNEG);
OPEN_PRIVATE(skyBoxXneg, Vell::SkyBox::XNEG);
OPEN_PRIVATE(skyBoxXpos, Vell::SkyBox::XPOS);
OPEN_PRIVATE(terrainVertexBuffer, &Vell::Terrain::vertexBuffer);
OPEN_PRIVATE(terrainIndexBuffers, &Vell::Terrain::indexBuffers);
OPEN_PRIVATE(terrainShader, &Vell::Terrain::shader);
OPEN_PRIVATE(terrainHeightmapPath, &Vell::Terrain::heightmapPath);
OPEN_PRIVATE(terrainLevel, &Vell::Terrain::level);
OPEN_PRIVATE(terrainTextures, &Vell::Terrain::textures);
OPEN_PRIVATE(terrainHeightmap, &Vell::Terrain::heightmap);
OPEN_PRIVATE(terrainScale, &Vell::Terrain::scale);
OPEN_PRIVATE(waterQuad, &Vell::Water::quad);
OPEN_PRIVATE(waterReflection, &Vell::Water::reflection);
OPEN_PRIVATE(waterRefraction, &Vell::Water::refraction);
OPEN_PRIVATE(waterClock, &Vell::Water::clock);
OPEN_PRIVATE(waterShader, &Vell::Water::shader);
OPEN_PRIVATE(waterNormalMap, &Vell::Water::normalMap);
OPEN_PRIVATE(waterBlend, &Vell::Water::blend);
OPEN_PRIVATE(waterDeform, &Vell::Water::deform);
OPEN_PRIVATE(waterSpeed, &Vell::Water::speed);
OPEN_PRIVATE(waterUvrep, &Vell::Water::uvrep);
OPEN_PRIVATE(waterSize, &Vell::Water::size);
OPEN_PRIVATE(waterInFrustum, &Vell::Water::inFrustum);
OPEN_PRIVATE(shadowMappingLightBuffer, &Vell::ShadowMapping::lightBuffer);
OPEN_PRIVATE(shadowMappingShadowBuffer, &Vell::ShadowMapping::shadowBuffer);
OPEN_PRIVATE(shadowMappingIntensity, &Vell::ShadowMapping::intensity);
OPEN_PRIVATE(shadowMappingLight, &Vell::ShadowMapping::light);
OPEN_PRIVATE(shadowMappingShadowShader, &Vell::ShadowMapping::shadowShader);
OPEN_PRIVATE(shadowMappingCompositeShader, &Vell::ShadowMapping::compositeShader);
OPEN_PRIVATE(shadowMappingLightModelview, &Vell::ShadowMapping::lightModelview);
OPEN_PRIVATE(shadowMappingLightProjection, &Vell::ShadowMapping::lightProjection);

namespace Vell {

struct SkyBoxProbe {
    static Fields Of(const SkyBox& s) { return {&(s.*skyBoxFaces), &(s.*skyBoxList)}; }
    // In the order in which they are kept and drawn.
    static std::vector<int> Faces() {
        return {skyBoxZpos, skyBoxZneg, skyBoxYpos, skyBoxYneg, skyBoxXneg, skyBoxXpos};
    }
};

struct TerrainProbe {
    static Fields Of(const Terrain& t) {
        return {&(t.*terrainVertexBuffer),  &(t.*terrainIndexBuffers), &(t.*terrainShader),
                &(t.*terrainHeightmapPath), &(t.*terrainLevel),        &(t.*terrainTextures),
                &(t.*terrainHeightmap),     &(t.*terrainScale)};
    }
};

struct WaterProbe {
    static Fields Of(const Water& w) {
        return {&(w.*waterQuad),  &(w.*waterReflection), &(w.*waterRefraction),
                &(w.*waterClock), &(w.*waterShader),     &(w.*waterNormalMap),
                &(w.*waterBlend), &(w.*waterDeform),     &(w.*waterSpeed),
                &(w.*waterUvrep), &(w.*waterSize),       &(w.*waterInFrustum)};
    }
};

struct ShadowMappingProbe {
    static Fields Of(const ShadowMapping& s) {
        return {&(s.*shadowMappingLightBuffer),    &(s.*shadowMappingShadowBuffer),
                &(s.*shadowMappingIntensity),      &(s.*shadowMappingLight),
                &(s.*shadowMappingShadowShader),   &(s.*shadowMappingCompositeShader),
                &(s.*shadowMappingLightModelview), &(s.*shadowMappingLightProjection)};
    }
};

} // namespace Vell

using Vell::Mesh;
using Vell::ShadowMapping;
using Vell::SkyBox;
using Vell::Terrain;
using Vell::Water;

namespace {

// Whether a derived class has its base's operation as it is: then both names are of one type.
template <class Derived, class Base>
bool IsInherited(Derived, Base) {
    return std::is_same_v<Derived, Base>;
}

} // namespace

class EnvLayout : public GlTest {};

TEST_F(EnvLayout, Sky_box_is_six_faces_and_a_list) {
    const SkyBox sky;
    const Fields fields = Vell::SkyBoxProbe::Of(sky);
    EXPECT_EQ(fields.front(), &sky); // no virtual table before them
    EXPECT_TRUE(InOrder(fields));
    EXPECT_EQ(Vell::SkyBoxProbe::Faces(), (std::vector<int>{0, 1, 2, 3, 4, 5}));
}

TEST_F(EnvLayout, Terrain_is_its_buffers_its_shader_and_its_pictures) {
    const Terrain terrain(1);
    const Fields fields = Vell::TerrainProbe::Of(terrain);
    EXPECT_EQ(fields.front(), &terrain);
    EXPECT_TRUE(InOrder(fields));
}

TEST_F(EnvLayout, Shadow_mapping_is_its_buffers_its_light_and_its_shaders) {
    const ShadowMapping shadow;
    const Fields fields = Vell::ShadowMappingProbe::Of(shadow);
    EXPECT_EQ(fields.front(), &shadow);
    EXPECT_TRUE(InOrder(fields));
}

TEST_F(EnvLayout, Water_keeps_its_own_fields_behind_the_mesh_s) {
    Water water;
    Fields fields = Vell::WaterProbe::Of(water);
    fields.insert(fields.begin(), water.GetBBox());
    EXPECT_TRUE(InOrder(fields));
}

TEST_F(EnvLayout, Water_draws_for_itself_and_leaves_the_rest_to_the_mesh) {
    EXPECT_EQ(Slot(&Water::Draw), Slot(&Mesh::Draw));
    EXPECT_EQ(Slot(&Water::DrawShadow), Slot(&Mesh::DrawShadow));
    EXPECT_FALSE(IsInherited(&Water::Draw, &Mesh::Draw));
    EXPECT_FALSE(IsInherited(&Water::DrawShadow, &Mesh::DrawShadow));
    EXPECT_TRUE(IsInherited(&Water::Load, &Mesh::Load));
    EXPECT_TRUE(IsInherited(&Water::SetDebug, &Mesh::SetDebug));
    EXPECT_TRUE(IsInherited(&Water::SetShow, &Mesh::SetShow));
    EXPECT_TRUE(IsInherited(&Water::GetDebug, &Mesh::GetDebug));
    EXPECT_TRUE(IsInherited(&Water::GetShadow, &Mesh::GetShadow));
}
