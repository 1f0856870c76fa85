#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/nearest_name.h"
#include "authoring/project_lexer.h"
#include "authoring/project_text.h"
#include "authoring/project_value_reader.h"
#include "base/report.h"
#include "scenes/scene_tables.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_rules.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

class Reader : ProjectValueReader {
 public:
  Reader(const ProjectLexer& itsLexer, KeptPlaces kept)
      : ProjectValueReader(itsLexer), keepsPlaces(kept == KeptPlaces::all) {}
  ReadProjectText read();
  std::optional<ReadParts> readParts(const ProjectPlaces& around, std::size_t context);

 private:
  using Statement = void (Reader::*)(const Token&);
  struct StatementRow {
    std::string_view keyword;
    Statement read;
  };
  using PartKey = void (Reader::*)(const Token&, ProjectPart&);
  using PartKeyPlace = TextSpan PartPlace::*;
  struct PartKeyRow {
    std::string_view keyword;
    PartKey read;
    PartKeyPlace place;  // null where nobody asks for it
  };
  static const std::array<StatementRow, 13> statements;
  static const std::array<PartKeyRow, 8> partKeys;

  Project project;
  ProjectPlaces places;
  const bool keepsPlaces;
  CallPlace callPlace;                    // of the call at hand, whose memory serves the next one
  std::map<std::string_view, int> given;  // line of each header statement, or key of the part at hand
  double until = 0;                       // of the part at hand
  bool hasUntil = false;
  bool inPart = false;

  void once(const Token& keyword);

  void readStatement();
  void readText(const Token& keyword);
  void readVersion(const Token& keyword);
  void readTime(const Token& keyword);
  void readNumber(const Token& keyword);
  void readTicks(const Token& keyword);
  void readTempo(const Token& keyword);
  void readRange(const Token& keyword);
  void readTrailing(const Token& keyword);
  void readPart(const Token& keyword);
  void readPartKey(const Token& word, ProjectPart& part, PartPlace& place);

  void readPartTime(const Token& keyword, ProjectPart& part);
  void readUntil(const Token& keyword, ProjectPart& part);
  void readSpeed(const Token& keyword, ProjectPart& part);
  void readTrack(const Token& keyword, ProjectPart& part);
  void readEditorNumber(const Token& keyword, ProjectPart& part);
  void readEditorFlag(const Token& keyword, ProjectPart& part);
  void finishKeys(ProjectPart& part);
  void readCall(const Token& scene, ProjectPart& part, PartPlace& place);
  void putInPlace(ProjectCall& call);
};

const std::array<Reader::StatementRow, 13> Reader::statements{{
    {"executable", &Reader::readText},
    {"functionsFile", &Reader::readText},
    {"leftTime", &Reader::readNumber},
    {"music", &Reader::readText},
    {"part", &Reader::readPart},
    {"range", &Reader::readRange},
    {"start", &Reader::readTime},
    {"tempo", &Reader::readTempo},
    {"ticks", &Reader::readTicks},
    {"total", &Reader::readTime},
    {"trailing", &Reader::readTrailing},
    {"version", &Reader::readVersion},
    {"zoom", &Reader::readNumber},
}};

const std::array<Reader::PartKeyRow, 8> Reader::partKeys{{
    {"at", &Reader::readPartTime, &PartPlace::at},
    {"editorFlag", &Reader::readEditorFlag, nullptr},
    {"editorNumber", &Reader::readEditorNumber, nullptr},
    {"length", &Reader::readPartTime, &PartPlace::length},
    {"speed", &Reader::readSpeed, &PartPlace::speed},
    {"start", &Reader::readPartTime, &PartPlace::start},
    {"track", &Reader::readTrack, &PartPlace::track},
    {"until", &Reader::readUntil, &PartPlace::until},
}};

template <typename Rows>
auto keywordsOf(const Rows& rows) {
  std::vector<std::string_view> keywords;
  for (const auto& row : rows) keywords.push_back(row.keyword);
  return keywords;
}

void Reader::once(const Token& keyword) {
  const auto [first, fresh] = given.emplace(keyword.text, keyword.line);
  if (fresh) return;
  note(keyword.line,
       std::string(keyword.text) + " is given a second time, first in line " + std::to_string(first->second));
}

