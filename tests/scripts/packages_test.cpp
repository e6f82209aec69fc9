// What the scripts install: only what is missing of what they need, as root, and when nobody else
// is installing something.

#include "tests/scripts/script_stage.h"

#include "tools/stage/display.h"

#include <gmock/gmock.h>

#include <set>
#include <sstream>

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

// What apt-get says when another program works on packages: on its lists, and on those of dpkg.
const char* const listsHeld =
    "E: Could not get lock /var/lib/apt/lists/lock. It is held by process 4711 (apt-get)";
const char* const dpkgHeld = "E: Could not get lock /var/lib/dpkg/lock-frontend. It is held by "
                             "process 4711 (unattended-upgr)";

class Packages : public ScriptStage {
protected:
    Packages() {
        StandIn("id", "echo 0");
        StandIn("apt-get");
        WriteScript("build/release/demo/nimbrel", "echo '</html>' >Vell_log.html");
    }

    /// A machine where all is installed but these.
    void Missing(const std::string& names) {
        StandIn("dpkg-query", "shift 2; for name; do case ' " + names +
                                  " ' in *\" $name \"*) ;; *) printf '%s:amd64=ii  ' $name;; esac; "
                                  "done");
    }

    /// An apt-get that finds the locks held the first few times that it is called.
    void HoldLocks() {
        StandIn("apt-get", "case \"$(grep -c apt-get '" + calls.string() + "') $*\" in\n" +
                               "1*update) echo '" + listsHeld + "' >&2; exit 100 ;;\n" +
                               "3*install*) echo '" + dpkgHeld + "' >&2; exit 100 ;;\nesac");
    }

    /// ./play as far as packages go: the demo is a stand-in, and so is what it draws on.
    Tools::Ending Play() {
        StandIn("Xvfb", "echo 0 >&3; exec sleep 100");
        return Run("play");
    }
};

} // namespace

TEST_F(Packages, Are_not_touched_when_all_are_there) {
    Missing("");
    Play();
    EXPECT_NE(Calls("dpkg-query"), "");
    EXPECT_EQ(Calls("apt-get"), "");
}

TEST_F(Packages, Are_installed_when_they_are_missing_and_no_others) {
    Missing("libpng-dev cmake ffmpeg");
    const Tools::Ending end = Play();
    EXPECT_THAT(end.errors, HasSubstr("Installing: cmake libpng-dev \n"));
    EXPECT_EQ(Calls("apt-get"),
              "apt-get -qq update\n"
              "apt-get -qq install -y --no-install-recommends cmake libpng-dev\n");
}

TEST_F(Packages, Are_missing_when_only_their_settings_are_left) {
    StandIn("dpkg-query",
            "shift 2; for name; do case $name in cmake) state=rc ;; *) state=ii ;; esac; "
            "printf '%s:amd64=%s  ' $name $state; done");
    Play();
    EXPECT_EQ(Calls("apt-get"), "apt-get -qq update\n"
                                "apt-get -qq install -y --no-install-recommends cmake\n");
}

TEST_F(Packages, Are_there_whatever_is_asked_of_them_for_later) {
    // To be held as they are, removed with the next command, purged; nobody ever asked for it.
    for (const char* asked : {"h", "r", "p", "u"}) {
        StandIn("dpkg-query", std::string("shift 2; printf '%s:amd64=") + asked + "i  ' \"$@\"");
        Play();
        EXPECT_EQ(Calls("apt-get"), "") << asked;
    }
}

TEST_F(Packages, Of_a_virtual_display_are_for_machines_where_no_other_answers) {
    Missing("xvfb");
    const Tools::VirtualDisplay display;
    Run("play", {}, {{"DISPLAY", display.Name()}});
    EXPECT_EQ(Calls("apt-get"), "");
    Play();
    EXPECT_EQ(Calls("apt-get"), "apt-get -qq update\n"
                                "apt-get -qq install -y --no-install-recommends xvfb\n");
}

TEST_F(Packages, Wait_for_another_program_that_installs_some) {
    Missing("cmake");
    HoldLocks();
    const Tools::Ending end = Play();
    const std::string word = "Another program is installing packages: waiting for it to finish.\n";
    EXPECT_THAT(end.errors, AllOf(HasSubstr(word), Not(HasSubstr("E: Could not get lock"))));
    EXPECT_EQ(Calls("apt-get"), "apt-get -qq update\n"
                                "apt-get -qq update\n"
                                "apt-get -qq install -y --no-install-recommends cmake\n"
                                "apt-get -qq install -y --no-install-recommends cmake\n");
    EXPECT_NE(Calls("cmake"), "") << "and then it went on";
}

TEST_F(Packages, Stop_the_script_when_they_cannot_be_had) {
    Missing("libpng-dev");
    StandIn("apt-get", "echo 'E: Unable to locate package libpng-dev' >&2; exit 100");
    const Tools::Ending end = Play();
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("E: Unable to locate package libpng-dev\n"
                                      "Could not install: libpng-dev \n"));
    EXPECT_EQ(Calls("cmake"), "");
}

TEST_F(Packages, Are_installed_by_sudo_for_those_who_are_not_root) {
    Missing("cmake");
    StandIn("id", "echo 1000");
    StandIn("sudo");
    Play();
    EXPECT_THAT(Calls(), HasSubstr("sudo env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -qq "
                                   "install -y --no-install-recommends cmake\n"));
}

