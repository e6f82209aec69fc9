// What is taken off a page: whatever is not found there is not tested either.

#include "tests/docs/pages.h"

#include <gmock/gmock.h>

#include <algorithm>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> Texts(const std::vector<Docs::Line>& lines) {
    std::vector<std::string> texts(lines.size());
    std::transform(lines.begin(), lines.end(), texts.begin(),
                   [](const Docs::Line& line) { return line.text; });
    return texts;
}

} // namespace

TEST(Pages, Give_the_commands_of_shell_blocks_without_their_comments) {
    const Docs::Page page = Docs::ReadPage("docs/a.md", "Do this:\n"
                                                        "\n"
                                                        "```sh\n"
                                                        "./play   # plays\n"
                                                        "# nothing but a comment\n"
                                                        "\n"
                                                        "  echo a#b\n"
                                                        "```\n"
                                                        "```\n"
                                                        "a drawing\n"
                                                        "```\n");
    EXPECT_THAT(Texts(page.shell), ElementsAre("./play", "echo a#b"));
    EXPECT_EQ(Docs::PlaceOf(page.shell[1]), "docs/a.md:7");
    EXPECT_THAT(Texts(page.blocks), ElementsAre("a drawing"));
}

TEST(Pages, Give_the_lines_of_indented_blocks_but_not_of_indented_sentences) {
    const Docs::Page page = Docs::ReadPage("a.md", "- a list\n"
                                                   "    that goes on\n"
                                                   "\n"
                                                   "    ./play\n"
                                                   "    ./test\n"
                                                   "after it\n");
    EXPECT_THAT(Texts(page.blocks), ElementsAre("    ./play", "    ./test"));
    EXPECT_THAT(page.shell, IsEmpty());
}

TEST(Pages, Give_code_that_goes_over_the_end_of_a_line_with_the_number_it_begins_on) {
    const Docs::Page page = Docs::ReadPage("a.md", "one\ntwo `./test\nwater` and `x`\n");
    EXPECT_THAT(Texts(page.code), ElementsAre("./test water", "x"));
    EXPECT_EQ(page.code[0].number, 2);
    EXPECT_EQ(page.code[1].number, 3);
}

TEST(Pages, Give_links_as_seen_from_the_root) {
    const Docs::Page page = Docs::ReadPage(
        "docs/a.md", "[one](b.md#part) ![two](art/c.png)\n[up](../Data/x) [far](https://a.b/c) "
                     "[here](#top)\n");
    std::vector<std::string> targets;
    for (const Docs::Line& link : page.links)
        targets.push_back(Docs::TargetOf(link));
    EXPECT_THAT(targets, ElementsAre("docs/b.md", "docs/art/c.png", "Data/x", "", "docs/a.md"));
}
