// ./movie knows beforehand what its program takes in which mode: its tables must be the program's
// own, and what they refuse it for.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

struct Mode {
    std::vector<std::string> words; ///< that the script takes
    std::vector<std::string>
        futile; ///< the same mode, but the program cannot do that: it never draws
};

const Mode modes[] = {
    {{"out.mp4"}, {"out.txt"}},
    {{"--sheet", "out.png"}, {"--sheet", "out.txt"}},
    {{"--at", "97", "out.png"}, {"--at", "never", "out.png"}},
    {{"--explain", "97", "out.html"}, {"--explain", "never", "out.html"}},
    {{"--join", "out.mp4", "a.mp4"}, {"--join", "out.txt", "a.mp4"}},
    {{"--verify", "out.png"}, {"--verify", "out.txt"}},
};

const std::vector<std::string> options[] = {
    {"--fps", "60"},   {"--scale", "2"},         {"--start", "1"}, {"--end", "2"}, {"--jobs", "1"},
    {"--every", "10"}, {"--references", "here"}, {"--lossless"},   {"--renew"},    {"--times"},
};

class Movie : public ScriptStage {
protected:
    Movie() {
        StandIn("dpkg-query");
        StandIn("apt-get", "exit 1"); // the script's work begins and ends here
        WriteFile("a.mp4", "");
        std::filesystem::create_directory("here");
    }

    /// Whether the script takes the words, and so begins its work.
    bool ScriptTakes(const std::vector<std::string>& words) {
        const Tools::Ending end = Run("movie", words);
        EXPECT_EQ(end.exitStatus == 2, end.errors.find(" does not go with ") != std::string::npos);
        return end.exitStatus != 2;
    }

    /// Whether the program complains of something else than of the option.
    static bool ProgramTakes(std::vector<std::string> words) {
        words.insert(words.begin(), NIMBREL_BINARY_DIR "/tools/movie/nimbrel_film");
        const Tools::Ending end = Tools::Run({.arguments = words}, 60.0);
        EXPECT_EQ(end.exitStatus, 2) << end.errors;
        return end.errors.find(" does not go with ") == std::string::npos;
    }
};

std::vector<std::string> Joined(std::vector<std::string> words,
                                const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

} // namespace

TEST_F(Movie, Takes_with_each_mode_the_options_that_its_program_takes) {
    for (const Mode& mode : modes)
        for (const std::vector<std::string>& option : options)
            EXPECT_EQ(ScriptTakes(Joined(mode.words, option)),
                      ProgramTakes(Joined(mode.futile, option)))
                << mode.words[0] << ' ' << option[0];
}

TEST_F(Movie, Says_of_each_mistake_what_its_program_says) {
    const std::vector<std::string> mistakes[] = {
        {"--faster"},
        {"-x"},
        {"--fps"},
        {"--fps", "fast"},
        {"--fps", "0.5"},
        {"--fps", "60/0"},
        {"--fps", "2000/1"},
        {"--fps", "59.9400599"},
        {"--scale", "9"},
        {"--scale", "1.5"},
        {"--start", "118.3"},
        {"--start", "-1"},
        {"--end", "1e1"},
        {"--jobs", "0"},
        {"--jobs", "257"},
        {"--sheet", "--every", "0", "a.png"},
        {"out.avi"},
        {".mp4"},
        {""},
        {"-5"},
        {"a.mp4", "b.mp4"},
        {"--at", "97"},
        {"--at", "118.252", "a.png"},
        {"--at", "never", "a.png"},
        {"--at", "97", "a.jpg"},
        {"--at", "97", "a.png", "b.png"},
        {"--explain", "97", "a.png"},
        {"--join", "a.mp4"},
        {"--sheet"},
        {"--sheet", "--verify", "a.png"},
        {"--at", "--at", "97", "a.png"},
        {"--lossless", "--verify"},
        {"--times", "film.mp4"},
        {"--join", "--fps", "60", "a.mp4", "b.mp4"},
        {"--verify", "b.png", "c.png"},
        {"--verify", "--references"},
        {"--at", "97", "/proc/a.png"},
        {"--at", "97", "/no/folder/a.png"},
        {"--join", "/proc/a.mp4", "/no/b.mp4"},
        {"--verify", "--references", "/no/folder"},
        {"--verify", "--renew", "--references", "/proc/new"},
    };
    for (std::vector<std::string> words : mistakes) {
        const Tools::Ending script = Run("movie", words);
        words.insert(words.begin(), NIMBREL_BINARY_DIR "/tools/movie/nimbrel_film");
        const Tools::Ending own = Tools::Run({.arguments = words}, 60.0);
        EXPECT_EQ(script.exitStatus, 2) << script.errors;
        EXPECT_EQ(own.exitStatus, 2) << own.errors;
        EXPECT_EQ(script.errors, own.errors);
    }
    EXPECT_EQ(Calls(), "");
}

TEST_F(Movie, Names_every_option_in_its_help) {
    const std::string help = Run("movie", {"--help"}).output;
    for (const std::vector<std::string>& option : options)
        EXPECT_THAT(help, HasSubstr("\n" + option[0] + " "));
}
