#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/options.h"
#include "base/random.h"
#include "studio/show/show.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/image_files.h"
#include "tests/support/left_behind.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

constexpr Rgb red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, white{255, 255, 255}, black{0, 0, 0};

std::string bmp(const Rgb& colour, int side = 4) {
  return bmpBytes(side, side, plain(colour));
}

CallData fullPicture(const std::string& function, const std::string& name) {
  CallData call{.scene = "SceneHelper",
                .function = function,
                .parameters = {text("name", name), constant("x", -1), constant("y", -1), constant("w", 2),
                               constant("h", 2)}};
  if (function == "drawMovie") {
    for (const double value : {1.0, 2.0, 1.0, 1.0}) call.parameters.push_back(constant("v", value));
  } else {
    for (const double value : {0.0, 0.0, 1.0, 0.0}) call.parameters.push_back(constant("v", value));
  }
  return call;
}

// A picture on blue for two seconds, a movie of a frame a second for two more, then a scene.
Project pictures(const std::string& music = "") {
  PartData ground = fillPart("ground", 0, 2, 0, 0, 1);
  PartData picture{.name = "picture",
                   .pos = 0,
                   .length = 2,
                   .track = 1,
                   .calls = {fullPicture("drawBitmap", "data\\pic")}};
  PartData movie{.name = "movie", .pos = 2, .length = 2, .calls = {fullPicture("drawMovie", "data\\film")}};
  PartData hell{
      .name = "hell",
      .pos = 4,
      .length = 2,
      .calls = {{.scene = "SceneHell", .function = "animate", .parameters = {constant("camera", 0)}}}};
  return decodeProject(
             buildProject({.totalTime = 6, .music = music, .parts = {ground, picture, movie, hell}}).bytes,
             "test")
      .project;
}

class Reload : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    writeRunFolder({});
    setenv("ALSOFT_DRIVERS", "null", 1);
    writeFile("data/flare_shine.bmp", bmp(white));
    writeFile("data/pic.bmp", bmp(red));
    writeFile("data/film1.jpg", jpegBytes(8, 8, plain(white)));
    writeFile("data/film2.jpg", jpegBytes(8, 8, plain(black)));
    show = std::make_unique<Show>();
    show->setPicture(glTestWidth, glTestHeight);
    ASSERT_EQ(show->load(pictures(), {}), std::nullopt);
  }
  void TearDown() override {
    show.reset();
    GlTest::TearDown();
  }

  Trouble reload(const std::vector<std::string>& names) { return show->reload(names); }

  std::array<int, 3> drawn() {
    EXPECT_EQ(show->drawFrame(), std::nullopt);
    const auto pixel = readPixel(glTestWidth / 2, glTestHeight / 2);
    return {pixel[0], pixel[1], pixel[2]};
  }

  TemporaryFolder folder;
  std::unique_ptr<Show> show;
};

// What is damaged leaves what was there, and says so.
TEST_F(Reload, TakesPicturesInThePlaceOfThoseThatWereThere) {
  using Colour = std::array<int, 3>;
  const struct {
    const char* what;
    std::function<void()> change;
    std::vector<std::string> names;
    Trouble trouble;
    Colour shown;
  } cases[] = {
      {"another picture", [] { writeFile("data/pic.bmp", bmp(green)); }, {"data\\pic.bmp"}, {}, {0, 255, 0}},
      {"not told", [] { writeFile("data/pic.bmp", bmp(red)); }, {"data\\light1.bmp"}, {}, {0, 255, 0}},
      {"of another size", [] { writeFile("data/pic.bmp", bmp(red, 8)); }, {"data/PIC.bmp"}, {}, {255, 0, 0}},
      {"a mask",
       [] { writeFile("data/pic_mask.bmp", bmp(black, 8)); },
       {"data\\pic_mask.bmp"},
       {},
       {0, 0, 255}},
      {"the mask gone", [] { fs::remove("data/pic_mask.bmp"); }, {"data\\pic_mask.bmp"}, {}, {255, 0, 0}},
      {"cut off",
       [] { writeFile("data/pic.bmp", "BM"); },
       {"data\\pic.bmp"},
       "texture data\\pic.bmp is cut short: its header needs 54 bytes, 2 are left",
       {255, 0, 0}},
      {"an odd size",
       [] { writeFile("data/pic.bmp", bmp(green, 12)); },
       {"data\\pic.bmp"},
       "texture data\\pic.bmp isn't of correct size (12x12)",
       {255, 0, 0}},
      {"gone",
       [] { fs::remove("data/pic.bmp"); },
       {"data\\pic.bmp"},
       "Texture data\\pic.bmp not found",
       {255, 0, 0}},
      {"one of two is damaged",
       [] {
         writeFile("data/pic.bmp", bmp(green));
         writeFile("data/light1.bmp", "BM");
       },
       {"data\\light1.bmp", "data\\pic.bmp"},
       "texture data\\light1.bmp is cut short: its header needs 54 bytes, 2 are left",
       {0, 255, 0}},
      {"a JPEG before the BMP",
       [] { writeFile("data/pic.jpg", jpegBytes(8, 8, plain(white))); },
       {"data\\pic.jpg"},
       {},
       {255, 255, 255}},
      {"what nobody has loaded",
       [] {},
       {"data\\none.bmp", "used_textures.log", "data\\x", ""},
       {},
       {255, 255, 255}},
  };
  ASSERT_EQ(show->seek(1), std::nullopt);
  EXPECT_EQ(drawn(), (Colour{255, 0, 0}));
  const int textures = textureCount();
  for (const auto& [what, change, names, trouble, shown] : cases) {
    change();
    EXPECT_EQ(reload(names), trouble) << what;
    EXPECT_EQ(drawn(), shown) << what;
    EXPECT_EQ(show->time(), 1);
    EXPECT_EQ(textureCount(), textures) << what;
  }
}

