#include "tests/recording/calls.h"

#include "engine/core/core.h"
#include "engine/core/labels.h"
#include "tests/support/fake_time.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    const std::size_t last = text.find_last_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

/// A call that has to be made, and the words for what happens there.
struct Expected {
    std::string call;
    std::string step;
};

std::vector<Expected> CallsOf(const std::string& expected) {
    std::vector<Expected> calls;
    std::string step;
    std::istringstream lines(expected);
    for (std::string line; std::getline(lines, line);) {
        if (Trimmed(line).starts_with("--")) {
            step = Trimmed(Trimmed(line).substr(2));
            continue;
        }
        std::istringstream parts(line);
        for (std::string part; std::getline(parts, part, ';');)
            if (!Trimmed(part).empty())
                calls.push_back({Trimmed(part), step});
    }
    return calls;
}

const std::string nothing = "nothing more";

const std::string& At(const std::vector<std::string>& calls, std::size_t i) {
    return i < calls.size() ? calls[i] : nothing;
}

/// Behind the last expected call the last step goes on.
Expected At(const std::vector<Expected>& calls, std::size_t i) {
    if (i < calls.size())
        return calls[i];
    return {nothing, calls.empty() ? "" : calls.back().step};
}

/// What the engine calls the objects that these lines name.
std::string Legend(const std::string& lines) {
    std::string legend;
    for (const Recorder::Object& object : gl.Objects())
        if (const std::string& label = Vell::LabelOf(object.kind, object.name);
            !label.empty() && lines.find(object.label) != std::string::npos)
            legend += "\n    " + object.label + " is the engine's \"" + label + "\"";
    return legend.empty() ? "" : "\nwhere" + legend;
}

std::string Lines(const std::vector<std::string>& calls, std::size_t first, std::size_t last) {
    std::string lines;
    for (std::size_t i = first; i < std::min(last, calls.size()); ++i)
        lines += "\n    " + calls[i];
    return lines;
}

::testing::AssertionResult Compare(const std::vector<Expected>& wanted,
                                   const std::vector<std::string>& made) {
    const std::size_t most = std::max(wanted.size(), made.size());
    std::size_t i = 0;
    while (i < most && At(wanted, i).call == At(made, i))
        ++i;
    if (i == most)
        return ::testing::AssertionSuccess();
    const auto& [call, step] = At(wanted, i);
    const std::string before = Lines(made, i < 5 ? 0 : i - 5, i);
    const std::string after = Lines(made, i, i + 8);
    return ::testing::AssertionFailure()
           << "call " << i + 1 << " of " << made.size()
           << (step.empty() ? "" : ", \"" + step + "\"") << ": expected " << call << ", made "
           << At(made, i) << "\nbefore it:" << before << "\nfrom it on:" << after
           << Legend(call + before + after);
}

std::string Size(int width, int height) {
    return std::to_string(width) + ", " + std::to_string(height);
}

std::string Allocate(const std::string& texture, const std::string& internal, int width, int height,
                     const std::string& format, const std::string& type) {
    return "glBindTexture(GL_TEXTURE_2D, " + texture + ")\n" + "glTexImage2D(GL_TEXTURE_2D, 0, " +
           internal + ", " + Size(width, height) + ", 0, " + format + ", " + type + ", 0)\n";
}

std::string AllocateColour(const std::string& label, int width, int height) {
    return Allocate(label + " colour", "GL_RGBA", width, height, "GL_RGBA", "GL_UNSIGNED_BYTE");
}

std::string AllocateDepth(const std::string& label, int width, int height,
                          const std::string& type) {
    return Allocate(label + " depth", "GL_DEPTH_COMPONENT24", width, height, "GL_DEPTH_COMPONENT",
                    type);
}

std::string AllocateRenderbuffer(const std::string& label, int width, int height) {
    return "glBindRenderbufferEXT(GL_RENDERBUFFER, " + label + ")\n" +
           "glRenderbufferStorageEXT(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, " +
           Size(width, height) + ")\n";
}

