// What a mesh costs by its size: to load it, to keep it, and to draw it.

#include "bench/cost.h"
#include "engine/core/core.h"
#include "engine/math/vec2.h"
#include "engine/render/xt3dstatic.h"
#include "tools/options/commandline.h"
#include "tools/stage/scratch.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Bench::Milliseconds;

constexpr int width = 960;
constexpr int height = 89;
constexpr int warmFrames = 3;
constexpr int frames = 15;
constexpr int verticesASquare = 6;
constexpr float fieldSize = 1000;

/// Hills of the same extent, of as many squares as vertices allow; six decimals a number.
void WriteField(int vertices, const std::string& path) {
    const int side = static_cast<int>(std::sqrt(static_cast<double>(vertices) / verticesASquare));
    std::ofstream file(path);
    file << "XT3DSTATIC\n1\ndir/\n0\nNULL\nNULL\nNULL\n" << side * side * verticesASquare << "\n";
    const int corners[verticesASquare][2] = {{0, 0}, {0, 1}, {1, 1}, {0, 0}, {1, 1}, {1, 0}};
    for (int square = 0; square < side * side; ++square)
        for (const auto& corner : corners) {
            const double x = static_cast<double>(square % side + corner[0]) / side;
            const double z = static_cast<double>(square / side + corner[1]) / side;
            char line[160];
            std::snprintf(line, sizeof line, "%f %f %f %f %f %f %f %f\n", (x - 0.5) * fieldSize,
                          30 * std::sin(9 * x) * std::cos(7 * z), (z - 0.5) * fieldSize, 0.0, 1.0,
                          0.0, x, z);
            file << line;
        }
    if (!file.flush())
        throw std::runtime_error(path + " cannot be written");
}

/// Megabytes (10^6 bytes) that the process has of memory: now, or at most so far.
double Megabytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == key) {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes * 1024e-6;
        }
    return 0;
}

void OpenWindow() {
    SDL_Init(SDL_INIT_VIDEO);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    if (SDL_SetVideoMode(width, height, 32, SDL_OPENGL) == nullptr)
        throw std::runtime_error(SDL_GetError());
    if (!Vell::InitEngine(Vell::ivec2(width, height)))
        throw std::runtime_error("this OpenGL lacks what the engine needs");
    gluLookAt(0, 300, 900, 0, 0, 0, 0, 1, 0);
    glEnable(GL_DEPTH_TEST);
}

double FrameOf(Vell::XT3DStatic& mesh) {
    std::vector<double> durations;
    for (int frame = 0; frame < warmFrames + frames; ++frame) {
        const double begin = Milliseconds();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        mesh.Draw();
        glFinish();
        if (frame >= warmFrames)
            durations.push_back(Milliseconds() - begin);
    }
    return Bench::Median(durations);
}

int Measure(const Tools::Arguments& arguments) {
    const int vertices = static_cast<int>(Tools::ParseNumber(arguments.operands[0]));
    Tools::EnterDemoFolder();
    WriteField(vertices, "field.xt3dstatic");
    OpenWindow();
    {
        Vell::XT3DStatic mesh;
        glFinish();
        std::ofstream("/proc/self/clear_refs") << 5; // the most memory is counted from here on
        const double before = Megabytes("VmRSS:");
        const double begin = Milliseconds();
        mesh.Load("field.xt3dstatic");
        glFinish();
        const double load = Milliseconds() - begin;
        const double most = Megabytes("VmHWM:") - before;
        std::printf("%.3f %.3f %.3f\n", load, most, FrameOf(mesh));
    }
    SDL_Quit();
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "nimbrel_vertices",
    .purpose =
        "Makes a mesh of N vertices, and prints the milliseconds of the processor that loading it\n"
        "takes, the megabytes that it has meanwhile at most and those that stay, and the\n"
        "milliseconds of the processor that a frame with it takes.",
    .modes = {{.operands = {{"N", Tools::WholeNumberKind(6, 10000000)}},
               .example = "60000",
               .run = Measure}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
