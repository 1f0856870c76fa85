#include <algorithm>
#include <cmath>

#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

// Cracked bone before the burning cloud: dark above, and its feet and the edges towards the light burn.
Colour4 boneFace(const FacePoint& at) {
  const float foot = smoothStep(0.34f, 0.66f, at.y);
  const float rim = std::exp(-at.inside / 1.3f) * (0.3f + 0.7f * at.below);
  const float grit = fractal(at.x * 22, at.y * 22, 0, 3, 0.6f, 801);
  const float crack = smoothStep(0.80f, 0.95f, ridges(at.x * 7, at.y * 7, 0, 2, 0.5f, 803));
  return gradient(boneRamp,
                  (0.40f + 0.30f * foot + 0.16f * at.light + 0.10f * grit) * (1 - 0.6f * crack) + 0.7f * rim);
}

// Centred in the picture, `xHeight` of the height high. Full-screen pictures are stretched to 16:9 by the
// show.
Canvas tornType(const Settings& settings, int fullWidth, const std::string& letters, float spacing,
                float xHeight, int frame) {
  const int width = settings.side(fullWidth), height = width / 4;
  const auto size = static_cast<float>(height);
  const Lettering text = setText(geometric, letters, spacing);
  const float scale = size * xHeight / (0 - setText(geometric, "x", 0).top);
  const float middle = (text.left + text.right) / 2 * scale;
  const Lettering set =
      placed(text, scale, scale, static_cast<float>(width) / 2 - middle, size * (0.5f + xHeight * 0.62f));
  LetteringLook look{
      .face = boneFace, .glow = &boneRamp, .bevel = 5, .glowReach = 12, .glowStrength = 0.34f, .wear = 0.55f};
  look.tear = frame == 0 ? 0.03f : 0.2f + 0.28f * static_cast<float>(frame);
  look.seed = 211 + static_cast<std::uint32_t>(frame) * 9;
  return drawLettering(distanceTo(set, width, height), look);
}

}  // namespace

Products typePictures() {
  Products products;
  const auto add = [&](const char* name, int frames, float work, auto paintFrame) {
    for (int frame = 0; frame < frames; ++frame)
      products.push_back(picture(name + std::to_string(frame + 1), PictureKind::jpeg, work,
                                 [=](const Settings& settings) { return paintFrame(settings, frame); }));
  };
  add("halvane", 3, 3, [](const Settings& settings, int frame) {
    return tornType(settings, 1024, "halvane", 0.34f, 0.25f, frame);
  });
  add("presents", 2, 1, [](const Settings& settings, int frame) {
    return tornType(settings, 512, "presents", 0.5f, 0.19f, frame);
  });
  return products;
}

}  // namespace vex
