#include "timeline/project_file.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/files.h"
#include "base/little_endian.h"
#include "base/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_rules.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

// Where the reader is, for messages.
struct Place {
  const char* file;
  const Part* part = nullptr;
  const FunctionCall* call = nullptr;
  const Parameter* parameter = nullptr;
};

[[noreturn]] void refuse(const Place& place, const char* field, const char* complaint) {
  if (place.parameter) {
    fatalError("project %s: part %s: %s of %s.%s %s", place.file, place.part->name, field, place.call->name,
               place.parameter->name, complaint);
  }
  if (place.call) {
    fatalError("project %s: part %s: %s of %s %s", place.file, place.part->name, field, place.call->name,
               complaint);
  }
  if (place.part) {
    fatalError("project %s: part %s: %s %s", place.file, place.part->name, field, complaint);
  }
  fatalError("project %s: %s %s", place.file, field, complaint);
}

// Of the show's own times, without which it would never end.
void requireFinite(const Place& place, const char* field, float value) {
  if (const auto fault = findNumberFault(value)) refuse(place, field, fault->c_str());
}

ProjectLine readText(const Place& place, const char* field, int file) {
  const ProjectLine line = readString(file);
  if (line.length >= projectLineSize - 1) refuse(place, field, "is longer than 126 characters");
  return line;
}

float readFloat(int file) {
  return static_cast<float>(readDouble(file));
}

template <std::size_t size>
void copyText(char (&target)[size], const ProjectLine& line) {
  static_assert(size <= projectLineSize);
  std::memcpy(target, line.text, std::min(size - 1, line.length) + 1);
  target[size - 1] = '\0';
}

Parameter* readParameter(Place place, int file) {
  auto* parameter = new Parameter;
  place.parameter = parameter;
  logPrintf("      parameter\n");
  copyText(parameter->name, readText(place, "name", file));
  logPrintf("        name %s\n", parameter->name);
  parameter->type = static_cast<std::int8_t>(readByte(file));
  logPrintf("        type %d\n", parameter->type);
  if (parameter->type < PARAM_CONST || parameter->type > PARAM_STRING) {
    fatalError("unknown parameter type at %s.%s", place.call->name, parameter->name);
  }
  parameter->constant = readFloat(file);
  logPrintf("        const %f\n", parameter->constant);
  parameter->sinPeriod = readFloat(file);
  logPrintf("        sin period %f\n", parameter->sinPeriod);
  parameter->sinAmplitude = readFloat(file);
  logPrintf("        sin amplitude %f\n", parameter->sinAmplitude);
  parameter->sinOffset = readFloat(file);
  logPrintf("        sin offset %f\n", parameter->sinOffset);
  parameter->sinPhase = readFloat(file);
  logPrintf("        sin phase %f\n", parameter->sinPhase);
  parameter->dotCount = readByte(file);
  logPrintf("        %d dots\n", parameter->dotCount);
  const auto dots = static_cast<std::size_t>(parameter->dotCount);
  parameter->dotX = std::make_unique<float[]>(dots);
  parameter->dotY = std::make_unique<float[]>(dots);
  for (std::size_t i = 0; i < dots; ++i) {
    parameter->dotX[i] = readFloat(file);
    parameter->dotY[i] = readFloat(file);
    logPrintf("          %f %f\n", parameter->dotX[i], parameter->dotY[i]);
  }
  parameter->min = readFloat(file);
  logPrintf("        min %f\n", parameter->min);
  parameter->max = readFloat(file);
  logPrintf("        max %f\n", parameter->max);
  const ProjectLine string = readText(place, "string", file);
  if (string.length >= projectStringSize) refuse(place, "string", "is longer than 31 characters");
  copyText(parameter->string, string);
  logPrintf("        string %s\n", parameter->string);
  if (lacksValue(*parameter)) refuse(place, "curve", "has no dots");
  return parameter;
}

FunctionCall* readCall(Place place, const PartDispatcher& dispatcher) {
  const int file = dispatcher.projectFile;
  auto* call = new FunctionCall;
  call->part = place.part;
  const ProjectLine scene = readText(place, "scene name", file);
  if (dispatcher.names == ProjectNames::resolved) call->scene = dispatcher.findScene(scene.text);
  copyText(call->name, readText(place, "function name", file));
  place.call = call;
  if (call->scene) call->function = dispatcher.getFunctionByName(call->scene, call->name);
  const int count = readByte(file);
  if (count > maxArguments) {
    char complaint[64];
    std::snprintf(complaint, sizeof complaint, "is %d, at most %d are possible", count, maxArguments);
    refuse(place, "parameter count", complaint);
  }
  call->parameters.allocate(count);
  for (int i = 0; i < count; ++i) call->parameters[i] = readParameter(place, file);
  return call;
}

void readPart(Part& part, Place place, const PartDispatcher& dispatcher) {
  const int file = dispatcher.projectFile;
  place.part = &part;
  copyText(part.name, readText(place, "name", file));
  logPrintf("    name %s\n", part.name);
  readInt(file);
  part.pos = readFloat(file);
  logPrintf("    pos %f\n", part.pos);
  part.start = readFloat(file);
  logPrintf("    start %f\n", part.start);
  part.length = readFloat(file);
  logPrintf("    length %f\n", part.length);
  part.track = static_cast<std::int8_t>(readByte(file));
  logPrintf("    track %d\n", part.track);
  readBool(file);
  if (!readBool(file)) fatalError("inactive part found");
  part.speed = readFloat(file);
  logPrintf("    speed %f\n", part.speed);
  const int count = readByte(file);
  part.calls.allocate(count);
  for (int i = 0; i < count; ++i) part.calls[i] = readCall(place, dispatcher);
}

