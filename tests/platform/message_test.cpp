#include "platform/message.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "base/report.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

namespace vex {

TEST(Message, WindowWaitsUntilItIsDismissed) {
  const XServer server(800, 600);
  for (const KeySym key : {XK_Return, XK_KP_Enter, XK_Escape, XK_space}) {
    const ChildResult result = runWithUser(
        [] {
          enableMessageWindows();
          warning("Texture %s has the wrong size\n", "data\\Light1");
          std::fprintf(stderr, "went on");
        },
        [&](Display* display) {
          if (const Window window = waitForDialog(display, "Warning")) pressKeys(display, window, {key});
          pause();
        });
    EXPECT_EQ(result.exitCode, 0) << key;
    EXPECT_EQ(result.errorText, "vextests: Texture data\\Light1 has the wrong size\nwent on") << key;
  }
}

TEST(Message, FatalWindowIsCaptionedErrorAndEndsTheProcess) {
  const XServer server(800, 600);
  const ChildResult result = runWithUser(
      [] {
        enableMessageWindows();
        fatalError("Project file %s not found", "test.hvp");
      },
      [&](Display* display) {
        if (const Window window = waitForDialog(display, "Error")) pressCloseButton(display, window);
        pause();
      });
  EXPECT_EQ(result.exitCode, 255);
  EXPECT_EQ(result.errorText, "vextests: Project file test.hvp not found\n");
}

TEST(Message, AStandardErrorThatNobodyReadsDoesNotKeepTheWindowAway) {
  const XServer server(800, 600);
  const ChildResult result = runWithUser(
      [] {
        enableMessageWindows();
        int ends[2];
        if (pipe(ends) != 0) std::_Exit(1);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        fatalError("unheard");
      },
      [&](Display* display) {
        if (const Window window = waitForDialog(display, "Error")) pressKeys(display, window, {XK_Return});
        pause();
      });
  EXPECT_EQ(result.exitCode, 255);
}

// Names are compared and characters classed as in the "C" locale, wherever the program runs.
TEST(Message, WindowsLeaveTheLocaleAlone) {
  const XServer server(800, 600);
  setenv("LC_ALL", "C.UTF-8", 1);
  const ChildResult result = runWithUser(
      [] {
        enableMessageWindows();
        warning("look");
        std::fputs(std::setlocale(LC_ALL, nullptr), stderr);
      },
      [&](Display* display) {
        if (const Window window = waitForDialog(display, "Warning")) pressKeys(display, window, {XK_Return});
        pause();
      });
  unsetenv("LC_ALL");
  EXPECT_EQ(result.errorText, "vextests: look\nC");
}

TEST(Message, LongTextsStayOnTheScreen) {
  const XServer server(800, 600);
  const std::string texts[] = {std::string(511, 'W'), std::string(250, '\n') + "end",
                               "word " + std::string(400, '/'), std::string(100, ' ') + "x"};
  for (const std::string& text : texts) {
    const ChildResult result = runWithUser(
        [&] {
          enableMessageWindows();
          warning("%s", text.c_str());
        },
        [&](Display* display) {
          const Window window = waitForDialog(display, "Warning");
          XWindowAttributes place{};
          if (!window || !XGetWindowAttributes(display, window, &place)) pause();
          // A window that does not fit is never answered, and the test runs into its time limit.
          if (place.x < 0 || place.y < 0 || place.x + place.width > 800 || place.y + place.height > 600)
            _exit(1);
          pressKeys(display, window, {XK_Return});
          pause();
        });
    EXPECT_EQ(result.exitCode, 0) << text;
  }
}

// Answered once, and as large as one text that holds all.
TEST(Message, WarningsOfOneCauseAreOneWindow) {
  const XServer server(800, 600);
  const TemporaryFolder folder;
  const auto answered = [](const std::function<void()>& body) {
    return runWithUser(
               [&] {
                 enableMessageWindows();
                 body();
               },
               [](Display* display) {
                 const Window window = waitForDialog(display, "Warning");
                 XWindowAttributes place{};
                 if (window) XGetWindowAttributes(display, window, &place);
                 writeFile("size", formatted("%dx%d", place.width, place.height));
                 pressKeys(display, window, {XK_Return});
                 pause();
               })
        .errorText;
  };
  answered([] { warning("%s", "No card!\nGoing on\n\nNo output!\nGoing on"); });
  const std::string size = readFile("size");
  EXPECT_EQ(answered([] {
              const MessagesJoined outer;
              warning("No card!\nGoing on");
              const MessagesJoined inner;
              warning("No output!\nGoing on");
            }),
            "vextests: No card! Going on\nvextests: No output! Going on\n");
  EXPECT_EQ(readFile("size"), size);
}

TEST(Message, WithoutADisplayTheLineSaysSoAndNothingWaits) {
  setenv("DISPLAY", ":4000000", 1);
  const ChildResult result = runInChild([] {
    enableMessageWindows();
    warning("two\nlines\n");
  });
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.errorText, "vextests: two lines: no X display found (DISPLAY is \":4000000\")\n");
}

}  // namespace vex
