#include "scenes/scene_skull.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

#include "base/random.h"
#include "base/report.h"
#include "textures/bolt_texture.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr std::array crows{"crow01", "crow02", "crow03"};
constexpr std::array sparks{"spark01", "spark02", "spark03", "spark04", "spark05", "spark06"};
constexpr std::array lasers{"laser01", "laser02"};
constexpr std::array clouds{"clouds01", "clouds02"};

static_assert(crows.size() == crowCount);

constexpr const char* smokeFlare = "data\\flare_smoke";
constexpr const char* fireFlare = "data\\flare_fire";
constexpr const char* crowTexture = "data\\crow";
constexpr const char* lightning = "data\\spark";
// The sky is open: the clouds cover it.
constexpr SkyTextures sky{
    "", "data\\skullbot", "data\\skullnorth", "data\\skullwest", "data\\skullsouth", "data\\skulleast"};
constexpr std::array motions{SceneMotion{MotionOf::meshes, 20, true},
                             SceneMotion{MotionOf::cameras, 20, true}};

// A flare texture out of four, by the light's place in the model.
void setNumberedFlare(Light& light, const char* stem, int index) {
  std::snprintf(light.flareTexture, sizeof light.flareTexture, "%s%d", stem, index % 4 + 1);
}

void setUpSmokeLight(Light& light, int index) {
  light.flareSize = 40;
  light.flareStrength = -0.4f;
  light.active = false;
  light.glow = false;
  light.colour = {1, 1, 1};
  setNumberedFlare(light, smokeFlare, index);
}

void setUpFireLight(Light& light, int index) {
  light.flareSize = 15;
  light.flareStrength = 0.4f;
  light.active = false;
  light.glow = false;
  light.colour = {1, 0.5f + 0.5f * std::sin(static_cast<float>(index)), 0.2f};
  setNumberedFlare(light, fireFlare, index);
}

void setUpLights(SceneSkull& scene) {
  lightAt(scene, 2).intensity = 1;
  for (Light* light : scene.lights) {
    light->flareSize = 25;
    light->flareStrength = 1;
    light->glow = true;
  }
  lightAt(scene, 2).flareSize = 0;
  int index = 0;
  for (Light* light : scene.lights) {
    if (nameBeginsWith(*light, "smoke")) setUpSmokeLight(*light, index);
    if (nameBeginsWith(*light, "fire")) setUpFireLight(*light, index);
    ++index;
  }
  Light& spark = findLight(scene, "SparkLight");
  spark.intensity = 0;
  spark.flareSize = 0;
}

void setUpCrows(SceneSkull& scene) {
  for (const char* name : crows) {
    Mesh& crow = findMesh(scene, name);
    crow.texture = getTexture(crowTexture, true);
    crow.setFixedTime(0);
  }
}

void setUpGlow(SceneSkull& scene) {
  for (const char* name : sparks) {
    Mesh& spark = findMesh(scene, name);
    spark.twoSided = true;
    spark.blendMode = BlendMode::additive;
  }
  for (const char* name : lasers) {
    Mesh& laser = findMesh(scene, name);
    laser.lit = false;
    laser.blendMode = BlendMode::additive;
    laser.twoSided = true;
  }
  for (const char* name : clouds) {
    Mesh& layer = findMesh(scene, name);
    layer.twoSided = true;
    layer.lit = false;
    layer.blendMode = BlendMode::transparent;
  }
}

ParticleSystem& fireOf(Scene& scene, int crow) {
  return systemAt(scene, crow);
}

ParticleSystem& smokeOf(Scene& scene, int crow) {
  return systemAt(scene, crow + crowCount);
}

void setUpFire(SceneSkull& scene, int crow) {
  ParticleSystem& fire = fireOf(scene, crow);
  constexpr std::array shapes{"fire01", "fire02", "fire03", "fire04"};
  addShapes(scene, fire, shapes);
  fire.rate = 0;
  fire.maxCount = 0;
  fire.velocitySpread = 30;
  fire.life = 0.6f;
  fire.lifeVariation = 0.1f;
  fire.positionSpread = 4;
  fire.velocity.set(0, 80, 0);
  fire.gravity.set(0, 100, 0);
  fire.maxAlpha = 1.3f;
}

void setUpSmoke(SceneSkull& scene, int crow) {
  ParticleSystem& smoke = smokeOf(scene, crow);
  constexpr std::array shapes{"smoke01", "smoke02", "smoke03", "smoke04"};
  addShapes(scene, smoke, shapes);
  smoke.rate = 0;
  smoke.maxCount = 0;
  smoke.velocitySpread = 30;
  smoke.life = 2;
  smoke.lifeVariation = 0.4f;
  smoke.velocity.set(0, 50, 0);
  smoke.gravity.set(0, 50, 0);
  smoke.maxAlpha = 1.3f;
  smoke.offset.set(0, 20, 0);
}

