#include "engine/scene.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

void first(Scene*, float, const void* const*) {}
void second(Scene*, float, const void* const*) {}

Scene* sceneNamed(const char* name) {
  Scene* scene = newScene<Scene>();
  std::snprintf(scene->name, sceneNameSize, "%s", name);
  return scene;
}

TEST(Scene, FindsTheFirstFunctionOfExactlyThatName) {
  Scene scene;
  EXPECT_EQ(scene.findFunction("animate"), nullptr);
  scene.registerFunction(first, "animate");
  scene.registerFunction(second, "animate");
  scene.registerFunction(second, "Animate");
  EXPECT_EQ(scene.findFunction("animate"), first);
  EXPECT_EQ(scene.findFunction("Animate"), second);
  EXPECT_EQ(scene.findFunction("anim"), nullptr);
  EXPECT_EQ(scene.findFunction(""), nullptr);
}

TEST(Scene, TakesFortyFunctions) {
  const auto fill = [](int count) {
    Scene* scene = sceneNamed("SceneFull");
    for (int i = 0; i < count; ++i)
      scene->registerFunction(i == 39 ? second : first, std::to_string(i).c_str());
    EXPECT_EQ(scene->findFunction("39"), second);
    scene->destroy(scene);
  };
  fill(40);
  EXPECT_EQ(fatalText([&] { fill(41); }), "fCount exceeds 40 in scene SceneFull");
}

TEST(Scene, RefusesLongFunctionNames) {
  Scene scene;
  const std::string longest(31, 'x');
  scene.registerFunction(first, longest.c_str());
  EXPECT_EQ(scene.findFunction(longest.c_str()), first);
  EXPECT_EQ(fatalText([&] { scene.registerFunction(first, (longest + "y").c_str()); }),
            "function name " + longest + "y in scene  is longer than 31 characters");
}

TEST(Scene, IsDestroyedAsWhatItIs) {
  static int destroyed = 0;
  struct Sign {
    ~Sign() { ++destroyed; }
  };
  struct Concrete : Scene {
    Sign sign;
  };
  Scene* scene = newScene<Concrete>();
  scene->destroy(scene);
  EXPECT_EQ(destroyed, 1);
}

TEST(Scene, IsDestroyedKindByKind) {
  EXPECT_EQ(logText([] {
              auto* scene = newScene<Scene>();
              std::snprintf(scene->name, sceneNameSize, "SceneHell");
              scene->meshes.allocate(2);
              scene->lights.allocate(2);
              scene->viewers.allocate(1);
              scene->fogs.allocate(1);
              for (int i = 0; i < 2; ++i) {
                scene->meshes[i] = new Mesh;
                scene->lights[i] = new Light;
                std::snprintf(scene->meshes[i]->name, objectNameSize, "m%d", i);
                std::snprintf(scene->lights[i]->name, objectNameSize, "l%d", i);
              }
              scene->meshes[1]->kind = ObjectKind::fluid;
              scene->viewers[0] = new Viewer;
              scene->fogs[0] = new Fog;
              std::snprintf(scene->fogs[0]->name, objectNameSize, "f");
              scene->destroy(scene);
            }),
            "destroying scene SceneHell\n"
            "  destroying mesh m0\n"
            "  destroying fluid m1\n"
            "  destroying light l0\n"
            "  destroying light l1\n"
            "  destroying viewer\n"
            "  destroying fog f\n");
}

