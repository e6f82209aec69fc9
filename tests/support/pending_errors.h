#pragma once

#include <GL/gl.h>

#include <gtest/gtest.h>

/// A kind of OpenGL error and a call that leaves it pending.
struct PendingError {
    const char* name;
    GLenum error;
    void (*raise)();
};

inline constexpr PendingError pendingErrors[] = {
    {"GL_INVALID_ENUM", GL_INVALID_ENUM, [] { glMatrixMode(GL_TEXTURE_2D); }},
    {"GL_INVALID_VALUE", GL_INVALID_VALUE, [] { glLineWidth(0.0f); }},
    {"GL_INVALID_OPERATION", GL_INVALID_OPERATION, [] { glEnd(); }},
};

/// Whether this error is pending, or none, and nothing else. Takes it.
inline ::testing::AssertionResult OnlyPending(GLenum error) {
    const GLenum first = glGetError();
    const GLenum second = glGetError();
    if (first == error && second == GL_NO_ERROR)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << std::hex << "expected 0x" << error << ", found 0x"
                                         << first << " and then 0x" << second;
}
