// What a scene replaces or ends, and when: of objects that call OpenGL the calls are looked at, of
// those that do not the return of their memory.

#include "tests/recording/calls.h"
#include "tests/recording/noted_mesh.h"

#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include <gmock/gmock.h>

using Vell::SceneManager;
using Vell::vec3;

namespace {

/// The object whose end is noted as a call, once.
const void* watched = nullptr;

} // namespace

// In place of the library's own, which tell nobody.
void* operator new(std::size_t bytes) {
    if (void* const memory = std::malloc(bytes))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* object) noexcept {
    if (object != nullptr && object == watched) {
        watched = nullptr;
        const std::string arguments[] = {"watched"};
        gl.Note("End", arguments);
    }
    std::free(object);
}

void operator delete(void* object, std::size_t) noexcept {
    operator delete(object);
}

namespace {

class SceneEndCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        manager = std::make_unique<SceneManager>();
    }

    void TearDown() override {
        watched = nullptr;
        manager.reset();
        Calls::TearDown();
    }

    std::unique_ptr<SceneManager> manager;
};

} // namespace

TEST_F(SceneEndCalls, Nodes_end_first_of_all) {
    NotedMesh mesh("mesh");
    manager->AddTerrain("missing.png", 1);
    manager->AddSceneNode(&mesh, vec3(0, 0, 0));
    watched = manager->AddSceneNode(&mesh, vec3(0, 0, 0));
    Forget();
    manager.reset();
    const std::vector<std::string> calls = gl.Take();
    ASSERT_GT(calls.size(), 1u);
    EXPECT_EQ(calls[0], "End(watched)");
    EXPECT_THAT(calls[1], ::testing::StartsWith("glDeleteBuffers")) << "the terrain's";
}

TEST_F(SceneEndCalls, Sky_and_water_end_before_their_successors_are_made) {
    const auto addSky = [&] { manager->AddSkyBox("1", "2", "3", "4", "5", "6"); };
    const auto addWater = [&] { manager->AddWater(); };
    addSky();
    addWater();
    Forget();
    addSky();
    EXPECT_THAT(gl.Take().at(0), ::testing::StartsWith("glDelete"));
    addWater();
    EXPECT_THAT(gl.Take().at(0), ::testing::StartsWith("glDelete"));
}
