// Sprites, call by call: with a picture and without.

#include "tests/scene/sprite_calls.h"

#include "engine/scene/sprite.h"

#include <gmock/gmock.h>

#include <vector>

using ::testing::ElementsAre;
using Vell::Sprite;
using Vell::vec2;

TEST_F(SpriteCalls, Drawn_blended_over_the_picture_under_its_matrix) {
    WritePng("logo.png", 320, 120, 3, std::vector<unsigned char>(320 * 120 * 3));
    const std::string labels[] = {"logo"};
    gl.Name("texture", labels);
    Sprite sprite;
    sprite.SetTexture("logo.png"); // 320 / 640 = 0.5, 120 / 480 = 0.25
    sprite.SetPosition(vec2(0.5f, 0.75f));
    Forget();
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing("1 0 0 0 0 1 0 0 0 0 1 0 0.5 0.75 0 1", "logo")));
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 0.5f, 0.25f, 0, // s, t, x, y, z
                                        0, 1, 0, 0.25f, 0,    //
                                        1, 0, 0.5f, 0, 0,     //
                                        0, 0, 0, 0, 0));
    sprite.SetSize(vec2(0.125f, 0.375f)); // the height goes to z
    sprite.SetScale(vec2(2, 3));
    Forget();
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing("2 0 0 0 0 3 0 0 0 0 0 0 0.5 0.75 0 1", "logo")));
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 0.125f, 0.25f, 0.375f, //
                                        0, 1, 0, 0.25f, 0.375f,      //
                                        1, 0, 0.125f, 0, 0,          //
                                        0, 0, 0, 0, 0));
}

TEST_F(SpriteCalls, Without_a_picture_it_is_drawn_all_the_same) {
    Sprite sprite;
    EXPECT_TRUE(Made(""));
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing(identity, "0")));
}
