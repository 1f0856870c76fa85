#include "timeline/project_record.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/report.h"
#include "platform/little_endian.h"
#include "timeline/part_dispatcher.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

// Reads field after field; each goes to the log and, where somebody waits for it, to the listener before the
// next is read.
struct Decoder {
  ProjectSource& source;
  const char* file;
  ProjectListener& listener;
  std::string place;       // what refused fields belong to: "part intro: "
  std::string owner;       // and the call or parameter: " of animate.red"
  std::size_t offset = 0;  // bytes read

  static const char* nameIn(const char* label) { return label + std::strspn(label, " "); }

  std::string describe(const char* field, const std::string& complaint) const {
    return formatted("project %s: %s%s%s %s", file, place.c_str(), field, owner.c_str(), complaint.c_str());
  }
  [[noreturn]] void refuse(const char* field, const std::string& complaint) {
    listener.refuse(describe(field, complaint));
    std::abort();
  }
  // What is wrong with the field follows the text.
  [[noreturn]] void fail(const std::string& text, const char* field, const std::string& complaint) {
    listener.refuse(text + (text.ends_with('\n') ? "(" : " (") + describe(field, complaint) + ")");
    std::abort();
  }

  template <std::size_t size>
  std::uint64_t bits(const char* complaint, const char* field) {
    std::uint8_t bytes[size];
    if (!source.read(bytes)) fail(complaint, field, "lacks its end behind byte " + std::to_string(offset));
    offset += size;
    return littleEndian(bytes);
  }
  double real(const char* field) {
    return std::bit_cast<double>(bits<8>("double != 8 bytes (0 read)\n", field));
  }
  std::int32_t integer(const char* field) {
    return static_cast<std::int32_t>(bits<4>("int != 4 bytes (0 read)\n", field));
  }
  int byte(const char* field) { return static_cast<int>(bits<1>("byte != 1 byte (0 read)\n", field)); }
  bool flag(const char* field) {
    const int value = byte(field);
    if (value > 1) fail("unknown boolean values\n", field, "is " + std::to_string(value));
    return value == 1;
  }

  // Ends behind the 127th character that counts.
  std::string line(const char* field) {
    std::string text;
    for (std::size_t counted = 0; counted <= maxProjectName;) {
      const char character = static_cast<char>(bits<1>("char != 1 byte (0 read)\n", field));
      if (character == '\n') break;
      if (character != '\r') ++counted;
      if (character != '\r' || source.keepsCarriageReturns) text += character;
    }
    return text;
  }

  std::string text(const char* field) {
    std::string text = line(field);
    const auto returns = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
    if (text.size() - returns > maxProjectName) refuse(field, "is longer than 126 characters");
    return text;
  }
  // Also to the log, behind the label, which is the field's name but for its indentation.
  std::string loggedText(const char* label) {
    std::string read = text(nameIn(label));
    logPrintf("%s %s\n", label, playedText(read).c_str());
    return read;
  }
  double loggedReal(const char* label) {
    const double value = real(nameIn(label));
    logPrintf("%s %f\n", label, value);
    return value;
  }
  // The player holds a float.
  double loggedFloat(const char* label) {
    const double value = real(nameIn(label));
    logPrintf("%s %f\n", label, static_cast<double>(static_cast<float>(value)));
    return value;
  }
};

ProjectParameter decodeParameter(Decoder& in, const std::string& function) {
  ProjectParameter parameter;
  logPrintf("      parameter\n");
  in.owner = " of " + function + ".";
  parameter.name = in.loggedText("        name");
  const std::string name = playedText(parameter.name);
  in.owner += name;
  parameter.type = static_cast<std::int8_t>(in.byte("type"));
  logPrintf("        type %d\n", parameter.type);
  if (parameter.type < PARAM_CONST || parameter.type > PARAM_STRING) {
    in.fail(formatted("unknown parameter type at %s.%s", function.c_str(), name.c_str()), "type",
            "is " + std::to_string(parameter.type));
  }
  parameter.constant = in.loggedFloat("        const");
  parameter.sinPeriod = in.loggedFloat("        sin period");
  parameter.sinAmplitude = in.loggedFloat("        sin amplitude");
  parameter.sinOffset = in.loggedFloat("        sin offset");
  parameter.sinPhase = in.loggedFloat("        sin phase");
  parameter.dots.resize(static_cast<std::size_t>(in.byte("dot count")));
  logPrintf("        %zu dots\n", parameter.dots.size());
  for (ProjectDot& dot : parameter.dots) {
    dot.x = in.real("dot");
    dot.y = in.real("dot");
    logPrintf("          %f %f\n", static_cast<double>(static_cast<float>(dot.x)),
              static_cast<double>(static_cast<float>(dot.y)));
  }
  parameter.min = in.loggedFloat("        min");
  parameter.max = in.loggedFloat("        max");
  parameter.string = in.text("string");
  if (withoutCarriageReturns(parameter.string).size() > maxProjectString) {
    in.refuse("string", "is longer than 31 characters");
  }
  logPrintf("        string %s\n", playedText(parameter.string).c_str());
  return parameter;
}

