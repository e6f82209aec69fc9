#pragma once

// Every OpenGL, GLU and GLX entry point that the engine and the demo use: the one table that the
// recording OpenGL is made from.
//
// A row reads: X(effect, number of parameters, result, name, type, printer, type, printer, ...).
//   effect   `plain` only notes the call; `acts` also calls Effect::name, which answers or keeps
//            state.
//   printer  a function of print.h that turns the argument into text; `Skip` leaves it out.

// One entry point a line:
// clang-format off

/// Linked directly.
#define RECORDED_CORE(X)                                                                           \
    X(plain, 1, void, glActiveTexture, GLenum, Enum)                                               \
    X(plain, 2, void, glAlphaFunc, GLenum, Enum, GLclampf, Number)                                 \
    X(plain, 1, void, glBegin, GLenum, Primitive)                                                  \
    X(plain, 2, void, glBindTexture, GLenum, Enum, GLuint, Texture)                                \
    X(plain, 2, void, glBlendFunc, GLenum, Factor, GLenum, Factor)                                 \
    X(plain, 1, void, glCallList, GLuint, List)                                                    \
    X(plain, 1, void, glClear, GLbitfield, Bits)                                                   \
    X(plain, 1, void, glClientActiveTexture, GLenum, Enum)                                         \
    X(plain, 2, void, glClipPlane, GLenum, Enum, const GLdouble*, FourNumbers)                     \
    X(plain, 4, void, glColor4f, GLfloat, Number, GLfloat, Number, GLfloat, Number, GLfloat, Number) \
    X(plain, 4, void, glColorMask, GLboolean, Flag, GLboolean, Flag, GLboolean, Flag, GLboolean, Flag) \
    X(plain, 2, void, glDeleteLists, GLuint, List, GLsizei, Number)                                \
    X(plain, 2, void, glDeleteTextures, GLsizei, Count, const GLuint*, Textures)                   \
    X(plain, 1, void, glDepthMask, GLboolean, Flag)                                                \
    X(plain, 1, void, glDisable, GLenum, Enum)                                                     \
    X(plain, 1, void, glDisableClientState, GLenum, Enum)                                          \
    X(acts,  3, void, glDrawArrays, GLenum, Primitive, GLint, Number, GLsizei, Number)             \
    X(plain, 4, void, glDrawElements, GLenum, Primitive, GLsizei, Number, GLenum, Enum, const GLvoid*, Address) \
    X(plain, 1, void, glEnable, GLenum, Enum)                                                      \
    X(plain, 1, void, glEnableClientState, GLenum, Enum)                                           \
    X(plain, 0, void, glEnd)                                                                       \
    X(plain, 0, void, glEndList)                                                                   \
    X(plain, 2, void, glFogf, GLenum, Enum, GLfloat, Number)                                       \
    X(plain, 2, void, glFogfv, GLenum, Enum, const GLfloat*, FourNumbers)                          \
    X(acts,  1, GLuint, glGenLists, GLsizei, Number)                                               \
    X(acts,  2, void, glGenTextures, GLsizei, Count, GLuint*, Textures)                            \
    X(acts,  0, GLenum, glGetError)                                                                \
    X(acts,  2, void, glGetFloatv, GLenum, Enum, GLfloat*, Skip)                                   \
    X(acts,  2, void, glGetIntegerv, GLenum, Enum, GLint*, Skip)                                   \
    X(acts,  1, const GLubyte*, glGetString, GLenum, Enum)                                         \
    X(plain, 3, void, glIndexPointer, GLenum, Enum, GLsizei, Number, const GLvoid*, Address)       \
    X(acts,  3, void, glInterleavedArrays, GLenum, Enum, GLsizei, Number, const GLvoid*, Address)  \
    X(acts,  0, void, glLoadIdentity)                                                              \
    X(acts,  1, void, glMatrixMode, GLenum, Enum)                                                  \
    X(acts,  1, void, glMultMatrixf, const GLfloat*, SixteenNumbers)                               \
    X(plain, 3, void, glMultiTexCoord2f, GLenum, Enum, GLfloat, Number, GLfloat, Number)           \
    X(plain, 2, void, glNewList, GLuint, List, GLenum, Enum)                                       \
    X(plain, 3, void, glNormalPointer, GLenum, Enum, GLsizei, Number, const GLvoid*, Address)      \
    X(acts,  6, void, glOrtho, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number) \
    X(plain, 2, void, glPixelStorei, GLenum, Enum, GLint, Number)                                  \
    X(plain, 2, void, glPolygonMode, GLenum, Enum, GLenum, Enum)                                   \
    X(plain, 2, void, glPolygonOffset, GLfloat, Number, GLfloat, Number)                           \
    X(acts,  0, void, glPopMatrix)                                                                 \
    X(acts,  0, void, glPushMatrix)                                                                \
    X(acts,  3, void, glScaled, GLdouble, Number, GLdouble, Number, GLdouble, Number)              \
    X(acts,  3, void, glScalef, GLfloat, Number, GLfloat, Number, GLfloat, Number)                 \
    X(plain, 4, void, glTexCoordPointer, GLint, Number, GLenum, Enum, GLsizei, Number, const GLvoid*, Address) \
    X(acts,  9, void, glTexImage2D, GLenum, Enum, GLint, Number, GLint, EnumOrNumber, GLsizei, Number, GLsizei, Number, GLint, Number, GLenum, EnumOrNumber, GLenum, Enum, const GLvoid*, Address) \
    X(plain, 3, void, glTexParameteri, GLenum, Enum, GLenum, Enum, GLint, EnumOrNumber)            \
    X(acts,  3, void, glTranslated, GLdouble, Number, GLdouble, Number, GLdouble, Number)          \
    X(acts,  3, void, glTranslatef, GLfloat, Number, GLfloat, Number, GLfloat, Number)             \
    X(plain, 3, void, glVertex3f, GLfloat, Number, GLfloat, Number, GLfloat, Number)               \
    X(acts,  4, void, glVertexPointer, GLint, Number, GLenum, Enum, GLsizei, Number, const GLvoid*, Address) \
    X(plain, 4, void, glViewport, GLint, Number, GLint, Number, GLsizei, Number, GLsizei, Number)  \
    X(acts,  9, void, gluLookAt, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number) \
    X(acts,  4, void, gluPerspective, GLdouble, Number, GLdouble, Number, GLdouble, Number, GLdouble, Number)

