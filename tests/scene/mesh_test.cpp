#include "engine/scene/mesh.h"

#include "tests/scene/layout.h"

#include <memory>

#include <gtest/gtest.h>

using namespace Vell;

namespace {

/// The least that a mesh must bring along, and a mark of its end.
struct PlainMesh : Mesh {
    explicit PlainMesh(bool* ended = nullptr) : gone(ended) {}
    ~PlainMesh() override {
        if (gone != nullptr)
            *gone = true;
    }
    void Draw() override { ++drawn; }

    std::vector<const void*> Fields() const { return {&bbox, &debug, &show}; }

    bool* gone;
    int drawn = 0;
};

} // namespace

TEST(Mesh, Is_shown_and_not_debugged_at_first) {
    const PlainMesh mesh;
    EXPECT_TRUE(mesh.GetShadow());
    EXPECT_FALSE(mesh.GetDebug());
}

TEST(Mesh, Has_an_all_zero_box_until_a_loader_sets_it) {
    PlainMesh mesh;
    EXPECT_EQ(mesh.GetBBox()->GetMin(), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(0.0f, 0.0f, 0.0f));
    mesh.GetBBox()->Set(vec3(1.0f, 2.0f, 3.0f), vec3(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(mesh.GetBBox()->GetMin(), vec3(1.0f, 2.0f, 3.0f)) << "the mesh's own box, no copy";
    EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(4.0f, 5.0f, 6.0f));
}

TEST(Mesh, Casts_no_shadow_once_it_is_hidden_since_one_flag_serves_both) {
    PlainMesh mesh;
    mesh.SetShow(false);
    EXPECT_FALSE(mesh.GetShadow());
    mesh.SetShow(true);
    EXPECT_TRUE(mesh.GetShadow());
}

TEST(Mesh, Keeps_the_debug_flag_apart_from_the_show_flag) {
    for (const bool debug : {false, true})
        for (const bool show : {false, true}) {
            PlainMesh mesh;
            mesh.SetShow(show);
            mesh.SetDebug(debug);
            EXPECT_EQ(mesh.GetDebug(), debug);
            EXPECT_EQ(mesh.GetShadow(), show) << "set before the debug flag, to " << debug;
            mesh.SetShow(!show);
            EXPECT_EQ(mesh.GetDebug(), debug) << "set before the show flag, to " << !show;
            EXPECT_EQ(mesh.GetShadow(), !show);
        }
}

TEST(Mesh, Neither_loads_nor_draws_a_shadow_unless_its_class_does) {
    PlainMesh mesh;
    mesh.Load("no/such/file");
    mesh.DrawShadow();
    EXPECT_EQ(mesh.drawn, 0);
    EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_TRUE(mesh.GetShadow());
}

TEST(Mesh, Keeps_its_fields_and_operations_at_their_places) {
    EXPECT_TRUE(InOrder(PlainMesh().Fields()));
    EXPECT_EQ(Slot(&Mesh::Load), 2u); // behind the destructor
    EXPECT_EQ(Slot(&Mesh::Draw), 3u);
    EXPECT_EQ(Slot(&Mesh::DrawShadow), 4u);
    EXPECT_EQ(Slot(&Mesh::SetDebug), 5u);
    EXPECT_EQ(Slot(&Mesh::SetShow), 6u);
    EXPECT_EQ(Slot(&Mesh::GetDebug), 7u);
    EXPECT_EQ(Slot(&Mesh::GetShadow), 8u);
}

TEST(Mesh, Is_destroyed_whole_through_a_pointer_to_its_base) {
    bool gone = false;
    std::unique_ptr<Mesh> mesh = std::make_unique<PlainMesh>(&gone);
    mesh.reset();
    EXPECT_TRUE(gone);
}