void setUp(SceneSkull& scene) {
  for (const char* name : {"rock", "spear01", "spear02", "spear03", "spear04", "spear05", "spear06"}) {
    findMesh(scene, name).envMap = false;
  }
  setUpLights(scene);
  playMotions(scene, motions);
  setUpCrows(scene);
  setUpGlow(scene);
  setSky(scene, sky);
  createParticleSystems(scene, 2 * crowCount);
  for (int crow = 0; crow < crowCount; ++crow) {
    setUpFire(scene, crow);
    setUpSmoke(scene, crow);
    Mesh& parent = findMesh(scene, crows[static_cast<std::size_t>(crow)]);
    fireOf(scene, crow).parent = smokeOf(scene, crow).parent = &parent;
  }
}

// --- Each frame

// Whether something that shows in `rate` percent of the frames shows in this one.
bool flickers(int rate) {
  return randomNext() % 100 < rate;
}

void beatWings(Scene& scene, float t) {
  const auto beat = [&scene](const char* crow, float angle) {
    findMesh(scene, crow).twist({0, 0, 1}, {1, 0, 0}, std::sin(angle));
  };
  beat(crows[0], 3.7f * t + 35.2f);
  beat(crows[1], 4 * t);
  beat(crows[2], 6 * t + 1.39f);
}

// A cloud layer is a square whose first two corners lie on one edge, the next two on the opposite one.
void scrollClouds(Scene& scene, const char* name, float by) {
  Mesh& layer = findMesh(scene, name);
  if (layer.uvs.size() < 8) {
    fatalError("%s in %s has %zu texture coordinates, must have 4", name, scene.name, layer.uvs.size() / 2);
  }
  layer.uvs[1] = layer.uvs[3] = by;
  layer.uvs[5] = layer.uvs[7] = by + 1;
}

void flashSparks(SceneSkull& scene) {
  for (const char* name : sparks) setShown(findMesh(scene, name), flickers(scene.sparkRate));
  findLight(scene, "SparkLight").intensity =
      std::min(static_cast<float>(randomNext() % 100) / 10000 * static_cast<float>(scene.sparkRate), 0.5f);
  boltTexture(lightning);
}

// A laser is modelled along y, as long as its radius: it is stretched, then turned towards the target.
void pointLaser(Mesh& laser, const Vector& target) {
  const Vector up(0, 1, 0);
  laser.resetTransform();
  const Vector way = target - laser.position;
  Vector axis = cross(way, up);
  axis.normalize();
  laser.scale({1, way.length() / laser.radius, 1});
  laser.rotate(axis, angle(way, up));
}

void animateLasers(SceneSkull& scene) {
  if (!scene.laserTarget || !*scene.laserTarget) {
    for (const char* name : lasers) setShown(findMesh(scene, name), false);
    return;
  }
  const Object3D& target = *scene.find(scene.laserTarget);
  for (const char* name : lasers) setShown(findMesh(scene, name), flickers(scene.laserRate));
  for (const char* name : lasers) pointLaser(findMesh(scene, name), target.getWorldPosition());
}

void animate(SceneSkull& scene, float t, Arguments arguments) {
  chooseViewer(scene, arguments.number(0));
  beatWings(scene, t);
  scrollClouds(scene, clouds[0], t / 5);
  scrollClouds(scene, clouds[1], t / 7);
  flashSparks(scene);
  animateLasers(scene);
  scene.render(t);
}

// --- Settings

void setLights(Scene& scene, float, Arguments arguments) {
  for (const int index : {0, 1}) lightAt(scene, index).intensity = arguments.number(0);
  Light& light = lightAt(scene, 2);
  light.intensity = arguments.number(1);
  light.colour = {arguments.number(2), arguments.number(3), arguments.number(4)};
}

void setSparkRate(SceneSkull& scene, float, Arguments arguments) {
  scene.sparkRate = truncateNumber(arguments.number(0) * 100);
}

void setLaser(SceneSkull& scene, float, Arguments arguments) {
  scene.laserTarget = arguments.text(0);
  scene.laserRate = truncateNumber(arguments.number(1) * 100);
}

void setLaserOpacity(Scene& scene, float, Arguments arguments) {
  for (int i = 0; i < 2; ++i) {
    findMesh(scene, lasers[static_cast<std::size_t>(i)]).opacity = arguments.number(i);
  }
}

int crowArgument(const Scene& scene, Arguments arguments) {
  const int crow = arguments.whole(0);
  if (crow < 0 || crow >= crowCount) {
    fatalError("crow of %s is %d, must be 0 to %d", scene.name, crow, crowCount - 1);
  }
  return crow;
}

void setCrowParticles(Scene& scene, float, Arguments arguments) {
  const int crow = crowArgument(scene, arguments);
  setParticleCount(fireOf(scene, crow), arguments.number(1));
  setParticleCount(smokeOf(scene, crow), arguments.number(1));
}

