#include "tools/exchange/node_tree.h"

#include <fnmatch.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "base/report.h"
#include "tools/exchange/extras.h"

namespace vex {

namespace {

constexpr double sameValue = 1e-7;

bool same(const Place& a, const Place& b) {
  return (a - b).Length() <= sameValue * (1 + a.Length());
}
bool same(const Turn& a, const Turn& b) {
  return angleBetween(a, b) <= 1e-6;
}

// Whether the channel says one thing all the time, which is then what it rests at.
template <typename Value>
bool stands(const Channel<Value>& channel, Value& rest) {
  if (channel.times.empty()) return true;
  for (const Value& value : channel.values)
    if (!same(value, channel.values[0])) return false;
  // A slope leads away between two equal values.
  if (channel.joining == Joining::cubic && channel.values.size() > 1) return false;
  rest = channel.values[0];
  return true;
}

Transform worldOf(const SourceFile& source, const ImportOptions& options, Report& report) {
  bool up = options.up == UpAxis::z;
  int axis = 1;  // y
  if (options.up == UpAxis::asFileSays && source.kind == SourceKind::fbx && source.scene->mMetaData &&
      source.scene->mMetaData->Get("UpAxis", axis) && axis == 2) {
    up = true;
    report.changed("axes: the file has z up, turned to y (--up y takes it as it stands)");
  }
  Transform world;
  if (up) world = Transform(1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1);
  Transform scale;
  Transform::Scaling(Place(options.scale, options.scale, options.scale), scale);
  return world * scale;
}

void collectNodes(const aiScene& scene, NodeTree& tree) {
  struct Open {
    const aiNode* node;
    int parent;
  };
  std::vector<Open> open{{scene.mRootNode, -1}};
  while (!open.empty()) {
    const auto [node, parent] = open.back();
    open.pop_back();
    SourceNode& own = tree.nodes.emplace_back();
    own.node = node;
    own.parent = parent;
    own.name = node->mName.C_Str();
    own.local = toTransform(node->mTransformation);
    own.rest = poseOf(own.local);
    const int index = static_cast<int>(tree.nodes.size()) - 1;
    for (unsigned i = node->mNumChildren; i-- > 0;) open.push_back({node->mChildren[i], index});
  }
}

void giveRoles(const aiScene& scene, NodeTree& tree) {
  std::set<std::string> cameras, lights, bones;
  for (unsigned i = 0; i < scene.mNumCameras; ++i) cameras.insert(scene.mCameras[i]->mName.C_Str());
  for (unsigned i = 0; i < scene.mNumLights; ++i) lights.insert(scene.mLights[i]->mName.C_Str());
  for (unsigned i = 0; i < scene.mNumMeshes; ++i)
    for (unsigned b = 0; b < scene.mMeshes[i]->mNumBones; ++b)
      bones.insert(scene.mMeshes[i]->mBones[b]->mName.C_Str());
  constexpr std::string_view target = ".Target";
  for (SourceNode& node : tree.nodes) {
    const std::string owner =
        node.name.ends_with(target) ? node.name.substr(0, node.name.size() - target.size()) : "";
    if (cameras.contains(node.name))
      node.role = NodeRole::camera;
    else if (lights.contains(node.name))
      node.role = NodeRole::light;
    else if (!owner.empty() && (cameras.contains(owner) || lights.contains(owner)))
      node.role = NodeRole::target;
    else if (bones.contains(node.name))
      node.role = NodeRole::bone;
  }
}

void choose(const ImportOptions& options, NodeTree& tree) {
  if (options.only.empty()) return;
  for (const std::string& pattern : options.only) {
    const bool known = std::any_of(tree.nodes.begin(), tree.nodes.end(), [&](const SourceNode& node) {
      return fnmatch(pattern.c_str(), node.name.c_str(), 0) == 0;
    });
    if (!known) fatalError("no node of the file is named %s", pattern.c_str());
  }
  for (SourceNode& node : tree.nodes) {
    const bool named = std::any_of(options.only.begin(), options.only.end(), [&](const std::string& pattern) {
      return fnmatch(pattern.c_str(), node.name.c_str(), 0) == 0;
    });
    node.chosen = named || (node.parent >= 0 && tree.nodes[static_cast<std::size_t>(node.parent)].chosen);
  }
}

bool hasKeyHint(const aiNode& node) {
  return std::any_of(std::begin({placesExtra, turnsExtra, scalesExtra}),
                     std::end({placesExtra, turnsExtra, scalesExtra}),
                     [&](const char* extra) { return !extraOf(node, extra).empty(); });
}

void giveMotions(NodeTree& tree, Report& report) {
  std::set<std::string> seen;
  for (SourceNode& node : tree.nodes) {
    const auto motion = tree.motions.byNode.find(node.name);
    if (motion == tree.motions.byNode.end()) continue;
    if (!seen.insert(node.name).second) {
      report.left("node " + node.name +
                  ": a second node of that name, its motion can't be told from the first's");
      continue;
    }
    Pose rest = node.rest;
    const bool still = stands(motion->second.places, rest.place) & stands(motion->second.turns, rest.turn) &
                       stands(motion->second.scales, rest.scale);
    if (!still || hasKeyHint(*node.node)) {
      node.motion = &motion->second;
    } else if (!same(rest.place, node.rest.place) || !same(rest.turn, node.rest.turn) ||
               !same(rest.scale, node.rest.scale)) {
      node.rest = rest;
      node.local = transformOf(rest);
    }
  }
}

// What the vertices of a node that skews are stored under.
Transform withoutSkew(const Transform& whole, bool mirrored) {
  Transform result;
  Transform::Translation(translationOf(whole), result);
  if (mirrored) result.a1 = -1;
  return result;
}

void storeUnder(NodeTree& tree) {
  std::vector<bool> movesBelow(tree.nodes.size());
  for (std::size_t i = tree.nodes.size(); i-- > 1;) {
    const SourceNode& node = tree.nodes[i];
    // Cameras and lights are no objects of the hierarchy: their places are in the world.
    const bool object =
        node.role != NodeRole::camera && node.role != NodeRole::light && node.role != NodeRole::target;
    if (movesBelow[i] || (node.motion && object)) movesBelow[static_cast<std::size_t>(node.parent)] = true;
  }
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
    SourceNode& node = tree.nodes[i];
    const SourceNode* parent = node.parent < 0 ? nullptr : &tree.nodes[static_cast<std::size_t>(node.parent)];
    const Transform whole = (parent ? parent->stored : tree.world) * node.local;
    node.mirrored = (parent && parent->mirrored) != (node.local.Determinant() < 0);
    node.tracked = node.motion;
    node.stored = whole;
    Similarity parts;
    const double determinant = whole.Determinant();
    const bool flat = !(std::fabs(determinant) > 1e-30) || !std::isfinite(determinant);
    if (movesBelow[i] && !isSimilarity(whole, parts)) {
      node.stored = withoutSkew(whole, node.mirrored);
      node.tracked = true;
    } else if (node.tracked && flat) {
      node.stored = withoutSkew(whole, node.mirrored);
    }
  }
}

}  // namespace

