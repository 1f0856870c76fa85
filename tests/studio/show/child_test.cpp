#include "studio/show/child.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/steady_clock.h"
#include "tests/support/left_behind.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

// Until its end, at most so long (s); updates as a window does.
double runToEnd(Child& child, double longest) {
  const double begin = steadySeconds();
  while (child.running() && steadySeconds() - begin < longest) {
    pollfd output{.fd = child.descriptor(), .events = POLLIN, .revents = 0};
    poll(&output, 1, 20);
    child.update();
  }
  return steadySeconds() - begin;
}

TEST(Child, TellsHowItGoesAndHowItEnded) {
  const struct {
    const char* command;
    int exitCode, percent;
    const char* message;
  } cases[] = {
      {"true", 0, -1, ""},
      {"exit 7", 7, -1, ""},
      {"echo recording 0 %; echo recording 40 %  1:20 left", 0, 40, ""},
      {"echo recording 40 %; echo rec: no disk >&2; exit 255", 255, 40, "rec: no disk"},
      {"printf 'recording 10 %%\\rrecording 90 %%\\r'; printf 'no line feed'", 0, 90, "no line feed"},
      {"echo recording 400 %", 0, 100, ""},
      {"echo reading 4 files", 0, -1, "reading 4 files"},
      {"kill -TERM $$", 128 + 15, -1, ""},
      {"cat", 0, -1, ""},  // nothing is on its standard input
      {"pwd | grep -o sub$", 0, -1, "sub"},
      {"kill -INT $$", 128 + 2, -1, ""},
  };
  const TemporaryFolder folder;
  std::filesystem::create_directory("sub");
  const int descriptors = openDescriptors();
  {
    Child child;
    EXPECT_EQ(child.descriptor(), -1);
    EXPECT_FALSE(child.running());
    for (const auto& [command, exitCode, percent, message] : cases) {
      ASSERT_EQ(child.start({"sh", "-c", command}, "sub"), std::nullopt) << command;
      EXPECT_TRUE(child.running());
      EXPECT_EQ(child.exitCode(), -1);
      runToEnd(child, 10);
      EXPECT_FALSE(child.running()) << command;
      EXPECT_EQ(child.exitCode(), exitCode) << command;
      EXPECT_EQ(child.percent(), percent) << command;
      EXPECT_EQ(child.message(), message) << command;
    }
  }
  EXPECT_EQ(openDescriptors(), descriptors);
}

TEST(Child, SaysWhyItCannotStart) {
  const TemporaryFolder folder;
  Child child;
  EXPECT_EQ(child.start({"./no-such-program"}, "."),
            "./no-such-program can't be started: No such file or directory");
  EXPECT_EQ(child.start({"sh"}, "no-such-folder"), "sh can't be started: No such file or directory");
  EXPECT_FALSE(child.running());
  ASSERT_EQ(child.start({"sleep", "60"}, "."), std::nullopt);
  EXPECT_EQ(child.start({"sleep", "1"}, "."), "sleep is running already");
}

// As a recorder does, which may take its time.
TEST(Child, EndsWhenItIsCancelledAndDoesNotWaitForItMeanwhile) {
  const TemporaryFolder folder;
  Child child;
  const double begin = steadySeconds();
  ASSERT_EQ(
      child.start({"sh", "-c", "trap 'echo kept; exit 130' INT; echo up; while :; do sleep 0.05; done"}, "."),
      std::nullopt);
  while (child.message() != "up" && steadySeconds() - begin < 10) child.update();
  child.cancel();
  EXPECT_LT(runToEnd(child, 10), 1);
  EXPECT_TRUE(child.cancelled());
  EXPECT_EQ(child.exitCode(), 130);
  EXPECT_EQ(child.message(), "kept");

  ASSERT_EQ(
      child.start({"sh", "-c", "trap 'sleep 1; exit 130' INT; echo slow; while :; do sleep 0.05; done"}, "."),
      std::nullopt);
  while (child.message() != "slow" && steadySeconds() - begin < 20) child.update();
  EXPECT_FALSE(child.cancelled());
  child.cancel();
  runToEnd(child, 10);
  EXPECT_EQ(child.exitCode(), 130);
}

TEST(Child, IsKilledWhenItIsCancelledAndLivesOn) {
  const TemporaryFolder folder;
  Child child(0.5);
  const double begin = steadySeconds();
  ASSERT_EQ(child.start({"sh", "-c", "trap '' INT; echo deaf; while :; do sleep 0.05; done"}, "."),
            std::nullopt);
  while (child.message() != "deaf" && steadySeconds() - begin < 20) child.update();
  const double before = steadySeconds();
  child.cancel();
  child.update();
  EXPECT_LT(steadySeconds() - before, 0.2);
  const double seconds = runToEnd(child, 10);
  EXPECT_GT(seconds, 0.4);
  EXPECT_LT(seconds, 2.5);
  EXPECT_EQ(child.exitCode(), 128 + 9);
}

}  // namespace
}  // namespace vex::studio
