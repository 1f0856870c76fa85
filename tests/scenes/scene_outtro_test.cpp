#include "scenes/scene_outtro.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

#include "base/clock.h"
#include "base/random.h"
#include "base/window_size.h"
#include "production/models/stage.h"
#include "scenes/ball_file.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/pak_builder.h"
#include "tests/support/scene_builder.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

std::string ballBytes(int count, const std::vector<float>& fields) {
  std::string bytes = littleEndianBytes(static_cast<std::uint32_t>(count), 4);
  for (const float field : fields) bytes += littleEndianBytes(std::bit_cast<std::uint32_t>(field), 4);
  return bytes;
}

const std::string twoBalls = ballBytes(2, {0.5f, 1, 0.25f, 0, 1, 2, 3, 2, 0, 0, 1, -4, -5, -6});

class Outtro : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    addPlainTextures({"data\\copperbar", "font", "data\\flare_vectorball"});
    randomState() = 1;
    scene.reset(newScene<SceneOuttro>());
    setFrame(0.25f);
  }
  void TearDown() override {
    scene.reset();
    GlTest::TearDown();
  }

  static void setFrame(float delta) {
    demoClock().time = 5;
    demoClock().previousTime = 5 - delta;
  }
  void call(const char* function, float t, const std::vector<Argument>& arguments) {
    callFunction(sceneOuttro.functions, *scene, function, t, arguments);
  }
  std::vector<std::array<FeedbackVertex, 4>> quadsOf(const char* function, float t,
                                                     const std::vector<Argument>& arguments) {
    return asQuads(captureUnclipped([&] { call(function, t, arguments); }));
  }
  void loadText(const std::string& text) {
    writeFile("text.txt", text);
    call("preloadFont", 0, {"font"});
    call("preloadText", 0, {"text.txt"});
  }

  struct Delete {
    void operator()(SceneOuttro* owned) const { owned->destroy(owned); }
  };
  TemporaryFolder folder;
  std::unique_ptr<SceneOuttro, Delete> scene;
};

TEST_F(Outtro, IsConstructed) {
  EXPECT_STREQ(scene->name, "SceneOuttro");
  EXPECT_EQ(scene->scrollPos, -20);
  EXPECT_TRUE(textureEntry(0).wrap);
  ASSERT_EQ(scene->stars.size(), 1000u);
  // The generator's first draws are 41, 18467, 6334, 26500, 19169, 15724.
  expectValues({{"x", scene->stars[0].x, 41},
                {"y", scene->stars[0].y, 467},
                {"z", scene->stars[0].z, 334},
                {"next x", scene->stars[1].x, 0},
                {"next y", scene->stars[1].y, 169},
                {"next z", scene->stars[1].z, 224}});
}

TEST_F(Outtro, ScrollerShowsGlyphsFromTheirCells) {
  loadText("aZ-?!,. 7\n");
  scene->scrollPos = 0;
  const std::array cells{30, 5, 0, 1, 2, 3, 4, 31, 31, 31};
  const auto quads = quadsOf("drawScroller", 0, {0, -1, 0, 0, 1, 0.5, 0.25});
  ASSERT_EQ(quads.size(), 21u);
  for (std::size_t i = 0; i < quads.size(); ++i) {
    SCOPED_TRACE(i);
    const double bottom = cells[i % cells.size()] / 32.0;
    const double left = static_cast<double>(i) / 10 - 1;
    const double corners[4][4] = {{left, 0.25 + 1 / 15.0, 0, bottom + 1 / 32.0},
                                  {left + 0.1, 0.25 + 1 / 15.0, 1, bottom + 1 / 32.0},
                                  {left + 0.1, 0.25 - 1 / 15.0, 1, bottom},
                                  {left, 0.25 - 1 / 15.0, 0, bottom}};
    for (std::size_t corner = 0; corner < 4; ++corner) {
      EXPECT_NEAR(quads[i][corner].x, corners[corner][0], 2e-5);
      EXPECT_NEAR(quads[i][corner].y, corners[corner][1], 2e-5);
      EXPECT_NEAR(quads[i][corner].texture[0], corners[corner][2], 1e-5);
      EXPECT_NEAR(quads[i][corner].texture[1], corners[corner][3], 1e-5);
    }
  }
}

