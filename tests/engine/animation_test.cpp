#include "engine/animation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/pi.h"
#include "engine/spline.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

struct Key {
  float frame;
  Vector value;
  float angle = 0.0f;
};

Animation makeTrack(TrackType type, const std::vector<Key>& keys) {
  Animation track;
  track.type = type;
  track.allocKeys(static_cast<int>(keys.size()));
  for (const Key& key : keys) track.insertKey(key.frame, key.value, key.angle);
  if (!keys.empty()) track.frameLength = keys.back().frame;
  track.duration = track.frameLength;  // a second a frame
  return track;
}

Vector placeAt(const Animation& track, float seconds) {
  return transformPoint(track.getMatrix(seconds), {});
}

void expectPoint(const Vector& p, const Vector& expected, float t) {
  SCOPED_TRACE(t);
  expectNear(p, expected, 1e-5);
}

}  // namespace

TEST(Animation, TwoKeysAreJoinedByALine) {
  Animation track = makeTrack(TrackType::position, {{0, {0, 0, 0}}, {10, {20, -10, 5}}});
  track.duration = 2.0f;
  struct Case {
    bool loop;
    float t, share;
  };
  for (const bool smooth : {false, true}) {
    track.smooth = smooth;
    for (const Case& c :
         {Case{false, 1, 0.5f}, Case{false, 0.1f, 0.05f}, Case{false, 3, 1}, Case{false, -1, 0},
          Case{false, 0, 0}, Case{false, 2, 1}, Case{true, 3, 0.5f}, Case{true, -0.5f, 0.75f},
          Case{true, 2, 0}, Case{true, -6.5f, 0.75f}, Case{true, -2, 0}}) {
      track.loop = c.loop;
      expectPoint(placeAt(track, c.t), Vector(20, -10, 5) * c.share, c.t);
    }
  }
}

TEST(Animation, ThreeKeysAreJoinedByLinesOrASpline) {
  const std::vector<Key> keys{{0, {0, 1, 2}}, {10, {8, 1, -4}}, {30, {-6, 1, 3}}, {40, {5, 1, 0}}};
  Animation track = makeTrack(TrackType::position, keys);
  const float frames[] = {0, 10, 30, 40};
  const float x[] = {0, 8, -6, 5};
  const float z[] = {2, -4, 3, 0};
  for (const float t : {0.0f, 2.5f, 10.0f, 12.0f, 29.0f, 30.0f, 39.5f, 40.0f, 50.0f}) {
    const float frame = std::min(t, 40.0f);
    track.smooth = true;
    expectPoint(placeAt(track, t), {calc_spline(frames, x, 4, frame), 1.0f, calc_spline(frames, z, 4, frame)},
                t);
    track.smooth = false;
    const std::size_t i = frame < 10 ? 0 : frame < 30 ? 1 : 2;
    const float f = (frame - keys[i].frame) / (keys[i + 1].frame - keys[i].frame);
    expectPoint(placeAt(track, t), keys[i].value * (1 - f) + keys[i + 1].value * f, t);
  }
}

TEST(Animation, ScaleTracksScale) {
  const Animation track = makeTrack(TrackType::scale, {{0, {1, 1, 1}}, {10, {3, 5, 9}}});
  expectPoint(transformPoint(track.getMatrix(5), {1, 10, 100}), {2, 30, 500}, 5);
}

// Keys add up, and only the last one is turned in part. A turn by a takes x to (cos a, -sin a).
TEST(Animation, RotationsAddUpKeyByKey) {
  const Vector z(0, 0, 1);
  const Animation three = makeTrack(TrackType::rotation, {{0, z, 0.5f}, {10, z, 0.5f}, {20, z, 0.5f}});
  const Animation two = makeTrack(TrackType::rotation, {{0, z, 0.4f}, {10, z, 0.6f}});
  const Animation one = makeTrack(TrackType::rotation, {{0, z, 0.7f}});
  struct Case {
    const Animation& track;
    float t, angle;
  };
  for (const Case& c : {Case{three, 0, 0.5f}, Case{three, 5, 0.75f}, Case{three, 15, 1.25f},
                        Case{three, 20, 1.5f}, Case{three, 99, 1.5f}, Case{three, -1, 0.5f},
                        Case{two, 0, 0.4f}, Case{two, 5, 0.7f}, Case{two, 10, 1.0f}, Case{one, 5, 0.7f}}) {
    expectPoint(transformPoint(c.track.getMatrix(c.t), {1, 0, 0}), {std::cos(c.angle), -std::sin(c.angle), 0},
                c.t);
  }
}

