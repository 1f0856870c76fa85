#include "authoring/project_check.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <map>
#include <optional>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/nearest_name.h"
#include "authoring/project_lexer.h"
#include "base/report.h"
#include "timeline/part_dispatcher.h"

namespace vex {

namespace {

constexpr float shortestSetter = 0.3f;  // seconds; a slow frame is shorter

double shown(float value) {
  return static_cast<double>(value);
}

template <typename Named>
std::vector<std::string_view> namesOf(std::span<const Named> rows, const char* Named::*name) {
  std::vector<std::string_view> names;
  for (const Named& row : rows) names.push_back(row.*name);
  return names;
}

std::string shownName(const std::string& text) {
  const std::string name = playedText(text);
  return isProjectWord(name) ? name : quoteText(name);
}

// "alpha of SceneHelper.fadeScreen", by the project's own names.
std::string nameOf(const ProjectCall& call) {
  return shownName(call.scene) + "." + shownName(call.function);
}
std::string nameOf(const ProjectParameter& parameter, const ProjectCall& call) {
  return shownName(parameter.name) + " of " + nameOf(call);
}

struct Findings {
  std::vector<Finding> all;
  int part = -1;

  void problem(int line, std::string text, std::string hint = "") {
    all.push_back({line, part, std::move(text), std::move(hint), false});
  }
  void remark(int line, std::string text, std::string hint = "") {
    all.push_back({line, part, std::move(text), std::move(hint), true});
  }
};

void checkNumber(Findings& findings, int line, const char* field, double value) {
  if (const auto fault = findNumberFault(static_cast<float>(value)))
    findings.problem(line, std::string(field) + " " + *fault);
}

void checkText(Findings& findings, int line, const std::string& what, const std::string& text) {
  if (text.find('\0') == std::string::npos) return;
  findings.remark(line, what + " " + quoteText(text) + " ends for the player at its zero byte");
}

// What the loader refuses is another's finding.
void checkCurve(Findings& findings, const ProjectCall& call, const ProjectParameter& parameter) {
  Parameter played;
  fillPlayed(played, parameter);
  if (lacksValue(played)) return;
  for (const CurveFault& fault : findCurveFaults(played)) {
    findings.problem(parameter.line, nameOf(parameter, call) + ": " + fault.field + " " + fault.complaint,
                     fault.fatalText ? "the show ends with " + quoteText(fault.fatalText) : "");
  }
}

// Dots that no moment of the part reaches, and values that their bounds cut off. A last dot may lie a little
// behind the end: the curve runs towards it.
void checkDots(Findings& findings, const ProjectCall& call, const ProjectParameter& parameter,
               const Parameter& played) {
  if (played.type != PARAM_LINEAR && played.type != PARAM_SPLINE) return;
  constexpr float overhang = 0.25f;  // of the part
  const float slack = 0.01f * (played.max - played.min);
  for (int i = 0; i < played.dotCount; ++i) {
    const float x = played.dotX[i], y = played.dotY[i];
    std::string fault;
    if (x > 1 + overhang || (i > 0 && played.dotX[i - 1] >= 1)) {
      fault = formatted(" at x %g lies behind the part's end", shown(x));
    } else if (x < -overhang) {
      fault = formatted(" at x %g lies before the part begins", shown(x));
    } else if (y < played.min - slack || y > played.max + slack) {
      fault = formatted(", %g, is held within %g and %g", shown(y), shown(played.min), shown(played.max));
    }
    if (fault.empty()) continue;
    findings.remark(parameter.line, nameOf(parameter, call) + ": dot " + std::to_string(i + 1) + fault);
    return;
  }
}

void checkUsefulRange(Findings& findings, const ProjectCall& call, const ProjectParameter& parameter,
                      const FunctionParameter& wanted) {
  const auto [least, greatest] = valuesOf(parameter);
  std::string reached;
  if (!(least >= wanted.min)) reached = formatted("%g", shown(least));
  if (!(greatest <= wanted.max) && (reached.empty() || greatest > least)) {
    reached += formatted("%s%g", reached.empty() ? "" : " and ", shown(greatest));
  }
  if (reached.empty()) return;
  if (greatest > wanted.limit) reached += formatted(" and is held at %.0f", shown(wanted.limit));
  findings.remark(parameter.line,
                  formatted("%s reaches %s, useful are %g to %g", nameOf(parameter, call).c_str(),
                            reached.c_str(), shown(wanted.min), shown(wanted.max)));
}

// The value that the row wants and the call gives.
void checkParameter(Findings& findings, const ProjectCall& call, const ProjectParameter& parameter,
                    const FunctionParameter& wanted) {
  const bool text = parameter.type == PARAM_STRING;
  if (text != isTextKind(wanted.kind)) {
    findings.problem(parameter.line,
                     nameOf(parameter, call) +
                         (text ? " is the text " + quoteText(parameter.string) + ", must be a number"
                               : ", the " + std::string(wanted.name) + ", is a number, must be a text"),
                     text ? "numbers stand without quotes" : "texts stand in quotes");
    return;
  }
  if (text) return;
  if (!canBeEvaluated(parameter)) return;
  Parameter played;
  fillPlayed(played, parameter);
  if (played.min > played.max) {
    findings.problem(parameter.line,
                     formatted("%s: min %g lies above max %g", nameOf(parameter, call).c_str(),
                               shown(played.min), shown(played.max)));
    return;
  }
  if (played.type == PARAM_CONST && (played.constant < played.min || played.constant > played.max)) {
    findings.remark(parameter.line,
                    formatted("%s: %g is held within %g and %g", nameOf(parameter, call).c_str(),
                              shown(played.constant), shown(played.min), shown(played.max)));
  }
  for (int i = 1; played.type == PARAM_LINEAR && i < played.dotCount; ++i) {
    if (played.dotX[i] != played.dotX[i - 1]) continue;
    findings.remark(parameter.line, formatted("%s: two dots at x %g, a jump", nameOf(parameter, call).c_str(),
                                              shown(played.dotX[i])));
  }
  if (findCurveFaults(played).empty()) checkDots(findings, call, parameter, played);
  checkUsefulRange(findings, call, parameter, wanted);
}

// Names of the function's own that stand at other places. Only a text gives all of them in any order.
void checkNames(Findings& findings, const ProjectCall& call, const FunctionRow& row,
                std::span<const SceneEntry> tables) {
  const bool allOwn = orderByNames(call, tables).has_value();
  const std::string why = allOwn ? "values go by their place in a project file and behind ordered"
                                 : "values go by their place where not all names are the function's own";
  const std::string hint =
      allOwn ? "" : "name all as vexproject functions does, then they may stand in any order";
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    const std::string name = playedText(call.parameters[i].name);
    if (name == row.parameters[i].name) continue;
    for (const FunctionParameter& other : row.parameters) {
      if (name != other.name) continue;
      findings.remark(call.parameters[i].line,
                      nameOf(call.parameters[i], call) + " stands where " +
                          quoteText(row.parameters[i].name) + " is taken: " + why,
                      hint);
    }
  }
}

// First and last frame of a movie.
void checkFrameOrder(Findings& findings, const ProjectCall& call, const FunctionRow& row) {
  std::vector<const ProjectParameter*> frames;
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    const ProjectParameter& parameter = call.parameters[i];
    const bool frame = row.parameters[i].kind == ArgumentKind::frameNumber;
    if (frame && parameter.type != PARAM_STRING && canBeEvaluated(parameter)) frames.push_back(&parameter);
  }
  if (frames.size() != 2) return;
  Parameter first, last;
  fillPlayed(first, *frames[0]);
  fillPlayed(last, *frames[1]);
  for (int moment = 0; moment < curveMoments; ++moment) {
    const float progress = static_cast<float>(moment) / curveMoments;
    const int from = truncateNumber(*static_cast<const float*>(first.evaluate(progress)));
    const int to = truncateNumber(*static_cast<const float*>(last.evaluate(progress)));
    if (to >= from) continue;
    findings.remark(frames[1]->line, formatted("%s: frame %d lies before the first one, %d",
                                               nameOf(*frames[1], call).c_str(), to, from));
    return;
  }
}

