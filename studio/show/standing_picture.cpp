#include "studio/show/standing_picture.h"

#include <GL/gl.h>

#include "platform/offscreen_context.h"

namespace vex::studio {

namespace {

constexpr GLenum matrixModes[]{GL_MODELVIEW, GL_PROJECTION};

}  // namespace

void StandingPicture::keep(int newWidth, int newHeight) {
  width = newWidth;
  height = newHeight;
  readBackBgra(width, height, pixels);
}

void StandingPicture::draw() const {
  glPushAttrib(GL_ALL_ATTRIB_BITS);
  for (const GLenum mode : matrixModes) {
    glMatrixMode(mode);
    glPushMatrix();
    glLoadIdentity();
  }
  for (const GLenum feature :
       {GL_TEXTURE_2D, GL_BLEND, GL_DEPTH_TEST, GL_ALPHA_TEST, GL_FOG, GL_LIGHTING, GL_SCISSOR_TEST})
    glDisable(feature);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  glViewport(0, 0, width, height);
  glRasterPos2i(-1, -1);
  glDrawPixels(width, height, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
  for (const GLenum mode : matrixModes) {
    glMatrixMode(mode);
    glPopMatrix();
  }
  glPopAttrib();
}

}  // namespace vex::studio
