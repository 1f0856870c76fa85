#include "scenes/scene_alien.h"

#include <gtest/gtest.h>

#include <array>

#include "base/window_size.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"
#include "textures/texture_cache.h"

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
