#include <algorithm>
#include <cmath>
#include <iterator>

#include "production/geometry/forms.h"
#include "production/models/monster_parts.h"
#include "production/textures/palette.h"

// Limbs of wet metal. Legs are rigid: they stand on their claws and turn about them as the trunk sways, their
// hips deep enough in it to hide the difference. Arms, tail and tentacles are chains of pieces.

namespace vex::monster {

using namespace image;
using namespace geometry;

namespace {

// A spindle from joint to joint: thin where it is held, swollen behind that.
float spindle(float t, float root, float tip, float swell) {
  const float belly = std::sin(pi * std::pow(t, 0.6f));
  return mix(root, tip, t) * (0.72f + swell * belly * belly);
}

// --- Legs

struct Leg {
  const char* name;
  Vector hip, shoulder, knee, shin, claw;  // on the +x side; the shin's middle
};
const Leg legs[] = {
    {"leg_fore", Vector(11, 96, 14), Vector(32, 110, 24), Vector(60, 146, 46), Vector(77, 78, 62),
     Vector(88, 0, 84)},
    {"leg_mid", Vector(11, 96, -1), Vector(36, 116, -2), Vector(74, 158, -6), Vector(98, 84, -8),
     Vector(116, 0, -10)},
    {"leg_hind", Vector(11, 96, -17), Vector(30, 112, -30), Vector(54, 152, -62), Vector(72, 80, -84),
     Vector(84, 0, -116)},
};

// Places along a leg, between its joints, and how thick it is there: a plate on the thigh, two plates on the
// shin, a claw. A thorn stands over the knee.
struct Station {
  int section;  // from hip, shoulder, knee, ankle
  float along, radius;
};
constexpr Station stations[] = {{0, 0, 6.5f},     {0, 0.55f, 6.6f},  {0, 0.85f, 7.4f}, {1, 0, 7.6f},
                                {1, 0.10f, 6.6f}, {1, 0.15f, 5.0f},  {1, 0.19f, 6.4f}, {1, 0.42f, 7.5f},
                                {1, 0.68f, 6.4f}, {1, 0.82f, 4.9f},  {1, 0.87f, 4.0f}, {1, 0.91f, 4.6f},
                                {2, 0, 5.0f},     {2, 0.045f, 4.6f}, {2, 0.07f, 3.6f}, {2, 0.09f, 5.2f},
                                {2, 0.22f, 5.8f}, {2, 0.38f, 4.7f},  {2, 0.49f, 3.2f}, {2, 0.51f, 4.3f},
                                {2, 0.62f, 4.6f}, {2, 0.80f, 3.2f},  {2, 0.92f, 2.0f}, {2, 0.95f, 3.0f},
                                {3, 0, 3.1f},     {3, 0.30f, 2.3f},  {3, 0.65f, 1.3f}, {3, 1, 0}};

Surface legSurface(const Leg& leg, Fineness fineness) {
  const bool full = fineness == Fineness::full;
  // The claw bends outwards before it comes down.
  const Vector ankle = mix(leg.shin, leg.claw, 0.72f) + Vector(6, 2, 0.05f * leg.claw.z);
  const Vector joints[] = {leg.hip, leg.shoulder, leg.knee, ankle, leg.claw};
  std::vector<Vector> path;
  std::vector<float> radii, lengths;
  for (std::size_t i = 0; i < std::size(stations); i += full ? 1 : 3) {
    const Station& it = stations[i];
    const float bend = it.section == 3 ? 3 * std::sin(pi * it.along) : 0;
    path.push_back(mix(joints[it.section], joints[it.section + 1], it.along) + Vector(bend, 0, 0));
    radii.push_back(it.radius);
    lengths.push_back(path.size() == 1 ? 0 : lengths.back() + (path.back() - path[path.size() - 2]).length());
  }
  const auto radius = [&](float t) {
    const auto nearest = std::lower_bound(lengths.begin(), lengths.end() - 1, t * lengths.back() - 0.01f);
    return radii[static_cast<std::size_t>(nearest - lengths.begin())];
  };
  const Surface limb = tube(path, full ? 12 : 5, radius, TubeEnd::point);
  if (!full) return withoutMapping(limb);
  const Vector outwards = unit(leg.knee - mix(leg.shoulder, leg.shin, 0.5f));
  const auto thorn = [](float t) { return 6.0f * std::sqrt(1 - t) * (1 - 0.55f * t); };
  return withoutMapping(joined({limb, tube(smoothPath({leg.knee - outwards * 6, leg.knee + outwards * 2,
                                                       leg.knee + outwards * 12 + Vector(2, 0, 0),
                                                       leg.knee + outwards * 19 + Vector(7, -2, 0)},
                                                      6),
                                           8, thorn, TubeEnd::point)}));
}

Placement leaning(const Vector& from, const Vector& to) {
  const Vector p = unit(from), q = unit(to), axis = cross(p, q);
  const float sine = axis.length();
  return sine < 1e-6f ? Placement{} : turned(axis / sine, std::atan2(sine, dot(p, q)));
}

void addLegs(std::vector<Piece>& pieces, Fineness fineness) {
  for (const Leg& leg : legs)
    for (const float side : {-1.0f, 1.0f}) {
      const Placement mirror = stretched(side, 1, 1);
      const Vector hip = transformed(mirror, leg.hip), claw = transformed(mirror, leg.claw);
      Piece piece{.name = std::string(leg.name) + (side > 0 ? "_l" : "_r"),
                  .surface = placed(legSurface(leg, fineness), mirror),
                  .pivot = claw};
      piece.motion.turns = turnKeys(loopSeconds, 6, [hip, claw](float t) {
        return leaning(hip - claw, carriedByTrunk(hip, t) - claw);
      });
      pieces.push_back(piece);
    }
}

// --- Chains

struct ChainLink {
  Vector from, to;
  float root, tip, swell;
  Vector bow{0, 0, 0};  // of its middle out of the straight
};

// `turn(link, t)` is each piece's own turn against the one before it; `joint` is the size of the balls
// between them in their roots, 0: none.
void addChain(std::vector<Piece>& pieces, const std::string& name, const std::string& parent,
              const std::vector<ChainLink>& links, int around, int along, float joint,
              const std::function<Placement(int link, float t)>& turn) {
  std::string before = parent;
  for (int i = 0; i < static_cast<int>(links.size()); ++i) {
    const ChainLink& link = links[static_cast<std::size_t>(i)];
    const bool last = i + 1 == static_cast<int>(links.size());
    std::vector<Vector> path;
    for (int k = 0; k <= along; ++k) {
      const float share = static_cast<float>(k) / static_cast<float>(along);
      path.push_back(mix(link.from, link.to, share) + link.bow * std::sin(pi * share));
    }
    Piece piece{.name = name + std::to_string(i + 1),
                .parent = before,
                .surface = withoutMapping(tube(
                    path, around, [&](float t) { return spindle(t, link.root, link.tip, link.swell); },
                    last ? TubeEnd::point : TubeEnd::round)),
                .pivot = link.from};
    if (joint > 0)
      append(piece.surface, placed(withoutMapping(sphere(joint * link.root, 12, 6)), moved(link.from)));
    piece.motion.turns = turnKeys(loopSeconds, 6, [turn, i](float t) { return turn(i, t); });
    pieces.push_back(grown(piece));
    before = piece.name;
  }
}

void addArms(std::vector<Piece>& pieces, Fineness fineness) {
  const bool full = fineness == Fineness::full;
  for (const float side : {-1.0f, 1.0f}) {
    const auto there = [side](float x, float y, float z) { return Vector(x * side, y, z); };
    const float phase = side > 0 ? 0.0f : 0.37f;
    addChain(pieces, side > 0 ? "arm_l" : "arm_r", "trunk",
             {{there(12, 98, 25), there(45, 106, 50), 5.4f, 4.2f, 0.35f},
              {there(45, 106, 50), there(42, 74, 86), 4.2f, 3.0f, 0.30f},
              {there(42, 74, 86), there(16, 36, 100), 3.6f, 0.5f, 0.25f, there(9, 1, 6)}},
             full ? 10 : 4, full ? 7 : 3, full ? 0.8f : 0.0f, [side, phase](int link, float t) {
               const auto k = static_cast<float>(link);
               // Once a loop an arm is lifted and its claw opened.
               const float lift =
                   std::pow(0.5f + 0.5f * swing(t, loopSeconds, 1, side > 0 ? 0.4f : 0.9f), 2.0f);
               const float raised = (link == 0 ? -34.0f : link == 1 ? -16.0f : -22.0f) * lift;
               return turnedX(raised + (6 + 5 * k) * swing(t, loopSeconds, 2, phase - 0.11f * k)) >>
                      turnedY(side * (5 + 3 * k) * swing(t, loopSeconds, 3, 2 * phase + 0.2f * k));
             });
  }
}

void addTail(std::vector<Piece>& pieces, Fineness fineness) {
  const bool full = fineness == Fineness::full;
  const Vector joints[] = {Vector(0, 111, -82),  Vector(0, 124, -104), Vector(0, 144, -116),
                           Vector(0, 167, -116), Vector(0, 187, -104), Vector(0, 201, -84),
                           Vector(0, 206, -62),  Vector(0, 196, -34)};
  std::vector<ChainLink> links;
  for (int i = 0; i < 7; ++i) {
    const float root = 6.2f - 0.62f * static_cast<float>(i);
    links.push_back({joints[i], joints[i + 1], root, i < 6 ? root * 0.8f : 0.3f, i < 6 ? 0.5f : 0.9f});
  }
  addChain(pieces, "tail", "abdomen", links, full ? 7 : 4, full ? 5 : 2, 0, [](int link, float t) {
    const auto k = static_cast<float>(link);
    // Once a loop it darts at what stands before it.
    const float dart = smoothStep(5.36f, 5.56f, t) * smoothStep(6.6f, 5.8f, t);
    return turnedX(7 * swing(t, loopSeconds, 1, 0.3f - 0.09f * k) + 8 * dart) >>
           turnedZ(9 * swing(t, loopSeconds, 2, -0.12f * k)) >>
           turnedY(6 * swing(t, loopSeconds, 3, 0.1f * k));
  });
}

void addTentacles(std::vector<Piece>& pieces) {
  int number = 0;
  for (const float z : {10.0f, -8.0f})
    for (const float side : {-1.0f, 1.0f}) {
      std::vector<ChainLink> links;
      Vector joint(7 * side, 84, z);
      const float phase = 0.23f * static_cast<float>(number);
      for (int i = 0; i < 4; ++i) {
        const auto k = static_cast<float>(i);
        const Vector next =
            joint + Vector(side * (3.5f - 1.5f * k), -13, (z > 0 ? 1.0f : -1.0f) * (2.5f - k));
        const float root = 2.9f - 0.40f * k;
        links.push_back({joint, next, root, i < 3 ? root * 0.85f : 0.7f, 0.4f});
        joint = next;
      }
      addChain(pieces, "feeler" + std::string(1, static_cast<char>('a' + number)), "trunk", links, 4, 2, 0,
               [phase](int link, float t) {
                 const auto k = static_cast<float>(link);
                 return turnedX((5 + 3 * k) * swing(t, loopSeconds, 2, phase - 0.13f * k)) >>
                        turnedZ((6 + 2 * k) * swing(t, loopSeconds, 1, 2 * phase - 0.1f * k));
               });
      ++number;
    }
}

// --- Strings

// From a place of the creature at rest, before it is grown, straight down to a drop.
Surface stringSurface(const Vector& from, float length) {
  const auto radius = [](float t) {
    const float drop = (t - 0.88f) / 0.07f;
    return 0.6f + 0.6f * std::exp(-t * 9) + 0.7f * std::exp(-drop * drop);
  };
  const std::vector<Vector> path =
      smoothPath({from, from + Vector(0.6f, -0.35f * length, -0.5f), from + Vector(-0.2f, -length, 0.3f)}, 7);
  return withoutMapping(tube(path, 4, radius, TubeEnd::point));
}

struct StringGroup {
  const char* name;
  const char* parent;
  float sway;  // degrees
  std::vector<Vector> from;
  std::vector<float> lengths;
};
const StringGroup stringGroups[] = {
    {"drool",
     "head",
     5,
     {{3.4f, 90, 82}, {-2.6f, 105, 66}, {11.5f, 96, 73}, {-11.5f, 96, 73}},
     {17, 25, 12, 9}},
    {"slime", "trunk", 3, {{0, 82, 14}, {2, 82, -2}, {-3, 82, 6}, {8, 84, -14}}, {22, 34, 14, 18}},
    {"mucus", "abdomen", 4, {{0, 86, -46}, {7, 87, -56}, {-8, 87, -52}, {1, 88, -66}}, {30, 18, 24, 14}},
};

}  // namespace

std::vector<Piece> stringPieces() {
  std::vector<Piece> pieces;
  for (const StringGroup& group : stringGroups) {
    Piece piece{.name = group.name, .parent = group.parent, .pivot = group.from[0]};
    for (std::size_t i = 0; i < group.from.size(); ++i)
      append(piece.surface, stringSurface(group.from[i], group.lengths[i]));
    piece.motion.turns = turnKeys(loopSeconds, 6, [sway = group.sway](float t) {
      return turnedX(sway * swing(t, loopSeconds, 3, 0.4f)) >> turnedZ(sway * swing(t, loopSeconds, 2));
    });
    pieces.push_back(grown(piece));
  }
  return pieces;
}

std::vector<Piece> limbPieces(Fineness fineness) {
  std::vector<Piece> pieces;
  addLegs(pieces, fineness);
  addArms(pieces, fineness);
  addTail(pieces, fineness);
  if (fineness == Fineness::full) addTentacles(pieces);
  return pieces;
}

}  // namespace vex::monster
