// The small things that the engine does often, each beside what it is held against, which is
// called the same with "Reference" behind it.

#include "engine/math/frustum.h"
#include "engine/math/matrix.h"
#include "engine/scene/mesh.h"
#include "engine/scene/scenenode.h"
#include "sound/mp3decoder.h"
#include "sound/mp3file.h"

#include <GL/gl.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Vell::vec3;

/// A view along -z of 90 degrees each way, from 1 to 1,000, in OpenGL's order.
constexpr float projection[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1.002f, -1, 0, 0, -2.002f, 0};

class NoMesh : public Vell::Mesh {
public:
    void Draw() override {}
};

/// Nodes out of view, as many on each side: left and right, below and above, behind and beyond.
class Nodes {
public:
    explicit Nodes(long count) {
        Vell::Frustum::GetInstance().MakePlane();
        mesh.GetBBox()->Set(vec3(-1.0f), vec3(1.0f));
        for (long i = 0; i < count; ++i) {
            const vec3 places[] = {{-90, 0, -50}, {90, 0, -50}, {0, -90, -50},
                                   {0, 90, -50},  {0, 0, 50},   {0, 0, -2000}};
            positions.push_back(places[i % 6]);
            nodes.push_back(std::make_unique<Vell::SceneNode>());
            nodes.back()->SetMesh(&mesh);
            nodes.back()->SetPosition(positions.back());
        }
    }

    NoMesh mesh;
    std::vector<std::unique_ptr<Vell::SceneNode>> nodes;
    std::vector<vec3> positions;
};

void CulledNode(benchmark::State& state) {
    const Nodes scene(state.range(0));
    for (auto _ : state)
        for (const auto& node : scene.nodes)
            benchmark::DoNotOptimize(node->Draw());
}
BENCHMARK(CulledNode)->RangeMultiplier(10)->Range(10, 100'000);

/// The least that could be done: each node's middle against the six planes.
void CulledNodeReference(benchmark::State& state) {
    const Nodes scene(state.range(0));
    for (auto _ : state)
        for (const vec3& position : scene.positions)
            benchmark::DoNotOptimize(Vell::Frustum::GetInstance().PointIn(position));
}
BENCHMARK(CulledNodeReference)->RangeMultiplier(10)->Range(10, 100'000);

constexpr const char* music = "Data/Musics/Quorrel.mp3";

/// What opening the music costs at the start.
void OpenMusic(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Vell::Sound::Mp3File::Open(music));
}
BENCHMARK(OpenMusic);

/// Decoding all of it.
void OpenMusicReference(benchmark::State& state) {
    const auto file = Vell::Sound::Mp3File::Open(music);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(2 * file->Frames()));
    for (auto _ : state) {
        Vell::Sound::Mp3Decoder decoder(file->Descriptor());
        benchmark::DoNotOptimize(decoder.Read(samples));
    }
}
BENCHMARK(OpenMusicReference);

} // namespace

/// Takes the place of OpenGL's: there is no window, and nothing else of OpenGL is called.
extern "C" void glGetFloatv(GLenum name, GLfloat* values) {
    const Vell::Matrix identity;
    std::copy_n(name == GL_PROJECTION_MATRIX ? projection : identity.Get(), 16, values);
}

BENCHMARK_MAIN();
