// The recording OpenGL itself: that it answers, keeps matrices, and fails a test where it must.

#include "tests/recording/calls.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/labels.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

using ::testing::ElementsAre;
using ::testing::Pointwise;

namespace {

class Recording : public Calls {};

std::string MessageOf(const ::testing::AssertionResult& result) {
    return result ? "passed" : result.message();
}

} // namespace

TEST_F(Recording, Writes_a_call_with_its_arguments) {
    glColor4f(0.1f, 0.0f, -0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDepthMask(GL_FALSE);
    EXPECT_TRUE(Made(R"(
        -- one call a line, or several
        glColor4f(0.1, 0, 0, 1)
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); glDepthMask(GL_FALSE)
        )"));
}

TEST_F(Recording, Asks_for_every_single_call) {
    glEnable(GL_BLEND);
    EXPECT_THAT(MessageOf(Made("")), ::testing::HasSubstr("expected nothing more"));
    EXPECT_THAT(MessageOf(Made("glEnable(GL_BLEND)")), ::testing::HasSubstr("made nothing more"));
    glEnable(GL_BLEND);
    EXPECT_THAT(MessageOf(Made("glDisable(GL_BLEND)")),
                ::testing::HasSubstr("expected glDisable(GL_BLEND), made glEnable(GL_BLEND)"));
}

TEST_F(Recording, Says_in_words_what_happens_where_a_call_differs) {
    const std::string expected = R"(
        glDisable(GL_BLEND)
        -- mirror
        glScalef(1, -1, 1)
        -- clip what lies below
        glEnable(GL_CLIP_PLANE0); glDepthMask(GL_FALSE)
        )";
    const auto make = [&](int calls, float y) {
        glDisable(GL_BLEND);
        glScalef(1, y, 1);
        if (calls > 2)
            glEnable(GL_CLIP_PLANE0);
        return MessageOf(Made(expected));
    };
    EXPECT_THAT(make(3, 2), ::testing::HasSubstr("call 2 of 3, \"mirror\": expected glScalef"));
    EXPECT_THAT(make(2, -1),
                ::testing::HasSubstr("call 3 of 2, \"clip what lies below\": expected glEnable"));
    EXPECT_THAT(make(3, -1), ::testing::HasSubstr("call 4 of 3, \"clip what lies below\": "));
    glBlendFunc(GL_ONE, GL_ONE);
    EXPECT_THAT(MessageOf(Made("")), ::testing::StartsWith("call 1 of 1: expected nothing more"));
}

TEST_F(Recording, Says_what_the_engine_calls_the_objects_where_a_call_differs) {
    GLuint textures[2] = {};
    glGenTextures(2, textures);
    Vell::Label(Vell::ObjectKind::Texture, textures[0], "waves");
    Vell::Label(Vell::ObjectKind::Texture, textures[1], "clouds");
    Forget();
    glBindTexture(GL_TEXTURE_2D, textures[1]);
    const std::string message = MessageOf(Made(""));
    EXPECT_THAT(message, ::testing::HasSubstr("texture 2 is the engine's \"clouds\""));
    EXPECT_THAT(message, ::testing::Not(::testing::HasSubstr("waves")));
    glBindTexture(GL_TEXTURE_2D, textures[1]);
    EXPECT_THAT(MessageOf(Made("glBindTexture(GL_TEXTURE_2D, texture 1)")),
                ::testing::HasSubstr("texture 1 is the engine's \"waves\""));
    for (const GLuint texture : textures)
        Vell::Unlabel(Vell::ObjectKind::Texture, texture);
}

TEST_F(Recording, Fails_on_a_call_without_a_context) {
    gl.context = false;
    EXPECT_NONFATAL_FAILURE(glEnable(GL_BLEND), "glEnable was called without a current context");
    gl.context = true;
}

TEST_F(Recording, Fails_on_a_value_that_no_call_uses) {
    EXPECT_NONFATAL_FAILURE(glEnable(GL_STENCIL_TEST), "0xb90");
    EXPECT_NONFATAL_FAILURE(glClear(GL_STENCIL_BUFFER_BIT), "0x400");
    EXPECT_NONFATAL_FAILURE(glBegin(GL_POLYGON), "0x9");
    EXPECT_NONFATAL_FAILURE(glBlendFunc(GL_ONE, GL_ZERO), "0x0");
}

