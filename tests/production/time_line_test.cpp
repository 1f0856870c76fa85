#include "production/time_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string_view>

#include "production/music.h"
#include "production/products.h"
#include "production/show/scroller.h"
#include "production/show/show.h"
#include "production/song/cues.h"
#include "scenes/scene_tables.h"
#include "tests/support/draft.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace image;
using namespace song;
using namespace show;

namespace {

// Reads a project as the format's table says, on its own.
struct ProjectReader {
  const Bytes& bytes;
  std::size_t at = 0;

  template <typename T>
  T take() {
    T value{};
    if (at + sizeof value > bytes.size()) throw std::out_of_range("project ends early");
    std::memcpy(&value, bytes.data() + at, sizeof value);
    at += sizeof value;
    return value;
  }
  std::string takeLine() {
    std::string text;
    for (char c = take<char>(); c != '\n'; c = take<char>()) text += c;
    return text;
  }
  bool takeBool() {
    const auto value = take<unsigned char>();
    if (value > 1) throw std::out_of_range("no bool");
    return value == 1;
  }
};

Script readScript(const Bytes& bytes) {
  ProjectReader in{bytes};
  Script script;
  EXPECT_EQ(in.takeLine(), "0.17");
  in.takeLine();
  script.startTime = in.take<double>();
  in.takeLine();
  in.take<double>();
  script.totalTime = in.take<double>();
  in.take<double>();
  script.sound = in.takeLine();
  for (int count = in.take<std::int32_t>(); count > 0; --count) script.ticks.push_back(in.take<double>());
  for (int parts = in.take<std::int32_t>(); parts > 0; --parts) {
    ScriptPart part;
    part.name = in.takeLine();
    in.take<std::int32_t>();
    part.position = in.take<double>();
    part.start = in.take<double>();
    part.length = in.take<double>();
    part.track = in.take<signed char>();
    in.takeBool();
    EXPECT_TRUE(in.takeBool()) << part.name << " is inactive";
    part.speed = in.take<double>();
    for (int calls = in.take<unsigned char>(); calls > 0; --calls) {
      ScriptCall call{in.takeLine(), in.takeLine(), {}};
      for (int parameters = in.take<unsigned char>(); parameters > 0; --parameters) {
        ScriptParameter parameter;
        parameter.name = in.takeLine();
        Curve& curve = parameter.curve;
        curve.kind = static_cast<CurveKind>(in.take<signed char>());
        for (double* field : {&curve.value, &curve.cycles, &curve.amplitude, &curve.offset, &curve.phase})
          *field = in.take<double>();
        for (int dots = in.take<unsigned char>(); dots > 0; --dots) {
          const double x = in.take<double>();
          curve.dots.push_back({x, in.take<double>()});
        }
        parameter.least = in.take<double>();
        parameter.most = in.take<double>();
        curve.text = in.takeLine();
        call.parameters.push_back(parameter);
      }
      part.calls.push_back(call);
    }
    script.parts.push_back(part);
  }
  EXPECT_EQ(in.at, bytes.size());
  return script;
}

const Script& theShow() {
  static const Script script = readScript(writeProject(presentationScript()));
  return script;
}

std::vector<const ScriptPart*> activeAt(double time) {
  std::vector<const ScriptPart*> active;
  for (const ScriptPart& part : theShow().parts)
    if (part.position <= time && time < part.position + part.length) active.push_back(&part);
  std::stable_sort(active.begin(), active.end(),
                   [](const ScriptPart* p, const ScriptPart* q) { return p->track < q->track; });
  return active;
}

// Value at `progress`; curves hold their ends. Splines are taken for lines.
double valueOf(const ScriptParameter& parameter, double progress) {
  const Curve& curve = parameter.curve;
  double value = curve.value;
  if (curve.kind == CurveKind::sine)
    value = std::sin(progress * 2 * 3.1415926536 * curve.cycles + curve.phase / 180 * 3.1415926536) *
                curve.amplitude +
            curve.offset;
  if (curve.kind == CurveKind::linear || curve.kind == CurveKind::spline) {
    value = curve.dots.back().y;
    for (std::size_t i = curve.dots.size(); i-- > 0;) {
      if (progress > curve.dots[i].x) break;
      value = curve.dots[i].y;
      if (i > 0 && progress > curve.dots[i - 1].x)
        value = curve.dots[i - 1].y + (curve.dots[i].y - curve.dots[i - 1].y) *
                                          (progress - curve.dots[i - 1].x) /
                                          (curve.dots[i].x - curve.dots[i - 1].x);
    }
  }
  return std::clamp(value, parameter.least, parameter.most);
}

// Whether the call covers its viewport with something that lets nothing through.
bool paintsAll(const ScriptCall& call, double progress) {
  const auto value = [&](int i) { return valueOf(call.parameters[static_cast<std::size_t>(i)], progress); };
  if (call.function == "fadeScreen") return value(3) >= 1;
  static const std::set<std::string> closedWorlds{"SceneAlien", "SceneHell"};
  if (call.function == "animate") return closedWorlds.contains(call.scene);
  static const std::set<std::string> opaque{"data\\sky_copper", "data\\sky_water", "data\\sky_bone",
                                            "data\\sky_acid",   "data\\sky_ember", "data\\glass_ember",
                                            "data\\eye",        "data\\sky_teal"};
  if (!opaque.contains(call.parameters[0].curve.text)) return false;
  const bool movie = call.function == "drawMovie";
  const int alpha = movie ? 8 : 7;
  if (value(alpha) < 1 || (!movie && value(8) > 0)) return false;
  const double slack = 1e-6;
  return value(1) <= -1 + slack && value(2) <= -1 + slack && value(1) + value(3) >= 1 - slack &&
         value(2) + value(4) >= 1 - slack;
}

}  // namespace

