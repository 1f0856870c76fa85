#include "engine/scene.h"

#include <cstdio>
#include <cstring>

#include "shell/report.h"

namespace vex {

Scene::~Scene() {
  logPrintf("destroying scene %s\n", name);
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

}  // namespace vex
