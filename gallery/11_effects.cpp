// 11  Effects over the whole picture: bloom, blur, and two of one's own.
//
// Effects run in the order in which they were added. One of one's own is an old tube, which a
// fragment program makes; the other shows an effect in a quarter of the picture alone, so that
// four can be compared: as it was drawn, bloom, blur, and the tube.

#include "demo/assets.h"
#include "engine/core/core.h"
#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"
#include "engine/post/post_bloom.h"
#include "engine/post/post_shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

using Gallery::Window;
using Vell::vec3;

namespace {

// Out: rows of light, and colours that miss each other towards the edges.
const char tubeSource[] = R"glsl(
#version 110
uniform sampler2D texture;
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec2 apart = (st - 0.5) * 0.015;
    vec3 colour = vec3(texture2D(texture, st - apart).r, texture2D(texture, st).g,
                       texture2D(texture, st + apart).b);
    float row = 0.8 + 0.4 * sin(gl_FragCoord.y * 1.5707963);
    gl_FragColor = vec4(colour * row * vec3(0.95, 1.1, 1.0), 1.0);
})glsl";

/// Lets another effect work, and puts what was there before over all but a quarter of it.
class InQuarter : public Vell::PostEffect {
public:
    InQuarter(Vell::PostEffect& shown, int number) : effect(shown), quarter(number) {}

    void Process(Vell::FBO* in, Vell::FBO* out) override {
        constexpr int width = Window::width / 4;
        effect.Process(in, out);
        out->Enable();
        glEnable(GL_SCISSOR_TEST);
        Vell::TextureUnit::Enable(Vell::TextureUnit::surface);
        glScissor(0, 0, quarter * width, Window::height);
        Vell::DrawFullScreen(in->GetColor());
        glScissor((quarter + 1) * width, 0, Window::width, Window::height);
        Vell::DrawFullScreen(in->GetColor());
        Vell::TextureUnit::Disable(Vell::TextureUnit::surface);
        glDisable(GL_SCISSOR_TEST);
        out->Disable();
    }

private:
    Vell::PostEffect& effect;
    int quarter;
};

void AddWisp(Vell::SceneManager& scene, const char* mesh, const vec3& place) {
    Vell::XT3DStatic* wisp = scene.GetStaticMesh(mesh);
    wisp->SetMaterialShader(Assets::wispVertexShader, Assets::wispFragmentShader);
    wisp->SetBlend(true);
    scene.AddSceneNode(wisp, place);
}

} // namespace

int main() {
    Window window("Vell 11: as it is, bloom, blur, and an effect of one's own");
    Vell::SetFovy(40);
    Vell::PostBloom bloom;
    bloom.SetThreshold(0.4f);
    Vell::PostBlur blur;
    Vell::PostShader tube(tubeSource);
    InQuarter shown[] = {{bloom, 1}, {blur, 2}, {tube, 3}};

    Vell::SceneManager scene;
    scene.AddCamera(vec3(0, 0, 9), vec3(0, 4, 0));
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    AddWisp(scene, Assets::redWispMesh, vec3(-4.4f, 3.6f, 0));
    AddWisp(scene, Assets::greenWispMesh, vec3(-1.5f, 4.6f, 0));
    AddWisp(scene, Assets::blueWispMesh, vec3(1.5f, 3.6f, 0));
    AddWisp(scene, Assets::redWispMesh, vec3(4.4f, 4.6f, 0));
    for (InQuarter& quarter : shown)
        scene.GetPostProcess()->AddPostEffect(&quarter);
    while (window.NextFrame())
        scene.Draw();
}
