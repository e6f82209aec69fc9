#include "art/city/nearwalls.h"

#include "art/city/fittingparts.h"
#include "art/city/nearness.h"

namespace Art {

namespace {

constexpr vec3 up{0, 1, 0};
constexpr float storeyHeight = 1.0f;
const Paint trim = Plain(Material::Trim);

/// How much is built on a bay.
enum class Care { None, Window, Everything };

/// One bay of one storey.
struct Bay {
    float x0, x1, y0;
    Care care = Care::None;
    unsigned id = 0;

    float Middle() const { return (x0 + x1) / 2; }
};

Care CareFor(const Builder& b, const Front& front, float x0, float x1, float y0) {
    constexpr float windowDepth = 3.2f;
    constexpr float dressDepth = 2.25f;
    float least = 1e9f;
    for (const float fx : {0.2f, 0.5f, 0.8f})
        for (const float fy : {0.05f, 0.35f, 0.65f, 0.95f})
            least = std::min(least, LeastDepth(b.GetPlace().World(
                                        {Lerp(x0, x1, fx), y0 + fy * storeyHeight, front.z})));
    return least < dressDepth ? Care::Everything : least < windowDepth ? Care::Window : Care::None;
}

Band BandOf(Material material) {
    if (material == Material::HouseWarm)
        return Band::Warm;
    return material == Material::HouseCool ? Band::Cool : Band::Pale;
}

/// Plaster of one storey: a repeat is four bays long, and the band fills the storey.
Paint PlasterPaint(Band band, float first, float bayWidth, float foot) {
    constexpr float perUnit = 1.0f / plasterBands;
    return {Material::Plaster,
            {first / plasterBands, (static_cast<float>(band) + foot) * perUnit},
            {perUnit / bayWidth, perUnit}};
}

enum class Kind { Window, Door, Shop, Blind };

Kind KindOf(const Front& front, const Bay& bay, bool ground) {
    const unsigned dice = bay.id % 8;
    if (ground)
        return dice < 3 ? Kind::Door : dice < 6 ? Kind::Shop : Kind::Window;
    const bool cramped = bay.x1 - bay.x0 < 0.8f;
    return dice >= (cramped ? 6 : 7) && !front.narrow ? Kind::Blind : Kind::Window;
}

Opening OpeningOf(Kind kind, const Bay& bay, float z) {
    const float m = bay.Middle();
    switch (kind) {
    case Kind::Door:
        return {m - 0.27f, m + 0.27f, bay.y0 + 0.04f, bay.y0 + 0.90f, z};
    case Kind::Shop:
        return {m - 0.36f, m + 0.36f, bay.y0 + 0.16f, bay.y0 + 0.76f, z};
    default:
        return {m - 0.21f, m + 0.21f, bay.y0 + 0.22f, bay.y0 + 0.80f, z};
    }
}

Paint PaneOf(Kind kind, const Bay& bay, const Opening& o) {
    const vec2 size{o.x1 - o.x0, o.y1 - o.y0};
    const int variant = static_cast<int>(bay.id >> 8 & 7);
    if (kind == Kind::Door)
        return FittingPaint(Fitting::Door, variant, size);
    const unsigned light = (bay.id >> 4) % 16;
    const Fitting pane = kind == Kind::Shop ? Fitting::Shop
                         : light < 6        ? Fitting::LitPane
                         : light < 9        ? Fitting::DimPane
                                            : Fitting::DarkPane;
    Paint paint = FittingPaint(pane, variant, size);
    paint.shines = pane != Fitting::DarkPane;
    return paint;
}

void DressWindow(Builder& b, const Bay& bay, const Opening& o, const Front& front, Random& random) {
    const int variant = static_cast<int>(bay.id >> 12 & 7);
    if (front.width < 0.9f) // an oriel's side, whose house stands right beside the window
        return;
    AddSill(b, o);
    if (bay.care == Care::Window || front.sheltered)
        return;
    AddLintel(b, o, random.Chance(0.5f) ? 0.09f : 0.035f);
    const bool boxed = random.Chance(0.45f);
    const bool room = bay.x1 - bay.x0 > 0.8f && !front.narrow;
    if (random.Chance(0.62f) && room)
        AddShutters(b, o, variant, random);
    if (boxed)
        AddFlowerBox(b, o, variant, random);
}

void DressShop(Builder& b, const Bay& bay, const Opening& o, bool sheltered, Random& random) {
    const int variant = static_cast<int>(bay.id >> 12 & 7);
    AddSill(b, o);
    if (sheltered)
        return;
    if (random.Chance(0.5f))
        AddAwning(b, o, variant);
    else
        AddSignBoard(b, o, variant);
    if (bay.care == Care::Everything && random.Chance(0.5f))
        AddHangingSign(b, bay.x0 + 0.02f, o.y1 + 0.12f, o.z);
}

void DressDoor(Builder& b, const Bay& bay, const Opening& o, bool sheltered, Random& random) {
    const Paint stone = FittingPaint(Fitting::Stonework);
    AddBox(b, {{o.x0 - 0.06f, o.x1 + 0.06f}, {bay.y0, bay.y0 + 0.06f}, {o.z, o.z + 0.16f}},
           {stone, stone});
    AddLintel(b, o, 0.10f);
    if (!sheltered && random.Chance(0.7f))
        AddWallLantern(b, {o.x1 + 0.14f, bay.y0 + 0.70f, o.z}, 0.16f, 0.45f);
}

void DressBay(Builder& b, const Bay& bay, Kind kind, const Opening& o, const Front& front) {
    Random random(bay.id);
    switch (kind) {
    case Kind::Window:
        DressWindow(b, bay, o, front, random);
        break;
    case Kind::Shop:
        DressShop(b, bay, o, front.sheltered, random);
        break;
    case Kind::Door:
        DressDoor(b, bay, o, front.sheltered, random);
        break;
    case Kind::Blind:
        break;
    }
}

/// What is left of the storey's wall round the openings.
std::vector<std::vector<vec2>> Pierced(float width, float height, float foot,
                                       const std::vector<Opening>& openings) {
    std::vector<std::vector<vec2>> polygons;
    const auto piece = [&](float x0, float x1, float y0, float y1) {
        if (x1 - x0 > 1e-3f && y1 - y0 > 1e-3f)
            polygons.push_back({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
    };
    float x = 0;
    for (const Opening& o : openings) {
        piece(x, o.x0, 0, height);
        piece(o.x0, o.x1, 0, o.y0 - foot);
        piece(o.x0, o.x1, o.y1 - foot, height);
        x = o.x1;
    }
    piece(x, width, 0, height);
    return polygons;
}

/// Washing over two bays between windows, or a wall lantern: what breaks the row.
void DressStorey(Builder& b, const Front& front, const std::vector<Bay>& bays) {
    Random random(bays.front().id + 5);
    const float y = bays.front().y0;
    const Bay& some =
        bays[static_cast<std::size_t>(random.Int(0, static_cast<int>(bays.size()) - 1))];
    const bool washing = !front.street || y > front.y0 + 0.5f;
    if (front.sheltered || some.care != Care::Everything)
        return;
    if (washing && bays.size() > 1 && random.Chance(0.35f)) {
        const Bay& first =
            bays[static_cast<std::size_t>(random.Int(0, static_cast<int>(bays.size()) - 2))];
        AddWashingLine(b, first.Middle(), first.Middle() + (first.x1 - first.x0), y + 0.16f,
                       front.z, random);
    }
}

void AddCourse(Builder& b, const Front& front, float y) {
    AddBox(b, {{0, front.width}, {y - 0.05f, y + 0.03f}, {front.z, front.z + 0.055f}}, {trim, trim},
           true);
}

void AddNearStorey(Builder& b, const Front& front, const std::vector<Bay>& bays, float first,
                   bool ground) {
    const float foot = bays.front().y0;
    const float bayWidth = bays.front().x1 - bays.front().x0;
    std::vector<Opening> openings;
    std::vector<Kind> kinds;
    for (const Bay& bay : bays) {
        const Kind kind = KindOf(front, bay, ground);
        kinds.push_back(kind);
        if (kind != Kind::Blind)
            openings.push_back(OpeningOf(kind, bay, front.z));
    }
    const Paint plaster = PlasterPaint(BandOf(front.material), first, bayWidth, 0);
    b.Open({0, foot, front.z}, {1, 0, 0}, up, plaster).polygons =
        Pierced(front.width, storeyHeight, foot, openings);
    const Paint& lining = trim;
    std::size_t next = 0;
    for (std::size_t i = 0; i < bays.size(); ++i) {
        if (kinds[i] == Kind::Blind)
            continue;
        const Opening& o = openings[next++];
        AddReveal(b, o, kinds[i] == Kind::Door ? 0.18f : 0.12f, lining,
                  PaneOf(kinds[i], bays[i], o));
        DressBay(b, bays[i], kinds[i], o, front);
    }
    DressStorey(b, front, bays);
    if (!ground)
        AddCourse(b, front, foot);
}

/// The bays of a storey, or none when no flight comes near enough to any.
std::vector<Bay> NearBays(const Builder& b, const Front& front, float y0, unsigned storey) {
    // No wider than a repeat of the plaster, which would lose texels otherwise.
    const int count = std::max(1, static_cast<int>(std::ceil(front.width - 0.001f)));
    const float width = front.width / static_cast<float>(count);
    std::vector<Bay> bays;
    bool any = false;
    for (int i = 0; i < count; ++i) {
        const float x0 = width * static_cast<float>(i);
        const Care care = CareFor(b, front, x0, x0 + width, y0);
        any = any || care != Care::None;
        bays.push_back(
            {x0, x0 + width, y0, care, Hash(front.seed, static_cast<unsigned>(i), 40 + storey)});
    }
    return any ? bays : std::vector<Bay>{};
}

} // namespace

void AddFront(Builder& b, const Front& front) {
    const vec2 from{0, front.z};
    const vec2 to{front.width, front.z};
    const float first = static_cast<float>(front.seed % plasterBands);
    float begun = front.y0; // of the part painted as ever
    const auto finish = [&](float y) {
        Paint paint = front.far;
        paint.origin.y += (begun - front.y0) * paint.scale.y;
        if (front.sheltered && begun > front.y0) // no storey, but what is left under the vault
            paint = PlasterPaint(BandOf(front.material), first, 1, 0);
        AddWall(b, from, to, begun, y, paint);
    };
    unsigned storey = 0;
    for (float y = front.y0; y + storeyHeight < front.y1 + 0.01f; y += storeyHeight, ++storey) {
        const std::vector<Bay> bays = NearBays(b, front, y, storey);
        if (bays.empty())
            continue;
        finish(y);
        AddNearStorey(b, front, bays, first, front.street && storey == 0);
        begun = y + storeyHeight;
    }
    finish(front.y1);
    if (begun > front.y0 && !front.sheltered && !front.narrow && Hash(front.seed, 77) % 3 != 0)
        AddDrainPipe(b, front.width - 0.08f, front.y0, front.y1, front.z);
}

namespace {

/// Whether any flight comes near the upper edge between two points.
bool PassesNear(vec2 from, vec2 to, float y) {
    const int steps = std::max(2, static_cast<int>(Length(to - from) * 2));
    for (int i = 0; i <= steps; ++i) {
        const vec2 p = Lerp(from, to, static_cast<float>(i) / static_cast<float>(steps));
        for (const float height : {0.05f, y})
            if (LeastDepth({p.x, height, p.y}) < 4)
                return true;
    }
    return false;
}

} // namespace

void AddQuayWall(Builder& b, vec2 from, vec2 to, float y1) {
    constexpr float low = 1.0f / (plasterBands * plasterTexels);
    const float length = Length(to - from);
    const Paint masonry{Material::Plaster, {0, low}, {1.0f / plasterBands, 1.0f / plasterBands}};
    b.SetPlace({{from.x, 0, from.y}, (to - from) * (1 / length)});
    b.Rect({0, Builder::splitHigh, 0}, {1, 0, 0}, up, length, y1 - Builder::splitHigh, masonry);
    if (PassesNear(from, to, y1))
        AddBox(b, {{0, length}, {y1 - 0.10f, y1 + 0.035f}, {-0.16f, 0.05f}}, {trim, trim}, true);
    b.SetPlace({});
}

} // namespace Art
