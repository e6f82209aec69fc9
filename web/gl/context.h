#pragma once

#include "web/gl/buffers.h"
#include "web/gl/derivedmatrices.h"
#include "web/gl/errors.h"
#include "web/gl/fixedfunction.h"
#include "web/gl/fixedstate.h"
#include "web/gl/framebuffers.h"
#include "web/gl/immediate.h"
#include "web/gl/lists.h"
#include "web/gl/matrixstacks.h"
#include "web/gl/pipeline.h"
#include "web/gl/programs.h"
#include "web/gl/textures.h"
#include "web/gl/vertices.h"

namespace WebGL {

struct Counts {
    unsigned long draws = 0;
    unsigned long uploads = 0;
};

/// All that belongs to one context of OpenGL.
struct Context {
    bool begun = false; ///< whether there is anything underneath
    Errors errors;
    Pipeline pipeline;
    FixedState fixed;
    MatrixStacks matrices;
    DerivedMatrices derived{matrices};
    Textures textures{errors};
    Buffers buffers{errors};
    Framebuffers framebuffers{errors};
    Programs programs;
    FixedFunction fixedFunction;
    std::array<VertexArray, Slot::count> arrays;
    std::size_t clientUnit = 0; ///< as glClientActiveTexture() has it
    CurrentValues current;
    ContentCache contents;
    VertexArrayCache vertexArrays;
    Immediate immediate;
    Lists lists;
    PixelStore pack;
    float lineOffset = 0; ///< of the lines being drawn, in the depth of clip coordinates
    Counts counts;
};

/// The context that webgl_begin() took over; before that, one of which nothing is sent.
Context& Current();

/// Puts a fresh one in its place.
Context& Renew();

} // namespace WebGL
