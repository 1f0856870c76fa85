#include "engine/object3d.h"

#include "base/report.h"

namespace vex {

namespace {

constexpr const char* trackNames[trackTypes] = {"scale", "rotation", "position"};

std::size_t slotOf(TrackType type) {
  return static_cast<std::size_t>(type);
}

}  // namespace

Object3D::Object3D() {
  baseMatrix.setIdentity();
  current.setIdentity();
}

const Animation* Object3D::track(TrackType type) const {
  return tracks ? (*tracks)[slotOf(type)].get() : nullptr;
}

Animation* Object3D::addAnimation(const Animation& track) {
  if (slotOf(track.type) >= trackTypes) {
    fatalError("Object3D %s: addAnimation called with unknown type\n", name);
  }
  if (!tracks) tracks = std::make_shared<Tracks>();
  auto& slot = (*tracks)[slotOf(track.type)];
  if (slot) {
    fatalError("Object3D %s: duplicated animation of type %s\n", name, trackNames[slotOf(track.type)]);
  }
  slot = std::make_unique<Animation>(track);
  return slot.get();
}

void Object3D::removeAnimation(TrackType type) {
  if (!tracks) return;
  (*tracks)[slotOf(type)].reset();
  for (const auto& slot : *tracks) {
    if (slot) return;
  }
  tracks.reset();
}

void Object3D::setAnimParams(float duration, bool loop) {
  if (!tracks) return;
  for (const auto& slot : *tracks) {
    if (!slot) continue;
    slot->duration = duration;
    slot->loop = loop;
  }
}

void Object3D::resetTransform() {
  pivot = position;
  manual = false;
  current.setIdentity();
}

Matrix Object3D::applyMatrix(const Matrix& matrix) {
  current = current * matrix;
  return current;
}

void Object3D::translate(const Vector& v) {
  applyMatrix(translation(v));
  pivot += v;
  manual = true;
}

void Object3D::rotate(const Vector& axis, float angle) {
  applyMatrix(translation(-pivot));
  applyMatrix(rotation(axis, angle));
  applyMatrix(translation(pivot));
  manual = true;
}

void Object3D::scale(const Vector& factors) {
  applyMatrix(translation(-pivot));
  applyMatrix(scaling(factors));
  applyMatrix(translation(pivot));
  manual = true;
}

void Object3D::applyTracks(float seconds) {
  if (tracks) {
    for (const auto& slot : *tracks) {
      if (slot) applyMatrix(slot->getMatrix(seconds));
    }
  }
  if (!track(TrackType::position)) applyMatrix(translation(position));
}

Matrix Object3D::getMatrix(float seconds, bool) {
  pivot = position;
  if (flags & skeletonFlag) {
    current = translation(-position);
    applyTracks(trackTime(seconds));
    if (parent) {
      applyMatrix(translation(position));
      applyMatrix(parent->getMatrix(seconds, true));
    }
    return current;
  }
  if (tracks) {
    current = translation(-position);
    applyMatrix(baseMatrix);
    applyTracks(trackTime(seconds));
  } else if (!manual) {
    current.setIdentity();
  }
  Matrix result = current;
  if (parent) result = result * parent->getMatrix(seconds, true);
  // Manual transforms go on building the object's own matrix: with the parent's in it, they would collect
  // the parent anew in every frame.
  if (tracks || !manual) current = result;
  worldPosition = transformPoint(result, position);
  return result;
}

Matrix Object3D::getRotation(float seconds) const {
  Matrix result = baseMatrix;
  if (const Animation* turn = track(TrackType::rotation)) {
    result = turn->getMatrix(trackTime(seconds)) * baseMatrix;
  }
  if (parent) result = result * parent->getRotation(seconds);
  return result;
}

Vector Object3D::worldPositionAt(float seconds) {
  return transformPoint(getMatrix(seconds), position);
}

}  // namespace vex
