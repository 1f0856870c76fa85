#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <limits>
#include <string>

#include "base/clock.h"
#include "base/files.h"
#include "base/report.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/pak_builder.h"
#include "tests/support/project_builder.h"
#include "tests/support/temporary_folder.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"

namespace vex {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

void doNothing(Scene*, float, const void* const*) {}

struct Loaded {
  PartDispatcher dispatcher;

  Loaded() {
    Scene* scene = newScene<Scene>();
    std::snprintf(scene->name, sceneNameSize, "SceneTest");
    scene->registerFunction(doNothing, "animate");
    scene->registerFunction(doNothing, "setColour");
    dispatcher.addScene(scene);
    dispatcher.loadProject("test.hvp");
  }
};

const ProjectData small = {
    .executable = "edit.exe",
    .startTime = 1.5,
    .functionsFile = "",
    .leftTime = 0.1,
    .totalTime = 60,
    .zoom = 123.4567891,
    .ticks = {1, 16777217.25},
    .parts = {{.name = "intro",
               .pos = 0.1,
               .start = 16777217,  // not a float
               .length = 7.5,
               .track = -3,
               .firstFlag = 0,
               .speed = -0.5,
               .calls = {{.function = "setColour",
                          .parameters = {{.name = "red",
                                          .type = 1,
                                          .constant = 1,
                                          .sinPeriod = 2,
                                          .sinAmplitude = 3,
                                          .sinOffset = 4,
                                          .sinPhase = 5,
                                          .dots = {{0, 0.1}, {1, -2}},
                                          .min = -1,
                                          .max = 6},
                                         {.name = "texture", .type = 4, .string = "data\\sky"}}},
                         {}}},
              {.name = "end", .pos = 20, .firstFlag = 1}},
};

constexpr const char* smallDump =
    "start reading test.hvp\n"
    "executable file name edit.exe\n"
    "start time 1.500000\n"
    "functions file name \n"
    "left time 0.100000\n"
    "total time 60.000000\n"
    "zoom factor 123.456789\n"
    "no sound file defined\n"
    "ignored fields successfully read\n"
    "reading 2 ticks\n"
    "   1.000000\n"
    "   16777217.250000\n"
    "ticks successfully read\n"
    "reading 2 parts\n"
    "  Part 1\n"
    "  =======\n"
    "    name intro\n"
    "    pos 0.100000\n"
    "    start 16777216.000000\n"
    "    length 7.500000\n"
    "    track -3\n"
    "    speed -0.500000\n"
    "      parameter\n"
    "        name red\n"
    "        type 1\n"
    "        const 1.000000\n"
    "        sin period 2.000000\n"
    "        sin amplitude 3.000000\n"
    "        sin offset 4.000000\n"
    "        sin phase 5.000000\n"
    "        2 dots\n"
    "          0.000000 0.100000\n"
    "          1.000000 -2.000000\n"
    "        min -1.000000\n"
    "        max 6.000000\n"
    "        string \n"
    "      parameter\n"
    "        name texture\n"
    "        type 4\n"
    "        const 0.000000\n"
    "        sin period 0.000000\n"
    "        sin amplitude 0.000000\n"
    "        sin offset 0.000000\n"
    "        sin phase 0.000000\n"
    "        0 dots\n"
    "        min -1000.000000\n"
    "        max 1000.000000\n"
    "        string data\\sky\n"
    "  Part 2\n"
    "  =======\n"
    "    name end\n"
    "    pos 20.000000\n"
    "    start 0.000000\n"
    "    length 10.000000\n"
    "    track 0\n"
    "    speed 1.000000\n"
    "project file successfully parsed\n";

// The log of loading up to the destruction of the dispatcher.
std::string dumpOf(const std::string& bytes) {
  std::string text = logText([&] {
    writeFile("test.hvp", bytes);
    Loaded();
  });
  const std::size_t end = text.find("destroying part dispatcher\n");
  return end == std::string::npos ? text + "(not destroyed)" : text.substr(0, end);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  text.replace(text.find(from), from.size(), to);
  return text;
}

TEST(LoadProject, DumpsTheWholeFileToTheLog) {
  EXPECT_EQ(dumpOf(buildProject(small).bytes), smallDump);
}

TEST(LoadProject, CarriageReturnsDoNotCount) {
  const std::string bytes = buildProject(small).bytes;
  EXPECT_EQ(dumpOf(replaced(replaced(bytes, "0.17\n", "0.17\r\n"), "edit.exe\n", "e\rdit.exe\r\r\n")),
            smallDump);
}

TEST(LoadProject, ZeroTicksAndParts) {
  ProjectData project = small;
  project.ticks.clear();
  project.parts.clear();
  const std::string dump = dumpOf(buildProject(project).bytes);
  EXPECT_EQ(dump.substr(dump.find("reading 0")),
            "reading 0 ticks\nticks successfully read\nreading 0 parts\nproject file successfully parsed\n");
}

TEST(LoadProject, MusicNames) {
  for (const auto& [name, line] : {std::pair{"", "no sound file defined\n"},
                                   {"x", "no sound file defined\n"},
                                   {"ab", "sound file name ab\n"},
                                   {"data\\music.ogg", "sound file name data\\music.ogg\n"}}) {
    ProjectData project = small;
    project.music = name;
    const std::string expected = replaced(smallDump, "no sound file defined\n", line);
    EXPECT_EQ(dumpOf(buildProject(project).bytes), expected);
    const TemporaryFolder folder;
    writeFile("test.hvp", buildProject(project).bytes);
    EXPECT_STREQ(Loaded().dispatcher.musicName, std::string(name).size() < 2 ? "" : name);
  }
}

TEST(LoadProject, BuildsTheParts) {
  const TemporaryFolder folder;
  writeFile("test.hvp", buildProject(small).bytes);
  static std::string announced;
  setLoadingDialog({.show = [](int, const char* text) { announced += text; }, .close = nullptr});
  Loaded loaded;
  const PartDispatcher& dispatcher = loaded.dispatcher;
  EXPECT_EQ(announced, "Loading project");
  EXPECT_EQ(dispatcher.startTime, 1.5f);
  EXPECT_EQ(demoClock().startTime, 1.5f);
  EXPECT_EQ(dispatcher.totalTime, 60.0f);
  ASSERT_EQ(dispatcher.parts.count(), 2);
  const Part& part = *dispatcher.parts[0];
  EXPECT_EQ(part.pos, 0.1f);
  EXPECT_EQ(part.speed, -0.5f);
  EXPECT_EQ(part.track, -3);
  ASSERT_EQ(part.calls.count(), 2);
  const FunctionCall& call = *part.calls[0];
  EXPECT_STREQ(call.name, "setColour");
  EXPECT_EQ(call.scene, dispatcher.findScene("SceneTest"));
  ASSERT_EQ(call.parameters.count(), 2);
  EXPECT_EQ(call.parameters[0]->dotY[1], -2.0f);
  EXPECT_EQ(call.parameters[0]->max, 6.0f);
  EXPECT_STREQ(call.parameters[1]->string, "data\\sky");
  EXPECT_TRUE(part.calls[1]->parameters);
  EXPECT_EQ(part.calls[1]->parameters.count(), 0);
}

// The first part of `small`, and its first call and parameter.
PartData& part(ProjectData& project) {
  return project.parts[0];
}
CallData& call(ProjectData& project) {
  return part(project).calls[0];
}
ParameterData& curve(ProjectData& project) {
  return call(project).parameters[0];
}

struct Refusal {
  std::function<void(ProjectData&)> change;
  std::string text;  // empty: none
};

void expectRefusals(const std::vector<Refusal>& rows) {
  const TemporaryFolder folder;
  for (const Refusal& row : rows) {
    ProjectData project = small;
    row.change(project);
    const std::string bytes = buildProject(project).bytes;
    writeFile("test.hvp", bytes);
    const std::string checked = decodeProject(bytes, "test.hvp").failure;
    EXPECT_TRUE(row.text.starts_with(checked)) << "the check says: " << checked;
    if (row.text.empty()) {
      EXPECT_EQ(runInChild([] { Loaded(); }).exitCode, 0) << "row " << &row - rows.data();
    } else {
      EXPECT_EQ(fatalText([] { Loaded(); }), row.text);
    }
  }
}

TEST(LoadProject, MissingFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(fatalText([] { Loaded(); }), "Project file test.hvp not found!");
}

TEST(LoadProject, RefusesWhatTheFormatForbids) {
  expectRefusals({
      {[](auto& p) { p.version = "0.18"; },
       "Wrong file version. Must be 0.17\n(project test.hvp: version is 0.18)"},
      {[](auto& p) { p.version = "0.17 "; },
       "Wrong file version. Must be 0.17\n(project test.hvp: version is 0.17 )"},
      {[](auto& p) { p.version = std::string(500, '0'); },
       "Wrong file version. Must be 0.17\n(project test.hvp: version is " + std::string(127, '0') + ")"},
      {[](auto& p) { p.version = std::string("0.17\0x", 6); },
       "Wrong file version. Must be 0.17\n(project test.hvp: version is 0.17)"},
      {[](auto& p) { call(p).scene = std::string("SceneTest\0x", 11); }, ""},  // seen up to its zero byte
      {[](auto& p) { part(p).firstFlag = 2; },
       "unknown boolean values\n(project test.hvp: part intro: flag of the editing tool is 2)"},
      {[](auto& p) { part(p).active = -1; },
       "unknown boolean values\n(project test.hvp: part intro: active is 255)"},
      {[](auto& p) { part(p).active = 0; },
       "inactive part found (project test.hvp: part intro: active is 0)"},
      {[](auto& p) { p.parts[1].active = 0; },
       "inactive part found (project test.hvp: part end: active is 0)"},
      {[](auto& p) { call(p).scene = "scenetest"; },
       "Scene scenetest not found (project test.hvp: part intro)"},
      {[](auto& p) { call(p).function = "Animate"; },
       "function Animate not found (project test.hvp: part intro: SceneTest)"},
      {[](auto& p) { curve(p).type = 5; },
       "unknown parameter type at setColour.red (project test.hvp: part intro: type of setColour.red is 5)"},
      {[](auto& p) { curve(p).type = -1; },
       "unknown parameter type at setColour.red (project test.hvp: part intro: type of setColour.red is -1)"},
      {[](auto& p) { p.partCount = 1000; },
       "pCount exceeds maximum of 1000 in PartDispatcher! (project test.hvp: part count is 1000)"},
      {[](auto& p) { p.partCount = 0x7fffffff; },
       "pCount exceeds maximum of 1000 in PartDispatcher! (project test.hvp: part count is 2147483647)"},
      {[](auto& p) { p.partCount = -2; }, "project test.hvp: part count -2 is below 0"},
      {[](auto& p) { p.partCount = 999; },
       "char != 1 byte (0 read)\n(project test.hvp: part : name lacks its end behind byte " +
           std::to_string(buildProject(small).bytes.size()) + ")"},
      {[](auto& p) { p.tickCount = -7; }, "project test.hvp: tick count -7 is below 0"},
      {[](auto& p) { p.tickCount = 0x7fffffff; },
       "double != 8 bytes (0 read)\n(project test.hvp: tick lacks its end behind byte 372)"},
      {[](auto& p) { call(p).parameters.resize(9); }, ""},
      {[](auto& p) { call(p).parameters.resize(10); },
       "project test.hvp: part intro: parameter count of setColour is 10, at most 9 are possible"},
  });
}

TEST(LoadProject, RefusesLongTexts) {
  const std::string longest(126, 'n'), tooLong = longest + "n";
  expectRefusals({
      {[=](auto& p) { p.executable = p.functionsFile = p.music = part(p).name = curve(p).name = longest; },
       ""},
      {[=](auto& p) { p.executable = tooLong; },
       "project test.hvp: executable file name is longer than 126 characters"},
      {[=](auto& p) { p.functionsFile = tooLong; },
       "project test.hvp: functions file name is longer than 126 characters"},
      {[=](auto& p) { p.music = tooLong; },
       "project test.hvp: sound file name is longer than 126 characters"},
      {[=](auto& p) { part(p).name = tooLong; },
       "project test.hvp: part : name is longer than 126 characters"},
      {[=](auto& p) { call(p).scene = tooLong; },
       "project test.hvp: part intro: scene name is longer than 126 characters"},
      {[=](auto& p) { call(p).function = tooLong; },
       "project test.hvp: part intro: function name is longer than 126 characters"},
      {[=](auto& p) { curve(p).name = tooLong; },
       "project test.hvp: part intro: name of setColour. is longer than 126 characters"},
      {[](auto& p) { curve(p).string = std::string(31, 's'); }, ""},
      {[](auto& p) { curve(p).string = std::string(32, 's'); },
       "project test.hvp: part intro: string of setColour.red is longer than 31 characters"},
      {[=](auto& p) { curve(p).string = tooLong; },
       "project test.hvp: part intro: string of setColour.red is longer than 126 characters"},
  });
}

// Without them the show would never end. All else is played as it stands.
TEST(LoadProject, RefusesTimesOfTheShowThatAreNone) {
  expectRefusals({
      {[](auto& p) { p.startTime = nan; }, "project test.hvp: start time is nan, not a usable number"},
      {[](auto& p) { p.totalTime = infinity; }, "project test.hvp: total time is inf, not a usable number"},
      {[](auto& p) { p.totalTime = 1e300; }, "project test.hvp: total time is inf, not a usable number"},
      {[](auto& p) { p.leftTime = p.zoom = nan; }, ""},
      {[](auto& p) { part(p).pos = part(p).start = part(p).length = part(p).speed = nan; }, ""},
  });
}

// Each field is logged, and each name resolved, before the next is read: the first fault is the one that is
// told, and the log ends with what came before it.
TEST(LoadProject, TellsTheFirstFaultAndLogsAllBeforeIt) {
  const auto badLater = [](ProjectData& p) { p.parts[1].active = 0; };
  const struct {
    std::function<void(ProjectData&)> change;
    std::string text, logged;
  } rows[] = {
      {[](auto& p) { p.startTime = nan, p.tickCount = -7; },
       "project test.hvp: start time is nan, not a usable number", "start time nan\n"},
      {[](auto& p) { p.tickCount = -7; }, "project test.hvp: tick count -7 is below 0", "reading -7 ticks\n"},
      {[](auto& p) { p.partCount = 1000; },
       "pCount exceeds maximum of 1000 in PartDispatcher! (project test.hvp: part count is 1000)",
       "ticks successfully read\n"},
      {[](auto& p) { part(p).active = 0; }, "inactive part found (project test.hvp: part intro: active is 0)",
       "    track -3\n"},
      {[](auto& p) { call(p).scene = "other", call(p).function = std::string(127, 'f'); },
       "Scene other not found (project test.hvp: part intro)", "    speed -0.500000\n"},
      {[](auto& p) { call(p).function = "other", curve(p).type = 5; },
       "function other not found (project test.hvp: part intro: SceneTest)", "    speed -0.500000\n"},
      {[](auto& p) { curve(p).type = 5; },
       "unknown parameter type at setColour.red (project test.hvp: part intro: type of setColour.red is 5)",
       "        type 5\n"},
      {[](auto& p) { curve(p).type = 1, curve(p).dots.clear(), part(p).calls[1].scene = "other"; },
       "project test.hvp: part intro: curve of setColour.red has no dots", "        string \n"},
      {badLater, "inactive part found (project test.hvp: part end: active is 0)", "    track 0\n"},
  };
  for (const auto& row : rows) {
    ProjectData project = small;
    row.change(project);
    const std::string bytes = buildProject(project).bytes;
    const TemporaryFolder folder;
    writeFile("test.hvp", bytes);
    EXPECT_EQ(fatalText([] { Loaded(); }), row.text);
    const std::string log = logText([&] {
      writeFile("test.hvp", bytes);
      Loaded();
    });
    EXPECT_TRUE(log.ends_with(row.logged)) << row.text << ": " << log;
  }
}

TEST(LoadProject, OpensTheMusicBeforeItReadsOn) {
  const TemporaryFolder folder;
  ProjectData project = small;
  project.music = "data\\music.ogg";
  project.tickCount = -7;
  writeFile("test.hvp", buildProject(project).bytes);
  const ChildResult result = runInChild([] {
    PartDispatcher dispatcher;
    dispatcher.names = ProjectNames::taken;
    dispatcher.openMusic = [](const char* name) { std::fprintf(stderr, "opens %s\n", name); };
    dispatcher.loadProject("test.hvp");
  });
  EXPECT_TRUE(result.errorText.starts_with("opens data\\music.ogg\n")) << result.errorText;
}

TEST(LoadProject, TakesOddCurvesAndTheShowEndsWhereOneHasNoValue) {
  const auto dots = [](int type, std::vector<std::pair<double, double>> places) {
    return [type, places](ProjectData& p) { curve(p).type = type, curve(p).dots = places; };
  };
  expectRefusals({
      {[](auto& p) { curve(p).type = 0, curve(p).constant = curve(p).min = curve(p).max = nan; }, ""},
      {[](auto& p) { curve(p).type = 3, curve(p).sinPeriod = 1e300, curve(p).sinPhase = nan; }, ""},
      {dots(2, {}), ""},
      {dots(2, {{0, 1}, {0.5, 1}, {0.5, 2}}), ""},
      {dots(1, {{nan, 1}, {0.25, infinity}, {0, 1}}), ""},
      {dots(1, {}), "project test.hvp: part intro: curve of setColour.red has no dots"},
  });
  ProjectData project = small;
  dots(2, {{0, 1}, {0.5, 1}, {0.5, 2}})(project);
  const TemporaryFolder folder;
  writeFile("test.hvp", buildProject(project).bytes);
  EXPECT_EQ(fatalText([] { Loaded().dispatcher.runFrame(1); }),
            "Critical error: d[]=0 in calc_spline!\n(SceneTest.setColour at 1.67772e+07 s of part intro)");
}

TEST(LoadProject, RefusesMoreThanSixteenPartsAtATime) {
  const auto parts = [](int together) {
    return [together](ProjectData& p) {
      p.parts.clear();
      for (int i = 0; i < 20; ++i) p.parts.push_back({.name = "before", .pos = i * 0.5, .length = 0.5});
      for (int i = 0; i < 5; ++i) p.parts.push_back({.name = "never", .pos = 10, .length = -1.0 * i});
      for (int i = 0; i < together; ++i) {
        p.parts.push_back({.name = "p" + std::to_string(i), .pos = 10 + i * 0.25, .length = 6});
      }
      for (int i = 0; i < 16; ++i) p.parts.push_back({.name = "after", .pos = 30, .length = 1});
    };
  };
  expectRefusals({
      {parts(16), ""},
      {parts(17),
       "project test.hvp: part p16 is active with 16 others at 14.000000, at most 16 parts are possible"},
      {[&](auto& p) {
         parts(17)(p);
         p.parts[41].pos = 16;  // begins as the first of the others ends
       },
       ""},
  });
}

TEST(LoadProject, CountsReachTheirLimits) {
  ProjectData project = {.parts = std::vector<PartData>(999, {.length = 0})};
  project.parts[998].calls.resize(255);
  project.parts[998].calls[254].parameters = {{.type = 1, .dots = {255, {0, 7}}}};
  const TemporaryFolder folder;
  writeFile("test.hvp", buildProject(project).bytes);
  const Loaded loaded;
  ASSERT_EQ(loaded.dispatcher.parts.count(), 999);
  const Part& last = *loaded.dispatcher.parts[998];
  ASSERT_EQ(last.calls.count(), 255);
  ASSERT_EQ(last.calls[254]->parameters.count(), 1);
  EXPECT_EQ(last.calls[254]->parameters[0]->dotCount, 255);
  EXPECT_EQ(last.calls[254]->parameters[0]->dotY[254], 7);
}

TEST(LoadProject, EveryTruncation) {
  const TemporaryFolder folder;
  const ProjectBytes whole = buildProject(small);
  for (std::size_t size = 0; size < whole.bytes.size(); ++size) {
    const std::string head = whole.bytes.substr(0, size);
    writeFile("test.hvp", head);
    const char kind = whole.kinds[size];
    const std::string text = fatalText([] { Loaded(); });
    const std::string expected = kind == 'd'   ? "double != 8 bytes (0 read)\n"
                                 : kind == 'i' ? "int != 4 bytes (0 read)\n"
                                 : kind == 'b' ? "byte != 1 byte (0 read)\n"
                                               : "char != 1 byte (0 read)\n";
    EXPECT_TRUE(text.starts_with(expected + "(project test.hvp: ")) << text;
    const std::size_t field = std::stoul(text.substr(text.rfind(' ')));
    EXPECT_TRUE(field <= size && size < field + 8) << text << size << " bytes";
    std::remove("test.hvp");
    writeFile("vex.pak", pakBytes({{"test.hvp", head}, {"next", whole.bytes}}));
    const std::string packed = fatalText([] {
      pakOpen("vex.pak");
      Loaded();
    });
    EXPECT_TRUE(packed.starts_with("Super ARGH (1 times ")) << packed;
    EXPECT_TRUE(packed.ends_with(" of test.hvp are more than its " + std::to_string(size) + ")")) << packed;
  }
}

TEST(LoadProject, ReadsFromThePak) {
  const TemporaryFolder folder;
  writeFile("vex.pak", pakBytes({{"before", "xyz"}, {"TEST.HVP", buildProject(small).bytes}}));
  EXPECT_EQ(runInChild([] {
              pakOpen("vex.pak");
              if (Loaded().dispatcher.parts.count() != 2) std::_Exit(9);
            }).exitCode,
            0);
}

}  // namespace
}  // namespace vex
