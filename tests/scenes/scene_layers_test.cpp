#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "base/clock.h"
#include "scenes/scene_layer_particles.h"
#include "scenes/scene_layer_rays.h"
#include "scenes/scene_layer_rot_cubes.h"
#include "scenes/scene_layer_wide.h"
#include "scenes/scene_layer_wobbel.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_builder.h"

// Alpha 0 draws nothing, so that most of these need no picture.

namespace vex {
namespace {

void expectVector(const char* what, const Vector& is, double x, double y, double z) {
  expectValues({{what, is.x, x}, {what, is.y, y}, {what, is.z, z}});
}

class Layer : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    demoClock().time = 5;
    demoClock().previousTime = 4.75f;
    addPlainTextures({"other", "data\\ray_cone", "data\\envmapspace"});
  }
};

TEST_F(Layer, WideSwaysAtAnExtremeAngle) {
  SceneLayerWide scene;
  fillScene(scene, {.meshes = {"a", "b"}});
  sceneLayerWide.setUp(scene);
  const Viewer& viewer = *scene.viewers[0];
  callFunction(sceneLayerWide.functions, scene, "animate", 2, {0, 0.5, 0.7, 1.1, 2});
  EXPECT_EQ(viewer.alpha, 0);
  expectVector("position", viewer.position, 50 * std::cos(1.3), 50 * std::sin(1.7), 50 * std::cos(2.5));
  expectVector("target", viewer.target, 100 * std::cos(1.0), 100 * std::sin(1.4), 100 * std::cos(2.2));
  EXPECT_EQ(scene.meshes[1]->blendMode, BlendMode::subtractive);
}

TEST_F(Layer, CubesAreCircledByCameraAndLight) {
  SceneLayerRotCubes scene;
  fillScene(scene, {.meshes = {"a", "b"}, .lights = {"x", "y"}});
  sceneLayerRotCubes.setUp(scene);
  callFunction(sceneLayerRotCubes.functions, scene, "animate", 3, {0, 65, 0.5});
  const Viewer& viewer = *scene.viewers[0];
  EXPECT_EQ(viewer.alpha, 0);
  EXPECT_EQ(viewer.fov, 65);
  expectVector("camera", viewer.position, 400 * std::cos(1.98), 100 * std::sin(1.35), 400 * std::sin(1.98));
  expectVector("light", scene.lights[0]->position, 200 * std::sin(2.88), 100 * std::sin(0.975),
               200 * std::cos(2.88));
  EXPECT_EQ(scene.meshes[0]->blendMode, BlendMode::opaque);
}

TEST_F(Layer, RaysSwirlOverTheCone) {
  SceneLayerRays scene;
  fillScene(scene, {.meshes = {"cone", "other"}});
  sceneLayerRays.setUp(scene);
  const Mesh& cone = *scene.meshes[0];
  for (Mesh* mesh : scene.meshes) mesh->buildArrays();
  const double t = 1.5;
  callFunction(sceneLayerRays.functions, scene, "animate", 1.5f, {0, 0.4, 0.6, 0.8, 1.2, 1});
  const Viewer& viewer = *scene.viewers[0];
  EXPECT_EQ(viewer.alpha, 0);
  expectVector("position", viewer.position, 10 * std::cos(0.6), 10 * std::sin(1.2), 0);
  expectVector("target", viewer.target, 10 * std::cos(1.2), 10 * std::sin(2.1), -100);
  for (int k = 0; k < 4; ++k) {
    const auto at = static_cast<std::size_t>(2 * k);
    expectValues(
        {{"u", cone.uvs[at], 0.2 * std::sin(std::cos(k) * t * 3.7) + std::sin(-k / 32.0 * 12.5)},
         {"v", cone.uvs[at + 1], 0.2 * std::cos(std::cos(k) * t * 2.9) + std::cos(-k / 32.0 * 12.5)}});
  }
  EXPECT_EQ(cone.blendMode, BlendMode::additive);
}

TEST_F(Layer, ParticlesFollowTheArguments) {
  SceneLayerParticles scene;
  fillScene(scene, {.lights = {"Omni01"}});
  sceneLayerParticles.setUp(scene);
  const Light& flare = *scene.lights[0];
  const ParticleSystem& field = *scene.particleSystems[0];
  callFunction(sceneLayerParticles.functions, scene, "animate", 1, {0, 20.7, 3, 4, 5, 6, 7});
  EXPECT_EQ(scene.viewers[0]->alpha, 0);
  EXPECT_EQ(field.maxCount, 20);
  expectValues(
      {{"rate", field.rate, 20.7}, {"spread", field.velocitySpread, 3}, {"place", field.positionSpread, 7}});
  expectVector("velocity", field.velocity, 4, 5, 6);
  callFunction(sceneLayerParticles.functions, scene, "loadFlare", 1, {"data\\flare_fire1"});
  EXPECT_STREQ(flare.flareTexture, "data\\flare_fire1");
}

TEST_F(Layer, WobbelGoesOnFromFrameToFrame) {
  SceneLayerWobbel scene;
  fillScene(scene, {.meshes = {"a", "b"}, .lights = {"x"}});
  sceneLayerWobbel.setUp(scene);
  const Viewer& viewer = *scene.viewers[0];
  for (Mesh* mesh : scene.meshes) mesh->buildArrays();
  const std::vector<Argument> arguments{0, 2, 4, 8, -12, 0.5, 1, 2, 3};
  callFunction(sceneLayerWobbel.functions, scene, "animate", 3, arguments);
  callFunction(sceneLayerWobbel.functions, scene, "animate", 3, arguments);
  expectValues({{"x", scene.phaseX, 2}, {"y", scene.phaseY, 4}, {"z", scene.phaseZ, -6}});
  expectVector("camera", viewer.position, 400 * std::cos(1.98), 100 * std::sin(1.35), 400 * std::sin(1.98));
  EXPECT_EQ(viewer.alpha, 0);
  EXPECT_EQ(scene.meshes[0]->blendMode, BlendMode::subtractive);
  // Vertex 2 stands at (1, 1, 0) from the mesh's place; the farthest of all at 2.
  const auto stretch = [](double angle) { return ((std::sin(angle) + 1) / 2 + 0.5) * 0.5 + 0.5; };
  expectValues({{"x", scene.meshes[0]->positions[6], stretch(2 + 0.5 * 6.282)},
                {"y", scene.meshes[0]->positions[7], 1 + stretch(4 + 0.5 * 2 * 6.282)},
                {"z", scene.meshes[0]->positions[8], 2}});
}

}  // namespace
}  // namespace vex
