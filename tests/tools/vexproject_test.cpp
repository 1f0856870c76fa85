#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "authoring/whole_check.h"
#include "base/files.h"
#include "production/time_line.h"
#include "scenes/scene_tables.h"
#include "tests/support/image_files.h"
#include "tests/support/pak_builder.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace image;
using namespace show;

namespace {

namespace fs = std::filesystem;

const fs::path docs = fs::path(VEX_SOURCE) / "docs";

Program vexproject(const std::string& arguments) {
  return runProgram(VEX_BIN "/vexproject " + arguments);
}

// Line 1 and 2 of most texts here: a black ground for the whole show.
const std::string grounded =
    "total 10\n"
    "part ground { at 0 length 10 SceneHelper.fadeScreen(red=0, green=0, blue=0, alpha=1) }\n";

// "known are A, B and C", of all scenes there are.
std::string knownScenes() {
  std::string names;
  for (const SceneEntry& table : sceneEntries()) names += ", " + std::string(table.name);
  const std::size_t last = names.rfind(", ");
  return "known are " + names.substr(2, last - 2) + " and " + names.substr(last + 2);
}

std::string part(const std::string& keys, const std::string& calls) {
  return "part \"p\" { " + keys + " " + calls + " }\n";
}
std::string fade(const std::string& alpha) {
  return "SceneHelper.fadeScreen(red=0, green=0, blue=0, alpha=" + alpha + ")";
}
std::string bitmap(const std::string& texture, const std::string& rest = "alpha=1, blend=0") {
  return "SceneHelper.drawBitmap(texture=\"" + texture + "\", x=-1, y=-1, w=2, h=2, frames=0, glitch=0, " +
         rest + ")";
}
std::string movie(const std::string& frames, const std::string& base = "data\\m") {
  return "SceneHelper.drawMovie(base=\"" + base + "\", x=-1, y=-1, w=2, h=2, " + frames +
         ", fps=25, alpha=1)";
}

bool allRemarks(const std::string& lines) {
  std::istringstream in(lines);
  for (std::string line; std::getline(in, line);) {
    if (line.find("remark: ") == std::string::npos) return false;
  }
  return true;
}

struct Check {
  std::string project;
  std::string lines;  // without program name and file
};

void expectChecks(const std::vector<Check>& rows) {
  for (const auto& [project, lines] : rows) {
    writeFile("show", project);
    const Program program = vexproject("check show");
    std::string errors = program.errors;
    for (std::size_t at; (at = errors.find("vexproject: show:")) != std::string::npos;) errors.erase(at, 17);
    EXPECT_EQ(errors, lines) << project;
    EXPECT_EQ(program.exitCode, allRemarks(lines) ? 0 : 255) << project;
    EXPECT_EQ(program.output, allRemarks(lines) ? "no problems\n" : "") << project;
  }
}

// With the data of the working folder, without a program for each.
void expectDataChecks(const std::vector<Check>& rows) {
  pakOpen("vex.pak");
  for (const auto& [project, lines] : rows) {
    const CheckedProject checked = checkWhole(project, "show", CheckedData::ofWorkingFolder);
    std::string said;
    for (const Finding& finding : checked.findings)
      said += findingText("show", checked.project, finding).substr(std::strlen("show:")) + "\n";
    EXPECT_EQ(said, lines) << project;
  }
  fileCloseAll();
}

void expectRoundTrip(const std::string& bytes) {
  writeFile("a.hvp", bytes);
  const Program dumped =
      runProgram(VEX_BIN "/vexproject dump a.hvp > a.txt && " VEX_BIN "/vexproject compile a.txt b.hvp");
  EXPECT_EQ(dumped.exitCode, 0) << dumped.errors;
  EXPECT_TRUE(readFile("b.hvp") == bytes);
}

// The blocks of a Markdown document that are marked as text of a project, one behind the other.
std::string examplesOf(const std::string& document) {
  const std::string fence = "```vex\n";
  std::string text;
  for (std::size_t at = 0; (at = document.find(fence, at)) != std::string::npos;) {
    at += fence.size();
    text += document.substr(at, document.find("```", at) - at);
  }
  return text;
}

}  // namespace

