#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/report.h"
#include "tools/exchange/extras.h"
#include "tools/exchange/import_parts.h"

namespace vex {

namespace {

constexpr double degrees = 180 / std::numbers::pi;
constexpr double ofHeight = 0.75;  // the player's angle from top to bottom is that much of the field of view
constexpr std::size_t mostLit = 8;

int lastFrameOf(const ImportWork& work, int node) {
  int last = std::max(work.tree.lastFrame, 1);
  if (const auto hint = readKeys(extraOf(*work.tree.nodes[static_cast<std::size_t>(node)].node, placesExtra)))
    last = std::clamp(hint->frames.back(), 1, mostFrames);
  return last;
}

bool moves(const ImportWork& work, int node) {
  for (int i = node; i >= 0; i = work.tree.nodes[static_cast<std::size_t>(i)].parent)
    if (work.tree.nodes[static_cast<std::size_t>(i)].motion) return true;
  return false;
}

// Where something stands over the time, and the track of it if it moves.
struct Path {
  Vector rest;  // where the file has it when nothing moves
  ModelMotion motion;
};

Path pathOf(const ImportWork& work, int node, double tolerance,
            const std::function<Place(const Transform& world)>& pick) {
  const SourceNode& own = work.tree.nodes[static_cast<std::size_t>(node)];
  Transform world;
  for (int i = node; i >= 0; i = work.tree.nodes[static_cast<std::size_t>(i)].parent)
    world = work.tree.nodes[static_cast<std::size_t>(i)].local * world;
  Path path{.rest = toVector(pick(work.tree.world * world)), .motion = {}};
  if (!moves(work, node)) return path;

  const auto hint = readKeys(extraOf(*own.node, placesExtra));
  const auto samples = sampled<Place>(lastFrameOf(work, node), work.options.framesPerSecond,
                                      [&](double seconds) { return pick(work.tree.worldAt(node, seconds)); });
  const bool still = std::all_of(samples.begin(), samples.end(), [&](const Place& p) {
    return (p - samples[0]).Length() <= tolerance * 1e-3;
  });
  if (still && !hint) {
    path.rest = toVector(samples[0]);
    return path;
  }
  ThinnedPlaces places = thinPlaces(samples, tolerance, hint);
  path.motion = {.positions = std::move(places.keys), .turns = {}, .scales = {}, .straight = places.straight};
  return path;
}

Place rotated(const Transform& world, const Place& direction) {
  Place result = world * direction - translationOf(world);
  return result.NormalizeSafe();
}

// The eye, what it looks along and what is above it, in the node's own axes.
struct Sight {
  Place eye, along, above;
};

// Whether the eye looks at the target all the time, to a degree.
bool looksAt(const ImportWork& work, int node, const Sight& sight, int target) {
  constexpr double close = 0.99985;  // cosine
  for (int frame = 0; frame <= work.tree.lastFrame; ++frame) {
    const double seconds = static_cast<double>(frame) / work.options.framesPerSecond;
    const Transform world = work.tree.worldAt(node, seconds);
    const Place way = translationOf(work.tree.worldAt(target, seconds)) - world * sight.eye;
    if (way.Length() > 1e-6 && way * rotated(world, sight.along) < close * way.Length()) return false;
  }
  return true;
}

// The path of the node NAME.Target where there is one and the eye looks at it; or else of a point before the
// eye.
Path targetOf(ImportWork& work, const std::string& name, int node, const Sight& sight, double tolerance,
              double distance) {
  if (const int target = work.tree.find(name + ".Target"); target >= 0) {
    if (looksAt(work, node, sight, target)) return pathOf(work, target, tolerance, translationOf);
    work.report.changed(name + ": does not look at " + name + ".Target, so that its own direction counts");
  }
  return pathOf(work, node, tolerance, [&](const Transform& world) {
    return world * sight.eye + rotated(world, sight.along) * distance;
  });
}

// From top to bottom, in degrees; 0 when the file does not say. The library hands each kind of file on as it
// finds it: glTF's angle is from top to bottom, times the aspect; the others' is from side to side.
double heightAngle(SourceKind kind, const aiCamera& camera) {
  const auto angle = static_cast<double>(camera.mHorizontalFOV);
  const auto aspect = static_cast<double>(camera.mAspect);
  if (!std::isfinite(angle) || !(angle > 0)) return 0;
  if (kind == SourceKind::gltf) return angle / (aspect > 0 ? aspect : 1) * degrees;
  if (!(aspect > 0)) return angle * ofHeight * degrees;
  return 2 * std::atan(std::tan(angle / 2) / aspect) * degrees;
}

// The player holds cameras upright.
void reportRoll(ImportWork& work, const std::string& name, int node, const Sight& sight) {
  double most = 0;
  bool upright = false;
  for (int frame = 0; frame <= work.tree.lastFrame; ++frame) {
    const Transform world =
        work.tree.worldAt(node, static_cast<double>(frame) / work.options.framesPerSecond);
    const Place along = rotated(world, sight.along);
    const Place side = along ^ Place(0, 1, 0);
    upright = upright || side.Length() < 1e-3;
    const Place above = rotated(world, sight.above);
    const Place level = Place(side ^ along).NormalizeSafe();
    most = std::max(most, std::acos(std::clamp(above * level, -1.0, 1.0)) * degrees);
  }
  if (upright)
    work.report.changed("camera " + name +
                        ": looks straight up or down, which the player does not; give it a slant");
  else if (most > 1)
    work.report.left(formatted("camera %s: its roll of up to %.0f degrees", name.c_str(), most));
}

bool chosenNode(const ImportWork& work, const std::string& name, const char* what, int& node) {
  node = work.tree.find(name);
  if (node < 0) work.report.left(std::string(what) + " " + name + ": no node carries it");
  return node >= 0 && work.tree.nodes[static_cast<std::size_t>(node)].chosen;
}

}  // namespace

void importCameras(ImportWork& work) {
  const double size = sizeOf(work.result.model);
  const Vector middle = middleOf(work.result.model);
  for (unsigned i = 0; i < work.source.scene->mNumCameras; ++i) {
    const aiCamera& source = *work.source.scene->mCameras[i];
    const std::string wanted = source.mName.C_Str();
    int node = -1;
    if (!chosenNode(work, wanted, "camera", node)) continue;
    if (source.mOrthographicWidth > 0 && !(source.mHorizontalFOV > 0)) {
      work.report.left("camera " + wanted + ": shows no perspective");
      continue;
    }
    // The library gives a glTF camera its node's place once more as its own.
    const Place eye = work.source.kind == SourceKind::gltf ? Place() : toPlace(source.mPosition);
    const Sight sight{eye, toPlace(source.mLookAt), toPlace(source.mUp)};
    TextCamera camera;
    Report unsaid;  // names of cameras are not kept by the player
    camera.name = work.names.take(wanted, "camera", unsaid);
    const Path eyes =
        pathOf(work, node, placeTolerance * size, [&](const Transform& world) { return world * sight.eye; });
    camera.position = eyes.rest;
    camera.motion = eyes.motion;
    const double distance = std::max(static_cast<double>((middle - camera.position).length()), 1.0);
    const Path target = targetOf(work, wanted, node, sight,
                                 std::min(placeTolerance * size, turnTolerance * distance), distance);
    camera.target = target.rest;
    camera.targetMotion = target.motion;

    double height = heightAngle(work.source.kind, source);
    if (!(height > 1 && height < 179)) {
      work.report.changed("camera " + wanted + ": has no angle of view, takes 45 degrees from top to bottom");
      height = 45;
    }
    camera.fieldDegrees = static_cast<float>(height / ofHeight);
    const double far = static_cast<double>(source.mClipPlaneFar) * work.options.scale;
    camera.far = far > 1 && std::isfinite(far) ? static_cast<float>(far) : 1'000'000.0f;
    reportRoll(work, wanted, node, sight);
    work.result.model.cameras.push_back(std::move(camera));
  }
}

namespace {

float largest(const aiColor3D& colour) {
  return std::max({colour.r, colour.g, colour.b});
}

// The player's lights do not fade with distance. A glTF light of I candela at a distance of d metres lights a
// white wall that faces it by I / d^2 / pi of full white; the sun of E lux by E / pi. The player's light
// takes that, for the distance of the model's middle. Files of other kinds say the brightness itself.
float intensityOf(const ImportWork& work, const aiLight& source, double distance) {
  const auto strength = static_cast<double>(largest(source.mColorDiffuse));
  if (work.source.kind != SourceKind::gltf) return static_cast<float>(strength);
  const double metres =
      source.mType == aiLightSource_DIRECTIONAL ? 1 : std::max(distance / work.options.scale, 1e-3);
  return static_cast<float>(strength / (metres * metres * std::numbers::pi));
}

// What an export has left, if the file still says the same.
std::optional<LightExtra> keptLight(const aiNode& node, const aiLight& source) {
  const auto extra = readLight(extraOf(node, lightExtra));
  if (!extra) return {};
  const aiColor3D written(extra->light.colour.r * extra->candela, extra->light.colour.g * extra->candela,
                          extra->light.colour.b * extra->candela);
  const aiColor3D now = source.mColorDiffuse;
  const float close = 1e-4f * std::max(largest(written), 1e-6f);
  if (std::fabs(written.r - now.r) > close || std::fabs(written.g - now.g) > close ||
      std::fabs(written.b - now.b) > close)
    return {};
  return extra;
}

// Of a spot, from edge to edge, in degrees. glTF's is from the axis to the edge; of Collada's the library
// guesses an outer one.
double openingOf(SourceKind kind, const aiLight& source) {
  const double outer = static_cast<double>(source.mAngleOuterCone) * degrees;
  if (kind == SourceKind::gltf) return outer * 2;
  if (kind == SourceKind::collada) return static_cast<double>(source.mAngleInnerCone) * degrees;
  return outer;
}

const char* whyNoLight(const aiLight& source) {
  switch (source.mType) {
    case aiLightSource_POINT:
    case aiLightSource_SPOT:
    case aiLightSource_DIRECTIONAL:
      return nullptr;
    case aiLightSource_AMBIENT:
      return "lights from everywhere; give it to the materials as emission";
    default:
      return "is an area; take a point or spot light";
  }
}

// Whether its values are those that an export has left.
struct ImportedLight {
  TextLight light;
  bool kept = false;
};

ImportedLight importLight(ImportWork& work, const aiLight& source, const std::string& wanted, int node) {
  const double size = sizeOf(work.result.model);
  const Place middle = toPlace(middleOf(work.result.model));
  const double tolerance = placeTolerance * size;
  const aiNode& own = *work.tree.nodes[static_cast<std::size_t>(node)].node;
  const Sight sight{work.source.kind == SourceKind::gltf ? Place() : toPlace(source.mPosition),
                    toPlace(source.mDirection), Place(0, 1, 0)};
  const bool sun = source.mType == aiLightSource_DIRECTIONAL;
  constexpr double farAway = 10;  // of the model's size
  TextLight light;
  light.name = work.names.take(wanted, "light", work.report);
  const Path place = pathOf(work, node, sun ? tolerance * farAway : tolerance, [&](const Transform& world) {
    return sun ? middle - rotated(world, sight.along) * (size * farAway) : world * sight.eye;
  });
  light.position = place.rest;
  light.motion = place.motion;
  if (sun)
    work.report.changed("light " + wanted + ": shines from a point far away instead of everywhere alike");
  const double distance = (middle - toPlace(place.rest)).Length();
  light.spot = source.mType == aiLightSource_SPOT;
  if (light.spot) {
    const Path target = targetOf(work, wanted, node, sight, tolerance, std::max(distance, 1.0));
    light.target = target.rest;
    light.targetMotion = target.motion;
    light.coneDegrees = static_cast<float>(std::clamp(openingOf(work.source.kind, source), 1.0, 180.0));
  }
  const auto kept = keptLight(own, source);
  if (kept) {
    light.colour = kept->light.colour;
    light.intensity = kept->light.intensity;
    light.on = kept->light.on;
    if (!light.spot) light.coneDegrees = kept->light.coneDegrees;
  } else {
    const float strength = largest(source.mColorDiffuse);
    if (strength > 0)
      light.colour = {source.mColorDiffuse.r / strength, source.mColorDiffuse.g / strength,
                      source.mColorDiffuse.b / strength};
    light.intensity = intensityOf(work, source, distance);
  }
  float range = 0;
  if (own.mMetaData && own.mMetaData->Get("PBR_LightRange", range))
    work.report.left(formatted("light %s: its range of %g; a model's lights reach everywhere", wanted.c_str(),
                               static_cast<double>(range)));
  return {std::move(light), kept.has_value()};
}

}  // namespace

void importLights(ImportWork& work) {
  constexpr float dazzling = 2;
  std::size_t lit = 0;
  float brightest = 0;
  std::vector<ImportedLight> lights;
  for (unsigned i = 0; i < work.source.scene->mNumLights; ++i) {
    const aiLight& source = *work.source.scene->mLights[i];
    const std::string wanted = source.mName.C_Str();
    int node = -1;
    if (!chosenNode(work, wanted, "light", node)) continue;
    if (const char* why = whyNoLight(source)) {
      work.report.left("light " + wanted + ": it " + why);
      continue;
    }
    lights.push_back(importLight(work, source, wanted, node));
    auto& [light, kept] = lights.back();
    if (light.on && ++lit > mostLit) {
      light.on = false;
      work.report.changed("light " + wanted + ": is switched off, the player takes eight that shine");
    }
    if (light.on && !kept) brightest = std::max(brightest, light.intensity);
  }
  if (brightest > dazzling)
    work.report.changed(
        formatted("lights: %g times as dark, so that the brightest is 1", static_cast<double>(brightest)));
  for (auto& [light, kept] : lights) {
    if (brightest > dazzling && !kept) light.intensity /= brightest;
    work.result.model.lights.push_back(std::move(light));
  }
}

}  // namespace vex
