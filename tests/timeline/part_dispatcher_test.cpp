#include "timeline/part_dispatcher.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "base/quit.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "timeline/scene_function.h"

namespace vex {
namespace {

// What the scene functions below were given, in call order.
struct Call {
  std::string scene;
  float sceneTime;
  std::vector<float> numbers;
  std::string text;
};
std::vector<Call> calls;

void record(Scene* scene, float sceneTime, const void* const* arguments) {
  Call call{scene->name, sceneTime, {}, {}};
  for (int i = 0; i < maxArguments && arguments[i]; ++i)
    call.numbers.push_back(Arguments(arguments).number(i));
  calls.push_back(call);
}

void recordText(Scene* scene, float sceneTime, const void* const* arguments) {
  Call call{scene->name, sceneTime, {Arguments(arguments).number(0), Arguments(arguments).number(1)}, {}};
  call.text = Arguments(arguments).text(2);
  for (int i = 3; i < maxArguments; ++i) EXPECT_EQ(arguments[i], nullptr);
  calls.push_back(call);
}

Scene* sceneNamed(const std::string& name) {
  Scene* scene = newScene<Scene>();
  std::snprintf(scene->name, sceneNameSize, "%s", name.c_str());
  scene->registerFunction(record, "record");
  return scene;
}

struct Row {
  const char* name;
  float pos, length;
  int track = 0;
  float start = 0, speed = 1;
};

// A part for each row; each calls a scene of the part's name with its progress.
struct Show {
  PartDispatcher dispatcher;

