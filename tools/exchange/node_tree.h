#pragma once

#include <assimp/scene.h>

#include <optional>
#include <string>
#include <vector>

#include "tools/exchange/import.h"
#include "tools/exchange/motion.h"
#include "tools/exchange/source_file.h"
#include "tools/exchange/transform.h"

// The nodes of a file with their motion, and how the player will move what hangs on them.
//
// The player keeps the vertices of an object at rest in the world and moves them by W = parent's W * X, where
// the object's own X is: pivot to the origin, base matrix, scales, turns, place. A node's vertices are stored
// under the transform A, so that its whole transform in the file at a time is G = W A. A node that does not
// move by itself has no tracks: X is the identity and A is the parent's A times its own transform. One that
// moves has tracks, for which the parent's A must be a similarity: then A(parent) * place * turn * scale
// falls apart into a place, a turn and scales. A node at rest that skews what moves below it gets standing
// tracks, and an A without the skew.

namespace vex {

enum class NodeRole { plain, camera, light, target, bone };

struct SourceNode {
  const aiNode* node = nullptr;
  int parent = -1;  // one before it
  std::string name;
  NodeRole role = NodeRole::plain;
  Pose rest;
  Transform local;                     // at rest
  const NodeMotion* motion = nullptr;  // null where it stands
  bool chosen = true;                  // of those that are to come in
  bool tracked = false;
  bool mirrored = false;  // the whole transform turns surfaces inside out
  Transform stored;       // A
};

struct NodeTree {
  std::vector<SourceNode> nodes;
  Transform world;  // from the file's axes and unit to the player's
  Motions motions;
  double seconds = 0;
  int lastFrame = 0;

  int find(const std::string& name) const;  // -1: none
  Transform localAt(int node, double seconds) const;
  Transform worldAt(int node, double seconds) const;  // in the player's axes
};

// Fatal: a motion that lasts longer than mostFrames.
NodeTree growTree(const SourceFile& source, const ImportOptions& options, Report& report);

inline constexpr int mostFrames = 20'000;

}  // namespace vex
