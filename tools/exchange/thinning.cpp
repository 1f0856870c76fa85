#include "tools/exchange/thinning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "engine/spline.h"

namespace vex {

namespace {

constexpr double hintTolerance = 0.01;  // of the tolerance
constexpr double leastTurn = 0.001;     // the player does not turn by less

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

int lastOf(const auto& samples) {
  return static_cast<int>(samples.size()) - 1;
}

bool fits(const std::vector<int>& frames, int last) {
  return frames.size() >= 2 && frames.front() == 0 && frames.back() == last &&
         std::adjacent_find(frames.begin(), frames.end(), std::greater_equal<>()) == frames.end();
}

// The furthest frame up to `last` that `reaches` from `from`; the next one always does. Reach is taken to end
// somewhere: it is looked for in steps that double, then halve.
int furthest(int from, int last, const auto& reaches) {
  int good = from + 1;
  int step = 1;
  while (good < last) {
    const int next = std::min(good + step, last);
    if (!reaches(next)) break;
    good = next;
    step *= 2;
  }
  for (; step > 0; step /= 2)
    while (good + step <= last && reaches(good + step)) good += step;
  return good;
}

bool lineMeets(const std::vector<Place>& samples, int from, int to, double tolerance) {
  const Place way = samples[at(to)] - samples[at(from)];
  for (int i = from + 1; i < to; ++i) {
    const Place place = samples[at(from)] + way * (static_cast<double>(i - from) / (to - from));
    if (!((samples[at(i)] - place).Length() <= tolerance)) return false;
  }
  return true;
}

std::vector<int> straightFrames(const std::vector<Place>& samples, double tolerance) {
  std::vector<int> frames{0};
  const int last = lastOf(samples);
  while (frames.back() < last) {
    const int from = frames.back();
    frames.push_back(furthest(from, last, [&](int to) { return lineMeets(samples, from, to, tolerance); }));
  }
  return frames;
}

bool linesMeet(const std::vector<Place>& samples, const std::vector<int>& frames, double tolerance) {
  for (std::size_t i = 1; i < frames.size(); ++i)
    if (!lineMeets(samples, frames[i - 1], frames[i], tolerance)) return false;
  return true;
}

// The player's curve through the samples of some frames.
class Curve {
 public:
  Curve(const std::vector<Place>& samples, const std::vector<int>& frames) {
    for (const int frame : frames) {
      times.push_back(static_cast<float>(frame));
      for (unsigned axis = 0; axis < 3; ++axis)
        values[axis].push_back(static_cast<float>(samples[at(frame)][axis]));
    }
    for (unsigned axis = 0; axis < 3; ++axis) {
      bends[axis].resize(times.size());
      solveSpline(times.data(), values[axis].data(), static_cast<int>(times.size()), bends[axis].data());
    }
  }

  double error(const std::vector<Place>& samples, int frame) const {
    Place place;
    for (unsigned axis = 0; axis < 3; ++axis)
      place[axis] = static_cast<double>(splineAt(times.data(), values[axis].data(), bends[axis].data(),
                                                 static_cast<int>(times.size()), static_cast<float>(frame)));
    return (samples[at(frame)] - place).Length();
  }