TEST(Project, RoundTripKeepsEveryField) {
  Script script;
  script.startTime = 1.5;
  script.totalTime = 60;
  script.sound = "data\\vex.ogg";
  script.ticks = {0.25, -3};
  Curve wave;
  wave.kind = CurveKind::sine;
  wave.cycles = 2, wave.amplitude = 3, wave.offset = -4, wave.phase = 90;
  Curve word;
  word.kind = CurveKind::text;
  word.text = "data\\eye";
  const Curve curve(CurveKind::spline, {{0, 1}, {0.5, -2}, {1, 3}});
  script.parts = {{"late", 9, 1, 2, -0.5, 127, {}},
                  {"early",
                   3,
                   0,
                   4,
                   1,
                   -128,
                   {{"SceneHelper",
                     "drawMovie",
                     {{wave, -1, 1, "a"}, {word, 0, 0, "b"}, {curve, -9, 9, "c"}, {0.125, 0, 1, "d"}}}}}};
  const Script back = readScript(writeProject(script));
  EXPECT_EQ(back.startTime, 1.5);
  EXPECT_EQ(back.totalTime, 60);
  EXPECT_EQ(back.sound, "data\\vex.ogg");
  EXPECT_EQ(back.ticks, script.ticks);
  ASSERT_EQ(back.parts.size(), 2u);
  EXPECT_EQ(back.parts[0].name, "early");  // in order of position
  EXPECT_EQ(back.parts[0].track, -128);
  EXPECT_EQ(back.parts[1].speed, -0.5);
  EXPECT_EQ(back.parts[1].start, 1);
  EXPECT_EQ(back.parts[1].track, 127);
  const auto& parameters = back.parts[0].calls.at(0).parameters;
  ASSERT_EQ(parameters.size(), 4u);
  EXPECT_EQ(parameters[0].curve.phase, 90);
  EXPECT_EQ(parameters[0].least, -1);
  EXPECT_EQ(parameters[1].curve.text, "data\\eye");
  EXPECT_EQ(parameters[2].curve.kind, CurveKind::spline);
  EXPECT_EQ(parameters[2].curve.dots[1].y, -2);
  EXPECT_EQ(parameters[3].curve.value, 0.125);
}