ProjectCall decodeCall(Decoder& in) {
  ProjectCall call;
  in.owner.clear();
  call.scene = in.text("scene name");
  in.listener.scene(playedText(call.scene));
  call.function = in.text("function name");
  const std::string function = playedText(call.function);
  in.listener.function(function);
  const int count = in.byte("parameter count");
  if (count > maxArguments) {
    in.owner = " of " + function;
    in.refuse("parameter count",
              "is " + std::to_string(count) + ", at most " + std::to_string(maxArguments) + " are possible");
  }
  in.listener.parameters(count);
  for (int i = 0; i < count; ++i) {
    call.parameters.push_back(decodeParameter(in, function));
    in.listener.parameter(call.parameters.back());
  }
  return call;
}

ProjectPart decodePart(Decoder& in) {
  ProjectPart part;
  in.owner.clear();
  in.place = "part : ";
  part.name = in.loggedText("    name");
  in.place = "part " + playedText(part.name) + ": ";
  part.editorNumber = in.integer("number of the editing tool");
  part.pos = in.loggedFloat("    pos");
  part.start = in.loggedFloat("    start");
  part.length = in.loggedFloat("    length");
  part.track = static_cast<std::int8_t>(in.byte("track"));
  logPrintf("    track %d\n", part.track);
  part.editorFlag = in.flag("flag of the editing tool");
  if (!in.flag("active")) in.fail("inactive part found", "active", "is 0");
  part.speed = in.loggedFloat("    speed");
  const int count = in.byte("call count");
  in.listener.calls(part, count);
  for (int i = 0; i < count; ++i) part.calls.push_back(decodeCall(in));
  return part;
}

ProjectHead decodeHead(Decoder& in) {
  ProjectHead head;
  head.version = in.line("version");
  if (withoutCarriageReturns(head.version) != projectVersion) {
    in.fail(formatted("Wrong file version. Must be %s\n", projectVersion.data()), "version",
            "is " + playedText(head.version));
  }
  logPrintf("start reading %s\n", in.file);
  head.executable = in.loggedText("executable file name");
  head.startTime = in.loggedReal("start time");
  in.listener.startTime(static_cast<float>(head.startTime));
  head.functionsFile = in.loggedText("functions file name");
  head.leftTime = in.loggedReal("left time");
  head.totalTime = in.loggedReal("total time");
  in.listener.totalTime(static_cast<float>(head.totalTime));
  head.zoom = in.loggedReal("zoom factor");
  head.music = in.text("sound file name");
  if (const std::string music = playedText(head.music); music.size() >= 2) {
    logPrintf("sound file name %s\n", music.c_str());
    in.listener.music(music);
  } else {
    logPrintf("no sound file defined\n");
  }
  logPrintf("ignored fields successfully read\n");
  const int tickCount = in.integer("tick count");
  logPrintf("reading %d ticks\n", tickCount);
  if (tickCount < 0) in.refuse("tick count", formatted("%d is below 0", tickCount));
  // Grows with what is there, so that a count that lies only meets the end of the file.
  for (int i = 0; i < tickCount; ++i) {
    head.ticks.push_back(in.real("tick"));
    logPrintf("   %f\n", head.ticks.back());
  }
  logPrintf("ticks successfully read\n");
  return head;
}

struct DecodingFailure {
  std::string text;
};

// Keeps the record; the first refusal ends the reading.
struct Collector final : ProjectListener {
  Project project;

  void refuse(const std::string& text) override { throw DecodingFailure{text}; }
  void take(ProjectHead head) override { static_cast<ProjectHead&>(project) = std::move(head); }
  void take(ProjectPart part) override { project.parts.push_back(std::move(part)); }
};

struct Encoder {
  std::string out;

  void bits(std::uint64_t value, std::size_t size) {
    char bytes[8];
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(value >> (8 * i));
    out.append(bytes, size);
  }
  void real(double value) { bits(std::bit_cast<std::uint64_t>(value), 8); }
  void integer(std::int32_t value) { bits(static_cast<std::uint32_t>(value), 4); }
  void byte(int value) { out += static_cast<char>(value); }
  void count(std::size_t value) { byte(static_cast<int>(value)); }
  void line(const std::string& text) { (out += text) += '\n'; }
};