/// Fetched by name, group by group. Rows of the form N(name, pointer type) are fetched and never
/// called: a call fails the test.
#define RECORDED_SHADER_OBJECTS(X, N)                                                              \
    X(plain, 1, void, glDeleteObjectARB, GLhandleARB, Object)                                      \
    N(glGetHandleARB, PFNGLGETHANDLEARBPROC)                                                       \
    N(glDetachObjectARB, PFNGLDETACHOBJECTARBPROC)                                                 \
    X(acts,  1, GLhandleARB, glCreateShaderObjectARB, GLenum, Enum)                                \
    X(acts,  4, void, glShaderSourceARB, GLhandleARB, Object, GLsizei, Count, const GLcharARB**, Texts, const GLint*, Address) \
    X(plain, 1, void, glCompileShaderARB, GLhandleARB, Object)                                     \
    X(acts,  0, GLhandleARB, glCreateProgramObjectARB)                                             \
    X(plain, 2, void, glAttachObjectARB, GLhandleARB, Object, GLhandleARB, Object)                 \
    X(plain, 1, void, glLinkProgramARB, GLhandleARB, Object)                                       \
    X(acts,  1, void, glUseProgramObjectARB, GLhandleARB, Object)                                  \
    N(glValidateProgramARB, PFNGLVALIDATEPROGRAMARBPROC)                                           \
    X(plain, 2, void, glUniform1fARB, GLint, Location, GLfloat, Number)                            \
    X(plain, 3, void, glUniform2fARB, GLint, Location, GLfloat, Number, GLfloat, Number)           \
    X(plain, 4, void, glUniform3fARB, GLint, Location, GLfloat, Number, GLfloat, Number, GLfloat, Number) \
    X(plain, 5, void, glUniform4fARB, GLint, Location, GLfloat, Number, GLfloat, Number, GLfloat, Number, GLfloat, Number) \
    X(plain, 2, void, glUniform1iARB, GLint, Location, GLint, Number)                              \
    X(plain, 3, void, glUniform2iARB, GLint, Location, GLint, Number, GLint, Number)               \
    X(plain, 4, void, glUniform3iARB, GLint, Location, GLint, Number, GLint, Number, GLint, Number) \
    X(plain, 5, void, glUniform4iARB, GLint, Location, GLint, Number, GLint, Number, GLint, Number, GLint, Number) \
    N(glUniform1fvARB, PFNGLUNIFORM1FVARBPROC)                                                     \
    N(glUniform2fvARB, PFNGLUNIFORM2FVARBPROC)                                                     \
    N(glUniform3fvARB, PFNGLUNIFORM3FVARBPROC)                                                     \
    N(glUniform4fvARB, PFNGLUNIFORM4FVARBPROC)                                                     \
    N(glUniform1ivARB, PFNGLUNIFORM1IVARBPROC)                                                     \
    N(glUniform2ivARB, PFNGLUNIFORM2IVARBPROC)                                                     \
    N(glUniform3ivARB, PFNGLUNIFORM3IVARBPROC)                                                     \
    N(glUniform4ivARB, PFNGLUNIFORM4IVARBPROC)                                                     \
    N(glUniformMatrix2fvARB, PFNGLUNIFORMMATRIX2FVARBPROC)                                         \
    N(glUniformMatrix3fvARB, PFNGLUNIFORMMATRIX3FVARBPROC)                                         \
    N(glUniformMatrix4fvARB, PFNGLUNIFORMMATRIX4FVARBPROC)                                         \
    N(glGetObjectParameterfvARB, PFNGLGETOBJECTPARAMETERFVARBPROC)                                 \
    X(acts,  3, void, glGetObjectParameterivARB, GLhandleARB, Object, GLenum, Enum, GLint*, Skip)  \
    N(glGetInfoLogARB, PFNGLGETINFOLOGARBPROC)                                                     \
    N(glGetAttachedObjectsARB, PFNGLGETATTACHEDOBJECTSARBPROC)                                     \
    X(acts,  2, GLint, glGetUniformLocationARB, GLhandleARB, Object, const GLcharARB*, Text)       \
    N(glGetActiveUniformARB, PFNGLGETACTIVEUNIFORMARBPROC)                                         \
    N(glGetUniformfvARB, PFNGLGETUNIFORMFVARBPROC)                                                 \
    N(glGetUniformivARB, PFNGLGETUNIFORMIVARBPROC)                                                 \
    N(glGetShaderSourceARB, PFNGLGETSHADERSOURCEARBPROC)

