#include "art/city/parts.h"

#include "art/city/fittingparts.h"
#include "art/common/noise.h"

namespace Art {

namespace {

constexpr vec3 up{0, 1, 0};

vec3 At(vec2 ground, float y) {
    return {ground.x, y, ground.y};
}

void AddWallPiece(Builder& b, vec2 from, vec2 to, float y0, float y1, Paint paint, float foot) {
    const vec2 along = to - from;
    const float length = Length(along);
    if (length < 1e-4f || y1 - y0 < 1e-4f)
        return;
    paint.origin.y += (y0 - foot) * paint.scale.y;
    b.Rect(At(from, y0), At(along * (1 / length), 0), up, length, y1 - y0, paint);
}

/// The lower left of the part of a facade that a house has to itself, in bays and storeys. Parts
/// are 8 by 8; what is higher takes two of them, one upon the other.
vec2 PartOf(Material material, float height, unsigned house) {
    constexpr float part = 8;
    if (material != Material::Tower && material != Material::Town)
        return {};
    const float column = Hash(house, 11) % 2 == 0 ? 0.0f : part;
    const bool upper = height <= part && Hash(house, 12) % 2 == 0;
    return {column, upper ? part : 0.0f};
}

} // namespace

std::vector<vec2> Outwards(std::vector<vec2> outline) {
    float area = 0; // walls face outwards when it is negative, in x and z
    for (std::size_t i = 0; i < outline.size(); ++i)
        area += Cross(outline[i], outline[(i + 1) % outline.size()]);
    if (area > 0)
        std::reverse(outline.begin(), outline.end());
    return outline;
}

Paint FacadePaint(Material material, vec2 size, unsigned house, unsigned side) {
    const vec2 tile = FileOf(material).tile;
    const vec2 part = PartOf(material, size.y, house);
    const float bays = std::max(1.0f, std::round(size.x));
    const bool own = material == Material::Tower || material == Material::Town;
    const float room = own ? std::max(1.0f, 8 - bays + 1) : tile.x;
    const float first = part.x + std::floor(HashUnit(Hash(house, side), 7) * room);
    return {material, {first / tile.x, part.y / tile.y}, {bays / size.x / tile.x, 1 / tile.y}};
}

void AddWall(Builder& b, vec2 from, vec2 to, float y0, float y1, const Paint& paint) {
    if (y0 >= 0 || y1 <= 0) {
        AddWallPiece(b, from, to, y0, y1, paint, y0);
        return;
    }
    AddWallPiece(b, from, to, y0, Builder::splitLow, paint, y0);
    AddWallPiece(b, from, to, Builder::splitHigh, y1, paint, y0);
}

void AddFloor(Builder& b, std::vector<vec2> outline, float y, const Paint& paint) {
    outline = Outwards(std::move(outline));
    Surface& surface = b.Open({0, y, 0}, {1, 0, 0}, {0, 0, -1}, paint);
    std::vector<vec2> polygon;
    polygon.reserve(outline.size());
    for (const vec2 p : outline)
        polygon.push_back({p.x, -p.y});
    surface.polygons.push_back(polygon);
}

void AddPrism(Builder& b, std::vector<vec2> outline, float y0, float y1, const Finish& finish) {
    outline = Outwards(std::move(outline));
    for (std::size_t i = 0; i < outline.size(); ++i)
        AddWall(b, outline[i], outline[(i + 1) % outline.size()], y0, y1, finish.wall);
    AddFloor(b, outline, y1, finish.top);
}

void AddTaper(Builder& b, std::vector<vec2> outline, vec2 centre, float y0, float y1, float scale,
              const Finish& finish, bool cap) {
    outline = Outwards(std::move(outline));
    std::vector<vec2> upper;
    upper.reserve(outline.size());
    for (const vec2 p : outline)
        upper.push_back(centre + (p - centre) * scale);
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const std::size_t j = (i + 1) % outline.size();
        if (scale > 0)
            b.Facet({At(outline[i], y0), At(outline[j], y0), At(upper[j], y1), At(upper[i], y1)},
                    finish.wall);
        else
            b.Facet({At(outline[i], y0), At(outline[j], y0), At(centre, y1)}, finish.wall);
    }
    if (cap && scale > 0)
        AddFloor(b, upper, y1, finish.top);
}

