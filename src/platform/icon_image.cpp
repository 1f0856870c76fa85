#include "platform/icon_image.h"

#include <algorithm>
#include <cmath>

#include "resources/icon.h"

namespace vex {

namespace {

bool inside(std::span<const icon::Point> outline, float x, float y) {
  bool in = false;
  for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
    const icon::Point a = outline[i], b = outline[j];
    if ((a.y > y) != (b.y > y) && x < a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x)) in = !in;
  }
  return in;
}

bool onPlate(float x, float y) {
  const float core = icon::gridSize / 2 - icon::cornerRadius;
  const float dx = std::max(std::abs(x - icon::gridSize / 2) - core, 0.0f);
  const float dy = std::max(std::abs(y - icon::gridSize / 2) - core, 0.0f);
  return dx * dx + dy * dy <= icon::cornerRadius * icon::cornerRadius;
}

std::uint32_t colourAt(float x, float y) {
  std::uint32_t colour = icon::inkBlack;
  for (const icon::Outline& outline : icon::outlines) {
    if (inside(outline.points, x, y)) colour = outline.rgb;
  }
  return colour;
}

}  // namespace

std::vector<std::uint32_t> drawIcon(int size) {
  constexpr int samples = 5;  // along each side of a pixel
  std::vector<std::uint32_t> pixels;
  pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
  const float step = icon::gridSize / static_cast<float>(size * samples);
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      std::uint32_t red = 0, green = 0, blue = 0, covered = 0;
      for (int s = 0; s < samples * samples; ++s) {
        const float u = (static_cast<float>(x * samples + s % samples) + 0.5f) * step;
        const float v = (static_cast<float>(y * samples + s / samples) + 0.5f) * step;
        if (!onPlate(u, v)) continue;
        const std::uint32_t rgb = colourAt(u, v);
        red += rgb >> 16;
        green += rgb >> 8 & 255;
        blue += rgb & 255;
        ++covered;
      }
      const std::uint32_t alpha = covered * 255 / (samples * samples);
      const std::uint32_t share = std::max(covered, 1u);
      pixels.push_back(alpha << 24 | red / share << 16 | green / share << 8 | blue / share);
    }
  }
  return pixels;
}

}  // namespace vex