void checkActiveParts(const OwnedArray<Part>& parts, const char* fileName) {
  std::vector<ActiveSpan> spans;
  for (const Part* part : parts) spans.push_back({part->pos, part->end()});
  const auto crowded = findCrowdedPart(spans);
  if (!crowded) return;
  const Part& part = *parts[static_cast<int>(*crowded)];
  fatalError("project %s: part %s is active with %d others at %f, at most %d parts are possible", fileName,
             part.name, maxActiveParts, static_cast<double>(part.pos), maxActiveParts);
}

}  // namespace

double readDouble(int file) {
  unsigned char bytes[8];
  const auto read = static_cast<int>(fileRead(bytes, sizeof bytes, 1, file));
  if (read != 1) fatalError("double != 8 bytes (%d read)\n", read);
  return std::bit_cast<double>(littleEndian(bytes));
}

int readInt(int file) {
  unsigned char bytes[4];
  const auto read = static_cast<int>(fileRead(bytes, sizeof bytes, 1, file));
  if (read != 1) fatalError("int != 4 bytes (%d read)\n", read);
  return static_cast<std::int32_t>(littleEndian(bytes));
}

int readByte(int file) {
  unsigned char byte;
  const auto read = static_cast<int>(fileRead(&byte, 1, 1, file));
  if (read != 1) fatalError("byte != 1 byte (%d read)\n", read);
  return byte;
}

bool readBool(int file) {
  const int byte = readByte(file);
  if (byte > 1) fatalError("unknown boolean values\n");
  return byte == 1;
}

ProjectLine readString(int file) {
  ProjectLine line;
  line.length = 0;
  while (line.length < projectLineSize - 1) {
    char character;
    const auto read = static_cast<int>(fileRead(&character, 1, 1, file));
    if (read != 1) fatalError("char != 1 byte (%d read)\n", read);
    if (character == '\n') break;
    if (character != '\r') line.text[line.length++] = character;
  }
  line.text[line.length] = '\0';
  return line;
}

void PartDispatcher::loadProject(const char* fileName) {
  loadingProgress("Loading project");
  projectFile = fileOpen(fileName, "rb");
  if (projectFile < 0) refuseUnreadable(fileName);
  if (projectFile < 0) fatalError("Project file %s not found!", fileName);
  readProject(fileName);
}

void PartDispatcher::readProject(const char* fileName) {
  const ProjectLine version = readString(projectFile);
  if (std::string_view(version.text, version.length) != projectVersion) {
    fatalError("Wrong file version. Must be %s\n", projectVersion.data());
  }
  logPrintf("start reading %s\n", fileName);
  const Place place{.file = fileName};

  logPrintf("executable file name %s\n", readText(place, "executable file name", projectFile).text);
  const double start = readDouble(projectFile);
  logPrintf("start time %f\n", start);
  startTime = static_cast<float>(start);
  requireFinite(place, "start time", startTime);
  clockSetStartTime(startTime);
  logPrintf("functions file name %s\n", readText(place, "functions file name", projectFile).text);
  logPrintf("left time %f\n", readDouble(projectFile));
  const double total = readDouble(projectFile);
  logPrintf("total time %f\n", total);
  totalTime = static_cast<float>(total);
  requireFinite(place, "total time", totalTime);
  logPrintf("zoom factor %f\n", readDouble(projectFile));
  const ProjectLine music = readText(place, "sound file name", projectFile);
  musicName[0] = '\0';
  if (std::strlen(music.text) >= 2) {
    copyText(musicName, music);
    logPrintf("sound file name %s\n", musicName);
    if (openMusic) openMusic(musicName);
  } else {
    logPrintf("no sound file defined\n");
  }
  logPrintf("ignored fields successfully read\n");

  // Ticks are not kept, so a count that lies only meets the end of the file.
  const int tickCount = readInt(projectFile);
  logPrintf("reading %d ticks\n", tickCount);
  if (tickCount < 0) fatalError("project %s: tick count %d is below 0", fileName, tickCount);
  for (int i = 0; i < tickCount; ++i) logPrintf("   %f\n", readDouble(projectFile));
  logPrintf("ticks successfully read\n");

  const int partCount = readInt(projectFile);
  if (partCount >= maxParts) {
    fatalError("pCount exceeds maximum of %d in PartDispatcher!", maxParts);
  }
  if (partCount < 0) fatalError("project %s: part count %d is below 0", fileName, partCount);
  parts.allocate(partCount);
  logPrintf("reading %d parts\n", partCount);
  for (int i = 0; i < partCount; ++i) {
    logPrintf("  Part %d\n  =======\n", i + 1);
    if (!parts) fatalError("parts==NULL in PartDispatcher. This can't be happening!");
    parts[i] = new Part;
    readPart(*parts[i], place, *this);
  }
  checkActiveParts(parts, fileName);
  fileClose(projectFile);
  projectFile = -1;
  logPrintf("project file successfully parsed\n");
}

}  // namespace vex
