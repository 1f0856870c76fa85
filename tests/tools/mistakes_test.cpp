#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "authoring/whole_check.h"
#include "base/files.h"
#include "base/report.h"
#include "models/model_loader.h"
#include "tests/support/ase_text.h"
#include "tests/support/image_files.h"
#include "tests/support/model_files.h"
#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

// What goes wrong on a maker's first day, and what is then said: each mistake by file and field, with what to
// do.

namespace vex {

namespace {

namespace fs = std::filesystem;

// A show of a black ground; `more` are further parts, from line 3 on.
std::string show(const std::string& more, const std::string& head = "total 10") {
  return head + "\npart ground { at 0 length 10 SceneHelper.fadeScreen(red=0, green=0, blue=0, alpha=1) }\n" +
         more;
}
std::string part(const std::string& calls) {
  return "part p { at 1 length 5 " + calls + " }\n";
}
std::string fade(const std::string& alpha) {
  return part("SceneHelper.fadeScreen(red=0, green=0, blue=0, alpha=" + alpha + ")");
}
std::string bitmap(const std::string& texture) {
  return show(part("SceneHelper.drawBitmap(texture=\"" + texture +
                   "\", x=0, y=0, width=1, height=1, frames=0, glitch=0, alpha=1, blend=0)"));
}

struct File {
  std::string name;
  std::string bytes;
};
constexpr const char* gone = "(gone)";  // bytes of a file that is taken away

struct Mistake {
  const char* what;
  std::string text;         // of the show
  std::vector<File> files;  // beside those of a whole run folder
  std::string said;         // all lines
};

// Files as they were before the mistake.
class Restored {
 public:
  explicit Restored(const std::vector<File>& files) {
    for (const File& file : files) {
      before.push_back({file.name, fs::exists(file.name) ? readFile(file.name) : gone});
      put(file);
    }
  }
  ~Restored() {
    for (const File& file : before) put(file);
  }
  Restored(const Restored&) = delete;
  Restored& operator=(const Restored&) = delete;

 private:
  static void put(const File& file) {
    if (file.bytes == gone) {
      fs::remove(file.name);
    } else {
      writeFile(file.name, file.bytes);
    }
  }
  std::vector<File> before;
};

std::string checked(const std::string& text) {
  const FatalErrorsThrown thrown;
  std::string lines;
  try {
    pakOpen("vex.pak");
    const CheckedProject result = checkWhole(text, "show.txt", CheckedData::ofWorkingFolder);
    for (const Finding& finding : result.findings)
      lines += (lines.empty() ? "" : "\n") + findingText("show.txt", result.project, finding);
  } catch (const FatalError& error) {
    lines = error.what();
  }
  return lines;
}

std::string bmp(int width, int height, BmpFile file = {}) {
  file.width = width, file.height = height;
  return file.bytes();
}

// What reading the text leaves beside it.
std::string compiledHell() {
  Scene scene;
  std::vector<std::string> textures;
  readModel({"data/hell.ase", "made.hv3"}, &scene, nameTextures(textures));
  return readFile("made.hv3");
}

class Mistakes : public testing::Test {
 protected:
  Mistakes() {
    writeRunFolder({});
    fs::remove("test.hvp");
    for (const char* flare : {"normal", "shine"})
      writeFile(std::string("data/flare_") + flare + ".bmp", bmp(4, 4));
  }

  void expect(const std::vector<Mistake>& mistakes) {
    ASSERT_EQ(checked(show("")), "");
    for (const Mistake& mistake : mistakes) {
      const Restored files(mistake.files);
      EXPECT_EQ(checked(mistake.text), mistake.said) << mistake.what;
    }
  }

