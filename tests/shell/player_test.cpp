#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "tests/support/run_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

// The real program under a virtual X server, from its start dialog to its exit code.

namespace vex {

namespace {

constexpr const char* title = "Vex by Halvane";
constexpr int screenWidth = 800;
constexpr int screenHeight = 600;
constexpr unsigned long red = 0xff0000, black = 0;  // as screenColour() gives them
constexpr const char* player = VEX_BIN "/vex";

ProjectData redForSeconds(double seconds) {
  ProjectData project{.totalTime = seconds};
  project.parts = {fillPart("red", 0, seconds + 1, 1, 0, 0)};
  return project;
}

class Player : public testing::Test {
 protected:
  TemporaryFolder folder;
  XServer server{screenWidth, screenHeight};
  TestDisplay display = connect();

  // Through the server's test extension, like a real keyboard; key names are xdotool's.
  void key(const std::string& names) {
    const Program program = runProgram("xdotool key --delay 40 " + names);
    EXPECT_EQ(program.exitCode, 0) << program.errors;
  }

  // The dialog is narrower than the screen's one mode, which the show's window fills.
  void waitForDialog() {
    EXPECT_NE(waitForWindow(display.get(), title), 0u);
    EXPECT_EQ(findWindow(display.get(), title, screenWidth), 0u) << "the dialog comes first";
  }

  Window waitForShow() {
    const Window window = waitForWindow(display.get(), title, screenWidth);
    EXPECT_NE(window, 0u);
    return window;
  }

  // Presses OK with "Show stats" ticked, whose log tells how far the program is, and waits for the show.
  Window startShow() {
    waitForDialog();
    key("Tab Tab Tab space Return");
    EXPECT_TRUE(
        waitUntil([] { return readFile("Demo.log").find("successfully parsed") != std::string::npos; }));
    return waitForShow();
  }

  void expectOrder(const std::string& log, std::initializer_list<const char*> lines) {
    std::size_t from = 0;
    for (const char* line : lines) {
      const std::size_t at = log.find(line, from);
      EXPECT_NE(at, std::string::npos) << line << " is missing or out of order in:\n" << log;
      if (at != std::string::npos) from = at;
    }
  }
};

}  // namespace

TEST_F(Player, PlaysFromTheDialogToEscape) {
  ProjectData project = redForSeconds(1000);
  project.music = "data\\music.wav";
  writeRunFolder(project);
  writeFile("used_textures.log", "data\\vex01 1\nbroken\n");
  writeSoundFile("data/music.wav", {.frames = 44100 * 5});
  RunningProgram program(player);
  startShow();
  key("a");
  EXPECT_TRUE(program.running()) << "only Escape ends the show";
  key("Escape");
  EXPECT_EQ(program.exitCode(), 0);
  EXPECT_EQ(program.errors(), "");
  expectOrder(
      readFile("Demo.log"),
      {" ver ", "mask file data\\vex01_mask.bmp not found, cancelling\n", "start reading test.hvp\n",
       "opening sound file data\\music.wav from physical file\n", "project file successfully parsed\n",
       "preloading texture data\\vex01 w/ wrap\n", "destroying sound\n", "destroying part dispatcher\n",
       "destroying scene SceneHelper\n", "  destroying part red\n", "    destroying function fadeScreen\n",
       "      destroying parameter r\n", "destroying textures\n"});
}

TEST_F(Player, EndsWithTheTotalTime) {
  writeRunFolder(redForSeconds(1.5));
  RunningProgram program(player);
  startShow();
  EXPECT_EQ(program.exitCode(), 0);
  expectOrder(readFile("Demo.log"),
              {"no sound file defined\n", "destroying sound\n", "destroying textures\n"});
}

TEST_F(Player, TheCloseButtonEndsTheShow) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player);
  pressCloseButton(display.get(), startShow());
  EXPECT_EQ(program.exitCode(), 0);
  expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
}

TEST_F(Player, SignalsEndTheShowInOrder) {
  writeRunFolder(redForSeconds(1000));
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove("Demo.log");
    RunningProgram program(player);
    startShow();
    program.signal(number);
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number;
    expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
  }
}

TEST_F(Player, CancelAndEscapeLeaveTheDialogQuietly) {
  writeRunFolder(redForSeconds(1000));
  // The second button is the last stop of the Tab key.
  for (const char* keys : {"Escape", "shift+Tab space"}) {
    RunningProgram program(player);
    waitForDialog();
    key(keys);
    EXPECT_EQ(program.exitCode(), 0) << keys;
    EXPECT_EQ(program.errors(), "");
    EXPECT_EQ(findWindow(display.get(), title), 0u);
  }
}

TEST_F(Player, SignalsCancelTheDialog) {
  writeRunFolder(redForSeconds(1000));
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    RunningProgram program(player);
    waitForDialog();
    program.signal(number);
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number;
    EXPECT_EQ(findWindow(display.get(), title), 0u);
  }
}