TEST(Project, RefusesWhatTheFormatCannotHold) {
  const auto with = [](const ScriptParameter& parameter) {
    Script script;
    script.parts = {{"p", 0, 0, 1, 1, 0, {{"S", "f", {parameter}}}}};
    return fatalText([&] { writeProject(script); });
  };
  EXPECT_EQ(with({Curve(CurveKind::linear, {{0, 1}, {0, 2}}), 0, 1, "x"}),
            "project: f.x: dot 1 at 0 does not follow 0");
  EXPECT_EQ(with({Curve(CurveKind::spline, {}), 0, 1, "x"}), "project: f.x has 0 dots, must be 1 to 255");
  Curve name;
  name.text = std::string(32, 'n');
  EXPECT_EQ(with({name, 0, 1, "x"}), "project: f.x: \"" + name.text + "\" has more than 31 characters");
  EXPECT_EQ(with({1, 0, 1, "two\nlines"}),
            "project: the string \"two\nlines\" does not fit a line of 126 characters");
  Script script;
  script.parts = {{"p", 0, 0, 1, 1, 128, {}}};
  EXPECT_EQ(fatalText([&] { writeProject(script); }), "project: part p has track 128, must be -128 to 127");
}

TEST(TimeLine, TakesOnlyCallsThatScenesOffer) {
  const auto adding = [](const ScriptCall& call) {
    return fatalText([&] { Show().part("night", 0, 1, 0, {call}); });
  };
  EXPECT_EQ(adding({"SceneSea", "animate", {{0}}}), "part night: there is no function SceneSea.animate");
  EXPECT_EQ(adding({"SceneWater", "swim", {{0}}}), "part night: there is no function SceneWater.swim");
  EXPECT_EQ(adding({"SceneWater", "animate", {{0}, {1}}}),
            "part night: SceneWater.animate takes 1 parameters, not 2");
  Show show;
  show.part("night", 0, 1, 0, {{"SceneHelper", "fadeScreen", {{0.1}, {0.2}, {0.3}, {1}}}});
  const auto& named = show.script.parts.at(0).calls.at(0).parameters;
  EXPECT_EQ(named[1].name, "green");
  EXPECT_EQ(named[3].name, "alpha");
}

// From -1 to 3 within 0 and 1: dots where it meets its bounds, and none behind the part's end.
TEST(TimeLine, WritesLinesAsTheyArePlayed) {
  Show show;
  const Curve steep = line({{0, -1}, {4, 3}, {5, 0}});
  show.part("night", 0, 1, 0, {{"SceneHelper", "fadeScreen", {{steep, 0, 1}, {0}, {0}, {1}}}});
  const auto& dots = show.script.parts.at(0).calls.at(0).parameters.at(0).curve.dots;
  std::vector<std::pair<double, double>> written;
  for (const CurveDot& dot : dots) written.emplace_back(dot.x, dot.y);
  EXPECT_EQ(written, (std::vector<std::pair<double, double>>{{0, 0}, {0.25, 0}, {0.5, 1}, {1, 1}}));
}

TEST(TimeLine, UsesAllFunctionsAndAllKindsOfParameters) {
  std::set<std::string> functions;
  std::set<CurveKind> kinds;
  for (const ScriptPart& part : theShow().parts)
    for (const ScriptCall& call : part.calls) {
      functions.insert(call.scene + "." + call.function);
      for (const ScriptParameter& parameter : call.parameters) kinds.insert(parameter.curve.kind);
    }
  std::set<std::string> offered;
  for (const SceneEntry& table : sceneEntries())
    for (const FunctionRow& row : table.functions)
      offered.insert(std::string(table.name) + "." + std::string(row.name));
  EXPECT_EQ(functions, offered);
  EXPECT_EQ(kinds.size(), 5u);
}

