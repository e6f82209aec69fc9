// The page's fixed words and its style sheet.
#include "tools/explain/texts.h"

namespace Explain {

namespace {

struct Purpose {
    const char* pass; ///< the beginning of its name
    const char* words;
};

// The order counts: the first whose beginning fits.
constexpr Purpose purposes[] = {
    {"light depth", "How far the light sees: only the depth is kept."},
    {"shadow", "How much of each pixel lies in shadow, by comparing with the light's depth."},
    {"reflection", "What the water mirrors. With the eye above the water the world is turned over "
                   "at its surface and cut there; the sky alone is drawn uncut. Under water it is "
                   "the scene as it stands."},
    {"refraction", "What lies behind the water's surface: sky and nodes as the camera sees them. "
                   "The water's uniform 'blend' says how much of it is seen: 0 is nothing."},
    {"scene", "The picture itself: sky first, without depth; then the water, which bends the "
              "mirror image by its normal map; then the nodes that the camera's frustum lets "
              "through."},
    {"bright parts", "Bloom, first step: keeps what is at least as bright as the threshold."},
    {"blur, shrunk", "Bloom: down to a small square, so that a few samples reach far."},
    {"blur step", "Bloom: nine samples around each pixel, averaged; back and forth between two "
                  "small targets."},
    {"glow", "Bloom: the blurred square, stretched over the whole picture."},
    {"bloom", "The scene once more, and the glow added to it; the colour's alpha is its weight."},
    {"colour split", "Red and blue slide apart by the offset, in hundredths of the picture."},
    {"ripple, off", "Above the water the ripple copies, so that the number of steps stays the "
                    "same."},
    {"ripple", "Under water: the picture wobbles sideways and turns blue."},
    {"screen", "The last result on the screen, as one quad."},
    {"logo", "Over the finished picture, in the show's first ten seconds; the colour's alpha fades "
             "it."},
};

struct SegmentWords {
    Timeline::Segment segment;
    const char* words;
};

constexpr SegmentWords segmentWords[] = {
    {Timeline::Segment::Plain, "only the camera flies"},
    {Timeline::Segment::CityRise, "the city rises out of the sea"},
    {Timeline::Segment::FishSchool, "under water with the fish; the picture ripples"},
    {Timeline::Segment::ColourSplit, "red and blue drift apart with the music"},
    {Timeline::Segment::Glow, "the picture glows with the music"},
    {Timeline::Segment::Wisps, "the three wisps circle in the basin"},
};

constexpr char styleSheet[] = R"css(
:root {
  color-scheme: light dark;
  --ink: #1d2330; --paper: #fbfaf7; --faint: #6b7280; --line: #d9d6cd; --box: #f1efe8;
  --write: #b4540a; --read: #2563a8; --life: #e0b48a;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ink: #e4e6ea; --paper: #14171d; --faint: #98a0ad; --line: #333945; --box: #1c2029;
    --write: #f0a15a; --read: #7db4ee; --life: #6d4a2a;
  }
}
body {
  font: 15px/1.5 system-ui, sans-serif; color: var(--ink); background: var(--paper);
  max-width: 1080px; margin: 0 auto; padding: 1.5rem;
}
h1 { font-size: 1.6rem; margin: 0 0 1rem; }
h2 { font-size: 1.15rem; margin: 0 0 .3rem; }
h2 small { font-weight: normal; color: var(--faint); }
h3 { font-size: .95rem; margin: 1rem 0 .3rem; }
section { border-top: 1px solid var(--line); margin-top: 2rem; padding-top: 1.2rem; }
a { color: var(--read); text-decoration: none; }
a:hover { text-decoration: underline; }
p { margin: .3rem 0; max-width: 46rem; }
.faint { color: var(--faint); }
.wide { overflow-x: auto; }
.pic {
  display: inline-block; max-width: none; vertical-align: middle; background-size: 100% 100%;
  print-color-adjust: exact;
}
.shots { display: flex; flex-wrap: wrap; gap: .8rem 1.2rem; align-items: flex-start; }
figure { margin: .6rem 0; }
figcaption { font-size: .85rem; color: var(--faint); max-width: 30rem; }
table { border-collapse: collapse; font-size: .88rem; margin: .4rem 0; }
th, td { text-align: left; padding: .12rem .9rem .12rem 0; vertical-align: top; }
th { font-weight: 600; color: var(--faint); border-bottom: 1px solid var(--line); }
.n { text-align: right; font-variant-numeric: tabular-nums; }
ul { margin: .2rem 0; padding-left: 1.2rem; }
details { margin-top: .6rem; }
details td:nth-child(5) { white-space: nowrap; }
summary { cursor: pointer; color: var(--read); }
svg { display: block; min-width: 760px; width: 100%; font: 11px system-ui, sans-serif; }
svg text { fill: var(--ink); }
svg a text { fill: var(--read); }
.lane { stroke: var(--line); }
.life { stroke: var(--life); stroke-width: 5; stroke-linecap: round; }
.read { stroke: var(--read); stroke-width: 1.4; }
.ring { stroke: var(--read); stroke-width: 1.4; fill: var(--paper); }
.dot { fill: var(--write); }
)css";

} // namespace

std::string PurposeOf(const std::string& pass) {
    for (const Purpose& row : purposes)
        if (pass.starts_with(row.pass))
            return row.words;
    return "";
}

std::string DescriptionOf(Timeline::Segment segment) {
    for (const SegmentWords& row : segmentWords)
        if (row.segment == segment)
            return row.words;
    return "";
}

std::string StyleSheet() {
    return styleSheet;
}

} // namespace Explain
