#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

/// What entry points do besides being written down: the rows of entrypoints.h that say `acts`.
namespace Effect {

// Questions
const GLubyte* glGetString(GLenum name);
void glGetFloatv(GLenum name, GLfloat* values);
void glGetIntegerv(GLenum name, GLint* values);
GLenum glGetError();

// Objects
GLuint glGenLists(GLsizei count);
void glGenTextures(GLsizei count, GLuint* names);
void glGenBuffersARB(GLsizei count, GLuint* names);
void glGenRenderbuffersEXT(GLsizei count, GLuint* names);
void glGenFramebuffersEXT(GLsizei count, GLuint* names);

// Matrices
void glMatrixMode(GLenum mode);
void glLoadIdentity();
void glPushMatrix();
void glPopMatrix();
void glMultMatrixf(const GLfloat* matrix);
void glTranslatef(GLfloat x, GLfloat y, GLfloat z);
void glTranslated(GLdouble x, GLdouble y, GLdouble z);
void glScalef(GLfloat x, GLfloat y, GLfloat z);
void glScaled(GLdouble x, GLdouble y, GLdouble z);
void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near,
             GLdouble far);
void gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble near, GLdouble far);
void gluLookAt(GLdouble eyeX, GLdouble eyeY, GLdouble eyeZ, GLdouble targetX, GLdouble targetY,
               GLdouble targetZ, GLdouble upX, GLdouble upY, GLdouble upZ);

// What is drawn from
void glInterleavedArrays(GLenum format, GLsizei stride, const GLvoid* array);
void glVertexPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* pointer);
void glDrawArrays(GLenum mode, GLint first, GLsizei count);
void glBindBufferARB(GLenum target, GLuint buffer);
void glBufferDataARB(GLenum target, GLsizeiptrARB size, const GLvoid* data, GLenum usage);
void glTexImage2D(GLenum target, GLint level, GLint internal, GLsizei width, GLsizei height,
                  GLint border, GLenum format, GLenum type, const GLvoid* data);

// Shaders
GLhandleARB glCreateShaderObjectARB(GLenum kind);
GLhandleARB glCreateProgramObjectARB();
void glShaderSourceARB(GLhandleARB object, GLsizei count, const GLcharARB** texts,
                       const GLint* lengths);
void glUseProgramObjectARB(GLhandleARB program);
void glGetObjectParameterivARB(GLhandleARB object, GLenum name, GLint* value);
void glGetShaderiv(GLuint object, GLenum name, GLint* value);
void glGetShaderInfoLog(GLuint object, GLsizei most, GLsizei* length, GLchar* text);
GLint glGetUniformLocationARB(GLhandleARB program, const GLcharARB* name);

} // namespace Effect
