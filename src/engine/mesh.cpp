#include "engine/mesh.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <cmath>

#include "base/report.h"
#include "engine/drawing.h"
#include "textures/gl_setup.h"

namespace vex {

namespace {

struct Blending {
  GLenum source;
  GLenum destination;
  bool depthWrites;
};

// By BlendMode; `untouched` has none.
constexpr Blending blendings[] = {
    {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, true},
    {GL_SRC_ALPHA, GL_ONE, false},
    {GL_ZERO, GL_ONE_MINUS_SRC_COLOR, false},
    {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, false},
};

void enable(GLenum what, bool on) {
  if (on) {
    glEnable(what);
  } else {
    glDisable(what);
  }
}

void enableArray(GLenum array, bool on) {
  if (on) {
    glEnableClientState(array);
  } else {
    glDisableClientState(array);
  }
}

void unlockArrays() {
  if (!glExtensions.arraysLocked) return;
  glExtensions.glUnlockArraysEXT();
  glExtensions.arraysLocked = false;
}

void lockArrays(std::uint32_t vertexCount) {
  if (!glExtensions.hasCompiledArrays || vertexCount == 0) return;
  glExtensions.glLockArraysEXT(0, static_cast<GLsizei>(vertexCount));
  glExtensions.arraysLocked = true;
}

void drawElements(GLenum mode, const std::vector<std::uint32_t>& elements) {
  glDrawElements(mode, static_cast<GLsizei>(elements.size()), GL_UNSIGNED_INT, elements.data());
}

void setUpHighlight(const Mesh& mesh) {
  const ColourAlpha& specular = mesh.specular;
  const bool highlight =
      mesh.shininess > 0.0f && mesh.shineStrength > 0.5f && specular.r + specular.g + specular.b >= 1.0f;
  if (glExtensions.hasSeparateSpecular) {
    glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL_EXT,
                  highlight ? GL_SEPARATE_SPECULAR_COLOR_EXT : GL_SINGLE_COLOR_EXT);
  }
  if (highlight) {
    glMaterialfv(GL_FRONT, GL_SPECULAR, &specular.r);
    glMaterialf(GL_FRONT, GL_SHININESS, mesh.shininess * 128.0f);
  } else {
    constexpr float none[4] = {};
    glMaterialfv(GL_FRONT, GL_SPECULAR, none);
  }
}

}  // namespace

Mesh::~Mesh() {
  logPrintf(kind == ObjectKind::mesh ? "  destroying mesh %s\n" : "  destroying fluid %s\n", name);
}

void Mesh::buildArrays() {
  if (vertexCount == 0) vertexCount = static_cast<std::uint32_t>(vertices.size());
  if (positions.empty()) {
    positions.reserve(vertices.size() * 3);
    normals.reserve(vertices.size() * 3);
    if (!envMap) uvs.reserve(vertices.size() * 2);
    for (const Vertex& vertex : vertices) {
      positions.insert(positions.end(), {vertex.position.x, vertex.position.y, vertex.position.z});
      normals.insert(normals.end(), {vertex.normal.x, vertex.normal.y, vertex.normal.z});
      if (!envMap) uvs.insert(uvs.end(), {vertex.u, vertex.v});
    }
  }
  radius = 0.0f;
  for (const Vertex& vertex : vertices) {
    if (const float distance = (vertex.position - position).length(); distance > radius) radius = distance;
  }
  if (indices.empty()) {
    faceCount = static_cast<std::uint32_t>(faces.size());
    indices.reserve(faces.size() * 3);
    for (const Face& face : faces) indices.insert(indices.end(), face.v.begin(), face.v.end());
  }
}

void Mesh::setUpMaterial(bool useLight, float alpha) {
  enable(GL_LIGHTING, useLight);
  enable(GL_CULL_FACE, !twoSided);
  glMaterialfv(GL_FRONT, GL_AMBIENT, &ambient.r);
  setUpHighlight(*this);
  enable(GL_TEXTURE_2D, texture != -1);
  if (texture != -1) glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
  diffuse.a = opacity * alpha;
  if (useLight) {
    glMaterialfv(GL_FRONT, GL_DIFFUSE, &diffuse.r);
  } else {
    glColor4fv(&diffuse.r);
  }
  if (blendMode != BlendMode::untouched) {
    const Blending& blending = blendings[static_cast<int>(blendMode)];
    glBlendFunc(blending.source, blending.destination);
    glDepthMask(blending.depthWrites);
  }
  glEnable(GL_ALPHA_TEST);
  glAlphaFunc(GL_GREATER, alphaRef);
  enable(GL_TEXTURE_GEN_S, envMap);
  enable(GL_TEXTURE_GEN_T, envMap);
  if (envMap) {
    glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP);
    glTexGeni(GL_T, GL_TEXTURE_GEN_MODE, GL_SPHERE_MAP);
  }

  // A mesh whose arrays were built for an environment map has no coordinates to point at.
  const bool mapped = !envMap && texture != -1 && !uvs.empty();
  glEnableClientState(GL_VERTEX_ARRAY);
  enableArray(GL_TEXTURE_COORD_ARRAY, mapped);
  glEnableClientState(GL_NORMAL_ARRAY);
  glVertexPointer(3, GL_FLOAT, 0, positions.data());
  if (mapped) glTexCoordPointer(2, GL_FLOAT, 0, uvs.data());
  glNormalPointer(GL_FLOAT, 0, normals.data());
}

void Mesh::draw(bool sceneLit, float, float alpha) {
  if (drawingUnseen()) {
    diffuse.a = opacity * alpha;
    return;
  }
  unlockArrays();
  setUpMaterial(sceneLit && lit, alpha);
  lockArrays(vertexCount);
  if (stripped) {
    // Strips count as running clockwise, fans and lone triangles counter-clockwise.
    if (!strips.empty()) glCullFace(GL_FRONT);
    for (const StripList& strip : strips) drawElements(GL_TRIANGLE_STRIP, strip.vertices);
    glCullFace(GL_BACK);
    for (const StripList& fan : fans) drawElements(GL_TRIANGLE_FAN, fan.vertices);
    if (!solos.empty()) drawElements(GL_TRIANGLES, solos);
    return;
  }
  glCullFace(GL_BACK);
  drawElements(GL_TRIANGLES, indices);
}

}  // namespace vex
