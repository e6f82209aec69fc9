// What OpenGL's objects are called. No OpenGL is needed: labels stand beside the objects.

#include "engine/core/labels.h"

#include "tests/allocations/allocations.h"

#include <gtest/gtest.h>

using Vell::Label;
using Vell::LabelOf;
using Vell::ObjectKind;
using Vell::Unlabel;

namespace {

// Made before the first label and gone after main(), as an engine user's static objects are: what
// it takes its label from must still be there, which the sanitizers would tell.
const struct Survivor {
    ~Survivor() { Unlabel(ObjectKind::Texture, 1); }
} survivor;

} // namespace

TEST(Labels, Say_what_an_object_was_called_last) {
    EXPECT_EQ(LabelOf(ObjectKind::Texture, 1), "");
    Label(ObjectKind::Texture, 1, "waves");
    EXPECT_EQ(LabelOf(ObjectKind::Texture, 1), "waves");
    Label(ObjectKind::Texture, 1, "clouds");
    EXPECT_EQ(LabelOf(ObjectKind::Texture, 1), "clouds");
}

TEST(Labels, Of_one_number_are_as_many_as_there_are_kinds) {
    const struct {
        ObjectKind kind;
        const char* text;
    } objects[] = {{ObjectKind::Program, "a program"},
                   {ObjectKind::Shader, "a shader"},
                   {ObjectKind::Texture, "a texture"},
                   {ObjectKind::Framebuffer, "a framebuffer"},
                   {ObjectKind::Renderbuffer, "a renderbuffer"},
                   {ObjectKind::Buffer, "a buffer"},
                   {ObjectKind::List, "a list"}};
    for (const auto& [kind, text] : objects)
        Label(kind, 2, text);
    for (const auto& [kind, text] : objects)
        EXPECT_EQ(LabelOf(kind, 2), text);
}

TEST(Labels, Copy_their_text) {
    std::string text = "waves";
    Label(ObjectKind::Texture, 3, text);
    text = "clouds";
    EXPECT_EQ(LabelOf(ObjectKind::Texture, 3), "waves");
}

TEST(Labels, Go_with_the_object_so_that_the_next_of_its_number_has_its_own) {
    Label(ObjectKind::Buffer, 4, "first");
    Label(ObjectKind::Buffer, 5, "beside it");
    Unlabel(ObjectKind::Buffer, 4);
    EXPECT_EQ(LabelOf(ObjectKind::Buffer, 4), "");
    EXPECT_EQ(LabelOf(ObjectKind::Buffer, 5), "beside it");
    Label(ObjectKind::Buffer, 4, "second");
    EXPECT_EQ(LabelOf(ObjectKind::Buffer, 4), "second");
}

TEST(Labels, Of_no_text_are_none) {
    Label(ObjectKind::List, 6, "faces");
    Label(ObjectKind::List, 6, "");
    EXPECT_EQ(LabelOf(ObjectKind::List, 6), "");
}

TEST(Labels, Are_not_taken_by_object_0_which_is_none) {
    Label(ObjectKind::Program, 0, "nothing");
    EXPECT_EQ(LabelOf(ObjectKind::Program, 0), "");
}

TEST(Labels, Are_read_without_taking_memory) {
    Label(ObjectKind::Program, 7, "a text that is longer than what a string holds by itself");
    const int before = Allocations();
    for (GLuint name = 0; name < 100; ++name)
        LabelOf(ObjectKind::Program, name);
    EXPECT_EQ(Allocations(), before);
}
