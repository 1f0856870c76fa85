#include "models/model_loader.h"

#include <string>
#include <utility>

#include "base/current.h"
#include "base/fatal_place.h"
#include "base/report.h"
#include "models/model_load.h"
#include "models/model_source.h"

namespace vex {

namespace {

void walk(ModelLoad& load, int pass) {
  load.pass = pass;
  load.meshIndex = load.lightIndex = load.cameraIndex = load.materialIndex = -1;
  load.context = ModelContext::none;
  load.inAnimation = false;
  load.maxFrame = 0;
  load.cameraName[0] = load.targetName[0] = '\0';
  load.geometricVertices = 0;
  load.claimed = 0;
  rewindModel(load);
  {
    const FatalPlace place([&load] { return modelPlace(load); });
    while (!modelEnded(load)) processItem(load);
  }
  load.scratchTrack.type = TrackType::none;
  if (readingText(load)) writeLine(load, Command::endOfStream);
}

template <typename Array, typename Object>
void createObjects(Array& array, int count) {
  array.allocate(count);
  for (int i = 0; i < count; ++i) array[i] = new Object;
}

void createScene(const ModelLoad& load) {
  Scene& scene = *load.scene;
  createObjects<decltype(scene.meshes), Mesh>(scene.meshes, load.meshIndex + 1);
  createObjects<decltype(scene.lights), Light>(scene.lights, load.lightIndex + 1);
  createObjects<decltype(scene.viewers), Viewer>(scene.viewers, load.cameraIndex + 1);
  for (int i = 0; i <= load.meshIndex; ++i) {
    const MeshCounts& counts = load.meshCounts[static_cast<std::size_t>(i)];
    scene.meshes[i]->faces.resize(static_cast<std::size_t>(counts.faces));
    scene.meshes[i]->vertices.resize(static_cast<std::size_t>(counts.vertices));
  }
}

// Faces that no line gave, and meshes that announce fewer texture vertices than their faces use.
void checkFaces(const ModelLoad& load) {
  for (const Mesh* mesh : load.scene->meshes) {
    for (std::size_t i = 0; i < mesh->faces.size(); ++i) {
      for (const std::uint32_t vertex : mesh->faces[i].v) {
        if (vertex < mesh->vertices.size()) continue;
        fatalError("%s: face %zu of mesh %s uses vertex %u, there are %zu", load.source.fileName.c_str(), i,
                   mesh->name, vertex, mesh->vertices.size());
      }
    }
  }
}

void traceSummary([[maybe_unused]] ModelLoad& load) {
  if constexpr (traceModels) {
    trace(load, "%d meshes found\n%d lights found\n%d materials found\n%d cameras found\n",
          load.meshIndex + 1, load.lightIndex + 1, load.materialIndex + 1, load.cameraIndex + 1);
    for (int i = 0; i <= load.meshIndex; ++i) {
      trace(load, "mesh %d: %zu faces %zu verts\n", i, load.scene->meshes[i]->faces.size(),
            load.scene->meshes[i]->vertices.size());
    }
    for (int i = 0; i <= load.materialIndex; ++i) {
      const ModelMaterial& material = load.materials[static_cast<std::size_t>(i)];
      trace(load, "material %d: R%.2f G%.2f B%.2f opacity %.2f shininess %.2f texture %d\n", i,
            material.diffuse[0], material.diffuse[1], material.diffuse[2], material.opacity,
            material.shininess, material.texture);
    }
  }
}

}  // namespace

std::string readModel(ModelSource source, Scene* scene, TextureResolver texture) {
  ModelLoad load;
  load.source = std::move(source);
  load.scene = scene;
  load.texture = std::move(texture);
  load.materials = current<ModelMaterials>();
  prepareSource(load);
  walk(load, 1);
  if (readingText(load) && !load.reader.keywordFound) {
    fatalError("%s isn't a model: no line begins with a keyword", load.source.fileName.c_str());
  }
  load.materialCount = load.materialIndex + 1;
  endRecording(load);
  createScene(load);
  walk(load, 2);
  checkFaces(load);
  saveStream(load);
  traceSummary(load);
  current<ModelMaterials>() = load.materials;
  return load.stream.obstacle;
}

std::string loadModel(const char* base, Scene* scene, TextureResolver texture) {
  return readModel(chooseSource(base), scene, std::move(texture));
}

}  // namespace vex
