#include "demo/scene1.h"

#include "demo/assets.h"
#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "demo/show.h"
#include "demo/timeline.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/math/vec2.h"
#include "engine/post/post_bloom.h"
#include "engine/post/postprocess.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"

using Timeline::Segment;
using Timeline::WispView;
using Vell::ivec2;
using Vell::SceneNode;
using Vell::vec2;
using Vell::vec3;
using Vell::XT3DStatic;

namespace {

// Far above the scene, out of sight and out of reach of the city's shading.
constexpr vec3 wispParking(0, 1000, 0);
constexpr vec3 fishParking(10000);

/// Calls `visit(column, row, number)` for the whole school, column by column.
template <class Visit>
void ForEachFish(Visit visit) {
    for (int column = 0; column < Timeline::fishColumns; ++column)
        for (int row = 0; row < Timeline::fishRows; ++row)
            for (int number = 0; number < Timeline::fishPerCell; ++number)
                visit(column, row, number);
}

/// The one object that the scene never deletes; the leak checker knows it by this function's name.
PostWater* NewRipple() {
    return new PostWater;
}

XT3DStatic* LoadMesh(Vell::SceneManager& manager, const char* path) {
    return static_cast<XT3DStatic*>(manager.GetMesh(path));
}

} // namespace

Scene1::Scene1() {
    manager = new Vell::SceneManager;
    viewCamera = manager->AddCamera(vec3(50, 50, 50), vec3(0, 0, 0));
    Vell::PostProcess& chain = *manager->GetPostProcess();
    bloom = new Vell::PostBloom;
    bloom->SetThreshold(0.0f);
    bloom->SetIntensity(0.25f);
    chain.AddPostEffect(bloom);
    rgb = new PostRGB;
    rgb->SetOffset(0.0f);
    chain.AddPostEffect(rgb);
    ripple = NewRipple();
    chain.AddPostEffect(ripple);
    ripple->SetEnable(false);
    fish = new SceneNode*[Timeline::fishCount]();
}

Scene1::~Scene1() {
    spectrum = nullptr;
    delete manager;
    delete bloom;
    delete rgb;
    // The ripple effect is not deleted: intended, it stays until the process ends.
    delete[] fish;
}

void Scene1::Load() {
    LoadCity();
    LoadWisps();
    // The red light's z of 1, where its wisp stands at 0, is intended and not to be seen from so
    // far.
    SendWispLights(vec3(0, 1000, 1), vec3(0, 1000, 0), vec3(0, 1000, 0));
    LoadFish();
    LoadSky();
    LoadWater();
    sceneClock.Reset();
    logo.SetTexture(Assets::logo);
    Vell::SetFovy(Show::fieldOfView);
    AddFlights();
    // The flights and demo time start together, after everything that takes time.
    path.Reset();
    sceneClock.Reset();
}

void Scene1::SetSpectrum(float* magnitudes) {
    spectrum = magnitudes;
}

void Scene1::Draw(float dt) {
    const float t = sceneClock.GetElapsedTime();
    FollowFlight();
    ripple->SetEnable(false); // the fish school switches it on again
    PlaySegment(t, dt);
    manager->Draw();
    if (t < Timeline::logoEnd)
        DrawLogo(t);
}

void Scene1::LoadCity() {
    XT3DStatic* mesh = LoadMesh(*manager, Assets::cityMesh);
    cityShader = mesh->SetMaterialShader(Assets::cityVertexShader, Assets::cityFragmentShader);
    city = manager->AddSceneNode(mesh, vec3(0));
    city->SetPosition(vec3(0, Show::sunkenHeight, 0)); // the timeline raises it
}

void Scene1::LoadWisps() {
    greenWisp = AddWisp(Assets::greenWispMesh);
    redWisp = AddWisp(Assets::redWispMesh);
    blueWisp = AddWisp(Assets::blueWispMesh);
}

SceneNode* Scene1::AddWisp(const char* meshPath) {
    XT3DStatic* mesh = LoadMesh(*manager, meshPath);
    mesh->SetMaterialShader(Assets::wispVertexShader, Assets::wispFragmentShader);
    mesh->SetBlend(true);
    SceneNode* node = manager->AddSceneNode(mesh, vec3(0));
    node->SetPosition(wispParking);
    return node;
}

void Scene1::SendWispLights(const vec3& red, const vec3& green, const vec3& blue) {
    cityShader->Enable();
    cityShader->Send("posred", red);
    cityShader->Send("posgreen", green);
    cityShader->Send("posblue", blue);
    cityShader->Disable();
}

