#pragma once

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>

// The OpenGL entry points beyond version 1.3 that the engine calls, as global function pointers.
//
// Each group below is one table: X(type of the pointer, name of the pointer, name asked of the GL),
// and VELL_EXTENSION_GROUPS is the table of the groups. Pointers, lists of names and lists of
// addresses are declared here and made in GLExtensions.cpp from these, so they cannot drift apart.
// Pointers of the ARB groups drop the vendor suffix. GL_GLEXT_PROTOTYPES must stay undefined
// wherever this header is used: with it, <GL/glext.h> would declare functions under the names of
// these variables.

// clang-format off: one entry point a line

/// Group 1, "GL_ARB_shader_objects": GLSL objects, programs and uniforms.
#define VELL_SHADER_OBJECT_ENTRY_POINTS(X)                                                         \
    X(PFNGLDELETEOBJECTARBPROC, glDeleteObject, "glDeleteObjectARB")                               \
    X(PFNGLGETHANDLEARBPROC, glGetHandle, "glGetHandleARB")                                        \
    X(PFNGLDETACHOBJECTARBPROC, glDetachObject, "glDetachObjectARB")                               \
    X(PFNGLCREATESHADEROBJECTARBPROC, glCreateShaderObject, "glCreateShaderObjectARB")             \
    X(PFNGLSHADERSOURCEARBPROC, glShaderSource, "glShaderSourceARB")                               \
    X(PFNGLCOMPILESHADERARBPROC, glCompileShader, "glCompileShaderARB")                            \
    X(PFNGLCREATEPROGRAMOBJECTARBPROC, glCreateProgramObject, "glCreateProgramObjectARB")          \
    X(PFNGLATTACHOBJECTARBPROC, glAttachObject, "glAttachObjectARB")                               \
    X(PFNGLLINKPROGRAMARBPROC, glLinkProgram, "glLinkProgramARB")                                  \
    X(PFNGLUSEPROGRAMOBJECTARBPROC, glUseProgramObject, "glUseProgramObjectARB")                   \
    X(PFNGLVALIDATEPROGRAMARBPROC, glValidateProgram, "glValidateProgramARB")                      \
    X(PFNGLUNIFORM1FARBPROC, glUniform1f, "glUniform1fARB")                                        \
    X(PFNGLUNIFORM2FARBPROC, glUniform2f, "glUniform2fARB")                                        \
    X(PFNGLUNIFORM3FARBPROC, glUniform3f, "glUniform3fARB")                                        \
    X(PFNGLUNIFORM4FARBPROC, glUniform4f, "glUniform4fARB")                                        \
    X(PFNGLUNIFORM1IARBPROC, glUniform1i, "glUniform1iARB")                                        \
    X(PFNGLUNIFORM2IARBPROC, glUniform2i, "glUniform2iARB")                                        \
    X(PFNGLUNIFORM3IARBPROC, glUniform3i, "glUniform3iARB")                                        \
    X(PFNGLUNIFORM4IARBPROC, glUniform4i, "glUniform4iARB")                                        \
    X(PFNGLUNIFORM1FVARBPROC, glUniform1fv, "glUniform1fvARB")                                     \
    X(PFNGLUNIFORM2FVARBPROC, glUniform2fv, "glUniform2fvARB")                                     \
    X(PFNGLUNIFORM3FVARBPROC, glUniform3fv, "glUniform3fvARB")                                     \
    X(PFNGLUNIFORM4FVARBPROC, glUniform4fv, "glUniform4fvARB")                                     \
    X(PFNGLUNIFORM1IVARBPROC, glUniform1iv, "glUniform1ivARB")                                     \
    X(PFNGLUNIFORM2IVARBPROC, glUniform2iv, "glUniform2ivARB")                                     \
    X(PFNGLUNIFORM3IVARBPROC, glUniform3iv, "glUniform3ivARB")                                     \
    X(PFNGLUNIFORM4IVARBPROC, glUniform4iv, "glUniform4ivARB")                                     \
    X(PFNGLUNIFORMMATRIX2FVARBPROC, glUniformMatrix2fv, "glUniformMatrix2fvARB")                   \
    X(PFNGLUNIFORMMATRIX3FVARBPROC, glUniformMatrix3fv, "glUniformMatrix3fvARB")                   \
    X(PFNGLUNIFORMMATRIX4FVARBPROC, glUniformMatrix4fv, "glUniformMatrix4fvARB")                   \
    X(PFNGLGETOBJECTPARAMETERFVARBPROC, glGetObjectParameterfv, "glGetObjectParameterfvARB")       \
    X(PFNGLGETOBJECTPARAMETERIVARBPROC, glGetObjectParameteriv, "glGetObjectParameterivARB")       \
    X(PFNGLGETINFOLOGARBPROC, glGetInfoLog, "glGetInfoLogARB")                                     \
    X(PFNGLGETATTACHEDOBJECTSARBPROC, glGetAttachedObjects, "glGetAttachedObjectsARB")             \
    X(PFNGLGETUNIFORMLOCATIONARBPROC, glGetUniformLocation, "glGetUniformLocationARB")             \
    X(PFNGLGETACTIVEUNIFORMARBPROC, glGetActiveUniform, "glGetActiveUniformARB")                   \
    X(PFNGLGETUNIFORMFVARBPROC, glGetUniformfv, "glGetUniformfvARB")                               \
    X(PFNGLGETUNIFORMIVARBPROC, glGetUniformiv, "glGetUniformivARB")                               \
    X(PFNGLGETSHADERSOURCEARBPROC, glGetShaderSource, "glGetShaderSourceARB")

