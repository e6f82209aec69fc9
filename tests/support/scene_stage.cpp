#include "tests/support/scene_stage.h"

#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "demo/show.h"
#include "engine/core/core.h"
#include "engine/post/post_bloom.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"
#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"
#include "tests/support/private_member.h"

using Vell::vec3;

OPEN_PRIVATE(postWaterEnable, &PostWater::enable);
OPEN_PRIVATE(sceneNodeTransform, &Vell::SceneNode::transform);

struct PostWaterProbe {
    static bool On(const PostWater& ripple) { return ripple.*postWaterEnable; }
};

namespace Vell {
struct SceneNodeProbe {
    static const Matrix& Transform(const SceneNode& node) { return node.*sceneNodeTransform; }
};
} // namespace Vell

namespace {

unsigned int FlightAt(double t) {
    unsigned int flight = 0;
    while (flight + 1 < Show::flightCount && t > Show::flights[flight + 1].begin)
        ++flight;
    return flight;
}

vec3 PointAt(double t, double lead) {
    const Show::Flight& flight = Show::flights[FlightAt(t)];
    const float u = static_cast<float>((t - flight.begin) / flight.duration + lead);
    vec3 way = flight.end - flight.start;
    return way * u + flight.start;
}

} // namespace

vec3 PositionOf(Vell::SceneNode& node) {
    const Vell::Matrix& m = Vell::SceneNodeProbe::Transform(node);
    return vec3(m[3], m[7], m[11]);
}

vec3 ScaleOf(Vell::SceneNode& node) {
    const Vell::Matrix& m = Vell::SceneNodeProbe::Transform(node);
    return vec3(m[0], m[5], m[10]);
}

bool IsOn(PostWater& ripple) {
    return PostWaterProbe::On(ripple);
}

GLuint ProgramOf(Vell::Shader& shader) {
    GLint program = 0;
    shader.Enable();
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    shader.Disable();
    return static_cast<GLuint>(program);
}

vec3 Uniform(Vell::Shader& shader, const char* name) {
    const GLuint program = ProgramOf(shader);
    const GLint location = glGetUniformLocation(program, name);
    EXPECT_GE(location, 0) << name << " is no uniform that the program uses";
    GLfloat value[3] = {};
    glGetUniformfv(program, location, value);
    return vec3(value[0], value[1], value[2]);
}

namespace {

Loading LoadScene(Scene1& scene) {
    Loading found;
    const LogWatch log;
    MakeDemoData();
    SetTickingTime(50.0, 1.0);
    scene.Load();
    found.sceneTime = Scene1Probe::SceneClock(scene).GetElapsedTime();
    found.eye = Scene1Probe::Path(scene).GetPos();
    found.rows = log.NewRows();
    found.fieldOfView = Vell::GetFov();
    found.city = PositionOf(*Scene1Probe::City(scene));
    return found;
}

} // namespace

Scene1& SceneStage::TheScene() {
    // Never destroyed: the OpenGL context is gone before static objects end.
    static Scene1& scene = *new Scene1;
    return scene;
}

const Loading& SceneStage::TheLoading() {
    static const Loading loading = LoadScene(TheScene());
    return loading;
}

void SceneStage::SetUp() {
    GlTest::SetUp();
    SetFakeTime(0.0);
    Scene1& scene = TheScene();
    TheLoading();
    SetFakeTime(0.0);
    Vell::SetFovy(25.0f); // every test starts with the engine's default view
    scene.SetSpectrum(spectrum);
    spectrum[0] = loud;
    Scene1Probe::SceneClock(scene).Reset();
    Scene1Probe::Pulse(scene) = 0.0f;
    Scene1Probe::Bloom(scene).SetIntensity(0.25f);
    Scene1Probe::Rgb(scene).SetOffset(0.0f);
    Scene1Probe::City(scene)->SetPosition(vec3(0, -20, 0));
    GoTo(0.0);
}

void SceneStage::TearDown() {
    ClearFakeTime();
    GlTest::TearDown();
}

void SceneStage::GoTo(double t) {
    Camera& path = Scene1Probe::Path(TheScene());
    const unsigned int flight = FlightAt(t);
    SetFakeTime(Show::flights[flight].begin);
    CameraProbe::Clock(path).Reset();
    CameraProbe::Current(path) = flight;
    SetFakeTime(t);
}

void SceneStage::DrawAt(double t, float dt) {
    GoTo(t);
    TheScene().Draw(dt);
}

vec3 SceneStage::EyeAt(double t) {
    return PointAt(t, 0.0);
}

vec3 SceneStage::TargetAt(double t) {
    return PointAt(t, 0.1);
}

void SceneStage::ExpectView(double t, const vec3& target) {
    Vell::Camera& view = Scene1Probe::ViewCamera(TheScene());
    ExpectPoint(view.GetPosition(), EyeAt(t));
    ExpectPoint(view.GetTarget(), target);
}

void ExpectPoint(const vec3& actual, const vec3& expected, float tolerance) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}
