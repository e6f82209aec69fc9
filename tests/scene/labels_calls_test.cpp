// What the engine calls the objects it makes: each of a scene that has everything.

#include "tests/recording/calls.h"

#include "engine/core/fbo.h"
#include "engine/core/labels.h"
#include "engine/env/sky.h"
#include "engine/post/post_bloom.h"
#include "engine/scene/scenemanager.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;
using Vell::LabelOf;
using Vell::ObjectKind;
using Vell::SceneManager;
using Vell::vec3;

namespace {

class SceneLabels : public Calls {
protected:
    static void FillWithEverything(SceneManager& scene) {
        WritePng("face.png", 2, 1, 3, pixels);
        scene.AddSkyBox("face.png", "face.png", "face.png", "face.png", "face.png", "face.png");
        scene.AddTerrain("no.png", 2);
        scene.AddWater();
        scene.AddShadowMapping(vec3(0, 1, 0), vec3(0, 0, 0), 64, 0.5f);
        WritePng("stone.png", 2, 1, 3, pixels);
        WriteFile("box.xt3dstatic", "XT3DSTATIC 2 ./ 0 "
                                    "stone.png NULL NULL 1 0 0 0 0 0 1 0 0 "
                                    "NULL NULL NULL 1 0 0 0 0 0 1 0 0");
        scene.GetMesh("box.xt3dstatic");
    }

    static inline const std::vector<unsigned char> pixels = {10, 20, 30, 40, 50, 60};
};

void AddTarget(std::vector<std::string>& labels, const std::string& target) {
    labels.insert(labels.end(), {target, "renderbuffer of the " + target, "colour of the " + target,
                                 "depth of the " + target});
}

void AddProgram(std::vector<std::string>& labels, const std::string& program) {
    labels.insert(labels.end(), {program, program + ", vertex", program + ", fragment"});
}

/// Without shadow maps: four buffers for each of two sub-meshes.
void AddBox(std::vector<std::string>& labels) {
    for (const std::string subMesh : {"box.xt3dstatic, sub-mesh 0", "box.xt3dstatic, sub-mesh 1"})
        labels.insert(labels.end(), {subMesh + ", positions", subMesh + ", texture coordinates",
                                     subMesh + ", light map coordinates", subMesh + ", normals"});
}

} // namespace

TEST_F(SceneLabels, Say_what_each_object_is_for_and_go_with_it) {
    auto bloom = std::make_unique<Vell::PostBloom>();
    auto scene = std::make_unique<SceneManager>();
    FillWithEverything(*scene);
    std::vector<std::string> expected = {"face.png",
                                         "./stone.png",
                                         "sky box",
                                         "terrain, vertices",
                                         "terrain, indices of level 0",
                                         "terrain, indices of level 1"};
    for (const char* target :
         {"scene target", "spare target", "reflection target", "refraction target", "light buffer",
          "shadow buffer", "glow target", "first blur target", "second blur target"})
        AddTarget(expected, target);
    for (const char* program : {"water", "terrain", "shadow mapping: how much is shadowed",
                                "shadow mapping: composite", "bloom: bright parts", "blur"})
        AddProgram(expected, program);
    AddBox(expected);
    EXPECT_THAT(Labels(), UnorderedElementsAreArray(expected));
    EXPECT_EQ(Labels().size(), gl.Objects().size()) << "an object has no label";

    bloom.reset();
    scene.reset();
    // Not deleted, on purpose: a sub-mesh's texture, and the buffer of light map coordinates of a
    // mesh without a light map.
    const char* const left[] = {"./stone.png", "box.xt3dstatic, sub-mesh 0, light map coordinates",
                                "box.xt3dstatic, sub-mesh 1, light map coordinates"};
    EXPECT_THAT(Labels(), UnorderedElementsAreArray(left));
}

TEST_F(SceneLabels, Of_a_list_that_is_recorded_again_is_the_new_list_s_only) {
    Vell::SkyBox sky;
    sky.Init();
    EXPECT_THAT(Labels(), UnorderedElementsAreArray({"sky box"}));
}

TEST_F(SceneLabels, Of_a_target_are_its_owner_s_to_choose) {
    auto target = std::make_unique<Vell::FBO>();
    EXPECT_EQ(LabelOf(ObjectKind::Texture, target->GetColor()), "colour of the target");
    target->SetLabel("mirror");
    EXPECT_THAT(Labels(),
                UnorderedElementsAreArray({"mirror", "renderbuffer of the mirror",
                                           "colour of the mirror", "depth of the mirror"}));
    target->SetSize(Vell::ivec2(8, 8)); // the objects stay
    EXPECT_EQ(LabelOf(ObjectKind::Texture, target->GetColor()), "colour of the mirror");
    target.reset();
    EXPECT_THAT(Labels(), IsEmpty());
}