// "it lacks alpha; " where all that is given has names of the function's own.
std::string lackingNames(const ProjectCall& call, const FunctionRow& row) {
  std::vector<std::string> lacking;
  for (const FunctionParameter& parameter : row.parameters) lacking.emplace_back(parameter.name);
  for (const ProjectParameter& given : call.parameters) {
    if (std::erase(lacking, playedText(given.name)) == 0) return "";
  }
  std::string text;
  for (const std::string& name : lacking) text += (text.empty() ? "it lacks " : ", ") + name;
  return text.empty() ? "" : text + "; ";
}

void checkCall(Findings& findings, const ProjectCall& call, std::span<const SceneEntry> tables) {
  checkText(findings, call.line, "scene name", call.scene);
  checkText(findings, call.line, "function name", call.function);
  for (const ProjectParameter& parameter : call.parameters) {
    checkText(findings, parameter.line, "parameter name", parameter.name);
    checkText(findings, parameter.line, "text", parameter.string);
    checkCurve(findings, call, parameter);
  }
  const std::string scene = playedText(call.scene), function = playedText(call.function);
  const SceneEntry* table = findSceneEntry(tables, scene);
  if (!table) {
    findings.problem(call.line, "unknown scene " + quoteText(scene),
                     nearestNameHint(scene, namesOf(tables, &SceneEntry::name)));
    return;
  }
  const FunctionRow* row = findFunction(*table, function);
  if (!row) {
    findings.problem(call.line, "unknown function " + quoteText(function) + " of " + scene,
                     nearestNameHint(function, namesOf(table->functions, &FunctionRow::name)));
    return;
  }
  const std::size_t given = call.parameters.size(), wanted = row->parameters.size();
  if (given != wanted) {
    std::string names;
    for (const FunctionParameter& parameter : row->parameters)
      (names += names.empty() ? "" : ", ") += parameter.name;
    findings.problem(call.line,
                     formatted("%s has %zu parameters, must have %zu", nameOf(call).c_str(), given, wanted),
                     wanted == 0 ? "it takes none" : lackingNames(call, *row) + "they are " + names);
  }
  for (std::size_t i = 0; i < std::min(given, wanted); ++i) {
    checkParameter(findings, call, call.parameters[i], row->parameters[i]);
  }
  if (given != wanted) return;
  checkFrameOrder(findings, call, *row);
  checkNames(findings, call, *row, tables);
}

