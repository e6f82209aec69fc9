// The probe that watches the production (tools/probe): it must see what is wrong, and say so.

#include "tests/support/pixels.h"
#include "tests/system/nimbrel_test.h"

#include "engine/core/GLExtensions.h"

#include <SDL.h>

#include <sstream>

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sys/time.h>

using ::testing::HasSubstr;

namespace {

constexpr int width = 8;
constexpr int height = 4;

/// The frame of the subject program: a colour that tells its number and a marked lower left corner.
void DrawFrame(int number) {
    glClearColor(0.0f, static_cast<float>(number) / 10.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

/// The clock as a program without the tests' own gettimeofday() sees it: the probe's, or the real.
double ClockSeconds() {
    using Function = int(timeval*, void*);
    timeval now{};
    reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "gettimeofday"))(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) * 1e-6;
}

class Probe : public NimbrelTest {
protected:
    /// Runs the subject below, with the probe, and reads its report.
    void RunSubject(Tools::Environment probe) {
        probe.insert({{"DISPLAY", display->Name()},
                      {"LD_PRELOAD",
                       Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so")},
                      {"NIMBREL_PROBE_REPORT", reportFile},
                      {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"}});
        const std::string self = std::filesystem::read_symlink("/proc/self/exe");
        end = Tools::Run({.arguments = {self, "--gtest_also_run_disabled_tests",
                                        "--gtest_filter=Subject.DISABLED_*"},
                          .added = probe},
                         60.0);
        report = ReadReport(reportFile);
    }

    Tools::Ending end;
};

} // namespace

// Not a test: the program that the tests of the probe run. Five frames; the third and every later
// one make an OpenGL error. The clock as each frame saw it goes to standard output.
TEST(Subject, DISABLED_Shows_five_frames) {
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    ASSERT_NE(SDL_SetVideoMode(width, height, 32, SDL_OPENGL), nullptr);
    SDL_WM_SetCaption("subject", nullptr);
    SDL_Event event;
    for (int frame = 1; frame <= 5; ++frame) {
        SDL_PollEvent(&event);
        std::printf("frame %d at %.3f\n", frame, ClockSeconds());
        DrawFrame(frame);
        if (frame == 3)
            glEnable(GL_TRIANGLES); // not a capability: invalid enumeration
        if (frame > 3)
            glPopMatrix(); // nothing was pushed: stack underflow
        SDL_GL_SwapBuffers();
    }
    SDL_Quit();
}

TEST_F(Probe, Times_every_frame) {
    const std::string file = std::filesystem::absolute("frames").string();
    RunSubject({{"NIMBREL_PROBE_STEP", "0.5"}, {"NIMBREL_PROBE_FRAMES", file}});
    std::istringstream lines(ReadFile(file));
    for (const double expected : {0.0, 0.5, 1.0, 1.5, 2.0}) {
        double demoTime = -1.0;
        double milliseconds = -1.0;
        double processor = -1.0;
        ASSERT_TRUE(lines >> demoTime >> milliseconds >> processor) << expected;
        EXPECT_EQ(demoTime, expected);
        EXPECT_GT(milliseconds, 0.0);
        EXPECT_LT(milliseconds, 60000.0) << "the subject may run for a minute at most";
        EXPECT_GT(processor, 0.0);
        EXPECT_LT(processor, 60000.0);
    }
    std::string more;
    EXPECT_FALSE(lines >> more) << more;
}

TEST_F(Probe, Tells_the_processors_time_up_to_the_first_frame) {
    RunSubject({});
    EXPECT_GT(Reported("start_processor_ms"), 0);
    EXPECT_LT(Reported("start_processor_ms"), 60000);
}

TEST_F(Probe, Counts_frames_and_finds_the_first_error) {
    RunSubject({});
    EXPECT_EQ(StatusOf(end), 0) << end.output;
    EXPECT_EQ(Reported("frames"), 5);
    EXPECT_EQ(Reported("polls"), 5);
    EXPECT_EQ(Reported("errors"), 3);
    EXPECT_EQ(report["first_error"], "0x500"); // GL_INVALID_ENUM
    EXPECT_EQ(Reported("first_error_frame"), 3);
}

TEST_F(Probe, Sees_the_window_and_the_cursor) {
    RunSubject({});
    EXPECT_EQ(Reported("width"), width);
    EXPECT_EQ(Reported("height"), height);
    EXPECT_EQ(Reported("full_screen"), 0);
    EXPECT_EQ(Reported("cursor_shown"), 1);
    EXPECT_EQ(report["caption"], "subject");
}

TEST_F(Probe, Moves_time_by_the_step_from_frame_to_frame) {
    RunSubject({{"NIMBREL_PROBE_STEP", "0.25"}});
    EXPECT_THAT(end.output, HasSubstr("frame 1 at 0.000\n"));
    EXPECT_THAT(end.output, HasSubstr("frame 2 at 0.250\n"));
    EXPECT_THAT(end.output, HasSubstr("frame 5 at 1.000\n"));
    EXPECT_EQ(Reported("last_frame_time"), 1.0);
}

TEST_F(Probe, Plays_a_list_of_times_and_then_lets_time_run_out) {
    RunSubject({{"NIMBREL_PROBE_TIMES", "0,13.9,13.925"}});
    EXPECT_THAT(end.output, HasSubstr("frame 2 at 13.900\n"));
    EXPECT_THAT(end.output, HasSubstr("frame 3 at 13.925\n"));
    EXPECT_THAT(end.output, HasSubstr("frame 4 at 1013.925\n"));
}

TEST_F(Probe, Leaves_real_time_alone_without_a_step) {
    const double before = ClockSeconds();
    RunSubject({});
    const std::size_t place = end.output.find("frame 1 at ");
    ASSERT_NE(place, std::string::npos);
    EXPECT_NEAR(std::stod(end.output.substr(place + 11)), before, 30.0);
}

TEST_F(Probe, Takes_each_picture_at_the_first_frame_that_is_due) {
    RunSubject({{"NIMBREL_PROBE_STEP", "1"},
                {"NIMBREL_PROBE_SHOTS", "0,1.5"},
                {"NIMBREL_PROBE_SHOT_DIR", "."}});
    const std::string header = "P6\n8 4\n255\n";
    const std::string first = ReadFile("frame_0000.000.ppm");
    const std::string later = ReadFile("frame_0001.500.ppm"); // frame 3, at 2 s
    ASSERT_EQ(first.size(), header.size() + static_cast<std::size_t>(width * height * 3));
    ASSERT_EQ(first.substr(0, header.size()), header);
    const auto green = [&](const std::string& file, int x, int row) {
        const auto pixel = static_cast<std::size_t>(row * width + x);
        return static_cast<int>(static_cast<unsigned char>(file[header.size() + pixel * 3 + 1]));
    };
    EXPECT_NEAR(green(first, 4, 2), 26, 1); // a tenth of 255
    EXPECT_NEAR(green(later, 4, 2), 77, 1); // three tenths
    EXPECT_EQ(green(first, 0, height - 1), 255) << "the lower left corner is in the last row";
}

TEST_F(Probe, Refuses_what_is_no_number) {
    RunSubject({{"NIMBREL_PROBE_STEP", "fast"}});
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("NIMBREL_PROBE_STEP: expected a number, found \"fast\""));
}

TEST_F(Probe, Lists_what_can_be_set_when_a_setting_is_unknown) {
    RunSubject({{"NIMBREL_PROBE_SETP", "0.5"}});
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("there is no NIMBREL_PROBE_SETP\n"));
    for (const char* setting : {"REPORT=FILE", "FRAMES=FILE", "STEP=SECONDS", "TIMES=0,0.5,13.9",
                                "SPEED=FACTOR", "SHOTS=0.5,2,13.9", "SHOT_DIR=FOLDER"})
        EXPECT_THAT(end.errors, HasSubstr(std::string("\n  NIMBREL_PROBE_") + setting + "  "));
}

TEST_F(Probe, Refuses_two_settings_that_decide_the_time) {
    RunSubject({{"NIMBREL_PROBE_STEP", "0.5"}, {"NIMBREL_PROBE_SPEED", "2"}});
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors,
                HasSubstr("expected one of NIMBREL_PROBE_STEP, TIMES and SPEED, found 2"));
}

TEST_F(Probe, Lets_time_pass_as_many_times_as_fast_as_it_is_told) {
    // A billion times: five frames take more than a microsecond and less than a minute.
    RunSubject({{"NIMBREL_PROBE_SPEED", "1e9"}});
    EXPECT_EQ(StatusOf(end), 0) << end.output;
    EXPECT_GT(Reported("last_frame_time"), 1000.0);
    EXPECT_LT(Reported("last_frame_time"), 60e9);
}
