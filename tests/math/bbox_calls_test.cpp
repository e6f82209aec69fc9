// The debug box, call by call.

#include "tests/recording/calls.h"

#include "engine/math/bbox.h"
#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

using Vell::vec3;
using Vell::vec4;

namespace {

class BoxCalls : public Calls {};

} // namespace

TEST_F(BoxCalls, Debug_box_is_a_wire_cube_placed_by_centre_and_size) {
    Vell::BoundingBox box;
    box.Set(vec3(2, 2, 2), vec3(4, 6, 8)); // centre (3, 4, 5); size = min + centre = (5, 6, 7)
    box.Draw(vec4(0.25f, 0.5f, 0.75f, 1));
    EXPECT_TRUE(Made(R"(
        -- lines of one colour, in front of what they lie on
        glEnable(GL_POLYGON_OFFSET_LINE)
        glPolygonOffset(-1, -2)
        glColor4f(0.25, 0.5, 0.75, 1)
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)
        glDisable(GL_TEXTURE_2D)
        -- the cube placed and drawn
        glPushMatrix()
        glTranslatef(3, 4, 5)
        glScalef(5, 6, 7)
        glInterleavedArrays(GL_V3F, 0, memory)
        glDrawArrays(GL_QUADS, 0, 24)
        glPopMatrix()
        -- as it was found
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)
        glDisable(GL_POLYGON_OFFSET_LINE)
        glColor4f(1, 1, 1, 1)
        )"));
    const std::vector<float> cube = {
        -1, -1, 1,  1,  -1, 1,  1,  1,  1,  -1, 1,  1,  // front
        -1, -1, -1, -1, 1,  -1, 1,  1,  -1, 1,  -1, -1, // back
        -1, 1,  -1, -1, 1,  1,  1,  1,  1,  1,  1,  -1, // top
        -1, -1, -1, 1,  -1, -1, 1,  -1, 1,  -1, -1, 1,  // bottom
        1,  -1, -1, 1,  1,  -1, 1,  1,  1,  1,  -1, 1,  // right
        -1, -1, -1, -1, -1, 1,  -1, 1,  1,  -1, 1,  -1, // left
    };
    EXPECT_EQ(gl.Drawn(), cube);
}
