// What docs/assets.md shows is loaded: its example, its sky, and a file of each kind that it says
// is refused.

#include "engine/core/core.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/shapes.h"
#include "tools/picture/picture.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gmock/gmock.h>

using namespace Vell;

namespace {

const std::string page = NIMBREL_SOURCE_DIR "/docs/assets.md";

constexpr Rgba white{255, 255, 255, 255};
constexpr Rgba grey{128, 128, 128, 255};

/// The lines of the page's block that is said to be of this kind.
std::string Block(const std::string& kind) {
    const std::string text = ReadFile(page);
    const std::string fence = "\n```" + kind + "\n";
    const std::size_t begin = text.find(fence) + fence.size();
    return text.substr(begin, text.find("```", begin) - begin);
}

/// What the page tells of a file: "Image ERROR, XT3DStatic LOADED" and "a mesh".
struct Outcome {
    std::string rows;
    std::string left;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << outcome.rows << " | " << outcome.left;
}

/// The rows of the page's last table, by their first cell.
std::map<std::string, Outcome> Refusals() {
    std::map<std::string, Outcome> refusals;
    std::istringstream lines(ReadFile(page));
    for (std::string line;
         std::getline(lines, line) && line != "| file | the log says | what is left |";)
        ;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find(" | ");
        const std::size_t second = line.find(" | ", first + 1);
        if (second != std::string::npos)
            refusals[line.substr(2, first - 2)] = {
                line.substr(first + 3, second - first - 3),
                line.substr(second + 3, line.size() - second - 5)};
    }
    return refusals;
}

std::string Said(const std::vector<LogRow>& rows) {
    std::string said;
    for (const LogRow& row : rows)
        if (row.status != "FREE")
            said += (said.empty() ? "" : ", ") + row.section + " " + row.status;
    return said.empty() ? "nothing" : said;
}

std::string PictureFile(Rgba colour) {
    std::string path = FreshName("asset", ".png");
    WritePicture(path, Picture(8, 8, colour));
    return path;
}

/// A file of this ending with these bytes.
std::string File(const std::string& ending, const std::string& bytes) {
    std::string path = FreshName("asset", ending);
    WriteFile(path, bytes);
    return path;
}

std::string Jpeg() {
    const std::string path = FreshName("whole", ".jpg");
    WriteJpeg(path, 64, 64, std::vector<unsigned char>(64 * 64 * 3, 100));
    return ReadFile(path);
}

std::string Png() {
    return ReadFile(PictureFile(white));
}

std::string Mesh(const std::string& texture, const std::string& lit = "0") {
    return "XT3DSTATIC 1 ./ " + lit + "\n" + texture +
           " NULL NULL 3\n-3 -1 5  0 0 1  0 0\n3 -1 5  0 0 1  1 0\n0 2 5  0 0 1  0 1\n";
}

const std::string vertexSource = "void main() { gl_Position = ftransform(); }";

std::string LoadImage(const std::string& path) {
    Image image;
    const bool loaded = image.Load(path);
    EXPECT_EQ(loaded, image.GetID() != 0);
    return image.GetID() == 0 ? "no texture" : "a texture";
}

std::string LoadMesh(const std::string& path) {
    XT3DStatic mesh;
    mesh.Load(path);
    mesh.Draw();
    return mesh.GetSubMeshCount() == 0 ? "an empty mesh" : "a mesh";
}

std::string LoadShader(const std::string& vertex, const std::string& fragment) {
    Shader shader;
    shader.Load(vertex, fragment);
    shader.Enable();
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    shader.Disable();
    return program == 0 ? "no program" : "a program";
}

std::string LoadTerrain(const std::string& path) {
    Terrain terrain(1);
    terrain.Load(path);
    return terrain.GetHeightmap().GetID() == 0 ? "no texture" : "a texture";
}

std::string LoadAsPictureWhatIsAMesh() {
    XT3DStatic mesh;
    const std::string path = File(".xt3dstatic", Mesh("NULL"));
    mesh.Load(path);
    return LoadImage(path);
}

std::string LoadAsMeshWhatIsAPicture() {
    Image image;
    const std::string path = PictureFile(white);
    image.Load(path);
    return LoadMesh(path);
}

std::string GreyJpeg() {
    std::string path = FreshName("grey", ".jpg");
    WriteGreyJpeg(path, 8, 8, std::vector<unsigned char>(64, 100));
    return path;
}

std::string GreyPng() {
    std::string path = FreshName("grey", ".png");
    WritePng(path, 8, 8, 1, std::vector<unsigned char>(64, 100));
    return path;
}

