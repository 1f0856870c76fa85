#include "models/model_info.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/files.h"
#include "base/report.h"

namespace vex {

namespace {

std::string json(float value) {
  return std::isfinite(value) ? formatted("%.9g", static_cast<double>(value)) : "null";
}

std::string json(std::uint32_t value) {
  return std::to_string(value);
}

std::string json(bool value) {
  return value ? "true" : "false";
}

// Names of compiled models may hold any byte.
std::string json(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (static_cast<signed char>(c) < ' ' || c == '\x7f') {
      result += formatted("\\u%04x", static_cast<unsigned char>(c));
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string json(const char* text) {
  return json(std::string_view(text));
}

std::string json(const Vector& v) {
  return "[" + json(v.x) + "," + json(v.y) + "," + json(v.z) + "]";
}

std::string json(const ColourAlpha& c) {
  return "[" + json(c.r) + "," + json(c.g) + "," + json(c.b) + "," + json(c.a) + "]";
}

template <typename Items, typename Print>
std::string jsonArray(const Items& items, Print printItem) {
  std::string result = "[";
  for (const auto& item : items) {
    if (result.size() > 1) result += ',';
    result += printItem(item);
  }
  return result + "]";
}

std::string json(const Matrix& matrix) {
  return jsonArray(
      matrix.m, [](const float(&row)[4]) { return jsonArray(row, [](float value) { return json(value); }); });
}

template <typename Value>
std::string jsonValues(const std::vector<Value>& values) {
  return jsonArray(values, [](Value value) { return json(value); });
}

// Members of an object, in the order in which they are added.
class JsonObject {
 public:
  template <typename Value>
  JsonObject& add(const char* name, const Value& value) {
    return addText(name, json(value));
  }
  JsonObject& addText(const char* name, const std::string& value) {
    if (text.size() > 1) text += ',';
    text += json(name) + ":" + value;
    return *this;
  }
  std::string str() const { return text + "}"; }

 private:
  std::string text = "{";
};

const char* typeName(TrackType type) {
  switch (type) {
    case TrackType::scale:
      return "scale";
    case TrackType::rotation:
      return "rotation";
    case TrackType::position:
      return "position";
    case TrackType::none:
      break;
  }
  return "none";
}

std::string jsonTrack(const Animation* track) {
  if (!track) return "null";
  return JsonObject()
      .add("type", typeName(track->type))
      .add("keys", static_cast<std::uint32_t>(track->count))
      .add("frameLength", track->frameLength)
      .add("duration", track->duration)
      .add("smooth", track->smooth)
      .str();
}

constexpr TrackType typesInOrder[] = {TrackType::scale, TrackType::rotation, TrackType::position};

std::string jsonTracks(const Object3D& object) {
  std::vector<const Animation*> tracks;
  for (const TrackType type : typesInOrder) {
    if (const Animation* track = object.track(type)) tracks.push_back(track);
  }
  return jsonArray(tracks, jsonTrack);
}

std::string jsonParent(const Object3D& object) {
  return object.parent ? json(object.parent->name) : "null";
}

std::string textureName(const ModelInfo& info, int id) {
  return id >= 0 && static_cast<std::size_t>(id) < info.textures.size()
             ? info.textures[static_cast<std::size_t>(id)]
             : "";
}

std::string jsonMaterial(const ModelInfo& info, const Mesh& mesh) {
  const std::string texture = textureName(info, mesh.texture);
  return JsonObject()
      .add("diffuse", mesh.diffuse)
      .add("ambient", mesh.ambient)
      .add("specular", mesh.specular)
      .add("opacity", mesh.opacity)
      .add("shininess", mesh.shininess)
      .add("shineStrength", mesh.shineStrength)
      .addText("texture", texture.empty() ? "null" : json(texture))
      .add("envMap", mesh.envMap)
      .add("twoSided", mesh.twoSided)
      .str();
}

std::string jsonBounds(const Mesh& mesh) {
  if (mesh.vertices.empty()) return "null";
  Vector least = mesh.vertices[0].position;
  Vector most = least;
  for (const Vertex& vertex : mesh.vertices) {
    const Vector& p = vertex.position;
    least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
    most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
  }
  return JsonObject().add("min", least).add("max", most).str();
}

std::string jsonMesh(const ModelInfo& info, Mesh& mesh, const JsonContent& content) {
  JsonObject object;
  object.add("name", mesh.name)
      .add("kind", "mesh")
      .addText("parent", jsonParent(mesh))
      .add("hidden", mesh.hidden())
      .add("skeleton", (mesh.flags & skeletonFlag) != 0)
      .add("position", mesh.position)
      .add("baseMatrix", mesh.baseMatrix)
      .add("vertices", static_cast<std::uint32_t>(mesh.vertices.size()))
      .add("faces", static_cast<std::uint32_t>(mesh.faces.size()))
      .add("lit", mesh.lit)
      .addText("material", jsonMaterial(info, mesh))
      .add("radius", mesh.radius)
      .addText("bounds", jsonBounds(mesh))
      .addText("tracks", jsonTracks(mesh));
  if (content.geometry) {
    object.addText("positions", jsonValues(mesh.positions))
        .addText("normals", jsonValues(mesh.normals))
        .addText("uvs", jsonValues(mesh.uvs))
        .addText("indices", jsonValues(mesh.indices));
  }
  if (content.seconds) object.add("matrix", mesh.getMatrix(*content.seconds));
  return object.str();
}

std::string jsonLight(const Light& light) {
  return JsonObject()
      .add("name", light.name)
      .addText("parent", jsonParent(light))
      .add("position", light.position)
      .add("spot", light.spot)
      .add("active", light.active)
      .add("colour", Vector(light.colour.r, light.colour.g, light.colour.b))
      .add("intensity", light.intensity)
      .add("coneAngle", light.coneAngle)
      .addText("tracks", jsonTracks(light))
      .addText("target", jsonTrack(light.target.get()))
      .str();
}

std::string jsonViewer(Viewer& viewer, const JsonContent& content) {
  JsonObject object;
  object.add("position", viewer.position)
      .add("target", viewer.target)
      .add("fov", viewer.fov)
      .add("farPlane", viewer.farPlane)
      .addText("positionTrack", jsonTrack(viewer.positionTrack.get()))
      .addText("targetTrack", jsonTrack(viewer.targetTrack.get()));
  if (content.seconds) object.add("view", viewer.getMatrix(*content.seconds));
  return object.str();
}

std::string describeTracks(const Object3D& object) {
  std::string text;
  for (const TrackType type : typesInOrder) {
    if (const Animation* track = object.track(type)) {
      text += formatted(", %s track of %d keys", typeName(type), track->count);
    }
  }
  return text;
}

std::string describeParent(const Object3D& object) {
  return object.parent ? formatted(", child of %s", object.parent->name) : "";
}

std::string describeColour(const ColourAlpha& c) {
  return formatted("%g %g %g %g", static_cast<double>(c.r), static_cast<double>(c.g),
                   static_cast<double>(c.b), static_cast<double>(c.a));
}

std::string describeMaterial(const ModelInfo& info, const Mesh& mesh) {
  const std::string texture = textureName(info, mesh.texture);
  return "       material: diffuse " + describeColour(mesh.diffuse) + ", ambient " +
         describeColour(mesh.ambient) + ", specular " + describeColour(mesh.specular) +
         formatted(", opacity %g, shininess %g, strength %g", static_cast<double>(mesh.opacity),
                   static_cast<double>(mesh.shininess), static_cast<double>(mesh.shineStrength)) +
         (texture.empty() ? ", no texture" : ", texture " + texture) +
         (mesh.envMap ? ", environment map" : "") + (mesh.twoSided ? ", two-sided" : "") + "\n";
}

std::string describePlace(const Vector& v) {
  // Without the sign of a zero.
  return formatted("at %g %g %g", v.x + 0.0, v.y + 0.0, v.z + 0.0);
}

}  // namespace

bool textureExists(const std::string& name) {
  return fileExists(name + ".jpg") || fileExists(name + ".bmp");
}

TextureResolver collectTextureNames(ModelInfo& info) {
  return [&info](const char* name, bool) {
    std::vector<std::string>& names = info.textures;
    const auto known = std::find_if(names.begin(), names.end(),
                                    [&](const std::string& other) { return sameTextureName(other, name); });
    if (known != names.end()) return static_cast<int>(known - names.begin());
    names.emplace_back(name);
    if (!textureExists(names.back())) info.missingTextures.push_back(names.back());
    if (names.back().size() >= textureNameSize) info.longTextures.push_back(names.back());
    return static_cast<int>(names.size()) - 1;
  };
}

std::string modelAsJson(const ModelInfo& info, Scene& scene, const JsonContent& content) {
  for (Mesh* mesh : scene.meshes) mesh->buildArrays();
  // An object a line.
  const auto list = [](const auto& objects, auto printObject) {
    const std::string text = jsonArray(objects, [&](auto* object) { return "\n  " + printObject(object); });
    return text == "[]" ? text : text.substr(0, text.size() - 1) + "\n]";
  };
  std::string text = "{\"source\":" + json(info.compiled ? "compiled" : "text");
  text += ",\n\"meshes\":" + list(scene.meshes, [&](Mesh* mesh) { return jsonMesh(info, *mesh, content); });
  text += ",\n\"lights\":" + list(scene.lights, [](Light* light) { return jsonLight(*light); });
  text +=
      ",\n\"viewers\":" + list(scene.viewers, [&](Viewer* viewer) { return jsonViewer(*viewer, content); });
  const auto names = [](const std::vector<std::string>& textures) {
    return jsonArray(textures, [](const std::string& name) { return json(name); });
  };
  text += ",\n\"longTextures\":" + names(info.longTextures);
  text += ",\n\"missingTextures\":" + names(info.missingTextures);
  return text + "}\n";
}

std::string modelAsText(const ModelInfo& info, Scene& scene) {
  const SceneCounts counts = scene.getCounts();
  std::string text = formatted("%s: %ld meshes, %ld lights, %d cameras, %ld vertices, %ld faces\n",
                               info.compiled ? "compiled model" : "model text", counts.meshes, counts.lights,
                               scene.viewers.count(), counts.vertices, counts.faces);
  for (const Mesh* mesh : scene.meshes) {
    text += formatted("%-6s %s: %zu vertices, %zu faces, ", mesh->hidden() ? "helper" : "mesh", mesh->name,
                      mesh->vertices.size(), mesh->faces.size());
    text += describePlace(mesh->position) + describeParent(*mesh);
    text += describeTracks(*mesh) + "\n";
    if (!mesh->hidden()) text += describeMaterial(info, *mesh);
  }
  for (const Light* light : scene.lights) {
    text += formatted("light  %s: %s%s, ", light->name, light->spot ? "spot" : "omni",
                      light->active ? "" : ", inactive");
    text += describePlace(light->position) + describeParent(*light) + describeTracks(*light);
    if (light->target) text += formatted(", target track of %d keys", light->target->count);
    text += "\n";
  }
  for (const Viewer* viewer : scene.viewers) {
    text += "camera " + describePlace(viewer->position) +
            formatted(", field of view %g degrees, far plane at %g", static_cast<double>(viewer->fov),
                      static_cast<double>(viewer->farPlane));
    if (viewer->positionTrack) text += formatted(", position track of %d keys", viewer->positionTrack->count);
    if (viewer->targetTrack) text += formatted(", target track of %d keys", viewer->targetTrack->count);
    text += "\n";
  }
  for (const std::string& name : info.missingTextures) text += "missing texture " + name + "\n";
  for (const std::string& name : info.longTextures) {
    text += "texture name " + name +
            formatted(" has %zu characters, the player takes %d\n", name.size(), textureNameSize - 1);
  }
  return text;
}

}  // namespace vex
