#include "base/report.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "base/fatal_place.h"
#include "base/options.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

struct Report : testing::Test {
  TemporaryFolder folder;
};

}  // namespace

TEST_F(Report, LogStaysAwayWithoutShowStats) {
  logPrintf("nothing\n");
  EXPECT_FALSE(std::filesystem::exists("Demo.log"));
}

TEST_F(Report, LogStartsEmptyAndIsCompleteAfterEachLine) {
  writeFile("Demo.log", "the run before\n");
  options().showStats = true;
  logPrintf("%s %d", "one", 1);
  EXPECT_EQ(readFile("Demo.log"), "one 1");
  logPrintf("\ntwo\n");
  EXPECT_EQ(readFile("Demo.log"), "one 1\ntwo\n");
  std::filesystem::remove("Demo.log");
  std::filesystem::create_directory("Demo.log");
  logPrintf("lost");
  std::filesystem::remove("Demo.log");
  logPrintf("later");
  EXPECT_EQ(readFile("Demo.log"), "later");
}

TEST_F(Report, TextsAreCutAt511Characters) {
  const std::string text(600, 'x');
  options().showStats = true;
  logPrintf("%s", text.c_str());
  EXPECT_EQ(readFile("Demo.log"), text.substr(0, 511));
  EXPECT_EQ(fatalText([&] { fatalError("%s", text.c_str()); }), text.substr(0, 511));
  EXPECT_EQ(runInChild([&] { warning("%s", text.c_str()); }).errorText,
            "vextests: " + text.substr(0, 511) + "\n");
}

TEST_F(Report, ACutLineOfTheLogStillEnds) {
  const std::string text(600, 'x');
  options().showStats = true;
  logPrintf("%s\n", text.c_str());
  logPrintf("%s", (text + "\n").c_str());
  logPrintf("%s\n", text.substr(0, 510).c_str());
  logPrintf("%s\nz", text.c_str());
  const std::string line = text.substr(0, 510) + "\n";
  EXPECT_EQ(readFile("Demo.log"), line + line + line + text.substr(0, 511));
}

TEST_F(Report, MessagesAreOneLineOfTheProgram) {
  const ChildResult fatal = runInChild([] { fatalError("one\ntwo %d\n", 2); });
  EXPECT_EQ(fatal.exitCode, 255);
  EXPECT_EQ(fatal.errorText, "vextests: one two 2\n");
  const ChildResult warned = runInChild([] { warning("careful\n"); });
  EXPECT_EQ(warned.exitCode, 0) << "a warning returns";
  EXPECT_EQ(warned.errorText, "vextests: careful\n");
}

TEST_F(Report, ThePlaceFollowsAFatalErrorWhateverItsLength) {
  const std::string text(600, 'x');
  const struct {
    std::string text, message;
  } cases[] = {
      {"bad", "bad (line 3, file a)"},
      {"bad\n", "bad\n(line 3, file a)"},
      {text, text.substr(0, 511 - 17) + " (line 3, file a)"},
  };
  for (const auto& [given, message] : cases) {
    EXPECT_EQ(fatalText([&] {
                const FatalPlace file([] { return "file a"; });
                {
                  const FatalPlace ended([] { return "line 2"; });
                }
                const FatalPlace line([] { return "line 3"; });
                fatalError("%s", given.c_str());
              }),
              message);
  }
}

TEST_F(Report, LoadingBarShowsTheShareOfTheStepsBefore) {
  static std::vector<std::pair<int, std::string>> shown;
  static int closed;
  shown.clear();
  closed = 0;
  loadingProgress("before the dialog");
  setLoadingDialog(
      {[](int percent, const char* text) { shown.emplace_back(percent, text); }, [] { ++closed; }});
  setLoadingSteps(15);
  loadingProgress("Loading %s", "SceneWater");
  loadingProgressAt(55, "half of %d", 2);
  for (int i = 3; i <= 15; ++i) loadingProgress("step %d", i);
  closeLoadingDialog();
  loadingProgress("after the dialog");
  ASSERT_EQ(shown.size(), 15u);
  EXPECT_EQ(shown[0], std::make_pair(0, std::string("Loading SceneWater")));
  EXPECT_EQ(shown[1], std::make_pair(55, std::string("half of 2")));
  EXPECT_EQ(shown[2], std::make_pair(6, std::string("step 3")));
  EXPECT_EQ(shown[14], std::make_pair(86, std::string("step 15")));
  EXPECT_EQ(closed, 1);
}

}  // namespace vex
