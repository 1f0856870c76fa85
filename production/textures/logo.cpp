#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/report.h"
#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"
#include "production/textures/title.h"
#include "scenes/word_endings.h"

namespace vex {

using namespace image;

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

// --- What it is made of in each world

// What polished metal shows of a bright sky and a ground that is as dark as `dark` under the horizon, -1
// straight below to 1 straight above.
float mirrored(float up, float dark) {
  const float sky = mix(1.0f, 0.42f, std::pow(clamp01(up), 0.8f));
  const float floor = mix(dark, 0.62f, std::pow(clamp01(-up), 0.9f));
  return mix(floor, sky, smoothStep(-0.05f, 0.05f, up));
}

// Where the surface looks: level faces see the sky in their upper halves, the ground in their lower ones, and
// `dents` make the horizon uneven.
float outlook(const FacePoint& at, float dents) {
  return 0.75f * at.up + 1.1f * (0.5f - at.y) + dents * fractal(at.x * 4, at.y * 3, 0, 2, 0.5f, 811);
}

Colour4 copperFace(const FacePoint& at) {
  const float brushed = gradientNoise(at.x * 5, at.y * 60, 0, 812);
  return gradient(copperRamp,
                  0.14f + 0.72f * mirrored(outlook(at, 0.1f), 0.05f) + 0.05f * brushed + 0.45f * at.gloss);
}

// The lamps stand in it twice: pale above, magenta from the floor.
Colour4 chromeFace(const FacePoint& at) {
  const float up = outlook(at, 0.22f);
  const Colour4 sky =
      gradient(steelRamp, 0.08f + 0.8f * mirrored(up, 0.32f) * smoothStep(-0.5f, 0.0f, up) + 0.5f * at.gloss);
  return sky + gradient(violetRamp, 0.8f * smoothStep(0.02f, -0.42f, up));
}

// Clear within; what shines are its edges and the light that it gathers on the far side.
Colour4 glassFace(const FacePoint& at) {
  const float rim = std::exp(-at.inside / 1.5f), core = smoothStep(1.0f, 9.0f, at.inside);
  const float stria = smoothStep(0.75f, 0.97f, ridges(at.x * 4 + at.y * 2, at.y * 6 - at.x, 0, 3, 0.5f, 831));
  return gradient(tealRamp, 0.5f + 0.5f * rim + 0.42f * at.below * (1 - 0.5f * core) + 0.9f * at.gloss +
                                0.14f * stria * core);
}

Colour4 emberFace(const FacePoint& at) {
  const float bend = 0.06f * fractal(at.x * 6, at.y * 6, 0, 3, 0.5f, 841);
  const float veins = ridges(at.x * 4.5f + bend, at.y * 4.5f - bend, 0, 2, 0.5f, 842);
  const float foot = smoothStep(0.25f, 0.95f, at.y);
  const float heat = 1.15f * smoothStep(0.80f - 0.22f * foot, 0.97f, veins) + 0.7f * foot * at.below +
                     0.7f * std::exp(-at.inside / 1.4f) * (0.35f + 0.65f * foot);
  const float grit = fractal(at.x * 20, at.y * 20, 0, 4, 0.6f, 843);
  const Colour4 stone =
      gradient(boneRamp, 0.36f + 0.44f * at.light + 0.07f * grit) * Colour4{1, 0.74f, 0.56f};
  return stone + gradient(emberRamp, 0.92f * heat);
}

LetteringLook polishedCopper() {
  return {.face = copperFace,
          .glow = &copperRamp,
          .bevel = 11,
          .glowReach = 12,
          .glowStrength = 0.3f,
          .wear = 0.02f};
}
// Under magenta lamps.
LetteringLook wetChrome() {
  return {
      .face = chromeFace, .glow = &violetRamp, .bevel = 12, .glowReach = 12, .glowStrength = 0.3f, .wear = 0};
}
LetteringLook tealGlass() {
  return {
      .face = glassFace, .glow = &tealRamp, .bevel = 9, .glowReach = 12, .glowStrength = 0.34f, .wear = 0};
}
// Fire in its cracks.
LetteringLook emberStone() {
  return {.face = emberFace,
          .glow = &emberRamp,
          .bevel = 5,
          .glowReach = 12,
          .glowStrength = 0.55f,
          .wear = 0.8f};
}

// White hot; as a darkening picture it is the word's shadow.
LetteringLook struckWhite() {
  const auto face = [](const FacePoint&) { return gradient(boneRamp, 1); };
  return {.face = face, .glow = &boneRamp, .bevel = 5, .glowReach = 9, .glowStrength = 0.85f, .wear = 0};
}

// --- The pictures

// In each material the word whole and torn; the last burns white instead.
struct TitleLook {
  LetteringLook (*material)();
  float tear;
};
constexpr TitleLook titleLooks[titleFrames] = {{polishedCopper, 0}, {polishedCopper, 0.6f}, {wetChrome, 0},
                                               {wetChrome, 0.6f},   {tealGlass, 0},         {tealGlass, 0.6f},
                                               {emberStone, 0},     {struckWhite, 0.08f}};

Canvas titleWord(const Settings& settings, int frame) {
  const int width = settings.side(512), height = width / 2;
  const auto size = static_cast<float>(height);
  const Lettering text = titleLetters();
  const float scale = size * 0.72f;
  const float right = static_cast<float>(width) * 0.955f;
  const Lettering set =
      placed(text, scale * wordSqueeze, scale, right - text.right * scale * wordSqueeze, size * wordBaseline);
  LetteringLook look = titleLooks[frame].material();
  look.tear = titleLooks[frame].tear;
  look.seed = 31 + static_cast<std::uint32_t>(frame) * 5;
  return drawLettering(distanceTo(set, width, height), look);
}

Canvas wordEnding(const Settings& settings, const std::string& letters, LetteringLook look) {
  const int width = settings.side(1024), height = width / 4;
  const auto size = static_cast<float>(height);
  const Lettering text = setText(geometric, letters, 0.05f);
  const float scale = size * 0.40f / (0 - setText(geometric, "x", 0).top);
  const float left = static_cast<float>(width) * endingStart;
  const Lettering set = placed(text, scale * endingSqueeze, scale, left - text.left * scale * endingSqueeze,
                               size * endingBaseline);
  look.bevel *= 0.5f;  // of thinner strokes
  look.wear *= 0.7f;
  look.seed = 71 + static_cast<std::uint32_t>(letters.size()) * 13;
  // Black for a JPEG block from the borders, whose error would show there.
  Canvas picture = drawLettering(distanceTo(set, width, height), look);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const int inset = std::min({x, y, width - 1 - x, height - 1 - y});
      picture.at(x, y) = picture.at(x, y) * smoothStep(8, 12, static_cast<float>(inset));
    }
  return picture;
}

