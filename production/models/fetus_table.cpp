#include <array>
#include <cmath>

#include "production/geometry/forms.h"
#include "production/geometry/mapping.h"
#include "production/image/noise.h"
#include "production/models/fetus_parts.h"
#include "production/textures/palette.h"

// The table, the jar in its apparatus, the telephone, a cigarette, the lamp.

namespace vex::laboratory {

using namespace image;
using namespace geometry;

Placement lampFrame() {
  return standing(lampPlace, lampPlace - lampTarget);
}

namespace {

Surface box(const Vector& size, float bevel, const Vector& centre) {
  return withoutMapping(placed(bevelledBox(size, bevel), moved(centre)));
}

Surface turnedProfile(const std::vector<ProfilePoint>& profile, int around, const Vector& foot) {
  return withoutMapping(placed(lathe(profile, around), moved(foot)));
}

Surface pipe(const std::vector<Vector>& bends, float radius, int pieces, int around = 6) {
  return withoutMapping(tube(
      smoothPath(bends, pieces), around, [radius](float) { return radius; }, TubeEnd::flat));
}

// A foot of turned metal and a cap with valves, held by three rods; a pipe goes up.
Surface apparatusSurface() {
  // It stands in the table by a little, so that no light is worked out between the two.
  Surface all = turnedProfile({{51, -51},
                               {51, -46},
                               {49.4f, -44.4f},
                               {45, -44.4f},
                               {43, -40.4f},
                               {38.6f, -40.4f},
                               {38, -44.8f},
                               {0, -44.8f}},
                              52, Vector(0, 0, 0));
  append(all, turnedProfile({{0, 47.5f},
                             {23, 47.5f},
                             {25, 48.5f},
                             {25, 54},
                             {23, 56},
                             {15, 58},
                             {9, 63},
                             {5, 71},
                             {5, 90},
                             {0, 90}},
                            32, Vector(0, 0, 0)));
  for (int i = 0; i < 3; ++i) {
    const float angle = 2 * pi * (static_cast<float>(i) / 3 + 1 / 12.0f);  // none before the face
    const Vector foot(44 * std::cos(angle), -47, 44 * std::sin(angle));
    append(all, turnedProfile({{1.5f, 0}, {1.5f, 110}}, 10, foot));
    append(all, turnedProfile({{0, -1}, {3, -1}, {3, 3}, {0, 4}}, 7, foot + Vector(0, 106, 0)));
    append(all, pipe({foot + Vector(0, 107, 0), foot * 0.75f + Vector(0, 95.5f, 0),
                      Vector(foot.x * 0.4f, 58, foot.z * 0.4f)},
                     1.5f, 6, 5));
  }
  for (int i = 0; i < 5; ++i) {  // valves
    const float angle = 2 * pi * (static_cast<float>(i) / 5 + 0.07f);
    const Vector at(18 * std::cos(angle), 56, 18 * std::sin(angle));
    append(all, turnedProfile({{2.2f, 0}, {1.8f, 8}, {3, 8.3f}, {0, 10}}, 6, at));
  }
  append(all,
         pipe({Vector(0, 88, 0), Vector(2, 130, -12), Vector(30, 190, -60), Vector(40, 262, -80)}, 3.4f, 12));
  return all;
}

}  // namespace

Placement phoneFrame() {
  return turnedY(-34) >> moved(96, tableHeight, 52);
}

Placement dialFrame() {
  return turnedX(57) >> moved(0, 9.5f, 10.8f) >> phoneFrame();
}

namespace {

// A wall of hard rubber and a curled cord.
Surface phoneSurface() {
  const Surface body =
      sheet(24, 6,
            [](float s, float t) {
              const float angle = 2 * pi * s,
                          grow = mix(1.0f, 0.52f, smoothStep(0, 1, t)) * (t > 0.93f ? 0.9f : 1.0f);
              const auto corner = [](float c) { return std::copysign(std::pow(std::fabs(c), 0.55f), c); };
              return Vector(19 * grow * corner(std::cos(angle)), 17 * t,
                            -16 * grow * corner(std::sin(angle)) - 3 * t);
            },
            {.closedAcross = true});
  Surface all = withoutMapping(body);
  append(all, withoutMapping(
                  placed(superellipsoid(Vector(9.8f, 1.3f, 8.2f), 0.5f, 0.6f, 14, 4), moved(0, 16.6f, -3))));
  for (const float x : {-8.0f, 8.0f}) append(all, box(Vector(2.4f, 6, 7), 0.6f, Vector(x, 20, -4)));
  std::vector<Vector> curls;
  constexpr int steps = 36;
  for (int i = 0; i <= steps; ++i) {
    const float t = static_cast<float>(i) / steps, angle = t * 2 * pi * 7;
    curls.push_back(Vector(-21 - 7 * std::sin(pi * t) + 1.3f * std::cos(angle),
                           2 + 17 * t * t + 1.3f * std::sin(angle),
                           -12 * (1 - t) + 22 * t * (1 - t) - 3 * t));
  }
  append(all, withoutMapping(tube(
                  curls, 3, [](float) { return 0.6f; }, TubeEnd::open)));
  return placed(all, phoneFrame());
}

Surface dialSurface() {
  Surface all = turnedProfile({{9.2f, 0}, {9.2f, 1.4f}, {8.4f, 2}, {0, 2}}, 30, Vector(0, 0, 0));
  append(all, turnedProfile({{3.1f, 0}, {2.8f, 0.9f}, {0, 1.1f}}, 14, Vector(0, 2, 0)));
  return placed(all, dialFrame());
}

// It lies on the fork.
Surface receiverSurface() {
  Surface all = withoutMapping(tube(
      smoothPath(
          {Vector(-19, 23.5f, -4), Vector(-10, 26.5f, -4), Vector(10, 26.5f, -4), Vector(19, 23.5f, -4)}, 7),
      12, [](float t) { return 2.3f + 1.1f * std::pow(std::fabs(2 * t - 1), 3.0f); }));
  for (const float x : {-18.5f, 18.5f})
    append(all, placed(turnedProfile({{0, 0}, {4.6f, 0}, {5.2f, 1}, {4.6f, 4.4f}, {2.5f, 6}, {0, 6}}, 14,
                                     Vector(0, 0, 0)),
                       turnedZ(x < 0 ? -14.0f : 14.0f) >> moved(x, 18, -4)));
  return placed(all, phoneFrame());
}

const Vector trayPlace = cigarettePlace + Vector(2, -7.6f, -12.6f);

Surface ashtraySurface() {
  Surface all = turnedProfile(
      {{0, 0}, {13, 0}, {15.2f, 1}, {16.2f, 5.2f}, {15.8f, 6}, {14.2f, 3}, {12, 1.7f}, {0, 1.4f}}, 44,
      trayPlace);
  for (const float angle : {0.9f, 2.9f, 4.4f})  // stubs
    append(all, placed(turnedProfile({{1.1f, 0}, {1.2f, 5}, {0, 5.4f}}, 7, Vector(0, 0, 0)),
                       turnedZ(70 + 9 * angle) >> turnedY(angle * 57) >>
                           moved(trayPlace + Vector(6 * std::cos(angle), 2.4f, 6 * std::sin(angle)))));
  return all;
}

// Lies in the tray, its glowing end out over the rim.
Surface cigaretteSurface() {
  const Vector end = cigarettePlace + Vector(13, -2.6f, -6.5f);
  return withoutMapping(tube(smoothPath({end, mix(end, emberPlace, 0.5f), emberPlace}, 8), 12, [](float t) {
    return t > 0.86f ? 1.12f - 0.16f * std::fabs(std::sin(t * 90)) - 2.2f * (t - 0.86f) : 1.15f;
  }));
}

// An arm from the table's edge; it points at the jar.
Surface nozzleSurface() {
  const Vector away = unit(nozzlePlace);
  Surface all =
      placed(turnedProfile({{0.9f, 0}, {1.2f, 0.4f}, {2.6f, 9}, {3.4f, 10}, {3.4f, 20}, {2, 22}, {0, 22}}, 14,
                           Vector(0, 0, 0)),
             standing(nozzlePlace, away));
  append(all, pipe({nozzlePlace + away * 21, nozzlePlace + away * 34 + Vector(2, -2, 0), Vector(112, 10, 2),
                    Vector(126, -24, -30), Vector(128, -50, -38)},
                   1.7f, 18));
  append(all, turnedProfile({{8, 0}, {8, 2}, {5, 4}, {4, 8}, {0, 8}}, 16, Vector(128, tableHeight, -38)));
  return all;
}

// Enamelled iron, open below; its inner side shows too and cuts the beam round.
Surface shadeSurface() {
  const float spread = std::tan(lampConeDegrees / 2 * pi / 180) * 1.0f;
  const float low = -34, radius = -low * spread;
  Surface all = placed(turnedProfile({{radius, low},
                                      {radius + 1.2f, low + 0.5f},
                                      {radius * 0.82f + 3, low * 0.7f},
                                      {14, -8},
                                      {12, 2},
                                      {8, 8},
                                      {7, 22},
                                      {4, 25},
                                      {0, 25}},
                                     24, Vector(0, 0, 0)),
                       lampFrame());
  append(
      all,
      placed(turnedOver(turnedProfile(
                 {{radius, low}, {radius * 0.83f, low * 0.72f}, {radius * 0.6f, low * 0.4f}, {7, 1}, {0, 4}},
                 24, Vector(0, 0, 0))),
             lampFrame()));
  append(all, pipe({transformed(lampFrame(), Vector(0, 24, 0)), lampPlace + Vector(-8, 44, 10),
                    lampPlace + Vector(-12, 116, 8)},
                   1.2f, 14, 6));
  return all;
}

// Racks behind and to the right, and what stands in them.
const Vector rackPlace(-345, -220, -160);

Surface shelfSurface() {
  Surface all;
  for (const float z : {0.0f, 210.0f}) append(all, box(Vector(50, 300, 5), 0, rackPlace + Vector(0, 150, z)));
  for (const float y : {30.0f, 110.0f, 190.0f, 270.0f})
    append(all, box(Vector(50, 4, 205), 0, rackPlace + Vector(0, y, 105)));
  // A bench with a drum of a compressor at the right wall.
  append(all, box(Vector(90, 90, 170), 3, Vector(325, -175, -120)));
  append(all, placed(turnedProfile({{0, -52}, {26, -52}, {31, -44}, {32, 0}, {31, 44}, {26, 52}, {0, 52}}, 16,
                                   Vector(0, 0, 0)),
                     turnedX(90) >> moved(318, -98, -120)));
  return all;
}

Surface specimenSurface() {
  Surface all;
  int i = 0;
  for (const float y : {32.0f, 112.0f, 192.0f})
    for (const float z : {30.0f, 72.0f, 118.0f, 168.0f}) {
      ++i;
      if (i == 3 || i == 8) continue;
      const float r = 13 + 3.5f * static_cast<float>((i * 5) % 3),
                  h = 34 + 8 * static_cast<float>((i * 7) % 4);
      append(all, turnedProfile({{r, 0}, {r, h * 0.8f}, {r * 0.7f, h * 0.92f}, {r * 0.7f, h}, {0, h}}, 9,
                                rackPlace + Vector(4, y, z)));
    }
  return all;
}

Surface beaconSurface() {
  return placed(
      turnedProfile({{16, 0}, {16, 5}, {12, 6}, {11.5f, 16}, {8, 22}, {0, 24}}, 14, Vector(0, 0, 0)),
      turnedX(90) >> moved(beaconPlace + Vector(0, 0, -12)));
}

Surface legsSurface() {
  Surface all;
  for (const float x : {-165.0f, 165.0f})
    for (const float z : {-80.0f, 92.0f}) append(all, box(Vector(11, 166, 11), 0, Vector(x, -139, z)));
  for (const float z : {-80.0f, 92.0f}) append(all, box(Vector(330, 7, 6), 0, Vector(0, -180, z)));
  return all;
}

}  // namespace

Surface propSurface(Prop prop) {
  switch (prop) {
    case apparatus:
      return apparatusSurface();
    case phone:
      return phoneSurface();
    case dial:
      return dialSurface();
    case receiver:
      return receiverSurface();
    case ashtray:
      return ashtraySurface();
    case cigarette:
      return cigaretteSurface();
    case nozzle:
      return nozzleSurface();
    case shade:
      return shadeSurface();
    case bulb:
      return placed(withoutMapping(sphere(6, 10, 6)), moved(lampPlace + unit(lampPlace - lampTarget) * 7));
    case shelf:
      return shelfSurface();
    case specimens:
      return specimenSurface();
    case duct: {
      Surface all = box(Vector(60, 44, 700), 3, Vector(210, 232, 40));
      append(all, box(Vector(330, 34, 52), 3, Vector(20, 236, -180)));
      return all;
    }
    case legs:
      return legsSurface();
    case beacon:
      return beaconSurface();
    case bones:
      return bonesSurface();
    case lids:
      return joined({lidSurface(1), lidSurface(-1)});
    case covers:
      return joined({coverSurface(1), coverSurface(-1)});
    case heart:
      return heartSurface();
  }
  return {};
}

Surface tableTop() {
  Surface all = box(Vector(370, 7, 210), 1.6f, Vector(0, tableHeight - 3.5f, 6));
  append(all, box(Vector(364, 12, 204), 1, Vector(0, tableHeight - 13, 6)));
  return all;
}

namespace {

std::vector<ProfilePoint> jarContour() {
  return {
      {28, -44.5f}, {jarRadius - 2, -42}, {jarRadius, -36}, {jarRadius, 22}, {jarRadius - 1.5f, 30}, {31, 38},
      {24, 43},     {22.5f, 48}};
}

// The same with a round shoulder, for cameras that come close.
std::vector<ProfilePoint> blownJar() {
  constexpr float low = 20, high = 43.5f, neck = 24;
  std::vector<ProfilePoint> profile{{28, -44.5f},     {33.5f, -43},    {36.3f, -40},
                                    {jarRadius, -36}, {jarRadius, -8}, {jarRadius, low}};
  constexpr int pieces = 9;
  for (int i = 1; i <= pieces; ++i) {
    const float angle = pi / 2 * static_cast<float>(i) / pieces;
    profile.push_back({neck + (jarRadius - neck) * std::cos(angle), low + (high - low) * std::sin(angle)});
  }
  profile.push_back({22.8f, 45});
  profile.push_back({22.5f, 48});
  return profile;
}

}  // namespace

Surface jarSurface() {
  Surface all = withoutMapping(lathe(blownJar(), 44, 180));
  append(all, withoutMapping(placed(disc(31, 24, 1), moved(0, 36, 0))));
  return all;
}

Surface hoseSurface(float swell) {
  // From the jar's cap down to the table, over its edge and on to the compressor.
  const std::vector<Vector> path =
      smoothPath({Vector(17, 60, -6), Vector(40, 72 + 6 * swell, -22), Vector(84, 24, -60),
                  Vector(118, -40, -66), Vector(168, -44 + 5 * swell, -58), Vector(210, -62, -70),
                  Vector(250, -116, -104), Vector(292, -98, -118)},
                 26);
  return mappingScaled(tube(
                           path, 7,
                           [swell](float t) {
                             const float ribs = 0.28f * std::sin(t * 2 * pi * 27);
                             const float bulge =
                                 std::pow(std::max(0.0f, std::sin(pi * (t * 5 + 0.2f))), 2.0f);
                             return 4.2f + ribs * (1 - 0.5f * swell) + swell * (1.2f + 7.5f * bulge);
                           },
                           TubeEnd::open),
                       1, 6);
}

Surface burstSurface(int shell) {
  constexpr int around = 20, rows = 9;
  const std::vector<ProfilePoint> contour = smoothProfile(jarContour(), rows + 1);
  Surface all;
  for (int row = 1; row < rows; ++row)
    for (int k = 0; k < around; ++k) {
      const auto chance = [&](int which) { return hashUnit(k * 16 + which, row, 997); };
      if (static_cast<int>(chance(0) * burstShells) != shell) continue;
      const float angle = 2 * pi * (static_cast<float>(k) + chance(1)) / around;
      const ProfilePoint& at = contour[static_cast<std::size_t>(row)];
      const Vector out(std::cos(angle), 0, std::sin(angle)), along(-out.z, 0, out.x);
      const Vector centre = out * at.radius + Vector(0, at.height + 3 * chance(2), 0);
      const Vector tilt = unit(Vector(chance(3) - 0.5f, chance(4) - 0.5f, chance(5) - 0.5f));
      // Its edges are ground off, so that they catch light of their own.
      int corners[3], inner[3];
      const float least = 1.6f + 2.4f * chance(12);
      for (int i = 0; i < 3; ++i) {
        const float turn = 2 * pi * (static_cast<float>(i) + 0.7f * chance(6 + i)) / 3,
                    size = least * (1 + 0.9f * chance(9 + i) * chance(9 + i));
        const Vector flat = (along * std::cos(turn) + Vector(0, 1, 0) * std::sin(turn)) * size;
        const Vector leant = flat + cross(tilt, flat) * 0.8f;
        corners[i] = addPoint(all, centre + leant);
        inner[i] = addPoint(all, centre + leant * (1 - 0.9f / size) + out * 1.8f);
      }
      addTriangle(all, inner[0], inner[1], inner[2]);
      for (int i = 0; i < 3; ++i) {
        const int next = (i + 1) % 3;
        addQuad(all, corners[i], corners[next], inner[next], inner[i]);
      }
    }
  return faceted(all);
}

Surface shardSurface(int kind) {
  const float k = static_cast<float>(kind);
  const Vector tip(0, 5 + k, 0), left(-3 - 0.6f * k, -2, 0.6f), right(2.4f, -3.4f, -0.5f),
      thick(0.2f, 0.1f, 1.1f);
  Surface all;
  const int a = addPoint(all, tip), b = addPoint(all, left), c = addPoint(all, right),
            d = addPoint(all, thick), e = addPoint(all, thick * -1.0f);
  for (const auto& [p, q, r] : {std::array{a, b, d}, {b, c, d}, {c, a, d}, {b, a, e}, {c, b, e}, {a, c, e}})
    addTriangle(all, p, q, r);
  return faceted(all);
}

}  // namespace vex::laboratory
