#include "scenes/scene_alien.h"

#include <gtest/gtest.h>

#include <array>

#include "assets/texture_cache.h"
#include "shell/window_size.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"

namespace vex {
namespace {

class Alien : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    addPlainTextures({"other", "data\\monstereas", "data\\monstersou", "data\\monsterwes", "data\\monsternor",
                      "data\\monsterbot", "data\\monstertop", "data\\chrome"});
    fillScene(scene, contentsOf("monster"));
    sceneAlien.setUp(scene);
    for (Mesh* mesh : scene.meshes) mesh->buildArrays();
  }

  SceneAlien scene;
};

TEST_F(Alien, IsSetUp) {
  EXPECT_EQ(namesOf(sceneAlien.functions), std::vector<std::string>{"animate"});
  EXPECT_STREQ(sceneAlien.model, "data\\monster");
  for (const Viewer* viewer : scene.viewers) {
    EXPECT_EQ(playing(viewer->positionTrack.get()), (Playing{20, false}));
    EXPECT_EQ(playing(viewer->targetTrack.get()), (Playing{20, false}));
  }
  for (const Light* light : scene.lights) {
    EXPECT_EQ(playing(*light), (Playing{20, false}));
    EXPECT_EQ(playing(light->target.get()), (Playing{20, false}));
    expectValues({{"intensity", light->intensity, 1.5}, {"size", light->flareSize, 0}});
  }
  for (const Mesh* mesh : scene.meshes) {
    EXPECT_EQ(playing(*mesh), (Playing{10, true}));
    expectValues({{"strength", mesh->shineStrength, 1},
                  {"ambient red", mesh->ambient.r, 0.35},
                  {"ambient green", mesh->ambient.g, 0.35},
                  {"ambient blue", mesh->ambient.b, 0.35},
                  {"specular red", mesh->specular.r, 0.4},
                  {"specular green", mesh->specular.g, 0.4},
                  {"specular blue", mesh->specular.b, 0.4}});
  }
  EXPECT_EQ(scene.meshes[0]->texture, -1);
  EXPECT_EQ(scene.meshes[1]->texture, 7);
  EXPECT_EQ(scene.meshes[2]->texture, 7);
  EXPECT_TRUE(textureEntry(7).wrap);
  EXPECT_EQ(scene.boxTextures, (std::array{6, 5, 4, 3, 2, 1}));
}

TEST_F(Alien, RendersThroughTheChosenCamera) {
  scene.viewers[1]->alpha = 0;
  callFunction(sceneAlien.functions, scene, "animate", 2, {1.9});
  EXPECT_EQ(scene.viewerIndex, 1);
  glClearColor(1, 0, 1, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  callFunction(sceneAlien.functions, scene, "animate", 2, {0});
  EXPECT_EQ(scene.viewerIndex, 0);
  EXPECT_EQ(readPixel(0, 0)[1], 255);                   // the white box hides the colour there was
  EXPECT_NEAR(scene.viewers[0]->position.x, 3, 1e-5f);  // 2 s of 20, on the way to 30
}

TEST_F(Alien, PaintsTheGround) {
  const std::array camera{0.0f};
  EXPECT_TRUE(sceneAlien.functions[0].ground.paints(camera));
}

}  // namespace
}  // namespace vex
