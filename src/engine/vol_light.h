#pragma once

#include <vector>

#include "engine/light.h"
#include "engine/matrix.h"
#include "engine/mesh.h"

// A spot light whose beam shows in the air and is cut off where meshes stand in it. Each frame the renderer
// draws the scene's opaque meshes from the light into a depth map of N x N samples; each sample becomes a
// point on the first surface that its ray meets, and the beam is a fan of thin additive triangles from the
// light through neighbouring points.
//
// Of its light fields it uses position, spotDirection (the axis), range (length of the beam and far plane
// of the depth map) and coneAngle (degrees).

namespace vex {

// Samples a side of a depth map: two at least span a beam, and more than the most fit no window.
inline constexpr int minDepthSize = 2;
inline constexpr int maxDepthSize = 1024;

struct VolLight : Light {
  // Of the last pass, rows from the bottom of the image up, 0 (near plane) to 1 (far plane).
  std::vector<float> depthBuffer;
  Mesh beams;  // N * N grid vertices, rows from the top of the image down, and the apex
  int size;    // N

  // Samples a side, held within minDepthSize and maxDepthSize.
  explicit VolLight(int samples);
  ~VolLight();  // logs "  destroying VolLight %s\n" before the lines of its mesh and its light

  // The texture is read along u, from the light (1) to the surfaces (0).
  void setBeamTexture(const char* textureName);

  int depthSize() const { return size; }
  Matrix viewMatrix() const;  // world to eye space of the depth map's camera, like Viewer::getMatrix

  // Moves the beams to the depth samples; `near` is the near plane of the depth map.
  void prepareBeams(float near);

  // Draws them under the view matrix. alpha (0 to 1) scales the opacity.
  void drawBeams(float seconds, float alpha);

 private:
  void buildBeams();
};

// A volumetric light in place of `source`, which is destroyed: takes its name, position, direction, range,
// cone angle and tracks (which play with duration 1), nothing else. The caller owns it and puts it where
// the source was.
VolLight* makeVolumetric(Light* source, int samples);

}  // namespace vex
