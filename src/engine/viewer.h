#pragma once

#include <memory>

#include "engine/animation.h"
#include "engine/matrix.h"
#include "engine/vector.h"

// A scene's camera. It has no name and is no Object3D.

namespace vex {

// World to eye space (the eye looks along -z, y up) for an eye that looks along `direction`, without roll.
// Directions straight up or down are not honoured: they look along +z in world space.
Matrix lookAlong(const Vector& eye, const Vector& direction);

// The values of a viewer; as those of an object.
struct ViewerValues {
  Vector position;              // the eye, world space
  Vector target;                // the point looked at
  float fov = 90.0f;            // degrees; three quarters of it is the vertical angle
  float farPlane = 1000000.0f;  // the near plane is at 1
  float roll = 0.0f;            // radians about the viewing axis
  float alpha = 1.0f;           // opacity of the whole scene; below 0.01 nothing is drawn
  Vector down;                  // screen axes in world space, of length 1, refreshed by getMatrix
  Vector right;
  std::shared_ptr<Animation> positionTrack;
  std::shared_ptr<Animation> targetTrack;
};

struct Viewer : ViewerValues {
  Viewer() = default;
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;
  ~Viewer();  // logs "  destroying viewer\n"

  // Store copies, which play with duration 1. Fatal: "Viewer supports only position keys", "Viewer:
  // duplicated animations of type position", "Viewer: duplicated target animation of type position".
  void addAnimation(const Animation& track);
  void addTargetAnimation(const Animation& track);
  void setAnimParams(float duration, bool loop);

  // World to eye space (the eye looks along -z, y up). Refreshes position, target, down and right. A view
  // straight up or down has no screen axes: both become 0.
  Matrix getMatrix(float seconds);
};

}  // namespace vex
