// Scene::render: one picture of a scene, step by step. Who adds a kind of object adds its step here.

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>

#include "base/clock.h"
#include "base/options.h"
#include "base/report.h"
#include "base/window_size.h"
#include "engine/drawing.h"
#include "engine/fluid.h"
#include "engine/particle_system.h"
#include "engine/scene.h"
#include "engine/vol_light.h"
#include "textures/stat_text.h"

namespace vex {

namespace {

constexpr double nearPlane = 1.0;

struct View {
  Scene& scene;
  Viewer& viewer;
  float seconds;  // scene time
  bool lit;       // the scene has lights switched on
};

// Clearing obeys the mask, which what was drawn before may have left off.
void clearDepth() {
  glDepthMask(GL_TRUE);
  glClear(GL_DEPTH_BUFFER_BIT);
}

void loadProjection(double verticalAngle, double aspect, double farPlane) {
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(verticalAngle, aspect, nearPlane, farPlane);
}

void loadView(Matrix view) {
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glLoadMatrixf(view.toGL());
}

void drawMesh(Mesh& mesh, bool lit, float seconds, float alpha) {
  glPushMatrix();
  Matrix matrix = mesh.getMatrix(seconds);
  glMultMatrixf(matrix.toGL());
  mesh.draw(lit, seconds, alpha);
  glPopMatrix();
}

// What the light sees of the opaque meshes: drawn into a corner of the window's depth buffer, without a
// trace in its colours.
void takeDepthMap(const View& view, VolLight& light) {
  const int size = light.depthSize();
  glViewport(0, 0, size, size);
  loadProjection(light.coneAngle, 1.0, light.range);
  loadView(light.viewMatrix());
  for (Mesh* mesh : view.scene.meshes) {
    if (!mesh->hidden() && mesh->blendMode == BlendMode::opaque) drawMesh(*mesh, false, view.seconds, 1.0f);
  }
  if (drawingUnseen()) return;
  glFinish();
  glReadPixels(0, 0, size, size, GL_DEPTH_COMPONENT, GL_FLOAT, light.depthBuffer.data());
}

void takeDepthMaps(const View& view) {
  bool taken = false;
  glDepthFunc(GL_LEQUAL);
  glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
  for (Light* light : view.scene.lights) {
    if (light->kind != ObjectKind::volLight) continue;
    takeDepthMap(view, static_cast<VolLight&>(*light));
    taken = true;
  }
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  if (!taken) return;
  clearDepth();
  glViewport(0, 0, static_cast<int>(windowWidth()), static_cast<int>(windowHeight()));
}

void setUpCamera(const View& view) {
  loadProjection(view.viewer.fov * 0.75f, windowWidth() / windowHeight(), view.viewer.farPlane);
  loadView(view.viewer.getMatrix(view.seconds));
}

struct BoxCorner {
  float s, t;
  float x, y, z;  // from the eye
};

// By BoxFace. The faces overlap at their edges.
constexpr BoxCorner boxCorners[boxFaces][4] = {
    {{0, 1, -10.1f, 10, -10.1f},
     {0, 0, 10.1f, 10, -10.1f},
     {1, 0, 10.1f, 10, 10.1f},
     {1, 1, -10.1f, 10, 10.1f}},
    {{0, 0, -10.1f, -10, -10.1f},
     {0, 1, 10.1f, -10, -10.1f},
     {1, 1, 10.1f, -10, 10.1f},
     {1, 0, -10.1f, -10, 10.1f}},
    {{1, 0, -10.1f, -10.1f, 10},
     {0, 0, 10.1f, -10.1f, 10},
     {0, 1, 10.1f, 10.1f, 10},
     {1, 1, -10.1f, 10.1f, 10}},
    {{1, 0, -10, -10.1f, -10.1f},
     {0, 0, -10, -10.1f, 10.1f},
     {0, 1, -10, 10.1f, 10.1f},
     {1, 1, -10, 10.1f, -10.1f}},
    {{0, 0, -10.1f, -10.1f, -10},
     {1, 0, 10.1f, -10.1f, -10},
     {1, 1, 10.1f, 10.1f, -10},
     {0, 1, -10.1f, 10.1f, -10}},
    {{1, 0, 10, -10.1f, 10.1f},
     {0, 0, 10, -10.1f, -10.1f},
     {0, 1, 10, 10.1f, -10.1f},
     {1, 1, 10, 10.1f, 10.1f}},
};

// Behind everything, since it passes every depth test and writes none. What was drawn last, in this frame or
// the one before, may have left generated texture coordinates on.
void drawBox(const View& view) {
  glDepthFunc(GL_ALWAYS);
  for (const GLenum state : {GL_ALPHA_TEST, GL_CULL_FACE, GL_LIGHTING, GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T}) {
    glDisable(state);
  }
  glEnable(GL_TEXTURE_2D);
  glDepthMask(GL_FALSE);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  const Vector& eye = view.viewer.position;
  for (std::size_t face = 0; face < boxFaces; ++face) {
    const int texture = view.scene.boxTextures[face];
    if (texture == -1 || drawingUnseen()) continue;
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glBegin(GL_POLYGON);
    for (const BoxCorner& corner : boxCorners[face]) {
      glTexCoord2f(corner.s, corner.t);
      glVertex3f(eye.x + corner.x, eye.y + corner.y, eye.z + corner.z);
    }
    glEnd();
  }
  glDepthFunc(GL_LEQUAL);
}

void setUpLight(GLenum name, const Light& light) {
  // Without intensity the attenuation would be a division by 0, and the light none.
  const bool shines = light.intensity > 0.0f;
  const float diffuse[4] = {light.colour.r, light.colour.g, light.colour.b, 1.0f};
  constexpr float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
  constexpr float black[4] = {0.0f, 0.0f, 0.0f, 1.0f};
  const float position[4] = {light.position.x, light.position.y, light.position.z, 1.0f};
  const bool fading = shines && light.range > 0.0f;
  glEnable(name);
  glLightfv(name, GL_DIFFUSE, shines ? diffuse : black);
  glLightfv(name, GL_SPECULAR, shines ? white : black);
  glLightfv(name, GL_POSITION, position);
  glLightf(name, GL_CONSTANT_ATTENUATION, fading ? 0.0f : shines ? 1.0f / light.intensity : 1.0f);
  glLightf(name, GL_LINEAR_ATTENUATION, fading ? 1.0f / (light.range * light.intensity) : 0.0f);
  glLightf(name, GL_QUADRATIC_ATTENUATION, 0.0f);
  if (light.spot) {
    const float direction[3] = {light.spotDirection.x, light.spotDirection.y, light.spotDirection.z};
    glLightfv(name, GL_SPOT_DIRECTION, direction);
    glLightf(name, GL_SPOT_CUTOFF, std::clamp(light.coneAngle / 2.0f, 0.0f, 90.0f));
    glLightf(name, GL_SPOT_EXPONENT, 1.0f);
  } else {
    glLightf(name, GL_SPOT_CUTOFF, 180.0f);
  }
}

// Under the view matrix, which makes positions and directions those of the world.
void setUpLights(const View& view) {
  if (!view.lit) return;
  glFrontFace(GL_CCW);
  glEnable(GL_NORMALIZE);
  constexpr float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, white);
  GLenum name = GL_LIGHT0;
  for (const int index : view.scene.activeLights) {
    if (index < 0) break;
    setUpLight(name++, *view.scene.lights[index]);
  }
  for (; name < GL_LIGHT0 + maxActiveLights; ++name) glDisable(name);
}

void setUpFog(const View& view) {
  if (!view.scene.fogs) glDisable(GL_FOG);
  for (const Fog* fog : view.scene.fogs) {
    if (fog->volumetric) fatalError("Volumetric fog is not supported in the moment!");
    const float colour[4] = {fog->colour.r, fog->colour.g, fog->colour.b, 1.0f};
    glEnable(GL_FOG);
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogfv(GL_FOG_COLOR, colour);
    glFogf(GL_FOG_START, view.viewer.farPlane / 10.0f);
    glFogf(GL_FOG_END, view.viewer.farPlane / fog->divisor);
  }
}

// One pass a blend mode; within a pass the model's order decides.
void drawMeshes(const View& view) {
  for (int pass = 0; pass < blendModes; ++pass) {
    for (Mesh* mesh : view.scene.meshes) {
      if (mesh->hidden() || mesh->blendMode != static_cast<BlendMode>(pass)) continue;
      if (mesh->kind == ObjectKind::fluid) animateFluid(*mesh, clockDelta());
      drawMesh(*mesh, view.lit, view.seconds, view.viewer.alpha);
    }
  }
}

// Particles run on the demo clock, not on scene time.
void drawParticles(const View& view) {
  if (!view.scene.particleSystems) return;
  // Emitters may hang on hidden objects, which no pass has moved.
  for (Mesh* mesh : view.scene.meshes) {
    if (mesh->hidden()) mesh->getMatrix(view.seconds);
  }
  const Viewer& viewer = view.viewer;
  for (ParticleSystem** system = view.scene.particleSystems; *system; ++system) {
    (*system)->update(clockTime(), clockDelta());
    (*system)->draw(viewer.down, viewer.right, view.lit, clockTime(), viewer.alpha);
  }
}

void drawFlaresAndBeams(const View& view) {
  const Viewer& viewer = view.viewer;
  for (Light* light : view.scene.lights) {
    if (light->kind == ObjectKind::light) {
      light->drawFlare(viewer.down, viewer.right, view.seconds, viewer.alpha);
    } else {
      auto& volLight = static_cast<VolLight&>(*light);
      volLight.prepareBeams(static_cast<float>(nearPlane));
      volLight.drawBeams(view.seconds, viewer.alpha);
    }
  }
}

void restoreState() {
  glDepthMask(GL_TRUE);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glDisable(GL_ALPHA_TEST);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
}

void drawCameraText(const Viewer& viewer) {
  if (!options().showStats) return;
  drawText(0, 4, "%2.1f %2.1f %2.1f -> %2.1f %2.1f %2.1f", viewer.position.x, viewer.position.y,
           viewer.position.z, viewer.target.x, viewer.target.y, viewer.target.z);
  drawText(0, 5, "fov %2.1f rot %2.1f", viewer.fov, viewer.roll);
}

}  // namespace

void Scene::render(float seconds) {
  Viewer& viewer = *getViewer();
  if (viewer.alpha < 0.01f) return;
  const View view{.scene = *this, .viewer = viewer, .seconds = seconds, .lit = hasActiveLights()};
  clearDepth();
  glDisable(GL_FOG);
  takeDepthMaps(view);
  setUpCamera(view);
  drawBox(view);
  setUpLights(view);
  setUpFog(view);
  drawMeshes(view);
  glDisable(GL_FOG);
  drawParticles(view);
  drawFlaresAndBeams(view);
  restoreState();
  drawCameraText(viewer);
}

}  // namespace vex