/// Group 2, "GL_ARB_vertex_program": generic vertex attributes; `glDeletePrograms` frees programs.
#define VELL_VERTEX_PROGRAM_ENTRY_POINTS(X)                                                        \
    X(PFNGLVERTEXATTRIB1DARBPROC, glVertexAttrib1d, "glVertexAttrib1dARB")                         \
    X(PFNGLVERTEXATTRIB1DVARBPROC, glVertexAttrib1dv, "glVertexAttrib1dvARB")                      \
    X(PFNGLVERTEXATTRIB1FARBPROC, glVertexAttrib1f, "glVertexAttrib1fARB")                         \
    X(PFNGLVERTEXATTRIB1FVARBPROC, glVertexAttrib1fv, "glVertexAttrib1fvARB")                      \
    X(PFNGLVERTEXATTRIB1SARBPROC, glVertexAttrib1s, "glVertexAttrib1sARB")                         \
    X(PFNGLVERTEXATTRIB1SVARBPROC, glVertexAttrib1sv, "glVertexAttrib1svARB")                      \
    X(PFNGLVERTEXATTRIB2DARBPROC, glVertexAttrib2d, "glVertexAttrib2dARB")                         \
    X(PFNGLVERTEXATTRIB2DVARBPROC, glVertexAttrib2dv, "glVertexAttrib2dvARB")                      \
    X(PFNGLVERTEXATTRIB2FARBPROC, glVertexAttrib2f, "glVertexAttrib2fARB")                         \
    X(PFNGLVERTEXATTRIB2FVARBPROC, glVertexAttrib2fv, "glVertexAttrib2fvARB")                      \
    X(PFNGLVERTEXATTRIB2SARBPROC, glVertexAttrib2s, "glVertexAttrib2sARB")                         \
    X(PFNGLVERTEXATTRIB2SVARBPROC, glVertexAttrib2sv, "glVertexAttrib2svARB")                      \
    X(PFNGLVERTEXATTRIB3DARBPROC, glVertexAttrib3d, "glVertexAttrib3dARB")                         \
    X(PFNGLVERTEXATTRIB3DVARBPROC, glVertexAttrib3dv, "glVertexAttrib3dvARB")                      \
    X(PFNGLVERTEXATTRIB3FARBPROC, glVertexAttrib3f, "glVertexAttrib3fARB")                         \
    X(PFNGLVERTEXATTRIB3FVARBPROC, glVertexAttrib3fv, "glVertexAttrib3fvARB")                      \
    X(PFNGLVERTEXATTRIB3SARBPROC, glVertexAttrib3s, "glVertexAttrib3sARB")                         \
    X(PFNGLVERTEXATTRIB3SVARBPROC, glVertexAttrib3sv, "glVertexAttrib3svARB")                      \
    X(PFNGLVERTEXATTRIB4NBVARBPROC, glVertexAttrib4Nbv, "glVertexAttrib4NbvARB")                   \
    X(PFNGLVERTEXATTRIB4NIVARBPROC, glVertexAttrib4Niv, "glVertexAttrib4NivARB")                   \
    X(PFNGLVERTEXATTRIB4NSVARBPROC, glVertexAttrib4Nsv, "glVertexAttrib4NsvARB")                   \
    X(PFNGLVERTEXATTRIB4NUBARBPROC, glVertexAttrib4Nub, "glVertexAttrib4NubARB")                   \
    X(PFNGLVERTEXATTRIB4NUBVARBPROC, glVertexAttrib4Nubv, "glVertexAttrib4NubvARB")                \
    X(PFNGLVERTEXATTRIB4NUIVARBPROC, glVertexAttrib4Nuiv, "glVertexAttrib4NuivARB")                \
    X(PFNGLVERTEXATTRIB4NUSVARBPROC, glVertexAttrib4Nusv, "glVertexAttrib4NusvARB")                \
    X(PFNGLVERTEXATTRIB4BVARBPROC, glVertexAttrib4bv, "glVertexAttrib4bvARB")                      \
    X(PFNGLVERTEXATTRIB4DARBPROC, glVertexAttrib4d, "glVertexAttrib4dARB")                         \
    X(PFNGLVERTEXATTRIB4DVARBPROC, glVertexAttrib4dv, "glVertexAttrib4dvARB")                      \
    X(PFNGLVERTEXATTRIB4FARBPROC, glVertexAttrib4f, "glVertexAttrib4fARB")                         \
    X(PFNGLVERTEXATTRIB4FVARBPROC, glVertexAttrib4fv, "glVertexAttrib4fvARB")                      \
    X(PFNGLVERTEXATTRIB4IVARBPROC, glVertexAttrib4iv, "glVertexAttrib4ivARB")                      \
    X(PFNGLVERTEXATTRIB4SARBPROC, glVertexAttrib4s, "glVertexAttrib4sARB")                         \
    X(PFNGLVERTEXATTRIB4SVARBPROC, glVertexAttrib4sv, "glVertexAttrib4svARB")                      \
    X(PFNGLVERTEXATTRIB4UBVARBPROC, glVertexAttrib4ubv, "glVertexAttrib4ubvARB")                   \
    X(PFNGLVERTEXATTRIB4UIVARBPROC, glVertexAttrib4uiv, "glVertexAttrib4uivARB")                   \
    X(PFNGLVERTEXATTRIB4USVARBPROC, glVertexAttrib4usv, "glVertexAttrib4usvARB")                   \
    X(PFNGLVERTEXATTRIBPOINTERARBPROC, glVertexAttribPointer, "glVertexAttribPointerARB")          \
    X(PFNGLENABLEVERTEXATTRIBARRAYARBPROC, glEnableVertexAttribArray,                              \
      "glEnableVertexAttribArrayARB")                                                              \
    X(PFNGLDISABLEVERTEXATTRIBARRAYARBPROC, glDisableVertexAttribArray,                            \
      "glDisableVertexAttribArrayARB")                                                             \
    X(PFNGLPROGRAMSTRINGARBPROC, glProgramString, "glProgramStringARB")                            \
    X(PFNGLBINDPROGRAMARBPROC, glBindProgram, "glBindProgramARB")                                  \
    X(PFNGLDELETEPROGRAMSARBPROC, glDeletePrograms, "glDeleteProgramsARB")                         \
    X(PFNGLGENPROGRAMSARBPROC, glGenPrograms, "glGenProgramsARB")                                  \
    X(PFNGLPROGRAMENVPARAMETER4DARBPROC, glProgramEnvParameter4d, "glProgramEnvParameter4dARB")    \
    X(PFNGLPROGRAMENVPARAMETER4DVARBPROC, glProgramEnvParameter4dv, "glProgramEnvParameter4dvARB") \
    X(PFNGLPROGRAMENVPARAMETER4FARBPROC, glProgramEnvParameter4f, "glProgramEnvParameter4fARB")    \
    X(PFNGLPROGRAMENVPARAMETER4FVARBPROC, glProgramEnvParameter4fv, "glProgramEnvParameter4fvARB") \
    X(PFNGLPROGRAMLOCALPARAMETER4DARBPROC, glProgramLocalParameter4d,                              \
      "glProgramLocalParameter4dARB")                                                              \
    X(PFNGLPROGRAMLOCALPARAMETER4DVARBPROC, glProgramLocalParameter4dv,                            \
      "glProgramLocalParameter4dvARB")                                                             \
    X(PFNGLPROGRAMLOCALPARAMETER4FARBPROC, glProgramLocalParameter4f,                              \
      "glProgramLocalParameter4fARB")                                                              \
    X(PFNGLPROGRAMLOCALPARAMETER4FVARBPROC, glProgramLocalParameter4fv,                            \
      "glProgramLocalParameter4fvARB")                                                             \
    X(PFNGLGETPROGRAMENVPARAMETERDVARBPROC, glGetProgramEnvParameterdv,                            \
      "glGetProgramEnvParameterdvARB")                                                             \
    X(PFNGLGETPROGRAMENVPARAMETERFVARBPROC, glGetProgramEnvParameterfv,                            \
      "glGetProgramEnvParameterfvARB")                                                             \
    X(PFNGLGETPROGRAMLOCALPARAMETERDVARBPROC, glGetProgramLocalParameterdv,                        \
      "glGetProgramLocalParameterdvARB")                                                           \
    X(PFNGLGETPROGRAMLOCALPARAMETERFVARBPROC, glGetProgramLocalParameterfv,                        \
      "glGetProgramLocalParameterfvARB")                                                           \
    X(PFNGLGETPROGRAMIVARBPROC, glGetProgramiv, "glGetProgramivARB")                               \
    X(PFNGLGETPROGRAMSTRINGARBPROC, glGetProgramString, "glGetProgramStringARB")                   \
    X(PFNGLGETVERTEXATTRIBDVARBPROC, glGetVertexAttribdv, "glGetVertexAttribdvARB")                \
    X(PFNGLGETVERTEXATTRIBFVARBPROC, glGetVertexAttribfv, "glGetVertexAttribfvARB")                \
    X(PFNGLGETVERTEXATTRIBIVARBPROC, glGetVertexAttribiv, "glGetVertexAttribivARB")                \
    X(PFNGLGETVERTEXATTRIBPOINTERVARBPROC, glGetVertexAttribPointerv,                              \
      "glGetVertexAttribPointervARB")                                                              \
    X(PFNGLISPROGRAMARBPROC, glIsProgram, "glIsProgramARB")

