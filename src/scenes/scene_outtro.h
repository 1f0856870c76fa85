#pragma once

#include <string>
#include <vector>

#include "engine/scene.h"
#include "scenes/scene_entry.h"

namespace vex {

inline constexpr int starCount = 1000;
inline constexpr int maxCopperBars = 1000;  // drawn in a frame, whatever the count

// The closing scene: a scroller, copper bars, a cloud of balls and a field of stars.
//
// The balls are the scene's lights. They come from a model or from a ball file (.hvv, scenes/ball_file.h),
// which loading a model writes.
struct OuttroValues {
  char fontName[32] = "";     // texture of the glyphs, a column of 32 cells
  char textName[32] = "";     // file of the scroller's text
  std::string text;           // its bytes
  float scrollPos = -20;      // characters
  char ballFile[32] = "";     // model or ball file loaded last
  float ballAngle = 0;        // of the camera round the balls, radians
  std::vector<Vector> stars;  // whole numbers from 0 to 499
  Vector starOffset;          // how far the field has moved
};

struct SceneOuttro : Scene, OuttroValues {
  using Own = OuttroValues;
  SceneOuttro();
};

extern const SceneEntry sceneOuttro;

}  // namespace vex
