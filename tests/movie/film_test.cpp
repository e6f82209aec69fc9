// The program behind ./movie: films, pieces, single pictures and contact sheets.

#include "tests/movie/film_test_base.h"

#include "tests/support/measured.h"
#include "tools/picture/picture.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>

using ::testing::HasSubstr;
using Tools::Picture;
using Tools::ReadPng;
using Tools::ReadPpm;

namespace {

/// Frame `index` of a film, decoded.
Picture Decoded(const std::string& film, int index) {
    const Tools::Ending end =
        Tools::Run({.arguments = {"ffmpeg", "-v", "error", "-y", "-i", film, "-vf",
                                  "select=eq(n\\," + std::to_string(index) + ")", "-frames:v", "1",
                                  "-pix_fmt", "rgb24", "decoded.ppm"}},
                   60.0);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    return ReadPpm("decoded.ppm");
}

/// The part of a contact sheet that is the picture in a row of its first or another column.
Picture FromSheet(const Picture& sheet, int row, int column = 0) {
    constexpr int labelWidth = 84;
    constexpr int pitch = 89 + 2;
    Picture picture(960, 89);
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(sheet.At(labelWidth + column * (labelWidth + picture.width), row * pitch + y),
                    static_cast<std::size_t>(picture.width) * 3, picture.At(0, y));
    return picture;
}

/// Times of the pictures of a film, one a line; without B-frames, in the order of showing.
std::string ShowTimes(const std::string& film) {
    return Tools::Run({.arguments = {"ffprobe", "-v", "error", "-select_streams", "v",
                                     "-show_entries", "packet=pts_time", "-of", "csv=p=0", film}},
                      60.0)
        .output;
}

} // namespace

TEST_F(FilmTest, Has_every_frame_of_its_stretch_once_and_sound_of_equal_length) {
    LinkData();
    MustFilm({"--start", "55", "--end", "55.5", "out.mp4"});
    auto picture = Facts("out.mp4", "v");
    EXPECT_EQ(picture["nb_read_packets"], "30");
    EXPECT_EQ(picture["width"], "1920");
    EXPECT_EQ(picture["height"], "178");
    EXPECT_EQ(picture["pix_fmt"], "yuv420p");
    EXPECT_EQ(picture["r_frame_rate"], "60/1");
    EXPECT_EQ(picture["start_time"], "0.000000");
    EXPECT_EQ(picture["duration"], "0.500000");
    auto sound = Facts("out.mp4", "a");
    EXPECT_EQ(sound["start_time"], "0.000000");
    EXPECT_NEAR(std::stod(sound["duration"]), 0.5, 0.001);
}

TEST_F(FilmTest, Is_the_same_for_any_number_of_jobs) {
    LinkData();
    MustFilm({"--start", "60", "--end", "60.3", "--jobs", "1", "one.mp4"});
    MustFilm({"--start", "60", "--end", "60.3", "--jobs", "2", "two.mp4"});
    MustFilm({"--start", "60", "--end", "60.3", "--jobs", "3", "three.mp4"});
    EXPECT_EQ(ReadFile("one.mp4"), ReadFile("two.mp4"));
    EXPECT_EQ(ReadFile("one.mp4"), ReadFile("three.mp4"));
}

// The effects' level and the flights' clocks depend on every frame before, drawn or not.
TEST_F(FilmTest, Comes_to_the_same_frame_by_any_way) {
    LinkData();
    // From the start of the first effect that follows the music, over the end of a flight.
    MustFilm({"--start", "41", "--end", "56", "--fps", "12", "--lossless", "drawn.mkv"});
    MustFilm({"--start", "55", "--end", "56", "--fps", "12", "--lossless", "jumped.mkv"});
    const std::string drawn = FrameHashes("drawn.mkv"); // of 33 bytes each: 32 digits, new line
    EXPECT_EQ(FrameHashes("jumped.mkv"), drawn.substr((55 - 41) * 12 * 33));
    for (const int frame : {0, 11, 60, 175, 179}) {
        MustFilm({"--at", std::to_string(41 + frame / 12.0), "--fps", "12", "at.png"});
        EXPECT_TRUE(ReadPng("at.png") == Decoded("drawn.mkv", frame)) << "frame " << frame;
    }
}

