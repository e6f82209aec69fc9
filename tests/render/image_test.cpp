#include "engine/render/image.h"

#include "engine/core/ressourcemanager.h"
#include "tests/render/image_probe.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_state.h"

#include <filesystem>
#include <memory>
#include <type_traits>

#include <sys/stat.h>

using namespace Vell;

namespace {

constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba green{0, 255, 0, 255};

GLint TextureParameter(const Image& image, GLenum name) {
    GLint value = 0;
    image.Bind();
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
}

GLint WidthOfLevel(const Image& image, int level) {
    GLint width = 0;
    image.Bind();
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, &width);
    return width;
}

GLuint BoundTexture() {
    GLint texture = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    return static_cast<GLuint>(texture);
}

class ImageTest : public GlTest {
protected:
    /// A picture of 2 x 2 red pixels.
    static std::string RedPng() {
        std::string name = NewName(".png");
        WritePng(name, 2, 2, 3, {255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0});
        return name;
    }
};

} // namespace

TEST_F(ImageTest, Is_empty_at_first) {
    const Image image;
    ExpectEmpty(image);
    EXPECT_EQ(image.GetName(), "");
    EXPECT_FALSE(ImageProbe::Shared(image));
    EXPECT_EQ(ImageProbe::Filter(image), 1);
    EXPECT_TRUE(ImageProbe::Mipmap(image));
    EXPECT_EQ(ImageProbe::Format(image), 0u);
}

TEST_F(ImageTest, Keeps_its_fields_at_their_places_without_virtual_operations) {
    const Image image;
    EXPECT_TRUE(InOrder(ImageProbe::Fields(image)));
    EXPECT_FALSE(std::is_polymorphic_v<Image>);
}

TEST_F(ImageTest, Logs_its_path_when_it_is_loaded_and_when_it_is_freed) {
    const std::string name = RedPng();
    const LogWatch log;
    GLuint texture = 0;
    {
        Image image;
        EXPECT_TRUE(image.Load(name));
        EXPECT_EQ(image.GetName(), name);
        EXPECT_EQ(image.GetSize(), ivec2(2, 2));
        EXPECT_EQ(RessourceManager::GetInstance().Get(name), &image);
        texture = image.GetID();
        EXPECT_EQ(BoundTexture(), texture);
        EXPECT_TRUE(glIsTexture(texture));
    }
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", name}, {"Image", "FREE", name}}));
}

TEST_F(ImageTest, Says_nothing_at_its_end_when_it_was_never_given_a_path) {
    const std::string name = RedPng();
    const LogWatch log;
    { const Image image; }
    {
        Image image;
        EXPECT_TRUE(image.LoadPNG(name)) << "the decoder alone: no name, no registry, no row";
    }
    EXPECT_EQ(log.NewRows(), Rows());
    EXPECT_FALSE(RessourceManager::GetInstance().Exist(name));
}

TEST_F(ImageTest, Refuses_every_ending_but_two) {
    for (const char* ending :
         {".JPG", ".PNG", ".Jpg", ".jpeg", ".bmp", ".png ", ".", "", ".png/x"}) {
        SCOPED_TRACE(ending);
        const std::string name = NewName(ending);
        WritePng(name, 1, 1, 3, {1, 2, 3});
        const LogWatch log;
        Image image;
        EXPECT_FALSE(image.Load(name));
        ExpectEmpty(image);
        EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
    }
}

TEST_F(ImageTest, Refuses_an_empty_path) {
    const LogWatch log;
    Image image;
    EXPECT_FALSE(image.Load(""));
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", ""}}));
}

TEST_F(ImageTest, Decides_by_the_last_ending) {
    const std::string name = NewName(".jpg.png");
    WritePng(name, 1, 1, 3, {1, 2, 3});
    Image image;
    EXPECT_TRUE(image.Load(name));
}

