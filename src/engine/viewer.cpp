#include "engine/viewer.h"

#include <cmath>

#include "base/pi.h"
#include "base/report.h"

namespace vex {

namespace {

void requirePosition(const Animation& track) {
  if (track.type != TrackType::position) fatalError("Viewer supports only position keys");
}

}  // namespace

Matrix lookAlong(const Vector& eye, const Vector& direction) {
  const Vector& d = direction;
  float yaw = 0.0f;
  float pitch = 0.0f;
  if (const float ground = std::sqrt(d.x * d.x + d.z * d.z); ground > 0.0f) {
    yaw = -std::acos(d.z / ground);
    if (d.x > 0.0f) yaw = -yaw;
    pitch = std::atan(d.y / ground);
  }
  yaw += pi;

  Matrix view = translation(-eye);
  view = view * rotation({0.0f, 1.0f, 0.0f}, yaw);
  return view * rotation({1.0f, 0.0f, 0.0f}, pitch);
}

Viewer::~Viewer() {
  logPrintf("  destroying viewer\n");
}

void Viewer::addAnimation(const Animation& track) {
  requirePosition(track);
  if (positionTrack) fatalError("Viewer: duplicated animations of type position");
  positionTrack = std::make_unique<Animation>(track);
}

void Viewer::addTargetAnimation(const Animation& track) {
  requirePosition(track);
  if (targetTrack) fatalError("Viewer: duplicated target animation of type position");
  targetTrack = std::make_unique<Animation>(track);
}

void Viewer::setAnimParams(float duration, bool loop) {
  for (Animation* track : {positionTrack.get(), targetTrack.get()}) {
    if (!track) continue;
    track->duration = duration;
    track->loop = loop;
  }
}

Matrix Viewer::getMatrix(float seconds) {
  if (positionTrack) position = transformPoint(positionTrack->getMatrix(seconds), Vector());
  if (targetTrack) target = transformPoint(targetTrack->getMatrix(seconds), Vector());

  const Vector d = target - position;
  const Matrix view = lookAlong(position, d) * rotation({0.0f, 0.0f, 1.0f}, roll);
  right = cross(d, {0.0f, 1.0f, 0.0f});
  down = cross(d, right);
  right.normalize();
  down.normalize();
  return view;
}

}  // namespace vex