TEST_F(Reload, ShowsAnotherFrameOfAMovie) {
  ASSERT_EQ(show->seek(2.5), std::nullopt);
  EXPECT_EQ(drawn()[0], 255);
  writeFile("data/film1.jpg", jpegBytes(8, 8, plain(black)));
  EXPECT_EQ(drawn()[0], 255);
  EXPECT_EQ(reload({"data/film1.jpg"}), std::nullopt);
  EXPECT_LT(drawn()[0], 5);
}

// A picture that was missing is there now.
TEST_F(Reload, MendsABlackPicture) {
  fs::remove("data/film1.jpg");
  ASSERT_EQ(show->seek(2.5), std::nullopt);
  EXPECT_EQ(show->drawFrame(),
            "Texture data\\film1.jpg not found (SceneHelper.drawMovie at 0.5 s of part movie)");
  writeFile("data/film1.jpg", jpegBytes(8, 8, plain(white)));
  EXPECT_EQ(reload({"data/film1.jpg"}), std::nullopt);
  EXPECT_EQ(drawn()[0], 255);
}

// The model alone is read: the others' files hold rubbish by now.
TEST_F(Reload, ReadsTheModelThatHasChangedAndNoOther) {
  const std::string model = readFile("data/hell.ase");
  ASSERT_EQ(show->seek(5), std::nullopt);
  const auto before = drawn();
  for (const char* other : {"skull", "monster", "fetus"}) {
    fs::remove(std::string("data/") + other + ".hv3");
    writeFile(std::string("data/") + other + ".ase", "rubbish");
  }
  EXPECT_EQ(reload({"data/hell.ase"}), std::nullopt);
  EXPECT_EQ(drawn(), before);

  fs::remove("data/hell.hv3");
  writeFile("data/hell.ase", "rubbish");
  EXPECT_EQ(reload({"data/Hell.ASE"}), "data\\hell.ase isn't a model: no line begins with a keyword");
  EXPECT_EQ(drawn(), before);
  EXPECT_EQ(show->time(), 5);
  writeFile("data/hell.ase", model);
  EXPECT_EQ(reload({"data\\hell.ase"}), std::nullopt);
}

TEST_F(Reload, HoldsNoMoreAfterFiftyTimes) {
  writeSoundFile("data/music.wav", {.rate = 8000, .channels = 1, .frames = 8000});
  ASSERT_EQ(show->setProject(pictures("data\\music.wav")), std::nullopt);
  std::size_t bytes = 0;
  int descriptors = 0;
  for (int time = 0; time < 62; ++time) {
    ASSERT_EQ(show->seek(time % 6 + 0.5), std::nullopt);
    ASSERT_EQ(
        reload({"data\\pic.bmp", "data\\hell.ase", "data\\skull.ase", "data\\music.wav", "data\\film1.jpg"}),
        std::nullopt);
    drawn();
    ASSERT_EQ(show->setProject(pictures("data\\music.wav")), std::nullopt);
    if (time != 11) continue;  // everything has been drawn twice
    bytes = allocatedBytes();
    descriptors = openDescriptors();
  }
  EXPECT_LE(allocatedBytes(), bytes + bytes / 100);
  EXPECT_LE(openDescriptors(), descriptors);
}

// A scene takes the place of its former self, as it stood after loading, and the parts call the new one.
TEST_F(Reload, BeginsAnewWithTheSceneThatTookThePlace) {
  show.reset();
  Presentation presentation(Options{}, pictures(), "test");
  presentation.load(Begins::often);
  presentation.begin(4.5f);
  const auto scenes = [&] {
    std::vector<Scene*> all;
    for (int i = 0; i < presentation.timeLine().sceneCount; ++i)
      all.push_back(presentation.timeLine().scenes[i]);
    return all;
  };
  const std::vector<Scene*> before = scenes();
  const Scene* hell = presentation.timeLine().findScene("SceneHell");
  const std::uint32_t chance = randomState();
  hell->meshes[0]->opacity = 0.25f;
  EXPECT_TRUE(presentation.reloadModel("data\\HELL"));
  EXPECT_FALSE(presentation.reloadModel("data\\none"));
  EXPECT_EQ(randomState(), chance);
  const std::vector<Scene*> after = scenes();
  for (std::size_t i = 0; i < after.size(); ++i) EXPECT_EQ(after[i] == before[i], before[i] != hell) << i;
  Scene* again = presentation.timeLine().findScene("SceneHell");
  EXPECT_EQ(presentation.timeLine().parts[3]->calls[0]->scene, again);
  again->meshes[0]->opacity = 0.125f;
  presentation.begin(4.5f);
  EXPECT_GT(again->meshes[0]->opacity, 0.9f);
  clockAdvanceTo(4.5f);
  presentation.drawFrame();
}

}  // namespace
}  // namespace vex::studio
