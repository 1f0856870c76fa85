#include "tools/exchange/export.h"

#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>

#include <algorithm>
#include <assimp/Exporter.hpp>
#include <cmath>
#include <cstring>
#include <memory>
#include <numbers>
#include <numeric>
#include <optional>
#include <set>

#include "base/files.h"
#include "base/report.h"
#include "models/model_info.h"
#include "platform/png_file.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"
#include "tools/exchange/extras.h"
#include "tools/exchange/glb_parts.h"
#include "tools/exchange/material_formula.h"
#include "tools/exchange/transform.h"

namespace vex {

namespace {

constexpr double radians = std::numbers::pi / 180;
constexpr double ofHeight = 0.75;
constexpr const char* rootName = "vex_world";

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

bool isIdentity(const Matrix& matrix) {
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      if (std::fabs(matrix.m[r][c] - (r == c ? 1.0f : 0.0f)) > 1e-6f) return false;
  return true;
}

template <typename Item>
Item** ownedArray(const std::vector<Item*>& items) {
  auto** array = new Item*[items.size()];
  std::copy(items.begin(), items.end(), array);
  return array;
}

struct Export {
  Scene& scene;
  const std::vector<std::string>& textures;
  Report& report;

  std::set<std::string> names{};
  std::map<const Object3D*, std::string> nodeOf{};
  std::map<const Object3D*, Transform>
      storedUnder{};  // of meshes: node space to where the vertices are stored
  std::vector<aiMaterial*> materials{};
  std::vector<TextMaterial> looks{};      // of the materials
  std::map<int, std::string> pictures{};  // by texture: its path among the embedded ones; empty: missing
  std::vector<bool> transparent{};        // by embedded picture
  std::vector<aiTexture*> embedded{};
  std::vector<aiMesh*> meshes{};
  std::vector<aiNodeAnim*> channels{};
  GlbParts parts{};
  int lastFrame = 0;
};

// --- Names

std::string takeName(Export& out, const std::string& wanted, const char* otherwise) {
  std::string stem;
  for (const char c : wanted) stem += c > ' ' && c <= '~' && c != '"' && c != '\\' ? c : '_';
  if (stem.empty()) stem = otherwise;
  std::string name = stem;
  for (int number = 2; !out.names.insert(name).second; ++number) name = stem + "_" + std::to_string(number);
  if (name != wanted && !wanted.empty()) out.report.changed("object " + wanted + ": is named " + name);
  return name;
}

// --- Motion

// While it lives, a second of a track is a frame of it, with nothing lost to rounding; afterwards its whole
// length, as it was loaded.
class FramesAsSeconds {
 public:
  explicit FramesAsSeconds(Scene& exported) : scene(exported) { setAll(true); }
  ~FramesAsSeconds() { setAll(false); }
  FramesAsSeconds(const FramesAsSeconds&) = delete;
  FramesAsSeconds& operator=(const FramesAsSeconds&) = delete;

 private:
  void setAll(bool frames) {
    const auto set = [frames](Animation* track) {
      if (track) track->duration = frames && track->frameLength > 0 ? track->frameLength : 1;
    };
    const auto setOf = [&](Object3D& object) {
      if (!object.tracks) return;
      for (const auto& track : *object.tracks) set(track.get());
    };
    for (Mesh* mesh : scene.meshes) setOf(*mesh);
    for (Light* light : scene.lights) setOf(*light), set(light->target.get());
    for (Viewer* viewer : scene.viewers) set(viewer->positionTrack.get()), set(viewer->targetTrack.get());
  }

