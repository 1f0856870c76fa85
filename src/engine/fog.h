#pragma once

#include "engine/colour.h"
#include "engine/object3d.h"

namespace vex {

// The values of a fog beyond an object's.
struct FogValues {
  float divisor = 1.0f;
  Colour colour{0.7f, 0.7f, 0.7f};
  bool volumetric = false;  // refused by the renderer
};

// Linear distance fog over a scene's meshes, from a tenth of the viewer's far plane to
// farPlane / divisor.
struct Fog : Object3D, FogValues {
  Fog() { kind = ObjectKind::fog; }
  ~Fog();  // logs "  destroying fog %s\n"
};

}  // namespace vex
