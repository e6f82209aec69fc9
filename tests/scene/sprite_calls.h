#pragma once

#include "tests/recording/calls.h"

#include <string>

/// What a sprite calls.
class SpriteCalls : public Calls {
protected:
    static std::string Drawing(const std::string& matrix, const std::string& picture) {
        return "-- its matrix\nglPushMatrix(); glMultMatrixf(" + matrix + ")\n" + R"(
            -- its picture, without depth
            glDisable(GL_DEPTH_TEST)
            glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
            )" +
               BindTexture(picture) +
               R"(
            -- mixed by alpha
            glEnable(GL_BLEND); glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
            -- its quad
            glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
            -- as it was found
            glDisable(GL_BLEND)
            glColor4f(1, 1, 1, 1)
            glEnable(GL_DEPTH_TEST)
            glPopMatrix()
            )";
    }

    static constexpr const char* identity = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1";
};
