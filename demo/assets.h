#pragma once

/// The files of Data/ that the demo loads, by the paths that it asks for, as seen from the working
/// directory. The demo opens them by these names; what looks after the files (the doctor, the
/// film's sound track, tests) reads the list here. What the meshes name in their turn, textures and
/// the light map, stands in the meshes.
namespace Assets {

inline constexpr const char* cityMesh = "Data/Gfx/City/city.xt3dstatic";
inline constexpr const char* cityVertexShader = "Data/Gfx/City/shader.vert";
inline constexpr const char* cityFragmentShader = "Data/Gfx/City/shader.frag";

inline constexpr const char* greenWispMesh = "Data/Gfx/Wisp/green.xt3dstatic";
inline constexpr const char* redWispMesh = "Data/Gfx/Wisp/red.xt3dstatic";
inline constexpr const char* blueWispMesh = "Data/Gfx/Wisp/blue.xt3dstatic";
inline constexpr const char* wispVertexShader = "Data/Gfx/Wisp/billboard.vert";
inline constexpr const char* wispFragmentShader = "Data/Gfx/Wisp/billboard.frag";

inline constexpr const char* fishMesh = "Data/Gfx/Fish/fish.xt3dstatic";

inline constexpr const char* skyXPos = "Data/Gfx/City/sky/xpos.jpg";
inline constexpr const char* skyXNeg = "Data/Gfx/City/sky/xneg.jpg";
inline constexpr const char* skyYPos = "Data/Gfx/City/sky/ypos.jpg";
inline constexpr const char* skyYNeg = "Data/Gfx/City/sky/yneg.jpg";
inline constexpr const char* skyZPos = "Data/Gfx/City/sky/zpos.jpg";
inline constexpr const char* skyZNeg = "Data/Gfx/City/sky/zneg.jpg";

inline constexpr const char* waterNormals = "Data/Gfx/water.jpg";
inline constexpr const char* logo = "Data/Gfx/Logo/logo.jpg";
inline constexpr const char* music = "Data/Musics/Quorrel.mp3";

/// All of them, each once, in the order in which the scene loads them; the music last.
inline constexpr const char* loaded[] = {
    cityMesh,
    cityVertexShader,
    cityFragmentShader,
    greenWispMesh,
    wispVertexShader,
    wispFragmentShader,
    redWispMesh,
    blueWispMesh,
    fishMesh,
    skyXPos,
    skyXNeg,
    skyYPos,
    skyYNeg,
    skyZPos,
    skyZNeg,
    waterNormals,
    logo,
    music,
};

} // namespace Assets
