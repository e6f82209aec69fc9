// Static meshes, call by call: both passes, with and without buffers.

#include "tests/render/xt3dstatic_calls.h"

#include "tests/support/fake_time.h"

#include <gmock/gmock.h>

#include <utility>

using ::testing::Contains;
using Vell::XT3DStatic;

namespace {

constexpr const char* endShadow = R"(
        glDisableClientState(GL_VERTEX_ARRAY)
        glDisableClientState(GL_NORMAL_ARRAY)
        glDisableClientState(GL_TEXTURE_COORD_ARRAY)
        glDisable(GL_ALPHA_TEST)
        glActiveTexture(GL_TEXTURE2); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE1); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE0); glDisable(GL_TEXTURE_2D)
        )";

/// Where a sub-mesh's own numbered buffers are pointed at, those of the light map left out.
std::string Buffers(const std::string& number) {
    return "glBindBuffer(GL_ARRAY_BUFFER, positions" + number +
           "); glVertexPointer(3, GL_FLOAT, 0, 0)\n" + "glBindBuffer(GL_ARRAY_BUFFER, normals" +
           number + "); glNormalPointer(GL_FLOAT, 0, 0)\n" +
           "glClientActiveTexture(GL_TEXTURE0); glEnableClientState(GL_TEXTURE_COORD_ARRAY)\n" +
           "glBindBuffer(GL_ARRAY_BUFFER, texcoords" + number +
           "); glTexCoordPointer(2, GL_FLOAT, 0, 0)\n";
}

} // namespace

// ------------------------------------------------------------------------------------ Drawing

TEST_F(MeshCalls, Plain_mesh) {
    const auto mesh = Loaded(plain, {});
    mesh->Draw();
    EXPECT_TRUE(Made(Plain()));
}

TEST_F(MeshCalls, Everything_at_once_with_buffers) {
    const auto mesh = Loaded(lit, litTextures);
    SetMaterial(*mesh);
    mesh->SetBlend(true);
    mesh->SetDebug(true);
    SetFakeTime(2.5); // the mesh was made at 0
    Forget();
    mesh->Draw();
    EXPECT_TRUE(Made("-- material and time\nglUseProgramObject(material)\n" +
                     Send("material", "time", "1f", "2.5") + R"(
        -- alpha test
        glAlphaFunc(GL_GREATER, 0.5)
        glEnable(GL_ALPHA_TEST)
        -- added, writing no depth
        glEnable(GL_BLEND)
        glBlendFunc(GL_ONE, GL_ONE)
        glDepthMask(GL_FALSE)
        -- arrays on
        glEnableClientState(GL_VERTEX_ARRAY)
        glEnableClientState(GL_NORMAL_ARRAY)
        glEnableClientState(GL_TEXTURE_COORD_ARRAY)
        -- textures 0 to 2
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, a)
        glActiveTexture(GL_TEXTURE1); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE2); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, b)
        -- light map
        glActiveTexture(GL_TEXTURE6); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, light map)
        )" + buffers +
                     lightmapBuffer + triangles + unbindBuffer + endArrays + R"(
        -- blending off
        glDisable(GL_BLEND)
        glDepthMask(GL_TRUE)
        -- material off
        glUseProgramObject(0)
        -- box from (0, 0, 0) to (2, 2, 2): centre (1, 1, 1), size = min + centre
        )" + BlueBox("1, 1, 1", "1, 1, 1")));
}

TEST_F(MeshCalls, Light_map_without_buffers_is_bound_but_has_no_coordinates) {
    gl.extensions = "";
    const auto mesh = Loaded(lit, litTextures);
    mesh->Draw();
    EXPECT_TRUE(Made(std::string(beginArrays) + R"(
        -- textures 0 to 2
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, a)
        glActiveTexture(GL_TEXTURE1); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE2); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, b)
        -- light map
        glActiveTexture(GL_TEXTURE6); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, light map)
        -- arrays in memory
        glGetString(GL_EXTENSIONS)
        glVertexPointer(3, GL_FLOAT, 0, memory)
        glNormalPointer(GL_FLOAT, 0, memory)
        glTexCoordPointer(2, GL_FLOAT, 0, memory)
        glDrawArrays(GL_TRIANGLES, 0, 3)
        -- arrays off: there is no buffer to unbind
        glGetString(GL_EXTENSIONS)
        )" + endArrays));
}

TEST_F(MeshCalls, Sub_meshes_follow_each_other) {
    const auto mesh = Loaded({{"NULL NULL NULL", "NULL a.png NULL"}, false}, {"a"});
    mesh->Draw();
    EXPECT_TRUE(Made(std::string(beginArrays) + noTextures + R"(
        glGetString(GL_EXTENSIONS)
        )" + Buffers(" 0") +
                     triangles + R"(
        -- the second one
        glActiveTexture(GL_TEXTURE0); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE1); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, a)
        glActiveTexture(GL_TEXTURE2); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glGetString(GL_EXTENSIONS)
        )" + Buffers(" 1") +
                     triangles + unbindBuffer + endArrays));
}

