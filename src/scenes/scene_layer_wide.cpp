#include "scenes/scene_layer_wide.h"

#include <array>
#include <cmath>

#include "timeline/scene_function.h"

namespace vex {

namespace {

void setUp(SceneLayerWide& scene) {
  Viewer& viewer = viewerAt(scene, 0);
  viewer.targetTrack.reset();
  viewer.fov = 179.95f;
  meshAt(scene, 0).blendMode = BlendMode::additive;
}

void animate(Scene& scene, float t, Arguments arguments) {
  constexpr float ahead = 0.3f;  // of the target, in radians
  fadeLayer(scene, arguments.number(0));
  const float x = arguments.number(1) * t;
  const float y = arguments.number(2) * t;
  const float z = arguments.number(3) * t;
  Viewer& viewer = viewerAt(scene, 0);
  viewer.position.set(50 * std::cos(x + ahead), 50 * std::sin(y + ahead), 50 * std::cos(z + ahead));
  viewer.target.set(100 * std::cos(x), 100 * std::sin(y), 100 * std::cos(z));
  setLayerBlend(scene, arguments.number(4));
  scene.render(t);
}

using enum ArgumentKind;

constexpr std::array animateParameters{layerAlphaParameter, FunctionParameter{"speedX", number, -4, 4},
                                       FunctionParameter{"speedY", number, -4, 4},
                                       FunctionParameter{"speedZ", number, -4, 4}, layerBlendParameter};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>,
                "Draws the layer through a camera that sways and looks about; the speeds are in radians a "
                "second.",
                animateParameters},
};

constexpr std::array neededTextures{
    NeededTexture{.name = defaultFlare, .function = "animate", .light = anyLight}};

}  // namespace

constinit const ModelScene<SceneLayerWide> sceneLayerWide{
    .name = "SceneLayerWide",
    .summary = "A layer: a mesh seen from within at an extreme field of view.",
    .model = "data\\layer_wide",
    .functions = functionTable,
    .needs = {.meshes = 1, .textures = neededTextures},
    .setUp = setUp};

}  // namespace vex
