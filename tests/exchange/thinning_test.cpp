#include "tools/exchange/thinning.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

#include "engine/animation.h"

// Thinned keys, played by the player's own tracks, against the samples that they were thinned from.

namespace vex {

namespace {

constexpr double pi = 3.14159265358979;

std::vector<Place> places(int last, const std::function<Place(double frame)>& at) {
  std::vector<Place> samples;
  for (int frame = 0; frame <= last; ++frame) samples.push_back(at(frame));
  return samples;
}

std::vector<Turn> turns(int last, const std::function<Turn(double frame)>& at) {
  std::vector<Turn> samples;
  for (int frame = 0; frame <= last; ++frame) samples.push_back(at(frame));
  return samples;
}

// As the model builder makes a track of the keys.
void fillTrack(Animation& track, TrackType type, const ModelKeys& keys, bool smooth) {
  track.type = type;
  track.smooth = smooth;
  track.frameLength = static_cast<float>(keys.back().frame);
  track.duration = track.frameLength;
  track.allocKeys(static_cast<int>(keys.size()));
  for (const ModelKey& key : keys) track.insertKey(static_cast<float>(key.frame), key.value, -key.radians);
}

double worstPlace(const std::vector<Place>& samples, const ModelKeys& keys, bool straight) {
  Animation track;
  fillTrack(track, TrackType::position, keys, !straight);
  double worst = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const Place there = translationOf(toTransform(track.getMatrix(static_cast<float>(i))));
    worst = std::max(worst, (there - samples[i]).Length());
  }
  return worst;
}

double worstTurn(const std::vector<Turn>& samples, const ModelKeys& keys) {
  Animation track;
  fillTrack(track, TrackType::rotation, keys, false);
  double worst = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const Turn there = poseOf(toTransform(track.getMatrix(static_cast<float>(i)))).turn;
    worst = std::max(worst, angleBetween(there, samples[i]));
  }
  return worst;
}

}  // namespace

TEST(Thinning, KeepsPlacesWithinTheToleranceByFewKeys) {
  const struct {
    const char* name;
    std::function<Place(double)> at;
    std::size_t most;
  } rows[] = {
      {"line", [](double f) { return Place(f, 2 * f, -f); }, 2},
      {"standing", [](double) { return Place(5, 5, 5); }, 2},
      {"corner", [](double f) { return f < 40 ? Place(f, 0, 0) : Place(40, f - 40, 0); }, 3},
      {"jump", [](double f) { return Place(f < 61 ? 0.0 : 50.0, 0, 0); }, 4},
      {"circle", [](double f) { return Place(std::cos(f * pi / 60), std::sin(f * pi / 60), 0) * 30.0; }, 14},
      {"parabola", [](double f) { return Place(f, 0.01 * f * f, 0); }, 10},
  };
  for (const auto& [name, at, most] : rows) {
    const std::vector<Place> samples = places(120, at);
    const ThinnedPlaces thinned = thinPlaces(samples, 0.1);
    EXPECT_LE(thinned.keys.size(), most) << name;
    EXPECT_EQ(thinned.keys.front().frame, 0) << name;
    EXPECT_EQ(thinned.keys.back().frame, 120) << name;
    EXPECT_LE(worstPlace(samples, thinned.keys, thinned.straight), 0.1001) << name;
    const ModelKeys scales = thinScales(samples, 0.1);
    EXPECT_LE(worstPlace(samples, scales, false), 0.1001) << name << ", as scales";
  }
  EXPECT_FALSE(thinPlaces(places(120, rows[4].at), 0.1).straight) << "a curve takes fewer";
}

TEST(Thinning, FollowsAHintThatMeetsTheSamples) {
  const auto circle = [](double f) { return Place(std::cos(f / 20), std::sin(f / 20), 0) * 30.0; };
  const KeyHint right{.frames = {0, 10, 20, 30, 40, 50, 60}, .straight = true};
  // The samples of the very lines between those keys.
  const std::vector<Place> samples = places(60, [&](double f) {
    const double from = std::floor(std::min(f, 59.0) / 10) * 10;
    return circle(from) + (circle(from + 10) - circle(from)) * ((f - from) / 10);
  });
  const ThinnedPlaces hinted = thinPlaces(samples, 5, right);
  EXPECT_EQ(hinted.keys.size(), 7u);
  EXPECT_TRUE(hinted.straight);
  for (const KeyHint& wrong : {KeyHint{.frames = {0, 30, 60}, .straight = true}, KeyHint{.frames = {0, 10}},
                               KeyHint{.frames = {0, 20, 10, 60}}, KeyHint{.frames = {5, 60}}})
    EXPECT_NE(thinPlaces(samples, 0.5, wrong).keys.size(), wrong.frames.size());
}

TEST(Thinning, KeepsTurnsWithinTheTolerance) {
  const double tolerance = 0.2 * pi / 180;
  const struct {
    const char* name;
    std::function<Turn(double)> at;
    std::size_t most;
  } rows[] = {
      {"standing askew", [](double) { return Turn(Place(0, 0.6, 0.8), 1.0); }, 2},
      {"even spin of less than half", [](double f) { return Turn(Place(0, 0, 1), 0.02 * f); }, 2},
      {"three times round", [](double f) { return Turn(Place(0.6, 0, 0.8), f * pi / 20); }, 8},
      {"slower than the player turns", [](double f) { return Turn(Place(1, 0, 0), 0.0002 * f); }, 3},
      {"rocking", [](double f) { return Turn(Place(1, 0, 0), 0.5 * std::sin(f / 10)); }, 50},
      {"tumbling",
       [](double f) { return product(Turn(Place(1, 0, 0), f / 60), Turn(Place(0, 1, 0), f / 45)); }, 60},
  };
  for (const auto& [name, at, most] : rows) {
    const std::vector<Turn> samples = turns(120, at);
    const ModelKeys keys = thinTurns(samples, tolerance);
    EXPECT_LE(keys.size(), most) << name;
    EXPECT_EQ(keys.back().frame, 120) << name;
    EXPECT_LE(worstTurn(samples, keys), tolerance * 1.01) << name;
  }
  // A hint of so many keys that the player would not turn at all.
  const std::vector<Turn> creeping = turns(120, [](double f) { return Turn(Place(1, 0, 0), 0.0008 * f); });
  KeyHint each;
  for (int frame = 0; frame <= 120; ++frame) each.frames.push_back(frame);
  EXPECT_LE(worstTurn(creeping, thinTurns(creeping, tolerance, each)), tolerance * 1.01);
  // Half a turn may go either way; only the samples between tell which.
  for (const double sign : {1.0, -1.0}) {
    const std::vector<Turn> samples =
        turns(10, [&](double f) { return Turn(Place(0, 1, 0), sign * f * pi / 10); });
    EXPECT_LE(worstTurn(samples, thinTurns(samples, tolerance, KeyHint{.frames = {0, 10}})), tolerance)
        << sign;
  }
}

}  // namespace vex