void Reader::readText(const Token& keyword) {
  once(keyword);
  std::string& field = keyword.text == "music"        ? project.music
                       : keyword.text == "executable" ? project.executable
                                                      : project.functionsFile;
  const std::size_t begin = nextBegin();
  field = string(keyword, maxProjectName);
  if (keyword.text == "music") places.music = takenFrom(begin);
}

// Only for the sake of carriage returns in it.
void Reader::readVersion(const Token& keyword) {
  once(keyword);
  project.version = string(keyword, maxProjectName);
  if (withoutCarriageReturns(project.version) == projectVersion) return;
  note(keyword.line,
       "version " + quoteText(project.version) + ", must be \"" + std::string(projectVersion) + "\"");
}

void Reader::readTime(const Token& keyword) {
  once(keyword);
  const std::size_t begin = nextBegin();
  const double value = time(std::string(keyword.text));
  requireFinite(keyword.line, std::string(keyword.text), value);
  (keyword.text == "total" ? project.totalTime : project.startTime) = value;
  TimePlace& place = keyword.text == "total" ? places.total : places.start;
  place = {takenFrom(begin), tempo};
}

void Reader::readNumber(const Token& keyword) {
  once(keyword);
  (keyword.text == "zoom" ? project.zoom : project.leftTime) = number(std::string(keyword.text));
}

void Reader::readTicks(const Token& keyword) {
  do {
    const std::size_t begin = nextBegin();
    project.ticks.push_back(time("ticks"));
    places.ticks.push_back({{takenFrom(begin), tempo}, lexer.spanOf(keyword).begin});
  } while (lexer.peek().kind == TokenKind::number || nextIs("inf"));
}

void Reader::readTempo(const Token& keyword) {
  Tempo read;
  const std::size_t begin = nextBegin();
  read.beatsPerMinute = number("tempo");
  if (project.parts.empty()) places.tempoNumber = takenFrom(begin);
  if (nextIs("beats")) {
    lexer.take();
    read.beatsPerBar = static_cast<double>(wholeNumber("beats", 1, 64));
  }
  if (nextIs("from")) {
    lexer.take();
    read.origin = time("from");
  }
  if (!(read.beatsPerMinute > 0) || !std::isfinite(read.beatsPerMinute) || !std::isfinite(read.origin)) {
    throw TextFault{keyword.line,
                    formatted("tempo %g from %g: beats a minute above 0 and a time are expected",
                              read.beatsPerMinute, read.origin)};
  }
  tempo = read;
  if (!firstTempo) firstTempo = tempo;
}

void Reader::readRange(const Token&) {
  const std::string of = name("the name of a parameter");
  places.ranges.push_back({of, ranges[of] = range(of)});
}

void Reader::readTrailing(const Token&) {
  if (lexer.peek().kind != TokenKind::string) expected(lexer.peek(), "bytes in quotes behind trailing");
  project.trailing += unquoteText(lexer.take());
}

void Reader::readStatement() {
  const Token keyword = lexer.take();
  for (const StatementRow& row : statements) {
    if (keyword.kind != TokenKind::word || row.keyword != keyword.text) continue;
    (this->*row.read)(keyword);
    if (project.parts.empty()) {
      places.headEnd = lexer.takenEnd();
      places.tempo = tempo;
    }
    return;
  }
  // What looks like a part is passed over as one.
  if (lexer.peek().kind == TokenKind::string) lexer.take();
  inPart = nextIsMark('{');
  throw TextFault{keyword.line, "unknown statement " + describe(keyword) + "; " +
                                    nearestNameHint(keyword.text, keywordsOf(statements))};
}

void Reader::readPartTime(const Token& keyword, ProjectPart& part) {
  const std::string what(keyword.text);
  const double value = what == "at" ? time(what) : span(what);
  (what == "at" ? part.pos : what == "start" ? part.start : part.length) = value;
}

void Reader::readUntil(const Token&, ProjectPart&) {
  until = time("until");
  hasUntil = true;
}

void Reader::readSpeed(const Token&, ProjectPart& part) {
  part.speed = number("speed");
}

