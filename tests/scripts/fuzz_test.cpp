// tests/fuzz/run: what it asks of libFuzzer, and the ledger that it keeps.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;

namespace {

/// What libFuzzer says in a run: the last of each number counts.
const std::string words = "echo '#2 INITED cov: 17 ft: 20 corp: 2/3b' >&2\n"
                          "echo '#500 DONE   cov: 663 ft: 900 corp: 2/3b' >&2\n"
                          "echo 'stat::number_of_executed_units: 500' >&2\n"
                          "echo a >\"$corpus/one\"; echo b >\"$corpus/two\"\n";

class Fuzz : public ScriptStage {
protected:
    Fuzz() {
        for (const char* parser : {"mesh", "png"})
            WriteFile(std::string("tests/fuzz/") + parser + "_fuzz.cpp", "");
    }

    /// A parser whose program does this, its folder of files kept being $corpus.
    void Parser(const std::string& name, const std::string& text) {
        const fs::path program = "build/fuzz/tests/fuzz/fuzz_" + name;
        WriteScript(program, "echo \"" + name + " $*\" >>'" + calls.string() +
                                 "'\nfor word; do case $word in */kept/*) corpus=$word ;; esac; "
                                 "done\n" +
                                 text);
    }

    Tools::Ending Try(const std::string& name, const std::string& seconds) {
        return Run("tests/fuzz/run", {name, seconds, "--corpus", fs::absolute("kept")});
    }
};

} // namespace

TEST_F(Fuzz, Tries_a_parser_for_so_long_with_its_seeds_and_what_was_kept) {
    Parser("mesh", words);
    const Tools::Ending end = Try("mesh", "30");
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(end.errors, HasSubstr("mesh: 500 attempts, none of them failed\n"));
    EXPECT_THAT(Calls("mesh"), HasSubstr(" -max_total_time=30 "));
    EXPECT_THAT(Calls("mesh"),
                HasSubstr(" -dict=tests/fuzz/dictionaries/mesh " +
                          fs::absolute("kept/mesh").string() + " tests/fuzz/seeds/mesh\n"));
}

TEST_F(Fuzz, Notes_each_run_in_the_ledger) {
    Parser("mesh", words);
    Try("mesh", "1");
    EXPECT_EQ(ReadFile("kept/ledger.tsv"), "mesh\t0\t500\t663\t2\n");
}

TEST_F(Fuzz, Shows_what_a_parser_said_that_fails_and_notes_nothing) {
    Parser("png", "echo 'ERROR: AddressSanitizer' >&2; exit 77");
    const Tools::Ending end = Try("png", "1");
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("ERROR: AddressSanitizer\n"));
    EXPECT_THAT(end.errors, HasSubstr("The parser 'png' fails: see build/fuzz/png.log.\n"));
    EXPECT_FALSE(fs::exists("kept/ledger.tsv"));
}

TEST_F(Fuzz, Adds_up_seconds_and_attempts_and_tells_the_last_of_edges_and_files) {
    WriteFile("kept/ledger.tsv", "png\t30\t1000\t200\t30\n"
                                 "mesh\t60\t7\t5\t3\n"
                                 "png\t60\t2000\t210\t31\n");
    const Tools::Ending end = Run("tests/fuzz/run", {"--sums", "--corpus", fs::absolute("kept")});
    EXPECT_EQ(end.output, "| mesh | 1.0 | 7 | 5 | 3 |\n"
                          "| png | 1.5 | 3000 | 210 | 31 |\n"); // 90 seconds
}

TEST_F(Fuzz, Tries_all_in_turn_until_it_is_stopped_whichever_fails) {
    Parser("mesh", "exit 77");
    Parser("png", words + "kill -TERM $PPID; sleep 10");
    const Tools::Ending end =
        Run("tests/fuzz/run", {"--all", "1", "--corpus", fs::absolute("kept")});
    EXPECT_THAT(end.errors, HasSubstr("The parser 'mesh' fails"));
    EXPECT_THAT(Calls("png"), HasSubstr(" -max_total_time=1 "));
    EXPECT_EQ(end.exitStatus, 128 + SIGTERM);
    EXPECT_LT(end.seconds, 8.0);
}