std::vector<vec2> Ring(vec2 centre, float radius, int sides, float rotation) {
    std::vector<vec2> ring;
    for (int i = 0; i < sides; ++i) {
        const float angle = rotation + 2 * pi * static_cast<float>(i) / static_cast<float>(sides);
        ring.push_back(centre + vec2{std::cos(angle), std::sin(angle)} * radius);
    }
    return ring;
}

void AddBox(Builder& b, const Box& box, const Finish& finish, bool bottom) {
    AddPrism(b, {{box.x0, box.z0}, {box.x1, box.z0}, {box.x1, box.z1}, {box.x0, box.z1}}, box.y0,
             box.y1, finish);
    if (bottom)
        b.Rect({box.x0, box.y0, box.z0}, {1, 0, 0}, {0, 0, 1}, box.x1 - box.x0, box.z1 - box.z0,
               finish.wall);
}

void AddFacadeBox(Builder& b, const Box& box, Material material, const Paint& top, unsigned seed,
                  bool front) {
    const vec2 corners[] = {{box.x0, box.z1}, {box.x1, box.z1}, {box.x1, box.z0}, {box.x0, box.z0}};
    for (unsigned i = front ? 0 : 1; i < 4; ++i) {
        const vec2 from = corners[i];
        const vec2 to = corners[(i + 1) % 4];
        AddWall(b, from, to, box.y0, box.y1,
                FacadePaint(material, {Length(to - from), box.y1 - box.y0}, seed, i));
    }
    AddFloor(b, {corners[0], corners[1], corners[2], corners[3]}, box.y1, top);
}

void AddGableAlongX(Builder& b, const Box& base, float rise, float eaves, const Finish& finish) {
    const float y = base.y1;
    const float middle = (base.z0 + base.z1) / 2;
    const float half = (base.z1 - base.z0) / 2;
    const float drop = rise * eaves / half;
    const float x0 = base.x0 - eaves * 0.5f;
    const float x1 = base.x1 + eaves * 0.5f;
    b.Facet({{x0, y - drop, base.z1 + eaves},
             {x1, y - drop, base.z1 + eaves},
             {x1, y + rise, middle},
             {x0, y + rise, middle}},
            finish.top);
    b.Facet({{x1, y - drop, base.z0 - eaves},
             {x0, y - drop, base.z0 - eaves},
             {x0, y + rise, middle},
             {x1, y + rise, middle}},
            finish.top);
    b.Facet({{base.x1, y, base.z1}, {base.x1, y, base.z0}, {base.x1, y + rise, middle}},
            finish.wall);
    b.Facet({{base.x0, y, base.z0}, {base.x0, y, base.z1}, {base.x0, y + rise, middle}},
            finish.wall);
}

void AddGableAlongZ(Builder& b, const Box& base, float rise, float eaves, const Finish& finish) {
    const float y = base.y1;
    const float middle = (base.x0 + base.x1) / 2;
    const float half = (base.x1 - base.x0) / 2;
    const float drop = rise * eaves / half;
    const float z0 = base.z0 - eaves * 0.5f;
    const float z1 = base.z1 + eaves * 0.5f;
    b.Facet({{base.x1 + eaves, y - drop, z1},
             {base.x1 + eaves, y - drop, z0},
             {middle, y + rise, z0},
             {middle, y + rise, z1}},
            finish.top);
    b.Facet({{base.x0 - eaves, y - drop, z0},
             {base.x0 - eaves, y - drop, z1},
             {middle, y + rise, z1},
             {middle, y + rise, z0}},
            finish.top);
    b.Facet({{base.x0, y, base.z1}, {base.x1, y, base.z1}, {middle, y + rise, base.z1}},
            finish.wall);
    b.Facet({{base.x1, y, base.z0}, {base.x0, y, base.z0}, {middle, y + rise, base.z0}},
            finish.wall);
}

