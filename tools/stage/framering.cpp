#include "tools/stage/framering.h"

#include "demo/show.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <new>
#include <stdexcept>
#include <system_error>

#include <sys/mman.h>

namespace Stage {

namespace {

constexpr std::size_t frameBytes =
    static_cast<std::size_t>(Show::width) * Show::height * framePixelBytes;
constexpr std::size_t headerBytes = 4096; // one page, so that frames begin on a page
constexpr long patience = 100000000;      // nanoseconds

} // namespace

FrameRing::FrameRing() {
    static_assert(sizeof(Shared) <= headerBytes);
    void* const memory = mmap(nullptr, headerBytes + places * frameBytes, PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::runtime_error("no memory for frames: " + std::generic_category().message(errno));
    shared = new (memory) Shared{};
    constexpr int betweenProcesses = 1;
    sem_init(&shared->free, betweenProcesses, places);
    sem_init(&shared->ready, betweenProcesses, 0);
}

FrameRing::~FrameRing() {
    munmap(shared, headerBytes + places * frameBytes);
}

unsigned char* FrameRing::Place(int number) const {
    return reinterpret_cast<unsigned char*>(shared) + headerBytes +
           static_cast<std::size_t>(number % places) * frameBytes;
}

std::span<unsigned char> FrameRing::BeginWrite() {
    while (sem_wait(&shared->free) != 0 && errno == EINTR) {
    }
    return {Place(writing), frameBytes};
}

void FrameRing::EndWrite() {
    ++writing;
    sem_post(&shared->ready);
}

FrameCost& FrameRing::Cost() {
    return shared->cost;
}

void FrameRing::Fail(const std::string& reason) {
    std::strncpy(shared->reason, reason.c_str(), reasonSize - 1);
    shared->failed = true;
    sem_post(&shared->ready);
}

FrameRing::Wait FrameRing::WaitForFrame() {
    constexpr long second = 1000000000;
    timespec until{};
    clock_gettime(CLOCK_MONOTONIC, &until);
    until.tv_nsec += patience;
    until.tv_sec += until.tv_nsec / second;
    until.tv_nsec %= second;
    if (sem_clockwait(&shared->ready, CLOCK_MONOTONIC, &until) != 0)
        return Wait::Nothing;
    return shared->failed ? Wait::Failed : Wait::Ready;
}

FramePixels FrameRing::Frame() const {
    return {Place(reading), frameBytes};
}

void FrameRing::Release() {
    ++reading;
    sem_post(&shared->free);
}

const FrameCost& FrameRing::Cost() const {
    return shared->cost;
}

std::string FrameRing::Failure() const {
    return shared->reason;
}

} // namespace Stage
