#include "engine/env/sky.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/labels.h"
#include "engine/core/textureunits.h"
#include "engine/scene/camera.h"

namespace Vell {

namespace {

struct Corner {
    float s, t;
    float x, y, z;
};

// Half the side of the cube, in units: no side reaches the near plane and no corner, root of 3
// times as far, the far plane.
constexpr float h = 1000.0f;
static_assert(h > nearPlane && h * 1.7321 < farPlane);

constexpr int cornerCount = 4;

// One triangle strip per face, in the order of SkyBox::Face. The pictures are authored for
// exactly this mapping.
constexpr Corner strips[][cornerCount] = {
    {{1, 0, -h, -h, h}, {1, 1, -h, h, h}, {0, 0, h, -h, h}, {0, 1, h, h, h}},
    {{0, 0, -h, -h, -h}, {1, 0, h, -h, -h}, {0, 1, -h, h, -h}, {1, 1, h, h, -h}},
    {{1, 1, -h, h, -h}, {0, 1, h, h, -h}, {1, 0, -h, h, h}, {0, 0, h, h, h}},
    {{1, 0, -h, -h, -h}, {1, 1, -h, -h, h}, {0, 0, h, -h, -h}, {0, 1, h, -h, h}},
    {{1, 0, -h, -h, -h}, {1, 1, -h, h, -h}, {0, 0, -h, -h, h}, {0, 1, -h, h, h}},
    {{0, 0, h, -h, -h}, {1, 0, h, -h, h}, {0, 1, h, h, -h}, {1, 1, h, h, h}},
};

void DrawStrip(const Corner (&strip)[cornerCount]) {
    glBegin(GL_TRIANGLE_STRIP);
    for (const Corner& corner : strip) {
        glMultiTexCoord2f(GL_TEXTURE0, corner.s, corner.t);
        glVertex3f(corner.x, corner.y, corner.z);
    }
    glEnd();
}

} // namespace

SkyBox::SkyBox() {
    Init();
}

SkyBox::SkyBox(const std::string& xpos, const std::string& xneg, const std::string& ypos,
               const std::string& yneg, const std::string& zpos, const std::string& zneg) {
    SetXPOS(xpos);
    SetXNEG(xneg);
    SetYPOS(ypos);
    SetYNEG(yneg);
    SetZPOS(zpos);
    SetZNEG(zneg);
    Init();
}

SkyBox::~SkyBox() {
    glDeleteLists(list, 1);
    Unlabel(ObjectKind::List, list);
}

void SkyBox::SetXPOS(const std::string& path) {
    faces[XPOS].Load(path);
}

void SkyBox::SetXNEG(const std::string& path) {
    faces[XNEG].Load(path);
}

void SkyBox::SetYPOS(const std::string& path) {
    faces[YPOS].Load(path);
}

void SkyBox::SetYNEG(const std::string& path) {
    faces[YNEG].Load(path);
}

void SkyBox::SetZPOS(const std::string& path) {
    faces[ZPOS].Load(path);
}

void SkyBox::SetZNEG(const std::string& path) {
    faces[ZNEG].Load(path);
}

void SkyBox::Init() {
    ClampFaces();
    RecordFaces();
}

void SkyBox::Draw(Camera* camera, bool reflection) {
    const vec3 p = camera->GetPosition();
    const bool mirrored = reflection && p.y > 0.0f;

    glPushMatrix();
    // The reflection pass has mirrored the world about y = 0 and cuts what lies below it. Its eye
    // is the mirror image of the camera, and half of a box around that eye lies below.
    if (mirrored) {
        glDisable(GL_CLIP_PLANE0);
        glTranslatef(p.x, -p.y, p.z);
    } else {
        glTranslatef(p.x, p.y, p.z);
    }
    glDepthMask(GL_FALSE);
    glCallList(list);
    glDepthMask(GL_TRUE);
    if (mirrored)
        glEnable(GL_CLIP_PLANE0);
    glPopMatrix();
}

// Repeating or mip-mapped pictures would show the opposite edge's colour along the seams.
void SkyBox::ClampFaces() {
    for (const Image& face : faces) {
        face.Bind();
        glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_FALSE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    }
}

void SkyBox::RecordFaces() {
    if (list != 0)
        glDeleteLists(list, 1); // an earlier recording
    Unlabel(ObjectKind::List, list);
    list = glGenLists(1);
    Label(ObjectKind::List, list, "sky box");
    glNewList(list, GL_COMPILE);
    TextureUnit::Enable(TextureUnit::surface);
    for (int face = 0; face < faceCount; ++face) {
        faces[face].Bind();
        DrawStrip(strips[face]);
    }
    glDisable(GL_TEXTURE_2D);
    glEndList();
}

} // namespace Vell
