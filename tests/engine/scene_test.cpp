#include "engine/scene.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/fatal.h"
#include "tests/support/log_text.h"

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

TEST(Scene, LogsItsDestruction) {
  EXPECT_EQ(logText([] {
              Scene* scene = sceneNamed("SceneHell");
              scene->destroy(scene);
            }),
            "destroying scene SceneHell\n");
}

}  // namespace
}  // namespace vex