TEST(Scene, FindsMeshesThenLightsThenFogs) {
  TestScene scene(2, 2);
  scene.fogs.allocate(1);
  scene.fogs[0] = new Fog;
  const auto rename = [](Object3D& object, const char* name) {
    std::snprintf(object.name, objectNameSize, "%s", name);
  };
  rename(*scene.meshes[1], "Crow01");
  rename(*scene.lights[0], "crow01");
  rename(*scene.lights[1], "WaterParticle[");
  rename(*scene.fogs[0], "haze");
  EXPECT_EQ(scene.find("CROW01"), scene.meshes[1]);
  EXPECT_EQ(scene.find("waterParticle["), scene.lights[1]);
  EXPECT_EQ(scene.find("Haze"), scene.fogs[0]);
  for (const char* absent : {"crow0", "crow011", "waterparticle{", ""}) {
    EXPECT_EQ(fatalText([&] { scene.find(absent); }), std::string(absent) + " not found in SceneTest");
  }
}

TEST(Scene, ListsItsActiveLights) {
  struct Case {
    std::vector<int> active;
    std::vector<int> expected;
  };
  for (const Case& c : {Case{{}, {-1}}, Case{{1, 4, 2}, {1, 2, 4, -1}},
                        Case{{0, 1, 2, 3, 4, 5, 6, 8}, {0, 1, 2, 3, 4, 5, 6, 8, -1}}}) {
    TestScene scene(0, 9);
    for (const int index : c.active) scene.lights[index]->active = true;
    scene.lights[7]->active = true;
    scene.lights[7]->kind = ObjectKind::fog;  // anything that GL does not light with
    scene.collectActiveLights();
    scene.lights[7]->kind = ObjectKind::light;
    EXPECT_EQ(scene.hasActiveLights(), !c.active.empty());
    for (std::size_t i = 0; i < c.expected.size(); ++i) EXPECT_EQ(scene.activeLights[i], c.expected[i]);
  }
  TestScene none;
  none.collectActiveLights();
  EXPECT_FALSE(none.hasActiveLights());
  TestScene scene(0, 9);
  for (Light* light : scene.lights) light->active = true;
  EXPECT_EQ(fatalText([&] { scene.collectActiveLights(); }), "Scene SceneTest: 9 active lights (8 allowed)!");
}

TEST(Scene, CountsWhatItHolds) {
  TestScene scene(2, 3);
  makeGrid(*scene.meshes[0], 2, 3, {}, 1, 1);
  makeGrid(*scene.meshes[1], 1, 1, {}, 1, 1);
  const SceneCounts counts = scene.getCounts();
  EXPECT_EQ(counts.meshes, 2);
  EXPECT_EQ(counts.lights, 3);
  EXPECT_EQ(counts.vertices, 12 + 4);
  EXPECT_EQ(counts.faces, 12 + 2);
  const SceneCounts none = Scene().getCounts();
  EXPECT_EQ(none.meshes + none.lights + none.vertices + none.faces, 0);
}

TEST(Scene, HasTheViewerOfItsIndex) {
  TestScene scene;
  scene.viewers.allocate(2);
  for (int i = 0; i < 2; ++i) scene.viewers[i] = new Viewer;
  scene.viewerIndex = 1;
  EXPECT_EQ(scene.getViewer(), scene.viewers[1]);
  for (const int index : {2, 3, -1}) {
    scene.viewerIndex = index;
    EXPECT_EQ(fatalText([&] { scene.getViewer(); }),
              "Scene SceneTest: viewer[" + std::to_string(index) + "] not defined!");
  }
  scene.viewers.clear();
  EXPECT_EQ(fatalText([&] { scene.getViewer(); }), "Scene SceneTest: no viewers defined!");
}

using SceneBox = GlTest;

TEST_F(SceneBox, EmptyNamesLeaveTheirFaceOpen) {
  for (const char* name : {"d", "a", "b", "c"}) addWhiteTexture(name);
  Scene scene;
  for (const int id : scene.boxTextures) EXPECT_EQ(id, -1);
  scene.setBox("a", "", "b", "c", "", "A");
  EXPECT_EQ(scene.boxTextures, (std::array<int, 6>{1, -1, 2, 3, -1, 1}));
  EXPECT_FALSE(textureEntry(1).wrap);
  destroyTextures();
}

}  // namespace
}  // namespace vex