void Reader::readTrack(const Token&, ProjectPart& part) {
  part.track = static_cast<std::int8_t>(wholeNumber("track", -128, 127));
}

void Reader::readEditorNumber(const Token&, ProjectPart& part) {
  part.editorNumber = static_cast<std::int32_t>(wholeNumber("editorNumber", INT32_MIN, INT32_MAX));
}

void Reader::readEditorFlag(const Token&, ProjectPart& part) {
  part.editorFlag = wholeNumber("editorFlag", 0, 1) == 1;
}

// Before the first call, whose dots may be times of the part.
void Reader::finishKeys(ProjectPart& part) {
  if (!given.contains("at")) note(part.line, "part " + quoteText(part.name) + " lacks at, its beginning");
  const bool hasLength = given.contains("length");
  if (hasUntil == hasLength) {
    note(part.line, "part " + quoteText(part.name) +
                        (hasLength ? " has both length and until" : " lacks length or until, its end"));
  }
  if (!hasUntil) return;
  part.length = until - part.pos;
  if (!(part.length > 0)) {
    char text[96];
    std::snprintf(text, sizeof text, "until %g does not lie behind at %g", until, part.pos);
    note(part.line, text);
  }
}

void Reader::readPartKey(const Token& word, ProjectPart& part, PartPlace& place) {
  const auto row = std::ranges::find(partKeys, word.text, &PartKeyRow::keyword);
  if (word.kind != TokenKind::word || row == partKeys.end()) {
    throw TextFault{word.line, "unknown key " + describe(word) + " of a part; " +
                                   nearestNameHint(word.text, keywordsOf(partKeys))};
  }
  once(word);
  const std::size_t begin = nextBegin();
  (this->*row->read)(word, part);
  if (row->place) place.*row->place = takenFrom(begin);
  place.keysEnd = lexer.takenEnd();
}

void Reader::readPart(const Token& keyword) {
  if (project.parts.size() + 1 >= maxParts) {
    throw TextFault{keyword.line, "a part beyond the " + std::to_string(maxParts - 1) + " that are possible"};
  }
  inPart = true;
  ProjectPart part;
  part.line = keyword.line;
  PartPlace place;
  place.tempo = tempo;
  place.rangesAbove = places.ranges.size();
  const std::size_t nameBegin = nextBegin();
  part.name = name("the name of a part");
  place.name = takenFrom(nameBegin);
  needMark('{', "behind the part's name");
  place.keysEnd = lexer.takenEnd();
  std::map<std::string_view, int> headerGiven;
  headerGiven.swap(given);
  hasUntil = false;
  try {
    bool keysDone = false;
    while (!takeMark('}')) {
      const Token& next = lexer.peek();
      if (next.kind != TokenKind::word && next.kind != TokenKind::string) {
        expected(next, "a key, a call or the } of part " + quoteText(part.name));
      }
      const Token word = lexer.take();
      if (nextIsMark('.')) {
        if (!std::exchange(keysDone, true)) finishKeys(part);
        readCall(word, part, place);
        continue;
      }
      if (word.text == "part") {
        throw TextFault{word.line, "part " + quoteText(part.name) + " of line " + std::to_string(part.line) +
                                       " is not closed before this one, } is missing"};
      }
      if (keysDone)
        note(word.line, std::string(word.text) + " stands behind a call, the keys of a part come first");
      readPartKey(word, part, place);
    }
    if (!keysDone) finishKeys(part);
  } catch (const TextFault&) {
    given.swap(headerGiven);
    throw;
  }
  given.swap(headerGiven);
  inPart = false;
  place.whole = takenFrom(lexer.spanOf(keyword).begin);
  project.parts.push_back(std::move(part));
  if (keepsPlaces) places.parts.push_back(std::move(place));
}

