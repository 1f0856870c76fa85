#pragma once

#include <cmath>
#include <vector>

#include "production/image/image.h"

// Work on whole pictures. Where a picture tiles, EdgeMode::wrap keeps it tiling.

namespace vex::image {

enum class EdgeMode { clamp, wrap };

inline int edgeIndex(int index, int size, EdgeMode mode) {
  if (mode == EdgeMode::clamp) return index < 0 ? 0 : index >= size ? size - 1 : index;
  const int rest = index % size;
  return rest < 0 ? rest + size : rest;
}

// Bilinear sample at u across, v down.
template <typename T>
T sample(const Grid<T>& source, float u, float v, EdgeMode mode) {
  const float x = u * static_cast<float>(source.width) - 0.5f,
              y = v * static_cast<float>(source.height) - 0.5f;
  const float fx = std::floor(x), fy = std::floor(y);
  const int x0 = edgeIndex(static_cast<int>(fx), source.width, mode),
            x1 = edgeIndex(static_cast<int>(fx) + 1, source.width, mode);
  const int y0 = edgeIndex(static_cast<int>(fy), source.height, mode),
            y1 = edgeIndex(static_cast<int>(fy) + 1, source.height, mode);
  return mix(mix(source.at(x0, y0), source.at(x1, y0), x - fx),
             mix(source.at(x0, y1), source.at(x1, y1), x - fx), y - fy);
}

// Gaussian of standard deviation `sigma` texels.
Field blur(const Field& source, float sigma, EdgeMode mode);
Canvas blur(const Canvas& source, float sigma, EdgeMode mode);

// Light over a height field (heights and texels in the same unit): x, y, z towards the light, z out
// of the picture, y down. Returns the cosine of the angle, 0 in the shade.
Field lightRelief(const Field& heights, float x, float y, float z, EdgeMode mode);

// The highlight of the same light seen from the front: cosine of the half-way vector to `power`.
Field glossRelief(const Field& heights, float x, float y, float z, float power, EdgeMode mode);

// Where the same light reaches the field at all: 1, or 0 in the shadow of what stands in its way up to
// `reach` texels off, with an edge as soft as `softness` (of the slope of the light, 0.1 or more).
Field castShadows(const Field& heights, float x, float y, float z, float reach, float softness,
                  EdgeMode mode);

// Colour of `value` in a table of evenly spaced colours from 0 to 1.
Colour4 gradient(const std::vector<Colour4>& stops, float value);

// Fades to exactly 0 within `margin` of each border (in u and v).
float borderFade(float u, float v, float margin);

}  // namespace vex::image
