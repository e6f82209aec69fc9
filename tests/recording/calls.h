#pragma once

#include "tests/recording/recorder.h"
#include "tests/support/scratch.h"

#include "engine/math/vec2.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

/// A test that compares what the engine calls with what it has to call.
///
/// Every test starts with a 640 x 480 screen on which InitEngine() succeeded, in a scratch working
/// directory, with the clock standing at 0 and no call noted yet. It fails when a matrix was pushed
/// and not popped.
class Calls : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Whether exactly these calls were made since the last question, or since the test began.
    ///
    /// One call a line, or several with semicolons in between. Empty lines do not count. A line
    /// that begins with "--" says in words what happens from there on; when a call after it
    /// differs, the failure names it.
    static ::testing::AssertionResult Made(const std::string& expected);

    /// Whether the last of the calls were exactly these.
    static ::testing::AssertionResult MadeLast(const std::string& expected);

    /// Forgets the calls made so far.
    static void Forget() { gl.Take(); }

    /// What the calls since the last question deleted, as they write it: "texture 1".
    static std::set<std::string> Deleted();

    /// What the engine calls the objects made in this test, as far as they have labels.
    static std::vector<std::string> Labels();

    // Sequences that stand in many others.

    /// A render target of that label is made: 256 x 256.
    static std::string NewTarget(const std::string& label);
    static std::string SizeTarget(const std::string& label, int width, int height);
    static std::string EnableTarget(const std::string& label, int width, int height);
    static std::string DisableTarget();
    static std::string DeleteTarget(const std::string& label);
    /// A program of that label is made of texts in memory; it is left in use.
    static std::string NewProgram(const std::string& label);
    static std::string DeleteProgram(const std::string& label);
    /// A uniform is sent: `value` as the call writes it, `kind` as in "1f".
    static std::string Send(const std::string& program, const std::string& uniform,
                            const std::string& kind, const std::string& value);
    static std::string UnitOn(int unit);
    static std::string UnitOff(int unit);
    static std::string BindTexture(const std::string& label);
    /// A bounding box drawn in blue; centre and size as the calls write them.
    static std::string BlueBox(const std::string& centre, const std::string& size);
    /// The two matrices that the view frustum is made of.
    static std::string MakePlane();
    /// The textured unit square, and every other strip of four vertices from memory.
    static std::string Quad();
    static std::string PushUnitSquare();
    static std::string PopUnitSquare();

private:
    ScratchDir scratch;
};
