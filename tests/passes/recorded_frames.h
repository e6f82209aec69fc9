#pragma once

#include "demo/show.h"
#include "tools/passes/passes.h"
#include "tools/stage/show.h"

#include "tests/passes/libraries.h"
#include "tests/support/demo_data.h"
#include "tests/support/gl_state.h"
#include "tests/support/scratch.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <vector>

/// Tiny data as MakeDemoData() writes it, but for the city: a triangle of
/// (40, 0, 15), (60, 0, 15) and (50, 10, 15), which more of the flights have in view.
inline void MakeFilmData() {
    MakeDemoData();
    WriteFile("Data/Gfx/City/city.xt3dstatic", "XT3DSTATIC 1 Data/Gfx/ 0\n"
                                               "NULL NULL NULL 3\n"
                                               "40 0 15  0 0 1  0 0\n"
                                               "60 0 15  0 0 1  1 0\n"
                                               "50 10 15  0 0 1  0 1\n");
    // A text of its own, so that it is not taken for the city's.
    WriteFile("Data/Gfx/Wisp/billboard.vert", "// wisp\n"
                                              "void main()\n"
                                              "{\n"
                                              "    gl_Position = ftransform();\n"
                                              "}\n");
}

using Bytes = std::vector<unsigned char>;

/// RGBA, bottom row first, of the window's back buffer.
inline Bytes ReadWindow() {
    Bytes bytes(static_cast<std::size_t>(Show::width) * Show::height * 4);
    glReadPixels(0, 0, Show::width, Show::height, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    return bytes;
}

/// Plays the show without any recording and writes what a viewer sees of some frames.
class Onlooker : public Stage::Visitor {
public:
    Onlooker(const std::vector<int>& numbers, std::ostream& file) : wanted(numbers), out(file) {
        Stage::PlayShow({10, 1}, wanted.back(), *this);
    }

private:
    bool Wants(int number) override {
        return std::find(wanted.begin(), wanted.end(), number) != wanted.end();
    }
    void End(int) override {
        const Bytes bytes = ReadWindow();
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
    }

    const std::vector<int>& wanted;
    std::ostream& out;
};

/// What a frame was found to be.
struct FrameFound {
    std::vector<Passes::Pass> passes;
    Passes::View view;
    Bytes window;          ///< read by the test itself
    std::string leftState; ///< what EndFrame() changed
    GLenum error = 0;      ///< OpenGL's flag after the frame
};

/// Plays the show with recordings of some of its frames, by their numbers at ten a second.
class Frames : public Stage::Visitor {
public:
    static constexpr Stage::Rate rate{10, 1};

    Frames(Passes::Detail detail, const std::vector<int>& numbers) : recorder(detail) {
        for (const int number : numbers)
            found[number] = {};
        Stage::PlayShow(rate, found.rbegin()->first, *this);
    }

    std::map<int, FrameFound> found;

private:
    bool Wants(int number) override { return found.count(number) != 0; }
    void Begin(int) override { recorder.BeginFrame(); }
    void End(int number) override {
        FrameFound& frame = found[number];
        const GlState before = CaptureGlState();
        recorder.EndFrame();
        frame.leftState = Differences(before, CaptureGlState());
        frame.error = glGetError();
        frame.passes = recorder.Take();
        frame.view = recorder.LastView();
        frame.window = ReadWindow();
        KeepLibraries();
    }

    Passes::PassRecorder recorder;
};
