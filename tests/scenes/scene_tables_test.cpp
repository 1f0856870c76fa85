#include "scenes/scene_tables.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <vector>

#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "engine/scene.h"
#include "timeline/scene_function.h"

namespace vex {
namespace {

const FunctionRow& rowOf(const char* function) {
  return *findFunction(sceneEntries()[0], function);
}

TEST(SceneEntrys, HoldWhatRegistrationAndProjectsNeed) {
  std::set<std::string> scenes;
  for (const SceneEntry& table : sceneEntries()) {
    EXPECT_TRUE(scenes.insert(table.name).second) << table.name;
    EXPECT_LT(std::strlen(table.name), std::size_t{sceneNameSize});
    std::set<std::string> functions;
    for (const FunctionRow& row : table.functions) {
      EXPECT_TRUE(functions.insert(row.name).second) << row.name;
      EXPECT_TRUE(row.function) << row.name;
      EXPECT_TRUE(std::string(row.summary).ends_with('.')) << row.name;
      EXPECT_LE(row.parameters.size(), std::size_t{maxArguments}) << row.name;
      std::set<std::string> parameters;
      for (const FunctionParameter& parameter : row.parameters) {
        EXPECT_TRUE(isProjectWord(parameter.name)) << parameter.name << " needs quotes in a text";
        EXPECT_TRUE(parameters.insert(parameter.name).second) << row.name << '.' << parameter.name;
        EXPECT_LE(parameter.min, parameter.max) << row.name << '.' << parameter.name;
      }
    }
  }
  EXPECT_EQ(findSceneEntry(sceneEntries(), "scenehelper"), nullptr);
  EXPECT_EQ(findFunction(sceneEntries()[0], "drawbitmap"), nullptr);
}

TEST(SceneEntrys, KnowWhatPaintsTheGround) {
  const std::vector<float> screen{0, -1, -1, 2, 2};
  const auto with = [&screen](std::vector<float> more) {
    std::vector<float> all = screen;
    all.insert(all.end(), more.begin(), more.end());
    return all;
  };
  const struct {
    const char* function;
    std::vector<float> arguments;
    bool paints;
  } rows[] = {
      {"fadeScreen", {0, 0, 0, 1}, true},
      {"fadeScreen", {0, 0, 0, 0.99f}, false},
      {"drawBitmap", with({0, 0, 1, 0}), true},
      {"drawBitmap", with({4, 1, 1, 0.9f}), true},
      {"drawBitmap", with({0, 0, 1, 1}), false},
      {"drawBitmap", with({0, 0, 0.5f, 0}), false},
      {"drawBitmap", {0, -1.5f, -1.1f, 3, 2.2f, 0, 0, 1, 0}, true},
      {"drawBitmap", {0, 1, 1, -2, -2, 0, 0, 1, 0}, true},  // mirrored
      {"drawBitmap", {0, -1, -1, 1.99f, 2, 0, 0, 1, 0}, false},
      {"drawBitmap", {0, -1, -1, 2, 1.99f, 0, 0, 1, 0}, false},
      {"drawBitmap", {0, -0.99f, -1, 2, 2, 0, 0, 1, 0}, false},
      {"drawBitmap", {0, -1, 0, 2, 2, 0, 0, 1, 0}, false},
      {"drawBitmapRepeat", with({3, 3, 1, 0}), true},
      {"drawBitmapWave", with({1, 0.1f, 1, 2}), false},
      {"drawMovie", with({1, 9, 25, 1}), true},
      {"drawMovie", with({1, 9, 25, 0}), false},
      {"drawNoise", {0, 0, 0, 0, 0, 1, 0, 0, 1}, true},
      {"drawNoise", {0, 0, 0, 0, 0, 1.5f, -0.25f, 0, 1}, true},
      {"drawNoise", {0, 0, 0, 0, 0, 1, 0.1f, 0, 1}, false},
      {"drawNoise", {0, 0, 0, 0, 0, 1, 0, 1, 1}, false},
  };
  for (const auto& row : rows) {
    const auto& [function, arguments, paints] = row;
    ASSERT_EQ(arguments.size(), rowOf(function).parameters.size()) << function;
    EXPECT_EQ(rowOf(function).ground.paints(arguments), paints) << function << ", row " << &row - rows;
  }
  EXPECT_EQ(rowOf("setViewport").ground.paints, nullptr);
  EXPECT_EQ(rowOf("drawVexLogo").ground.paints, nullptr);
  EXPECT_EQ(rowOf("setViewport").role, FunctionRole::sets);
}

// Whatever the curves and times: the check ends and stays within its memory.
TEST(ProjectCheck, StandsRandomProjects) {
  std::mt19937 random(1);
  const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const auto number = [&] {
    constexpr double usual[]{0, 1, -1, 1e30, -1e30, 1e-40, 0.5, 3, 1e300};
    return usual[below(9)] * (below(2) == 0 ? 1 : below(100) / 10.0);
  };
  for (int round = 0; round < 300; ++round) {
    Project project;
    project.startTime = number();
    project.totalTime = number();
    for (int i = below(20); i > 0; --i) {
      ProjectPart& part = project.parts.emplace_back();
      part.pos = number(), part.length = number();
      for (int j = below(4); j > 0; --j) {
        const auto functions = sceneEntries()[0].functions;
        const FunctionRow& row =
            functions[static_cast<std::size_t>(below(static_cast<int>(functions.size())))];
        ProjectCall& call = part.calls.emplace_back();
        call.scene = "SceneHelper", call.function = row.name;
        for (std::size_t k = 0; k < row.parameters.size(); ++k) {
          ProjectParameter& parameter = call.parameters.emplace_back();
          const bool text = row.parameters[k].kind >= ArgumentKind::textureName;
          parameter.type = static_cast<std::int8_t>(text && below(9) > 0 ? PARAM_STRING : below(4));
          parameter.constant = number();
          parameter.sinPeriod = number(), parameter.sinAmplitude = number(), parameter.sinOffset = number();
          for (int dot = 0; dot < below(6); ++dot) parameter.dots.push_back({dot * 0.3 - 0.5, number()});
          parameter.min = below(2) == 0 ? -1e300 : number();
          parameter.max = below(2) == 0 ? 1e300 : number();
          parameter.string = "data\\none";
        }
      }
    }
    checkRules(project);
    checkTimeLine(project, sceneEntries());
    checkGround(project, sceneEntries(), [](const std::string&) { return false; });
    if (round % 10 == 0) checkData(project, sceneEntries());
  }
}

}  // namespace
}  // namespace vex
