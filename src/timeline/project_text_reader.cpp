#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "timeline/nearest_name.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_lexer.h"
#include "timeline/project_rules.h"
#include "timeline/project_text.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr std::size_t maxCount = 255;  // of dots and calls, kept in a byte
constexpr std::size_t maxProblems = 1000;
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Range {
  double min = -infinity;
  double max = infinity;
};
constexpr Range textRange{0, 0};

struct Tempo {
  double beatsPerMinute = 0;
  double beatsPerBar = 4;
  double origin = 0;  // demo time of bar 0
};

enum class Unit { plain, seconds, beats };

struct Scalar {
  double value;
  Unit unit;
};

// Where the parts of a call's parameter have been given already.
struct Given {
  bool number = false;
  bool sine = false;
  bool dots = false;
  bool text = false;
};

class Reader {
 public:
  explicit Reader(std::string_view text) : lexer(text) {}
  ReadProjectText read();

 private:
  using Statement = void (Reader::*)(const Token&);
  struct StatementRow {
    std::string_view keyword;
    Statement read;
  };
  using PartKey = void (Reader::*)(const Token&, ProjectPart&);
  struct PartKeyRow {
    std::string_view keyword;
    PartKey read;
  };
  static const std::array<StatementRow, 13> statements;
  static const std::array<PartKeyRow, 8> partKeys;

  ProjectLexer lexer;
  ReadProjectText result;
  Project& project = result.project;
  std::map<std::string, Range, std::less<>> ranges;
  std::optional<Tempo> tempo;
  std::map<std::string_view, int> given;  // line of each header statement, or key of the part at hand
  double until = 0;                       // of the part at hand
  bool hasUntil = false;
  bool inPart = false;

  void note(int line, std::string text);
  [[noreturn]] void expected(const Token& token, const std::string& what);
  void once(const Token& keyword);

  bool nextIsMark(char mark);
  bool takeMark(char mark);
  void needMark(char mark, const std::string& where);
  std::string name(const std::string& what);
  std::string string(const Token& keyword, std::size_t longest);
  void checkText(int line, const std::string& what, const std::string& text, std::size_t longest);

  Scalar scalar(const std::string& what);
  double number(const std::string& what);
  double span(const std::string& what);  // seconds between two times
  double time(const std::string& what);  // demo time
  long wholeNumber(const std::string& what, long least, long most);
  void requireFinite(int line, const std::string& what, double value);

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

  void readPartItem(ProjectPart& part);
  void readPartTime(const Token& keyword, ProjectPart& part);
  void readUntil(const Token& keyword, ProjectPart& part);
  void readSpeed(const Token& keyword, ProjectPart& part);
  void readTrack(const Token& keyword, ProjectPart& part);
  void readEditorNumber(const Token& keyword, ProjectPart& part);
  void readEditorFlag(const Token& keyword, ProjectPart& part);
  void finishKeys(ProjectPart& part);
  void readCall(const Token& scene, ProjectPart& part);
  void readParameter(const ProjectPart& part, ProjectCall& call);
  PartKey findPartKey(std::string_view keyword) const;
  void readValue(const ProjectPart& part, ProjectParameter& parameter, Given& values, bool surplus);
  void readSine(ProjectParameter& parameter);
  void readDots(const ProjectPart& part, ProjectParameter& parameter);
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
    {"at", &Reader::readPartTime},
    {"editorFlag", &Reader::readEditorFlag},
    {"editorNumber", &Reader::readEditorNumber},
    {"length", &Reader::readPartTime},
    {"speed", &Reader::readSpeed},
    {"start", &Reader::readPartTime},
    {"track", &Reader::readTrack},
    {"until", &Reader::readUntil},
}};

template <typename Rows>
auto keywordsOf(const Rows& rows) {
  std::vector<std::string_view> keywords;
  for (const auto& row : rows) keywords.push_back(row.keyword);
  return keywords;
}

void Reader::note(int line, std::string text) {
  if (result.problems.size() < maxProblems) result.problems.push_back({line, std::move(text)});
}

void Reader::expected(const Token& token, const std::string& what) {
  throw TextFault{token.line, what + " is expected, not " + describe(token)};
}

