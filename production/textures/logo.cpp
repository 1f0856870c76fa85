#include <array>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// The logo's quads are 0.67 x 0.5 and 1.5 x 0.5 of a screen of 16:9: texels are wider than high there, so the
// letters are set narrower by these factors.
constexpr float wordSqueeze = 0.84f;
constexpr float endingSqueeze = 0.75f;

constexpr float baseline = 0.70f;      // of the height
constexpr float endingStart = 0.135f;  // the word's quad reaches over the ending's by 0.17 / 1.5

Image titleWord(const Settings& settings, int frame) {
  const int width = settings.side(256), height = width / 2;
  const auto size = static_cast<float>(height);
  const Lettering text = setText(blackletter, "vex", 0.01f);
  const float scale = size * 0.40f / (0 - setText(blackletter, "x", 0).top);
  const float right = static_cast<float>(width) * 0.955f;
  const Lettering set =
      placed(text, scale * wordSqueeze, scale, right - text.right * scale * wordSqueeze, size * baseline);
  LetteringLook look{.body = &boneRamp,
                     .glow = &acidRamp,
                     .bevel = 5,
                     .glowReach = 10,
                     .glowStrength = 0.42f,
                     .wear = 0.55f};
  look.tear = frame == 0 ? 0.06f : 0.25f + 0.1f * static_cast<float>(frame);
  look.seed = 31 + static_cast<std::uint32_t>(frame) * 5;
  return drawLettering(distanceTo(set, width, height), look);
}

Image wordEnding(const Settings& settings, const std::string& letters, int frame) {
  const int width = settings.side(512), height = width / 4;
  const auto size = static_cast<float>(height);
  const Lettering text = setText(geometricLight, letters, 0.03f);
  const float scale = size * 0.37f / (0 - setText(geometricLight, "x", 0).top);
  const float left = static_cast<float>(width) * endingStart;
  const Lettering set =
      placed(text, scale * endingSqueeze, scale, left - text.left * scale * endingSqueeze, size * baseline);
  LetteringLook look{
      .body = &boneRamp, .glow = &acidRamp, .bevel = 3, .glowReach = 9, .glowStrength = 0.34f, .wear = 0.3f};
  look.tear = frame == 0 ? 0.0f : 0.75f;
  look.seed = 71 + static_cast<std::uint32_t>(frame) + static_cast<std::uint32_t>(letters.size()) * 13;
  return drawLettering(distanceTo(set, width, height), look);
}

// A smear of ink behind the letters, so that they read on any ground.
Image backing(const Settings& settings) {
  const int width = settings.side(512), height = width / 4;
  return paint(width, height, [](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2;
    const float rough =
        0.30f * fractal(u * 5, v * 3, 0, 5, 0.55f, 5) + 0.22f * fractal(u * 18, v * 2, 0, 4, 0.5f, 6);
    const float body = 1 - std::hypot(x * 0.98f, y * 0.9f) + rough * (0.3f + 0.7f * std::fabs(x));
    Colour4 colour = gradient(acidRamp, 0.09f * smoothStep(0.5f, 0.0f, body));
    colour.a = 0.86f * smoothStep(0.0f, 0.42f, body) *
               smoothStep(0, 0.12f, std::min(std::min(u, 1 - u) * 4, std::min(v, 1 - v)));
    return colour;
  });
}

}  // namespace

Products logoPictures() {
  static constexpr std::array endings{"ed", "ing", "ation", "atious", "er", "illum", "edly"};
  Products products;
  for (int frame = 0; frame < 8; ++frame)
    products.push_back(picture("vex0" + std::to_string(frame + 1), PictureKind::bmp, "logo", 0.5f,
                               [frame](const Settings& settings) { return titleWord(settings, frame); }));
  for (const std::string ending : endings)
    for (int frame = 0; frame < 2; ++frame)
      products.push_back(
          picture(ending + "0" + std::to_string(frame + 1), PictureKind::bmp, "logo", 1,
                  [ending, frame](const Settings& settings) { return wordEnding(settings, ending, frame); }));
  products.push_back(picture("vex_substract", PictureKind::maskedBmp, "logo", 0.3f, backing));
  return products;
}

}  // namespace vex
