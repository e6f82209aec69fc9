#include "tools/stage/frames.h"

#include "demo/show.h"
#include "tools/stage/childprocess.h"
#include "tools/stage/framering.h"
#include "tools/stage/scratch.h"
#include "tools/stage/show.h"

#include <GL/gl.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>

namespace Stage {

namespace {

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Hands this job's share of the frames into the ring.
class Reader : public Visitor {
public:
    Reader(std::vector<int> share, FrameRing& target) : frames(std::move(share)), ring(target) {}

    int Last() const { return frames.back(); }

    bool Wants(int number) override {
        if (last == 0.0)
            last = Now(); // loading is not counted
        return next < frames.size() && frames[next] == number;
    }

    void End(int) override {
        glFinish(); // what drawing has left to do is no part of the handing over
        const double drawn = Now();
        const std::span<unsigned char> place = ring.BeginWrite();
        const double begin = Now();
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, Show::width, Show::height, GL_BGRA, GL_UNSIGNED_BYTE, place.data());
        const double end = Now();
        FrameCost& cost = ring.Cost();
        cost.drawing += (drawn - last) + (end - begin);
        cost.handover += end - begin;
        last = end;
        ++next;
        ring.EndWrite();
    }

private:
    const std::vector<int> frames;
    FrameRing& ring;
    std::size_t next = 0;
    double last = 0.0;
};

/// Several software renderers on one machine: each gets its share of the cores, and with one core
/// needs no threads. Elsewhere the setting means nothing.
void ShareCores(int jobs) {
    if (jobs == 1)
        return;
    const int cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    const int share = std::max(1, cores / jobs);
    constexpr int keepTheUsers = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing draws yet, nor are there threads
    setenv("LP_NUM_THREADS", std::to_string(share > 1 ? share : 0).c_str(), keepTheUsers);
}

/// One process that draws; ended and waited for with the object.
class Job {
public:
    Job(const FrameRequest& request, const std::vector<int>& share)
        : process([&] { return Draw(request, share); }, Tools::ProcessGroup::Same) {}

    /// The next frame; nothing while none is ready. Throws when there will be none.
    bool Ready() {
        switch (ring.WaitForFrame()) {
        case FrameRing::Wait::Ready:
            return true;
        case FrameRing::Wait::Failed:
            throw std::runtime_error(ring.Failure());
        case FrameRing::Wait::Nothing:
            break;
        }
        if (!process.Running())
            throw std::runtime_error("the process that draws the frames ended unexpectedly (see "
                                     "./movie --doctor)");
        return false;
    }

    FrameRing& Ring() { return ring; }

    /// Waits until the show has ended in order, and returns its log.
    std::string Finish() {
        process.Wait(std::numeric_limits<double>::infinity());
        return folder.Log();
    }

private:
    int Draw(const FrameRequest& request, const std::vector<int>& share) {
        std::signal(SIGINT, SIG_IGN); // the parent decides what Ctrl-C means
        int status = EXIT_SUCCESS;
        try {
            std::filesystem::current_path(folder.Path());
            ShareCores(request.jobs);
            Reader reader(share, ring);
            PlayShow(request.rate, reader.Last(), reader);
        } catch (const std::exception& error) {
            ring.Fail(error.what());
            status = EXIT_FAILURE;
        }
        // The demo's log gets its last lines in exit; the process has no threads of its own.
        std::exit(status); // NOLINT(concurrency-mt-unsafe)
    }

    Tools::DemoFolder folder;
    FrameRing ring;
    Tools::ChildProcess process; // last: it uses the others
};

/// Every `jobs`th of the frames, from number `first` on.
std::vector<int> Share(const FrameRequest& request, int first) {
    std::vector<int> share;
    for (std::size_t i = static_cast<std::size_t>(first); i < request.frames.size();
         i += static_cast<std::size_t>(request.jobs))
        share.push_back(request.frames[i]);
    return share;
}

std::vector<std::unique_ptr<Job>> StartJobs(const FrameRequest& request) {
    std::vector<std::unique_ptr<Job>> jobs;
    jobs.reserve(static_cast<std::size_t>(request.jobs));
    for (int i = 0; i < request.jobs; ++i)
        jobs.push_back(std::make_unique<Job>(request, Share(request, i)));
    return jobs;
}

/// Whether the job's next frame is ready; false when the sink wants no more.
bool WaitFor(Job& job, FrameSink& sink) {
    try {
        while (!sink.Stopped())
            if (job.Ready())
                return true;
    } catch (const std::exception&) {
        if (!sink.Stopped()) // whoever stops everything may have stopped the display as well
            throw;
    }
    return false;
}

FrameCost Sum(const std::vector<std::unique_ptr<Job>>& jobs) {
    FrameCost sum;
    for (const auto& job : jobs) {
        sum.drawing += job->Ring().Cost().drawing;
        sum.handover += job->Ring().Cost().handover;
    }
    return sum;
}

} // namespace

Picture ToPicture(FramePixels pixels) {
    Picture picture(Show::width, Show::height);
    const unsigned char* from = pixels.data();
    for (int y = Show::height - 1; y >= 0; --y)
        for (int x = 0; x < Show::width; ++x, from += framePixelBytes)
            std::reverse_copy(from, from + Picture::channels, picture.At(x, y));
    return picture;
}

FrameCost DrawFrames(const FrameRequest& asked, FrameSink& sink, std::string* log) {
    FrameRequest request = asked;
    if (request.frames.empty())
        return {};
    request.jobs = std::clamp(request.jobs, 1, static_cast<int>(request.frames.size()));
    const auto jobs = StartJobs(request);
    for (std::size_t i = 0; i < request.frames.size(); ++i) {
        Job& job = *jobs[i % jobs.size()];
        if (!WaitFor(job, sink))
            return Sum(jobs);
        sink.Put(request.frames[i], job.Ring().Frame());
        job.Ring().Release();
    }
    const std::string text = jobs.front()->Finish();
    if (log)
        *log = text;
    return Sum(jobs);
}

} // namespace Stage