std::string FilterAndClamp(const std::string& filter) {
    return "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, " + filter + ")\n" +
           "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, " + filter + ")\n" + R"(
           glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
           glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
           )";
}

} // namespace

void Calls::SetUp() {
    SetFakeTime(0.0);
    gl.Reset();
    ASSERT_TRUE(Vell::InitEngine(Vell::ivec2(640, 480)));
    Vell::SetFovy(70.0f);
    Forget();
}

void Calls::TearDown() {
    for (const GLenum mode : {GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE})
        EXPECT_EQ(gl.matrices.Depth(mode), 1u) << "stack of mode 0x" << std::hex << mode;
    ClearFakeTime();
}

::testing::AssertionResult Calls::Made(const std::string& expected) {
    return Compare(CallsOf(expected), gl.Take());
}

::testing::AssertionResult Calls::MadeLast(const std::string& expected) {
    const std::vector<Expected> wanted = CallsOf(expected);
    std::vector<std::string> made = gl.Take();
    if (made.size() > wanted.size())
        made.erase(made.begin(), made.end() - static_cast<std::ptrdiff_t>(wanted.size()));
    return Compare(wanted, made);
}

std::set<std::string> Calls::Deleted() {
    std::set<std::string> deleted;
    for (const std::string& call : gl.Take()) {
        if (!call.starts_with("glDelete"))
            continue;
        const std::size_t open = call.find('(') + 1;
        std::istringstream arguments(call.substr(open, call.rfind(')') - open));
        for (std::string argument; std::getline(arguments, argument, ',');)
            deleted.insert(Trimmed(argument));
    }
    return deleted;
}

std::vector<std::string> Calls::Labels() {
    std::vector<std::string> labels;
    for (const Recorder::Object& object : gl.Objects())
        if (const std::string& label = Vell::LabelOf(object.kind, object.name); !label.empty())
            labels.push_back(label);
    return labels;
}

std::string Calls::NewTarget(const std::string& label) {
    return "glGenFramebuffersEXT(1, " + label + ")\n" + "glGenRenderbuffersEXT(1, " + label +
           ")\n" + AllocateRenderbuffer(label, 256, 256) + R"(
           -- looks for errors, and takes back the one of attaching to the screen
           glGetError()
           )" +
           "glFramebufferRenderbufferEXT(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, " +
           label + ")\nglGetError()\n" + "-- the target's colour and depth\n" +
           "glGenTextures(1, " + label + " colour)\n" + AllocateColour(label, 256, 256) +
           FilterAndClamp("GL_LINEAR") + "glGenTextures(1, " + label + " depth)\n" +
           AllocateDepth(label, 256, 256, "GL_FLOAT") + FilterAndClamp("GL_NEAREST") +
           "glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE)\n";
}

std::string Calls::SizeTarget(const std::string& label, int width, int height) {
    return AllocateRenderbuffer(label, width, height) + AllocateColour(label, width, height) +
           AllocateDepth(label, width, height, "GL_UNSIGNED_BYTE");
}

std::string Calls::EnableTarget(const std::string& label, int width, int height) {
    const std::string attach = "glFramebufferTexture2DEXT(GL_FRAMEBUFFER, ";
    return "glBindFramebufferEXT(GL_FRAMEBUFFER, " + label + ")\n" +
           "glBindRenderbufferEXT(GL_RENDERBUFFER, " + label + ")\n" + attach +
           "GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, " + label + " colour, 0)\n" + attach +
           "GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, " + label + " depth, 0)\n" + "glViewport(0, 0, " +
           Size(width, height) + ")\n" + "glPushMatrix()\n";
}

std::string Calls::DisableTarget() {
    return R"(
        glBindFramebufferEXT(GL_FRAMEBUFFER, 0)
        glBindRenderbufferEXT(GL_RENDERBUFFER, 0)
        glViewport(0, 0, 640, 480)
        glPopMatrix()
        )";
}

