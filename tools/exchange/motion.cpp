#include "tools/exchange/motion.h"

#include <cmath>

namespace vex {

namespace {

// Times that differ by less are the same: files keep them as floats.
constexpr double hair = 1e-5;

Place mixed(const Place& a, const Place& b, double f) {
  return a + (b - a) * f;
}

Turn mixed(const Turn& a, const Turn& b, double f) {
  return between(a, b, f);
}

// Hermite's curve over a span of seconds, component by component.
double curved(double a, double slopeA, double b, double slopeB, double f, double span) {
  const double f2 = f * f, f3 = f2 * f;
  return (2 * f3 - 3 * f2 + 1) * a + (f3 - 2 * f2 + f) * slopeA * span + (3 * f2 - 2 * f3) * b +
         (f3 - f2) * slopeB * span;
}

Place curved(const Place& a, const Place& slopeA, const Place& b, const Place& slopeB, double f,
             double span) {
  Place result;
  for (unsigned i = 0; i < 3; ++i) result[i] = curved(a[i], slopeA[i], b[i], slopeB[i], f, span);
  return result;
}

Turn curved(const Turn& a, const Turn& slopeA, const Turn& b, const Turn& slopeB, double f, double span) {
  Turn result(curved(a.w, slopeA.w, b.w, slopeB.w, f, span), curved(a.x, slopeA.x, b.x, slopeB.x, f, span),
              curved(a.y, slopeA.y, b.y, slopeB.y, f, span), curved(a.z, slopeA.z, b.z, slopeB.z, f, span));
  return result.Normalize();
}

template <typename Value>
Value valueAt(const Channel<Value>& channel, double seconds) {
  const auto& times = channel.times;
  const auto next = std::upper_bound(times.begin(), times.end(), seconds + hair);
  if (next == times.begin()) return channel.values.front();
  const auto i = static_cast<std::size_t>(next - times.begin()) - 1;
  if (next == times.end() || channel.joining == Joining::step || seconds - times[i] < hair)
    return channel.values[i];
  const double span = times[i + 1] - times[i];
  const double f = (seconds - times[i]) / span;
  if (channel.joining == Joining::cubic && channel.slopes.size() == times.size())
    return curved(channel.values[i], channel.slopes[i][1], channel.values[i + 1], channel.slopes[i + 1][0], f,
                  span);
  return mixed(channel.values[i], channel.values[i + 1], f);
}

bool finite(const Place& p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool finite(const Turn& q) {
  return std::isfinite(q.w) && std::isfinite(q.x) && std::isfinite(q.y) && std::isfinite(q.z) &&
         q.w * q.w + q.x * q.x + q.y * q.y + q.z * q.z > 0;
}

Place convert(const aiVector3D& v) {
  return toPlace(v);
}

Turn convert(const aiQuaternion& q) {
  Turn turn(static_cast<double>(q.w), static_cast<double>(q.x), static_cast<double>(q.y),
            static_cast<double>(q.z));
  return finite(turn) ? turn.Normalize() : turn;
}

// Keys that are no numbers, or do not come after the one before, are passed over. Returns how many.
template <typename Value, typename Key>
int collect(Channel<Value>& channel, const Key* keys, unsigned count, double ticksPerSecond) {
  int bad = 0;
  for (unsigned i = 0; i < count; ++i) {
    const double time = keys[i].mTime / ticksPerSecond;
    const Value value = convert(keys[i].mValue);
    if (!std::isfinite(time) || !finite(value) || (!channel.times.empty() && time <= channel.times.back())) {
      ++bad;
      continue;
    }
    channel.times.push_back(time);
    channel.values.push_back(value);
  }
  return bad;
}

double endOf(const auto& channel) {
  return channel.times.empty() ? 0 : channel.times.back();
}

}  // namespace

Pose poseAt(const NodeMotion& motion, const Pose& rest, double seconds) {
  Pose pose = rest;
  if (!motion.places.times.empty()) pose.place = valueAt(motion.places, seconds);
  if (!motion.turns.times.empty()) pose.turn = valueAt(motion.turns, seconds);
  if (!motion.scales.times.empty()) pose.scale = valueAt(motion.scales, seconds);
  return pose;
}

Motions collectMotions(const aiScene& scene, Report& report) {
  Motions motions;
  for (unsigned a = 0; a < scene.mNumAnimations; ++a) {
    const aiAnimation& animation = *scene.mAnimations[a];
    const double ticks =
        animation.mTicksPerSecond > 0 ? animation.mTicksPerSecond : 25;  // the library's own default
    bool repeated = false;
    int bad = 0;
    std::map<std::string, NodeMotion> own;
    for (unsigned c = 0; c < animation.mNumChannels; ++c) {
      const aiNodeAnim& channel = *animation.mChannels[c];
      const std::string node = channel.mNodeName.C_Str();
      if (motions.byNode.contains(node)) {
        repeated = true;
        continue;
      }
      NodeMotion& motion = own[node];
      if (!motion.places.times.empty() || !motion.turns.times.empty() || !motion.scales.times.empty())
        continue;
      bad += collect(motion.places, channel.mPositionKeys, channel.mNumPositionKeys, ticks);
      bad += collect(motion.turns, channel.mRotationKeys, channel.mNumRotationKeys, ticks);
      bad += collect(motion.scales, channel.mScalingKeys, channel.mNumScalingKeys, ticks);
      motions.seconds =
          std::max({motions.seconds, endOf(motion.places), endOf(motion.turns), endOf(motion.scales)});
    }
    const std::string name =
        animation.mName.length > 0 ? animation.mName.C_Str() : "number " + std::to_string(a);
    if (repeated) report.left("animation " + name + ": moves what an earlier one moves already");
    if (bad > 0)
      report.left("animation " + name + ": " + std::to_string(bad) +
                  " keys that are no numbers or out of order");
    if (animation.mNumMeshChannels > 0 || animation.mNumMorphMeshChannels > 0)
      report.left("animation " + name + ": changes of form; only places, turns and scales come in");
    motions.byNode.merge(own);
  }
  return motions;
}

}  // namespace vex
