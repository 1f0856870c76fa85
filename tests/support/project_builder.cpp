#include "tests/support/project_builder.h"

#include <bit>
#include <cstdint>

#include "tests/support/pak_builder.h"

namespace vex {

namespace {

struct Writer {
  ProjectBytes out;

  void add(const std::string& bytes, char kind) {
    out.bytes += bytes;
    out.kinds.append(bytes.size(), kind);
  }
  void real(double value) { add(littleEndianBytes(std::bit_cast<std::uint64_t>(value), 8), 'd'); }
  void integer(int value) { add(littleEndianBytes(static_cast<std::uint32_t>(value), 4), 'i'); }
  void byte(int value) { add(std::string(1, static_cast<char>(value)), 'b'); }
  void line(const std::string& text) { add(text + '\n', 's'); }
};

void addParameter(Writer& out, const ParameterData& parameter) {
  out.line(parameter.name);
  out.byte(parameter.type);
  for (const double value : {parameter.constant, parameter.sinPeriod, parameter.sinAmplitude,
                             parameter.sinOffset, parameter.sinPhase}) {
    out.real(value);
  }
  out.byte(static_cast<int>(parameter.dots.size()));
  for (const auto& [x, y] : parameter.dots) {
    out.real(x);
    out.real(y);
  }
  out.real(parameter.min);
  out.real(parameter.max);
  out.line(parameter.string);
}

void addPart(Writer& out, const PartData& part) {
  out.line(part.name);
  out.integer(4711);
  out.real(part.pos);
  out.real(part.start);
  out.real(part.length);
  out.byte(part.track);
  out.byte(part.firstFlag);
  out.byte(part.active);
  out.real(part.speed);
  out.byte(static_cast<int>(part.calls.size()));
  for (const CallData& call : part.calls) {
    out.line(call.scene);
    out.line(call.function);
    out.byte(static_cast<int>(call.parameters.size()));
    for (const ParameterData& parameter : call.parameters) addParameter(out, parameter);
  }
}

}  // namespace

ProjectBytes buildProject(const ProjectData& project) {
  Writer out;
  out.line(project.version);
  out.line(project.executable);
  out.real(project.startTime);
  out.line(project.functionsFile);
  out.real(project.leftTime);
  out.real(project.totalTime);
  out.real(project.zoom);
  out.line(project.music);
  out.integer(project.tickCount == -1 ? static_cast<int>(project.ticks.size()) : project.tickCount);
  for (const double tick : project.ticks) out.real(tick);
  out.integer(project.partCount == -1 ? static_cast<int>(project.parts.size()) : project.partCount);
  for (const PartData& part : project.parts) addPart(out, part);
  return out.out;
}

}  // namespace vex
