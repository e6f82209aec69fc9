// Wisp billboard, vertex stage: turns a flat layer of light towards the eye.
//
// In:  gl_Vertex.xy         corner of the layer around the wisp's middle, world units
//      gl_Vertex.z          +-half the layer's side; the sign is the sense in which it turns
//      gl_MultiTexCoord0    place in the wisp's picture, 0..1
//      time                 seconds since the mesh was made
// Out: place                texture coordinate
//      side                 corner before turning, -1..1
//      strength             brightness of the whole layer, 0..1
//
// The corner is added in eye space, after the model-view matrix has placed the middle, so the
// layer faces the viewer in the mirrored pass too.

uniform float time;

varying vec2 place;
varying vec2 side;
varying float strength;

void main()
{
    float radius = abs(gl_Vertex.z);
    vec4 middle = gl_ModelViewMatrix * vec4(0.0, 0.0, 0.0, 1.0);

    // Layers turn the faster the smaller they are, and breathe out of step with each other.
    float turned = time * sign(gl_Vertex.z) * 0.5 / radius;
    float breath = 1.0 + 0.06 * sin(time * 2.1 + radius * 7.0) + 0.03 * sin(time * 5.3 + radius * 3.0);
    vec2 corner = vec2(gl_Vertex.x * cos(turned) - gl_Vertex.y * sin(turned),
                       gl_Vertex.x * sin(turned) + gl_Vertex.y * cos(turned));
    vec4 eye = middle + vec4(corner * breath, 0.0, 0.0);

    place = gl_MultiTexCoord0.xy;
    side = gl_Vertex.xy / radius;
    // A wisp that brushes past the eye must not fill the picture with its glow.
    strength = smoothstep(0.4, 3.0, -middle.z) * (0.92 + 0.08 * sin(time * 9.0 + radius * 11.0));

    gl_ClipVertex = eye;
    gl_Position = gl_ProjectionMatrix * eye;
}
