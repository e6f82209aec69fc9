#pragma once

#include "engine/math/vec3.h"

#include <cstddef>
#include <iterator>
#include <optional>

/// What the show is: its picture, its length, the music's phrase, the flights of the eye and how
/// high the city stands meanwhile. Every part that must agree about it reads it here: the program,
/// its timeline, the programs that make the data, tools and tests.
///
/// Constants only; nothing of the engine is needed but its vec3, and nothing is to be linked.
/// Times are seconds of demo time, 0 at the end of loading; points are in world space, +y up, with
/// the water at y = 0.
namespace Show {

/// The window and its picture, in pixels: a very wide, very low strip.
inline constexpr int width = 960;
inline constexpr int height = 89;

/// Vertical field of view, in degrees.
inline constexpr float fieldOfView = 25.0f;

/// Eight bars of the music: every cut falls on a phrase or on the middle of one.
inline constexpr double phrase = 13.912;
/// A phrase and a half.
inline constexpr double longPhrase = 20.868;

/// How long the show lasts: eight and a half phrases.
inline constexpr double runningTime = 118.252;

/// Height of the city's origin before it has risen, and after.
inline constexpr float sunkenHeight = -20.0f;
inline constexpr float risenHeight = 0.0f;

/// How the city stands during a flight.
enum class City {
    Sunken, ///< at sunkenHeight
    Rising, ///< eased from sunkenHeight to risenHeight over the whole flight
    Risen   ///< at risenHeight
};

/// One straight flight of the eye, at constant speed.
struct Flight {
    const char* name; ///< what it shows, in a few words
    double begin;     ///< demo time of the cut that starts it
    float duration;   ///< single precision, as the player of the flights counts
    Vell::vec3 start; ///< the eye at `begin` ...
    Vell::vec3 end;   ///< ... and after `duration`
    /// The one point that is looked at all the time; without it the eye looks where it flies.
    std::optional<Vell::vec3> aim;
    City city;
};

/// The flights' places in `flights`.
enum FlightNumber : std::size_t {
    OpenSea,
    CityRise,
    UnderWater,
    BetweenTowers,
    Canal,
    ToBasin,
    OverRoofs,
    Basin
};

inline constexpr std::size_t flightCount = Basin + 1;

inline constexpr float phraseFlight = static_cast<float>(phrase);
inline constexpr float longFlight = static_cast<float>(longPhrase);
inline constexpr std::optional<Vell::vec3> whereItFlies = std::nullopt;

// clang-format off
/// Played one after the other.
inline constexpr Flight flights[] = {
    {.name = "out over the open sea", .begin = 0.0, .duration = phraseFlight,
     .start = {0, 1, 0}, .end = {0, 1, -10}, .aim = whereItFlies, .city = City::Sunken},
    {.name = "away from the rising city", .begin = 13.912, .duration = phraseFlight,
     .start = {50, 1, -50}, .end = {50, 10, -100}, .aim = Vell::vec3(0, 0, 0), .city = City::Rising},
    {.name = "under water", .begin = 27.824, .duration = phraseFlight,
     .start = {30, -4, -100}, .end = {30, -2, -50}, .aim = whereItFlies, .city = City::Risen},
    {.name = "between the towers", .begin = 41.736, .duration = phraseFlight,
     .start = {40, 8, 5}, .end = {40, 10, 15}, .aim = Vell::vec3(50, 11, 11), .city = City::Risen},
    {.name = "low along the canal", .begin = 55.648, .duration = longFlight,
     .start = {25, 0.5f, 34}, .end = {10, 3, 58}, .aim = whereItFlies, .city = City::Risen},
    {.name = "towards the basin", .begin = 76.516, .duration = phraseFlight,
     .start = {7, 2, -5}, .end = {17, 2, 4}, .aim = Vell::vec3(30, 2, 14), .city = City::Risen},
    {.name = "over the roofs", .begin = 90.428, .duration = phraseFlight,
     .start = {5, 8, 12}, .end = {25, 5, 12}, .aim = whereItFlies, .city = City::Risen},
    {.name = "along the basin's edge", .begin = 104.34, .duration = phraseFlight,
     .start = {20, 6, 5}, .end = {30, 6, 4}, .aim = Vell::vec3(25, 3, 13), .city = City::Risen},
};
// clang-format on
static_assert(std::size(flights) == flightCount);

/// Demo time at which a flight is over: the next one's cut, or the end of the show.
constexpr double EndOf(std::size_t flight) {
    return flight + 1 < flightCount ? flights[flight + 1].begin : runningTime;
}

// Times are compared to half a millisecond, half of the last digit in which they are given here: as
// binary fractions, 118.252 and the sum of the eight durations need not be the same number.
namespace Check {

constexpr bool Same(double a, double b) {
    return a - b < 0.0005 && b - a < 0.0005;
}

constexpr bool FlightsFollowEachOther() {
    for (std::size_t i = 0; i < flightCount; ++i)
        if (!Same(flights[i].begin + flights[i].duration, EndOf(i)))
            return false;
    return flights[0].begin == 0;
}

constexpr bool CutsFallOnHalfPhrases() {
    constexpr double half = phrase / 2;
    for (const Flight& flight : flights)
        if (!Same(flight.begin, static_cast<int>(flight.begin / half + 0.1) * half))
            return false;
    return true;
}

constexpr bool CityRisesOnce() {
    for (std::size_t i = 0; i < flightCount; ++i)
        if (flights[i].city != (i < CityRise    ? City::Sunken
                                : i == CityRise ? City::Rising
                                                : City::Risen))
            return false;
    return true;
}

static_assert(Same(longPhrase, phrase * 1.5));
static_assert(Same(runningTime, phrase * 8.5));
// Cast or written as 13.912f and 20.868f, the durations are the same floats.
static_assert(phraseFlight == 13.912f && longFlight == 20.868f);
static_assert(FlightsFollowEachOther(), "a flight ends where the next cut, or the end, is");
static_assert(CutsFallOnHalfPhrases());
static_assert(CityRisesOnce(), "sunken before the flight CityRise, risen after it");

} // namespace Check
} // namespace Show
