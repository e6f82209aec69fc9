// 05  Nodes, and what is not drawn of them.
//
// A node whose box lies outside the view is left out by itself. SetDebug() shows the boxes; the
// plan in the corner shows the eye's field from above, red where a node was drawn, black where the
// eye is.

#include "engine/core/core.h"
#include "engine/core/fullscreen.h"
#include "engine/math/frustum.h"
#include "engine/scene/camera.h"
#include "engine/scene/mesh.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

#include <cmath>
#include <vector>

using Vell::vec3;

namespace {

constexpr int side = 12;
constexpr float gap = 5.0f;

std::vector<vec3> Places() {
    std::vector<vec3> places;
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column) {
            const auto x = static_cast<float>(column) - (side - 1) / 2.0f;
            const auto z = static_cast<float>(row) - (side - 1) / 2.0f;
            places.emplace_back(x * gap, 1.5f * std::sin(x * 1.3f) * std::cos(z * 1.1f), z * gap);
        }
    return places;
}

/// After a frame the frustum is still the eye's.
bool WasDrawn(Vell::Mesh& mesh, const vec3& place) {
    Vell::BoundingBox& box = *mesh.GetBBox();
    return Vell::Frustum::GetInstance().BBoxIn(place + box.GetMin(), place + box.GetMax());
}

/// Under PushUnitProjection() x and y run from 0 to 1 over the window.
void DrawPlan(Vell::Mesh& mesh, const std::vector<vec3>& places, const vec3& eye) {
    const auto point = [](const vec3& p) {
        glVertex2f(0.87f + p.x * 0.0034f, 0.79f - p.z * 0.006f);
    };
    Vell::PushUnitProjection();
    glDisable(GL_DEPTH_TEST);
    glPointSize(4);
    glBegin(GL_POINTS);
    for (const vec3& place : places) {
        const bool drawn = WasDrawn(mesh, place);
        glColor3f(drawn ? 0.8f : 0.66f, drawn ? 0.15f : 0.70f, drawn ? 0.12f : 0.75f);
        point(place);
    }
    glColor3f(0, 0, 0);
    point(eye);
    glEnd();
    glColor3f(1, 1, 1);
    glEnable(GL_DEPTH_TEST);
    Vell::PopProjection();
}

} // namespace

int main() {
    Gallery::Window window("Vell 05: nodes and culling");
    glClearColor(0.80f, 0.84f, 0.88f, 1);
    Vell::SetFovy(45);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(0), vec3(1, 0, 0));
    Vell::Mesh* balloon = scene.GetMesh("gallery/data/balloon.xt3dstatic");
    const std::vector<vec3> places = Places();
    for (const vec3& place : places)
        scene.AddSceneNode(balloon, place);
    scene.SetDebug(true);

    while (window.NextFrame()) {
        const float angle = window.Time() * 0.25f;
        const vec3 position(std::sin(angle) * 12, 4, std::cos(angle) * 12);
        eye->Set(position, position + vec3(std::cos(angle), -0.22f, -std::sin(angle)));
        scene.Draw();
        DrawPlan(*balloon, places, position);
    }
}
