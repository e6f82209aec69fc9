// Facades that are seen from far: what tells there is not a window but how windows go together, so
// they are larger and plainer than those near the eye, and light and dark by storeys and flats.

#include "art/textures/facade.h"
#include "art/textures/textures.h"

#include "art/common/noise.h"

#include <algorithm>
#include <cmath>

namespace Art {

namespace {

/// Who lives behind a part of the facade: which light they have, and how many are at home.
struct Character {
    Rgba plaster;
    Rgba light;
    float dusk;    ///< how bright a dark pane is
    float awake;   ///< share of lit windows in a storey that is at home
    float asleep;  ///< share of storeys that are not
    int stairwell; ///< the bay whose light burns on all landings, from the part's left
};

constexpr Character townCharacters[] = {
    {{0.64f, 0.53f, 0.44f}, {1.0f, 0.66f, 0.27f}, 1.0f, 0.52f, 0.35f, 2},
    {{0.58f, 0.57f, 0.58f}, {1.0f, 0.80f, 0.50f}, 1.0f, 0.42f, 0.50f, 5},
    {{0.62f, 0.49f, 0.44f}, {1.0f, 0.54f, 0.30f}, 1.0f, 0.62f, 0.45f, 3},
    {{0.60f, 0.58f, 0.52f}, {0.90f, 0.88f, 0.62f}, 1.0f, 0.34f, 0.50f, 1},
};
constexpr Character towerCharacters[] = {
    {{0.58f, 0.56f, 0.56f}, {1.0f, 0.70f, 0.32f}, 0.5f, 0.62f, 0.40f, 3},
    {{0.57f, 0.57f, 0.59f}, {1.0f, 0.82f, 0.54f}, 0.5f, 0.54f, 0.46f, 4},
    {{0.60f, 0.55f, 0.52f}, {1.0f, 0.60f, 0.26f}, 0.5f, 0.66f, 0.42f, 2},
    {{0.56f, 0.57f, 0.58f}, {1.0f, 0.77f, 0.42f}, 0.5f, 0.58f, 0.36f, 5},
};

/// Parts of a facade, facadePart bays wide and high, from its lower left.
constexpr int facadeParts = facadeCells / facadePart;

const Character& CharacterOf(const Character (&characters)[4], int column, int row) {
    return characters[column / facadePart + facadeParts * (row / facadePart)];
}

/// One window of a flat; two that stand side by side belong to one.
struct Window {
    unsigned storey; ///< which
    unsigned flat;   ///< in the whole facade
    unsigned own;
};

Window WindowAt(int column, int row, unsigned seed) {
    const auto x = static_cast<unsigned>(column);
    const auto y = static_cast<unsigned>(row);
    return {Hash(y, x / facadePart, seed), Hash(x / 2, y, seed + 1), Hash(x, y, seed + 2)};
}

bool IsLit(const Window& window, const Character& character) {
    const bool asleep = HashUnit(window.storey) < character.asleep;
    const float share = asleep ? 0.06f : character.awake;
    return 0.75f * HashUnit(window.flat) + 0.25f * HashUnit(window.own) < share;
}

/// What shines has one alpha from edge to edge: its share of a pixel is then its light's share.
Rgba Shining(Rgba light, float level) {
    constexpr float glow = 0.94f;
    Rgba colour = Shade(light, level);
    colour.a = 1 - glow;
    return colour;
}

/// A lit pane at p, 0..1 in it: a lamp somewhere in the room, a blind half-way down or a curtain at
/// one side; now and then only the light of a screen.
Rgba LitPane(vec2 p, const Window& window, Rgba light) {
    constexpr Rgba screen{0.46f, 0.60f, 0.90f};
    if (HashUnit(window.flat, 3) < 0.06f)
        return Shining(screen, 0.45f);
    const float blind = HashUnit(window.own, 4) < 0.45f ? HashUnit(window.own, 5) * 0.8f : 0.0f;
    const bool curtain = HashUnit(window.own, 6) < 0.35f && p.x < 0.32f;
    const vec2 lamp{0.25f + 0.5f * HashUnit(window.own, 8), 0.55f + 0.3f * HashUnit(window.own, 9)};
    const float near = std::exp(-3 * Dot(p - lamp, p - lamp));
    const float strength = 0.50f + 0.34f * HashUnit(window.flat, 7);
    const float level = strength * (0.72f + 0.45f * near);
    return Shining(light, level * (p.y > 1 - blind ? 0.6f : 1.0f) * (curtain ? 0.66f : 1.0f));
}

/// The dusk in a dark pane: in the far town not so dark that each stands out of its wall.
Rgba DarkPane(vec2 p, const Window& window, float dusk) {
    return Shade({0.30f, 0.31f, 0.36f},
                 dusk * (0.72f + 0.4f * p.y) * (0.85f + 0.3f * HashUnit(window.own, 8)));
}

/// Panes between bars, which keep the alpha of a light behind them.
Rgba Pane(vec2 p, const Window& window, const Character& character) {
    const Rgba pane = IsLit(window, character) ? LitPane(p, window, character.light)
                                               : DarkPane(p, window, character.dusk);
    const bool bar = std::abs(p.x - 0.5f) < 0.04f || std::abs(p.y - 0.62f) < 0.03f;
    return bar ? Shade(pane, 0.8f) : pane;
}

/// p within a rectangle, 0..1 in it.
vec2 Within(vec2 p, float x0, float x1, float y0, float y1) {
    return {(p.x - x0) / (x1 - x0), (p.y - y0) / (y1 - y0)};
}

/// A narrow light over each landing.
Rgba Stairwell(vec2 p, Rgba wall, const Character& character) {
    if (Inside(p, 0.38f, 0.62f, 0.10f, 0.86f))
        return Shining(Lerp(character.light, {0.9f, 0.9f, 0.8f, 1}, 0.25f), 0.5f);
    return wall;
}

/// Shop fronts under an awning, some of them shut.
Rgba ShopFront(vec2 p, Rgba wall, const Window& window, const Character& character) {
    if (p.y > 0.90f)
        return Shade(wall, 1.15f);
    if (p.y > 0.74f)
        return Shade({0.46f, 0.28f, 0.24f}, 0.8f + 0.5f * HashUnit(window.flat, 9));
    if (!Inside(p, 0.08f, 0.92f, 0.14f, 0.74f))
        return Shade(wall, 0.85f);
    if (HashUnit(window.own, 10) < 0.35f)
        return Shade({0.27f, 0.24f, 0.22f}, 1.0f);
    return Shining(character.light, 0.5f + 0.25f * p.y);
}

Rgba TownCell(int column, int row, vec2 p, Rgba wall, const Character& character) {
    const Window window = WindowAt(column, row, 61);
    if (row == 0)
        return ShopFront(p, wall, window, character);
    if (column % facadePart == character.stairwell)
        return Stairwell(p, wall, character);
    if (Inside(p, 0.19f, 0.81f, 0.20f, 0.80f))
        return Pane(Within(p, 0.19f, 0.81f, 0.20f, 0.80f), window, character);
    if (p.y < 0.08f)
        return Shade(wall, 0.9f);
    return Shade(wall, Inside(p, 0.15f, 0.85f, 0.14f, 0.86f) ? 1.06f : 1.0f);
}

/// Where the machines of a tower are: no windows, a band of louvres.
bool IsMachineFloor(int row) {
    return row % facadePart == 5;
}

Rgba TowerCell(int column, int row, vec2 p, Rgba wall, const Character& character) {
    const Window window = WindowAt(column, row, 92);
    const float rib = std::min(p.x, 1 - p.x);
    if (rib < 0.10f)
        return Shade(wall, 1.05f + 0.2f * SmoothStep(0.10f, 0.0f, rib));
    if (IsMachineFloor(row))
        return Shade(wall, Inside(p, 0.10f, 0.90f, 0.15f, 0.85f) ? 0.72f : 0.88f);
    if (column % facadePart == character.stairwell)
        return Stairwell(p, wall, character);
    // Two narrow windows to a bay: the flight between the towers passes them closely.
    for (const float x0 : {0.15f, 0.54f})
        if (Inside(p, x0, x0 + 0.31f, 0.24f, 0.88f))
            return Pane(Within(p, x0, x0 + 0.31f, 0.24f, 0.88f), window, character);
    return Shade(wall, p.y < 0.2f ? 0.8f : 1.0f);
}

template <typename Cell>
Picture PaintFar(int cellPixels, const Character (&characters)[4], unsigned seed, Cell cell) {
    return PaintCells(facadeCells, facadeCells, cellPixels, [&](int column, int row, vec2 p) {
        const vec2 place{static_cast<float>(column) + p.x, static_cast<float>(row) + p.y};
        const Character& character = CharacterOf(characters, column, row);
        const Rgba wall = Shade(character.plaster, Grain(place, facadeCells, facadeCells, seed));
        return cell(column, row, p, wall, character);
    });
}

} // namespace

Picture PaintTower() {
    return PaintFar(64, towerCharacters, 91, TowerCell);
}

Picture PaintTown() {
    return PaintFar(32, townCharacters, 60, TownCell);
}

} // namespace Art