TEST_F(MeshCalls, Light_map_is_bound_anew_for_every_sub_mesh) {
    const auto part = [](const std::string& n) {
        return std::string(noTextures) + R"(
        glActiveTexture(GL_TEXTURE6); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, light map)
        glGetString(GL_EXTENSIONS)
        )" + Buffers(" " + n) +
               R"(
        glClientActiveTexture(GL_TEXTURE1); glEnableClientState(GL_TEXTURE_COORD_ARRAY)
        glBindBuffer(GL_ARRAY_BUFFER, lightmap texcoords )" +
               n + R"(); glTexCoordPointer(2, GL_FLOAT, 0, 0)
        )" + triangles;
    };
    const auto mesh = Loaded({{"NULL NULL NULL", "NULL NULL NULL"}, true}, {"light map"});
    mesh->Draw();
    EXPECT_TRUE(Made(beginArrays + part("0") + part("1") + unbindBuffer + endArrays));
}

TEST_F(MeshCalls, Texture_that_failed_to_load_counts_as_a_texture_and_binds_0) {
    const auto mesh = Loaded({{"missing.png NULL NULL"}, false}, {});
    mesh->Draw();
    EXPECT_TRUE(Made(std::string(beginArrays) + R"(
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, 0)
        glActiveTexture(GL_TEXTURE1); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE2); glBindTexture(GL_TEXTURE_2D, 0); glDisable(GL_TEXTURE_2D)
        )" + buffers +
                     triangles + unbindBuffer + endArrays));
}

TEST_F(MeshCalls, Hidden_mesh_calls_nothing_in_either_pass) {
    const auto mesh = Loaded(lit, litTextures);
    mesh->SetDebug(true);
    mesh->SetShow(false);
    mesh->Draw();
    mesh->DrawShadow();
    EXPECT_TRUE(Made(""));
}

TEST_F(MeshCalls, Time_runs_from_the_making_of_each_mesh_not_from_its_loading) {
    XT3DStatic first; // at 0
    SetFakeTime(1.0);
    XT3DStatic second;
    SetFakeTime(1.5);
    WriteFile(folder + "empty.xt3dstatic", "XT3DSTATIC 0 " + folder + " 0");
    first.Load(folder + "empty.xt3dstatic");
    SetMaterial(first);
    second.Load(folder + "empty.xt3dstatic"); // shares the material
    SetFakeTime(4.0);
    for (const auto& [mesh, time] : {std::pair{&first, "4"}, {&second, "3"}}) {
        Forget();
        mesh->Draw();
        EXPECT_TRUE(Made("glUseProgramObject(material)\n" + Send("material", "time", "1f", time) +
                         beginArrays + unbindBuffer + endArrays + "glUseProgramObject(0)"));
    }
}

TEST_F(MeshCalls, Number_of_vertices_is_drawn_as_it_is_whole_triangles_or_not) {
    WriteFile(folder + "four.xt3dstatic", "XT3DSTATIC 1 " + folder + " 0 NULL NULL NULL 4");
    XT3DStatic mesh;
    mesh.Load(folder + "four.xt3dstatic");
    for (void (XT3DStatic::*pass)() : {&XT3DStatic::Draw, &XT3DStatic::DrawShadow}) {
        Forget();
        (mesh.*pass)();
        EXPECT_THAT(gl.Take(), Contains("glDrawArrays(GL_TRIANGLES, 0, 4)"));
    }
}

// ------------------------------------------------------------------------------- Shadow pass

TEST_F(MeshCalls, Shadow_pass_binds_texture_0_only) {
    const auto mesh = Loaded(lit, litTextures);
    SetMaterial(*mesh);
    mesh->SetBlend(true);
    mesh->SetDebug(true);
    Forget();
    mesh->DrawShadow();
    EXPECT_TRUE(Made(std::string(beginArrays) + R"(
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, a)
        )" + buffers +
                     triangles + unbindBuffer + endShadow));
}

TEST_F(MeshCalls, Shadow_pass_binds_texture_0_of_every_sub_mesh_that_has_one) {
    const auto mesh = Loaded({{"a.png NULL NULL", "NULL b.png NULL"}, false}, {"a", "b"});
    mesh->DrawShadow();
    EXPECT_TRUE(Made(std::string(beginArrays) + R"(
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D); glBindTexture(GL_TEXTURE_2D, a)
        glGetString(GL_EXTENSIONS)
        )" + Buffers(" 0") +
                     triangles + R"(
        -- the second one has none and keeps what unit 0 holds
        glGetString(GL_EXTENSIONS)
        )" + Buffers(" 1") +
                     triangles + unbindBuffer + endShadow));
}

TEST_F(MeshCalls, Shadow_pass_without_texture_and_buffers_keeps_what_unit_0_holds) {
    gl.extensions = "";
    const auto mesh = Loaded(plain, {});
    mesh->DrawShadow();
    EXPECT_TRUE(Made(std::string(beginArrays) + R"(
        glGetString(GL_EXTENSIONS)
        glVertexPointer(3, GL_FLOAT, 0, memory)
        glNormalPointer(GL_FLOAT, 0, memory)
        glTexCoordPointer(2, GL_FLOAT, 0, memory)
        glDrawArrays(GL_TRIANGLES, 0, 3)
        glGetString(GL_EXTENSIONS)
        )" + endShadow));
}
