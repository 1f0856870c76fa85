#include "engine/animation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/report.h"
#include "engine/spline.h"

namespace vex {

Animation::~Animation() {
  if (type != TrackType::none) logPrintf("    destroying anim\n");
}

Animation::Animation(const Animation& other)
    : type(other.type),
      frameLength(other.frameLength),
      loop(other.loop),
      smooth(other.smooth),
      keyX(other.keyX),
      keyY(other.keyY),
      keyZ(other.keyZ),
      keyAngle(other.keyAngle),
      keyTime(other.keyTime),
      count(other.count),
      latestTime(other.latestTime),
      turns(other.turns),
      bends(other.bends),
      bentKeys(other.bentKeys) {}

namespace {

Matrix identity() {
  Matrix matrix;
  matrix.setIdentity();
  return matrix;
}

}  // namespace

void Animation::allocKeys(int n) {
  if (type == TrackType::none) fatalError("Animation: allocKeys() without type\n");
  const auto size = static_cast<std::size_t>(n);
  for (auto* keys : {&keyX, &keyY, &keyZ, &keyTime}) keys->assign(size, 0.0f);
  if (type == TrackType::rotation) {
    keyAngle.assign(size, 0.0f);
    turns.resize(size);
  }
  for (auto& curve : bends) curve.resize(size);
  count = bentKeys = 0;
  storedTimes.clear();
}

// A file may hold any number of keys, so that none is compared with all before it.
bool Animation::hasKeyAt(float frame) {
  if (count == 0 || frame > latestTime) return false;
  if (storedTimes.empty()) storedTimes.insert(keyTime.begin(), keyTime.begin() + count);
  return storedTimes.contains(frame);
}

void Animation::insertKey(float frame, const Vector& value, float angle) {
  if (type == TrackType::none) fatalError("Animation: insertKey() without type\n");
  if (hasKeyAt(frame)) fatalError("Animation: same keyframe twice\n");
  const auto k = static_cast<std::size_t>(count);
  if (k >= keyTime.size()) fatalError("Animation: insertKey() beyond the %d keys allocated\n", count);
  keyX[k] = value.x;
  keyY[k] = value.y;
  keyZ[k] = value.z;
  if (type == TrackType::rotation) {
    keyAngle[k] = angle;
    turns[k] = (k > 0 ? turns[k - 1] : identity()) * rotation(value, angle);
  }
  keyTime[k] = frame;
  latestTime = count == 0 ? frame : std::max(latestTime, frame);
  if (!storedTimes.empty()) storedTimes.insert(frame);
  ++count;
}

Vector Animation::splineAt(float frame) const {
  const std::array keys{keyX.data(), keyY.data(), keyZ.data()};
  if (bentKeys != count) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      solveSpline(keyTime.data(), keys[axis], count, bends[axis].data());
    bentKeys = count;
  }
  const auto at = [&](std::size_t axis) {
    return vex::splineAt(keyTime.data(), keys[axis], bends[axis].data(), count, frame);
  };
  return {at(0), at(1), at(2)};
}

Matrix Animation::getMatrix(float seconds) const {
  float frame = frameLength / duration * seconds;
  if (loop) {
    if (frameLength > 0.0f) {
      frame = std::fmod(frame, frameLength);
      if (frame < 0.0f) frame = std::fmod(frame + frameLength, frameLength);
    } else {
      frame = 0.0f;
    }
  } else if (!(frame > 0.0f)) {
    frame = 0.0f;
  }
  if (type == TrackType::none) fatalError("Animation: getMatrix() without type\n");
  if (count == 0) fatalError("anim without keyframes\n");

  const auto key = [&](int k) {
    const auto i = static_cast<std::size_t>(k);
    return Vector(keyX[i], keyY[i], keyZ[i]);
  };
  const auto keyTurn = [&](int k) {
    return type == TrackType::rotation ? keyAngle[static_cast<std::size_t>(k)] : 0.0f;
  };

  if (!(frame >= keyTime[0])) frame = keyTime[0];  // also when the time is no number
  int segment = -1;
  float fraction = 1.0f;
  if (frame >= keyTime[static_cast<std::size_t>(count - 1)]) {
    segment = count - 2;
  } else {
    while (keyTime[static_cast<std::size_t>(segment + 1)] <= frame) ++segment;
    const float start = keyTime[static_cast<std::size_t>(segment)];
    fraction = (frame - start) / (keyTime[static_cast<std::size_t>(segment + 1)] - start);
  }

  Vector value;
  float angle = 0.0f;
  if (count == 1) {
    value = key(0);
    angle = keyTurn(0);
  } else if (count >= 3 && smooth) {
    value = splineAt(frame);
    angle = keyTurn(segment + 1) * fraction;
  } else if (type == TrackType::rotation) {
    value = key(segment + 1);
    angle = keyTurn(segment + 1) * fraction;
  } else {
    value = key(segment) + (key(segment + 1) - key(segment)) * fraction;
  }

  switch (type) {
    case TrackType::scale:
      return scaling(value);
    case TrackType::position:
      return translation(value);
    case TrackType::rotation:
      return (segment >= 0 ? turns[static_cast<std::size_t>(segment)] : identity()) * rotation(value, angle);
    case TrackType::none:
      break;
  }
  return {};
}

}  // namespace vex
