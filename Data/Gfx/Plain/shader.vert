#version 110
// Plain material, vertex stage: for any mesh with a light map, in any scene; copy it to begin with.
//
// In:  gl_Vertex                            object coordinates
//      gl_MultiTexCoord0, gl_MultiTexCoord1 places in the texture and in the light map
// Out: gl_TexCoord[0], gl_TexCoord[1]       the same
//      gl_FogFragCoord                      distance from the eye, units

void main()
{
    vec4 fromEye = gl_ModelViewMatrix * gl_Vertex;
    gl_Position = ftransform();
    // Without it the water's mirror image is not cut at the surface, and shows what lies below.
    gl_ClipVertex = fromEye;
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_TexCoord[1] = gl_MultiTexCoord1;
    gl_FogFragCoord = length(fromEye.xyz);
}
