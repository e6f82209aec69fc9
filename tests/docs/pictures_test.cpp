// Every picture of docs/ is shown by a page and made by docs/make-pictures, and it is what that
// makes.

#include "tests/docs/pages.h"
#include "tests/docs/stage.h"
#include "tests/support/pixels.h"
#include "tools/picture/picture.h"

#include <gmock/gmock.h>

#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr double patience = 120.0; // seconds; some fifteen on an idle machine

// Another processor rounds otherwise: that moves an edge here and there, which is why a few pixels
// may be off by more than a shade.
constexpr Thresholds otherProcessors = {.max = 8.0, .mean = 0.5, .failing = 0.005};

using Names = std::set<std::string>; ///< of files below docs/: "frames/rise.png"

bool IsShown(const fs::path& file) {
    const std::string kind = file.extension();
    return kind == ".png" || kind == ".jpg" || kind == ".html";
}

Names Committed(const fs::path& root) {
    Names names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "docs"))
        if (entry.is_regular_file() && IsShown(entry.path()))
            names.insert(fs::relative(entry.path(), root / "docs"));
    return names;
}

/// What pages link to.
Names Shown(const std::vector<Docs::Page>& pages) {
    Names names;
    for (const Docs::Page& page : pages)
        for (const Docs::Line& link : page.links)
            if (const fs::path target = Docs::TargetOf(link); IsShown(target))
                names.insert(target.lexically_relative("docs"));
    return names;
}

/// What differs between the three; nothing when they are the same.
std::vector<std::string> Complaints(const Names& committed, const Names& shown, const Names& made) {
    std::vector<std::string> complaints;
    for (const std::string& name : committed) {
        if (!shown.contains(name))
            complaints.push_back(name + " is on no page");
        if (!made.contains(name))
            complaints.push_back(name + " is not made by docs/make-pictures");
    }
    for (const Names& names : {shown, made})
        for (const std::string& name : names)
            if (!committed.contains(name))
                complaints.push_back(name + " is not there");
    return complaints;
}

Picture Read(const fs::path& file) {
    return BottomUp(Tools::ReadPng(file));
}

class Pictures : public ::testing::Test {
protected:
    /// Each name and what makes it.
    static std::map<std::string, std::string> Makers(const Docs::Stage& stage) {
        const Tools::Ending end = stage.Run("docs/make-pictures --list", patience);
        EXPECT_EQ(end.exitStatus, 0) << end.errors;
        std::map<std::string, std::string> makers;
        std::istringstream lines(end.output);
        for (std::string name, rest; lines >> name && std::getline(lines >> std::ws, rest);)
            makers[name] = rest;
        return makers;
    }

    const Docs::Stage stage;
};

} // namespace

TEST_F(Pictures, Are_each_on_a_page_and_made_by_a_command) {
    Names made;
    for (const auto& [name, maker] : Makers(stage))
        made.insert(name);
    EXPECT_THAT(Complaints(Committed(stage.Root()), Shown(Docs::AllPages(stage.Root())), made),
                IsEmpty());
}

TEST_F(Pictures, Of_the_show_are_what_their_commands_make) {
    std::string names;
    for (const auto& [name, maker] : Makers(stage))
        // The music would take minutes; the gallery and the scene have tests of their own,
        // gallery_programs_test and consumer_use_test.
        if (name.ends_with(".png") && maker != "music" && maker != "gallery" && maker != "scene")
            names += " " + name;
    const Tools::Ending end = stage.Run("docs/make-pictures --into made" + names, patience);
    ASSERT_EQ(end.exitStatus, 0) << end.errors;
    std::istringstream each(names);
    for (std::string name; each >> name;)
        EXPECT_TRUE(Matches(Read(stage.Root() / "made" / name), Read(stage.Root() / "docs" / name),
                            otherProcessors))
            << name << ": docs/make-pictures " << name << " makes it anew";
}

TEST_F(Pictures, Of_other_moments_are_not_taken_for_these) {
    const fs::path docs = stage.Root() / "docs";
    EXPECT_FALSE(Matches(Read(docs / "rise.png"), Read(docs / "basin.png"), otherProcessors));
    const Tools::Ending end = stage.Run("./movie --at 25.1 docs/moved.png", patience);
    ASSERT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_FALSE(Matches(Read(docs / "moved.png"), Read(docs / "rise.png"), otherProcessors))
        << "six frames later";
}

TEST(PictureNames, Are_complained_of_when_one_of_the_three_is_missing) {
    EXPECT_THAT(Complaints({"a.png"}, {"a.png"}, {"a.png"}), IsEmpty());
    EXPECT_THAT(Complaints({"a.png"}, {}, {"a.png"}), ElementsAre(HasSubstr("on no page")));
    EXPECT_THAT(Complaints({"a.png"}, {"a.png"}, {}), ElementsAre(HasSubstr("is not made")));
    EXPECT_THAT(Complaints({}, {"a.png"}, {}), ElementsAre(HasSubstr("is not there")));
    EXPECT_THAT(Complaints({}, {}, {"a.png"}), ElementsAre(HasSubstr("is not there")));
}
