#include "tools/doctor/advice.h"
#include "tools/doctor/glgroups.h"
#include "tools/doctor/graphics.h"

#include "engine/core/textureunits.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace Doctor {

namespace {

const std::string displayAdvice =
    "start it from a graphical session, or by ./play, which plays on a virtual display where there "
    "is none; or install xvfb and xauth and put this before the command: " +
    virtualDisplay;
const char* const serverAdvice =
    "start the X server with GLX: Xvfb and Xephyr with +extension GLX, Xorg without what disables "
    "it in xorg.conf; where it has none, as some for remote desktops, let ./movie make a film";
const char* const depthAdvice =
    "give the screen 24 bits a pixel: Xvfb by -screen 0 1280x1024x24, Xorg by -depth 24 or by "
    "DefaultDepth in xorg.conf";

const char* const accessAdvice =
    "start it as the user whose session that is, or play on a virtual display: env -u DISPLAY "
    "./play";

/// The compatibility layer counts its versions from 1.2.50, SDL 1.2 itself ended at 1.2.15.
constexpr int firstLayerPatch = 50;

/// Units 0 to 6: the light map has the highest number.
constexpr int unitsNeeded = Vell::TextureUnit::lightmap + 1;

struct Version {
    int major = 0;
    int minor = 0;
    int patch = 0;
    bool operator<(const Version& other) const {
        return major != other.major ? major < other.major : minor < other.minor;
    }
};

/// "2.1 Mesa 22.3.6", "1.2.15"; zeros where there is no number.
Version ParseVersion(const std::string& text) {
    Version version;
    const char* at = text.c_str();
    for (int* number : {&version.major, &version.minor, &version.patch}) {
        char* end = nullptr;
        *number = static_cast<int>(std::strtol(at, &end, 10));
        if (*end != '.')
            break;
        at = end + 1;
    }
    return version;
}

constexpr int bitsNeeded = 15; // a pixel: below, there is no window with OpenGL

constexpr Version glNeeded = {2, 0};
constexpr Version glslNeeded = {1, 10};

std::string Lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

bool DrawnByProcessor(const std::string& name) {
    const std::string renderer = Lowered(name);
    for (const char* word : {"llvmpipe", "softpipe", "swrast", "software", "swiftshader"})
        if (renderer.find(word) != std::string::npos)
            return true;
    return false;
}

/// Whether the kernel has a graphics card for programs.
bool CardIsThere() {
    std::error_code none; // a folder that is not there is no card
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", none))
        if (entry.path().filename().string().rfind("renderD", 0) == 0)
            return true;
    return std::filesystem::exists("/dev/nvidiactl", none);
}

// --- Checking facts ---------------------------------------------------------------------------

struct GraphicsFacts {
    const Tools::IsolatedRun& run;
    bool displayNamed;
    const LargestPicture& largest;

