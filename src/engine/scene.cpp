#include "engine/scene.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

#include "base/report.h"
#include "textures/texture_cache.h"

namespace vex {

Scene::Scene() {
  activeLights.fill(-1);
  boxTextures.fill(-1);
}

Scene::~Scene() {
  logPrintf("destroying scene %s\n", name);
  meshes.clear();
  lights.clear();
  viewers.clear();
  fogs.clear();
}

void Scene::registerFunction(SceneFunction* function, const char* functionName) {
  if (functionCount >= maxSceneFunctions) {
    fatalError("fCount exceeds %d in scene %s", maxSceneFunctions, name);
  }
  if (std::strlen(functionName) >= sceneNameSize) {
    fatalError("function name %s in scene %s is longer than %d characters", functionName, name,
               sceneNameSize - 1);
  }
  std::snprintf(functionNames[functionCount], sceneNameSize, "%s", functionName);
  functions[functionCount++] = function;
}

SceneFunction* Scene::findFunction(const char* functionName) const {
  for (int i = 0; i < functionCount; ++i) {
    if (std::strcmp(functionNames[i], functionName) == 0) return functions[i];
  }
  return nullptr;
}

// strcasecmp folds A to Z only: the program never leaves the "C" locale.
Object3D* Scene::find(const char* objectName) const {
  const auto among = [&](const auto& objects) -> Object3D* {
    for (Object3D* object : objects) {
      if (strcasecmp(object->name, objectName) == 0) return object;
    }
    return nullptr;
  };
  if (Object3D* mesh = among(meshes)) return mesh;
  if (Object3D* light = among(lights)) return light;
  if (Object3D* fog = among(fogs)) return fog;
  fatalError("%s not found in %s", objectName, name);
}

void Scene::collectActiveLights() {
  activeLights.fill(-1);
  int count = 0;
  int index = 0;
  for (const Light* light : lights) {
    if (light->kind == ObjectKind::light && light->active) {
      if (count < maxActiveLights) activeLights[static_cast<std::size_t>(count)] = index;
      ++count;
    }
    ++index;
  }
  if (count > maxActiveLights) fatalError("Scene %s: %d active lights (8 allowed)!", name, count);
}

SceneCounts Scene::getCounts() const {
  SceneCounts counts;
  for (const Mesh* mesh : meshes) {
    ++counts.meshes;
    counts.vertices += static_cast<long>(mesh->vertices.size());
    counts.faces += static_cast<long>(mesh->faces.size());
  }
  counts.lights = lights.count();
  return counts;
}

Viewer* Scene::getViewer() const {
  if (!viewers) fatalError("Scene %s: no viewers defined!", name);
  if (viewerIndex < 0 || viewerIndex >= viewers.count()) {
    fatalError("Scene %s: viewer[%d] not defined!", name, viewerIndex);
  }
  return viewers[viewerIndex];
}

void Scene::setBox(const char* top, const char* bottom, const char* north, const char* west,
                   const char* south, const char* east) {
  std::size_t face = 0;
  for (const char* texture : {top, bottom, north, west, south, east}) {
    boxTextures[face++] = *texture ? getTextureWithoutMask(texture, false) : -1;
  }
}

}  // namespace vex
