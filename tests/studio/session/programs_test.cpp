#include "studio/session/programs.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

TEST(Programs, NameTheFileThatACancelledRecordingLeaves) {
  const TemporaryFolder folder;
  writeRunFolder({.totalTime = 120});
  Programs programs;
  const Trouble trouble = programs.record({.project = readFile("test.hvp"),
                                           .file = "out.mkv",
                                           .stretch = {},
                                           .width = 320,
                                           .height = 240,
                                           .framesPerSecond = 30});
  ASSERT_FALSE(trouble) << *trouble;
  ASSERT_TRUE(waitUntil([&] {
    programs.news();
    return programs.recorded().value_or(0) > 0;
  }));
  programs.cancelRecording();
  std::optional<Programs::News> last;
  ASSERT_TRUE(waitUntil([&] {
    if (const auto news = programs.news()) last = news;
    return !programs.recorded();
  }));
  ASSERT_TRUE(last);
  EXPECT_EQ(last->text, "The recording was cancelled; what there is of it is in out.partial.mkv");
  EXPECT_TRUE(fs::exists("out.partial.mkv"));
}

}  // namespace

}  // namespace vex::studio
