#version 110
// Plain material, fragment stage: texture x light map, then the scene's fog.
//
// In:  gl_TexCoord, gl_FogFragCoord  see the vertex stage
//      gl_Fog                        SceneManager::SetFogColor() and SetFogDensity(); no fog at 0
// Out: colour; the texture's alpha, which the mesh's alpha test cuts at 0.5

uniform sampler2D texture0;
uniform sampler2D lightmap; // baked light, half of full scale is white

void main()
{
    vec4 surface = texture2D(texture0, gl_TexCoord[0].xy);
    vec3 light = texture2D(lightmap, gl_TexCoord[1].xy).rgb * 2.0;
    float depth = gl_Fog.density * gl_FogFragCoord;
    float clear = exp2(-depth * depth * 1.442695); // exp(-depth^2): 1 without fog, 0 in full fog
    gl_FragColor = vec4(mix(gl_Fog.color.rgb, surface.rgb * light, clear), surface.a);
}
