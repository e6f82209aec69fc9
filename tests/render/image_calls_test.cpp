// Textures, call by call: parameters, uploads from both formats, sharing, failures, end.

#include "tests/recording/calls.h"

#include "engine/core/labels.h"
#include "engine/render/image.h"

#include <gmock/gmock.h>

#include <optional>

using ::testing::ElementsAre;
using Vell::Image;
using Vell::LabelOf;
using Vell::ObjectKind;

namespace {

class ImageCalls : public Calls {
protected:
    /// Linear with mip-maps, unless a test chose otherwise before loading.
    static std::string Parameters(const std::string& mipmap = "1",
                                  const std::string& minify = "GL_LINEAR_MIPMAP_LINEAR",
                                  const std::string& magnify = "GL_LINEAR") {
        return "glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, " + mipmap + ")\n" +
               "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, " + minify + ")\n" +
               "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, " + magnify + ")\n";
    }

    /// A picture of 2 x 1 pixels of that format.
    static std::string Upload(const std::string& format) {
        return "-- rows are packed\n"
               "glPixelStorei(GL_UNPACK_ALIGNMENT, 1)\n"
               "glTexImage2D(GL_TEXTURE_2D, 0, " +
               format + ", 2, 1, 0, " + format + ", GL_UNSIGNED_BYTE, memory)\n" +
               "glPixelStorei(GL_UNPACK_ALIGNMENT, 4)\n";
    }

    /// Everything that loading a picture calls.
    static std::string Load(const std::string& format, const std::string& parameters) {
        return "-- refuses what the driver could not take\n"
               "glGetIntegerv(GL_MAX_TEXTURE_SIZE)\n"
               "-- generate, bind, set the parameters, upload\n"
               "glGenTextures(1, texture 1)\n"
               "glBindTexture(GL_TEXTURE_2D, texture 1)\n"
               "glBindTexture(GL_TEXTURE_2D, texture 1)\n" +
               parameters + Upload(format);
    }
};

const std::vector<unsigned char> twoPixels = {10, 20, 30, 40, 50, 60};

} // namespace

TEST_F(ImageCalls, Png_with_three_channels_becomes_an_RGB_texture) {
    WritePng("rgb.png", 2, 1, 3, twoPixels);
    Image image;
    EXPECT_TRUE(image.Load("rgb.png"));
    EXPECT_TRUE(Made(Load("GL_RGB", Parameters())));
    EXPECT_THAT(gl.Pixels(), ElementsAre(10, 20, 30, 40, 50, 60));
}

