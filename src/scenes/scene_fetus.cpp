#include "scenes/scene_fetus.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/random.h"
#include "engine/vol_light.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr int sprayer = 0;
constexpr int cigarette = 1;
constexpr int burst = 2;

constexpr const char* skinTexture = "data\\fetus_skin";
constexpr const char* beamTexture = "data\\vollight";
constexpr const char* beamLight = "VolumLight";

constexpr std::array motions{SceneMotion{MotionOf::meshes, 10, true},
                             SceneMotion{MotionOf::meshes, 20, false, "door"},
                             SceneMotion{MotionOf::meshes, 20, false, "fetus"},
                             SceneMotion{MotionOf::cameras, 20, true},
                             SceneMotion{MotionOf::lights, 5, true},
                             SceneMotion{MotionOf::lights, 3.5f, true, "AlarmLight"}};

// The light goes as the beam takes its place, which a missing texture must not part.
void makeBeam(Light*& lamp) {
  constexpr int samples = 32;
  lamp->active = false;
  lamp->intensity = 0;
  lamp->range = 1.2f * lamp->spotDirection.length();
  VolLight* beam = makeVolumetric(lamp, samples);
  lamp = beam;
  beam->setBeamTexture(beamTexture);
}

void setUpLights(SceneFetus& scene) {
  for (int i = 0; i < scene.lights.count(); ++i) {
    Light* light = scene.lights[i];
    light->flareSize = 0;
    if (isNamed(*light, beamLight)) makeBeam(scene.lights[i]);
  }
  Light& hand = findLight(scene, "HandLight");
  hand.intensity = 0;
  hand.flareSize = 0;
  hand.range = 60;

  Light& water = findLight(scene, "WaterParticle");
  water.flareSize = 5;
  setFlareTexture(water, defaultFlare);
  water.glow = false;
  water.active = false;

  Light& alarm = findLight(scene, "AlarmLight");
  alarm.flareSize = 0;
  alarm.active = true;
  alarm.intensity = 0;
}

void setUpMeshes(SceneFetus& scene) {
  Mesh& rectangle = findMesh(scene, "rectangle01");
  rectangle.lit = false;
  rectangle.blendMode = BlendMode::transparent;
  for (const char* name : {"hose01", "hose02"}) setShown(findMesh(scene, name), false);
  for (const char* name : {"fetus", "door"}) findMesh(scene, name).setFixedTime(0);
  for (const char* name : {"TableTop", "phone", "WhiteBox", "eye01", "eye02"}) {
    findMesh(scene, name).lit = false;
  }
  findMesh(scene, "WhiteBox").texture = -1;
  Mesh& bottle = findMesh(scene, "bottle");
  bottle.opacity = 1;
  bottle.blendMode = BlendMode::additive;
}

void setUpSprayer(SceneFetus& scene) {
  ParticleSystem& spray = systemAt(scene, sprayer);
  spray.addShape(scene.find("waterParticle"));
  spray.rate = 0;
  spray.maxCount = 0;
  spray.velocitySpread = 30;
  spray.positionSpread = 10;
  spray.velocity.set(0, 0, 0);
  spray.life = 1;
  spray.gravity.set(0, 0, 0);
  spray.parent = scene.find("HandSprayer");
  spray.maxAlpha = 2;
}

void setUpCigarette(SceneFetus& scene) {
  constexpr struct {
    const char* light;
    float strength, size;
    const char* texture;
  } puffs[] = {
      {"smokeParticle01", 0.05f, 14, "data\\flare_smoke1"},
      {"smokeParticle02", 0.07f, 10, "data\\flare_smoke2"},
      {"smokeParticle03", 0.06f, 12, "data\\flare_smoke3"},
      {"smokeParticle04", 0.08f, 9, "data\\flare_smoke4"},
  };
  ParticleSystem& smoke = systemAt(scene, cigarette);
  for (const auto& [name, strength, size, texture] : puffs) {
    Light& puff = findLight(scene, name);
    puff.active = false;
    puff.flareStrength = strength;
    puff.flareSize = size;
    setFlareTexture(puff, texture);
    smoke.addShape(&puff);
  }
  smoke.rate = 17;
  smoke.maxCount = 40;
  smoke.velocitySpread = 2;
  smoke.positionSpread = 0;
  smoke.velocity.set(0, 5, 0);
  smoke.parent = scene.find("cigash");
  smoke.gravity.set(0, 4, 0);
  smoke.life = 3;
  smoke.offset.set(0, 0, 5);
  smoke.fadeIn = 1;
  smoke.maxAlpha = 1.7f;
}

void setUpBurst(SceneFetus& scene) {
  ParticleSystem& pieces = systemAt(scene, burst);
  constexpr std::array shapes{"glassParticle01", "glassParticle02", "glassParticle03", "waterParticle"};
  addShapes(scene, pieces, shapes);
  pieces.rate = 300;
  pieces.maxCount = 0;
  pieces.velocitySpread = 170;
  pieces.positionSpread = 50;
  pieces.velocity.set(0, 0, 0);
  pieces.life = 3;
  pieces.gravity.set(0, -150, 0);
  pieces.maxAlpha = 3;
  pieces.spinMin = -10;
  pieces.spinMax = 10;
}

