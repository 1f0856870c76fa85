#pragma once

// A named 3D world and the table of named functions through which the time line drives it.
// Concrete scenes embed it at their start (struct SceneHell : Scene) and append their own fields.

namespace vex {

struct Scene;

// What a part calls: the scene, the scene's own time in seconds, and 9 argument slots. Slot i holds the
// address of the call's i-th parameter, a float or a zero-terminated text; slots without a parameter
// are null. The addresses are valid during the call only. See timeline/scene_function.h for reading them.
using SceneFunction = void(Scene* scene, float sceneTime, const void* const* arguments);

inline constexpr int maxSceneFunctions = 40;
inline constexpr int sceneNameSize = 32;  // at most 31 characters and the terminator

template <typename Concrete>
void deleteScene(Scene* scene);

struct Scene {
  char name[sceneNameSize] = "";

  char functionNames[maxSceneFunctions][sceneNameSize] = {};
  SceneFunction* functions[maxSceneFunctions] = {};
  int functionCount = 0;

  // Deletes the scene as what it is, since the holders know it as a Scene only. newScene sets it.
  void (*destroy)(Scene*) = deleteScene<Scene>;

  Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  ~Scene();  // logs "destroying scene %s\n"

  // Fatal: "fCount exceeds %d in scene %s"; a name of more than 31 characters.
  void registerFunction(SceneFunction* function, const char* functionName);

  // The first function of exactly that name, or null.
  SceneFunction* findFunction(const char* functionName) const;
};

template <typename Concrete>
void deleteScene(Scene* scene) {
  delete static_cast<Concrete*>(scene);
}

// A scene of the concrete type, ready for the dispatcher to own. Every scene on the heap is made here.
template <typename Concrete>
Concrete* newScene() {
  auto* scene = new Concrete;
  scene->destroy = deleteScene<Concrete>;
  return scene;
}

}  // namespace vex
