#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/scene.h"
#include "models/model_loader.h"

namespace vex {

// Gives ids 0, 1, 2, ... to the names of textures, without loading any. The names by id.
TextureResolver nameTextures(std::vector<std::string>& names);

// A small model with every keyword: helper "Root", mesh "Box" with texture seam and tracks, a camera, an
// omni light and a spot, all with animated targets.
std::string everyKeyword(const std::string& comment = "stamp 1");

// A smaller one, for tests that read it hundreds of times.
std::string smallModel();

// Every field that a model sets, key by key and bit by bit.
std::string dumpScene(const Scene& scene);

// dumpScene() of what loadModel(base) or readModel(file) makes of it.
std::string loadAndDump(const std::string& base);
std::string readAndDump(const std::string& file);

// The command stream of a compiled model, and a compiled model of a stream.
std::string readStream(const std::string& file);
void writeStream(const std::string& file, std::string_view stream);

// Numbers of a stream, lowest byte first.
std::string intBytes(int value);
std::string floatBytes(std::initializer_list<float> values);

}  // namespace vex
