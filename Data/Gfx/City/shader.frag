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
const vec3 COLD = vec3(0.88, 0.95, 1.12);
const vec3 WARM = vec3(1.06, 1.0, 0.92);
const vec3 SEA_LIGHT = vec3(0.60, 0.95, 0.88);
// Shafts of light fan out from a place over the picture, in its pixels.
const vec2 SHAFTS_FROM = vec2(560.0, 420.0);
const vec3 SHAFT_LIGHT = vec3(0.50, 0.95, 0.85);

void main()
{
    vec4 surface = texture2D(texture0, coords.xy);
    vec3 baked = texture2D(lightmap, coords.zw).rgb * LIGHT_SCALE;

    // Bright lines that zigzag: cheap, and alive because both directions drift.
    float bend = abs(fract(caustics.y) - 0.5);
    float line = abs(fract(caustics.x + bend) - 0.5);
    float bright = max(1.0 - 5.0 * line, 0.0) * caustics.z;

    // Two combs of shafts drift through each other; haze makes them seen.
    float fan = (gl_FragCoord.x - SHAFTS_FROM.x) / (SHAFTS_FROM.y - gl_FragCoord.y);
    float shaft = abs(fract(fan * 3.1 + time * 0.021) - 0.5) * abs(fract(fan * 7.3 - time * 0.034) - 0.5);
    float lit = max(6.0 * shaft - 0.35, 0.0) * max(1.0 - 0.62 * light.a, 0.0) * caustics.z;

    vec3 colour = surface.rgb * (baked + light.rgb + bright * SEA_LIGHT + (1.0 - surface.a) * haze.a);
    // Shadows lean towards blue, lights towards amber.
    colour *= mix(COLD, WARM, min(colour.g, 1.0));
    // The mesh is drawn with an alpha test; only the curtain ever fails it, in the window.
    gl_FragColor = vec4(colour * light.a + haze.rgb + lit * SHAFT_LIGHT, step(caustics.w, gl_FragCoord.y));
}