    std::string Get(const char* fact) const { return Tools::Fact(run.facts, fact); }
    int Number(const char* fact) const { return Tools::FactNumber(run.facts, fact); }
    bool Knows(const char* fact) const { return run.facts.count(fact) != 0; }
};

/// "env -u A -u B ./play" for the settings that are there.
std::string WithoutSettings(const GraphicsFacts& facts) {
    std::istringstream names(facts.Get("settings"));
    std::string command = "env";
    for (std::string name; names >> name;)
        command += " -u " + name;
    return "try without the settings that reach into OpenGL here: " + command + " ./play";
}

/// For what OpenGL lacks: the settings that may take it away, and then the driver.
std::string DriverAdvice(const GraphicsFacts& facts) {
    const char* const driver =
        "install the driver: libgl1-mesa-dri for AMD, Intel and machines without a graphics card, "
        "nvidia-driver for NVIDIA; then start the session anew";
    if (facts.Get("settings").empty())
        return driver;
    return WithoutSettings(facts) + "; if that does not help, " + driver;
}

void CheckSdl(const GraphicsFacts& facts, Row& row) {
    const std::string version = facts.Get("sdl");
    const bool layer = ParseVersion(version).patch >= firstLayerPatch;
    const std::string below = facts.Get("sdl2");
    row.values = {{"version", version}, {"kind", layer ? "layer" : "sdl"}, {"sdl2", below}};
    row.finding = layer ? "the compatibility layer " + version + " over SDL 2" : "SDL " + version;
    if (layer && !below.empty())
        row.finding += " (" + below + ")";
}

Row NotLookedAt(const std::string& id, const std::string& title) {
    Row row(id, title);
    row.Set(State::Unknown, "not looked at: OpenGL could not be asked");
    return row;
}

/// Where no display answers, SDL falls back on drivers that draw with letters or into memory.
bool HasWindows(const std::string& name) {
    const std::string driver = Lowered(name);
    return driver == "x11" || driver == "wayland" || driver == "kmsdrm";
}

/// SDL has a driver, but none that shows windows.
bool IsLeftWithoutWindows(const GraphicsFacts& facts) {
    return facts.Knows("no_window") && !HasWindows(facts.Get("driver"));
}

void CheckDriver(const GraphicsFacts& facts, Row& row) {
    const std::string driver = facts.Get("driver");
    const bool chosen = facts.Get("settings").find("SDL_VIDEODRIVER") != std::string::npos;
    if (IsLeftWithoutWindows(facts) && chosen)
        row.Set(State::Fail,
                "SDL_VIDEODRIVER has SDL draw by its driver " + driver + ", which has no OpenGL",
                WithoutSettings(facts));
    else if (IsLeftWithoutWindows(facts))
        row.Set(State::Fail, "no display answers: SDL is left with the video driver " + driver,
                displayAdvice);
    else if (facts.Number("resets") != 0)
        row.Set(State::Warn,
                "the X server starts over whenever its last program leaves, and may then turn the "
                "demo away",
                resetAdvice);
    else
        row.Set(State::Ok, "SDL's video driver " + driver + " answers");
}

/// Xlib says something only when a server answered and turned it away.
void TellNoServer(const GraphicsFacts& facts, Row& row) {
    const std::string where = "DISPLAY=" + facts.Get("display");
    const std::string said = facts.run.ending.FirstError();
    if (said.empty())
        row.Set(State::Fail, "no X server answers at " + where, displayAdvice);
    else
        row.Set(State::Fail,
                "the X server at " + where + " turns programs of this user away, saying \"" + said +
                    '"',
                accessAdvice);
}

void CheckDisplay(const GraphicsFacts& facts, Row& row) {
    row.values = {{"driver", facts.Get("driver")}};
    if (!facts.displayNamed)
        row.Set(State::Fail, "there is no display: DISPLAY is not set", displayAdvice);
    else if (facts.Knows("driver"))
        CheckDriver(facts, row);
    else if (facts.Knows("no_server"))
        TellNoServer(facts, row);
    else if (facts.Knows("no_video"))
        row.Set(State::Fail, "no display answers: " + facts.Get("no_video"), displayAdvice);
    else
        row.Set(State::Fail, "opening the display " + facts.run.ending.InWords(), displayAdvice);
}

/// Why there is no window with OpenGL.
void TellNoWindow(const GraphicsFacts& facts, Row& row) {
    const std::string bits = facts.Get("depth");
    if (facts.Knows("depth") && facts.Number("depth") < bitsNeeded) // a reason for no GLX too
        row.Set(State::Fail,
                "the screen has " + bits + " bits a pixel, too few for a window with OpenGL",
                depthAdvice);
    else if (facts.Knows("glx") && facts.Number("glx") == 0)
        row.Set(State::Fail,
                "this X server has no GLX, by which programs come to OpenGL: no window with it can "
                "be had",
                serverAdvice);
    else
        row.Set(State::Fail, "no window with OpenGL can be had: " + facts.Get("no_window"),
                DriverAdvice(facts));
}

void CheckOpenGl(const GraphicsFacts& facts, Row& row) {
    const std::string version = facts.Get("version");
    row.values = {
        {"version", version}, {"vendor", facts.Get("vendor")}, {"renderer", facts.Get("renderer")}};
    if (IsLeftWithoutWindows(facts))
        row = NotLookedAt(row.id, row.title); // the display's row tells why
    else if (facts.Knows("no_window"))
        TellNoWindow(facts, row);
    else if (!facts.run.ending.InOrder())
        row.Set(State::Fail, "looking at OpenGL " + facts.run.ending.InWords(),
                DriverAdvice(facts));
    else if (version.empty())
        row.Set(State::Fail, "the window has no OpenGL", DriverAdvice(facts));
    else if (ParseVersion(version) < glNeeded)
        row.Set(State::Fail, "OpenGL " + version + " is older than 2.0", DriverAdvice(facts));
    else
        row.Set(State::Ok, version + ", by " + facts.Get("vendor"));
}

void CheckRenderer(const GraphicsFacts& facts, Row& row) {
    const std::string name = facts.Get("renderer");
    const bool processor = DrawnByProcessor(name);
    row.values = {{"kind", processor ? "software" : "hardware"}};
    row.Set(State::Ok, name + (processor ? ": the processor draws, no graphics card" : ""));
    if (processor && CardIsThere())
        row.Set(State::Warn, "there is a graphics card, but the processor draws (" + name + ")",
                DriverAdvice(facts) + "; on a virtual display this is as it should be");
}

void CheckGlsl(const GraphicsFacts& facts, Row& row) {
    const std::string version = facts.Get("glsl");
    row.values = {{"version", version}};
    if (ParseVersion(version) < glslNeeded)
        row.Set(State::Fail,
                version.empty() ? "there is none: nothing can be drawn"
                                : "GLSL " + version + " is older than 1.10: nothing can be drawn",
                DriverAdvice(facts));
    else
        row.Set(State::Ok, version);
}

void CheckMultitexture(const GraphicsFacts& facts, Row& row) {
    if (facts.Number("multitexture") == 0)
        row.Set(State::Fail,
                "missing (GL_ARB_multitexture): the city is without light and the water without "
                "reflections",
                DriverAdvice(facts));
    else
        row.Set(State::Ok, "there");
}

void CheckUnits(const GraphicsFacts& facts, Row& row) {
    const int units = facts.Number("units");
    row.values = {NumberValue("units", units), NumberValue("needed", unitsNeeded)};
    row.Set(State::Ok, std::to_string(units));
    if (units < unitsNeeded)
        row.Set(State::Warn,
                "only " + std::to_string(units) + " of " + std::to_string(unitsNeeded) +
                    ": the city is without its light map",
                DriverAdvice(facts));
}

void CheckTextureSize(const GraphicsFacts& facts, Row& row) {
    const int limit = facts.Number("texture_size");
    const LargestPicture& largest = facts.largest;
    row.values = {NumberValue("limit", limit), NumberValue("width", largest.width),
                  NumberValue("height", largest.height)};
    const std::string size =
        std::to_string(largest.width) + " x " + std::to_string(largest.height) + " pixels";
    if (std::max(largest.width, largest.height) > limit)
        row.Set(State::Warn,
                largest.path + " has " + size + ", pictures of more than " + std::to_string(limit) +
                    " are not shown",
                DriverAdvice(facts));
    else
        row.Set(State::Ok, "up to " + std::to_string(limit) + " pixels; the largest here has " +
                               (largest.path.empty() ? "none" : size));
}

void CheckAnySize(const GraphicsFacts& facts, Row& row) {
    if (facts.Number("any_size") == 0)
        row.Set(State::Fail,
                "missing (GL_ARB_texture_non_power_of_two): no picture, since the frame of 960 x "
                "89 pixels is such a texture",
                DriverAdvice(facts));
    else
        row.Set(State::Ok, "there");
}

void CheckTarget(const GraphicsFacts& facts, Row& row) {
    if (facts.Number("target") == 0)
        row.Set(State::Fail, "the driver cannot draw into a target with colour and depth",
                DriverAdvice(facts));
    else
        row.Set(State::Ok, "colour and depth of the demo's size can be drawn into");
}

void CheckGroup(const GraphicsFacts& facts, const GlGroup& group, Row& row) {
    const std::string missing = facts.Get(group.id);
    row.values = {{"extension", group.extension}, {"missing", missing}};
    if (missing.empty())
        row.Set(State::Ok, "there");
    else
        row.Set(State::Fail, "missing (" + missing + "): the demo ends at once",
                DriverAdvice(facts));
}

// --- The table --------------------------------------------------------------------------------

struct Check {
    const char* id;
    const char* title;
    const char* needs; ///< the fact without which there is nothing to look at; null: none
    void (*check)(const GraphicsFacts& facts, Row& row);
};

const Check checksBefore[] = {
    {"sdl", "SDL", "sdl", CheckSdl},
    {"display", "Display", nullptr, CheckDisplay},
};
const Check checksOfOpenGl[] = {
    {"opengl", "OpenGL", "driver", CheckOpenGl},
    {"renderer", "Who draws", "renderer", CheckRenderer},
    {"glsl", "Shader language", "version", CheckGlsl},
};
const Check checksBehindGroups[] = {
    {"multitexture", "Several textures", "multitexture", CheckMultitexture},
    {"texture_units", "Texture units", "units", CheckUnits},
    {"texture_size", "Largest picture", "texture_size", CheckTextureSize},
    {"any_size", "Pictures of any size", "any_size", CheckAnySize},
    {"render_target", "Drawing apart", "target", CheckTarget},
};

template <class List>
void RunChecks(const List& checks, const GraphicsFacts& facts, Table& table) {
    for (const Check& check : checks) {
        table.push_back(NotLookedAt(check.id, check.title));
        if (check.needs != nullptr && !facts.Knows(check.needs))
            continue;
        table.back().Set(State::Ok, "");
        check.check(facts, table.back());
    }
}

void CheckGroups(const GraphicsFacts& facts, Table& table) {
    for (const GlGroup& group : GlGroups()) {
        table.push_back(NotLookedAt(group.id, group.title));
        if (facts.Knows(group.id))
            CheckGroup(facts, group, table.back());
    }
}

} // namespace

Table GraphicsRows(const Tools::IsolatedRun& run, bool named, const LargestPicture& largest) {
    const GraphicsFacts facts{run, named, largest};
    Table table;
    RunChecks(checksBefore, facts, table);
    RunChecks(checksOfOpenGl, facts, table);
    CheckGroups(facts, table);
    RunChecks(checksBehindGroups, facts, table);
    return table;
}

} // namespace Doctor
