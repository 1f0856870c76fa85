#include "scenes/scene_layer_rays.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* rayTexture = "data\\ray_cone";

void setUp(SceneLayerRays& scene) {
  viewerAt(scene, 0).targetTrack.reset();
  Mesh& cone = meshAt(scene, 0);
  cone.twoSided = true;
  cone.lit = false;
  for (ColourAlpha* colour : {&cone.diffuse, &cone.ambient, &cone.specular}) {
    *colour = {1, 1, 1, colour->a};
  }
  cone.texture = getTexture(rayTexture, true);
}

// About two turns every 32 vertices, each vertex trembling at a pace of its own.
void swirlTexture(Mesh& cone, float t) {
  for (std::size_t k = 0; 2 * k + 1 < cone.uvs.size(); ++k) {
    const float number = static_cast<float>(k);
    const float pace = std::cos(number) * t;
    const float turn = -number / 32 * 12.5f;
    cone.uvs[2 * k] = 0.2f * std::sin(pace * 3.7f) + std::sin(turn);
    cone.uvs[2 * k + 1] = 0.2f * std::cos(pace * 2.9f) + std::cos(turn);
  }
}

void animate(Scene& scene, float t, Arguments arguments) {
  constexpr float ahead = 0.3f;  // radians
  fadeLayer(scene, arguments.number(0));
  Viewer& viewer = viewerAt(scene, 0);
  viewer.position.set(10 * std::cos(arguments.number(1) * t), 10 * std::sin(arguments.number(2) * t + ahead),
                      0);
  viewer.target.set(10 * std::cos(arguments.number(3) * t), 10 * std::sin(arguments.number(4) * t + ahead),
                    -100);
  swirlTexture(meshAt(scene, 0), t);
  setLayerBlend(scene, arguments.number(5));
  scene.render(t);
}

using enum ArgumentKind;

constexpr std::array animateParameters{layerAlphaParameter,
                                       FunctionParameter{"eyeSpeedX", number, -4, 4},
                                       FunctionParameter{"eyeSpeedY", number, -4, 4},
                                       FunctionParameter{"targetSpeedX", number, -4, 4},
                                       FunctionParameter{"targetSpeedY", number, -4, 4},
                                       layerBlendParameter};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>,
                "Draws the layer through a camera that looks down the cone and sways; the speeds are in "
                "radians a second.",
                animateParameters},
};

constexpr std::array neededTextures{
    NeededTexture{.name = rayTexture},
    NeededTexture{.name = defaultFlare, .function = "animate", .light = anyLight}};

}  // namespace

constinit const ModelScene<SceneLayerRays> sceneLayerRays{
    .name = "SceneLayerRays",
    .summary = "A layer: rays that swirl over the inside of a cone.",
    .model = "data\\layer_rays",
    .functions = functionTable,
    .needs = {.meshes = 1, .textures = neededTextures},
    .setUp = setUp};

}  // namespace vex