void AddHip(Builder& b, const Box& base, float rise, float eaves, const Paint& roof) {
    const float x0 = base.x0 - eaves;
    const float x1 = base.x1 + eaves;
    const float z0 = base.z0 - eaves;
    const float z1 = base.z1 + eaves;
    const float y = base.y1;
    const float inset = std::min(x1 - x0, z1 - z0) / 2;
    const bool wide = x1 - x0 >= z1 - z0;
    const vec3 r0 = wide ? vec3{x0 + inset, y + rise, (z0 + z1) / 2}
                         : vec3{(x0 + x1) / 2, y + rise, z0 + inset};
    const vec3 r1 = wide ? vec3{x1 - inset, y + rise, (z0 + z1) / 2}
                         : vec3{(x0 + x1) / 2, y + rise, z1 - inset};
    const vec3 c[] = {{x0, y, z1}, {x1, y, z1}, {x1, y, z0}, {x0, y, z0}};
    if (Length(r1 - r0) < 0.05f) {
        for (int i = 0; i < 4; ++i)
            b.Facet({c[i], c[(i + 1) % 4], r0}, roof);
    } else if (wide) {
        b.Facet({c[0], c[1], r1, r0}, roof);
        b.Facet({c[1], c[2], r1}, roof);
        b.Facet({c[2], c[3], r0, r1}, roof);
        b.Facet({c[3], c[0], r0}, roof);
    } else {
        b.Facet({c[0], c[1], r1}, roof);
        b.Facet({c[1], c[2], r0, r1}, roof);
        b.Facet({c[2], c[3], r0}, roof);
        b.Facet({c[3], c[0], r1, r0}, roof);
    }
}

void AddDome(Builder& b, vec2 centre, float radius, float y, float height, int sides, int rings,
             const Paint& paint) {
    const Finish finish{paint, paint};
    for (int i = 0; i < rings; ++i) {
        const float a0 = pi / 2 * static_cast<float>(i) / static_cast<float>(rings);
        const float a1 = pi / 2 * static_cast<float>(i + 1) / static_cast<float>(rings);
        const float scale = i + 1 == rings ? 0 : std::cos(a1) / std::cos(a0);
        AddTaper(b, Ring(centre, radius * std::cos(a0), sides), centre, y + height * std::sin(a0),
                 y + height * std::sin(a1), scale, finish, false);
    }
}

namespace {

vec2 ArchPoint(const Arch& arch, int i, int segments) {
    const float angle = pi * (1 - static_cast<float>(i) / static_cast<float>(segments));
    const float radius = (arch.x1 - arch.x0) / 2;
    return {(arch.x0 + arch.x1) / 2 + radius * std::cos(angle),
            arch.spring + radius * std::sin(angle)};
}

using Polygons = std::vector<std::vector<vec2>>;

/// The pierced face in (x, y), x from 0, y from 0 at the wall's foot.
Polygons ArchFace(const ArchWall& w, float spring) {
    Polygons polygons;
    const float top = w.y1 - w.y0;
    float x = w.x0;
    const auto pier = [&](float to) {
        if (to - x > 1e-4f)
            polygons.push_back({{x - w.x0, 0}, {to - w.x0, 0}, {to - w.x0, top}, {x - w.x0, top}});
    };
    for (const Arch& arch : w.arches) {
        pier(arch.x0);
        for (int i = 0; i < w.segments; ++i) {
            const vec2 p = ArchPoint(arch, i, w.segments) - vec2{w.x0, spring};
            const vec2 q = ArchPoint(arch, i + 1, w.segments) - vec2{w.x0, spring};
            polygons.push_back({p, q, {q.x, top}, {p.x, top}});
        }
        x = arch.x1;
    }
    pier(w.x1);
    return polygons;
}

Polygons Mirrored(const Polygons& polygons, float width) {
    Polygons result;
    for (const auto& polygon : polygons) {
        std::vector<vec2> turned;
        for (auto p = polygon.rbegin(); p != polygon.rend(); ++p)
            turned.push_back({width - p->x, p->y});
        result.push_back(turned);
    }
    return result;
}

void AddArchLining(Builder& b, const ArchWall& w, const Arch& arch, const Paint& paint) {
    const float z0 = w.z - w.thickness;
    b.Rect({arch.x0, w.y0, w.z}, {0, 0, -1}, up, w.thickness, arch.spring - w.y0, paint);
    b.Rect({arch.x1, w.y0, z0}, {0, 0, 1}, up, w.thickness, arch.spring - w.y0, paint);
    for (int i = 0; i < w.segments; ++i) {
        const vec2 p = ArchPoint(arch, i, w.segments);
        const vec2 q = ArchPoint(arch, i + 1, w.segments);
        b.Facet({{p.x, p.y, w.z}, {p.x, p.y, z0}, {q.x, q.y, z0}, {q.x, q.y, w.z}}, paint);
    }
}

} // namespace

