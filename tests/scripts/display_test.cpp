// Which displays the scripts take for one: the display itself is asked, by each of the ways on
// which X clients find it.

#include "tests/scripts/script_stage.h"
#include "tools/stage/descriptor.h"
#include "tools/stage/display.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstring>
#include <memory>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int firstPort = 6000; // of display 0
const std::string deadNumber = "4997";

class Display : public ScriptStage {
protected:
    Display() {
        WriteScript("call", "set -euo pipefail\ncd \"$(dirname \"$(realpath \"$0\")\")\"\n"
                            ". packaging/common.sh\n\"$@\"");
    }

    bool Answers(const std::string& name) const {
        return Run("call", {"display_answers"}, {{"DISPLAY", name}}).exitStatus == 0;
    }

    /// The same from a network namespace of its own; `allowed` whether this machine lets us have
    /// one.
    bool AnswersElsewhere(const std::string& name, bool& allowed) const {
        std::vector<std::string> enter = {"unshare", geteuid() == 0 ? "-n" : "-rn"};
        const auto run = [&](std::vector<std::string> arguments) {
            arguments.insert(arguments.begin(), enter.begin(), enter.end());
            return Tools::Run({.arguments = arguments, .added = Around({{"DISPLAY", name}})}, 60.0)
                       .exitStatus == 0;
        };
        allowed = run({"true"});
        return run({"./call", "display_answers"});
    }
};

/// A socket that takes connections.
Tools::Descriptor Listening(int family, const void* address, std::size_t size) {
    Tools::Descriptor listening(socket(family, SOCK_STREAM, 0), "a socket");
    if (bind(listening.Get(), static_cast<const sockaddr*>(address),
             static_cast<socklen_t>(size)) != 0 ||
        listen(listening.Get(), 1) != 0)
        ADD_FAILURE() << std::strerror(errno);
    return listening;
}

} // namespace

TEST_F(Display, Answers_by_each_name_of_its_number_as_long_as_it_is_there) {
    auto server = std::make_unique<Tools::VirtualDisplay>();
    const std::string name = server->Name();
    for (const std::string& form : {name, name + ".0", "unix" + name})
        EXPECT_TRUE(Answers(form)) << form;
    server.reset();
    EXPECT_FALSE(Answers(name));
}

TEST_F(Display, Does_not_answer_where_there_is_none) {
    for (const std::string& name : {":" + deadNumber, std::string("screen"), std::string(":"),
                                    ":x" + deadNumber, "localhost:" + deadNumber})
        EXPECT_FALSE(Answers(name)) << name;
}

TEST_F(Display, Answers_from_another_network_namespace) {
    const Tools::VirtualDisplay server;
    bool allowed = false;
    EXPECT_FALSE(AnswersElsewhere(":" + deadNumber, allowed));
    const bool answers = AnswersElsewhere(server.Name(), allowed);
    if (!allowed)
        GTEST_SKIP() << "needs a network namespace, which this machine does not let us have";
    EXPECT_TRUE(answers);
}

TEST_F(Display, Answers_by_its_abstract_name_where_its_file_is_not_seen) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = std::string(1, '\0') + "/tmp" + "/.X11-unix/X" + deadNumber;
    std::memcpy(address.sun_path, name.data(), name.size());
    const Tools::Descriptor server =
        Listening(AF_UNIX, &address, offsetof(sockaddr_un, sun_path) + name.size());
    EXPECT_TRUE(Answers(":" + deadNumber));
}

TEST_F(Display, Answers_by_the_port_of_its_number_when_a_host_is_named) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    Tools::Descriptor server = Listening(AF_INET, &address, sizeof address); // any port
    socklen_t size = sizeof address;
    getsockname(server.Get(), reinterpret_cast<sockaddr*>(&address), &size);
    const std::string name = "127.0.0.1:" + std::to_string(ntohs(address.sin_port) - firstPort);
    EXPECT_TRUE(Answers(name));
    server = Tools::Descriptor();
    EXPECT_FALSE(Answers(name));
}
