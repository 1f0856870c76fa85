#include <array>
#include <cmath>
#include <vector>

#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

using namespace image;

namespace {

constexpr int frameCount = 13;

// How far the lids are apart, 0 to 1, frame by frame: a tremor, a first look, then wide open.
constexpr std::array<float, frameCount> openings{0.00f, 0.10f, 0.03f, 0.30f, 0.42f, 0.36f, 0.40f,
                                                 0.46f, 0.54f, 0.66f, 0.80f, 0.94f, 1.02f};

// The picture is 4 units wide and 2 high, the middle is 0, y down.
struct Pose {
  float open;
  float gazeX, gazeY, pupil;
};

Pose poseOf(int frame) {
  const float open = openings[static_cast<std::size_t>(frame)];
  const float late = smoothStep(6.6f, 12, static_cast<float>(frame));
  return {open, mix(-0.16f, 0.02f, late), mix(0.14f, -0.02f, late),
          mix(0.25f, 0.15f, smoothStep(7.4f, 11.6f, static_cast<float>(frame)))};
}

constexpr float corner = 1.42f;  // half the distance of the corners

float lidShape(float x, float lean) {
  const float place = clamp01(1 - (x / corner) * (x / corner));
  return std::pow(place, 0.72f) * (1 + lean * x);
}
float upperLid(const Pose& pose, float x) {
  return 0.20f + 0.05f * x - (0.04f + 0.74f * pose.open) * lidShape(x, -0.10f);
}
float lowerLid(const Pose& pose, float x) {
  return 0.20f + 0.05f * x + (0.04f + 0.24f * pose.open) * lidShape(x, 0.12f);
}

Colour4 ball(const Pose& pose, float x, float y) {
  const float dx = x - pose.gazeX, dy = y + 0.05f - pose.gazeY;
  const float r = std::hypot(dx, dy), angle = std::atan2(dy, dx);
  const float iris = 0.56f;
  const float sphere = std::sqrt(clamp01(1 - (x * x + y * y) / 2.6f));
  if (r > iris) {
    const float veins = smoothStep(0.86f, 0.97f, ridges(x * 2.2f, y * 3.4f, 0, 4, 0.55f, 220)) *
                        smoothStep(0.4f, 0.9f, std::fabs(x));
    const Colour4 white =
        gradient(boneRamp, 0.56f * sphere * sphere * (0.8f + 0.2f * smoothStep(-0.5f, 0.3f, dy)));
    const float limbus = smoothStep(iris + 0.07f, iris, r);
    return mix(mix(white, Colour4{0.32f, 0.07f, 0.05f}, 0.6f * veins), Colour4{0.015f, 0.03f, 0.02f}, limbus);
  }
  const float out = (r - pose.pupil) / (iris - pose.pupil);
  const float turns = angle / (2 * pi);
  const float bent = turns + 0.008f * fractal(turns * 40 + 40, r * 5, 0, 3, 0.5f, 221);
  const float fibre = 0.5f + 0.5f * fractal(bent * 70 + 70, r * 3.2f, 70, 3, 0.62f, 222);
  const float collar =
      std::exp(-std::fabs(out - 0.32f - 0.07f * (valueNoise(turns * 26 + 26, 0, 26, 223) - 0.5f)) * 11);
  const float crypts = smoothStep(0.62f, 0.9f, valueNoise(turns * 18 + 18, r * 8, 18, 224));
  float value =
      0.30f + 0.5f * fibre * (0.55f + 0.45f * smoothStep(0, 0.35f, out)) + 0.36f * collar - 0.25f * crypts;
  value *= smoothStep(1.02f, 0.72f, out) * smoothStep(-0.02f, 0.09f, out);
  value *= 1 - 0.35f * std::exp(-(out - 0.62f) * (out - 0.62f) / 0.012f);
  value *= 0.55f + 0.85f * clamp01(0.42f + dy * 0.85f +
                                   dx * 0.45f);  // the lens gathers the key light on the far side
  Colour4 colour = gradient(acidRamp, value) +
                   gradient(emberRamp, 0.24f * collar * fibre * smoothStep(-0.02f, 0.09f, out));
  return colour;
}

// The window that the eye looks at: a lancet pair, mirrored in the cornea.
float reflection(const Pose& pose, float x, float y) {
  const float px = (x - pose.gazeX * 0.6f + 0.21f) * (1 + 0.25f * y),
              py = y - pose.gazeY * 0.6f + 0.16f + 0.25f * (x + 0.2f) * (x + 0.2f);
  const float left = std::max(pointedArch(px + 0.052f, py, 0.042f, 0.03f), py - 0.13f),
              right = std::max(pointedArch(px - 0.052f, py, 0.042f, 0.03f), py - 0.13f);
  return std::max(
      coverage(std::min(left, right), 0.02f) * (1 - 0.75f * coverage(std::fabs(py - 0.03f) - 0.006f, 0.01f)),
      0.0f);
}

// Skin: bent by the brow, the crease and the ball below it, with pores and fine folds along the lid.
float skinHeight(const Pose& pose, float x, float y) {
  const float upper = upperLid(pose, x), lower = lowerLid(pose, x);
  const float shape = clamp01(1 - x * x / 3.6f);  // reaches past the corners, where the lids end steeply
  const float bulge = 0.34f * smoothStep(0.0f, 0.9f, 1 - (x * x) / 2.9f - (y - 0.03f) * (y - 0.03f) / 0.95f);
  const float creaseY = 0.02f + 0.04f * x - (0.5f + 0.42f * pose.open) * (0.35f + 0.65f * shape);
  const float crease =
      -0.085f * std::exp(-(y - creaseY) * (y - creaseY) / 0.0016f) * smoothStep(1.75f, 1.0f, std::fabs(x));
  const float hang =
      0.10f * smoothStep(creaseY + 0.02f, creaseY - 0.18f, y) * smoothStep(1.9f, 1.0f, std::fabs(x));
  const float bag = -0.035f * std::exp(-(y - lower - 0.24f) * (y - lower - 0.24f) / 0.004f) * shape +
                    0.03f * std::exp(-(y - lower - 0.1f) * (y - lower - 0.1f) / 0.006f) * shape;
  const float rim = 0.03f * smoothStep(corner + 0.1f, corner - 0.15f, std::fabs(x)) *
                    std::exp(-std::min(std::fabs(y - upper), std::fabs(y - lower)) * 22);
  const float pores = 0.0013f * fractal(x * 20, y * 20, 0, 3, 0.6f, 230);
  const float folds = 0.004f * fractal(x * 3, (y - creaseY) * 20, 0, 3, 0.5f, 231) *
                      std::exp(-(y - creaseY) * (y - creaseY) / 0.08f);
  const float brow = 0.55f * smoothStep(-0.55f, -1.15f, y);
  return bulge + crease + hang + bag + rim + pores + folds + brow * 0.5f;
}

struct Lash {
  float rootX, rootY, midX, midY, endX, endY, thick;
};

std::vector<Lash> lashesOf(const Pose& pose) {
  constexpr int above = 90, below = 38, clump = 3;
  std::vector<Lash> lashes;
  for (int i = 0; i < above + below; ++i) {
    const bool upper = i < above;
    const float place =
        upper ? static_cast<float>(i) / (above - 1) : static_cast<float>(i - above) / (below - 1);
    const float rootX = (place * 2 - 1) * corner * 0.93f + 0.04f * (hashUnit(i, 1, 240) - 0.5f);
    const float rootY = upper ? upperLid(pose, rootX) : lowerLid(pose, rootX);
    // Those of a clump lean together and nearly meet at their tips; the outer ones are longer.
    const int group = upper ? i / clump : i;
    const float lean = hashUnit(group, 3, 240) - 0.5f;
    const float together = upper ? 0.013f * static_cast<float>(clump / 2 - i % clump) : 0.0f;
    const float length = (upper ? 0.29f + 0.09f * (rootX / corner) : 0.10f) *
                         (0.75f + 0.3f * hashUnit(group, 2, 240) + 0.2f * hashUnit(i, 2, 240)) *
                         (0.55f + 0.45f * lidShape(rootX, 0));
    const float droop = mix(0.9f, -0.62f, smoothStep(0.0f, 0.75f, pose.open));
    const float endX = rootX + together + length * (rootX * 0.55f + 0.35f * lean),
                endY = rootY + length * (upper ? droop : 0.85f);
    const float bend = upper ? 0.16f * length * (0.4f + 0.6f * lidShape(rootX, 0)) : -0.02f;
    lashes.push_back(
        {rootX, rootY, (rootX + endX) / 2, (rootY + endY) / 2 + bend, endX, endY, upper ? 0.0085f : 0.0045f});
  }
  return lashes;
}

float coverOf(const std::vector<Lash>& lashes, float x, float y) {
  float cover = 0;
  for (const Lash& lash : lashes) {
    if (std::fabs(x - lash.rootX) > 0.5f || std::fabs(y - lash.rootY) > 0.55f) continue;
    const float d =
        std::min(taper(x, y, lash.rootX, lash.rootY, lash.midX, lash.midY, lash.thick, lash.thick * 0.75f),
                 taper(x, y, lash.midX, lash.midY, lash.endX, lash.endY, lash.thick * 0.75f, 0.001f));
    cover = std::max(cover, coverage(d, 0.012f));
  }
  return cover;
}

Canvas eyeFrame(const Settings& settings, int frame) {
  const Pose pose = poseOf(frame);
  const int width = settings.side(1024), height = width / 2;
  const float texels = static_cast<float>(width) / 4;
  const Field heights = paint(width, height, [&](float u, float v) {
    return texels * skinHeight(pose, (u - 0.5f) * 4, (v - 0.5f) * 2);
  });
  const Field light = lightRelief(heights, -0.75f, -0.75f, 0.42f, EdgeMode::clamp);
  const Field gloss = glossRelief(heights, -0.75f, -0.75f, 0.42f, 9, EdgeMode::clamp);
  const std::vector<Lash> lashes = lashesOf(pose);
  return paint(width, height, [&](float u, float v) {
    const float x = (u - 0.5f) * 4, y = (v - 0.5f) * 2;
    const float upper = upperLid(pose, x), lower = lowerLid(pose, x);
    const float gap = std::max(std::max(upper - y, y - lower), std::fabs(x) - corner);
    const float mottled = 0.85f + 0.15f * fractal(x * 3, y * 3, 0, 4, 0.6f, 250);
    Colour4 skin = gradient(boneRamp, (0.11f + 0.74f * sample(light, u, v, EdgeMode::clamp) +
                                       0.26f * sample(gloss, u, v, EdgeMode::clamp)) *
                                          mottled);
    skin = mix(skin, skin * Colour4{1.05f, 0.62f, 0.5f, 1},
               0.75f * std::exp(-std::max(0.0f, gap) * 9));  // thin, reddened rims
    // The lower lid catches the lamp that the upper one keeps off the ball.
    const float shelf = clamp01(1 - x * x / 2.4f) * smoothStep(-0.01f, 0.05f, y - lower) *
                        std::exp(-std::max(0.0f, y - lower) * 7);
    skin = skin + gradient(boneRamp, 0.5f + 0.3f * sample(light, u, v, EdgeMode::clamp)) * (0.42f * shelf);
    Colour4 colour = skin;
    if (gap < 0.02f) {
      const float shade =
          smoothStep(0.0f, 0.40f, y - upper) * 0.88f + 0.12f;  // of the upper lid and its lashes
      const float wet = 0.8f * coverage(std::fabs(y - lower + 0.022f) - 0.006f, 0.014f) *
                        smoothStep(corner, corner - 0.2f, std::fabs(x)) * smoothStep(0.15f, 0.4f, pose.open) *
                        (0.4f + 0.6f * valueNoise(x * 9, 0, 0, 251));
      Colour4 inner = ball(pose, x, y) * shade +
                      gradient(boneRamp, (0.5f + 0.45f * fractal(x * 5, y * 7, 0, 4, 0.5f, 226) - 0.9f * y) *
                                             reflection(pose, x, y) * smoothStep(0.03f, 0.12f, y - upper)) +
                      gradient(boneRamp, wet);
      colour = mix(skin, inner, coverage(gap, 0.016f));
      const float pink = std::hypot((x + corner - 0.05f) * 1.2f, (y - upperLid(pose, -corner)) * 1.5f);
      colour = mix(colour, Colour4{0.34f, 0.11f, 0.09f} * 0.8f,
                   0.8f * smoothStep(0.22f, 0.05f, pink) * coverage(gap, 0.02f));
    }
    const float liner =
        std::exp(-std::fabs(y - upper) * 34) * smoothStep(corner + 0.04f, corner - 0.1f, std::fabs(x));
    colour = colour * (1 - 0.75f * liner);
    colour = mix(colour, ink * 0.6f, 0.94f * coverOf(lashes, x, y));
    // Lamp-light only on the eye; the rest sinks into the dark.
    const float dark = smoothStep(1.0f, 0.3f, std::hypot((x - 0.12f) / 2.15f, (y - 0.02f) / 1.3f));
    return colour * dark * smoothStep(0.004f, 0.07f, std::min(std::min(u, 1 - u), std::min(v, 1 - v)));
  });
}

}  // namespace

Products eyeMovie() {
  Products products;
  for (int frame = 0; frame < frameCount; ++frame)
    products.push_back(picture("eye" + std::to_string(frame + 1), PictureKind::jpeg, 5,
                               [frame](const Settings& settings) { return eyeFrame(settings, frame); }));
  return products;
}

}  // namespace vex