// The crow leaves its flight where it is, tumbles and falls behind; t counts from the shot.
void killCrow(SceneSkull& scene, float t, Arguments arguments) {
  const auto index = static_cast<std::size_t>(crowArgument(scene, arguments));
  Mesh& crow = findMesh(scene, crows[index]);
  if (crow.tracks) {
    scene.killPos[index] = crow.getWorldPosition() - crow.position;
    crow.tracks.reset();
  }
  crow.resetTransform();
  crow.rotate({std::sin(t), std::sin(0.32f * t), std::cos(0.76f * t)}, 2.5f * t);
  crow.translate(scene.killPos[index] + Vector(0, -30 * t * t, -70 * t));
}

using enum ArgumentKind;

constexpr FunctionParameter crowParameter{"crow", wholeNumber, 0, crowCount - 1};
constexpr std::array lightsParameters{
    FunctionParameter{"mainIntensity", number, 0, 4}, FunctionParameter{"sideIntensity", number, 0, 4},
    FunctionParameter{"red", number, 0, 1}, FunctionParameter{"green", number, 0, 1},
    FunctionParameter{"blue", number, 0, 1}};
constexpr std::array sparkRateParameters{FunctionParameter{"rate", number, 0, 1}};
constexpr std::array laserParameters{
    FunctionParameter{.name = "target", .kind = objectName, .mayBeEmpty = true},
    FunctionParameter{"rate", number, 0, 1}};
constexpr std::array laserOpacityParameters{FunctionParameter{"opacity1", number, 0, 1},
                                            FunctionParameter{"opacity2", number, 0, 1}};
constexpr std::array crowParticlesParameters{
    crowParameter, FunctionParameter{"particles", wholeNumber, 0, 100, maxParticles}};
constexpr std::array killCrowParameters{crowParameter};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>, "Draws the scene.", cameraParameters},
    FunctionRow{"setLights", sceneFunction<setLights>,
                "Sets the two main lights and, with a colour, the side light.", lightsParameters,
                FunctionRole::sets},
    FunctionRow{"setSparkRate", sceneFunction<setSparkRate>,
                "Sets how often the lightning shows: the part of all frames.", sparkRateParameters,
                FunctionRole::sets},
    FunctionRow{
        "setLaser", sceneFunction<setLaser>,
        "Points both lasers at an object; they show in `rate` of all frames. An empty target puts them "
        "out.",
        laserParameters, FunctionRole::sets},
    FunctionRow{"setLaserOpacity", sceneFunction<setLaserOpacity>, "Sets how bright the lasers are.",
                laserOpacityParameters, FunctionRole::sets},
    FunctionRow{"setParticleCount", sceneFunction<setCrowParticles>,
                "Sets the fire and the smoke that a crow trails.", crowParticlesParameters,
                FunctionRole::sets},
    FunctionRow{"killCrow", sceneFunction<killCrow>,
                "Lets a crow fall from where it is; its part starts with the shot and calls this in every "
                "frame. It never flies again.",
                killCrowParameters, FunctionRole::sets},
    loopStateRow,
};

constexpr std::array neededObjects{
    neededMesh("rock"),        neededMesh("spear01"),   neededMesh("spear02"),   neededMesh("spear03"),
    neededMesh("spear04"),     neededMesh("spear05"),   neededMesh("spear06"),   neededMesh("crow01"),
    neededMesh("crow02"),      neededMesh("crow03"),    neededMesh("spark01"),   neededMesh("spark02"),
    neededMesh("spark03"),     neededMesh("spark04"),   neededMesh("spark05"),   neededMesh("spark06"),
    neededMesh("laser01"),     neededMesh("laser02"),   neededMesh("clouds01"),  neededMesh("clouds02"),
    neededLight("SparkLight"), NeededObject{"fire01"},  NeededObject{"fire02"},  NeededObject{"fire03"},
    NeededObject{"fire04"},    NeededObject{"smoke01"}, NeededObject{"smoke02"}, NeededObject{"smoke03"},
    NeededObject{"smoke04"}};

constexpr std::array neededTextures{NeededTexture{.name = crowTexture},
                                    NeededTexture{.name = lightning, .function = "animate", .side = boltSide},
                                    NeededTexture{.name = defaultFlare, .function = "animate"},
                                    NeededTexture{.name = fireFlare, .function = "animate", .frames = 4},
                                    NeededTexture{.name = smokeFlare, .function = "animate", .frames = 4}};

}  // namespace

constinit const ModelScene<SceneSkull> sceneSkull{
    .name = "SceneSkull",
    .summary = "A skull under clouds and lightning, three crows and two lasers. Its sky needs a ground.",
    .model = "data\\skull",
    .functions = functionTable,
    .needs =
        {.objects = neededObjects, .lights = 3, .sky = sky, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
