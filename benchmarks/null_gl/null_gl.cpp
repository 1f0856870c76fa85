// Empty entry points in the place of the GL, for measuring what the player itself costs. They stand for all
// calls of loading and drawing, and of GLU's projection.

#include <GL/gl.h>

extern "C" {

void glAlphaFunc(GLenum, GLclampf) {}
void glBegin(GLenum) {}
void glBindTexture(GLenum, GLuint) {}
void glBlendFunc(GLenum, GLenum) {}
void glClear(GLbitfield) {}
void glColor3f(GLfloat, GLfloat, GLfloat) {}
void glColor4f(GLfloat, GLfloat, GLfloat, GLfloat) {}
void glColor4fv(const GLfloat*) {}
void glColorMask(GLboolean, GLboolean, GLboolean, GLboolean) {}
void glCullFace(GLenum) {}
void glDeleteTextures(GLsizei, const GLuint*) {}
void glDepthFunc(GLenum) {}
void glDepthMask(GLboolean) {}
void glDisable(GLenum) {}
void glDisableClientState(GLenum) {}
void glDrawElements(GLenum, GLsizei, GLenum, const GLvoid*) {}
void glEnable(GLenum) {}
void glEnableClientState(GLenum) {}
void glEnd() {}
void glFinish() {}
void glFogf(GLenum, GLfloat) {}
void glFogfv(GLenum, const GLfloat*) {}
void glFogi(GLenum, GLint) {}
void glFrontFace(GLenum) {}
GLboolean glIsEnabled(GLenum) {
  return GL_FALSE;
}
void glLightModelfv(GLenum, const GLfloat*) {}
void glLightModeli(GLenum, GLint) {}
void glLightf(GLenum, GLenum, GLfloat) {}
void glLightfv(GLenum, GLenum, const GLfloat*) {}
void glLoadIdentity() {}
void glLoadMatrixf(const GLfloat*) {}
void glMaterialf(GLenum, GLenum, GLfloat) {}
void glMaterialfv(GLenum, GLenum, const GLfloat*) {}
void glMatrixMode(GLenum) {}
void glMultMatrixd(const GLdouble*) {}
void glMultMatrixf(const GLfloat*) {}
void glNormalPointer(GLenum, GLsizei, const GLvoid*) {}
void glPixelStorei(GLenum, GLint) {}
void glPointSize(GLfloat) {}
void glPopMatrix() {}
void glPushMatrix() {}
void glReadPixels(GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, GLvoid*) {}
void glTexCoord2f(GLfloat, GLfloat) {}
void glTexCoordPointer(GLint, GLenum, GLsizei, const GLvoid*) {}
void glTexEnvf(GLenum, GLenum, GLfloat) {}
void glTexGeni(GLenum, GLenum, GLint) {}
void glTexImage2D(GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const GLvoid*) {}
void glTexParameterf(GLenum, GLenum, GLfloat) {}
void glVertex2f(GLfloat, GLfloat) {}
void glVertex3f(GLfloat, GLfloat, GLfloat) {}
void glVertexPointer(GLint, GLenum, GLsizei, const GLvoid*) {}
void glViewport(GLint, GLint, GLsizei, GLsizei) {}

}  // extern "C"
