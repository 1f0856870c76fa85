#include "studio/show/show.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/presentation.h"
#include "app/recorder.h"
#include "base/clock.h"
#include "base/window_size.h"
#include "production/song/cues.h"
#include "production/time_line.h"
#include "tests/support/draft.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/project_builder.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"
#include "timeline/function_call.h"

namespace vex::studio {
namespace {

namespace fs = std::filesystem;

using Picture = std::vector<std::byte>;

Picture picture() {
  Picture pixels;
  readBackBgra(glTestWidth, glTestHeight, pixels);
  return pixels;
}

Project projectOfFolder() {
  return decodeProject(readFile("test.hvp"), "test.hvp").project;
}

class ShowTest : public GlTest {
 protected:
  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    glViewport(0, 0, glTestWidth, glTestHeight);
  }

  void TearDown() override {
    show.reset();
    GlTest::TearDown();
  }

  void load(const Project& project) {
    show = std::make_unique<Show>();
    show->setPicture(glTestWidth, glTestHeight);
    ASSERT_EQ(show->load(project, {}), std::nullopt);
  }

  Picture drawn() {
    EXPECT_EQ(show->drawFrame(), std::nullopt);
    return picture();
  }

  TemporaryFolder folder;
  std::unique_ptr<Show> show;
};

// What recordings from these times begin with.
std::vector<Picture> recorded(const std::vector<double>& times) {
  std::vector<Picture> pictures;
  Presentation presentation;
  presentation.load(Begins::often);
  for (const double time : times) {
    presentation.begin(static_cast<float>(time));
    clockAdvanceTo(static_cast<float>(time));
    presentation.drawFrame();
    pictures.push_back(picture());
  }
  return pictures;
}

// The frame of that number of a recording.
Picture recordedFrame(float from, int number) {
  Presentation presentation;
  presentation.load();
  presentation.begin(from);
  for (int i = 0; i <= number; ++i) {
    clockAdvanceTo(frameTime(from, i, 30));
    presentation.drawFrame();
  }
  return picture();
}

TEST_F(ShowTest, ShowsAfterJumpsWhatRecordingsBeginWith) {
  placeDraft(".");
  const Project project = projectOfFolder();
  std::mt19937 chance(14);
  std::uniform_real_distribution<double> anywhere(0, project.totalTime - 1);
  std::vector<double> times;
  for (int i = 0; i < 20; ++i) times.push_back(anywhere(chance));
  const std::vector<Picture> expected = recorded(times);

  load(project);
  for (std::size_t i = 0; i < times.size(); ++i) {
    ASSERT_EQ(show->seek(times[i]), std::nullopt);
    EXPECT_EQ(drawn(), expected[i]) << "at " << times[i] << " s";
    EXPECT_EQ(show->time(), double{static_cast<float>(times[i])});
  }
}

// Particles have their past where the run-in gives it to them, as behind a recording that began so much
// earlier.
TEST_F(ShowTest, RunsInAsARecordingRunsUpToTheTime) {
  placeDraft(".");
  const float from = static_cast<float>(song::cueSeconds(song::waterBar + 4));
  const Picture expected = recordedFrame(from, 60);
  load(projectOfFolder());
  const double time = double{from} + 2;
  ASSERT_EQ(show->seek(time), std::nullopt);
  EXPECT_NE(drawn(), expected);
  show->setRunIn(2);
  ASSERT_EQ(show->seek(time), std::nullopt);
  EXPECT_EQ(drawn(), expected);
  ASSERT_EQ(show->seek(1), std::nullopt);  // not from before the begin
  EXPECT_EQ(show->time(), 1);
}

// --- The small show: a colour for each of its four seconds, and no music

constexpr float steps[4] = {0.2f, 0.4f, 0.6f, 0.8f};

ProjectData colours() {
  ProjectData project{.totalTime = 4, .parts = {}};
  for (int i = 0; i < 4; ++i)
    project.parts.push_back(fillPart("second " + std::to_string(i), i, 1, double{steps[i]}, 0, 0));
  return project;
}

Project asProject(const ProjectData& project) {
  return decodeProject(buildProject(project).bytes, "test").project;
}

// Seconds and red that are on the picture now.
int red() {
  return readPixel(glTestWidth / 2, glTestHeight / 2)[0];
}

int redOf(int second) {
  return static_cast<int>(steps[second] * 255 + 0.5f);
}

class SmallShow : public ShowTest {
 protected:
  void SetUp() override {
    ShowTest::SetUp();
    writeRunFolder(colours());
    fs::remove("test.hvp");  // the text that is shaped stands elsewhere
  }
};

TEST_F(SmallShow, GivesTroubleAsAValueAndIsMendedByTheNextGoodThing) {
  ProjectData fallen = colours();
  fallen.parts[1].calls[0].function = "explode";
  ProjectData fails = colours();  // as it is drawn
  fails.parts[1].calls[0] = {.scene = "SceneOuttro",
                             .function = "preloadVectorBalls",
                             .parameters = {text("balls", "data\\none.hvv")}};
  show = std::make_unique<Show>();
  show->setPicture(glTestWidth, glTestHeight);
  EXPECT_EQ(show->seek(1), "no show is loaded");
  EXPECT_EQ(show->play(), "no show is loaded");
  EXPECT_EQ(show->setProject(asProject(colours())), "no show is loaded");
  EXPECT_EQ(show->drawFrame(), std::nullopt);

  fs::rename("data/hell.ase", "data/away");
  EXPECT_EQ(show->load(asProject(colours()), {}), "File data\\hell.ase not found");
  EXPECT_EQ(show->seek(1), "no show is loaded");
  fs::rename("data/away", "data/hell.ase");
  ASSERT_EQ(show->load(asProject(colours()), {}), std::nullopt);

  // A refused time line leaves the one before, at its time.
  ASSERT_EQ(show->seek(2.5), std::nullopt);
  EXPECT_EQ(show->setProject(asProject(fallen)),
            "function explode not found (project text: part second 1: SceneHelper)");
  EXPECT_EQ(show->setProject(asProject({.totalTime = -1})), "Starting after end!");
  EXPECT_EQ(show->time(), 2.5);
  EXPECT_EQ(show->drawFrame(), std::nullopt);
  EXPECT_EQ(red(), redOf(2));

  // One that fails where it stands is refused as well; one that fails elsewhere is there.
  const std::string missing =
      "Vector balls data\\none.hvv not found! (SceneOuttro.preloadVectorBalls at 0.5 s of part second 1)";
  EXPECT_EQ(show->setProject(asProject(fails)), missing);
  EXPECT_EQ(show->drawFrame(), std::nullopt);
  EXPECT_EQ(red(), redOf(2));
  ASSERT_EQ(show->seek(0.5), std::nullopt);
  ASSERT_EQ(show->setProject(asProject(fails)), std::nullopt);
  EXPECT_EQ(show->drawFrame(), std::nullopt);
  EXPECT_EQ(red(), redOf(0));
  ASSERT_EQ(show->seek(1.5), std::nullopt);
  EXPECT_EQ(show->drawFrame(), missing);
  EXPECT_EQ(red(), 0);
  EXPECT_EQ(show->drawFrame(), std::nullopt);  // told once
  EXPECT_EQ(red(), 0);
  EXPECT_EQ(show->seek(2.5), missing);
  ASSERT_EQ(show->setProject(asProject(colours())), std::nullopt);
  EXPECT_EQ(show->drawFrame(), std::nullopt);
  EXPECT_EQ(red(), redOf(2));
}

TEST_F(SmallShow, StandsWithinTheShowWhereverItIsSent) {
  load(asProject(colours()));
  const struct {
    double asked, stands;
    int second;
  } cases[] = {{-3, 0, 0}, {0, 0, 0}, {3.5, 3.5, 3}, {4, 4, 3}, {1e9, 4, 3}};
  for (const auto& [asked, stands, second] : cases) {
    ASSERT_EQ(show->seek(asked), std::nullopt);
    EXPECT_NEAR(show->time(), stands, 1e-6) << asked;
    drawn();
    EXPECT_EQ(red(), redOf(second)) << asked;
  }
  // Behind the end of a show that has become shorter.
  ProjectData shorter = colours();
  shorter.totalTime = 2;
  ASSERT_EQ(show->setProject(asProject(shorter)), std::nullopt);
  EXPECT_NEAR(show->time(), 2, 1e-6);
  EXPECT_EQ(show->totalTime(), 2);
  // What has no music may begin before 0.
  ProjectData early = colours();
  early.startTime = -2;
  ASSERT_EQ(show->setProject(asProject(early)), std::nullopt);
  for (const double time : {-1.0, -5.0, 1.0}) ASSERT_EQ(show->seek(time), std::nullopt);
  ASSERT_EQ(show->seek(-5), std::nullopt);
  EXPECT_EQ(show->time(), -2);
}

TEST_F(SmallShow, ShowsAStandingPictureAgainAndDrawsItAnewInAnotherSize) {
  load(asProject(colours()));
  ASSERT_EQ(show->seek(1.5), std::nullopt);
  int calls = 0;
  callTrace() = [&calls](auto&&...) { ++calls; };
  const Picture first = drawn();
  EXPECT_EQ(calls, 1);
  glClearColor(1, 1, 1, 1);  // what somebody else has left
  glClear(GL_COLOR_BUFFER_BIT);
  glClearColor(0, 0, 0, 0);
  EXPECT_EQ(drawn(), first);
  EXPECT_EQ(calls, 1);
  show->setPicture(glTestWidth / 2, glTestHeight);
  drawn();
  EXPECT_GT(calls, 1);
  EXPECT_EQ(readPixel(glTestWidth / 4, 5)[0], redOf(1));
  EXPECT_EQ(readPixel(glTestWidth / 2 + 1, 5)[0], 0);
  EXPECT_FALSE(glFlag(GL_SCISSOR_TEST));
}

}  // namespace
}  // namespace vex::studio