int NodeTree::find(const std::string& name) const {
  const auto found =
      std::find_if(nodes.begin(), nodes.end(), [&](const SourceNode& node) { return node.name == name; });
  return found == nodes.end() ? -1 : static_cast<int>(found - nodes.begin());
}

Transform NodeTree::localAt(int node, double time) const {
  const SourceNode& own = nodes[static_cast<std::size_t>(node)];
  return own.motion ? transformOf(poseAt(*own.motion, own.rest, time)) : own.local;
}

Transform NodeTree::worldAt(int node, double time) const {
  Transform result;
  for (int i = node; i >= 0; i = nodes[static_cast<std::size_t>(i)].parent)
    result = localAt(i, time) * result;
  return world * result;
}

NodeTree growTree(const SourceFile& source, const ImportOptions& options, Report& report) {
  NodeTree tree;
  tree.world = worldOf(source, options, report);
  collectNodes(*source.scene, tree);
  giveRoles(*source.scene, tree);
  choose(options, tree);
  tree.motions = collectMotions(*source.scene, report);
  if (source.kind == SourceKind::gltf) readJoining(source.path, tree.motions);
  tree.seconds = tree.motions.seconds;
  const double frames = tree.seconds * options.framesPerSecond;
  if (!(frames <= mostFrames))
    fatalError("%s: its motion lasts %g seconds, %d frames of %d a second are possible", source.path.c_str(),
               tree.seconds, mostFrames, options.framesPerSecond);
  tree.lastFrame = static_cast<int>(std::ceil(frames - 1e-3));
  giveMotions(tree, report);
  storeUnder(tree);
  return tree;
}

}  // namespace vex
