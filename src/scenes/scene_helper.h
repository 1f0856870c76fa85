#pragma once

#include "engine/scene.h"
#include "scenes/scene_entry.h"

// Drawing in two dimensions over and between the 3D scenes: bitmaps, fades, movies, noise, the logo.
//
// Coordinates are normalized device coordinates under the current, identity matrices. Positions y are
// given downwards (-1 is the top edge), so that a rectangle x, y, w, h has its upper left corner at
// (x, y); the full screen is -1, -1, 2, 2.

namespace vex {

inline constexpr int maxLogoLayers = 1000;  // drawn in a frame, whatever the count

struct SceneHelper : Scene {
  SceneHelper();
};

extern const SceneEntry sceneHelper;

}  // namespace vex
