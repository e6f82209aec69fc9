#include "engine/render/xt3dstatic.h"

#include "engine/core/ressourcemanager.h"
#include "tests/render/xt3dstatic_probe.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include <sys/stat.h>

using namespace Vell;

namespace {

const char* const noTextures = "NULL NULL NULL ";

/// A mesh of the demo: one texture, 24 vertices, no light map.
std::string RealFile() {
    return ReadFile(NIMBREL_SOURCE_DIR "/Data/Gfx/Wisp/green.xt3dstatic");
}

/// The same with the prefix in place of its texture directory: a changed flag would otherwise find
/// the light map of a mesh that is gone.
std::string Moved(const std::string& text, const std::string& prefix) {
    const std::string folder = "Data/Gfx/Wisp/";
    const std::size_t at = text.find(folder);
    return at == std::string::npos ? text : std::string(text).replace(at, folder.size(), prefix);
}

class XT3DStaticDamageTest : public GlTest {
protected:
    /// The row of an error, and a mesh that is empty yet safe to draw.
    static void ExpectRefused(const std::string& name) {
        SCOPED_TRACE(name);
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "ERROR", name}}));
        EXPECT_EQ(Probe::Name(mesh), name);
        EXPECT_EQ(Probe::Count(mesh), 0);
        EXPECT_EQ(Probe::SubMeshes(mesh), nullptr);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(0, 0, 0));
        mesh.Draw();
        mesh.DrawShadow();
    }

    /// Every vertex lies in the box, whatever was read for it.
    static void ExpectInItsBox(XT3DStatic& mesh) {
        const vec3 low = mesh.GetBBox()->GetMin();
        const vec3 high = mesh.GetBBox()->GetMax();
        for (int i = 0; i < Probe::Count(mesh); ++i)
            for (int v = 0; v < Probe::SubMesh(mesh, i).vertexCount; ++v) {
                const vec3& p = Probe::SubMesh(mesh, i).positions[v];
                EXPECT_TRUE(low.x <= p.x && low.y <= p.y && low.z <= p.z) << i << ", " << v;
                EXPECT_TRUE(p.x <= high.x && p.y <= high.y && p.z <= high.z) << i << ", " << v;
            }
    }
};

} // namespace

TEST_F(XT3DStaticDamageTest, Refuses_a_missing_file) {
    ExpectRefused(NewPrefix() + "missing.xt3dstatic");
}

TEST_F(XT3DStaticDamageTest, Refuses_a_folder) {
    const std::string name = NewPrefix() + "folder";
    std::filesystem::create_directory(name);
    ExpectRefused(name);
}

TEST_F(XT3DStaticDamageTest, Refuses_a_pipe_without_waiting_for_it) {
    const std::string name = NewPrefix() + "pipe";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    ExpectRefused(name);
}

TEST_F(XT3DStaticDamageTest, Refuses_any_other_magic) {
    for (const char* magic : {"", "xt3dstatic", "XT3DSTATIC2", "XT3DSTATI", "XT3DSTATIC,1"}) {
        SCOPED_TRACE(magic);
        ExpectRefused(WriteMesh(NewPrefix(), std::string(magic) + " 1 dir 0 " + noTextures +
                                                 Rectangle(0, 0, 1, 1)));
    }
}

TEST_F(XT3DStaticDamageTest, Occupies_its_path_even_when_loading_fails) {
    const std::string prefix = NewPrefix();
    const std::string name = prefix + "mesh.xt3dstatic";
    XT3DStatic first;
    first.Load(name);
    EXPECT_EQ(RessourceManager::GetInstance().Get(name), &first);
    WriteMesh(prefix, Header(prefix, 1, false) + noTextures + Rectangle(0, 0, 1, 1)); // too late
    const LogWatch log;
    {
        XT3DStatic second;
        second.Load(name);
        EXPECT_EQ(Probe::Count(second), 0);
    }
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(XT3DStaticDamageTest, Takes_negative_counts_for_none) {
    XT3DStatic none;
    none.Load(WriteMesh(NewPrefix(), "XT3DSTATIC -3 dir 0"));
    EXPECT_EQ(Probe::Count(none), 0);
    XT3DStatic empty;
    empty.Load(WriteMesh(NewPrefix(), std::string("XT3DSTATIC 1 dir 0 ") + noTextures + "-6"));
    ASSERT_EQ(Probe::Count(empty), 1);
    EXPECT_EQ(Probe::SubMesh(empty, 0).vertexCount, 0);
    empty.Draw();
}

TEST_F(XT3DStaticDamageTest, Reads_no_further_than_a_number_that_no_float_can_hold) {
    // The stream puts the largest float there is in its place and gives nothing more.
    XT3DStatic mesh;
    mesh.Load(WriteMesh(NewPrefix(), std::string("XT3DSTATIC 1 dir 0 ") + noTextures +
                                         "2  1 -1e60 3 4 5 6 7 8  9 10 11 12 13 14 15 16"));
    const float lowest = std::numeric_limits<float>::lowest();
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[0], vec3(1, lowest, 0));
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[1], vec3(0, 0, 0));
    EXPECT_EQ(mesh.GetBBox()->GetMin(), vec3(0, lowest, 0));
    mesh.SetDebug(true); // its box is drawn as well
    mesh.Draw();
    mesh.DrawShadow();
}

