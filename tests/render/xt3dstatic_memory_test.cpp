#include "engine/render/xt3dstatic.h"

#include "engine/render/trust.h"
#include "tests/render/xt3dstatic_probe.h"
#include "tests/support/gl_state.h"

#include <filesystem>
#include <utility>

#include <GL/glx.h>

using namespace Vell;

namespace {

const char* const bufferExtension = "GL_ARB_vertex_buffer_object";

bool hideBuffers = false;
int timesAsked = 0; // for the list of extensions

/// What the driver says.
const GLubyte* RealGetString(GLenum name) {
    static const auto real = reinterpret_cast<const GLubyte* (*)(GLenum)>(
        glXGetProcAddress(reinterpret_cast<const GLubyte*>("glGetString")));
    return real(name);
}

/// The list of extensions with vertex buffer objects taken out.
const GLubyte* ListWithoutBuffers() {
    static std::string list;
    list = reinterpret_cast<const char*>(RealGetString(GL_EXTENSIONS));
    const std::size_t at = list.find(bufferExtension);
    if (at != std::string::npos)
        list.erase(at, std::string(bufferExtension).size());
    return reinterpret_cast<const GLubyte*>(list.c_str());
}

} // namespace

/// Takes the place of OpenGL's function in this executable: the linker finds it first.
extern "C" const GLubyte* glGetString(GLenum name) {
    if (name == GL_EXTENSIONS)
        ++timesAsked;
    return hideBuffers && name == GL_EXTENSIONS ? ListWithoutBuffers() : RealGetString(name);
}

namespace {

/// A driver without vertex buffer objects: neither named nor there to be called.
class NoBuffers {
public:
    NoBuffers()
        : gen(std::exchange(glGenBuffers, nullptr)),
          bind(std::exchange(glBindBuffer, nullptr)),
          data(std::exchange(glBufferData, nullptr)),
          remove(std::exchange(glDeleteBuffers, nullptr)) {
        hideBuffers = true;
    }
    ~NoBuffers() {
        hideBuffers = false;
        glGenBuffers = gen;
        glBindBuffer = bind;
        glBufferData = data;
        glDeleteBuffers = remove;
    }
    NoBuffers(const NoBuffers&) = delete;
    NoBuffers& operator=(const NoBuffers&) = delete;

private:
    decltype(glGenBuffers) gen;
    decltype(glBindBuffer) bind;
    decltype(glBufferData) data;
    decltype(glDeleteBuffers) remove;
};

class XT3DStaticMemoryTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        UseUnitOrtho();
    }

    static Rgba ColourAt(int x, int y) { return ReadScreen(screenSize, screenSize).At(x, y); }

    static void Clear() { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }
};

/// Left half red, right half blue, as two sub-meshes.
std::string TwoParts(const std::string& prefix) {
    const std::string first = PlainTexture(prefix, "red.png", red);
    const std::string second = PlainTexture(prefix, "blue.png", blue);
    return WriteMesh(prefix, Header(prefix, 2, false) + first + " NULL NULL " +
                                 Rectangle(0, 0, 0.5f, 1) + second + " NULL NULL " +
                                 Rectangle(0.5f, 0, 1, 1));
}

} // namespace

TEST_F(XT3DStaticMemoryTest, Makes_no_buffers_where_there_are_none) {
    const NoBuffers driver;
    XT3DStatic mesh;
    mesh.Load(TwoParts(NewPrefix()));
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 1);
    EXPECT_EQ(part.positionBuffer, 0u);
    EXPECT_EQ(part.texcoordBuffer, 0u);
    EXPECT_EQ(part.lightmapTexcoordBuffer, 0u);
    EXPECT_EQ(part.normalBuffer, 0u);
    EXPECT_EQ(part.vertexCount, 6);
}

TEST_F(XT3DStaticMemoryTest, Draws_both_passes_from_its_arrays_and_leaves_no_state_behind) {
    const NoBuffers driver;
    XT3DStatic mesh;
    mesh.Load(TwoParts(NewPrefix()));
    GlState expected = CaptureGlState();
    expected.values["unit 0 binding"] =
        std::to_string(Probe::SubMesh(mesh, 1).texture0->GetID()) + " ";
    for (void (XT3DStatic::*pass)() : {&XT3DStatic::Draw, &XT3DStatic::DrawShadow}) {
        Clear();
        (mesh.*pass)();
        EXPECT_EQ(ColourAt(32, 64), red);
        EXPECT_EQ(ColourAt(96, 64), blue);
        EXPECT_EQ(Differences(expected, CaptureGlState()), "");
    }
}

