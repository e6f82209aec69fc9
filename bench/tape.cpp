#include "bench/tape.h"

#include "bench/cost.h"
#include "tests/recording/entrypoints.h"
#include "tests/recording/parameters.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <dlfcn.h>

#include <cstring>

namespace {

using Replay::Tape;
using Function = void (*)();
using Finder = Function (*)(const GLubyte* name);

Tape* recording = nullptr;
int depth = 0; ///< calls under way: GLU makes some of OpenGL's, and those belong to its own
bool timed = false;
double spent = 0; ///< milliseconds in timed calls

Function Fetch(const char* name) {
    static const auto find = reinterpret_cast<Finder>(dlsym(RTLD_NEXT, "glXGetProcAddress"));
    return find(reinterpret_cast<const GLubyte*>(name));
}

Function Linked(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// A call under way.
class Inside {
public:
    Inside() : begin(depth++ == 0 && timed ? Bench::Milliseconds() : 0) {}
    ~Inside() {
        if (--depth == 0 && timed)
            spent += Bench::Milliseconds() - begin;
    }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    const double begin;
};

// The printers of entrypoints.h, which say what an argument is: here each makes what is kept of it.
namespace Kept {

#define AS_IT_IS(printer)                                                                          \
    template <class Value>                                                                         \
    Value printer(Value value) {                                                                   \
        return value;                                                                              \
    }
AS_IT_IS(Address)
AS_IT_IS(Bits)
AS_IT_IS(Buffer)
AS_IT_IS(Count)
AS_IT_IS(Enum)
AS_IT_IS(EnumOrNumber)
AS_IT_IS(Factor)
AS_IT_IS(Flag)
AS_IT_IS(Framebuffer)
AS_IT_IS(List)
AS_IT_IS(Location)
AS_IT_IS(Number)
AS_IT_IS(Object)
AS_IT_IS(Primitive)
AS_IT_IS(Renderbuffer)
AS_IT_IS(Texture)

template <class Value>
const Value* FourNumbers(const Value* values) {
    return recording->Copy(std::span(values, 4));
}

const GLfloat* SixteenNumbers(const GLfloat* values) {
    return recording->Copy(std::span(values, 16));
}

const char* Text(const char* text) {
    return recording->Copy(std::span(text, std::strlen(text) + 1));
}

/// Where answers go: the longest is a matrix.
template <class Value>
Value* Skip(Value*) {
    static Value nowhere[16];
    return nowhere;
}

// No frame makes or deletes an object.
AS_IT_IS(Buffers)
AS_IT_IS(Framebuffers)
AS_IT_IS(Objects)
AS_IT_IS(Renderbuffers)
AS_IT_IS(Texts)
AS_IT_IS(Textures)

} // namespace Kept

} // namespace

#define DEFINE(find, number, result, name, ...)                                                    \
    result name(PARAMETERS_##number(__VA_ARGS__)) {                                                \
        using namespace Kept;                                                                      \
        static auto* const real = reinterpret_cast<decltype(&name)>(find(#name));                  \
        if (recording && depth == 0)                                                               \
            recording->Keep(real __VA_OPT__(, ) TEXTS_##number(__VA_ARGS__));                      \
        const Inside inside;                                                                       \
        return real(NAMES_##number);                                                               \
    }
#define DEFINE_LINKED(effect, ...) DEFINE(Linked, __VA_ARGS__)
#define DEFINE_FETCHED(effect, ...) DEFINE(Fetch, __VA_ARGS__)
#define NO_DEFINITION(name, type)
#define DEFINE_GROUP(extension, rows) rows(DEFINE_FETCHED, NO_DEFINITION)

extern "C" {
RECORDED_CORE(DEFINE_LINKED)
}

namespace {

namespace Fetched {

RECORDED_GROUPS(DEFINE_GROUP)

} // namespace Fetched

struct Row {
    const char* name;
    Function inItsPlace;
};

#define FETCHED_ROW(effect, number, result, name, ...)                                             \
    {#name, reinterpret_cast<Function>(Fetched::name)},
#define GROUP_ROWS(extension, rows) rows(FETCHED_ROW, NO_DEFINITION)

const Row rows[] = {RECORDED_GROUPS(GROUP_ROWS)};

} // namespace

// What the driver does not have stays null, so that the engine notices.
extern "C" Function glXGetProcAddress(const GLubyte* name) {
    const Function real = Fetch(reinterpret_cast<const char*>(name));
    for (const Row& row : rows)
        if (real && std::strcmp(row.name, reinterpret_cast<const char*>(name)) == 0)
            return row.inItsPlace;
    return real;
}

namespace Replay {

void Tape::Record() {
    recording = this;
}

void Tape::Stop() {
    recording = nullptr;
}

void Tape::TakeTime(bool take) {
    timed = take;
}

double Tape::TimeTaken() {
    return spent;
}

} // namespace Replay
