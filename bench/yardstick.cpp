// The yardstick: a town at the sea in plain OpenGL 2 calls, without any engine. What other programs
// take is told as so many times what this one takes, measured in turn, for machines, and hours on
// one machine, differ by more than a factor of two.
//
//     nimbrel_yardstick FOLDER [FRAMES]
//
// Draws 30 frames and then FRAMES (100) more. Prints milliseconds a frame (the median),
// milliseconds of the processor a frame, and milliseconds of the processor from the program's start
// to the first frame's end. FOLDER keeps the town's mesh and pictures, which the first run makes.
//
// The scene: 60,000 vertices in one mesh with a texture and a light map, six sky faces, a mirror
// image and a refraction image of 512 x 512, and water that mixes both; 960 x 89.

#include "bench/yardstick_data.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <SDL.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <stdexcept>

namespace {

using namespace Yardstick;

constexpr int width = 960;
constexpr int height = 89;
constexpr int mirrorSize = 512;
constexpr int warmFrames = 30;

double Milliseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

constexpr const char* waterVertexShader = R"(#version 110
varying vec4 place;
varying vec2 waves;
varying vec3 point;
void main()
{
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
    place = gl_Position;
    waves = gl_Vertex.xz / 60.0;
    point = gl_Vertex.xyz;
}
)";

constexpr const char* waterFragmentShader = R"(#version 110
uniform sampler2D reflection, refraction, normals;
uniform float time;
uniform vec3 eye;
varying vec4 place;
varying vec2 waves;
varying vec3 point;
void main()
{
    vec2 on_screen = place.xy / place.w * 0.5 + 0.5;
    vec2 drift = vec2(time, 0.7 * time);
    vec2 bend = (texture2D(normals, waves + drift).xy * 2.0 - 1.0) * 0.02;
    vec4 above = texture2D(reflection, on_screen + bend);
    vec4 below = texture2D(refraction, on_screen + bend);
    float steep = clamp(normalize(eye - point).y * 3.0, 0.0, 1.0);
    gl_FragColor = mix(above, below * vec4(0.6, 0.8, 0.85, 1.0), steep);
}
)";

GLuint Texture(const std::string& path, GLint wrap, bool mipmaps) {
    const Picture picture = ReadPicture(path);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                    mipmaps ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB8, picture.width, picture.height, 0, GL_BGRA,
                 GL_UNSIGNED_BYTE, picture.bytes.data());
    if (mipmaps)
        glGenerateMipmap(GL_TEXTURE_2D);
    return texture;
}

/// An image that is drawn into.
struct Target {
    GLuint buffer = 0;
    GLuint texture = 0;
};

Target NewTarget() {
    Target target;
    glGenTextures(1, &target.texture);
    glBindTexture(GL_TEXTURE_2D, target.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, mirrorSize, mirrorSize, 0, GL_BGRA, GL_UNSIGNED_BYTE,
                 nullptr);
    GLuint depth = 0;
    glGenRenderbuffers(1, &depth);
    glBindRenderbuffer(GL_RENDERBUFFER, depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, mirrorSize, mirrorSize);
    glGenFramebuffers(1, &target.buffer);
    glBindFramebuffer(GL_FRAMEBUFFER, target.buffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.texture, 0);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return target;
}

GLuint Compiled(GLenum kind, const char* source) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

GLuint WaterProgram() {
    const GLuint program = glCreateProgram();
    glAttachShader(program, Compiled(GL_VERTEX_SHADER, waterVertexShader));
    glAttachShader(program, Compiled(GL_FRAGMENT_SHADER, waterFragmentShader));
    glLinkProgram(program);
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "reflection"), 0);
    glUniform1i(glGetUniformLocation(program, "refraction"), 1);
    glUniform1i(glGetUniformLocation(program, "normals"), 2);
    glUseProgram(0);
    return program;
}

GLuint Buffer(const std::vector<float>& numbers) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(numbers.size() * sizeof(float)),
                 numbers.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    return buffer;
}

const char* Offset(std::size_t floats) {
    return reinterpret_cast<const char*>(floats * sizeof(float));
}

