#version 110
// City, vertex stage: everything that looks the same when it is computed at corners.
//
// Object coordinates are the city's own: y = 0 is where the water stands once the city has
// risen. The three wisps' positions are given in world coordinates, which are the same by
// the time they appear; parked at y = 1000 they are out of reach and add exactly nothing.

uniform vec3 posred;    // wisps, world coordinates
uniform vec3 posgreen;
uniform vec3 posblue;
uniform float time;     // seconds

varying vec4 coords;    // xy: texture, zw: light map
varying vec4 light;     // rgb: light of the wisps, a: share of the surface seen through haze
varying vec4 haze;      // rgb: what the haze adds, a: strength of lit windows
varying vec4 caustics;  // xy: place in the pattern, z: strength, 0 above the water
                        // w: rows of the picture from which on the surface counts

const float WISP_REACH = 20.0;      // where a wisp's light ends
const float SPLIT = -0.045;         // what lies lower is wholly under water
const float MARK = 64.0;            // whole repeats of the texture that count one view mark
const float LAST_MARK = 31.5;       // marks beyond it are the curtain's in x, in y of what shines
const float WINDOW_ROWS = 100.0;    // a little more than the window has, far less than 512
const float CEILING_DEPTH = 80.0;   // how far the surface is painted on the curtain, units
// Under water the ripple keeps three tenths of each colour and adds blue: what shall be turquoise
// there must be nearly green here, and red is for fish and lit windows.
const vec3 SURFACE_NEAR = vec3(0.00, 0.42, 0.32);
const vec3 SURFACE_FAR = vec3(0.12, 1.02, 0.60);
const float AIR_DENSITY = 0.0045;   // haze per unit of distance, over and under water
const float SEA_DENSITY = 0.033;
const vec3 AIR_HAZE = vec3(0.21, 0.19, 0.36);
const vec3 SEA_INK = vec3(0.00, 0.02, 0.07);      // the sea's own light in the depth,
const vec3 SEA_BLUE = vec3(0.00, 0.47, 0.35);     // what it gains towards the surface,
const vec3 SEA_TURQUOISE = vec3(0.10, 0.58, 0.18); // and right under it
const vec3 SEA_SUN = vec3(-0.41, 0.82, -0.40);    // towards the light under water, unit length
const vec3 SEA_SUN_LIGHT = vec3(0.12, 0.82, 0.42);
const float MIRRORED = 0.74;        // share of the light that the water throws back,
const vec3 WATER = vec3(0.13, 0.12, 0.25); // and what it has of its own instead
const float DRIFT_RISE = 5.6;       // how far bubbles rise, units
const vec3 WEED_ROOT = vec3(-0.40, -0.10, -0.20);
const vec3 WEED_TIP = vec3(-0.30, 1.30, -0.20);

// Light of a wisp at p: exactly 0 from WISP_REACH on, softened round the edge of a wall.
float Wisp(vec3 wisp, vec3 p, vec3 normal)
{
    vec3 way = wisp - p;
    float squared = dot(way, way);
    float near = max(1.0 - squared / (WISP_REACH * WISP_REACH), 0.0);
    float facing = max(dot(normal, way) * inversesqrt(squared + 0.01) * 0.75 + 0.25, 0.0);
    return facing * near * near * 2.4 / (1.0 + 0.045 * squared);
}

bool Within(vec3 p, vec3 low, vec3 high)
{
    return all(greaterThanEqual(p, low)) && all(lessThanEqual(p, high));
}

