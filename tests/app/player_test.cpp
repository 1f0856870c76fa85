#include <gtest/gtest.h>
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <utility>
#include <vector>

#include "resources/icon.h"
#include "tests/support/run_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

// Behind <gtest/gtest.h>, whose names Xlib's macros would replace.
#include <X11/Xatom.h>
#include <X11/extensions/Xfixes.h>
#include <X11/extensions/scrnsaver.h>

// The real program under a virtual X server, from its start dialog to its exit code.

namespace vex {

namespace {

constexpr const char* title = "Vex by Halvane";
constexpr int screenWidth = 800;
constexpr int screenHeight = 600;
constexpr unsigned long red = 0xff0000, green = 0x00ff00, black = 0,
                        white = 0xffffff;  // as screenColour() gives them
constexpr unsigned long acidGreen = icon::acidGreen;
constexpr int loadingWidth = 498;  // of the loading dialog
constexpr const char* player = VEX_BIN "/vex";

ProjectData redForSeconds(double seconds) {
  ProjectData project{.totalTime = seconds};
  project.parts = {fillPart("red", 0, seconds + 1, 1, 0, 0)};
  return project;
}

// Sizes of the icons that the window offers.
std::vector<unsigned long> iconSizes(Display* display, Window window) {
  Atom type;
  int format;
  unsigned long count = 0, rest;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display, window, XInternAtom(display, "_NET_WM_ICON", False), 0, 100000, False,
                     XA_CARDINAL, &type, &format, &count, &rest, &bytes);
  const auto* values = reinterpret_cast<const unsigned long*>(bytes);
  std::vector<unsigned long> sizes;
  for (unsigned long at = 0; at + 1 < count; at += 2 + values[at] * values[at + 1]) {
    sizes.push_back(values[at]);
  }
  if (bytes) XFree(bytes);
  return sizes;
}

bool cursorVisible(Display* display) {
  XFixesCursorImage* image = XFixesGetCursorImage(display);
  if (!image) return true;
  const bool visible = std::any_of(image->pixels, image->pixels + image->width * image->height,
                                   [](unsigned long argb) { return argb >> 24 != 0; });
  XFree(image);
  return visible;
}

bool screenSaverOn(Display* display) {
  XScreenSaverInfo info{};
  XScreenSaverQueryInfo(display, DefaultRootWindow(display), &info);
  return info.state == ScreenSaverOn;
}

// Tones of 1000 Hz in the first second, 2000 Hz in the second, and so on; which one is heard `seconds`
// behind the first sound, in Hz. The device adds noise of a few steps.
int tone(const std::vector<short>& heard, double seconds) {
  const auto first =
      std::find_if(heard.begin(), heard.end(), [](short sample) { return std::abs(sample) > 1000; });
  const auto at = (first - heard.begin()) / 2 * 2 + std::lround(seconds * 44100) * 2;
  constexpr int frames = 4410;
  if (at + 2 * frames > std::ssize(heard)) return -1;
  int rises = 0;
  for (auto i = at + 2; i < at + 2 * frames; i += 2) {
    const auto n = static_cast<std::size_t>(i);
    rises += heard[n - 2] < 0 && heard[n] >= 0;
  }
  return rises * 10;
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

  // In the middle of the screen.
  bool shows(unsigned long colour) {
    return waitUntil(
        [&] { return screenColour(display.get(), screenWidth / 2, screenHeight / 2) == colour; });
  }

  XWindowAttributes placeOf(Window window) {
    XWindowAttributes place{};
    XGetWindowAttributes(display.get(), window, &place);
    return place;
  }

  int screenWidthNow() { return placeOf(DefaultRootWindow(display.get())).width; }

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
  ProjectData project{.totalTime = 1000, .music = "data\\music.wav"};
  project.parts = {fillPart("red", 0, 2, 1, 0, 0), fillPart("green", 2, 998, 0, 1, 0)};
  writeRunFolder(project);
  writeFile("used_textures.log", "data\\vex01 1\nbroken\n");
  writeSoundFile("data/music.wav", {.frames = 44100 * 5});
  RunningProgram program(player);
  startShow();
  EXPECT_TRUE(shows(red));
  EXPECT_EQ(program.openAt(STDIN_FILENO), "/dev/null") << "closed at the start";
  key("a space Return q F1");
  EXPECT_TRUE(shows(green)) << "only Escape ends the show";
  key("Escape");
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
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
  writeRunFolder(redForSeconds(3));
  RunningProgram program(player);
  startShow();
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
  expectOrder(readFile("Demo.log"),
              {"no sound file defined\n", "destroying sound\n", "destroying textures\n"});
}

TEST_F(Player, TheCloseButtonEndsTheShow) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player);
  pressCloseButton(display.get(), startShow());
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
  expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
}