void Bind(int unit, GLuint texture) {
    glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_2D, texture);
    if (texture != 0)
        glEnable(GL_TEXTURE_2D);
    else
        glDisable(GL_TEXTURE_2D);
}

struct View {
    std::array<double, 3> eye;
    std::array<double, 3> aim;
};

/// Decided by the frame's number alone: along the town's main street, swaying.
View ViewOf(int frame) {
    const double t = frame;
    const double yaw = 0.30 * std::sin(t * 0.007);
    const double pitch = -0.07;
    View view{{250 * std::sin(t * 0.006), 130 + 50 * std::sin(t * 0.008), 3000 - 5 * t}, {}};
    view.aim = {view.eye[0] + std::sin(yaw) * std::cos(pitch) * 100,
                view.eye[1] + std::sin(pitch) * 100,
                view.eye[2] - std::cos(yaw) * std::cos(pitch) * 100};
    return view;
}

class Scene {
public:
    explicit Scene(const std::string& folder);
    void Draw(int frame);

private:
    void LookFrom(const View& view, bool mirrored) const;
    void DrawSky(const View& view, bool mirrored) const;
    void DrawTown() const;
    void DrawClipped(const View& view, bool above) const;
    void DrawWater(const View& view, int frame) const;

    GLsizei vertices = 0;
    GLuint town = 0;
    GLuint wall = 0;
    GLuint light = 0;
    GLuint normals = 0;
    std::array<GLuint, 6> faces{};
    GLuint sky = 0;
    GLuint sea = 0;
    Target reflection;
    Target refraction;
    GLuint water = 0;
};

Scene::Scene(const std::string& folder) {
    const std::vector<float> mesh = ReadMesh(folder + "/town.mesh");
    vertices = static_cast<GLsizei>(mesh.size() / floatsAVertex);
    town = Buffer(mesh);
    wall = Texture(folder + "/wall.jpg", GL_REPEAT, true);
    light = Texture(folder + "/light.png", GL_CLAMP_TO_EDGE, false);
    normals = Texture(folder + "/normals.png", GL_REPEAT, false);
    for (std::size_t i = 0; i < faces.size(); ++i)
        faces[i] = Texture(folder + "/sky" + std::to_string(i) + ".jpg", GL_CLAMP_TO_EDGE, false);
    reflection = NewTarget();
    refraction = NewTarget();
    water = WaterProgram();
    sky = Buffer(SkyCorners());
    constexpr float far = 12000;
    sea = Buffer({-far, 0, far, far, 0, far, far, 0, -far, -far, 0, -far});
    glMatrixMode(GL_PROJECTION);
    gluPerspective(25.0, 10.0, 0.1, 25000.0);
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_CULL_FACE);
}

void Scene::LookFrom(const View& view, bool mirrored) const {
    glLoadIdentity();
    gluLookAt(view.eye[0], view.eye[1], view.eye[2], view.aim[0], view.aim[1], view.aim[2], 0, 1,
              0);
    if (mirrored)
        glScaled(1, -1, 1);
}

void Scene::DrawSky(const View& view, bool mirrored) const {
    LookFrom(view, mirrored);
    glTranslated(view.eye[0], mirrored ? -view.eye[1] : view.eye[1], view.eye[2]);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glDisable(GL_CULL_FACE);
    glBindBuffer(GL_ARRAY_BUFFER, sky);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 5 * sizeof(float), Offset(0));
    glClientActiveTexture(GL_TEXTURE0);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(2, GL_FLOAT, 5 * sizeof(float), Offset(3));
    for (std::size_t i = 0; i < faces.size(); ++i) {
        Bind(0, faces[i]);
        glDrawArrays(GL_QUADS, static_cast<GLint>(4 * i), 4);
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
}

