#include "engine/render/xt3dstatic.h"

#include "tests/render/xt3dstatic_probe.h"
#include "tests/support/gl_state.h"

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
    const size_t at = list.find(bufferExtension);
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
