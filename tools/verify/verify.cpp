#include "tools/verify/verify.h"

#include "demo/show.h"
#include "tools/passes/passes.h"
#include "tools/stage/logpage.h"
#include "tools/stage/scratch.h"
#include "tools/stage/show.h"
#include "tools/verify/reference.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

namespace Verify {

namespace {

namespace fs = std::filesystem;

constexpr int momentCount = 60;

// What the rounding of another processor or driver may make of a frame, of 255.
constexpr double meanTolerance = 0.25;
constexpr int pixelTolerance = 3;
constexpr double pixelsBeyond = 0.001; // share of pixels that may be off by more
constexpr int passTolerance = 1;       // of a pass's mean colours

/// The middles of 60 equal parts of the show.
std::vector<int> Moments(const Stage::Rate& rate) {
    std::vector<int> frames;
    frames.reserve(momentCount);
    for (int i = 0; i < momentCount; ++i)
        frames.push_back(rate.FrameAt((i + 0.5) * Show::runningTime / momentCount));
    return frames;
}

Picture ReadFrame() {
    std::vector<unsigned char> pixels(static_cast<std::size_t>(Show::width) * Show::height *
                                      Stage::framePixelBytes);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, Show::width, Show::height, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
    return Stage::ToPicture(pixels);
}

/// Keeps what references keep of the frames wanted.
class Keeper : public Stage::Visitor {
public:
    explicit Keeper(std::vector<int> wanted) : frames(std::move(wanted)) {}

    bool Wants(int number) override {
        return std::binary_search(frames.begin(), frames.end(), number);
    }
    void Begin(int) override { recorder.BeginFrame(); }
    void End(int number) override {
        recorder.EndFrame();
        references.push_back(ReferenceOf(number, ReadFrame(), recorder.Take()));
    }

    std::vector<Reference> references;

private:
    std::vector<int> frames;
    Passes::PassRecorder recorder{Passes::Detail::Colours};
};

std::vector<Reference> DrawMoments(std::vector<int> frames) {
    Tools::EnterDemoFolder();
    const int last = frames.back();
    Keeper keeper(std::move(frames));
    Stage::PlayShow({}, last, keeper);
    std::cerr << Tools::ErrorsInWords(Tools::ReadLogPage());
    return keeper.references;
}

/// How far two pictures of one size are apart.
struct Difference {
    double mean = 0.0;   ///< over all pixels and colours, of 255
    double beyond = 0.0; ///< share of the pixels with a colour off by more than the tolerance

