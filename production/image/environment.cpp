#include "production/image/environment.h"

#include <algorithm>
#include <cmath>

namespace vex::image {

namespace {

Vector unit(const Vector& v) {
  return v / v.length();
}

Gaze gazeOf(SkyFace face) {
  const Vector east(1, 0, 0), up(0, 1, 0), north(0, 0, 1);
  switch (face) {
    case SkyFace::top:
      return {up, north, -east};
    case SkyFace::bottom:
      return {-up, north, east};
    case SkyFace::north:
      return {north, -east, up};
    case SkyFace::west:
      return {-east, -north, up};
    case SkyFace::south:
      return {-north, east, up};
    case SkyFace::east:
      return {east, north, up};
  }
  return {};
}

}  // namespace

Gaze lookTowards(float turn, float rise) {
  const float c = std::cos(turn), s = std::sin(turn), level = std::cos(rise), high = std::sin(rise);
  return {{c * level, high, s * level}, {-s, 0, c}, {-c * high, level, -s * high}};
}

Canvas viewOf(const Environment& world, const Gaze& gaze, float reach, int width, int height, int samples) {
  const float aspect = static_cast<float>(height) / static_cast<float>(width);
  return paintSmooth(width, height, samples, [&](float u, float v) {
    const Vector across = gaze.right * (reach * (2 * u - 1)), rise = gaze.up * (reach * aspect * (1 - 2 * v));
    return world(unit(gaze.forward + across + rise));
  });
}

Canvas boxFace(const Environment& world, SkyFace face, int side) {
  const float last = static_cast<float>(side - 1);
  return viewOf(world, gazeOf(face), static_cast<float>(side) / last, side, side, 1);
}

Canvas sphereMap(const Environment& world, const Gaze& gaze, int side, int samples) {
  return paintSmooth(side, side, samples, [&](float u, float v) {
    float x = 2 * u - 1, y = 1 - 2 * v;
    const float out = std::max(1.0f, std::hypot(x, y) / 0.999f);
    x /= out, y /= out;
    const float z = std::sqrt(1 - x * x - y * y);  // of the normal, towards the eye
    return world(unit(gaze.right * (2 * z * x) + gaze.up * (2 * z * y) - gaze.forward * (2 * z * z - 1)));
  });
}

}  // namespace vex::image
