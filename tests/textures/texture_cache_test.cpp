#include "textures/texture_cache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "base/files.h"
#include "base/options.h"
#include "base/random.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"
#include "textures/bolt_texture.h"
#include "textures/preload_list.h"

namespace vex {
namespace {

class Textures : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    pakOpen("vex.pak");  // none in this folder
  }
  void TearDown() override {
    options().showStats = false;
    GlTest::TearDown();
  }

  TemporaryFolder folder;
};

void writeBmp(const std::string& stem, Rgb colour) {
  writeFile(stem + ".bmp", bmpBytes(4, 4, plain(colour)));
}

void writeFrame(const std::string& name, int grey, int side = 8) {
  writeFile(name, jpegBytes(side, side, plain({grey, grey, grey})));
}

int greyOf(int id) {
  return static_cast<int>(textureEntry(id).pixels.at(0) & 0xff);
}

int wrapModeOf(int id, GLenum direction) {
  int mode = 0;
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(id));
  glGetTexParameteriv(GL_TEXTURE_2D, direction, &mode);
  return mode;
}

void addPlainTextures(int count) {
  for (int i = 0; i < count; ++i) addTexture(TextureEntry{}, ("t" + std::to_string(i)).c_str(), false);
}

}  // namespace

TEST_F(Textures, IdsAreGlNamesInLoadOrder) {
  for (int i = 0; i < 3; ++i) writeBmp("data/t" + std::to_string(i), {i * 50, 100, 200});
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(getTexture(("data\\T" + std::to_string(i)).c_str(), false), i);
  }
  EXPECT_EQ(getTexture("DATA\\t1", false), 1);
  EXPECT_EQ(textureCount(), 3);
  EXPECT_STREQ(textureEntry(2).name, "data\\t2");
  for (int i = 0; i < 3; ++i) {  // 0 among them, GL's default texture
    int width = 0, height = 0;
    const std::vector<std::uint8_t> bytes = readTexture(i, width, height);
    ASSERT_EQ(bytes.size(), 64u) << i;
    EXPECT_EQ(bytes[0], i * 50);
    EXPECT_EQ(bytes[2], 200);
    EXPECT_EQ(bytes[3], 255);
    EXPECT_EQ(std::memcmp(bytes.data(), textureEntry(i).pixels.data(), bytes.size()), 0);
  }
}

TEST_F(Textures, JpegGoesFirstAndTheCallersTextIsLowered) {
  writeBmp("both", {0, 0, 0});
  writeFrame("both.jpg", 200);
  char name[] = "BoTH";
  const int id = loadTexture(name, true);
  EXPECT_STREQ(name, "both");
  EXPECT_NEAR(greyOf(id), 200, 2);
  EXPECT_TRUE(textureEntry(id).wrap);
}

TEST_F(Textures, AnotherWrapModeUploadsAgain) {
  writeBmp("a", {1, 2, 3});
  const int id = getTexture("a", true);
  EXPECT_EQ(wrapModeOf(id, GL_TEXTURE_WRAP_S), GL_REPEAT);
  EXPECT_EQ(wrapModeOf(id, GL_TEXTURE_WRAP_T), GL_REPEAT);

  // What stands in the GL texture tells whether it was uploaded.
  const auto spoil = [&] {
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(id));
    const std::uint32_t spoilt[16] = {};
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, spoilt);
  };
  const auto firstByte = [&] {
    int width = 0, height = 0;
    return readTexture(id, width, height).at(0);
  };
  spoil();
  EXPECT_EQ(getTexture("A", true), id);
  EXPECT_EQ(firstByte(), 0);
  EXPECT_EQ(getTexture("A", false), id);
  EXPECT_EQ(firstByte(), 1);
  EXPECT_FALSE(textureEntry(id).wrap);
  EXPECT_EQ(wrapModeOf(id, GL_TEXTURE_WRAP_S), GL_CLAMP);
  EXPECT_EQ(wrapModeOf(id, GL_TEXTURE_WRAP_T), GL_CLAMP);
}

namespace {

// The viewport's 120 x 60 pixels show texture coordinates from `least` to `most` in both directions.
void drawTexture(int id, float least, float most) {
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(id));
  glColor4f(1, 1, 0.5f, 1);
  glBegin(GL_QUADS);
  for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
    glTexCoord2f(x ? most : least, y ? most : least);
    glVertex2f(static_cast<float>(2 * x - 1), static_cast<float>(2 * y - 1));
  }
  glEnd();
}

}  // namespace

