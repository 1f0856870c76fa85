#pragma once

#include "engine/scene.h"

// Models from ASE text or its compiled form into a scene.

namespace vex {

// Loads base + ".hv3" or base + ".ase" (base: the path without extension, such as "data\\hell") and puts its
// meshes, lights and viewers into the scene, in the place of what was there. The compiled file is taken
// when its stamp equals the text's comment or when there is no text; reading the text writes it. Loads the
// textures that the materials name. Every failure is fatal.
void loadModel(const char* base, Scene* scene);

}  // namespace vex