TEST_F(FilmTest, Makes_a_contact_sheet_of_the_films_frames) {
    LinkData();
    MustFilm({"--sheet", "--start", "20", "--end", "100", "--every", "40", "sheet.png"});
    const Picture sheet = ReadPng("sheet.png");
    EXPECT_EQ(sheet.width, 84 + 960);
    EXPECT_EQ(sheet.height, 3 * 89 + 2 * 2);
    for (const int row : {0, 1, 2}) {
        MustFilm({"--at", std::to_string(20 + 40 * row), "at.png"});
        EXPECT_TRUE(FromSheet(sheet, row) == ReadPng("at.png")) << "row " << row;
    }
}

TEST_F(FilmTest, Makes_a_sheet_of_what_stands_before_and_after_each_cut) {
    LinkData();
    MustFilm({"--sheet", "--cuts", "--fps", "10", "sheet.png"});
    const Picture sheet = ReadPng("sheet.png");
    EXPECT_EQ(sheet.width, 2 * (84 + 960));
    EXPECT_EQ(sheet.height, 7 * 89 + 6 * 2);
    // The fourth cut is at 55.648 s, between frames 556 and 557 of ten a second.
    MustFilm({"--at", "55.6", "--fps", "10", "before.png"});
    EXPECT_TRUE(FromSheet(sheet, 3) == ReadPng("before.png"));
    MustFilm({"--at", "55.7", "--fps", "10", "after.png"});
    EXPECT_TRUE(FromSheet(sheet, 3, 1) == ReadPng("after.png"));
}

TEST_F(FilmTest, Joins_pieces_into_what_one_run_makes) {
    LinkData();
    const std::vector<std::string> settings = {"--fps", "30", "--lossless"};
    const auto make = [&](const std::string& from, const std::string& to, const std::string& name) {
        std::vector<std::string> words = settings;
        words.insert(words.end(), {"--start", from, "--end", to, name});
        MustFilm(words);
    };
    make("70", "70.51", "a.mp4"); // frames 2100 to 2115: 70.5 is before 70.51
    make("70.51", "71", "b's.mp4");
    make("71", "71.2", "c.mp4");
    make("70", "71.2", "whole.mp4");
    const Tools::Ending end = Film({"--join", "joined.mp4", "a.mp4", "b's.mp4", "c.mp4"});
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("joined.mp4: 1.2 s, "));
    EXPECT_EQ(FrameHashes("joined.mp4"), FrameHashes("whole.mp4"));
    EXPECT_EQ(ShowTimes("joined.mp4"), ShowTimes("whole.mp4"));
    EXPECT_EQ(Samples("joined.mp4"), Samples("whole.mp4"));
}

TEST_F(FilmTest, Refuses_to_join_what_does_not_follow) {
    MakeDemoData();
    MustFilm({"--fps", "10", "--end", "0.5", "a.mp4"});
    MustFilm({"--fps", "10", "--start", "0.6", "--end", "1", "c.mp4"});
    const Tools::Ending end = Film({"--join", "joined.mp4", "a.mp4", "c.mp4"});
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors,
                HasSubstr("c.mp4: expected to begin with frame 5, begins with frame 6"));
    EXPECT_FALSE(std::filesystem::exists("joined.mp4"));
}

TEST_F(FilmTest, Keeps_the_older_film_when_it_fails) {
    MakeDemoData();
    WriteFile("out.mp4", "older");
    const Tools::Ending end =
        Tools::Run({.arguments = {filmProgram, "out.mp4"}, .added = {{"DISPLAY", ":98765"}}}, 60.0);
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("cannot open a window with OpenGL"));
    EXPECT_EQ(ReadFile("out.mp4"), "older");
    EXPECT_FALSE(std::filesystem::exists("out.part.mp4"));
}