  Scene& scene;
};

Transform atFrame(const Animation* track, int frame) {
  return track ? toTransform(track->getMatrix(static_cast<float>(frame))) : Transform();
}

KeyHint keysOf(const Animation& track) {
  KeyHint hint{.frames = {}, .straight = !track.smooth};
  for (int i = 0; i < track.count; ++i)
    hint.frames.push_back(static_cast<int>(std::lround(track.keyTime[at(i)])));
  return hint;
}

// Frames that other tools, which join keys by lines, need keys on: all where the player draws a curve, or
// turns by so much that the way about could be taken for the other one.
std::vector<int> framesFor(const Animation& track) {
  const KeyHint hint = keysOf(track);
  constexpr float wide = 3;  // radians
  const bool curve = track.type != TrackType::rotation && track.smooth && track.count >= 3;
  const bool spin = std::any_of(track.keyAngle.begin(), track.keyAngle.end(),
                                [](float angle) { return std::fabs(angle) > wide; });
  if (!curve && !spin) return hint.frames;
  std::vector<int> all;
  for (int frame = hint.frames.front(); frame <= hint.frames.back(); ++frame) all.push_back(frame);
  return all;
}

void keepKeys(Export& out, const std::string& node, const char* extra, const Animation& track) {
  const std::string text = textOf(keysOf(track));
  if (text.size() <= longestExtra)
    out.parts.extras[node][extra] = text;
  else
    out.report.left("object " + node + ": which of its frames are keys; there are too many");
}

aiNodeAnim* newChannel(Export& out, const std::string& node) {
  auto* channel = new aiNodeAnim;
  channel->mNodeName = aiString(node);
  out.channels.push_back(channel);
  return channel;
}

void setPlaces(Export& out, aiNodeAnim& channel, const std::vector<int>& frames,
               const std::function<Place(int frame)>& place) {
  channel.mNumPositionKeys = static_cast<unsigned>(frames.size());
  channel.mPositionKeys = new aiVectorKey[frames.size()];
  for (std::size_t i = 0; i < frames.size(); ++i)
    channel.mPositionKeys[i] = aiVectorKey(frames[i], aiVector3D(place(frames[i])));
  out.lastFrame = std::max(out.lastFrame, frames.back());
}

void setTurns(Export& out, aiNodeAnim& channel, const std::vector<int>& frames,
              const std::function<Turn(int frame)>& turn) {
  channel.mNumRotationKeys = static_cast<unsigned>(frames.size());
  channel.mRotationKeys = new aiQuatKey[frames.size()];
  Turn before;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    Turn q = turn(frames[i]);
    // Of the two ways to write a turn, that which is nearer to the one before.
    if (q.w * before.w + q.x * before.x + q.y * before.y + q.z * before.z < 0)
      q = Turn(-q.w, -q.x, -q.y, -q.z);
    before = q;
    channel.mRotationKeys[i] =
        aiQuatKey(frames[i], aiQuaternion(static_cast<float>(q.w), static_cast<float>(q.x),
                                          static_cast<float>(q.y), static_cast<float>(q.z)));
  }
  out.lastFrame = std::max(out.lastFrame, frames.back());
}

void setScales(Export& out, aiNodeAnim& channel, const std::vector<int>& frames,
               const std::function<Place(int frame)>& scale) {
  channel.mNumScalingKeys = static_cast<unsigned>(frames.size());
  channel.mScalingKeys = new aiVectorKey[frames.size()];
  for (std::size_t i = 0; i < frames.size(); ++i)
    channel.mScalingKeys[i] = aiVectorKey(frames[i], aiVector3D(scale(frames[i])));
  out.lastFrame = std::max(out.lastFrame, frames.back());
}

void exportMotion(Export& out, const Mesh& mesh, const std::string& node, const Transform& parent) {
  const Transform inverse = Transform(parent).Inverse();
  Similarity way;
  if (!isSimilarity(inverse, way))
    fatalError("object %s: its parent's base matrix skews, which no other tool can move it under", mesh.name);
  const Animation* tracks[]{mesh.track(TrackType::scale), mesh.track(TrackType::rotation),
                            mesh.track(TrackType::position)};
  // Scale, turn, place; after them comes the way from the parent's node. Factors are taken as they stand: a
  // curve through them may pass below 0, which no matrix tells from a turn.
  const auto poseAtFrame = [&](int frame) {
    const Transform scale = atFrame(tracks[0], frame);
    const Turn turn = poseOf(atFrame(tracks[1], frame)).turn;
    const Place place = tracks[2] ? translationOf(atFrame(tracks[2], frame)) : toPlace(mesh.position);
    return Pose{.place = inverse * place,
                .turn = product(way.turn, way.mirrored ? mirroredTurn(turn) : turn),
                .scale = Place(way.mirrored ? -scale.a1 : scale.a1, scale.b2, scale.c3) * way.scale};
  };
  aiNodeAnim& channel = *newChannel(out, node);
  // A base matrix makes the node rest otherwise than its tracks say.
  const bool all = !isIdentity(mesh.baseMatrix);
  const auto frames = [&](const Animation* track) { return track ? framesFor(*track) : std::vector<int>{0}; };
  if (tracks[2]) keepKeys(out, node, placesExtra, *tracks[2]);
  if (tracks[1]) keepKeys(out, node, turnsExtra, *tracks[1]);
  if (tracks[0]) keepKeys(out, node, scalesExtra, *tracks[0]);
  if (all || tracks[2])
    setPlaces(out, channel, frames(tracks[2]), [&](int f) { return poseAtFrame(f).place; });
  if (all || tracks[1]) setTurns(out, channel, frames(tracks[1]), [&](int f) { return poseAtFrame(f).turn; });
  if (all || tracks[0])
    setScales(out, channel, frames(tracks[0]), [&](int f) { return poseAtFrame(f).scale; });
}

// --- Materials

void embed(Export& out, std::vector<std::byte> bytes, const char* kind, const std::string& name,
           bool transparent) {
  auto* texture = new aiTexture;
  texture->mWidth = static_cast<unsigned>(bytes.size());
  texture->mHeight = 0;
  texture->pcData = new aiTexel[(bytes.size() + sizeof(aiTexel) - 1) / sizeof(aiTexel)];
  std::memcpy(texture->pcData, bytes.data(), bytes.size());
  std::strncpy(texture->achFormatHint, kind, HINTMAXTEXTURELEN - 1);
  texture->mFilename = aiString(name);
  out.embedded.push_back(texture);
  out.transparent.push_back(transparent);
}

std::vector<std::byte> fileBytes(const std::string& name) {
  const int handle = fileOpenNeeded(name, "Texture " + name + " not found");
  auto bytes = fileReadRest<std::vector<std::byte>>(handle);
  fileClose(handle);
  return bytes;
}

PngPixels pixelsOf(const Image& image) {
  PngPixels pixels{.width = image.width, .height = image.height, .rgba = {}};
  pixels.rgba.resize(image.pixels.size() * 4);
  const std::size_t row = at(image.width);
  for (int y = 0; y < image.height; ++y)
    std::memcpy(pixels.rgba.data() + at(y) * row * 4, image.pixels.data() + at(image.height - 1 - y) * row,
                row * 4);
  return pixels;
}

// Path of the texture's picture among those embedded; empty when it has none.
std::string pictureOf(Export& out, int texture) {
  const auto known = out.pictures.find(texture);
  if (known != out.pictures.end()) return known->second;
  const std::string& name = out.textures[at(texture)];
  const std::string shortName = name.substr(name.rfind('\\') + 1);
  std::string& path = out.pictures[texture];
  if (!textureExists(name)) {
    out.report.left("texture " + shortName + ": no such file");
    return path;
  }
  const bool jpeg = fileExists(name + ".jpg");
  const Image image =
      jpeg ? readJpegTexture((name + ".jpg").c_str()) : readBmpTexture((name + ".bmp").c_str());
  if (image.pixels.empty()) {
    out.report.left("texture " + shortName + ": of no size that the player takes");
    return path;
  }
  const bool transparent = std::any_of(image.pixels.begin(), image.pixels.end(),
                                       [](std::uint32_t pixel) { return pixel >> 24 != 255; });
  path = "*" + std::to_string(out.embedded.size());
  if (jpeg && !transparent) {
    embed(out, fileBytes(name + ".jpg"), "jpg", shortName, false);
  } else {
    embed(out, encodePng(pixelsOf(image)), "png", shortName, transparent);
  }
  out.report.came(formatted("texture %s, %dx%d", shortName.c_str(), image.width, image.height));
  return path;
}

TextMaterial lookOf(const Export& out, const Mesh& mesh) {
  const auto colour = [](const ColourAlpha& c) { return Colour{c.r, c.g, c.b}; };
  TextMaterial look{.texture = {},
                    .environment = mesh.envMap,
                    .twoSided = mesh.twoSided,
                    .diffuse = colour(mesh.diffuse),
                    .ambient = colour(mesh.ambient),
                    .specular = colour(mesh.specular),
                    .shine = mesh.shininess,
                    .shineStrength = mesh.shineStrength,
                    .opacity = mesh.opacity};
  if (mesh.texture >= 0) {
    const std::string& name = out.textures[at(mesh.texture)];
    look.texture = name.substr(name.rfind('\\') + 1);
  }
  return look;
}

unsigned materialOf(Export& out, const Mesh& mesh) {
  const TextMaterial look = lookOf(out, mesh);
  const std::string text = textOf(look);
  for (std::size_t i = 0; i < out.looks.size(); ++i)
    if (textOf(out.looks[i]) == text) return static_cast<unsigned>(i);
  const SurfaceOfToday surface = surfaceOf(look);
  auto* material = new aiMaterial;
  const aiString name((look.texture.empty() ? std::string("material") : look.texture) + "_" +
                      std::to_string(out.looks.size()));
  const aiColor4D base(surface.base.r, surface.base.g, surface.base.b, surface.opacity);
  const aiColor3D emission(surface.emission.r, surface.emission.g, surface.emission.b);
  const int twoSided = surface.twoSided;
  material->AddProperty(&name, AI_MATKEY_NAME);
  material->AddProperty(&base, 1, AI_MATKEY_BASE_COLOR);
  material->AddProperty(&emission, 1, AI_MATKEY_COLOR_EMISSIVE);
  material->AddProperty(&surface.metal, 1, AI_MATKEY_METALLIC_FACTOR);
  material->AddProperty(&surface.rough, 1, AI_MATKEY_ROUGHNESS_FACTOR);
  material->AddProperty(&twoSided, 1, AI_MATKEY_TWOSIDED);
  bool transparent = surface.opacity < 1;
  if (mesh.texture >= 0 && !mesh.envMap) {
    const std::string path = pictureOf(out, mesh.texture);
    if (!path.empty()) {
      const aiString texture(path);
      material->AddProperty(&texture, AI_MATKEY_TEXTURE(aiTextureType_BASE_COLOR, 0));
      transparent = transparent || out.transparent[std::stoul(path.substr(1))];
    }
  }
  const aiString mode(transparent ? "BLEND" : "OPAQUE");
  material->AddProperty(&mode, AI_MATKEY_GLTF_ALPHAMODE);
  out.materials.push_back(material);
  out.looks.push_back(look);
  return static_cast<unsigned>(out.materials.size()) - 1;
}

// --- Forms

// The library joins vertices that agree in everything to a hair. The player tells them apart, and morphs
// meshes vertex by vertex, so that a mesh with such vertices gets a second set of coordinates in which each
// has its own.
void partTwins(aiMesh& form) {
  constexpr float hair = 2e-5f;
  const auto key = [&](unsigned v) {
    const aiVector3D& p = form.mVertices[v];
    return p.x * 0.61f + p.y * 0.37f + p.z * 0.71f;
  };
  const auto near = [](const aiVector3D* of, unsigned a, unsigned b) {
    return !of || (std::fabs(of[a].x - of[b].x) <= hair && std::fabs(of[a].y - of[b].y) <= hair &&
                   std::fabs(of[a].z - of[b].z) <= hair);
  };
  std::vector<unsigned> order(form.mNumVertices);
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(), [&](unsigned a, unsigned b) { return key(a) < key(b); });
  bool twins = false;
  for (std::size_t i = 0; i < order.size() && !twins; ++i)
    for (std::size_t k = i + 1; k < order.size() && key(order[k]) - key(order[i]) <= 2 * hair && !twins; ++k)
      twins = near(form.mVertices, order[i], order[k]) && near(form.mNormals, order[i], order[k]) &&
              near(form.mTextureCoords[0], order[i], order[k]);
  if (!twins) return;
  if (!form.mTextureCoords[0]) {
    form.mNumUVComponents[0] = 2;
    form.mTextureCoords[0] = new aiVector3D[form.mNumVertices];
  }
  for (unsigned v = 0; v < form.mNumVertices; ++v) form.mTextureCoords[0][v].z = static_cast<float>(v);
}

