#include "production/movements/words.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "engine/viewer.h"
#include "production/models/stage.h"

namespace vex {

using namespace song;
using namespace show;

using namespace screen;

Curve slide(double from, double to) {
  return line({{0, from}, {partEnd, to}});
}

double barOf(std::string_view cue) {
  return cueSeconds(cue) / secondsPerBar;
}

namespace {

constexpr double sightsPerBeat = 8;
constexpr int mostSights = 200;  // a curve holds 255 dots

Animation pathOf(const MotionKeys& keys) {
  Animation path;
  path.type = TrackType::position;
  path.allocKeys(static_cast<int>(keys.size()));
  for (const MotionKey& key : keys) path.insertKey(static_cast<float>(key.frame), key.value, 0);
  path.frameLength = static_cast<float>(keys.back().frame);
  return path;
}

}  // namespace

Sight onScreen(const StageCamera& camera, double start, double speed, double beats,
               const std::function<Vector(float)>& place) {
  Viewer viewer;
  viewer.addAnimation(pathOf(camera.positions));
  viewer.addTargetAnimation(pathOf(camera.targets));
  viewer.setAnimParams(static_cast<float>(camera.positions.back().frame) / framesPerSecond, true);
  // As the player sees it: three quarters of the field from top to bottom.
  const double tangent = std::tan(camera.fieldDegrees * 0.75 / 2 * std::numbers::pi / 180);
  const int last = std::clamp(static_cast<int>(std::ceil(beats * sightsPerBeat)), 1, mostSights);
  std::vector<CurveDot> x, y, unit;
  for (int i = 0; i <= last; ++i) {
    const double beat = beats * i / last;
    const auto time = static_cast<float>(start + beat * secondsPerBeat * speed);
    const Vector seen = transformPoint(viewer.getMatrix(time), place(time));
    const bool before = seen.z < -1;
    const double height = before ? 1 / (-seen.z * tangent) : 0;
    x.push_back({beat, seen.x * height * 9 / 16});
    y.push_back({beat, seen.y * -height});
    unit.push_back({beat, height});
  }
  return {line(x), line(y), line(unit)};
}

Sight onScreen(const StageCamera& camera, double start, double speed, double beats, const Vector& place) {
  return onScreen(camera, start, speed, beats, [place](float) { return place; });
}

// A dark word first, so that no ground shows through; what is torn burns white for a frame here and there.
std::vector<ScriptCall> draw(const Word& word) {
  const Curve left = word.size * (word.ending.leftBy - 1) + word.x, top = word.size * -0.25 + word.y,
              height = word.size * 0.5;
  const Place atVex{left, top, word.size * 0.67, height},
      atEnding{left + word.size * 0.5, top, word.size * 1.5, height};
  const auto half = [&](const char* texture, const Place& at, bool tears) {
    return draw(Bitmap{
        .texture = texture, .at = at, .frames = tears ? 2 : 0, .glitch = word.tear, .blend = Blend::add});
  };
  const bool tears = std::string_view(word.ending.texture).ends_with("01");
  return {draw(Bitmap{.texture = struckVex, .at = atVex, .blend = Blend::darken}),
          draw(Bitmap{.texture = word.ending.struck, .at = atEnding, .blend = Blend::darken}),
          half(word.ending.vex, atVex, true), half(word.ending.texture, atEnding, tears)};
}

Word vex(const Ending& ending, const Curve& size, double x, double y) {
  return {.ending = ending, .size = size, .x = x, .y = y};
}

Waves smokeBefore(const char* texture, double reach, double speed, const Curve& alpha) {
  return {.texture = texture,
          .at = covering(reach),
          .speed = speed,
          .amplitude = 0.05,
          .alpha = alpha,
          .blend = Blend::add};
}

}  // namespace vex