TEST(TimeLine, LastsForItsSectionsAndLessThanItsMusic) {
  EXPECT_EQ(theShow().totalTime, barCount(showSections) * 1.875 + 3.5);
  EXPECT_LE(theShow().totalTime, musicSeconds - 0.5);
  EXPECT_EQ(theShow().sound, "data\\vex.ogg");
}

TEST(TimeLine, EveryFrameHasAGroundAndAtMostSixteenParts) {
  for (int frame = 0; frame <= theShow().totalTime * 30; ++frame) {
    const double time = frame / 30.0;
    const auto active = activeAt(time);
    ASSERT_FALSE(active.empty()) << time;
    EXPECT_LE(active.size(), 16u) << time;
    const ScriptPart& lowest = *active.front();
    EXPECT_TRUE(paintsAll(lowest.calls.front(), (time - lowest.position) / lowest.length))
        << time << " s, " << lowest.name;
    EXPECT_NE(lowest.calls.front().function, "setViewport") << time;
  }
}

TEST(TimeLine, TheViewportIsWholeAgainAtTheEndOfEachFrame) {
  for (int frame = 0; frame <= theShow().totalTime * 30; ++frame) {
    const double time = frame / 30.0;
    const ScriptCall* last = nullptr;
    for (const ScriptPart* part : activeAt(time))
      for (const ScriptCall& call : part->calls)
        if (call.function == "setViewport") last = &call;
    if (last == nullptr) continue;
    const double whole[4] = {-1, -1, 2, 2};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(last->parameters[i].curve.value, whole[i]) << time;
  }
}

TEST(TimeLine, EachWorldHasItsSection) {
  const struct {
    Section section;
    const char* scene;
    double least;  // of the section's time
  } rows[] = {{Section::box, "SceneIntroBox", 0.9},     {Section::alien, "SceneAlien", 0.9},
              {Section::laboratory, "SceneFetus", 0.9}, {Section::hell, "SceneHell", 0.9},
              {Section::skull, "SceneSkull", 0.9},      {Section::water, "SceneWater", 0.9},
              {Section::outro, "SceneOuttro", 0.5}};
  for (const auto& [section, scene, least] : rows) {
    const int beats = barCount(section) * 4;
    int shown = 0;
    for (int beat = 0; beat < beats; ++beat) {
      bool found = false;
      for (const ScriptPart* part : activeAt(cueSeconds(firstBar(section) + (beat + 0.5) / 4)))
        for (const ScriptCall& call : part->calls) {
          const SceneEntry& table = *findSceneEntry(sceneEntries(), call.scene);
          found = found ||
                  (call.scene == scene && findFunction(table, call.function)->role == FunctionRole::draws);
        }
      shown += found;
    }
    EXPECT_GE(shown, least * beats) << scene;
  }
}

// The numbers of each call that can be seen at a time, by its part and its place in that; those that set
// something are seen through what draws it.
struct Shown {
  bool draws = false;
  std::vector<double> numbers;
};
std::map<std::pair<const ScriptPart*, std::size_t>, Shown> shownAt(double time) {
  std::map<std::pair<const ScriptPart*, std::size_t>, Shown> shown;
  for (const ScriptPart* part : activeAt(time))
    for (std::size_t i = 0; i < part->calls.size(); ++i) {
      const ScriptCall& call = part->calls[i];
      const FunctionRow& row = *findFunction(*findSceneEntry(sceneEntries(), call.scene), call.function);
      Shown one{row.role == FunctionRole::draws, {}};
      bool visible = true;
      for (std::size_t k = 0; k < call.parameters.size(); ++k) {
        one.numbers.push_back(valueOf(call.parameters[k], (time - part->position) / part->length));
        if (std::string_view(row.parameters[k].name) == "alpha") visible = one.numbers.back() > 0.02;
      }
      if (visible) shown[{part, i}] = one;
    }
  return shown;
}

