#include "scenes/scene_alien.h"

#include <array>

#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* chrome = "data\\chrome";
constexpr SkyTextures sky{"data\\monstertop", "data\\monsterbot", "data\\monsternor",
                          "data\\monsterwes", "data\\monstersou", "data\\monstereas"};
constexpr std::array motions{SceneMotion{MotionOf::cameras, 20, false},
                             SceneMotion{MotionOf::lights, 20, false},
                             SceneMotion{MotionOf::meshes, 10, true}};

void setUp(SceneAlien& scene) {
  playMotions(scene, motions);
  for (Light* light : scene.lights) {
    light->intensity = 1.5f;
    light->flareSize = 0;
  }
  for (Mesh* mesh : scene.meshes) {
    mesh->shineStrength = 1;
    raiseAmbient(*mesh, 0.1f);
    mesh->specular = {0.4f, 0.4f, 0.4f, mesh->specular.a};
  }
  for (const char* sphere : {"sphere01", "sphere02"}) {
    findMesh(scene, sphere).texture = getTexture(chrome, true);
  }
  setSky(scene, sky);
}

void animate(Scene& scene, float t, Arguments arguments) {
  chooseViewer(scene, arguments.number(0));
  scene.render(t);
}

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene.", cameraParameters, FunctionRole::draws,
                closedGround},
};

constexpr std::array neededTextures{NeededTexture{chrome}};
constexpr std::array neededObjects{neededMesh("sphere01"), neededMesh("sphere02")};

}  // namespace

constinit const ModelScene<SceneAlien> sceneAlien{
    .name = "SceneAlien",
    .summary = "A creature and two chrome spheres within a painted box.",
    .model = "data\\monster",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .sky = sky, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
