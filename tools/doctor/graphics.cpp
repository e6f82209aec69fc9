#include "tools/doctor/graphics.h"

#include "tools/doctor/glgroups.h"
#include "tools/doctor/xserver.h"

#include "demo/show.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/fbo.h"

#include <array>
#include <cstdlib>

#include <SDL.h>
#include <dlfcn.h>

namespace Doctor {

namespace {

// As the demo opens its window.
constexpr int screenWidth = Show::width; // pixels
constexpr int screenHeight = Show::height;
constexpr int screenBits = 32;

std::string Dotted(int major, int minor, int patch) {
    return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(patch);
}

/// The SDL 2 that the compatibility layer has loaded below itself, if it is one.
void ReportSdl2(const Tools::Report& report) {
    struct Version { // as SDL 2 fills it
        Uint8 major, minor, patch;
    };
    void* library = dlopen("libSDL2-2.0.so.0", RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr)
        return;
    const auto ask = reinterpret_cast<void (*)(Version*)>(dlsym(library, "SDL_GetVersion"));
    if (ask != nullptr) {
        Version version{};
        ask(&version);
        report.Add("sdl2", Dotted(version.major, version.minor, version.patch));
    }
    dlclose(library);
}

// Settings of the environment that reach into OpenGL or SDL, and may take from them what is there.
const char* const settings[] = {"GALLIUM_DRIVER",
                                "LIBGL_ALWAYS_INDIRECT",
                                "LIBGL_DRIVERS_PATH",
                                "MESA_EXTENSION_OVERRIDE",
                                "MESA_GL_VERSION_OVERRIDE",
                                "MESA_GLSL_VERSION_OVERRIDE",
                                "MESA_LOADER_DRIVER_OVERRIDE",
                                "SDL_VIDEODRIVER",
                                "__GLX_VENDOR_LIBRARY_NAME"};

/// What a variable of the environment holds; empty when it is not set.
std::string Setting(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "";
}

bool IsSet(const char* variable) {
    return !Setting(variable).empty();
}

/// The SDL that runs on SDL 2 may take a Wayland session too.
bool OtherScreenIsNamed() {
    return IsSet("WAYLAND_DISPLAY") || IsSet("SDL_VIDEODRIVER");
}

void ReportEnvironment(const Tools::Report& report) {
    report.Add("display", Setting("DISPLAY"));
    std::string list;
    for (const char* variable : settings)
        if (IsSet(variable))
            list += std::string(list.empty() ? "" : " ") + variable;
    report.Add("settings", list);
}

void ReportSdl(const Tools::Report& report) {
    const SDL_version& version = *SDL_Linked_Version();
    report.Add("sdl", Dotted(version.major, version.minor, version.patch));
    ReportSdl2(report);
}

bool ReportVideo(const Tools::Report& report) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        report.Add("no_video", SDL_GetError());
        return false;
    }
    std::array<char, 64> name{};
    SDL_VideoDriverName(name.data(), static_cast<int>(name.size()));
    report.Add("driver", name.data());
    return true;
}

bool ReportWindow(const Tools::Report& report) {
    if (SDL_SetVideoMode(screenWidth, screenHeight, screenBits,
                         SDL_HWSURFACE | SDL_OPENGL | SDL_ASYNCBLIT) == nullptr) {
        report.Add("no_window", SDL_GetError());
        return false;
    }
    SDL_WM_SetCaption("Halvorn :: Nimbrel", nullptr);
    return true;
}

struct Text {
    const char* fact;
    GLenum name;
};
const Text texts[] = {
    {"vendor", GL_VENDOR},
    {"renderer", GL_RENDERER},
    {"version", GL_VERSION},
    {"glsl", GL_SHADING_LANGUAGE_VERSION},
};

/// False when OpenGL does not even tell its version: there is no context.
bool ReportTexts(const Tools::Report& report) {
    for (const Text& text : texts) {
        const auto* answer = reinterpret_cast<const char*>(glGetString(text.name));
        if (answer != nullptr)
            report.Add(text.fact, answer);
    }
    return glGetString(GL_VERSION) != nullptr;
}

/// The first thing of a group that is missing: the extension or an entry point; empty: none.
std::string FirstMissing(const GlGroup& group) {
    const int result = InitializeGLExtension(group.extension, group.names, group.pointers);
    if (result == 0)
        return "";
    return result < 0 ? group.extension : group.names[result - 1];
}

/// True when every group is complete.
bool ReportGroups(const Tools::Report& report) {
    bool complete = true;
    for (const GlGroup& group : GlGroups()) {
        const std::string missing = FirstMissing(group);
        report.Add(group.id, missing);
        complete = complete && missing.empty();
    }
    return complete;
}

struct Limit {
    const char* fact;
    GLenum name;
};
const Limit limits[] = {
    {"units", GL_MAX_TEXTURE_IMAGE_UNITS},
    {"texture_size", GL_MAX_TEXTURE_SIZE},
};

void ReportLimits(const Tools::Report& report) {
    for (const Limit& limit : limits) {
        GLint value = 0;
        glGetIntegerv(limit.name, &value);
        report.Add(limit.fact, value);
    }
    report.Add("multitexture", CheckForExtension("GL_ARB_multitexture"));
    report.Add("any_size", CheckForExtension("GL_ARB_texture_non_power_of_two"));
}

/// Makes a target as the scene is drawn into, and asks the driver whether it can draw there.
void ReportTarget(const Tools::Report& report) {
    const auto check = reinterpret_cast<PFNGLCHECKFRAMEBUFFERSTATUSEXTPROC>(
        SDL_GL_GetProcAddress("glCheckFramebufferStatusEXT"));
    if (check == nullptr)
        return;
    Vell::FBO target;
    target.SetSize(Vell::GetScreen());
    target.Enable();
    const GLenum status = check(GL_FRAMEBUFFER_EXT);
    target.Disable();
    report.Add("target", status == GL_FRAMEBUFFER_COMPLETE_EXT ? 1 : 0);
}

} // namespace

void CollectGraphicsFacts(const Tools::Report& report) {
    ReportEnvironment(report);
    ReportSdl(report);
    const bool answers = HoldServer();
    if (!answers)
        report.Add("no_server", 1);
    // Without a display SDL would look for another place to draw on, such as the text screen.
    if (!(answers ? DisplayIsNamed() : OtherScreenIsNamed()) || !ReportVideo(report))
        return;
    if (ReportWindow(report) && ReportTexts(report)) {
        Vell::SetScreen(Vell::ivec2(screenWidth, screenHeight));
        ReportLimits(report);
        if (ReportGroups(report))
            ReportTarget(report);
    }
    SDL_Quit();
    report.Add("complete", 1);
}

bool DisplayIsNamed() {
    return IsSet("DISPLAY") || OtherScreenIsNamed();
}

} // namespace Doctor
