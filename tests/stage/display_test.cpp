#include "tools/stage/display.h"

#include "tools/stage/isolated.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using ::testing::StartsWith;
using Tools::DisplayAnswers;
using Tools::VirtualDisplay;

namespace {

// Nobody listens there: those that look for a free number begin at 0.
const char* const deadDisplay = ":4998";

/// Where the server of that name listens, by X's convention.
std::filesystem::path SocketOf(const std::string& name) {
    return std::filesystem::path("/tmp") / ".X11-unix" / ("X" + name.substr(1));
}

} // namespace

TEST(VirtualDisplay, Answers_as_long_as_it_is_there) {
    auto display = std::make_unique<VirtualDisplay>();
    const std::string name = display->Name();
    EXPECT_THAT(name, StartsWith(":"));
    EXPECT_TRUE(DisplayAnswers(name));
    EXPECT_TRUE(DisplayAnswers(name)) << "it does not start over in between";
    display.reset();
    EXPECT_FALSE(std::filesystem::exists(SocketOf(name))) << "it takes its socket along";
}

TEST(VirtualDisplay, Has_a_number_of_its_own) {
    const VirtualDisplay one;
    const VirtualDisplay other;
    EXPECT_NE(one.Name(), other.Name());
}

TEST(VirtualDisplay, That_does_not_start_says_why) {
    try {
        const VirtualDisplay display({"-no-such-option"});
        FAIL() << "expected an exception";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), StartsWith("the virtual display (Xvfb) did not start: "));
        EXPECT_THAT(error.what(), ::testing::HasSubstr("-no-such-option"));
    }
}

TEST(VirtualDisplay, Does_not_outlive_a_process_that_crashes) {
    const Tools::IsolatedRun run = Tools::RunIsolated(
        [](const Tools::Report& report) {
            const VirtualDisplay display;
            report.Add("name", display.Name());
            std::raise(SIGKILL);
        },
        60.0);
    const std::string name = Tools::Fact(run.facts, "name");
    ASSERT_THAT(name, StartsWith(":"));
    const std::filesystem::path socket = SocketOf(name);
    for (double end = Tools::SteadySeconds() + 20.0;
         std::filesystem::exists(socket) && Tools::SteadySeconds() < end;)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(std::filesystem::exists(socket));
}

TEST(DisplayAnswers, Nobody_where_there_is_no_server) {
    EXPECT_FALSE(DisplayAnswers(deadDisplay));
    EXPECT_FALSE(DisplayAnswers("no name of a display"));
}

TEST(DisplayAnswers, Display_without_a_name_is_none_whatever_the_environment_says) {
    const VirtualDisplay display;
    setenv("DISPLAY", display.Name().c_str(), 1);
    EXPECT_FALSE(DisplayAnswers(""));
}

// It takes connections, and says nothing.
TEST(DisplayAnswers, Server_that_is_silent_does_not) {
    const std::string number = std::to_string(5000 + getpid() % 10000);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = SocketOf(":" + number);
    path.copy(&address.sun_path[1], sizeof address.sun_path - 1); // a name that is no file's
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto length = static_cast<socklen_t>(sizeof(sa_family_t) + 1 + path.size());
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), length), 0);
    ASSERT_EQ(listen(server, 1), 0);
    const double start = Tools::SteadySeconds();
    EXPECT_FALSE(DisplayAnswers(":" + number, 0.3));
    EXPECT_GE(Tools::SteadySeconds() - start, 0.3) << "it was not connected";
    close(server);
}