void AddArchWall(Builder& b, const ArchWall& w, const Paint& face, const Paint& lining) {
    const Polygons front = ArchFace(w, w.y0);
    const float width = w.x1 - w.x0;
    b.Open({w.x0, w.y0, w.z}, {1, 0, 0}, up, face).polygons = front;
    const float z0 = w.z - w.thickness;
    if (w.back)
        b.Open({w.x1, w.y0, z0}, {-1, 0, 0}, up, face).polygons = Mirrored(front, width);
    for (const Arch& arch : w.arches)
        AddArchLining(b, w, arch, lining);
    if (!w.ends)
        return;
    b.Rect({w.x1, w.y0, w.z}, {0, 0, -1}, up, w.thickness, w.y1 - w.y0, face);
    b.Rect({w.x0, w.y0, z0}, {0, 0, 1}, up, w.thickness, w.y1 - w.y0, face);
    b.Rect({w.x0, w.y1, w.z}, {1, 0, 0}, {0, 0, -1}, width, w.thickness, lining);
}

void AddStairs(Builder& b, float x0, float x1, float z, float y1, float y0, int steps,
               const Paint& paint) {
    const float rise = (y1 - y0) / static_cast<float>(steps);
    for (int i = 1; i <= steps; ++i) {
        const float near = z + rise * 1.4f * static_cast<float>(i);
        const float top = y1 - rise * static_cast<float>(i - 1);
        AddBox(b, {{x0, x1}, {y0 - 0.3f, top - rise}, {z, near}}, {paint, paint});
    }
}

void AddSpark(Builder& b, vec3 c, float size, float power) {
    const Paint glow{Material::Lamp, {0.5f, 0.5f}, {0, 0}};
    const std::vector<vec2> ring = Outwards(Ring({c.x, c.z}, size, 4, pi / 4));
    AddTaper(b, ring, {c.x, c.z}, c.y - size * 0.3f, c.y + size * 1.3f, 0, {glow, glow}, false);
    for (std::size_t i = 0; i < 4; ++i)
        b.Facet({At(ring[(i + 1) % 4], c.y - size * 0.3f),
                 At(ring[i], c.y - size * 0.3f),
                 {c.x, c.y - size * 1.3f, c.z}},
                glow);
    b.Lamp(c, power);
}

void AddLantern(Builder& b, vec3 c, float size, float power) {
    const Paint iron = EvenPaint(Fitting::Iron);
    const float wide = size * 1.41421f;
    const float narrow = wide * 0.6f;
    // One pane fills the texture across and up; it starts at the narrow foot.
    const Paint pane{Material::Lamp, {0.5f - narrow / wide / 2, 0}, {1 / wide, 1 / (1.75f * size)}};
    const vec2 at{c.x, c.z};
    AddTaper(b, Ring(at, size * 0.6f, 4, pi / 4), at, c.y - size * 0.95f, c.y + size * 0.75f,
             1 / 0.6f, {pane, iron}, false);
    AddTaper(b, Ring(at, size * 1.25f, 4, pi / 4), at, c.y + size * 0.75f, c.y + size * 1.5f, 0.12f,
             {iron, iron});
    b.Rect({c.x - narrow / 2, c.y - size * 0.95f, c.z - narrow / 2}, {1, 0, 0}, {0, 0, 1}, narrow,
           narrow, iron);
    b.Lamp(c, power);
}

void AddLampPost(Builder& b, vec3 foot, float height) {
    const Paint iron = EvenPaint(Fitting::Iron);
    const vec2 at{foot.x, foot.z};
    AddTaper(b, Ring(at, 0.07f, 3), at, foot.y, foot.y + height - 0.1f, 0.65f, {iron, iron}, false);
    AddLantern(b, {foot.x, foot.y + height, foot.z}, 0.12f, 1);
}

void AddColumn(Builder& b, vec2 at, float y0, float y1, float radius, int sides,
               const Paint& paint) {
    const Finish finish{paint, paint};
    const vec2 half{radius * 1.35f, radius * 1.35f};
    AddBox(
        b,
        {{at.x - half.x, at.x + half.x}, {y0, y0 + radius * 0.8f}, {at.y - half.y, at.y + half.y}},
        finish);
    AddTaper(b, Ring(at, radius, sides), at, y0 + radius * 0.8f, y1 - radius * 0.8f, 0.82f, finish,
             false);
    AddBox(
        b,
        {{at.x - half.x, at.x + half.x}, {y1 - radius * 0.8f, y1}, {at.y - half.y, at.y + half.y}},
        finish, true);
}

} // namespace Art
