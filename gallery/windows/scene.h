#pragma once

#include "engine/scene/mesh.h"
#include "engine/scene/scenemanager.h"

#include <functional>
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

/// What each program does once its context is current: shows the scene until `askedToEnd`, with a
/// `swap` after every frame; or writes it into the file `picture`, unless that is null. The scene
/// is gone again when this returns, so that the context may go. Returns the program's exit status:
/// 1 after a failure, which standard error then tells.
int Show(const char* picture, const std::function<bool()>& askedToEnd,
         const std::function<void()>& swap);

/// The part of Show() that needs no window: draws the two frames that it takes until the water
/// mirrors (it is seen first, and mirrored from then on), and writes the second.
int WritePicture(const char* path);
