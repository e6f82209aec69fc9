#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec2.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

/// Base of every test that draws with real OpenGL.
///
/// One hidden-cursor SDL window of 128 x 128 pixels is opened per process, and the engine is
/// started on it. Each test begins in an empty scratch directory with a freshly cleared black
/// screen, identity matrices, default state and the engine's view settings at 128 x 128; it fails
/// when it leaves an OpenGL error behind.
class GlTest : public ::testing::Test {
protected:
    static constexpr int screenSize = 128;

    void SetUp() override;
    void TearDown() override;

    /// Projection (0..1, 0..1, -1..1) and identity model-view: a unit quad fills the target.
    static void UseUnitOrtho();

private:
    ScratchDir scratch;
};

/// Opens the process's window at the given size; a second call with another size resizes it.
/// Throws std::runtime_error, naming what is missing, when no OpenGL window can be had.
void OpenTestWindow(const Vell::ivec2& size);
