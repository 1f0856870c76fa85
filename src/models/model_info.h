#pragma once

#include <optional>
#include <string>
#include <vector>

#include "engine/scene.h"
#include "models/model_loader.h"

// What a loaded model holds, in words and as JSON.

namespace vex {

struct ModelInfo {
  bool compiled = false;              // what it was read from
  std::vector<std::string> textures;  // by id, as the model spells each first
  std::vector<std::string> missingTextures;
  std::vector<std::string> longTextures;  // names that the texture cache refuses
};

// Whether the texture cache would find the texture.
bool textureExists(const std::string& name);

// Instead of the texture cache: gives names ids as that does, but loads nothing, and looks which it would
// refuse.
TextureResolver collectTextureNames(ModelInfo& info);

struct JsonContent {
  bool geometry = false;         // positions, normals, uvs and indices of each mesh
  std::optional<float> seconds;  // transforms of meshes and viewers at this time
};

// One object; numbers as %.9g, null where they are not finite. The drawing arrays are built.
std::string modelAsJson(const ModelInfo& info, Scene& scene, const JsonContent& content);

// A line an object, and one for the material of each mesh that is drawn.
std::string modelAsText(const ModelInfo& info, Scene& scene);

}  // namespace vex
