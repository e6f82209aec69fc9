// How far the show's frames, which look once into each pixel, are from what lies in the pixels.

#include "demo/show.h"
#include "tools/options/commandline.h"
#include "tools/stage/scratch.h"
#include "tools/stage/show.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int valuesPerPixel = 3; // red, green, blue
constexpr std::size_t valueCount =
    static_cast<std::size_t>(Show::width) * Show::height * valuesPerPixel;

/// What a flight's frames differ by, 0..255.
struct Mean {
    double sum = 0;
    int frames = 0;

    double Value() const { return frames > 0 ? sum / frames : 0; }
};

std::size_t FlightAt(double seconds) {
    std::size_t flight = 0;
    while (flight + 1 < Show::flightCount && seconds >= Show::flights[flight + 1].begin)
        ++flight;
    return flight;
}

/// Which frames are looked at, and how finely.
struct Sampling {
    int every;   ///< frames of the show, at 60 a second
    int perSide; ///< samples along each side of a pixel
    bool finer;  ///< whether the samples are taken of finer levels of the textures, as a picture of
                 ///< so many more pixels would
};

/// Draws each frame as it is, then once for each sample, the view moved by parts of a pixel, time
/// standing still; both the window and what the water mirrors are moved alike.
class Sampler : public Stage::Visitor {
public:
    explicit Sampler(const Sampling& asked) : sampling(asked) {}

    std::array<Mean, Show::flightCount> flights{};

private:
    bool Wants(int number) override { return number % sampling.every == 0; }

    void Begin(int /*number*/) override {
        if (sample == plain) {
            glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
            return;
        }
        const int perSide = sampling.perSide;
        const auto inPixel = [&](int part) { // -0.5..0.5, the middle of the part
            return (static_cast<float>(part) + 0.5f) / static_cast<float>(perSide) - 0.5f;
        };
        MoveView(2 * inPixel((sample - 1) % perSide) / Show::width,
                 2 * inPixel((sample - 1) / perSide) / Show::height);
        if (sampling.finer)
            SetTextureBias(-std::log2(static_cast<float>(perSide)));
    }

    void End(int number) override {
        glReadPixels(0, 0, Show::width, Show::height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
        if (sample == plain) {
            once = pixels;
            sums.assign(valueCount, 0);
        } else {
            for (std::size_t i = 0; i < valueCount; ++i)
                sums[i] += pixels[i];
        }
        sample = sample < sampling.perSide * sampling.perSide ? sample + 1 : plain;
        if (sample == plain) {
            Compare(number);
            MoveView(0, 0);
            SetTextureBias(0);
        }
    }

    bool Again(int /*number*/) override { return sample != plain; }

    void Compare(int number) {
        const double samples = static_cast<double>(sampling.perSide) * sampling.perSide;
        double difference = 0;
        for (std::size_t i = 0; i < valueCount; ++i)
            difference += std::abs(once[i] - sums[i] / samples);
        Mean& mean = flights[FlightAt(Stage::Rate{}.Seconds(number))];
        mean.sum += difference / static_cast<double>(valueCount);
        ++mean.frames;
    }

    /// By parts of the picture's half width and half height. The demo sets its projection once.
    void MoveView(float x, float y) const {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glTranslatef(x, y, 0);
        glMultMatrixf(projection.data());
        glMatrixMode(GL_MODELVIEW);
    }

    static void SetTextureBias(float levels) {
        constexpr int unitsInUse = 7; // the light map's is the last
        for (int unit = unitsInUse - 1; unit >= 0; --unit) {
            glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
            glTexEnvf(GL_TEXTURE_FILTER_CONTROL, GL_TEXTURE_LOD_BIAS, levels);
        }
    }

    static constexpr int plain = 0; // the frame as it is; 1 and on are the samples

    const Sampling sampling;
    int sample = plain;
    std::array<float, 16> projection{};
    std::vector<unsigned char> pixels = std::vector<unsigned char>(valueCount);
    std::vector<unsigned char> once;
    std::vector<double> sums;
};

int Measure(const Tools::Arguments& arguments) {
    const Sampling sampling{.every = arguments.WholeNumber("--every", 10),
                            .perSide = arguments.WholeNumber("--samples", 8),
                            .finer = arguments.Has("--finer")};
    Tools::EnterDemoFolder();
    Sampler sampler(sampling);
    const int last = Stage::Rate{}.FrameAt(Show::runningTime) / sampling.every * sampling.every;
    Stage::PlayShow({}, last, sampler);
    for (std::size_t i = 0; i < Show::flightCount; ++i)
        std::printf("%zu %.3f %d\n", i + 1, sampler.flights[i].Value(), sampler.flights[i].frames);
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "nimbrel_shimmer",
    .purpose =
        "Prints for each flight its number, the mean difference, 0..255, between its frames and\n"
        "the same frames of many samples a pixel, and how many frames that were.",
    .options = {{.name = "--every",
                 .value = "N",
                 .kind = Tools::WholeNumberKind(1, 5000),
                 .example = "10",
                 .meaning = "looks at every Nth frame of 60 a second (10)"},
                {.name = "--samples",
                 .value = "N",
                 .kind = Tools::WholeNumberKind(1, 16),
                 .example = "8",
                 .meaning = "takes N x N samples a pixel (8)"},
                {.name = "--finer",
                 .meaning = "takes them of textures as fine as a picture of so many pixels shows"}},
    .modes = {{.options = {"--every", "--samples", "--finer"}, .run = Measure}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