void Reader::once(const Token& keyword) {
  const auto [first, fresh] = given.emplace(keyword.text, keyword.line);
  if (fresh) return;
  note(keyword.line,
       std::string(keyword.text) + " is given a second time, first in line " + std::to_string(first->second));
}

bool Reader::nextIsMark(char mark) {
  return lexer.peek().kind == TokenKind::mark && lexer.peek().text.front() == mark;
}

bool Reader::takeMark(char mark) {
  if (!nextIsMark(mark)) return false;
  lexer.take();
  return true;
}

void Reader::needMark(char mark, const std::string& where) {
  if (!takeMark(mark)) expected(lexer.peek(), std::string(1, mark) + " " + where);
}

void Reader::checkText(int line, const std::string& what, const std::string& text, std::size_t longest) {
  if (text.find_first_of(std::string_view("\n\0", 2)) != std::string::npos) {
    note(line, what + " " + quoteText(text) + " holds a line feed or a zero byte");
  }
  const std::size_t length =
      text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
  if (length <= longest) return;
  note(line, what + " " + quoteText(text.substr(0, 60)) + (text.size() > 60 ? "..." : "") + " has " +
                 std::to_string(length) + " characters, at most " + std::to_string(longest) +
                 " are possible");
}

std::string Reader::name(const std::string& what) {
  const Token& next = lexer.peek();
  if (next.kind != TokenKind::word && next.kind != TokenKind::string) expected(next, what);
  const Token token = lexer.take();
  if (token.kind == TokenKind::word && token.text.size() <= maxProjectName) return std::string(token.text);
  std::string text = token.kind == TokenKind::string ? unquoteText(token) : std::string(token.text);
  checkText(token.line, what, text, maxProjectName);
  return text;
}

std::string Reader::string(const Token& keyword, std::size_t longest) {
  const std::string what(keyword.text);
  if (lexer.peek().kind != TokenKind::string) expected(lexer.peek(), "a text in quotes behind " + what);
  const Token token = lexer.take();
  std::string text = unquoteText(token);
  checkText(token.line, what, text, longest);
  return text;
}

// The whole text as a number of the type.
template <typename Number>
std::errc parse(std::string_view text, Number& value, int base) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end != text.data() + text.size() ? std::errc::invalid_argument : error;
}
std::errc parse(std::string_view text, double& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end != text.data() + text.size() ? std::errc::invalid_argument : error;
}

Scalar Reader::scalar(const std::string& what) {
  const Token& next = lexer.peek();
  if (next.kind == TokenKind::word && next.text == "inf") {
    lexer.take();
    return {infinity, Unit::plain};
  }
  if (next.kind != TokenKind::number) expected(next, "a number for " + what);
  const Token token = lexer.take();
  std::string_view text = token.text;
  if (text.starts_with("0x")) {
    std::uint64_t bits;
    if (text.size() != 18 || parse(text.substr(2), bits, 16) != std::errc()) {
      expected(token, "0x and the 16 hexadecimal digits of a double for " + what);
    }
    return {std::bit_cast<double>(bits), Unit::plain};
  }
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  const auto signedValue = [negative](double value) { return negative ? -value : value; };
  if (text == "inf") return {signedValue(infinity), Unit::plain};

  Scalar scalar{0, Unit::plain};
  const std::size_t colon = text.find(':');
  double bars = 0;
  if (colon != std::string_view::npos) {
    scalar.unit = Unit::beats;
    std::uint32_t whole;
    if (parse(text.substr(0, colon), whole, 10) != std::errc()) expected(token, "BAR:BEAT for " + what);
    bars = whole;
    text.remove_prefix(colon + 1);
  } else if (text.ends_with('s')) {
    scalar.unit = Unit::seconds;
    text.remove_suffix(1);
  }
  // Digits only: not what else the conversion would take.
  const bool begins = !text.empty() && text.front() >= '0' && text.front() <= '9';
  const std::errc error = begins ? parse(text, scalar.value) : std::errc::invalid_argument;
  if (error == std::errc::result_out_of_range) {
    throw TextFault{token.line, what + ": " + describe(token) + " lies outside the numbers of 64 bits"};
  }
  if (error != std::errc()) expected(token, "a number for " + what);
  if (scalar.unit == Unit::beats) {
    if (!tempo) {
      throw TextFault{token.line,
                      what + ": " + describe(token) + " is in bars and beats, but no tempo stands before it"};
    }
    scalar.value = (bars * tempo->beatsPerBar + scalar.value) * 60 / tempo->beatsPerMinute;
  }
  scalar.value = signedValue(scalar.value);
  return scalar;
}

