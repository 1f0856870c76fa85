#include "scenes/scene_layer_rot_cubes.h"

#include <array>
#include <cmath>

#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr std::array motions{SceneMotion{MotionOf::meshes, 5, true}};

void setUp(SceneLayerRotCubes& scene) {
  playMotions(scene, motions);
  for (Light* light : scene.lights) light->tracks.reset();
  for (Mesh* mesh : scene.meshes) mesh->blendMode = BlendMode::additive;
}

void animate(Scene& scene, float t, Arguments arguments) {
  fadeLayer(scene, arguments.number(0));
  Viewer& viewer = viewerAt(scene, 0);
  viewer.position = orbitingCamera(t);
  viewer.fov = arguments.number(1);
  lightAt(scene, 0).position.set(200 * std::sin(0.96f * t), 100 * std::sin(0.325f * t),
                                 200 * std::cos(0.96f * t));
  setLayerBlend(scene, arguments.number(2));
  scene.render(t);
}

constexpr std::array animateParameters{layerAlphaParameter,
                                       FunctionParameter{"fieldOfView", ArgumentKind::number, 10, 170},
                                       layerBlendParameter};

constexpr std::array functionTable{
    FunctionRow{"animate", sceneFunction<animate>,
                "Draws the layer through a camera that circles round it; the field of view is in degrees.",
                animateParameters},
};

constexpr std::array neededTextures{NeededTexture{defaultFlare, "animate"}};

}  // namespace

constinit const ModelScene<SceneLayerRotCubes> sceneLayerRotCubes{
    .name = "SceneLayerRotCubes",
    .summary = "A layer: turning cubes under a light that circles among them.",
    .model = "data\\layer_rot_cubes",
    .functions = functionTable,
    .needs = {.lights = 1, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