TEST_F(XT3DStaticDamageTest, Reads_no_further_than_a_light_map_flag_that_is_neither_0_nor_1) {
    struct Case {
        const char* flag;
        bool lightmap; // what the stream makes of it
    };
    for (const Case& c : {Case{"2", true}, Case{"-1", true}, Case{"yes", false}}) {
        SCOPED_TRACE(c.flag);
        const std::string prefix = NewPrefix();
        const std::string name = WriteMesh(prefix, "XT3DSTATIC 1 " + prefix + " " + c.flag + " " +
                                                       noTextures + Rectangle(0, 0, 1, 1));
        Rows expected;
        if (c.lightmap)
            expected.push_back({"Image", "ERROR", prefix + "lightmap.jpg"});
        expected.push_back({"Image", "ERROR", prefix}); // of the textures that are not read
        expected.push_back({"XT3DStatic", "LOADED", name});
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_EQ(log.NewRows(), expected);
        EXPECT_EQ(Probe::HasLightmap(mesh), c.lightmap);
        ASSERT_EQ(Probe::Count(mesh), 1);
        EXPECT_EQ(Probe::SubMesh(mesh, 0).vertexCount, 0);
        mesh.Draw();
    }
}

TEST_F(XT3DStaticDamageTest, Refuses_counts_that_no_memory_would_hold) {
    for (const char* count : {"2000000000", "2147483647", "99999999999999999999"}) {
        SCOPED_TRACE(count);
        ExpectRefused(WriteMesh(NewPrefix(), std::string("XT3DSTATIC ") + count + " dir 0"));
        ExpectRefused(
            WriteMesh(NewPrefix(), std::string("XT3DSTATIC 1 dir 0 ") + noTextures + count + " 1"));
    }
}

TEST_F(XT3DStaticDamageTest, Drops_the_sub_meshes_before_one_that_is_too_large) {
    const std::string prefix = NewPrefix();
    ExpectRefused(WriteMesh(prefix, Header(prefix, 2, false) + noTextures + Rectangle(0, 0, 1, 1) +
                                        noTextures + "2000000000"));
}

TEST_F(XT3DStaticDamageTest, Reads_what_it_can_of_a_file_that_ends_early) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 3, false) + noTextures + "2  1 2 3 4 5 6 7 8  9 10");
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", prefix}, {"XT3DStatic", "LOADED", name}}));
    ASSERT_EQ(Probe::Count(mesh), 3);
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    ASSERT_EQ(part.vertexCount, 2);
    EXPECT_EQ(part.texcoords[0], vec2(7, 8));
    EXPECT_EQ(part.positions[1], vec3(9, 10, 0));
    EXPECT_EQ(part.normals[1], vec3(0, 0, 0));
    EXPECT_EQ(part.texture0, nullptr) << "its name was there";
    mesh.Draw();
    mesh.DrawShadow();
}

TEST_F(XT3DStaticDamageTest, Takes_the_directory_itself_for_every_texture_that_is_not_there) {
    // Ends behind the first texture of the second of four sub-meshes.
    const std::string prefix = NewPrefix();
    const std::string name = WriteMesh(prefix, Header(prefix, 4, false) + noTextures + "1 " +
                                                   Vertex(1, 2, 3, 4, 5) + "NULL");
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", prefix}, {"XT3DStatic", "LOADED", name}}));
    ASSERT_EQ(Probe::Count(mesh), 4);
    EXPECT_EQ(Probe::SubMesh(mesh, 1).texture0, nullptr);
    for (int i = 1; i < 4; ++i) {
        const XT3DSubMesh& part = Probe::SubMesh(mesh, i);
        for (const Image* texture : {i == 1 ? part.texture1 : part.texture0, part.texture2}) {
            ASSERT_NE(texture, nullptr);
            EXPECT_EQ(texture->GetName(), prefix);
            EXPECT_EQ(texture->GetID(), 0u);
        }
        EXPECT_NE(part.texture1, part.texture2) << "each has an image of its own";
        EXPECT_EQ(part.vertexCount, 0);
        EXPECT_NE(part.positionBuffer, 0u);
    }
    mesh.Draw();
    mesh.DrawShadow();
}