void setUp(SceneFetus& scene) {
  playMotions(scene, motions);
  for (Viewer* viewer : scene.viewers) viewer->farPlane = 1500;
  setUpLights(scene);
  setUpMeshes(scene);
  createParticleSystems(scene, 3);
  setUpSprayer(scene);
  setUpCigarette(scene);
  setUpBurst(scene);
  for (Mesh* mesh : scene.meshes) raiseAmbient(*mesh, 0.15f);
}

// The hand's light flickers, the more, the more the sprayer sprays.
void animate(Scene& scene, float t, Arguments arguments) {
  chooseViewer(scene, arguments.number(0));
  const auto count = static_cast<float>(systemAt(scene, sprayer).maxCount);
  findLight(scene, "HandLight").intensity =
      std::min(static_cast<float>(randomNext() % 100) / 30000 * count, 0.4f);
  scene.render(t);
}

// All at once: the rate fills the count in a hundredth of a second.
void explode(Scene& scene, float, Arguments arguments) {
  const float size = arguments.number(0);
  const float opacity = arguments.number(1);
  ParticleSystem& pieces = systemAt(scene, burst);
  pieces.rate = 100 * size;
  pieces.maxCount = truncateNumber(size);
  Mesh& bottle = findMesh(scene, "bottle");
  bottle.opacity = opacity;
  setShown(bottle, opacity >= 0.01f);
}

void setSkinColor(Scene& scene, float, Arguments arguments) {
  const int skin = getTexture(skinTexture, true);
  const float opacity = arguments.number(3);
  for (Mesh* mesh : scene.meshes) {
    if (mesh->texture != skin) continue;
    mesh->diffuse.r = arguments.number(0);
    mesh->diffuse.g = arguments.number(1);
    mesh->diffuse.b = arguments.number(2);
    mesh->opacity = opacity;
    mesh->blendMode = opacity >= 1 ? BlendMode::opaque : BlendMode::transparent;
  }
}

void setAlarmLight(Scene& scene, float, Arguments arguments) {
  findLight(scene, "AlarmLight").intensity = arguments.number(0);
}

void morphHose(Scene& scene, float, Arguments arguments) {
  findMesh(scene, "Hose").morph(findMesh(scene, "Hose01"), findMesh(scene, "Hose02"), arguments.number(0));
}

using enum ArgumentKind;

constexpr std::array explodeParameters{FunctionParameter{"burst", wholeNumber, 0, 300, maxParticles},
                                       FunctionParameter{"bottleOpacity", number, 0, 1}};
constexpr std::array skinParameters{
    FunctionParameter{"red", number, 0, 2}, FunctionParameter{"green", number, 0, 2},
    FunctionParameter{"blue", number, 0, 2}, FunctionParameter{"opacity", number, 0, 1}};
constexpr std::array alarmParameters{FunctionParameter{"intensity", number, 0, 2}};
constexpr std::array hoseParameters{FunctionParameter{"fraction", number, 0, 1}};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene.", cameraParameters, FunctionRole::draws,
                closedGround},
    FunctionRow{"explode", sceneFunction<explode>,
                "Bursts the bottle: keeps that many pieces flying, and fades the bottle. 0 and 0 end it.",
                explodeParameters, FunctionRole::sets},
    FunctionRow{"setParticleCount", sceneFunction<setFirstParticleCount>, "Sets how much the sprayer sprays.",
                particleCountParameters, FunctionRole::sets},
    FunctionRow{"setSkinColor", sceneFunction<setSkinColor>,
                "Tints the skin; below opacity 1 it is transparent.", skinParameters, FunctionRole::sets},
    FunctionRow{"setAlarmLight", sceneFunction<setAlarmLight>, "Sets how bright the alarm light is.",
                alarmParameters, FunctionRole::sets},
    animationStateRow,
    FunctionRow{"morphHose", sceneFunction<morphHose>, "Bends the hose from its first form to its second.",
                hoseParameters, FunctionRole::sets},
};

constexpr std::array neededObjects{neededMesh("fetus"),
                                   neededMesh("Door"),
                                   neededMesh("bottle"),
                                   neededMesh("rectangle01"),
                                   neededMesh("TableTop"),
                                   neededMesh("phone"),
                                   neededMesh("WhiteBox"),
                                   neededMesh("eye01"),
                                   neededMesh("eye02"),
                                   neededMesh("Hose"),
                                   neededMesh("hose01"),
                                   neededMesh("hose02"),
                                   neededLight("HandLight"),
                                   neededLight("AlarmLight"),
                                   neededLight("WaterParticle"),
                                   neededLight("smokeParticle01"),
                                   neededLight("smokeParticle02"),
                                   neededLight("smokeParticle03"),
                                   neededLight("smokeParticle04"),
                                   NeededObject{"HandSprayer"},
                                   NeededObject{"cigash"},
                                   NeededObject{"glassParticle01"},
                                   NeededObject{"glassParticle02"},
                                   NeededObject{"glassParticle03"}};

constexpr std::array neededTextures{
    NeededTexture{.name = beamTexture, .light = beamLight},
    NeededTexture{.name = defaultFlare, .function = "animate"},
    NeededTexture{.name = "data\\flare_smoke", .function = "animate", .frames = 4},
    NeededTexture{.name = skinTexture, .function = "setSkinColor"}};

}  // namespace

constinit const ModelScene<SceneFetus> sceneFetus{
    .name = "SceneFetus",
    .summary = "A closed room: a creature behind a door, a sprayer, a cigarette, a bottle that can burst.",
    .model = "data\\fetus",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
