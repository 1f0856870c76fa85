#include "models/model_loader.h"

#include <string>

#include "base/fatal_place.h"
#include "base/report.h"
#include "models/model_reader.h"
#include "models/model_source.h"
#include "models/model_state.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

namespace vex {

namespace {

void walk(int pass) {
  modelState.pass = pass;
  modelState.meshIndex = modelState.lightIndex = modelState.cameraIndex = modelState.materialIndex = -1;
  modelState.context = ModelContext::none;
  modelState.inAnimation = false;
  modelState.maxFrame = 0;
  modelState.cameraName[0] = modelState.targetName[0] = '\0';
  modelState.geometricVertices = 0;
  modelState.claimed = 0;
  modelState.scratchTrack.type = TrackType::none;
  rewindModel();
  {
    const FatalPlace place(modelPlace);
    while (!modelEnded()) processItem();
  }
  if (readingText()) writeLine(Command::endOfStream);
}

template <typename Array, typename Object>
void createObjects(Array& array, int count) {
  array.allocate(count);
  for (int i = 0; i < count; ++i) array[i] = new Object;
}

void createScene(Scene& scene) {
  createObjects<decltype(scene.meshes), Mesh>(scene.meshes, modelState.meshIndex + 1);
  createObjects<decltype(scene.lights), Light>(scene.lights, modelState.lightIndex + 1);
  createObjects<decltype(scene.viewers), Viewer>(scene.viewers, modelState.cameraIndex + 1);
  for (int i = 0; i <= modelState.meshIndex; ++i) {
    const MeshCounts& counts = modelState.meshCounts[static_cast<std::size_t>(i)];
    scene.meshes[i]->faces.resize(static_cast<std::size_t>(counts.faces));
    scene.meshes[i]->vertices.resize(static_cast<std::size_t>(counts.vertices));
  }
}

// Faces that no line gave, and meshes that announce fewer texture vertices than their faces use.
void checkFaces(const Scene& scene) {
  for (const Mesh* mesh : scene.meshes) {
    for (std::size_t i = 0; i < mesh->faces.size(); ++i) {
      for (const std::uint32_t vertex : mesh->faces[i].v) {
        if (vertex < mesh->vertices.size()) continue;
        fatalError("%s: face %zu of mesh %s uses vertex %u, there are %zu", modelReader.fileName.c_str(), i,
                   mesh->name, vertex, mesh->vertices.size());
      }
    }
  }
}

void traceSummary([[maybe_unused]] const Scene& scene) {
  if constexpr (traceModels) {
    trace("%d meshes found\n%d lights found\n%d materials found\n%d cameras found\n",
          modelState.meshIndex + 1, modelState.lightIndex + 1, modelState.materialIndex + 1,
          modelState.cameraIndex + 1);
    for (int i = 0; i <= modelState.meshIndex; ++i) {
      trace("mesh %d: %zu faces %zu verts\n", i, scene.meshes[i]->faces.size(),
            scene.meshes[i]->vertices.size());
    }
    for (int i = 0; i <= modelState.materialIndex; ++i) {
      const ModelMaterial& material = modelState.materials[static_cast<std::size_t>(i)];
      trace("material %d: R%.2f G%.2f B%.2f opacity %.2f shininess %.2f texture %d\n", i, material.diffuse[0],
            material.diffuse[1], material.diffuse[2], material.opacity, material.shininess, material.texture);
    }
  }
}

}  // namespace

void readModel(ModelSource source, Scene* scene) {
  beginTrace();
  prepareSource(source);
  modelState.scene = scene;
  modelState.framesPerSecond = 30;
  modelState.ticksPerFrame = 160;
  modelState.meshCounts.fill({});
  modelState.scratchTrack.frameLength = 0.0f;
  walk(1);
  if (readingText() && !modelReader.keywordFound) {
    fatalError("%s isn't a model: no line begins with a keyword", modelReader.fileName.c_str());
  }
  modelState.materialCount = modelState.materialIndex + 1;
  endRecording();
  createScene(*scene);
  walk(2);
  checkFaces(*scene);
  saveStream(source);
  traceSummary(*scene);
  modelState.vertices = {};
  modelState.faces = {};
  releaseSource();
}

void loadModel(const char* base, Scene* scene) {
  readModel(chooseSource(base), scene);
}

void forgetMaterials() {
  modelState.materials.fill({});
}

}  // namespace vex
