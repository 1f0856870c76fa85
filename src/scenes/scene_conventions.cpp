#include "scenes/scene_conventions.h"

#include <strings.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "base/report.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

template <typename Array>
auto& objectAt(Scene& scene, const Array& objects, int index, const char* kind) {
  if (index < 0 || index >= objects.count()) {
    fatalError("Scene %s: %s[%d] not defined!", scene.name, kind, index);
  }
  return *objects[index];
}

}  // namespace

void beginScene(Scene& scene, const char* name, std::span<const FunctionRow> functions) {
  std::snprintf(scene.name, sizeof scene.name, "%s", name);
  registerFunctions(scene, functions);
  loadingProgress("Loading %s", scene.name);
}

void createParticleSystems(EmittingScene& scene, int count) {
  scene.ownedSystems = makeParticleSystems(count);
  scene.particleSystems = &scene.ownedSystems[0];
}

Mesh& findMesh(Scene& scene, const char* name) {
  Object3D* object = scene.find(name);
  if (object->kind != ObjectKind::mesh && object->kind != ObjectKind::fluid) {
    fatalError("%s in %s is no mesh", name, scene.name);
  }
  return *static_cast<Mesh*>(object);
}

Light& findLight(Scene& scene, const char* name) {
  Object3D* object = scene.find(name);
  if (object->kind != ObjectKind::light && object->kind != ObjectKind::volLight) {
    fatalError("%s in %s is no light", name, scene.name);
  }
  return *static_cast<Light*>(object);
}

Mesh& meshAt(Scene& scene, int index) {
  return objectAt(scene, scene.meshes, index, "mesh");
}

Light& lightAt(Scene& scene, int index) {
  return objectAt(scene, scene.lights, index, "light");
}

Viewer& viewerAt(Scene& scene, int index) {
  return objectAt(scene, scene.viewers, index, "viewer");
}

ParticleSystem& systemAt(Scene& scene, int index) {
  for (int i = 0; scene.particleSystems && scene.particleSystems[i]; ++i) {
    if (i == index) return *scene.particleSystems[i];
  }
  fatalError("Scene %s: particle system[%d] not defined!", scene.name, index);
}

// strcasecmp folds A to Z only: the program never leaves the "C" locale.
bool isNamed(const Object3D& object, const char* name) {
  return strcasecmp(object.name, name) == 0;
}

bool nameBeginsWith(const Object3D& object, const char* prefix) {
  return strncasecmp(object.name, prefix, std::strlen(prefix)) == 0;
}

void setAnimParams(const OwnedArray<Mesh>& meshes, float duration, bool loop) {
  for (Mesh* mesh : meshes) mesh->setAnimParams(duration, loop);
}

void setAnimParams(const OwnedArray<Viewer>& viewers, float duration, bool loop) {
  for (Viewer* viewer : viewers) viewer->setAnimParams(duration, loop);
}

void setFlareTexture(Light& light, const char* texture) {
  std::snprintf(light.flareTexture, sizeof light.flareTexture, "%s", texture);
}

void raiseAmbient(Mesh& mesh, float by) {
  mesh.ambient.r += by;
  mesh.ambient.g += by;
  mesh.ambient.b += by;
}

void setShown(Mesh& mesh, bool shown) {
  mesh.flags = shown ? 0 : hiddenFlag;
}

void setSky(Scene& scene, const SkyTextures& sky) {
  const auto& [top, bottom, north, west, south, east] = sky;
  scene.setBox(top, bottom, north, west, south, east);
}

void addShapes(Scene& scene, ParticleSystem& system, std::span<const char* const> names) {
  for (const char* name : names) system.addShape(scene.find(name));
}

void setParticleCount(ParticleSystem& system, float count) {
  system.maxCount = truncateNumber(count);
  system.rate = static_cast<float>(system.maxCount) / system.life;
}

void chooseViewer(Scene& scene, float index) {
  scene.viewerIndex = truncateNumber(index);
}

void fadeLayer(Scene& scene, float alpha) {
  viewerAt(scene, 0).alpha = alpha;
}

void setLayerBlend(Scene& scene, float mode) {
  for (Mesh* mesh : scene.meshes) {
    if (mode >= 2) {
      mesh->blendMode = BlendMode::subtractive;
    } else {
      mesh->blendMode = mode >= 1 ? BlendMode::additive : BlendMode::opaque;
    }
  }
}

Vector orbitingCamera(float seconds) {
  return {400 * std::cos(0.66f * seconds), 100 * std::sin(0.45f * seconds), 400 * std::sin(0.66f * seconds)};
}

void setAnimationState(Scene& scene, float, Arguments arguments) {
  Object3D& object = *scene.find(arguments.text(0));
  if (!object.tracks) return;
  float duration = 0;
  for (const auto& track : *object.tracks) {
    if (track) duration = track->duration;
  }
  object.setFixedTime(arguments.number(1) * duration);
}

void setFirstParticleCount(Scene& scene, float, Arguments arguments) {
  setParticleCount(systemAt(scene, 0), arguments.number(0));
}

}  // namespace vex
