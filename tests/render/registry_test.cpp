// What the loaders make of the registry of loaded files: a path whose object is gone is read
// afresh, and a path of another kind of file is refused.
#include "engine/core/ressourcemanager.h"

#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/scenemanager.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/shapes.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace Vell;

namespace {

using Rows = std::vector<LogRow>;

constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba green{0, 255, 0, 255};

std::string PictureFile(Rgba colour) {
    std::string path = FreshName("registered", ".png");
    WritePicture(path, Picture(2, 2, colour));
    return path;
}

std::string SourceFile(const std::string& ending) {
    std::string path = FreshName("registered", ending);
    WriteFile(path, ending == ".vert" ? "void main() { gl_Position = ftransform(); }"
                                      : "void main() { gl_FragColor = vec4(1.0); }");
    return path;
}

/// A triangle with this texture, which the file finds beside it.
std::string MeshFile(const std::string& texture) {
    std::string path = FreshName("registered", ".xt3dstatic");
    WriteFile(path, "XT3DSTATIC 1 ./ 0\n" + texture + " NULL NULL 3\n" +
                        "0 0 0  0 0 1  0 0\n1 0 0  0 0 1  1 0\n0 1 0  0 0 1  0 1\n");
    return path;
}

Rgba ColourOf(const Image& image) {
    return ReadTexture(image.GetID()).At(0, 0);
}

class RegistryTest : public GlTest {};

} // namespace

TEST_F(RegistryTest, Image_that_is_gone_is_read_afresh) {
    const std::string path = PictureFile(red);
    const LogWatch log;
    for (int i = 0; i < 2; ++i) {
        Image image;
        EXPECT_TRUE(image.Load(path));
        EXPECT_EQ(ColourOf(image), red);
        EXPECT_EQ(image.GetData()[0], 255) << "pixels of its own";
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", path},
                                   {"Image", "FREE", path},
                                   {"Image", "LOADED", path},
                                   {"Image", "FREE", path}}));
}

TEST_F(RegistryTest, Image_that_is_gone_is_not_taken_for_the_next_one_at_its_address) {
    const std::string first = PictureFile(red);
    const std::string second = PictureFile(green);
    std::optional<Image> place;
    place.emplace().Load(first);
    place.emplace().Load(second);
    Image image;
    EXPECT_TRUE(image.Load(first));
    EXPECT_EQ(ColourOf(image), red);
}

TEST_F(RegistryTest, Image_leaves_no_path_behind_that_it_has_loaded) {
    const std::string first = PictureFile(red);
    auto image = std::make_unique<Image>();
    image->Load(first);
    const GLuint forgotten = image->GetID();
    std::unique_ptr<unsigned char[]> pixels(image->GetData());
    image->Load(PictureFile(green));
    image.reset();
    Image again;
    EXPECT_TRUE(again.Load(first));
    EXPECT_EQ(ColourOf(again), red);
    glDeleteTextures(1, &forgotten);
}

TEST_F(RegistryTest, End_of_a_sharer_leaves_the_path_to_the_first) {
    const std::string path = PictureFile(red);
    Image first;
    first.Load(path);
    std::make_unique<Image>()->Load(path);
    Image third;
    third.Load(path);
    EXPECT_EQ(third.GetID(), first.GetID());
}

TEST_F(RegistryTest, Mesh_that_is_gone_is_read_afresh_and_finds_its_textures) {
    const std::string texture = PictureFile(red);
    const std::string path = MeshFile(texture);
    const LogWatch log;
    for (int i = 0; i < 2; ++i) {
        XT3DStatic mesh;
        mesh.Load(path);
        mesh.Draw();
        EXPECT_EQ(mesh.GetVertexCount(), 3);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(1, 1, 0)) << "which a sharer has not";
        EXPECT_EQ(ColourOf(*mesh.GetSubMesh(0).texture0), red);
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", "./" + texture},
                                   {"XT3DStatic", "LOADED", path},
                                   {"XT3DStatic", "FREE", path},
                                   {"XT3DStatic", "LOADED", path},
                                   {"XT3DStatic", "FREE", path}}));
}

TEST_F(RegistryTest, Light_map_that_is_gone_is_read_afresh) {
    const std::string folder = FreshName("lit", "/");
    WriteFile(folder + "mesh.xt3dstatic", "XT3DSTATIC 1 " + folder + " 1\nNULL NULL NULL 0\n");
    WriteJpeg(folder + "lightmap.jpg", 8, 8, std::vector<unsigned char>(8 * 8 * 3, 255));
    for (int i = 0; i < 2; ++i) {
        XT3DStatic mesh;
        mesh.Load(folder + "mesh.xt3dstatic");
        EXPECT_TRUE(glIsTexture(mesh.GetLightmap()->GetID()));
        mesh.Draw();
    }
}

