#include "web/gl/entrypoints.h"

#include "web/gl/context.h"
#include "web/gl/webgl.h"

#include <string_view>
#include <unordered_map>

#ifndef __EMSCRIPTEN__
#include <GL/glx.h>
#endif

namespace WebGL {

namespace {

using Table = std::unordered_map<std::string_view, AnyFunction>;

const Table& Everything() {
    static const Table table = [] {
        Table all;
        for (const auto& rows : {ShaderEntryPoints(), UniformEntryPoints(), AttributeEntryPoints(),
                                 ObjectEntryPoints(), CoreEntryPoints()})
            for (const EntryPoint& row : rows)
                all.emplace(row.name, row.function);
        return all;
    }();
    return table;
}

} // namespace

AnyFunction FindEntryPoint(const char* name) {
    const auto found = Everything().find(name);
    return found != Everything().end() ? found->second : nullptr;
}

void Refuse() {
    Current().errors.Raise(GL_INVALID_OPERATION);
}

} // namespace WebGL

void* webgl_entry_point(const char* name) {
    return reinterpret_cast<void*>(WebGL::FindEntryPoint(name));
}

extern "C" void (*glXGetProcAddress(const GLubyte* name))(void) {
    return WebGL::FindEntryPoint(reinterpret_cast<const char*>(name));
}
