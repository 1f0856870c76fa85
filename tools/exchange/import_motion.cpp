#include <algorithm>
#include <cmath>

#include "tools/exchange/extras.h"
#include "tools/exchange/import_parts.h"

namespace vex {

namespace {

// What a node's own transform comes to in the player: the player's order is base matrix, scale, turn, place.
struct Parts {
  std::vector<Place> places, scales;
  std::vector<Turn> turns;
};

bool still(const std::vector<Place>& samples, double tolerance) {
  return std::all_of(samples.begin(), samples.end(),
                     [&](const Place& p) { return (p - samples[0]).Length() <= tolerance; });
}

bool still(const std::vector<Turn>& samples) {
  return std::all_of(samples.begin(), samples.end(),
                     [&](const Turn& q) { return angleBetween(q, samples[0]) <= 1e-5; });
}

Matrix cleaned(const Transform& transform) {
  Transform identity;
  for (unsigned r = 0; r < 3; ++r)
    for (unsigned c = 0; c < 3; ++c)
      if (std::fabs(transform[r][c] - identity[r][c]) > 1e-6) return toMatrix(transform);
  return scaling({1, 1, 1});
}

Parts sampleParts(const ImportWork& work, const SourceNode& node, const Similarity& parent,
                  const Transform& parentStored, int last) {
  Parts parts;
  for (int frame = 0; frame <= last; ++frame) {
    const Pose pose = node.motion ? poseAt(*node.motion, node.rest,
                                           static_cast<double>(frame) / work.options.framesPerSecond)
                                  : node.rest;
    parts.places.push_back(parentStored * pose.place);
    parts.turns.push_back(product(parent.turn, parent.mirrored ? mirroredTurn(pose.turn) : pose.turn));
    parts.scales.push_back(pose.scale * parent.scale);
  }
  return parts;
}

}  // namespace

void importMotion(ImportWork& work, const SourceNode& node, double tolerance, TextMesh& mesh) {
  const Transform parentStored =
      node.parent < 0 ? work.tree.world : work.tree.nodes[static_cast<std::size_t>(node.parent)].stored;
  Similarity parent;
  isSimilarity(parentStored, parent);  // it is, or this node would not have tracks
  const auto placesHint = readKeys(extraOf(*node.node, placesExtra));
  const auto turnsHint = readKeys(extraOf(*node.node, turnsExtra));
  const auto scalesHint = readKeys(extraOf(*node.node, scalesExtra));
  // Standing tracks are as long as any; moving ones of an export may be shorter than the whole.
  int last = std::max(work.tree.lastFrame, 1);
  for (const auto& hint : {placesHint, turnsHint, scalesHint})
    if (hint && hint->frames.back() >= 1) last = std::min(hint->frames.back(), mostFrames);
  const Parts parts = sampleParts(work, node, parent, parentStored, last);

  Transform base = linearInverse(node.stored);
  if (parent.mirrored) {
    Transform mirror;
    mirror.a1 = -1;
    base = mirror * base;
  }
  const bool scales = scalesHint || !still(parts.scales, scaleTolerance * 1e-3);
  const bool turns =
      turnsHint || !still(parts.turns) || (scales && angleBetween(parts.turns[0], Turn()) > 1e-6);
  if (!scales) {
    Transform scale;
    Transform::Scaling(parts.scales[0], scale);
    base = scale * base;
  }
  if (!turns) base = Transform(parts.turns[0].GetMatrix()) * base;
  mesh.base = cleaned(base);

  if (turns) mesh.motion.turns = thinTurns(parts.turns, turnTolerance, turnsHint);
  if (scales) mesh.motion.scales = thinScales(parts.scales, scaleTolerance, scalesHint);
  const bool stays = still(parts.places, 1e-6 * tolerance / placeTolerance) &&
                     (parts.places[0] - toPlace(mesh.pivot)).Length() <= 1e-6 * tolerance / placeTolerance;
  const bool needsTrack = mesh.motion.turns.empty() && mesh.motion.scales.empty();
  if (!placesHint && stays && !needsTrack) return;
  ThinnedPlaces places = thinPlaces(parts.places, tolerance, placesHint);
  mesh.motion.positions = std::move(places.keys);
  mesh.motion.straight = places.straight;
}

}  // namespace vex
