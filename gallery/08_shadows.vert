#version 110
// A surface that one light shades, vertex stage.

varying vec3 place;  // world: the node is not moved
varying vec3 normal;

void main()
{
    gl_Position = ftransform();
    gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    place = gl_Vertex.xyz;
    normal = gl_Normal;
}
