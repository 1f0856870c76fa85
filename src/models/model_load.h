#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/animation.h"
#include "engine/light.h"
#include "engine/mesh.h"
#include "engine/scene.h"
#include "engine/viewer.h"
#include "models/model_loader.h"
#include "models/model_reader.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

// The load of a model that is going on: what its handlers receive.

namespace vex {

inline constexpr int maxMeshes = 1000;
inline constexpr int maxMaterials = 100;
inline constexpr int maxLightsOrCameras = 10000;  // keeps small files from making huge scenes
inline constexpr int rememberedNameSize = 64;

// What the current lines belong to.
enum class ModelContext : std::uint8_t {
  sceneHeader = 0,
  light = 1,
  lightTarget = 2,
  mesh = 3,  // or helper object
  materialList = 4,
  camera = 5,
  cameraTarget = 6,
  none = 100,
};

struct ModelMaterial {
  float diffuse[3] = {1.0f, 1.0f, 1.0f};
  float ambient[3] = {0.0f, 0.0f, 0.0f};
  float specular[3] = {1.0f, 1.0f, 1.0f};
  float opacity = 1.0f;
  float shininess = 0.0f;  // 0 to 128
  float shineStrength = 0.0f;
  int texture = -1;
  bool sphereMap = false;
  bool twoSided = false;
};

struct MeshCounts {
  int vertices = 0;
  int faces = 0;
  int texCoords = 0;
};

// The geometric vertices of the current mesh; the mesh's own are indexed by texture vertex.
struct TemporaryVertex {
  Vector position;
  Vector normal;
};

// The current ones are as the last load left them.
using ModelMaterials = std::array<ModelMaterial, maxMaterials>;

// Made for each load and gone with it.
struct ModelLoad {
  ModelSource source;
  Scene* scene = nullptr;
  TextureResolver texture;
  ModelMaterials materials;  // a material keeps what its model leaves unsaid
  ModelReader reader;
  ModelStream stream;
  ModelTrace trace;

  int pass = 1;  // 1 counts, 2 fills the scene
  int meshIndex = -1;
  int lightIndex = -1;
  int cameraIndex = -1;
  int materialIndex = -1;
  int materialCount = 0;  // of the first pass
  ModelContext context = ModelContext::none;
  bool inAnimation = false;
  int framesPerSecond = 30;
  int ticksPerFrame = 160;
  int maxFrame = 0;                          // in the current animation block
  char cameraName[rememberedNameSize] = "";  // also of lights
  char targetName[rememberedNameSize] = "";
  Animation scratchTrack;        // objects receive copies; at the end it has no type, and none is logged
  ModelMaterial spareMaterial;   // of lines outside materials, which have nothing to change
  bool hasTextureFaces = false;  // the mesh's vertices are its texture vertices
  std::array<MeshCounts, maxMeshes> meshCounts;
  int geometricVertices = 0;  // of the current mesh: the length of its vertex list
  std::size_t claimed = 0;    // sum of all counts of this pass
  std::vector<TemporaryVertex> vertices;
  std::vector<std::array<int, 3>> faces;
};

// How much a file of that size may announce: no line and no list entry is shorter than 8 bytes; a few more
// than the file has are let pass.
inline std::size_t mostClaimed(std::size_t fileSize) {
  return fileSize / 8 + 4096;
}

inline bool readingText(const ModelLoad& load) {
  return load.reader.format == ModelFormat::text;
}

inline bool filling(const ModelLoad& load) {
  return load.pass == 2;
}

inline bool inContext(const ModelLoad& load, ModelContext context) {
  return load.context == context;
}

// The object being read; null in the first pass, and before the first one of its kind.
inline Mesh* currentMesh(const ModelLoad& load) {
  return filling(load) && load.meshIndex >= 0 ? load.scene->meshes[load.meshIndex] : nullptr;
}

inline Light* currentLight(const ModelLoad& load) {
  return filling(load) && load.lightIndex >= 0 ? load.scene->lights[load.lightIndex] : nullptr;
}

inline Viewer* currentViewer(const ModelLoad& load) {
  return filling(load) && load.cameraIndex >= 0 ? load.scene->viewers[load.cameraIndex] : nullptr;
}

// Null before the first one.
inline ModelMaterial* currentMaterial(ModelLoad& load) {
  return load.materialIndex < 0 ? nullptr : &load.materials[static_cast<std::size_t>(load.materialIndex)];
}

inline MeshCounts* currentCounts(ModelLoad& load) {
  return load.meshIndex < 0 ? nullptr : &load.meshCounts[static_cast<std::size_t>(load.meshIndex)];
}

}  // namespace vex
