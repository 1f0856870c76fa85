#pragma once

#include "tests/support/scene_builder.h"

namespace vex {

// The objects that a scene asks for in its model ("hell", "skull", ...), in an order that suits its test.
const ModelContents& contentsOf(const char* model);

// All models as loose files below data/, each object a small square, and a texture of 4 x 4 pixels for
// every name that scenes ask for when they are constructed.
void writeSceneModels();

}  // namespace vex