TEST_F(Outtro, ScrollerEntersAtTheRight) {
  loadText("A");
  const auto blanks = quadsOf("drawScroller", 0, {0, -1, 0, 0, 1, 0, 0});
  for (int i = 0; i < 20; ++i)
    EXPECT_NEAR(blanks[static_cast<std::size_t>(i)][3].texture[1], 31 / 32.0, 1e-5);
  EXPECT_NEAR(blanks[20][3].texture[1], 30 / 32.0, 1e-5);
  // A quarter of a second at ten characters a second: -17.5, cut to -17.
  const auto quads = quadsOf("drawScroller", 0, {1, -1, 0, 0, 1, 0, 0});
  EXPECT_FLOAT_EQ(scene->scrollPos, -17.5f);
  EXPECT_NEAR(quads[16][3].texture[1], 31 / 32.0, 1e-5);
  EXPECT_NEAR(quads[17][3].texture[1], 30 / 32.0, 1e-5);
  EXPECT_NEAR(quads[17][0].x, 17.5 / 10 - 1, 2e-5);
}

TEST_F(Outtro, ScrollerRidesOnItsWave) {
  loadText("A");
  scene->scrollPos = 2.25f;  // f = 0.75
  const double zoom = 1.5, amplitude = 0.2, t = 0.3;
  for (const int mode : {1, 2, 3}) {
    SCOPED_TRACE(mode);
    const auto quads = quadsOf("drawScroller", 0.3f, {0, -0.75, mode, 0.1, 0.314159265, amplitude, 0.1});
    for (const int i : {0, 7}) {
      const auto height = [&](int e) {
        const double u = t * 0.1 * 10 * M_PI + (i + 0.75 + e) / 1.0;
        if (mode == 3) return 0.1;
        if (mode == 1) return 0.1 + amplitude * zoom * std::sin(u);
        return 0.1 + amplitude * zoom * 0.5 * (std::sin(u) + std::sin(2 * u));
      };
      const auto& quad = quads[static_cast<std::size_t>(i)];
      EXPECT_NEAR(quad[0].x, ((i + 0.75 - 1) / 20 * 2 - 1) * zoom, 3e-5);
      EXPECT_NEAR(quad[1].x - quad[0].x, zoom / 10, 3e-5);
      EXPECT_NEAR(quad[0].y, height(0) + zoom / 15, 3e-5);
      EXPECT_NEAR(quad[1].y, height(1) + zoom / 15, 3e-5);
      EXPECT_NEAR(quad[2].y, height(1) - zoom / 15, 3e-5);
      EXPECT_NEAR(quad[3].y, height(0) - zoom / 15, 3e-5);
    }
  }
}

TEST_F(Outtro, ScrollerIsNeverSmallerThanTheScreen) {
  loadText("A");
  for (const double zoom : {-1.0, -1.5, -3.0}) {
    const auto quads = quadsOf("drawScroller", 0, {0, zoom, 0, 0, 1, 0, 0});
    EXPECT_NEAR(quads[0][1].x - quads[0][0].x, 0.1, 2e-5) << zoom;
  }
}

TEST_F(Outtro, ScrollerNeedsFontAndText) {
  const auto scroll = [&] { call("drawScroller", 0, {0, 0, 0, 0, 1, 0, 0}); };
  EXPECT_EQ(fatalText(scroll), "Calling drawScroller w/o font or text!");
  call("preloadFont", 0, {"font"});
  EXPECT_EQ(fatalText(scroll), "Calling drawScroller w/o font or text!");
  EXPECT_EQ(fatalText([&] { call("preloadText", 0, {"none.txt"}); }), "Scroller text none.txt not found!");
}

TEST_F(Outtro, TextIsReadOnceForAName) {
  loadText("one");
  EXPECT_EQ(scene->text, "one");
  writeFile("text.txt", "two\n");
  call("preloadText", 0, {"text.txt"});
  EXPECT_EQ(scene->text, "one");
  writeFile("more.txt", std::string("t\0o", 3));
  call("preloadText", 0, {"more.txt"});
  EXPECT_EQ(scene->text, std::string("t\0o", 3));
  writeFile("none.txt", "");
  call("preloadText", 0, {"none.txt"});
  scene->scrollPos = 0;
  for (const auto& quad : quadsOf("drawScroller", 0, {0, -1, 0, 0, 1, 0, 0})) {
    EXPECT_NEAR(quad[3].texture[1], 31 / 32.0, 1e-5);
  }
}