// First about x, then about z: y goes to -z and stays; the other way round it would end on x.
TEST(Animation, LaterRotationKeysTurnWhatTheEarlierOnesTurned) {
  Animation track = makeTrack(TrackType::rotation,
                              {{0, {1, 0, 0}, pi / 2}, {10, {0, 0, 1}, pi / 2}, {20, {0, 1, 0}, 0.0f}});
  for (const bool smooth : {false, true}) {
    track.smooth = smooth;
    expectPoint(transformPoint(track.getMatrix(20), {0, 1, 0}), {0, 0, -1}, 20);
    expectPoint(transformPoint(track.getMatrix(20), {1, 0, 0}), {0, -1, 0}, 20);
  }
}

// Of two keys the second one's axis is turned about, on top of the whole first key; a copy does the same.
TEST(Animation, TwoRotationKeysHaveAnAxisEach) {
  const Animation track = makeTrack(TrackType::rotation, {{0, {1, 0, 0}, pi / 2}, {10, {0, 0, 1}, pi / 2}});
  Animation copy(track);
  copy.duration = track.duration;
  const float half = std::sqrt(0.5f);
  for (const Animation* each : {&track, static_cast<const Animation*>(&copy)}) {
    const auto turned = [&](float t, const Vector& v) { return transformPoint(each->getMatrix(t), v); };
    expectPoint(turned(0, {0, 1, 0}), {0, 0, -1}, 0);
    expectPoint(turned(0, {1, 0, 0}), {1, 0, 0}, 0);
    expectPoint(turned(5, {1, 0, 0}), {half, -half, 0}, 5);
    expectPoint(turned(5, {0, 0, 1}), {half, half, 0}, 5);
    expectPoint(turned(10, {0, 1, 0}), {0, 0, -1}, 10);
    expectPoint(turned(10, {0, 0, 1}), {1, 0, 0}, 10);
  }
}

// With three keys and smoothing, the axis in between is the spline's.
TEST(Animation, SmoothRotationsSplineTheAxis) {
  const std::vector<Key> keys{{0, {1, 0, 0}, 0.0f}, {10, {0, 1, 0}, 0.0f}, {20, {0, 0, 1}, 1.0f}};
  Animation track = makeTrack(TrackType::rotation, keys);
  const float frames[] = {0, 10, 20};
  const float x[] = {1, 0, 0}, y[] = {0, 1, 0}, z[] = {0, 0, 1};
  const Vector axis(calc_spline(frames, x, 3, 15), calc_spline(frames, y, 3, 15),
                    calc_spline(frames, z, 3, 15));
  const auto moved = [](const Matrix& matrix) { return transformPoint(matrix, {3, 4, 5}); };
  expectPoint(moved(track.getMatrix(15)), moved(rotation(axis, 0.5f)), 15);
  track.smooth = false;
  expectPoint(moved(track.getMatrix(15)), moved(rotation({0, 0, 1}, 0.5f)), 15);
}

TEST(Animation, OneKeyIsConstant) {
  for (const bool loop : {false, true}) {
    Animation track = makeTrack(TrackType::position, {{0, {1, 2, 3}}});
    track.duration = 1.0f;
    track.loop = loop;
    for (const float t : {-3.0f, 0.0f, 0.5f, 100.0f}) expectPoint(placeAt(track, t), {1, 2, 3}, t);
  }
}

TEST(Animation, HoldsItsFirstKeyBeforeIt) {
  Animation track = makeTrack(TrackType::position, {{5, {1, 0, 0}}, {10, {2, 0, 0}}, {20, {7, 0, 0}}});
  for (const bool smooth : {false, true}) {
    track.smooth = smooth;
    expectPoint(placeAt(track, 2), {1, 0, 0}, 2);
    expectPoint(placeAt(track, 5), {1, 0, 0}, 5);
  }
}

