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
varying vec3 caustics;  // xy: place in the pattern, z: strength, 0 above the water

const float WISP_REACH = 20.0;      // where a wisp's light ends
const float SPLIT = -0.045;         // what lies lower is wholly under water
const float INLAND_MARK = 32.0;     // texture coordinates beyond it mark the inner town
const float AIR_DENSITY = 0.0032;   // haze per unit of distance, over and under water
const float SEA_DENSITY = 0.033;
const vec3 AIR_HAZE = vec3(0.21, 0.19, 0.36);
const vec3 SEA_HAZE = vec3(0.34, 0.86, 0.96);
const vec3 SEA_DEEP = vec3(0.06, 0.36, 0.62);

// Light of a wisp at p: exactly 0 from WISP_REACH on, softened round the edge of a wall.
float Wisp(vec3 wisp, vec3 p, vec3 normal)
{
    vec3 way = wisp - p;
    float squared = dot(way, way);
    float near = max(1.0 - squared / (WISP_REACH * WISP_REACH), 0.0);
    float facing = max(dot(normal, way) * inversesqrt(squared + 0.01) * 0.75 + 0.25, 0.0);
    return facing * near * near * 2.4 / (1.0 + 0.045 * squared);
}

void main()
{
    vec3 p = gl_Vertex.xyz;
    vec3 eye = (gl_ModelViewMatrixInverse * vec4(0.0, 0.0, 0.0, 1.0)).xyz;
    vec3 way = eye - p;
    float distance = length(way);
    // The water's mirror image is drawn from an eye mirrored below the surface: that eye is
    // as good as above it.
    mat4 view = gl_ModelViewMatrix;
    bool mirrored = dot(cross(view[0].xyz, view[1].xyz), view[2].xyz) < 0.0;
    bool above = mirrored || eye.y > 0.0;
    float under = above ? 0.0 : 1.0;

    gl_Position = ftransform();
    gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
    // Faces that look away, and all that lies under water while the eye is over it, go behind
    // the near plane. Only depth is changed, so a face seen exactly edge-on, whose corners may
    // disagree by rounding, still covers no pixel it would not cover anyway.
    bool away = dot(gl_Normal, way) <= 0.0;
    // From under water all but the north front is out of sight; the mesh marks what lies
    // behind it by whole repeats added to the texture coordinate.
    bool drowned = above ? p.y < SPLIT : gl_MultiTexCoord0.x > INLAND_MARK;
    if (away || drowned)
        gl_Position.z = -2.0 * abs(gl_Position.w) - 1.0;

    coords = vec4(gl_MultiTexCoord0.xy, gl_MultiTexCoord1.xy);
    light.rgb = Wisp(posred, p, gl_Normal) * vec3(1.0, 0.06, 0.05)
              + Wisp(posgreen, p, gl_Normal) * vec3(0.05, 0.90, 0.20)
              + Wisp(posblue, p, gl_Normal) * vec3(0.08, 0.20, 1.0);

    light.a = exp2(-distance * mix(AIR_DENSITY, SEA_DENSITY, under));
    vec3 sea = mix(SEA_DEEP, SEA_HAZE, clamp(p.y / 14.0 + 1.0, 0.0, 1.0));
    haze.rgb = mix(AIR_HAZE, sea, under) * (1.0 - light.a);
    // Far windows are smaller than a pixel: filtering mixes them with the wall before they can
    // shine, and this gives it back.
    haze.a = 0.9 + 1.5 * smoothstep(15.0, 75.0, distance);

    // Light through the waves falls on what looks up, and fades with depth.
    float depth = clamp(1.0 + p.y / 22.0, 0.0, 1.0) * step(p.y, SPLIT);
    caustics = vec3((p.x + p.z) * 0.27 + p.y * 0.12 + time * 0.11,
                    (p.x - p.z) * 0.22 - p.y * 0.17 - time * 0.08,
                    depth * (0.40 + 0.60 * max(gl_Normal.y, 0.0)));
}