double Reader::number(const std::string& what) {
  const Token token = lexer.peek();
  const Scalar value = scalar(what);
  if (value.unit != Unit::plain) expected(token, "a plain number for " + what);
  return value.value;
}

double Reader::span(const std::string& what) {
  return scalar(what).value;
}

double Reader::time(const std::string& what) {
  const Scalar value = scalar(what);
  return value.unit == Unit::beats ? value.value + tempo->origin : value.value;
}

long Reader::wholeNumber(const std::string& what, long least, long most) {
  const Token token = lexer.peek();
  std::string_view text = token.text;
  if (text.starts_with('+')) text.remove_prefix(1);
  long value = 0;
  if (token.kind != TokenKind::number || parse(text, value, 10) != std::errc() || value < least ||
      value > most) {
    expected(token,
             "a whole number from " + std::to_string(least) + " to " + std::to_string(most) + " for " + what);
  }
  lexer.take();
  return value;
}

void Reader::requireFinite(int line, const std::string& what, double value) {
  if (const auto fault = findNumberFault(static_cast<float>(value))) note(line, what + " " + *fault);
}

void Reader::readText(const Token& keyword) {
  once(keyword);
  std::string& field = keyword.text == "music"        ? project.music
                       : keyword.text == "executable" ? project.executable
                                                      : project.functionsFile;
  field = string(keyword, maxProjectName);
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
  const double value = time(std::string(keyword.text));
  requireFinite(keyword.line, std::string(keyword.text), value);
  (keyword.text == "total" ? project.totalTime : project.startTime) = value;
}

void Reader::readNumber(const Token& keyword) {
  once(keyword);
  (keyword.text == "zoom" ? project.zoom : project.leftTime) = number(std::string(keyword.text));
}

void Reader::readTicks(const Token&) {
  do {
    project.ticks.push_back(time("ticks"));
  } while (lexer.peek().kind == TokenKind::number || lexer.peek().text == "inf");
}

void Reader::readTempo(const Token& keyword) {
  Tempo read;
  read.beatsPerMinute = number("tempo");
  if (lexer.peek().text == "beats") {
    lexer.take();
    read.beatsPerBar = static_cast<double>(wholeNumber("beats", 1, 64));
  }
  if (lexer.peek().text == "from") {
    lexer.take();
    read.origin = time("from");
  }
  if (!(read.beatsPerMinute > 0) || !std::isfinite(read.beatsPerMinute) || !std::isfinite(read.origin)) {
    throw TextFault{keyword.line, "a tempo is beats a minute, above 0, and its origin a time"};
  }
  tempo = read;
}

void Reader::readRange(const Token&) {
  const std::string of = name("the name of a parameter");
  Range range;
  range.min = number("the minimum of " + of);
  if (lexer.peek().text != "to") expected(lexer.peek(), "to");
  lexer.take();
  range.max = number("the maximum of " + of);
  ranges[of] = range;
}

void Reader::readTrailing(const Token&) {
  if (lexer.peek().kind != TokenKind::string) expected(lexer.peek(), "bytes in quotes behind trailing");
  project.trailing += unquoteText(lexer.take());
}