// Where a call stands in the order of all calls.
struct CallPlaceInTime {
  float begin;
  int track;
  std::size_t part, call;
  auto operator<=>(const CallPlaceInTime&) const = default;
};

// Functions that need others to have been called.
void checkLoaders(Findings& findings, const Project& project, std::span<const SceneEntry> tables) {
  std::map<std::pair<std::string, std::string>, CallPlaceInTime> first;  // by scene and function
  struct User {
    CallPlaceInTime place;
    const ProjectCall* call;
    const FunctionRow* row;
  };
  std::vector<User> users;
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    const ProjectPart& part = project.parts[i];
    if (!(part.active().end > part.active().begin)) continue;
    for (std::size_t j = 0; j < part.calls.size(); ++j) {
      const ProjectCall& call = part.calls[j];
      const CallPlaceInTime place{part.active().begin, part.track, i, j};
      const auto [known, fresh] =
          first.try_emplace({playedText(call.scene), playedText(call.function)}, place);
      if (!fresh && place < known->second) known->second = place;
      const SceneEntry* table = findSceneEntry(tables, playedText(call.scene));
      const FunctionRow* row = table ? findFunction(*table, playedText(call.function)) : nullptr;
      if (row && !row->after.empty()) users.push_back({place, &call, row});
    }
  }
  for (const auto& [place, call, row] : users) {
    for (const char* loader : row->after) {
      const auto known = first.find({playedText(call->scene), loader});
      if (known != first.end() && known->second < place) continue;
      findings.part = static_cast<int>(place.part);
      findings.problem(call->line,
                       nameOf(*call) + " comes before any call of " + loader + ", the show ends there",
                       "call " + playedText(call->scene) + "." + loader + " in a part that begins earlier");
    }
  }
}

bool setsOnly(const ProjectCall& call, std::span<const SceneEntry> tables) {
  const SceneEntry* table = findSceneEntry(tables, playedText(call.scene));
  const FunctionRow* row = table ? findFunction(*table, playedText(call.function)) : nullptr;
  return row && row->role == FunctionRole::sets;
}

