#version 110
// Glaze, vertex stage: hands on where a surface is and which way it looks, as the eye sees it.

varying vec3 place;  // from the eye, units
varying vec3 normal; // in the eye's space, not of unit length between two corners
varying vec2 around; // along the shape and around it, 0..1

void main()
{
    vec4 fromEye = gl_ModelViewMatrix * gl_Vertex;
    gl_Position = ftransform();
    gl_ClipVertex = fromEye; // or the water's mirror image could not cut it at the surface
    place = fromEye.xyz;
    normal = gl_NormalMatrix * gl_Normal;
    around = gl_MultiTexCoord0.xy;
}
