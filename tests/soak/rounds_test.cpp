// The show and its scene, again and again in one process, on the real driver and with the real
// data: memory, descriptors and OpenGL's objects stay what they are. On request, for it takes long.
//
// NIMBREL_SOAK_SCENES    scenes that are loaded, drawn and deleted (200)
// NIMBREL_SOAK_SHOWS     whole shows as they are filmed, with their music (3)
// NIMBREL_SOAK_FRAMES    of a second of them (2)

#include "demo/assets.h"
#include "demo/post_water.h"
#include "demo/scene1.h"
#include "demo/show.h"
#include "engine/core/core.h"
#include "sound/control.h"
#include "tests/support/fake_time.h"
#include "tests/support/gl_test.h"
#include "tests/support/measured.h"
#include "tests/support/private_member.h"
#include "tests/support/process_state.h"
#include "tests/system/nimbrel_test.h"

#include <SDL.h>
#include <fmod.h>

#include <algorithm>
#include <chrono>
#include <sstream>

OPEN_PRIVATE(scene1Ripple, &Scene1::ripple);

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kibibyte = 1024;

// Left on purpose by each scene: light map coordinates of the wisps and the fish, one sub-mesh
// each, and second owners of the city's shared pictures, 9 KiB together. Mesa 22.3 keeps 91 KiB
// more in software: the pixels of one face of the sky, though the texture is deleted and its name
// is free.
constexpr int buffersARound = 4;
constexpr std::size_t bytesARound = 128 * kibibyte;

// The driver's pages come and go.
constexpr std::size_t pages = 16 * 1024 * kibibyte;

int Number(const char* name, int usual) {
    const char* const text = std::getenv(name);
    return text ? std::atoi(text) : usual;
}

using IsObject = GLboolean (*)(GLuint);

IsObject Fetch(const char* name) {
    return reinterpret_cast<IsObject>(SDL_GL_GetProcAddress(name));
}

constexpr GLuint boundOfNames = 100000; // 100 a round: the driver gives no name a second time

/// The objects that the driver has: of every kind that the engine makes.
int CountObjects() {
    int count = 0;
    for (const char* question : {"glIsTexture", "glIsBuffer", "glIsFramebuffer", "glIsRenderbuffer",
                                 "glIsList", "glIsShader", "glIsProgram"}) {
        const IsObject isObject = Fetch(question);
        for (GLuint name = 1; name < boundOfNames; ++name)
            count += isObject(name) == GL_TRUE ? 1 : 0;
    }
    return count;
}

/// The engine never deletes a program of shaders, on purpose: so that all else shows, it is done
/// here. None is drawn with any more.
void DeletePrograms() {
    const IsObject isProgram = Fetch("glIsProgram");
    for (GLuint name = 1; name < boundOfNames; ++name)
        if (isProgram(name) == GL_TRUE)
            glDeleteObject(name); // of either kind
}

/// What a process has that must not grow.
struct State {
    int descriptors = OpenDescriptors();
    int objects = CountObjects();
    std::size_t heap = HeapBytes();
    std::size_t resident = ResidentBytes();
};

std::ostream& operator<<(std::ostream& out, const State& state) {
    return out << state.descriptors << " descriptors, " << state.objects << " objects, "
               << state.heap / kibibyte << " KiB allocated, " << state.resident / kibibyte
               << " KiB resident";
}

/// The music, as it moves with the frames, heard by nobody.
class Music {
public:
    Music() {
        Vell::Sound::PlayByHand(time);
        FMOD_System_Create(&system);
        FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr);
        FMOD_System_CreateStream(system, Assets::music, FMOD_LOOP_OFF, nullptr, &sound);
        FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel);
    }
    ~Music() {
        FMOD_Sound_Release(sound);
        FMOD_System_Close(system);
        FMOD_System_Release(system);
        Vell::Sound::SetOutputMaker({});
    }
    Music(const Music&) = delete;
    Music& operator=(const Music&) = delete;

    void MoveTo(double seconds) {
        time->MoveTo(seconds);
        FMOD_System_Update(system);
        FMOD_Channel_GetSpectrum(channel, spectrum, 64, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        loudest = std::max(loudest, spectrum[0]);
    }

    float spectrum[64] = {};
    float loudest = 0.0f;

private:
    std::shared_ptr<Vell::Sound::HandTime> time = std::make_shared<Vell::Sound::HandTime>();
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
};

class Rounds : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directory_symlink(RealData(), "Data");
        OpenTestWindow(Vell::ivec2(Show::width, Show::height));
        ASSERT_TRUE(Vell::InitEngine(Vell::ivec2(Show::width, Show::height)));
    }
    void TearDown() override { ClearFakeTime(); }

    /// One scene; `play` draws its frames.
    template <class Play>
    static void DoRound(Play play) {
        SetFakeTime(0.0);
        auto scene = std::make_unique<Scene1>();
        const std::unique_ptr<PostWater> ripple((*scene).*scene1Ripple); // left to the process
        scene->Load();
        play(*scene);
        scene.reset();
        SDL_GL_SwapBuffers();
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    /// A few frames of a scene.
    static void DrawSome(Scene1& scene) {
        std::vector<float> spectrum(64, 0.5f);
        scene.SetSpectrum(spectrum.data());
        for (const double t : {0.0, 30.0, 60.0, 100.0}) {
            SetFakeTime(t);
            scene.Draw(0.02f);
        }
    }

    /// So many rounds, after some in which the driver gets what it keeps; fails when what must not
    /// grow has grown.
    template <class Round>
    static void ExpectNothingGrows(int count, Round round) {
        for (int i = 0; i < 3; ++i)
            DoRound(DrawSome);
        round();
        DeletePrograms();
        const State before;
        for (int i = 0; i < count; ++i) {
            round();
            DeletePrograms();
        }
        const State after;
        std::ostringstream words;
        words << "before: " << before << "; after: " << after;
        TellMeasured(std::to_string(count) + " rounds", words.str());
        const auto rounds = static_cast<std::size_t>(count);
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_EQ(after.objects, before.objects + buffersARound * count);
        EXPECT_LE(after.heap, before.heap + bytesARound * rounds);
        EXPECT_LE(after.resident, before.resident + bytesARound * rounds + pages);
    }

private:
    ScratchDir scratch;
};

} // namespace

TEST_F(Rounds, Of_scenes_loaded_drawn_and_deleted_leave_the_process_as_it_was) {
    ExpectNothingGrows(Number("NIMBREL_SOAK_SCENES", 200), [] { DoRound(DrawSome); });
}

TEST_F(Rounds, Of_whole_shows_leave_the_process_as_it_was) {
    const double step = 1.0 / Number("NIMBREL_SOAK_FRAMES", 2);
    float loudest = 0.0f;
    std::chrono::duration<double> longest{};
    ExpectNothingGrows(Number("NIMBREL_SOAK_SHOWS", 3), [&] {
        const auto begin = Clock::now();
        Music music;
        DoRound([&](Scene1& scene) {
            scene.SetSpectrum(music.spectrum);
            for (double t = 0.0; t < Show::runningTime; t += step) {
                SetFakeTime(t);
                music.MoveTo(t);
                scene.Draw(static_cast<float>(step));
                SDL_GL_SwapBuffers();
            }
        });
        loudest = music.loudest;
        longest = std::max(longest, std::chrono::duration<double>(Clock::now() - begin));
    });
    TellMeasured("the longest show", std::to_string(longest.count()) + " s");
    EXPECT_GT(loudest, 0.0f) << "no music was heard";
}