void encodeParameter(Encoder& out, const ProjectParameter& parameter) {
  out.line(parameter.name);
  out.byte(parameter.type);
  out.real(parameter.constant);
  out.real(parameter.sinPeriod);
  out.real(parameter.sinAmplitude);
  out.real(parameter.sinOffset);
  out.real(parameter.sinPhase);
  out.count(parameter.dots.size());
  for (const ProjectDot& dot : parameter.dots) {
    out.real(dot.x);
    out.real(dot.y);
  }
  out.real(parameter.min);
  out.real(parameter.max);
  out.line(parameter.string);
}

void encodePart(Encoder& out, const ProjectPart& part) {
  out.line(part.name);
  out.integer(part.editorNumber);
  out.real(part.pos);
  out.real(part.start);
  out.real(part.length);
  out.byte(part.track);
  out.byte(part.editorFlag);
  out.byte(1);  // active
  out.real(part.speed);
  out.count(part.calls.size());
  for (const ProjectCall& call : part.calls) {
    out.line(call.scene);
    out.line(call.function);
    out.count(call.parameters.size());
    for (const ProjectParameter& parameter : call.parameters) encodeParameter(out, parameter);
  }
}

}  // namespace

std::string withoutCarriageReturns(std::string_view text) {
  std::string seen(text);
  std::erase(seen, '\r');
  return seen;
}

std::string playedText(std::string_view text) {
  return withoutCarriageReturns(text.substr(0, text.find('\0')));
}

void fillPlayed(Parameter& played, const ProjectParameter& parameter) {
  const auto copy = [](auto& target, const std::string& text) {
    const std::string seen = playedText(text);
    seen.copy(target, sizeof target - 1);
  };
  copy(played.name, parameter.name);
  copy(played.string, parameter.string);
  played.type = parameter.type;
  played.min = static_cast<float>(parameter.min);
  played.max = static_cast<float>(parameter.max);
  played.sinPeriod = static_cast<float>(parameter.sinPeriod);
  played.sinAmplitude = static_cast<float>(parameter.sinAmplitude);
  played.sinOffset = static_cast<float>(parameter.sinOffset);
  played.sinPhase = static_cast<float>(parameter.sinPhase);
  played.constant = static_cast<float>(parameter.constant);
  played.dotCount = static_cast<int>(parameter.dots.size());
  if (played.dotCount == 0) return;
  played.dotX = std::make_unique<float[]>(parameter.dots.size());
  played.dotY = std::make_unique<float[]>(parameter.dots.size());
  for (std::size_t i = 0; i < parameter.dots.size(); ++i) {
    played.dotX[i] = static_cast<float>(parameter.dots[i].x);
    played.dotY[i] = static_cast<float>(parameter.dots[i].y);
  }
}

bool MemorySource::read(std::span<std::uint8_t> target) {
  if (rest.size() < target.size()) return false;
  std::copy_n(rest.begin(), target.size(), target.begin());
  rest.remove_prefix(target.size());
  return true;
}

void decodeProject(ProjectSource& source, const char* name, ProjectListener& listener) {
  Decoder in{.source = source, .file = name, .listener = listener, .place = "", .owner = ""};
  listener.take(decodeHead(in));
  const int partCount = in.integer("part count");
  if (partCount >= maxParts) {
    in.fail(formatted("pCount exceeds maximum of %d in PartDispatcher!", maxParts), "part count",
            "is " + std::to_string(partCount));
  }
  if (partCount < 0) in.refuse("part count", formatted("%d is below 0", partCount));
  listener.parts(partCount);
  logPrintf("reading %d parts\n", partCount);
  for (int i = 0; i < partCount; ++i) {
    logPrintf("  Part %d\n  =======\n", i + 1);
    listener.beginPart();
    listener.take(decodePart(in));
  }
}

DecodedProject decodeProject(std::string_view bytes, const char* name) {
  MemorySource source(bytes);
  Collector collector;
  try {
    decodeProject(source, name, collector);
  } catch (const DecodingFailure& failure) {
    return {{}, failure.text};
  }
  collector.project.trailing = source.rest;
  return {std::move(collector.project), ""};
}

std::string encodeProject(const Project& project) {
  Encoder out;
  out.line(project.version);
  out.line(project.executable);
  out.real(project.startTime);
  out.line(project.functionsFile);
  out.real(project.leftTime);
  out.real(project.totalTime);
  out.real(project.zoom);
  out.line(project.music);
  out.integer(static_cast<std::int32_t>(project.ticks.size()));
  for (const double tick : project.ticks) out.real(tick);
  out.integer(static_cast<std::int32_t>(project.parts.size()));
  for (const ProjectPart& part : project.parts) encodePart(out, part);
  out.out += project.trailing;
  return std::move(out.out);
}

}  // namespace vex
