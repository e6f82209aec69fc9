// What loading a mesh takes of the heap. No driver allocates here.

#include "tests/render/xt3dstatic_calls.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <malloc.h>

using Vell::XT3DStatic;

namespace {

std::size_t held = 0;
std::size_t most = 0; // since a test set it to what is held

} // namespace

void* operator new(std::size_t size) {
    void* memory = std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    held += malloc_usable_size(memory);
    most = std::max(most, held);
    return memory;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size); // never short of memory here
}

void operator delete(void* memory) noexcept {
    held -= memory != nullptr ? malloc_usable_size(memory) : 0;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

class MeshHeap : public MeshCalls {
protected:
    /// The most bytes that were held while the mesh was loaded, beyond those held before.
    std::size_t MostWhileLoading(XT3DStatic& mesh, const std::string& text) {
        WriteFile(folder + "mesh.xt3dstatic", text);
        const std::string name = folder + "mesh.xt3dstatic";
        gl.extensions = ""; // or the recording OpenGL keeps the content of every buffer
        most = held;
        const std::size_t before = held;
        mesh.Load(name);
        return most - before;
    }
};

// Two vec3 and two vec2 a vertex: 40 bytes. Names and the log's row take a few hundred.
TEST_F(MeshHeap, Loading_takes_the_arrays_and_next_to_nothing_beside_them) {
    constexpr int vertices = 20000;
    std::string text = "XT3DSTATIC 1 dir/ 0 NULL NULL NULL " + std::to_string(vertices) + "\n";
    for (int i = 0; i < vertices; ++i)
        text += "-1000.25 0.5 1e-3 +1 .5 123456789.123456789 0 0\n";
    XT3DStatic mesh;
    const std::size_t taken = MostWhileLoading(mesh, text);
    EXPECT_GE(taken, vertices * 40u) << "counted at all";
    EXPECT_LE(taken, vertices * 40u + 16384u);
}
