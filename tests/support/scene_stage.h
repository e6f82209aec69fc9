#pragma once

#include "demo/scene1.h"
#include "demo/timeline.h"
#include "engine/math/vec3.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"

#include <vector>

/// What a test may see and set of the demo's scene.
struct Scene1Probe {
    static float*& Spectrum(Scene1& scene) { return scene.spectrum; }
    static float& Pulse(Scene1& scene) { return scene.pulse; }
    static Vell::SceneManager& Manager(Scene1& scene) { return *scene.manager; }
    static Vell::Camera& ViewCamera(Scene1& scene) { return *scene.viewCamera; }
    static Vell::Clock& SceneClock(Scene1& scene) { return scene.sceneClock; }
    static Vell::PostBloom& Bloom(Scene1& scene) { return *scene.bloom; }
    static PostRGB& Rgb(Scene1& scene) { return *scene.rgb; }
    static PostWater& Ripple(Scene1& scene) { return *scene.ripple; }
    static Camera& Path(Scene1& scene) { return scene.path; }
    static Vell::SceneNode* BlueWisp(Scene1& scene) { return scene.blueWisp; }
    static Vell::SceneNode* GreenWisp(Scene1& scene) { return scene.greenWisp; }
    static Vell::SceneNode* RedWisp(Scene1& scene) { return scene.redWisp; }
    static Vell::SceneNode* City(Scene1& scene) { return scene.city; }
    static Vell::SceneNode** Fish(Scene1& scene) { return scene.fish; }
    static Vell::Shader* CityShader(Scene1& scene) { return scene.cityShader; }
    static Vell::Sprite& Logo(Scene1& scene) { return scene.logo; }
};

struct CameraProbe {
    static const std::vector<CameraPath>& Paths(const Camera& camera) { return camera.paths; }
    static unsigned int& Current(Camera& camera) { return camera.current; }
    static Vell::Clock& Clock(Camera& camera) { return camera.clock; }
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

/// The demo's scene, loaded once per process: the resource registry never forgets a path, so the
/// same files cannot be loaded again after a scene was destroyed.
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