TEST_F(ImageCalls, Png_with_four_channels_becomes_an_RGBA_texture) {
    WritePng("rgba.png", 2, 1, 4, {1, 2, 3, 4, 5, 6, 7, 8});
    Image image;
    EXPECT_TRUE(image.Load("rgba.png"));
    EXPECT_TRUE(Made(Load("GL_RGBA", Parameters())));
    EXPECT_THAT(gl.Pixels(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST_F(ImageCalls, Jpeg_becomes_an_RGB_texture_turned_round) {
    WriteJpeg("grey.jpg", 2, 1, {200, 200, 200, 50, 50, 50});
    Image image;
    EXPECT_TRUE(image.Load("grey.jpg"));
    EXPECT_TRUE(Made(Load("GL_RGB", Parameters())));
    ASSERT_EQ(gl.Pixels().size(), 6u);
    EXPECT_NEAR(gl.Pixels()[0], 50, 4); // what the format loses
    EXPECT_NEAR(gl.Pixels()[3], 200, 4);
}

TEST_F(ImageCalls, Parameters_chosen_before_loading_go_to_texture_0_and_then_to_the_loader) {
    WritePng("chosen.png", 2, 1, 3, twoPixels);
    Image image;
    image.SetParameter(0, false);
    EXPECT_TRUE(
        Made("glBindTexture(GL_TEXTURE_2D, 0)\n" + Parameters("0", "GL_NEAREST", "GL_NEAREST")));
    image.Load("chosen.png");
    EXPECT_TRUE(Made(Load("GL_RGB", Parameters("0", "GL_NEAREST", "GL_NEAREST"))));
}

TEST_F(ImageCalls, Parameters_by_filter_and_mipmap) {
    struct {
        int filter;
        bool mipmap;
        const char* minify;
        const char* magnify;
    } const cases[] = {{0, false, "GL_NEAREST", "GL_NEAREST"},
                       {0, true, "GL_NEAREST_MIPMAP_NEAREST", "GL_NEAREST"},
                       {1, false, "GL_LINEAR", "GL_LINEAR"},
                       {1, true, "GL_LINEAR_MIPMAP_LINEAR", "GL_LINEAR"}};
    Image image;
    for (const auto& [filter, mipmap, minify, magnify] : cases) {
        image.SetParameter(filter, mipmap);
        EXPECT_TRUE(Made("glBindTexture(GL_TEXTURE_2D, 0)\n" +
                         Parameters(mipmap ? "1" : "0", minify, magnify)));
    }
}

TEST_F(ImageCalls, Other_filters_set_the_mipmaps_only) {
    Image image;
    for (const int filter : {-1, 2}) {
        image.SetParameter(filter, true);
        EXPECT_TRUE(Made(R"(
            glBindTexture(GL_TEXTURE_2D, 0)
            glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1)
            )"));
    }
}

TEST_F(ImageCalls, Update_binds_and_uploads_again) {
    WritePng("update.png", 2, 1, 3, twoPixels);
    Image image;
    image.Load("update.png");
    Forget();
    image.GetData()[0] = 99;
    image.Update();
    EXPECT_TRUE(Made("glBindTexture(GL_TEXTURE_2D, texture 1)\n" + Upload("GL_RGB")));
    EXPECT_EQ(gl.Pixels()[0], 99);
}

TEST_F(ImageCalls, Shared_image_loads_nothing_and_uploads_with_format_0) {
    WritePng("shared.png", 2, 1, 3, twoPixels);
    Image first;
    first.Load("shared.png");
    Forget();
    std::optional<Image> second(std::in_place);
    EXPECT_TRUE(second->Load("shared.png"));
    EXPECT_TRUE(Made(""));
    second->Update();
    EXPECT_TRUE(Made("glBindTexture(GL_TEXTURE_2D, texture 1)\n" + Upload("0")));
    second.reset();
    EXPECT_TRUE(Made(""));
}

TEST_F(ImageCalls, Label_is_the_path_and_is_shared_with_the_texture_until_its_owner_ends) {
    WritePng("label.png", 2, 1, 3, twoPixels);
    std::optional<Image> first(std::in_place);
    first->Load("label.png");
    std::optional<Image> second(std::in_place);
    second->Load("label.png");
    const GLuint texture = second->GetID();
    EXPECT_EQ(LabelOf(ObjectKind::Texture, texture), "label.png");
    second.reset();
    EXPECT_EQ(LabelOf(ObjectKind::Texture, texture), "label.png");
    first.reset();
    EXPECT_EQ(LabelOf(ObjectKind::Texture, texture), "");
}

TEST_F(ImageCalls, Label_is_the_path_also_without_the_registry) {
    WritePng("direct.png", 2, 1, 3, twoPixels);
    Image image;
    image.LoadPNG("direct.png");
    EXPECT_EQ(LabelOf(ObjectKind::Texture, image.GetID()), "direct.png");
}

TEST_F(ImageCalls, Binding_binds_on_the_active_unit) {
    WritePng("bind.png", 2, 1, 3, twoPixels);
    Image image;
    image.Bind();
    EXPECT_TRUE(Made("glBindTexture(GL_TEXTURE_2D, 0)"));
    image.Load("bind.png");
    Forget();
    image.Bind();
    EXPECT_TRUE(Made("glBindTexture(GL_TEXTURE_2D, texture 1)"));
}

TEST_F(ImageCalls, What_does_not_load_makes_no_texture) {
    WriteFile("text.png", "no picture");
    WriteFile("text.jpg", "no picture");
    WriteGreyJpeg("colourless.jpg", 2, 1, {10, 20});
    WritePng("colourless.png", 2, 1, 1, {10, 20});
    WritePng("picture.PNG", 2, 1, 3, twoPixels);
    for (const char* path : {"text.png", "text.jpg", "colourless.jpg", "colourless.png",
                             "picture.PNG", "missing.png", "missing.jpg", "without_ending"}) {
        {
            Image image;
            EXPECT_FALSE(image.Load(path)) << path;
            EXPECT_TRUE(Made("")) << path;
        }
        EXPECT_TRUE(Made("glDeleteTextures(1, 0)")) << path;
    }
}

TEST_F(ImageCalls, Picture_larger_than_the_drivers_textures_makes_none) {
    gl.largestTexture = 1;
    WritePng("large.png", 2, 1, 3, twoPixels);
    WritePng("high.png", 1, 2, 3, twoPixels);
    for (const char* path : {"large.png", "high.png"}) {
        Image image;
        EXPECT_FALSE(image.Load(path));
        EXPECT_TRUE(MadeLast("glGetIntegerv(GL_MAX_TEXTURE_SIZE)"));
    }
}

TEST_F(ImageCalls, Picture_as_large_as_the_drivers_textures_is_loaded) {
    gl.largestTexture = 2;
    WritePng("just.png", 2, 1, 3, twoPixels);
    Image image;
    EXPECT_TRUE(image.Load("just.png"));
    EXPECT_TRUE(Made(Load("GL_RGB", Parameters())));
}

TEST_F(ImageCalls, Picture_is_loaded_where_the_driver_names_no_largest_texture) {
    gl.largestTexture = 0;
    WritePng("unlimited.png", 2, 1, 3, twoPixels);
    Image image;
    EXPECT_TRUE(image.Load("unlimited.png"));
    EXPECT_TRUE(Made(Load("GL_RGB", Parameters())));
}

TEST_F(ImageCalls, End_deletes_the_texture) {
    WritePng("end.png", 2, 1, 3, twoPixels);
    std::optional<Image> image(std::in_place);
    image->Load("end.png");
    Forget();
    image.reset();
    EXPECT_TRUE(Made("glDeleteTextures(1, texture 1)"));
    image.emplace();
    image.reset();
    EXPECT_TRUE(Made("glDeleteTextures(1, 0)"));
}
