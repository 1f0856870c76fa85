#include "textures/gl_setup.h"

#include <GL/glext.h>

#include "base/report.h"
#include "platform/gl_context.h"

namespace vex {

namespace {

template <typename Function>
void load(Function& function, const char* name) {
  function = reinterpret_cast<Function>(glContext.entryPoint(name));
}

// Null where the GL refuses to answer.
const char* glText(GLenum name) {
  const GLubyte* text = glGetString(name);
  return text ? reinterpret_cast<const char*>(text) : "";
}

}  // namespace

void setUpGlState() {
  glDrawBuffer(GL_BACK);
  glEnable(GL_DEPTH_TEST);
  glShadeModel(GL_SMOOTH);
  glEnable(GL_BLEND);
  glDepthFunc(GL_LEQUAL);
  glLineWidth(2.0f);
  glDisable(GL_COLOR_MATERIAL);
  logPrintf("%s from %s ver %s\n%s\n", glText(GL_RENDERER), glText(GL_VENDOR), glText(GL_VERSION),
            glText(GL_EXTENSIONS));
  probeExtensions();
}

void probeExtensions() {
  glExtensions = {};
  if (glContext.extensionSupported("GL_ARB_multitexture")) {
    load(glExtensions.glMultiTexCoord2fARB, "glMultiTexCoord2fARB");
    load(glExtensions.glActiveTextureARB, "glActiveTextureARB");
    load(glExtensions.glClientActiveTextureARB, "glClientActiveTextureARB");
    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &glExtensions.textureUnits);
    glExtensions.hasMultitexture = true;
  }
  glExtensions.hasSeparateSpecular = glContext.extensionSupported("GL_EXT_separate_specular_color");
  if (glContext.extensionSupported("GL_EXT_compiled_vertex_array")) {
    load(glExtensions.glLockArraysEXT, "glLockArraysEXT");
    load(glExtensions.glUnlockArraysEXT, "glUnlockArraysEXT");
    glExtensions.hasCompiledArrays = true;
  }
}

}  // namespace vex
