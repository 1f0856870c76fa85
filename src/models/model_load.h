#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/animation.h"
#include "engine/light.h"
#include "engine/mesh.h"
#include "engine/scene.h"
#include "engine/viewer.h"

// What the handlers of a model know about the load that is going on.

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

struct ModelState {
  Scene* scene = nullptr;
  int pass = 1;  // 1 counts, 2 fills the scene
  int meshIndex = -1;
  int lightIndex = -1;
  int cameraIndex = -1;
  int materialIndex = -1;
  int materialCount = 0;  // of the first pass
  ModelContext context = ModelContext::none;
  bool inAnimation = false;
  int framesPerSecond = 0;
  int ticksPerFrame = 0;
  int maxFrame = 0;                          // in the current animation block
  char cameraName[rememberedNameSize] = "";  // also of lights
  char targetName[rememberedNameSize] = "";
  Animation& scratchTrack = *new Animation;  // objects receive copies; never destroyed
  bool hasTextureFaces = false;              // the mesh's vertices are its texture vertices
  std::array<MeshCounts, maxMeshes> meshCounts;
  int geometricVertices = 0;                          // of the current mesh: the length of its vertex list
  std::size_t claimed = 0;                            // sum of all counts of this pass
  std::array<ModelMaterial, maxMaterials> materials;  // kept between loads
  std::vector<TemporaryVertex> vertices;
  std::vector<std::array<int, 3>> faces;
};

inline ModelState modelState;

// How much a file of that size may announce: no line and no list entry is shorter than 8 bytes; a few more
// than the file has are let pass.
inline std::size_t mostClaimed(std::size_t fileSize) {
  return fileSize / 8 + 4096;
}

inline bool filling() {
  return modelState.pass == 2;
}

inline bool inContext(ModelContext context) {
  return modelState.context == context;
}

// The object being read; null in the first pass, and before the first one of its kind.
inline Mesh* currentMesh() {
  return filling() && modelState.meshIndex >= 0 ? modelState.scene->meshes[modelState.meshIndex] : nullptr;
}

inline Light* currentLight() {
  return filling() && modelState.lightIndex >= 0 ? modelState.scene->lights[modelState.lightIndex] : nullptr;
}

inline Viewer* currentViewer() {
  return filling() && modelState.cameraIndex >= 0 ? modelState.scene->viewers[modelState.cameraIndex]
                                                  : nullptr;
}

// Null before the first one.
inline ModelMaterial* currentMaterial() {
  return modelState.materialIndex < 0
             ? nullptr
             : &modelState.materials[static_cast<std::size_t>(modelState.materialIndex)];
}

inline MeshCounts* currentCounts() {
  return modelState.meshIndex < 0 ? nullptr
                                  : &modelState.meshCounts[static_cast<std::size_t>(modelState.meshIndex)];
}

}  // namespace vex
