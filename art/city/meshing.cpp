#include "art/city/meshing.h"

#include "art/city/drift.h"
#include "art/city/views.h"
#include "art/lightmap/packing.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace Art {

namespace {

/// A surface with its chart: local rectangle and its place in the light map.
struct Charted {
    const Surface* surface;
    Sight sight;
    vec2 low;
    vec2 high;
    Chart chart;
    vec2 mark; ///< added to its texture coordinates
};

// The material draws a surface only in the pictures that show it. It reads their bits off whole
// repeats of the texture, which change nothing else: x carries the lower five, y the upper.
constexpr unsigned bitsPerCoordinate = 5;
constexpr float repeatsPerMark = 64;
constexpr unsigned allViews = (1u << 2 * bitsPerCoordinate) - 1;

constexpr unsigned shines = 1u << 2 * bitsPerCoordinate; // the bit beyond those of the pictures

vec2 MarkOf(unsigned bits) {
    return vec2{static_cast<float>(bits % (1u << bitsPerCoordinate)),
                static_cast<float>(bits >> bitsPerCoordinate)} *
           repeatsPerMark;
}

Charted Enclose(const Surface& surface, const Sight& sight, unsigned views) {
    const unsigned bits = (views & allViews) | (surface.paint.shines ? shines : 0);
    Charted c{&surface, sight, {1e9f, 1e9f}, {-1e9f, -1e9f}, {}, MarkOf(bits)};
    for (const auto& polygon : surface.polygons) {
        for (const vec2 p : polygon) {
            c.low = {std::min(c.low.x, p.x), std::min(c.low.y, p.y)};
            c.high = {std::max(c.high.x, p.x), std::max(c.high.y, p.y)};
        }
    }
    // Repeats count from the middle, so that up to 64 of them leave the mark alone.
    const vec2 middle = (c.low + c.high) * 0.5f;
    c.mark.x -= std::round(surface.paint.origin.x + middle.x * surface.paint.scale.x);
    c.mark.y -= std::round(surface.paint.origin.y + middle.y * surface.paint.scale.y);
    return c;
}

/// Share of the full density a surface gets, by how near the flights come: 1 down to 1/3 for
/// what they see, less for what they never see.
float DensityShare(const Sight& sight) {
    constexpr float fullUpTo = 9;
    const float share = std::clamp(std::sqrt(fullUpTo / sight.nearest), 0.36f, 1.0f);
    return sight.rays > 0 ? share : share * 0.45f;
}

void SizeCharts(std::vector<Charted>& all, float density) {
    const auto texels = [](float length, float perUnit) {
        return std::clamp(static_cast<int>(std::ceil(length * perUnit)) + 1, 2, 900);
    };
    for (Charted& c : all) {
        const float perUnit = density * DensityShare(c.sight);
        c.chart.width = texels(c.high.x - c.low.x, perUnit);
        c.chart.height = texels(c.high.y - c.low.y, perUnit);
    }
}

bool Pack(std::vector<Charted>& all, float density) {
    SizeCharts(all, density);
    std::vector<Chart> charts;
    charts.reserve(all.size());
    for (const Charted& c : all)
        charts.push_back(c.chart);
    if (!PackCharts(charts, lightmapSize))
        return false;
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i].chart = charts[i];
    return true;
}

/// The highest density at which all charts fit, to one part in a hundred.
float PackTightly(std::vector<Charted>& all) {
    float fits = 1;
    float fails = 40;
    while (fails - fits > 0.01f * fits) {
        const float middle = (fits + fails) / 2;
        (Pack(all, middle) ? fits : fails) = middle;
    }
    Pack(all, fits);
    return fits;
}

/// Light-map coordinates of a local point: chart edges fall on the middles of texels, so that
/// two charts that meet at an edge hold the same light there.
vec2 LightmapAt(const Charted& c, vec2 p) {
    const vec2 span = c.high - c.low;
    const float fx = span.x > 0 ? (p.x - c.low.x) / span.x : 0;
    const float fy = span.y > 0 ? (p.y - c.low.y) / span.y : 0;
    const float x =
        static_cast<float>(c.chart.x) + 0.5f + fx * static_cast<float>(c.chart.width - 1);
    const float y =
        static_cast<float>(c.chart.y) + 0.5f + fy * static_cast<float>(c.chart.height - 1);
    return {x / lightmapSize, y / lightmapSize};
}

