#include "tools/stage/scratch.h"

#include "tests/support/scratch.h"
#include "tools/stage/childprocess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace fs = std::filesystem;

using Tools::DemoFolder;
using Tools::ScratchFolder;
using Tools::ScratchWorkingFolder;

namespace {

/// Has temporary folders made elsewhere as long as it is there.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const fs::path& path) { setenv("TMPDIR", path.c_str(), 1); }
    ~TemporaryFolder() {
        if (before)
            setenv("TMPDIR", value.c_str(), 1);
        else
            unsetenv("TMPDIR");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

private:
    const char* const before = std::getenv("TMPDIR");
    const std::string value = before ? before : "";
};

} // namespace

TEST(ScratchFolder, Is_empty_at_first_and_gone_at_last_with_all_that_is_in_it) {
    fs::path path;
    {
        const ScratchFolder folder;
        path = folder.Path();
        EXPECT_TRUE(path.is_absolute());
        EXPECT_TRUE(fs::is_empty(path));
        WriteFile(path / "a/b/c.txt", "text");
        WriteFile(path / ".hidden", "text");
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST(ScratchFolder, Is_another_one_each_time) {
    const ScratchFolder one;
    const ScratchFolder other;
    EXPECT_NE(one.Path(), other.Path());
}

TEST(ScratchFolder, Is_gone_after_an_exception) {
    fs::path path;
    EXPECT_THROW(
        {
            const ScratchFolder folder;
            path = folder.Path();
            WriteFile(path / "file", "text");
            throw std::runtime_error("expected");
        },
        std::runtime_error);
    EXPECT_FALSE(path.empty());
    EXPECT_FALSE(fs::exists(path));
}

TEST(ScratchFolder, Takes_links_along_but_not_what_they_lead_to) {
    const ScratchFolder kept;
    WriteFile(kept.Path() / "file", "text");
    {
        const ScratchFolder folder;
        fs::create_directory_symlink(kept.Path(), folder.Path() / "link");
    }
    EXPECT_EQ(ReadFile(kept.Path() / "file"), "text");
}

TEST(ScratchFolder, Lies_where_temporary_folders_are_to_be) {
    const ScratchFolder elsewhere;
    const TemporaryFolder temporary(elsewhere.Path());
    EXPECT_EQ(ScratchFolder().Path().parent_path(), elsewhere.Path());
}

TEST(ScratchFolder, Cannot_be_made_where_there_is_no_place_for_it) {
    const TemporaryFolder temporary("/proc");
    EXPECT_THROW(const ScratchFolder folder, std::runtime_error);
}

TEST(ScratchFolder, Stays_when_a_child_process_destroys_its_copy) {
    auto folder = std::make_unique<ScratchFolder>();
    const fs::path path = folder->Path();
    Tools::ChildProcess child([&] {
        folder.reset();
        return 0;
    });
    EXPECT_TRUE(child.Finish(20.0).InOrder());
    EXPECT_TRUE(fs::exists(path));
}

TEST(ScratchWorkingFolder, Is_the_working_folder_until_it_goes) {
    const fs::path before = fs::current_path();
    fs::path path;
    {
        const ScratchWorkingFolder folder;
        path = folder.Path();
        EXPECT_EQ(fs::current_path(), path);
        WriteFile("file", "text");
        EXPECT_EQ(ReadFile(path / "file"), "text");
    }
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_FALSE(fs::exists(path));
}

TEST(DemoFolder, Has_the_data_of_the_working_folder) {
    const ScratchWorkingFolder viewer;
    WriteFile("Data/file", "text");
    const DemoFolder demo;
    EXPECT_EQ(ReadFile(demo.Path() / "Data/file"), "text");
    EXPECT_TRUE(fs::is_symlink(demo.Path() / "Data"));
}

TEST(DemoFolder, May_have_other_data) {
    const ScratchWorkingFolder viewer;
    WriteFile("Other/file", "text");
    const DemoFolder demo("Other");
    EXPECT_EQ(ReadFile(demo.Path() / "Data/file"), "text");
}

TEST(DemoFolder, Is_there_without_data_too) {
    const ScratchWorkingFolder viewer;
    const DemoFolder demo;
    EXPECT_FALSE(fs::exists(demo.Path() / "Data"));
}

TEST(DemoFolder, Takes_the_log_in_the_place_of_the_viewers) {
    const ScratchWorkingFolder viewer;
    WriteFile("Vell_log.html", "the viewer's");
    const DemoFolder demo;
    EXPECT_EQ(demo.Log(), "");
    WriteFile(demo.Path() / "Vell_log.html", std::string("a\0b\n", 4));
    EXPECT_EQ(demo.Log(), std::string("a\0b\n", 4));
    EXPECT_EQ(ReadFile("Vell_log.html"), "the viewer's");
}
