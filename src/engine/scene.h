#pragma once

#include <array>
#include <memory>

#include "engine/fog.h"
#include "engine/light.h"
#include "engine/mesh.h"
#include "engine/owned_array.h"
#include "engine/viewer.h"

// A named 3D world and the table of named functions through which the time line drives it.
// Concrete scenes embed it at their start (struct SceneHell : Scene) and append their own fields.

namespace vex {

struct ParticleSystem;
struct Scene;

// What a part calls: the scene, the scene's own time in seconds, and 9 argument slots. Slot i holds the
// address of the call's i-th parameter, a float or a zero-terminated text; slots without a parameter
// are null. A number changes with the next call, a text stands as long as its project. See
// timeline/scene_function.h for reading them.
using SceneFunction = void(Scene* scene, float sceneTime, const void* const* arguments);

inline constexpr int maxSceneFunctions = 40;
inline constexpr int sceneNameSize = 32;  // at most 31 characters and the terminator
inline constexpr int maxActiveLights = 8;

// Faces of the box that surrounds a scene.
enum class BoxFace { top, bottom, north, west, south, east };
inline constexpr int boxFaces = 6;

struct SceneCounts {
  long meshes = 0;
  long lights = 0;  // active or not
  long vertices = 0;
  long faces = 0;
};

template <typename Concrete>
void deleteScene(Scene* scene);

// What a concrete scene has of its own beside the world: the values of its base `Concrete::Own`.
struct OwnValues {
  virtual ~OwnValues() = default;
  virtual void giveTo(Scene& scene) const = 0;
};

struct Scene {
  char name[sceneNameSize] = "";

  OwnedArray<Mesh> meshes;  // fluids, too
  OwnedArray<Light, destroyLight> lights;
  OwnedArray<Viewer> viewers;
  OwnedArray<Fog> fogs;
  ParticleSystem** particleSystems = nullptr;  // ends in null; the concrete scene owns it

  // Indices of lights, ends in -1; without lights switched on its first entry is -1.
  std::array<int, maxActiveLights + 1> activeLights;
  int viewerIndex = 0;
  std::array<int, boxFaces> boxTextures;  // by BoxFace; -1: the face is not drawn

  char functionNames[maxSceneFunctions][sceneNameSize] = {};
  SceneFunction* functions[maxSceneFunctions] = {};
  int functionCount = 0;

  // Deletes the scene as what it is, since the holders know it as a Scene only. newScene sets it.
  void (*destroy)(Scene*) = deleteScene<Scene>;
  // Likewise; null where it has nothing of its own.
  std::unique_ptr<OwnValues> (*copyOwn)(const Scene&) = nullptr;

  Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  // Logs "destroying scene %s\n", then destroys meshes, lights, viewers and fogs, in this order.
  ~Scene();

  // Fatal: "fCount exceeds %d in scene %s"; a name of more than 31 characters.
  void registerFunction(SceneFunction* function, const char* functionName);

  // The first function of exactly that name, or null.
  SceneFunction* findFunction(const char* functionName) const;

  // The first object of that name, ASCII letter case ignored, among meshes, lights and fogs in this order.
  // Fatal: "%s not found in %s".
  Object3D* find(const char* objectName) const;

  // Lists the lights that are switched on, once they are what they should be.
  // Fatal: "Scene %s: %d active lights (8 allowed)!".
  void collectActiveLights();
  bool hasActiveLights() const { return activeLights[0] >= 0; }

  SceneCounts getCounts() const;

  // Fatal: "Scene %s: no viewers defined!", "Scene %s: viewer[%d] not defined!".
  Viewer* getViewer() const;

  // Texture names of the surrounding box, which takes no masks; empty ones leave their face open.
  void setBox(const char* top, const char* bottom, const char* north, const char* west, const char* south,
              const char* east);

  // Makes the drawing arrays of all meshes and, with the cache, their strips (strips.h).
  void prepare(bool useStripCache);

  // Draws the scene at a scene time in seconds through the current viewer (renderer.cpp). Clears the depth
  // buffer only. Leaves identity matrices with the projection current, ordinary blending, depth writes on
  // and the alpha test off.
  void render(float seconds);
};

template <typename Concrete>
void deleteScene(Scene* scene) {
  delete static_cast<Concrete*>(scene);
}

template <typename Concrete>
struct OwnValuesOf final : OwnValues {
  typename Concrete::Own values;

  explicit OwnValuesOf(const Concrete& scene) : values(scene) {}
  void giveTo(Scene& scene) const override {
    static_cast<typename Concrete::Own&>(static_cast<Concrete&>(scene)) = values;
  }
};

// A scene of the concrete type, ready for the dispatcher to own. Every scene on the heap is made here.
template <typename Concrete>
Concrete* newScene() {
  auto* scene = new Concrete;
  scene->destroy = deleteScene<Concrete>;
  if constexpr (requires { typename Concrete::Own; }) {
    scene->copyOwn = [](const Scene& of) -> std::unique_ptr<OwnValues> {
      return std::make_unique<OwnValuesOf<Concrete>>(static_cast<const Concrete&>(of));
    };
  }
  return scene;
}

}  // namespace vex
