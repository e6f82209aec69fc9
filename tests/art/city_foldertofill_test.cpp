#include "art/common/foldertofill.h"

#include <gmock/gmock.h>

namespace {

/// What is told at the end, and with which exit status, of a program that writes two files.
std::string Told(bool written, int& status) {
    Art::FolderToFill folder("a/b");
    EXPECT_EQ(folder.File("fish.png"), "a/b/fish.png");
    EXPECT_EQ(folder.File("fish.xt3dstatic"), "a/b/fish.xt3dstatic");
    ::testing::internal::CaptureStdout();
    status = folder.Finish(written);
    return ::testing::internal::GetCapturedStdout();
}

TEST(FolderToFill, Tells_the_path_of_each_file_once_all_are_written) {
    int status = -1;
    EXPECT_EQ(Told(true, status), "a/b/fish.png\na/b/fish.xt3dstatic\n");
    EXPECT_EQ(status, 0);
}

TEST(FolderToFill, Tells_of_no_file_when_one_could_not_be_written) {
    int status = -1;
    EXPECT_EQ(Told(false, status), "");
    EXPECT_EQ(status, 1);
}

} // namespace
