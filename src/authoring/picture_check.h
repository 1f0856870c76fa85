#pragma once

#include <optional>
#include <string>

#include "base/report.h"

// What is wrong with the picture files of a show, as the file layer finds them: texts are empty where
// nothing is.

namespace vex {

struct PictureSize {
  int width, height;
  bool operator==(const PictureSize&) const = default;
};

// Of the texture (path without extension); nothing where it is missing or cannot be read.
std::optional<PictureSize> textureSize(const std::string& texture);

struct PictureFault {
  std::string text = {};  // empty where nothing is wrong
  std::string hint = {};  // what to do
};

// Missing, of a kind or of sides that are not read, cut short, a mask that does not fit.
PictureFault textureFault(const std::string& texture);

// The player's GL may refuse the picture; the checking machine has perhaps none.
std::string sidesRemark(const std::string& texture);

// Whether the file layer finds a mask of the texture.
bool textureHasMask(const std::string& texture);

// The file exists loose, under a name by which nobody would find it in an archive.
std::string archiveRemark(const std::string& file);

// The path of a file layer's name, as commands take it.
std::string shellPath(const std::string& file);

// What a fatal error says, in one line and without the function or cry that it may begin with: of
// "read(image) failed (texture x: cut short)" what stands in the last parentheses.
std::string plainRefusal(std::string text);

// Why the player would refuse the file; empty when it would not.
template <typename Read>
std::string refusal(Read read) {
  const FatalErrorsThrown thrown;
  try {
    read();
  } catch (const FatalError& error) {
    return plainRefusal(error.what());
  }
  return "";
}

}  // namespace vex
