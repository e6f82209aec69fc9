#pragma once

#include "demo/camera.h"
#include "demo/show.h"
#include "engine/core/clock.h"
#include "engine/math/vec3.h"
#include "engine/scene/sprite.h"

namespace Vell {
class Camera;
class PostBloom;
class SceneManager;
class SceneNode;
class Shader;
} // namespace Vell

class PostRGB;
class PostWater;

/// The one scene of the demo: a city that rises out of the sea, a school of fish, three wisps of
/// light, and the effects that follow the music.
///
/// Use: construct, Load() once, SetSpectrum() once, Draw() every frame, destroy.
/// Needs: a current OpenGL context on which Vell::InitEngine() succeeded, and the assets in
/// "Data/" under the working directory. A missing asset gets its row in the log and is not drawn.
class Scene1 {
public:
    /// Builds the scene manager, its camera and the post-processing chain (bloom, colour split,
    /// ripple), all sized to the screen; loads nothing.
    Scene1();

    /// Deletes the scene manager with everything in it, the bloom and the colour split. The
    /// ripple effect is left allocated, which is intended: the process ends with the scene.
    ~Scene1();

    Scene1(const Scene1&) = delete;
    Scene1& operator=(const Scene1&) = delete;

    /// Loads every asset, places what stands in the scene, sets the field of view to 25 degrees
    /// and records the camera flights. Demo time and the first flight start when it returns.
    void Load();

    /// Hands over the magnitudes of the music's spectrum, lowest band first; only element 0 is
    /// read. The caller keeps the array, refreshes it every frame and keeps it alive as long as
    /// the scene is drawn. Needed before demo time reaches the effects at 41.736 s.
    void SetSpectrum(float* magnitudes);

    /// Plays one frame at the scene's own time. `dt` is the duration of the previous frame in
    /// seconds; only the decay of the effects uses it.
    ///
    /// While the logo is shown the model-view matrix is left as identity; the projection is as
    /// before in every frame.
    void Draw(float dt);

private:
    // Load, one step each.
    void LoadCity();
    void LoadWisps();
    Vell::SceneNode* AddWisp(const char* path);
    void SendWispLights(const Vell::vec3& red, const Vell::vec3& green, const Vell::vec3& blue);
    void LoadFish();
    void LoadSky();
    void LoadWater();
    void AddFlights();

    // Draw, one step each. `t` is demo time, `dt` the previous frame's duration, in seconds.
    void FollowFlight();
    void LookAtAim(Show::FlightNumber flight);
    void PlaySegment(float t, float dt);
    void PlayCityRise(float t);
    void PlayFishSchool(float t);
    void PlayColourSplit(float dt);
    void PlayGlow(float dt);
    void PlayWisps(float t);
    void AimAtWisps(float t);
    void MoveWisps(float t);
    void DrawLogo(float t);

    float* spectrum = nullptr;   ///< not owned
    float pulse = 0.0f;          ///< effect level that follows the music; shared by two segments
    Vell::SceneManager* manager; ///< owned
    Vell::Camera* viewCamera;    ///< the scene manager's
    Vell::Clock sceneClock;      ///< demo time
    Vell::PostBloom* bloom;      ///< owned
    PostRGB* rgb;                ///< owned
    PostWater* ripple;           ///< never deleted
    Camera path;                 ///< plays the camera flights
    Vell::SceneNode* blueWisp = nullptr; ///< the scene manager's, as all nodes
    Vell::SceneNode* greenWisp = nullptr;
    Vell::SceneNode* redWisp = nullptr;
    Vell::SceneNode* city = nullptr;
    Vell::SceneNode** fish; ///< owned list of the manager's nodes, by Timeline::FishIndex
    Vell::Shader* cityShader = nullptr; ///< the city mesh's
    Vell::Sprite logo;
};
