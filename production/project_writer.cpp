#include "production/project_writer.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "shell/report.h"

namespace vex {

namespace {

constexpr std::size_t maxParts = 999;
constexpr std::size_t maxParameters = 9;
constexpr std::size_t maxText = 31;   // of a string parameter
constexpr std::size_t maxName = 126;  // of any other string

struct Writer {
  Bytes bytes;

  void putBits(std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
  }
  void putDouble(double value) { putBits(std::bit_cast<std::uint64_t>(value), 8); }
  void putInt(std::size_t value) { putBits(value, 4); }
  void putByte(int value) { putBits(static_cast<std::uint64_t>(value), 1); }
  void putString(const std::string& text) {
    if (text.size() > maxName || text.find_first_of("\r\n") != std::string::npos)
      fatalError("project: the string \"%s\" does not fit a line of %zu characters", text.c_str(), maxName);
    for (const char c : text) bytes.push_back(static_cast<std::byte>(c));
    bytes.push_back(std::byte{'\n'});
  }
};

void writeParameter(Writer& writer, const ScriptCall& call, const ScriptParameter& parameter) {
  const Curve& curve = parameter.curve;
  const bool drawn = curve.kind == CurveKind::linear || curve.kind == CurveKind::spline;
  if (curve.dots.size() > 255 || (drawn && curve.dots.empty()))
    fatalError("project: %s.%s has %zu dots, must be 1 to 255", call.function.c_str(), parameter.name.c_str(),
               curve.dots.size());
  for (std::size_t i = 1; i < curve.dots.size(); ++i)
    if (!(static_cast<float>(curve.dots[i - 1].x) < static_cast<float>(curve.dots[i].x)))
      fatalError("project: %s.%s: dot %zu at %g does not follow %g", call.function.c_str(),
                 parameter.name.c_str(), i, curve.dots[i].x, curve.dots[i - 1].x);
  if (curve.text.size() > maxText)
    fatalError("project: %s.%s: \"%s\" has more than %zu characters", call.function.c_str(),
               parameter.name.c_str(), curve.text.c_str(), maxText);
  writer.putString(parameter.name);
  writer.putByte(static_cast<int>(curve.kind));
  for (const double value : {curve.value, curve.cycles, curve.amplitude, curve.offset, curve.phase})
    writer.putDouble(value);
  writer.putByte(static_cast<int>(curve.dots.size()));
  for (const CurveDot& dot : curve.dots) {
    writer.putDouble(dot.x);
    writer.putDouble(dot.y);
  }
  writer.putDouble(parameter.least);
  writer.putDouble(parameter.most);
  writer.putString(curve.text);
}

void writePart(Writer& writer, const ScriptPart& part) {
  if (part.track < -128 || part.track > 127)
    fatalError("project: part %s has track %d, must be -128 to 127", part.name.c_str(), part.track);
  if (!(part.length > 0)) fatalError("project: part %s has length %g", part.name.c_str(), part.length);
  writer.putString(part.name);
  writer.putInt(0);
  writer.putDouble(part.position);
  writer.putDouble(part.start);
  writer.putDouble(part.length);
  writer.putByte(part.track);
  writer.putByte(0);
  writer.putByte(1);  // active
  writer.putDouble(part.speed);
  writer.putByte(static_cast<int>(part.calls.size()));
  for (const ScriptCall& call : part.calls) {
    if (call.parameters.size() > maxParameters)
      fatalError("project: part %s: %s has %zu parameters, at most %zu fit", part.name.c_str(),
                 call.function.c_str(), call.parameters.size(), maxParameters);
    writer.putString(call.scene);
    writer.putString(call.function);
    writer.putByte(static_cast<int>(call.parameters.size()));
    for (const ScriptParameter& parameter : call.parameters) writeParameter(writer, call, parameter);
  }
}

}  // namespace

Bytes writeProject(Script script) {
  if (script.parts.size() > maxParts)
    fatalError("project: %zu parts, at most %zu fit", script.parts.size(), maxParts);
  std::stable_sort(script.parts.begin(), script.parts.end(),
                   [](const ScriptPart& p, const ScriptPart& q) { return p.position < q.position; });
  Writer writer;
  writer.putString("0.17");
  writer.putString("vex");
  writer.putDouble(script.startTime);
  writer.putString("");
  writer.putDouble(0);
  writer.putDouble(script.totalTime);
  writer.putDouble(1);
  writer.putString(script.sound);
  writer.putInt(script.ticks.size());
  for (const double tick : script.ticks) writer.putDouble(tick);
  writer.putInt(script.parts.size());
  for (const ScriptPart& part : script.parts) writePart(writer, part);
  return writer.bytes;
}

}  // namespace vex