#define RECORDED_VERTEX_PROGRAM(X, N)                                                              \
    N(glVertexAttrib1dARB, PFNGLVERTEXATTRIB1DARBPROC)                                             \
    N(glVertexAttrib1dvARB, PFNGLVERTEXATTRIB1DVARBPROC)                                           \
    N(glVertexAttrib1fARB, PFNGLVERTEXATTRIB1FARBPROC)                                             \
    N(glVertexAttrib1fvARB, PFNGLVERTEXATTRIB1FVARBPROC)                                           \
    N(glVertexAttrib1sARB, PFNGLVERTEXATTRIB1SARBPROC)                                             \
    N(glVertexAttrib1svARB, PFNGLVERTEXATTRIB1SVARBPROC)                                           \
    N(glVertexAttrib2dARB, PFNGLVERTEXATTRIB2DARBPROC)                                             \
    N(glVertexAttrib2dvARB, PFNGLVERTEXATTRIB2DVARBPROC)                                           \
    N(glVertexAttrib2fARB, PFNGLVERTEXATTRIB2FARBPROC)                                             \
    N(glVertexAttrib2fvARB, PFNGLVERTEXATTRIB2FVARBPROC)                                           \
    N(glVertexAttrib2sARB, PFNGLVERTEXATTRIB2SARBPROC)                                             \
    N(glVertexAttrib2svARB, PFNGLVERTEXATTRIB2SVARBPROC)                                           \
    N(glVertexAttrib3dARB, PFNGLVERTEXATTRIB3DARBPROC)                                             \
    N(glVertexAttrib3dvARB, PFNGLVERTEXATTRIB3DVARBPROC)                                           \
    N(glVertexAttrib3fARB, PFNGLVERTEXATTRIB3FARBPROC)                                             \
    N(glVertexAttrib3fvARB, PFNGLVERTEXATTRIB3FVARBPROC)                                           \
    N(glVertexAttrib3sARB, PFNGLVERTEXATTRIB3SARBPROC)                                             \
    N(glVertexAttrib3svARB, PFNGLVERTEXATTRIB3SVARBPROC)                                           \
    N(glVertexAttrib4NbvARB, PFNGLVERTEXATTRIB4NBVARBPROC)                                         \
    N(glVertexAttrib4NivARB, PFNGLVERTEXATTRIB4NIVARBPROC)                                         \
    N(glVertexAttrib4NsvARB, PFNGLVERTEXATTRIB4NSVARBPROC)                                         \
    N(glVertexAttrib4NubARB, PFNGLVERTEXATTRIB4NUBARBPROC)                                         \
    N(glVertexAttrib4NubvARB, PFNGLVERTEXATTRIB4NUBVARBPROC)                                       \
    N(glVertexAttrib4NuivARB, PFNGLVERTEXATTRIB4NUIVARBPROC)                                       \
    N(glVertexAttrib4NusvARB, PFNGLVERTEXATTRIB4NUSVARBPROC)                                       \
    N(glVertexAttrib4bvARB, PFNGLVERTEXATTRIB4BVARBPROC)                                           \
    N(glVertexAttrib4dARB, PFNGLVERTEXATTRIB4DARBPROC)                                             \
    N(glVertexAttrib4dvARB, PFNGLVERTEXATTRIB4DVARBPROC)                                           \
    N(glVertexAttrib4fARB, PFNGLVERTEXATTRIB4FARBPROC)                                             \
    N(glVertexAttrib4fvARB, PFNGLVERTEXATTRIB4FVARBPROC)                                           \
    N(glVertexAttrib4ivARB, PFNGLVERTEXATTRIB4IVARBPROC)                                           \
    N(glVertexAttrib4sARB, PFNGLVERTEXATTRIB4SARBPROC)                                             \
    N(glVertexAttrib4svARB, PFNGLVERTEXATTRIB4SVARBPROC)                                           \
    N(glVertexAttrib4ubvARB, PFNGLVERTEXATTRIB4UBVARBPROC)                                         \
    N(glVertexAttrib4uivARB, PFNGLVERTEXATTRIB4UIVARBPROC)                                         \
    N(glVertexAttrib4usvARB, PFNGLVERTEXATTRIB4USVARBPROC)                                         \
    N(glVertexAttribPointerARB, PFNGLVERTEXATTRIBPOINTERARBPROC)                                   \
    N(glEnableVertexAttribArrayARB, PFNGLENABLEVERTEXATTRIBARRAYARBPROC)                           \
    N(glDisableVertexAttribArrayARB, PFNGLDISABLEVERTEXATTRIBARRAYARBPROC)                         \
    N(glProgramStringARB, PFNGLPROGRAMSTRINGARBPROC)                                               \
    N(glBindProgramARB, PFNGLBINDPROGRAMARBPROC)                                                   \
    X(plain, 2, void, glDeleteProgramsARB, GLsizei, Count, const GLuint*, Objects)                 \
    N(glGenProgramsARB, PFNGLGENPROGRAMSARBPROC)                                                   \
    N(glProgramEnvParameter4dARB, PFNGLPROGRAMENVPARAMETER4DARBPROC)                               \
    N(glProgramEnvParameter4dvARB, PFNGLPROGRAMENVPARAMETER4DVARBPROC)                             \
    N(glProgramEnvParameter4fARB, PFNGLPROGRAMENVPARAMETER4FARBPROC)                               \
    N(glProgramEnvParameter4fvARB, PFNGLPROGRAMENVPARAMETER4FVARBPROC)                             \
    N(glProgramLocalParameter4dARB, PFNGLPROGRAMLOCALPARAMETER4DARBPROC)                           \
    N(glProgramLocalParameter4dvARB, PFNGLPROGRAMLOCALPARAMETER4DVARBPROC)                         \
    N(glProgramLocalParameter4fARB, PFNGLPROGRAMLOCALPARAMETER4FARBPROC)                           \
    N(glProgramLocalParameter4fvARB, PFNGLPROGRAMLOCALPARAMETER4FVARBPROC)                         \
    N(glGetProgramEnvParameterdvARB, PFNGLGETPROGRAMENVPARAMETERDVARBPROC)                         \
    N(glGetProgramEnvParameterfvARB, PFNGLGETPROGRAMENVPARAMETERFVARBPROC)                         \
    N(glGetProgramLocalParameterdvARB, PFNGLGETPROGRAMLOCALPARAMETERDVARBPROC)                     \
    N(glGetProgramLocalParameterfvARB, PFNGLGETPROGRAMLOCALPARAMETERFVARBPROC)                     \
    N(glGetProgramivARB, PFNGLGETPROGRAMIVARBPROC)                                                 \
    N(glGetProgramStringARB, PFNGLGETPROGRAMSTRINGARBPROC)                                         \
    N(glGetVertexAttribdvARB, PFNGLGETVERTEXATTRIBDVARBPROC)                                       \
    N(glGetVertexAttribfvARB, PFNGLGETVERTEXATTRIBFVARBPROC)                                       \
    N(glGetVertexAttribivARB, PFNGLGETVERTEXATTRIBIVARBPROC)                                       \
    N(glGetVertexAttribPointervARB, PFNGLGETVERTEXATTRIBPOINTERVARBPROC)                           \
    N(glIsProgramARB, PFNGLISPROGRAMARBPROC)