TEST_F(Packages, Of_the_format_and_the_style_are_few_and_neither_draws) {
    const struct {
        const char* part;
        const char* package;
    } cases[] = {{"format", "clang-format"}, {"style", "shellcheck"}};
    StandIn("Xvfb");
    for (const auto& [part, package] : cases) {
        Missing(std::string("libembree-dev libgtest-dev xvfb cmake ") + package);
        StandIn(package);
        const Tools::Ending end = Run("test", {part});
        EXPECT_THAT(end.errors, HasSubstr(std::string("Installing: ") + package + " \n"));
        EXPECT_THAT(end.errors, HasSubstr(std::string("== 1/1 ") + part));
        EXPECT_EQ(Calls("Xvfb"), "");
    }
}

namespace {

/// A command, and which of the packages below it installs where there is none.
struct Need {
    std::string script;
    std::vector<std::string> arguments;
    std::set<std::string> packages;
};

/// One that tells of each purpose: building, drawing, a virtual display, looking at the demo,
/// films, making Data/, and the parts of ./test.
const std::set<std::string> telling = {"g++",
                                       "libgl1-mesa-dri",
                                       "xvfb",
                                       "nlohmann-json3-dev",
                                       "ffmpeg",
                                       "libembree-dev",
                                       "libgtest-dev",
                                       "clang-format",
                                       "shellcheck",
                                       "clang-tidy",
                                       "gcovr",
                                       "patchelf",
                                       "lintian",
                                       "libxrandr-dev",
                                       "clang",
                                       "libbenchmark-dev",
                                       "cppcheck",
                                       "libsdl1.2-compat",
                                       "libfast-float-dev",
                                       "emscripten",
                                       "chromium",
                                       "valgrind"};

const Need needs[] = {
    {"play", {}, {"g++", "libgl1-mesa-dri"}},
    {"play", {"--big"}, {"g++", "libgl1-mesa-dri", "libxrandr-dev"}},
    {"movie", {}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg"}},
    {"movie",
     {"--join", "a.mp4", "b.mp4"},
     {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg"}},
    {"movie", {"--sheet", "a.png"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"movie", {"--at", "97", "a.png"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"movie", {"--explain", "97", "a.html"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"movie", {"--verify"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"movie", {"--doctor"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"bench/run",
     {},
     {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "libbenchmark-dev", "libfast-float-dev"}},
    {"bench/run", {"start"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"bench/run", {"replay"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"bench/run", {"mesh"}, {"g++", "libfast-float-dev"}},
    {"bench/run", {"nodes", "music"}, {"g++", "libbenchmark-dev"}},
    {"bench/film", {}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg"}},
    {"bench/city", {}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "libembree-dev"}},
    {"bench/mesh", {}, {"g++", "libfast-float-dev"}},
    {"bench/shimmer", {}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"art/make", {"fish"}, {"g++", "libembree-dev"}},
    {"docs/make-pictures", {"music/pulse.png"}, {"g++", "libembree-dev"}},
    {"docs/make-pictures", {"rise.png"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev"}},
    {"test", {"format"}, {"clang-format"}},
    {"test", {"style"}, {"shellcheck"}},
    {"test", {"art"}, {"g++", "libembree-dev"}},
    {"test", {"coverage"}, {"g++", "gcovr"}},
    {"test", {"cppcheck"}, {"cppcheck"}},
    {"test",
     {"surroundings"},
     {"g++", "libgl1-mesa-dri", "xvfb", "nlohmann-json3-dev", "ffmpeg", "libembree-dev",
      "libgtest-dev", "libxrandr-dev", "libbenchmark-dev", "libfast-float-dev",
      "libsdl1.2-compat"}},
    {"test",
     {"valgrind"},
     {"g++", "libgl1-mesa-dri", "xvfb", "nlohmann-json3-dev", "ffmpeg", "libembree-dev",
      "libgtest-dev", "libxrandr-dev", "libbenchmark-dev", "libfast-float-dev", "valgrind"}},
    {"test", {"fuzz"}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "clang"}},
    {"test",
     {"packages"},
     {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "patchelf", "lintian", "libxrandr-dev"}},
    {"packaging/make", {}, {"g++", "patchelf", "libxrandr-dev"}},
    {"packaging/make", {"--check"}, {"g++", "patchelf", "lintian", "libxrandr-dev"}},
    {"web/make", {}, {"emscripten"}},
    {"web/make",
     {"--check"},
     {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg", "emscripten", "chromium"}},
    {"tests/web/check", {}, {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg", "chromium"}},
    {"test",
     {"web"},
     {"g++", "libgl1-mesa-dri", "nlohmann-json3-dev", "ffmpeg", "emscripten", "chromium"}},
    {"test",
     {"asan"},
     {"g++", "libgl1-mesa-dri", "xvfb", "nlohmann-json3-dev", "ffmpeg", "libembree-dev",
      "libgtest-dev", "libxrandr-dev", "libbenchmark-dev", "libfast-float-dev"}},
};

/// Those of the list that begins behind "Installing: " that tell of a purpose.
std::set<std::string> Telling(const std::string& errors) {
    const std::string opening = "Installing: ";
    std::istringstream names(errors.substr(errors.find(opening) + opening.size()));
    std::string line;
    std::getline(names, line);
    std::istringstream words(line);
    std::set<std::string> found;
    for (std::string name; words >> name;)
        if (telling.contains(name))
            found.insert(name);
    return found;
}

} // namespace

TEST_F(Packages, Are_those_that_the_command_needs) {
    StandIn("dpkg-query");
    StandIn("apt-get", "exit 100"); // there its work ends
    WriteFile("b.mp4", "");         // the piece to be joined
    for (const auto& [script, arguments, packages] : needs) {
        const std::string errors = Run(script, arguments).errors;
        ASSERT_THAT(errors, HasSubstr("Installing: ")) << script;
        EXPECT_EQ(Telling(errors), packages)
            << script << ' ' << (arguments.empty() ? "" : arguments.front());
    }
}
