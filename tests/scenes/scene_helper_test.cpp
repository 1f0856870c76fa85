#include "scenes/scene_helper.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <string>
#include <vector>

#include "base/pi.h"
#include "base/random.h"
#include "base/window_size.h"
#include "scenes/word_endings.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

using Paint = std::array<int, 4>;

// x, y, s, t
using Corners = std::array<std::array<float, 4>, 4>;

struct Call {
  std::string function;
  const char* text = nullptr;  // slot 0, where there is one
  std::vector<float> numbers{};
  float time = 0;

  void run() const {
    std::array<const void*, 9> slots{};
    std::size_t slot = 0;
    if (text) slots[slot++] = text;
    for (const float& number : numbers) slots[slot++] = &number;
    for (const FunctionRow& row : sceneHelper.functions) {
      if (row.name != function) continue;
      EXPECT_EQ(row.parameters.size(), slot) << function;
      Scene scene;
      row.function(&scene, time, slots.data());
      return;
    }
    ADD_FAILURE() << function;
  }
};

// Textures of one colour each: "still", "other" (two consecutive ids more), the logo's parts.
class Helper : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    randomState() = 1;  // the draws that follow: 41, 18467, 6334, 26500, 19169, 15724, 11478, 29358
    still = add("still", packPixel(200, 100, 50, 255));
    add("still2", packPixel(0, 255, 0, 255));
    add("still3", packPixel(0, 0, 255, 255));
    add("data\\vex_substract", packPixel(0, 0, 0, 255));
    title = textureCount();
    for (int i = 1; i <= 8; ++i) {
      add(logoFrameName("data\\vex", i), packPixel(static_cast<std::uint32_t>(i) * 30, 0, 0, 255));
    }
    ending = add("data\\end_ed01", packPixel(0, 100, 0, 255));
    add("data\\end_ed02", packPixel(0, 200, 0, 255));
  }

  static int add(const std::string& name, std::uint32_t pixel) {
    TextureEntry entry;
    entry.width = entry.height = 64;  // so that the border, which clamping blends in, stays narrow
    entry.pixels.assign(64 * 64, pixel);
    return addTexture(std::move(entry), name.c_str(), false);
  }

  // Leaves what the next call must set for itself: colour, blending and texture.
  static void clear(float red, float green, float blue) {
    glClearColor(red, green, blue, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(0.9f, 0.1f, 0.9f, 0.1f);
    glBlendFunc(GL_ONE, GL_ZERO);
    glDisable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 0);
  }

  // The call's quads; their corners under no clipping.
  static std::vector<std::array<FeedbackVertex, 4>> quadsOf(const Call& call) {
    return asQuads(captureUnclipped([&] { call.run(); }));
  }

  int still = 0, title = 0, ending = 0;
  TemporaryFolder folder;
};

void expectCorners(const std::array<FeedbackVertex, 4>& quad, const Corners& expected) {
  for (std::size_t i = 0; i < 4; ++i) {
    SCOPED_TRACE("corner " + std::to_string(i));
    EXPECT_NEAR(quad[i].x, expected[i][0], 2e-5f);
    EXPECT_NEAR(quad[i].y, expected[i][1], 2e-5f);
    EXPECT_NEAR(quad[i].texture[0], expected[i][2], 1e-5f);
    EXPECT_NEAR(quad[i].texture[1], expected[i][3], 1e-5f);
  }
}

void expectColour(const Paint& colour, const Paint& expected) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(colour[i], expected[i], 2) << "channel " << i;
}

std::uint32_t stateAfter(int draws) {
  std::uint32_t state = 1;
  for (; draws > 0; --draws) state = state * 214013u + 2531011u;
  return state;
}

// One plain call of each function that draws.
std::vector<Call> drawingCalls() {
  return {{"drawBitmap", "still", {-1, -1, 2, 2, 0, 0, 1, 0}},
          {"drawBitmapRepeat", "still", {-1, -1, 2, 2, 1, 1, 1, 0}},
          {"drawBitmapWave", "still", {-1, -1, 2, 2, 1, 0.1f, 1, 0}},
          {"fadeScreen", nullptr, {1, 0, 0, 1}},
          {"drawMovie", "m", {-1, -1, 2, 2, 1, 1, 25, 1}},
          {"drawNoise", "still", {0, 0, 0, 0, 1, 0, 0, 1}},
          {"drawVexLogo", "data\\end_ed01", {0, 0, 1, 0, 1, 1, 1, 1}}};
}

}  // namespace

