#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/project_lexer.h"
#include "authoring/project_text.h"
#include "scenes/scene_tables.h"

namespace vex {

namespace {

constexpr std::size_t lineWidth = 100;
constexpr std::size_t trailingBytesPerLine = 32;
constexpr double infinity = std::numeric_limits<double>::infinity();

// Zeros of both signs are different numbers here, and so are those that are none.
bool same(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// The shortest text that reads as the same double.
std::string numberText(double value) {
  char text[40];
  if (std::isnan(value)) {
    std::snprintf(text, sizeof text, "0x%016llx",
                  static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value)));
    return text;
  }
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

using Range = std::pair<double, double>;

struct SameBits {
  bool operator()(const Range& a, const Range& b) const { return bits(a) < bits(b); }
  static std::pair<std::uint64_t, std::uint64_t> bits(const Range& range) {
    return {std::bit_cast<std::uint64_t>(range.first), std::bit_cast<std::uint64_t>(range.second)};
  }
};

bool same(const Range& a, const Range& b) {
  return same(a.first, b.first) && same(a.second, b.second);
}

Range defaultRange(const ProjectParameter& parameter) {
  return parameter.type == PARAM_STRING ? Range{0, 0} : Range{-infinity, infinity};
}

// The ranges that go to the head of the text, one for each parameter name: the one that most parameters of
// the name have, unless it goes without saying.
using Ranges = std::map<std::string, Range>;

Ranges usualRanges(const Project& project) {
  std::map<std::string, std::map<Range, int, SameBits>> uses;
  std::map<std::string, int> silent;  // where the default does
  for (const ProjectPart& part : project.parts) {
    for (const ProjectCall& call : part.calls) {
      for (const ProjectParameter& parameter : call.parameters) {
        const Range range{parameter.min, parameter.max};
        ++(same(range, defaultRange(parameter)) ? silent[parameter.name] : uses[parameter.name][range]);
      }
    }
  }
  Ranges usual;
  for (const auto& [name, counts] : uses) {
    int most = silent[name];
    for (const auto& [range, count] : counts) {
      if (count <= most) continue;
      most = count;
      usual[name] = range;
    }
  }
  return usual;
}

class Writer {
 public:
  explicit Writer(const Project& theProject) : project(theProject), ranges(usualRanges(theProject)) {}

  std::string write() {
    writeHeader();
    for (const ProjectPart& part : project.parts) writePart(part);
    writeTrailing();
    return std::move(out);
  }

 private:
  const Project& project;
  const Ranges ranges;
  std::string out;

  void line(const char* keyword, const std::string& value) {
    ((out += keyword) += ' ') += value;
    out += '\n';
  }

  void writeHeader() {
    const Project usual;
    if (project.version != usual.version) line("version", quoteText(project.version));
    if (project.executable != usual.executable) line("executable", quoteText(project.executable));
    if (!project.functionsFile.empty()) line("functionsFile", quoteText(project.functionsFile));
    if (!same(project.leftTime, 0)) line("leftTime", numberText(project.leftTime));
    if (!same(project.zoom, 1)) line("zoom", numberText(project.zoom));
    if (!same(project.startTime, 0)) line("start", numberText(project.startTime));
    line("total", numberText(project.totalTime));
    if (!project.music.empty()) line("music", quoteText(project.music));
    writeTicks();
    for (const auto& [name, range] : ranges) line("range", nameText(name) + " " + rangeText(range));
  }

  void writeTicks() {
    std::size_t column = 0;
    for (const double tick : project.ticks) {
      const std::string text = " " + numberText(tick);
      if (column == 0 || column + text.size() > lineWidth) {
        out += column == 0 ? "ticks" : "\n     ";
        column = 5;
      }
      out += text;
      column += text.size();
    }
    if (column > 0) out += '\n';
  }

  void writeTrailing() {
    const std::string_view bytes = project.trailing;
    for (std::size_t i = 0; i < bytes.size(); i += trailingBytesPerLine) {
      if (i == 0) out += '\n';
      line("trailing", quoteText(bytes.substr(i, trailingBytesPerLine)));
    }
  }