// Something comes, goes or jumps: what moves evenly does not get far in a twentieth of a second.
TEST(TimeLine, SomethingThatOneSeesChangesOnEveryBar) {
  for (int bar = 1; bar < songBars; ++bar) {
    const double time = cueSeconds(bar);
    const auto before = shownAt(time - 0.01), after = shownAt(time + 0.04);
    bool changes = false;
    for (const auto& [call, shown] : before) changes = changes || (shown.draws && !after.contains(call));
    for (const auto& [call, shown] : after) {
      const auto was = before.find(call);
      if (was == before.end()) {
        changes = changes || shown.draws;
        continue;
      }
      for (std::size_t k = 0; k < shown.numbers.size(); ++k)
        changes = changes || std::abs(shown.numbers[k] - was->second.numbers[k]) >
                                 0.08 * std::max(1.0, std::abs(shown.numbers[k]));
    }
    EXPECT_TRUE(changes) << "bar " << bar;
  }
}

// The text that a call of a part gives first, or none.
std::string firstText(const ScriptPart& part, const char* function) {
  for (const ScriptCall& call : part.calls)
    if (call.function == function) return call.parameters[0].curve.text;
  return "no call";
}

// The crow that falls is the one at which the lasers aim, in the place to which it flew, and burns itself.
TEST(TimeLine, LasersShootTheCrowThatFalls) {
  std::set<double> shot;
  std::string lastTarget = "none";
  for (const ScriptPart& part : theShow().parts) {
    if (const std::string target = firstText(part, "setLaser"); target != "no call") lastTarget = target;
    for (const ScriptCall& call : part.calls) {
      if (call.scene != "SceneSkull" || call.function != "killCrow") continue;
      const double crow = call.parameters[0].curve.value;
      const std::string name = "Crow0" + std::to_string(static_cast<int>(crow) + 1);
      for (const ScriptCall& trail : part.calls)
        if (trail.function == "setParticleCount") {
          EXPECT_EQ(trail.parameters[0].curve.value, crow) << part.name;
        }
      if (!shot.insert(crow).second) continue;
      bool aimed = false, flew = false;
      for (const ScriptPart* other : activeAt(part.position - 0.01)) {
        aimed = aimed || firstText(*other, "setLaser") == name;
        flew = flew || (firstText(*other, "setAnimationState") == name &&
                        std::abs(other->position + other->length - part.position) < 1e-6);
      }
      EXPECT_TRUE(aimed && flew) << name;
    }
  }
  EXPECT_EQ(shot.size(), 3u);
  EXPECT_EQ(lastTarget, "");  // the lasers are out
}

TEST(TimeLine, EverythingItShowsIsMadeAndPreloaded) {
  std::set<std::string> made;
  for (const Product& product : allProducts())
    for (const std::string& path : product.outputs) made.insert(path);
  const auto exists = [&](std::string texture) {
    std::replace(texture.begin(), texture.end(), '\\', '/');
    return made.contains(texture + ".jpg") || made.contains(texture + ".bmp");
  };
  const std::string list = "\n" + preloadList(theShow());
  for (const ScriptPart& part : theShow().parts)
    for (const ScriptCall& call : part.calls) {
      if (call.scene != "SceneHelper" || call.function == "fadeScreen" || call.function == "setViewport")
        continue;
      const std::string& name = call.parameters[0].curve.text;
      if (call.function == "preloadText" || call.function == "preloadVectorBalls") {
        EXPECT_TRUE(made.contains("data/" + name.substr(5))) << name;
        continue;
      }
      if (call.scene != "SceneHelper" && call.function != "preloadFont") continue;
      if (call.function == "drawMovie") {
        for (int frame = static_cast<int>(call.parameters[5].curve.value);
             frame <= static_cast<int>(call.parameters[6].curve.value); ++frame)
          EXPECT_TRUE(exists(name + std::to_string(frame))) << name << frame;
        continue;
      }
      EXPECT_TRUE(exists(name)) << name;
      if (call.function == "drawVexLogo") continue;  // loaded by its scene
      const bool wrap = call.function != "drawBitmap" && call.function != "preloadFont";
      EXPECT_NE(list.find("\n" + name + (wrap ? " 1\n" : " 0\n")), std::string::npos) << name;
    }
  EXPECT_NE(list.find("\ndata\\halvane1 0\ndata\\halvane2 0\ndata\\halvane3 0\n"), std::string::npos);
  EXPECT_NE(list.find("\ndata\\vex_substract 0\n"), std::string::npos);
}

