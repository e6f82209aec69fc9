// Where the start goes: milliseconds of the processor up to the end of the first frame, by what
// they are spent on.

#include "bench/cost.h"
#include "bench/tape.h"
#include "tools/options/commandline.h"
#include "tools/stage/scratch.h"
#include "tools/stage/show.h"

#include <GL/gl.h>
#include <SDL.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using Bench::Milliseconds;

double window = 0; ///< spent on SDL's opening of it
double loaded = 0; ///< when loading was done
double shown = 0;  ///< when the first frame was

/// Calls what `name` is in the library, and adds the time to the window's.
template <class Function, class... Arguments>
auto InWindow(Function*, const char* name, Arguments... arguments) {
    const double begin = Milliseconds();
    const auto result = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
    window += Milliseconds() - begin;
    return result;
}

class FirstFrame : public Stage::Visitor {
    bool Wants(int) override { return true; }
    void Begin(int) override {
        loaded = Milliseconds();
        Replay::Tape::TakeTime(false);
    }
    void End(int) override {
        glFinish();
        shown = Milliseconds();
    }
};

/// What it takes to read all that the show is made of, once more, without a look at it.
double Reading() {
    const double begin = Milliseconds();
    std::size_t sum = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             "Data/", std::filesystem::directory_options::follow_directory_symlink))
        if (entry.is_regular_file()) {
            std::string bytes(entry.file_size(), '\0');
            std::ifstream(entry.path(), std::ios::binary)
                .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            sum += bytes.size();
        }
    return sum > 0 ? Milliseconds() - begin : 0;
}

int Measure(const Tools::Arguments&) {
    Tools::EnterDemoFolder();
    const double begun = Milliseconds();
    FirstFrame first;
    Replay::Tape::TakeTime(true);
    Stage::PlayShow({}, 0, first);
    const double driver = Replay::Tape::TimeTaken();
    const double reading = Reading();
    std::printf("reading %.3f\ndecoding %.3f\ndriver %.3f\nwindow %.3f\nfirst %.3f\n", reading,
                loaded - begun - window - driver - reading, driver, window, shown - loaded);
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "nimbrel_start",
    .purpose =
        "Prints what the milliseconds of the processor up to the end of the first frame are\n"
        "spent on: reading the files, decoding them, the driver while they are handed to it,\n"
        "the window, and the first frame.",
    .modes = {{.run = Measure}}};

} // namespace

extern "C" int SDL_Init(Uint32 flags) {
    return InWindow<int(Uint32)>(nullptr, "SDL_Init", flags);
}

extern "C" SDL_Surface* SDL_SetVideoMode(int width, int height, int bits, Uint32 flags) {
    return InWindow<SDL_Surface*(int, int, int, Uint32)>(nullptr, "SDL_SetVideoMode", width, height,
                                                         bits, flags);
}

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
