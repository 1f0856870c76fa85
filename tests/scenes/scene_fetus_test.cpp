#include "scenes/scene_fetus.h"

#include <gtest/gtest.h>

#include "base/random.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

class Fetus : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    addPlainTextures({"other", "data\\fetus_skin", "data\\vollight"});
    beginScene(scene, sceneFetus.name, sceneFetus.functions);
    fillScene(scene, contentsOf("fetus"));
    sceneFetus.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
    for (Viewer* viewer : scene.viewers) viewer->alpha = 0;  // nothing is drawn
    randomState() = 1;
  }

  void call(const char* function, const std::vector<Argument>& arguments) {
    callFunction(sceneFetus.functions, scene, function, 1, arguments);
  }
  Mesh& mesh(const char* name) { return findMesh(scene, name); }
  Light& light(const char* name) { return findLight(scene, name); }

  SceneFetus scene;
};

TEST_F(Fetus, TheHandsLightFlickersWithTheSpray) {
  call("animate", {1.5});  // draws 41
  EXPECT_EQ(scene.viewerIndex, 1);
  EXPECT_EQ(light("HandLight").intensity, 0);
  call("setParticleCount", {100.7});
  EXPECT_EQ(scene.particleSystems[0]->maxCount, 100);
  EXPECT_EQ(scene.particleSystems[0]->rate, 100);
  call("animate", {0});  // 18467
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 67.0f / 30000 * 100);
  call("setParticleCount", {300});
  call("animate", {0});  // 6334
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 34.0f / 30000 * 300);
  call("animate", {0});  // 26500
  call("animate", {0});  // 19169: 0.69
  EXPECT_FLOAT_EQ(light("HandLight").intensity, 0.4f);
}

TEST_F(Fetus, TheBottleBursts) {
  const ParticleSystem& pieces = *scene.particleSystems[2];
  const Mesh& bottle = mesh("bottle");
  const struct {
    double size, opacity;
    int most;
    bool hidden;
  } rows[] = {{300.5, 1, 300, false}, {10, 0.01f, 10, false}, {0, 0.009, 0, true}, {5, 0.5, 5, false}};
  for (const auto& [size, opacity, most, hidden] : rows) {
    call("explode", {size, opacity});
    expectValues({{"rate", pieces.rate, 100 * size}, {"opacity", bottle.opacity, opacity}});
    EXPECT_EQ(pieces.maxCount, most);
    EXPECT_EQ(bottle.flags, hidden ? hiddenFlag : 0);
  }
}

TEST_F(Fetus, TheSkinTakesItsColour) {
  mesh("fetus").texture = mesh("eye01").texture = 1;
  mesh("phone").texture = 0;
  call("setSkinColor", {0.1, 0.2, 0.3, 0.99});
  for (const char* name : {"fetus", "eye01"}) {
    expectValues({{"red", mesh(name).diffuse.r, 0.1},
                  {"green", mesh(name).diffuse.g, 0.2},
                  {"blue", mesh(name).diffuse.b, 0.3},
                  {"opacity", mesh(name).opacity, 0.99}});
    EXPECT_EQ(mesh(name).blendMode, BlendMode::transparent);
  }
  EXPECT_TRUE(textureEntry(1).wrap);
  EXPECT_EQ(mesh("phone").diffuse.r, 1);
  EXPECT_EQ(mesh("phone").blendMode, BlendMode::opaque);
  call("setSkinColor", {0.1, 0.2, 0.3, 1});
  EXPECT_EQ(mesh("fetus").blendMode, BlendMode::opaque);
}

TEST_F(Fetus, TheAlarmAndTheHoseAreSet) {
  call("setAlarmLight", {1.5});
  EXPECT_EQ(light("AlarmLight").intensity, 1.5f);
  call("morphHose", {0.25});
  // The hoses stand 10 apart along x, at 50 and 60; the third of them moves.
  expectValues({{"x", mesh("Hose").positions[0], 0.75 * 49 + 0.25 * 59}});
  call("setAnimationState", {"Fetus", 0.5});
  EXPECT_EQ(mesh("fetus").fixedTime, 10);
}

}  // namespace
}  // namespace vex
