#include "authoring/project_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "authoring/nearest_name.h"
#include "authoring/project_lexer.h"
#include "base/report.h"
#include "tests/support/fatal.h"
#include "tests/support/project_builder.h"
#include "tests/support/temporary_folder.h"
#include "timeline/part_dispatcher.h"

namespace vex {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double oddNan = std::bit_cast<double>(0xfff4567890abcdefu);
const double denormal = std::bit_cast<double>(std::uint64_t{1});

struct Played {
  bool loads;  // names aside
  int exitCode;
};

// What becomes of the bytes in the player: loaded, then played for a while.
Played play(const std::string& bytes) {
  writeFile("test.hvp", bytes);
  const ChildResult result = runInChild([] {
    PartDispatcher player;
    player.names = ProjectNames::taken;
    player.loadProject("test.hvp");
    std::fprintf(stderr, "loaded\n");
    for (Part* part : player.parts) {
      for (FunctionCall* call : part->calls) call->function = [](Scene*, float, const void* const*) {};
    }
    if (player.startTime < player.totalTime) player.startTimeline();
    for (const float t : {0.0f, 0.5f, 3.0f, 10.0f, 40.0f}) player.runFrame(t);
  });
  return {result.errorText.starts_with("loaded\n"), result.exitCode};
}

template <typename Read>
std::string firstProblem(const Read& read) {
  if (read.problems.empty()) return "";
  return std::to_string(read.problems[0].line) + ": " + read.problems[0].text;
}

// Text of the bytes, after a look whether it gives them back.
std::string roundTrip(const std::string& bytes) {
  const DecodedProject decoded = decodeProject(bytes, "test.hvp");
  EXPECT_EQ(decoded.failure, "");
  std::string text = writeProjectText(decoded.project);
  const ReadProjectText read = readProjectText(text);
  EXPECT_EQ(firstProblem(read), "") << text;
  EXPECT_TRUE(encodeProject(read.project) == bytes) << text;
  return text;
}

ProjectData withParameter(const ParameterData& parameter) {
  return {.parts = {{.calls = {{.parameters = {parameter}}}}}};
}

std::vector<ProjectData> nastyProjects() {
  std::vector<ProjectData> projects{{}, {.parts = {{}}}};
  const std::string everyByte = [] {
    std::string bytes;
    for (int c = 0; c < 256; ++c) {
      if (c != '\n') bytes += static_cast<char>(c);
    }
    return bytes;
  }();
  for (std::size_t i = 0; i < everyByte.size(); i += 31) {
    const std::string bytes = everyByte.substr(i, 31);
    ProjectData project = withParameter({.name = bytes, .type = 4, .string = bytes});
    project.executable = project.functionsFile = project.music = bytes;
    project.parts[0].name = project.parts[0].calls[0].scene = project.parts[0].calls[0].function = bytes;
    projects.push_back(project);
  }
  for (const char* text :
       {"", "x", "part", "\r", "a\rb", "# no comment", "%41", "\\\"", "caf\xc3\xa9", "\xc3", "\xed\xa0\x80",
        "\xe2\x82", "\xf0\x9f\x8e\xb5", "\xf4\x90\x80\x80", "\xe0\x80\x80", " ", "{"}) {
    projects.push_back({.executable = text,
                        .music = text,
                        .parts = {{.name = text,
                                   .calls = {{.scene = text,
                                              .function = text,
                                              .parameters = {{.name = text, .string = text}}}}}}});
  }
  projects.push_back({.version = "\r0.\r17\r",
                      .executable = "vex",
                      .functionsFile = "",
                      .parts = {{.name = std::string(126, 'n')}}});
  projects.push_back({.version = "0.17", .music = std::string(5000, '\r') + std::string(126, 'm')});
  for (const double value :
       {0.0, -0.0, 1.0, -1.0, 0.1, 1.0 / 3, 1e300, -1e300, denormal, -denormal, 1.7976931348623157e308,
        123456789012345678.0, oddNan, std::numeric_limits<double>::quiet_NaN(), infinity, -infinity}) {
    projects.push_back({.leftTime = value,
                        .zoom = value,
                        .ticks = {value, 1, -value},
                        .parts = {{.pos = value, .start = value, .length = value, .speed = value}}});
    if (std::isfinite(static_cast<float>(value))) {
      projects.push_back({.startTime = value, .totalTime = value});
    }
    for (int type = 0; type < 5; ++type) {
      projects.push_back(withParameter({.type = type,
                                        .constant = value,
                                        .sinPeriod = value,
                                        .sinAmplitude = value,
                                        .sinOffset = value,
                                        .sinPhase = value,
                                        .dots = {{value, value}, {value, 0}, {0, value}},
                                        .min = value,
                                        .max = value,
                                        .string = "also"}));
    }
  }
  projects.push_back(withParameter({.min = -infinity, .max = infinity}));
  projects.push_back(withParameter({.type = 4, .min = 0, .max = 0}));
  projects.push_back({.parts = {{.track = -128, .firstFlag = 1}, {.track = 127}}});
  ProjectData full = {
      .parts = {{.calls = std::vector<CallData>(255, {.parameters = std::vector<ParameterData>(9)})}}};
  full.parts[0].calls[7].parameters[3] = {.type = 2};
  for (int i = 0; i < 255; ++i) full.parts[0].calls[7].parameters[3].dots.emplace_back(i / 254.0, -i);
  projects.push_back(full);
  return projects;
}

TEST(ProjectText, GivesEveryByteBack) {
  const TemporaryFolder folder;
  const std::vector<ProjectData> projects = nastyProjects();
  for (std::size_t i = 0; i < projects.size(); ++i) {
    const std::string bytes = buildProject(projects[i]).bytes;
    ASSERT_TRUE(play(bytes).loads) << "project " << i;
    roundTrip(bytes);
    if (HasFailure()) FAIL() << "project " << i;
  }
}

TEST(ProjectText, KeepsTheBytesBehindTheEnd) {
  const std::string bytes = buildProject({.parts = {{}}}).bytes;
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  for (const std::string& trailing :
       {std::string("\n"), std::string(1, '\0'), all + all, std::string("part \"x\" {")}) {
    roundTrip(bytes + trailing);
  }
}

class RandomProject {
 public:
  explicit RandomProject(unsigned seed) : random(seed) {}