/// Group 3, "GL_ARB_vertex_shader". The first two are asked for by their OpenGL 2.0 core names on
/// purpose: only these read the info log of a shader object as such. A driver without OpenGL 2.0
/// counts as lacking the group.
#define VELL_VERTEX_SHADER_ENTRY_POINTS(X)                                                         \
    X(PFNGLGETSHADERINFOLOGPROC, glGetShaderInfoLog, "glGetShaderInfoLog")                         \
    X(PFNGLGETSHADERIVPROC, glGetShaderiv, "glGetShaderiv")                                        \
    X(PFNGLBINDATTRIBLOCATIONARBPROC, glBindAttribLocation, "glBindAttribLocationARB")             \
    X(PFNGLGETACTIVEATTRIBARBPROC, glGetActiveAttrib, "glGetActiveAttribARB")                      \
    X(PFNGLGETATTRIBLOCATIONARBPROC, glGetAttribLocation, "glGetAttribLocationARB")

/// Group 4, "GL_ARB_vertex_buffer_object": vertex and index data kept by the GL.
#define VELL_BUFFER_OBJECT_ENTRY_POINTS(X)                                                         \
    X(PFNGLGENBUFFERSARBPROC, glGenBuffers, "glGenBuffersARB")                                     \
    X(PFNGLBINDBUFFERARBPROC, glBindBuffer, "glBindBufferARB")                                     \
    X(PFNGLBUFFERDATAARBPROC, glBufferData, "glBufferDataARB")                                     \
    X(PFNGLDELETEBUFFERSARBPROC, glDeleteBuffers, "glDeleteBuffersARB")

