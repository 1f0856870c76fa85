#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "engine/scene.h"

// What a scene asks for in its data: objects of the model that it is built around, textures, how long motions
// are made to last. Whoever makes another model for it has to keep these. Set-up, checks and
// docs/functions.md read the same rows.

namespace vex {

struct NeededObject {
  const char* name;                    // ASCII letter case ignored
  ObjectKind kind = ObjectKind::none;  // none: a mesh, helpers included, or a light
};

inline constexpr NeededObject neededMesh(const char* name) {
  return {name, ObjectKind::mesh};
}
inline constexpr NeededObject neededLight(const char* name) {
  return {name, ObjectKind::light};
}

inline constexpr char anyLight[] = "*";  // one more than the scene asks for; known by its address

// A texture beside those that the model's materials name.
struct NeededTexture {
  const char* name;                // path without extension
  const char* function = nullptr;  // whose calls load it; null: it is loaded at the start
  const char* light = nullptr;     // asked for only where the model has a light of this name
  const char* unless = nullptr;    // a function that puts another in its place
  int frames = 1;                  // above 1: so many, with numbers from 1 on behind the name
  int digits = 0;                  // of each number; 0: as many as it takes
  int side = 0;                    // that width and height must have; 0: any that a texture may have
};

// The names that the row stands for.
std::vector<std::string> textureNames(const NeededTexture& needed);

enum class MotionOf : std::int8_t { meshes, lights, cameras };

// Tracks are made to last as long, whatever the number of their keys. Later rows hold over earlier ones.
struct SceneMotion {
  MotionOf of;
  float seconds;
  bool loops;
  const char* name = nullptr;  // of the objects, with * at its end for all that begin so; null: all
};

void playMotions(Scene& scene, std::span<const SceneMotion> motions);

// Textures of the box around a scene: top, bottom, north, west, south, east; empty for a side that is open.
using SkyTextures = std::array<const char*, 6>;
inline constexpr SkyTextures noSky{"", "", "", "", "", ""};

struct ModelNeeds {
  std::span<const NeededObject> objects{};  // by name
  int meshes = 0, lights = 0, cameras = 1;  // at least that many: these are taken by their place in the file
  SkyTextures sky = noSky;                  // loaded at the start
  std::span<const NeededTexture> textures{};
  std::span<const SceneMotion> motions{};
};

// What a scene that holds a loaded model lacks, one line each: "mesh lock", "cameras: 0, at least 1".
std::vector<std::string> lackingIn(const Scene& scene, const ModelNeeds& needs);

// The needs as a Markdown table; empty for none. `model`: path without extension, or null.
std::string needsText(const char* model, const ModelNeeds& needs);

}  // namespace vex
