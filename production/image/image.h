#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

// Pictures in the making: rows from top to bottom, colours as linear-in-display values (0 black,
// 1 full), alpha beside them. Texel centres lie at (x + 0.5, y + 0.5); the functions below see the
// picture as u across and v down, both 0 to 1.

namespace vex::image {

struct Colour4 {
  float r = 0, g = 0, b = 0;
  float a = 1;
};

// Arithmetic takes alpha along; a picture with a mask sets its alpha last.
inline Colour4 operator+(Colour4 p, Colour4 q) {
  return {p.r + q.r, p.g + q.g, p.b + q.b, p.a + q.a};
}
inline Colour4 operator*(Colour4 p, float k) {
  return {p.r * k, p.g * k, p.b * k, p.a * k};
}
inline Colour4 operator*(Colour4 p, Colour4 q) {
  return {p.r * q.r, p.g * q.g, p.b * q.b, p.a * q.a};
}

inline float clamp01(float value) {
  return value < 0 ? 0.0f : value > 1 ? 1.0f : value;
}
inline float mix(float p, float q, float k) {
  return p + (q - p) * k;
}
inline Colour4 mix(Colour4 p, Colour4 q, float k) {
  return {mix(p.r, q.r, k), mix(p.g, q.g, k), mix(p.b, q.b, k), mix(p.a, q.a, k)};
}

// 0 at `from`, 1 at `to` (which may be the smaller one), smooth at both.
inline float smoothStep(float from, float to, float value) {
  const float t = clamp01((value - from) / (to - from));
  return t * t * (3 - 2 * t);
}

template <typename T>
struct Grid {
  int width = 0, height = 0;
  std::vector<T> texels;

  Grid() = default;
  Grid(int w, int h, T value = {})
      : width(w), height(h), texels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), value) {}
  T& at(int x, int y) {
    return texels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
  const T& at(int x, int y) const { return const_cast<Grid*>(this)->at(x, y); }
};

using Canvas = Grid<Colour4>;
using Field = Grid<float>;

// One call of `texel(u, v)` for each texel centre; its result type decides what comes out.
template <typename Function>
auto paint(int width, int height, Function texel) {
  Grid<decltype(texel(0.0f, 0.0f))> grid(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      grid.at(x, y) = texel((static_cast<float>(x) + 0.5f) / static_cast<float>(width),
                            (static_cast<float>(y) + 0.5f) / static_cast<float>(height));
  return grid;
}

// As paint, with `side` x `side` samples a texel.
template <typename Function>
auto paintSmooth(int width, int height, int side, Function texel) {
  const auto fine = paint(width * side, height * side, texel);
  auto grid = Grid<decltype(texel(0.0f, 0.0f))>(width, height);
  const float share = 1.0f / static_cast<float>(side * side);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      auto sum = fine.at(x * side, y * side) * share;
      for (int i = 1; i < side * side; ++i)
        sum = sum + fine.at(x * side + i % side, y * side + i / side) * share;
      grid.at(x, y) = sum;
    }
  return grid;
}

// Each texel through `change`.
template <typename T, typename Function>
auto map(const Grid<T>& source, Function change) {
  Grid<decltype(change(source.texels[0]))> result(source.width, source.height);
  for (std::size_t i = 0; i < source.texels.size(); ++i) result.texels[i] = change(source.texels[i]);
  return result;
}

}  // namespace vex::image