std::string Calls::DeleteTarget(const std::string& label) {
    return "glDeleteTextures(1, " + label + " colour)\n" + "glDeleteTextures(1, " + label +
           " depth)\n" + "glDeleteFramebuffersEXT(1, " + label + ")\n" +
           "glDeleteRenderbuffersEXT(1, " + label + ")\n";
}

std::string Calls::NewProgram(const std::string& label) {
    const std::string vertex = label + " vertex";
    const std::string fragment = label + " fragment";
    return "glCreateShaderObject(GL_VERTEX_SHADER)\n"
           "glCreateShaderObject(GL_FRAGMENT_SHADER)\n"
           "glShaderSource(" +
           vertex + ", 1, text, 0)\n" + "glShaderSource(" + fragment + ", 1, text, 0)\n" +
           "glCompileShader(" + vertex + ")\n" + "glCompileShader(" + fragment + ")\n" +
           "glGetObjectParameteriv(" + vertex + ", GL_COMPILE_STATUS)\n" +
           "glGetObjectParameteriv(" + fragment + ", GL_COMPILE_STATUS)\n" +
           "glCreateProgramObject()\n" + "glAttachObject(" + label + ", " + vertex + ")\n" +
           "glAttachObject(" + label + ", " + fragment + ")\n" + "glLinkProgram(" + label + ")\n" +
           "glUseProgramObject(" + label + ")\n";
}

std::string Calls::DeleteProgram(const std::string& label) {
    return "glDeleteObject(" + label + " vertex)\n" + "glDeleteObject(" + label + " fragment)\n" +
           "glDeletePrograms(1, " + label + ")\n";
}

std::string Calls::Send(const std::string& program, const std::string& uniform,
                        const std::string& kind, const std::string& value) {
    return "glGetUniformLocation(" + program + ", \"" + uniform + "\")\n" + "glUniform" + kind +
           "(" + uniform + ", " + value + ")\n";
}

std::string Calls::UnitOn(int unit) {
    return "glActiveTexture(GL_TEXTURE" + std::to_string(unit) + ")\n" +
           "glEnable(GL_TEXTURE_2D)\n";
}

std::string Calls::UnitOff(int unit) {
    return "glActiveTexture(GL_TEXTURE" + std::to_string(unit) + ")\n" +
           "glDisable(GL_TEXTURE_2D)\n";
}

std::string Calls::BindTexture(const std::string& label) {
    return "glBindTexture(GL_TEXTURE_2D, " + label + ")\n";
}

std::string Calls::BlueBox(const std::string& centre, const std::string& size) {
    return R"(
        glEnable(GL_POLYGON_OFFSET_LINE)
        glPolygonOffset(-1, -2)
        glColor4f(0, 0, 1, 1)
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)
        glDisable(GL_TEXTURE_2D)
        glPushMatrix()
        )" +
           ("glTranslatef(" + centre + ")\n") + ("glScalef(" + size + ")\n") + R"(
        glInterleavedArrays(GL_V3F, 0, memory)
        glDrawArrays(GL_QUADS, 0, 24)
        glPopMatrix()
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)
        glDisable(GL_POLYGON_OFFSET_LINE)
        glColor4f(1, 1, 1, 1)
        )";
}

std::string Calls::MakePlane() {
    return "glGetFloatv(GL_MODELVIEW_MATRIX)\nglGetFloatv(GL_PROJECTION_MATRIX)\n";
}

std::string Calls::Quad() {
    return R"(
        glInterleavedArrays(GL_T2F_V3F, 0, memory)
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
        )";
}

std::string Calls::PushUnitSquare() {
    return R"(
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        glOrtho(0, 1, 0, 1, -1, 1)
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        )";
}

std::string Calls::PopUnitSquare() {
    return R"(
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        )";
}