  explicit Show(const std::vector<Row>& rows, float startTime = 0, float totalTime = 1000) {
    dispatcher.startTime = startTime;
    dispatcher.totalTime = totalTime;
    dispatcher.parts.allocate(static_cast<int>(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      auto* part = new Part;
      dispatcher.parts[static_cast<int>(i)] = part;
      std::snprintf(part->name, sizeof part->name, "%s", rows[i].name);
      part->pos = rows[i].pos;
      part->length = rows[i].length;
      part->track = static_cast<std::int8_t>(rows[i].track);
      part->start = rows[i].start;
      part->speed = rows[i].speed;
      dispatcher.addScene(sceneNamed(rows[i].name));
      part->calls.allocate(1);
      auto* call = part->calls[0] = new FunctionCall;
      call->function = record;
      call->scene = dispatcher.findScene(rows[i].name);
      call->part = part;
      std::snprintf(call->name, sizeof call->name, "record");
      call->parameters.allocate(1);
      auto* progress = call->parameters[0] = new Parameter;
      std::snprintf(progress->name, sizeof progress->name, "progress");
      progress->type = PARAM_LINEAR;
      progress->dotCount = 2;
      progress->dotX = std::make_unique<float[]>(2);
      progress->dotY = std::make_unique<float[]>(2);
      progress->dotX[1] = progress->dotY[1] = progress->max = 1;
    }
  }

  // The scenes called, joined.
  std::string frame(float t) {
    calls.clear();
    dispatcher.runFrame(t);
    return called();
  }

  std::string timelineStart() {
    calls.clear();
    dispatcher.startTimeline();
    return called();
  }

  static std::string called() {
    std::string names;
    for (const Call& call : calls) names += call.scene;
    return names;
  }
};

TEST(RunFrame, PartsAreActiveFromPosUpToTheirEnd) {
  struct Case {
    float t;
    const char* expected;
  };
  for (const Case& c : {Case{9.99f, ""}, Case{10, "A"}, Case{14.99f, "A"}, Case{15, ""}, Case{16, ""}}) {
    Show show({{.name = "A", .pos = 10, .length = 5}, {.name = "B", .pos = 12, .length = 0}});
    EXPECT_EQ(show.frame(c.t), c.expected) << c.t;
  }
}

TEST(RunFrame, OrdersByTrackAndKeepsFileOrderWithinOne) {
  struct Case {
    std::vector<int> tracks;
    const char* expected;
  };
  for (const Case& c : {
           Case{{3, -1}, "BA"},
           Case{{5, 5, 5, 5}, "ABCD"},
           Case{{2, 1, 2, 1, 2, 1}, "BDFACE"},
           Case{{127, 0, -128, 1, 0, -1}, "CFBEDA"},
       }) {
    std::vector<Row> rows;
    static const char* names[] = {"A", "B", "C", "D", "E", "F"};
    for (std::size_t i = 0; i < c.tracks.size(); ++i) {
      rows.push_back({.name = names[i], .pos = 0, .length = 10, .track = c.tracks[i]});
    }
    EXPECT_EQ(Show(rows).frame(1), c.expected);
  }
}

TEST(RunFrame, PassesSceneTimeAndProgress) {
  Show show({{.name = "A", .pos = 10, .length = 8, .start = 3, .speed = 2}});
  show.frame(12);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].sceneTime, 7);
  EXPECT_EQ(calls[0].numbers, std::vector<float>{0.25f});
}

TEST(RunFrame, GoesOnThroughTheList) {
  Show show({{.name = "A", .pos = 0, .length = 20},
             {.name = "B", .pos = 1, .length = 2},
             {.name = "C", .pos = 2, .length = 2},
             {.name = "D", .pos = 30, .length = 1}});
  EXPECT_EQ(show.frame(0.5f), "A");
  EXPECT_EQ(show.frame(2.5f), "ABC");
  EXPECT_EQ(show.frame(3), "AC");
  EXPECT_EQ(show.dispatcher.cursor, 0);
  EXPECT_EQ(show.frame(19), "A");
  EXPECT_EQ(show.frame(20), "");
  EXPECT_EQ(show.dispatcher.cursor, 3);
  EXPECT_EQ(show.frame(30.5f), "D");
  EXPECT_EQ(show.frame(31), "");
  EXPECT_EQ(show.dispatcher.cursor, 4);
}

TEST(RunFrame, AnUnsortedListHidesParts) {
  Show show({{.name = "A", .pos = 0, .length = 9},
             {.name = "B", .pos = 5, .length = 9},
             {.name = "C", .pos = 1, .length = 9}});
  EXPECT_EQ(show.frame(2), "A");
  EXPECT_EQ(show.frame(6), "ABC");
}

TEST(RunFrame, SixteenPartsAtATime) {
  std::vector<Row> rows;
  std::vector<std::string> names;
  for (int i = 0; i < 17; ++i) names.push_back(std::string(1, static_cast<char>('A' + i)));
  for (int i = 0; i < 16; ++i) rows.push_back({.name = names[i].c_str(), .pos = 0, .length = 9, .track = -i});
  EXPECT_EQ(Show(rows).frame(1), "PONMLKJIHGFEDCBA");
  rows.push_back({.name = names[16].c_str(), .pos = 0, .length = 9});
  EXPECT_EQ(fatalText([&] { Show(rows).frame(1); }), "more than 16 parts active at 1.000000");
  rows.back().length = 1;  // over in this very frame
  EXPECT_EQ(Show(rows).frame(1), "PONMLKJIHGFEDCBA");
}

// As the comparisons say: such a part is never active and hides nobody.
TEST(RunFrame, TimesThatAreNoNumbers) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  Show show({{.name = "A", .pos = nan, .length = 9},
             {.name = "B", .pos = 1, .length = nan},
             {.name = "C", .pos = 1, .length = std::numeric_limits<float>::infinity()}},
            1);
  EXPECT_EQ(show.timelineStart(), "");
  EXPECT_EQ(show.frame(1), "C");
  EXPECT_EQ(show.frame(500), "C");
  EXPECT_EQ(calls[0].numbers, std::vector<float>{0});
}

TEST(RunFrame, TheFrameThatReachesTheTotalTimeStillRuns) {
  Show show({{.name = "A", .pos = 0, .length = 50}}, 0, 20);
  requestQuit(0);
  EXPECT_EQ(show.frame(19.99f), "A");
  EXPECT_EQ(quitRequested(), 0);
  EXPECT_EQ(show.frame(20), "A");
  EXPECT_EQ(quitRequested(), 1);
}

