#include <algorithm>
#include <cmath>

#include "base/pi.h"
#include "models/model_handlers.h"
#include "models/model_reader.h"
#include "models/model_state.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

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

void addTrack(const Animation& track) {
  const bool moves = track.type == TrackType::position;
  const bool turns = track.type == TrackType::rotation;
  Light* light = currentLight();
  Viewer* viewer = currentViewer();
  switch (modelState.context) {
    case ModelContext::light:
      if (light && (moves || turns)) light->addAnimation(track);
      break;
    case ModelContext::lightTarget:
      if (light && moves) light->setTarget(track);
      break;
    case ModelContext::mesh:
      if (Mesh* mesh = currentMesh()) mesh->addAnimation(track);
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

void readKeys(Command code, TrackType type, Smooth smooth, [[maybe_unused]] const char* name) {
  trace("%s\n", name);
  beginKeys(code);
  Animation& track = modelState.scratchTrack;
  track.smooth = smooth == Smooth::on;
  track.type = type;
  if (traceModels) trace("%d keys found\n", countBlockEntries());
  if (filling()) track.allocKeys(countBlockEntries());
  processBlock();
  endKeys();
  track.frameLength = static_cast<float>(modelState.maxFrame);
  track.duration = static_cast<float>(modelState.maxFrame) / static_cast<float>(modelState.framesPerSecond);
  if (filling()) addTrack(track);
  trace("%s end\n", name);
}

void storeKey(int frame, const Vector& value, float angle) {
  modelState.maxFrame = std::max(modelState.maxFrame, frame);
  if (filling()) modelState.scratchTrack.insertKey(static_cast<float>(frame), value, angle);
}

}  // namespace

void handleTmAnimation() {
  trace("animation\n");
  writeLine(Command::tmAnimation);
  modelState.inAnimation = true;
  modelState.maxFrame = 0;
  processBlock();
  modelState.inAnimation = false;
  trace("animation end\n");
}

void handleControlRotTcb() {
  readKeys(Command::controlRotTcb, TrackType::rotation, Smooth::off, "rotation bezier");
}

void handleControlRotTrack() {
  readKeys(Command::controlRotTrack, TrackType::rotation, Smooth::off, "rotation linear");
}

void handleControlPosBezier() {
  readKeys(Command::controlPosBezier, TrackType::position, Smooth::on, "position bezier");
}

void handleControlPosTrack() {
  readKeys(Command::controlPosTrack, TrackType::position, Smooth::off, "position linear");
}

void handleControlScaleBezier() {
  readKeys(Command::controlScaleBezier, TrackType::scale, Smooth::on, "scale bezier");
}

void handleControlScaleTrack() {
  readKeys(Command::controlScaleTrack, TrackType::scale, Smooth::on, "scale linear");
}

void handleRotationKey() {
  if (readingText()) scanIndexed(4);
  const float(&v)[4] = modelReader.current.vector;
  const int tick = modelReader.current.integer;
  const Vector axis = scannedPoint(v);
  const float angle = readingText() ? wrapAngle(v[3]) : v[3];
  const int frame = tick / modelState.ticksPerFrame;
  trace("key frame %d axis %.2f %.2f %.2f angle %.2f\n", frame, axis.x, axis.y, axis.z,
        angle * 180.0 / piToTenDecimals);
  writeLine(Command::controlRotSample, tick, axis.x, axis.y, axis.z, angle);
  storeKey(frame, axis, angle);
}

void handlePositionKey() {
  if (readingText()) scanIndexed(3);
  const float(&v)[4] = modelReader.current.vector;
  const int tick = modelReader.current.integer;
  const Vector position = scannedPoint(v);
  const int frame = tick / modelState.ticksPerFrame;
  trace("key frame %d pos %.2f %.2f %.2f\n", frame, position.x, position.y, position.z);
  writeLine(Command::controlPosSample, tick, position.x, position.y, position.z);
  storeKey(frame, position, 0.0f);
}

void handleScaleKey() {
  if (readingText()) scanIndexed(3);
  const float(&v)[4] = modelReader.current.vector;
  const int tick = modelReader.current.integer;
  const Vector factors = scannedFactors(v);
  const int frame = tick / modelState.ticksPerFrame;
  trace("key frame %d scale %.2f %.2f %.2f\n", frame, factors.x, factors.y, factors.z);
  writeLine(Command::controlScaleSample, tick, factors.x, factors.y, factors.z);
  storeKey(frame, factors, 0.0f);
}

void handleTimeValue() {}

}  // namespace vex