/// A pipe that nobody writes into.
std::string Pipe(const std::string& ending) {
    std::string path = FreshName("pipe", ending);
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
    return path;
}

/// Loads a file such as a row of the page tells of; what is left of it.
const std::map<std::string, std::function<std::string()>>& Loaders() {
    static const std::string unlit = "XT3DSTATIC 1 ./ 0\nNULL NULL NULL ";
    static const std::map<std::string, std::function<std::string()>> loaders = {
        {"a picture that is not there", [] { return LoadImage("ghost.png"); }},
        {"a pipe in the place of a picture", [] { return LoadImage(Pipe(".png")); }},
        {"a picture with another ending", [] { return LoadImage(File(".PNG", Png())); }},
        {"a grey JPEG", [] { return LoadImage(GreyJpeg()); }},
        {"a grey PNG", [] { return LoadImage(GreyPng()); }},
        {"a file called `.png` that is none", [] { return LoadImage(File(".png", Jpeg())); }},
        {"a PNG that is cut off",
         [] { return LoadImage(File(".png", Png().substr(0, Png().size() / 2))); }},
        {"a JPEG that is cut off behind its head",
         [] { return LoadImage(File(".jpg", Jpeg().substr(0, Jpeg().size() - 20))); }},
        {"a mesh whose path is then loaded as a picture", LoadAsPictureWhatIsAMesh},
        {"a mesh that is not there", [] { return LoadMesh("ghost.xt3dstatic"); }},
        {"a pipe in the place of a mesh", [] { return LoadMesh(Pipe(".xt3dstatic")); }},
        {"a mesh without its first word",
         [] { return LoadMesh(File(".xt3dstatic", Mesh("NULL").substr(11))); }},
        {"a mesh with a count that the file cannot hold",
         [] { return LoadMesh(File(".xt3dstatic", unlit + "2000000000\n")); }},
        {"a picture whose path is then loaded as a mesh", LoadAsMeshWhatIsAPicture},
        {"a mesh that ends early",
         [] { return LoadMesh(File(".xt3dstatic", unlit + "3\n0 0 0")); }},
        {"a mesh with a word for a number",
         [] { return LoadMesh(File(".xt3dstatic", unlit + "3\n0 0 zero 0 0 1 0 0\n")); }},
        {"a mesh whose texture is not there",
         [] { return LoadMesh(File(".xt3dstatic", Mesh("absent.png"))); }},
        {"a mesh whose light map is not there",
         [] { return LoadMesh(File(".xt3dstatic", Mesh("NULL", "1"))); }},
        {"a vertex shader that is not there",
         [] { return LoadShader("ghost.vert", File(".frag", "void main() {}")); }},
        {"a vertex shader that does not compile",
         [] { return LoadShader(File(".vert", "no"), File(".frag", "void main() {}")); }},
        {"a fragment shader that does not compile",
         [] { return LoadShader(File(".vert", vertexSource), File(".frag", "no")); }},
        {"a height map that is not there", [] { return LoadTerrain("absent-heights.png"); }},
    };
    return loaders;
}

/// White but for grey corners, eight pixels wide.
Picture GreyCorners() {
    const auto outer = [](int at) { return at < 8 || at >= 56; };
    return MakePicture(64, 64, [&](int x, int y) { return outer(x) && outer(y) ? grey : white; });
}

class PageOfAssets : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        SetFovy(90.0f);
    }

    /// The middle of what an eye at the origin that looks along +z sees of a mesh file.
    static Rgba MiddleOf(const std::string& path) {
        SceneManager scene;
        scene.AddSceneNode(scene.GetMesh(path), vec3(0));
        scene.Draw();
        return ReadScreen(screenSize, screenSize).At(64, 64);
    }
};

} // namespace

TEST_F(PageOfAssets, Shows_a_mesh_of_twelve_lines_that_loads) {
    const std::string example = Block("xt3dstatic");
    EXPECT_EQ(std::count(example.begin(), example.end(), '\n'), 12);
    WriteFile("example.xt3dstatic", example);
    WriteFile("Data/Gfx/City/stone.jpg", Jpeg());
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load("example.xt3dstatic");
    mesh.Draw();
    EXPECT_EQ(Said(log.NewRows()), "Image LOADED, XT3DStatic LOADED");
    ASSERT_EQ(mesh.GetSubMeshCount(), 2);
    EXPECT_EQ(mesh.GetSubMesh(0).vertexCount, 3);
    EXPECT_EQ(mesh.GetSubMesh(1).vertexCount, 6);
    EXPECT_EQ(mesh.GetSubMesh(1).texcoords[5], vec2(0, 1)) << "read to its last number";
    EXPECT_EQ(mesh.GetBBox()->GetMin(), vec3(-1, -2, 0));
    EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(1, 2, 0));
}

