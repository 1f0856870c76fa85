#pragma once

#include <GL/gl.h>

namespace vex {

// For drawing in normalized device coordinates: no culling (such quads may run clockwise), lighting,
// texture-coordinate generation or alpha test left on by a scene.
inline void setUpFlatDrawing() {
  glDisable(GL_CULL_FACE);
  glDisable(GL_LIGHTING);
  glDisable(GL_TEXTURE_GEN_S);
  glDisable(GL_TEXTURE_GEN_T);
  glDisable(GL_ALPHA_TEST);
}

}  // namespace vex