void Reader::readStatement() {
  const Token keyword = lexer.take();
  for (const StatementRow& row : statements) {
    if (keyword.kind == TokenKind::word && row.keyword == keyword.text) return (this->*row.read)(keyword);
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
  requireFinite(keyword.line, what, value);
}

void Reader::readUntil(const Token& keyword, ProjectPart&) {
  until = time("until");
  hasUntil = true;
  requireFinite(keyword.line, "until", until);
}

void Reader::readSpeed(const Token& keyword, ProjectPart& part) {
  part.speed = number("speed");
  requireFinite(keyword.line, "speed", part.speed);
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
  requireFinite(part.line, "length", part.length);
  if (!(part.length > 0)) {
    char text[96];
    std::snprintf(text, sizeof text, "until %g does not lie behind at %g", until, part.pos);
    note(part.line, text);
  }
}

Reader::PartKey Reader::findPartKey(std::string_view keyword) const {
  for (const PartKeyRow& row : partKeys) {
    if (row.keyword == keyword) return row.read;
  }
  return nullptr;
}

void Reader::readPart(const Token& keyword) {
  if (project.parts.size() + 1 >= maxParts) {
    throw TextFault{keyword.line, "a part beyond the " + std::to_string(maxParts - 1) + " that are possible"};
  }
  inPart = true;
  ProjectPart part;
  part.line = keyword.line;
  part.name = name("the name of a part");
  needMark('{', "behind the part's name");
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
        readCall(word, part);
        continue;
      }
      if (word.text == "part") {
        throw TextFault{word.line, "part " + quoteText(part.name) + " of line " + std::to_string(part.line) +
                                       " is not closed before this one, } is missing"};
      }
      const PartKey readKey = word.kind == TokenKind::word ? findPartKey(word.text) : nullptr;
      if (!readKey) {
        throw TextFault{word.line, "unknown key " + describe(word) + " of a part; " +
                                       nearestNameHint(word.text, keywordsOf(partKeys))};
      }
      if (keysDone)
        note(word.line, std::string(word.text) + " stands behind a call, the keys of a part come first");
      once(word);
      (this->*readKey)(word, part);
    }
    if (!keysDone) finishKeys(part);
  } catch (const TextFault&) {
    given.swap(headerGiven);
    throw;
  }
  given.swap(headerGiven);
  inPart = false;
  project.parts.push_back(std::move(part));
}

void Reader::readCall(const Token& scene, ProjectPart& part) {
  ProjectCall& call = part.calls.emplace_back();
  call.line = scene.line;
  if (part.calls.size() > maxCount) {
    throw TextFault{scene.line,
                    "part " + quoteText(part.name) + " has more than " + std::to_string(maxCount) + " calls"};
  }
  call.scene = scene.kind == TokenKind::string ? unquoteText(scene) : std::string(scene.text);
  checkText(scene.line, "the name of a scene", call.scene, maxProjectName);
  needMark('.', "behind the scene");
  call.function = name("the name of a function");
  needMark('(', "behind the function");
  if (takeMark(')')) return;
  do {
    readParameter(part, call);
  } while (takeMark(','));
  needMark(')', "or , behind a parameter");
}

void Reader::readParameter(const ProjectPart& part, ProjectCall& call) {
  const int line = lexer.peek().line;
  if (call.parameters.size() == maxArguments) {
    throw TextFault{line, call.function + " has more than " + std::to_string(maxArguments) + " parameters"};
  }
  ProjectParameter& parameter = call.parameters.emplace_back();
  parameter.line = line;
  parameter.name = name("the name of a parameter");
  needMark('=', "behind the parameter's name");
  Given values;
  readValue(part, parameter, values, false);
  Range range = parameter.type == PARAM_STRING ? textRange : Range{};
  if (const auto known = ranges.find(parameter.name); known != ranges.end()) range = known->second;
  if (lexer.peek().kind == TokenKind::word && lexer.peek().text == "in") {
    lexer.take();
    range.min = number("the minimum of " + parameter.name);
    if (lexer.peek().text != "to") expected(lexer.peek(), "to");
    lexer.take();
    range.max = number("the maximum of " + parameter.name);
  }
  parameter.min = range.min;
  parameter.max = range.max;
  while (lexer.peek().kind == TokenKind::word && lexer.peek().text == "also") {
    lexer.take();
    readValue(part, parameter, values, true);
  }
  Parameter played;
  fillPlayed(played, parameter);
  if (const auto fault = findCurveFault(played)) {
    note(line, quoteText(parameter.name) + ": " + fault->field + " " + fault->complaint);
  }
}

