#include <rapidjson/document.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "tools/exchange/motion.h"
#include "tools/exchange/source_file.h"

namespace vex {

namespace {

namespace fs = std::filesystem;
using Json = rapidjson::Value;

std::string wholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::uint32_t wordAt(const std::string& bytes, std::size_t offset) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i)
    word |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
  return word;
}

std::string fromBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t word = 0;
  int bits = 0;
  for (const char c : text) {
    const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const char* digit = c == '\0' ? nullptr : std::strchr(digits, c);
    if (!digit) break;
    word = word << 6 | static_cast<std::uint32_t>(digit - digits);
    bits += 6;
    if (bits >= 8) bytes += static_cast<char>(word >> (bits -= 8));
  }
  return bytes;
}

const Json* member(const Json& of, const char* name) {
  if (!of.IsObject()) return nullptr;
  const auto found = of.FindMember(name);
  return found == of.MemberEnd() ? nullptr : &found->value;
}

const Json* element(const Json* array, std::uint64_t index) {
  return array && array->IsArray() && index < array->Size()
             ? &(*array)[static_cast<rapidjson::SizeType>(index)]
             : nullptr;
}

std::optional<std::uint64_t> whole(const Json& of, const char* name) {
  const Json* value = member(of, name);
  if (!value || !value->IsUint64()) return {};
  return value->GetUint64();
}

std::string textOf(const Json& of, const char* name) {
  const Json* value = member(of, name);
  return value && value->IsString() ? value->GetString() : "";
}

// A glTF file as it is written, for what the library keeps to itself.
class File {
 public:
  explicit File(const std::string& path) : folder(fs::path(path).parent_path().string()) {
    std::string text = wholeFile(path);
    constexpr std::size_t heads = 20;
    if (text.starts_with("glTF") && text.size() >= heads) {
      const std::size_t length = std::min<std::size_t>(wordAt(text, 12), text.size() - heads);
      if (text.size() - heads - length >= 8) binary = text.substr(heads + length + 8);
      text = text.substr(heads, length);
    }
    // Files may nest deeper than a stack is.
    json.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
  }

  const Json* items(const char* name) const { return json.HasParseError() ? nullptr : member(json, name); }

  // The floats of an accessor; none when they are not all there, or no floats one after the other.
  std::vector<float> floats(std::uint64_t index, std::size_t width) {
    const Json* accessor = element(items("accessors"), index);
    if (!accessor || whole(*accessor, "componentType") != 5126 || member(*accessor, "sparse")) return {};
    const auto count = whole(*accessor, "count");
    const Json* view = element(items("bufferViews"), whole(*accessor, "bufferView").value_or(~0ull));
    if (!count || !view || whole(*view, "byteStride").value_or(width * 4) != width * 4) return {};
    const std::string& buffer = bufferOf(whole(*view, "buffer").value_or(~0ull));
    const std::uint64_t offset =
        whole(*view, "byteOffset").value_or(0) + whole(*accessor, "byteOffset").value_or(0);
    if (offset > buffer.size() || *count > (buffer.size() - offset) / (width * 4)) return {};
    std::vector<float> values(static_cast<std::size_t>(*count) * width);
    std::memcpy(values.data(), buffer.data() + offset, values.size() * 4);
    return values;
  }

 private:
  const std::string& bufferOf(std::uint64_t index) {
    static const std::string none;
    const Json* buffer = element(items("buffers"), index);
    if (!buffer) return none;
    const std::string uri = textOf(*buffer, "uri");
    if (uri.empty()) return binary;
    std::string& bytes = buffers[index];
    if (!bytes.empty()) return bytes;
    if (uri.starts_with("data:")) {
      bytes = fromBase64(std::string_view(uri).substr(std::min(uri.find(',') + 1, uri.size())));
    } else if (const std::string path = pathWithin(folder, uri); !path.empty()) {
      bytes = wholeFile(path);
    }
    return bytes;
  }

  std::string folder, binary;
  std::map<std::uint64_t, std::string> buffers;
  rapidjson::Document json;
};

Place slope(const float* values, const Place*) {
  return {static_cast<double>(values[0]), static_cast<double>(values[1]), static_cast<double>(values[2])};
}

Turn slope(const float* values, const Turn*) {
  return {static_cast<double>(values[3]), static_cast<double>(values[0]), static_cast<double>(values[1]),
          static_cast<double>(values[2])};
}

template <typename Value>
void join(File& file, const Json& sampler, Channel<Value>& channel) {
  constexpr std::size_t width = std::is_same_v<Value, Turn> ? 4 : 3;
  const std::string word = textOf(sampler, "interpolation");
  if (word == "STEP") channel.joining = Joining::step;
  if (word != "CUBICSPLINE") return;
  // A slope before, the value and a slope after, key by key.
  const std::vector<float> values = file.floats(whole(sampler, "output").value_or(~0ull), width);
  if (values.size() != channel.times.size() * width * 3) return;
  channel.joining = Joining::cubic;
  for (std::size_t key = 0; key < channel.times.size(); ++key) {
    const float* first = values.data() + key * width * 3;
    channel.slopes.push_back(
        {slope(first, static_cast<Value*>(nullptr)), slope(first + 2 * width, static_cast<Value*>(nullptr))});
  }
}

}  // namespace

void readJoining(const std::string& path, Motions& motions) {
  if (motions.byNode.empty()) return;
  File file(path);
  const Json* animations = file.items("animations");
  if (!animations || !animations->IsArray()) return;
  std::map<std::string, rapidjson::SizeType> animationOf;  // the first that moves a node counts
  for (rapidjson::SizeType a = 0; a < animations->Size(); ++a) {
    const Json* channels = member((*animations)[a], "channels");
    if (!channels || !channels->IsArray()) continue;
    for (const Json& channel : channels->GetArray()) {
      const Json* target = member(channel, "target");
      const Json* sampler =
          element(member((*animations)[a], "samplers"), whole(channel, "sampler").value_or(~0ull));
      const Json* node =
          target ? element(file.items("nodes"), whole(*target, "node").value_or(~0ull)) : nullptr;
      if (!node || !sampler) continue;
      const auto motion = motions.byNode.find(textOf(*node, "name"));
      if (motion == motions.byNode.end() || animationOf.emplace(motion->first, a).first->second != a)
        continue;
      const std::string what = textOf(*target, "path");
      if (what == "translation") join(file, *sampler, motion->second.places);
      if (what == "rotation") join(file, *sampler, motion->second.turns);
      if (what == "scale") join(file, *sampler, motion->second.scales);
    }
  }
}

}  // namespace vex
