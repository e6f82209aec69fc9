// 01  A window, the engine on it, and the colour that it is cleared to.
//
// There is no scene yet: each band of this evening is cleared to a colour of its own. What the
// other programs begin with, in place of this, is one glClearColor() for what no sky covers.

#include "engine/core/GLExtensions.h"
#include "engine/math/vec3.h"
#include "gallery/window/window.h"

#include <array>
#include <cmath>

using Gallery::Window;
using Vell::vec3;

namespace {

constexpr int bands = 30;

/// The evening's colours from the ground up, evenly spaced.
constexpr std::array evening = {vec3(0.07f, 0.05f, 0.13f), vec3(0.25f, 0.10f, 0.22f),
                                vec3(0.93f, 0.42f, 0.26f), vec3(0.99f, 0.72f, 0.42f),
                                vec3(0.62f, 0.52f, 0.60f), vec3(0.26f, 0.32f, 0.55f),
                                vec3(0.10f, 0.14f, 0.33f), vec3(0.05f, 0.07f, 0.19f)};

/// `height`: 0 at the ground, 1 at the top.
vec3 ColourAt(float height) {
    const float place = height * (evening.size() - 1.001f);
    const auto below = static_cast<std::size_t>(place);
    return Lerp(evening[below], evening[below + 1], place - std::floor(place));
}

void Clear(int x, int y, int width, int height, const vec3& colour) {
    glScissor(x, y, width, height);
    glClearColor(colour.x, colour.y, colour.z, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

} // namespace

int main() {
    Window window("Vell 01: a window and its clear colour");
    glEnable(GL_SCISSOR_TEST);
    while (window.NextFrame()) {
        // The evening passes: every band takes over what was a little higher.
        const float passed = 0.12f * (0.5f - 0.5f * std::cos(window.Time() * 0.2f));
        for (int band = 0; band < bands; ++band) {
            const float height = (static_cast<float>(band) + 0.5f) / bands;
            Clear(0, band * Window::height / bands, Window::width, Window::height / bands,
                  ColourAt(height * (1 - passed) + passed));
        }
    }
}
