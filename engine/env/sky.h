#pragma once

#include "engine/render/image.h"

#include <string>

namespace Vell {

class Camera;

/// A cube of six pictures around the camera, behind everything else.
///
/// The cube moves with the camera, so it never comes nearer, and it writes no depth, so whatever
/// is drawn after it lies in front of it at any distance. Its half-size of 1000 units keeps it
/// between the near and far planes whatever the camera does.
///
/// Space:   world; a face is named after the axis it lies on, so `xpos` is the picture seen when
///          looking along +x.
/// Picture: as Image hands it over, seen from inside the cube: a PNG as it is, a JPEG with left and
///          right exchanged, so draw it mirrored. The four sides are upright; the upper edge of
///          `ypos` lies towards -z, that of `yneg` towards +z. Pictures made for this meet without
///          seams.
/// Texture: unit 0 while drawing; texturing is off on unit 0 afterwards and the last face's picture
///          stays bound there.
/// Needs:   a current context on which InitEngine() succeeded.
class SkyBox {
public:
    /// Builds the box over six empty pictures: it draws untextured until faces are set and Init()
    /// has been called once more.
    SkyBox();

    /// Loads the six pictures and builds the box. Image::Load() says what it logs about a picture
    /// that cannot be loaded; its face then draws untextured.
    SkyBox(const std::string& xpos, const std::string& xneg, const std::string& ypos,
           const std::string& yneg, const std::string& zpos, const std::string& zneg);

    ~SkyBox();
    SkyBox(const SkyBox&) = delete;
    SkyBox& operator=(const SkyBox&) = delete;

    /// Loads one face's picture from a ".jpg" or ".png" file. The box binds the texture it found
    /// in Init(): a picture under a new texture name shows only after another Init().
    void SetXPOS(const std::string& path);
    void SetXNEG(const std::string& path);
    void SetYPOS(const std::string& path);
    void SetYNEG(const std::string& path);
    void SetZPOS(const std::string& path);
    void SetZNEG(const std::string& path);

    /// Makes the pictures' edges meet without seams (clamped, no mip-maps) and records the six
    /// faces for Draw(). The constructors call it.
    void Init();

    /// Draws the box around `camera`, on top of the view that is already loaded.
    ///
    /// With `reflection` set and the camera strictly above the water (y > 0) the box is centred on
    /// the camera's mirror image below the plane y = 0 and drawn past clip plane 0, which is
    /// assumed to be enabled and is enabled again afterwards. In every other case it is centred on
    /// the camera and clip plane 0 is left alone. The depth mask must be on; it is on afterwards.
    void Draw(Camera* camera, bool reflection);

private:
    /// The order in which the faces are kept and drawn.
    enum Face { ZPOS, ZNEG, YPOS, YNEG, XNEG, XPOS };
    static constexpr int faceCount = XPOS + 1;

    void ClampFaces();
    void RecordFaces();

    Image faces[faceCount];
    unsigned int list = 0; // display list of the six faces, 0 before Init()
};

} // namespace Vell
