// What the program costs beside the calls that it makes: frames of the show as the demo draws them,
// and the same frames drawn by nothing but their calls to OpenGL, made again one after the other.

#include "bench/cost.h"
#include "bench/tape.h"
#include "demo/show.h"
#include "tools/options/commandline.h"
#include "tools/stage/scratch.h"
#include "tools/stage/show.h"

#include <GL/gl.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <vector>

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int usualRounds = 15;
constexpr Stage::Rate rate{10, 1};

/// The frame in the middle of a flight, by its number.
int FrameOf(std::size_t flight) {
    const Show::Flight& flown = Show::flights[flight];
    return rate.FrameAt(flown.begin + static_cast<double>(flown.duration) / 2);
}

/// What the processor has done so far, in all threads.
struct Work {
    double milliseconds = 0;
    double instructions = 0; ///< outside the kernel, in millions; 0 where nothing counts them

    Work operator-(const Work& before) const {
        return {milliseconds - before.milliseconds, instructions - before.instructions};
    }
};

/// Counts what this program does from its construction on, threads that begin later included. Of
/// instructions there are as many on a busy machine.
class Processor {
public:
    Processor() {
        perf_event_attr counted{};
        counted.type = PERF_TYPE_HARDWARE;
        counted.size = sizeof counted;
        counted.config = PERF_COUNT_HW_INSTRUCTIONS;
        counted.exclude_kernel = 1;
        counted.exclude_hv = 1;
        counted.inherit = 1;
        counter = static_cast<int>(
            syscall(SYS_perf_event_open, &counted, thisProcess, anyCore, noGroup, 0));
    }
    ~Processor() {
        if (counter >= 0)
            close(counter);
    }
    Processor(const Processor&) = delete;
    Processor& operator=(const Processor&) = delete;

    Work Done() const {
        std::uint64_t count = 0;
        if (counter < 0 || read(counter, &count, sizeof count) != sizeof count)
            count = 0;
        return {Bench::Milliseconds(), static_cast<double>(count) * 1e-6};
    }

private:
    static constexpr int thisProcess = 0;
    static constexpr int anyCore = -1;
    static constexpr int noGroup = -1;

    int counter;
};

std::vector<unsigned char> Window() {
    std::vector<unsigned char> pixels(static_cast<std::size_t>(Show::width) * Show::height * 4);
    glReadPixels(0, 0, Show::width, Show::height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

/// Draws one frame of each flight again and again, time standing still, by the demo and by its
/// calls in turn.
class Turns : public Stage::Visitor {
public:
    Turns(const Processor& measured, int wantedRounds)
        : processor(measured), rounds(wantedRounds) {}

private:
    bool Wants(int number) override {
        return flight < Show::flightCount && number == FrameOf(flight);
    }

    void Begin(int /*number*/) override {
        if (turn == recorded) {
            tape = std::make_unique<Replay::Tape>();
            tape->Record();
        }
        begin = processor.Done();
    }

    void End(int /*number*/) override {
        glFinish();
        const Work live = processor.Done() - begin;
        if (turn == recorded)
            Check();
        else if (turn > recorded)
            Tell(live, Replayed());
    }

    bool Again(int /*number*/) override {
        if (++turn <= recorded + rounds)
            return true;
        turn = 0;
        ++flight;
        return false;
    }

    Work Replayed() const {
        const Work start = processor.Done();
        tape->Play();
        glFinish();
        return processor.Done() - start;
    }

    void Tell(const Work& live, const Work& replayed) const {
        std::printf("%zu %.4f %.4f %.4f %.4f %zu\n", flight + 1, live.milliseconds,
                    replayed.milliseconds, live.instructions, replayed.instructions, tape->Count());
    }

    /// The calls must be all that the picture is made of.
    void Check() const {
        Replay::Tape::Stop();
        const std::vector<unsigned char> live = Window();
        glClear(GL_COLOR_BUFFER_BIT);
        tape->Play();
        if (Window() != live)
            throw std::runtime_error("the calls of the frame do not make its picture");
    }

    static constexpr int recorded =
        2; // the turn whose calls are kept; before it the driver warms up

    const Processor& processor;
    const int rounds;
    std::size_t flight = 0;
    int turn = 0;
    Work begin;
    std::unique_ptr<Replay::Tape> tape;
};

int Measure(const Tools::Arguments& arguments) {
    Tools::EnterDemoFolder();
    const Processor processor; // before the driver has threads
    Turns turns(processor, arguments.WholeNumber("--rounds", usualRounds));
    Stage::PlayShow(rate, FrameOf(Show::flightCount - 1), turns);
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "nimbrel_replay",
    .purpose =
        "Prints for one frame of each flight, round by round: the flight's number, the\n"
        "milliseconds of the processor that the demo takes for the frame, those that its calls\n"
        "take when they are made again without the demo, and how many calls that are.",
    .options = {{.name = "--rounds",
                 .value = "N",
                 .kind = Tools::WholeNumberKind(1, 1000),
                 .example = "15",
                 .meaning = "measures each frame N times (15)"}},
    .modes = {{.options = {"--rounds"}, .run = Measure}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
