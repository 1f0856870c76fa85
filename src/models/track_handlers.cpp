#include <algorithm>
#include <cmath>

#include "base/pi.h"
#include "models/model_handlers.h"
#include "models/model_load.h"

// Handlers of animations and their keys.

namespace vex {

namespace {

constexpr double fullTurn = 2 * piToTenDecimals;

// Step by step, as the nearest float is stored after each full turn.
float wrapAngle(float angle) {
  if (std::fabs(angle) > 100.0 * fullTurn) angle = static_cast<float>(std::fmod(angle, fullTurn));
  while (angle > piToTenDecimals) angle = static_cast<float>(angle - fullTurn);
  while (angle < -piToTenDecimals) angle = static_cast<float>(angle + fullTurn);
  return angle;
}

void addTrack(ModelLoad& load, const Animation& track) {
  const bool moves = track.type == TrackType::position;
  const bool turns = track.type == TrackType::rotation;
  Light* light = currentLight(load);
  Viewer* viewer = currentViewer(load);
  switch (load.context) {
    case ModelContext::light:
      if (light && (moves || turns)) light->addAnimation(track);
      break;
    case ModelContext::lightTarget:
      if (light && moves) light->setTarget(track);
      break;
    case ModelContext::mesh:
      if (Mesh* mesh = currentMesh(load)) mesh->addAnimation(track);
      break;
    case ModelContext::camera:
      if (viewer && moves) viewer->addAnimation(track);
      break;
    case ModelContext::cameraTarget:
      if (viewer && moves) viewer->addTargetAnimation(track);
      break;
    case ModelContext::sceneHeader:
    case ModelContext::materialList:
    case ModelContext::none:
      break;
  }
}

enum class Smooth { off, on };

void readKeys(ModelLoad& load, Command code, TrackType type, Smooth smooth,
              [[maybe_unused]] const char* name) {
  trace(load, "%s\n", name);
  beginKeys(load, code);
  Animation& track = load.scratchTrack;
  track.smooth = smooth == Smooth::on;
  track.type = type;
  if (traceModels) trace(load, "%d keys found\n", countBlockEntries(load));
  if (filling(load)) track.allocKeys(countBlockEntries(load));
  processBlock(load);
  endKeys(load);
  track.frameLength = static_cast<float>(load.maxFrame);
  track.duration = static_cast<float>(load.maxFrame) / static_cast<float>(load.framesPerSecond);
  if (filling(load)) addTrack(load, track);
  trace(load, "%s end\n", name);
}

void storeKey(ModelLoad& load, int frame, const Vector& value, float angle) {
  load.maxFrame = std::max(load.maxFrame, frame);
  if (filling(load)) load.scratchTrack.insertKey(static_cast<float>(frame), value, angle);
}

}  // namespace

void handleTmAnimation(ModelLoad& load) {
  trace(load, "animation\n");
  writeLine(load, Command::tmAnimation);
  load.inAnimation = true;
  load.maxFrame = 0;
  processBlock(load);
  load.inAnimation = false;
  trace(load, "animation end\n");
}

void handleControlRotTcb(ModelLoad& load) {
  readKeys(load, Command::controlRotTcb, TrackType::rotation, Smooth::off, "rotation bezier");
}

void handleControlRotTrack(ModelLoad& load) {
  readKeys(load, Command::controlRotTrack, TrackType::rotation, Smooth::off, "rotation linear");
}

void handleControlPosBezier(ModelLoad& load) {
  readKeys(load, Command::controlPosBezier, TrackType::position, Smooth::on, "position bezier");
}

void handleControlPosTrack(ModelLoad& load) {
  readKeys(load, Command::controlPosTrack, TrackType::position, Smooth::off, "position linear");
}

void handleControlScaleBezier(ModelLoad& load) {
  readKeys(load, Command::controlScaleBezier, TrackType::scale, Smooth::on, "scale bezier");
}

void handleControlScaleTrack(ModelLoad& load) {
  readKeys(load, Command::controlScaleTrack, TrackType::scale, Smooth::on, "scale linear");
}

void handleRotationKey(ModelLoad& load) {
  if (readingText(load)) scanIndexed(load, 4);
  const float(&v)[4] = load.reader.current.vector;
  const int tick = load.reader.current.integer;
  const Vector axis = scannedPoint(load, v);
  const float angle = readingText(load) ? wrapAngle(v[3]) : v[3];
  const int frame = tick / load.ticksPerFrame;
  trace(load, "key frame %d axis %.2f %.2f %.2f angle %.2f\n", frame, axis.x, axis.y, axis.z,
        angle * 180.0 / piToTenDecimals);
  writeLine(load, Command::controlRotSample, tick, axis.x, axis.y, axis.z, angle);
  storeKey(load, frame, axis, angle);
}

void handlePositionKey(ModelLoad& load) {
  if (readingText(load)) scanIndexed(load, 3);
  const float(&v)[4] = load.reader.current.vector;
  const int tick = load.reader.current.integer;
  const Vector position = scannedPoint(load, v);
  const int frame = tick / load.ticksPerFrame;
  trace(load, "key frame %d pos %.2f %.2f %.2f\n", frame, position.x, position.y, position.z);
  writeLine(load, Command::controlPosSample, tick, position.x, position.y, position.z);
  storeKey(load, frame, position, 0.0f);
}

void handleScaleKey(ModelLoad& load) {
  if (readingText(load)) scanIndexed(load, 3);
  const float(&v)[4] = load.reader.current.vector;
  const int tick = load.reader.current.integer;
  const Vector factors = scannedFactors(load, v);
  const int frame = tick / load.ticksPerFrame;
  trace(load, "key frame %d scale %.2f %.2f %.2f\n", frame, factors.x, factors.y, factors.z);
  writeLine(load, Command::controlScaleSample, tick, factors.x, factors.y, factors.z);
  storeKey(load, frame, factors, 0.0f);
}

void handleTimeValue(ModelLoad&) {}

}  // namespace vex
