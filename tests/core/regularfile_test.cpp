#include "engine/core/regularfile.h"

#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using Vell::OpenRegularFile;
using Vell::OpenRegularStream;

namespace {

class RegularFile : public ::testing::Test {
protected:
    /// The descriptor that the next file gets: one higher when an earlier one was left open.
    static int NextDescriptor() {
        const int next = open("/dev/null", O_RDONLY);
        close(next);
        return next;
    }

    ScratchDir scratch;
};

void MakeSocket(const char* path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", path);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(bind(listening, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(listening);
}

} // namespace

TEST_F(RegularFile, Opens_from_its_beginning_also_through_a_link) {
    WriteFile("file", "text");
    std::filesystem::create_symlink("file", "link");
    for (const char* path : {"file", "link"}) {
        const Vell::FileStream stream = OpenRegularStream(path);
        ASSERT_NE(stream, nullptr) << path;
        char text[8] = "";
        EXPECT_EQ(std::fread(text, 1, sizeof text, stream.get()), 4u);
        EXPECT_STREQ(text, "text");
    }
}

TEST_F(RegularFile, Is_nothing_else_and_nobody_waits_for_what_is) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    MakeSocket("socket");
    std::filesystem::create_directory("folder");
    std::filesystem::create_symlink("/dev/zero", "device");
    std::filesystem::create_symlink("circle", "circle");
    const int next = NextDescriptor();
    for (const char* path : {"pipe", "socket", "folder", "device", "circle", "missing", ""}) {
        EXPECT_EQ(OpenRegularFile(path), -1) << path;
        EXPECT_EQ(OpenRegularStream(path), nullptr) << path;
    }
    EXPECT_EQ(NextDescriptor(), next) << "one was left open";
}

TEST_F(RegularFile, Is_closed_to_programs_that_are_started) {
    WriteFile("file", "text");
    const Vell::FileStream stream = OpenRegularStream("file");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(fcntl(fileno(stream.get()), F_GETFD), FD_CLOEXEC);
}
