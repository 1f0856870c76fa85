#include "textures/stat_text.h"

#include <gtest/gtest.h>

#include "base/options.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/temporary_folder.h"
#include "textures/gl_setup.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

constexpr std::size_t fontBytes = 6144 + 18432;

// Code 'A' is inked in its upper left pixel, with 255; the next pixel has 254.
std::string fontFile() {
  std::string bytes(fontBytes, '\0');
  bytes[6144 + ('A' - 32) * 192] = '\xff';
  bytes[6144 + ('A' - 32) * 192 + 3] = '\xfe';
  bytes[0] = '\xff';  // among the codes that are skipped
  return bytes;
}

class StatText : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    options().showStats = true;
    writeFile("data/font.raw", fontFile());
  }
  void TearDown() override {
    options().showStats = false;
    GlTest::TearDown();
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(StatText, CellsCoverTheViewport) {
  loadStatFont("data\\font.raw");
  struct Case {
    int column, line;
    char letter;
    float left, right, lower, upper;
  };
  for (const Case& c : {Case{0, 0, 'A', -1, -1 + 1 / 30.0f, 1 - 1 / 15.0f, 1},
                        Case{59, 29, ' ', 1 - 1 / 30.0f, 1, -1, -1 + 1 / 15.0f},
                        Case{30, 14, '\x7f', 0, 1 / 30.0f, 0, 1 / 15.0f}}) {
    const auto quads = asQuads(captureUnclipped([&] { drawText(c.column, c.line, "%c", c.letter); }));
    ASSERT_EQ(quads.size(), 1u);
    const float top = static_cast<float>(c.letter - 32) / 128.0f;
    const float bottom = top + 0.0078125f;
    const float expected[4][4] = {{c.left, c.lower, 0, bottom},
                                  {c.right, c.lower, 1, bottom},
                                  {c.right, c.upper, 1, top},
                                  {c.left, c.upper, 0, top}};
    for (std::size_t i = 0; i < 4; ++i) {
      const FeedbackVertex& vertex = quads[0][i];
      EXPECT_NEAR(vertex.x, expected[i][0], 1e-4f) << i;
      EXPECT_NEAR(vertex.y, expected[i][1], 1e-4f) << i;
      EXPECT_NEAR(vertex.texture[0], expected[i][2], 1e-6f) << i;
      EXPECT_NEAR(vertex.texture[1], expected[i][3], 1e-6f) << i;
      EXPECT_EQ(vertex.colour, (std::array<float, 4>{1, 1, 1, 1}));
    }
  }
}

TEST_F(StatText, DrawsUpToTheEndOfTheLine) {
  loadStatFont("data\\font.raw");
  struct Case {
    const char* text;
    std::vector<int> columns;  // of the characters drawn
  };
  for (const Case& c : {Case{"ab", {0, 1}}, Case{"ab\ncd", {0, 1}}, Case{"a\rb", {0}}, Case{"", {}},
                        Case{"a\x1f\x80\xff"
                             "b",
                             {0, 4}}}) {
    const auto quads = asQuads(captureUnclipped([&] { drawText(0, 3, "%s", c.text); }));
    ASSERT_EQ(quads.size(), c.columns.size()) << c.text;
    for (std::size_t i = 0; i < quads.size(); ++i) {
      EXPECT_NEAR(quads[i][0].x, static_cast<float>(c.columns[i]) / 30 - 1, 1e-4f) << c.text;
    }
  }
  const std::string endless(600, 'x');
  EXPECT_EQ(asQuads(captureUnclipped([&] { drawText(-300, 0, "%s", endless.c_str()); })).size(), 511u);
}

TEST_F(StatText, InkIsRedAndTheRestIsClear) {
  loadStatFont("data\\font.raw");
  const int id = getTexture("STATFONT", false);
  EXPECT_STREQ(textureEntry(id).name, "statFont");
  int width = 0, height = 0;
  const std::vector<std::uint8_t> bytes = readTexture(id, width, height);
  ASSERT_EQ(width, 8);
  ASSERT_EQ(height, 1024);
  const std::size_t ink = ('A' - 32) * 8 * 8 * 4;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool red = i == ink || i == ink + 3;
    ASSERT_EQ(bytes[i], red ? 255 : 0) << "byte " << i;
  }
}