TEST_F(XT3DStaticMemoryTest, Hands_normals_and_coordinates_on_from_its_arrays) {
    const NoBuffers driver;
    const std::string prefix = NewPrefix();
    WriteFile(prefix + ".vert", "void main() { gl_Position = ftransform(); "
                                "gl_FrontColor = vec4(gl_MultiTexCoord0.st, gl_Normal.z, 1.0); }");
    WriteFile(prefix + ".frag", "void main() { gl_FragColor = gl_Color; }");
    XT3DStatic mesh;
    mesh.Load(
        WriteMesh(prefix, Header(prefix, 1, false) + "NULL NULL NULL " + Rectangle(0, 0, 1, 1)));
    mesh.SetMaterialShader(prefix + ".vert", prefix + ".frag");
    mesh.Draw();
    // Pixel centres: (32.5 / 128, 96.5 / 128) = (65, 192) / 255.
    EXPECT_TRUE(Near(ColourAt(32, 96), {65, 192, 255, 255}, 1)) << "8-bit rounding";
}

TEST_F(XT3DStaticMemoryTest, Binds_the_light_map_but_gives_it_no_coordinates) {
    const NoBuffers driver;
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    WriteFile(prefix + ".vert", "void main() { gl_Position = ftransform(); "
                                "gl_TexCoord[1] = gl_MultiTexCoord1; }");
    WriteFile(prefix + ".frag", "uniform sampler2D lightmap; void main() { "
                                "gl_FragColor = texture2D(lightmap, gl_TexCoord[1].st); }");
    XT3DStatic mesh;
    mesh.Load(WriteMesh(prefix, Header(prefix, 1, true) + "NULL NULL NULL " +
                                    Rectangle(0, 0, 1, 1, 0, "0.75 0.5")));
    mesh.SetMaterialShader(prefix + ".vert", prefix + ".frag");
    // The file's coordinates point at the green half; the current ones, at the red half, stay.
    glMultiTexCoord2f(GL_TEXTURE1, 0.25f, 0.5f);
    mesh.Draw();
    EXPECT_TRUE(Near(ColourAt(64, 64), red, jpegRounding));
}

TEST_F(XT3DStaticMemoryTest, Asks_for_buffers_at_every_sub_mesh_of_every_draw) {
    XT3DStatic mesh;
    mesh.Load(TwoParts(NewPrefix()));
    for (void (XT3DStatic::*pass)() : {&XT3DStatic::Draw, &XT3DStatic::DrawShadow}) {
        timesAsked = 0;
        (mesh.*pass)();
        EXPECT_GE(timesAsked, 2);
    }
}

// --------------------------------------------------------------------- What a count is given

namespace {

/// A file whose last number is followed by a hole of so many bytes: nothing can be read of it, and
/// it costs no disk.
std::string WithHole(const std::string& text, std::size_t bytes) {
    std::string name = WriteMesh(NewPrefix(), text);
    std::filesystem::resize_file(name, text.size() + bytes);
    return name;
}

/// Loads the file; "LOADED" or "ERROR".
std::string Outcome(XT3DStatic& mesh, const std::string& name) {
    const LogWatch log;
    mesh.Load(name);
    const LogRow row = log.NewRows().back();
    EXPECT_EQ(row.section, "XT3DStatic");
    EXPECT_EQ(row.file, name);
    return row.status;
}

/// A mesh without a light map leaves them behind, here 54 MB of them.
void DeleteUnusedCoordinates(const XT3DStatic& mesh) {
    delete[] Probe::SubMesh(mesh, 0).lightmapTexcoords;
}

/// All but those of the first sub-mesh share with them. No mesh releases them, and here their names
/// alone are hundreds of megabytes.
void DeleteSharedTextures(const XT3DStatic& mesh) {
    for (int i = 1; i < Probe::Count(mesh); ++i) {
        const XT3DSubMesh& part = Probe::SubMesh(mesh, i);
        for (const Image* texture : {part.texture0, part.texture1, part.texture2})
            delete texture;
    }
}

std::string VerticesOf(int count, bool lightmap) {
    return std::string("XT3DSTATIC 1 dir/ ") + (lightmap ? "1" : "0") + " NULL NULL NULL " +
           std::to_string(count);
}

} // namespace

