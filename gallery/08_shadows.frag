#version 110
// A surface that one light shades, fragment stage.

uniform sampler2D texture0;
uniform vec3 light; // towards it, unit length

varying vec3 place;
varying vec3 normal;

const vec3 SUN = vec3(1.75, 1.38, 0.98);
const vec3 SKY = vec3(0.34, 0.40, 0.52);
const vec3 HAZE = vec3(0.0, 0.16, 0.30);

void main()
{
    vec3 n = normalize(normal);
    vec3 surface = texture2D(texture0, gl_TexCoord[0].xy).rgb;
    vec3 colour = surface * (SUN * max(dot(n, light), 0.0) + SKY * (0.6 + 0.4 * n.y));
    float far = smoothstep(25.0, 58.0, length(place.xz)); // the ground ends in the clear colour
    gl_FragColor = vec4(mix(colour, HAZE, far), 1.0);
}