aiMesh* formOf(Export& out, const Mesh& mesh, const std::string& name, const Transform& stored) {
  auto* form = new aiMesh;
  form->mName = aiString(name);
  form->mPrimitiveTypes = aiPrimitiveType_TRIANGLE;
  form->mMaterialIndex = materialOf(out, mesh);
  const auto count = static_cast<unsigned>(mesh.vertices.size());
  form->mNumVertices = count;
  form->mVertices = new aiVector3D[count];
  form->mNormals = new aiVector3D[count];
  const bool mapped = !mesh.envMap && std::any_of(mesh.vertices.begin(), mesh.vertices.end(),
                                                  [](const Vertex& v) { return v.u != 0 || v.v != 0; });
  if (mapped) form->mTextureCoords[0] = new aiVector3D[count], form->mNumUVComponents[0] = 2;
  const Transform inverse = Transform(stored).Inverse();
  Transform turned = stored;
  turned.a4 = turned.b4 = turned.c4 = 0;
  turned.Transpose();
  for (unsigned i = 0; i < count; ++i) {
    const Vertex& vertex = mesh.vertices[i];
    form->mVertices[i] = aiVector3D(inverse * toPlace(vertex.position));
    form->mNormals[i] = aiVector3D((turned * toPlace(vertex.normal)).NormalizeSafe());
    if (mapped) form->mTextureCoords[0][i] = {vertex.u, vertex.v, 0};
  }
  partTwins(*form);
  const bool turnOver = stored.Determinant() < 0;
  form->mNumFaces = static_cast<unsigned>(mesh.faces.size());
  form->mFaces = new aiFace[form->mNumFaces];
  for (unsigned i = 0; i < form->mNumFaces; ++i) {
    const auto& v = mesh.faces[i].v;
    form->mFaces[i].mNumIndices = 3;
    form->mFaces[i].mIndices =
        turnOver ? new unsigned[3]{v[0], v[2], v[1]} : new unsigned[3]{v[0], v[1], v[2]};
  }
  return form;
}

