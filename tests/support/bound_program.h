#pragma once

#include "engine/core/GLExtensions.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

/// Questions about the GLSL program that is current: tests enable a shader and ask here.

inline GLhandleARB BoundProgram() {
    return glGetHandle(GL_PROGRAM_OBJECT_ARB);
}

/// What compiler and linker had to say, both stages included; empty when all is well.
inline std::string BoundProgramMessages() {
    std::array<GLhandleARB, 3> objects{BoundProgram()};
    GLsizei attached = 0;
    glGetAttachedObjects(BoundProgram(), 2, &attached, objects.data() + 1);
    std::string messages;
    for (int i = 0; i <= attached; ++i) {
        std::array<char, 4096> text{};
        glGetInfoLog(objects[static_cast<std::size_t>(i)], static_cast<GLsizei>(text.size()),
                     nullptr, text.data());
        messages += text.data();
    }
    return messages;
}

/// True when the current program was linked and neither stage caused as much as a warning.
inline ::testing::AssertionResult BoundProgramIsClean() {
    if (BoundProgram() == 0)
        return ::testing::AssertionFailure() << "no program is bound";
    GLint linked = 0;
    glGetObjectParameteriv(BoundProgram(), GL_OBJECT_LINK_STATUS_ARB, &linked);
    const std::string messages = BoundProgramMessages();
    if (linked == 1 && messages.empty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "linked: " << linked << "\n" << messages;
}

/// A float uniform of the current program, padded with zeros to four components.
inline std::array<float, 4> BoundUniform(const char* name) {
    std::array<float, 4> value{};
    glGetUniformfv(BoundProgram(), glGetUniformLocation(BoundProgram(), name), value.data());
    return value;
}

/// An int or sampler uniform of the current program.
inline int BoundUniformInt(const char* name) {
    GLint value = -1;
    glGetUniformiv(BoundProgram(), glGetUniformLocation(BoundProgram(), name), &value);
    return value;
}
