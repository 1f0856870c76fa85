#include "scenes/scene_alien.h"

#include <array>

#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

void setUp(SceneAlien& scene) {
  setAnimParams(scene.viewers, 20, false);
  for (Light* light : scene.lights) {
    light->intensity = 1.5f;
    light->flareSize = 0;
    light->setAnimParams(20, false);
  }
  for (Mesh* mesh : scene.meshes) {
    mesh->shineStrength = 1;
    raiseAmbient(*mesh, 0.1f);
    mesh->specular = {0.4f, 0.4f, 0.4f, mesh->specular.a};
    mesh->setAnimParams(10, true);
  }
  for (const char* sphere : {"sphere01", "sphere02"}) {
    findMesh(scene, sphere).texture = getTexture("data\\chrome", true);
  }
  scene.setBox("data\\monstertop", "data\\monsterbot", "data\\monsternor", "data\\monsterwes",
               "data\\monstersou", "data\\monstereas");
}

void animate(Scene& scene, float t, Arguments arguments) {
  chooseViewer(scene, arguments.number(0));
  scene.render(t);
}

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene.", cameraParameters, FunctionRole::draws,
                closedGround},
};

constexpr std::array neededObjects{neededMesh("sphere01"), neededMesh("sphere02")};

}  // namespace

constinit const ModelScene<SceneAlien> sceneAlien{
    .name = "SceneAlien",
    .summary = "A creature and two chrome spheres within a painted box.",
    .model = "data\\monster",
    .functions = functionTable,
    .needs = {.objects = neededObjects},
    .setUp = setUp};

}  // namespace vex