  ProjectData project() {
    ProjectData data{.executable = text(126),
                     .startTime = finite(),
                     .functionsFile = text(9),
                     .leftTime = any(),
                     .totalTime = finite(),
                     .zoom = any(),
                     .music = text(40)};
    for (int i = below(4); i > 0; --i) data.ticks.push_back(any());
    for (int i = below(6); i > 0; --i) data.parts.push_back(part());
    return data;
  }
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

 private:
  std::mt19937 random;

  double any() {
    const std::uint64_t high = random();
    return below(3) == 0 ? finite() : std::bit_cast<double>(high << 32 | random());
  }
  double finite() {
    constexpr double usual[]{0, 1, -1, 0.5, 0.1, -0.0, 60, 1e-40};
    return below(2) == 0 ? usual[below(8)] : (random() / 4294967296.0 - 0.5) * 100;
  }
  std::string text(int most) {
    static constexpr char characters[] = "ab_1 .\\\"%#{}(),=\r\t\xc3\xa9\xff";
    std::string text;
    for (int i = below(most + 1); i > 0; --i)
      text += characters[static_cast<std::size_t>(below(sizeof characters - 1))];
    return text;
  }
  PartData part() {
    PartData data{.name = text(20),
                  .pos = finite(),
                  .start = finite(),
                  .length = finite(),
                  .track = below(256) - 128,
                  .firstFlag = below(2),
                  .speed = finite()};
    for (int i = below(4); i > 0; --i) {
      data.calls.push_back({.scene = text(8), .function = text(8)});
      for (int j = below(10); j > 0; --j) data.calls.back().parameters.push_back(parameter());
    }
    return data;
  }
  ParameterData parameter() {
    ParameterData data{.name = below(2) == 0 ? "alpha" : text(6),
                       .type = below(5),
                       .constant = any(),
                       .sinPeriod = any(),
                       .sinAmplitude = any(),
                       .sinOffset = any(),
                       .sinPhase = any()};
    for (int i = below(5) + (data.type == PARAM_LINEAR); i > 0; --i) data.dots.emplace_back(any(), any());
    data.min = any();
    data.max = below(3) == 0 ? infinity : any();
    data.string = text(31);
    return data;
  }
};

// Whatever bytes, whole or damaged: compiler, decoder and player agree on what is a project, and what is one
// neither crashes the player nor changes on its way through the text.
TEST(ProjectText, AgreesWithThePlayerOnWhatIsAProject) {
  const TemporaryFolder folder;
  int loaded = 0;
  for (unsigned seed = 0; seed < 400; ++seed) {
    RandomProject random(seed);
    std::string bytes = buildProject(random.project()).bytes;
    for (int i = random.below(4); i > 0; --i)
      bytes[static_cast<std::size_t>(random.below(static_cast<int>(bytes.size())))] =
          static_cast<char>(random.below(256));
    if (random.below(6) == 0)
      bytes.resize(static_cast<std::size_t>(random.below(static_cast<int>(bytes.size()))));
    const auto [loads, exitCode] = play(bytes);
    EXPECT_TRUE(exitCode == 255 || (exitCode == 0 && loads)) << exitCode;
    loaded += loads;
    const DecodedProject decoded = decodeProject(bytes, "test.hvp");
    if (!decoded.failure.empty()) {
      EXPECT_FALSE(loads) << decoded.failure;
    } else {
      const CompiledProject compiled = compileProjectText(writeProjectText(decoded.project));
      EXPECT_EQ(compiled.problems.empty(), loads) << firstProblem(compiled);
      EXPECT_TRUE(compiled.bytes == bytes || !loads);
    }
    if (HasFailure()) FAIL() << "seed " << seed;
  }
  EXPECT_GT(loaded, 100);
  EXPECT_LT(loaded, 350);
}

// A statement that goes on takes the next line only where the next word would pass column 100.
TEST(ProjectText, FillsItsLines) {
  ProjectData project{.parts = {{}}};
  for (int i = 0; i < 500; ++i) project.ticks.push_back(i * i * 0.25);
  for (const char* name :
       {"abcdefghi", "abcdefghij", "abcdefghijk"}) {  // of a call that has 99, 100 and 101 characters
    CallData call{.parameters = std::vector<ParameterData>(6, {.name = "value78"})};
    call.parameters.back().name = name;
    project.parts[0].calls.push_back(call);
  }
  std::istringstream lines(writeProjectText(decodeProject(buildProject(project).bytes, "").project));
  std::vector<std::string> calls;
  std::string before, line, wrapped;
  while (std::getline(lines, line)) {
    EXPECT_LE(line.size(), 100u) << line;
    if (line.starts_with("     ") && (before.starts_with("ticks") || before.starts_with("     "))) {
      const std::string word = line.substr(5, line.find(' ', 6) - 5);
      EXPECT_GT(before.size() + word.size(), 100u) << before;
    }
    if (line.starts_with("  SceneTest")) calls.push_back(line);
    if (line.starts_with("    value")) wrapped = line;
    before = line;
  }
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].size(), 99u);
  EXPECT_EQ(calls[1].size(), 100u);
  EXPECT_EQ(calls[2], "  SceneTest.animate(");
  EXPECT_EQ(before, "}");
  EXPECT_EQ(wrapped, "    value78 = 0, value78 = 0, value78 = 0, value78 = 0, value78 = 0, abcdefghijk = 0)");
}