// Three times three copies of 4 x 2 texels, each texel 10 x 10 pixels, after a texture that was set
// otherwise.
TEST_F(Textures, TexelsAreDrawnAsTheyStandRepeatedOrClamped) {
  const auto texel = [](int x, int y) { return Rgb{x * 80 + 10, y * 200 + 20, 250 - x * 60 - y * 20}; };
  writeFile("a.bmp", bmpBytes(4, 2, texel));
  glDisable(GL_BLEND);
  glDisable(GL_DEPTH_TEST);
  const float borderColour[] = {1, 1, 1, 1};
  for (const bool wrap : {false, true}) {
    destroyTextures();
    glBindTexture(GL_TEXTURE_2D, 0);
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, borderColour);
    for (const GLenum name : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
      glTexParameteri(GL_TEXTURE_2D, name, GL_MIRRORED_REPEAT);
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_LINEAR);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL);
    drawTexture(getTexture("a", wrap), -1, 2);
    // Between the four nearest texels, of which those outside a clamped picture are its border.
    const auto sampled = [&](int x, int y, int Rgb::*channel) {
      const auto place = [&](int pixel, int pixels, int texels) {
        const double coordinate = -1 + 3 * (pixel + 0.5) / pixels;
        return (wrap ? coordinate : std::clamp(coordinate, 0.0, 1.0)) * texels - 0.5;
      };
      const double u = place(x, glTestWidth, 4), v = place(y, glTestHeight, 2);
      double sum = 0;
      for (const int i : {0, 1}) {
        for (const int j : {0, 1}) {
          const int column = static_cast<int>(std::floor(u)) + i, row = static_cast<int>(std::floor(v)) + j;
          const bool border = !wrap && (column < 0 || column > 3 || row < 0 || row > 1);
          const double share = (1 - std::abs(u - column)) * (1 - std::abs(v - row));
          sum += share * (border ? 255 : texel((column + 8) % 4, (row + 4) % 2).*channel);
        }
      }
      return sum;
    };
    for (int y = 1; y < glTestHeight; y += 4) {
      for (int x = 2; x < glTestWidth; x += 5) {
        SCOPED_TRACE(testing::Message() << wrap << " " << x << " " << y);
        const std::array<int, 4> seen = readPixel(x, y);
        EXPECT_NEAR(seen[0], sampled(x, y, &Rgb::red), 3);
        EXPECT_NEAR(seen[1], sampled(x, y, &Rgb::green), 3);
        EXPECT_NEAR(seen[2], sampled(x, y, &Rgb::blue) / 2, 3);
      }
    }
    // A pixel that covers four texels.
    glViewport(0, 0, 2, 1);
    drawTexture(0, 0, 1);
    glViewport(0, 0, glTestWidth, glTestHeight);
    EXPECT_NEAR(readPixel(0, 0)[0], 50, 2);
    EXPECT_NEAR(readPixel(1, 0)[0], 210, 2);
    EXPECT_NEAR(readPixel(0, 0)[1], 120, 2);
  }
}

TEST_F(Textures, ATextureWithoutMaskIsOneOfItsOwn) {
  writeBmp("a", {1, 2, 3});
  writeBmp("a_mask", {0, 0, 0});
  writeBmp("b", {1, 2, 3});
  const auto alphaOf = [](int id) { return static_cast<int>(textureEntry(id).pixels.at(0) >> 24); };
  EXPECT_EQ(getTexture("b", false), 0);
  EXPECT_EQ(getTextureWithoutMask("b", false), 0);
  EXPECT_EQ(getTexture("a", true), 1);
  EXPECT_EQ(getTextureWithoutMask("A", false), 2);
  EXPECT_EQ(getTextureWithoutMask("a", true), 2);
  EXPECT_EQ(getTexture("a", true), 1);
  EXPECT_EQ(alphaOf(1), 0);
  EXPECT_EQ(alphaOf(2), 255);
  EXPECT_TRUE(textureEntry(2).wrap);
}

// As long as the GL takes: one row of that many texels.
TEST_F(Textures, SidesAreAsLongAsTheGlTakes) {
  const int most = glInteger(GL_MAX_TEXTURE_SIZE);
  writeFile("long.bmp", BmpFile{.width = most, .height = 1, .fill = 7}.bytes());
  int width = 0, height = 0;
  EXPECT_EQ(readTexture(getTexture("long", false), width, height).size(), static_cast<std::size_t>(most) * 4);
  writeFile("longer.bmp", BmpFile{.width = most * 2, .height = 1}.bytes());
  const std::string size = std::to_string(most * 2) + "x1", limit = std::to_string(most);
  EXPECT_EQ(fatalText([] { getTexture("longer", false); }),
            "texture longer.bmp is " + size + ", sides of at most " + limit + " are possible");
}

