#include "gallery/windows/scene.h"

#include "engine/core/core.h"
#include "engine/env/water.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace {

class Pyramid : public Vell::Mesh {
public:
    Pyramid() { bbox.Set(Vell::vec3(-1, 0, -1), Vell::vec3(1, 2, 1)); }

    void Draw() override {
        static const float corners[][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
        glBegin(GL_TRIANGLE_FAN);
        glColor3f(1.0f, 0.9f, 0.6f);
        glVertex3f(0, 2, 0);
        for (const auto& [x, z] : corners) {
            glColor3f(0.6f + 0.3f * x, 0.3f, 0.3f - 0.2f * z);
            glVertex3f(x, 0, z);
        }
        glEnd();
        glColor4f(1, 1, 1, 1);
    }
};

void DrawPicture(Scene& scene, const std::string& path) {
    scene.Draw();
    scene.Draw();
    Scene::SavePicture(path);
}

/// The exit status of a program that does only this.
int StatusOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}

} // namespace

Scene::Scene() : pyramid(std::make_unique<Pyramid>()) {
    if (!Vell::InitEngine(Vell::ivec2(width, height)))
        throw std::runtime_error("the engine does not start, see Vell_log.html");
    Vell::SetRatio(static_cast<float>(width) / static_cast<float>(height));
    glClearColor(0.3f, 0.5f, 0.7f, 1);
    manager = std::make_unique<Vell::SceneManager>();
    manager->AddCamera(Vell::vec3(3, 1.5f, 4), Vell::vec3(0, 0.5f, 0));
    manager->AddSceneNode(pyramid.get(), Vell::vec3(0, 0.2f, 0));
    manager->AddWater()->SetBlend(0.3f);
    Vell::Water::HideShadowStripe(); // there is no shadow mapping here
}

void Scene::Draw() {
    manager->Draw();
}

void Scene::SavePicture(const std::string& path) {
    std::vector<unsigned char> pixels(3u * width * height);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    std::ofstream file(path, std::ios::binary);
    file << "P6 " << width << ' ' << height << " 255\n";
    for (int y = height - 1; y >= 0; --y) // OpenGL counts rows from below
        file.write(reinterpret_cast<const char*>(&pixels[3u * width * static_cast<std::size_t>(y)]),
                   3 * width);
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

const char* PictureAskedFor(int count, char** arguments) {
    return count > 1 ? arguments[1] : nullptr;
}

int Show(const char* picture, const std::function<bool()>& askedToEnd,
         const std::function<void()>& swap) {
    if (picture != nullptr)
        return WritePicture(picture);
    return StatusOf([&] {
        Scene scene;
        while (!askedToEnd()) {
            scene.Draw();
            swap();
        }
    });
}

int WritePicture(const char* path) {
    return StatusOf([&] {
        Scene scene;
        DrawPicture(scene, path);
    });
}
