#include "tools/exchange/extras.h"

#include <charconv>
#include <cstring>
#include <initializer_list>
#include <sstream>
#include <vector>

namespace vex {

namespace {

constexpr int mostKeys = 100'000;

std::string numbersText(std::initializer_list<float> numbers) {
  std::string text;
  for (const float number : numbers) {
    char digits[32];
    if (!text.empty()) text += ' ';
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
  }
  return text;
}

// All words of the text as numbers, and nothing else.
bool readNumbers(std::istringstream& in, std::initializer_list<float*> numbers) {
  for (float* number : numbers)
    if (!(in >> *number)) return false;
  return true;
}

}  // namespace

std::string extraOf(const aiNode& node, const char* name) {
  aiString text;
  if (!node.mMetaData) return {};
  for (unsigned i = 0; i < node.mMetaData->mNumProperties; ++i)
    if (std::strcmp(node.mMetaData->mKeys[i].C_Str(), name) == 0 && node.mMetaData->Get(i, text))
      return text.C_Str();
  return {};
}

std::string textOf(const ObjectExtra& object) {
  return std::to_string(object.order) + (object.helperClass.empty() ? "" : " " + object.helperClass);
}

std::optional<ObjectExtra> readObject(const std::string& text) {
  std::istringstream in(text);
  ObjectExtra object;
  if (!(in >> object.order)) return {};
  in >> object.helperClass;
  return object;
}

std::string textOf(const KeyHint& hint) {
  std::string text = hint.straight ? "l" : "s";
  if (hint.frames.empty()) return text;
  text += " " + std::to_string(hint.frames[0]);
  for (std::size_t i = 1; i < hint.frames.size();) {
    const int step = hint.frames[i] - hint.frames[i - 1];
    int times = 1;
    while (i + 1 < hint.frames.size() && hint.frames[i + 1] - hint.frames[i] == step) ++i, ++times;
    ++i;
    text += " " + std::to_string(step) + (times > 1 ? "x" + std::to_string(times) : "");
  }
  return text;
}

std::optional<KeyHint> readKeys(const std::string& text) {
  std::istringstream in(text);
  std::string word;
  KeyHint hint;
  if (!(in >> word) || (word != "l" && word != "s")) return {};
  hint.straight = word == "l";
  int frame = 0;
  if (!(in >> frame)) return {};
  hint.frames.push_back(frame);
  while (in >> word) {
    int step = 0, times = 1;
    const char* end = word.data() + word.size();
    auto [next, error] = std::from_chars(word.data(), end, step);
    if (error == std::errc() && next != end && *next == 'x') {
      const auto rest = std::from_chars(next + 1, end, times);
      next = rest.ptr;
      error = rest.ec;
    }
    if (error != std::errc() || next != end || step < 1 || step > mostKeys || times < 1 ||
        times > mostKeys - static_cast<int>(hint.frames.size()))
      return {};
    for (; times > 0; --times) {
      if (hint.frames.back() > 1'000'000) return {};
      hint.frames.push_back(hint.frames.back() + step);
    }
  }
  return hint;
}

std::string textOf(const TextMaterial& m) {
  return numbersText({m.diffuse.r, m.diffuse.g, m.diffuse.b, m.ambient.r, m.ambient.g, m.ambient.b,
                      m.specular.r, m.specular.g, m.specular.b, m.shine, m.shineStrength, m.opacity}) +
         (m.environment ? " 1" : " 0") + (m.twoSided ? " 1" : " 0") +
         (m.texture.empty() ? "" : " " + m.texture);
}

std::optional<TextMaterial> readMaterial(const std::string& text) {
  std::istringstream in(text);
  TextMaterial m;
  if (!readNumbers(in,
                   {&m.diffuse.r, &m.diffuse.g, &m.diffuse.b, &m.ambient.r, &m.ambient.g, &m.ambient.b,
                    &m.specular.r, &m.specular.g, &m.specular.b, &m.shine, &m.shineStrength, &m.opacity}) ||
      !(in >> m.environment >> m.twoSided))
    return {};
  in >> m.texture;
  return m;
}

std::string textOf(const LightExtra& e) {
  const TextLight& l = e.light;
  return numbersText({e.candela, l.colour.r, l.colour.g, l.colour.b, l.intensity, l.coneDegrees}) +
         (l.on ? " 1" : " 0");
}

std::optional<LightExtra> readLight(const std::string& text) {
  std::istringstream in(text);
  LightExtra e;
  TextLight& l = e.light;
  if (!readNumbers(in, {&e.candela, &l.colour.r, &l.colour.g, &l.colour.b, &l.intensity, &l.coneDegrees}) ||
      !(in >> l.on))
    return {};
  return e;
}

}  // namespace vex
