#include "engine/animation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shell/report.h"
#include "timeline/spline.h"

namespace vex {

Animation::~Animation() {
  logPrintf("    destroying anim\n");
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
      latestTime(other.latestTime) {}

void Animation::allocKeys(int n) {
  if (type == TrackType::none) fatalError("Animation: allocKeys() without type\n");
  const auto size = static_cast<std::size_t>(n);
  for (auto* keys : {&keyX, &keyY, &keyZ, &keyTime}) keys->assign(size, 0.0f);
  if (type == TrackType::rotation) keyAngle.assign(size, 0.0f);
  count = 0;
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
  if (type == TrackType::rotation) keyAngle[k] = angle;
  keyTime[k] = frame;
  latestTime = count == 0 ? frame : std::max(latestTime, frame);
  if (!storedTimes.empty()) storedTimes.insert(frame);
  ++count;
}

namespace {

// The whole keys up to `last` and, on top of them, a turn by `angle` about `axis`.
Matrix rotationAt(const Animation& track, int last, const Vector& axis, float angle) {
  Matrix result;
  result.setIdentity();
  for (int j = 0; j <= last; ++j) {
    const auto k = static_cast<std::size_t>(j);
    result = result * rotation({track.keyX[k], track.keyY[k], track.keyZ[k]}, track.keyAngle[k]);
  }
  return result * rotation(axis, angle);
}

}  // namespace

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
    value = {calc_spline(keyTime.data(), keyX.data(), count, frame),
             calc_spline(keyTime.data(), keyY.data(), count, frame),
             calc_spline(keyTime.data(), keyZ.data(), count, frame)};
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
      return rotationAt(*this, segment, value, angle);
    case TrackType::none:
      break;
  }
  return {};
}

}  // namespace vex
