// What is said of files and folders that cannot be where they were named.

#include "tools/options/places.h"

#include "tests/support/scratch.h"
#include "tools/options/wrongusage.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace fs = std::filesystem;

using ::testing::StartsWith;

namespace {

class Places : public ::testing::Test {
protected:
    Places() {
        WriteFile("file", "older");
        fs::create_directory("folder");
    }

    static std::string Refusal(void (*check)(const std::string&), const std::string& path) {
        try {
            check(path);
        } catch (const Tools::WrongUsage& error) {
            return error.what();
        }
        return "none";
    }

    ScratchDir scratch;
};

} // namespace

TEST_F(Places, For_a_file_to_write_is_a_folder_that_takes_it) {
    const auto refusal = [](const std::string& path) {
        return Refusal(Tools::CheckFileToWrite, path);
    };
    EXPECT_EQ(refusal("new.png"), "none");
    EXPECT_EQ(refusal("folder/new.png"), "none");
    EXPECT_EQ(refusal("file"), "none") << "it may be written over";
    EXPECT_EQ(refusal("folder"), "cannot write folder: it is a folder; name a file in it");
    EXPECT_EQ(refusal("none/new.png"),
              "cannot write none/new.png: there is no folder none; make it "
              "first, or name another");
    EXPECT_EQ(refusal("file/new.png"),
              "cannot write file/new.png: file is no folder; name another");
    // Where even root makes no files.
    EXPECT_THAT(refusal("/proc/new.png"),
                StartsWith("cannot write /proc/new.png: the folder /proc takes no new files ("));
}

TEST_F(Places, Stay_as_they_were_when_they_are_checked) {
    Tools::CheckFileToWrite("file");
    Tools::CheckFileToWrite("folder/new.png");
    EXPECT_EQ(ReadFile("file"), "older");
    EXPECT_TRUE(fs::is_empty("folder"));
}

TEST_F(Places, For_a_file_to_read_hold_one) {
    EXPECT_EQ(Refusal(Tools::CheckFileToRead, "file"), "none");
    EXPECT_EQ(Refusal(Tools::CheckFileToRead, "folder"),
              "cannot read folder: it is a folder; name a file in it");
    EXPECT_EQ(Refusal(Tools::CheckFileToRead, "none"),
              "cannot read none: there is no such file; name one that is there");
}

TEST_F(Places, For_a_folder_hold_one) {
    EXPECT_EQ(Refusal(Tools::CheckFolder, "folder"), "none");
    EXPECT_EQ(Refusal(Tools::CheckFolder, "file"), "cannot read file: it is no folder; name one");
    EXPECT_EQ(Refusal(Tools::CheckFolder, "none"),
              "cannot read none: there is no such folder; name one that is there");
}

TEST_F(Places, To_fill_are_made) {
    EXPECT_EQ(Refusal(Tools::MakeFolder, "new/inner"), "none");
    EXPECT_TRUE(fs::is_empty("new/inner"));
    EXPECT_EQ(Refusal(Tools::MakeFolder, "folder"), "none");
    EXPECT_THAT(Refusal(Tools::MakeFolder, "file/inner"),
                StartsWith("cannot make the folder file/inner ("));
    EXPECT_THAT(Refusal(Tools::MakeFolder, "/proc/new"),
                StartsWith("cannot make the folder /proc/new ("));
    EXPECT_THAT(Refusal(Tools::MakeFolder, "/proc"), StartsWith("cannot write /proc: the folder "));
}

TEST_F(Places, To_fill_later_are_left_as_they_were) {
    EXPECT_EQ(Refusal(Tools::CheckFolderToFill, "later/inner/"), "none");
    EXPECT_FALSE(fs::exists("later"));
    EXPECT_EQ(Refusal(Tools::CheckFolderToFill, "folder"), "none");
    EXPECT_TRUE(fs::exists("folder"));
    EXPECT_THAT(Refusal(Tools::CheckFolderToFill, "/proc/new"),
                StartsWith("cannot make the folder /proc/new ("));
}
