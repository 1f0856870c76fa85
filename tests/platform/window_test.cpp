#include "platform/window.h"

#include <GL/gl.h>
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/report.h"
#include "platform/end_request.h"
#include "platform/loading_dialog.h"
#include "platform/message.h"
#include "tests/support/x_server.h"

namespace vex {

namespace {

using Clock = std::chrono::steady_clock;

bool quit = false;
int frames = 0;
Clock::time_point firstFrame;

void open(bool fullscreen) {
  catchEndSignals();
  openWindow(
      {.title = "Test window", .width = 320, .height = 240, .bitsPerPixel = 32, .fullscreen = fullscreen},
      {.log = [](const char* line) { std::fprintf(stderr, "%s\n", line); },
       .fail =
           [](const char* text) {
             std::fprintf(stderr, "failed: %s\n", text);
             _exit(3);
           }});
}

// The last frame tells whether it still had a context.
void frame() {
  if (quit) {
    std::fprintf(stderr, "%s", glGetString(GL_VERSION) ? "ended with a context" : "ended without a context");
    leaveGameMode();
    _exit(0);
  }
  if (frames++ == 0) firstFrame = Clock::now();
  glClear(GL_COLOR_BUFFER_BIT);
  glFinish();
  swapBuffers();
}

void ignoreSize(int, int) {}

void run(
    void (*reshape)(int, int) = ignoreSize, void (*begin)() = [] {}) {
  runMainLoop({.frame = frame,
               .reshape = reshape,
               .keyboard = [](unsigned char key, int, int) { quit = key == 27; },
               .begin = begin,
               .requestClose = [] { quit = true; }});
}

}  // namespace

TEST(Window, EveryWishToEndReachesTheLastFrame) {
  const XServer server(640, 480);
  const struct {
    const char* what;
    std::function<void(Display*, Window)> act;
    int signal;
  } cases[] = {
      {"escape", [](Display* display, Window window) { pressKeys(display, window, {XK_Escape}); }, 0},
      {"close button", [](Display* display, Window window) { pressCloseButton(display, window); }, 0},
      {"SIGINT", {}, SIGINT},
      {"SIGTERM", {}, SIGTERM},
      {"SIGHUP", {}, SIGHUP},
  };
  for (const auto& row : cases) {
    const ChildResult result = runWithUser(
        [&] {
          open(false);
          if (row.signal) {
            const pid_t player = getpid();
            if (fork() == 0) {
              usleep(700000);
              kill(player, row.signal);
              _exit(0);
            }
          }
          run();
        },
        [&](Display* display) {
          const Window window = waitForWindow(display, "Test window");
          usleep(500000);
          if (window && row.act) row.act(display, window);
          pause();
        });
    EXPECT_EQ(result.exitCode, 0) << row.what;
    EXPECT_EQ(result.errorText, "ended with a context") << row.what;
  }
}

// The window answers before its main loop runs.
TEST(Window, WishesToEndCountFromTheFirstMoment) {
  const XServer server(640, 480);
  const struct {
    const char* what;
    void (*act)(Display*, Window);
  } cases[] = {{"escape", [](Display* display, Window window) { pressKeys(display, window, {XK_Escape}); }},
               {"close button", pressCloseButton}};
  for (const auto& row : cases) {
    const ChildResult result = runWithUser(
        [] {
          alarm(30);  // where the wish is lost
          open(false);
          run();
        },
        [&](Display* display) {
          if (const Window window = waitForWindow(display, "Test window")) row.act(display, window);
          pause();
        });
    EXPECT_EQ(result.exitCode, 0) << row.what << result.errorText;
  }
}

TEST(Window, AnIdleMachineDrawsNoMoreFramesThanTheScreenShows) {
  const XServer server(640, 480);
  const ChildResult result = runInChild([] {
    open(false);
    runMainLoop({.frame =
                     [] {
                       frame();
                       const std::chrono::duration<double> passed = Clock::now() - firstFrame;
                       if (passed.count() < 2) return;
                       std::fprintf(stderr, "%.1f", frames / passed.count());
                       _exit(0);
                     },
                 .reshape = [](int, int) {},
                 .keyboard = [](unsigned char, int, int) {},
                 .begin = [] {},
                 .requestClose = [] {}});
  });
  const double rate = std::atof(result.errorText.c_str());
  EXPECT_LE(rate, 61.5);
  EXPECT_GE(rate, 5) << result.errorText;
}

// The toolkit's labels would draw a symbol in place of '@' and what follows.
TEST(LoadingWindow, ShowsItsTextAsItStands) {
  const XServer server(800, 600);
  // The last column of the screen in which the line of text has ink.
  const auto inkEnd = [](const char* text) {
    return std::stoi(runInChild([&] {
                       openLoadingWindow("Loading window");
                       showLoadingProgress(0, text);
                       const TestDisplay display = connect();
                       int end = 0;
                       for (int y = 328; y < 344; y += 2) {
                         for (int x = 172; x < 320; ++x) {
                           if ((screenColour(display.get(), x, y) & 0xff) < 0x80) end = std::max(end, x);
                         }
                       }
                       std::fprintf(stderr, "%d", end);
                     }).errorText);
  };
  const int letter = inkEnd("a");
  EXPECT_GT(letter, 172);
  EXPECT_GT(inkEnd("a@mmmm"), letter + 40);
  EXPECT_GT(inkEnd("@mmmm"), letter + 30);
}

TEST(Window, FullScreenWithoutThatModeCoversTheScreenAndSaysWhy) {
  const XServer server(640, 480);
  const ChildResult result = runWithUser(
      [] {
        open(true);
        openLoadingWindow("Loading window");
        showLoadingProgress(50, "Loading SceneLayerParticles");
        sleep(1);
        closeLoadingWindow();
        run([](int width, int height) { std::fprintf(stderr, "%d x %d\n", width, height); },
            [] { std::fprintf(stderr, "begins at frame %d\n", frames); });
      },
      [](Display* display) {
        const Window window = waitForWindow(display, "Test window");
        const Window loading = waitForWindow(display, "Loading window");
        XWindowAttributes place{};
        XGetWindowAttributes(display, window, &place);
        const bool covers = place.x == 0 && place.y == 0 && place.width == 640 && place.height == 480;
        if (loading && covers && waitUntilGone(display, "Loading window"))
          pressKeys(display, window, {XK_Escape});
        pause();
      });
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errorText,
            "game mode 320x240:32@60 is not possible\n"
            "display mode 320x240 cannot be set, full screen keeps the desktop's\n"
            "640 x 480\n"
            "begins at frame 0\n"
            "ended with a context");
}