// The last of 31 characters counts as the first does, and of its characters only letters have two cases.
TEST_F(Textures, NamesAreComparedWholeAndIgnoreCase) {
  const std::string stem(30, 'n');
  const std::string names[] = {stem + "y", stem + "z", stem, "@[q", "`{q", "az", "aZb", "\xc4", "\xe4"};
  int id = 0;
  for (const std::string& name : names) {
    writeBmp(name, {id, 2, 3});
    EXPECT_EQ(getTexture(name.c_str(), false), id++) << name;
  }
  EXPECT_EQ(getTexture((std::string(30, 'N') + "Z").c_str(), false), 1);
  EXPECT_EQ(getTexture("AZ", false), 5);
  EXPECT_EQ(getTexture("AzB", false), 6);
  EXPECT_EQ(textureEntry(1).name, stem + "z");
  EXPECT_STREQ(textureEntry(6).name, "azb");
  for (int i = 0; i < id; ++i) EXPECT_EQ(greyOf(i), i);
}

TEST_F(Textures, ARejectedImageIsAnEmptyTexture) {
  writeFile("odd.bmp", bmpBytes(12, 4, plain({1, 2, 3})));
  const int id = getTexture("odd", false);
  EXPECT_EQ(textureEntry(id).width, 0);
  int width = -1, height = -1;
  EXPECT_TRUE(readTexture(id, width, height).empty());
}

TEST_F(Textures, OfOneNameTheFirstIsFoundAndTheLastIsAMovie) {
  writeBmp("twice", {1, 1, 1});
  writeFrame("twice1.jpg", 90);
  char name[] = "twice";
  EXPECT_EQ(loadTexture(name, false), 0);
  EXPECT_EQ(loadTexture(name, false), 1);
  EXPECT_EQ(getTexture("twice", false), 0);
  EXPECT_EQ(setMovieFrame("Twice", "twice1.jpg"), 1);
  EXPECT_EQ(greyOf(0), 1);
  EXPECT_NEAR(greyOf(1), 90, 2);
}

TEST_F(Textures, AMovieReadsAFrameWhenItIsNotTheLastOne) {
  writeFrame("m1.jpg", 50);
  writeFrame("m2.jpg", 100, 16);
  writeFrame("n1.jpg", 150);
  const int id = setMovieFrame("M", "M1.JPG");
  EXPECT_STREQ(textureEntry(id).name, "m");
  EXPECT_NEAR(greyOf(id), 50, 2);
  std::filesystem::remove("m1.jpg");  // would be fatal to read again
  EXPECT_EQ(setMovieFrame("m", "m1.jpg"), id);

  EXPECT_EQ(setMovieFrame("m", "m2.jpg"), id);
  EXPECT_NEAR(greyOf(id), 100, 2);
  EXPECT_EQ(textureEntry(id).width, 16);
  int width = 0, height = 0;
  EXPECT_NEAR(readTexture(id, width, height).at(0), 100, 2);
  EXPECT_EQ(width, 16);
  EXPECT_EQ(wrapModeOf(id, GL_TEXTURE_WRAP_S), GL_CLAMP);

  writeFrame("m2.jpg", 200);
  EXPECT_EQ(setMovieFrame("n", "n1.jpg"), id + 1);
  EXPECT_EQ(setMovieFrame("m", "m2.jpg"), id);
  EXPECT_NEAR(greyOf(id), 200, 2) << "one remembered frame for all movies";
  EXPECT_EQ(textureCount(), 2);
}

TEST_F(Textures, AMovieOfTheSameFrameFileGetsAPictureOfItsOwn) {
  writeFrame("a11.jpg", 70);
  const int first = setMovieFrame("a", "a11.jpg");
  const int second = setMovieFrame("a1", "a11.jpg");
  EXPECT_NE(first, second);
  EXPECT_NEAR(greyOf(second), 70, 2);
  destroyTextures();
  writeBmp("a", {1, 2, 3});
  EXPECT_EQ(getTexture("a", false), 0);
  EXPECT_NEAR(greyOf(setMovieFrame("a", "a11.jpg")), 70, 2) << "no frame is remembered";
}