TEST_F(ImageTest, Logs_a_pipe_or_a_device_without_waiting_for_it) {
    for (const char* ending : {".png", ".jpg"}) {
        const std::string pipe = NewName(ending);
        const std::string device = NewName(ending);
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::filesystem::create_symlink("/dev/zero", device);
        for (const std::string& name : {pipe, device}) {
            const LogWatch log;
            Image image;
            EXPECT_FALSE(image.Load(name));
            ExpectEmpty(image);
            EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
        }
    }
}

TEST_F(ImageTest, Logs_a_file_that_cannot_be_opened_or_is_a_folder) {
    for (const char* ending : {".png", ".jpg"})
        for (const bool folder : {false, true}) {
            const std::string name = NewName(ending);
            SCOPED_TRACE(name + (folder ? " as a folder" : ""));
            if (folder)
                std::filesystem::create_directory(name);
            const LogWatch log;
            Image image;
            EXPECT_FALSE(image.Load(name));
            ExpectEmpty(image);
            EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
        }
}

TEST_F(ImageTest, Frees_with_a_row_even_when_it_failed_to_load) {
    const std::string name = NewName(".png");
    auto image = std::make_unique<Image>();
    image->Load(name);
    const LogWatch log;
    image.reset();
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "FREE", name}}));
}

TEST_F(ImageTest, Shares_texture_and_pixels_of_a_path_that_is_loaded_already) {
    const std::string name = RedPng();
    Image first;
    first.SetParameter(0, false);
    first.Load(name);
    std::filesystem::remove(name); // would show if the file were read again
    const LogWatch log;
    {
        Image second;
        EXPECT_TRUE(second.Load(name));
        EXPECT_TRUE(ImageProbe::Shared(second));
        EXPECT_EQ(second.GetID(), first.GetID());
        EXPECT_EQ(second.GetData(), first.GetData());
        EXPECT_EQ(second.GetSize(), ivec2(2, 2));
        EXPECT_EQ(second.GetName(), name);
        EXPECT_EQ(ImageProbe::Filter(second), 0);
        EXPECT_FALSE(ImageProbe::Mipmap(second));
        EXPECT_EQ(ImageProbe::Format(second), 0u) << "only the first image may upload";
    }
    EXPECT_EQ(log.NewRows(), Rows());
    EXPECT_TRUE(glIsTexture(first.GetID()));
    EXPECT_EQ(ReadTexture(first.GetID()).At(0, 0), red);
    EXPECT_EQ(RessourceManager::GetInstance().Get(name), &first);
}

TEST_F(ImageTest, Owns_nothing_any_more_once_it_loads_its_own_path_again) {
    const std::string name = RedPng();
    const LogWatch log;
    GLuint texture = 0;
    unsigned char* pixels = nullptr;
    {
        Image image;
        image.Load(name);
        texture = image.GetID();
        pixels = image.GetData();
        EXPECT_TRUE(image.Load(name));
        EXPECT_TRUE(ImageProbe::Shared(image));
        EXPECT_EQ(image.GetName(), name);
        EXPECT_EQ(image.GetID(), texture);
        EXPECT_EQ(image.GetData(), pixels);
        EXPECT_EQ(image.GetSize(), ivec2(2, 2));
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", name}})) << "its end is not logged";
    EXPECT_TRUE(glIsTexture(texture));
    EXPECT_EQ(pixels[0], 255) << "still there to be read";
    glDeleteTextures(1, &texture);
    delete[] pixels;
}

TEST_F(ImageTest, Occupies_its_path_even_when_loading_fails) {
    const std::string name = NewName(".png");
    Image first;
    EXPECT_FALSE(first.Load(name));
    WritePng(name, 1, 1, 3, {1, 2, 3}); // comes too late
    const LogWatch log;
    Image second;
    EXPECT_FALSE(second.Load(name));
    ExpectEmpty(second);
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(ImageTest, Sets_filters_and_mipmaps_and_leaves_the_wrapping_alone) {
    struct Case {
        int filter;
        bool mipmap;
        int minify, magnify;
    };
    Image image;
    image.Load(RedPng());
    for (const Case& c : {Case{0, false, GL_NEAREST, GL_NEAREST},
                          Case{0, true, GL_NEAREST_MIPMAP_NEAREST, GL_NEAREST},
                          Case{1, false, GL_LINEAR, GL_LINEAR},
                          Case{1, true, GL_LINEAR_MIPMAP_LINEAR, GL_LINEAR}}) {
        SCOPED_TRACE(testing::Message() << "filter " << c.filter << ", mipmap " << c.mipmap);
        glBindTexture(GL_TEXTURE_2D, 0);
        image.SetParameter(c.filter, c.mipmap);
        EXPECT_EQ(BoundTexture(), image.GetID());
        EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MIN_FILTER), c.minify);
        EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MAG_FILTER), c.magnify);
        EXPECT_EQ(TextureParameter(image, GL_GENERATE_MIPMAP), c.mipmap ? 1 : 0);
        EXPECT_EQ(TextureParameter(image, GL_TEXTURE_WRAP_S), GL_REPEAT);
        EXPECT_EQ(TextureParameter(image, GL_TEXTURE_WRAP_T), GL_REPEAT);
        EXPECT_EQ(ImageProbe::Filter(image), c.filter);
        EXPECT_EQ(ImageProbe::Mipmap(image), c.mipmap);
    }
}

