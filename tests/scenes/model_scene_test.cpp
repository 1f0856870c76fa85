#include "scenes/model_scene.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "base/options.h"
#include "base/report.h"
#include "base/window_size.h"
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
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/scene_builder.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"
#include "textures/bolt_texture.h"
#include "textures/texture_cache.h"

namespace vex {

using namespace geometry;
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
    options().showStats = true;
    SceneLayerRotCubes* scene = constructModelScene(sceneLayerRotCubes);
    scene->destroy(scene);
  });
  const std::string log = readFile("Demo.log");
  const std::size_t counts = log.find("Scene LayerRotCubes: 2 meshes 2 lights 8 verts 4 faces\n");
  const std::size_t end = log.find("destroying scene SceneLayerRotCubes\n");
  EXPECT_NE(counts, std::string::npos) << log;
  EXPECT_LT(counts, end);
}

// A scene before it is drawn, and an object that its functions leave to its track.
struct Witnessed {
  Scene* (*construct)();
  const char* witness;
};

template <const auto& description>
Scene* constructPrepared() {
  Scene* scene = constructModelScene(description);
  scene->prepare(false);
  return scene;
}

constexpr Witnessed witnessed[] = {
    {constructPrepared<sceneIntroBox>, "box"},         {constructPrepared<sceneWater>, "Dummy04"},
    {constructPrepared<sceneFetus>, "wall"},           {constructPrepared<sceneAlien>, "Beast"},
    {constructPrepared<sceneSkull>, "target"},         {constructPrepared<sceneHell>, "Sprayer01"},
    {constructPrepared<sceneLayerWide>, "b"},          {constructPrepared<sceneLayerRotCubes>, "b"},
    {constructPrepared<sceneLayerWobbel>, "b"},        {constructPrepared<sceneLayerRays>, "other"},
    {constructPrepared<sceneLayerParticles>, "Omni01"}};

// Rendering moves the witness to the time that it is given; functions that only set something do not.
TEST_F(Construction, FunctionsThatDrawRenderTheirSceneAtTheirTime) {
  writeSceneModels();
  addPlainTextures({"other", "data\\flare_normal", "data\\flare_shine", "data\\flare_highpass",
                    "data\\flare_particle", "data\\fetus_skin"});
  for (const char* kind : {"smoke", "fire"})
    for (int i = 1; i <= 4; ++i)
      addPlainTextures({("data\\flare_" + std::string(kind) + std::to_string(i)).c_str()});
  for (int i = 1; i <= 7; ++i) addPlainTextures({("data\\Light" + std::to_string(i)).c_str()});
  writeFile("data/spark.bmp", bmpBytes(boltSide, boltSide, plain({0, 0, 0})));
  setWindowSize(glTestWidth, glTestHeight);
  for (const auto& [construct, name] : witnessed) {
    Scene* scene = construct();
    SCOPED_TRACE(scene->name);
    Object3D& witness = *scene->find(name);
    witness.tracks.reset();
    addTrack(witness);
    witness.setAnimParams(30, false);  // 1 along x in a second
    witness.fixedTime = -1;
    const std::span<const FunctionRow> rows = findSceneEntry(sceneEntries(), scene->name)->functions;
    for (const FunctionRow& row : rows) {
      SCOPED_TRACE(row.name);
      std::vector<Argument> arguments;
      for (const FunctionParameter& parameter : row.parameters) {
        using enum ArgumentKind;
        if (parameter.kind == number || parameter.kind == wholeNumber || parameter.kind == cameraNumber)
          arguments.emplace_back(0.5);
        else
          arguments.emplace_back(parameter.kind == textureName ? "other" : scene->meshes[0]->name);
      }
      // Lights carry their place themselves.
      float& x = witness.kind == ObjectKind::light ? witness.position.x : witness.worldPosition.x;
      const float atRest = witness.kind == ObjectKind::light ? 0 : witness.position.x;
      x = atRest + 1;
      callFunction(rows, *scene, row.name, 4, arguments);
      EXPECT_NEAR(x - atRest, row.role == FunctionRole::draws ? 4 : 1, 1e-4);
    }
    scene->destroy(scene);
  }
  destroyTextures();
}

// Set-up switches lights on and off and remakes meshes before they are listed and counted.
TEST_F(Construction, ListsAndCountsWhatSetUpLeft) {
  writeSceneModels();
  Scene* const wobbel = constructModelScene(sceneLayerWobbel);
  EXPECT_FALSE(wobbel->hasActiveLights());
  Scene* const box = constructModelScene(sceneIntroBox);
  EXPECT_EQ(box->activeLights[0], 0);
  EXPECT_EQ(box->activeLights[1], -1);
  const ChildResult water = runInChild([] {
    options().showStats = true;
    constructModelScene(sceneWater);
  });
  EXPECT_EQ(water.exitCode, 0);
  // Seven squares and 51 x 51 points.
  EXPECT_NE(readFile("Demo.log").find("8 meshes 5 lights " + std::to_string(7 * 4 + 51 * 51) + " verts"),
            std::string::npos)
      << readFile("Demo.log");
  for (Scene* scene : {wobbel, box}) scene->destroy(scene);
  destroyTextures();
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
  const char* const names[] = {"SceneIntroBox",       "SceneWater",     "SceneFetus",
                               "SceneAlien",          "SceneSkull",     "SceneHell",
                               "SceneLayerParticles", "SceneLayerWide", "SceneLayerRotCubes",
                               "SceneLayerWobbel",    "SceneLayerRays"};
  ASSERT_EQ(shown.size(), std::size(names));
  for (std::size_t i = 0; i < std::size(names); ++i) {
    EXPECT_STREQ(scenes[i]->name, names[i]);
    EXPECT_EQ(shown[i], std::string("Loading ") + names[i]);
    const SceneEntry* table = findSceneEntry(sceneEntries(), names[i]);
    ASSERT_TRUE(table) << names[i];
    EXPECT_EQ(static_cast<int>(table->functions.size()), scenes[i]->functionCount);
    scenes[i]->destroy(scenes[i]);
  }
  destroyTextures();
}

}  // namespace
}  // namespace vex