TEST(Scroller, SaysOnlyWhatItsFontHas) {
  EXPECT_EQ(scrollerWords().find_first_not_of("abcdefghijklmnopqrstuvwxyz .,!?-"), std::string_view::npos);
}

TEST(Show, TurnsBeatsIntoProgress) {
  Show show;
  show.add("p", 2, 2, 0,
           screen::Fade{.red = line({{0, 0}, {2, 1}, {-2, 1}, {partEnd, 0}}),
                        .green = swing(4, -1, 3),
                        .alpha = flashes({0, 4}, 1, 0.5)});
  const ScriptPart& part = show.script.parts.at(0);
  EXPECT_EQ(part.position, 3.75);
  EXPECT_EQ(part.length, 3.75);
  const auto& parameters = part.calls.at(0).parameters;
  const double progress[4] = {0, 0.25, 0.75, 1};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(parameters[0].curve.dots[i].x, progress[i]);
  EXPECT_EQ(parameters[1].curve.cycles, 2);
  EXPECT_EQ(parameters[1].curve.amplitude, 2);
  EXPECT_EQ(parameters[1].curve.offset, 1);
  EXPECT_EQ(parameters[3].curve.dots.front().y, 1);
  EXPECT_NEAR(valueOf(parameters[3], 0.49), 0.5, 1e-9);
  EXPECT_NEAR(valueOf(parameters[3], 0.5), 1, 1e-9);
  EXPECT_NEAR(valueOf(parameters[3], 0.5 + 0.48 / 8), 0.5, 1e-9);  // gone within half a beat
}

TEST(Show, CentresOnAScreenOfSixteenToNine) {
  const Place place = centred(0.5, -0.25, 0.9, 2);
  EXPECT_NEAR(place.h.value, 0.9, 1e-12);
  EXPECT_NEAR(place.w.value, 0.9 * 2 * 9 / 16, 1e-12);
  EXPECT_NEAR(place.x.value + place.w.value / 2, 0.5, 1e-12);
  EXPECT_NEAR(place.y.value + place.h.value / 2, -0.25, 1e-12);
  const Place moving = centred(line({{0, 0}, {4, 1}}), 0, line({{0, 1}, {4, 2}}), 1);
  EXPECT_NEAR(moving.x.dots[1].y + moving.w.dots[1].y / 2, 1, 1e-12);
  EXPECT_EQ(fatalText([] {
              centred(line({{0, 0}, {4, 1}}), 0, line({{0, 1}, {3, 2}}), 1);
            }),
            "curves of different times cannot be added");
}

TEST(Show, RefusesATextureOfTwoWrapModes) {
  Show show;
  show.add("p", 0, 1, 0, screen::Bitmap{.texture = "sky"}, screen::Tiles{.texture = "sky"});
  EXPECT_EQ(fatalText([&] { preloadList(show.script); }), "texture data\\sky is used with and without wrap");
}

// The whole chain: what the generator makes, the recorder plays to the end.
TEST(VexProduce, TheDraftPlaysToTheEnd) {
  const TemporaryFolder folder;
  placeDraft("show");
  const Program run =
      runProgram(std::string(VEX_BIN) + "/vexrecord --dir show --size 64x36 --fps 4 --trace-calls calls.tsv");
  ASSERT_EQ(run.exitCode, 0) << run.errors;
  const std::string calls = readFile("calls.tsv");
  const std::string lastFrame = std::to_string(std::lround(theShow().totalTime * 4));
  EXPECT_NE(calls.find("\n" + lastFrame + "\t"), std::string::npos);
  EXPECT_NE(calls.find("drawVexLogo"), std::string::npos);
}

}  // namespace vex