TEST_F(ImageTest, Keeps_the_filters_at_a_filter_it_does_not_know) {
    Image image;
    image.Load(RedPng());
    image.SetParameter(0, false);
    image.SetParameter(2, true);
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MAG_FILTER), GL_NEAREST);
    EXPECT_EQ(TextureParameter(image, GL_GENERATE_MIPMAP), 1);
    EXPECT_EQ(ImageProbe::Filter(image), 2);
}

TEST_F(ImageTest, Loads_with_the_parameters_set_before) {
    Image image;
    image.SetParameter(0, false);
    image.Load(RedPng());
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MAG_FILTER), GL_NEAREST);
    EXPECT_EQ(WidthOfLevel(image, 1), 0) << "no mip-maps were asked for";
}

TEST_F(ImageTest, Has_linear_filters_and_mipmaps_by_default) {
    Image image;
    image.Load(RedPng());
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
    EXPECT_EQ(TextureParameter(image, GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    EXPECT_EQ(WidthOfLevel(image, 0), 2);
    EXPECT_EQ(WidthOfLevel(image, 1), 1) << "made by the upload itself";
}

TEST_F(ImageTest, Binds_on_the_active_unit) {
    Image image;
    image.Load(RedPng());
    glBindTexture(GL_TEXTURE_2D, 0);
    glActiveTexture(GL_TEXTURE2);
    image.Bind();
    EXPECT_EQ(BoundTexture(), image.GetID());
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(BoundTexture(), 0u);
}

TEST_F(ImageTest, Shows_changed_pixels_after_an_update) {
    Image image;
    image.Load(RedPng());
    unsigned char* lowerLeft = image.GetData();
    lowerLeft[0] = 0;
    lowerLeft[1] = 255;
    EXPECT_EQ(ReadTexture(image.GetID()).At(0, 0), red);
    glBindTexture(GL_TEXTURE_2D, 0);
    image.Update();
    EXPECT_EQ(BoundTexture(), image.GetID());
    EXPECT_EQ(ReadTexture(image.GetID()).At(0, 0), green);
    EXPECT_EQ(ReadTexture(image.GetID()).At(1, 0), red);
}

TEST_F(ImageTest, Does_not_upload_through_a_sharer_since_the_format_is_not_shared) {
    const std::string name = RedPng();
    Image first;
    first.Load(name);
    Image second;
    second.Load(name);
    second.GetData()[0] = 0;
    second.Update();
    EXPECT_NE(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "format 0";
    EXPECT_EQ(ReadTexture(first.GetID()).At(0, 0), red);
}

TEST_F(ImageTest, Changes_no_state_but_the_binding) {
    const std::string name = RedPng();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4); // OpenGL's own, whatever the tests before have left
    GlState before = CaptureGlState();
    Image image;
    image.Load(name);
    image.Update();
    before.values["unit 0 binding"] = std::to_string(image.GetID()) + " ";
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}