TEST_F(StatText, StandsUpright) {
  std::string bytes = fontFile();
  for (std::size_t row = 0; row < 4; ++row) {
    for (std::size_t column = 0; column < 4; ++column)
      bytes[6144 + ('B' - 32) * 192 + row * 24 + column * 3] = '\xff';
  }
  writeFile("data/font.raw", bytes);
  loadStatFont("data\\font.raw");
  glViewport(0, 0, 960, 480);  // cells of 16 x 16 pixels; the lowest left part is what the buffer holds
  glClearColor(0, 0, 1, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  drawText(1, 28, "B");
  EXPECT_EQ(readPixel(19, 28), (std::array<int, 4>{255, 0, 0, 255}));
  EXPECT_EQ(readPixel(19, 19), (std::array<int, 4>{0, 0, 255, 255}));
  EXPECT_EQ(readPixel(28, 28), (std::array<int, 4>{0, 0, 255, 255}));
}

TEST_F(StatText, LeavesTexturingOnAndTheDepthTestLessOrEqual) {
  loadStatFont("data\\font.raw");
  glDepthFunc(GL_NEVER);
  glBlendFunc(GL_ONE, GL_ONE);
  EXPECT_EQ(captureFeedback([] { drawText(0, 0, "A"); }).size(), 2u);
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_LEQUAL);
  EXPECT_TRUE(glFlag(GL_TEXTURE_2D));
  EXPECT_TRUE(glFlag(GL_BLEND));
  EXPECT_EQ(glBlendFactors(), (BlendFactors{GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
}

TEST_F(StatText, SelectsUnitZeroOnlyWhereThereAreSeveral) {
  loadStatFont("data\\font.raw");
  static std::vector<GLenum> selected;
  selected.clear();
  const GlExtensions before = glExtensions;
  glExtensions.glActiveTextureARB = [](GLenum unit) { selected.push_back(unit); };
  glExtensions.textureUnits = 1;
  drawText(0, 0, "A");
  EXPECT_TRUE(selected.empty());
  glExtensions.textureUnits = 2;
  drawText(0, 0, "A");
  EXPECT_EQ(selected, (std::vector<GLenum>{GL_TEXTURE0}));
  glExtensions = before;
}

TEST_F(StatText, DoesNothingWithoutTheOption) {
  options().showStats = false;
  loadStatFont("absent.raw");
  EXPECT_EQ(textureCount(), 0);
  glDepthFunc(GL_GREATER);
  glBlendFunc(GL_ONE, GL_ZERO);
  glEnable(GL_CULL_FACE);
  glColor4f(0.5f, 0.25f, 0, 1);
  EXPECT_TRUE(captureFeedback([] { drawText(0, 0, "A"); }).empty());
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_GREATER);
  EXPECT_EQ(glBlendFactors(), (BlendFactors{GL_ONE, GL_ZERO}));
  EXPECT_FALSE(glFlag(GL_TEXTURE_2D));
  EXPECT_TRUE(glFlag(GL_CULL_FACE));
  EXPECT_EQ(glFloats(GL_CURRENT_COLOR), (std::array<float, 4>{0.5f, 0.25f, 0, 1}));
}

TEST_F(StatText, RefusesAFontThatIsAbsentOrShort) {
  EXPECT_EQ(fatalText([] { loadStatFont("data\\none.raw"); }), "statistics font data\\none.raw not found");
  for (const std::size_t size : {std::size_t{0}, std::size_t{6144}, fontBytes - 1}) {
    writeFile("data/font.raw", fontFile().substr(0, size));
    EXPECT_EQ(fatalText([] { loadStatFont("data\\font.raw"); }),
              "statistics font data\\font.raw holds " + std::to_string(size) + " bytes, 24576 are needed");
  }
  writeFile("data/font.raw", fontFile() + "more");
  loadStatFont("data\\font.raw");
  EXPECT_EQ(textureCount(), 1);
}

}  // namespace vex