TEST_F(Outtro, CopperBarsShrinkFromFrontToBack) {
  const double t = 0.7;
  for (const int mode : {0, 1, 2}) {
    SCOPED_TRACE(mode);
    const auto quads = quadsOf("showCopperBars", 0.7f, {4.9, 0.5, mode, 0.5, 0.2, 0.3, 0.8, 0.6, 0.4});
    ASSERT_EQ(quads.size(), 4u);
    for (int i = 0; i < 4; ++i) {
      const double scale = 1 - 0.125 * i;
      const double u = t * 0.5 * M_PI - i / (0.2 * 10 / M_PI);
      const double middle = 0.3 * (mode == 1 ? 0.5 * (std::sin(u) + std::sin(1.9 * u)) : std::sin(u));
      const auto& quad = quads[static_cast<std::size_t>(3 - i)];  // the front one last
      const double corners[4][4] = {{-1, middle - 0.085 * scale, -1 / scale, 0},
                                    {1, middle - 0.085 * scale, 1 / scale, 0},
                                    {1, middle + 0.085 * scale, 1 / scale, 1},
                                    {-1, middle + 0.085 * scale, -1 / scale, 1}};
      for (std::size_t corner = 0; corner < 4; ++corner) {
        EXPECT_NEAR(quad[corner].x, corners[corner][0], 2e-5);
        EXPECT_NEAR(quad[corner].y, corners[corner][1], 2e-5);
        EXPECT_NEAR(quad[corner].texture[0], corners[corner][2], 1e-5);
        EXPECT_NEAR(quad[corner].texture[1], corners[corner][3], 1e-5);
        EXPECT_NEAR(quad[corner].colour[0], 0.8 * scale, 1e-5);
        EXPECT_NEAR(quad[corner].colour[1], 0.6 * scale, 1e-5);
        EXPECT_NEAR(quad[corner].colour[2], 0.4 * scale, 1e-5);
        EXPECT_NEAR(quad[corner].colour[3], 1, 1e-5);
      }
    }
  }
  EXPECT_TRUE(quadsOf("showCopperBars", 0, {0.9, 1, 0, 0, 1, 0, 1, 1, 1}).empty());
}

TEST_F(Outtro, CopperBarsAreAThousandAtMost) {
  for (const float bars : {1000.0f, 1001.0f, 1e30f}) {
    const auto quads = quadsOf("showCopperBars", 0, {bars, 0, 0, 0, 1, 0, 1, 1, 1});
    ASSERT_EQ(quads.size(), 1000u) << bars;
    EXPECT_NEAR(quads[0][0].colour[0], 0.001, 1e-5) << bars;  // the last of a thousand
  }
}

// What a wild speed leaves is a place again as soon as the speed is one.
TEST_F(Outtro, MotionsRecoverFromSpeedsBeyondAllNumbers) {
  loadText("A");
  writeFile("one.hvv", ballBytes(1, {1, 1, 1, 1, 0, 0, 0}));
  call("preloadVectorBalls", 0, {"one.hvv"});
  constexpr float wild = std::numeric_limits<float>::infinity();
  for (const float speed : {wild, -wild, std::numeric_limits<float>::quiet_NaN(), 1.0f}) {
    call("drawScroller", 0, {speed, -1, 0, 0, 1, 0, 0});
    call("drawStars", 0, {speed, speed, speed});
    call("showVectorBalls", 0, {6, speed, 50, 60, 0.5});
  }
  expectValues({{"scroller", scene->scrollPos, 2.5},
                {"x", scene->starOffset.x, 125},
                {"y", scene->starOffset.y, 125},
                {"z", scene->starOffset.z, 125},
                {"balls", scene->ballAngle, 0.25 * 2 * M_PI}});
}

TEST_F(Outtro, BallsComeFromTheirFile) {
  writeFile("two.hvv", twoBalls);
  scene->viewerIndex = 3;
  call("preloadVectorBalls", 0, {"two.hvv"});
  ASSERT_EQ(scene->lights.count(), 2);
  EXPECT_EQ(scene->viewers.count(), 1);
  EXPECT_TRUE(scene->meshes);
  EXPECT_EQ(scene->meshes.count(), 0);
  EXPECT_EQ(scene->viewerIndex, 0);
  EXPECT_FALSE(scene->hasActiveLights());
  EXPECT_STREQ(scene->ballFile, "two.hvv");
  const Light& first = *scene->lights[0];
  expectValues({{"intensity", first.intensity, 0.5},
                {"red", first.colour.r, 1},
                {"green", first.colour.g, 0.25},
                {"blue", first.colour.b, 0},
                {"x", first.position.x, 1},
                {"y", first.position.y, 2},
                {"z", first.position.z, 3}});
  const Light& second = *scene->lights[1];
  expectValues({{"intensity", second.intensity, 2}, {"z", second.position.z, -6}, {"on", second.active, 0}});
  EXPECT_STREQ(second.name, "light1");
  EXPECT_EQ(second.flareKind, FlareKind::vectorBall);
  EXPECT_EQ(second.flareStrength, 1);

  writeFile("two.hvv", ballBytes(0, {}));  // the same name: not read again
  call("preloadVectorBalls", 0, {"two.hvv"});
  EXPECT_EQ(scene->lights.count(), 2);
  writeFile("none.hvv", ballBytes(0, {}));
  call("preloadVectorBalls", 0, {"none.hvv"});
  EXPECT_EQ(scene->lights.count(), 0);
}

