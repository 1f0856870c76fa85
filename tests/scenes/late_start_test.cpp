#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "scenes/scene_intro_box.h"
#include "scenes/scene_outtro.h"
#include "scenes/scene_skull.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/pak_builder.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_folder.h"
#include "tests/support/scene_models.h"
#include "tests/support/temporary_folder.h"
#include "timeline/part_dispatcher.h"

namespace vex {
namespace {

// What setters leave, once the time line has passed them.
struct LeftBehind {
  std::string logo, skull, scroller;
  bool operator==(const LeftBehind&) const = default;
};

std::string joined(std::initializer_list<float> values) {
  std::string text;
  for (const float value : values) text += std::to_string(value) + " ";
  return text;
}

ProjectData settings() {
  const auto call = [](const char* scene, const char* function, std::vector<ParameterData> parameters) {
    return CallData{.scene = scene, .function = function, .parameters = std::move(parameters)};
  };
  const auto numbers = [](std::initializer_list<double> values) {
    std::vector<ParameterData> parameters;
    for (const double value : values) parameters.push_back(constant("n", value));
    return parameters;
  };
  std::vector<ParameterData> laser{text("target", "rock"), constant("rate", 0.5)};
  return {.totalTime = 20,
          .parts = {{.name = "logo",
                     .pos = 0,
                     .length = 4,
                     .calls = {call("SceneIntroBox", "setVexFog", numbers({0.1, 0.2, 0.3, 0.4, 1, 2, 3, 4})),
                               call("SceneIntroBox", "showVex", numbers({0.5})),
                               call("SceneIntroBox", "setParticleCount", numbers({30}))}},
                    {.name = "skull",
                     .pos = 1,
                     .length = 3,
                     .calls = {call("SceneSkull", "setLights", numbers({0.5, 2, 0.1, 0.2, 0.3})),
                               call("SceneSkull", "setSparkRate", numbers({0.25})),
                               call("SceneSkull", "setLaser", laser),
                               call("SceneSkull", "setAnimationState",
                                    {text("object", "crow01"), constant("fraction", 0.5)}),
                               call("SceneSkull", "setParticleCount", numbers({1, 20}))}},
                    {.name = "scroller",
                     .pos = 2,
                     .length = 1,
                     .calls = {call("SceneOuttro", "preloadFont", {text("font", "font")}),
                               call("SceneOuttro", "preloadText", {text("text", "text.txt")}),
                               call("SceneOuttro", "preloadVectorBalls", {text("balls", "balls.hvv")})}}}};
}

class LateStart : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    writeFile("test.hvp", buildProject(settings()).bytes);
    writeFile("text.txt", "Hello");
    writeFile("balls.hvv", littleEndianBytes(0, 4));
    addPlainTextures({"data\\copperbar", "font", "data\\crow", "data\\skullbot", "data\\skullnorth",
                      "data\\skullwest", "data\\skullsouth", "data\\skulleast"});
  }

  template <typename Concrete>
  static Concrete* construct(PartDispatcher& dispatcher, const ModelScene<Concrete>& description,
                             const char* model) {
    Concrete* scene = newScene<Concrete>();
    beginScene(*scene, description.name, description.functions);
    fillScene(*scene, contentsOf(model));
    description.setUp(*scene);
    dispatcher.addScene(scene);
    return scene;
  }

  static LeftBehind after(const std::function<void(PartDispatcher&)>& play) {
    PartDispatcher dispatcher;
    const SceneIntroBox& box = *construct(dispatcher, sceneIntroBox, "intro_box");
    const SceneSkull& skull = *construct(dispatcher, sceneSkull, "skull");
    auto* outtro = newScene<SceneOuttro>();
    dispatcher.addScene(outtro);
    dispatcher.loadProject("test.hvp");
    play(dispatcher);
    const ParticleSystem& smoke = *skull.particleSystems[4];
    return {joined({box.meshes[3]->opacity, box.meshes[6]->opacity, box.meshes[5]->fixedTime,
                    box.lights[30]->flareStrength, box.particleSystems[0]->rate}),
            joined({skull.lights[0]->intensity, skull.lights[2]->intensity, skull.lights[2]->colour.b,
                    static_cast<float>(skull.sparkRate), static_cast<float>(skull.laserRate),
                    skull.meshes[7]->fixedTime, smoke.rate}) +
                (skull.laserTarget ? skull.laserTarget : "none"),
            std::string(outtro->fontName) + " " + outtro->text + " " + outtro->ballFile};
  }

  TemporaryFolder folder;
};

TEST_F(LateStart, LeavesTheSettingsThatPlayingWouldHaveLeft) {
  const LeftBehind untouched = after([](PartDispatcher&) {});
  const LeftBehind played = after([](PartDispatcher& dispatcher) {
    dispatcher.startTimeline();
    for (int frame = 0; frame < 60; ++frame) dispatcher.runFrame(static_cast<float>(frame) / 10);
  });
  const LeftBehind replayed = after([](PartDispatcher& dispatcher) {
    dispatcher.startTime = 6;
    dispatcher.startTimeline();
  });
  EXPECT_EQ(replayed.logo, played.logo);
  EXPECT_EQ(replayed.skull, played.skull);
  EXPECT_EQ(replayed.scroller, played.scroller);
  EXPECT_NE(played.logo, untouched.logo);
  EXPECT_NE(played.skull, untouched.skull);
  EXPECT_EQ(played.scroller, "font Hello balls.hvv");
}

}  // namespace
}  // namespace vex
