#include "scenes/scene_hell.h"

#include <array>

#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* sparkFlare = "data\\flare_shine";
constexpr SkyTextures sky{"data\\helltop",  "data\\hellbottom", "data\\hellnorth",
                          "data\\hellwest", "data\\hellsouth",  "data\\helleast"};
constexpr std::array motions{SceneMotion{MotionOf::cameras, 20, false},
                             SceneMotion{MotionOf::meshes, 20, true},
                             SceneMotion{MotionOf::meshes, 5, true, "Sphere"}};

void setUpLights(SceneHell& scene) {
  for (Light* light : scene.lights) light->flareSize = 0;
  for (const char* name : {"part03", "part04"}) {
    Light& spark = findLight(scene, name);
    spark.flareSize = 10;
    spark.flareStrength = 1;
    setFlareTexture(spark, sparkFlare);
  }
}

void setUpMeshes(SceneHell& scene) {
  for (Mesh* mesh : scene.meshes) {
    mesh->shininess = 0;
    mesh->shineStrength = 0;
  }
  findMesh(scene, "Sphere");
}

void setUpSparks(SceneHell& scene) {
  createParticleSystems(scene, 1);
  ParticleSystem& sparks = systemAt(scene, 0);
  // The two lights twice: they are picked twice as often as the meshes.
  constexpr std::array shapes{"part01", "part02", "part03", "part04", "part03", "part04"};
  addShapes(scene, sparks, shapes);
  sparks.rate = 100;
  sparks.maxCount = 200;
  sparks.velocitySpread = 20;
  sparks.velocity.set(-30, -10, -30);
  sparks.life = 2;
  sparks.gravity.set(0, -30, 0);
  sparks.parent = scene.find("Sprayer01");
  sparks.maxAlpha = 2;
}

void setUp(SceneHell& scene) {
  playMotions(scene, motions);
  setUpMeshes(scene);
  setSky(scene, sky);
  setUpLights(scene);
  setUpSparks(scene);
}

void animate(Scene& scene, float t, Arguments arguments) {
  chooseViewer(scene, arguments.number(0));
  findMesh(scene, "Lava").wobbleTexture(1.5f, 0.12f, t);
  scene.render(t);
}

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene.", cameraParameters, FunctionRole::draws,
                closedGround},
};

constexpr std::array neededObjects{neededMesh("Lava"),       neededMesh("Sphere"),   neededLight("part03"),
                                   neededLight("part04"),    NeededObject{"part01"}, NeededObject{"part02"},
                                   NeededObject{"Sprayer01"}};

constexpr std::array neededTextures{NeededTexture{sparkFlare, "animate"}};

}  // namespace

constinit const ModelScene<SceneHell> sceneHell{
    .name = "SceneHell",
    .summary = "A sea of lava and a sprayer of sparks within a painted box.",
    .model = "data\\hell",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .sky = sky, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
