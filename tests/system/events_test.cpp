// Keys, the mouse and the window's close button, sent to the running program by the X server.

#include "tests/support/demo_data.h"
#include "tests/support/log_page.h"
#include "tests/support/x11_events.h"
#include "tests/system/nimbrel_test.h"

#include <X11/keysym.h>

namespace {

/// The production in real time, small data, playing.
class Events : public NimbrelTest {
protected:
    void SetUp() override {
        MakeDemoData();
        Start();
        ASSERT_NO_FATAL_FAILURE(WaitForPlaying());
        window = std::make_unique<ForeignWindow>(display->Name(), caption, 10.0);
    }

    /// Fails unless the program plays on for a while.
    void ExpectPlaysOn(double seconds) {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
        EXPECT_TRUE(run->Running());
    }

    /// Presses Escape and fails unless the program ends in order, long before its time.
    void ExpectEscapeEndsIt() {
        constexpr double patience = 60.0;
        window->PressKey(XK_Escape);
        WaitForOrderlyEnd(patience);
        EXPECT_LT(Reported("quit_time"), patience);
        EXPECT_NE(ReadLogText().find("</html>\n"), std::string::npos) << "the log has no footer";
    }

    std::unique_ptr<ForeignWindow> window;
};

} // namespace

TEST_F(Events, Escape_ends_it_with_the_frame_finished_and_the_log_complete) {
    ExpectEscapeEndsIt();
    EXPECT_EQ(Reported("frames"), Reported("polls")) << "the frame that saw the key was not shown";
    EXPECT_EQ(Reported("errors"), 0);
}

TEST_F(Events, Other_keys_change_nothing) {
    for (unsigned long key : {XK_Return, XK_space, XK_q, XK_F4, XK_Left})
        window->PressKey(key);
    ExpectPlaysOn(2.0);
    ExpectEscapeEndsIt();
}

TEST_F(Events, Mouse_changes_nothing) {
    window->Click();
    ExpectPlaysOn(1.0);
    ExpectEscapeEndsIt();
}

TEST_F(Events, Close_button_changes_nothing) {
    window->AskToClose();
    window->AskToClose();
    ExpectPlaysOn(3.0);
    ExpectEscapeEndsIt();
}