aiNode* newNode(Export& out, const std::string& name, const Transform& local) {
  auto* node = new aiNode(name);
  node->mTransformation = aiMatrix4x4(local);
  const Place place = translationOf(local);
  if (place != Place()) out.parts.places[name] = {place.x, place.y, place.z};
  return node;
}

void exportMeshes(Export& out, aiNode& root) {
  std::map<const Object3D*, aiNode*> nodes;
  int order = 0;
  for (Mesh* mesh : out.scene.meshes) {
    const std::string name = takeName(out, mesh->name, "mesh");
    Transform stored;
    Transform::Translation(toPlace(mesh->position), stored);
    if (mesh->tracks && !isIdentity(mesh->baseMatrix))
      stored = stored * linearInverse(toTransform(mesh->baseMatrix));
    const auto parent = mesh->parent ? nodes.find(mesh->parent) : nodes.end();
    if (mesh->parent && parent == nodes.end())
      out.report.left("object " + name + ": its parent " + mesh->parent->name + ", which is no mesh");
    const Transform under = parent == nodes.end() ? Transform() : out.storedUnder[mesh->parent];
    aiNode* node = newNode(out, name, Transform(under).Inverse() * stored);
    out.storedUnder[mesh] = stored;
    nodes[mesh] = node;
    (parent == nodes.end() ? root : *parent->second).addChildren(1, &node);
    const bool skeleton = mesh->flags & skeletonFlag;
    out.parts.extras[name][objectExtra] = textOf(ObjectExtra{order++, !mesh->hidden() ? ""
                                                                      : skeleton      ? "Skeleton"
                                                                                      : "Dummy"});
    if (skeleton)
      out.report.changed("object " + name + ": moves as other helpers do in other tools, not as a skeleton");
    if (mesh->tracks) exportMotion(out, *mesh, name, under);
    if (mesh->faces.empty()) continue;
    out.meshes.push_back(formOf(out, *mesh, name, stored));
    out.parts.extras[name][materialExtra] = textOf(out.looks[out.meshes.back()->mMaterialIndex]);
    node->mNumMeshes = 1;
    node->mMeshes = new unsigned[1]{static_cast<unsigned>(out.meshes.size()) - 1};
  }
}

