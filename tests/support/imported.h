#pragma once

#include <string>
#include <vector>

#include "engine/scene.h"
#include "tools/exchange/import.h"
#include "tools/exchange/report.h"

namespace vex {

// A file brought in, written as text and read by the player's reader, all in the working folder.
struct ImportedFile {
  SourceFile source;  // holds the pictures that are inside the file
  Report report;
  TextModel model;
  std::vector<TexturePlan> textures;
  std::vector<std::string> textureNames;  // by the scene's ids
  Scene scene;                            // its tracks play as fast as the file says

  // Whether a line of the report says that.
  bool says(Report::Kind kind, const std::string& text) const;
};

// Fatal errors are thrown as FatalError.
void importFile(const std::string& path, const ImportOptions& options, ImportedFile& file);

}  // namespace vex
