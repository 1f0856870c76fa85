#include "platform/desktop.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "base/report.h"
#include "platform/display_modes.h"
#include "platform/screen_modes.h"
#include "tests/support/x_server.h"

namespace vex {

namespace {

// A server whose one screen of 800 x 600 can also show 640 x 480.
class Desktop : public ::testing::Test {
 protected:
  void SetUp() override {
    offerMode640x480();
    ASSERT_EQ(shown(), "800x600 in 800x600");
  }

  // Mode of the screen and extent of the desktop, seen by a connection that no child shares.
  static std::string shown() {
    const TestDisplay display = connect();
    const PrimaryOutput primary = findPrimaryOutput(display.get());
    if (!primary || !primary.crtc) return "nothing";
    Window root;
    int x, y;
    unsigned width, height, border, depth;
    XGetGeometry(display.get(), DefaultRootWindow(display.get()), &root, &x, &y, &width, &height, &border,
                 &depth);
    return std::to_string(primary.crtc->width) + "x" + std::to_string(primary.crtc->height) + " in " +
           std::to_string(width) + "x" + std::to_string(height);
  }

  bool becomes(const std::string& state) {
    for (int i = 0; i < 250 && shown() != state; ++i) usleep(20000);
    return shown() == state;
  }

  const XServer server{800, 600};
};

}  // namespace

TEST_F(Desktop, ListsModesAndRate) {
  const std::vector<DisplayMode> modes = enumerateDisplayModes();
  ASSERT_EQ(modes.size(), 2u);
  for (const DisplayMode& mode : modes) EXPECT_EQ(mode.bitsPerPixel, 32);
  EXPECT_EQ(modes[0].width + modes[1].width, 800 + 640);
  EXPECT_EQ(refreshRate(), 60);  // this server gives its first mode no timings
  ASSERT_EQ(guardDesktop(), "");
  ASSERT_TRUE(switchScreenMode(640, 480));
  EXPECT_NEAR(refreshRate(), 25175000.0 / (800 * 525), 1e-9);
  restoreDesktop();
  EXPECT_EQ(shown(), "800x600 in 800x600") << "the guardian's work is done when the call returns";
}

TEST_F(Desktop, ModeComesBackHoweverTheProcessEnds) {
  const struct {
    const char* what;
    std::function<void()> end;
  } cases[] = {
      {"restored", [] { restoreDesktop(); }},
      {"restored twice",
       [] {
         restoreDesktop();
         restoreDesktop();
       }},
      {"returned", [] {}},
      {"fatal error", [] { fatalError("over"); }},
      {"SIGKILL", [] { raise(SIGKILL); }},
      {"SIGHUP", [] { raise(SIGHUP); }},
      {"SIGINT to the group", [] { kill(0, SIGINT); }},
  };
  for (const auto& row : cases) {
    const ChildResult result = runInChild([&] {
      setpgid(0, 0);
      guardDesktop();
      switchScreenMode(640, 480);
      std::fprintf(stderr, "%s\n", shown().c_str());
      row.end();
    });
    EXPECT_TRUE(result.errorText.starts_with("640x480 in 640x480\n")) << row.what << ": " << result.errorText;
    EXPECT_TRUE(becomes("800x600 in 800x600")) << row.what << " left " << shown();
  }
}

// What ends in order waits until the mode is back; it does not leave that to chance.
TEST_F(Desktop, AFatalErrorEndsBehindTheChange) {
  const ChildResult result = runInChild([] {
    guardDesktop();
    switchScreenMode(640, 480);
    fatalError("over");
  });
  EXPECT_EQ(shown(), "800x600 in 800x600");
  EXPECT_EQ(result.exitCode, 255);
}

TEST_F(Desktop, WithoutAGuardianTheModeStays) {
  EXPECT_FALSE(switchScreenMode(640, 480));
  const ChildResult result = runInChild([] {
    // Room for the connection that looks at the screen, but not for both ends of the lifeline.
    const int next = dup(STDERR_FILENO);
    close(next);
    const rlimit few{static_cast<rlim_t>(next) + 1, 1024};
    setrlimit(RLIMIT_NOFILE, &few);
    const std::string obstacle = guardDesktop();
    const rlimit many{1024, 1024};
    setrlimit(RLIMIT_NOFILE, &many);
    std::fprintf(stderr, "%s, switched: %d", obstacle.c_str(), switchScreenMode(640, 480));
  });
  EXPECT_EQ(result.errorText, "Too many open files, switched: 0");
  EXPECT_EQ(shown(), "800x600 in 800x600");
}

TEST_F(Desktop, UnknownModesAreRefusedAndNothingChanges) {
  ASSERT_EQ(guardDesktop(), "");
  EXPECT_FALSE(switchScreenMode(1234, 567));
  EXPECT_EQ(shown(), "800x600 in 800x600");
  restoreDesktop();
}

TEST(DesktopAlone, RestoringWithoutADisplayDoesNothing) {
  setenv("DISPLAY", ":4000000", 1);
  EXPECT_EQ(guardDesktop(), "the display mode cannot be told");
  EXPECT_FALSE(switchScreenMode(640, 480));
  restoreDesktop();
  EXPECT_TRUE(enumerateDisplayModes().empty());
  EXPECT_EQ(refreshRate(), 60);
}

}  // namespace vex
