#include "tools/doctor/datafiles.h"

#include "demo/scene1.h"
#include "tests/doctor/published_data.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include <sys/stat.h>

namespace fs = std::filesystem;

using Doctor::Row;
using Doctor::State;
using Doctor::Table;
using ::testing::HasSubstr;

namespace {

const Row& Find(const Table& table, const std::string& id) {
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const Row& row) { return row.id == id; });
    if (found == table.end())
        throw std::runtime_error("no row " + id);
    return *found;
}

std::string Value(const Row& row, const std::string& name) {
    for (const Doctor::Value& value : row.values)
        if (value.name == name)
            return value.text;
    return "";
}

class DataFilesTest : public ::testing::Test {
    ScratchDir scratch;
};

class DataFilesOfTheDemo : public GlTest {
protected:
    /// Everything that the demo's scene tells its log of having loaded, or tried to.
    static std::set<std::string> AskedFor() {
        const LogWatch watch;
        Scene1 scene;
        scene.Load();
        std::set<std::string> files;
        for (const LogRow& row : watch.NewRows()) {
            std::istringstream words(row.file); // a shader's row names both of its files
            for (std::string file; words >> file;)
                files.insert(file);
        }
        return files;
    }
};

} // namespace

TEST_F(DataFilesOfTheDemo, Are_exactly_those_that_it_asks_for) {
    MakeDemoData();
    WriteFile("Data/Gfx/Fish/fish.xt3dstatic", "XT3DSTATIC 2 Data/Gfx/Fish/ 1\n"
                                               "a.png NULL c.jpg 0\n"
                                               "NULL a.png b.png 0\n");
    std::set<std::string> expected = AskedFor();
    expected.insert(musicTrack);
    std::set<std::string> listed;
    for (const Doctor::DataFile& file : Doctor::DataFiles()) {
        EXPECT_TRUE(listed.insert(file.path).second) << file.path << " stands twice";
        EXPECT_FALSE(file.without.empty()) << file.path;
    }
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(listed.count("Data/Gfx/Fish/lightmap.jpg"), 1u);
}

TEST_F(DataFilesTest, That_are_as_published_are_well) {
    PublishTinyData();
    const Table table = Doctor::DataRows();
    ASSERT_EQ(table.size(), DemoFiles().size() + 1);
    EXPECT_EQ(table[0].state, State::Ok);
    EXPECT_EQ(table[0].finding, "all 18 files are there, as published");
    EXPECT_FALSE(table[0].detail);
    for (std::size_t i = 1; i < table.size(); ++i) {
        EXPECT_TRUE(table[i].detail);
        EXPECT_EQ(table[i].state, State::Ok) << table[i].title;
    }
    const Row& row = Find(table, std::string("data:") + musicTrack);
    EXPECT_EQ(Value(row, "bytes"), "8");
    // Of "no music", as sha256sum prints it.
    EXPECT_EQ(Value(row, "sha256"),
              "6fb10868bcc57154220342a008f144ce580d181eaa2d22519dd218fbcaa66f43");
    EXPECT_EQ(Value(row, "sha256"), Value(row, "published_sha256"));
}

TEST_F(DataFilesTest, Missing_one_is_named_with_what_the_show_lacks) {
    PublishTinyData();
    fs::remove(waterPicture);
    const Table table = Doctor::DataRows();
    EXPECT_EQ(table[0].state, State::Warn);
    EXPECT_EQ(table[0].finding, "Data/Gfx/water.jpg (missing: water without waves)");
    EXPECT_THAT(table[0].advice, HasSubstr("git checkout"));
    const Row& row = Find(table, std::string("data:") + waterPicture);
    EXPECT_EQ(row.state, State::Warn);
    EXPECT_EQ(Value(row, "present"), "no");
}

TEST_F(DataFilesTest, That_is_a_pipe_is_not_waited_for) {
    PublishTinyData();
    for (const std::string& file : {std::string(waterPicture), DemoFiles().front()}) {
        fs::remove(file);
        ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    }
    const Table table = Doctor::DataRows();
    EXPECT_THAT(table[0].finding, HasSubstr("Data/Gfx/water.jpg (cannot be read: water without"));
    EXPECT_THAT(table[0].finding, HasSubstr("(cannot be read: no city)"));
    Doctor::FindLargestPicture();
}

TEST_F(DataFilesTest, One_changed_bit_is_noticed) {
    PublishTinyData();
    Damage(waterPicture);
    const Table table = Doctor::DataRows();
    EXPECT_EQ(table[0].finding, "Data/Gfx/water.jpg (damaged or changed)");
    EXPECT_EQ(Value(Find(table, std::string("data:") + waterPicture), "present"), "yes");
}

