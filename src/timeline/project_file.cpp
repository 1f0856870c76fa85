#include <cstdio>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/fatal_place.h"
#include "base/files.h"
#include "base/report.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "timeline/project_rules.h"

// The project file as the player takes it: field by field, with the names resolved.

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
  std::snprintf(target, size, "%s", text.c_str());
}

class Loader final : public ProjectListener {
 public:
  Loader(PartDispatcher& target, const char* name) : dispatcher(target), fileName(name) {}

  void refuse(const std::string& text) override { fatalError("%s", text.c_str()); }

  void startTime(float time) override {
    dispatcher.startTime = time;
    requireFinite("start time", time);
    clockSetStartTime(time);
  }
  void totalTime(float time) override {
    dispatcher.totalTime = time;
    requireFinite("total time", time);
  }
  void music(const std::string& name) override {
    copyText(dispatcher.musicName, name);
    if (dispatcher.openMusic) dispatcher.openMusic(dispatcher.musicName);
  }
  void parts(int count) override { dispatcher.parts.allocate(count); }

  void beginPart() override {
    if (!dispatcher.parts) fatalError("parts==NULL in PartDispatcher. This can't be happening!");
    part = new Part;
    dispatcher.parts[partsBegun++] = part;
    callsBegun = 0;
  }
  void calls(const ProjectPart& record, int count) override {
    copyText(part->name, playedText(record.name));
    part->pos = static_cast<float>(record.pos);
    part->start = static_cast<float>(record.start);
    part->length = static_cast<float>(record.length);
    part->track = record.track;
    part->speed = static_cast<float>(record.speed);
    part->calls.allocate(count);
  }

  void scene(const std::string& name) override {
    call = new FunctionCall;
    part->calls[callsBegun++] = call;
    call->part = part;
    parametersTaken = 0;
    const FatalPlace place([this] { return "project " + fileName + ": part " + part->name; });
    if (dispatcher.names == ProjectNames::resolved) call->scene = dispatcher.findScene(name.c_str());
  }
  void function(const std::string& name) override {
    copyText(call->name, name);
    const FatalPlace place(
        [this] { return "project " + fileName + ": part " + part->name + ": " + call->scene->name; });
    if (call->scene) call->function = dispatcher.getFunctionByName(call->scene, call->name);
  }
  void parameters(int count) override { call->parameters.allocate(count); }

  void parameter(const ProjectParameter& record) override {
    auto* parameter = new Parameter;
    call->parameters[parametersTaken++] = parameter;
    fillPlayed(*parameter, record);
    if (lacksValue(*parameter)) {
      fatalError("project %s: part %s: curve of %s.%s has no dots", fileName.c_str(), part->name, call->name,
                 parameter->name);
    }
  }

 private:
  // Of the show's own times, without which it would never end.
  void requireFinite(const char* field, float value) {
    if (const auto fault = findNumberFault(value))
      fatalError("project %s: %s %s", fileName.c_str(), field, fault->c_str());
  }

  PartDispatcher& dispatcher;
  const std::string fileName;
  Part* part = nullptr;          // that is being read
  FunctionCall* call = nullptr;  // likewise
  int partsBegun = 0, callsBegun = 0, parametersTaken = 0;
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
  const OpenFile file(fileOpenNeeded(fileName, formatted("Project file %s not found!", fileName)));
  FileSource source(file);
  readProject(source, fileName);
  logPrintf("project file successfully parsed\n");
}

void PartDispatcher::readProject(ProjectSource& source, const char* fileName) {
  musicName[0] = '\0';
  Loader loader(*this, fileName);
  decodeProject(source, fileName, loader);
  checkActiveParts(parts, fileName);
}

void PartDispatcher::replaceProject(ProjectSource& source, const char* fileName) {
  PartDispatcher next;
  struct LentScenes {
    PartDispatcher &from, &to;
    LentScenes(PartDispatcher& owner, PartDispatcher& reader) : from(owner), to(reader) {
      std::swap(from.scenes, to.scenes);
      to.sceneCount = from.sceneCount;
    }
    ~LentScenes() {
      std::swap(from.scenes, to.scenes);
      to.sceneCount = 0;
    }
  };
  {
    const LentScenes lent(*this, next);
    next.readProject(source, fileName);
  }
  parts = std::move(next.parts);
  totalTime = next.totalTime;
  startTime = next.startTime;
  copyText(musicName, next.musicName);
}

}  // namespace vex
