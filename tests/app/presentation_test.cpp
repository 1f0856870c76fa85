#include "app/presentation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/options.h"
#include "base/report.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/left_behind.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

namespace fs = std::filesystem;

using Step = std::pair<int, std::string>;  // percentage of the bar and text

class PresentationTest : public GlTest {
 protected:
  void TearDown() override {
    presentation.reset();
    GlTest::TearDown();
  }

  std::vector<Step> load() {
    static std::vector<Step> steps;
    steps.clear();
    setLoadingDialog(
        {.show = [](int percent, const char* text) { steps.emplace_back(percent, text); }, .close = nullptr});
    presentation.emplace();
    presentation->load();
    presentation->begin();
    return steps;
  }

  TemporaryFolder folder;
  std::optional<Presentation> presentation;
};

// Scenes draw from the one generator and load textures as they are constructed.
TEST_F(PresentationTest, LoadsItsScenesThenTheProject) {
  const std::vector<std::string> order{
      "SceneHelper", "SceneIntroBox",    "SceneWater",          "SceneFetus",     "SceneAlien",
      "SceneSkull",  "SceneHell",        "SceneLayerParticles", "SceneLayerWide", "SceneLayerRotCubes",
      "SceneOuttro", "SceneLayerWobbel", "SceneLayerRays"};
  writeRunFolder({.parts = {fillPart("red", 0, 10, 1, 0, 0)}});
  const std::vector<Step> steps = load();

  const int scenes = presentation->timeLine().sceneCount;
  ASSERT_EQ(static_cast<std::size_t>(scenes), order.size());
  ASSERT_EQ(steps.size(), order.size() + 2);
  for (int i = 0; i < scenes; ++i) {
    const std::string& name = order[static_cast<std::size_t>(i)];
    EXPECT_EQ(presentation->timeLine().scenes[i]->name, name);
    EXPECT_EQ(steps[static_cast<std::size_t>(i)], Step(i * 100 / 15, "Loading " + name));
  }
  EXPECT_EQ(steps[steps.size() - 2], Step(scenes * 100 / 15, "Loading project"));
  EXPECT_EQ(steps.back(), Step((scenes + 1) * 100 / 15, "Starting up"));
}

TEST_F(PresentationTest, PreparesEveryScene) {
  writeRunFolder({.parts = {fillPart("red", 0, 10, 1, 0, 0)}});
  load();
  for (int i = 0; i < presentation->timeLine().sceneCount; ++i) {
    for (const Mesh* mesh : presentation->timeLine().scenes[i]->meshes) {
      EXPECT_EQ(mesh->positions.size(), 3 * mesh->vertices.size()) << mesh->name;
    }
  }
}

TEST_F(PresentationTest, PreloadsTexturesBehindTheGlows) {
  writeRunFolder({.parts = {fillPart("red", 0, 10, 1, 0, 0)}});
  for (const char* name : {"tiled", "single"}) {
    writeFile(std::string("data/") + name + ".bmp", bmpBytes(4, 4, plain({255, 255, 255})));
  }
  writeFile("used_textures.log", "data\\tiled 1\ndata\\single 0\n");
  load();
  const int first = textureCount() - 9;
  ASSERT_GE(first, 0);
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(textureEntry(first + i).name, "data\\light" + std::to_string(i + 1));
    EXPECT_FALSE(textureEntry(first + i).wrap);
  }
  EXPECT_STREQ(textureEntry(first + 7).name, "data\\tiled");
  EXPECT_TRUE(textureEntry(first + 7).wrap);
  EXPECT_STREQ(textureEntry(first + 8).name, "data\\single");
  EXPECT_FALSE(textureEntry(first + 8).wrap);
}

// The three lines, read off the rows of the font that their characters take.
std::vector<std::string> overlayLines(Presentation& presentation) {
  std::vector<std::string> lines(3);
  for (const auto& quad : asQuads(captureUnclipped([&] { presentation.drawFrame(); }))) {
    const auto line = static_cast<std::size_t>(std::lround((1 - quad[2].y) * 15));
    lines.at(line) += static_cast<char>(32 + std::lround(quad[2].texture[1] * 128));
  }
  return lines;
}

// The average spans 20 steps and is worked out at frames 20, 41, 62 ...; the first one counts from 0.
TEST_F(PresentationTest, StatisticsFollowTheClock) {
  writeRunFolder({.parts = {}});
  options().showStats = true;
  load();
  const auto frame = [this](float time) {
    clockAdvanceTo(time);
    return overlayLines(*presentation);
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(frame(10.0f), (Lines{"fps: 100.00", "avg: 0.00", "time: 10.00"}));
  for (int n = 2; n <= 41; ++n) {
    // Four steps a second up to frame 20, then eight.
    const float time = n <= 20 ? 10.0f + (n - 1) * 0.25f : 14.75f + (n - 20) * 0.125f;
    const Lines lines = frame(time);
    const std::string average = n < 20 ? "0.00" : n < 41 ? "1.36" : "8.00";  // 20 / 14.75, 20 / 2.5
    EXPECT_EQ(lines[0], n <= 20 ? "fps: 4.00" : "fps: 8.00") << n;
    EXPECT_EQ(lines[1], "avg: " + average) << n;
    EXPECT_EQ(lines[2], formatted("time: %.2f", static_cast<double>(time))) << n;
  }
}

// Whoever asks for it gets a fatal error as a value, with everything that was made unwound.
TEST_F(PresentationTest, FailsAsAValueAndLoadsTheNextTime) {
  const std::vector<PartData> parts{fillPart("red", 0, 10, 1, 0, 0)};
  PartData unknown = parts[0];
  unknown.calls[0].function = "explode";
  const struct {
    std::function<void()> damage;
    std::string message;
  } cases[] = {
      {[] { fs::remove("test.hvp"); }, "no presentation in folder " + fs::current_path().string() +
                                           ": neither vex.pak nor test.hvp is there"},
      {[] {
         fs::remove("data/hell.ase");
         fs::remove("data/hell.hv3");
       },
       "File data\\hell.ase not found"},
      {[] { writeFile("data/light3.bmp", "BM"); },
       "texture data\\light3.bmp is cut short: its header needs 54 bytes, 2 are left"},
      {[&] { writeFile("test.hvp", buildProject({.parts = {unknown}}).bytes); },
       "function explode not found (project test.hvp: part red: SceneHelper)"},
      {[&] { writeFile("test.hvp", buildProject({.startTime = 5, .totalTime = 4}).bytes); },
       "Starting after end!"},
  };
  writeRunFolder({.parts = parts});
  load();
  presentation.reset();
  const int descriptors = openDescriptors();
  for (const auto& [damage, message] : cases) {
    damage();
    std::string told;
    try {
      const FatalErrorsThrown thrown;
      load();
    } catch (const FatalError& error) {
      told = error.what();
    }
    EXPECT_EQ(told, message);
    presentation.reset();
    EXPECT_EQ(openDescriptors(), descriptors) << message;
    EXPECT_EQ(liveTextures(), 0) << message;
    writeRunFolder({.parts = parts});
    load();
    presentation.reset();
  }
  EXPECT_EQ(fatalText([] { fatalError("and %s again", "ends"); }), "and ends again");
}

}  // namespace
}  // namespace vex
