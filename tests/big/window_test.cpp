// What a viewer of ./play --big sees: the demo's own picture, hard-edged, as wide as the screen.

#include "tools/picture/picture.h"

#include "tests/support/x11_events.h"
#include "tests/system/nimbrel_test.h"

#include <algorithm>
#include <cstdlib>

#include <gmock/gmock.h>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace fs = std::filesystem;

using Tools::Picture;

namespace {

constexpr double moment = 25.0; // demo time: city, water and sky are in the picture
constexpr const char* frameFile = "frame_0025.000.ppm";
constexpr double patience = 60.0; // seconds

/// All that a screen shows.
Picture Screenshot(const std::string& display) {
    Display* const connection = XOpenDisplay(display.c_str());
    const int number = DefaultScreen(connection);
    const int width = DisplayWidth(connection, number);
    const int height = DisplayHeight(connection, number);
    XImage* const image =
        XGetImage(connection, RootWindow(connection, number), 0, 0, static_cast<unsigned>(width),
                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
    Picture picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y); // 0xRRGGBB on 24 bits
            unsigned char* const bytes = picture.At(x, y);
            for (int channel = 0; channel < 3; ++channel)
                bytes[channel] = static_cast<unsigned char>(pixel >> (16 - 8 * channel));
        }
    XDestroyImage(image);
    XCloseDisplay(connection);
    return picture;
}

/// The lower left part of a picture.
Picture LowerLeft(const Picture& whole, int width, int height) {
    Picture part(width, height);
    for (int y = 0; y < height; ++y)
        std::copy_n(whole.At(0, whole.height - height + y), width * Picture::channels,
                    part.At(0, y));
    return part;
}

/// Of each pixel of `window` on the screen that pixel of the picture which lies under its middle.
Picture Enlarged(const Picture& picture, int width, int height) {
    Picture large(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            std::copy_n(picture.At((2 * x + 1) * picture.width / (2 * width),
                                   (2 * y + 1) * picture.height / (2 * height)),
                        Picture::channels, large.At(x, y));
    return large;
}

/// The largest difference of a channel between a picture and what the screen shows from row `top`
/// on; 256 when it does not fit there.
int DifferenceFrom(const Picture& picture, const Picture& screen, int top) {
    if (picture.width > screen.width || top + picture.height > screen.height)
        return 256;
    int most = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int i = 0; i < picture.width * Picture::channels; ++i)
            most = std::max(most, std::abs(picture.At(0, y)[i] - screen.At(0, top + y)[i]));
    return most;
}

class BigWindow : public NimbrelTest {
protected:
    void SetUp() override {
        // The music is heard in real time, and what beats with it is not the same twice.
        fs::create_directory("Data");
        fs::create_directory_symlink(RealData() / "Gfx", "Data/Gfx");
    }

    /// The frame that the demo shows in a window of its own size.
    Picture PlayedAsEver() {
        fs::create_directory("as ever");
        Start({{"NIMBREL_PROBE_TIMES", "0,25"},
               {"NIMBREL_PROBE_SHOTS", "25"},
               {"NIMBREL_PROBE_SHOT_DIR", "as ever"}});
        WaitForOrderlyEnd(patience);
        return Tools::ReadPpm(std::string("as ever/") + frameFile);
    }

    /// Starts it with the library under it, on this display. Time stands still at the moment.
    void StartBig(const std::string& name, const Tools::Environment& more = {}) {
        std::string times = "0";
        for (int frame = 0; frame < 5000; ++frame)
            times += "," + std::to_string(moment);
        Tools::Environment surroundings = {
            {"DISPLAY", name},
            {"LD_PRELOAD",
             Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so") + " " +
                 Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/big/libnimbrel_big.so")},
            {"NIMBREL_PROBE_TIMES", times},
            {"NIMBREL_PROBE_SHOTS", "25"},
            {"NIMBREL_PROBE_SHOT_DIR", "."}};
        surroundings.insert(more.begin(), more.end());
        StartAnywhere(surroundings);
    }

    /// Waits until the screen shows the picture from that row on; how far from it the last look
    /// was.
    static int DifferenceAfterAWhile(const Picture& picture, const std::string& name, int top) {
        int most = 256;
        for (const double end = Tools::SteadySeconds() + patience;
             most > sameMoment && Tools::SteadySeconds() < end;)
            most = DifferenceFrom(picture, Screenshot(name), top);
        return most;
    }

    /// What a frame leaves for the next one may round a colour differently.
    static constexpr int sameMoment = 2;
};

struct Monitor {
    const char* name;
    const char* size; ///< for Xvfb
    int width, height, top;
};

// 89 * 1920 / 960 = 178 rows, (400 - 178) / 2 = 111; 89 * 1280 / 960 = 118.67, (300 - 119) / 2
// = 90.5
const Monitor monitors[] = {{"Of_twice_the_width", "1920x400x24", 1920, 178, 111},
                            {"Of_a_width_between", "1280x300x24", 1280, 119, 90}};

class EachMonitor : public BigWindow, public ::testing::WithParamInterface<Monitor> {};

} // namespace

TEST_P(EachMonitor, Shows_the_demos_own_picture_hard_edged_as_wide_as_itself) {
    const Tools::VirtualDisplay screen({"-screen", "0", GetParam().size});
    const Picture asEver = PlayedAsEver();
    StartBig(screen.Name());
    ForeignWindow window(screen.Name(), caption, patience);
    EXPECT_EQ(window.Width(), GetParam().width);
    EXPECT_EQ(window.Height(), GetParam().height);
    const Picture large = Enlarged(asEver, GetParam().width, GetParam().height);
    EXPECT_LE(DifferenceAfterAWhile(large, screen.Name(), GetParam().top), sameMoment);
    EXPECT_TRUE(LowerLeft(Tools::ReadPpm(frameFile), asEver.width, asEver.height) == asEver)
        << "what the demo draws is what it draws without";
    window.AskToClose(); // to which it listens as little as ever
    window.PressKey(XK_Escape);
    WaitForOrderlyEnd(patience);
    EXPECT_EQ(Reported("errors"), 0);
}

INSTANTIATE_TEST_SUITE_P(BigWindow, EachMonitor, ::testing::ValuesIn(monitors),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(BigWindow, Is_as_ever_on_a_screen_that_is_no_wider) {
    const Tools::VirtualDisplay screen({"-screen", "0", "960x300x24"});
    StartBig(screen.Name());
    ForeignWindow window(screen.Name(), caption, patience);
    EXPECT_EQ(window.Width(), 960);
    EXPECT_EQ(window.Height(), 89);
    ASSERT_NO_FATAL_FAILURE(WaitForPlaying());
    window.PressKey(XK_Escape);
    WaitForOrderlyEnd(patience);
}

TEST_F(BigWindow, Is_as_ever_where_opengl_cannot_enlarge) {
    StartBig(display->Name(), {{"MESA_EXTENSION_OVERRIDE", "-GL_ARB_framebuffer_object"}});
    ForeignWindow window(display->Name(), caption, patience);
    ASSERT_NO_FATAL_FAILURE(WaitForPlaying());
    EXPECT_EQ(window.Width(), 960);
    window.PressKey(XK_Escape);
    EXPECT_THAT(run->Wait(patience).errors,
                ::testing::HasSubstr("This OpenGL has no framebuffer blits: the picture keeps its "
                                     "size.\n"));
}
