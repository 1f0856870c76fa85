#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace vex {

// The text of a glTF file with all its bytes inside, part by part. Parts are JSON objects as texts; what is
// added returns its index.
//
//   GltfText file;
//   const int mesh = file.mesh({.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, .indices = {0, 1, 2}});
//   file.node(R"("name": "A", "mesh": 0)");
//   writeFile("a.gltf", file.str());
struct GltfText {
  using Triple = std::array<float, 3>;

  struct Mesh {
    std::vector<Triple> positions{}, normals{};
    std::vector<std::array<float, 2>> uvs{};
    std::vector<std::uint16_t> indices{};
    int material = -1;
    std::string more{};  // of the primitive
  };

  int mesh(const Mesh& m) {
    std::string attributes = "\"POSITION\": " + std::to_string(floats(m.positions, "VEC3"));
    if (!m.normals.empty()) attributes += ", \"NORMAL\": " + std::to_string(floats(m.normals, "VEC3"));
    if (!m.uvs.empty()) attributes += ", \"TEXCOORD_0\": " + std::to_string(floats(m.uvs, "VEC2"));
    std::string primitive = "\"attributes\": {" + attributes + "}";
    if (!m.indices.empty()) {
      const int view = bytes({reinterpret_cast<const char*>(m.indices.data()), m.indices.size() * 2});
      primitive += ", \"indices\": " + std::to_string(accessor(view, 5123, m.indices.size(), "SCALAR"));
    }
    if (m.material >= 0) primitive += ", \"material\": " + std::to_string(m.material);
    return add(meshes, "\"primitives\": [{" + primitive + m.more + "}]");
  }

  int node(const std::string& json) { return add(nodes, json); }
  int material(const std::string& json) { return add(materials, json); }
  int camera(const std::string& json) { return add(cameras, json); }
  int light(const std::string& json) { return add(lights, json); }

  // A texture of a picture's bytes; `type` is "png" or "jpeg".
  int texture(std::string_view picture, const std::string& type, const std::string& name) {
    const int view = bytes(picture);
    const int image = add(images, "\"bufferView\": " + std::to_string(view) + ", \"mimeType\": \"image/" +
                                      type + "\", \"name\": \"" + name + "\"");
    return add(textures, "\"source\": " + std::to_string(image));
  }
  int textureAt(const std::string& uri) {
    const int image = add(images, "\"uri\": \"" + uri + "\"");
    return add(textures, "\"source\": " + std::to_string(image));
  }

  // Keys at seconds; values are "translation", "rotation" (x, y, z, w) or "scale" ones. Cubic ones are
  // triples of slope, value, slope.
  template <std::size_t Size>
  void move(int node, const std::string& path, const std::vector<std::array<float, 1>>& times,
            const std::vector<std::array<float, Size>>& values, const std::string& interpolation = "LINEAR") {
    const int input = floats(times, "SCALAR");
    const int output = floats(values, Size == 3 ? "VEC3" : "VEC4");
    const int sampler = static_cast<int>(samplers.size());
    samplers.push_back("{\"input\": " + std::to_string(input) + ", \"output\": " + std::to_string(output) +
                       ", \"interpolation\": \"" + interpolation + "\"}");
    channels.push_back("{\"sampler\": " + std::to_string(sampler) +
                       ", \"target\": {\"node\": " + std::to_string(node) + ", \"path\": \"" + path + "\"}}");
  }

  std::string str(const std::string& roots = "") const {
    std::string scene = roots;
    for (std::size_t i = 0; roots.empty() && i < nodes.size(); ++i)
      scene += (i ? ", " : "") + std::to_string(i);
    std::string text =
        "{\"asset\": {\"version\": \"2.0\"}, \"scene\": 0, \"scenes\": [{\"nodes\": [" + scene + "]}]";
    list(text, "nodes", nodes);
    list(text, "meshes", meshes);
    list(text, "materials", materials);
    list(text, "cameras", cameras);
    list(text, "images", images);
    list(text, "textures", textures);
    list(text, "accessors", accessors);
    list(text, "bufferViews", views);
    if (!lights.empty()) {
      std::string inner;
      list(inner, "lights", lights);
      text += ", \"extensionsUsed\": [\"KHR_lights_punctual\"], \"extensions\": {\"KHR_lights_punctual\": {" +
              inner.substr(2) + "}}";
    }
    if (!channels.empty()) {
      std::string inner;
      list(inner, "channels", channels);
      list(inner, "samplers", samplers);
      text += ", \"animations\": [{" + inner.substr(2) + "}]";
    }
    if (!buffer.empty())
      text += ", \"buffers\": [{\"byteLength\": " + std::to_string(buffer.size()) +
              ", \"uri\": \"data:application/octet-stream;base64," + base64(buffer) + "\"}]";
    return text + "}";
  }

  template <std::size_t Size>
  int floats(const std::vector<std::array<float, Size>>& values, const std::string& type) {
    const int view = bytes({reinterpret_cast<const char*>(values.data()), values.size() * Size * 4});
    return accessor(view, 5126, values.size(), type);
  }

 private:
  static int add(std::vector<std::string>& to, const std::string& json) {
    to.push_back("{" + json + "}");
    return static_cast<int>(to.size()) - 1;
  }

  int bytes(std::string_view content) {
    while (buffer.size() % 4 != 0) buffer += '\0';
    const int view = add(views, "\"buffer\": 0, \"byteOffset\": " + std::to_string(buffer.size()) +
                                    ", \"byteLength\": " + std::to_string(content.size()));
    buffer.append(content);
    return view;
  }

  int accessor(int view, int component, std::size_t count, const std::string& type) {
    return add(accessors, "\"bufferView\": " + std::to_string(view) +
                              ", \"componentType\": " + std::to_string(component) +
                              ", \"count\": " + std::to_string(count) + ", \"type\": \"" + type + "\"");
  }

  static void list(std::string& text, const std::string& name, const std::vector<std::string>& items) {
    if (items.empty()) return;
    text += ", \"" + name + "\": [";
    for (std::size_t i = 0; i < items.size(); ++i) text += (i ? ",\n" : "\n") + items[i];
    text += "]";
  }

  static std::string base64(std::string_view content) {
    constexpr const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < content.size(); i += 3) {
      std::uint32_t word = 0;
      for (std::size_t k = 0; k < 3; ++k)
        word = word << 8 | (i + k < content.size() ? static_cast<unsigned char>(content[i + k]) : 0u);
      for (std::size_t k = 0; k < 4; ++k)
        text += i + k < content.size() + 1 ? digits[word >> (18 - 6 * k) & 63] : '=';
    }
    return text;
  }

  std::vector<std::string> nodes, meshes, materials, cameras, lights, images, textures, accessors, views,
      channels, samplers;
  std::string buffer;
};

}  // namespace vex