TEST_F(Textures, NamesAndCountAreLimited) {
  const std::string longest(31, 'x');
  writeBmp(longest, {1, 2, 3});
  EXPECT_EQ(getTexture(longest.c_str(), false), 0);
  EXPECT_EQ(fatalText([&] { getTexture((longest + "y").c_str(), false); }),
            "texture name " + longest + "y is longer than 31 characters");
  EXPECT_EQ(fatalText([&] { setMovieFrame((longest + "y").c_str(), "a.jpg"); }),
            "texture name " + longest + "y is longer than 31 characters");
  const std::string longestFrame = std::string(59, 'f') + ".jpg", frame = "f" + longestFrame;
  writeFrame(longestFrame, 60);
  EXPECT_NEAR(greyOf(setMovieFrame("movie", longestFrame.c_str())), 60, 2);
  EXPECT_EQ(fatalText([&] { setMovieFrame("a", frame.c_str()); }),
            "movie frame name " + frame + " is longer than 63 characters");
  EXPECT_EQ(fatalText([] { getTexture("absent", false); }), "Texture absent.bmp not found");

  addPlainTextures(998);
  EXPECT_EQ(textureCount(), 1000);
  writeBmp("more", {1, 2, 3});
  EXPECT_EQ(fatalText([] { getTexture("more", false); }), "too many textures, more is more than 1000");
  EXPECT_EQ(getTexture("T997", false), 999);
}

TEST_F(Textures, DestructionDeletesThemAll) {
  writeBmp("a", {1, 2, 3});
  writeBmp("b", {1, 2, 3});
  getTexture("a", false);
  getTexture("b", false);
  EXPECT_TRUE(glIsTexture(1));
  options().showStats = true;
  std::filesystem::remove("Demo.log");
  destroyTextures();
  EXPECT_TRUE(readFile("Demo.log").ends_with("destroying textures\n"));
  EXPECT_FALSE(glIsTexture(1));
  EXPECT_EQ(textureCount(), 0);
}

TEST_F(Textures, ThePreloadListIsReadToItsEnd) {
  const std::string longLine(200, 'z');
  const std::string list = "a 1\n\nlonely\nB 0\n   \nc 7\n" + longLine + "\nd 1";
  for (const bool packed : {false, true}) {
    SCOPED_TRACE(packed ? "packed" : "loose");
    destroyTextures();
    options().showStats = false;
    if (packed) {
      std::filesystem::remove("used_textures.log");
      writeFile("vex.pak", pakBytes({{"used_textures.log", list}}));
      pakOpen("vex.pak");
    } else {
      writeFile("used_textures.log", list);
    }
    for (const char* name : {"a", "b", "c", "d"}) writeBmp(name, {1, 2, 3});
    options().showStats = true;
    writeFile("Demo.log", "");
    preloadTextures();
    options().showStats = false;
    ASSERT_EQ(textureCount(), 4);
    const bool wraps[] = {true, false, false, true};
    for (int id = 0; id < 4; ++id) {
      EXPECT_EQ(textureEntry(id).name, std::string(1, static_cast<char>('a' + id)));
      EXPECT_EQ(textureEntry(id).wrap, wraps[id]);
    }
    const std::string log = readFile("Demo.log");
    EXPECT_NE(log.find("preloading texture a w/ wrap\n"), std::string::npos);
    EXPECT_NE(log.find("preloading texture B\n"), std::string::npos);

    writeUsedTextures();
    EXPECT_EQ(readFile("used_textures.log"), "a 1\nb 0\nc 0\nd 1\n");
  }
}

TEST_F(Textures, ThePreloadListIsClosed) {
  writeFile("used_textures.log", "");
  for (int i = 0; i <= maxFileSlots; ++i) preloadTextures();
}

TEST_F(Textures, NoPreloadListIsNoError) {
  preloadTextures();
  EXPECT_EQ(textureCount(), 0);
}