  TemporaryFolder folder;
};

}  // namespace

TEST_F(Mistakes, InTexts) {
  expect({
      {"a statement misspelt",
       show("", "totl 10"),
       {},
       "show.txt:1: unknown statement totl; did you mean total?\nshow.txt:3: total is missing, the time at "
       "which the show ends"},
      {"no end", show("", "zoom 1"), {}, "show.txt:3: total is missing, the time at which the show ends"},
      {"a key misspelt",
       show("part p { at 1 lenght 5 }"),
       {},
       "show.txt:3: unknown key lenght of a part; did you mean length?"},
      {"a part without its time",
       show("part p { length 5 }"),
       {},
       "show.txt:3: part \"p\" lacks at, its beginning"},
      {"a part without its length",
       show("part p { at 5 }"),
       {},
       "show.txt:3: part \"p\" lacks length or until, its end\nshow.txt:3: remark: length 0: it is never "
       "active"},
      {"an end before the beginning",
       show("part p { at 5 until 3 }"),
       {},
       "show.txt:3: until 3 does not lie behind at 5\nshow.txt:3: remark: length -2: it is never active"},
      {"a part that is not closed",
       show("part p { at 5 length 1\npart q { at 6 length 1 }"),
       {},
       "show.txt:4: part \"p\" of line 3 is not closed before this one, } is missing"},
      {"a quote that is not closed",
       show("part p { at 5 length 1 S.f(t=\"data\\x, x=1) }"),
       {},
       "show.txt:3: the string \"data\\x, x=1) }\" is not closed on its line"},
      {"a texture without quotes",
       show("part p { at 5 length 1 S.f(t=data\\x, x=1) }"),
       {},
       "show.txt:3: unknown value data of \"t\"; known are linear, spline and sine, a text stands in quotes"},
      {"bars without a tempo",
       show("part p { at 1:0 length 1 }"),
       {},
       "show.txt:3: at: 1:0 is in bars and beats, but no tempo stands before it"},
      {"a comma in a number",
       show(fade("0,5")),
       {},
       "show.txt:3: the name of a parameter (numbers have a point, no comma) is expected, not 5"},
      {"no comma between parameters",
       show(part("S.f(a=1 b=2)")),
       {},
       "show.txt:3: ) or , behind a parameter is expected, not b"},
      {"a tempo of 0",
       show("", "tempo 0 total 10"),
       {},
       "show.txt:1: tempo 0 from 0: beats a minute above 0 and a time are expected\nshow.txt:3: total is "
       "missing, the time at which the show ends"},
      {"a long name",
       bitmap("data\\a_texture_with_a_very_long_name"),
       {},
       "show.txt:3: texture \"data\\a_texture_with_a_very_long_name\" has 36 characters, at most 31 are "
       "possible\nshow.txt:3: texture \"data\\a_texture_with_a_very_long_name\" is missing, neither .jpg nor "
       ".bmp is there"},
      {"an unknown scene",
       show(part("Helper.fadeScreen()")),
       {},
       "show.txt:3: unknown scene \"Helper\"; hint: known are SceneHelper, SceneIntroBox, SceneWater, "
       "SceneFetus, SceneAlien, SceneSkull, SceneHell, SceneLayerParticles, SceneLayerWide, "
       "SceneLayerRotCubes, SceneOuttro, SceneLayerWobbel and SceneLayerRays"},
      {"an unknown function",
       show(part("SceneHelper.fadescreen()")),
       {},
       "show.txt:3: unknown function \"fadescreen\" of SceneHelper; hint: did you mean fadeScreen?"},
      {"a parameter left out",
       show(part("SceneHelper.fadeScreen(red=0, green=0, blue=0)")),
       {},
       "show.txt:3: SceneHelper.fadeScreen has 3 parameters, must have 4; hint: it lacks alpha; they are "
       "red, green, blue, alpha"},
      {"a parameter misspelt",
       show(part("SceneHelper.fadeScreen(red=0, gren=0, blue=0)")),
       {},
       "show.txt:3: SceneHelper.fadeScreen has 3 parameters, must have 4; hint: they are red, green, blue, "
       "alpha"},
      {"a text for a number",
       show(fade("\"1\"")),
       {},
       "show.txt:3: alpha of SceneHelper.fadeScreen is the text \"1\", must be a number; hint: numbers stand "
       "without quotes"},
      {"255 for 1",
       show(fade("255")),
       {},
       "show.txt:3: remark: alpha of SceneHelper.fadeScreen reaches 255, useful are 0 to 1"},
      {"dots in falling order",
       show(fade("linear(1 0, 0 1)")),
       {},
       "show.txt:3: alpha of SceneHelper.fadeScreen: dot x 0 follows 1, the dots must ascend"},
      {"a spline with two dots at one x",
       show(fade("spline(0 0, 0.5 1, 0.5 0, 1 1)")),
       {},
       "show.txt:3: alpha of SceneHelper.fadeScreen: dot x 0.5 follows 0.5, the dots must ascend; hint: the "
       "show ends with \"Critical error: d[]=0 in calc_spline!\""},
      {"dots behind the part's end",
       show(fade("linear(0s 0, 4s 1, 8s 0)")),
       {},
       "show.txt:3: remark: alpha of SceneHelper.fadeScreen: dot 3 at x 1.6 lies behind the part's end"},
      {"a curve over its bounds",
       show(fade("linear(0 0, 1 2) in 0 to 1")),
       {},
       "show.txt:3: remark: alpha of SceneHelper.fadeScreen: dot 2, 2, is held within 0 and 1"},
      {"names in other places",
       show(part("SceneHelper.fadeScreen(red=0, blue=0, green=0, a=0)")),
       {},
       "show.txt:3: remark: blue of SceneHelper.fadeScreen stands where \"green\" is taken: values go by "
       "their place where not all names are the function's own; hint: name all as vexproject functions does, "
       "then they may stand in any order\nshow.txt:3: remark: green of SceneHelper.fadeScreen stands where "
       "\"blue\" is taken: values go by their place where not all names are the function's own; hint: name "
       "all as vexproject functions does, then they may stand in any order"},
      {"parts out of order",
       show(fade("0") + "part q { at 0.5 length 1 }\n"),
       {},
       "show.txt:4: begins at 0.5, but stands behind part \"p\" (2), which begins at 1 and hides it until "
       "then; hint: parts must stand in the order in which they begin"},
      {"a part behind the end",
       show("part q { at 11 length 1 }\n"),
       {},
       "show.txt:3: remark: begins at 11, after the show has ended at 10"},
      {"a start behind the end",
       show("", "start 12 total 10"),
       {},
       "show.txt: start 12 is not before total 10; hint: the show would end at once"},
      {"a setting in a short part",
       show("part q { at 5 length 0.1 SceneHelper.setViewport(x=-1, y=-1, width=2, height=2) }"),
       {},
       "show.txt:3: SceneHelper.setViewport sets what stays, but the part is only 0.1 s long; hint: a slow "
       "frame skips it, give it at least 0.3 s"},
      {"no ground",
       "total 10\n" + fade("0.5"),
       {},
       "show.txt: no call paints the ground from 0 to 10, where no part is active; hint: lay a fadeScreen of "
       "alpha 1 on the lowest track"},
      {"a scroller without font and text",
       show(part("SceneOuttro.drawScroller(speed=1, zoom=0, waveMode=0, waveSpeed=0, waveLength=1, "
                 "amplitude=0, y=0)")),
       {},
       "show.txt:3: SceneOuttro.drawScroller comes before any call of preloadFont, the show ends there; "
       "hint: call SceneOuttro.preloadFont in a part that begins earlier\nshow.txt:3: "
       "SceneOuttro.drawScroller comes before any call of preloadText, the show ends there; hint: call "
       "SceneOuttro.preloadText in a part that begins earlier"},
      {"balls that are not loaded",
       show(part(
           "SceneOuttro.showVectorBalls(ballSize=1, turns=0, distance=10, fieldOfView=90, cameraHeight=0)")),
       {},
       "show.txt:3: SceneOuttro.showVectorBalls comes before any call of preloadVectorBalls, the show ends "
       "there; hint: call SceneOuttro.preloadVectorBalls in a part that begins earlier\nshow.txt:3: texture "
       "\"data\\flare_vectorball\" is missing, neither .jpg nor .bmp is there, SceneOuttro.showVectorBalls "
       "shows it"},
  });
}

TEST_F(Mistakes, InPictures) {
  expect({
      {"a texture that is not there",
       bitmap("data\\none"),
       {},
       "show.txt:3: texture \"data\\none\" is missing, neither .jpg nor .bmp is there"},
      {"its extension named",
       bitmap("data\\x.bmp"),
       {{"data/x.bmp", bmp(4, 4)}},
       "show.txt:3: texture \"data\\x.bmp\" is missing, neither .jpg nor .bmp is there; hint: write "
       "\"data\\x\", without extension"},
      {"a PNG",
       bitmap("data\\x"),
       {{"data/x.png", "png"}},
       "show.txt:3: texture \"data\\x\" is missing, neither .jpg nor .bmp is there; hint: \"data\\x.png\" is "
       "not read, ffmpeg -i data/x.png -pix_fmt bgr24 data/x.bmp makes one that is"},
      {"the folder left out",
       bitmap("x"),
       {{"data/x.bmp", bmp(4, 4)}},
       "show.txt:3: texture \"x\" is missing, neither .jpg nor .bmp is there; hint: did you mean "
       "\"data\\x\"?"},
      {"odd sides",
       bitmap("data\\x"),
       {{"data/x.bmp", bmp(100, 60)}},
       "show.txt:3: texture \"data\\x.bmp\" is 100x60, both sides must be powers of two; hint: scale it, to "
       "128x64 for instance"},
      {"a JPEG that is cut",
       bitmap("data\\x"),
       {{"data/x.jpg", jpegBytes(64, 64, plain({1, 2, 3})).substr(0, 400)}},
       "show.txt:3: texture \"data\\x.jpg\" cannot be read; hint: write it anew from its picture"},
      {"a BMP that is cut",
       bitmap("data\\x"),
       {{"data/x.bmp", bmp(4, 4).substr(0, 60)}},
       "show.txt:3: texture data\\x.bmp is cut short: its picture needs 48 bytes, 6 are left; hint: write it "
       "anew from its picture"},
      {"a BMP of 32 bits",
       bitmap("data\\x"),
       {{"data/x.bmp", bmp(4, 4, {.bits = 32})}},
       "show.txt:3: texture data\\x.bmp has 32bpp, must be 8 or 24!; hint: ffmpeg -i data/x.bmp -pix_fmt "
       "bgr24 new.bmp makes one that is read"},
      {"a packed BMP",
       bitmap("data\\x"),
       {{"data/x.bmp", bmp(4, 4, {.compression = 1})}},
       "show.txt:3: texture data\\x.bmp has compression!; hint: ffmpeg -i data/x.bmp -pix_fmt bgr24 new.bmp "
       "makes one that is read"},
      {"another file called BMP",
       bitmap("data\\x"),
       {{"data/x.bmp", "no picture"}},
       "show.txt:3: texture \"data\\x.bmp\" cannot be read; hint: write it anew from its picture"},
      {"a mask of another size",
       bitmap("data\\x"),
       {{"data/x.bmp", bmp(4, 4)}, {"data/x_mask.bmp", bmp(8, 4)}},
       "show.txt:3: mask \"data\\x_mask.bmp\" is 8x4, its texture 4x4; hint: scale one to the size of the "
       "other"},
      {"a slash in the name",
       bitmap("data/x"),
       {{"data/x.bmp", bmp(4, 4)}},
       "show.txt:3: remark: file name \"data/x.bmp\" is found loose only, an archive holds it as "
       "\"data\\x.bmp\""},
      {"a way round",
       bitmap("data\\..\\data\\x"),
       {{"data/x.bmp", bmp(4, 4)}},
       "show.txt:3: remark: file name \"data\\..\\data\\x.bmp\" is found loose only, an archive holds it as "
       "\"data\\x.bmp\""},
      {"a way out",
       bitmap("..\\x"),
       {{"../x.bmp", bmp(4, 4)}},
       "show.txt:3: remark: file name \"..\\x.bmp\" leads out of the folder, an archive holds only what lies "
       "below it"},
      {"a hidden folder",
       bitmap("data\\.old\\x"),
       {{"data/.old/x.bmp", bmp(4, 4)}},
       "show.txt:3: remark: file name \"data\\.old\\x.bmp\" is hidden, an archive leaves it out"},
      {"a name too long to be packed",
       bitmap("data\\abcdefghijklmnopqrstuvw"),
       {{"data/abcdefghijklmnopqrstuvw.bmp", bmp(4, 4)}},
       "show.txt:3: remark: file name \"data\\abcdefghijklmnopqrstuvw.bmp\" has 32 characters, an archive "
       "takes at most 31"},
      {"another letter case", bitmap("DATA\\X"), {{"data/x.BMP", bmp(4, 4)}}, ""},
      {"frames of a movie that lack",
       show(part("SceneHelper.drawMovie(base=\"data\\m\", x=0, y=0, width=1, height=1, first=1, last=3, "
                 "fps=25, alpha=1)")),
       {{"data/m2.jpg", jpegBytes(8, 8, plain({1, 2, 3}))}},
       "show.txt:3: movie \"data\\m\" lacks of its frames 1 to 3: 1 and 3"},
      {"a glow that lacks",
       show(""),
       {{"data/light3.bmp", gone}},
       "start of the show: texture \"data\\light3\" is missing, neither .jpg nor .bmp is there; hint: it is "
       "loaded at the start, whatever is called"},
      {"a frame of the title that lacks",
       show(""),
       {{"data/vex04.bmp", gone}},
       "SceneHelper: texture \"data\\vex04\" is missing, neither .jpg nor .bmp is there; hint: it is loaded "
       "at the start, whatever is called"},
      {"the font of the statistics that lacks",
       show(""),
       {{"data/font.raw", gone}},
       "start of the show: remark: statistics font \"data\\font.raw\" is missing; hint: with \"Show stats\" "
       "the show does not begin"},
      {"a preload list of another show",
       show(""),
       {{"used_textures.log", "data\\chrome 1\ndata\\none 0\n"}},
       "used_textures.log:2: texture \"data\\none\" is missing, neither .jpg nor .bmp is there; hint: it is "
       "loaded at the start, whatever is called"},
      {"half a line in the preload list",
       show(""),
       {{"used_textures.log", "data\\chrome\n\n"}},
       "used_textures.log:1: remark: a line of two fields is expected: the texture, and 1 where it repeats "
       "or 0; hint: the line is ignored"},
      {"a texture for a call of a scene that lacks",
       show(part("SceneSkull.animate(camera=0)")),
       {},
       "show.txt:3: texture \"data\\spark\" is missing, neither .jpg nor .bmp is there, SceneSkull.animate "
       "shows it\nshow.txt:3: texture \"data\\flare_fire1\" is missing, neither .jpg nor .bmp is there, "
       "SceneSkull.animate shows it\nshow.txt:3: texture \"data\\flare_fire2\" is missing, neither .jpg nor "
       ".bmp is there, SceneSkull.animate shows it\nshow.txt:3: texture \"data\\flare_fire3\" is missing, "
       "neither .jpg nor .bmp is there, SceneSkull.animate shows it\nshow.txt:3: texture "
       "\"data\\flare_fire4\" is missing, neither .jpg nor .bmp is there, SceneSkull.animate shows "
       "it\nshow.txt:3: texture \"data\\flare_smoke1\" is missing, neither .jpg nor .bmp is there, "
       "SceneSkull.animate shows it\nshow.txt:3: texture \"data\\flare_smoke2\" is missing, neither .jpg nor "
       ".bmp is there, SceneSkull.animate shows it\nshow.txt:3: texture \"data\\flare_smoke3\" is missing, "
       "neither .jpg nor .bmp is there, SceneSkull.animate shows it\nshow.txt:3: texture "
       "\"data\\flare_smoke4\" is missing, neither .jpg nor .bmp is there, SceneSkull.animate shows it"},
  });
}

TEST_F(Mistakes, InModels) {
  const std::string hell = readFile("data/hell.ase");
  const auto replaced = [&hell](const std::string& from, const std::string& to) {
    std::string text = hell;
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
      text.replace(at, from.size(), to);
    return text;
  };
  AseText nine;
  for (int i = 0; i < 9; ++i) {
    nine.object("*LIGHTOBJECT", "Lamp" + std::to_string(i)).node("0 0 0").line("*LIGHT_USELIGHT 1").close();
  }
  const std::string nineLights = nine.str();
  expect({
      {"a model that is not there",
       show(""),
       {{"data/hell.ase", gone}},
       "data\\hell: the model of SceneHell is missing, neither .ase nor .hv3 is there; hint: every show "
       "loads it; vexproject scenes SceneHell says what it must hold"},
      {"an object of another name",
       show(""),
       {{"data/hell.ase", replaced("\"Lava\"", "\"Sea\"")}},
       "data\\hell.ase: lacks for SceneHell: mesh Lava; hint: vexproject scenes SceneHell says what it must "
       "hold"},
      {"a file of another tool",
       show(""),
       {{"data/hell.ase", "o Lava\nv 0 0 0\n"}},
       "data\\hell: data\\hell.ase isn't a model: no line begins with a keyword; hint: vexproject scenes "
       "SceneHell says what it must hold"},
      {"an empty model",
       show(""),
       {{"data/hell.ase", ""}},
       "data\\hell: data\\hell.ase is empty; hint: vexproject scenes SceneHell says what it must hold"},
      {"a damaged model",
       show(""),
       {{"data/hell.ase", replaced("*MATERIAL_REF 0", "*MATERIAL_REF 1000")}},
       "data\\hell: material 1000 isn't one of 0 to 99 (data\\hell.ase:60); hint: vexproject scenes "
       "SceneHell says what it must hold"},
      {"a damaged compiled model",
       show(""),
       {{"data/hell.ase", gone}, {"data/hell.hv3", "x"}},
       "data\\hell: data\\hell.hv3: ends after 1 bytes, its header word has 4; hint: vexproject scenes "
       "SceneHell says what it must hold"},
      {"a compiled model that is cut",
       show(""),
       {{"data/hell.ase", gone}, {"data/hell.hv3", compiledHell().substr(0, 200)}},
       "data\\hell: data\\hell.hv3 ends before its compressed data does; hint: vexproject scenes SceneHell "
       "says what it must hold"},
      {"a texture that a material names",
       show(""),
       {{"data/hell.ase",
         replaced("*MATERIAL_SHINE ", "*MAP_DIFFUSE {\n*BITMAP \"rock.tga\"\n}\n*MATERIAL_SHINE ")}},
       "data\\hell.ase: texture \"data\\rock\" is missing, neither .jpg nor .bmp is there, a material names "
       "it; hint: it is loaded at the start, whatever is called"},
      {"nine lights more",
       show(""),
       {{"data/hell.ase", hell + nineLights}},
       "data\\hell.ase: remark: 12 lights are on, at most 8 are possible; hint: but for those that the scene "
       "itself puts out, more end the show"},
      {"a camera that is not there",
       show(part("SceneHell.animate(camera=7)")),
       {},
       "show.txt:3: camera of SceneHell.animate is 7, data\\hell.ase has 2 cameras; hint: the first is 0, "
       "the last 1; with another the show ends"},
      {"a camera that a curve leads to",
       show(part("SceneHell.animate(camera=linear(0 0, 1 2.5))")),
       {},
       "show.txt:3: camera of SceneHell.animate is 2, data\\hell.ase has 2 cameras; hint: the first is 0, "
       "the last 1; with another the show ends"},
      {"an object that is not there",
       show(part("SceneWater.setAnimationState(object=\"WaterAlin\", fraction=0)")),
       {},
       "show.txt:3: object of SceneWater.setAnimationState is \"WaterAlin\", data\\water_alien.ase has no "
       "such object; hint: did you mean WaterAlien?"},
      {"a sky that is not there",
       show(""),
       {{"data/hellwest.bmp", gone}},
       "SceneHell: texture \"data\\hellwest\" is missing, neither .jpg nor .bmp is there; hint: it is loaded "
       "at the start, whatever is called"},
  });
}

// The compiled form goes by the comment, whatever became of the text under it.
TEST_F(Mistakes, InModelTextsUnderOldComments) {
  std::string text = readFile("data/hell.ase");
  text.insert(text.find("*MESH {"),
              "*TM_ANIMATION {\n*CONTROL_POS_TRACK {\n*CONTROL_POS_SAMPLE 0 1 2 3\n"
              "*CONTROL_POS_SAMPLE 1600 2 3 4\n}\n}\n");
  writeFile("data/hell.ase", text);
  Scene scene;
  std::vector<std::string> textures;
  readModel({"data/hell.ase", "data/hell.hv3"}, &scene, nameTextures(textures));
  const auto later = fs::last_write_time("data/hell.hv3") + std::chrono::hours(1);
  fs::last_write_time("data/hell.ase", later);
  EXPECT_EQ(checked(show("")), "") << "only touched";
  for (const std::string place : {"*MESH_VERTEX 0 ", "*CONTROL_POS_SAMPLE 0 "}) {
    std::string changed = text;
    ASSERT_NE(text.find(place), std::string::npos) << place;
    changed.insert(text.find(place) + place.size(), "7");
    writeFile("data/hell.ase", changed);
    fs::last_write_time("data/hell.ase", later);
    EXPECT_EQ(checked(show("")),
              "data\\hell.hv3: data\\hell.ase is newer and not the same, but this is played: its comment "
              "stayed as it was; hint: vexmodel compile data/hell.ase, in the run folder")
        << place;
  }
}

TEST_F(Mistakes, InOtherFiles) {
  writeSoundFile("short.wav", {.rate = 1000, .frames = 8000});
  writeSoundFile("long.wav", {.rate = 1000, .frames = 12000});
  const auto music = [](const std::string& file) { return show("", "music \"" + file + "\" total 10"); };
  expect({
      {"music that is not there",
       music("data\\song.ogg"),
       {},
       "show.txt: music \"data\\song.ogg\" is missing"},
      {"music of another kind",
       music("data\\song.ogg"),
       {{"data/song.ogg", "no music"}},
       "show.txt: music \"data\\song.ogg\" cannot be played; hint: it takes WAV, OGG, FLAC or MP3 with one "
       "or two channels"},
      {"music that is too short",
       music("short.wav"),
       {},
       "show.txt: total 10, but music \"short.wav\" is 8 s long and must last 0.5 s longer than the show; "
       "hint: at most 7.5"},
      {"music of a path that cannot be packed",
       music("./long.wav"),
       {},
       "show.txt: remark: music: file name \"./long.wav\" is found loose only, an archive holds it as "
       "\"long.wav\""},
      {"balls that are not there",
       show(part("SceneOuttro.preloadVectorBalls(balls=\"data\\b.hvv\")")),
       {},
       "show.txt:3: file \"data\\b.hvv\" is missing"},
      {"balls that are cut",
       show(part("SceneOuttro.preloadVectorBalls(balls=\"data\\b.hvv\")")),
       {{"data/b.hvv", std::string("\5\0\0\0", 4)}},
       "show.txt:3: data\\b.hvv: number of balls is 5, does not fit the file's size of 4 bytes"},
      {"another show in the folder",
       show(""),
       {{"test.hvp", "old"}},
       "test.hvp: remark: the player plays this, which is not the project that is checked; hint: vexproject "
       "compile makes it"},
      {"a damaged archive", show(""), {{"vex.pak", "x"}}, "pak vex.pak has no entry count, it holds 1 bytes"},
  });
}

TEST(MistakesWithTools, AreNamedWithWhatIsMeant) {
  const TemporaryFolder folder;
  writeFile("show.txt", show(""));
  writeFile("model.obj", "o Lava\n");
  writeFile("data/hell.ase",
            AseText().head("1").object("*GEOMOBJECT", "Box").node("0 0 0").triangle().close().str());
  writeFile("cut.hv3", "xxxxxxxxxxxx");
  writeFile("long/data/abcdefghijklmnopqrstuvwxyz.bmp", "");
  writeFile("twice/data/a.bmp", "");
  writeFile("twice/data/A.BMP", "");
  const struct {
    const char* what;
    std::string command;
    std::string said;
  } rows[] = {
      {"a folder that is not there", "vexproject check show.txt --dir none",
       "vexproject: can't go to folder none: No such file or directory"},
      {"a text that is not there", "vexproject check none.txt",
       "vexproject: can't read none.txt: No such file or directory"},
      {"a text where its compiled form is meant", "vexproject dump show.txt",
       "vexproject: show.txt is the text of a project, not its file: vexproject compile makes that"},
      {"a file of another modeller", "vexmodel info model.obj",
       "vexmodel: model.obj is a file of another tool: vexmodel import makes a model of it"},
      {"a file that no tool reads", "vexmodel import model.stl data/m.ase",
       "vexmodel: model.stl: only .gltf, .glb, .fbx, .dae and .obj files can be imported"},
      {"a file to import that is not there", "vexmodel import none.glb data/m.ase",
       "vexmodel: none.glb: No such file or directory"},
      {"a model for another place", "vexmodel import model.obj m.obj",
       "vexmodel: m.obj isn't the text of a model (.ase)"},
      {"a damaged model to look at", "vexmodel info cut.hv3", "vexmodel: cut.hv3: bad magic header (code 2)"},
      {"a model for another scene", "vexmodel check data/hell.ase --scene SceneHell",
       "vexmodel: data/hell.ase lacks for SceneHell: mesh Lava, mesh Sphere, light part03, light part04, "
       "mesh or light part01, mesh or light part02, mesh or light Sprayer01, cameras: 0, at least 1"},
      {"a scene misspelt", "vexproject scenes SceneHel",
       "vexproject: unknown scene SceneHel; did you mean SceneHell?"},
      {"an empty folder to record", "vexrecord --dir long --stills 1 --out s",
       "vexrecord: no presentation in folder " + folder.path().string() +
           "/long: neither vex.pak nor test.hvp is there"},
      {"a recording of another kind", "vexrecord --dir . --out x.avi",
       "vexrecord: --out x.avi: a name that ends in .mp4 or .mkv is expected"},
      {"a picture of odd sides", "vexrecord --dir . --out x.mp4 --size 641x360",
       "vexrecord: --size 641x360: a video with this ending needs even numbers"},
      {"bars for a recording without a tempo", "vexrecord --dir . --contact-sheet x.png --from 2:0",
       "vexrecord: --from 2:0: bars and beats need --tempo"},
      {"a text without a tempo", "vexrecord --dir . --contact-sheet x.png --tempo show.txt",
       "vexrecord: show.txt states no tempo"},
      {"nothing to record", "vexrecord --dir .",
       "vexrecord: nothing to write: give --out, --frames, --contact-sheet or --trace-calls"},
      {"a folder to pack that is not there", "vexpak create x.pak none", "vexpak: none isn't a folder"},
      {"a name too long for an archive", "vexpak create x.pak long",
       "vexpak: long/data/abcdefghijklmnopqrstuvwxyz.bmp: the name data\\abcdefghijklmnopqrstuvwxyz.bmp has "
       "35 characters, at most 31 are possible"},
      {"two names of one spelling", "vexpak create x.pak twice",
       "vexpak: data\\A.BMP and data\\a.bmp differ only in letter case (folder twice)"},
      {"a file that is no archive", "vexpak list show.txt",
       "vexpak: pak show.txt counts 28532 entries, at most 256 are possible"},
  };
  for (const auto& [what, command, said] : rows) {
    const Program program = runProgram(VEX_BIN "/" + command);
    EXPECT_NE(program.exitCode, 0) << what;
    EXPECT_EQ(program.errors.substr(0, program.errors.find('\n')), said) << what;
  }
}

}  // namespace vex
