// ./play in a checkout that its user cannot write: it plays what is built, and the page goes to the
// user's state folder.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

constexpr const char* nobody = "65534";

const std::string page = "<table>\n    </table>\n</body>\n</html>\n";

class ReadOnly : public ScriptStage {
protected:
    ReadOnly() : home(scratch.Path() / "home of its own"), state(home / ".local/state/nimbrel") {
        fs::create_directory(home);
        for (const char* name : {"apt-get", "sudo"})
            StandIn(name);
        StandIn("Xvfb", "echo 0 >&3; exec sleep 100");
        WriteFile("Data/music.mp3", "music");
        WriteScript(demo,
                    "cat Data/music.mp3 >\"$HOME/heard\"\necho '" + page + "' >Vell_log.html");
    }

    ~ReadOnly() override { Permit("u+w", scratch.Path()); }

    static void Permit(const std::string& mode, const fs::path& what) {
        Tools::Run({.arguments = {"chmod", "-R", mode, what.string()}}, 60.0);
    }

    /// Takes all rights to write here away, and plays as somebody whom that binds: not as root.
    Tools::Ending Play(Tools::Environment more = {}) const {
        Permit("a+rX", scratch.Path());
        Permit("a-w", ".");
        Permit("a+rwX", home);
        Permit("a+w", calls);
        std::vector<std::string> arguments = {fs::absolute("play")};
        if (geteuid() == 0)
            arguments.insert(arguments.begin(), {"/usr/bin/setpriv", "--reuid", nobody, "--regid",
                                                 nobody, "--clear-groups"});
        more.insert({{"HOME", home.string()}, {"XDG_STATE_HOME", ""}});
        return Tools::Run({.arguments = arguments, .added = Around(more)}, 60.0);
    }

    static constexpr const char* demo = "build/release/demo/nimbrel";
    const fs::path home;
    const fs::path state;
};

} // namespace

TEST_F(ReadOnly, Checkout_plays_what_is_built_and_leaves_its_page_with_the_user) {
    const Tools::Ending end = Play();
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(end.errors,
                HasSubstr("Nothing can be written here: playing what is built already.\n"));
    EXPECT_THAT(end.output,
                HasSubstr((state / "Vell_log.html").string() + ": no row says ERROR.\n"));
    EXPECT_EQ(ReadFile(state / "Vell_log.html"), page + "\n");
    EXPECT_EQ(ReadFile(home / "heard"), "music") << "it found its data";
    EXPECT_FALSE(fs::exists("Vell_log.html"));
    EXPECT_EQ(Calls("cmake") + Calls("apt-get"), "") << "nothing is installed or built";
}

TEST_F(ReadOnly, Checkout_leaves_an_earlier_page_of_another_user_alone) {
    WriteFile("Vell_log.html", "another");
    EXPECT_EQ(Play().exitStatus, 0);
    EXPECT_EQ(ReadFile("Vell_log.html"), "another");
}

TEST_F(ReadOnly, Checkout_writes_its_page_where_the_user_keeps_such_things) {
    const fs::path elsewhere = home / "a state";
    Play({{"XDG_STATE_HOME", elsewhere.string()}});
    EXPECT_TRUE(fs::exists(elsewhere / "nimbrel/Vell_log.html"));
    Play({{"XDG_STATE_HOME", "relative"}});
    EXPECT_TRUE(fs::exists(state / "Vell_log.html")) << "only absolute ones count";
}

TEST_F(ReadOnly, Checkout_plays_for_a_user_without_a_home_too) {
    const Tools::Ending end = Play({{"HOME", "/nonexistent"}});
    EXPECT_THAT(end.output, HasSubstr("/Vell_log.html: no row says ERROR.\n"));
    const fs::path told =
        end.output.substr(end.output.find('/'), end.output.rfind("/Vell") - end.output.find('/'));
    EXPECT_EQ(ReadFile(told / "Vell_log.html"), page + "\n");
    fs::remove_all(told);
}

TEST_F(ReadOnly, Checkout_that_holds_no_demo_says_what_to_do) {
    fs::remove(demo);
    const Tools::Ending end = Play();
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_EQ(end.errors,
              "Nothing is built here, and nothing can be written. Copy the folder, and play "
              "there.\n");
}

TEST_F(ReadOnly, Checkout_calls_the_doctor_only_if_he_is_there) {
    WriteScript(demo, "exit 3");
    EXPECT_THAT(Play().errors, HasSubstr("The doctor could not be built.\n"));
    Permit("u+w", ".");
    WriteScript("build/release/tools/doctor/nimbrel_doctor", "cat Data/music.mp3");
    const Tools::Ending end = Play();
    EXPECT_EQ(end.exitStatus, 3);
    EXPECT_THAT(end.output, HasSubstr("music")) << "he looks where the show was";
    EXPECT_THAT(end.errors, Not(HasSubstr("could not be built")));
}
