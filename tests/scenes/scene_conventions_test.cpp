#include "scenes/scene_conventions.h"

#include <gtest/gtest.h>

#include "scenes/scene_fetus.h"
#include "scenes/scene_intro_box.h"
#include "scenes/scene_skull.h"
#include "scenes/scene_water.h"
#include "tests/support/fatal.h"
#include "tests/support/scene_builder.h"

namespace vex {
namespace {

TEST(SceneConventions, BlendLayersByWholeModes) {
  Scene scene;
  fillScene(scene, {.meshes = {"a", "b"}});
  const struct {
    float mode;
    BlendMode blend;
  } rows[] = {{-1, BlendMode::opaque},     {0.99f, BlendMode::opaque},  {1, BlendMode::additive},
              {1.5f, BlendMode::additive}, {2, BlendMode::subtractive}, {7, BlendMode::subtractive}};
  for (const auto& [mode, blend] : rows) {
    setLayerBlend(scene, mode);
    for (const Mesh* mesh : scene.meshes) EXPECT_EQ(mesh->blendMode, blend) << mode;
  }
}

TEST(SceneConventions, PoseAnObjectByItsLastTrack) {
  Scene scene;
  fillScene(scene, {.meshes = {"Body", "Stone"}, .lights = {"Lamp"}});
  Mesh& body = findMesh(scene, "body");
  Animation turn;
  turn.type = TrackType::rotation;
  turn.allocKeys(1);
  turn.insertKey(0, {0, 1, 0}, 0);
  body.addAnimation(turn)->duration = 10;
  body.setAnimParams(4, true);
  (*body.tracks)[static_cast<int>(TrackType::rotation)]->duration = 9;
  const FunctionRow rows[] = {animationStateRow};
  callFunction(rows, scene, "setAnimationState", 7, {"BODY", 0.5});
  EXPECT_EQ(body.fixedTime, 2);
  callFunction(rows, scene, "setAnimationState", 7, {"body", -1});
  EXPECT_EQ(body.fixedTime, -4);
  body.removeAnimation(TrackType::position);
  callFunction(rows, scene, "setAnimationState", 7, {"body", 0.5});
  EXPECT_EQ(body.fixedTime, 4.5f);
  callFunction(rows, scene, "setAnimationState", 0, {"lamp", 1});
  EXPECT_EQ(findLight(scene, "lamp").fixedTime, 1);

  Mesh& stone = findMesh(scene, "Stone");
  stone.tracks.reset();
  callFunction(rows, scene, "setAnimationState", 0, {"stone", 0.5});
  EXPECT_EQ(stone.fixedTime, -1);
}

// The greatest useful fraction stands at the end of the animation, 30 along x: one that plays once reaches
// it, a loop would begin again.
TEST(SceneConventions, PoseAnimationsUpToTheirEnds) {
  const struct {
    std::span<const FunctionRow> functions;
    bool loop;
  } rows[] = {{sceneIntroBox.functions, false},
              {sceneFetus.functions, false},
              {sceneSkull.functions, true},
              {sceneWater.functions, true}};
  for (const auto& [functions, loop] : rows) {
    Scene scene;
    fillScene(scene, {.meshes = {"Body"}});
    scene.meshes[0]->setAnimParams(4, loop);
    for (const FunctionRow& row : functions) {
      if (std::string(row.name) != "setAnimationState") continue;
      callFunction(functions, scene, row.name, 7, {"body", row.parameters[1].max});
    }
    scene.meshes[0]->getMatrix(7);
    EXPECT_NEAR(scene.meshes[0]->worldPosition.x, 30, loop ? 0.1 : 0);
  }
}

TEST(SceneConventions, KeepAParticleCountSteady) {
  ParticleSystem system;
  system.life = 4;
  setParticleCount(system, 10.9f);
  EXPECT_EQ(system.maxCount, 10);
  EXPECT_EQ(system.rate, 2.5f);
  setParticleCount(system, 0);
  EXPECT_EQ(system.maxCount, 0);
  EXPECT_EQ(system.rate, 0);
}

TEST(SceneConventions, RefuseWhatTheModelLacks) {
  Scene scene;
  beginScene(scene, "SceneTest", {});
  fillScene(scene, {.meshes = {"Stone"}, .lights = {"Lamp"}});
  EXPECT_EQ(fatalText([&] { findMesh(scene, "Rock"); }), "Rock not found in SceneTest");
  EXPECT_EQ(fatalText([&] { findMesh(scene, "lamp"); }), "lamp in SceneTest is no mesh");
  EXPECT_EQ(fatalText([&] { findLight(scene, "Stone"); }), "Stone in SceneTest is no light");
  EXPECT_EQ(fatalText([&] { meshAt(scene, 1); }), "Scene SceneTest: mesh[1] not defined!");
  EXPECT_EQ(fatalText([&] { lightAt(scene, -1); }), "Scene SceneTest: light[-1] not defined!");
  EXPECT_EQ(fatalText([&] { viewerAt(scene, 1); }), "Scene SceneTest: viewer[1] not defined!");
  EXPECT_EQ(fatalText([&] { systemAt(scene, 0); }), "Scene SceneTest: particle system[0] not defined!");
}

}  // namespace
}  // namespace vex
