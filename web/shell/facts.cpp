// Prints what the page must know of the show, as JSON.

#include "demo/assets.h"
#include "demo/show.h"

#include <cstdio>

int main() {
    std::printf("{\"width\": %d, \"height\": %d, \"seconds\": %.3f, \"music\": \"%s\", "
                "\"flights\": [",
                Show::width, Show::height, Show::runningTime, Assets::music);
    const char* between = "";
    for (const Show::Flight& flight : Show::flights) {
        std::printf("%s{\"name\": \"%s\", \"begin\": %.3f}", between, flight.name, flight.begin);
        between = ", ";
    }
    std::puts("]}");
}
