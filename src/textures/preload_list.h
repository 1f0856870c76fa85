#pragma once

#include <string>
#include <vector>

// "used_textures.log": the textures that a show uses, one a line: name, blank, 1 for wrap or 0. It is
// read at start-up, so that nothing is loaded in mid-show.

namespace vex {

struct PreloadLine {
  int number;  // from 1 on
  bool blank;
  std::string name;  // of the texture; empty where the line has not two fields
  bool wrap = false;
};

// The lines of the list; none where it is missing.
std::vector<PreloadLine> readPreloadList();

inline constexpr const char* preloadListFile = "used_textures.log";

// Loads what the list names; a missing list is no error. Lines without two fields are ignored.
// Logs "preloading texture %s w/ wrap\n" or "preloading texture %s\n".
void preloadTextures();

// Writes the whole cache as such a list, in id order. Movies and the statistics font have no image
// file of their name, so their lines are to be taken out by hand.
void writeUsedTextures();

}  // namespace vex
