#include <cstdio>
#include <cstring>
#include <vector>

#include "base/clock.h"
#include "base/files.h"
#include "base/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "timeline/project_rules.h"

// The project file as the player takes it: its records piece by piece, with their names resolved.

namespace vex {

namespace {

// An open file. The player has no use for carriage returns.
struct FileSource final : ProjectSource {
  int handle;

  explicit FileSource(int file) : ProjectSource(false), handle(file) {}
  bool read(std::span<std::uint8_t> target) override {
    return fileRead(target.data(), target.size(), 1, handle) == 1;
  }
};

template <std::size_t size>
void copyText(char (&target)[size], const std::string& text) {
  std::snprintf(target, size, "%s", text.c_str());  // seen up to its first zero byte
}

// Of the show's own times, without which it would never end.
void requireFinite(const char* file, const char* field, float value) {
  if (const auto fault = findNumberFault(value)) fatalError("project %s: %s %s", file, field, fault->c_str());
}

void logParameter(const Parameter& parameter) {
  logPrintf("      parameter\n");
  logPrintf("        name %s\n", parameter.name);
  logPrintf("        type %d\n", parameter.type);
  logPrintf("        const %f\n", parameter.constant);
  logPrintf("        sin period %f\n", parameter.sinPeriod);
  logPrintf("        sin amplitude %f\n", parameter.sinAmplitude);
  logPrintf("        sin offset %f\n", parameter.sinOffset);
  logPrintf("        sin phase %f\n", parameter.sinPhase);
  logPrintf("        %d dots\n", parameter.dotCount);
  for (int i = 0; i < parameter.dotCount; ++i) {
    logPrintf("          %f %f\n", parameter.dotX[static_cast<std::size_t>(i)],
              parameter.dotY[static_cast<std::size_t>(i)]);
  }
  logPrintf("        min %f\n", parameter.min);
  logPrintf("        max %f\n", parameter.max);
  logPrintf("        string %s\n", parameter.string);
}

void logPart(const Part& part) {
  logPrintf("    name %s\n", part.name);
  logPrintf("    pos %f\n", part.pos);
  logPrintf("    start %f\n", part.start);
  logPrintf("    length %f\n", part.length);
  logPrintf("    track %d\n", part.track);
  logPrintf("    speed %f\n", part.speed);
}

class Loader final : public ProjectListener {
 public:
  Loader(PartDispatcher& target, const char* name) : dispatcher(target), fileName(name) {}

  void take(ProjectHead head, int partCount) override {
    logPrintf("start reading %s\n", fileName);
    logPrintf("executable file name %s\n", head.executable.c_str());
    logPrintf("start time %f\n", head.startTime);
    dispatcher.startTime = static_cast<float>(head.startTime);
    requireFinite(fileName, "start time", dispatcher.startTime);
    clockSetStartTime(dispatcher.startTime);
    logPrintf("functions file name %s\n", head.functionsFile.c_str());
    logPrintf("left time %f\n", head.leftTime);
    logPrintf("total time %f\n", head.totalTime);
    dispatcher.totalTime = static_cast<float>(head.totalTime);
    requireFinite(fileName, "total time", dispatcher.totalTime);
    logPrintf("zoom factor %f\n", head.zoom);
    takeMusic(head.music);
    logPrintf("ignored fields successfully read\n");
    logPrintf("reading %zu ticks\n", head.ticks.size());
    for (const double tick : head.ticks) logPrintf("   %f\n", tick);
    logPrintf("ticks successfully read\n");
    dispatcher.parts.allocate(partCount);
    logPrintf("reading %d parts\n", partCount);
  }

  void take(ProjectPart record) override {
    if (!dispatcher.parts) fatalError("parts==NULL in PartDispatcher. This can't be happening!");
    auto* part = new Part;
    dispatcher.parts[partsTaken++] = part;
    copyText(part->name, record.name);
    part->pos = static_cast<float>(record.pos);
    part->start = static_cast<float>(record.start);
    part->length = static_cast<float>(record.length);
    part->track = record.track;
    part->speed = static_cast<float>(record.speed);
    logPrintf("  Part %d\n  =======\n", partsTaken);
    logPart(*part);
    part->calls.allocate(static_cast<int>(record.calls.size()));
    for (std::size_t i = 0; i < record.calls.size(); ++i)
      part->calls[static_cast<int>(i)] = takeCall(*part, record.calls[i]);
  }

 private:
  void takeMusic(const std::string& name) {
    copyText(dispatcher.musicName, playedText(name));
    if (std::strlen(dispatcher.musicName) < 2) {
      dispatcher.musicName[0] = '\0';
      logPrintf("no sound file defined\n");
      return;
    }
    logPrintf("sound file name %s\n", dispatcher.musicName);
    if (dispatcher.openMusic) dispatcher.openMusic(dispatcher.musicName);
  }

  FunctionCall* takeCall(const Part& part, const ProjectCall& record) {
    auto* call = new FunctionCall;
    call->part = &part;
    copyText(call->name, record.function);
    if (dispatcher.names == ProjectNames::resolved) {
      call->scene = dispatcher.findScene(record.scene.c_str());
      call->function = dispatcher.getFunctionByName(call->scene, call->name);
    }
    call->parameters.allocate(static_cast<int>(record.parameters.size()));
    for (std::size_t i = 0; i < record.parameters.size(); ++i) {
      auto* parameter = new Parameter;
      call->parameters[static_cast<int>(i)] = parameter;
      fillPlayed(*parameter, record.parameters[i]);
      logParameter(*parameter);
      if (lacksValue(*parameter)) {
        fatalError("project %s: part %s: curve of %s.%s has no dots", fileName, part.name, call->name,
                   parameter->name);
      }
    }
    return call;
  }

  PartDispatcher& dispatcher;
  const char* fileName;
  int partsTaken = 0;
};

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

void PartDispatcher::loadProject(const char* fileName) {
  loadingProgress("Loading project");
  const int file = fileOpen(fileName, "rb");
  if (file < 0) refuseUnreadable(fileName);
  if (file < 0) fatalError("Project file %s not found!", fileName);
  FileSource source(file);
  readProject(source, fileName);
  fileClose(file);
  logPrintf("project file successfully parsed\n");
}

void PartDispatcher::readProject(ProjectSource& source, const char* fileName) {
  Loader loader(*this, fileName);
  if (const std::string failure = decodeProject(source, fileName, loader); !failure.empty())
    fatalError("%s", failure.c_str());
  checkActiveParts(parts, fileName);
}

}  // namespace vex
