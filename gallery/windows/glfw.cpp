// The engine in a window of GLFW. Escape, or closing the window, ends it.
// With an argument: no show, but a picture of the scene in the file of that name.

#include "gallery/windows/scene.h"

#include <cstdio>
#include <exception>

#define GLFW_INCLUDE_NONE // the engine's headers bring OpenGL's
#include <GLFW/glfw3.h>

namespace {

bool AskedToEnd(GLFWwindow* window) {
    glfwPollEvents();
    return glfwWindowShouldClose(window) != 0 || glfwGetKey(window, GLFW_KEY_ESCAPE) == GLFW_PRESS;
}

void Run(GLFWwindow* window, const char* picture) {
    Scene scene;
    if (picture != nullptr)
        return DrawPicture(scene, picture);
    while (!AskedToEnd(window)) {
        scene.Draw();
        glfwSwapBuffers(window);
    }
}

int Show(GLFWwindow* window, const char* picture) {
    glfwMakeContextCurrent(window);
    try {
        Run(window, picture);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    glfwInit();
    glfwWindowHint(GLFW_RESIZABLE, GLFW_FALSE);
    GLFWwindow* const window =
        glfwCreateWindow(Scene::width, Scene::height, "Vell", nullptr, nullptr);
    if (window == nullptr)
        std::fprintf(stderr, "no window\n");
    const int status = window == nullptr ? 1 : Show(window, PictureAskedFor(count, arguments));
    glfwTerminate();
    return status;
}