TEST(StartTimeline, ReplaysWhatEndedBeforeAtItsMidpoint) {
  Show show({{.name = "A", .pos = 5, .length = 10, .start = 1, .speed = 3},
             {.name = "B", .pos = 15, .length = 10},
             {.name = "C", .pos = 17, .length = 0},
             {.name = "D", .pos = 16, .length = 4, .track = -5},
             {.name = "E", .pos = 20, .length = 1}},
            20);
  EXPECT_EQ(show.timelineStart(), "AD");  // file order whatever the track
  EXPECT_EQ(calls[0].sceneTime, 16);      // 1 + 5 * 3
  EXPECT_EQ(calls[0].numbers, std::vector<float>{0.5f});
  EXPECT_EQ(show.frame(20), "BE");
}

TEST(StartTimeline, RefusesToStartAtTheEnd) {
  EXPECT_EQ(fatalText([] { Show({}, 20, 20).timelineStart(); }), "Starting after end!");
  EXPECT_EQ(Show({}, 20, 20.001f).timelineStart(), "");
}

TEST(Dispatcher, SceneNames) {
  PartDispatcher dispatcher;
  Scene* hell = sceneNamed("SceneHell");
  dispatcher.addScene(sceneNamed("SceneWater"));
  dispatcher.addScene(hell);
  EXPECT_EQ(dispatcher.findScene("SceneHell"), hell);
  EXPECT_EQ(fatalText([&] { dispatcher.findScene("scenehell"); }), "Scene scenehell not found");
  EXPECT_EQ(fatalText([&] { dispatcher.addScene(sceneNamed("SceneWater")); }),
            "Duplicated scene name SceneWater");
  dispatcher.addScene(sceneNamed("scenewater"));
  EXPECT_EQ(dispatcher.sceneCount, 3);
}

TEST(Dispatcher, TakesFortyScenes) {
  PartDispatcher dispatcher;
  for (int i = 0; i < 40; ++i) dispatcher.addScene(sceneNamed("Scene" + std::to_string(i)));
  EXPECT_EQ(fatalText([&] { dispatcher.addScene(sceneNamed("SceneLast")); }),
            "sCount exceeds 40 in PartDispatcher!");
}

TEST(Dispatcher, MissingSceneArray) {
  EXPECT_EQ(fatalText([] {
              PartDispatcher dispatcher;
              dispatcher.scenes.reset();
              dispatcher.addScene(sceneNamed("SceneHell"));
            }),
            "scenes==NULL in PartDispatcher. This can't be happening!");
}

TEST(Dispatcher, FunctionNames) {
  PartDispatcher dispatcher;
  Scene* scene = sceneNamed("SceneHell");
  dispatcher.addScene(scene);
  EXPECT_EQ(dispatcher.getFunctionByName(scene, "record"), record);
  EXPECT_EQ(fatalText([&] { dispatcher.getFunctionByName(scene, "Record"); }), "function Record not found");
  EXPECT_EQ(fatalText([&] { dispatcher.getFunctionByName(nullptr, "record"); }),
            "getFunctionByName scene==NULL");
}

TEST(Dispatcher, LogsTheDestructionInOrder) {
  EXPECT_EQ(logText([] {
              const Show show({{.name = "A", .pos = 0, .length = 1}, {.name = "B", .pos = 0, .length = 1}});
            }),
            "destroying part dispatcher\n"
            "destroying scene A\n"
            "destroying scene B\n"
            "  destroying part A\n"
            "    destroying function record\n"
            "      destroying parameter progress\n"
            "  destroying part B\n"
            "    destroying function record\n"
            "      destroying parameter progress\n");
}

