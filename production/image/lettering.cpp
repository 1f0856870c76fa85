#include "production/image/lettering.h"

#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/noise.h"

namespace vex::image {

namespace {

// Tears run nearly level: between two of them lies a strip that is dragged sideways. Returns the distances as
// displaced, with gaps along the tears.
Field tearApart(const Field& distance, const LetteringLook& look) {
  const float height = static_cast<float>(distance.height), unit = height / 128;
  const auto seed = static_cast<int>(look.seed);
  return paint(distance.width, distance.height, [&](float u, float v) {
    const float aspect = static_cast<float>(distance.width) / height;
    const float jag = 0.05f * fractal(u * aspect * 5, v * 2, 0, 4, 0.6f, look.seed + 7);
    const float strips = 2.2f + 2.5f * look.tear;
    const float place = (v + jag) * strips + hashUnit(seed, 3, 91);
    const int strip = static_cast<int>(std::floor(place));
    const float draw = hashUnit(strip, seed, 11) - 0.5f;
    const float shift = look.tear * draw * std::fabs(draw) * 0.9f / aspect;
    const float within =
        std::min(place - std::floor(place), 1 - (place - std::floor(place))) / strips * height;
    const float gap =
        look.tear > 0 ? look.tear * 2.2f * unit * (0.3f + hashUnit(strip, seed, 12)) - within : -9;
    return std::max(sample(distance, u + shift, v + look.tear * 0.02f * draw, EdgeMode::clamp), gap);
  });
}

}  // namespace

Canvas drawLettering(const Field& distance, const LetteringLook& look) {
  const float unit = static_cast<float>(distance.height) / 128;
  const Field torn = look.tear > 0 ? tearApart(distance, look) : distance;
  const int width = distance.width, height = distance.height;
  const float aspect = static_cast<float>(width) / static_cast<float>(height);

  // Wear eats the edges and leaves pits; thin strokes are spared in proportion to their bevel.
  const float bite = look.wear * unit * look.bevel / 5;
  const Field worn = paint(width, height, [&](float u, float v) {
    const float edge = fractal(u * aspect * 12, v * 12, 0, 4, 0.6f, look.seed);
    const float pits = ridges(u * aspect * 5, v * 9, 0, 4, 0.6f, look.seed + 40);
    return sample(torn, u, v, EdgeMode::clamp) + bite * (0.9f * edge + 6 * smoothStep(0.76f, 0.95f, pits));
  });
  const Field heights = blur(
      paint(width, height,
            [&](float u, float v) {
              const float inside = clamp01(-sample(worn, u, v, EdgeMode::clamp) / (look.bevel * unit));
              const float grit = fractal(u * aspect * 26, v * 26, 0, 3, 0.6f, look.seed + 80);
              return unit * 0.8f * (look.bevel * std::sqrt(inside * (2 - inside)) + 0.5f * look.wear * grit);
            }),
      0.8f * unit, EdgeMode::clamp);
  const Field light = lightRelief(heights, -0.6f, -1, 0.75f, EdgeMode::clamp);
  const Field gloss = glossRelief(heights, -0.6f, -1, 0.75f, 18, EdgeMode::clamp);
  const Field below = lightRelief(heights, 0.3f, 1, 0.35f, EdgeMode::clamp);
  const float texel = 1 / static_cast<float>(height);

  const Field ink = map(worn, [&](float d) { return clamp01(0.5f - d / (1.2f * std::max(unit, 0.6f))); });
  const Field halo = blur(ink, look.glowReach * 0.25f * unit, EdgeMode::clamp);
  const Field wideHalo = blur(ink, look.glowReach * unit, EdgeMode::clamp);
  return paint(width, height, [&](float u, float v) {
    const auto read = [&](const Field& field) { return sample(field, u, v, EdgeMode::clamp); };
    const float body = read(ink);
    const float around = look.glowStrength * (0.75f * read(halo) + 1.1f * read(wideHalo));
    const float rise =
        (sample(heights, u, v + texel, EdgeMode::clamp) - sample(heights, u, v - texel, EdgeMode::clamp)) / 2;
    const Colour4 face = look.face({.x = u * aspect,
                                    .y = v,
                                    .inside = -read(worn) / unit,
                                    .up = rise / std::sqrt(1 + rise * rise),
                                    .light = read(light),
                                    .gloss = read(gloss),
                                    .below = read(below)}) *
                         body;
    const float counter = smoothStep(0.0f, look.bevel * unit, read(worn));  // no light in the counters
    const Colour4 shine = gradient(*look.glow, around * (1 - body) * (0.25f + 0.75f * counter));
    const float edge = smoothStep(std::max(0.012f, 1.1f / static_cast<float>(height)), 0.07f,
                                  std::min(std::min(u, 1 - u) * aspect, std::min(v, 1 - v)));
    return (face + shine) * edge;
  });
}

}  // namespace vex::image
