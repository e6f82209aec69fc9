#include "art/lightmap/packing.h"

#include <algorithm>
#include <numeric>

namespace Art {

namespace {

/// The upper edge of what is already placed: for every column the first free row, kept as
/// runs of equal height.
class Skyline {
public:
    explicit Skyline(int side) : size(side), runs{{0, 0, side}} {}

    /// Puts a w x h rectangle as low as possible; false when nothing is free.
    bool Place(int w, int h, int& x, int& y) {
        int best = -1;
        int bestTop = size + 1;
        for (int i = 0; i < static_cast<int>(runs.size()); ++i) {
            const int top = TopFor(i, w) + h;
            if (top < bestTop) {
                bestTop = top;
                best = i;
            }
        }
        if (best < 0 || bestTop > size)
            return false;
        x = runs[best].x;
        y = bestTop - h;
        Raise(best, w, bestTop);
        return true;
    }

private:
    struct Run {
        int x, y, width;
    };

    /// Lowest row at which a rectangle of this width can stand from run `i` on.
    int TopFor(int i, int w) const {
        if (runs[i].x + w > size)
            return 2 * size;
        int y = 0;
        for (int left = w; left > 0; ++i) {
            y = std::max(y, runs[i].y);
            left -= runs[i].width;
        }
        return y;
    }

    void Raise(int i, int w, int top) {
        runs.insert(runs.begin() + i, {runs[i].x, top, w});
        int covered = w;
        const auto next = runs.begin() + i + 1;
        while (covered > 0 && next->width <= covered) {
            covered -= next->width;
            runs.erase(next);
        }
        if (covered > 0) {
            next->x += covered;
            next->width -= covered;
        }
    }

    int size;
    std::vector<Run> runs;
};

} // namespace

bool PackCharts(std::vector<Chart>& charts, int size) {
    std::vector<std::size_t> order(charts.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        if (charts[a].height != charts[b].height)
            return charts[a].height > charts[b].height;
        return charts[a].width > charts[b].width;
    });
    Skyline skyline(size);
    for (const std::size_t i : order) {
        Chart& chart = charts[i];
        if (!skyline.Place(chart.width + 2 * chartPadding, chart.height + 2 * chartPadding, chart.x,
                           chart.y))
            return false;
        chart.x += chartPadding;
        chart.y += chartPadding;
    }
    return true;
}

} // namespace Art