// --- Cameras and lights

// A turn that looks from the eye to the target, upright; the player's cameras do.
Turn lookingTurn(const Place& eye, const Place& target) {
  Place back = eye - target;
  if (back.Length() < 1e-9) back = Place(0, 0, 1);
  back.Normalize();
  Place right = Place(0, 1, 0) ^ back;
  if (right.Length() < 1e-9) right = Place(1, 0, 0);
  right.Normalize();
  const Place up = back ^ right;
  Turn turn(aiMatrix3x3t<double>(right.x, up.x, back.x, right.y, up.y, back.y, right.z, up.z, back.z));
  return turn.Normalize();
}

// The eye's node and one for what it looks at.
void exportSight(Export& out, aiNode& root, const std::string& name, const Vector& eye, const Vector& target,
                 const Animation* eyeTrack, const Animation* targetTrack) {
  Transform place;
  Transform::Translation(toPlace(target), place);
  aiNode* targetNode = newNode(out, name + ".Target", place);
  aiNode* eyeNode = newNode(
      out, name, transformOf({.place = toPlace(eye), .turn = lookingTurn(toPlace(eye), toPlace(target))}));
  root.addChildren(1, &eyeNode);
  root.addChildren(1, &targetNode);
  if (!eyeTrack && !targetTrack) return;
  const auto placeOf = [](const Animation* track, const Vector& rest, int frame) {
    return track ? translationOf(atFrame(track, frame)) : toPlace(rest);
  };
  std::vector<int> all;
  int last = 0;
  for (const Animation* track : {eyeTrack, targetTrack})
    if (track) last = std::max(last, static_cast<int>(std::lround(track->frameLength)));
  for (int frame = 0; frame <= last; ++frame) all.push_back(frame);
  aiNodeAnim& channel = *newChannel(out, name);
  if (eyeTrack) {
    keepKeys(out, name, placesExtra, *eyeTrack);
    setPlaces(out, channel, framesFor(*eyeTrack), [&](int f) { return placeOf(eyeTrack, eye, f); });
  }
  setTurns(out, channel, all,
           [&](int f) { return lookingTurn(placeOf(eyeTrack, eye, f), placeOf(targetTrack, target, f)); });
  if (!targetTrack) return;
  keepKeys(out, name + ".Target", placesExtra, *targetTrack);
  setPlaces(out, *newChannel(out, name + ".Target"), framesFor(*targetTrack),
            [&](int f) { return placeOf(targetTrack, target, f); });
}

