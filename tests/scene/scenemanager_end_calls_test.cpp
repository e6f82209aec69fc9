// What a scene replaces or ends, and when: of objects that call OpenGL the calls are looked at, of
// those that do not the return of their memory.

#include "tests/recording/calls.h"
#include "tests/scene/noted_mesh.h"

#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <dlfcn.h>

using Vell::SceneManager;
using Vell::vec3;

namespace {

/// The object whose end is noted as a call, once.
const void* watched = nullptr;

} // namespace

/// Takes the place of the library's own, which tells nobody.
void operator delete(void* object) noexcept {
    if (object != nullptr && object == watched) {
        watched = nullptr;
        const std::string arguments[] = {"watched"};
        gl.Note("End", arguments);
    }
    using Delete = void (*)(void*);
    static const auto real = reinterpret_cast<Delete>(dlsym(RTLD_NEXT, "_ZdlPv"));
    real(object);
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
    EXPECT_TRUE(calls[1].starts_with("glDeleteBuffers")) << "the terrain's; " << calls[1];
}

TEST_F(SceneEndCalls, Sky_and_water_end_before_their_successors_are_made) {
    // Other faces the second time: the registry still has the paths of those that are gone.
    const std::function<void(const std::string&)> additions[] = {
        [&](const std::string& n) {
            manager->AddSkyBox(n + '1', n + '2', n + '3', n + '4', n + '5', n + '6');
        },
        [&](const std::string&) { manager->AddWater(); },
    };
    for (const auto& add : additions) {
        add("first ");
        Forget();
        add("second ");
        const std::string first = gl.Take().at(0);
        EXPECT_TRUE(first.starts_with("glDelete")) << first;
    }
}
