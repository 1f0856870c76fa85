#include "scenes/scene_layer_particles.h"

#include <array>

#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* flareTexture = "data\\flare_shine";

void setUp(SceneLayerParticles& scene) {
  Light& flare = lightAt(scene, 0);
  flare.intensity = 0;
  flare.flareStrength = 1;
  flare.flareSize = 5;
  flare.glow = false;
  setFlareTexture(flare, flareTexture);
  viewerAt(scene, 0).position.set(0, 0, 30);

  createParticleSystems(scene, 1);
  ParticleSystem& field = systemAt(scene, 0);
  field.addShape(scene.find("omni01"));
  field.rate = 0;
  field.maxCount = 0;
  field.velocitySpread = 0;
  field.positionSpread = 0;
  field.velocity.set(0, 0, 0);
  field.life = 1;  // second: the rate is then also the number of particles
  field.gravity.set(0, 0, 0);
  field.maxAlpha = 2;
}

void animate(Scene& scene, float t, Arguments arguments) {
  fadeLayer(scene, arguments.number(0));
  ParticleSystem& field = systemAt(scene, 0);
  field.rate = arguments.number(1);
  field.maxCount = truncateNumber(field.rate);
  field.velocitySpread = arguments.number(2);
  field.velocity.set(arguments.number(3), arguments.number(4), arguments.number(5));
  field.positionSpread = arguments.number(6);
  scene.render(t);
}

void loadFlare(Scene& scene, float, Arguments arguments) {
  setFlareTexture(lightAt(scene, 0), arguments.text(0));
}

using enum ArgumentKind;

constexpr std::array animateParameters{layerAlphaParameter,
                                       FunctionParameter{"particles", number, 0, 300, maxParticles},
                                       FunctionParameter{"velocitySpread", number, 0, 200},
                                       FunctionParameter{"velocityX", number, -200, 200},
                                       FunctionParameter{"velocityY", number, -200, 200},
                                       FunctionParameter{"velocityZ", number, -200, 200},
                                       FunctionParameter{"positionSpread", number, 0, 200}};
constexpr std::array loadFlareParameters{FunctionParameter{"texture", textureName}};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>,
                "Draws the layer: particles that live for about a second, with velocities in units a second.",
                animateParameters},
    FunctionRow{"loadFlare", sceneFunction<loadFlare>, "Gives the particles their picture.",
                loadFlareParameters, FunctionRole::sets},
};

constexpr std::array neededObjects{NeededObject{"Omni01"}};
constexpr std::array neededTextures{
    NeededTexture{.name = flareTexture, .function = "animate", .unless = "loadFlare"}};

}  // namespace

constinit const ModelScene<SceneLayerParticles> sceneLayerParticles{
    .name = "SceneLayerParticles",
    .summary = "A layer: flares that fly from the middle of the world, 30 units before the camera.",
    .model = "data\\layer_particles",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .lights = 1, .textures = neededTextures},
    .setUp = setUp};

}  // namespace vex