TEST_F(FilmTest, Is_silent_without_music_and_says_so) {
    MakeDemoData();
    const Tools::Ending end = Film({"--fps", "10", "--end", "1", "out.mp4"});
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("The music cannot be read: the film is silent."));
    const std::string samples = Samples("out.mp4");
    EXPECT_GE(samples.size(), static_cast<std::size_t>(44100 * 4));
    EXPECT_EQ(samples.find_first_not_of('\0'), std::string::npos);
}

TEST_F(FilmTest, Leaves_a_film_that_plays_when_interrupted) {
    LinkData();
    const auto run = Start({"--jobs", "2", "out.mp4"});
    // Once ffmpeg has written something there are frames.
    for (int tenths = 0; tenths < 600 && run->Running(); ++tenths) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (std::filesystem::exists("out.part.mp4"))
            break;
    }
    std::this_thread::sleep_for(std::chrono::seconds(3));
    ASSERT_TRUE(run->Running());
    run->Signal(SIGINT);
    const Tools::Ending end = run->Wait(60.0);
    EXPECT_EQ(end.exitStatus, 130);
    EXPECT_THAT(end.errors, HasSubstr("Interrupted: out.mp4 plays up to there."));
    EXPECT_FALSE(std::filesystem::exists("out.part.mp4"));
    auto picture = Facts("out.mp4", "v");
    const int frames = std::stoi(picture["nb_read_packets"]);
    EXPECT_GT(frames, 0);
    EXPECT_LT(frames, 7096);
    const double behind = std::stod(Facts("out.mp4", "a")["duration"]) - frames / 60.0;
    EXPECT_NEAR(behind, 0.0, 0.001);
    TellMeasured("sound behind the last picture", std::to_string(behind * 1000.0) + " ms");
    EXPECT_THAT(Output({"/usr/bin/env", "ffprobe", "-v", "error", "-show_entries",
                        "format_tags=comment", "out.mp4"}),
                HasSubstr("Nimbrel, frames 0 to " + std::to_string(frames - 1) + " at 60/1"));
    EXPECT_EQ(Output({"/usr/bin/env", "ffmpeg", "-v", "error", "-i", "out.mp4", "-f", "null", "-"}),
              "");
}

TEST_F(FilmTest, Leaves_the_viewers_log_and_no_folders_behind) {
    MakeDemoData();
    WriteFile("Vell_log.html", "the viewer's");
    std::filesystem::create_directory("temporary");
    const Tools::Ending end = Tools::Run(
        {.arguments = {filmProgram, "--jobs", "2", "--fps", "10", "--end", "1", "out.mp4"},
         .added = {{"DISPLAY", display->Name()},
                   {"TMPDIR", (std::filesystem::current_path() / "temporary").string()}}},
        60.0);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_EQ(ReadFile("Vell_log.html"), "the viewer's");
    EXPECT_TRUE(std::filesystem::is_empty("temporary"));
}

// A damaged picture and a missing mesh; each look at the show says so, and where its own file is.
TEST_F(FilmTest, Names_what_could_not_be_loaded_and_what_was_written) {
    MakeDemoData();
    WriteFile("Data/Gfx/Logo/logo.jpg", "no picture");
    std::filesystem::remove("Data/Gfx/Fish/fish.xt3dstatic");
    const struct {
        std::vector<std::string> words;
        const char* written;
    } looks[] = {
        {{"--fps", "10", "--end", "0.2", "out.mp4"}, "out.mp4: 0.2 s, 0.0 MB\n"},
        {{"--at", "0", "--fps", "10", "out.png"}, "out.png: the frame of 0 s\n"},
        {{"--sheet", "--fps", "10", "--end", "0.1", "--every", "0.1", "sheet.png"},
         "sheet.png: 2 frames\n"},
        {{"--explain", "0", "out.html"}, "out.html: how the frame of 0 s came about\n"},
    };
    for (const auto& [words, written] : looks) {
        const Tools::Ending end = Film(words);
        EXPECT_EQ(end.exitStatus, 0) << end.errors;
        EXPECT_THAT(end.errors, HasSubstr("The demo's log says ERROR: "));
        EXPECT_THAT(end.errors, HasSubstr("XT3DStatic Data/Gfx/Fish/fish.xt3dstatic"));
        EXPECT_THAT(end.errors, HasSubstr("Image Data/Gfx/Logo/logo.jpg"));
        EXPECT_THAT(end.errors, HasSubstr(written));
    }
}

