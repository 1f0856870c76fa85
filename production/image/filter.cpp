#include "production/image/filter.h"

#include <algorithm>

namespace vex::image {

namespace {

std::vector<float> gaussian(float sigma) {
  const int reach = std::max(1, static_cast<int>(std::ceil(sigma * 3)));
  std::vector<float> weights;
  float total = 0;
  for (int i = -reach; i <= reach; ++i) {
    weights.push_back(std::exp(-static_cast<float>(i * i) / (2 * sigma * sigma)));
    total += weights.back();
  }
  for (float& weight : weights) weight /= total;
  return weights;
}

template <typename T>
void addScaled(T* sums, const T* from, int count, float weight) {
  for (int i = 0; i < count; ++i) sums[i] = sums[i] + from[i] * weight;
}

template <typename T>
Grid<T> blurAcross(const Grid<T>& source, const std::vector<float>& weights, EdgeMode mode) {
  const int taps = static_cast<int>(weights.size());
  Grid<T> result(source.width, source.height, T{} * 0.0f);
  std::vector<T> row(static_cast<std::size_t>(source.width + taps - 1));  // with what lies beyond its ends
  for (int y = 0; y < source.height; ++y) {
    for (std::size_t i = 0; i < row.size(); ++i)
      row[i] = source.at(edgeIndex(static_cast<int>(i) - taps / 2, source.width, mode), y);
    for (int i = 0; i < taps; ++i)
      addScaled(&result.at(0, y), row.data() + i, source.width, weights[static_cast<std::size_t>(i)]);
  }
  return result;
}

template <typename T>
Grid<T> blurDown(const Grid<T>& source, const std::vector<float>& weights, EdgeMode mode) {
  const int taps = static_cast<int>(weights.size());
  Grid<T> result(source.width, source.height, T{} * 0.0f);
  for (int y = 0; y < source.height; ++y)
    for (int i = 0; i < taps; ++i)
      addScaled(&result.at(0, y), &source.at(0, edgeIndex(y + i - taps / 2, source.height, mode)),
                source.width, weights[static_cast<std::size_t>(i)]);
  return result;
}

template <typename T>
Grid<T> blurGrid(const Grid<T>& source, float sigma, EdgeMode mode) {
  if (sigma < 0.2f) return source;
  const std::vector<float> weights = gaussian(sigma);
  return blurDown(blurAcross(source, weights, mode), weights, mode);
}

// Calls `shade` with the unit normal of each texel.
template <typename Function>
auto shadeRelief(const Field& heights, EdgeMode mode, Function shade) {
  Grid<decltype(shade(0.0f, 0.0f, 0.0f))> result(heights.width, heights.height);
  for (int y = 0; y < heights.height; ++y)
    for (int x = 0; x < heights.width; ++x) {
      const auto height = [&](int i, int j) {
        return heights.at(edgeIndex(x + i, heights.width, mode), edgeIndex(y + j, heights.height, mode));
      };
      const float nx = (height(-1, 0) - height(1, 0)) / 2, ny = (height(0, -1) - height(0, 1)) / 2;
      const float length = std::sqrt(nx * nx + ny * ny + 1);
      result.at(x, y) = shade(nx / length, ny / length, 1 / length);
    }
  return result;
}

}  // namespace

Field blur(const Field& source, float sigma, EdgeMode mode) {
  return blurGrid(source, sigma, mode);
}
Canvas blur(const Canvas& source, float sigma, EdgeMode mode) {
  return blurGrid(source, sigma, mode);
}

Field lightRelief(const Field& heights, float x, float y, float z, EdgeMode mode) {
  const float length = std::sqrt(x * x + y * y + z * z);
  return shadeRelief(heights, mode, [=](float nx, float ny, float nz) {
    return std::max(0.0f, (nx * x + ny * y + nz * z) / length);
  });
}

Field glossRelief(const Field& heights, float x, float y, float z, float power, EdgeMode mode) {
  const float length = std::sqrt(x * x + y * y + z * z);
  const float hx = x / length, hy = y / length, hz = z / length + 1;
  return map(lightRelief(heights, hx, hy, hz, mode), [=](float cosine) { return std::pow(cosine, power); });
}

Field castShadows(const Field& heights, float x, float y, float z, float reach, float softness,
                  EdgeMode mode) {
  const float level = std::hypot(x, y), slope = z / level;
  const float stepX = x / level, stepY = y / level;
  Field result(heights.width, heights.height, 1);
  for (int row = 0; row < heights.height; ++row)
    for (int column = 0; column < heights.width; ++column) {
      float steepest = -1e9f;  // of what stands in the light's way
      for (float away = 1; away <= reach; away += away < 8 ? 1.0f : away / 8) {
        const int i = column + static_cast<int>(std::lround(stepX * away)),
                  j = row + static_cast<int>(std::lround(stepY * away));
        const float there = heights.at(edgeIndex(i, heights.width, mode), edgeIndex(j, heights.height, mode));
        steepest = std::max(steepest, (there - heights.at(column, row)) / away);
      }
      result.at(column, row) = smoothStep(slope + softness / 2, slope - softness / 2, steepest);
    }
  return result;
}

Colour4 gradient(const std::vector<Colour4>& stops, float value) {
  const float position = clamp01(value) * static_cast<float>(stops.size() - 1);
  const std::size_t index = std::min(static_cast<std::size_t>(position), stops.size() - 2);
  return mix(stops[index], stops[index + 1], position - static_cast<float>(index));
}

float borderFade(float u, float v, float margin) {
  const float nearest = std::min(std::min(u, 1 - u), std::min(v, 1 - v));
  return smoothStep(0.02f, margin, nearest);
}

}  // namespace vex::image