#define RECORDED_VERTEX_SHADER(X, N)                                                               \
    X(acts,  4, void, glGetShaderInfoLog, GLuint, Object, GLsizei, Number, GLsizei*, Address, GLchar*, Skip) \
    X(acts,  3, void, glGetShaderiv, GLuint, Object, GLenum, Enum, GLint*, Skip)                   \
    N(glBindAttribLocationARB, PFNGLBINDATTRIBLOCATIONARBPROC)                                     \
    N(glGetActiveAttribARB, PFNGLGETACTIVEATTRIBARBPROC)                                           \
    N(glGetAttribLocationARB, PFNGLGETATTRIBLOCATIONARBPROC)

#define RECORDED_BUFFER_OBJECTS(X, N)                                                              \
    X(acts,  2, void, glGenBuffersARB, GLsizei, Count, GLuint*, Buffers)                           \
    X(acts,  2, void, glBindBufferARB, GLenum, Enum, GLuint, Buffer)                               \
    X(acts,  4, void, glBufferDataARB, GLenum, Enum, GLsizeiptrARB, Number, const GLvoid*, Address, GLenum, Enum) \
    X(plain, 2, void, glDeleteBuffersARB, GLsizei, Count, const GLuint*, Buffers)

#define RECORDED_POINT_SPRITES(X, N)                                                               \
    N(glPointParameterf, PFNGLPOINTPARAMETERFPROC)                                                 \
    N(glPointParameterfv, PFNGLPOINTPARAMETERFVPROC)

