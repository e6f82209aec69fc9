#pragma once

#include "engine/core/GLExtensions.h"

#include <string>

namespace Vell {

/// Kinds of OpenGL objects, each with numbers of its own: texture 1 and buffer 1 are two objects.
/// Programs and shader objects, which OpenGL numbers together, are told apart all the same.
enum class ObjectKind { Program, Shader, Texture, Framebuffer, Renderbuffer, Buffer, List };

// What OpenGL's objects are called, for people who look at them: in a debugger, or in a tool that
// says what a frame was made of. The engine labels each object that it makes while it makes it: a
// program and a picture by the files they come from, what is made of nothing by its owner's word,
// as in "colour of the reflection target". An engine's user labels his own objects likewise and may
// label the engine's anew: an image by GetID(), a target or a program by its SetLabel().
//
// Labels stand beside the objects and are shared with them: two images of one path have one texture
// and one label. They are no part of any driver: nothing here calls OpenGL, a context is not
// needed.
//
// Thread: OpenGL's; labels are not guarded against being read in one thread and set in another.
// Cost:   a map's look-up. No frame sets a label; reading one allocates nothing.

/// Labels an object, in place of what it was called before. The text is copied. No text takes the
/// label away; object 0, which is none, takes no label.
void Label(ObjectKind kind, GLuint name, const std::string& text);

/// What an object is called; empty without a label. The reference holds until that object is
/// labelled anew or loses its label.
const std::string& LabelOf(ObjectKind kind, GLuint name);

/// Takes the label away. Whoever deletes an object calls this, for OpenGL gives the number to the
/// next one.
void Unlabel(ObjectKind kind, GLuint name);

} // namespace Vell