MeshVertex VertexAt(const Charted& c, vec2 p) {
    const Surface& s = *c.surface;
    const vec2 texcoord{s.paint.origin.x + p.x * s.paint.scale.x,
                        s.paint.origin.y + p.y * s.paint.scale.y};
    return {s.World(p), Normalized(s.Normal()), texcoord + c.mark, LightmapAt(c, p)};
}

// The wisps circle in this box; their light ends wispReach away from it.
constexpr vec3 wispLow{22, 0, 12.5f};
constexpr vec3 wispHigh{32.5f, 5, 17.5f};

float DistanceToWisps(vec3 p) {
    const auto beyond = [](float x, float low, float high) {
        return std::max({low - x, 0.0f, x - high});
    };
    return Length(vec3{beyond(p.x, wispLow.x, wispHigh.x), beyond(p.y, wispLow.y, wispHigh.y),
                       beyond(p.z, wispLow.z, wispHigh.z)});
}

/// Greatest edge that still shows the wisps' light well when it is computed at corners.
float CellSize(float distance) {
    if (distance < 8)
        return 2.4f;
    return distance < 13 ? 4.5f : 1000.0f;
}

int Cuts(float length, float cell) {
    return std::max(1, static_cast<int>(std::ceil(length / cell - 0.2f)));
}

bool IsRectangle(const std::vector<vec2>& p) {
    return p.size() == 4 && p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y &&
           p[3].x == p[0].x;
}

void AppendPolygon(std::vector<MeshVertex>& out, const Charted& c,
                   const std::vector<vec2>& polygon) {
    for (std::size_t i = 2; i < polygon.size(); ++i)
        for (const vec2 p : {polygon[0], polygon[i - 1], polygon[i]})
            out.push_back(VertexAt(c, p));
}

void AppendCut(std::vector<MeshVertex>& out, const Charted& c, const std::vector<vec2>& polygon) {
    const Surface& s = *c.surface;
    const vec3 middle = s.World((polygon[0] + polygon[2]) * 0.5f);
    const bool seen = IsRectangle(polygon) && c.sight.rays > 0 && middle.y > 0;
    const float reach = Length(polygon[2] - polygon[0]) / 2;
    const float cell = seen ? CellSize(std::max(DistanceToWisps(middle) - reach, 0.0f)) : 1000.0f;
    const vec2 span = polygon[2] - polygon[0];
    const int nx = Cuts(span.x, cell);
    const int ny = Cuts(span.y, cell);
    for (int j = 0; j < ny; ++j) {
        for (int i = 0; i < nx; ++i) {
            const auto at = [&](int x, int y) {
                return vec2{polygon[0].x + span.x * static_cast<float>(x) / static_cast<float>(nx),
                            polygon[0].y + span.y * static_cast<float>(y) / static_cast<float>(ny)};
            };
            AppendPolygon(out, c, {at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)});
        }
    }
}

void AppendSurface(std::vector<MeshVertex>& out, const Charted& c) {
    for (const auto& polygon : c.surface->polygons) {
        if (IsRectangle(polygon))
            AppendCut(out, c, polygon);
        else
            AppendPolygon(out, c, polygon);
    }
}

