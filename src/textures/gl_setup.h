#pragma once

#include <GL/gl.h>

// The fixed GL state of the whole show, and what optional GL there is. Both need a current context and
// glContext, no matter who opened it.

namespace vex {

// Set once by probeExtensions(), read anywhere; but for the lock, which follows every draw.
struct GlExtensions {
  bool hasMultitexture = false;      // GL_ARB_multitexture
  int textureUnits = 1;              // asked for only with multitexture
  bool hasSeparateSpecular = false;  // GL_EXT_separate_specular_color
  bool hasCompiledArrays = false;    // GL_EXT_compiled_vertex_array

  // Loaded with multitexture.
  void (*glMultiTexCoord2fARB)(GLenum target, GLfloat s, GLfloat t) = nullptr;
  void (*glActiveTextureARB)(GLenum texture) = nullptr;
  void (*glClientActiveTextureARB)(GLenum texture) = nullptr;

  // Loaded with compiled vertex arrays.
  void (*glLockArraysEXT)(GLint first, GLsizei count) = nullptr;
  void (*glUnlockArraysEXT)() = nullptr;
  bool arraysLocked = false;  // unlocking what is not locked is a GL error
};

inline GlExtensions glExtensions;

// The fixed state: back buffer, depth test less-or-equal, smooth shading, blending on, lines 2.0
// wide, colour material off; then logs "%s from %s ver %s\n%s\n" (renderer, vendor, version,
// extensions) and probes the extensions. All that the offscreen context needs, too.
void setUpGlState();

void probeExtensions();

}  // namespace vex
