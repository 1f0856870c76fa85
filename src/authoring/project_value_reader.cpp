#include "authoring/project_value_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>

#include "authoring/nearest_name.h"
#include "timeline/project_rules.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

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

}  // namespace

void ProjectValueReader::note(int line, std::string text) {
  if (problems.size() < maxProblems) problems.push_back({line, std::move(text)});
}

void ProjectValueReader::expected(const Token& token, const std::string& what) {
  throw TextFault{token.line, what + " is expected, not " + describe(token)};
}

bool ProjectValueReader::nextIs(std::string_view word) {
  return lexer.peek().kind == TokenKind::word && lexer.peek().text == word;
}

bool ProjectValueReader::nextIsMark(char mark) {
  return lexer.peek().kind == TokenKind::mark && lexer.peek().text.front() == mark;
}

bool ProjectValueReader::takeMark(char mark) {
  if (!nextIsMark(mark)) return false;
  lexer.take();
  return true;
}

void ProjectValueReader::needMark(char mark, const std::string& where) {
  if (!takeMark(mark)) expected(lexer.peek(), std::string(1, mark) + " " + where);
}

ParameterRange ProjectValueReader::range(const std::string& parameter) {
  ParameterRange range;
  range.min = number("the minimum of " + parameter);
  if (!nextIs("to")) expected(lexer.peek(), "to");
  lexer.take();
  range.max = number("the maximum of " + parameter);
  return range;
}

void ProjectValueReader::requireFinite(int line, const std::string& what, double value) {
  if (const auto fault = findNumberFault(static_cast<float>(value))) note(line, what + " " + *fault);
}

void ProjectValueReader::checkText(int line, const std::string& what, const std::string& text,
                                   std::size_t longest) {
  if (text.find('\n') != std::string::npos) note(line, what + " " + quoteText(text) + " holds a line feed");
  const std::size_t length =
      text.size() - static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
  if (length <= longest) return;
  note(line, what + " " + quoteText(text.substr(0, 60)) + (text.size() > 60 ? "..." : "") + " has " +
                 std::to_string(length) + " characters, at most " + std::to_string(longest) +
                 " are possible");
}

std::string ProjectValueReader::name(const std::string& what) {
  const Token& next = lexer.peek();
  if (next.kind != TokenKind::word && next.kind != TokenKind::string) expected(next, what);
  const Token token = lexer.take();
  if (token.kind == TokenKind::word && token.text.size() <= maxProjectName) return std::string(token.text);
  std::string text = token.kind == TokenKind::string ? unquoteText(token) : std::string(token.text);
  checkText(token.line, what, text, maxProjectName);
  return text;
}

std::string ProjectValueReader::string(const Token& keyword, std::size_t longest) {
  const std::string what(keyword.text);
  if (lexer.peek().kind != TokenKind::string) expected(lexer.peek(), "a text in quotes behind " + what);
  const Token token = lexer.take();
  std::string text = unquoteText(token);
  checkText(token.line, what, text, longest);
  return text;
}

ProjectValueReader::Scalar ProjectValueReader::scalar(const std::string& what) {
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
    scalar.value = tempo->seconds(bars, scalar.value);
  }
  scalar.value = signedValue(scalar.value);
  return scalar;
}

double ProjectValueReader::number(const std::string& what) {
  const Token token = lexer.peek();
  const Scalar value = scalar(what);
  if (value.unit != Unit::plain) expected(token, "a plain number for " + what);
  return value.value;
}

double ProjectValueReader::span(const std::string& what) {
  return scalar(what).value;
}

double ProjectValueReader::time(const std::string& what) {
  const Scalar value = scalar(what);
  return value.unit == Unit::beats ? value.value + tempo->origin : value.value;
}

