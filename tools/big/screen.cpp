#include "tools/big/screen.h"

#include <algorithm>
#include <memory>
#include <span>

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

namespace Big {

namespace {

struct Closer {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

struct Freer {
    void operator()(XRRMonitorInfo* monitors) const { XRRFreeMonitors(monitors); }
};

Area AreaOf(const XRRMonitorInfo& monitor) {
    return {monitor.x, monitor.y, monitor.width, monitor.height};
}

bool HasMonitors(Display* display) {
    int major = 0;
    int minor = 0;
    int ignored = 0;
    return XRRQueryExtension(display, &ignored, &ignored) != 0 &&
           XRRQueryVersion(display, &major, &minor) != 0 &&
           (major > 1 || (major == 1 && minor >= 5));
}

Area WholeDesktop(Display* display) {
    const int number = DefaultScreen(display);
    return {0, 0, DisplayWidth(display, number), DisplayHeight(display, number)};
}

} // namespace

Area ViewersScreen() {
    const std::unique_ptr<Display, Closer> display(XOpenDisplay(nullptr));
    if (!display)
        return {};
    int count = 0;
    std::unique_ptr<XRRMonitorInfo, Freer> first;
    if (HasMonitors(display.get()))
        first.reset(XRRGetMonitors(display.get(), DefaultRootWindow(display.get()), True, &count));
    if (!first || count < 1)
        return WholeDesktop(display.get());
    const std::span<const XRRMonitorInfo> monitors(first.get(), static_cast<std::size_t>(count));
    const auto primary = std::find_if(monitors.begin(), monitors.end(),
                                      [](const XRRMonitorInfo& each) { return each.primary != 0; });
    return AreaOf(primary != monitors.end() ? *primary : monitors.front());
}

Area Enlarged(int width, int height, const Area& screen) {
    Area area = screen;
    area.width = std::max(width, screen.width);
    area.height = (height * area.width * 2 + width) / (width * 2);
    area.y += std::max(0, screen.height - area.height) / 2;
    return area;
}

} // namespace Big
