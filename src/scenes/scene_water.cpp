#include "scenes/scene_water.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/clock.h"
#include "base/random.h"
#include "engine/fluid.h"
#include "scenes/creature_twists.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr int fallingSystems = 4;
constexpr int raySystem = 4;
constexpr float mostRain = 1000;  // ten thousand drops a frame

constexpr const char* lightFlare = "data\\flare_highpass";
constexpr const char* rayFlare = "data\\flare_particle";
constexpr std::array motions{SceneMotion{MotionOf::meshes, 15, true},
                             SceneMotion{MotionOf::cameras, 15, true},
                             SceneMotion{MotionOf::lights, 10, true}};

void setUpWater(SceneWater& scene) {
  Mesh& water = findMesh(scene, "Water");
  water.blendMode = BlendMode::additive;
  water.envMap = false;
  water.lit = false;
  findMesh(scene, "WaterAlien").lit = false;
  Mesh& plane = findMesh(scene, "LightPlane");
  plane.blendMode = BlendMode::additive;
  plane.opacity = 0.5f;
}

void setUpLights(SceneWater& scene) {
  for (Light* light : scene.lights) {
    light->flareSize = 30;
    light->flareStrength = 1;
    setFlareTexture(*light, lightFlare);
    light->intensity = 1;
  }
}

void setUpMeshes(SceneWater& scene) {
  constexpr int cells = 50;
  for (Mesh* mesh : scene.meshes) {
    mesh->ambient = {0, 0, 0, mesh->ambient.a};
    if (isNamed(*mesh, "Water")) convertToFluid(*mesh, cells, cells);
  }
}

void setUpFalling(SceneWater& scene) {
  Light& black = findLight(scene, "BlackParticle");
  black.intensity = 0;
  black.active = false;
  black.flareStrength = -1;
  Light& white = findLight(scene, "WhiteParticle");
  white.intensity = 0;
  white.active = false;

  constexpr std::array parents{"Dummy01", "Dummy02", "Dummy03", "Dummy04"};
  for (int i = 0; i < fallingSystems; ++i) {
    ParticleSystem& falling = systemAt(scene, i);
    falling.addShape(&black);
    falling.addShape(&white);
    falling.rate = 40;
    falling.maxCount = 200;
    falling.velocitySpread = 10;
    falling.positionSpread = 250;
    falling.velocity.set(0, -150, 0);
    falling.life = 5;
    falling.gravity.set(0, -20, 0);
    falling.maxAlpha = 2;
    falling.parent = scene.find(parents[static_cast<std::size_t>(i)]);
  }
}

void setUpRay(SceneWater& scene) {
  ParticleSystem& particles = systemAt(scene, raySystem);
  particles.addShape(scene.find("RayParticle"));
  particles.rate = 0;
  particles.maxCount = 0;
  particles.velocitySpread = 0;
  particles.positionSpread = 25;
  particles.velocity.set(0, -200, 0);
  particles.life = 3;
  particles.gravity.set(0, 0, 0);
  particles.maxAlpha = 2.5f;
  particles.parent = scene.find("RayBlue");
  particles.offset.set(0, 350, 0);

  Mesh& ray = findMesh(scene, "RayBlue");
  ray.blendMode = BlendMode::additive;
  ray.opacity = 0;
  ray.lit = false;
  ray.twoSided = true;
  for (ColourAlpha* colour : {&ray.ambient, &ray.diffuse, &ray.specular}) *colour = {1, 1, 1, colour->a};
  ray.scale({0.6f, 0.95f, 0.6f});

  Light& particle = findLight(scene, "RayParticle");
  particle.flareStrength = 1;
  particle.intensity = 0;
  particle.active = false;
  particle.flareSize = 15;
  setFlareTexture(particle, rayFlare);
  Light& light = findLight(scene, "RayLight");
  light.intensity = 0;
  light.flareSize = 0;
}

void setUp(SceneWater& scene) {
  playMotions(scene, motions);
  setUpWater(scene);
  for (Viewer* viewer : scene.viewers) viewer->farPlane = 3000;
  setUpLights(scene);
  setUpMeshes(scene);
  createParticleSystems(scene, fallingSystems + 1);
  setUpFalling(scene);
  setUpRay(scene);
}

// --- Each frame

float randomFraction() {
  return static_cast<float>(randomNext() % 100) / 100;
}

void followCreature(Scene& scene, Object3D& creature, float t) {
  Viewer& viewer = viewerAt(scene, 0);
  viewer.targetTrack.reset();
  viewer.target = creature.worldPositionAt(t);
}

