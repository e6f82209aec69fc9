// ./movie knows beforehand which options its program takes in which mode: its table must be the
// program's own.

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
    {"--every", "10"}, {"--references", "here"}, {"--lossless"},   {"--renew"},
};

class Movie : public ScriptStage {
protected:
    Movie() {
        StandIn("dpkg-query");
        StandIn("apt-get", "exit 1"); // the script's work begins and ends here
    }

    /// Whether the script takes the words, and so begins its work.
    bool ScriptTakes(const std::vector<std::string>& words) {
        const Tools::Ending end = Run("movie", words);
        EXPECT_EQ(end.exitStatus == 2, end.errors.find(" means nothing here") != std::string::npos);
        return end.exitStatus != 2;
    }

    /// Whether the program complains of something else than of the option.
    static bool ProgramTakes(std::vector<std::string> words) {
        words.insert(words.begin(), NIMBREL_BINARY_DIR "/tools/movie/nimbrel_film");
        const Tools::Ending end = Tools::Run({.arguments = words}, 60.0);
        EXPECT_EQ(end.exitStatus, 2) << end.errors;
        return end.errors.find(" means nothing here") == std::string::npos;
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

TEST_F(Movie, Names_every_option_in_its_help) {
    const std::string help = Run("movie", {"--help"}).output;
    for (const std::vector<std::string>& option : options)
        EXPECT_THAT(help, HasSubstr("\n" + option[0] + " "));
}