TEST_F(Helper, QuadsStandWhereTheyAreAskedFor) {
  writeFile("m7.jpg", jpegBytes(8, 8, plain({9, 9, 9})));
  struct Case {
    Call call;
    Corners corners;
    float alpha;
  };
  const std::vector<Case> cases{
      {{"drawBitmap", "still", {-1, -1, 2, 2, 0, 0, 0.5f, 0}},
       {{{-1, 1, 0, 1}, {1, 1, 1, 1}, {1, -1, 1, 0}, {-1, -1, 0, 0}}},
       0.5f},
      {{"drawBitmap", "still", {0.25f, -0.5f, 0.5f, 0.75f, 0, 1, 1, 0}},
       {{{0.25f, 0.5f, 0, 1}, {0.75f, 0.5f, 1, 1}, {0.75f, -0.25f, 1, 0}, {0.25f, -0.25f, 0, 0}}},
       1},
      {{"drawBitmapRepeat", "still", {-0.5f, 0.25f, 1, 0.5f, 3, 2.5f, 0.25f, 1}},
       {{{-0.5f, -0.25f, 0, 2.5f}, {0.5f, -0.25f, 3, 2.5f}, {0.5f, -0.75f, 3, 0}, {-0.5f, -0.75f, 0, 0}}},
       0.25f},
      {{"drawMovie", "m", {0, 0, 1, 2, 7, 7, 25, 0.75f}},
       {{{0, 0, 0, 1}, {1, 0, 1, 1}, {1, -2, 1, 0}, {0, -2, 0, 0}}},
       0.75f},
      // Draws 41, 8467 and 6334 less 5000, over 5000: -0.9918, 0.6934, 0.2668.
      {{"drawNoise", "still", {0.5f, 0.25f, 0.1f, -0.2f, 0.8f, 0.5f, 0, 2}, 3},
       {{{-1, 1, 0.6967f, -1.6333f},
         {1, 1, 1.1967f, -1.6333f},
         {1, -1, 1.1967f, -0.6333f},
         {-1, -1, 0.6967f, -0.6333f}}},
       0.3041f},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call.function);
    randomState() = 1;
    const auto quads = quadsOf(c.call);
    ASSERT_EQ(quads.size(), 1u);
    expectCorners(quads[0], c.corners);
    const std::array<float, 4>& colour = quads[0][0].colour;
    EXPECT_EQ((std::array{colour[0], colour[1], colour[2]}), (std::array{1.0f, 1.0f, 1.0f}));
    EXPECT_NEAR(colour[3], c.alpha, 1e-5f);
  }
  EXPECT_EQ(randomState(), stateAfter(3));
}

TEST_F(Helper, TheNoiseWindowFollowsTheAspect) {
  struct Case {
    float aspect, width, height;
  };
  for (const Case& c :
       {Case{2, 0.5f, 1}, Case{0.5f, 1, 0.5f}, Case{1, 1, 1}, Case{0, 1, 1}, Case{-3, 1, 1}}) {
    const auto quads = quadsOf({"drawNoise", "still", {0, 0, 0, 0, 1, 0, 0, c.aspect}});
    ASSERT_EQ(quads.size(), 1u);
    EXPECT_NEAR(quads[0][2].texture[0] - quads[0][0].texture[0], c.width, 1e-6f) << c.aspect;
    EXPECT_NEAR(quads[0][2].texture[1] - quads[0][0].texture[1], c.height, 1e-6f) << c.aspect;
  }
}

TEST_F(Helper, TheWaveIsASwayingGrid) {
  // Places are those of the plain picture, whatever the sway.
  const float x = -0.5f, y = -0.75f, w = 1, h = 0.5f, amplitude = 0.1f, speed = 2, time = 0.3f;
  const auto quads = quadsOf({"drawBitmapWave", "still", {x, y, w, h, speed, amplitude, 0.5f, 0}, time});
  ASSERT_EQ(quads.size(), 256u);
  const double phase = 0.6;
  const auto corner = [&](int a, int b) {
    return std::array<float, 4>{
        static_cast<float>(-0.5 + a / 16.0), static_cast<float>(0.25 + b / 32.0),
        static_cast<float>(a / 16.0 + 0.1 * std::sin(b * std::numbers::pi / 8 + phase)),
        static_cast<float>(b / 16.0 + 0.1 * std::cos(a * std::numbers::pi / 8 + 0.77 * phase))};
  };
  for (int j = 0; j < 16; ++j) {
    for (int i = 0; i < 16; ++i) {
      SCOPED_TRACE("cell " + std::to_string(i) + ", " + std::to_string(j));
      expectCorners(quads[static_cast<std::size_t>(j * 16 + i)],
                    {corner(i, j), corner(i + 1, j), corner(i + 1, j + 1), corner(i, j + 1)});
    }
  }
}

