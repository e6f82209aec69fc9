#include "tests/recording/entrypoints.h"

#include "tests/recording/effects.h"
#include "tests/recording/parameters.h"
#include "tests/recording/print.h"
#include "tests/recording/recorder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <GL/glu.h>

namespace {

using namespace Print;

using Function = void (*)();

/// The name of the engine's pointer: without the vendor suffix of the ARB groups.
std::string WithoutArb(const char* name) {
    const std::string whole = name;
    return whole.ends_with("ARB") ? whole.substr(0, whole.size() - 3) : whole;
}

/// While there is one, a call is being written down.
struct Writing {
    Writing() { ++gl.writing; }
    ~Writing() { --gl.writing; }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;
};

/// One call: its effect first, for objects that it makes are written with it.
template <class Act, class Arguments>
auto Call(const char* name, Act act, Arguments arguments) {
    const Writing writing;
    gl.CheckContext(name);
    if constexpr (std::is_void_v<decltype(act())>) {
        act();
        gl.Note(WithoutArb(name), arguments());
    } else {
        const auto result = act();
        gl.Note(WithoutArb(name), arguments());
        return result;
    }
}

} // namespace

#define EFFECT_plain(name, ...) static_cast<void>(0)
#define EFFECT_acts(name, ...) Effect::name(__VA_ARGS__)

// The texts stand in braces, so they are made from left to right. All entry points lie in one
// stretch of the program, so that what is counted can leave them out.
#define DEFINE(effect, number, result, name, ...)                                                  \
    [[gnu::section("recorded_gl")]] result name(PARAMETERS_##number(__VA_ARGS__)) {                \
        return Call(                                                                               \
            #name, [&] { return EFFECT_##effect(name, NAMES_##number); },                          \
            [&] { return std::vector<std::string>{TEXTS_##number(__VA_ARGS__)}; });                \
    }

extern "C" {
RECORDED_CORE(DEFINE)
}

namespace {

/// An entry point that is fetched and never called.
template <class Pointer, std::size_t row>
struct Uncalled;

template <class Result, class... Parameters, std::size_t row>
struct Uncalled<Result (*)(Parameters...), row> {
    static Result Called(Parameters...) {
        ADD_FAILURE() << "an entry point that nothing uses was called, row " << row;
        return Result();
    }
};

// In a namespace of their own, for one of them is called like a pointer of the engine.
namespace Fetched {

#define NO_DEFINITION(name, type)
#define DEFINE_GROUP(extension, rows) rows(DEFINE, NO_DEFINITION)
RECORDED_GROUPS(DEFINE_GROUP)

} // namespace Fetched

struct Row {
    std::string name;
    Function function;
};

#define CALLED_ROW(effect, number, result, name, ...)                                              \
    {#name, reinterpret_cast<Function>(Fetched::name)},
#define UNCALLED_ROW(name, type)                                                                   \
    {#name, reinterpret_cast<Function>(Uncalled<type, __LINE__>::Called)},
#define GROUP_ROWS(extension, rows) rows(CALLED_ROW, UNCALLED_ROW)

Function Find(const char* name) {
    static const std::vector<Row> rows = {RECORDED_GROUPS(GROUP_ROWS)};
    for (const Row& row : rows)
        if (row.name == name && gl.missing.count(row.name) == 0)
            return row.function;
    return nullptr;
}

} // namespace

/// Asks about no context in particular, so it may be called without one.
extern "C" Function glXGetProcAddress(const GLubyte* name) {
    const char* text = reinterpret_cast<const char*>(name);
    const std::string argument[] = {text};
    gl.Note("glXGetProcAddress", argument);
    return Find(text);
}

const std::vector<RecordedGroup>& RecordedGroups() {
#define CALLED_NAME(effect, number, result, name, ...) #name,
#define UNCALLED_NAME(name, type) #name,
#define GROUP_NAMES(extension, rows) {extension, {rows(CALLED_NAME, UNCALLED_NAME)}},
    static const std::vector<RecordedGroup> groups = {RECORDED_GROUPS(GROUP_NAMES)};
    return groups;
}

// The linker makes these names.
extern "C" const char __start_recorded_gl; // NOLINT(bugprone-reserved-identifier)
extern "C" const char __stop_recorded_gl;  // NOLINT(bugprone-reserved-identifier)

Stretch RecordedFunctions() {
    return {&__start_recorded_gl, &__stop_recorded_gl};
}