// A looped track has no place in its round for an endless time, nor has a track of no duration.
TEST(Animation, HoldsItsFirstKeyAtTimesThatAreNoNumbers) {
  Animation track = makeTrack(TrackType::position, {{0, {1, 0, 0}}, {10, {2, 0, 0}}, {20, {7, 0, 0}}});
  track.loop = true;
  for (const bool smooth : {false, true}) {
    track.smooth = smooth;
    for (const float t : {INFINITY, -INFINITY, NAN}) expectPoint(placeAt(track, t), {1, 0, 0}, t);
    track.duration = 0.0f;
    expectPoint(placeAt(track, 0), {1, 0, 0}, 0);
    track.duration = 20.0f;
  }
}

// Comparing every key with all before it would take far too long.
TEST(Animation, TakesManyKeysInAnyOrder) {
  constexpr int many = 300'000;
  struct Case {
    const char* order;
    int step;  // from key to key, modulo the number of keys
  };
  for (const Case& c : {Case{"ascending", 1}, Case{"descending", many - 1}, Case{"mixed", 110'003}}) {
    Animation track;
    track.type = TrackType::scale;
    track.allocKeys(many + 1);
    std::int64_t frame = 0;
    for (int k = 0; k < many; ++k, frame = (frame + c.step) % many) {
      track.insertKey(static_cast<float>(frame), {}, 0);
    }
    EXPECT_EQ(track.count, many) << c.order;
    for (const int twice : {0, 7, many - 1}) {
      EXPECT_EQ(fatalText([&] { track.insertKey(static_cast<float>(twice), {}, 0); }),
                "Animation: same keyframe twice\n")
          << c.order << ' ' << twice;
    }
    track.allocKeys(1);
    track.insertKey(7, {}, 0);  // old keys are forgotten
  }
}

TEST(Animation, CopiesKnowTheTimesOfTheirKeys) {
  Animation track;
  track.type = TrackType::position;
  track.allocKeys(4);
  for (const float frame : {-2.0f, -8.0f, -5.0f}) track.insertKey(frame, {}, 0);
  Animation copy(track);
  for (const float frame : {-8.0f, -5.0f, -2.0f}) {
    EXPECT_EQ(fatalText([&] { copy.insertKey(frame, {}, 0); }), "Animation: same keyframe twice\n");
  }
  copy.insertKey(-4, {}, 0);
  EXPECT_EQ(copy.count, 4);
}

TEST(Animation, CopiesPlayOneSecond) {
  Animation track = makeTrack(TrackType::rotation, {{0, {0, 0, 1}, 0.5f}, {10, {1, 0, 0}, 0.25f}});
  track.loop = true;
  track.smooth = false;
  const Animation copy(track);
  EXPECT_EQ(copy.duration, 1.0f);
  EXPECT_EQ(copy.type, TrackType::rotation);
  EXPECT_EQ(copy.frameLength, 10.0f);
  EXPECT_TRUE(copy.loop);
  EXPECT_FALSE(copy.smooth);
  EXPECT_EQ(copy.count, 2);
  track.keyAngle[1] = 9.0f;
  EXPECT_EQ(copy.keyAngle[1], 0.25f) << "keys of its own";
}

TEST(Animation, RefusesWhatCannotBe) {
  Animation none;
  EXPECT_EQ(fatalText([&] { none.allocKeys(1); }), "Animation: allocKeys() without type\n");
  EXPECT_EQ(fatalText([&] { none.insertKey(0, {}, 0); }), "Animation: insertKey() without type\n");
  EXPECT_EQ(fatalText([&] { none.getMatrix(0); }), "Animation: getMatrix() without type\n");
  Animation track;
  track.type = TrackType::position;
  EXPECT_EQ(fatalText([&] { track.getMatrix(0); }), "anim without keyframes\n");
  track.allocKeys(2);
  track.insertKey(3, {}, 0);
  EXPECT_EQ(fatalText([&] { track.insertKey(3, {1, 1, 1}, 0); }), "Animation: same keyframe twice\n");
  track.insertKey(1, {}, 0);  // out of order, which is the caller's affair
  EXPECT_EQ(fatalText([&] { track.insertKey(9, {}, 0); }),
            "Animation: insertKey() beyond the 2 keys allocated\n");
}

TEST(Animation, LogsItsDestruction) {
  EXPECT_EQ(logText([] { const Animation withoutType; }), "");
  EXPECT_EQ(logText([] {
              Animation track;
              track.type = TrackType::scale;
            }),
            "    destroying anim\n");
}

}  // namespace vex