TEST(FunctionCall, FillsTheSlotsInOrder) {
  Scene* scene = sceneNamed("SceneHell");
  FunctionCall call;
  call.scene = scene;
  call.function = recordText;
  call.parameters.allocate(3);
  for (int i = 0; i < 3; ++i) call.parameters[i] = new Parameter;
  call.parameters[0]->constant = 4;
  call.parameters[0]->max = 9;
  call.parameters[1]->type = PARAM_SINE;
  call.parameters[1]->sinOffset = call.parameters[1]->max = 2.5f;
  call.parameters[2]->type = PARAM_STRING;
  std::snprintf(call.parameters[2]->string, projectStringSize, "door");
  calls.clear();
  call.invoke(12.5f, 0.25f);
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].scene, "SceneHell");
  EXPECT_EQ(calls[0].sceneTime, 12.5f);
  EXPECT_EQ(calls[0].numbers, (std::vector<float>{4, 2.5f}));
  EXPECT_EQ(calls[0].text, "door");
  scene->destroy(scene);
}

// The calls of a part follow each other in file order, and none sees the arguments of the one before.
TEST(FunctionCall, EachOfAPartHasItsOwnArguments) {
  static std::string seen;
  seen.clear();
  Part part;
  part.length = 4;
  const std::vector<int> counts{2, 9, 0, 1};
  part.calls.allocate(static_cast<int>(counts.size()));
  for (std::size_t i = 0; i < counts.size(); ++i) {
    FunctionCall* call = part.calls[static_cast<int>(i)] = new FunctionCall;
    call->function = [](Scene*, float, const void* const* arguments) {
      for (int slot = 0; slot < maxArguments; ++slot) {
        seen += arguments[slot] ? std::to_string(static_cast<int>(Arguments(arguments).number(slot))) : "-";
      }
      seen += '\n';
    };
    call->parameters.allocate(counts[i]);
    for (int k = 0; k < counts[i]; ++k) {
      call->parameters[k] = new Parameter;
      call->parameters[k]->constant = static_cast<float>(k + 1);
      call->parameters[k]->max = 9;
    }
  }
  part.run(1);
  EXPECT_EQ(seen, "12-------\n123456789\n---------\n1--------\n");
}

TEST(FunctionCall, FatalTexts) {
  Part part;
  std::snprintf(part.name, sizeof part.name, "drop");
  Scene scene;
  std::snprintf(scene.name, sizeof scene.name, "SceneHell");
  FunctionCall call;
  call.part = &part;
  call.scene = &scene;
  std::snprintf(call.name, sizeof call.name, "explode");
  const std::string place = " (SceneHell.explode at 1.5 s of part drop)";
  EXPECT_EQ(fatalText([&] { call.invoke(1.5f, 0); }), "No function call defined for explode!" + place);
  call.function = [](Scene*, float, const void* const* arguments) { Arguments(arguments).number(3); };
  EXPECT_EQ(fatalText([&] { call.invoke(1.5f, 0); }),
            "parameter 3 missing in the call of a scene function" + place);
  call.parameters.allocate(10);
  for (int i = 0; i < 10; ++i) call.parameters[i] = new Parameter;
  EXPECT_EQ(fatalText([&] { call.invoke(1.5f, 0); }),
            "more than 9 parameters in the call of explode" + place);
}

TEST(FunctionCall, TheTraceSeesEveryCallBeforeItIsMade) {
  static std::string seen;
  seen.clear();
  Show show(
      {{.name = "A", .pos = 0, .length = 4, .track = 1, .start = 5}, {.name = "B", .pos = 1, .length = 4}});
  calls.clear();
  callTrace() = [](const Part& part, const FunctionCall& call, float sceneTime,
                   const void* const* arguments) {
    char line[400];
    std::snprintf(line, sizeof line, "%zu:%s.%s %g %g\n", calls.size(), part.name, call.name, sceneTime,
                  Arguments(arguments).number(0));
    seen += line;
  };
  show.dispatcher.runFrame(2);
  callTrace() = nullptr;
  show.dispatcher.runFrame(2);
  EXPECT_EQ(seen, "0:B.record 1 0.25\n1:A.record 7 0.5\n");
}

}  // namespace
}  // namespace vex
