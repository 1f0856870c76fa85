#include <cmath>

#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"
#include "production/textures/title.h"
#include "scenes/word_endings.h"

namespace vex {

namespace {

// The logo's quads are 0.67 x 0.5 and 1.5 x 0.5 of a screen of 16:9: texels are wider than high there, so the
// letters are set narrower by these factors.
constexpr float wordSqueeze = 0.84f;
constexpr float endingSqueeze = 0.75f;

constexpr float wordBaseline = 0.84f;    // of the height
constexpr float endingBaseline = 0.74f;  // the ending stands a little higher, in the word's middle
constexpr float endingStart = 0.135f;    // the word's quad reaches over the ending's by 0.17 / 1.5

// The face's own v closes at its top and reads as a D from afar. This one stands open and comes to a point;
// corners in heights of an x, y up.
constexpr float openV[][2] = {{-0.14f, 0.78f}, {0.07f, 1.06f}, {0.33f, 0.86f}, {0.33f, 0.34f},
                              {0.46f, 0.12f},  {0.58f, 0.36f}, {0.58f, 0.72f}, {0.49f, 0.82f},
                              {0.70f, 1.08f},  {0.94f, 0.88f}, {0.87f, 0.78f}, {0.87f, 0.30f},
                              {0.43f, -0.21f}, {0.03f, 0.20f}, {0.03f, 0.70f}};
constexpr float openVWidth = 1.02f;

// The face's x is upright with bars and reads as an E. This one is two broken strokes that cross, the falling
// one broader, with diamonds for ends.
constexpr float crossedX[][2] = {
    {-0.10f, 0.80f},  {0.10f, 1.06f},  {0.37f, 0.87f},  // the head at the upper left
    {0.523f, 0.677f}, {0.65f, 0.80f},  {0.58f, 0.86f},  // the upper notch
    {0.80f, 1.08f},   {1.03f, 0.88f},  {0.90f, 0.78f},  // at the upper right
    {0.659f, 0.545f}, {0.90f, 0.31f},                   // the right notch
    {1.08f, 0.22f},   {0.86f, -0.08f}, {0.60f, 0.12f},  // the foot at the lower right
    {0.446f, 0.332f}, {0.30f, 0.19f},  {0.36f, 0.12f},  // the lower notch
    {0.15f, -0.09f},  {-0.08f, 0.12f}, {0.05f, 0.22f},  // at the lower left
    {0.310f, 0.464f}, {0.08f, 0.69f}};                  // the left notch
constexpr float crossedXStart = 0.17f;                  // after the e

template <std::size_t count>
void addOutline(Lettering& text, const float (&corners)[count][2], float x) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto& from = corners[i];
    const auto& to = corners[(i + 1) % count];
    text.edges.push_back({x + from[0], -from[1], x + to[0], -to[1]});
  }
}

}  // namespace

Lettering titleLetters() {
  const float heightOfX = -setText(blackletter, "x", 0).top;
  Lettering text = placed(setText(blackletter, "e", 0), 1 / heightOfX, 1 / heightOfX, openVWidth, 0);
  addOutline(text, crossedX, text.right + crossedXStart);
  addOutline(text, openV, 0);
  return placed(std::move(text), 1, 1, 0, 0);
}

namespace {

Canvas titleWord(const Settings& settings, int frame) {
  const int width = settings.side(256), height = width / 2;
  const auto size = static_cast<float>(height);
  const Lettering text = titleLetters();
  const float scale = size * 0.72f;
  const float right = static_cast<float>(width) * 0.955f;
  const Lettering set =
      placed(text, scale * wordSqueeze, scale, right - text.right * scale * wordSqueeze, size * wordBaseline);
  LetteringLook look{
      .body = &boneRamp, .glow = &acidRamp, .bevel = 7, .glowReach = 11, .glowStrength = 0.5f, .wear = 0.3f};
  look.tear = frame == 0 ? 0.0f : 0.22f + 0.08f * static_cast<float>(frame);
  look.seed = 31 + static_cast<std::uint32_t>(frame) * 5;
  return drawLettering(distanceTo(set, width, height), look);
}

Canvas wordEnding(const Settings& settings, const std::string& letters, int frame) {
  const int width = settings.side(512), height = width / 4;
  const auto size = static_cast<float>(height);
  const Lettering text = setText(geometric, letters, 0.05f);
  const float scale = size * 0.40f / (0 - setText(geometric, "x", 0).top);
  const float left = static_cast<float>(width) * endingStart;
  const Lettering set = placed(text, scale * endingSqueeze, scale, left - text.left * scale * endingSqueeze,
                               size * endingBaseline);
  LetteringLook look{.body = &boneRamp,
                     .glow = &acidRamp,
                     .bevel = 3.5f,
                     .glowReach = 9,
                     .glowStrength = 0.42f,
                     .wear = 0.3f};
  look.tear = frame == 0 ? 0.0f : 0.75f;
  look.seed = 71 + static_cast<std::uint32_t>(frame) + static_cast<std::uint32_t>(letters.size()) * 13;
  return drawLettering(distanceTo(set, width, height), look);
}

// A smear of ink behind the letters, so that they read on any ground. They stand left of the middle.
Canvas backing(const Settings& settings) {
  const int width = settings.side(512), height = width / 4;
  return paint(width, height, [=](float u, float v) {
    const float x = (u - 0.5f) * 2, y = (v - 0.5f) * 2;
    const float rough =
        0.30f * fractal(u * 5, v * 3, 0, 5, 0.55f, 5) + 0.22f * fractal(u * 18, v * 2, 0, 4, 0.5f, 6);
    const float body = 1 - std::hypot((x + 0.2f) * 1.2f, y * 0.92f) + rough * (0.3f + 0.7f * std::fabs(x));
    Colour4 colour = gradient(acidRamp, 0.09f * smoothStep(0.5f, 0.0f, body));
    colour.a = 0.78f * smoothStep(0.0f, 0.55f, body) *
               smoothStep(1.1f / static_cast<float>(height), 0.14f,
                          std::min(std::min(u, 1 - u) * 4, std::min(v, 1 - v)));
    return colour;
  });
}

}  // namespace

Products logoPictures() {
  Products products;
  // Texture names without their folder.
  const auto add = [&](const std::string& textureName, float work,
                       std::function<Canvas(const Settings&)> make) {
    products.push_back(picture(textureName.substr(5), PictureKind::bmp, "logo", work, std::move(make)));
  };
  for (int frame = 0; frame < titleFrames; ++frame)
    add(logoFrameName(titleTextureStem, frame + 1), 0.5f,
        [frame](const Settings& settings) { return titleWord(settings, frame); });
  for (const WordEnding& ending : wordEndings)
    for (int frame = 0; frame < wordEndingFrames; ++frame)
      add(logoFrameName(ending.textureStem, frame + 1), 1,
          [&ending, frame](const Settings& settings) { return wordEnding(settings, ending.text, frame); });
  products.push_back(picture("vex_substract", PictureKind::maskedBmp, "logo", 0.3f, backing));
  return products;
}

}  // namespace vex
