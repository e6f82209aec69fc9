#version 110
// City, fragment stage: one look-up in the surface's texture and one in the light map.

uniform sampler2D texture0;  // surface; alpha falls from 1 to 0 where it shines by itself
uniform sampler2D lightmap;  // baked light, half of full scale is white
uniform float time;          // seconds

varying vec4 coords;
varying vec4 light;
varying vec4 haze;
varying vec4 caustics;

const float LIGHT_SCALE = 2.0;  // of the light map
const float SHARPER = -0.4;     // levels: walls seen at an angle would be blurred across too
const vec3 COLD = vec3(0.88, 0.95, 1.12);
const vec3 WARM = vec3(1.06, 1.0, 0.92);
const vec3 SEA_LIGHT = vec3(0.38, 1.60, 0.62);
// Shafts of light fan out from a place over the picture, in its pixels.
const vec2 SHAFTS_FROM = vec2(560.0, 420.0);
const vec3 SHAFT_LIGHT = vec3(0.02, 0.90, 0.34);

void main()
{
    vec4 surface = texture2D(texture0, coords.xy, SHARPER);
    vec3 baked = texture2D(lightmap, coords.zw).rgb;

    // A net of bright lines: two families of arcs that bend at each other's pace, so that no two
    // meshes of it are alike, and alive because both directions drift.
    vec2 place = fract(caustics.yx * 0.7) - 0.5;
    vec2 lines = abs(fract(caustics.xy + 3.0 * place * place) - 0.5);
    float line = max(1.0 - 4.5 * min(lines.x, lines.y), 0.0);
    float bright = line * line * caustics.z;

    // Two combs of shafts drift through each other; haze makes them seen, most where they come from.
    float fan = (gl_FragCoord.x - SHAFTS_FROM.x) / (SHAFTS_FROM.y - gl_FragCoord.y);
    float shaft = abs(fract(fan * 2.3 + time * 0.021) - 0.5) * abs(fract(fan * 5.3 - time * 0.034) - 0.5);
    float lit = (max(9.0 * shaft - 0.25, 0.0) + 0.4) * max(1.0 - 1.6 * fan * fan, 0.0)
              * (1.0 - 0.62 * light.a) * caustics.z;

    // What shines shows its own light: what falls on it besides would only make it white.
    vec3 colour = surface.rgb * (baked * (surface.a * LIGHT_SCALE) + light.rgb + bright * SEA_LIGHT
                                 + (1.0 - surface.a) * haze.a);
    // Shadows lean towards blue, lights towards amber.
    colour *= mix(COLD, WARM, min(colour.g, 1.0));
    // The mesh is drawn with an alpha test; only the curtain ever fails it, in the window.
    gl_FragColor = vec4(colour * light.a + haze.rgb + lit * SHAFT_LIGHT, step(caustics.w, gl_FragCoord.y));
}
