// Wisp billboard, fragment stage: light that is added to the picture.
//
// In:  place, side, strength   see the vertex stage
//      texture0                the wisp's picture: black where there is no light
//      time                    seconds since the mesh was made
// Out: light to add; alpha 1 everywhere, since the mesh is drawn with an alpha test above 0.5.

uniform sampler2D texture0;
uniform float time;

varying vec2 place;
varying vec2 side;
varying float strength;

void main()
{
    // Shimmer: two slow combs around the middle that drift against each other.
    float angle = atan(side.y, side.x + 0.0001);
    float comb = sin(angle * 5.0 + time * 1.7) * sin(angle * 3.0 - time * 2.3);
    float shimmer = 1.0 + 0.22 * comb * smoothstep(0.05, 0.4, length(side));
    vec3 light = texture2D(texture0, place).rgb;
    gl_FragColor = vec4(light * (strength * shimmer), 1.0);
}