// A breath of ink behind the letters, which stand left of the middle.
Canvas backing(const Settings& settings) {
  const int width = settings.side(512), height = width / 4;
  return paint(width, height, [](float u, float v) {
    const float x = (u - 0.46f) / 0.44f, y = (v - 0.5f) / 0.48f;
    Colour4 colour = ink;
    colour.a = 0.3f * smoothStep(1.0f, 0.0f, std::hypot(x, y));
    return colour;
  });
}

// The world that each ending is shown in.
constexpr struct {
  std::string_view ending;
  LetteringLook (*material)();
} endingLooks[] = {{"ed", emberStone}, {"ing", tealGlass},   {"ation", polishedCopper}, {"atious", wetChrome},
                   {"er", emberStone}, {"illum", tealGlass}, {"edly", emberStone}};

// Whole, then struck.
LetteringLook lookOf(std::string_view ending, int frame) {
  if (frame > 0) {
    LetteringLook look = struckWhite();
    look.tear = 0.08f;
    return look;
  }
  for (const auto& [name, material] : endingLooks)
    if (name == ending) return material();
  fatalError("the word ending %.*s has no material", static_cast<int>(ending.size()), ending.data());
}

}  // namespace

Products logoPictures() {
  Products products;
  // Texture names without their folder.
  const auto add = [&](const std::string& textureName, PictureKind kind, float work,
                       std::function<Canvas(const Settings&)> make) {
    products.push_back(picture(textureName.substr(5), kind, work, std::move(make)));
  };
  for (int frame = 0; frame < titleFrames; ++frame)
    add(logoFrameName(titleTextureStem, frame + 1), PictureKind::bmp, 0.5f,
        [frame](const Settings& settings) { return titleWord(settings, frame); });
  for (const WordEnding& ending : wordEndings)
    for (int frame = 0; frame < wordEndingFrames; ++frame)
      add(logoFrameName(ending.textureStem, frame + 1), PictureKind::jpeg, 1,
          [&ending, frame](const Settings& settings) {
            return wordEnding(settings, ending.text, lookOf(ending.text, frame));
          });
  // Two endings are shown in the alien's world as well.
  for (const char* letters : {"er", "ation"})
    products.push_back(
        picture(std::string("chrome_") + letters, PictureKind::jpeg, 1,
                [letters](const Settings& settings) { return wordEnding(settings, letters, wetChrome()); }));
  products.push_back(picture("vex_substract", PictureKind::maskedBmp, 0.3f, backing));
  return products;
}

}  // namespace vex
