#include "production/show/project_writer.h"

#include <algorithm>
#include <cstdint>

#include "base/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "timeline/scene_function.h"

namespace vex::show {

using namespace image;

namespace {

const std::string& checkedName(const std::string& text) {
  if (text.size() > maxProjectName || text.find_first_of("\r\n") != std::string::npos)
    fatalError("project: the string \"%s\" does not fit a line of %zu characters", text.c_str(),
               maxProjectName);
  return text;
}

ProjectParameter encoded(const ScriptCall& call, const ScriptParameter& parameter) {
  const Curve& curve = parameter.curve;
  const bool drawn = curve.kind == CurveKind::linear || curve.kind == CurveKind::spline;
  if (curve.dots.size() > maxProjectCount || (drawn && curve.dots.empty()))
    fatalError("project: %s.%s has %zu dots, must be 1 to %zu", call.function.c_str(), parameter.name.c_str(),
               curve.dots.size(), maxProjectCount);
  for (std::size_t i = 1; i < curve.dots.size(); ++i)
    if (!(static_cast<float>(curve.dots[i - 1].x) < static_cast<float>(curve.dots[i].x)))
      fatalError("project: %s.%s: dot %zu at %g does not follow %g", call.function.c_str(),
                 parameter.name.c_str(), i, curve.dots[i].x, curve.dots[i - 1].x);
  if (curve.text.size() > maxProjectString)
    fatalError("project: %s.%s: \"%s\" has more than %zu characters", call.function.c_str(),
               parameter.name.c_str(), curve.text.c_str(), maxProjectString);
  ProjectParameter result{.type = static_cast<std::int8_t>(curve.kind),
                          .name = checkedName(parameter.name),
                          .constant = curve.value,
                          .sinPeriod = curve.cycles,
                          .sinAmplitude = curve.amplitude,
                          .sinOffset = curve.offset,
                          .sinPhase = curve.phase,
                          .dots = {},
                          .min = parameter.least,
                          .max = parameter.most,
                          .string = checkedName(curve.text)};
  for (const CurveDot& dot : curve.dots) result.dots.push_back({dot.x, dot.y});
  return result;
}

ProjectPart encoded(const ScriptPart& part) {
  if (part.track < -128 || part.track > 127)
    fatalError("project: part %s has track %d, must be -128 to 127", part.name.c_str(), part.track);
  if (!(part.length > 0)) fatalError("project: part %s has length %g", part.name.c_str(), part.length);
  ProjectPart result{.name = checkedName(part.name),
                     .pos = part.position,
                     .start = part.start,
                     .length = part.length,
                     .track = static_cast<std::int8_t>(part.track),
                     .speed = part.speed,
                     .calls = {}};
  if (part.calls.size() > maxProjectCount)
    fatalError("project: part %s has %zu calls, at most %zu fit", part.name.c_str(), part.calls.size(),
               maxProjectCount);
  for (const ScriptCall& call : part.calls) {
    if (call.parameters.size() > maxArguments)
      fatalError("project: part %s: %s has %zu parameters, at most %d fit", part.name.c_str(),
                 call.function.c_str(), call.parameters.size(), maxArguments);
    ProjectCall& target = result.calls.emplace_back();
    target.scene = checkedName(call.scene);
    target.function = checkedName(call.function);
    for (const ScriptParameter& parameter : call.parameters) {
      target.parameters.push_back(encoded(call, parameter));
    }
  }
  return result;
}

}  // namespace

Bytes writeProject(Script script) {
  if (script.parts.size() >= maxParts)
    fatalError("project: %zu parts, at most %d fit", script.parts.size(), maxParts - 1);
  std::stable_sort(script.parts.begin(), script.parts.end(),
                   [](const ScriptPart& p, const ScriptPart& q) { return p.position < q.position; });
  Project project;
  project.startTime = script.startTime;
  project.totalTime = script.totalTime;
  project.music = checkedName(script.sound);
  project.ticks = script.ticks;
  for (const ScriptPart& part : script.parts) project.parts.push_back(encoded(part));
  return bytesOf(encodeProject(project));
}

}  // namespace vex::show
