#pragma once

#include <assimp/scene.h>

#include <string>
#include <vector>

#include "tools/exchange/report.h"
#include "tools/exchange/source_file.h"

// Pictures of a file on their way to textures of the player.

namespace vex {

enum class AlphaUse { none, cut, blend };

struct TexturePlan {
  std::string name;                     // below data\, without extension
  const aiTexture* embedded = nullptr;  // or
  std::string file;                     // path of a picture
  AlphaUse alpha = AlphaUse::none;
  float cutoff = 0.5f;  // alpha below it is 0, other 1
};

// Whether the picture is there and can be read as PNG or JPEG, by its first bytes. Empty when it can; why
// not.
std::string whyUnreadable(const TexturePlan& plan);

struct TextureWriting {
  std::string folder;  // that the folder data is in
  int mostSide = 512;
  bool force = false;   // over what stands there
  bool dryRun = false;  // reads and reports, writes nothing
};

// Each picture scaled to powers of two of at most `mostSide`, as a JPEG, or a 24-bit BMP up to 64 x 64, with
// a mask beside it where its alpha counts and is not 1 all over. What stands there already stays. A picture
// that cannot be read is reported, and a plain white texture takes its place. Fatal: a file that cannot be
// written.
void writeTextures(const std::vector<TexturePlan>& plans, const TextureWriting& writing, Report& report);

}  // namespace vex
