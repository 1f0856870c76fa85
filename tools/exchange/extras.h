#pragma once

#include <assimp/scene.h>

#include <optional>
#include <string>

#include "models/model_text.h"
#include "tools/exchange/thinning.h"

// What a model holds beyond what files of other tools can: texts that an export leaves with its nodes
// ("custom properties", "extras") and that an import takes up again as far as the file still agrees with
// them.

namespace vex {

inline constexpr const char* objectExtra = "vex_object";      // place in the model's list, class of a helper
inline constexpr const char* placesExtra = "vex_places";      // frames of keys
inline constexpr const char* turnsExtra = "vex_turns";        // likewise
inline constexpr const char* scalesExtra = "vex_scales";      // likewise
inline constexpr const char* materialExtra = "vex_material";  // the material, value by value
inline constexpr const char* lightExtra = "vex_light";        // likewise

// Longer ones do not come through the library.
inline constexpr std::size_t longestExtra = 1000;

// Empty when the node has none.
std::string extraOf(const aiNode& node, const char* name);

struct ObjectExtra {
  int order = 0;
  std::string helperClass;
};
std::string textOf(const ObjectExtra& object);
std::optional<ObjectExtra> readObject(const std::string& text);

// "l" or "s" (lines, smooth curve), the first frame, then steps: "s 0 15x40 13" has 40 steps of 15 and one
// of 13.
std::string textOf(const KeyHint& hint);
std::optional<KeyHint> readKeys(const std::string& text);

std::string textOf(const TextMaterial& material);
std::optional<TextMaterial> readMaterial(const std::string& text);

// With the strength that the file was given for it.
struct LightExtra {
  float candela = 0;
  TextLight light;  // colour, intensity, opening, on
};
std::string textOf(const LightExtra& extra);
std::optional<LightExtra> readLight(const std::string& text);

}  // namespace vex