// These play in the program's own process, at whose end the demo's log gets its foot.
TEST_F(FilmTest, Leaves_the_viewers_log_when_it_explains_and_verifies) {
    MakeDemoData();
    WriteFile("Vell_log.html", "the viewer's");
    MustFilm({"--explain", "0", "out.html"});
    EXPECT_EQ(ReadFile("Vell_log.html"), "the viewer's");
    std::filesystem::remove("Data/Gfx/Fish/fish.xt3dstatic");
    const Tools::Ending end = Film({"--verify", "--renew", "--references", "reference"});
    EXPECT_EQ(ReadFile("Vell_log.html"), "the viewer's");
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("XT3DStatic Data/Gfx/Fish/fish.xt3dstatic"));
    EXPECT_THAT(end.errors, HasSubstr("/reference: 60 frames to compare with\n"));
}

TEST_F(FilmTest, Says_what_is_wrong_with_its_arguments) {
    const struct {
        std::vector<std::string> words;
        const char* complaint;
    } cases[] = {
        {{"out.gif"}, "./movie: needs a .mp4, .mov or .mkv file, not \"out.gif\""},
        {{".mp4"}, ", not \".mp4\""},
        {{"--fps", "0", "a.mp4"}, "--fps needs a number of frames a second from 1 to 1000, not "},
        {{"--fps"}, "--fps needs a number of frames a second from 1 to 1000: --fps 60\n"},
        {{"--scale", "1.5"}, "--scale needs a whole number from 1 to 8, not \"1.5\": --scale 2"},
        {{"--scale", "9"}, "--scale needs a whole number from 1 to 8, not \"9\""},
        {{"--start", "119"}, "--start needs a time from 0 to 118.252, not \"119\""},
        {{"--start", "nan"}, "--start needs a time from 0 to 118.252, not \"nan\""},
        {{"--at", "1"},
         "--at needs a time from 0 to 118.25 and a .png file: --at 97 "
         "frame.png"},
        {{"--at", "-1", "a.png"}, "--at needs a time from 0 to 118.25, not \"-1\""},
        {{"--at", "1", "a.jpg"}, "--at needs a .png file, not \"a.jpg\""},
        {{"--at", "--sheet", "a.png"}, "--at and --sheet do not go together"},
        {{"--sheet", "--lossless", "a.png"},
         "--lossless does not go with --sheet, which takes --fps, --start, --end, --every, "
         "--cuts and --jobs"},
        {{"--faster"}, "there is no option --faster"},
        {{"a.mp4", "b.mp4"}, "\"b.mp4\" is one word too many: ./movie film.mp4"},
        {{"--at", "1", "none/a.png"}, "cannot write none/a.png: there is no folder none; "},
        {{"--join", "a.mp4", "none.mp4"}, "cannot read none.mp4: there is no such file; "},
        {{"--verify", "--references", "none"}, "cannot read none: there is no such folder; "},
    };
    for (const auto& [words, complaint] : cases) {
        const Tools::Ending end = Film(words);
        EXPECT_EQ(end.exitStatus, 2) << complaint;
        EXPECT_THAT(end.errors, HasSubstr(complaint));
    }
}

TEST_F(FilmTest, Refuses_a_stretch_without_a_frame) {
    const Tools::Ending end = Film({"--start", "5", "--end", "5", "a.mp4"});
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("there is no frame from"));
}
