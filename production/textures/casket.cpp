#include <array>
#include <cmath>
#include <memory>

#include "engine/vector.h"
#include "production/image/filter.h"
#include "production/image/noise.h"
#include "production/image/shape.h"
#include "production/textures/families.h"
#include "production/textures/palette.h"

namespace vex {

namespace {

// The reliquary: black iron with straps, niches and a lock of brass. Painted as reliefs with the light baked
// in, then laid on a box and a gabled lid that are ray-traced frame by frame.

// A painted metal surface: heights in texels, and where it is brass.
struct Relief {
  Field heights, brass;
};

Canvas lightMetal(const Relief& relief, float rustiness, std::uint32_t seed) {
  const Field& heights = relief.heights;
  const auto texels = static_cast<float>(heights.width);
  const Field light = lightRelief(heights, -0.7f, -0.9f, 0.7f, EdgeMode::clamp);
  const Field gloss = glossRelief(heights, -0.7f, -0.9f, 0.7f, 24, EdgeMode::clamp);
  const Field cast = castShadows(heights, -0.7f, -0.9f, 0.7f, texels / 20, 0.5f, EdgeMode::clamp);
  const Field shadow = blur(cast, 1, EdgeMode::clamp);
  const Field soft = blur(heights, texels * 0.012f, EdgeMode::clamp);
  return paint(heights.width, heights.height, [&](float u, float v) {
    const auto read = [&](const Field& field) { return sample(field, u, v, EdgeMode::clamp); };
    const float out = (read(heights) - read(soft)) / texels * 90;  // edges stand out, hollows lie below
    const float grime = 0.5f + 0.5f * fractal(u * 14, v * 14, 0, 5, 0.6f, seed);
    const float lit = read(light) * (0.3f + 0.7f * read(shadow));
    const float worn = clamp01(out) * (0.4f + 0.6f * grime);
    const Colour4 iron =
        gradient(steelRamp, 0.16f + 0.42f * lit * (0.5f + 0.5f * grime) + 0.5f * read(gloss) + 0.16f * worn) *
        Colour4{0.92f, 1.0f, 0.9f};
    const Colour4 brass = gradient(
        brassRamp, (0.16f + 0.68f * lit) * (0.65f + 0.35f * grime) + 0.5f * read(gloss) + 0.2f * worn);
    const float hollow = clamp01(-out * 1.3f);
    const Colour4 metal = mix(iron, brass, read(relief.brass)) * (1 - 0.7f * hollow);
    const float verdigris = smoothStep(0.5f, 0.9f, grime + 0.3f * hollow) * rustiness;
    return mix(metal, gradient(acidRamp, 0.30f) * (0.3f + lit), 0.5f * verdigris);
  });
}

float bump(float distance, float width) {
  return std::sqrt(clamp01(-distance / width * (2 + distance / width)));
}

// Front of the box, 2 wide and 1 high: a frame with rivets, straps, five lancet niches, a lock plate.
Relief frontRelief(int width) {
  const int height = width / 2;
  const auto texels = static_cast<float>(width);
  Relief relief;
  relief.brass = Field(width, height);
  relief.heights = paint(width, height, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = v - 0.5f;
    const float frame = -box(x, y, 0.93f, 0.43f);
    const float rail = smoothStep(-0.008f, 0.008f, frame - 0.0f);
    float h = 0.05f * (1 - rail);
    const float along = x * 9, up = y * 9;
    const bool level = std::fabs(y) > 0.44f;
    const float rivetAt = level ? std::hypot((along - std::round(along)) / 9, std::fabs(y) - 0.465f)
                                : std::hypot((up - std::round(up)) / 9, std::fabs(x) - 0.965f);
    h += 0.024f * std::sqrt(clamp01(1 - rivetAt * rivetAt / (0.018f * 0.018f))) * (1 - rail);
    // Niches, deep, each with a moulding.
    for (int i = 0; i < 6; ++i) {
      const float centre = (static_cast<float>(i) - 2.5f) * 0.31f;
      const float arch = std::max(pointedArch(x - centre, y + 0.06f, 0.105f, 0.09f), y - 0.30f);
      h += 0.02f * bump(std::fabs(arch) - 0.016f, 0.016f) - 0.035f * coverage(arch + 0.016f, 0.02f);
      // A standing figure in each: head and gown.
      const float saint = smoothUnion(disc(x - centre, y + 0.02f, 0.026f),
                                      taper(x, y, centre, 0.05f, centre, 0.28f, 0.026f, 0.055f), 0.03f);
      h += 0.03f * bump(std::max(saint, arch + 0.01f), 0.04f);
    }
    // Lock plate: a round shield, over the niches.
    const float plate = disc(x, y + 0.02f, 0.25f);
    if (plate < 0) {
      h = 0.045f + 0.02f * bump(plate, 0.03f);
      const float radius = std::hypot(x, y + 0.02f), angle = std::atan2(y + 0.02f, x);
      h += 0.012f * bump(std::fabs(radius - 0.17f) - 0.02f, 0.02f);
      const float beads = angle * 14 / pi;
      const float bead = std::hypot((beads - std::round(beads)) * pi / 14 * 0.218f, radius - 0.218f);
      h += 0.012f * std::sqrt(clamp01(1 - bead * bead / (0.014f * 0.014f)));
      const float key = std::min(disc(x, y - 0.0f, 0.042f), taper(x, y, 0, 0.02f, 0, 0.115f, 0.014f, 0.026f));
      h -= 0.06f * coverage(key, 0.012f);
    }
    h += 0.004f * fractal(u * 26, v * 13, 0, 4, 0.55f, 750);
    return texels / 2 * h * 0.8f;
  });
  relief.brass = paint(width, height, [&](float u, float v) {
    const float x = (u - 0.5f) * 2, y = v - 0.5f;
    float brass = disc(x, y + 0.02f, 0.25f);
    for (int i = 0; i < 6; ++i) {
      const float centre = (static_cast<float>(i) - 2.5f) * 0.31f;
      const float arch = std::max(pointedArch(x - centre, y + 0.06f, 0.105f, 0.09f), y - 0.30f);
      const float saint = smoothUnion(disc(x - centre, y + 0.02f, 0.026f),
                                      taper(x, y, centre, 0.05f, centre, 0.28f, 0.026f, 0.055f), 0.03f);
      brass = std::min(brass, std::min(std::fabs(arch) - 0.017f, std::max(saint, arch + 0.01f)));
    }
    brass = std::min(brass, std::fabs(box(x, y, 0.93f, 0.43f)) - 0.012f);
    return coverage(brass, 0.012f);
  });
  return relief;
}

// The lid's slope, 2 wide and 1 high: scales between a crest and an eave of brass.
Relief slopeRelief(int width) {
  const int height = width / 2;
  const auto texels = static_cast<float>(width);
  Relief relief;
  relief.brass = paint(width, height, [](float u, float v) {
    const float x = (u - 0.5f) * 2;
    const float edge = std::min(
        std::min(std::fabs(v - 0.045f) - 0.045f, std::fabs(v - 0.94f) - 0.06f),
        std::min(std::fabs(std::fabs(x) - 0.955f) - 0.045f, std::fabs(std::fabs(x) - 0.32f) - 0.035f));
    return coverage(edge, 0.012f);
  });
  relief.heights = paint(width, height, [&](float u, float v) {
    const float x = (u - 0.5f) * 2;
    const float row = v * 8;
    float h = 0;
    for (int back = 1; back >= 0; --back) {
      const float r = std::floor(row) - static_cast<float>(back);
      const float offset = std::fmod(std::fabs(r), 2.0f) * 0.5f;
      const float cell = x * 8 + offset;
      const float cx = cell - std::floor(cell) - 0.5f, cy = row - r - 0.75f;
      const float scale = std::hypot(cx, cy * 0.8f) - 0.56f;
      if (scale < 0) h = 0.012f + 0.025f * (cy + 0.8f) * 0.5f + 0.01f * bump(scale, 0.15f);
    }
    const float edge = sample(relief.brass, u, v, EdgeMode::clamp);
    h = mix(h, 0.06f, edge);
    const float studs = x * 12;
    const float stud = std::hypot((studs - std::round(studs)) / 12, (v - 0.94f));
    h += 0.025f * std::sqrt(clamp01(1 - stud * stud / (0.026f * 0.026f)));
    h += 0.004f * fractal(u * 26, v * 13, 0, 4, 0.55f, 752);
    return texels / 2 * h * 0.8f;
  });
  return relief;
}

// Dressed stone of the plinth and the chamber's wall.
Canvas stone(int width) {
  const auto texels = static_cast<float>(width);
  const Field heights = paint(width, width / 2, [&](float u, float v) {
    const float row = std::floor(v * 4);
    const float shifted = u * 4 + 0.5f * std::fmod(row, 2.0f);
    const float dx = std::fabs(shifted - std::round(shifted)) / 4,
                dy = std::fabs(v * 4 - std::round(v * 4)) / 4;
    const float joint = smoothStep(0.002f, 0.014f, std::min(dx, dy / 2));
    return texels * (0.012f * joint + 0.008f * fractal(u * 12, v * 6, 0, 6, 0.6f, 754));
  });
  const Field light = lightRelief(heights, -0.5f, -1, 0.8f, EdgeMode::clamp);
  return paint(width, width / 2, [&](float u, float v) {
    const float shade = sample(light, u, v, EdgeMode::clamp);
    const float stain = 0.5f + 0.5f * fractal(u * 5, v * 3, 0, 5, 0.6f, 755);
    return gradient(steelRamp, 0.12f + 0.36f * shade * stain) * Colour4{0.85f, 1, 0.8f};
  });
}

enum class Skin { front, slope, gable, stone, inside };

// A parallelogram in space with a picture on it; a gable is its lower triangle.
struct Panel {
  Vector corner, across, down;  // upper left corner as seen, and its sides
  Skin skin;
  float bright = 1;  // of the baked light: faces that turn away from the key light are darker
};

struct Chamber {
  Canvas front, slope, stones;
};

constexpr float halfWidth = 1.0f, halfDepth = 0.55f, boxHeight = 0.92f, roofHeight = 0.48f;
constexpr float eave = 0.05f;

Vector turned(const Vector& p, float angle) {  // about the upper edge at the back
  const float c = std::cos(angle), s = std::sin(angle);
  const float y = p.y - boxHeight, z = p.z + halfDepth;
  return {p.x, boxHeight + y * c + z * s, -halfDepth + z * c - y * s};
}

void addLid(std::vector<Panel>& panels, float angle) {
  const auto add = [&](Vector a, Vector b, Vector c, Skin skin, float bright) {
    a = turned(a, angle), b = turned(b, angle), c = turned(c, angle);
    panels.push_back({a, b - a, c - a, skin, bright});
  };
  const float w = halfWidth + eave, d = halfDepth + eave, low = boxHeight, top = boxHeight + roofHeight;
  const float rim = 0.10f, ridge = 0.16f;
  add({-w, low + rim, d}, {w, low + rim, d}, {-w, low, d}, Skin::gable, 0.9f);  // rim in front
  add({w, low + rim, d}, {w, low + rim, -d}, {w, low, d}, Skin::gable, 0.6f);   // rim on the right
  add({-w, top, ridge}, {w, top, ridge}, {-w, low + rim, d}, Skin::slope, 1);
  add({w, top, -ridge}, {-w, top, -ridge}, {w, low + rim, -d}, Skin::slope, 0.4f);
  add({-w, top, -ridge}, {w, top, -ridge}, {-w, top, ridge}, Skin::gable, 1.2f);  // ridge
  add({w, top, ridge}, {w, top, -ridge}, {w, low + rim, d}, Skin::gable, 0.55f);
  add({w, top, -ridge}, {w, low + rim, -d}, {w, low + rim, d}, Skin::gable, 0.55f);
  add({-w, low, -d}, {w, low, -d}, {-w, low, d}, Skin::inside, 1);  // what the lid hid
}

std::vector<Panel> buildCasket(float angle) {
  const float w = halfWidth, d = halfDepth, h = boxHeight, in = 0.07f;
  std::vector<Panel> panels{
      {{-w, h, d}, {2 * w, 0, 0}, {0, -h, 0}, Skin::front, 1},
      {{w, h, d}, {0, 0, -2 * d}, {0, -h, 0}, Skin::front, 0.5f},
      {{-w, h, -d}, {0, 0, 2 * d}, {0, -h, 0}, Skin::front, 0.7f},
      {{-w + in, h, -d + in}, {2 * (w - in), 0, 0}, {0, -h * 0.8f, 0}, Skin::inside, 1},
      {{w - in, h, d - in}, {0, 0, -2 * (d - in)}, {0, -h * 0.8f, 0}, Skin::inside, 1},
      {{-w + in, h, d - in}, {0, 0, -2 * (d - in)}, {0, -h * 0.8f, 0}, Skin::inside, 1},
      // The rim, as four strips.
      {{-w, h, d - in}, {2 * w, 0, 0}, {0, 0, in}, Skin::gable, 1},
      {{-w, h, -d}, {2 * w, 0, 0}, {0, 0, in}, Skin::gable, 1},
      {{-w, h, -d}, {in, 0, 0}, {0, 0, 2 * d}, Skin::gable, 1},
      {{w - in, h, -d}, {in, 0, 0}, {0, 0, 2 * d}, Skin::gable, 1},
      // Plinth: two steps.
      {{-1.5f, 0, -1.0f}, {3.0f, 0, 0}, {0, 0, 1.95f}, Skin::stone, 0.9f},
      {{-1.5f, 0, 0.95f}, {3.0f, 0, 0}, {0, -0.35f, 0}, Skin::stone, 0.7f},
      {{1.5f, 0, 0.95f}, {0, 0, -1.95f}, {0, -0.35f, 0}, Skin::stone, 0.35f},
      {{-2.4f, -0.35f, -1.6f}, {4.8f, 0, 0}, {0, 0, 3.1f}, Skin::stone, 0.55f},
      {{-2.4f, -0.35f, 1.5f}, {4.8f, 0, 0}, {0, -2, 0}, Skin::stone, 0.35f},
      {{2.4f, -0.35f, 1.5f}, {0, 0, -3.1f}, {0, -2, 0}, Skin::stone, 0.2f},
  };
  addLid(panels, angle);
  return panels;
}

struct PanelHit {
  float length = 1e9f, u = 0, v = 0;
  const Panel* panel = nullptr;
};

PanelHit nearestPanel(const std::vector<Panel>& panels, const Vector& from, const Vector& direction) {
  PanelHit nearest;
  for (const Panel& panel : panels) {
    const Vector normal = cross(panel.across, panel.down), offset = from - panel.corner;
    const float facing = dot(normal, direction);
    if (std::fabs(facing) < 1e-6f) continue;
    const float length = -dot(normal, offset) / facing;
    if (length < 1e-3f || length > nearest.length) continue;
    const Vector at = offset + direction * length;
    // Solved in the panel's own plane, whose sides need not be at right angles.
    const float aa = dot(panel.across, panel.across), bb = dot(panel.down, panel.down),
                ab = dot(panel.across, panel.down), pa = dot(at, panel.across), pb = dot(at, panel.down);
    const float determinant = aa * bb - ab * ab;
    const float u = (pa * bb - pb * ab) / determinant, v = (pb * aa - pa * ab) / determinant;
    if (u < 0 || u > 1 || v < 0 || v > 1) continue;
    nearest = {length, u, v, &panel};
  }
  return nearest;
}

Colour4 skinColour(const Chamber& chamber, const PanelHit& hit) {
  switch (hit.panel->skin) {
    case Skin::front:
      return sample(chamber.front, hit.u, hit.v, EdgeMode::clamp);
    case Skin::slope:
      return sample(chamber.slope, hit.u, hit.v, EdgeMode::clamp);
    case Skin::gable:
      return sample(chamber.slope, hit.u, 0.02f + 0.05f * hit.v, EdgeMode::clamp);
    case Skin::stone:
      return sample(chamber.stones, hit.u, hit.v, EdgeMode::clamp);
    case Skin::inside:
      break;
  }
  return ink;
}

// `open` is the lid's angle over its greatest one.
Canvas casketFrame(const Settings& settings, const Chamber& chamber, float open) {
  const int width = settings.side(1024);
  const std::vector<Panel> panels = buildCasket(1.5f * open);
  const Vector eye(-1.35f, 1.55f, 3.6f), target(-0.05f, 0.72f, 0);
  Vector forward = target - eye;
  forward.normalize();
  Vector right = cross(forward, Vector(0, 1, 0));
  right.normalize();
  const Vector up = cross(right, forward);
  const Vector mouth(0, boxHeight + 0.05f, 0);
  const float blaze = smoothStep(0.0f, 0.5f, open);
  return paintSmooth(width, width / 2, 2, [&](float u, float v) {
    const float sx = 2 * u - 1, sy = 1 - 2 * v;
    Vector direction = forward + right * (0.78f * sx) + up * (0.39f * sy);
    direction.normalize();
    const PanelHit hit = nearestPanel(panels, eye, direction);
    // Behind: a dark chamber with a haze of light around the box.
    const float beyond = std::hypot(sx * 1.2f, (sy - 0.12f) * 0.9f);
    const float fog = 0.5f + 0.5f * fractal(u * 4, v * 3, 0, 5, 0.55f, 760);
    Colour4 colour =
        gradient(acidRamp, (0.24f + 0.24f * fog + 0.26f * blaze * fog) * std::exp(-beyond * beyond * 1.3f) +
                               0.07f * fog);
    if (hit.panel != nullptr) {
      const Vector place = eye + direction * hit.length;
      Vector toMouth = mouth - place;
      const float away = toMouth.length();
      colour = skinColour(chamber, hit) * hit.panel->bright;
      const float contact = hit.panel->skin == Skin::stone
                                ? smoothStep(-0.05f, 0.4f, box(place.x, place.z, halfWidth, halfDepth))
                                : 1.0f;
      colour = colour * (0.25f + 0.75f * contact);
      const float grey = 0.3f * colour.r + 0.5f * colour.g + 0.2f * colour.b;
      if (hit.panel->skin == Skin::inside) {
        const float deep = clamp01((boxHeight - place.y) / 0.5f);
        colour =
            ink + gradient(acidRamp, blaze * (place.y > boxHeight + 0.02f ? 0.72f * std::exp(-away * 0.5f)
                                                                          : 0.7f + 0.3f * deep));
      } else {
        Vector normal = cross(hit.panel->down, hit.panel->across);
        normal.normalize();
        if (dot(normal, direction) > 0) normal = -normal;
        const float facing = 0.35f + 0.65f * std::fabs(dot(normal, toMouth)) / away;
        colour = colour +
                 gradient(acidRamp, clamp01(blaze * (0.12f + 2.6f * grey) * facing / (0.5f + away * away)));
      }
      // A rim of light from the haze behind.
      const float depth = clamp01((hit.length - 4.2f) / 4);
      colour = mix(colour, gradient(acidRamp, 0.18f), 0.35f * depth);
    }
    const float shaft = blaze * std::exp(-std::hypot((sx + 0.01f) * 1.6f, (sy - 0.12f) * 2.2f) * 2.4f);
    colour = colour + gradient(acidRamp, 0.8f * shaft * shaft + 0.18f * shaft);
    return colour * (1 - 0.55f * smoothStep(0.75f, 1.35f, std::hypot(sx, sy * 0.8f)));
  });
}

constexpr int lidFrames = 24;

FramePainter prepareLid(const Settings& settings) {
  const int width = settings.side(512);
  auto chamber = std::make_shared<Chamber>();
  chamber->front = lightMetal(frontRelief(width), 0.6f, 757);
  chamber->slope = lightMetal(slopeRelief(width), 0.5f, 758);
  chamber->stones = stone(width);
  return [settings, chamber](int frame) {
    const float t = static_cast<float>(frame) / (lidFrames - 1);
    // A jerk, a pause, then up and over.
    const float open = 0.05f * smoothStep(0.02f, 0.12f, t) + 0.95f * smoothStep(0.15f, 1.0f, t);
    return casketFrame(settings, *chamber, frame == 0 ? 0 : open);
  };
}

// The lock, close: a brass disc with a keyhole in an iron plate; the disc turns, four bolts draw back.
constexpr int lockFrames = 12;

FramePainter prepareLock(const Settings& settings) {
  const int width = settings.side(1024), height = width / 2;
  const auto ground = std::make_shared<Field>(paint(width, height, [](float u, float v) {
    const float x = (u - 0.5f) * 4, y = (v - 0.5f) * 2, r = std::hypot(x, y), angle = std::atan2(y, x);
    float h = 0.010f * fractal(u * 24, v * 12, 0, 5, 0.6f, 770) +
              0.02f * cellularNoise(u * 28, v * 14, 0, 771).nearest;
    h += 0.07f * bump(std::fabs(r - 0.93f) - 0.05f, 0.05f) + 0.04f * smoothStep(1.02f, 1.0f, r);
    const float turns = angle * 16 / pi;
    const float rivet = std::hypot((turns - std::round(turns)) * pi / 16 * 1.1f, r - 1.1f);
    h += 0.05f * std::sqrt(clamp01(1 - rivet * rivet / (0.04f * 0.04f)));
    // Straps to both sides.
    const float strap = std::max(std::fabs(y) - 0.30f, 1.0f - std::fabs(x));
    h += 0.07f * bump(strap, 0.05f);
    const float vine = std::fabs(y - 0.13f * std::sin(x * 9)) - 0.022f;
    const float leaf = std::hypot(x * 9 / pi - 0.5f - std::round(x * 9 / pi - 0.5f), 0.0f);
    h += strap < -0.06f ? 0.035f * bump(vine, 0.022f) +
                              0.02f * bump(std::hypot(leaf * 0.3f, std::fabs(y) - 0.12f) - 0.05f, 0.05f)
                        : 0.0f;
    return h;
  }));
  return [width, height, ground](int frame) {
    const float t = smoothStep(0, lockFrames - 1, static_cast<float>(frame));
    const float turn = t * pi / 2, drawn = 0.26f * t;
    const auto turningPart = [&](float x, float y, float& brass) {
      const float r = std::hypot(x, y), c = std::cos(turn), s = std::sin(turn);
      const float px = x * c + y * s, py = y * c - x * s, angle = std::atan2(py, px);
      float h = 0;
      // Bolts, crosswise, in the sunken ring between the disc and the rim.
      const float ax = std::max(std::fabs(x), std::fabs(y)), ay = std::min(std::fabs(x), std::fabs(y));
      if (r < 0.88f) {
        h = -0.10f;
        const float bolt = std::max(ay - 0.085f, std::max(0.5f - ax, ax - (1.0f - drawn)));
        h += 0.13f * bump(bolt, 0.05f);
        brass = std::max(brass, 0.35f * coverage(bolt, 0.01f));
      }
      const float plate = r - 0.66f;
      if (plate < 0) {
        brass = 1;
        h = 0.05f + 0.05f * bump(plate, 0.05f);
        h -= 0.03f * coverage(std::fabs(r - 0.56f) - 0.012f, 0.02f);
        // Rays and a ring of beads.
        const float rays = angle * 8 / pi;
        h += 0.02f * bump(std::fabs(rays - std::round(rays)) - 0.34f, 0.3f) * smoothStep(0.27f, 0.33f, r) *
             smoothStep(0.53f, 0.48f, r);
        const float beads = angle * 18 / pi;
        const float bead = std::hypot((beads - std::round(beads)) * pi / 18 * 0.605f, r - 0.605f);
        h += 0.03f * std::sqrt(clamp01(1 - bead * bead / (0.036f * 0.036f)));
        h += 0.03f * bump(std::fabs(r - 0.25f) - 0.03f, 0.03f);
        const float key =
            std::min(disc(px, py + 0.06f, 0.075f), taper(px, py, 0, -0.02f, 0, 0.15f, 0.025f, 0.05f));
        h -= 0.16f * coverage(key, 0.02f);
      }
      return h;
    };
    Relief relief;
    relief.brass = Field(width, height);
    relief.heights = *ground;
    for (int row = 0; row < height; ++row)
      for (int column = 0; column < width; ++column) {
        const float x = ((static_cast<float>(column) + 0.5f) / static_cast<float>(width) - 0.5f) * 4;
        const float y = ((static_cast<float>(row) + 0.5f) / static_cast<float>(height) - 0.5f) * 2;
        const float r = std::hypot(x, y);
        float brass = coverage(std::fabs(r - 0.93f) - 0.05f, 0.01f);
        if (std::fabs(x) > 1.0f && std::fabs(std::fabs(y) - 0.27f) < 0.03f) brass = 1;
        float& h = relief.heights.at(column, row);
        if (r < 0.88f) h = 0.3f * h + turningPart(x, y, brass);
        relief.brass.at(column, row) = brass;
        h *= static_cast<float>(height) / 2 * 0.8f;
      }
    Canvas lit = lightMetal(relief, 0.5f, 772);
    for (int row = 0; row < height; ++row)
      for (int column = 0; column < width; ++column) {
        const float x = ((static_cast<float>(column) + 0.5f) / static_cast<float>(width) - 0.5f) * 4;
        const float y = ((static_cast<float>(row) + 0.5f) / static_cast<float>(height) - 0.5f) * 2;
        const float r = std::hypot(x, y);
        const float c = std::cos(turn), s = std::sin(turn);
        const float px = x * c + y * s, py = y * c - x * s;
        const float key =
            std::min(disc(px, py + 0.06f, 0.075f), taper(px, py, 0, -0.02f, 0, 0.15f, 0.025f, 0.05f));
        // Light from inside: through the keyhole, and through the ring once the bolts let go.
        const float through =
            0.85f * coverage(key + 0.01f, 0.03f) + 0.30f * std::exp(-std::max(0.0f, key) * 9);
        const float seam =
            t * (0.8f * std::exp(-std::fabs(r - 0.68f) * 50) + 0.35f * std::exp(-std::fabs(r - 0.70f) * 9));
        Colour4& texel = lit.at(column, row);
        const float lamp = smoothStep(2.1f, 0.3f, std::hypot(x + 0.35f, (y + 0.25f) * 1.3f));
        texel =
            texel * (0.25f + 1.0f * lamp) + gradient(acidRamp, clamp01((0.35f + 0.65f * t) * through + seam));
      }
    return lit;
  };
}

}  // namespace

Products casketPictures() {
  return {movie("lid", lidFrames, "casket", 16, prepareLid),
          movie("lock", lockFrames, "casket", 16, prepareLock)};
}

}  // namespace vex