TEST_F(PageOfAssets, Says_of_each_refused_file_what_the_log_says_and_what_is_left) {
    const std::map<std::string, Outcome> refusals = Refusals();
    for (const auto& [file, told] : refusals) {
        ASSERT_TRUE(Loaders().contains(file)) << file;
        const LogWatch log;
        const std::string left = Loaders().at(file)();
        EXPECT_EQ((Outcome{Said(log.NewRows()), left}), told) << file;
    }
    EXPECT_EQ(refusals.size(), Loaders().size()) << "each of these has a row";
}

TEST_F(PageOfAssets, Other_textures_darken_by_their_corners_without_a_material) {
    const std::string corners = FreshName("corners", ".png");
    WritePicture(corners, GreyCorners());
    const std::string plain = PictureFile(white);
    for (const std::string& textures : {"NULL " + corners + " NULL", plain + " NULL " + corners})
        EXPECT_TRUE(
            Near(MiddleOf(File(".xt3dstatic", "XT3DSTATIC 1 ./ 0\n" + textures +
                                                  " 3\n-3 -1 5  0 0 1  0 0\n3 -1 5  0 0 1  1 0\n"
                                                  "0 2 5  0 0 1  0 1\n")),
                 grey))
            << textures;
}

TEST_F(PageOfAssets, Light_map_darkens_by_its_corners_without_a_material) {
    std::vector<unsigned char> bytes;
    const Picture corners = GreyCorners();
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            bytes.insert(bytes.end(), 3, static_cast<unsigned char>(corners.At(x, y).r));
    WriteJpeg("lightmap.jpg", 64, 64, bytes);
    const std::string path = File(".xt3dstatic", "XT3DSTATIC 1 ./ 1\nNULL NULL NULL 3\n"
                                                 "-3 -1 5  0 0 1  0 0  .5 .5\n"
                                                 "3 -1 5  0 0 1  1 0  .5 .5\n"
                                                 "0 2 5  0 0 1  0 1  .5 .5\n");
    EXPECT_TRUE(Near(MiddleOf(path), grey, 2)); // JPEG rounds
}

namespace {

constexpr int side = 160; // of a face in the committed cross

/// Cuts a face out of docs/sky-faces.png.
std::string FaceFile(const Tools::Picture& cross, int column, int row) {
    std::string path = FreshName("face", ".png");
    WritePicture(path, MakePicture(side, side, [&](int x, int y) {
                     const unsigned char* pixel =
                         cross.At(column * side + x, row * side + side - 1 - y);
                     return Rgba{pixel[0], pixel[1], pixel[2], 255};
                 }));
    return path;
}

/// An edge of the cross that is met when one looks from the middle of the box along `direction`.
struct Edge {
    const char* between;
    vec3 direction;
    bool upright;
};

constexpr Edge edges[] = {
    {"xpos and zpos", {1, 0, 1}, true},   {"zpos and xneg", {-1, 0, 1}, true},
    {"xneg and zneg", {-1, 0, -1}, true}, {"ypos and zpos", {0, 1, 1}, false},
    {"zpos and yneg", {0, -1, 1}, false},
};

} // namespace

// The marks lie a quarter of a face from its middle: 500 units of 1414, and so at 64 -+ 22.6.
TEST_F(PageOfAssets, Neighbours_in_the_cross_meet_in_the_sky) {
    const Tools::Picture cross = Tools::ReadPng(NIMBREL_SOURCE_DIR "/docs/sky-faces.png");
    ASSERT_EQ(cross.width, 4 * side);
    SkyBox sky(FaceFile(cross, 0, 1), FaceFile(cross, 2, 1), FaceFile(cross, 1, 0),
               FaceFile(cross, 1, 2), FaceFile(cross, 1, 1), FaceFile(cross, 3, 1));
    for (const Edge& edge : edges) {
        glLoadIdentity();
        Camera camera;
        camera.Set(vec3(0), edge.direction);
        camera.Draw();
        sky.Draw(&camera, false);
        const Picture seen = ReadScreen(screenSize, screenSize);
        for (const int beside : {-3, 2}) { // on either face
            const int first = edge.upright ? 64 + 22 : 64 - 22;
            const int last = 128 - first;
            EXPECT_TRUE(Near(
                edge.upright ? seen.At(64 + beside, first) : seen.At(first, 64 + beside), white))
                << edge.between;
            EXPECT_TRUE(Near(edge.upright ? seen.At(64 + beside, last) : seen.At(last, 64 + beside),
                             {0, 0, 0, 255}))
                << edge.between;
        }
    }
}