void Scene1::LoadFish() {
    XT3DStatic* mesh = LoadMesh(*manager, Assets::fishMesh);
    ForEachFish([&](int column, int row, int number) {
        SceneNode* node = manager->AddSceneNode(mesh, vec3(0));
        node->SetPosition(fishParking);
        node->SetScale(vec3(0.1f));
        fish[Timeline::FishIndex(column, row, number)] = node;
    });
}

void Scene1::LoadSky() {
    manager->AddSkyBox(Assets::skyXPos, Assets::skyXNeg, Assets::skyYPos, Assets::skyYNeg,
                       Assets::skyZPos, Assets::skyZNeg);
}

void Scene1::LoadWater() {
    Vell::Water* water = manager->AddWater();
    water->SetNormalMap(Assets::waterNormals);
    water->SetBlend(0.0f);
    water->SetDeform(0.02f);
    water->SetSize(ivec2(static_cast<int>(Vell::farPlane))); // as far as one sees
    water->SetUVRepeat(vec2(10.0f, 10.0f));
    water->SetSpeed(vec2(0.01f, 0.0f));
}

void Scene1::AddFlights() {
    for (const Show::Flight& flight : Show::flights)
        path.AddPath(flight.start, flight.end, flight.duration);
}

void Scene1::FollowFlight() {
    // Target before position: the first query notices the end of a flight and starts the next.
    const vec3 target = path.GetTarget();
    const vec3 position = path.GetPos();
    viewCamera->Set(position, target);
}

void Scene1::LookAtAim(Show::FlightNumber flight) {
    viewCamera->Set(path.GetPos(), *Show::flights[flight].aim);
}

void Scene1::PlaySegment(float t, float dt) {
    switch (Timeline::SegmentAt(t)) {
    case Segment::Plain:
        break;
    case Segment::CityRise:
        PlayCityRise(t);
        break;
    case Segment::FishSchool:
        PlayFishSchool(t);
        break;
    case Segment::ColourSplit:
        PlayColourSplit(dt);
        break;
    case Segment::Glow:
        PlayGlow(dt);
        break;
    case Segment::Wisps:
        PlayWisps(t);
        break;
    }
}

void Scene1::PlayCityRise(float t) {
    LookAtAim(Show::CityRise);
    city->SetPosition(vec3(0, Timeline::CityHeight(t), 0));
}

void Scene1::PlayFishSchool(float t) {
    ripple->SetEnable(true);
    // The eye is asked for anew for each fish: the flight goes on while the school is placed.
    ForEachFish([&](int column, int row, int number) {
        const vec3 place = Timeline::FishPosition(path.GetPos(), t, column, row);
        fish[Timeline::FishIndex(column, row, number)]->SetPosition(place);
    });
}

void Scene1::PlayColourSplit(float dt) {
    LookAtAim(Show::BetweenTowers);
    pulse = Timeline::NextLevel(pulse, spectrum[0], dt, Timeline::splitPulse);
    rgb->SetOffset(pulse);
}

void Scene1::PlayGlow(float dt) {
    rgb->SetOffset(0.0f);
    pulse = Timeline::NextLevel(pulse, spectrum[0], dt, Timeline::glowPulse);
    bloom->SetIntensity(pulse);
}

void Scene1::PlayWisps(float t) {
    AimAtWisps(t);
    MoveWisps(t);
}

void Scene1::AimAtWisps(float t) {
    switch (Timeline::WispViewAt(t)) {
    case WispView::Approach:
        bloom->SetIntensity(0.0f);
        LookAtAim(Show::ToBasin);
        break;
    case WispView::Flight:
        break;
    case WispView::Finale:
        LookAtAim(Show::Basin);
        break;
    }
}

void Scene1::MoveWisps(float t) {
    const vec3 red = Timeline::RedWispPosition(t);
    const vec3 green = Timeline::GreenWispPosition(t);
    const vec3 blue = Timeline::BlueWispPosition(t);
    redWisp->SetPosition(red);
    greenWisp->SetPosition(green);
    blueWisp->SetPosition(blue);
    SendWispLights(red, green, blue);
}

void Scene1::DrawLogo(float t) {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, 1, 0, 1, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity(); // not restored: every frame starts from the identity
    glDisable(GL_DEPTH_TEST);
    glColor4f(1, 1, 1, Timeline::LogoAlpha(t));
    logo.Draw();
    glColor4f(1, 1, 1, 1);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_DEPTH_TEST);
}