TEST_F(DataFilesTest, More_than_three_that_are_wrong_are_counted) {
    PublishTinyData();
    for (std::size_t i = 0; i < 5; ++i)
        fs::remove(DemoFiles()[DemoFiles().size() - 1 - i]); // the last ones
    EXPECT_THAT(Doctor::DataRows()[0].finding, HasSubstr(" and 2 more, which --json names"));
}

TEST_F(DataFilesTest, Without_published_sums_cannot_be_compared) {
    PublishTinyData();
    fs::remove(Doctor::sumsFile);
    const Table table = Doctor::DataRows();
    EXPECT_EQ(table[0].state, State::Warn);
    EXPECT_EQ(table[1].finding, "no published sum to compare it with");
}

TEST_F(DataFilesTest, Without_the_folder_are_not_looked_at) {
    EXPECT_EQ(Doctor::FolderRow().state, State::Fail);
    for (const Row& row : Doctor::DataRows())
        EXPECT_EQ(row.state, State::Unknown) << row.id;
    fs::create_directory("Data");
    EXPECT_EQ(Doctor::FolderRow().state, State::Ok);
}

TEST_F(DataFilesTest, Largest_picture_is_by_its_longer_side) {
    EXPECT_EQ(Doctor::FindLargestPicture().path, "");
    WriteJpeg(waterPicture, 3, 200, std::vector<unsigned char>(3 * 200 * 3));
    WriteJpeg("Data/Gfx/Logo/logo.jpg", 199, 199, std::vector<unsigned char>(199 * 199 * 3));
    const Doctor::LargestPicture largest = Doctor::FindLargestPicture();
    EXPECT_EQ(largest.path, waterPicture);
    EXPECT_EQ(largest.width, 3);
    EXPECT_EQ(largest.height, 200);
}

TEST_F(DataFilesTest, Sums_are_read_in_both_forms_and_other_lines_left_out) {
    const std::string one(64, '1');
    const std::string two(64, 'a');
    WriteFile("sums", one + "  Data/a b.png\n# " + two + "\n" + two + " *Data/c\n" + one +
                          "1  Data/long\n" + one.substr(1) + "  Data/short\n" + one + "\n");
    const std::map<std::string, std::string> expected = {{"Data/a b.png", one}, {"Data/c", two}};
    EXPECT_EQ(Doctor::ReadSums("sums"), expected);
    EXPECT_TRUE(Doctor::ReadSums("nothing").empty());
}

// Run tools/doctor/sums when Data/ was changed on purpose.
TEST(PublishedSums, Are_those_of_Data_as_it_is) {
    const fs::path root = NIMBREL_SOURCE_DIR;
    std::map<std::string, std::string> published =
        Doctor::ReadSums((root / Doctor::sumsFile).string());
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "Data")) {
        const std::string file = fs::relative(entry.path(), root).string();
        if (entry.is_regular_file() && file != Doctor::sumsFile) {
            EXPECT_EQ(published[file], SumOfFile(entry.path()))
                << file << ": tools/doctor/sums writes its sum anew";
            published.erase(file);
        }
    }
    for (const auto& [file, sum] : published)
        ADD_FAILURE() << file << " is published and not there: tools/doctor/sums leaves it out";
}

namespace {

/// A copy of the program that writes the sums, beside a small Data/.
class Sums : public DataFilesTest {
protected:
    void SetUp() override {
        fs::create_directories("tools/doctor");
        fs::copy(NIMBREL_SOURCE_DIR "/tools/doctor/sums", "tools/doctor/sums");
        fs::copy(NIMBREL_SOURCE_DIR "/packaging", "packaging");
        WriteFile("Data/b", "abc");
        WriteFile("Data/Gfx/a", "");
    }

    static Tools::Ending Run(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {fs::absolute("tools/doctor/sums").string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return Tools::Run({.arguments = command}, 20.0);
    }
};

} // namespace

TEST_F(Sums, Are_written_sorted_by_name) {
    EXPECT_EQ(Run({}).exitStatus, 0);
    EXPECT_EQ(ReadFile(Doctor::sumsFile),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855  Data/Gfx/a\n"
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad  Data/b\n");
    EXPECT_EQ(Run({"--check"}).exitStatus, 0);
}

TEST_F(Sums, That_are_not_up_to_date_are_named_and_left_as_they_are) {
    EXPECT_THAT(Run({"--check"}).errors, HasSubstr("There is no Data/SHA256SUMS"));
    Run({});
    const std::string before = ReadFile(Doctor::sumsFile);
    WriteFile("Data/b", "abd");
    WriteFile("Data/new", "");
    fs::remove("Data/Gfx/a");
    const Tools::Ending outcome = Run({"--check"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("Data/Gfx/a\nData/b\nData/new\n"));
    EXPECT_EQ(ReadFile(Doctor::sumsFile), before);
}

TEST_F(Sums, Refuse_another_option) {
    EXPECT_EQ(Run({"--all"}).exitStatus, 2);
}