/// Group 5, "GL_ARB_point_sprite". It has no entry points of its own; the core names of the point
/// parameters, which point sprites are sized with, are asked for on purpose: a driver with the
/// extension but without OpenGL 1.4 counts as lacking it.
#define VELL_POINT_SPRITE_ENTRY_POINTS(X)                                                          \
    X(PFNGLPOINTPARAMETERFPROC, glPointParameterf, "glPointParameterf")                            \
    X(PFNGLPOINTPARAMETERFVPROC, glPointParameterfv, "glPointParameterfv")

/// Group 6, "EXT_framebuffer_object": render targets. Searched without "GL_" on purpose: a driver
/// lists it with that in front, and a part of a name is enough to be found. The only group whose
/// pointers keep the suffix.
#define VELL_FRAMEBUFFER_ENTRY_POINTS(X)                                                           \
    X(PFNGLBINDFRAMEBUFFEREXTPROC, glBindFramebufferEXT, "glBindFramebufferEXT")                   \
    X(PFNGLBINDRENDERBUFFEREXTPROC, glBindRenderbufferEXT, "glBindRenderbufferEXT")                \
    X(PFNGLGENRENDERBUFFERSEXTPROC, glGenRenderbuffersEXT, "glGenRenderbuffersEXT")                \
    X(PFNGLGENFRAMEBUFFERSEXTPROC, glGenFramebuffersEXT, "glGenFramebuffersEXT")                   \
    X(PFNGLRENDERBUFFERSTORAGEEXTPROC, glRenderbufferStorageEXT, "glRenderbufferStorageEXT")       \
    X(PFNGLFRAMEBUFFERTEXTURE2DEXTPROC, glFramebufferTexture2DEXT, "glFramebufferTexture2DEXT")    \
    X(PFNGLFRAMEBUFFERRENDERBUFFEREXTPROC, glFramebufferRenderbufferEXT,                           \
      "glFramebufferRenderbufferEXT")                                                              \
    X(PFNGLDELETEFRAMEBUFFERSEXTPROC, glDeleteFramebuffersEXT, "glDeleteFramebuffersEXT")          \
    X(PFNGLDELETERENDERBUFFERSEXTPROC, glDeleteRenderbuffersEXT, "glDeleteRenderbuffersEXT")

