#pragma once

#include "engine/scene/mesh.h"
#include "engine/scene/scenemanager.h"

#include <memory>
#include <string>

/// What all programs of this folder show: a pyramid over water, under a plain sky.
///
/// Each program makes its context its own way, makes one of these, calls Draw() for every frame and
/// lets the scene go before the context.
class Scene {
public:
    /// Size of the picture, and of the window that shows it, in pixels.
    static constexpr int width = 320;
    static constexpr int height = 180;

    /// Starts the engine on the current context. Throws std::runtime_error when it does not start;
    /// the log page then has the reason.
    Scene();

    /// Draws the next frame into the current context's back buffer; swapping is the caller's.
    void Draw();

    /// Writes what was drawn last into a PPM file. Throws std::runtime_error when it cannot.
    static void SavePicture(const std::string& path);

private:
    std::unique_ptr<Vell::Mesh> pyramid; // outlives the manager, whose node points at it
    std::unique_ptr<Vell::SceneManager> manager;
};

/// The picture that the program was asked to write instead of showing the scene: its one argument;
/// null without one.
const char* PictureAskedFor(int count, char** arguments);

/// Draws the two frames that it takes until the water mirrors (it is seen first, and mirrored from
/// then on), and saves the second.
void DrawPicture(Scene& scene, const std::string& path);