void checkPart(Findings& findings, const ProjectPart& part, const Project& project,
               std::span<const SceneEntry> tables) {
  checkText(findings, part.line, "part name", part.name);
  checkNumber(findings, part.line, "pos", part.pos);
  checkNumber(findings, part.line, "start", part.start);
  checkNumber(findings, part.line, "length", part.length);
  checkNumber(findings, part.line, "speed", part.speed);
  const auto [begin, end] = part.active();
  if (!std::isfinite(begin) || !std::isfinite(end)) return;
  const auto start = static_cast<float>(project.startTime), total = static_cast<float>(project.totalTime);
  if (end <= begin) {
    findings.remark(part.line, formatted("length %g: it is never active", part.length));
  } else if (begin > total && total > start) {  // the frame that reaches the total time is still drawn
    findings.remark(part.line,
                    formatted("begins at %g, after the show has ended at %g", shown(begin), shown(total)));
  }
  // Parts that end before the start are run once, whatever their length.
  if (end <= start || end <= begin || static_cast<float>(part.length) >= shortestSetter) return;
  for (const ProjectCall& call : part.calls) {
    if (!setsOnly(call, tables)) continue;
    findings.problem(
        call.line,
        formatted("%s sets what stays, but the part is only %g s long", nameOf(call).c_str(), part.length),
        formatted("a slow frame skips it, give it at least %g s", shown(shortestSetter)));
  }
}

void checkOrder(Findings& findings, const Project& project) {
  std::size_t latest = 0;
  for (std::size_t i = 1; i < project.parts.size(); ++i) {
    const float before = project.parts[latest].active().begin, begin = project.parts[i].active().begin;
    if (begin >= before || std::isnan(before)) latest = i;
    if (!(begin < before)) continue;
    findings.part = static_cast<int>(i);
    findings.problem(
        project.parts[i].line,
        formatted("begins at %g, but stands behind part %s (%zu), which begins at %g and hides it until then",
                  shown(begin), quoteText(project.parts[latest].name).c_str(), latest + 1, shown(before)),
        "parts must stand in the order in which they begin");
  }
}

// One finding for each time that it becomes too much.
void checkCrowding(Findings& findings, const Project& project) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    const auto [begin, end] = project.parts[i].active();
    if (begin < end) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return project.parts[a].active().begin < project.parts[b].active().begin;
  });
  std::vector<std::size_t> active;
  bool crowded = false;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const float now = project.parts[order[i]].active().begin;
    std::erase_if(active, [&](std::size_t other) { return project.parts[other].active().end <= now; });
    if (active.size() <= maxActiveParts) crowded = false;
    active.push_back(order[i]);
    const bool together = i + 1 < order.size() && project.parts[order[i + 1]].active().begin == now;
    if (active.size() <= maxActiveParts || crowded || together) continue;
    crowded = true;
    std::string names;
    for (const std::size_t other : active) {
      names += formatted("%s%s (%zu)", names.empty() ? "" : ", ",
                         quoteText(project.parts[other].name).c_str(), other + 1);
    }
    findings.part = static_cast<int>(order[i]);
    findings.problem(project.parts[order[i]].line,
                     formatted("%zu parts are active at %g, at most %d are possible: ", active.size(),
                               shown(now), maxActiveParts) +
                         names);
  }
}

}  // namespace

std::vector<Finding> checkRules(const Project& project) {
  Findings findings;
  checkNumber(findings, 0, "start time", project.startTime);
  checkNumber(findings, 0, "total time", project.totalTime);
  for (const ProjectPart& part : project.parts) {
    findings.part = static_cast<int>(&part - project.parts.data());
    for (const ProjectCall& call : part.calls) {
      for (const ProjectParameter& parameter : call.parameters) {
        Parameter played;
        fillPlayed(played, parameter);
        if (lacksValue(played))
          findings.problem(parameter.line, nameOf(parameter, call) + ": curve has no dots");
      }
    }
  }
  return std::move(findings.all);
}

std::vector<Finding> checkTimeLine(const Project& project, std::span<const SceneEntry> tables) {
  Findings findings;
  checkText(findings, 0, "music", project.music);
  const auto start = static_cast<float>(project.startTime), total = static_cast<float>(project.totalTime);
  if (start >= total) {
    findings.problem(0, formatted("start %g is not before total %g", shown(start), shown(total)),
                     "the show would end at once");
  }
  if (start < 0 && !playedText(project.music).empty()) {
    findings.remark(0, formatted("start %g lies before the music, which begins at once", shown(start)),
                    "with sound the show begins at 0");
  }
  for (const ProjectPart& part : project.parts) {
    findings.part = static_cast<int>(&part - project.parts.data());
    for (const ProjectCall& call : part.calls) checkCall(findings, call, tables);
    checkPart(findings, part, project, tables);
  }
  checkLoaders(findings, project, tables);
  checkOrder(findings, project);
  checkCrowding(findings, project);
  return std::move(findings.all);
}

}  // namespace vex