 private:
  std::vector<float> times;
  std::array<std::vector<float>, 3> values, bends;
};

bool curveMeets(const std::vector<Place>& samples, const std::vector<int>& frames, double tolerance) {
  if (frames.size() < 3) return linesMeet(samples, frames, tolerance);
  const Curve curve(samples, frames);
  for (int frame = 0; frame <= lastOf(samples); ++frame)
    if (!(curve.error(samples, frame) <= tolerance)) return false;
  return true;
}

// Keys are put where the curve is worst, until it is good everywhere; then those are taken away that are not
// missed. Gives up once more than `most` are needed.
std::vector<int> curveFrames(const std::vector<Place>& samples, double tolerance, std::size_t most) {
  const int last = lastOf(samples);
  std::vector<int> frames{0, last / 2, last};
  if (last < 2) return {};
  for (bool good = false; !good;) {
    if (frames.size() >= most) return {};
    good = true;
    const Curve curve(samples, frames);
    std::vector<int> more;
    for (std::size_t i = 1; i < frames.size(); ++i) {
      double worst = tolerance;
      int where = -1;
      for (int frame = frames[i - 1] + 1; frame < frames[i]; ++frame)
        if (const double error = curve.error(samples, frame); error > worst) worst = error, where = frame;
      if (where >= 0) more.push_back(where);
    }
    good = more.empty();
    frames.insert(frames.end(), more.begin(), more.end());
    std::sort(frames.begin(), frames.end());
  }
  constexpr std::size_t patience = 20'000'000;  // steps along the curve
  if (frames.size() * samples.size() > patience) return frames;
  for (std::size_t i = frames.size() - 2; i > 0 && frames.size() > 3; --i) {
    std::vector<int> fewer = frames;
    fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
    if (curveMeets(samples, fewer, tolerance)) frames = std::move(fewer);
  }
  return frames;
}

ModelKeys keysAt(const std::vector<Place>& samples, const std::vector<int>& frames) {
  ModelKeys keys;
  for (const int frame : frames) keys.push_back({frame, toVector(samples[at(frame)])});
  return keys;
}

}  // namespace

ThinnedPlaces thinPlaces(const std::vector<Place>& samples, double tolerance,
                         const std::optional<KeyHint>& hint) {
  if (hint && fits(hint->frames, lastOf(samples))) {
    const bool met = hint->straight ? linesMeet(samples, hint->frames, tolerance * hintTolerance)
                                    : curveMeets(samples, hint->frames, tolerance * hintTolerance);
    if (met) return {keysAt(samples, hint->frames), hint->straight};
  }
  const std::vector<int> straight = straightFrames(samples, tolerance);
  const std::vector<int> curved =
      straight.size() > 3 ? curveFrames(samples, tolerance, straight.size()) : std::vector<int>();
  if (curved.empty()) return {keysAt(samples, straight), true};
  return {keysAt(samples, curved), false};
}

ModelKeys thinScales(const std::vector<Place>& samples, double tolerance,
                     const std::optional<KeyHint>& hint) {
  const int last = lastOf(samples);
  if (hint && fits(hint->frames, last) && curveMeets(samples, hint->frames, tolerance * hintTolerance))
    return keysAt(samples, hint->frames);
  if (lineMeets(samples, 0, last, tolerance)) return keysAt(samples, {0, last});
  return keysAt(samples, curveFrames(samples, tolerance, samples.size() + 1));
}

ModelKeys thinTurns(const std::vector<Turn>& samples, double tolerance, const std::optional<KeyHint>& hint) {
  const int last = lastOf(samples);
  // Where the player is at the key, since errors of keys would add up.
  Turn reached;
  const auto inverse = [](const Turn& q) { return Turn(q.w, -q.x, -q.y, -q.z); };
  const auto way = [&](int to, bool shorter) {
    AxisAngle result = axisAngleOf(samples[at(to)] * inverse(reached));
    if (!shorter) result = {-result.axis, 2 * std::numbers::pi - result.radians};
    return result;
  };
  const auto meets = [&](int from, int to, const AxisAngle& turn, double within) {
    for (int i = from + 1; i < to; ++i) {
      const Turn there = product(Turn(turn.axis, turn.radians * (i - from) / (to - from)), reached);
      if (!(angleBetween(there, samples[at(i)]) <= within)) return false;
    }
    return true;
  };

  ModelKeys keys;
  const auto add = [&](int frame, const AxisAngle& turn) {
    keys.push_back({frame, toVector(turn.axis), static_cast<float>(turn.radians)});
    if (turn.radians >= leastTurn) reached = product(Turn(turn.axis, turn.radians), reached);
  };
  // Half a turn to a hair may go either way; a way of more than half a turn cannot be written.
  const auto wayThatMeets = [&](int from, int to, double within) -> std::optional<AxisAngle> {
    const AxisAngle shorter = way(to, true);
    if (meets(from, to, shorter, within)) return shorter;
    constexpr double hair = 1e-3;
    if (shorter.radians < std::numbers::pi - hair) return {};
    const AxisAngle other{-shorter.axis, std::min(way(to, false).radians, std::numbers::pi)};
    if (meets(from, to, other, within)) return other;
    return {};
  };

  const AxisAngle first = axisAngleOf(samples[0]);
  if (hint && fits(hint->frames, last)) {
    add(0, first);
    bool met = true;
    for (std::size_t i = 1; i < hint->frames.size() && met; ++i) {
      const auto turn =
          wayThatMeets(hint->frames[i - 1], hint->frames[i], std::max(tolerance * hintTolerance, 2e-5));
      met = turn.has_value();
      if (met) add(hint->frames[i], *turn);
    }
    if (met) return keys;
    keys.clear();
    reached = Turn();
  }
  add(0, first);
  while (keys.back().frame < last) {
    const int from = keys.back().frame;
    const int to =
        furthest(from, last, [&](int frame) { return wayThatMeets(from, frame, tolerance).has_value(); });
    const auto turn = wayThatMeets(from, to, tolerance);
    add(to, turn.value_or(way(to, true)));
  }
  return keys;
}

}  // namespace vex