void exportCameras(Export& out, aiNode& root) {
  int number = 0;
  for (Viewer* viewer : out.scene.viewers) {
    const std::string name = takeName(out, "camera" + std::to_string(number++), "camera");
    exportSight(out, root, name, viewer->position, viewer->target, viewer->positionTrack.get(),
                viewer->targetTrack.get());
    out.parts.cameras.push_back(
        {name, static_cast<double>(viewer->fov) * ofHeight * radians, static_cast<double>(viewer->farPlane)});
  }
}

Place middleOf(const Scene& scene) {
  Place sum;
  double count = 0;
  for (Mesh* mesh : scene.meshes)
    for (const Vertex& vertex : mesh->vertices) sum += toPlace(vertex.position), ++count;
  return count > 0 ? sum / count : sum;
}

void exportLights(Export& out, aiNode& root) {
  const Place middle = middleOf(out.scene);
  for (Light* light : out.scene.lights) {
    const std::string name = takeName(out, light->name, "light");
    const double distance = std::max((toPlace(light->position) - middle).Length(), 1.0);
    GlbLight glb{.node = name,
                 .spot = light->spot,
                 .colour = {light->colour.r, light->colour.g, light->colour.b},
                 .candela = static_cast<double>(light->intensity) * distance * distance * std::numbers::pi,
                 .edgeRadians = std::clamp(static_cast<double>(light->coneAngle) / 2, 0.1, 90.0) * radians};
    if (!light->active) glb.candela = 0;
    LightExtra extra{.candela = static_cast<float>(glb.candela), .light = {}};
    extra.light.colour = light->colour;
    extra.light.intensity = light->intensity;
    extra.light.coneDegrees = light->coneAngle;
    extra.light.on = light->active;
    out.parts.extras[name][lightExtra] = textOf(extra);
    out.parts.lights.push_back(glb);
    const Animation* track = light->track(TrackType::position);
    const Vector target = light->position + light->spotDirection;
    if (light->spot) {
      exportSight(out, root, name, light->position, target, track, light->target.get());
      continue;
    }
    Transform place;
    Transform::Translation(toPlace(light->position), place);
    aiNode* node = newNode(out, name, place);
    root.addChildren(1, &node);
    if (!track) continue;
    keepKeys(out, name, placesExtra, *track);
    setPlaces(out, *newChannel(out, name), framesFor(*track),
              [&](int f) { return translationOf(atFrame(track, f)); });
  }
}

