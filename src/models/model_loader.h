#pragma once

#include <functional>
#include <string>

#include "engine/scene.h"
#include "textures/texture_cache.h"

// Models from ASE text or its compiled form into a scene.

namespace vex {

// Turns the name of a texture into its id.
using TextureResolver = std::function<int(const char* name, bool wrap)>;

// Loads base + ".hv3" or base + ".ase" (base: the path without extension, such as "data\\hell") and puts its
// meshes, lights and viewers into the scene, in the place of what was there. The compiled file is taken
// when its stamp equals the text's comment or when there is no text; reading the text writes it. Loads the
// textures that the materials name. Every failure is fatal. Result: as readModel.
std::string loadModel(const char* base, Scene* scene, TextureResolver texture = getTexture);

// One file of a model.
struct ModelSource {
  std::string fileName;
  std::string compiledName = {};  // of a text: where its compiled form goes; empty: nowhere
  std::string data = {};          // of a compiled file: its stream; empty: not read yet
};

// Why the compiled form of the text was not written; empty when it was, or was not asked for.
// Fatal: "unknown 3d format"; "File %s not found"; a file that is no model.
std::string readModel(ModelSource source, Scene* scene, TextureResolver texture = getTexture);

}  // namespace vex