std::vector<std::size_t> AsPlanned(const std::vector<Charted>& all) {
    std::vector<std::size_t> order(all.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    return order;
}

/// What hides others first; among equals near first. What the pictures never show
/// comes last.
std::vector<std::size_t> HidersFirst(const std::vector<Charted>& all) {
    std::vector<std::size_t> order = AsPlanned(all);
    const auto key = [&](std::size_t i) {
        return all[i].sight.DrawingOrder() + 0.002f * all[i].sight.distance;
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    return order;
}

float AreaOf(const Surface& surface) {
    float area = 0;
    for (const auto& polygon : surface.polygons)
        for (std::size_t i = 2; i < polygon.size(); ++i)
            area += Cross(polygon[i - 1] - polygon[0], polygon[i] - polygon[0]) / 2;
    return area;
}

// Details that no flight shows, or none but for some pixels of some frames, are left out; walls
// stay, so that the city is whole from every side.
constexpr float detailArea = 4.5f;
constexpr float leastRays = 6; // of the eight million of MeasureSights()

bool IsShown(const Surface& surface, const Sight& sight, unsigned views) {
    const bool noticed = (views & shownLarge) != 0 || sight.rays >= leastRays;
    return surface.shades || AreaOf(surface) > detailArea || (views != 0 && noticed);
}

/// The first triangles of the mesh, by which the material keeps the rest out of a picture that
/// nobody sees: a ceiling and a curtain. They have no size of their own: their normals say to which
/// corner of the picture the material moves them, and a view mark beyond all others tells them
/// apart. What drifts in the water follows, which the material moves as well.
SubMesh Curtain() {
    constexpr vec3 inTheBasin{26, -1, 14};
    const vec2 mark{repeatsPerMark * static_cast<float>(1u << bitsPerCoordinate), 0};
    SubMesh curtain;
    curtain.textures[0] = FileOf(Material::Trim).texture;
    for (const float ceiling : {1.0f, 0.0f})
        for (const vec2 to : {vec2{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}})
            curtain.vertices.push_back(
                {inTheBasin, Normalized(vec3{to.x, to.y, ceiling}), mark, {0, 0}});
    const std::vector<MeshVertex> drifting = DriftingThings(mark.x, repeatsPerMark);
    curtain.vertices.insert(curtain.vertices.end(), drifting.begin(), drifting.end());
    return curtain;
}

/// The surfaces that are drawn, with what the flights see of them.
std::vector<Charted> ToShow(const std::vector<Surface>& surfaces, const Measures& measures,
                            const Steps& steps) {
    const auto& [open, sights, views] = measures;
    const bool marked = Takes(steps, Step::Marks);
    const bool everything = !Takes(steps, Step::Hidden);
    std::vector<Charted> all;
    for (std::size_t i = 0; i < surfaces.size(); ++i)
        if (everything || (open[i] && IsShown(surfaces[i], sights[i], views[i])))
            all.push_back(Enclose(surfaces[i], sights[i], marked ? views[i] : allViews));
    return all;
}

// For every 17 triangles that a draw call shows, a driver without a GPU goes over all vertices of
// the call, up to 4096 of them. To begin another costs as much as fifty vertices.
constexpr std::size_t mostVertices = 1020;

/// Surfaces of one texture, with their mean place in the order of all.
struct Batch {
    SubMesh subMesh;
    std::size_t places = 0; ///< their sum
    std::size_t surfaces = 0;

    double Place() const { return static_cast<double>(places) / static_cast<double>(surfaces); }
};

/// The surfaces in this order, cut into batches by texture; the last of each texture is short.
std::vector<Batch> BatchesOf(const std::vector<Charted>& all,
                             const std::vector<std::size_t>& order) {
    std::vector<Batch> full;
    std::vector<Batch> ofMaterial(materialCount);
    for (std::size_t place = 0; place < order.size(); ++place) {
        const Charted& charted = all[order[place]];
        const Material material = charted.surface->paint.material;
        Batch& batch = ofMaterial[static_cast<std::size_t>(material)];
        batch.subMesh.textures[0] = FileOf(material).texture;
        AppendSurface(batch.subMesh.vertices, charted);
        batch.places += place;
        ++batch.surfaces;
        if (batch.subMesh.vertices.size() >= mostVertices)
            full.push_back(std::exchange(batch, {}));
    }
    for (Batch& batch : ofMaterial)
        if (batch.surfaces > 0)
            full.push_back(std::move(batch));
    return full;
}

/// The surfaces as near to this order as batches allow.
void AppendSubMeshes(MeshFile& mesh, const std::vector<Charted>& all,
                     const std::vector<std::size_t>& order) {
    std::vector<Batch> batches = BatchesOf(all, order);
    std::stable_sort(batches.begin(), batches.end(),
                     [](const Batch& a, const Batch& b) { return a.Place() < b.Place(); });
    for (Batch& batch : batches)
        mesh.subMeshes.push_back(std::move(batch.subMesh));
}

} // namespace

Measures MeasureCity(const Builder& city) {
    return {FindOpenSurfaces(city.surfaces), MeasureSights(city.surfaces),
            MeasureViews(city.surfaces)};
}

MeshFile MeshCity(const Builder& city, const Measures& measures, MeshReport& report,
                  const Steps& steps) {
    std::vector<Charted> all = ToShow(city.surfaces, measures, steps);
    report = {city.surfaces.size(), city.surfaces.size() - all.size(), 0, PackTightly(all)};
    MeshFile mesh{"Data/Gfx/City/", true, {}};
    if (Takes(steps, Step::Curtain))
        mesh.subMeshes.push_back(Curtain());
    AppendSubMeshes(mesh, all, Takes(steps, Step::Order) ? HidersFirst(all) : AsPlanned(all));
    report.vertices = VertexCount(mesh);
    return mesh;
}

} // namespace Art
