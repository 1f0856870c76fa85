#include "timeline/part_dispatcher.h"

#include <cstring>
#include <utility>

#include "base/quit.h"
#include "base/report.h"

namespace vex {

Part::~Part() {
  logPrintf("  destroying part %s\n", name);
}

void Part::run(float t) {
  if (t < pos || end() <= t) return;
  for (FunctionCall* call : calls) call->invoke(start + (t - pos) * speed, (t - pos) / length);
}

PartDispatcher::PartDispatcher() : scenes(std::make_unique<Scene*[]>(maxScenes)) {}

PartDispatcher::~PartDispatcher() {
  logPrintf("destroying part dispatcher\n");
  for (int i = 0; i < sceneCount; ++i) scenes[i]->destroy(scenes[i]);
}

void PartDispatcher::addScene(Scene* scene) {
  if (!scenes) fatalError("scenes==NULL in PartDispatcher. This can't be happening!");
  if (sceneCount >= maxScenes) fatalError("sCount exceeds 40 in PartDispatcher!");
  scenes[sceneCount] = scene;
  for (int i = 0; i < sceneCount; ++i) {
    if (std::strcmp(scenes[i]->name, scene->name) == 0) fatalError("Duplicated scene name %s", scene->name);
  }
  ++sceneCount;
}

void PartDispatcher::replaceScene(int index, Scene* scene) {
  Scene* const before = std::exchange(scenes[index], scene);
  for (Part* part : parts) {
    for (FunctionCall* call : part->calls) {
      if (call->scene != before) continue;
      call->scene = scene;
      call->function = getFunctionByName(scene, call->name);
    }
  }
  before->destroy(before);
}

Scene* PartDispatcher::findScene(const char* name) const {
  Scene* found = nullptr;
  for (int i = 0; i < sceneCount; ++i) {
    if (std::strcmp(scenes[i]->name, name) == 0) found = scenes[i];
  }
  if (!found) fatalError("Scene %s not found", name);
  return found;
}

SceneFunction* PartDispatcher::getFunctionByName(const Scene* scene, const char* name) const {
  if (!scene) fatalError("getFunctionByName scene==NULL");
  SceneFunction* function = scene->findFunction(name);
  if (!function) fatalError("function %s not found", name);
  return function;
}

void PartDispatcher::startTimeline() {
  if (startTime >= totalTime) fatalError("Starting after end!");
  for (Part* part : parts) {
    if (part->end() <= startTime) part->run(part->pos + part->length / 2.0f);
  }
}

void PartDispatcher::runFrame(float t) {
  if (t >= totalTime) requestQuit(1);
  if (!parts) return;
  while (parts[cursor] && parts[cursor]->end() <= t) ++cursor;

  Part* active[maxActiveParts];
  int count = 0;
  for (int i = cursor; parts[i] && !(parts[i]->pos > t); ++i) {
    if (!(parts[i]->end() > t)) continue;
    if (count == maxActiveParts) fatalError("more than %d parts active at %f", maxActiveParts, t);
    active[count++] = parts[i];
  }

  // Neighbours of equal tracks never change places.
  for (int last = count - 1; last > 0; --last) {
    for (int i = 0; i < last; ++i) {
      if (active[i]->track > active[i + 1]->track) std::swap(active[i], active[i + 1]);
    }
  }
  for (int i = 0; i < count; ++i) active[i]->run(t);
}

}  // namespace vex