TEST_F(Player, SignalsEndTheShowInOrder) {
  writeRunFolder(redForSeconds(1000));
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    std::filesystem::remove("Demo.log");
    RunningProgram program(player);
    startShow();
    program.signal(number);
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number << ": " << program.errors();
    expectOrder(readFile("Demo.log"), {"destroying part dispatcher\n", "destroying textures\n"});
  }
}

TEST_F(Player, CancelAndEscapeLeaveTheDialogQuietly) {
  writeRunFolder(redForSeconds(1000));
  // The second button is the last stop of the Tab key.
  for (const char* keys : {"Escape", "shift+Tab space", "shift+Tab Return", "shift+Tab KP_Enter"}) {
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
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number << ": " << program.errors();
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
    EXPECT_EQ(program.exitCode(), 0) << "signal " << number << ": " << program.errors();
    const std::string log = readFile("Demo.log");
    expectOrder(log, {"start reading test.hvp\n", "destroying sound\n", "destroying part dispatcher\n",
                      "destroying scene SceneHelper\n", "destroying textures\n"});
    EXPECT_EQ(log.find("preloading"), std::string::npos) << "the next step was begun";
  }
}

TEST_F(Player, ThePictureFollowsTheWindowsSize) {
  ProjectData project = redForSeconds(1000);
  project.parts[0].calls.push_back(  // white in the upper right quarter
      {.scene = "SceneHelper",
       .function = "drawBitmap",
       .parameters = {text("name", "data\\vex01"), constant("x", 0), constant("y", -1), constant("w", 1),
                      constant("h", 1), constant("n", 8), constant("glitch", 0), constant("alpha", 1),
                      constant("b", 0)}});
  writeRunFolder(project);
  RunningProgram program(player);
  waitForDialog();
  key("Tab space Return");  // in a window
  const Window window = waitForShow();
  const auto shows = [&](int width, int height) {
    return waitUntil([&] {
      return screenColour(display.get(), 0, 0) == red &&
             screenColour(display.get(), width - 1, height - 1) == red &&
             screenColour(display.get(), width * 7 / 8, height / 8) == white;
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
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
  Window root;
  int x, y;
  unsigned width = 0, height = 0, border, depth;
  XGetGeometry(display.get(), DefaultRootWindow(display.get()), &root, &x, &y, &width, &height, &border,
               &depth);
  EXPECT_EQ(width, 800u);
  EXPECT_EQ(height, 600u);
}

TEST_F(Player, AWindowIsAsLargeAsTheChosenModeAndLeavesTheDesktopAlone) {
  offerMode640x480();  // comes preselected, 800 x 600 below it
  writeRunFolder(redForSeconds(1000));
  for (const auto& [keys, width] : {std::pair{"Tab space Return", 640}, {"Down Tab space Return", 800}}) {
    RunningProgram program(player);
    waitForDialog();
    key(keys);
    const Window window = waitForWindow(display.get(), title, width);
    ASSERT_NE(window, 0u) << "no window " << width << " wide";
    EXPECT_TRUE(waitUntil([&] { return placeOf(window).x == (screenWidth - width) / 2; }))
        << placeOf(window).x;
    EXPECT_EQ(screenWidthNow(), screenWidth);
    EXPECT_TRUE(shows(red));
    key("Escape");
    EXPECT_EQ(program.exitCode(), 0) << program.errors();
  }
  EXPECT_FALSE(std::filesystem::exists("Demo.log")) << "the statistics were not asked for";
}

TEST_F(Player, TheShowHasAnIconNoCursorAndNoScreenSaver) {
  writeRunFolder(redForSeconds(1000));
  RunningProgram program(player);
  waitForDialog();
  EXPECT_TRUE(cursorVisible(display.get())) << "the dialog needs one";
  XSetScreenSaver(display.get(), 1, 1, PreferBlanking, AllowExposures);
  EXPECT_TRUE(waitUntil([&] { return screenSaverOn(display.get()); }));
  key("Return");
  const Window window = waitForShow();
  EXPECT_TRUE(shows(red));
  XWarpPointer(display.get(), None, window, 0, 0, 0, 0, screenWidth / 2, screenHeight / 2);
  EXPECT_TRUE(waitUntil([&] { return !cursorVisible(display.get()); }));
  EXPECT_EQ(iconSizes(display.get(), window), (std::vector<unsigned long>{16, 32, 48, 64}));
  usleep(1500000);  // longer than the saver waits
  EXPECT_FALSE(screenSaverOn(display.get()));
  key("Escape");
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
}

TEST_F(Player, TheMusicIsHeardFromTheStartTimeAndLeadsTheClock) {
  ProjectData project{.startTime = 3, .totalTime = 4.6, .music = "data\\music.wav"};
  project.parts = {fillPart("red", 0, 10, 1, 0, 0)};
  writeRunFolder(project);
  writeSoundFile("data/music.wav",
                 {.frames = 44100 * 8, .sample = [](int frame, int) {
                    const double hertz = 1000.0 * (frame / 44100 + 1);
                    return 0.5f * static_cast<float>(std::sin(2 * std::numbers::pi * hertz * frame / 44100));
                  }});
  {
    RunningProgram program(player, "heard.wav");
    waitForDialog();
    key("Tab space Return");
    EXPECT_EQ(program.exitCode(), 0) << program.errors();
  }
  std::vector<short> heard;
  SF_INFO info{};
  SNDFILE* file = sf_open("heard.wav", SFM_READ, &info);
  ASSERT_TRUE(file);
  heard.resize(static_cast<std::size_t>(info.frames) * 2);
  EXPECT_EQ(sf_readf_short(file, heard.data(), info.frames), info.frames);
  sf_close(file);
  EXPECT_NEAR(tone(heard, 0.1), 4000, 20);
  EXPECT_NEAR(tone(heard, 0.8), 4000, 20);
  EXPECT_NEAR(tone(heard, 1.1), 5000, 20);
  EXPECT_NEAR(static_cast<double>(heard.size()) / 2 / 44100, 1.6, 0.4) << "the clock went on with the music";

  std::filesystem::remove("heard.wav");
  RunningProgram silent(player, "heard.wav");
  waitForDialog();
  key("Tab space Tab space Return");
  EXPECT_EQ(silent.exitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists("heard.wav")) << "\"No sound\" was ticked";
}

// The warning's box holds the loading at its fourteenth step of fifteen.
TEST_F(Player, TheLoadingBarShowsHowFarTheLoadingIs) {
  ProjectData project = redForSeconds(1000);
  project.music = "data\\none.ogg";
  writeRunFolder(project);
  RunningProgram program(player);
  waitForDialog();
  key("Tab space Return");
  const Window warning = waitForWindow(display.get(), "Warning");
  ASSERT_NE(warning, 0u);
  const Window loading = findWindow(display.get(), title, loadingWidth);
  ASSERT_NE(loading, 0u);
  XMoveWindow(display.get(), warning, 0, 0);
  const XWindowAttributes place = placeOf(loading);
  const auto barAt = [&](int percent) {
    return screenColour(display.get(), place.x + 21 + 456 * percent / 100, place.y + 66);
  };
  EXPECT_TRUE(waitUntil([&] { return barAt(5) == acidGreen && barAt(83) == acidGreen; }));
  EXPECT_NE(barAt(89), acidGreen);  // 13 of 15 steps lie behind
  program.signal(SIGTERM);
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
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
  EXPECT_EQ(program.errors(), "vex: Wrong file version. Must be 0.17 (project test.hvp: version is 0.1)\n");
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
  EXPECT_EQ(program.exitCode(), 0) << program.errors();
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
