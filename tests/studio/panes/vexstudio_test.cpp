#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "base/report.h"
#include "tests/support/png.h"
#include "tests/support/run_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

// The real program under a virtual X server, with mouse and keys, by the files that it writes.

namespace vex {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

// At this size the window has its panes where the constants below say.
constexpr int screenWidth = 1280;
constexpr int screenHeight = 720;
constexpr int lanesLeft = 44;
constexpr int lanesTop = 510;
constexpr int rowHeight = 24;
constexpr int rulerY = 475;
constexpr int valueX = 1070;   // of the numbers of the pane of calls
constexpr int firstRowY = 62;  // of its rows, the part's name
constexpr int callRowHeight = 21;
constexpr double curveRight = 1268;  // of the last dot of a curve that rises to the pane's upper part
constexpr double curveTop = 366;
constexpr double total = 20;

// The lowest line's ground, by what it says.
constexpr unsigned long barCalm = 0x282620, barTrouble = 0x73392f, barAsks = 0x62502d;

constexpr const char* show =
    "# hand-made\n"
    "tempo 120   # two beats a second\n"
    "total 20s\n"
    "\n"
    "part red   { at 0:0  length 4:0  # eight seconds\n"
    "  SceneHelper.fadeScreen(red = 1,   green = 0, blue = 0, alpha = 1) }\n"
    "part blue {\n"
    "  at 8s  until 20s\n"
    "  SceneHelper.fadeScreen(red = 0, green = linear(0 0, 1 0.5), blue = 1, alpha = 1)\n"
    "}\n";

double pixelOf(double time) {
  return lanesLeft + time * (screenWidth - lanesLeft) / (total * 1.025);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

class Vexstudio : public testing::Test {
 protected:
  TemporaryFolder folder;
  XServer server;
  TestDisplay display = connect();
  std::optional<RunningProgram> studio;

  explicit Vexstudio(const char* withoutExtension = nullptr)
      : server(screenWidth, screenHeight, withoutExtension) {
    writeRunFolder({.totalTime = 1});
    setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
    setenv("XDG_CACHE_HOME", (fs::current_path() / "cache").c_str(), 1);
    writeFile("show.txt", show);
  }

  void start(const std::string& text = "show.txt") {
    studio.emplace(VEX_BIN "/vexstudio", "", text);
    ASSERT_TRUE(waitUntil([&] { return titleHas("vexstudio"); })) << studio->errors();
    // Loaded and drawn: what the show's first part paints stands in the picture.
    ASSERT_TRUE(waitUntil([&] { return pictureColour() == 0xff0000; })) << studio->errors();
    act("mousemove 640 680");
  }

  std::string title() {
    const Program program = runProgram("xdotool search --onlyvisible --name vexstudio getwindowname");
    return program.output;
  }
  bool titleHas(const std::string& words) { return title().find(words) != std::string::npos; }

  // In the middle of the picture.
  unsigned long pictureColour() { return screenColour(display.get(), 396, 200); }

  void act(const std::string& actions) {
    const Program program = runProgram("xdotool " + actions);
    EXPECT_EQ(program.exitCode, 0) << program.errors;
  }
  void press(const std::string& keys) { act("key --delay 60 " + keys); }
  void moveTo(double x, double y) { act(formatted("mousemove %.0f %.0f", x, y)); }
  void click(double x, double y, int button = 1) {
    act(formatted("mousemove %.0f %.0f sleep 0.05 click %d sleep 0.1", x, y, button));
  }
  void drag(double fromX, double fromY, double toX, double toY, const std::string& held = "") {
    const std::string down = held.empty() ? "" : "keydown " + held + " ",
                      up = held.empty() ? "" : " keyup " + held;
    act(formatted("mousemove %.0f %.0f sleep 0.05 ", fromX, fromY) + down +
        formatted(
            "mousedown 1 sleep 0.05 mousemove %.0f %.0f sleep 0.05 mousemove %.0f %.0f sleep 0.1 mouseup 1",
            (fromX + toX) / 2, (fromY + toY) / 2, toX, toY) +
        up + " sleep 0.1");
  }

  // The same for a studio that is busy meanwhile, and finds press, way and release at once.
  void dragUnseen(double fromX, double fromY, double toX, double toY) {
    studio->signal(SIGSTOP);
    drag(fromX, fromY, toX, toY);
    studio->signal(SIGCONT);
  }

  bool waitForBar(unsigned long ground) {
    return waitUntil([&] { return screenColour(display.get(), 4, screenHeight - 4) == ground; });
  }

  // Gives the chosen call's blue the value 1 by typing.
  void typeBlue() {
    click(pixelOf(2), laneY(0));
    click(valueX, firstRowY + 6 * callRowHeight);
    act("key ctrl+a type 1");
    press("Return");
  }

  // What comes to lie on disk when the text is saved.
  template <typename Matcher>
  void expectSaved(const Matcher& expected) {
    press("ctrl+s");
    waitUntil([&] { return testing::Matches(expected)(readFile("show.txt")) && !titleHas("●"); });
    EXPECT_THAT(readFile("show.txt"), expected) << title();
  }

  // Answers the question, as soon as it is asked, until what was to come of it has come.
  void answer(int number, const std::function<bool()>& done) {
    EXPECT_TRUE(waitUntil([&] {
      press(formatted("alt+%d", number));
      return done();
    })) << title();
  }

  double laneY(int row) const { return lanesTop + (row + 0.5) * rowHeight; }
};

TEST_F(Vexstudio, MovesAndTrimsPartsByMouseAndChangesTheirNumbersAlone) {
  start();
  click(pixelOf(10), laneY(0));
  drag(pixelOf(10), laneY(0), pixelOf(11.05), laneY(0));  // caught by the beat at 9 s
  expectSaved(replaced(replaced(show, "at 8s", "at 9s"), "until 20s", "until 21s"));
  press("ctrl+z");
  expectSaved(show);
  drag(pixelOf(8) - 2, laneY(0), pixelOf(6.02) - 2, laneY(0));  // the first part's end
  expectSaved(replaced(show, "length 4:0", "length 3:0"));
  press("ctrl+z");
  press("ctrl+y");
  expectSaved(replaced(show, "length 4:0", "length 3:0"));
  EXPECT_TRUE(fs::exists("test.hvp"));
  // A gesture that is given up; undo waits for its end.
  act(formatted(
          "mousemove %.0f %.0f sleep 0.05 mousedown 1 mousemove %.0f %.0f sleep 0.05 key ctrl+z key Escape",
          pixelOf(10), laneY(0), pixelOf(12), laneY(0)) +
      " sleep 0.1 mouseup 1");
  expectSaved(replaced(show, "length 4:0", "length 3:0"));
}

TEST_F(Vexstudio, TypesAndDragsValues) {
  start();
  click(pixelOf(2), laneY(0));
  // Rows: name, begins, scene time, call, red, green, blue, alpha.
  click(valueX, firstRowY + 6 * callRowHeight);
  act("key ctrl+a type 0.75");
  press("Return");
  expectSaved(replaced(show, "blue = 0", "blue = 0.75"));
  EXPECT_TRUE(waitUntil([&] { return pictureColour() == 0xff00bf; })) << std::hex << pictureColour();
  press("ctrl+z");
  drag(valueX, firstRowY + 4 * callRowHeight, valueX - 150,
       firstRowY + 4 * callRowHeight);  // of 300 pixels for 0 to 1
  expectSaved(replaced(show, "red = 1,", "red = 0.5,"));
}

TEST_F(Vexstudio, ScrubsPlaysAndSavesStills) {
  start();
  dragUnseen(pixelOf(2), rulerY, pixelOf(10), rulerY);
  EXPECT_TRUE(waitUntil([&] { return (pictureColour() & 0xff00ff) == 0x0000ff; }))
      << std::hex << pictureColour();
  press("F12");
  ASSERT_TRUE(waitUntil([] { return fs::exists("show-0010.000.png"); }));
  const Png still = readPng("show-0010.000.png");
  const std::vector<int> middle = still.at(still.width / 2, still.height / 2);
  EXPECT_NEAR(middle[1], 255 * 0.5 * 2 / 12, 1);
  EXPECT_EQ(middle[2], 255);
  press("space");
  EXPECT_TRUE(waitUntil([&] { return (pictureColour() >> 8 & 0xff) > 24; })) << "at 10.3 s";
  press("space F12");
  EXPECT_TRUE(waitUntil([] {
    const auto isLater = [](const fs::directory_entry& entry) {
      const std::string name = entry.path().filename();
      return name.starts_with("show-001") && name > "show-0010.200.png";
    };
    return std::ranges::any_of(fs::directory_iterator("."), isLater);
  }));
  press("Home");
  EXPECT_TRUE(waitUntil([&] { return pictureColour() == 0xff0000; }));
}

TEST_F(Vexstudio, ReadsTheTextAgainAndAsksWhenBothHaveChangedIt) {
  start();
  const std::string green = replaced(show, "red = 1,   green = 0", "red = 0,   green = 1");
  writeFile("show.txt", green);
  EXPECT_TRUE(waitUntil([&] { return pictureColour() == 0x00ff00; }));
  writeFile("show.txt", replaced(show, "part red", "prat red"));
  EXPECT_TRUE(waitForBar(barTrouble));
  EXPECT_EQ(pictureColour(), 0x00ff00u) << "the last good show goes on";
  writeFile("show.txt", green);
  EXPECT_TRUE(waitForBar(barCalm));
  typeBlue();
  EXPECT_TRUE(waitUntil([&] { return titleHas("●"); }));
  const std::string theirs = replaced(show, "# hand-made", "# by somebody else");
  writeFile("show.txt", theirs);
  EXPECT_TRUE(waitForBar(barAsks));
  press("ctrl+s");
  act("sleep 0.5");
  EXPECT_EQ(readFile("show.txt"), theirs) << "nothing is overwritten unseen";
  answer(3, [&] { return titleHas("show-mine.txt") && !titleHas("●"); });  // save mine under another name
  EXPECT_EQ(readFile("show-mine.txt"), replaced(green, "blue = 0", "blue = 1"));
  EXPECT_EQ(readFile("show.txt"), theirs);
}

TEST_F(Vexstudio, KeepsOneOfTwoTexts) {
  start();
  for (const bool mine : {true, false}) {
    writeFile("show.txt", show);
    EXPECT_TRUE(waitUntil([&] { return pictureColour() == 0xff0000; }));
    EXPECT_TRUE(waitForBar(barCalm));
    typeBlue();
    EXPECT_TRUE(waitUntil([&] { return titleHas("●"); }));
    const std::string theirs = replaced(show, "red = 1,", "red = 0,");
    writeFile("show.txt", theirs);
    answer(mine ? 1 : 2, [&] { return !titleHas("●"); });
    EXPECT_EQ(readFile("show.txt"), mine ? replaced(show, "blue = 0", "blue = 1") : theirs);
    EXPECT_TRUE(waitUntil([&] { return pictureColour() == (mine ? 0xff00ffu : 0u); }))
        << std::hex << pictureColour();
  }
}

TEST_F(Vexstudio, SplitsDoublesDeletesAndDragsDots) {
  start();
  click(pixelOf(2), rulerY);  // a beat
  click(pixelOf(1), laneY(0));
  press("ctrl+k");
  expectSaved(testing::AllOf(HasSubstr("part red   { at 0:0  length 1:0  # eight seconds\n"),
                             HasSubstr("part red_2")));
  press("ctrl+z");
  expectSaved(show);
  click(pixelOf(14), laneY(0));
  press("Delete");
  expectSaved(testing::Not(HasSubstr("part blue")));
  press("ctrl+z");
  click(pixelOf(14), laneY(0));
  click(900, firstRowY + 5 * callRowHeight);  // green, a line: its curve shows two dots
  drag(curveRight, curveTop, curveRight - 60, curveTop + 200);
  expectSaved(testing::AllOf(HasSubstr("linear(0 0, 0.8"),
                             HasSubstr("# hand-made\ntempo 120   # two beats a second\n")));
  press("ctrl+z");
  expectSaved(show);
}

TEST_F(Vexstudio, RecordsBesideItself) {
  start();
  click(pixelOf(1), rulerY);
  press("bracketleft");
  press("Right Right Right bracketright ctrl+shift+r");  // three frames
  EXPECT_NE(waitForWindow(display.get(), "Record to"), 0u);
  // The studio goes on meanwhile.
  writeFile("show.txt", replaced(show, "part red", "prat red"));
  EXPECT_TRUE(waitForBar(barTrouble));
  writeFile("show.txt", show);
  EXPECT_TRUE(waitForBar(barCalm));
  EXPECT_TRUE(waitUntil([&] {
    press("Return");  // the name that is offered, by whichever chooser the desktop has
    return findWindow(display.get(), "Record to") == 0;
  }));
  const auto isRecorded = [] { return fs::exists("show.mp4"); };
  ASSERT_TRUE(waitUntil(isRecorded) || waitUntil(isRecorded));  // the recorder loads all anew
  EXPECT_GT(fs::file_size("show.mp4"), 1000u);
  EXPECT_FALSE(fs::exists("test.hvp") && readFile("test.hvp").find("red") != std::string::npos)
      << "what is recorded is not saved";
  EXPECT_TRUE(studio->running());
}

TEST_F(Vexstudio, TakesTheFirstPictureThatHoldsTheTypedLetters) {
  const char* bitmap =
      "{ at 0:0  length 4:0  # eight seconds\n"
      "  SceneHelper.drawBitmap(texture = \"data\\vex01\", x = 0, y = 0, w = 0, h = 0, frames = 0, glitch = "
      "0,\n"
      "    alpha = 0, blend = 0)\n";
  const std::string text = replaced(show, "{ at 0:0  length 4:0  # eight seconds\n", bitmap);
  writeFile("show.txt", text);
  start();
  click(pixelOf(2), laneY(0));
  click(valueX, firstRowY + 4 * callRowHeight);
  EXPECT_NE(waitForWindow(display.get(), "Picture"), 0u);
  act("type x02");
  press("Return");
  expectSaved(replaced(text, "vex01", "vex02"));
}

TEST_F(Vexstudio, OffersWhatWasNotSaved) {
  start();
  typeBlue();
  EXPECT_TRUE(waitUntil([&] { return titleHas("●"); }));
  studio->signal(SIGTERM);
  EXPECT_EQ(studio->exitCode(), 0);
  start();
  answer(1, [&] { return pictureColour() == 0xff00ff; });
  EXPECT_EQ(readFile("show.txt"), show);
  expectSaved(replaced(show, "blue = 0", "blue = 1"));
  EXPECT_FALSE(fs::exists(".show.txt.autosave"));
}

TEST_F(Vexstudio, GoesOnAfterATextureTurnsToRubbish) {
  start();
  const std::string picture = readFile("data/vex01.bmp");
  ASSERT_FALSE(picture.empty());
  writeFile("data/vex01.bmp", "rubbish");
  EXPECT_TRUE(waitForBar(barTrouble));
  EXPECT_TRUE(studio->running());
  EXPECT_EQ(pictureColour(), 0xff0000u);
  writeFile("data/vex01.bmp", picture);
  EXPECT_TRUE(waitForBar(barCalm));
  EXPECT_EQ(pictureColour(), 0xff0000u);
}

TEST_F(Vexstudio, LeavesOnlyWhenNothingIsLost) {
  start();
  typeBlue();
  press("ctrl+q");
  EXPECT_TRUE(waitForBar(barAsks));
  EXPECT_TRUE(studio->running());
  expectSaved(replaced(show, "blue = 0", "blue = 1"));
  press("ctrl+q");
  EXPECT_EQ(studio->exitCode(), 0) << studio->errors();
  EXPECT_THAT(readFile("config/vex/studio"), HasSubstr("width 1280"));
}

class VexstudioWithoutGl : public Vexstudio {
 protected:
  VexstudioWithoutGl() : Vexstudio("GLX") {}
};

TEST_F(VexstudioWithoutGl, ShapesTheTextAllTheSame) {
  studio.emplace(VEX_BIN "/vexstudio", "", "show.txt");
  ASSERT_TRUE(waitForBar(barTrouble)) << studio->errors();
  click(pixelOf(14), laneY(0));
  press("Delete");
  expectSaved(testing::Not(HasSubstr("part blue")));
  press("ctrl+q");
  EXPECT_EQ(studio->exitCode(), 0) << studio->errors();
}

TEST_F(Vexstudio, RefusesWhatIsNotThere) {
  struct Row {
    const char* arguments;
    int exitCode;
    const char* message;
  };
  for (const Row& row : {Row{"nothing.txt", 255, "nothing.txt"}, Row{"", 2, "one text or one run folder"},
                         Row{"data", 255, "no show in folder"}}) {
    const Program program = runProgram(std::string(VEX_BIN "/vexstudio ") + row.arguments);
    EXPECT_EQ(program.exitCode, row.exitCode) << row.arguments;
    EXPECT_THAT(program.errors, HasSubstr(row.message)) << row.arguments;
  }
}

TEST_F(Vexstudio, MakesATextOfAFoldersProject) {
  writeFile("empty/show", "");
  fs::remove("show.txt");
  ProjectData project{.totalTime = 5};
  project.parts = {fillPart("all", 0, 5, 1, 0, 0)};
  writeFile("test.hvp", buildProject(project).bytes);
  start(".");
  EXPECT_THAT(readFile("show.txt"), HasSubstr("part \"all\" {"));
}

}  // namespace

}  // namespace vex
