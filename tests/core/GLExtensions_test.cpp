#include "engine/core/GLExtensions.h"

#include "tests/support/gl_test.h"

#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <GL/glx.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAreArray;

namespace {

// The one name that the driver is made not to know. libGL itself answers any name with an address.
constexpr char missingName[] = "glMissing";

} // namespace

/// Takes the place of libGL's function: null for the missing name, libGL's answer for all others.
extern "C" __GLXextFuncPtr glXGetProcAddress(const GLubyte* name) {
    static const auto real =
        reinterpret_cast<decltype(&glXGetProcAddress)>(dlsym(RTLD_NEXT, "glXGetProcAddress"));
    return std::strcmp(reinterpret_cast<const char*>(name), missingName) == 0 ? nullptr
                                                                              : real(name);
}

namespace {

using Names = std::vector<std::string>;

/// "stem" + each ending + "ARB".
Names Family(const std::string& stem, const Names& endings) {
    Names names;
    for (const std::string& ending : endings)
        names.push_back(stem + ending + "ARB");
    return names;
}

Names operator+(Names a, const Names& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <std::size_t Size>
Names NamesOf(const char* (&list)[Size]) {
    EXPECT_EQ(list[Size - 1], nullptr) << "the list must end with a null pointer";
    return Names(list, list + Size - 1);
}

TEST(ExtensionTables, Ask_for_39_entry_points_of_the_shader_objects) {
    const Names expected =
        Family("gl", {"DeleteObject", "GetHandle", "DetachObject", "CreateShaderObject",
                      "ShaderSource", "CompileShader", "CreateProgramObject", "AttachObject",
                      "LinkProgram", "UseProgramObject", "ValidateProgram"}) +
        Family("glUniform", {"1f", "2f", "3f", "4f", "1i", "2i", "3i", "4i", "1fv", "2fv", "3fv",
                             "4fv", "1iv", "2iv", "3iv", "4iv"}) +
        Family("glUniformMatrix", {"2fv", "3fv", "4fv"}) +
        Family("glGet",
               {"ObjectParameterfv", "ObjectParameteriv", "InfoLog", "AttachedObjects",
                "UniformLocation", "ActiveUniform", "Uniformfv", "Uniformiv", "ShaderSource"});
    ASSERT_EQ(expected.size(), 39u);
    EXPECT_THAT(NamesOf(ARBShaderObjectProcName), ElementsAreArray(expected));
}

TEST(ExtensionTables, Ask_for_62_entry_points_of_the_vertex_programs) {
    const Names expected =
        Family("glVertexAttrib",
               {"1d",   "1dv",  "1f",   "1fv",  "1s",    "1sv",   "2d",    "2dv",  "2f",
                "2fv",  "2s",   "2sv",  "3d",   "3dv",   "3f",    "3fv",   "3s",   "3sv",
                "4Nbv", "4Niv", "4Nsv", "4Nub", "4Nubv", "4Nuiv", "4Nusv", "4bv",  "4d",
                "4dv",  "4f",   "4fv",  "4iv",  "4s",    "4sv",   "4ubv",  "4uiv", "4usv"}) +
        Family("gl", {"VertexAttribPointer", "EnableVertexAttribArray", "DisableVertexAttribArray",
                      "ProgramString", "BindProgram", "DeletePrograms", "GenPrograms"}) +
        Family("glProgram",
               {"EnvParameter4d", "EnvParameter4dv", "EnvParameter4f", "EnvParameter4fv",
                "LocalParameter4d", "LocalParameter4dv", "LocalParameter4f", "LocalParameter4fv"}) +
        Family("glGetProgram", {"EnvParameterdv", "EnvParameterfv", "LocalParameterdv",
                                "LocalParameterfv", "iv", "String"}) +
        Family("glGetVertexAttrib", {"dv", "fv", "iv", "Pointerv"}) + Names{"glIsProgramARB"};
    ASSERT_EQ(expected.size(), 62u);
    EXPECT_THAT(NamesOf(ARBVertexProgramProcName), ElementsAreArray(expected));
}

TEST(ExtensionTables, Ask_for_the_core_names_where_that_is_intended) {
    EXPECT_THAT(NamesOf(ARBVertexShaderProcName),
                ElementsAreArray({"glGetShaderInfoLog", "glGetShaderiv", "glBindAttribLocationARB",
                                  "glGetActiveAttribARB", "glGetAttribLocationARB"}));
    EXPECT_THAT(NamesOf(ARBPointSpriteProcName),
                ElementsAreArray({"glPointParameterf", "glPointParameterfv"}));
}

TEST(ExtensionTables, Ask_for_buffers_and_framebuffers_by_their_suffixed_names) {
    EXPECT_THAT(NamesOf(ARBBufferObjectProcName),
                ElementsAreArray({"glGenBuffersARB", "glBindBufferARB", "glBufferDataARB",
                                  "glDeleteBuffersARB"}));
    EXPECT_THAT(
        NamesOf(EXTFrameBufferProcName),
        ElementsAreArray({"glBindFramebufferEXT", "glBindRenderbufferEXT", "glGenRenderbuffersEXT",
                          "glGenFramebuffersEXT", "glRenderbufferStorageEXT",
                          "glFramebufferTexture2DEXT", "glFramebufferRenderbufferEXT",
                          "glDeleteFramebuffersEXT", "glDeleteRenderbuffersEXT"}));
}

template <class Pointer>
void** Address(Pointer& pointer) {
    return reinterpret_cast<void**>(&pointer);
}

TEST(ExtensionTables, Store_each_entry_point_in_the_pointer_of_its_name) {
    struct Case {
        const char** name;
        void** address;
        const char* expectedName;
        void** expectedAddress;
    };
    // First, last and some entry of each group; the suffix is dropped but for the framebuffers.
    const Case cases[] = {
        {&ARBShaderObjectProcName[0], ARBShaderObjectProcAddress[0], "glDeleteObjectARB",
         Address(glDeleteObject)},
        {&ARBShaderObjectProcName[6], ARBShaderObjectProcAddress[6], "glCreateProgramObjectARB",
         Address(glCreateProgramObject)},
        {&ARBShaderObjectProcName[11], ARBShaderObjectProcAddress[11], "glUniform1fARB",
         Address(glUniform1f)},
        {&ARBShaderObjectProcName[38], ARBShaderObjectProcAddress[38], "glGetShaderSourceARB",
         Address(glGetShaderSource)},
        {&ARBVertexProgramProcName[0], ARBVertexProgramProcAddress[0], "glVertexAttrib1dARB",
         Address(glVertexAttrib1d)},
        {&ARBVertexProgramProcName[41], ARBVertexProgramProcAddress[41], "glDeleteProgramsARB",
         Address(glDeletePrograms)},
        {&ARBVertexProgramProcName[61], ARBVertexProgramProcAddress[61], "glIsProgramARB",
         Address(glIsProgram)},
        {&ARBVertexShaderProcName[1], ARBVertexShaderProcAddress[1], "glGetShaderiv",
         Address(glGetShaderiv)},
        {&ARBVertexShaderProcName[4], ARBVertexShaderProcAddress[4], "glGetAttribLocationARB",
         Address(glGetAttribLocation)},
        {&ARBBufferObjectProcName[0], ARBBufferObjectProcAddress[0], "glGenBuffersARB",
         Address(glGenBuffers)},
        {&ARBPointSpriteProcName[1], ARBPointSpriteProcAddress[1], "glPointParameterfv",
         Address(glPointParameterfv)},
        {&EXTFrameBufferProcName[0], EXTFrameBufferProcAddress[0], "glBindFramebufferEXT",
         Address(glBindFramebufferEXT)},
        {&EXTFrameBufferProcName[8], EXTFrameBufferProcAddress[8], "glDeleteRenderbuffersEXT",
         Address(glDeleteRenderbuffersEXT)},
    };
    for (const Case& c : cases) {
        EXPECT_STREQ(*c.name, c.expectedName);
        EXPECT_EQ(c.address, c.expectedAddress) << c.expectedName;
    }
}

struct Entry {
    std::string pointer;
    std::string name;
};

#define ENTRY(type, pointer, name) {#pointer, name},

TEST(ExtensionTables, Name_every_pointer_of_the_ARB_groups_without_the_suffix) {
    const Entry entries[] = {
        VELL_SHADER_OBJECT_ENTRY_POINTS(ENTRY) VELL_VERTEX_PROGRAM_ENTRY_POINTS(ENTRY)
            VELL_VERTEX_SHADER_ENTRY_POINTS(ENTRY) VELL_BUFFER_OBJECT_ENTRY_POINTS(ENTRY)
                VELL_POINT_SPRITE_ENTRY_POINTS(ENTRY)};
    EXPECT_EQ(std::size(entries), 112u); // 39 + 62 + 5 + 4 + 2
    for (const Entry& entry : entries)
        if (entry.name.ends_with("ARB")) {
            EXPECT_EQ(entry.pointer + "ARB", entry.name);
        } else {
            EXPECT_EQ(entry.pointer, entry.name) << "a core name has no suffix to drop";
        }
}

TEST(ExtensionTables, Name_every_framebuffer_pointer_with_its_suffix) {
    const Entry entries[] = {VELL_FRAMEBUFFER_ENTRY_POINTS(ENTRY)};
    EXPECT_EQ(std::size(entries), 9u);
    for (const Entry& entry : entries)
        EXPECT_EQ(entry.pointer, entry.name);
}

TEST(ExtensionTables, Keep_the_pointers_out_of_the_dynamic_symbol_table) {
    // libGL.so exports functions of these names; ours must not take their place in it.
    for (const char* name : {"glUniform1f", "glGenBuffers", "glBindFramebufferEXT"}) {
        void* const exported = dlsym(RTLD_DEFAULT, name);
        EXPECT_NE(exported, static_cast<void*>(Address(glUniform1f)));
        EXPECT_NE(exported, static_cast<void*>(Address(glGenBuffers)));
        EXPECT_NE(exported, static_cast<void*>(Address(glBindFramebufferEXT)));
    }
}

class GLExtensionsTest : public GlTest {
protected:
    // Something to see that a variable was not written.
    static constexpr int marker = 0;
    static void* Untouched() { return const_cast<int*>(&marker); }

    void* first = Untouched();
    void* second = Untouched();
    void* third = Untouched();
    void** pointers[3] = {&first, &second, &third};

    static void* ProcAddress(const char* name) {
        return reinterpret_cast<void*>(glXGetProcAddress(reinterpret_cast<const GLubyte*>(name)));
    }
};

TEST_F(GLExtensionsTest, Finds_an_extension_by_any_part_of_its_name) {
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex_program"), 1);
    EXPECT_EQ(CheckForExtension("GL_ARB_vertex"), 1);
    EXPECT_EQ(CheckForExtension("EXT_framebuffer_object"), 1);
    EXPECT_EQ(CheckForExtension(""), 1);
}

TEST_F(GLExtensionsTest, Does_not_find_what_the_driver_does_not_list) {
    EXPECT_EQ(CheckForExtension("GL_NOBODY_has_this"), 0);
    EXPECT_EQ(CheckForExtension("gl_arb_vertex_program"), 0);
}

TEST_F(GLExtensionsTest, Stores_nothing_when_the_extension_is_missing) {
    const char* names[] = {"glUniform1fARB", nullptr};
    EXPECT_EQ(InitializeGLExtension("GL_NOBODY_has_this", names, pointers), -1);
    EXPECT_EQ(first, Untouched());
}

TEST_F(GLExtensionsTest, Stores_every_entry_point_up_to_the_null_name) {
    const char* names[] = {"glUniform1fARB", "glUniform2fARB", nullptr};
    EXPECT_EQ(InitializeGLExtension("GL_ARB_shader_objects", names, pointers), 0);
    EXPECT_EQ(first, ProcAddress("glUniform1fARB"));
    EXPECT_EQ(second, ProcAddress("glUniform2fARB"));
    EXPECT_EQ(third, Untouched());
}

TEST_F(GLExtensionsTest, Stops_at_the_first_entry_point_that_is_missing) {
    const char* names[] = {"glUniform1fARB", missingName, "glUniform2fARB", nullptr};
    EXPECT_EQ(InitializeGLExtension("GL_ARB_shader_objects", names, pointers), 2);
    EXPECT_EQ(first, ProcAddress("glUniform1fARB"));
    EXPECT_EQ(second, nullptr) << "the answer for the missing one is stored too";
    EXPECT_EQ(third, Untouched());
}

TEST_F(GLExtensionsTest, Counts_missing_entry_points_from_one) {
    const char* names[] = {missingName, nullptr};
    EXPECT_EQ(InitializeGLExtension("GL_ARB_shader_objects", names, pointers), 1);
}

TEST_F(GLExtensionsTest, Succeeds_with_no_names_to_fetch) {
    const char* names[] = {nullptr};
    EXPECT_EQ(InitializeGLExtension("GL_ARB_shader_objects", names, pointers), 0);
    EXPECT_EQ(first, Untouched());
}

template <std::size_t Size>
void ExpectFilled(const char* (&names)[Size + 1], void** (&addresses)[Size],
                  void* (*procAddress)(const char*)) {
    for (std::size_t i = 0; i < Size; ++i) {
        EXPECT_NE(*addresses[i], nullptr) << names[i];
        EXPECT_EQ(*addresses[i], procAddress(names[i])) << names[i];
    }
}

TEST_F(GLExtensionsTest, Fills_all_121_pointers_with_their_entry_points) {
    EXPECT_TRUE(InitGLEXT());
    ExpectFilled(ARBShaderObjectProcName, ARBShaderObjectProcAddress, &ProcAddress);
    ExpectFilled(ARBVertexProgramProcName, ARBVertexProgramProcAddress, &ProcAddress);
    ExpectFilled(ARBVertexShaderProcName, ARBVertexShaderProcAddress, &ProcAddress);
    ExpectFilled(ARBBufferObjectProcName, ARBBufferObjectProcAddress, &ProcAddress);
    ExpectFilled(ARBPointSpriteProcName, ARBPointSpriteProcAddress, &ProcAddress);
    ExpectFilled(EXTFrameBufferProcName, EXTFrameBufferProcAddress, &ProcAddress);
    constexpr std::size_t all =
        std::size(ARBShaderObjectProcAddress) + std::size(ARBVertexProgramProcAddress) +
        std::size(ARBVertexShaderProcAddress) + std::size(ARBBufferObjectProcAddress) +
        std::size(ARBPointSpriteProcAddress) + std::size(EXTFrameBufferProcAddress);
    EXPECT_EQ(all, 121u);
}

TEST_F(GLExtensionsTest, Fetches_pointers_that_work) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    EXPECT_NE(buffer, 0u);
    glDeleteBuffers(1, &buffer);
    const GLhandleARB program = glCreateProgramObject();
    EXPECT_NE(program, 0u);
    glDeleteObject(program);
}

} // namespace