// >>> Generated from demo/show.h by `art/make views`.
// Which bit of the view marks speaks of the picture seen from here, 0 to 9; -1 away from all
// flights, where everything is drawn. The water mirrors the eye downwards: `over` is turned up
// again, but while the city is low or rises, the mirrored eye is anywhere in its coordinates.
float View(vec3 eye, bool mirrored)
{
    vec3 over = vec3(eye.x, abs(eye.y), eye.z);
    float view = -1.0;
    if (Within(eye, vec3(-1.0, 18.0, -11.2), vec3(1.0, 22.0, 1.0)))
        view = mirrored ? 6.0 : 0.0; // out over the open sea
    else if (Within(eye, vec3(49.0, -11.2, -101.9), vec3(51.0, 22.5, -49.0)))
        view = mirrored ? 6.0 : 0.0; // away from the rising city
    else if (Within(eye, vec3(29.0, -5.0, -101.0), vec3(31.0, -0.9, -48.1)))
        view = 1.0; // under water
    else if (Within(over, vec3(39.0, 7.0, 4.0), vec3(41.0, 11.1, 16.2)))
        view = mirrored ? 6.0 : 2.0; // between the towers
    else if (Within(over, vec3(8.8, -0.5, 33.0), vec3(26.0, 4.1, 59.3)))
        view = mirrored ? 7.0 : 3.0; // low along the canal
    else if (Within(over, vec3(6.0, 1.0, -6.0), vec3(18.2, 3.0, 5.2)))
        view = mirrored ? 8.0 : 4.0; // towards the basin
    else if (Within(over, vec3(4.0, 3.9, 11.0), vec3(26.4, 9.0, 13.0)))
        view = mirrored ? 9.0 : 5.0; // over the roofs
    else if (Within(over, vec3(19.0, 5.0, 2.9), vec3(31.2, 7.0, 6.0)))
        view = mirrored ? 9.0 : 5.0; // along the basin's edge
    return view;
}

// How far the camera's iris is open in the picture of this bit.
float Exposure(float view)
{
    float exposure = 1.0;
    if (view == 1.0)
        exposure = 1.55;
    else if (view == 3.0 || view == 7.0)
        exposure = 0.70;
    else if (view == 5.0 || view == 9.0)
        exposure = 1.18;
    return exposure;
}
// <<< End of what is generated.

// Whether a bit is set in the marks of x (bits 0 to 4) or y (5 to 9).
bool Marked(vec2 marks, float bit)
{
    bool upper = bit > 4.5;
    float part = (upper ? marks.y : marks.x) * exp2(upper ? 5.0 - bit : -bit);
    return fract(floor(part + 0.01) * 0.5) > 0.25;
}

// The water is drawn with reflection alone, so nobody sees the refraction image; yet it has three
// times as many pixels as the window. A curtain before everything else spares them: the first
// triangles of the mesh, which span the picture right behind the near plane. The fragment stage
// fades it where the row is less than caustics.w, as all rows of the window are, and the alpha
// test takes it away there.
void DrawCurtain(bool wanted)
{
    vec2 corner = sign(gl_Normal.xy); // the corners of both triangles look into the four quarters
    gl_Position = vec4(corner, wanted ? -0.9998 : -2.0, 1.0);
    coords = vec4(0.5);
    light = vec4(0.0, 0.0, 0.0, 0.5);
    haze = vec4(SURFACE_FAR, 0.0);
    caustics = vec4(0.0, 0.0, 0.0, WINDOW_ROWS * (corner.y * 0.5 + 0.5) + 1.0);
}

// Under water both images fall to the curtain, and what the surface shows from below is painted on
// it: at so flat an angle no eye looks out of water, it sees the sea's own light thrown back. This
// is the ceiling of that, the surface around the eye, before the curtain; the flight goes along +z.
void DrawCeiling(vec3 eye, bool wanted)
{
    vec2 corner = sign(gl_Normal.xy);
    vec3 p = vec3(eye.x + corner.x * CEILING_DEPTH * 2.4, 0.0, eye.z + corner.y * CEILING_DEPTH);
    gl_Position = gl_ModelViewProjectionMatrix * vec4(p, 1.0);
    gl_Position.z = gl_Position.w * (wanted ? -0.9999 : -2.0);
    // Right overhead, half-way between the corners, it has the colour and the lines of nearness.
    haze = vec4(mix(SURFACE_NEAR, SURFACE_FAR, corner.y), 0.0);
    caustics = vec4(p.x * 0.06 + p.z * 0.13 + time * 0.11, p.z * 0.21 - p.x * 0.05 - time * 0.08,
                    1.1 - 1.1 * corner.y, WINDOW_ROWS);
}

// Weed, bubbles and dust follow the curtain: `kind` is 1, 2 and 3. Their normals hold phases.
void DrawDrift(float kind, bool wanted)
{
    vec3 p = gl_Vertex.xyz;
    float bubble = step(1.5, kind) * step(kind, 2.5);
    float weed = step(kind, 1.5);
    float tip = coords.y;
    p.x += weed * tip * tip * 0.3 * sin(time * 1.3 + p.x * 0.5 + p.z * 0.8)
         + bubble * 0.07 * sin(time * 3.1 + gl_Normal.x * 40.0);
    p.y += bubble * DRIFT_RISE * fract(time * 0.13 + gl_Normal.x * 9.0);
    gl_Position = gl_ModelViewProjectionMatrix * vec4(p, 1.0);
    if (!wanted)
        gl_Position.z = -2.0 * abs(gl_Position.w) - 1.0;
    light.rgb = mix(vec3(0.0, 1.1, 0.9), mix(WEED_ROOT, WEED_TIP, tip), weed);
}