TEST_F(Helper, TheLogoIsABackingAndTwoWordsALayer) {
  const float t = 0.7f, X = 0.25f, Y = 0.5f, z = 0.6f;
  const auto quads = quadsOf({"drawVexLogo", "data\\end_ed01", {X, -Y, z, 0, 0.8f, 2, 1.5f, 0.5f}, t});
  ASSERT_EQ(quads.size(), 5u);
  // sin(1.029) = 0.856706, cos(0.889) = 0.630189, sin(1.281) = 0.958309, cos(1.155) = 0.403919
  const float left = -0.47f + 0.0514024f, right = 0.97f + 0.0378113f;
  const float top = 0.7f + 0.0287493f, bottom = 0.3f + 0.0121176f;
  expectCorners(quads[0],
                {{{left, top, 0, 1}, {right, top, 1, 1}, {right, bottom, 1, 0}, {left, bottom, 0, 0}}});
  const auto word = [](float l, float r, float scale) {
    return Corners{{{l * scale, 0.65f * scale, 0, 1},
                    {r * scale, 0.65f * scale, 1, 1},
                    {r * scale, 0.35f * scale, 1, 0},
                    {l * scale, 0.35f * scale, 0, 0}}};
  };
  expectCorners(quads[1], word(-0.35f, 0.052f, 1));
  expectCorners(quads[2], word(-0.05f, 0.85f, 1));
  expectCorners(quads[3], word(-0.35f, 0.052f, 1.5f));
  expectCorners(quads[4], word(-0.05f, 0.85f, 1.5f));
  const float alphas[] = {0.8f, 0.8f, 0.8f, 0.4f, 0.4f};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_NEAR(quads[i][0].colour[3], alphas[i], 1e-5f) << i;
  EXPECT_EQ(quadsOf({"drawVexLogo", "data\\end_ed01", {X, -Y, z, 0, 0.8f, 0.9f, 1, 1}, t}).size(), 1u);
}

TEST_F(Helper, GlitchesDrawInOrder) {
  struct Case {
    float frames, probability;
    int texture, draws;
  };
  for (const Case& c :
       {Case{3, 0.5f, 2, 2},      // 41 of 100 is a glitch, 18467 mod 3 = 2
        Case{3.9f, 0.42f, 2, 2},  // truncated to 3
        Case{3, 0.41f, 0, 1}, Case{3, 0, 0, 1}, Case{0.9f, 1, 0, 0}, Case{-2, 1, 0, 0}, Case{2, 1, 1, 2}}) {
    randomState() = 1;
    Call{"drawBitmap", "still", {-1, -1, 2, 2, c.frames, c.probability, 1, 0}}.run();
    EXPECT_EQ(glInteger(GL_TEXTURE_BINDING_2D), still + c.texture) << c.frames << ", " << c.probability;
    EXPECT_EQ(randomState(), stateAfter(c.draws)) << c.frames << ", " << c.probability;
  }
}

TEST_F(Helper, TheLogoGlitchesTitleThenEnding) {
  struct Case {
    float probability;
    int titleFrame, endingFrame, layers, draws;
  };
  // 41 and 18467: frame 18467 mod 8 = 3; 6334 and 26500: frame 0. With 0.4: 41 no; 67 (18467) no.
  // Each layer draws anew; a second one, here without alpha, is 19169 no, 15724 yes, 11478: frame 0.
  for (const Case& c : {Case{0.5f, 3, 0, 1, 4}, Case{0.5f, 3, 0, 2, 7}, Case{0.4f, 0, 0, 1, 2},
                        Case{0, 0, 0, 1, 2}, Case{0, 0, 0, 2, 4}}) {
    SCOPED_TRACE(c.probability);
    randomState() = 1;
    clear(0, 0, 0);
    Call{"drawVexLogo", "data\\end_ed01", {0, 0, 1, c.probability, 1, static_cast<float>(c.layers), 1, 0}}
        .run();
    EXPECT_EQ(randomState(), stateAfter(c.draws));
    EXPECT_EQ(glInteger(GL_TEXTURE_BINDING_2D), ending + c.endingFrame);
    expectColour(readPixel(6, 30), {(c.titleFrame + 1) * 30, 0, 0, 0});     // x = -0.9: the title alone
    expectColour(readPixel(35, 30), {(c.titleFrame + 1) * 30, 100, 0, 0});  // x = -0.41: where they overlap
    expectColour(readPixel(90, 30), {0, 100, 0, 0});                        // x = 0.5: the ending alone
  }
}

