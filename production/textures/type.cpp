#include "production/image/lettering.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

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
      .body = &boneRamp, .glow = &boneRamp, .bevel = 3, .glowReach = 12, .glowStrength = 0.3f, .wear = 0.6f};
  look.tear = frame == 0 ? 0.03f : 0.2f + 0.28f * static_cast<float>(frame);
  look.seed = 211 + static_cast<std::uint32_t>(frame) * 9;
  return drawLettering(distanceTo(set, width, height), look);
}

}  // namespace

Products typePictures() {
  Products products;
  for (int frame = 0; frame < 4; ++frame) {
    const std::string number = std::to_string(frame + 1);
    products.push_back(
        picture("halvane" + number, PictureKind::jpeg, "type", 4, [frame](const Settings& settings) {
          return tornType(settings, 1024, "halvane", 0.34f, 0.25f, frame);
        }));
    products.push_back(
        picture("presents" + number, PictureKind::jpeg, "type", 1, [frame](const Settings& settings) {
          return tornType(settings, 512, "presents", 0.5f, 0.19f, frame);
        }));
  }
  return products;
}

}  // namespace vex
