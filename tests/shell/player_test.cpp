#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "tests/support/run_folder.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

// The real program under a virtual X server, from its start dialog to its exit code.

namespace vex {

namespace {

constexpr const char* title = "Vex by Halvane";
constexpr int screenWidth = 800;
constexpr int screenHeight = 600;
constexpr const char* player = VEX_BIN "/vex";

ProjectData redForSeconds(double seconds) {
  ProjectData project{.totalTime = seconds};
  project.parts = {fillPart("red", 0, seconds + 1, 1, 0, 0)};
  return project;
}

class Player : public testing::Test {
 protected:
  TemporaryFolder folder;
  XServer screen{screenWidth, screenHeight};

  // The start dialog is narrower than the screen's one mode.
  void waitForDialog() {
    screen.waitForWindow(title);
    EXPECT_EQ(screen.findWindow(title, screenWidth), 0u) << "the show's window comes after the dialog";
  }

  // Presses OK with "Show stats" ticked, whose log tells how far the program is, and waits for the show.
  WindowId startShow() {
    waitForDialog();
    screen.key("Tab Tab Tab space Return");
    EXPECT_TRUE(
        waitUntil([] { return readFile("Demo.log").find("successfully parsed") != std::string::npos; }));
    return screen.waitForWindow(title, screenWidth);
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
  RunningProgram program(player, screen.display());
  startShow();
  screen.key("a");
  EXPECT_TRUE(program.running()) << "only Escape ends the show";
  screen.key("Escape");
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
  writeRunFolder(redForSeconds(0.5));
  RunningProgram program(player, screen.display());
  startShow();
  EXPECT_EQ(program.exitCode(), 0);
  expectOrder(readFile("Demo.log"),
              {"no sound file defined\n", "destroying sound\n", "destroying textures\n"});
}

TEST_F(Player, TheCloseButtonEndsTheShow) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player, screen.display());
  screen.pressCloseButton(startShow());
  EXPECT_EQ(program.exitCode(), 0);
  expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
}

TEST_F(Player, SignalsEndTheShowInOrder) {
  writeRunFolder(redForSeconds(1000));
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove("Demo.log");
    RunningProgram program(player, screen.display());
    startShow();
    program.signal(number);
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number;
    expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
  }
}

TEST_F(Player, CancelAndDialogEscapeLeaveQuietly) {
  writeRunFolder(redForSeconds(1000));
  // The second button is the last stop of the Tab key.
  for (const char* keys : {"Escape", "Tab Tab Tab Tab Tab Return", "shift+Tab space"}) {
    RunningProgram program(player, screen.display());
    waitForDialog();
    screen.key(keys);
    EXPECT_EQ(program.exitCode(), 0) << keys;
    EXPECT_EQ(program.errors(), "");
    EXPECT_FALSE(std::filesystem::exists("Demo.log"));
  }
}

TEST_F(Player, WindowedTheShowKeepsItsSizeAndWithoutStatsItWritesNothing) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player, screen.display());
  waitForDialog();
  screen.key("Tab space Return");
  screen.waitForWindow(title, screenWidth);
  screen.key("Escape");
  EXPECT_EQ(program.exitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists("Demo.log"));
}

TEST_F(Player, AFatalErrorShowsABoxAndEndsWithoutCleanUp) {
  writeRunFolder(redForSeconds(1000));
  std::filesystem::remove("test.hvp");
  for (const char* key : {"Return", "Escape", "space"}) {
    RunningProgram program(player, screen.display());
    waitForDialog();
    screen.key("Tab Tab Tab space Return");
    screen.waitForWindow("Error");
    EXPECT_TRUE(program.running()) << "the box waits";
    screen.key(key);
    EXPECT_EQ(program.exitCode(), 255);
    EXPECT_EQ(program.errors(), "vex: Project file test.hvp not found!\n");
    EXPECT_EQ(readFile("Demo.log").find("destroying"), std::string::npos);
  }
}

TEST_F(Player, AMusicWarningShowsABoxAndTheShowGoesOn) {
  ProjectData project = redForSeconds(1000);
  project.music = "data\\none.ogg";
  writeRunFolder(project);
  RunningProgram program(player, screen.display());
  waitForDialog();
  screen.key("Return");
  screen.waitForWindow("Warning");
  screen.key("Return");
  screen.waitForWindow(title, screenWidth);
  EXPECT_TRUE(waitUntil([&] { return screen.findWindow("Warning") == 0; }));
  EXPECT_EQ(program.errors(), "vex: Sound file not found! Disabling sound\n");
  EXPECT_TRUE(waitUntil([&] {
    screen.key("Escape");
    return !program.running();
  }));
  EXPECT_EQ(program.exitCode(), 0);
}

TEST(PlayerWithoutDisplay, SaysSoAndEnds) {
  const TemporaryFolder folder;
  RunningProgram program(player, "");
  EXPECT_EQ(program.exitCode(), 255);
  EXPECT_NE(program.errors().find("display"), std::string::npos) << program.errors();
}

}  // namespace vex
