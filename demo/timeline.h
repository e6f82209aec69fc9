#pragma once

#include "engine/math/vec3.h"

/// The demo's choreography as plain arithmetic: what happens at a given time and where things
/// are then. Nothing here reads a clock or draws; Scene1 asks and applies.
///
/// All times are seconds of demo time, 0 at the end of loading. The cuts are those of
/// Show::flights; they are doubles, the demo time that is compared with them is a
/// float widened to double.
namespace Timeline {

/// The part of the show that has actions of its own at a given time.
enum class Segment {
    Plain,       ///< only the camera flies
    CityRise,    ///< the city comes up out of the sea
    FishSchool,  ///< under water, the picture ripples
    ColourSplit, ///< red and blue drift apart on the beat
    Glow,        ///< bloom on the beat
    Wisps        ///< the three lights circle in the basin
};

/// The segment at time `t`. Bounds are strict on both sides: at a cut itself it is
/// Segment::Plain for one frame.
Segment SegmentAt(double t);

/// Where Segment::Wisps turns the camera.
enum class WispView {
    Approach, ///< before 90.428 s: at the red wisp, and the bloom goes out
    Flight,   ///< 90.428 to 104.34 s, both included: along the flight
    Finale    ///< after 104.34 s: at the middle of the basin
};

/// The view of Segment::Wisps at time `t`.
WispView WispViewAt(double t);

/// Height of the city's origin (world y) during Segment::CityRise: from -20 to 0 over the
/// segment, eased at both ends.
float CityHeight(float t);

/// Size of the school: cells along x and y, and fish in each cell.
constexpr int fishColumns = 4;
constexpr int fishRows = 3;
constexpr int fishPerCell = 5;
constexpr int fishCount = fishColumns * fishRows * fishPerCell;

/// Place of a fish in Scene1's list: column 0..3, row 0..2, number in its cell 0..4.
int FishIndex(int column, int row, int number);

/// World position of every fish in a cell at time `t`, seen from `eye`: a grid of two units that
/// follows the eye in x and y and drifts towards -x at two units per second, at z = -50.
/// The fish of one cell share one spot, which is intended: one is seen, for their mesh is a shoal.
Vell::vec3 FishPosition(const Vell::vec3& eye, float t, int column, int row);

/// World positions of the wisps, and of the lights they cast on the city, at time `t`.
Vell::vec3 RedWispPosition(float t);
Vell::vec3 GreenWispPosition(float t);
Vell::vec3 BlueWispPosition(float t);

/// How a segment's effect level answers to the music: it jumps to `peak`, decays at 3 units per
/// second and stops at `rest`.
struct Pulse {
    double peak;
    double rest;
};

constexpr Pulse splitPulse = {0.7, 0.0}; ///< Segment::ColourSplit
constexpr Pulse glowPulse = {1.0, 0.25}; ///< Segment::Glow

/// The effect level after a frame of `dt` seconds. `band` is the magnitude of the lowest band of
/// the spectrum: the level jumps to the peak while it is below 0.03 and decays otherwise. It is
/// the gap before a beat that triggers, not the beat: intended, the music leaves such gaps.
float NextLevel(float level, float band, float dt, const Pulse& pulse);

/// The logo is drawn before this time.
constexpr double logoEnd = 10.0;

/// Opacity of the logo: 1 at the start, 0 at logoEnd.
float LogoAlpha(float t);

} // namespace Timeline