  void writePart(const ProjectPart& part) {
    out += "\npart " + quoteText(part.name) + " {\n  at " + numberText(part.pos) + "  length " +
           numberText(part.length);
    if (part.track != 0) out += "  track " + std::to_string(part.track);
    if (!same(part.start, 0)) out += "  start " + numberText(part.start);
    if (!same(part.speed, 1)) out += "  speed " + numberText(part.speed);
    if (part.editorNumber != 0) out += "  editorNumber " + std::to_string(part.editorNumber);
    if (part.editorFlag) out += "  editorFlag 1";
    out += '\n';
    for (const ProjectCall& call : part.calls) writeCall(call);
    out += "}\n";
  }

  // On one line where it fits. Otherwise each curve has a line of its own and the other parameters share
  // lines, so that a change of one shows as that.
  void writeCall(const ProjectCall& call) {
    const std::string head = "  " + nameText(call.scene) + "." + nameText(call.function) +
                             (orderByNames(call, sceneEntries()) ? " ordered(" : "(");
    std::vector<std::pair<std::string, bool>> parameters;  // and whether it stands alone
    std::size_t width = head.size() + 1;
    for (const ProjectParameter& parameter : call.parameters) {
      const bool alone = parameter.type != PARAM_CONST && parameter.type != PARAM_STRING;
      parameters.emplace_back(parameterText(parameter), alone);
      width += parameters.back().first.size() + 2;
    }
    out += head;
    const bool oneLine = width <= lineWidth + 2;
    std::size_t column = lineWidth;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      const auto& [text, alone] = parameters[i];
      const bool last = i + 1 == parameters.size();
      if (oneLine) {
        if (i > 0) out += ' ';
      } else if (alone || column + text.size() + 2 > lineWidth || parameters[i - 1].second) {
        out += "\n    ";
        column = 4;
      } else {
        out += ' ';
        ++column;
      }
      out += text;
      if (!last) out += ',';
      column += text.size() + 1;
    }
    out += ")\n";
  }

  std::string parameterText(const ProjectParameter& p) const {
    std::string text = nameText(p.name) + " = ";
    switch (static_cast<ParameterType>(p.type)) {
      case PARAM_CONST:
        text += numberText(p.constant);
        break;
      case PARAM_LINEAR:
        text += "linear" + dotsText(p);
        break;
      case PARAM_SPLINE:
        text += "spline" + dotsText(p);
        break;
      case PARAM_SINE:
        text += sineText(p);
        break;
      case PARAM_STRING:
        text += quoteText(p.string);
        break;
    }
    const auto usual = ranges.find(p.name);
    const Range range{p.min, p.max};
    if (!same(range, usual == ranges.end() ? defaultRange(p) : usual->second))
      text += " in " + rangeText(range);
    return text + surplusText(p);
  }

  // What the type does not use.
  static std::string surplusText(const ProjectParameter& p) {
    std::string text;
    if (p.type != PARAM_CONST && !same(p.constant, 0)) text += " also " + numberText(p.constant);
    const bool sine =
        !same(p.sinPeriod, 0) || !same(p.sinAmplitude, 0) || !same(p.sinOffset, 0) || !same(p.sinPhase, 0);
    if (p.type != PARAM_SINE && sine) text += " also " + sineText(p);
    if (p.type != PARAM_LINEAR && p.type != PARAM_SPLINE && !p.dots.empty())
      text += " also dots" + dotsText(p);
    if (p.type != PARAM_STRING && !p.string.empty()) text += " also " + quoteText(p.string);
    return text;
  }

  static std::string rangeText(const Range& range) {
    return numberText(range.first) + " to " + numberText(range.second);
  }

  static std::string sineText(const ProjectParameter& p) {
    std::string text = "sine(";
    for (const auto& [key, value] : {std::pair{"cycles ", p.sinPeriod},
                                     {"amplitude ", p.sinAmplitude},
                                     {"offset ", p.sinOffset},
                                     {"phase ", p.sinPhase}}) {
      if (same(value, 0)) continue;
      if (text.back() != '(') text += ", ";
      (text += key) += numberText(value);
    }
    return text += ')';
  }

  static std::string dotsText(const ProjectParameter& p) {
    std::string text = "(";
    for (const ProjectDot& dot : p.dots) {
      if (text.size() > 1) text += ", ";
      ((text += numberText(dot.x)) += ' ') += numberText(dot.y);
    }
    return text += ')';
  }
};

}  // namespace

std::string writeProjectText(const Project& project) {
  return Writer(project).write();
}

}  // namespace vex