/// The groups in the order in which they are fetched: G(extension that the driver must list, table
/// of its entry points, beginning of the names of its two lists).
#define VELL_EXTENSION_GROUPS(G)                                                                   \
    G("GL_ARB_shader_objects", VELL_SHADER_OBJECT_ENTRY_POINTS, ARBShaderObjectProc)               \
    G("GL_ARB_vertex_program", VELL_VERTEX_PROGRAM_ENTRY_POINTS, ARBVertexProgramProc)             \
    G("GL_ARB_vertex_shader", VELL_VERTEX_SHADER_ENTRY_POINTS, ARBVertexShaderProc)                \
    G("GL_ARB_vertex_buffer_object", VELL_BUFFER_OBJECT_ENTRY_POINTS, ARBBufferObjectProc)         \
    G("GL_ARB_point_sprite", VELL_POINT_SPRITE_ENTRY_POINTS, ARBPointSpriteProc)                   \
    G("EXT_framebuffer_object", VELL_FRAMEBUFFER_ENTRY_POINTS, EXTFrameBufferProc)

// clang-format on

// The pointers carry the names of functions that libGL.so exports. Neither form of the library may
// show them under these names, or the loader would bind libGL's own calls to our variables: within
// a program that Vell is linked into they are hidden, and the shared library calls them otherwise.
#ifdef VELL_SHARED
#define VELL_POINTER(type, pointer) type pointer __asm__("Vell_" #pointer)
#else
#define VELL_POINTER(type, pointer) __attribute__((visibility("hidden"))) type pointer
#endif

/// Every pointer is null until InitGLEXT() has filled it; calling it before that crashes.
#define VELL_DECLARE_ENTRY_POINT(type, pointer, name) extern VELL_POINTER(type, pointer);
#define VELL_COUNT_ENTRY_POINT(type, pointer, name) +1 // a term. NOLINT(bugprone-macro-parentheses)

/// Of each group: its pointers; the names asked of the GL, ended by a null pointer; the addresses
/// of the pointers, in the order of the names and without an end.
#define VELL_DECLARE_GROUP(extension, entryPoints, lists)                                          \
    entryPoints(VELL_DECLARE_ENTRY_POINT) extern const char*                                       \
        lists##Name[entryPoints(VELL_COUNT_ENTRY_POINT) + 1];                                      \
    extern void** lists##Address[entryPoints(VELL_COUNT_ENTRY_POINT)];
VELL_EXTENSION_GROUPS(VELL_DECLARE_GROUP)
#undef VELL_DECLARE_GROUP
#undef VELL_COUNT_ENTRY_POINT
#undef VELL_DECLARE_ENTRY_POINT

/// One extension that the engine needs, as InitializeGLExtension() takes it.
struct ExtensionGroup {
    const char* extension; ///< searched in the driver's list
    const char** names;    ///< of its entry points, ended by a null pointer
    void*** pointers;      ///< one address for each name
};

/// All six, in the order in which InitGLEXT() fetches them.
extern const ExtensionGroup extensionGroups[6];

/// Asks whether the GL lists an extension.
///
/// A plain substring search, so a prefix of a longer extension name is found too.
/// Needs a current context; without one there is no list and the answer is 0.
/// @return 1 when `name` stands in the extension list, else 0.
int CheckForExtension(const char* name);

/// Fetches the entry points of one extension with glXGetProcAddress(), which serves contexts that
/// EGL made as well, without any X server: what it answers leads to the current context, whoever
/// made it (libglvnd). A platform without it needs another loader here, one that answers null for a
/// name it does not know.
///
/// @param extension  searched with CheckForExtension(); nothing is stored when it is missing.
/// @param names      null-terminated list of entry points.
/// @param pointers   one address per name; receives what the GL answers, a null included.
/// @return 0 when all were found, -1 when the extension is missing, i + 1 when entry i is the first
///         that is missing (later entries are left as they were).
int InitializeGLExtension(const char* extension, const char** names, void*** pointers);

/// Fetches all six groups in order and stops at the first that fails; the pointers of the groups
/// after it stay null.
/// @return true when every group is complete.
bool InitGLEXT();
