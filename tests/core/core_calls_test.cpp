// Start-up and view settings, call by call.

#include "tests/recording/calls.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "tests/support/log_page.h"

#include <string>
#include <vector>

using Vell::ivec2;

namespace {

class CoreCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        for (const Pointers& group : Groups())
            for (std::size_t i = 0; i < group.count; ++i)
                *group.addresses[i] = nullptr;
    }

    struct Pointers {
        void*** addresses;
        std::size_t count;
    };

    static std::vector<Pointers> Groups() {
        return {{ARBShaderObjectProcAddress, 39}, {ARBVertexProgramProcAddress, 62},
                {ARBVertexShaderProcAddress, 5},  {ARBBufferObjectProcAddress, 4},
                {ARBPointSpriteProcAddress, 2},   {EXTFrameBufferProcAddress, 9}};
    }

    /// How many of the 121 pointers are set, from the first on; fails when one is set after that.
    static std::size_t PointersSet() {
        std::size_t set = 0;
        std::size_t place = 0;
        for (const Pointers& group : Groups())
            for (std::size_t i = 0; i < group.count; ++i, ++place)
                if (*group.addresses[i] != nullptr) {
                    EXPECT_EQ(set, place) << "a pointer after the missing one was set";
                    ++set;
                }
        return set;
    }

    static std::string Projection(const std::string& fovy, const std::string& ratio) {
        return "glMatrixMode(GL_PROJECTION); glLoadIdentity()\n"
               "gluPerspective(" +
               fovy + ", " + ratio + ", 0.10000000149011612, 25000)\n" +
               "glMatrixMode(GL_MODELVIEW)\n";
    }

    /// Start-up on an 800 x 600 screen up to the first entry point, then the fetching of the first
    /// `count` entry points.
    static std::string StartUp(std::size_t count) {
        std::string calls = "-- the screen\n"
                            "glViewport(0, 0, 800, 600)\n" +
                            Projection("70", "1") + "-- depth\n" + "glEnable(GL_DEPTH_TEST)\n";
        for (const RecordedGroup& group : RecordedGroups()) {
            if (count == 0)
                break;
            calls += "-- " + group.extension + "\nglGetString(GL_EXTENSIONS)\n";
            for (std::size_t i = 0; i < group.names.size() && count > 0; ++i, --count)
                calls += "glXGetProcAddress(" + group.names[i] + ")\n";
        }
        return calls;
    }
};

constexpr std::size_t everyPointer = 121;

} // namespace

TEST_F(CoreCalls, Setting_the_screen_sets_viewport_and_projection) {
    Vell::SetScreen(ivec2(1600, 600));
    EXPECT_TRUE(Made("glViewport(0, 0, 1600, 600)\n" + Projection("70", "2")));
}

TEST_F(CoreCalls, Screen_ratio_is_the_integer_quotient) {
    struct {
        int width, height;
        const char* ratio;
    } const cases[] = {{800, 600, "1"}, {1280, 720, "1"}, {1920, 1080, "1"},
                       {640, 480, "1"}, {960, 89, "10"},  {480, 640, "0"}};
    for (const auto& [width, height, ratio] : cases) {
        Vell::SetScreen(ivec2(width, height));
        EXPECT_TRUE(Made("glViewport(0, 0, " + std::to_string(width) + ", " +
                         std::to_string(height) + ")\n" + Projection("70", ratio)));
    }
}

TEST_F(CoreCalls, Field_of_view_and_ratio_rebuild_the_projection_only) {
    Vell::SetFovy(25.0f);
    EXPECT_TRUE(Made(Projection("25", "1")));
    Vell::SetRatio(1.5f);
    EXPECT_TRUE(Made(Projection("25", "1.5")));
}

TEST_F(CoreCalls, Each_view_setting_holds_until_it_is_set_itself) {
    Vell::SetRatio(1.5f);
    EXPECT_TRUE(Made(Projection("70", "1.5")));
    Vell::SetFovy(150.5f); // very wide, and not a whole number of degrees
    EXPECT_TRUE(Made(Projection("150.5", "1.5")));
    Vell::SetScreen(ivec2(1600, 600)); // which sets the ratio anew
    EXPECT_TRUE(Made("glViewport(0, 0, 1600, 600)\n" + Projection("150.5", "2")));
}