TEST_F(XT3DStaticDamageTest,
       Takes_an_empty_path_for_textures_when_not_even_the_directory_is_there) {
    XT3DStatic mesh;
    mesh.Load(WriteMesh(NewPrefix(), "XT3DSTATIC 1"));
    ASSERT_EQ(Probe::Count(mesh), 1);
    ASSERT_NE(Probe::SubMesh(mesh, 0).texture0, nullptr);
    EXPECT_EQ(Probe::SubMesh(mesh, 0).texture0->GetName(), "");
    mesh.Draw();
}

TEST_F(XT3DStaticDamageTest, Survives_every_truncated_file) {
    const std::size_t magicEnds = std::string("XT3DSTATIC").size();
    std::size_t end = 1;
    for (std::size_t length = 0; length <= end; ++length) {
        SCOPED_TRACE(length);
        const std::string prefix = NewPrefix(); // each with a light map path of its own
        const std::string text = Header(prefix, 2, true) + noTextures +
                                 "2  1 2 3 4 5 6 7 8 9 10  1 2 3 4 5 6 7 8 9 10 " + noTextures +
                                 "1  1 2 3 4 5 6 7 8 9 10";
        end = text.size();
        const std::string name = WriteMesh(prefix, text.substr(0, length));
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        const std::string status = length < magicEnds ? "ERROR" : "LOADED";
        EXPECT_EQ(log.NewRows().back(), (LogRow{"XT3DStatic", status, name}));
        mesh.Draw();
        mesh.DrawShadow();
    }
}

TEST_F(XT3DStaticDamageTest, Survives_every_beginning_of_a_real_file) {
    const std::string text = RealFile();
    XT3DStatic whole;
    whole.Load(WriteMesh(NewPrefix(), text));
    ASSERT_EQ(Probe::SubMesh(whole, 0).vertexCount, 24);
    int complete = 0; // vertices that are there in the longest beginning so far
    for (std::size_t length = 0; length <= text.size(); ++length) {
        SCOPED_TRACE(length);
        XT3DStatic mesh;
        mesh.Load(WriteMesh(NewPrefix(), text.substr(0, length)));
        mesh.Draw();
        mesh.DrawShadow();
        if (Probe::Count(mesh) == 0)
            continue;
        const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
        int same = 0; // leading vertices that are the whole file's
        while (same < part.vertexCount &&
               part.positions[same] == Probe::SubMesh(whole, 0).positions[same])
            ++same;
        EXPECT_GE(same, complete) << "a longer beginning holds no less";
        complete = std::max(complete, same);
    }
    EXPECT_EQ(complete, 24);
}

TEST_F(XT3DStaticDamageTest, Survives_any_changed_byte_of_a_real_file) {
    const std::string text = RealFile();
    for (std::size_t i = 0; i < text.size(); ++i)
        for (const char other : {'-', '9', 'e', '\0'}) {
            SCOPED_TRACE(testing::Message() << "byte " << i << " is " << static_cast<int>(other));
            std::string damaged = text;
            damaged[i] = other;
            const std::string prefix = NewPrefix();
            XT3DStatic mesh;
            mesh.Load(WriteMesh(prefix, Moved(damaged, prefix)));
            mesh.Draw();
            ExpectInItsBox(mesh);
        }
}

TEST_F(XT3DStaticDamageTest, Reads_a_real_file_with_other_line_ends_or_none_at_its_end) {
    const std::string text = RealFile();
    std::string carriageReturns;
    for (const char c : text)
        carriageReturns += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const std::string unended = text.substr(0, text.find_last_not_of('\n') + 1);
    XT3DStatic whole;
    whole.Load(WriteMesh(NewPrefix(), text));
    const XT3DSubMesh& expected = Probe::SubMesh(whole, 0);
    for (const std::string& other : {carriageReturns, unended}) {
        XT3DStatic mesh;
        mesh.Load(WriteMesh(NewPrefix(), other));
        ASSERT_EQ(Probe::Count(mesh), 1);
        const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
        ASSERT_EQ(part.vertexCount, 24);
        EXPECT_EQ(part.texture0->GetName(), expected.texture0->GetName());
        EXPECT_TRUE(std::equal(part.positions, part.positions + 24, expected.positions));
        EXPECT_TRUE(std::equal(part.texcoords, part.texcoords + 24, expected.texcoords));
    }
}
