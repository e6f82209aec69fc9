#pragma once

#include "demo/scene1.h"
#include "demo/timeline.h"
#include "engine/math/vec3.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/private_member.h"

#include <vector>

/// What a test may see and set of the demo's scene.
OPEN_PRIVATE(scene1Spectrum, &Scene1::spectrum);
OPEN_PRIVATE(scene1Pulse, &Scene1::pulse);
OPEN_PRIVATE(scene1Manager, &Scene1::manager);
OPEN_PRIVATE(scene1ViewCamera, &Scene1::viewCamera);
OPEN_PRIVATE(scene1SceneClock, &Scene1::sceneClock);
OPEN_PRIVATE(scene1Bloom, &Scene1::bloom);
OPEN_PRIVATE(scene1Rgb, &Scene1::rgb);
OPEN_PRIVATE(scene1Ripple, &Scene1::ripple);
OPEN_PRIVATE(scene1Path, &Scene1::path);
OPEN_PRIVATE(scene1BlueWisp, &Scene1::blueWisp);
OPEN_PRIVATE(scene1GreenWisp, &Scene1::greenWisp);
OPEN_PRIVATE(scene1RedWisp, &Scene1::redWisp);
OPEN_PRIVATE(scene1City, &Scene1::city);
OPEN_PRIVATE(scene1Fish, &Scene1::fish);
OPEN_PRIVATE(scene1CityShader, &Scene1::cityShader);
OPEN_PRIVATE(scene1Logo, &Scene1::logo);
OPEN_PRIVATE(cameraPaths, &Camera::paths);
OPEN_PRIVATE(cameraCurrent, &Camera::current);
OPEN_PRIVATE(cameraClock, &Camera::clock);

struct Scene1Probe {
    static float*& Spectrum(Scene1& scene) { return scene.*scene1Spectrum; }
    static float& Pulse(Scene1& scene) { return scene.*scene1Pulse; }
    static Vell::SceneManager& Manager(Scene1& scene) { return *(scene.*scene1Manager); }
    static Vell::Camera& ViewCamera(Scene1& scene) { return *(scene.*scene1ViewCamera); }
    static Vell::Clock& SceneClock(Scene1& scene) { return scene.*scene1SceneClock; }
    static Vell::PostBloom& Bloom(Scene1& scene) { return *(scene.*scene1Bloom); }
    static PostRGB& Rgb(Scene1& scene) { return *(scene.*scene1Rgb); }
    static PostWater& Ripple(Scene1& scene) { return *(scene.*scene1Ripple); }
    static Camera& Path(Scene1& scene) { return scene.*scene1Path; }
    static Vell::SceneNode* BlueWisp(Scene1& scene) { return scene.*scene1BlueWisp; }
    static Vell::SceneNode* GreenWisp(Scene1& scene) { return scene.*scene1GreenWisp; }
    static Vell::SceneNode* RedWisp(Scene1& scene) { return scene.*scene1RedWisp; }
    static Vell::SceneNode* City(Scene1& scene) { return scene.*scene1City; }
    static Vell::SceneNode** Fish(Scene1& scene) { return scene.*scene1Fish; }
    static Vell::Shader* CityShader(Scene1& scene) { return scene.*scene1CityShader; }
    static Vell::Sprite& Logo(Scene1& scene) { return scene.*scene1Logo; }
};

struct CameraProbe {
    static const std::vector<CameraPath>& Paths(const Camera& camera) {
        return camera.*cameraPaths;
    }
    static unsigned int& Current(Camera& camera) { return camera.*cameraCurrent; }
    static Vell::Clock& Clock(Camera& camera) { return camera.*cameraClock; }
};

/// World position and scale of a node, from its transform.
Vell::vec3 PositionOf(Vell::SceneNode& node);
Vell::vec3 ScaleOf(Vell::SceneNode& node);

/// Whether the ripple effect's own switch is on.
bool IsOn(PostWater& ripple);

/// The value that a vec3 uniform of the program has now.
Vell::vec3 Uniform(Vell::Shader& shader, const char* name);

/// The GLSL program of a shader. None is in use afterwards.
GLuint ProgramOf(Vell::Shader& shader);

/// What was found right after Scene1::Load(), during which every reading of the clock took a
/// second.
struct Loading {
    std::vector<LogRow> rows; ///< what the log gained
    float fieldOfView = 0.0f;
    float sceneTime = -1.0f; ///< of the scene's clock, read first
    Vell::vec3 eye;          ///< of the flight player, read second
    Vell::vec3 city;         ///< where the city's node stands
};

/// The demo's scene, loaded once per process, which spares the time.
///
/// Every test starts as Load() left it, at demo time 0, with time standing still, a loud spectrum
/// and Draw() at hand for any time.
class SceneStage : public GlTest {
protected:
    static constexpr float loud = 0.5f; ///< well above the quiet threshold of 0.03
    static constexpr float quiet = 0.0f;

    void SetUp() override;
    void TearDown() override;

    /// Sets demo time, and puts the camera on the flight that belongs to it, in step.
    void GoTo(double t);

    /// One frame at demo time `t`, after a frame of `dt` seconds.
    void DrawAt(double t, float dt = 0.02f);

    /// The eye and the look-ahead target that the flights give at demo time `t`.
    static Vell::vec3 EyeAt(double t);
    static Vell::vec3 TargetAt(double t);

    /// Fails unless the view camera looks from the flight's eye at `target`.
    void ExpectView(double t, const Vell::vec3& target);

    static Scene1& TheScene();
    static const Loading& TheLoading();

    float spectrum[64] = {};
};

/// Compares points with a tolerance of a few float steps.
void ExpectPoint(const Vell::vec3& actual, const Vell::vec3& expected, float tolerance = 1e-4f);