// There are sixteen handles for files.
TEST_F(Outtro, LoadingClosesItsFiles) {
  for (const char* name : {"a.hvv", "b.hvv"}) writeFile(name, ballBytes(0, {}));
  for (const char* name : {"a.txt", "b.txt"}) writeFile(name, name);
  for (int i = 0; i < 17; ++i) {
    call("preloadVectorBalls", 0, {i % 2 == 0 ? "a.hvv" : "b.hvv"});
    call("preloadText", 0, {i % 2 == 0 ? "a.txt" : "b.txt"});
  }
  EXPECT_EQ(scene->text, "a.txt");
}

TEST_F(Outtro, BallFilesAreChecked) {
  EXPECT_EQ(fatalText([] { readBallFile("gone.hvv"); }), "Vector balls gone.hvv not found!");
  const struct {
    std::string bytes, complaint;
  } rows[] = {
      {"", "ends before the number of balls"},
      {"abc", "ends before the number of balls"},
      {ballBytes(-1, {}), "number of balls is -1, does not fit the file's size of 4 bytes"},
      {ballBytes(0x7fffffff, {1}), "number of balls is 2147483647, does not fit the file's size of 8 bytes"},
      {twoBalls.substr(0, 32), "number of balls is 2, does not fit the file's size of 32 bytes"},
      {twoBalls.substr(0, 59), "number of balls is 2, does not fit the file's size of 59 bytes"},
      {twoBalls + "x", "number of balls is 2, does not fit the file's size of 61 bytes"},
      {ballBytes(1, {1, 1, 1, 1, 0, INFINITY, 0}), "y of ball 0 is inf, not a usable number"},
  };
  for (const auto& [bytes, complaint] : rows) {
    writeFile("bad.hvv", bytes);
    EXPECT_EQ(fatalText([] { readBallFile("bad.hvv"); }), "bad.hvv: " + complaint);
  }
}

TEST_F(Outtro, BallFilesAreWrittenByteForByte) {
  writeBallFile("two.hvv", {{0.5f, {1, 0.25f, 0}, {1, 2, 3}}, {2, {0, 0, 1}, {-4, -5, -6}}});
  EXPECT_EQ(readFile("two.hvv"), twoBalls);
  const std::string warned = runInChild([] { writeBallFile("none\\two.hvv", {}); }).errorText;
  EXPECT_TRUE(warned.ends_with(": Vector balls none\\two.hvv cannot be written: No such file or directory\n"))
      << warned;
}

TEST_F(Outtro, BallModelsLeaveTheirFile) {
  Stage stage;
  stage.lights = {{.name = "first", .position = Vector(1, 2, 3), .colour = {1, 0.25f, 0}, .intensity = 0.5f},
                  {.name = "second", .position = Vector(-4, -5, -6), .colour = {0, 0, 1}, .intensity = 2}};
  stage.cameras = {{.name = "camera01", .position = Vector(0, 10, 60)}};
  writeFile("data/balls.ase", modelText(stage));
  call("preloadVectorBalls", 0, {"data\\balls.ase"});
  EXPECT_EQ(readFile("data/balls.hvv"), twoBalls);
  ASSERT_EQ(scene->lights.count(), 2);
  for (const Light* light : scene->lights) {
    EXPECT_EQ(light->flareKind, FlareKind::vectorBall);
    EXPECT_EQ(light->flareStrength, 1);
    EXPECT_FALSE(light->active);
  }
  EXPECT_STREQ(scene->ballFile, "data\\balls.ase");
  scene->viewers[0]->alpha = 0;
  call("showVectorBalls", 0, {6, 0.25, 50, 60, 0.5});

  call("preloadVectorBalls", 0, {"data\\balls.hvv"});
  ASSERT_EQ(scene->lights.count(), 2);
  EXPECT_STREQ(scene->lights[0]->name, "light0");
  EXPECT_TRUE(scene->lights[1]->position == Vector(-4, -5, -6));
}

