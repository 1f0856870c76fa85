#include "assets/model_loader.h"

#include <string>

#include "assets/model_reader.h"
#include "assets/model_source.h"
#include "assets/model_state.h"
#include "assets/model_stream.h"
#include "assets/model_trace.h"
#include "shell/report.h"

namespace vex {

Mesh* currentMesh() {
  return filling() && model.meshIndex >= 0 ? model.scene->meshes[model.meshIndex] : nullptr;
}

Light* currentLight() {
  return filling() && model.lightIndex >= 0 ? model.scene->lights[model.lightIndex] : nullptr;
}

Viewer* currentViewer() {
  return filling() && model.cameraIndex >= 0 ? model.scene->viewers[model.cameraIndex] : nullptr;
}

ModelMaterial* currentMaterial() {
  return model.materialIndex < 0 ? nullptr : &model.materials[static_cast<std::size_t>(model.materialIndex)];
}

MeshCounts* currentCounts() {
  return model.meshIndex < 0 ? nullptr : &model.meshCounts[static_cast<std::size_t>(model.meshIndex)];
}

namespace {

void walk(int pass) {
  model.pass = pass;
  model.meshIndex = model.lightIndex = model.cameraIndex = model.materialIndex = -1;
  model.context = ModelContext::none;
  model.inAnimation = false;
  model.maxFrame = 0;
  model.cameraName[0] = model.targetName[0] = '\0';
  model.geometricVertices = 0;
  model.claimed = 0;
  model.scratchTrack.type = TrackType::none;
  rewindModel();
  while (!modelEnded()) processItem();
  if (readingText()) writeLine(endOfStream);
}

template <typename Array, typename Object>
void createObjects(Array& array, int count) {
  array.allocate(count);
  for (int i = 0; i < count; ++i) array[i] = new Object;
}

void createScene(Scene& scene) {
  createObjects<decltype(scene.meshes), Mesh>(scene.meshes, model.meshIndex + 1);
  createObjects<decltype(scene.lights), Light>(scene.lights, model.lightIndex + 1);
  createObjects<decltype(scene.viewers), Viewer>(scene.viewers, model.cameraIndex + 1);
  for (int i = 0; i <= model.meshIndex; ++i) {
    const MeshCounts& counts = model.meshCounts[static_cast<std::size_t>(i)];
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
        fatalError("%s: face %zu of mesh %s uses vertex %u, there are %zu", reader.fileName.c_str(), i,
                   mesh->name, vertex, mesh->vertices.size());
      }
    }
  }
}

void traceSummary([[maybe_unused]] const Scene& scene) {
  if constexpr (traceModels) {
    trace("%d meshes found\n%d lights found\n%d materials found\n%d cameras found\n", model.meshIndex + 1,
          model.lightIndex + 1, model.materialIndex + 1, model.cameraIndex + 1);
    for (int i = 0; i <= model.meshIndex; ++i) {
      trace("mesh %d: %zu faces %zu verts\n", i, scene.meshes[i]->faces.size(),
            scene.meshes[i]->vertices.size());
    }
    for (int i = 0; i <= model.materialIndex; ++i) {
      const ModelMaterial& material = model.materials[static_cast<std::size_t>(i)];
      trace("material %d: R%.2f G%.2f B%.2f opacity %.2f shininess %.2f texture %d\n", i, material.diffuse[0],
            material.diffuse[1], material.diffuse[2], material.opacity, material.shininess, material.texture);
    }
  }
}

}  // namespace

void readModel(const ModelSource& source, Scene* scene) {
  beginTrace();
  prepareSource(source);
  model.scene = scene;
  model.framesPerSecond = 30;
  model.ticksPerFrame = 160;
  model.meshCounts.fill({});
  walk(1);
  if (readingText() && !reader.keywordFound) {
    fatalError("%s isn't a model: no line begins with a keyword", reader.fileName.c_str());
  }
  model.materialCount = model.materialIndex + 1;
  saveStream(source);
  createScene(*scene);
  walk(2);
  checkFaces(*scene);
  traceSummary(*scene);
  model.vertices = {};
  model.faces = {};
  releaseSource();
}

void loadModel(const char* base, Scene* scene) {
  readModel(chooseSource(base), scene);
}

}  // namespace vex