TEST_F(Helper, LogosHaveAThousandLayersAtMost) {
  for (const float layers : {1000.0f, 1001.0f, 1e30f}) {
    EXPECT_EQ(quadsOf({"drawVexLogo", "data\\end_ed01", {0, 0, 1, 0, 1, layers, 1, 1}}).size(), 2001u)
        << layers;
  }
}

TEST_F(Helper, MoviesChooseTheirFrame) {
  for (int i = 1; i <= 10; ++i) {
    writeFile("m" + std::to_string(i) + ".jpg", jpegBytes(8, 8, plain({i * 20, i * 20, i * 20})));
  }
  struct Case {
    float time, first, last;
    int frame;
  };
  for (const Case& c :
       {Case{0, 1, 10, 1}, Case{0.4f, 1, 10, 1}, Case{0.39f, 1, 10, 10}, Case{-0.04f, 1, 10, 9},
        Case{0.12f, 4, 6, 4}, Case{0.08f, 4.9f, 6.9f, 6}, Case{-0.13f, 4, 6, 6}, Case{100.04f, 5, 5, 5},
        // Reversed: -3 frames, so 7, 8, 9 forwards and 3, 2, 1 backwards; none at all between 4 and 3.
        Case{0.08f, 7, 3, 9}, Case{0.12f, 7, 3, 7}, Case{-0.04f, 7, 3, 2}, Case{0.2f, 4, 3, 4},
        Case{-0.2f, 4, 3, 3}}) {
    Call{"drawMovie", "m", {-1, -1, 2, 2, c.first, c.last, 25, 1}, c.time}.run();
    const int id = setMovieFrame("m", ("m" + std::to_string(c.frame) + ".jpg").c_str());
    EXPECT_EQ(glInteger(GL_TEXTURE_BINDING_2D), id);
    expectColour(readPixel(60, 30), {c.frame * 20, c.frame * 20, c.frame * 20, 0});
  }
  EXPECT_EQ(fatalText([] {
              Call{"drawMovie", "m", {-1, -1, 2, 2, 11, 12, 25, 1}}.run();
            }),
            "Texture m11.jpg not found");
}

TEST_F(Helper, SetViewportCountsUpwards) {
  setWindowSize(800, 600);
  const std::vector<std::pair<std::vector<float>, std::array<float, 4>>> cases{
      {{-1, -1, 2, 2}, {0, 0, 800, 600}},
      {{-1, -1, 1, 1}, {0, 0, 400, 300}},
      {{0, 0.5f, 0.5f, 0.25f}, {400, 450, 200, 75}},
      {{-0.984375f, -0.9921875f, 0.9990234375f, 0.9990234375f}, {6, 2, 399, 299}}};
  for (const auto& [numbers, viewport] : cases) {
    Call{"setViewport", nullptr, numbers}.run();
    EXPECT_EQ(glFloats(GL_VIEWPORT), viewport);
  }
}

TEST_F(Helper, BlendModesMixWithThePicture) {
  struct Case {
    float mode;
    Paint pixel;  // of (200, 100, 50) at alpha 0.5 over (100, 100, 100)
  };
  for (const Case& c :
       {Case{0, {150, 100, 75, 0}}, Case{0.99f, {150, 100, 75, 0}}, Case{1, {200, 150, 125, 0}},
        Case{1.9f, {200, 150, 125, 0}}, Case{2, {22, 61, 80, 0}}}) {
    for (const Call& call : {Call{"drawBitmap", "still", {-1, -1, 2, 2, 0, 0, 0.5f, c.mode}},
                             Call{"drawBitmapRepeat", "still", {-1, -1, 2, 2, 1, 1, 0.5f, c.mode}},
                             Call{"drawBitmapWave", "still", {-1, -1, 2, 2, 1, 0.1f, 0.5f, c.mode}},
                             Call{"drawNoise", "still", {0, 0, 0, 0, 0.5f, 0, c.mode, 1}}}) {
      SCOPED_TRACE(call.function + " " + std::to_string(c.mode));
      clear(100 / 255.0f, 100 / 255.0f, 100 / 255.0f);
      call.run();
      expectColour(readPixel(60, 30), c.pixel);
    }
  }
}

TEST_F(Helper, FadesCoverTheScreen) {
  clear(0, 0, 1);
  Call{"fadeScreen", nullptr, {1, 0.5f, 0, 0.5f}}.run();
  for (const auto& [x, y] : {std::pair{0, 0}, {119, 59}, {0, 59}, {119, 0}}) {
    expectColour(readPixel(x, y), {128, 64, 128, 0});
  }
  Call{"fadeScreen", nullptr, {1, 0, 0, 1}}.run();
  expectColour(readPixel(60, 30), {255, 0, 0, 0});
  EXPECT_FALSE(glFlag(GL_TEXTURE_2D));
}

