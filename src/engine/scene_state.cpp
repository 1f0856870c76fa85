#include "engine/scene_state.h"

#include <array>
#include <tuple>
#include <vector>

#include "base/report.h"
#include "engine/particle_system.h"
#include "engine/vol_light.h"

namespace vex {

namespace {

// The values of an object of type Object, which are those of its bases.
template <typename Object, typename... Bases>
class ValuesOf : private std::tuple<Bases...> {
 public:
  explicit ValuesOf(const Object& object) : std::tuple<Bases...>(static_cast<const Bases&>(object)...) {}
  void giveTo(Object& object) const { ((static_cast<Bases&>(object) = std::get<Bases>(*this)), ...); }
};

using MeshCopy = ValuesOf<Mesh, Object3DValues, MeshValues>;
using LightCopy = ValuesOf<Light, Object3DValues, LightValues>;
using ViewerCopy = ValuesOf<Viewer, ViewerValues>;
using FogCopy = ValuesOf<Fog, Object3DValues, FogValues>;
using ParticlesCopy = ValuesOf<ParticleSystem, Object3DValues, ParticleValues>;

// An array of a scene; none for an array that is not there.
template <typename Copy>
class ArrayCopy {
 public:
  template <typename Array>
  explicit ArrayCopy(const Array& array) : present(array) {
    for (const auto* object : array) copies.emplace_back(*object);
  }

  template <typename Array>
  void giveTo(Array& array, const Scene& scene) const {
    if (!present) return array.clear();
    if (array.count() != static_cast<int>(copies.size()))
      fatalError("scene %s has other objects than it began with", scene.name);
    auto copy = copies.begin();
    for (auto* object : array) (copy++)->giveTo(*object);
  }

 private:
  bool present;
  std::vector<Copy> copies;
};

template <typename Function>
void forEachSystem(const Scene& scene, Function function) {
  for (ParticleSystem** system = scene.particleSystems; system && *system; ++system) function(**system);
}

}  // namespace

struct SceneState::Values {
  explicit Values(const Scene& scene)
      : meshes(scene.meshes),
        lights(scene.lights),
        viewers(scene.viewers),
        fogs(scene.fogs),
        activeLights(scene.activeLights),
        viewerIndex(scene.viewerIndex),
        own(scene.copyOwn ? scene.copyOwn(scene) : nullptr) {
    forEachSystem(scene, [&](ParticleSystem& system) { systems.emplace_back(system); });
    for (const Light* light : scene.lights) {
      if (light->kind == ObjectKind::volLight) beams.emplace_back(static_cast<const VolLight*>(light)->beams);
    }
  }

  ArrayCopy<MeshCopy> meshes;
  ArrayCopy<LightCopy> lights;
  ArrayCopy<ViewerCopy> viewers;
  ArrayCopy<FogCopy> fogs;
  std::vector<ParticlesCopy> systems;
  std::vector<MeshCopy> beams;  // of the volumetric lights
  std::array<int, maxActiveLights + 1> activeLights;
  int viewerIndex;
  std::unique_ptr<OwnValues> own;
};

SceneState::SceneState(const Scene& scene) : values(std::make_unique<Values>(scene)) {}

SceneState::~SceneState() = default;
SceneState::SceneState(SceneState&&) noexcept = default;
SceneState& SceneState::operator=(SceneState&&) noexcept = default;

void SceneState::restore(Scene& scene) const {
  values->meshes.giveTo(scene.meshes, scene);
  values->lights.giveTo(scene.lights, scene);
  values->viewers.giveTo(scene.viewers, scene);
  values->fogs.giveTo(scene.fogs, scene);
  scene.activeLights = values->activeLights;
  scene.viewerIndex = values->viewerIndex;
  auto system = values->systems.begin();
  forEachSystem(scene, [&](ParticleSystem& live) { (system++)->giveTo(live); });
  auto beam = values->beams.begin();
  for (Light* light : scene.lights) {
    if (light->kind == ObjectKind::volLight) (beam++)->giveTo(static_cast<VolLight*>(light)->beams);
  }
  if (values->own) values->own->giveTo(scene);
}

}  // namespace vex