void Scene::DrawTown() const {
    constexpr GLsizei stride = floatsAVertex * sizeof(float);
    Bind(1, light);
    Bind(0, wall);
    glBindBuffer(GL_ARRAY_BUFFER, town);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(3, GL_FLOAT, stride, Offset(0));
    glNormalPointer(GL_FLOAT, stride, Offset(3));
    for (const int set : {0, 1}) {
        glClientActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + set));
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, stride, Offset(set == 0 ? 6 : 8));
    }
    glDrawArrays(GL_TRIANGLES, 0, vertices);
    for (const int set : {1, 0}) {
        glClientActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + set));
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        Bind(set, 0);
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

/// What of the town stands above the water, as the mirror shows it, or below.
void Scene::DrawClipped(const View& view, bool above) const {
    const std::array<double, 4> plane = {0, above ? 1.0 : -1.0, 0, 0.5};
    glFrontFace(above ? GL_CW : GL_CCW);
    LookFrom(view, above);
    glClipPlane(GL_CLIP_PLANE0, plane.data());
    glEnable(GL_CLIP_PLANE0);
    DrawTown();
    glDisable(GL_CLIP_PLANE0);
    glFrontFace(GL_CCW);
}

void Scene::DrawWater(const View& view, int frame) const {
    LookFrom(view, false);
    Bind(2, normals);
    Bind(1, refraction.texture);
    Bind(0, reflection.texture);
    glUseProgram(water);
    glUniform1f(glGetUniformLocation(water, "time"), static_cast<float>(frame) * 0.01f);
    glUniform3f(glGetUniformLocation(water, "eye"), static_cast<float>(view.eye[0]),
                static_cast<float>(view.eye[1]), static_cast<float>(view.eye[2]));
    glBindBuffer(GL_ARRAY_BUFFER, sea);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, Offset(0));
    glDrawArrays(GL_QUADS, 0, 4);
    glDisableClientState(GL_VERTEX_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glUseProgram(0);
    for (const int unit : {2, 1, 0})
        Bind(unit, 0);
}

void Begin(GLuint buffer, int across, int up) {
    glBindFramebuffer(GL_FRAMEBUFFER, buffer);
    glViewport(0, 0, across, up);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void Scene::Draw(int frame) {
    const View view = ViewOf(frame);
    Begin(reflection.buffer, mirrorSize, mirrorSize);
    DrawSky(view, true);
    DrawClipped(view, true);
    Begin(refraction.buffer, mirrorSize, mirrorSize);
    DrawClipped(view, false);
    Begin(0, width, height);
    DrawSky(view, false);
    LookFrom(view, false);
    DrawTown();
    DrawWater(view, frame);
}

void OpenWindow() {
    SDL_Init(SDL_INIT_VIDEO);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    if (SDL_SetVideoMode(width, height, 32, SDL_OPENGL) == nullptr)
        throw std::runtime_error(SDL_GetError());
}

void Run(const std::string& folder, int frames) {
    OpenWindow();
    Scene scene(folder);
    double toFirst = 0;
    double processor = 0;
    double last = 0;
    std::vector<double> durations;
    for (int frame = 0; frame < warmFrames + frames; ++frame) {
        scene.Draw(frame);
        SDL_GL_SwapBuffers();
        if (frame == 0) {
            glFinish();
            toFirst = Milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        }
        if (frame == warmFrames - 1)
            processor = Milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        const double now = Milliseconds(CLOCK_MONOTONIC);
        if (frame >= warmFrames)
            durations.push_back(now - last);
        last = now;
    }
    processor = Milliseconds(CLOCK_PROCESS_CPUTIME_ID) - processor;
    SDL_Quit();
    std::sort(durations.begin(), durations.end());
    std::printf("frame %.3f\nframe_cpu %.3f\nstart_cpu %.3f\n", durations[durations.size() / 2],
                processor / frames, toFirst);
}

} // namespace

int main(int count, char** arguments) {
    const int frames = count > 2 ? static_cast<int>(std::strtol(arguments[2], nullptr, 10)) : 100;
    if (count < 2 || frames < 1) {
        std::fputs("nimbrel_yardstick FOLDER [FRAMES]\n", stderr);
        return 2;
    }
    try {
        if (MakeData(arguments[1])) // in a run of its own, or it would count
            return 0;
        Run(arguments[1], frames);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
