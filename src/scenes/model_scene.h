#pragma once

#include <memory>

#include "models/model_loader.h"
#include "scenes/scene_conventions.h"
#include "scenes/scene_entry.h"

// How start-up constructs the scenes that are built around a model.

namespace vex {

template <typename Concrete>
struct ModelScene {
  const char* name;     // as SceneEntry
  const char* summary;  // likewise
  const char* model;    // path without extension
  std::span<const FunctionRow> functions;
  ModelNeeds needs;
  void (*setUp)(Concrete& scene);  // gives the objects of the model what the model does not say
};

// Lists the active lights and logs what the scene holds.
void endScene(Scene& scene);

template <typename Concrete>
Concrete* constructModelScene(const ModelScene<Concrete>& description) {
  std::unique_ptr<Concrete> scene(newScene<Concrete>());
  beginScene(*scene, description.name, description.functions);
  loadModel(description.model, scene.get());
  description.setUp(*scene);
  endScene(*scene);
  return scene.release();
}

template <const auto& description>
constexpr SceneEntry modelEntry() {
  return {.name = description.name,
          .summary = description.summary,
          .functions = description.functions,
          .construct = []() -> Scene* { return constructModelScene(description); },
          .model = description.model,
          .needs = description.needs};
}

}  // namespace vex
