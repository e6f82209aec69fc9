// The engine in a window of GLFW. Escape, or closing the window, ends it.
// With an argument: no show, but a picture of the scene in the file of that name.

#include "gallery/windows/scene.h"

#include <cstdio>

#define GLFW_INCLUDE_NONE // the engine's headers bring OpenGL's
#include <GLFW/glfw3.h>

namespace {

bool AskedToEnd(GLFWwindow* window) {
    glfwPollEvents();
    return glfwWindowShouldClose(window) != 0 || glfwGetKey(window, GLFW_KEY_ESCAPE) == GLFW_PRESS;
}

} // namespace

int main(int count, char** arguments) {
    glfwInit();
    glfwWindowHint(GLFW_RESIZABLE, GLFW_FALSE);
    GLFWwindow* const window =
        glfwCreateWindow(Scene::width, Scene::height, "Vell", nullptr, nullptr);
    int status = 1;
    if (window == nullptr) {
        std::fprintf(stderr, "no window\n");
    } else {
        glfwMakeContextCurrent(window);
        status = Show(
            PictureAskedFor(count, arguments), [&] { return AskedToEnd(window); },
            [&] { glfwSwapBuffers(window); });
    }
    glfwTerminate();
    return status;
}
