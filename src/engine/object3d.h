#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "engine/animation.h"
#include "engine/matrix.h"
#include "engine/vector.h"

// What everything that has a place in a scene begins with. World space is right-handed with y up. There
// are no virtual operations: who holds an Object3D asks its kind.

namespace vex {

enum class ObjectKind : std::int8_t {
  none = -1,
  mesh = 0,
  light = 1,
  fog = 3,
  fluid = 4,
  particleSystem = 5,
  volLight = 6,
};

inline constexpr int objectNameSize = 32;  // at most 31 characters and the terminator

// Bits of Object3D::flags.
inline constexpr std::uint8_t skeletonFlag = 1;
inline constexpr std::uint8_t hiddenFlag = 2;  // not drawn

struct Object3D;

// The values of an object: a copy holds them as they are at a moment (scene_state.h). Tracks are shared by
// the copies, since only setting up changes them.
struct Object3DValues {
  using Tracks = std::array<std::unique_ptr<Animation>, trackTypes>;  // by TrackType

  char name[objectNameSize] = "";
  Vector position;    // pivot in world space, from the model
  Matrix baseMatrix;  // applied at the pivot, before the tracks
  Object3D* parent = nullptr;
  std::uint8_t flags = 0;
  ObjectKind kind = ObjectKind::none;
  std::shared_ptr<Tracks> tracks;  // from the first addAnimation on
  Matrix current;                  // object space to world space, for this frame
  Vector worldPosition;            // position under `current`, refreshed by getMatrix
  Vector pivot;                    // position and what translate() added since resetTransform()
  float fixedTime = -1.0f;         // from 0 on: the tracks stand at this time, in seconds
  bool manual = false;             // moved by translate, rotate or scale
};

struct Object3D : Object3DValues {
  Object3D();
  Object3D(const Object3D&) = delete;
  Object3D& operator=(const Object3D&) = delete;

  bool hidden() const { return flags & hiddenFlag; }
  const Animation* track(TrackType type) const;  // null where there is none

  // Stores a copy, which plays with duration 1, and returns it.
  // Fatal: "Object3D %s: addAnimation called with unknown type\n", "Object3D %s: duplicated animation of
  // type scale\n" (or rotation, or position).
  Animation* addAnimation(const Animation& track);
  void removeAnimation(TrackType type);
  void setAnimParams(float duration, bool loop);  // of every track
  void setFixedTime(float seconds) { fixedTime = seconds; }

  // Manual transforms build `current` in call order; rotate and scale work about the pivot. They show on
  // objects without tracks.
  void resetTransform();
  Matrix applyMatrix(const Matrix& matrix);  // current = current * matrix
  void translate(const Vector& v);
  void rotate(const Vector& axis, float angle);
  void scale(const Vector& factors);

  // Computes `current` (and worldPosition, but for skeleton helpers) for a scene time in seconds. The
  // parent follows the time given, whatever this object's fixedTime says.
  Matrix getMatrix(float seconds, bool asParent = false);

  // The orientation alone: rotation track, base matrix, then the parents'.
  Matrix getRotation(float seconds) const;

  Vector getWorldPosition() const { return worldPosition; }
  Vector worldPositionAt(float seconds);

 private:
  void applyTracks(float seconds);
  float trackTime(float seconds) const { return fixedTime >= 0.0f ? fixedTime : seconds; }
};

}  // namespace vex
