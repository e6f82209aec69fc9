#version 110
// Glaze, fragment stage: a dark body with gold lines under a clear coat that mirrors a studio.

uniform vec3 glaze; // colour of the body
uniform float time; // seconds

varying vec3 place;
varying vec3 normal;
varying vec2 around;

const vec3 GOLD = vec3(1.0, 0.66, 0.24);

// What hangs over the table: a soft box on the left, a window behind, a warm floor.
vec3 Studio(vec3 way)
{
    vec3 room = mix(vec3(0.16, 0.10, 0.07), vec3(0.10, 0.14, 0.24), smoothstep(-0.6, 0.7, way.y));
    float box = smoothstep(0.55, 0.72, dot(way, normalize(vec3(-0.7, 0.6, 0.45))));
    float bar = smoothstep(0.10, 0.05, abs(way.x - 0.55)) * smoothstep(-0.3, 0.2, way.y);
    return room + box * vec3(1.5, 1.45, 1.35) + bar * vec3(0.45, 0.65, 1.0);
}

void main()
{
    vec3 n = normalize(normal);
    vec3 view = normalize(place);
    float facing = max(-dot(n, view), 0.0);
    float coat = 0.06 + 0.94 * pow(1.0 - facing, 5.0); // more is mirrored at flat angles

    // Lines that wind around the tube and creep along it.
    float line = abs(fract(around.x * 36.0 + around.y * 2.0 - time * 0.05) - 0.5);
    float gilt = smoothstep(0.13, 0.09, line);

    vec3 mirrored = Studio(reflect(view, n));
    float light = 0.35 + 0.65 * max(dot(n, normalize(vec3(-0.6, 0.7, 0.5))), 0.0);
    vec3 body = glaze * light * 1.5 + mirrored * (coat + 0.05) * 1.5;
    vec3 metal = GOLD * (0.25 * light + 0.75 * mirrored);
    gl_FragColor = vec4(mix(body, metal, gilt), 1.0);
}