TEST_F(XT3DStaticMemoryTest, Gives_a_short_file_what_is_taken_on_trust_and_no_vertex_more) {
    const NoBuffers driver;
    constexpr int most = takenOnTrust / 40; // two vec3 and two vec2: 24 + 16 bytes
    EXPECT_EQ(most, 6710886);
    XT3DStatic mesh;
    EXPECT_EQ(Outcome(mesh, WithHole(VerticesOf(most, false), 1)), "LOADED");
    EXPECT_EQ(Probe::SubMesh(mesh, 0).vertexCount, most);
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[most - 1], vec3(0, 0, 0));
    DeleteUnusedCoordinates(mesh);
    XT3DStatic refused;
    EXPECT_EQ(Outcome(refused, WithHole(VerticesOf(most + 1, false), 1)), "ERROR");
    EXPECT_EQ(Probe::Count(refused), 0);
}

TEST_F(XT3DStaticMemoryTest, Gives_a_file_that_is_long_enough_every_vertex) {
    const NoBuffers driver;
    constexpr int count = takenOnTrust / 40 + 1;
    for (const bool lightmap : {false, true}) {
        // A number takes a digit and a blank.
        const std::size_t least = static_cast<std::size_t>(count) * (lightmap ? 20 : 16);
        XT3DStatic mesh;
        EXPECT_EQ(Outcome(mesh, WithHole(VerticesOf(count, lightmap), least)), "LOADED");
        EXPECT_EQ(Probe::SubMesh(mesh, 0).vertexCount, count);
        if (!lightmap)
            DeleteUnusedCoordinates(mesh);
        XT3DStatic refused;
        EXPECT_EQ(Outcome(refused, WithHole(VerticesOf(count, lightmap), least - 1)), "ERROR");
    }
}

TEST_F(XT3DStaticMemoryTest, Reads_on_where_it_was_after_measuring_the_file) {
    const NoBuffers driver;
    constexpr int count = takenOnTrust / 40 + 1;
    XT3DStatic mesh;
    EXPECT_EQ(Outcome(mesh, WithHole(VerticesOf(count, false) + " 1 2 3 4 5 6 7 8  9 ",
                                     static_cast<std::size_t>(count) * 16)),
              "LOADED");
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[0], vec3(1, 2, 3));
    EXPECT_EQ(Probe::SubMesh(mesh, 0).texcoords[0], vec2(7, 8));
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[1], vec3(9, 0, 0));
    DeleteUnusedCoordinates(mesh);
}

TEST_F(XT3DStaticMemoryTest, Gives_a_short_file_no_more_sub_meshes_than_are_taken_on_trust) {
    // 2 KiB each and three times the 2000 bytes of the directory: 268435456 / 8048 = 33354.3.
    const std::string folder(2000, 'd');
    for (const bool refused : {false, true}) {
        const int count = refused ? 33355 : 33354;
        XT3DStatic mesh;
        EXPECT_EQ(
            Outcome(mesh, WithHole("XT3DSTATIC " + std::to_string(count) + " " + folder + " 0", 1)),
            refused ? "ERROR" : "LOADED");
        EXPECT_EQ(Probe::Count(mesh), refused ? 0 : count);
        DeleteSharedTextures(mesh);
    }
}

TEST_F(XT3DStaticMemoryTest, Gives_a_file_that_is_long_enough_every_sub_mesh) {
    const std::string folder(20000, 'd'); // 268435456 / (2048 + 60000) = 4326.3
    constexpr int count = 4327;
    std::string file = "XT3DSTATIC " + std::to_string(count) + " " + folder + " 0";
    for (int i = 0; i < count; ++i)
        file += "a b c 0"; // as short as can be: a number ends where a name begins
    XT3DStatic mesh;
    EXPECT_EQ(Outcome(mesh, WriteMesh(NewPrefix(), file)), "LOADED");
    ASSERT_EQ(Probe::Count(mesh), count);
    EXPECT_EQ(Probe::SubMesh(mesh, count - 1).texture2->GetName(), folder + "c");
    DeleteSharedTextures(mesh);
    file.pop_back();
    XT3DStatic refused;
    EXPECT_EQ(Outcome(refused, WriteMesh(NewPrefix(), file)), "ERROR");
}
