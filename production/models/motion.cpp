#include <algorithm>
#include <cmath>

#include "base/pi.h"
#include "base/report.h"
#include "production/geometry/forms.h"
#include "production/image/image.h"
#include "production/models/stage.h"

namespace vex {

using namespace image;
using namespace geometry;

namespace {

// Smaller turns have no effect in the player: they are kept for the next key.
constexpr float leastTurn = 0.0011f;

template <typename KeyOf>
MotionKeys keysEvery(float seconds, int every, KeyOf keyOf) {
  const int last = static_cast<int>(std::lround(seconds * framesPerSecond));
  if (every < 1 || last < 1) fatalError("motion of %g s with a key each %d frames", seconds, every);
  MotionKeys keys;
  for (int frame = 0;; frame += every) {
    if (frame > last || (frame > 0 && frame < last && last - frame < (every + 1) / 2)) frame = last;
    MotionKey key = keyOf(static_cast<float>(frame) / framesPerSecond);
    key.frame = frame;
    keys.push_back(key);
    if (frame == last) return keys;
  }
}

// To the six decimals that the text keeps.
float rounded(float value) {
  return static_cast<float>(std::round(static_cast<double>(value) * 1e6) / 1e6);
}

}  // namespace

MotionKeys positionKeys(float seconds, int every, const std::function<Vector(float)>& place) {
  return keysEvery(seconds, every, [&](float t) {
    MotionKey key;
    key.value = place(t);
    return key;
  });
}

MotionKeys scaleKeys(float seconds, int every, const std::function<Vector(float)>& factors) {
  return positionKeys(seconds, every, factors);
}

MotionKeys turnKeys(float seconds, int every, const std::function<Placement(float)>& orientation) {
  // What the player has turned so far, with all its rounding: each key makes up for the ones before it.
  Placement played;
  return keysEvery(seconds, every, [&](float t) {
    Placement goal = orientation(t);
    goal.origin = Vector(0, 0, 0);
    const AxisAngle step = axisAngleOf(inverse(played) >> goal);
    MotionKey key;
    key.value = Vector(0, 1, 0);
    if (step.radians < leastTurn) return key;
    key.value = {rounded(step.axis.x), rounded(step.axis.y), rounded(step.axis.z)};
    key.radians = std::min(rounded(step.radians), 3.141592f);
    played = played >> turned(key.value, key.radians);
    return key;
  });
}

float eased(float t, float start, float end) {
  return smoothStep(start, end, t);
}

float swing(float t, float seconds, float turns, float phase) {
  return std::sin(2 * pi * (t / seconds * turns + phase));
}

namespace {

std::function<Vector(float)> through(const std::vector<Vector>& knots, float seconds) {
  const std::vector<Vector> curve = smoothPath(knots, 240);
  return [curve, seconds](float t) {
    const float place = clamp01(t / seconds) * static_cast<float>(curve.size() - 1);
    const auto i = std::min(static_cast<std::size_t>(place), curve.size() - 2);
    return mix(curve[i], curve[i + 1], place - static_cast<float>(i));
  };
}

}  // namespace

StageCamera cameraThrough(StageCamera camera, float seconds, const std::vector<Vector>& eye,
                          const std::vector<Vector>& target) {
  camera.position = eye.front();
  camera.target = target.front();
  camera.positions = positionKeys(seconds, 15, through(eye, seconds));
  camera.targets = positionKeys(seconds, 15, through(target, seconds));
  return camera;
}

StageCamera cameraDuring(StageCamera camera, float loopSeconds, float from, float seconds,
                         const std::vector<Vector>& eye, const std::vector<Vector>& target) {
  const auto keys = [&](const std::vector<Vector>& knots) {
    return positionKeys(loopSeconds, 5,
                        [path = through(knots, seconds), from](float t) { return path(t - from); });
  };
  camera.position = eye.front();
  camera.target = target.front();
  camera.positions = keys(eye);
  camera.targets = keys(target);
  return camera;
}

StageCamera handedOver(StageCamera first, float at, const StageCamera& second) {
  const auto handOver = [at](MotionKeys& keys, const MotionKeys& later) {
    for (std::size_t i = 0; i < keys.size(); ++i)
      if (static_cast<float>(keys[i].frame) >= at * framesPerSecond) keys[i] = later[i];
  };
  handOver(first.positions, second.positions);
  handOver(first.targets, second.targets);
  return first;
}

}  // namespace vex