void addAnimation(Export& out, aiScene& scene) {
  if (out.channels.empty()) return;
  auto* animation = new aiAnimation;
  animation->mName = aiString("motion");
  animation->mTicksPerSecond = exportedFramesPerSecond;
  animation->mDuration = out.lastFrame;
  animation->mNumChannels = static_cast<unsigned>(out.channels.size());
  animation->mChannels = ownedArray(out.channels);
  scene.mNumAnimations = 1;
  scene.mAnimations = ownedArray<aiAnimation>({animation});
}

}  // namespace

std::string exportGlb(Scene& scene, const std::vector<std::string>& textures, Report& report) {
  Export out{scene, textures, report};
  const FramesAsSeconds frames(scene);
  const auto result = std::make_unique<aiScene>();
  result->mRootNode = new aiNode(rootName);
  out.names.insert(rootName);
  exportMeshes(out, *result->mRootNode);
  exportCameras(out, *result->mRootNode);
  exportLights(out, *result->mRootNode);
  if (out.materials.empty()) out.materials.push_back(new aiMaterial);
  result->mNumMeshes = static_cast<unsigned>(out.meshes.size());
  result->mMeshes = ownedArray(out.meshes);
  result->mNumMaterials = static_cast<unsigned>(out.materials.size());
  result->mMaterials = ownedArray(out.materials);
  result->mNumTextures = static_cast<unsigned>(out.embedded.size());
  result->mTextures = ownedArray(out.embedded);
  addAnimation(out, *result);

  Assimp::Exporter exporter;
  const aiExportDataBlob* blob = exporter.ExportToBlob(result.get(), "glb2");
  if (!blob) fatalError("the model can't be written as glTF: %s", exporter.GetErrorString());
  report.came(formatted("%zu meshes, %zu materials, %zu cameras, %zu lights, %zu moving things",
                        out.meshes.size(), out.looks.size(), out.parts.cameras.size(),
                        out.parts.lights.size(), out.channels.size()));
  return withParts({static_cast<const char*>(blob->data), blob->size}, out.parts);
}

}  // namespace vex