#define RECORDED_FRAMEBUFFERS(X, N)                                                                \
    X(plain, 2, void, glBindFramebufferEXT, GLenum, Enum, GLuint, Framebuffer)                     \
    X(plain, 2, void, glBindRenderbufferEXT, GLenum, Enum, GLuint, Renderbuffer)                   \
    X(acts,  2, void, glGenRenderbuffersEXT, GLsizei, Count, GLuint*, Renderbuffers)               \
    X(acts,  2, void, glGenFramebuffersEXT, GLsizei, Count, GLuint*, Framebuffers)                 \
    X(plain, 4, void, glRenderbufferStorageEXT, GLenum, Enum, GLenum, Enum, GLsizei, Number, GLsizei, Number) \
    X(plain, 5, void, glFramebufferTexture2DEXT, GLenum, Enum, GLenum, Enum, GLenum, Enum, GLuint, Texture, GLint, Number) \
    X(plain, 4, void, glFramebufferRenderbufferEXT, GLenum, Enum, GLenum, Enum, GLenum, Enum, GLuint, Renderbuffer) \
    X(plain, 2, void, glDeleteFramebuffersEXT, GLsizei, Count, const GLuint*, Framebuffers)        \
    X(plain, 2, void, glDeleteRenderbuffersEXT, GLsizei, Count, const GLuint*, Renderbuffers)

/// The six groups in the order in which they are fetched: G(extension searched, its rows).
#define RECORDED_GROUPS(G)                                                                         \
    G("GL_ARB_shader_objects", RECORDED_SHADER_OBJECTS)                                            \
    G("GL_ARB_vertex_program", RECORDED_VERTEX_PROGRAM)                                            \
    G("GL_ARB_vertex_shader", RECORDED_VERTEX_SHADER)                                              \
    G("GL_ARB_vertex_buffer_object", RECORDED_BUFFER_OBJECTS)                                      \
    G("GL_ARB_point_sprite", RECORDED_POINT_SPRITES)                                               \
    G("EXT_framebuffer_object", RECORDED_FRAMEBUFFERS)

// clang-format on