void main()
{
    vec3 p = gl_Vertex.xyz;
    vec3 eye = gl_ModelViewMatrixInverse[3].xyz;
    vec3 way = eye - p;
    float distance = length(way);
    // The water's mirror image is drawn from an eye mirrored below the surface: that eye is
    // as good as above it. No camera stands on its head, so up points down in the mirror only.
    bool mirrored = gl_ModelViewMatrix[1].y < 0.0;
    bool above = mirrored || eye.y > 0.0;
    float under = above ? 0.0 : 1.0;

    gl_Position = ftransform();
    gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
    // Faces that look away, and all that lies under water while the eye is over it, go behind
    // the near plane. Only depth is changed, so a face seen exactly edge-on, whose corners may
    // disagree by rounding, still covers no pixel it would not cover anyway.
    bool away = dot(gl_Normal, way) <= 0.0;
    bool drowned = above && p.y < SPLIT;
    // What this flight never shows is marked as such, by whole repeats of the texture.
    vec2 marks = floor(gl_MultiTexCoord0.xy / MARK + 0.5);
    float seen = View(eye, mirrored);
    bool hidden = seen >= 0.0 && !Marked(marks, seen);
    if (away || drowned || hidden)
        gl_Position.z = -2.0 * abs(gl_Position.w) - 1.0;

    coords = vec4(gl_MultiTexCoord0.xy - MARK * marks, gl_MultiTexCoord1.xy);
    light.rgb = Wisp(posred, p, gl_Normal) * vec3(1.0, 0.06, 0.05)
              + Wisp(posgreen, p, gl_Normal) * vec3(0.05, 0.90, 0.20)
              + Wisp(posblue, p, gl_Normal) * vec3(0.08, 0.20, 1.0);

    light.a = exp2(-distance * mix(AIR_DENSITY, SEA_DENSITY, under)) * (mirrored ? MIRRORED : 1.0);
    float shallow = clamp(p.y / 11.0 + 1.0, 0.0, 1.0);
    float near = shallow * shallow;
    vec3 sea = SEA_INK + SEA_BLUE * near + SEA_TURQUOISE * (near * near * near);
    haze.rgb = (mirrored ? WATER : mix(AIR_HAZE, sea, under)) * (1.0 - light.a);
    // Far windows are smaller than a pixel: filtering mixes them with the wall before they can
    // shine, and this gives it back.
    haze.a = 1.15 + 0.40 * smoothstep(15.0, 75.0, distance);

    // Lit windows keep what the iris takes from the walls.
    float exposure = Exposure(seen);
    light.a *= exposure;
    haze.a /= exposure;

    // Under water the sun of the waves gives form, and lit windows glimmer.
    light.rgb += SEA_SUN_LIGHT * (under * near * max(dot(gl_Normal, SEA_SUN), 0.0));
    haze.a *= 1.0 - 0.25 * under;
    // A pane whose texture has no alpha shines as a whole.
    light.rgb += vec3(haze.a * step(LAST_MARK, marks.y));

    // Light through the waves falls on what looks up, and fades with depth.
    float depth = clamp(1.0 + p.y / 22.0, 0.0, 1.0) * step(p.y, SPLIT);
    caustics = vec4((p.x + p.z) * 0.27 + p.y * 0.12 + time * 0.11,
                    (p.x - p.z) * 0.22 - p.y * 0.17 - time * 0.08,
                    depth * (0.75 + 0.60 * max(gl_Normal.y, 0.0)), 0.0);

    if (marks.x > LAST_MARK) {
        // From the flights before the canal most of that image is open sky or far city: there the
        // curtain costs more than what it hides.
        bool wanted = (seen == 1.0 || seen > 2.0) && !mirrored;
        if (marks.y > 0.5)
            DrawDrift(marks.y, seen == 1.0);
        else
            DrawCurtain(wanted);
        if (gl_Normal.z > 0.0)
            DrawCeiling(eye, wanted && seen == 1.0);
    }
}