long ProjectValueReader::wholeNumber(const std::string& what, long least, long most) {
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

void ProjectValueReader::readParameter(const ProjectPart& part, ProjectCall& call, CallPlace& callPlace) {
  const int line = lexer.peek().line;
  if (call.parameters.size() == maxArguments) {
    throw TextFault{line, call.function + " has more than " + std::to_string(maxArguments) + " parameters"};
  }
  ProjectParameter& parameter = call.parameters.emplace_back();
  ParameterPlace& place = callPlace.parameters.emplace_back();
  parameter.line = line;
  const std::size_t begin = nextBegin();
  // As in "alpha = 0,5".
  if (lexer.peek().kind == TokenKind::number && call.parameters.size() > 1)
    expected(lexer.peek(), "the name of a parameter (numbers have a point, no comma)");
  parameter.name = name("the name of a parameter");
  place.name = takenFrom(begin);
  needMark('=', "behind the parameter's name");
  Given values;
  const std::size_t valueBegin = nextBegin();
  readValue(part, parameter, values, false, place);
  place.value = takenFrom(valueBegin);
  ParameterRange bounds;
  if (parameter.type == PARAM_STRING) bounds = {0, 0};
  if (const auto known = ranges.find(parameter.name); known != ranges.end()) bounds = known->second;
  if (nextIs("in")) {
    const std::size_t boundsBegin = nextBegin();
    lexer.take();
    bounds = range(parameter.name);
    place.bounds = takenFrom(boundsBegin);
  }
  parameter.min = bounds.min;
  parameter.max = bounds.max;
  while (nextIs("also")) {
    const std::size_t surplusBegin = nextBegin();
    lexer.take();
    ParameterPlace unused;
    readValue(part, parameter, values, true, unused);
    place.surplus.push_back(takenFrom(surplusBegin));
  }
  place.whole = takenFrom(begin);
  Parameter played;
  fillPlayed(played, parameter);
  if (lacksValue(played)) note(line, quoteText(parameter.name) + ": curve has no dots");
}

void ProjectValueReader::readValue(const ProjectPart& part, ProjectParameter& parameter, Given& values,
                                   bool surplus, ParameterPlace& place) {
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
    readSine(parameter, place);
  } else if (next.kind == TokenKind::word &&
             (surplus ? next.text == "dots" : next.text == "linear" || next.text == "spline")) {
    take(values.dots, next.text == "spline" ? PARAM_SPLINE : PARAM_LINEAR);
    lexer.take();
    readDots(part, parameter, place);
  } else if (next.kind == TokenKind::word) {
    const std::string hint = nearestNameHint(next.text, std::span(kinds).first(surplus ? 4 : 3));
    throw TextFault{next.line, "unknown value " + describe(next) + " of " + quoteText(parameter.name) + "; " +
                                   hint + (hint.starts_with("known") ? ", a text stands in quotes" : "")};
  } else {
    expected(next, "a number, a text in quotes, linear(...), spline(...) or sine(...) for " +
                       quoteText(parameter.name));
  }
}

void ProjectValueReader::readSine(ProjectParameter& parameter, ParameterPlace& place) {
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
    const std::size_t begin = nextBegin();
    *fields[i] = number(std::string(key.text));
    place.sine[i] = takenFrom(begin);
  } while (takeMark(','));
  needMark(')', "or , in sine");
}

void ProjectValueReader::readDots(const ProjectPart& part, ProjectParameter& parameter,
                                  ParameterPlace& place) {
  needMark('(', "before the dots");
  if (takeMark(')')) return;
  do {
    if (parameter.dots.size() == maxProjectCount) {
      throw TextFault{lexer.peek().line, quoteText(parameter.name) + " has more than " +
                                             std::to_string(maxProjectCount) + " dots"};
    }
    const Token token = lexer.peek();
    const Scalar x = scalar("the x of a dot");
    if (x.unit != Unit::plain && !(part.length > 0)) {
      throw TextFault{token.line, describe(token) + " is a time in a part without length"};
    }
    ProjectDot& dot = parameter.dots.emplace_back();
    DotPlace& dotPlace = place.dots.emplace_back();
    dotPlace.x = takenFrom(lexer.spanOf(token).begin);
    dot.x = x.unit == Unit::plain ? x.value : x.value / part.length;
    const std::size_t begin = nextBegin();
    dot.y = number("the y of a dot");
    dotPlace.y = takenFrom(begin);
  } while (takeMark(','));
  needMark(')', "or , behind a dot");
}

}  // namespace vex