void Reader::readValue(const ProjectPart& part, ProjectParameter& parameter, Given& values, bool surplus) {
  static constexpr std::array<std::string_view, 4> kinds{"linear", "spline", "sine", "dots"};
  const Token next = lexer.peek();
  const auto take = [&](bool& field, ParameterType type) {
    if (std::exchange(field, true))
      throw TextFault{next.line, quoteText(parameter.name) + " has " + describe(next) +
                                     " beside another value of that kind"};
    if (!surplus) parameter.type = type;
  };
  if (next.kind == TokenKind::string) {
    take(values.text, PARAM_STRING);
    parameter.string = unquoteText(lexer.take());
    checkText(next.line, parameter.name, parameter.string, maxProjectString);
  } else if (next.kind == TokenKind::number || next.text == "inf") {
    take(values.number, PARAM_CONST);
    parameter.constant = number(parameter.name);
  } else if (next.kind == TokenKind::word && next.text == "sine") {
    take(values.sine, PARAM_SINE);
    lexer.take();
    readSine(parameter);
  } else if (next.kind == TokenKind::word &&
             (surplus ? next.text == "dots" : next.text == "linear" || next.text == "spline")) {
    take(values.dots, next.text == "spline" ? PARAM_SPLINE : PARAM_LINEAR);
    lexer.take();
    readDots(part, parameter);
  } else if (next.kind == TokenKind::word) {
    throw TextFault{next.line, "unknown value " + describe(next) + " of " + quoteText(parameter.name) + "; " +
                                   nearestNameHint(next.text, std::span(kinds).first(surplus ? 4 : 3))};
  } else {
    expected(next, "a number, a text in quotes, linear(...), spline(...) or sine(...) for " +
                       quoteText(parameter.name));
  }
}

void Reader::readSine(ProjectParameter& parameter) {
  static constexpr std::array<std::string_view, 4> keys{"cycles", "amplitude", "offset", "phase"};
  double* const fields[]{&parameter.sinPeriod, &parameter.sinAmplitude, &parameter.sinOffset,
                         &parameter.sinPhase};
  bool seen[keys.size()]{};
  needMark('(', "behind sine");
  if (takeMark(')')) return;
  do {
    const Token key = lexer.peek();
    const auto known = std::find(keys.begin(), keys.end(), key.text);
    if (key.kind != TokenKind::word || known == keys.end()) {
      throw TextFault{key.line,
                      "unknown key " + describe(key) + " of sine; " + nearestNameHint(key.text, keys)};
    }
    lexer.take();
    const auto i = static_cast<std::size_t>(known - keys.begin());
    if (std::exchange(seen[i], true))
      throw TextFault{key.line, std::string(key.text) + " is given a second time in this sine"};
    *fields[i] = number(std::string(key.text));
  } while (takeMark(','));
  needMark(')', "or , in sine");
}

void Reader::readDots(const ProjectPart& part, ProjectParameter& parameter) {
  needMark('(', "before the dots");
  if (takeMark(')')) return;
  do {
    if (parameter.dots.size() == maxCount) {
      throw TextFault{lexer.peek().line,
                      quoteText(parameter.name) + " has more than " + std::to_string(maxCount) + " dots"};
    }
    const Token token = lexer.peek();
    const Scalar x = scalar("the x of a dot");
    if (x.unit != Unit::plain && !(part.length > 0)) {
      throw TextFault{token.line, describe(token) + " is a time in a part without length"};
    }
    ProjectDot& dot = parameter.dots.emplace_back();
    dot.x = x.unit == Unit::plain ? x.value : x.value / part.length;
    dot.y = number("the y of a dot");
  } while (takeMark(','));
  needMark(')', "or , behind a dot");
}

ReadProjectText Reader::read() {
  while (result.problems.size() < maxProblems) {
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
  std::stable_sort(result.problems.begin(), result.problems.end(),
                   [](const TextProblem& a, const TextProblem& b) { return a.line < b.line; });
  return std::move(result);
}

}  // namespace

ReadProjectText readProjectText(std::string_view text) {
  return Reader(text).read();
}

CompiledProject compileProjectText(std::string_view text) {
  ReadProjectText read = readProjectText(text);
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
