#include "tools/exchange/import.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <set>

#include "base/report.h"
#include "tools/exchange/extras.h"
#include "tools/exchange/import_parts.h"

namespace vex {

namespace {

constexpr std::size_t longestName = 31;
constexpr std::size_t mostMeshes = 1000;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

// An object in the making, with what decides on its place in the model.
struct Object {
  int node;
  int sibling = -1;  // of several surfaces of a node: which; the first has the node's name and its tracks
  ObjectExtra extra;
  bool ordered = false;  // the extra is there
};

// The nearest ancestor that has become an object; empty when there is none.
std::string parentOf(const ImportWork& work, const std::vector<std::string>& objectOf,
                     const SourceNode& node) {
  for (int i = node.parent; i >= 0; i = work.tree.nodes[at(i)].parent)
    if (!objectOf[at(i)].empty()) return objectOf[at(i)];
  return {};
}

bool refusedForm(ImportWork& work, const SourceNode& node, const aiMesh& mesh) {
  const char* what = mesh.mNumBones > 0        ? "a skin"
                     : mesh.mNumAnimMeshes > 0 ? "forms to change between"
                                               : nullptr;
  if (!what || work.options.atRest) return false;
  work.report.left(
      "mesh " + node.name + ": has " + what +
      "; bake it to parts that move as wholes, or to a mesh for each state, or take it at rest (--rest)");
  return true;
}

// Objects of a node, without their parents. Empty ones stand for what only moves others, or is looked for by
// name.
std::vector<Object> objectsOf(ImportWork& work, int index) {
  const SourceNode& node = work.tree.nodes[at(index)];
  Object object{.node = index, .extra = {}};
  if (const auto extra = readObject(extraOf(*node.node, objectExtra)))
    object.extra = *extra, object.ordered = true;
  std::vector<Object> objects;
  for (unsigned i = 0; i < node.node->mNumMeshes; ++i) {
    const aiMesh& mesh = *work.source.scene->mMeshes[node.node->mMeshes[i]];
    if (!node.chosen || mesh.mNumFaces == 0 || refusedForm(work, node, mesh)) continue;
    object.sibling = static_cast<int>(i);
    objects.push_back(object);
  }
  object.sibling = -1;
  const bool empty =
      node.chosen && node.role == NodeRole::plain && node.parent >= 0 && node.node->mNumMeshes == 0;
  const bool movesObjects = node.tracked && (node.role == NodeRole::plain || node.role == NodeRole::bone) &&
                            node.node->mNumChildren > 0;
  if (objects.empty() && (empty || movesObjects)) objects.push_back(object);
  return objects;
}

// As the export has numbered them; then as the file lists them. Parents stay before their children.
std::vector<Object> inOrder(const NodeTree& tree, std::vector<Object> objects) {
  std::stable_sort(objects.begin(), objects.end(), [](const Object& a, const Object& b) {
    if (a.ordered != b.ordered) return a.ordered;
    return a.ordered && a.extra.order < b.extra.order;
  });
  std::vector<std::vector<Object>> ofNode(tree.nodes.size());
  for (const Object& object : objects) ofNode[at(object.node)].push_back(object);
  std::vector<Object> result;
  std::vector<int> path;
  for (const Object& object : objects) {
    path.clear();
    for (int i = object.node; i >= 0; i = tree.nodes[at(i)].parent) path.push_back(i);
    for (std::size_t i = path.size(); i-- > 0;) {
      auto& own = ofNode[at(path[i])];
      result.insert(result.end(), own.begin(), own.end());
      own.clear();
    }
  }
  return result;
}

void importObjects(ImportWork& work) {
  std::vector<Object> objects;
  for (std::size_t i = 0; i < work.tree.nodes.size(); ++i) {
    const std::vector<Object> own = objectsOf(work, static_cast<int>(i));
    objects.insert(objects.end(), own.begin(), own.end());
  }
  Materials materials(work);
  std::vector<std::string> objectOf(work.tree.nodes.size());  // its name, once it has come in
  std::vector<std::pair<std::size_t, int>> moving;            // objects with tracks and their nodes
  int empties = 0;
  for (const Object& object : inOrder(work.tree, std::move(objects))) {
    const SourceNode& node = work.tree.nodes[at(object.node)];
    if (work.result.model.meshes.size() == mostMeshes) {
      work.report.left("mesh " + node.name + ": the player takes 1000 meshes and helpers");
      continue;
    }
    const bool first = objectOf[at(object.node)].empty();
    TextMesh mesh{.name = node.name, .pivot = toVector(translationOf(node.stored))};
    if (object.sibling >= 0) {
      const unsigned index = node.node->mMeshes[object.sibling];
      const aiMesh& source = *work.source.scene->mMeshes[index];
      if (!importForm(work, source, node.stored, node.mirrored, object.ordered, mesh)) continue;
      mesh.material = materials.indexOf(source.mMaterialIndex, !mesh.coordinateFaces.empty(),
                                        extraOf(*node.node, materialExtra));
      if (materials.mirrors(mesh.material)) mesh.coordinates.clear(), mesh.coordinateFaces.clear();
    } else {
      mesh.helperClass = "Dummy";
      ++empties;
    }
    if (object.ordered) mesh.helperClass = object.extra.helperClass;
    mesh.name = work.names.take(node.name, mesh.faces.empty() ? "helper" : "mesh", work.report);
    mesh.parent = first ? parentOf(work, objectOf, node) : objectOf[at(object.node)];
    if (first) objectOf[at(object.node)] = mesh.name;
    if (first && node.tracked) moving.emplace_back(work.result.model.meshes.size(), object.node);
    work.result.model.meshes.push_back(std::move(mesh));
  }
  const double tolerance = placeTolerance * sizeOf(work.result.model);
  for (const auto& [mesh, node] : moving)
    importMotion(work, work.tree.nodes[at(node)], tolerance, work.result.model.meshes[mesh]);
}

std::size_t keyCount(const ModelMotion& motion) {
  return motion.positions.size() + motion.turns.size() + motion.scales.size();
}

void reportWhatCame(ImportWork& work) {
  const TextModel& model = work.result.model;
  std::size_t triangles = 0, vertices = 0, helpers = 0, keys = 0, moving = 0;
  const auto count = [&](const ModelMotion& motion) {
    keys += keyCount(motion);
    moving += keyCount(motion) > 0;
  };
  for (const TextMesh& mesh : model.meshes) {
    triangles += mesh.faces.size();
    vertices += mesh.coordinateFaces.empty() ? mesh.points.size() : mesh.coordinates.size();
    helpers += !mesh.helperClass.empty();
    count(mesh.motion);
  }
  for (const TextLight& light : model.lights) count(light.motion), count(light.targetMotion);
  for (const TextCamera& camera : model.cameras) count(camera.motion), count(camera.targetMotion);
  work.report.came(formatted("%zu meshes of %zu triangles and %zu vertices, %zu helpers, %zu materials",
                             model.meshes.size() - helpers, triangles, vertices, helpers,
                             model.materials.size()));
  work.report.came(formatted("%zu cameras, %zu lights", model.cameras.size(), model.lights.size()));
  if (moving > 0)
    work.report.came(formatted("%zu moving things with %zu keys on %d frames, %d a second", moving, keys,
                               model.lastFrame + 1, model.framesPerSecond));
  constexpr double small = 20;
  const double size = sizeOf(model);
  if (triangles > 0 && size < small)
    work.report.came(formatted(
        "a size of only %.3g; what is nearer to the eye than 1 is not drawn, --scale makes it larger", size));
}

}  // namespace

std::string Names::take(const std::string& wanted, const char* what, Report& report) {
  std::string name;
  for (const char c : wanted) name += c > ' ' && c <= '~' && c != '"' && c != '\\' ? c : '_';
  if (name.empty()) name = what;
  name.resize(std::min(name.size(), longestName));
  const auto lowered = [](std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
  };
  const std::string stem = name;
  auto place = std::lower_bound(taken.begin(), taken.end(), lowered(name));
  for (int number = 2; place != taken.end() && *place == lowered(name); ++number) {
    const std::string ending = "_" + std::to_string(number);
    name = stem.substr(0, longestName - ending.size()) + ending;
    place = std::lower_bound(taken.begin(), taken.end(), lowered(name));
  }
  taken.insert(place, lowered(name));
  if (name != wanted) report.changed(std::string(what) + " " + wanted + ": is named " + name);
  return name;
}

double sizeOf(const TextModel& model) {
  Vector least(1, 1, 1), most(-1, -1, -1);
  for (const TextMesh& mesh : model.meshes)
    for (const Vector& p : mesh.points) {
      if (least.x > most.x) least = most = p;
      least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
      most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
    }
  if (least.x > most.x) return 1;
  const Vector sides = most - least;
  const float size = std::max({sides.x, sides.y, sides.z});
  return size > 0 ? static_cast<double>(size) : 1;
}

Vector middleOf(const TextModel& model) {
  Vector least, most;
  bool any = false;
  for (const TextMesh& mesh : model.meshes)
    for (const Vector& p : mesh.points) {
      if (!any) least = most = p;
      any = true;
      least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
      most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
    }
  return (least + most) * 0.5f;
}

Imported importScene(const SourceFile& source, const ImportOptions& options, Report& report) {
  Imported result;
  const NodeTree tree = growTree(source, options, report);
  ImportWork work{source, options, tree, report, result};
  result.model.framesPerSecond = options.framesPerSecond;
  result.model.lastFrame = tree.lastFrame;
  importObjects(work);
  importCameras(work);
  importLights(work);
  if (result.model.meshes.empty() && result.model.cameras.empty() && result.model.lights.empty())
    fatalError("%s: nothing in it is of use to the player", source.path.c_str());
  reportWhatCame(work);
  return result;
}

}  // namespace vex
