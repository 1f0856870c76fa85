#include "scenes/model_scene.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "assets/texture_cache.h"
#include "production/geometry/forms.h"
#include "production/models/stage.h"
#include "scenes/scene_alien.h"
#include "scenes/scene_fetus.h"
#include "scenes/scene_hell.h"
#include "scenes/scene_intro_box.h"
#include "scenes/scene_layer_particles.h"
#include "scenes/scene_layer_rays.h"
#include "scenes/scene_layer_rot_cubes.h"
#include "scenes/scene_layer_wide.h"
#include "scenes/scene_layer_wobbel.h"
#include "scenes/scene_skull.h"
#include "scenes/scene_tables.h"
#include "scenes/scene_water.h"
#include "shell/options.h"
#include "shell/report.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"

namespace vex {
namespace {

Stage twoCubes() {
  Stage stage;
  stage.seconds = 1;
  stage.materials = {{.name = "stone"}};
  stage.meshes = {
      {.name = "a", .surface = withoutMapping(plane(2, 2, 1, 1)), .material = "stone"},
      {.name = "b", .surface = withoutMapping(plane(2, 2, 1, 1)), .material = "stone"},
  };
  stage.lights = {{.name = "omni01"}, {.name = "omni02", .on = false}};
  stage.cameras = {{.name = "camera01", .position = Vector(0, 10, 60)}};
  return stage;
}

class Construction : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    writeFile("data/layer_rot_cubes.ase", modelText(twoCubes()));
  }
  TemporaryFolder folder;
};

TEST_F(Construction, LoadsTheModelAndListsWhatShines) {
  static std::vector<std::string> shown;
  shown.clear();
  setLoadingDialog({.show = [](int, const char* text) { shown.emplace_back(text); }, .close = nullptr});
  SceneLayerRotCubes* scene = constructModelScene(sceneLayerRotCubes);
  setLoadingDialog({});
  EXPECT_STREQ(scene->name, "SceneLayerRotCubes");
  EXPECT_TRUE(scene->findFunction("animate"));
  EXPECT_EQ(scene->meshes[1]->blendMode, BlendMode::additive);
  EXPECT_EQ(scene->activeLights[0], 0);
  EXPECT_EQ(scene->activeLights[1], -1);
  ASSERT_FALSE(shown.empty());
  EXPECT_EQ(shown[0], "Loading SceneLayerRotCubes");
  scene->destroy(scene);
}

TEST_F(Construction, EndsWithTheCounts) {
  runInChild([] {
    options.showStats = true;
    SceneLayerRotCubes* scene = constructModelScene(sceneLayerRotCubes);
    scene->destroy(scene);
  });
  const std::string log = readFile("Demo.log");
  const std::size_t counts = log.find("Scene LayerRotCubes: 2 meshes 2 lights 8 verts 4 faces\n");
  const std::size_t end = log.find("destroying scene SceneLayerRotCubes\n");
  EXPECT_NE(counts, std::string::npos) << log;
  EXPECT_LT(counts, end);
}

// The order of start-up.
TEST_F(Construction, EverySceneReportsOneStep) {
  static std::vector<std::string> shown;
  shown.clear();
  writeSceneModels();
  setLoadingDialog({.show =
                        [](int, const char* text) {
                          if (std::string(text).starts_with("Loading Scene")) shown.emplace_back(text);
                        },
                    .close = nullptr});
  Scene* const scenes[] = {constructModelScene(sceneIntroBox),       constructModelScene(sceneWater),
                           constructModelScene(sceneFetus),          constructModelScene(sceneAlien),
                           constructModelScene(sceneSkull),          constructModelScene(sceneHell),
                           constructModelScene(sceneLayerParticles), constructModelScene(sceneLayerWide),
                           constructModelScene(sceneLayerRotCubes),  constructModelScene(sceneLayerWobbel),
                           constructModelScene(sceneLayerRays)};
  setLoadingDialog({});
  const char* const names[] = {"SceneIntroBox",       "SceneWater",     "SceneFetus",
                               "SceneAlien",          "SceneSkull",     "SceneHell",
                               "SceneLayerParticles", "SceneLayerWide", "SceneLayerRotCubes",
                               "SceneLayerWobbel",    "SceneLayerRays"};
  ASSERT_EQ(shown.size(), std::size(names));
  for (std::size_t i = 0; i < std::size(names); ++i) {
    EXPECT_STREQ(scenes[i]->name, names[i]);
    EXPECT_EQ(shown[i], std::string("Loading ") + names[i]);
    const SceneTable* table = findSceneTable(sceneTables(), names[i]);
    ASSERT_TRUE(table) << names[i];
    EXPECT_EQ(static_cast<int>(table->functions.size()), scenes[i]->functionCount);
    scenes[i]->destroy(scenes[i]);
  }
  destroyTextures();
}

}  // namespace
}  // namespace vex
