#pragma once

#include <span>

#include <GL/gl.h>

namespace WebGL {

using AnyFunction = void (*)();

struct EntryPoint {
    const char* name;
    AnyFunction function;
};

/// A row of a table for a function of any type.
template <class Function>
EntryPoint Row(const char* name, Function function) {
    return {name, reinterpret_cast<AnyFunction>(function)};
}

/// The entry points of each room.
std::span<const EntryPoint> ShaderEntryPoints();
std::span<const EntryPoint> UniformEntryPoints();
std::span<const EntryPoint> AttributeEntryPoints();
std::span<const EntryPoint> ObjectEntryPoints();
std::span<const EntryPoint> CoreEntryPoints();

/// Of any room; null for a name that none has.
AnyFunction FindEntryPoint(const char* name);

/// Raises an error in place of an entry point of which only the name is there: what belongs to
/// programs in assembly language.
void Refuse();

template <class Pointer>
struct Refused;

template <class Result, class... Parameters>
struct Refused<Result (*)(Parameters...)> {
    static Result Call(Parameters...) {
        Refuse();
        return Result();
    }
};

} // namespace WebGL
