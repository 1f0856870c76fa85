#include "tools/exchange/glb_parts.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/report.h"

namespace vex {

namespace {

using Json = rapidjson::Value;
constexpr std::size_t headSize = 12;      // of the file
constexpr std::size_t chunkHeadSize = 8;  // length and kind
constexpr const char* lightsExtension = "KHR_lights_punctual";

std::uint32_t wordAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i)
    word |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
  return word;
}

void putWord(std::string& bytes, std::uint32_t word) {
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(word >> (8 * i));
}

class Editor {
 public:
  explicit Editor(std::string_view text) {
    document.Parse(text.data(), text.size());
    if (document.HasParseError() || !document.HasMember("nodes")) fatalError("the library wrote no glTF");
    for (Json& node : document["nodes"].GetArray())
      if (node.HasMember("name")) nodes[node["name"].GetString()] = &node;
  }

  std::string text() const {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    document.Accept(writer);
    return buffer.GetString();
  }

  void add(const GlbCamera& camera) {
    Json perspective(rapidjson::kObjectType), json(rapidjson::kObjectType);
    perspective.AddMember("yfov", camera.heightRadians, memory());
    perspective.AddMember("znear", 1.0, memory());
    perspective.AddMember("zfar", camera.far, memory());
    json.AddMember("type", "perspective", memory());
    json.AddMember("perspective", perspective, memory());
    node(camera.node)
        .AddMember("camera", append(member(document, "cameras", rapidjson::kArrayType), json), memory());
  }

  void add(const GlbLight& light) {
    Json json(rapidjson::kObjectType), colour(rapidjson::kArrayType);
    for (const float channel : light.colour) colour.PushBack(static_cast<double>(channel), memory());
    json.AddMember("type", Json(light.spot ? "spot" : "point", memory()), memory());
    json.AddMember("color", colour, memory());
    json.AddMember("intensity", light.candela, memory());
    if (light.spot) {
      Json spot(rapidjson::kObjectType);
      spot.AddMember("innerConeAngle", 0.0, memory());
      spot.AddMember("outerConeAngle", light.edgeRadians, memory());
      json.AddMember("spot", spot, memory());
    }
    Json& used = member(document, "extensionsUsed", rapidjson::kArrayType);
    if (std::none_of(used.Begin(), used.End(), [](const Json& name) { return name == lightsExtension; }))
      used.PushBack(Json(lightsExtension, memory()), memory());
    Json& all =
        member(member(member(document, "extensions"), lightsExtension), "lights", rapidjson::kArrayType);
    member(member(node(light.node), "extensions"), lightsExtension)
        .AddMember("light", append(all, json), memory());
  }

  void addExtra(const std::string& name, const std::string& extra, const std::string& value) {
    member(node(name), "extras")
        .AddMember(Json(extra.c_str(), memory()), Json(value.c_str(), memory()), memory());
  }

  // The library leaves a node's place out when it is (1, 1, 1).
  void addPlace(const std::string& name, const std::vector<double>& place) {
    Json& own = node(name);
    if (own.HasMember("translation") || own.HasMember("matrix")) return;
    Json& values = member(own, "translation", rapidjson::kArrayType);
    for (const double value : place) values.PushBack(value, memory());
  }

 private:
  rapidjson::Document::AllocatorType& memory() { return document.GetAllocator(); }
  Json& node(const std::string& name) {
    const auto found = nodes.find(name);
    if (found == nodes.end()) fatalError("the library wrote no node %s", name.c_str());
    return *found->second;
  }
  Json& member(Json& of, const char* name, rapidjson::Type type = rapidjson::kObjectType) {
    if (!of.HasMember(name)) of.AddMember(Json(name, memory()), Json(type), memory());
    return of[name];
  }
  unsigned append(Json& array, Json& item) {
    array.PushBack(item, memory());
    return array.Size() - 1;
  }

  rapidjson::Document document;
  std::map<std::string, Json*> nodes;
};

}  // namespace

std::string withParts(const std::string& glb, const GlbParts& parts) {
  if (glb.size() < headSize + chunkHeadSize || wordAt(glb, headSize) > glb.size() - headSize - chunkHeadSize)
    fatalError("the library wrote no glTF");
  const std::size_t length = wordAt(glb, headSize);
  const std::string_view text = std::string_view(glb).substr(headSize + chunkHeadSize, length);
  Editor editor(text);
  for (const GlbCamera& camera : parts.cameras) editor.add(camera);
  for (const GlbLight& light : parts.lights) editor.add(light);
  for (const auto& [node, extras] : parts.extras)
    for (const auto& [name, value] : extras) editor.addExtra(node, name, value);
  for (const auto& [node, place] : parts.places) editor.addPlace(node, place);

  std::string json = editor.text();
  json.resize((json.size() + 3) / 4 * 4, ' ');
  const std::string rest = glb.substr(headSize + chunkHeadSize + length);
  std::string result = glb.substr(0, 8);
  putWord(result, static_cast<std::uint32_t>(headSize + chunkHeadSize + json.size() + rest.size()));
  putWord(result, static_cast<std::uint32_t>(json.size()));
  result += glb.substr(headSize + 4, 4);
  return result + json + rest;
}

}  // namespace vex