TEST_F(Textures, TheBoltFollowsTheGenerator) {
  writeFile("spark.bmp", bmpBytes(128, 128, plain({201, 100, 50})));
  randomState() = 1;  // 41, 18467, 6334, 26500, 19169, 15724: right, right, down, down, right, down
  boltTexture("spark");
  std::uint32_t state = 1;
  for (int i = 0; i < 250; ++i) state = state * 214013u + 2531011u;
  EXPECT_EQ(randomState(), state);

  constexpr std::uint32_t core = 0xffffd050, edge = 0xffff5020, corner = 0xffef2000;
  struct Case {
    int row, column;
    std::uint32_t value;
  };
  const TextureEntry& entry = textureEntry(getTexture("spark", false));
  for (const Case& c :
       {Case{127, 0, edge}, Case{127, 1, edge}, Case{127, 2, edge}, Case{127, 3, corner}, Case{126, 0, core},
        Case{126, 1, core}, Case{126, 2, edge}, Case{126, 3, corner}, Case{125, 2, edge}, Case{125, 3, edge},
        Case{124, 2, core}, Case{124, 3, edge}, Case{0, 0, 0x7f193264}, Case{127, 4, 0x7f193264}}) {
    EXPECT_EQ(entry.pixels[static_cast<std::size_t>(c.row * 128 + c.column)], c.value)
        << c.row << ", " << c.column;
  }
  int width = 0, height = 0;
  const std::vector<std::uint8_t> bytes = readTexture(entry.id, width, height);
  const std::size_t start = 126 * 128 * 4;
  EXPECT_EQ((std::vector<int>(bytes.begin() + start, bytes.begin() + start + 4)),
            (std::vector<int>{0x50, 0xd0, 0xff, 0xff}));

  writeBmp("small", {1, 2, 3});
  EXPECT_EQ(fatalText([] { boltTexture("small"); }), "texture small is 4x4, the bolt needs 128x128");
}

// What a show does to its textures is undone when it begins anew.
TEST_F(Textures, TheyStandAgainAsTheyStood) {
  writeBmp("tile", {201, 100, 50});
  writeFile("spark.bmp", bmpBytes(128, 128, plain({201, 100, 50})));
  writeFrame("frame1.jpg", 40);
  const int tile = getTexture("tile", true), spark = getTexture("spark", false);
  const std::vector<std::uint32_t> loaded = textureEntry(spark).pixels;
  const std::vector<bool> wraps = textureWraps();
  getTexture("tile", false);
  boltTexture("spark");
  boltTexture("spark");
  const int movie = setMovieFrame("movie", "frame1.jpg");
  writeFrame("frame1.jpg", 200);
  restoreTextures(wraps);
  EXPECT_EQ(wrapModeOf(tile, GL_TEXTURE_WRAP_S), GL_REPEAT);
  EXPECT_EQ(textureEntry(spark).pixels, loaded);
  int width = 0, height = 0;
  const std::vector<std::uint8_t> shown = readTexture(spark, width, height);
  EXPECT_EQ(0, std::memcmp(shown.data(), loaded.data(), shown.size()));
  EXPECT_EQ(textureCount(), 3);
  setMovieFrame("movie", "frame1.jpg");  // read anew though it is the last one
  EXPECT_NEAR(greyOf(movie), 200, 3);
}

// From state 0 the bolt comes to the right edge and goes on straight down; from state 1 to the lower one.
TEST_F(Textures, TheBoltStaysInThePicture) {
  writeFile("spark.bmp", bmpBytes(128, 128, plain({0, 0, 0})));
  struct Case {
    std::uint32_t state;
    int row, column;  // of the lowest block
  };
  for (const Case& c : {Case{0, 3, 126}, Case{1, 0, 122}}) {
    const TextureEntry& entry = textureEntry(getTexture("spark", false));
    for (int i = 0; i < 8; ++i) darkenPixels(textureEntry(entry.id).pixels);  // black again
    randomState() = c.state;
    boltTexture("spark");
    const auto at = [&](int row, int column) {
      return entry.pixels[static_cast<std::size_t>(row * 128 + column)];
    };
    EXPECT_EQ(at(c.row, c.column), 0xffffd050) << c.state;
    EXPECT_EQ(at(c.row, c.column + 1), 0xffff5020) << c.state;
    EXPECT_EQ(at(c.row + 1, c.column + 1), 0xffef2000) << c.state;
    for (int row = 0; row < 100; ++row) EXPECT_EQ(at(row, 0), 0u) << c.state << ", row " << row;
  }
}

TEST(Pixels, DarkeningHalvesEachChannel) {
  std::array<std::uint32_t, 2> pixels{packPixel(255, 1, 128, 3), packPixel(0, 254, 7, 255)};
  darkenPixels(pixels);
  EXPECT_EQ(pixels[0], packPixel(127, 0, 64, 1));
  EXPECT_EQ(pixels[1], packPixel(0, 127, 3, 127));
}

}  // namespace vex