// The one thing missing is the extension that tells which mode to restore.
TEST(Window, FullScreenLeavesAModeThatNothingWouldRestore) {
  const XServer server(640, 480, "RANDR");
  const ChildResult result = runInChild([] {
    open(true);
    quit = true;
    run();
  });
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(
      result.errorText,
      "full screen keeps the desktop's mode, which nothing would restore: the display mode cannot be told\n"
      "ended with a context");
}

TEST(Window, LosingTheServerEndsWithOneLine) {
  const struct {
    const char* title;
    std::function<void()> show;
  } cases[] = {{"Test window",
                [] {
                  open(false);
                  run();
                }},
               {"Warning", [] { warning("look"); }}};
  for (const auto& row : cases) {
    const XServer server(640, 480);
    const ChildResult result = runWithUser(
        [&] {
          enableMessageWindows();
          row.show();
        },
        [&](Display* display) {
          if (waitForWindow(display, row.title)) server.stop();
          _exit(0);
        });
    EXPECT_EQ(result.exitCode, 255) << row.title;
    const std::string said = row.title == std::string("Warning") ? "vextests: look\n" : "";
    EXPECT_EQ(result.errorText, said + "vextests: lost the X display \"" + std::getenv("DISPLAY") + "\"\n");
  }
}

}  // namespace vex
