// docs/make: the comments of the engine's headers as pages, and no public declaration without one.

#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <regex>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

const fs::path source = NIMBREL_SOURCE_DIR;

constexpr double patience = 60.0; // seconds; less than two on an idle machine

class ApiPages : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::system("command -v doxygen >/dev/null") != 0)
            GTEST_SKIP() << "needs doxygen, which ./test installs";
    }

    /// Copies what docs/make needs to here.
    static void CopyHeaders() {
        for (const char* folder : {"engine", "packaging", "docs/api"}) {
            fs::create_directories(fs::path(folder).parent_path().empty() ? "." : "docs");
            fs::copy(source / folder, folder, fs::copy_options::recursive);
        }
        fs::copy(source / "docs/make", "docs/make");
    }

    static Tools::Ending Check(const fs::path& root) {
        return Tools::Run({.arguments = {root / "docs/make", "--check"}}, patience);
    }

private:
    ScratchDir scratch;
};

} // namespace

TEST_F(ApiPages, Find_a_comment_for_every_public_declaration) {
    const Tools::Ending end = Check(source);
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.errors, IsEmpty());
}

TEST_F(ApiPages, Are_refused_when_a_declaration_has_no_comment) {
    CopyHeaders();
    const std::string header = ReadFile("engine/core/clock.h");
    const std::string place = "    ~Clock() = default;\n";
    ASSERT_THAT(header, HasSubstr(place));
    WriteFile("engine/core/clock.h",
              std::string(header).insert(header.find(place), "    void Forget();\n\n"));
    EXPECT_EQ(Check(".").exitStatus, 0) << "covered by the comment of the line before";
    WriteFile("engine/core/clock.h",
              std::string(header).insert(header.find(place), "\n    void Forget();\n\n"));
    const Tools::Ending end = Check(".");
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, HasSubstr("engine/core/clock.h"));
    EXPECT_THAT(end.errors, HasSubstr("Member Forget() (function) of class Vell::Clock"));
}

TEST_F(ApiPages, Leave_out_the_headers_that_are_not_installed) {
    static const std::regex pattern("PATTERN \"(\\w+\\.h)\" EXCLUDE");
    const std::string installed = ReadFile(source / "engine/package/install.cmake");
    const std::string options = ReadFile(source / "docs/api/Doxyfile.in");
    int count = 0;
    for (std::sregex_iterator match(installed.begin(), installed.end(), pattern), end; match != end;
         ++match, ++count)
        EXPECT_THAT(options, HasSubstr("/" + (*match)[1].str()));
    EXPECT_GT(count, 0);
}

TEST_F(ApiPages, Take_one_comment_for_all_declarations_up_to_an_empty_line) {
    WriteFile("a.h", "class A {\npublic:\n    /// Place.\n    float x, y;\n\n    /// Sets it,\n"
                     "    /// or not.\n    void Set(int a,\n             int b);\n    int Get() {\n"
                     "        return 1;\n    }\n    A() = default;\n    int b; ///< own\n\n"
                     "    int bare;\n};\n");
    const Tools::Ending end =
        Tools::Run({.arguments = {source / "docs/api/filter", "a.h"}}, patience);
    EXPECT_EQ(end.output,
              "class A {\npublic:\n    /// Place.\n    float x;\n    /// Place.\n    float y;\n\n"
              "    /// Sets it,\n    /// or not.\n    void Set(int a,\n             int b);\n"
              "    /// Sets it,\n    /// or not.\n    int Get() {\n        return 1;\n    }\n"
              "    int b; ///< own\n\n    int bare;\n};\n");
}
