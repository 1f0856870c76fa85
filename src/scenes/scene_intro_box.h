#pragma once

#include "scenes/model_scene.h"

namespace vex {

// A box with a lid, smoke that forms along the logo, and the logo in four layers.
struct IntroBoxValues {
  bool reversed = false;  // the smoke runs backwards, for good
  int first = 0;          // indices of the smoke lights in the lights array, both ends included
  int last = -1;
};

struct SceneIntroBox : EmittingScene, IntroBoxValues {
  using Own = IntroBoxValues;
};

extern const ModelScene<SceneIntroBox> sceneIntroBox;

}  // namespace vex