TEST_F(CoreCalls, Start_up_sets_the_screen_and_fetches_the_six_groups_in_order) {
    for (const char* const start : {"first", "second, on the same screen"}) {
        SCOPED_TRACE(start);
        EXPECT_TRUE(Vell::InitEngine(ivec2(800, 600)));
        EXPECT_TRUE(Made(StartUp(everyPointer)));
        EXPECT_EQ(PointersSet(), everyPointer);
    }
}

TEST_F(CoreCalls, Start_up_stops_at_each_single_missing_entry_point) {
    std::size_t place = 0;
    for (const RecordedGroup& group : RecordedGroups())
        for (const std::string& name : group.names) {
            SCOPED_TRACE(name);
            SetUp();
            gl.missing = {name};
            EXPECT_FALSE(Vell::InitEngine(ivec2(800, 600)));
            ++place;
            EXPECT_TRUE(Made(StartUp(place))); // the missing one is the last that is asked for
            EXPECT_EQ(PointersSet(), place - 1);
            EXPECT_EQ(ReadLogRows().back().status, "ERROR");
        }
    EXPECT_EQ(place, everyPointer);
}

TEST_F(CoreCalls, Result_of_a_group_is_the_number_of_the_missing_entry_point) {
    const char* names[] = {"glGenBuffersARB", "glBindBufferARB", "glBufferDataARB", nullptr};
    void* pointers[3] = {};
    void** addresses[] = {&pointers[0], &pointers[1], &pointers[2]};
    const auto fetch = [&] {
        return InitializeGLExtension("GL_ARB_vertex_buffer_object", names, addresses);
    };
    for (int i = 0; names[i] != nullptr; ++i) {
        gl.missing = {names[i]};
        EXPECT_EQ(fetch(), i + 1);
    }
    gl.missing.clear();
    EXPECT_EQ(fetch(), 0);
    gl.extensions = "GL_ARB_vertex_shader";
    EXPECT_EQ(fetch(), -1);
}

TEST_F(CoreCalls, Start_up_asks_for_nothing_of_an_extension_that_is_not_listed) {
    std::size_t before = 0;
    for (const RecordedGroup& group : RecordedGroups()) {
        SCOPED_TRACE(group.extension);
        SetUp();
        gl.extensions.erase(gl.extensions.find(group.extension), group.extension.size());
        EXPECT_FALSE(Vell::InitEngine(ivec2(800, 600)));
        EXPECT_TRUE(Made(StartUp(before) + "glGetString(GL_EXTENSIONS)"));
        EXPECT_EQ(PointersSet(), before);
        before += group.names.size();
    }
}

TEST_F(CoreCalls, An_extension_is_looked_for_in_the_list_as_it_is_now) {
    gl.extensions = "GL_EXT_first GL_ARB_vertex_program GL_EXT_last";
    const char* const place = gl.extensions.data();
    const auto change = [&](const std::string& list) {
        std::copy(list.c_str(), list.c_str() + list.size() + 1, gl.extensions.data());
        ASSERT_EQ(gl.extensions.data(), place) << "another list at the same address";
    };
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 1);
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 1);
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_shader"), 0) << "begins alike at that place";
    change("GL_EXT_first GL_ARB_vertex");
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 0) << "the list ends within the name";
    change("GL_EXT_first");
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 0) << "the list ends before that place";
    change("GL_ARB_vertex_program");
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 1) << "at another place";
    change("");
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 0);
}

TEST_F(CoreCalls, Framebuffer_extension_is_found_inside_the_drivers_name_for_it) {
    gl.extensions = "GL_EXT_framebuffer_object";
    EXPECT_EQ(CheckForExtension("EXT_framebuffer_object"), 1);
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex"), 0);
    gl.extensions = "GL_ARB_vertex_shader";
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex"), 1);
    EXPECT_TRUE(Made(R"(
        glGetString(GL_EXTENSIONS)
        glGetString(GL_EXTENSIONS)
        glGetString(GL_EXTENSIONS)
        )"));
}