TEST_F(Recording, Fails_on_an_object_that_was_never_made) {
    EXPECT_NONFATAL_FAILURE(glBindTexture(GL_TEXTURE_2D, 7), "there is no texture 7");
}

TEST_F(Recording, Fails_on_an_entry_point_that_is_only_fetched) {
    EXPECT_NONFATAL_FAILURE(glPointParameterf(0, 0), "that nothing uses");
}

TEST_F(Recording, Fails_on_a_matrix_too_few) {
    EXPECT_NONFATAL_FAILURE(glPopMatrix(), "without a glPushMatrix");
}

TEST_F(Recording, Fails_on_a_uniform_sent_to_a_program_that_is_not_in_use) {
    const GLuint program = glCreateProgramObject();
    const GLint location = glGetUniformLocation(program, "time");
    EXPECT_NONFATAL_FAILURE(glUniform1f(location, 1.0f), "while its program is not in use");
    glUseProgramObject(program);
    glUniform1f(location, 1.0f);
}

TEST_F(Recording, Fails_on_arrays_in_memory_while_a_buffer_is_bound) {
    const float array[20] = {};
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    EXPECT_NONFATAL_FAILURE(glInterleavedArrays(GL_T2F_V3F, 0, array), "while a buffer is bound");
}

TEST_F(Recording, Labels_objects_by_kind_and_number_or_by_name) {
    const std::string labels[] = {"sea"};
    GLuint textures[3] = {};
    glGenTextures(1, textures);
    gl.Name("texture", labels);
    glGenTextures(2, textures + 1);
    glDeleteTextures(3, textures);
    EXPECT_TRUE(Made(R"(
        glGenTextures(1, texture 1)
        glGenTextures(2, sea texture 3)
        glDeleteTextures(3, texture 1 sea texture 3)
        )"));
}

TEST_F(Recording, Tells_every_pending_error_once) {
    gl.errors = {GL_INVALID_ENUM, GL_INVALID_VALUE};
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Recording, Keeps_matrices_as_OpenGL_does) {
    GLfloat matrix[16];
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, 2, 0, 4, -1, 1); // x from 0..2 and y from 0..4 to -1..1, z turned round
    glGetFloatv(GL_PROJECTION_MATRIX, matrix);
    EXPECT_THAT(matrix, ElementsAre(1, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, -1, 0, -1, -1, 0, 1));
    glLoadIdentity();
    gluPerspective(90, 2, 1, 3); // cot 45 = 1; (3 + 1) / (1 - 3) = -2; 2 * 3 / (1 - 3) = -3
    glGetFloatv(GL_PROJECTION_MATRIX, matrix);
    EXPECT_THAT(matrix,
                Pointwise(::testing::FloatEq(), {0.5f, 0.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 0.f,
                                                 -2.f, -1.f, 0.f, 0.f, -3.f, 0.f}));
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    gluLookAt(1, 2, 3, 1, 2, 4, 0, 1, 0); // along +z: x and z are turned round
    glTranslatef(1, 2, 3);                // to the eye
    glScalef(2, 3, 4);
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
    EXPECT_THAT(matrix, ElementsAre(-2, 0, 0, 0, 0, 3, 0, 0, 0, 0, -4, 0, 0, 0, 0, 1));
    glPopMatrix();
}

TEST_F(Recording, Keeps_what_is_drawn_uploaded_and_compiled) {
    const float array[6] = {1, 2, 3, 4, 5, 6};
    glInterleavedArrays(GL_V3F, 0, array);
    glDrawArrays(GL_QUADS, 0, 2);
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 2, 3, 4, 5, 6));
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, 2, "ab", GL_STATIC_DRAW);
    EXPECT_THAT(gl.Content("buffer 1"), ElementsAre('a', 'b'));
    const GLuint object = glCreateShaderObject(GL_VERTEX_SHADER);
    const char* text = "void main() {}";
    glShaderSource(object, 1, &text, nullptr);
    EXPECT_EQ(gl.Source("vertex 1"), text);
}

TEST_F(Recording, Knows_121_entry_points) {
    std::size_t count = 0;
    for (const RecordedGroup& group : RecordedGroups())
        count += group.names.size();
    EXPECT_EQ(count, 39u + 62u + 5u + 4u + 2u + 9u);
}
