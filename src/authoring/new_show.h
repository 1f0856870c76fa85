#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "timeline/tempo.h"

// The beginning of a show of one's own: a run folder that holds what the player demands of every show,
// neutral and small, and a text to go on from.

namespace vex {

struct DataFile {
  std::string path;  // below the run folder, with slashes
  std::string bytes;
};

// What is loaded at every start, whatever the time line calls: pictures of a few pixels, for each scene a
// model that holds what it asks for and little else, the statistics font.
std::vector<DataFile> neutralData();

struct NewShow {
  std::string music;           // as the time line names it
  double seconds = 60;         // of the show
  std::optional<Tempo> tempo;  // none: the text says how to find it
};

// The text of a show that plays at once: a ground, and a picture that moves.
std::string newShowText(const NewShow& show);

// Silence as a sound file (Ogg Vorbis).
std::string silence(double seconds);

// The folder may be there, but nothing in it. Fatal: what is no empty folder, what cannot be written.
void prepareNewFolder(const std::filesystem::path& folder);
void writeDataFile(const std::filesystem::path& folder, const DataFile& file);

}  // namespace vex