TEST_F(Helper, AFadeOfAlphaZeroTouchesNothing) {
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_CULL_FACE);
  glDepthFunc(GL_GREATER);
  glBlendFunc(GL_ONE, GL_ZERO);
  glColor4f(0.5f, 0.25f, 0, 1);
  for (const float alpha : {0.0f, -1.0f}) {
    EXPECT_TRUE(captureFeedback([&] { Call{"fadeScreen", nullptr, {1, 1, 1, alpha}}.run(); }).empty());
  }
  EXPECT_TRUE(glFlag(GL_TEXTURE_2D));
  EXPECT_TRUE(glFlag(GL_CULL_FACE));
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_GREATER);
  EXPECT_EQ(glBlendFactors(), (BlendFactors{GL_ONE, GL_ZERO}));
  EXPECT_EQ(glFloats(GL_CURRENT_COLOR), (std::array<float, 4>{0.5f, 0.25f, 0, 1}));
}

// Whatever a scene left on, the picture is the same, lies over all depths and leaves its own none.
TEST_F(Helper, DrawsOverAnyStateAndRestoresTheDepthTest) {
  writeFile("m1.jpg", jpegBytes(8, 8, plain({9, 99, 9})));
  for (const Call& call : drawingCalls()) {
    SCOPED_TRACE(call.function);
    clear(0.2f, 0.4f, 0.6f);
    call.run();
    const Paint expected = readPixel(25, 30);

    clear(0.2f, 0.4f, 0.6f);
    glDepthMask(GL_TRUE);
    glClearDepth(0);
    glClear(GL_DEPTH_BUFFER_BIT);
    glDepthFunc(GL_LESS);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    const bool frontCulled = captureFeedback([&] { call.run(); }).empty();
    glCullFace(GL_BACK);
    glEnable(GL_CULL_FACE);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_GEN_S);
    glEnable(GL_TEXTURE_GEN_T);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_NEVER, 0);
    glBlendFunc(GL_ZERO, GL_ONE);
    call.run();
    EXPECT_FALSE(frontCulled);
    EXPECT_EQ(readPixel(25, 30), expected);
    float depth = 1;
    glReadPixels(25, 30, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 0);
    EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_LESS);
    EXPECT_TRUE(glFlag(GL_DEPTH_WRITEMASK));
    EXPECT_EQ(glFlag(GL_TEXTURE_2D), call.function != "fadeScreen");
    const BlendFactors expectedFactors = call.function == "drawNoise" ? BlendFactors{GL_ONE, GL_ZERO}
                                         : call.function == "drawVexLogo"
                                             ? BlendFactors{GL_SRC_ALPHA, GL_ONE}
                                             : BlendFactors{GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
    EXPECT_EQ(glBlendFactors(), expectedFactors);
  }
}

TEST_F(Helper, TexturesRepeatWhereTheyTile) {
  writeFile("m1.jpg", jpegBytes(8, 8, plain({9, 99, 9})));
  for (const Call& call : drawingCalls()) {
    if (call.function == "fadeScreen") continue;
    call.run();
    int mode = 0;
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &mode);
    const bool tiles = call.function == "drawBitmapRepeat" || call.function == "drawBitmapWave" ||
                       call.function == "drawNoise";
    EXPECT_EQ(mode, tiles ? GL_REPEAT : GL_CLAMP) << call.function;
  }
}

TEST_F(Helper, ConstructionLoadsTheLogoInARow) {
  destroyTextures();
  const std::vector<std::string> endings{"ed", "ing", "ation", "atious", "er", "illum", "edly"};
  std::vector<std::string> names;
  for (int i = 1; i <= 8; ++i) names.push_back("data\\vex0" + std::to_string(i));
  for (const std::string& text : endings) {
    names.push_back("data\\end_" + text + "01");
    names.push_back("data\\end_" + text + "02");
  }
  for (const std::string& name : names)
    writeFile("data/" + name.substr(5) + ".bmp", bmpBytes(4, 4, plain({1, 2, 3})));
  const SceneHelper scene;
  EXPECT_STREQ(scene.name, "SceneHelper");
  ASSERT_EQ(textureCount(), static_cast<int>(names.size()));
  for (int id = 0; id < textureCount(); ++id) {
    EXPECT_EQ(textureEntry(id).name, names[static_cast<std::size_t>(id)]);
    EXPECT_FALSE(textureEntry(id).wrap);
  }
}

}  // namespace vex