TEST_F(Outtro, BallsTurnWithTheFrames) {
  writeFile("one.hvv", ballBytes(1, {1, 1, 1, 1, 0, 0, 0}));
  call("preloadVectorBalls", 0, {"one.hvv"});
  scene->viewers[0]->alpha = 0;
  for (int frame = 0; frame < 3; ++frame) call("showVectorBalls", 9, {6, 0.25, 50, 60, 0.5});
  const double angle = 3 * 0.25 * 0.25 * 2 * M_PI;
  const Viewer& viewer = *scene->viewers[0];
  expectValues({{"angle", scene->ballAngle, angle},
                {"size", scene->lights[0]->flareSize, 6},
                {"x", viewer.position.x, 50 * std::sin(angle)},
                {"y", viewer.position.y, 0},
                {"z", viewer.position.z, 50 * std::cos(angle)},
                {"target x", viewer.target.x, 0},
                {"target y", viewer.target.y, -25},
                {"target z", viewer.target.z, 0},
                {"fov", viewer.fov, 60}});
}

TEST_F(Outtro, NearerBallsHideFartherOnes) {
  // Blue stands nearer and comes first in the file.
  writeFile("two.hvv", ballBytes(2, {1, 0, 0, 1, 0, 0, 10, 1, 1, 0, 0, 0, 0, -10}));
  call("preloadVectorBalls", 0, {"two.hvv"});
  setFrame(0);
  glDepthMask(GL_FALSE);
  call("showVectorBalls", 0, {40, 0, 50, 60, 0});
  const auto pixel = readPixel(glTestWidth / 2, glTestHeight / 2);
  EXPECT_EQ(pixel[0], 0);
  EXPECT_GT(pixel[2], 200);
}

TEST_F(Outtro, StarsWrapInDepth) {
  scene->stars = {{250, 250, 0}, {260, 250, 495}, {0, 100, 250}};
  glEnable(GL_TEXTURE_2D);
  for (const GLenum state : {GL_STENCIL_TEST, GL_ALPHA_TEST, GL_LIGHTING}) glEnable(state);
  // A quarter of a second: offsets 10, -20, -25.
  std::vector<FeedbackPrimitive> points = captureFeedback([&] { call("drawStars", 0, {0.08, -0.16, -0.2}); });
  expectValues(
      {{"x", scene->starOffset.x, 10}, {"y", scene->starOffset.y, -20}, {"z", scene->starOffset.z, -25}});
  EXPECT_TRUE(glFlag(GL_TEXTURE_2D));
  for (const GLenum state : {GL_STENCIL_TEST, GL_ALPHA_TEST, GL_LIGHTING}) EXPECT_FALSE(glFlag(state));
  EXPECT_EQ(glInteger(GL_MATRIX_MODE), GL_PROJECTION);
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_LESS);
  EXPECT_TRUE(glFlag(GL_DEPTH_WRITEMASK));
  EXPECT_TRUE(glFlag(GL_POINT_SMOOTH));
  const double focal = 1 / std::tan(37.5 * M_PI / 180);
  const struct { double x, y, depth; } expected[] = {{10, -20, 485}, {20, -20, 480}, {-240, -170, 235}};
  std::size_t seen = 0;
  for (const auto& [x, y, depth] : expected) {
    if (std::abs(x * focal / 2) > depth || std::abs(y * focal) > depth) continue;  // clipped
    ASSERT_LT(seen, points.size());
    const FeedbackVertex& star = points[seen++].vertices[0];
    EXPECT_NEAR(star.x, x * focal / 2 / depth, 2e-4);
    EXPECT_NEAR(star.y, y * focal / depth, 2e-4);
    EXPECT_NEAR(star.w, depth, 1e-2);
    EXPECT_NEAR(star.colour[3], 1 - depth / 510, 1e-5);
  }
  EXPECT_EQ(seen, points.size());
  EXPECT_GE(seen, 2u);
  // The last star's size stays set.
  EXPECT_NEAR(glFloats(GL_POINT_SIZE)[0], 700.0 / (235 + 50), 1e-4);
}

TEST_F(Outtro, StarsClearTheDepthBehindThem) {
  glClearDepth(0.25);
  glClear(GL_DEPTH_BUFFER_BIT);
  glClearDepth(1);
  glDepthMask(GL_FALSE);
  call("drawStars", 0, {0, 0, 0});
  float depth = 0;
  glReadPixels(0, 0, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
  EXPECT_EQ(depth, 1);
}

}  // namespace
}  // namespace vex
