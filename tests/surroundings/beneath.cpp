// Preloaded under nimbrel: libraries that do what the environment variable NIMBREL_BENEATH says.
//
//   shaders       the driver compiles none
//   programs      it links none
//   framebuffers  it gives none a picture to draw on, so none is complete
//   locale        one of them takes the user's numbers for all of the program
//   NAME          the driver has no entry point of this name

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glx.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include <dlfcn.h>

namespace {

using EntryPoint = __GLXextFuncPtr;

std::string Wanted() {
    const char* wanted = std::getenv("NIMBREL_BENEATH");
    return wanted == nullptr ? "" : wanted;
}

EntryPoint DriversOwn(const char* name) {
    using LookUp = EntryPoint(const GLubyte*);
    static auto* const lookUp = reinterpret_cast<LookUp*>(dlsym(RTLD_NEXT, "glXGetProcAddress"));
    return lookUp(reinterpret_cast<const GLubyte*>(name));
}

/// Hands the compiler another text, which it cannot read.
void GiveNonsense(GLhandleARB shader, GLsizei, const GLcharARB**, const GLint*) {
    const GLcharARB* nonsense = "this driver compiles nothing";
    const auto give = reinterpret_cast<PFNGLSHADERSOURCEARBPROC>(DriversOwn("glShaderSourceARB"));
    give(shader, 1, &nonsense, nullptr);
}

void LinkNothing(GLhandleARB) {}

void AttachNothing(GLenum, GLenum, GLenum, GLuint, GLint) {}

struct Refusal {
    const char* what;
    const char* name;
    EntryPoint instead;
};

const Refusal refusals[] = {
    {"shaders", "glShaderSourceARB", reinterpret_cast<EntryPoint>(GiveNonsense)},
    {"programs", "glLinkProgramARB", reinterpret_cast<EntryPoint>(LinkNothing)},
    {"framebuffers", "glFramebufferTexture2DEXT", reinterpret_cast<EntryPoint>(AttachNothing)},
};

const bool localeTaken = Wanted() == "locale" && std::setlocale(LC_ALL, "") != nullptr;

} // namespace

extern "C" EntryPoint glXGetProcAddress(const GLubyte* asked) {
    const char* name = reinterpret_cast<const char*>(asked);
    const std::string wanted = Wanted();
    if (wanted == name)
        return nullptr;
    for (const Refusal& refusal : refusals)
        if (wanted == refusal.what && refusal.name == std::string(name))
            return refusal.instead;
    return DriversOwn(name);
}