// The project names its music before the loading is done: the warning's box holds it there.
TEST_F(Player, SignalsEndTheLoadingInOrder) {
  ProjectData project = redForSeconds(1000);
  project.music = "data\\none.ogg";
  writeRunFolder(project);
  writeFile("used_textures.log", "data\\light1 0\n");
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove("Demo.log");
    RunningProgram program(player);
    waitForDialog();
    key("Tab Tab Tab space Return");
    EXPECT_NE(waitForWindow(display.get(), "Warning"), 0u);
    program.signal(number);
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number;
    const std::string log = readFile("Demo.log");
    expectOrder(log, {"start reading test.hvp\n", "destroying sound\n", "destroying part dispatcher\n",
                      "destroying scene SceneHelper\n", "destroying textures\n"});
    EXPECT_EQ(log.find("preloading"), std::string::npos) << "the next step was begun";
  }
}

TEST_F(Player, ThePictureFollowsTheWindowsSize) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player);
  waitForDialog();
  key("Tab space Return");  // in a window
  const Window window = waitForShow();
  const auto shows = [&](int width, int height) {
    return waitUntil([&] {
      return screenColour(display.get(), 0, 0) == red &&
             screenColour(display.get(), width - 1, height - 1) == red;
    });
  };
  EXPECT_TRUE(shows(screenWidth, screenHeight));
  for (const auto& [width, height] : {std::pair{400, 300}, {700, 500}, {300, 550}}) {
    XMoveResizeWindow(display.get(), window, 0, 0, static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
    XSync(display.get(), False);
    EXPECT_TRUE(waitUntil([&, w = width] { return screenColour(display.get(), w, 0) == black; }));
    EXPECT_TRUE(shows(width, height)) << width << " x " << height;
  }
}

// The desktop of 800 x 600 shrinks to the mode chosen, with everything on it, and comes back.
TEST_F(Player, FullScreenTakesTheChosenMode) {
  offerMode640x480();
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player);
  waitForDialog();
  key("Return");  // 640 x 480 comes preselected
  EXPECT_NE(waitForWindow(display.get(), title, 640), 0u);
  EXPECT_TRUE(waitUntil([&] {
    return screenColour(display.get(), 0, 0) == red && screenColour(display.get(), 639, 479) == red;
  }));
  key("Escape");
  EXPECT_EQ(program.exitCode(), 0);
  Window root;
  int x, y;
  unsigned width = 0, height = 0, border, depth;
  XGetGeometry(display.get(), DefaultRootWindow(display.get()), &root, &x, &y, &width, &height, &border,
               &depth);
  EXPECT_EQ(width, 800u);
  EXPECT_EQ(height, 600u);
}

TEST_F(Player, WithoutStatsItWritesNothing) {
  writeRunFolder(redForSeconds(1.5));
  RunningProgram program(player);
  waitForDialog();
  key("Tab space Return");  // in a window
  waitForShow();
  EXPECT_EQ(program.exitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists("Demo.log"));
}

TEST_F(Player, AFatalErrorShowsABoxAndEndsWithoutCleanUp) {
  writeRunFolder(redForSeconds(1000));
  writeFile("test.hvp", "0.1\n");
  RunningProgram program(player);
  waitForDialog();
  key("Tab Tab Tab space Return");
  EXPECT_NE(waitForWindow(display.get(), "Error"), 0u);
  EXPECT_TRUE(program.running()) << "the box waits";
  key("Return");
  EXPECT_EQ(program.exitCode(), 255);
  EXPECT_EQ(program.errors(), "vex: Wrong file version. Must be 0.17\n");
  EXPECT_EQ(readFile("Demo.log").find("destroying mesh"), std::string::npos);
}

TEST_F(Player, LooksFirstWhetherThereIsAPresentation) {
  RunningProgram program(player);
  waitForDialog();
  key("Return");
  EXPECT_NE(waitForWindow(display.get(), "Error"), 0u);
  key("Return");
  EXPECT_EQ(program.exitCode(), 255);
  EXPECT_EQ(program.errors(), "vex: no presentation in folder " + folder.path().native() +
                                  ": neither vex.pak nor test.hvp is there\n");
}

TEST_F(Player, AMusicWarningShowsABoxAndTheShowGoesOn) {
  ProjectData project = redForSeconds(1.5);
  project.music = "data\\none.ogg";
  writeRunFolder(project);
  RunningProgram program(player);
  waitForDialog();
  key("Return");
  EXPECT_NE(waitForWindow(display.get(), "Warning"), 0u);
  key("Return");
  EXPECT_TRUE(waitUntilGone(display.get(), "Warning"));
  EXPECT_EQ(program.exitCode(), 0);
  EXPECT_EQ(program.errors(), "vex: Sound file not found! Disabling sound\n");
}

TEST(PlayerWithoutDisplay, SaysSoAndEnds) {
  const TemporaryFolder folder;
  unsetenv("DISPLAY");
  RunningProgram program(player);
  EXPECT_EQ(program.exitCode(), 255);
  EXPECT_EQ(program.errors(), "vex: Couldn't init splash screen: no X display found (DISPLAY is \"\")\n");
}

}  // namespace vex