TEST_F(RegistryTest, Program_that_is_gone_is_compiled_afresh) {
    const std::string vert = SourceFile(".vert");
    const std::string frag = SourceFile(".frag");
    const LogWatch log;
    for (int i = 0; i < 2; ++i) {
        Shader shader;
        shader.Load(vert, frag);
        shader.Disable();
    }
    const std::string both = vert + " " + frag;
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "LOADED", both},
                                   {"Shader", "FREE", both},
                                   {"Shader", "LOADED", both},
                                   {"Shader", "FREE", both}}));
}

TEST_F(RegistryTest, Path_of_a_mesh_or_a_shader_is_no_picture) {
    XT3DStatic mesh;
    Shader shader;
    const std::string meshPath = MeshFile("NULL");
    const std::string vert = SourceFile(".vert");
    mesh.Load(meshPath);
    shader.Load(vert, SourceFile(".frag"));
    shader.Disable();
    for (const std::string& path : {meshPath, vert}) {
        const LogWatch log;
        {
            Image image;
            EXPECT_FALSE(image.Load(path));
            EXPECT_EQ(image.GetID(), 0U);
            EXPECT_EQ(image.GetSize(), ivec2(0, 0));
            image.Bind();
        }
        EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", path}, {"Image", "FREE", path}}));
    }
    EXPECT_EQ(RessourceManager::GetInstance().Get(meshPath), &mesh) << "its path stays its own";
}

TEST_F(RegistryTest, Path_of_an_image_or_a_shader_is_no_mesh) {
    Image image;
    Shader shader;
    const std::string picture = PictureFile(red);
    const std::string frag = SourceFile(".frag");
    image.Load(picture);
    shader.Load(SourceFile(".vert"), frag);
    shader.Disable();
    for (const std::string& path : {picture, frag}) {
        const LogWatch log;
        {
            XT3DStatic mesh;
            mesh.Load(path);
            EXPECT_EQ(mesh.GetSubMeshCount(), 0);
            mesh.Draw();
        }
        EXPECT_EQ(log.NewRows(),
                  (Rows{{"XT3DStatic", "ERROR", path}, {"XT3DStatic", "FREE", path}}));
    }
    EXPECT_EQ(ColourOf(image), red);
}

TEST_F(RegistryTest, Paths_of_an_image_and_a_mesh_are_no_program) {
    Image image;
    XT3DStatic mesh;
    const std::string picture = PictureFile(red);
    const std::string meshPath = MeshFile("NULL");
    image.Load(picture);
    mesh.Load(meshPath);
    const LogWatch log;
    {
        Shader shader;
        shader.Load(picture, meshPath);
        shader.Enable();
        shader.Send("time", 1.0f);
        shader.Disable();
    }
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Shader", "ERROR", picture}, {"Shader", "FREE", picture + " " + meshPath}}));
}

TEST_F(RegistryTest, Mesh_that_names_a_shader_a_mesh_or_itself_as_its_texture_draws_untextured) {
    Shader shader;
    XT3DStatic other;
    const std::string vert = SourceFile(".vert");
    const std::string otherPath = "./" + MeshFile("NULL");
    const std::string itself = "./" + FreshName("itself", ".xt3dstatic");
    shader.Load("./" + vert, SourceFile(".frag"));
    shader.Disable();
    other.Load(otherPath);
    WriteFile(itself, "XT3DSTATIC 1 ./ 0\n" + itself.substr(2) + " NULL NULL 0\n");
    for (const std::string& path :
         {"./" + MeshFile(vert), "./" + MeshFile(otherPath.substr(2)), itself}) {
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(path);
        mesh.Draw();
        EXPECT_EQ(mesh.GetSubMesh(0).texture0->GetID(), 0U);
        const std::string texture = mesh.GetSubMesh(0).texture0->GetName();
        EXPECT_EQ(log.NewRows(),
                  (Rows{{"Image", "ERROR", texture}, {"XT3DStatic", "LOADED", path}}));
    }
}

TEST_F(RegistryTest, Scene_gives_an_empty_mesh_for_the_path_of_an_image_and_keeps_it) {
    Image image;
    const std::string path = PictureFile(red);
    image.Load(path);
    const LogWatch log;
    {
        SceneManager scene;
        Mesh* mesh = scene.GetMesh(path);
        EXPECT_EQ(static_cast<XT3DStatic*>(mesh)->GetSubMeshCount(), 0);
        EXPECT_NE(scene.GetMesh(path), mesh) << "a new one at every call";
        scene.AddSceneNode(mesh, vec3(0, 0, 0));
        scene.Compute();
    }
    const LogRow error{"XT3DStatic", "ERROR", path};
    const LogRow freed{"XT3DStatic", "FREE", path};
    EXPECT_EQ(log.NewRows(), (Rows{error, error, freed, freed}));
}

TEST_F(RegistryTest, Object_that_was_registered_without_a_kind_is_taken_for_what_is_asked_for) {
    Image image;
    const std::string path = PictureFile(red);
    image.LoadPNG(path);
    RessourceManager::GetInstance().Register(&image, "by hand");
    Image other;
    EXPECT_TRUE(other.Load("by hand"));
    EXPECT_EQ(other.GetID(), image.GetID());
}
