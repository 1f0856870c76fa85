#include "scenes/model_scene.h"

#include "base/report.h"

namespace vex {

void endScene(Scene& scene) {
  constexpr int wordLength = 5;  // of "Scene"
  scene.collectActiveLights();
  const SceneCounts counts = scene.getCounts();
  logPrintf("Scene %s: %ld meshes %ld lights %ld verts %ld faces\n", scene.name + wordLength, counts.meshes,
            counts.lights, counts.vertices, counts.faces);
}

}  // namespace vex
