#include "tools/doctor/xserver.h"

#include "tools/stage/display.h"

#include <gtest/gtest.h>

#include <cstdlib>

using Doctor::CollectServerFacts;
using Doctor::HoldServer;
using Tools::Fact;
using Tools::Facts;
using Tools::IsolatedRun;
using Tools::Report;
using Tools::RunIsolated;

namespace {

constexpr double patience = 30.0; // seconds

/// What is noted of a server that was started with these changes.
Facts FactsOf(const std::vector<std::string>& changes) {
    const Tools::VirtualDisplay server(changes);
    setenv("DISPLAY", server.Name().c_str(), 1);
    const IsolatedRun look = RunIsolated(CollectServerFacts, patience);
    EXPECT_TRUE(look.ending.InOrder()) << look.ending.InWords();
    return look.facts;
}

// No server listens there: those that look for a free number themselves begin at 0, so that the
// number of one that has just ended is soon another test's.
constexpr const char* deadServer = ":4999";

} // namespace

TEST(XServer, Tells_its_extensions_and_its_bits) {
    const Facts usual = FactsOf({});
    EXPECT_EQ(Fact(usual, "glx"), "1");
    EXPECT_EQ(Fact(usual, "depth"), "24");
    EXPECT_EQ(Fact(FactsOf({"-extension", "GLX"}), "glx"), "0");
    EXPECT_EQ(Fact(FactsOf({"-screen", "0", "640x480x8"}), "depth"), "8");
}

TEST(XServer, Is_found_to_start_over_or_to_stay) {
    EXPECT_EQ(Fact(FactsOf({"-noreset"}), "resets"), "0");
    EXPECT_EQ(Fact(FactsOf({"-reset"}), "resets"), "1");
}

TEST(XServer, Stays_as_long_as_it_is_held) {
    const Tools::VirtualDisplay server({"-reset"});
    setenv("DISPLAY", server.Name().c_str(), 1);
    const IsolatedRun look = RunIsolated(
        [](const Report& report) {
            report.Add("held", HoldServer() ? 1 : 0);
            CollectServerFacts(report);
        },
        patience);
    EXPECT_EQ(Fact(look.facts, "held"), "1");
    EXPECT_EQ(Fact(look.facts, "resets"), "0");
}

TEST(XServer, That_is_not_there_cannot_be_held_and_tells_nothing) {
    setenv("DISPLAY", deadServer, 1);
    EXPECT_FALSE(HoldServer());
    EXPECT_TRUE(RunIsolated(CollectServerFacts, patience).facts.empty());
}

TEST(XServer, That_is_not_named_need_not_be_held) {
    for (const bool set : {true, false}) {
        unsetenv("DISPLAY");
        if (set)
            setenv("DISPLAY", "", 1);
        EXPECT_TRUE(HoldServer());
        EXPECT_TRUE(RunIsolated(CollectServerFacts, patience).facts.empty());
    }
}
