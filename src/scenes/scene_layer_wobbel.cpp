#include "scenes/scene_layer_wobbel.h"

#include <array>

#include "base/clock.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* surroundings = "data\\envmapspace";

void setUp(SceneLayerWobbel& scene) {
  for (Mesh* mesh : scene.meshes) {
    mesh->blendMode = BlendMode::additive;
    mesh->lit = false;
    mesh->texture = getTexture(surroundings, true);
    mesh->twoSided = true;
  }
  Viewer& viewer = viewerAt(scene, 0);
  viewer.positionTrack.reset();
  viewer.targetTrack.reset();
  Light& light = lightAt(scene, 0);
  light.flareSize = 0;
  light.intensity = 2.5f;
  light.active = false;
}

void animate(SceneLayerWobbel& scene, float t, Arguments arguments) {
  fadeLayer(scene, arguments.number(0));
  viewerAt(scene, 0).position = orbitingCamera(t);
  setLayerBlend(scene, arguments.number(1));
  scene.phaseX += clockDelta() * arguments.number(2);
  scene.phaseY += clockDelta() * arguments.number(3);
  scene.phaseZ += clockDelta() * arguments.number(4);
  meshAt(scene, 0).wobble(scene.phaseX, scene.phaseY, scene.phaseZ, arguments.number(5), arguments.number(6),
                          arguments.number(7), arguments.number(8));
  scene.render(t);
}

using enum ArgumentKind;

constexpr std::array animateParameters{layerAlphaParameter,
                                       layerBlendParameter,
                                       FunctionParameter{"phaseSpeedX", number, -20, 20},
                                       FunctionParameter{"phaseSpeedY", number, -20, 20},
                                       FunctionParameter{"phaseSpeedZ", number, -20, 20},
                                       FunctionParameter{"stillness", number, 0, 1},
                                       FunctionParameter{"wavesX", number, 0, 8},
                                       FunctionParameter{"wavesY", number, 0, 8},
                                       FunctionParameter{"wavesZ", number, 0, 8}};

constexpr std::array functionTable{
    FunctionRow{
        "animate", sceneFunction<animate>,
        "Draws the layer through a camera that circles round it. The body wobbles fully at stillness 0 "
        "and not at all at 1; the phase speeds are in radians a second.",
        animateParameters},
};

constexpr std::array neededTextures{
    NeededTexture{surroundings},
    NeededTexture{.name = defaultFlare, .function = "animate", .light = anyLight}};

}  // namespace

constinit const ModelScene<SceneLayerWobbel> sceneLayerWobbel{
    .name = "SceneLayerWobbel",
    .summary = "A layer: a wobbling body that mirrors its surroundings.",
    .model = "data\\wobbel",
    .functions = functionTable,
    .needs = {.meshes = 1, .lights = 1, .textures = neededTextures},
    .setUp = setUp};

}  // namespace vex
