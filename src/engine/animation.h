#pragma once

#include <array>
#include <cstdint>
#include <unordered_set>
#include <vector>

#include "engine/matrix.h"
#include "engine/vector.h"

// One keyframe track: turns a time in seconds into a scaling, a rotation or a translation.
// Keys are stored in frames; `frameLength` frames take `duration` seconds.

namespace vex {

enum class TrackType : std::int8_t { scale = 0, rotation = 1, position = 2, none = 'd' };

inline constexpr int trackTypes = 3;

struct Animation {
  TrackType type = TrackType::none;
  float frameLength = 0.0f;  // the model's last frame
  bool loop = false;         // time wraps round frameLength; otherwise it stops at frame 0
  bool smooth = true;        // natural cubic spline where there are three or more keys
  float duration = 1.0f;     // seconds

  // Key by key: scale factors, rotation axis or position; angle in radians (rotation tracks only); time in
  // frames, ascending. Rotation keys are relative: each adds to the ones before it.
  std::vector<float> keyX, keyY, keyZ;
  std::vector<float> keyAngle;
  std::vector<float> keyTime;
  int count = 0;

  Animation() = default;
  ~Animation();  // logs "    destroying anim\n", of a track without type nothing

  // A copy plays with duration 1 until its owner sets it.
  Animation(const Animation& other);
  Animation& operator=(const Animation&) = delete;

  // Room for n keys, none stored. Fatal: "Animation: allocKeys() without type\n".
  void allocKeys(int n);

  // Appends a key. Fatal: "Animation: insertKey() without type\n", "Animation: same keyframe twice\n", more
  // keys than there is room for.
  void insertKey(float frame, const Vector& value, float angle);

  // The transform at `seconds`. Before the first key it is the first key's. Allocates nothing.
  // Fatal: "Animation: getMatrix() without type\n", "anim without keyframes\n".
  Matrix getMatrix(float seconds) const;

 private:
  bool hasKeyAt(float frame);

  float latestTime = 0.0f;                // of the keys stored
  std::unordered_set<float> storedTimes;  // those of all keys, from the first one out of order on
  Vector splineAt(float frame) const;

  // What does not depend on the time asked for: all turns up to each key of a rotation track, and the bends
  // of the curves through x, y and z, worked out when they are first needed for that many keys.
  std::vector<Matrix> turns;
  mutable std::array<std::vector<float>, 3> bends;
  mutable int bentKeys = 0;
};

}  // namespace vex
