// Where the classes of the environment keep their fields and their virtual operations.
#include "engine/env/shadowmapping.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"

#include <type_traits>

using Fields = std::vector<const void*>;

namespace Vell {

struct SkyBoxProbe {
    static Fields Of(const SkyBox& s) { return {&s.faces, &s.list}; }
    // In the order in which they are kept and drawn.
    static std::vector<int> Faces() {
        return {SkyBox::ZPOS, SkyBox::ZNEG, SkyBox::YPOS, SkyBox::YNEG, SkyBox::XNEG, SkyBox::XPOS};
    }
};

struct TerrainProbe {
    static Fields Of(const Terrain& t) {
        return {&t.vertexBuffer, &t.indexBuffers, &t.shader,    &t.heightmapPath,
                &t.level,        &t.textures,     &t.heightmap, &t.scale};
    }
};

struct WaterProbe {
    static Fields Of(const Water& w) {
        return {&w.quad,  &w.reflection, &w.refraction, &w.clock, &w.shader, &w.normalMap,
                &w.blend, &w.deform,     &w.speed,      &w.uvrep, &w.size,   &w.inFrustum};
    }
};

struct ShadowMappingProbe {
    static Fields Of(const ShadowMapping& s) {
        return {&s.lightBuffer,  &s.shadowBuffer,    &s.intensity,      &s.light,
                &s.shadowShader, &s.compositeShader, &s.lightModelview, &s.lightProjection};
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