void Reader::readCall(const Token& scene, ProjectPart& part, PartPlace& partPlace) {
  ProjectCall& call = part.calls.emplace_back();
  call.line = scene.line;
  if (part.calls.size() > maxProjectCount) {
    throw TextFault{scene.line, "part " + quoteText(part.name) + " has more than " +
                                    std::to_string(maxProjectCount) + " calls"};
  }
  call.scene = scene.kind == TokenKind::string ? unquoteText(scene) : std::string(scene.text);
  checkText(scene.line, "the name of a scene", call.scene, maxProjectName);
  callPlace.parameters.clear();
  callPlace.scene = lexer.spanOf(scene);
  needMark('.', "behind the scene");
  const std::size_t functionBegin = nextBegin();
  call.function = name("the name of a function");
  callPlace.function = takenFrom(functionBegin);
  const bool ordered = nextIs("ordered");
  if (ordered) lexer.take();
  needMark('(', "behind the function");
  if (!takeMark(')')) {
    do {
      readParameter(part, call, callPlace);
    } while (takeMark(','));
    needMark(')', "or , behind a parameter");
  }
  if (!ordered) putInPlace(call);
  callPlace.whole = takenFrom(callPlace.scene.begin);
  if (keepsPlaces) partPlace.calls.push_back(callPlace);
}

// A function's own names say where their values belong.
void Reader::putInPlace(ProjectCall& call) {
  const auto order = orderByNames(call, sceneEntries());
  if (!order) return;
  std::vector<ProjectParameter> parameters;
  std::vector<ParameterPlace> parameterPlaces;
  for (const std::size_t from : *order) {
    parameters.push_back(std::move(call.parameters[from]));
    parameterPlaces.push_back(std::move(callPlace.parameters[from]));
  }
  call.parameters = std::move(parameters);
  callPlace.parameters = std::move(parameterPlaces);
}

ReadProjectText Reader::read() {
  places.headEnd = lexer.takenEnd();
  while (problems.size() < maxProblems) {
    try {
      lexer.resume();
      if (lexer.peek().kind == TokenKind::end) break;
      readStatement();
    } catch (const TextFault& fault) {
      note(fault.line, fault.text);
      if (std::exchange(inPart, false)) {
        lexer.skipPart(fault.line);
      } else {
        lexer.skipLine(fault.line);
      }
    }
  }
  if (!given.contains("total")) note(lexer.peek().line, "total is missing, the time at which the show ends");
  std::stable_sort(problems.begin(), problems.end(),
                   [](const TextProblem& a, const TextProblem& b) { return a.line < b.line; });
  return {std::move(project), std::move(problems), firstTempo, std::move(places)};
}

std::optional<ReadParts> Reader::readParts(const ProjectPlaces& around, std::size_t context) {
  const PartPlace& first = around.parts[context];
  tempo = first.tempo;
  for (std::size_t i = 0; i < first.rangesAbove; ++i) {
    ranges[around.ranges[i].parameter] = around.ranges[i].range;
  }
  try {
    lexer.resume();
    while (problems.empty() && lexer.peek().kind != TokenKind::end) {
      if (!nextIs("part")) return std::nullopt;
      readStatement();
    }
  } catch (const TextFault&) {
    return std::nullopt;
  }
  if (!problems.empty()) return std::nullopt;
  for (PartPlace& place : places.parts) place.rangesAbove = first.rangesAbove;
  return ReadParts{std::move(project.parts), std::move(places.parts)};
}

}  // namespace

ReadProjectText readProjectText(std::string_view text, KeptPlaces kept) {
  return Reader(ProjectLexer(text), kept).read();
}

std::optional<ReadParts> readProjectParts(std::string_view text, TextSpan piece, int line,
                                          const ProjectPlaces& places, std::size_t context) {
  return Reader(ProjectLexer(text.substr(0, piece.end), piece.begin, line), KeptPlaces::all)
      .readParts(places, context);
}

CompiledProject compileProjectText(std::string_view text) {
  ReadProjectText read = readProjectText(text, KeptPlaces::none);
  if (!read.problems.empty()) return {"", std::move(read.problems)};
  std::vector<ActiveSpan> spans;
  for (const ProjectPart& part : read.project.parts) spans.push_back(part.active());
  const auto crowded = findCrowdedPart(spans);
  if (!crowded) return {encodeProject(read.project), {}};
  const ProjectPart& part = read.project.parts[*crowded];
  char problem[96];
  std::snprintf(problem, sizeof problem, " is active with %d others at %g, at most %d parts are possible",
                maxActiveParts, part.pos, maxActiveParts);
  return {"", {{part.line, "part " + quoteText(part.name) + problem}}};
}

}  // namespace vex
