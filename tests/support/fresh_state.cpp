#include <gtest/gtest.h>

#include <csignal>

#include "app/music.h"
#include "base/clock.h"
#include "base/options.h"
#include "base/quit.h"
#include "base/random.h"
#include "base/report.h"
#include "models/model_load.h"
#include "timeline/function_call.h"

// The program's state is process-wide. Every test finds it as a program that begins, whatever ran before.

namespace vex {

namespace {

class FreshState : public testing::EmptyTestEventListener {
  // Signals that nohup and the like leave ignored would stay so in every program that a test starts.
  void OnTestProgramStart(const testing::UnitTest&) override {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) std::signal(number, SIG_DFL);
  }

  void OnTestStart(const testing::TestInfo&) override {
    options() = {};
    callTrace() = {};
    current<LeadingSound>() = {};
    current<ModelMaterials>() = {};
    current<Music>() = {};
    current<QuitWish>() = {};
    demoClock() = {};
    randomState() = 1;
    soundLibrary = openAlLibrary;
    setLoadingDialog({});
    beginLog();
  }
};

// Takes effect by being there; the listeners own it.
[[maybe_unused]] const bool registered =
    (testing::UnitTest::GetInstance()->listeners().Append(new FreshState), true);

}  // namespace

}  // namespace vex