// z is drawn before x.
void dropAtRandom(Mesh& water, float scale, float offset, float strength) {
  const float z = randomFraction() * scale + offset;
  const float x = randomFraction() * scale + offset;
  push(water, x, z, strength);
}

void dropNowAndThen(Mesh& water) {
  if (randomNext() % 100 > 85) dropAtRandom(water, 1, 0, 0.05f);
}

// Where the creature cuts through the surface.
void rippleRound(Mesh& water, const Vector& creature, float radius) {
  constexpr float reach = 100;
  if (!(creature.y + radius > reach && creature.y - radius < -reach)) return;
  constexpr struct {
    float x, z, strength;
  } pushes[] = {
      {0.5f, 0.5f, 0.24f},  {0.46f, 0.5f, 0.13f},  {0.54f, 0.5f, 0.187f},
      {0.5f, 0.46f, 0.16f}, {0.5f, 0.54f, 0.173f},
  };
  for (const auto& [x, z, strength] : pushes) {
    push(water, creature.x / 200 + x, creature.z / 200 + z, strength);
  }
}

// Into the middle half of the surface.
void rain(const SceneWater& scene, Mesh& water) {
  for (float k = 0; k < scene.rainAmount; k += 0.1f) {
    dropAtRandom(water, 0.5f, 0.25f, scene.dropStrength);
  }
}

void animate(SceneWater& scene, float t, Arguments arguments) {
  Mesh& creature = findMesh(scene, "WaterAlien");
  Mesh& water = findMesh(scene, "Water");
  followCreature(scene, creature, t);
  chooseViewer(scene, arguments.number(0));
  for (const Twist& twist : creatureTwists(t)) creature.twist(twist.axis, twist.direction, twist.amount);
  const Vector place = creature.worldPositionAt(t);
  dropNowAndThen(water);
  rippleRound(water, place, creature.radius);
  rain(scene, water);
  findMesh(scene, "LightPlane").wobbleTexture(4, 0.2f, t);
  Mesh& ray = findMesh(scene, "RayBlue");
  for (std::size_t k = 1; k < ray.uvs.size(); k += 2) ray.uvs[k] += clockDelta();
  findLight(scene, "RayLight").intensity = randomFraction() * scene.rayFlicker;
  scene.render(t);
}

void setRay(SceneWater& scene, float, Arguments arguments) {
  findMesh(scene, "RayBlue").opacity = arguments.number(0);
  ParticleSystem& particles = systemAt(scene, raySystem);
  particles.maxCount = arguments.whole(1);
  particles.rate = arguments.number(1) / particles.life;
  scene.rainAmount = std::min(arguments.number(2), mostRain);
  scene.dropStrength = arguments.number(3);
  scene.rayFlicker = arguments.number(4);
  findLight(scene, "Omni01").intensity = 1 - std::min(scene.rayFlicker, 1.0f);
}

using enum ArgumentKind;

constexpr std::array rayParameters{FunctionParameter{"rayOpacity", number, 0, 1},
                                   FunctionParameter{"rayParticles", number, 0, 300, maxParticles},
                                   FunctionParameter{"rain", number, 0, 3, mostRain},
                                   FunctionParameter{"dropStrength", number, 0, 0.05f},
                                   FunctionParameter{"rayFlicker", number, 0, 2}};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene; the first camera looks at the creature.",
                cameraParameters},
    loopStateRow,
    FunctionRow{"setRay", sceneFunction<setRay>,
                "Sets the ray, its particles and its light, which dims the scene's own, and the rain: ten "
                "drops a frame for each unit.",
                rayParameters, FunctionRole::sets},
};

constexpr std::array neededObjects{
    neededMesh("Water"),          neededMesh("WaterAlien"),     neededMesh("LightPlane"),
    neededMesh("RayBlue"),        neededLight("Omni01"),        neededLight("RayLight"),
    neededLight("BlackParticle"), neededLight("WhiteParticle"), neededLight("RayParticle"),
    NeededObject{"Dummy01"},      NeededObject{"Dummy02"},      NeededObject{"Dummy03"},
    NeededObject{"Dummy04"}};

constexpr std::array neededTextures{NeededTexture{lightFlare, "animate"}, NeededTexture{rayFlare, "animate"}};

}  // namespace

constinit const ModelScene<SceneWater> sceneWater{
    .name = "SceneWater",
    .summary =
        "A creature that twists above rippling water in the rain, and a ray that streams particles. "
        "Needs a ground.",
    .model = "data\\water_alien",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