// Text stays as it is, and what would be none for a reader becomes bytes by number.
TEST(ProjectText, WritesNoBrokenCharacters) {
  const std::pair<const char*, const char*> rows[] = {
      {"a\u00e4\u20ac\U0001f3b5", "a\u00e4\u20ac\U0001f3b5"},
      {"\xc3(", "%C3("},
      {"\xe2\x82", "%E2%82"},
      {"\xe0\x9f\xbf", "%E0%9F%BF"},
      {"\xc1\xbf", "%C1%BF"},
      {"\xed\xa0\x80", "%ED%A0%80"},
      {"\xf0\x8f\xbf\xbf", "%F0%8F%BF%BF"},
      {"\xf4\x90\x80\x80", "%F4%90%80%80"},
      {"\xf5\x80\x80\x80", "%F5%80%80%80"},
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(quoteText(bytes), '"' + std::string(text) + '"');
}

TEST(ProjectText, ReadsLikeThis) {
  ProjectData project{
      .executable = "vex", .functionsFile = "", .totalTime = 60, .music = "data\\vex.ogg", .ticks = {0, 1.5}};
  const auto number = [](const char* name, double value) {
    return ParameterData{.name = name, .constant = value, .min = 0, .max = 1};
  };
  project.parts = {
      {.name = "dark",
       .length = 15,
       .calls = {{.scene = "SceneHelper",
                  .function = "fadeScreen",
                  .parameters = {number("red", 0), number("green", 0.1), number("blue", 0),
                                 number("alpha", 1)}}}},
      {.name = "sky",
       .pos = 15,
       .start = 3,
       .length = 45,
       .track = -3,
       .firstFlag = 1,
       .speed = 2,
       .calls = {
           {.scene = "SceneHelper",
            .function = "drawBitmap",
            .parameters = {
                {.name = "texture", .type = 4, .min = 0, .max = 0, .string = "data\\sky"},
                {.name = "x", .type = 1, .dots = {{0, -1}, {1, -1.5}}, .min = -infinity, .max = infinity},
                number("alpha", 1),
                {.name = "alpha", .type = 3, .sinPeriod = 2, .sinPhase = 90, .min = 0, .max = 2},
                {.name = "glitch probability",
                 .constant = -0.0,
                 .min = -infinity,
                 .max = infinity,
                 .string = "old"}}}}}};
  // The editor's number that the builder writes is left out here.
  std::string text = writeProjectText(decodeProject(buildProject(project).bytes, "").project);
  for (std::size_t at; (at = text.find("  editorNumber 4711")) != std::string::npos;) text.erase(at, 19);
  EXPECT_EQ(text,
            "total 60\n"
            "music \"data\\vex.ogg\"\n"
            "ticks 0 1.5\n"
            "range alpha 0 to 1\n"
            "range blue 0 to 1\n"
            "range green 0 to 1\n"
            "range red 0 to 1\n"
            "\n"
            "part \"dark\" {\n"
            "  at 0  length 15\n"
            "  SceneHelper.fadeScreen(red = 0, green = 0.1, blue = 0, alpha = 1)\n"
            "}\n"
            "\n"
            "part \"sky\" {\n"
            "  at 15  length 45  track -3  start 3  speed 2  editorFlag 1\n"
            "  SceneHelper.drawBitmap(\n"
            "    texture = \"data\\sky\",\n"
            "    x = linear(0 -1, 1 -1.5),\n"
            "    alpha = 1,\n"
            "    alpha = sine(cycles 2, phase 90) in 0 to 2,\n"
            "    \"glitch probability\" = -0 also \"old\")\n"
            "}\n");
}

// Where all names are the function's own they say what is meant, otherwise the places do.
TEST(ProjectText, TakesParametersByTheirNames) {
  const struct {
    const char* call;
    std::vector<std::string> names;  // as the project has them
  } rows[] = {
      {"fadeScreen(alpha=4, blue=3, red=1, green=2)", {"red", "green", "blue", "alpha"}},
      {"fadeScreen(red=1, green=2, blue=3, alpha=4)", {"red", "green", "blue", "alpha"}},
      {"fadeScreen(alpha=4, blue=3, red=1, g=2)", {"alpha", "blue", "red", "g"}},
      {"fadeScreen(alpha=4, blue=3, red=1, red=2)", {"alpha", "blue", "red", "red"}},
      {"fadeScreen(alpha=4, blue=3, red=1)", {"alpha", "blue", "red"}},
      {"fadeScreen ordered (alpha=4, blue=3, red=1, green=2)", {"alpha", "blue", "red", "green"}},
      {"fade(alpha=4, blue=3, red=1, green=2)", {"alpha", "blue", "red", "green"}},
  };
  for (const auto& [call, names] : rows) {
    const std::string text =
        "total 1 range blue 0 to 2 part p { at 0 length 1 SceneHelper." + std::string(call) + " }";
    const ReadProjectText read = readProjectText(text);
    ASSERT_TRUE(read.problems.empty()) << call << read.problems[0].text;
    const auto& parameters = read.project.parts[0].calls[0].parameters;
    const auto& places = read.places.parts[0].calls[0].parameters;
    ASSERT_EQ(parameters.size(), names.size()) << call;
    for (std::size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(parameters[i].name, names[i]) << call;
      const std::string place(
          text.substr(places[i].whole.begin, places[i].whole.end - places[i].whole.begin));
      EXPECT_EQ(place, formatted("%s=%g", names[i].c_str(), parameters[i].constant)) << call;
      EXPECT_EQ(parameters[i].max, names[i] == "blue" ? 2 : infinity) << call;
    }
    const std::string bytes = encodeProject(read.project);
    EXPECT_EQ(compileProjectText(writeProjectText(decodeProject(bytes, "").project)).bytes, bytes) << call;
  }
}

// What an author may write beside what a dump writes.
TEST(ProjectText, TakesBarsSecondsAndComments) {
  const ReadProjectText read = readProjectText(
      "\xef\xbb\xbf# a show\r\n"
      "tempo 120 beats 3 from 2  # half a second a beat\r\n"
      "total 10:0 start 0:1\n"
      "ticks 1:0 -0:2 7 7s\n"
      "part intro { at 1:1.5 until 3:0 start 1:0\n"
      "  S.f(\"a b\"=linear(0 0,1s 1,1:0 2,+1 3),c=spline(0 +1),s=\"50%25 %22x%22\")}\n"
      "tempo 60\n"
      "range s 1 to 2\n"
      "part later { at 1:1 length 2s S.f(s=0) S.f(s=0 in -1 to inf) S.f() }\n");
  ASSERT_EQ(firstProblem(read), "");
  const Project& project = read.project;
  EXPECT_EQ(project.totalTime, 17);
  EXPECT_EQ(project.startTime, 2.5);
  EXPECT_EQ(project.ticks, (std::vector<double>{3.5, 1, 7, 7}));
  ASSERT_EQ(project.parts.size(), 2u);
  const ProjectPart& intro = project.parts[0];
  EXPECT_EQ(intro.line, 5);
  EXPECT_EQ(intro.pos, 4.25);
  EXPECT_EQ(intro.length, 2.25);
  EXPECT_EQ(intro.start, 1.5);
  const auto& parameters = intro.calls.at(0).parameters;
  ASSERT_EQ(parameters.size(), 3u);
  EXPECT_EQ(parameters[0].name, "a b");
  ASSERT_EQ(parameters[0].dots.size(), 4u);
  EXPECT_EQ(parameters[0].dots[1].x, 1 / 2.25);
  EXPECT_EQ(parameters[0].dots[2].x, 1.5 / 2.25);
  EXPECT_EQ(parameters[0].dots[3].x, 1);
  EXPECT_EQ(parameters[0].min, -infinity);
  EXPECT_EQ(parameters[2].string, "50% \"x\"");
  EXPECT_EQ(parameters[2].max, 0);
  const ProjectPart& later = project.parts[1];
  EXPECT_EQ(later.pos, 5);
  EXPECT_EQ(later.length, 2);
  EXPECT_EQ(later.calls.at(0).parameters.at(0).max, 2);
  EXPECT_EQ(later.calls.at(1).parameters.at(0).max, infinity);
  EXPECT_TRUE(later.calls.at(2).parameters.empty());
}

std::string partWith(const std::string& parameter) {
  return "total 9\npart p { at 0 length 1\n S.f(" + parameter + ") }\n";
}

std::string repeated(const std::string& text, int count, const char* between = "") {
  std::string all;
  for (int i = 0; i < count; ++i) (all += i > 0 ? between : "") += text;
  return all;
}

TEST(ProjectText, SaysWhatIsWrong) {
  const std::string tooLong(127, 'n');
  const std::string shown =
      "\"" + std::string(60, 'n') + "\"... has 127 characters, at most 126 are possible";
  const struct {
    std::string text;
    std::string problem;
  } rows[] = {
      {"", "1: total is missing, the time at which the show ends"},
      {"total 1\n\x9f", "2: unexpected byte 0x9f"},
      {"total 1 ;", "1: unexpected character ;"},
      {"totl 1\ntotal 1", "1: unknown statement totl; did you mean total?"},
      {"}\ntotal 1",
       "1: unknown statement }; known are executable, functionsFile, leftTime, music, part, range, start, "
       "tempo, ticks, "
       "total, trailing, version and zoom"},
      {"total 1\ntotal 2", "2: total is given a second time, first in line 1"},
      {"total\n", "2: a number for total is expected, not the end of the text"},
      {"total x", "1: a number for total is expected, not x"},
      {"total 1x", "1: a number for total is expected, not 1x"},
      {"total --1", "1: a number for total is expected, not --1"},
      {"total -nan", "1: a number for total is expected, not -nan"},
      {"total 1e999", "1: total: 1e999 lies outside the numbers of 64 bits"},
      {"total 1e-999", "1: total: 1e-999 lies outside the numbers of 64 bits"},
      {"total inf", "1: total is inf, not a usable number"},
      {"total 1e39", "1: total is inf, not a usable number"},
      {"total 0x7ff8", "1: 0x and the 16 hexadecimal digits of a double for total is expected, not 0x7ff8"},
      {"total 1:0", "1: total: 1:0 is in bars and beats, but no tempo stands before it"},
      {"tempo 60 total x:0", "1: a number for total is expected, not x"},
      {"tempo 60 total 1.5:0", "1: BAR:BEAT for total is expected, not 1.5:0"},
      {"tempo 0\ntotal 1", "1: tempo 0 from 0: beats a minute above 0 and a time are expected"},
      {"tempo 60 beats 0\ntotal 1", "1: a whole number from 1 to 64 for beats is expected, not 0"},
      {"total 1 zoom 3s", "1: a plain number for zoom is expected, not 3s"},
      {"total 1 music x", "1: a text in quotes behind music is expected, not x"},
      {"total 1 music \"x\n\"", "1: the string \"x\" is not closed on its line"},
      {"total 1 music \"x", "1: the string \"x\" is not closed on its line"},
      {"total 1 music \"a\x01\"", "1: byte 0x01 in a string, must be written %01"},
      {"total 1 music \"5% \"",
       "1: two hexadecimal digits must follow % in the string \"5% \", a percent sign itself is %25"},
      {"total 1 music \"a%00\"", ""},
      {"total 1 music \"%0A\"", "1: music \"%0A\" holds a line feed"},
      {"total 1 music \"" + tooLong + "\"", "1: music " + shown},
      {"total 1 version \"0.18\"", "1: version \"0.18\", must be \"0.17\""},
      {"total 1 range x 0 1", "1: to is expected, not 1"},
      {"total 1 part {", "1: the name of a part is expected, not {"},
      {"total 1 part p at 1", "1: { behind the part's name is expected, not at"},
      {"total 1 part " + tooLong + " { at 0 length 1 }", "1: the name of a part " + shown},
      {"total 1\npart p {\n at 0 }", "2: part \"p\" lacks length or until, its end"},
      {"total 1\npart p {\n length 0 }", "2: part \"p\" lacks at, its beginning"},
      {"total 1\npart p { at 0 length 1 until 1 }", "2: part \"p\" has both length and until"},
      {"total 1\npart p { at 2 until 1.5 }", "2: until 1.5 does not lie behind at 2"},
      {"total 1 part p { at 0\n lenght 1 }", "2: unknown key lenght of a part; did you mean length?"},
      {"total 1 part p { at 0 length 1\n at 2 }", "2: at is given a second time, first in line 1"},
      {"total 1 part p { at 0 length 1 S.f()\n speed 2 }",
       "2: speed stands behind a call, the keys of a part come first"},
      {"total 1 part p { at 0 length 1 track 128 }",
       "1: a whole number from -128 to 127 for track is expected, not 128"},
      {"total 1 part p { at 0 length 1 editorFlag 2 }",
       "1: a whole number from 0 to 1 for editorFlag is expected, not 2"},
      {"total 1 part p { at 0 length inf speed -inf }", ""},
      {"total 1\npart p { at 0 length 1\npart q { at 0 length 1 }",
       "3: part \"p\" of line 2 is not closed before this one, } is missing"},
      {"total 1\npart p { at 0 length 1\n",
       "3: a key, a call or the } of part \"p\" is expected, not the end of the text"},
      {partWith("a"), "3: = behind the parameter's name is expected, not )"},
      {partWith("a = 1 b = 2"), "3: ) or , behind a parameter is expected, not b"},
      {partWith("a = lineal(0 1)"), "3: unknown value lineal of \"a\"; did you mean linear?"},
      {partWith("a = dots(0 1)"),
       "3: unknown value dots of \"a\"; known are linear, spline and sine, a text stands in quotes"},
      {partWith("a = ("),
       "3: a number, a text in quotes, linear(...), spline(...) or sine(...) for \"a\" is expected, not ("},
      {partWith("a = 0,5"), "3: the name of a parameter (numbers have a point, no comma) is expected, not 5"},
      {partWith("a = nan"),
       "3: unknown value nan of \"a\"; known are linear, spline and sine, a text stands in quotes"},
      {partWith("a = 0x7ff8000000000000 in 0 to 0x7ff8000000000000"), ""},
      {partWith("a = 1 also 2"), "3: \"a\" has 2 beside another value of that kind"},
      {partWith("a = linear()"), "3: \"a\": curve has no dots"},
      {partWith("a = spline()"), ""},
      {partWith("a = spline(0 1, 1 2, 1 2)"), ""},
      {partWith("a = linear(0 inf, 1 2, 0.5 2)"), ""},
      {partWith("a = linear(0, 1)"), "3: a number for the y of a dot is expected, not ,"},
      {partWith("a = sine(period 1)"),
       "3: unknown key period of sine; known are cycles, amplitude, offset and phase"},
      {partWith("a = sine(phase 1, phase 2)"), "3: phase is given a second time in this sine"},
      {partWith("a = sine(offset 1e300)"), ""},
      {partWith("a = \"" + std::string(31, 'x') + "\""), ""},
      {partWith("a = \"" + std::string(32, 'x') + "\""),
       "3: a \"" + std::string(32, 'x') + "\" has 32 characters, at most 31 are possible"},
      {"total 1 part p { at 0 length 0 S.f(a = linear(1s 0)) }", "1: 1s is a time in a part without length"},
      {partWith("a = linear(" + repeated("0 1", 255, ",") + ")"), ""},
      {partWith("a = linear(" + repeated("0 1", 256, ",") + ")"), "3: \"a\" has more than 255 dots"},
      {partWith(repeated("a = 1", 9, ",\n")), ""},
      {partWith(repeated("a = 1", 10, ",\n")), "12: f has more than 9 parameters"},
      {"total 1 part p { at 0 length 1 " + repeated("S.f()\n", 255) + "}", ""},
      {"total 1 part p { at 0 length 1 " + repeated("S.f()\n", 256) + "}",
       "256: part \"p\" has more than 255 calls"},
      {"total 1\n" + repeated("part p { at 0 length 0 }\n", 999), ""},
      {"total 1\n" + repeated("part p { at 0 length 0 }\n", 1000),
       "1001: a part beyond the 999 that are possible"},
      {"total 1\n" + repeated("part p { at 0 length 1 }\n", 16), ""},
      {"total 1\n" + repeated("part p { at 0 length 1 }\n", 17),
       "18: part \"p\" is active with 16 others at 0, at most 16 parts are possible"},
  };
  for (const auto& [text, problem] : rows)
    EXPECT_EQ(firstProblem(compileProjectText(text)), problem) << text.substr(0, 200);
}

TEST(ProjectText, FindsTheProblemsBehindTheFirst) {
  const ReadProjectText read = readProjectText(
      "totl 9\n"
      "prat \"a\" {\n"
      "  lenght 4\n"
      "}\n"
      "part \"b\" { at 0 length 1\n"
      "  S.f(a = lin())\n"
      "  S.f(b = bad)\n"
      "}\n"
      "part \"c\" { at 1 length 1 track 999 }\n"
      "zoom x\n"
      "music \"\n");
  std::vector<int> lines;
  for (const TextProblem& problem : read.problems) lines.push_back(problem.line);
  EXPECT_EQ(lines, (std::vector<int>{1, 2, 6, 9, 10, 11, 12}));
}

// Never a crash, a hang or a text that claims to be a project and is none.
TEST(ProjectText, DamagedTexts) {
  for (unsigned seed = 0; seed < 800; ++seed) {
    RandomProject random(seed);
    std::string text = writeProjectText(decodeProject(buildProject(random.project()).bytes, "").project);
    static constexpr char marks[] = "{}(),=.\"%#\n 0-x:";
    for (int i = random.below(4); i >= 0; --i) {
      text[static_cast<std::size_t>(random.below(static_cast<int>(text.size())))] =
          marks[random.below(sizeof marks - 1)];
    }
    if (random.below(3) == 0)
      text.resize(static_cast<std::size_t>(random.below(static_cast<int>(text.size()))));
    const CompiledProject compiled = compileProjectText(text);
    if (!compiled.problems.empty()) continue;
    EXPECT_EQ(decodeProject(compiled.bytes, "").failure, "") << text;
  }
}

TEST(NearestName, FindsWhatWasMeant) {
  static constexpr std::string_view known[]{"drawBitmap", "drawBitmapWave", "fadeScreen", "x"};
  const std::pair<const char*, const char*> rows[]{{"drawBitmp", "drawBitmap"},
                                                   {"drawbitmap", "drawBitmap"},
                                                   {"drawBitmapwave", "drawBitmapWave"},
                                                   {"FADESCREEN", "fadeScreen"},
                                                   {"fdaeScreen", "fadeScreen"},
                                                   {"animate", ""},
                                                   {"", ""},
                                                   {"y", ""},
                                                   {"X", "x"}};
  for (const auto& [wrong, right] : rows) EXPECT_EQ(nearestName(wrong, known), right) << wrong;
}

}  // namespace
}  // namespace vex
