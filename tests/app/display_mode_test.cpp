#include "app/display_mode.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "base/options.h"
#include "base/report.h"
#include "tests/support/x_server.h"

namespace vex {

namespace {

std::string joined(const std::vector<DisplayMode>& modes) {
  std::string text;
  for (const DisplayMode& mode : modes) text += (text.empty() ? "" : " ") + modeLine(mode);
  return text;
}

}  // namespace

TEST(DisplayMode, KeepsDeepModesOfTheFirst128) {
  EXPECT_EQ(joined(keepUsableModes(
                {{640, 480, 8}, {640, 480, 14}, {640, 480, 15}, {640, 480, 32}, {640, 480, 32}})),
            "640x480:15 640x480:32 640x480:32");
  std::vector<DisplayMode> many(127, {320, 200, 8});
  many.push_back({800, 600, 32});
  many.push_back({1024, 768, 32});
  EXPECT_EQ(joined(keepUsableModes(many)), "800x600:32");
}

// Expected orders were worked out by hand, swap by swap.
TEST(DisplayMode, SortsByPassesOfNeighbours) {
  const struct {
    std::vector<DisplayMode> modes;
    const char* sorted;
  } cases[] = {
      {{}, ""},
      {{{1024, 768, 32}, {640, 480, 32}, {800, 600, 32}}, "640x480:32 800x600:32 1024x768:32"},
      // The deeper one comes first where it is not larger, else the second pass undoes the first.
      {{{640, 480, 16}, {320, 200, 32}}, "320x200:32 640x480:16"},
      {{{640, 480, 16}, {1024, 768, 32}}, "640x480:16 1024x768:32"},
      // Each is larger than the other in one way: every pass swaps them, two passes restore them.
      {{{800, 400, 32}, {600, 500, 32}}, "800x400:32 600x500:32"},
      // Deeper against smaller: they change places in both passes.
      {{{640, 480, 32}, {320, 200, 16}}, "640x480:32 320x200:16"},
      {{{720, 400, 32}, {640, 480, 32}, {640, 350, 32}}, "640x350:32 640x480:32 720x400:32"},
  };
  for (const auto& row : cases) {
    std::vector<DisplayMode> modes = row.modes;
    sortModes(modes);
    EXPECT_EQ(joined(modes), row.sorted) << "from " << joined(row.modes);
  }
}

TEST(DisplayMode, PreselectsTheNearestTo640x480x32) {
  const struct {
    std::vector<DisplayMode> modes;
    int line;
  } cases[] = {
      {{{320, 200, 32}, {640, 480, 16}, {640, 480, 32}, {640, 480, 32}}, 2},
      {{{1024, 768, 32}, {800, 600, 16}}, 1},  // 672 against 296
      {{{650, 480, 32}, {630, 480, 32}, {640, 480, 22}}, 0},
      {{{1920, 1080, 32}}, 0},
  };
  for (const auto& row : cases) EXPECT_EQ(preselectMode(row.modes), row.line) << joined(row.modes);
}

// A turned screen lists its modes as if it stood upright, a nested one perhaps none.
TEST(DisplayMode, OffersWhatTheScreenShows) {
  const struct {
    std::vector<DisplayMode> modes;
    DisplayMode shown;
    const char* offered;
  } cases[] = {
      {{}, {1366, 768, 32}, "1366x768:32"},
      {{{800, 600, 32}, {1920, 1080, 32}}, {1080, 1920, 32}, "1080x1920:32 800x600:32 1920x1080:32"},
      {{{800, 600, 32}, {1920, 1080, 32}}, {1920, 1080, 32}, "800x600:32 1920x1080:32"},
  };
  for (const auto& row : cases) {
    std::vector<DisplayMode> modes = row.modes;
    addShownSize(modes, row.shown);
    EXPECT_EQ(joined(modes), row.offered);
  }
}

TEST(DisplayMode, WithoutADisplayThereIsNoDialog) {
  setenv("DISPLAY", ":4000000", 1);
  EXPECT_EQ(fatalText([] { runDisplayModeDialog(); }), "Couldn't init splash screen");
}

TEST(DisplayMode, DialogHandsOverWhatTheUserLeft) {
  const XServer server(1280, 800);
  const struct {
    const char* what;
    std::vector<KeySym> keys;
    int exitCode;
    const char* outcome;
  } cases[] = {
      {"defaults", {XK_Return}, 0, "1280x800:32 full 1 sound 1 stats 0 strips 0"},
      {"keypad", {XK_KP_Enter}, 0, "1280x800:32 full 1 sound 1 stats 0 strips 0"},
      {"all switches",
       {XK_Tab, XK_space, XK_Tab, XK_space, XK_Tab, XK_space, XK_Return},
       0,
       "1280x800:32 full 0 sound 0 stats 1 strips 0"},
      // After the third switch comes OK: the fourth stays out of reach.
      {"hidden switch",
       {XK_Tab, XK_Tab, XK_Tab, XK_Tab, XK_space},
       0,
       "1280x800:32 full 1 sound 1 stats 0 strips 0"},
      {"arrows stay in the list",
       {XK_Down, XK_Up, XK_Return},
       0,
       "1280x800:32 full 1 sound 1 stats 0 strips 0"},
      {"escape", {XK_Escape}, 0, ""},
      {"cancel button", {XK_Tab, XK_Tab, XK_Tab, XK_Tab, XK_Tab, XK_space}, 0, ""},
  };
  for (const auto& row : cases) {
    const ChildResult result = runWithUser(
        [] {
          const DisplayMode mode = runDisplayModeDialog();
          std::fprintf(stderr, "%s full %d sound %d stats %d strips %d", modeLine(mode).c_str(),
                       options().fullscreen, options().soundEnabled, options().showStats,
                       options().useStripCache);
        },
        [&](Display* display) {
          if (const Window window = waitForDialog(display, "Vex by Halvane"))
            pressKeys(display, window, row.keys);
          pause();
        });
    EXPECT_EQ(result.exitCode, row.exitCode) << row.what;
    EXPECT_EQ(result.errorText, row.outcome) << row.what;
  }
}

}  // namespace vex
