#include "studio/show/show.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/window_size.h"
#include "production/making/maker.h"
#include "production/products.h"
#include "production/time_line.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/temporary_folder.h"

namespace vex::studio {
namespace {

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

// The frame that a recording from that time begins with, or the one so many frames behind its begin.
Picture recorded(float from, int frame) {
  Presentation presentation;
  presentation.load();
  presentation.begin(from);
  for (int i = 0; i <= frame; ++i) {
    clockAdvanceTo(static_cast<float>(double{from} + i / 30.0));
    presentation.drawFrame();
  }
  return picture();
}

TEST_F(ShowTest, ShowsAfterJumpsWhatRecordingsBeginWith) {
  makeProducts(allProducts(), ".", Settings{true}, ProgressStyle::none);
  const Project project = projectOfFolder();
  std::mt19937 chance(14);
  std::uniform_real_distribution<double> anywhere(0, project.totalTime - 1);
  std::vector<double> times;
  for (int i = 0; i < 20; ++i) times.push_back(anywhere(chance));
  std::vector<Picture> expected;
  for (const double time : times) expected.push_back(recorded(static_cast<float>(time), 0));

  load(project);
  for (std::size_t i = 0; i < times.size(); ++i) {
    ASSERT_EQ(show->seek(times[i]), std::nullopt);
    EXPECT_EQ(drawn(), expected[i]) << "at " << times[i] << " s";
    EXPECT_EQ(show->time(), double{static_cast<float>(times[i])});
  }
}

}  // namespace
}  // namespace vex::studio