TEST(Vexproject, DumpsAndCompilesTheShow) {
  const TemporaryFolder folder;
  const Bytes bytes = writeProject(presentationScript());
  expectRoundTrip({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  for (const char* form : {"a.hvp", "a.txt"}) {
    const Program checked = vexproject(std::string("check ") + form);
    EXPECT_EQ(checked.exitCode, 0);
    EXPECT_EQ(checked.errors, "");
  }
}

TEST(Vexproject, DumpRefusesWhatThePlayerRefuses) {
  const TemporaryFolder folder;
  const ProjectData project{.parts = {{.calls = {{.parameters = {{.name = "red", .type = 1}}}}}}};
  writeFile("Linear.hvp", buildProject(project).bytes);
  writeFile("endless.hvp", buildProject({.totalTime = 1e300}).bytes);
  writeFile("crowd.hvp", buildProject({.parts = std::vector<PartData>(17)}).bytes);
  const std::string whole = buildProject({.parts = {{.pos = 1}}}).bytes;
  writeFile("cut.hvp", whole.substr(0, whole.size() - 5));
  writeFile("text.hvp", "total 1\n");
  writeFile("other.hvp", "total\n");
  writeFile("empty.hvp", "");
  const std::pair<const char*, const char*> rows[]{
      {"Linear.hvp", "project Linear.hvp: part part: curve of animate.red has no dots"},
      {"endless.hvp", "project endless.hvp: total time is inf, not a usable number"},
      {"crowd.hvp",
       "project crowd.hvp: part part is active with 16 others at 0.000000, at most 16 parts are possible"},
      {"cut.hvp",
       "double != 8 bytes (0 read) (project cut.hvp: part part: speed lacks its end behind byte 107)"},
      {"text.hvp", "text.hvp is the text of a project, not its file: vexproject compile makes that"},
      {"other.hvp", "Wrong file version. Must be 0.17 (project other.hvp: version is total)"},
      {"empty.hvp", "char != 1 byte (0 read) (project empty.hvp: version lacks its end behind byte 0)"},
      {"linear.hvp", "can't read linear.hvp: No such file or directory"},
      {".", "can't read .: Is a directory"},
  };
  for (const auto& [file, message] : rows) {
    const Program program = vexproject(std::string("dump ") + file);
    EXPECT_EQ(program.exitCode, 255) << file;
    EXPECT_EQ(program.errors, std::string("vexproject: ") + message + "\n");
    EXPECT_EQ(program.output, "");
  }
}

// All commands take pipes, and no more than the documents say.
TEST(Vexproject, ReadsPipesUpToTheLimits) {
  const TemporaryFolder folder;
  writeFile("show.txt", grounded);
  const std::string tool = VEX_BIN "/vexproject ";
  EXPECT_EQ(runProgram("cat show.txt | " + tool + "compile /dev/stdin show.hvp").errors, "");
  EXPECT_EQ(runProgram("cat show.hvp | " + tool + "dump /dev/stdin").output,
            vexproject("dump show.hvp").output);
  EXPECT_EQ(runProgram("cat show.hvp | " + tool + "check /dev/stdin").output, "no problems\n");
  for (const char* command : {"dump /dev/stdin", "check /dev/stdin"}) {
    const Program program =
        runProgram("{ cat show.hvp; head -c 65M /dev/zero; } 2>/dev/null | " + tool + command);
    EXPECT_EQ(program.errors, "vexproject: /dev/stdin is longer than 64 MiB\n") << command;
  }
}

TEST(Vexproject, CompileNamesFileAndLine) {
  const TemporaryFolder folder;
  writeFile("bad.txt", grounded + part("at 1 lenght 2", ""));
  Program program = vexproject("compile bad.txt out.hvp");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexproject: bad.txt:3: unknown key lenght of a part; did you mean length?\n");
  EXPECT_FALSE(fs::exists("out.hvp"));
  writeFile("show.hvp", buildProject({}).bytes);
  EXPECT_EQ(vexproject("compile show.hvp out.hvp").errors,
            "vexproject: show.hvp is a project file, not the text of one\n");
  EXPECT_EQ(vexproject("compile none.txt out.hvp").errors,
            "vexproject: can't read none.txt: No such file or directory\n");
  EXPECT_EQ(vexproject("compile . out.hvp").errors, "vexproject: can't read .: Is a directory\n");
  EXPECT_EQ(vexproject("compile /dev/zero out.hvp").errors, "vexproject: /dev/zero is longer than 256 MiB\n");
}

TEST(Vexproject, AFailedWriteKeepsTheOldFile) {
  const TemporaryFolder folder;
  std::string text = grounded;
  for (int i = 0; i < 200; ++i) text += part("at 1 length 0", fade("0"));
  writeFile("show.txt", text);
  writeFile("show.hvp", "old");
  Program program = runProgram("trap '' XFSZ; ulimit -f 8; " VEX_BIN "/vexproject compile show.txt show.hvp");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexproject: can't write show.hvp: File too large\n");
  EXPECT_EQ(readFile("show.hvp"), "old");
  program = vexproject("compile show.txt /dev/full");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexproject: can't write /dev/full: No space left on device\n");
  program = vexproject("compile show.txt none/show.hvp");
  EXPECT_EQ(program.errors, "vexproject: can't write none/show.hvp: No such file or directory\n");
  EXPECT_EQ(vexproject("compile show.txt show.hvp").exitCode, 0);
  program = vexproject("dump show.hvp > /dev/full");
  EXPECT_EQ(program.exitCode, 255);
  EXPECT_EQ(program.errors, "vexproject: can't write standard output: No space left on device\n");
  EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 2)
      << "a temporary file stays";
}

TEST(Vexproject, CheckFindsWhatIsWrongWithCalls) {
  const TemporaryFolder folder;
  const std::string at = "at 1 length 1";
  const std::string given = "SceneHelper.fadeScreen";
  const std::string inFiles = "values go by their place in a project file and behind ordered\n";
  const std::string byPlace =
      "values go by their place where not all names are the function's own; hint: name all as vexproject "
      "functions does, then they may stand in any order\n";
  expectChecks({
      {grounded, ""},
      {grounded + part(at, "Helper.fadeScreen()"),
       "3: unknown scene \"Helper\"; hint: " + knownScenes() + "\n"},
      {grounded + part(at, "Scenehelper.x()"),
       "3: unknown scene \"Scenehelper\"; hint: did you mean SceneHelper?\n"},
      {grounded + part(at, "\nSceneHelper.fadeScren()"),
       "4: unknown function \"fadeScren\" of SceneHelper; hint: did you mean fadeScreen?\n"},
      {grounded + part(at, given + "(red=1)"),
       "3: SceneHelper.fadeScreen has 1 parameters, must have 4; hint: it lacks green, blue, alpha; they are "
       "red, "
       "green, blue, alpha\n"},
      {grounded + part(at, given + "(red=0,\ngreen=\"x\", blue=0, alpha=0)"),
       "4: green of SceneHelper.fadeScreen is the text \"x\", must be a number; hint: numbers stand without "
       "quotes\n"},
      {grounded + part(at, "SceneHelper.drawNoise(a=1,b=0,c=0,d=0,e=0,f=1,g=0,h=0,i=1)"),
       "3: a of SceneHelper.drawNoise, the texture, is a number, must be a text; hint: texts stand in "
       "quotes\n"},
      {grounded + part(at, fade("0.5 in 1 to 0.25")),
       "3: alpha of SceneHelper.fadeScreen: min 1 lies above max 0.25\n"},
      {grounded + part(at, fade("2 in 0 to 1")),
       "3: remark: alpha of SceneHelper.fadeScreen: 2 is held within 0 and 1\n"},
      {grounded + part(at, fade("1.5")),
       "3: remark: alpha of SceneHelper.fadeScreen reaches 1.5, useful are 0 to 1\n"},
      {grounded + part(at, fade("linear(0 0.5, 1 -0.25)")),
       "3: remark: alpha of SceneHelper.fadeScreen reaches -0.25, useful are 0 to 1\n"},
      {grounded + part(at, fade("linear(0 0.5, 1 -0.25) in 0 to 1")),
       "3: remark: alpha of SceneHelper.fadeScreen: dot 2, -0.25, is held within 0 and 1\n"},
      {grounded + part(at, fade("spline(0 0.5, 1.5 2) in 0 to 1")),
       "3: remark: alpha of SceneHelper.fadeScreen: dot 2 at x 1.5 lies behind the part's end\n"},
      {grounded + part(at, fade("linear(0 0.5, 1 1, 1.01 0.5)")),
       "3: remark: alpha of SceneHelper.fadeScreen: dot 3 at x 1.01 lies behind the part's end\n"},
      {grounded + part(at, fade("linear(-0.1 0.5, 0.9 1, 1.1 0.5)")), ""},
      {grounded + part(at, fade("linear(-0.5 0.5, 1.1 1)")),
       "3: remark: alpha of SceneHelper.fadeScreen: dot 1 at x -0.5 lies before the part begins\n"},
      {grounded + part(at, given + "(red=0,\nblue=0, green=1, a=0)"),
       "4: remark: blue of SceneHelper.fadeScreen stands where \"green\" is taken: " + byPlace +
           "4: remark: green of SceneHelper.fadeScreen stands where \"blue\" is taken: " + byPlace},
      {grounded + part(at, given + "(red=0,\nblue=0, green=1, alpha=0)"), ""},
      {grounded + part(at, given + " ordered (red=0,\nblue=0, green=1, alpha=0)"),
       "4: remark: blue of SceneHelper.fadeScreen stands where \"green\" is taken: " + inFiles +
           "4: remark: green of SceneHelper.fadeScreen stands where \"blue\" is taken: " + inFiles},
      {grounded + part(at, fade("sine(cycles 1, amplitude 0.75, offset 0.25)")),
       "3: remark: alpha of SceneHelper.fadeScreen reaches -0.5, useful are 0 to 1\n"},
      {grounded + part(at, fade("linear(0 0, 0.5 0, 0.5 1)")),
       "3: remark: alpha of SceneHelper.fadeScreen: two dots at x 0.5, a jump\n"},
      {grounded + part(at, fade("linear(0 0, 0.5 0, 0.5 2, 1 0)")),
       "3: remark: alpha of SceneHelper.fadeScreen: two dots at x 0.5, a jump\n"
       "3: remark: alpha of SceneHelper.fadeScreen reaches 2, useful are 0 to 1\n"},
      {grounded + part(at, fade("linear()")), "3: \"alpha\": curve has no dots\n"},
      {grounded + part(at, "SceneOuttro.showCopperBars(n=1001, a=1, b=0, c=0, d=1, e=0, f=0, g=0, h=0)"),
       "3: remark: n of SceneOuttro.showCopperBars reaches 1001 and is held at 1000, useful are 0 to 100\n"},
      {grounded + part(at, movie("first=3, last=linear(0 4, 1 1.9)")),
       "3: remark: last of SceneHelper.drawMovie: frame 2 lies before the first one, 3\n"},
  });
}

// The true range, wherever the wave begins and however often it swings.
TEST(Vexproject, CheckKnowsTheRangeOfASine) {
  const TemporaryFolder folder;
  const auto sine = [](const std::string& rest) {
    return grounded + part("at 1 length 1", fade("sine(amplitude 0.75, offset 0.5, " + rest + ")"));
  };
  const auto reaches = [](const char* values) {
    return std::string("3: remark: alpha of SceneHelper.fadeScreen reaches ") + values +
           ", useful are 0 to 1\n";
  };
  expectChecks({
      {sine("cycles 64"), reaches("-0.25 and 1.25")},
      {sine("cycles -128, phase 10"), reaches("-0.25 and 1.25")},
      {sine("cycles 0.25, phase 45"), reaches("1.25")},
      {sine("cycles 0.25, phase -95"), reaches("-0.25")},
      {sine("cycles -0.25, phase -45"), reaches("-0.25")},
      {sine("cycles 0.1, phase 30"), reaches("1.18516")},  // 0.5 + 0.75 sin 66
      {sine("cycles 0.1, phase 160"), ""},
      {sine("cycles 0.001, phase 90"), reaches("1.25")},
      {sine("cycles 0.1, phase 394"), reaches("1.20477")},  // 0.5 + 0.75 sin 70
      {sine("cycles 0.25, phase 0.5"), reaches("1.25")},
      {sine("cycles 0.25, phase -179.5"), reaches("-0.25")},
  });
}

// Played as they stand, but nobody means them.
TEST(Vexproject, CheckFindsOddCurvesAndTexts) {
  const TemporaryFolder folder;
  const auto fault = [](const std::string& complaint) {
    return "3: alpha of SceneHelper.fadeScreen: " + complaint + "\n";
  };
  const auto curve = [](const std::string& value) {
    return grounded + part("at 1 length 1", fade(value + " in 0 to 1"));
  };
  const std::string equal = "dot x 0.5 follows 0.5, the dots must ascend";
  expectChecks({
      {curve("0x7ff8000000000000"), fault("const is nan, not a usable number")},
      {curve("1e39"), fault("const is inf, not a usable number") +
                          "3: remark: alpha of SceneHelper.fadeScreen: inf is held within 0 and 1\n"},
      {curve("sine(cycles inf, phase -inf)"),
       fault("sin period is inf, not a usable number") + fault("sin phase is -inf, not a usable number")},
      {curve("linear(0 0, 0.5 inf, inf 0, 0.25 1)"),
       fault("dot x is inf, not a usable number") + fault("dot y is inf, not a usable number") +
           fault("dot x 0.25 follows inf, the dots must ascend")},
      {curve("spline()"),
       fault("curve has no dots; hint: the show ends with \"calcSpline called with array size 0!\"")},
      {curve("spline(0.5 0, 0.5 1)"), fault(equal)},
      {curve("spline(0 0, 0.5 0, 0.5 1)"),
       fault(equal + "; hint: the show ends with \"Critical error: d[]=0 in calc_spline!\"")},
      {curve("spline(0x7ff8000000000000 0, 0.5 0, 1 1)"),
       fault("dot x is nan, not a usable number; hint: the show ends with \"Critical error: t<x[0] in "
             "calc_spline!\"")},
      {grounded + part("at 1 length 1", fade("0 in 0x7ff8000000000000 to 0x7ff8000000000000")),
       fault("min is nan, not a usable number") + fault("max is nan, not a usable number") +
           "3: remark: alpha of SceneHelper.fadeScreen reaches nan, useful are 0 to 1\n"},
      {grounded + part("at 1 length 1 start inf speed -inf", ""),
       "3: start is inf, not a usable number\n3: speed is -inf, not a usable number\n"},
      {grounded + part("at inf length inf", ""),
       "3: pos is inf, not a usable number\n3: length is inf, not a usable number\n"},
      {grounded + "part \"a%00\" { at 1 length 1 }\n",
       "3: remark: part name \"a%00\" ends for the player at its zero byte\n"},
      {"music \"a%00b\" " + grounded +
           part("at 1 length 1",
                "\"SceneHelper%00x\".fadeScreen(red=0, green=0, "
                "blue=0, \"a%00\"=0)"),
       " remark: music \"a%00b\" ends for the player at its zero byte\n"
       "3: remark: scene name \"SceneHelper%00x\" ends for the player at its zero byte\n"
       "3: remark: parameter name \"a%00\" ends for the player at its zero byte\n"},
  });
}

TEST(Vexproject, CheckFindsWhatIsWrongWithTheTimeLine) {
  const TemporaryFolder folder;
  const std::string viewport = "SceneHelper.setViewport(x=-1, y=-1, w=2, h=2)";
  const std::string short5 =
      "3: SceneHelper.setViewport sets what stays, but the part is only 0.25 s long; hint: a slow frame "
      "skips it, give it at least 0.3 s\n";
  std::string tenths = "total 61\n" + part("at 0 length 61", fade("1"));
  for (int i = 0; i < 600; ++i) {
    const std::string begin = std::to_string(i / 10) + "." + std::to_string(i % 10);
    tenths += part("at " + begin + " length 0.3", viewport);
  }
  std::string crowd = grounded, names = "\"ground\" (1)";
  for (int i = 0; i < 16; ++i) {
    crowd += "part q { at 4 length " + std::to_string(i + 1) + " }\n";
    names += ", \"q\" (" + std::to_string(i + 2) + ")";
  }
  expectChecks({
      {"start 10\n" + grounded, " start 10 is not before total 10; hint: the show would end at once\n"},
      {"start -2 total 10 music \"a.ogg\"\n" + part("at -2 length 12", fade("1")),
       " remark: start -2 lies before the music, which begins at once; hint: with sound the show begins at "
       "0\n"},
      {"start -2 total 10\n" + part("at -2 length 12", fade("1")), ""},
      {grounded + part("at 5 length 0.25", viewport), short5},
      {tenths, ""},
      {"start 6 " + grounded + part("at 5 length 0.25", viewport), ""},
      {grounded + part("at 5 length 0", ""), "3: remark: length 0: it is never active\n"},
      {grounded + part("at 11 length 1", ""), "3: remark: begins at 11, after the show has ended at 10\n"},
      {grounded + part("at 5 length 1", "") + part("at 4.5 length 1", ""),
       "4: begins at 4.5, but stands behind part \"p\" (2), which begins at 5 and hides it until then; hint: "
       "parts must stand in the order in which they begin\n"},
      {grounded + part("at 5 length 1", "") + part("at 4 length 1", "") + part("at 4.5 length 1", ""),
       "4: begins at 4, but stands behind part \"p\" (2), which begins at 5 and hides it until then; hint: "
       "parts must stand in the order in which they begin\n"
       "5: begins at 4.5, but stands behind part \"p\" (2), which begins at 5 and hides it until then; hint: "
       "parts must stand in the order in which they begin\n"},
      {crowd, "18: 17 parts are active at 4, at most 16 are possible: " + names + "\n"},
      {crowd + "part r { at 5 length 1 }\npart t { at 6.5 length 0.5 }\n",
       "18: 17 parts are active at 4, at most 16 are possible: " + names + "\n" +
           "19: 17 parts are active at 5, at most 16 are possible: " + names.substr(0, 12) +
           names.substr(21) + ", \"r\" (18)\n"},
      // what the ground is not
      {"total 10\n" + part("at 0 length 4", fade("1")) + part("at 6 length 4", fade("1")),
       " no call paints the ground from 4 to 6, where no part is active; hint: lay a fadeScreen of alpha 1 "
       "on the lowest track\n"},
      {"total 10\n" + part("at 0 length 10", fade("linear(0 1, 0.5 1, 1 0)")),
       "2: no call paints the ground from 5.03333 to 10, where these parts are active: \"p\"; hint: lay a "
       "fadeScreen of alpha 1 on the lowest track\n"},
      {"start 3 total 10\n" + part("at 3 length 7", bitmap("data\\a")), ""},
      {"total 10\n" + part("at 0 length 10", bitmap("data\\a", "alpha=1, blend=1")),
       "2: no call paints the ground from 0 to 10, where these parts are active: \"p\"; hint: lay a "
       "fadeScreen of alpha 1 on the lowest track\n"},
      {"total 10\n" + part("at 0 length 10", bitmap("data\\a", "alpha=0.9, blend=0")),
       "2: no call paints the ground from 0 to 10, where these parts are active: \"p\"; hint: lay a "
       "fadeScreen of alpha 1 on the lowest track\n"},
  });
}

// All at once: a mistake in the text does not hide the others.
TEST(Vexproject, CheckGoesOnBehindMistakes) {
  const TemporaryFolder folder;
  expectChecks(
      {{"totl 10\n" + part("at 0 lenght 1", "") + part("at 1 length 1", "SceneHelper.fade()") + "zoom x\n",
        "1: unknown statement totl; did you mean total?\n"
        "2: unknown key lenght of a part; did you mean length?\n"
        "3: unknown function \"fade\" of SceneHelper; hint: known are drawBitmap, drawBitmapRepeat, "
        "drawBitmapWave, fadeScreen, drawMovie, setViewport, drawNoise and drawVexLogo\n"
        "4: a number for zoom is expected, not x\n"
        "5: total is missing, the time at which the show ends\n"}});
}

TEST(Vexproject, CheckNamesThePartsOfProjectFiles) {
  const TemporaryFolder folder;
  ProjectData project{
      .totalTime = 1,
      .parts = {{.name = "a"},
                {.name = "b\"",
                 .length = 1e300,
                 .calls = {{.parameters = {{.name = "red", .type = 2, .dots = {{0, 1}, {0, 1}, {1, 1}}}}}}}}};
  const std::string bytes = buildProject(project).bytes;
  expectChecks({
      {bytes,
       " part \"a\" (1): no call paints the ground from 0 to 1, where these parts are active: \"a\", "
       "\"b%22\"; "
       "hint: lay a fadeScreen of alpha 1 on the lowest track\n"
       " part \"b%22\" (2): red of SceneTest.animate: dot x 0 follows 0, the dots must ascend; hint: the "
       "show "
       "ends with \"Critical error: d[]=0 in calc_spline!\"\n"
       " part \"b%22\" (2): unknown scene \"SceneTest\"; hint: did you mean SceneHell?\n"
       " part \"b%22\" (2): length is inf, not a usable number\n"},
      {buildProject(
           {.totalTime = 1,
            .parts =
                {{.name = "a", .pos = 1}, {.name = "b", .pos = 1}, {.name = "c"}, {.name = "d", .pos = 1}}})
           .bytes,
       " part \"c\" (3): begins at 0, but stands behind part \"b\" (2), which begins at 1 and hides it until "
       "then; hint: parts must stand in the order in which they begin\n"
       " part \"c\" (3): no call paints the ground from 0 to 1, where these parts are active: \"c\"; hint: "
       "lay a fadeScreen of alpha 1 on the lowest track\n"},
      {bytes.substr(0, 30),
       " char != 1 byte (0 read) (project show: functions file name lacks its end behind byte 30)\n"},
      {"\r0.18\n", " Wrong file version. Must be 0.17 (project show: version is 0.18)\n"},
  });
}

TEST(Vexproject, CheckLooksForTheData) {
  const TemporaryFolder folder;
  const auto bmp = [](int width, int height) { return BmpFile{.width = width, .height = height}.bytes(); };
  fs::create_directory("run");
  fs::current_path("run");
  writeRunFolder({});
  fs::remove("test.hvp");
  fs::current_path(folder.path());
  writeFile("run/data/Loose.BMP", bmp(4, 4));
  writeFile("run/data/masked.bmp", bmp(4, 4));
  writeFile("run/data/masked_mask.bmp", bmp(4, 4));
  writeFile("run/data/unlike.bmp", bmp(4, 4));
  writeFile("run/data/unlike_mask.bmp", bmp(8, 4));
  writeFile("run/data/photo.jpg", jpegBytes(8, 16, plain({1, 2, 3})));
  writeFile("run/data/photo_mask.jpg", jpegBytes(16, 8, plain({1, 2, 3})));
  writeFile("run/data/odd.bmp", bmp(6, 4));
  writeFile("run/data/broken.jpg", "no picture");
  for (const int frame : {1, 2, 4, 5, 6, 9}) {
    writeFile("run/data/m" + std::to_string(frame) + ".jpg", jpegBytes(8, 8, plain({1, 2, 3})));
  }
  writeFile("run/data/cut.bmp", bmp(4, 4).substr(0, 60));
  writeFile("run/data/veil.bmp", bmp(4, 4));
  writeFile("run/data/veil_mask.bmp", bmp(4, 4).substr(0, 99));
  std::string tall = jpegBytes(8, 8, plain({1, 2, 3}));
  tall[tall.find("\xff\xc0") + 5] = 16;  // the height's upper byte: 4104
  tall[tall.find("\xff\xc0") + 6] = 0;
  writeFile("run/data/tall.jpg", tall);
  writeFile("run/data/f1.jpg", tall);
  writeFile("run/data/few.hvv", std::string("\5\0\0\0", 4));
  writeSoundFile("long.wav", {.rate = 1000, .frames = 10500});
  writeFile("run/vex.pak",
            pakBytes({{"data\\PACKED.bmp", bmp(4, 4)}, {"data\\long.wav", readFile("long.wav")}}));
  writeSoundFile("run/data/short.wav", {.rate = 1000, .frames = 10400});
  writeFile("run/data/noise.ogg", "no music");
  const std::string longName = "data\\abcdefghijklmnopqrstuvw";  // 28 characters
  writeFile("run/data/abcdefghijklmnopqrstuvw.bmp", bmp(4, 4));
  const std::string at = "at 1 length 1";
  const std::string anew = "; hint: write it anew from its picture\n";
  std::string movies, lacks;
  for (int i = 0; i < 12; ++i) {  // of 10 000 frames each, beyond 100 000 no more are looked for
    const std::string base = "no\\n" + std::to_string(i) + "x";
    movies += movie("first=0, last=9999", base);
    if (i < 11) lacks += "3: movie \"" + base + "\" lacks of its frames 0 to 9999: 0 to 9999\n";
  }
  fs::current_path("run");
  expectDataChecks({
      {grounded + part(at, movies), " remark: too many movie frames, not all were looked for\n" + lacks},
      {grounded + part(at, bitmap(longName)),
       "3: remark: file name \"" + longName + ".bmp\" has 32 characters, an archive takes at most 31\n"},
      {grounded + part(at, bitmap("data\\loose") + bitmap("DATA\\packed") + bitmap("data\\masked")), ""},
      {grounded + part(at, bitmap("data\\none") + "\n" + bitmap("data\\none")),
       "3: texture \"data\\none\" is missing, neither .jpg nor .bmp is there\n"},
      {grounded + part(at, bitmap("data\\odd")),
       "3: texture \"data\\odd.bmp\" is 6x4, both sides must be powers of two; hint: scale it, to 8x4 "
       "for "
       "instance\n"},
      {grounded + part(at, bitmap("data\\broken")), "3: texture \"data\\broken.jpg\" cannot be read" + anew},
      {grounded + part(at, bitmap("data\\cut")),
       "3: texture data\\cut.bmp is cut short: its picture needs 48 bytes, 6 are left" + anew},
      {grounded + part(at, bitmap("data\\veil")),
       "3: texture data\\veil_mask.bmp is cut short: its picture needs 48 bytes, 45 are left" + anew},
      {grounded + part(at, bitmap("data\\tall")),
       "3: texture data\\tall.jpg: Corrupt JPEG data: premature end of data segment" + anew},
      {grounded + part(at, movie("first=1, last=1", "data\\f")),
       "3: texture data\\f1.jpg: Corrupt JPEG data: premature end of data segment\n"},
      {grounded + part(at, "SceneOuttro.preloadVectorBalls(balls=\"data\\few.hvv\")"),
       "3: data\\few.hvv: number of balls is 5, does not fit the file's size of 4 bytes\n"},
      {grounded + part(at, bitmap("data\\unlike")),
       "3: mask \"data\\unlike_mask.bmp\" is 8x4, its texture 4x4; hint: scale one to the size of the "
       "other\n"},
      {grounded + part(at, bitmap("data\\photo")),
       "3: mask \"data\\photo_mask.jpg\" is 16x8, its texture 8x16; hint: scale one to the size of the "
       "other\n"},
      {grounded + part(at, movie("first=1, last=2")), ""},
      {grounded + part(at, movie("first=1, last=11")),
       "3: movie \"data\\m\" lacks of its frames 1 to 11: 3, 7 to 8 and 10 to 11\n"},
      {grounded + part(at, movie("first=5, last=1")),
       "3: remark: last of SceneHelper.drawMovie: frame 1 lies before the first one, 5\n"
       "3: movie \"data\\m\" lacks of its frames 5 to 7: 7\n"},
      {"music \"data\\none.ogg\" " + grounded, " music \"data\\none.ogg\" is missing\n"},
      {"music \"data\\noise.ogg\" " + grounded,
       " music \"data\\noise.ogg\" cannot be played; hint: it takes WAV, OGG, FLAC or MP3 with one or "
       "two channels\n"},
      {"music \"data\\long.wav\" " + grounded, ""},
      {"music \"DATA\\short.WAV\" " + grounded,
       " total 10, but music \"DATA\\short.WAV\" is 10.4 s long and must last 0.5 s longer than the "
       "show; hint: at "
       "most 9.9\n"},
      {"total 10\n" + part("at 0 length 10", bitmap("data\\loose")), ""},
      {"total 10\n" + part("at 0 length 10", bitmap("data\\masked")),
       "2: no call paints the ground from 0 to 10, where these parts are active: \"p\"; hint: lay a "
       "fadeScreen of alpha 1 on the lowest track\n"},
  });
  fs::current_path(folder.path());
  writeFile("show", grounded + part(at, bitmap("data\\none")));
  const Program missing = vexproject("check show --dir run");
  EXPECT_EQ(missing.errors,
            "vexproject: show:3: texture \"data\\none\" is missing, neither .jpg nor .bmp is there\n");
  EXPECT_EQ(missing.exitCode, 255);
  writeFile("show", grounded + part(at, bitmap("data\\masked")));
  EXPECT_EQ(vexproject("check show --dir run").output, "no problems\n");
  EXPECT_EQ(vexproject("check show --dir none").errors,
            "vexproject: can't go to folder none: No such file or directory\n");
}

TEST(Vexproject, TellsWhatScenesNeed) {
  EXPECT_EQ(vexproject("scenes SceneHell").output,
            "## SceneHell\n\n| Needs | |\n|---|---|\n"
            "| model | `data\\hell.ase` or `data\\hell.hv3` |\n"
            "| meshes of these names | `Lava`, `Sphere` |\n"
            "| lights of these names | `part03`, `part04` |\n"
            "| meshes (or helpers) or lights of these names | `part01`, `part02`, `Sprayer01` |\n"
            "| at least | 1 camera |\n"
            "| sky textures | top `data\\helltop`, bottom `data\\hellbottom`, north `data\\hellnorth`, west "
            "`data\\hellwest`, south `data\\hellsouth`, east `data\\helleast` |\n"
            "| textures in calls | `data\\flare_shine` for animate |\n"
            "| motions last | cameras 20 s once, meshes 20 s in a loop, `Sphere` 5 s in a loop |\n");
  const std::string all = vexproject("scenes").output;
  for (const SceneEntry& entry : sceneEntries())
    EXPECT_NE(all.find("## " + std::string(entry.name) + "\n"), std::string::npos);
  const Program wrong = vexproject("scenes SceneHel");
  EXPECT_EQ(wrong.exitCode, 255);
  EXPECT_EQ(wrong.errors, "vexproject: unknown scene SceneHel; did you mean SceneHell?\n");
}

TEST(Vexproject, TheDocumentsHold) {
  const TemporaryFolder folder;
  EXPECT_EQ(vexproject("functions").output, readFile(docs / "functions.md"))
      << "write it anew: vexproject functions > docs/functions.md";
  for (const char* document : {"project-text.md", "tutorial.md", "tutorial-world.md"}) {
    writeFile("example.txt", examplesOf(readFile(docs / document)));
    EXPECT_EQ(vexproject("compile example.txt example.hvp").errors, "");
    const Program checked = vexproject("check example.txt");
    EXPECT_EQ(checked.errors, "") << document;
    EXPECT_EQ(checked.output, "no problems\n") << document;
    expectRoundTrip(readFile("example.hvp"));
  }
}

TEST(Vexproject, WrongUsageShowsTheUsage) {
  const Program help = vexproject("--help");
  EXPECT_EQ(help.exitCode, 0);
  const struct {
    const char* arguments;
    std::string message;
  } cases[] = {
      {"", ""},
      {"compile x", ""},
      {"dump", ""},
      {"dump x y", ""},
      {"dump x --dir y", "vexproject: --dir belongs to check\n"},
      {"check", ""},
      {"check x --dir", "vexproject: --dir needs a value\n"},
      {"check x --to y", "vexproject: unknown option --to\n"},
      {"functions x", ""},
      {"scenes x y", ""},
      {"unknown", ""},
  };
  for (const auto& [arguments, message] : cases) {
    const Program program = vexproject(arguments);
    EXPECT_EQ(program.exitCode, 2) << arguments;
    EXPECT_EQ(program.errors, message + help.output);
  }
}

}  // namespace vex
