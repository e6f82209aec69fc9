#include "tests/recording/entrypoints.h"

#include "tests/recording/effects.h"
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

// Parameters, their names, and their texts, by number of parameters.
#define PARAMETERS_0()
#define PARAMETERS_1(t1, p1) t1 a1
#define PARAMETERS_2(t1, p1, ...) t1 a1, REST_2(__VA_ARGS__)
#define PARAMETERS_3(t1, p1, ...) t1 a1, REST_3(__VA_ARGS__)
#define PARAMETERS_4(t1, p1, ...) t1 a1, REST_4(__VA_ARGS__)
#define PARAMETERS_5(t1, p1, ...) t1 a1, REST_5(__VA_ARGS__)
#define PARAMETERS_6(t1, p1, ...) t1 a1, REST_6(__VA_ARGS__)
#define PARAMETERS_9(t1, p1, ...) t1 a1, REST_9(__VA_ARGS__)
#define REST_2(t2, p2) t2 a2
#define REST_3(t2, p2, t3, p3) t2 a2, t3 a3
#define REST_4(t2, p2, t3, p3, t4, p4) t2 a2, t3 a3, t4 a4
#define REST_5(t2, p2, t3, p3, t4, p4, t5, p5) t2 a2, t3 a3, t4 a4, t5 a5
#define REST_6(t2, p2, t3, p3, t4, p4, t5, p5, t6, p6) t2 a2, t3 a3, t4 a4, t5 a5, t6 a6
#define REST_9(t2, p2, t3, p3, t4, p4, t5, p5, t6, p6, t7, p7, t8, p8, t9, p9)                     \
    t2 a2, t3 a3, t4 a4, t5 a5, t6 a6, t7 a7, t8 a8, t9 a9

#define NAMES_0
#define NAMES_1 a1
#define NAMES_2 a1, a2
#define NAMES_3 a1, a2, a3
#define NAMES_4 a1, a2, a3, a4
#define NAMES_5 a1, a2, a3, a4, a5
#define NAMES_6 a1, a2, a3, a4, a5, a6
#define NAMES_9 a1, a2, a3, a4, a5, a6, a7, a8, a9

#define TEXTS_0()
#define TEXTS_1(t1, p1) p1(a1)
#define TEXTS_2(t1, p1, t2, p2) p1(a1), p2(a2)
#define TEXTS_3(t1, p1, t2, p2, t3, p3) p1(a1), p2(a2), p3(a3)
#define TEXTS_4(t1, p1, t2, p2, t3, p3, t4, p4) p1(a1), p2(a2), p3(a3), p4(a4)
#define TEXTS_5(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5) p1(a1), p2(a2), p3(a3), p4(a4), p5(a5)
#define TEXTS_6(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5, t6, p6)                                    \
    p1(a1), p2(a2), p3(a3), p4(a4), p5(a5), p6(a6)
#define TEXTS_9(t1, p1, t2, p2, t3, p3, t4, p4, t5, p5, t6, p6, t7, p7, t8, p8, t9, p9)            \
    p1(a1), p2(a2), p3(a3), p4(a4), p5(a5), p6(a6), p7(a7), p8(a8), p9(a9)

#define EFFECT_plain(name, ...) static_cast<void>(0)
#define EFFECT_acts(name, ...) Effect::name(__VA_ARGS__)

// The texts stand in braces, so they are made from left to right.
#define DEFINE(effect, number, result, name, ...)                                                  \
    result name(PARAMETERS_##number(__VA_ARGS__)) {                                                \
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
