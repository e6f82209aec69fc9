#include "art/city/nearness.h"

#include "art/city/flights.h"

#include <vector>

namespace Art {

namespace {

constexpr int eyesPerFlight = 120;

/// An eye with the axes of its picture.
struct View {
    Eye eye;
    vec3 right;
    vec3 up;
};

const std::vector<View>& Views() {
    static const std::vector<View> views = [] {
        std::vector<View> all;
        for (const Show::Flight& flight : Show::flights) {
            if (flight.city != Show::City::Risen || flight.start.y < 0)
                continue;
            for (int i = 0; i < eyesPerFlight; ++i) {
                const Eye eye = EyeAt(flight, (static_cast<float>(i) + 0.5f) / eyesPerFlight);
                const vec3 right = Normalized(Cross(eye.forward, {0, 1, 0}));
                all.push_back({eye, right, Cross(right, eye.forward)});
            }
        }
        return all;
    }();
    return views;
}

} // namespace

float LeastDepth(vec3 point) {
    constexpr float margin = 1.04f; // of the picture, for what lies between two eyes
    float least = 1e9f;
    for (const View& view : Views()) {
        const vec3 to = point - view.eye.position;
        const float depth = Dot(to, view.eye.forward);
        const bool shown = depth > 0 &&
                           std::abs(Dot(to, view.right)) < depth * pictureHalfWidth * margin &&
                           std::abs(Dot(to, view.up)) < depth * pictureHalfHeight * margin;
        if (shown)
            least = std::min(least, depth);
    }
    return least;
}

} // namespace Art