    bool Tolerable() const { return mean <= meanTolerance && beyond <= pixelsBeyond; }
};

Difference Compare(const Picture& a, const Picture& b) {
    if (a.width != b.width || a.height != b.height)
        throw std::runtime_error("the references have another size: make them anew");
    std::uint64_t sum = 0;
    int count = 0;
    for (std::size_t i = 0; i < a.bytes.size(); i += Picture::channels) {
        int largest = 0;
        for (std::size_t colour = i; colour < i + Picture::channels; ++colour) {
            const int off =
                std::abs(static_cast<int>(a.bytes[colour]) - static_cast<int>(b.bytes[colour]));
            sum += static_cast<std::uint64_t>(off);
            largest = std::max(largest, off);
        }
        count += largest > pixelTolerance ? 1 : 0;
    }
    const auto bytes = static_cast<double>(a.bytes.size());
    return {static_cast<double>(sum) / bytes,
            static_cast<double>(count) * Picture::channels / bytes};
}

const char* Word(const PassTrace* expected, const PassTrace* found) {
    if (!expected)
        return "was not there";
    if (!found)
        return "is missing";
    if (expected->fingerprint == found->fingerprint && Distance(*expected, *found) == 0)
        return "identical";
    return Distance(*expected, *found) <= passTolerance ? "alike" : "differs";
}

/// Every pass of the frame in order with what became of it; the first that is neither identical nor
/// alike is where to look.
void TellPasses(const Reference& expected, const Reference& found) {
    const std::size_t count = std::max(expected.passes.size(), found.passes.size());
    for (std::size_t i = 0; i < count; ++i) {
        const PassTrace* const before = i < expected.passes.size() ? &expected.passes[i] : nullptr;
        const PassTrace* const now = i < found.passes.size() ? &found.passes[i] : nullptr;
        const PassTrace& named = before ? expected.passes[i] : found.passes[i];
        char line[160];
        std::snprintf(line, sizeof line, "  %-28s %4d x %-4d %s\n", named.name.c_str(), named.width,
                      named.height, Word(before, now));
        std::cout << line;
    }
}

/// Name of the first pass that differs, or of the one that differs most.
std::string FirstPass(const Reference& expected, const Reference& found) {
    const std::size_t count = std::min(expected.passes.size(), found.passes.size());
    std::size_t worst = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (Distance(expected.passes[i], found.passes[i]) > passTolerance)
            return expected.passes[i].name;
        if (Distance(expected.passes[i], found.passes[i]) >
            Distance(expected.passes[worst], found.passes[worst]))
            worst = i;
    }
    return count > 0 ? expected.passes[worst].name : "none";
}

/// The reference above, what was drawn in the middle, their difference below.
Picture Contrast(const Picture& expected, const Picture& found) {
    constexpr int gain = 8;
    Picture all(expected.width, expected.height * 3);
    const std::size_t size = expected.bytes.size();
    for (std::size_t i = 0; i < size; ++i) {
        const int off =
            std::abs(static_cast<int>(expected.bytes[i]) - static_cast<int>(found.bytes[i])) * gain;
        all.bytes[i] = expected.bytes[i];
        all.bytes[size + i] = found.bytes[i];
        all.bytes[2 * size + i] = static_cast<unsigned char>(std::min(off, 255));
    }
    return all;
}

void WriteContrast(const Picture& expected, const Picture& found, const std::string& path) {
    WritePng(Contrast(expected, found), path);
    std::cerr << path << ": the reference, what was drawn, and eight times their difference\n";
}

void TellDifference(const Reference& expected, const Reference& found, const Difference& off) {
    char line[240];
    std::snprintf(line, sizeof line,
                  "The show differs first at %.3f s (frame %d) in the pass \"%s\": the pictures "
                  "are %.3f of 255 apart, %.2f %% of their pixels by more than %d.\n",
                  Stage::Rate().Seconds(expected.frame), expected.frame,
                  FirstPass(expected, found).c_str(), off.mean, off.beyond * 100.0, pixelTolerance);
    std::cout << line;
    TellPasses(expected, found);
}

/// One number for the bits of all pictures: two runs on one machine must agree in it.
std::uint64_t Fingerprint(const std::vector<Reference>& references) {
    std::vector<unsigned char> bytes;
    for (const Reference& reference : references)
        for (int shift = 0; shift < 64; shift += 8)
            bytes.push_back(static_cast<unsigned char>(reference.fingerprint >> shift));
    return Verify::Fingerprint(bytes);
}

std::vector<int> FramesOf(const std::vector<Reference>& references) {
    std::vector<int> frames;
    frames.reserve(references.size());
    for (const Reference& reference : references)
        frames.push_back(reference.frame);
    return frames;
}

void TellAgreement(std::size_t count, std::size_t identical, const Difference& largest) {
    char line[200];
    std::snprintf(line, sizeof line,
                  "%zu frames: %zu identical, %zu within the tolerance (at most %.3f of 255 apart, "
                  "%.3f %% of the pixels by more than %d).\n",
                  count, identical, count - identical, largest.mean, largest.beyond * 100.0,
                  pixelTolerance);
    std::cout << line;
}

} // namespace

int VerifyShow(const std::string& folder, const std::string& pictureName) {
    const fs::path picturePath = pictureName.empty() ? "" : fs::absolute(pictureName);
    const std::vector<Reference> expected = ReadReferences(folder);
    const std::vector<Reference> found = DrawMoments(FramesOf(expected));
    std::cout << "Fingerprint of what was drawn: " << std::hex << Fingerprint(found) << std::dec
              << '\n';
    std::size_t identical = 0;
    Difference largest;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (found[i].fingerprint == expected[i].fingerprint) {
            ++identical;
            continue;
        }
        const Difference off = Compare(expected[i].half, found[i].half);
        if (!off.Tolerable()) {
            TellDifference(expected[i], found[i], off);
            if (!picturePath.empty())
                WriteContrast(expected[i].half, found[i].half, picturePath);
            return EXIT_FAILURE;
        }
        largest.mean = std::max(largest.mean, off.mean);
        largest.beyond = std::max(largest.beyond, off.beyond);
    }
    TellAgreement(expected.size(), identical, largest);
    return EXIT_SUCCESS;
}

void RenewReferences(const std::string& folder) {
    const fs::path target = fs::absolute(folder);
    WriteReferences(DrawMoments(Moments({})), target);
    std::cerr << target.string() << ": " << momentCount << " frames to compare with\n";
}

} // namespace Verify
