// Whoever types what README.md, CONTRIBUTING.md and docs/ show gets what they promise: every
// command there is run.

#include "tests/docs/pages.h"
#include "tests/docs/stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr double patience = 60.0; // seconds; a few on an idle machine

/// What stands for a command that takes too long.
struct Substitute {
    std::string run;
    std::string why;
    bool art = false; ///< needs the art programs
};
using Table = std::map<std::string, Substitute>; ///< by the command as it stands on the page

Table ReadTable(std::istream& in) {
    Table table;
    std::string command;
    for (std::string line; std::getline(in, line);) {
        const std::string word = line.substr(0, line.find(' '));
        const std::string rest = line.substr(std::min(line.size(), word.size() + 1));
        if (word == "line")
            table[command = rest] = {};
        else if (word == "run")
            table[command].run = rest;
        else if (word == "why")
            table[command].why = rest;
        else if (word == "art")
            table[command].art = true;
        else
            EXPECT_TRUE(word.empty() || word == "#" || word == "end") << line;
    }
    return table;
}

Table CommittedTable() {
    std::istringstream in(ReadFile(NIMBREL_SOURCE_DIR "/tests/docs/commands.table"));
    return ReadTable(in);
}

class Commands : public ::testing::Test {
protected:
    static void SetUpTestSuite() { stage = std::make_unique<Docs::Stage>(); }
    static void TearDownTestSuite() { stage.reset(); }

    /// Whether the text begins with a program of the tree: "./play", "art/make --check". A word
    /// alone is none: "play 25-32 hook" is what scores say.
    static bool NamesProgram(const std::string& text) {
        const std::string word = text.substr(0, text.find(' '));
        if (word.find('/') == std::string::npos)
            return false;
        if (word.starts_with("build/"))
            return true;
        const fs::path file = stage->Root() / word;
        return fs::is_regular_file(file) &&
               (fs::status(file).permissions() & fs::perms::owner_exec) != fs::perms::none;
    }

    /// Whether tests/consumer does what the page says, with the labels of its blocks.
    static bool IsFollowedElsewhere(const Docs::Page& page) {
        return page.name == "docs/use-the-library.md" || page.name == "docs/make-your-own-scene.md";
    }

    /// The commands that a page shows: those of its shell blocks, and those within sentences that
    /// say more than a program's name.
    static std::vector<Docs::Line> CommandsOf(const Docs::Page& page) {
        std::vector<Docs::Line> commands = page.shell;
        std::copy_if(page.code.begin(), page.code.end(), std::back_inserter(commands),
                     [](const Docs::Line& code) {
                         return code.text.find(' ') != std::string::npos &&
                                (code.text.starts_with("./") || NamesProgram(code.text));
                     });
        return commands;
    }

    /// Runs a command, or what stands for it; what is wrong with it, or nothing.
    static std::string Complaint(const Docs::Line& command, const Table& table) {
        Substitute substitute{command.text, "", false};
        if (const auto found = table.find(command.text); found != table.end())
            substitute = found->second;
        if (substitute.art && !Docs::ArtIsBuilt())
            return "";
        const Tools::Ending end = stage->Run(substitute.run, patience);
        if (end.exitStatus == 0)
            return "";
        return Docs::PlaceOf(command) + ": " + command.text + "\n    run as: " + substitute.run +
               "\n    ended with " + std::to_string(end.exitStatus) + " after " +
               std::to_string(end.seconds) + " s\n" + end.errors;
    }

    /// Complaints about all commands of the pages; each is run once.
    static std::vector<std::string> Complaints(const std::vector<Docs::Page>& pages,
                                               const Table& table) {
        std::vector<std::string> complaints;
        std::set<std::string> done;
        for (const Docs::Page& page : pages)
            for (const Docs::Line& command : CommandsOf(page))
                if (done.insert(command.text).second)
                    if (std::string complaint = Complaint(command, table); !complaint.empty())
                        complaints.push_back(std::move(complaint));
        return complaints;
    }

    static std::unique_ptr<Docs::Stage> stage;
};

std::unique_ptr<Docs::Stage> Commands::stage;

Docs::Page PageOf(const std::string& command) {
    return Docs::ReadPage("docs/planted.md", "\n```sh\n" + command + "\n```\n");
}

} // namespace

TEST_F(Commands, Of_every_page_succeed) {
    const std::vector<Docs::Page> pages = Docs::AllPages(stage->Root());
    EXPECT_THAT(Complaints(pages, CommittedTable()), IsEmpty());
}

TEST_F(Commands, Stand_in_shell_blocks_or_they_would_not_be_run) {
    for (const Docs::Page& page : Docs::AllPages(stage->Root()))
        for (const Docs::Line& line : page.blocks) {
            if (IsFollowedElsewhere(page))
                continue;
            const std::size_t begin = line.text.find_first_not_of(' ');
            EXPECT_FALSE(begin != std::string::npos && NamesProgram(line.text.substr(begin)))
                << Docs::PlaceOf(line) << ": " << line.text;
        }
}

TEST_F(Commands, That_have_a_shorter_form_are_on_a_page_and_have_a_reason) {
    std::set<std::string> shown;
    for (const Docs::Page& page : Docs::AllPages(stage->Root()))
        for (const Docs::Line& command : CommandsOf(page))
            shown.insert(command.text);
    for (const auto& [command, substitute] : CommittedTable()) {
        EXPECT_TRUE(shown.contains(command)) << "no page shows " << command;
        EXPECT_NE(substitute.run, "") << command;
        EXPECT_NE(substitute.why, "") << command;
    }
}

TEST_F(Commands, Of_a_block_with_a_name_are_those_of_the_page_that_another_test_follows) {
    for (const Docs::Page& page : Docs::AllPages(stage->Root())) {
        EXPECT_TRUE(IsFollowedElsewhere(page) || page.text.find("\n```sh ") == std::string::npos)
            << page.name;
    }
}

// The checker itself: each of these must be found.

TEST_F(Commands, Are_complained_of_when_they_fail) {
    for (const char* wrong : {
             "./pley",                                     // there is no such program
             "./movie --att 97 frame.png",                 // no such option
             "art/make moon",                              // nothing to make is called so
             "cmake --build build/release --target ghost", // no such target
             "false; true",                                // not the last one of the line
         })
        EXPECT_THAT(Complaints({PageOf(wrong)}, {}),
                    testing::ElementsAre(HasSubstr("docs/planted.md:3: ")))
            << wrong;
    const Docs::Page sentence = Docs::ReadPage("docs/planted.md", "Run `./movie --att\n97` now.\n");
    EXPECT_EQ(Complaints({sentence}, {}).size(), 1U);
}

TEST_F(Commands, Are_run_by_their_shorter_form_when_they_have_one) {
    std::istringstream table("line ./play\nrun false\nwhy it is slow\nend\n");
    EXPECT_THAT(Complaints({PageOf("./play")}, ReadTable(table)),
                testing::ElementsAre(HasSubstr("run as: false")));
}

TEST_F(Commands, Are_ended_when_they_take_too_long) {
    const Tools::Ending end = stage->Run("sleep 30", 0.2);
    EXPECT_EQ(end.exitStatus, 124); // as timeout(1) says
    EXPECT_LT(end.seconds, 10.0);
}
