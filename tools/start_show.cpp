#include "tools/start_show.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "authoring/new_show.h"
#include "base/pak_directory.h"
#include "base/report.h"
#include "platform/sound_file.h"
#include "tools/beats/beats.h"
#include "tools/project_input.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr double tail = 0.5;         // s of music behind the end of a show
constexpr double shortestMusic = 2;  // s
constexpr const char* textName = "show.txt";

SoundFile openMusicFile(const std::string& name) {
  errno = 0;  // the end of a file sets none
  std::ifstream probe(name);
  if (!probe || probe.peek() == std::ifstream::traits_type::eof()) {
    fatalError("can't read %s: %s", name.c_str(), errno != 0 ? std::strerror(errno) : "nothing is in it");
  }
  SoundFile sound = openSoundFile(name.c_str(), 0, wholeFile);
  if (!sound.decoder) {
    fatalError("music %s cannot be played: it takes WAV, OGG, FLAC or MP3 with one or two channels",
               name.c_str());
  }
  return sound;
}

// Its own where that can be a name in an archive.
std::string nameInFolder(const std::string& music) {
  const fs::path file = fs::path(music).filename();
  const std::string name = file.native();
  const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
    return static_cast<unsigned char>(c) > 32 && c != 127 && c != '\\' && c != '"';
  });
  const std::string folder = "data/";
  return folder +
         (plain && (folder + name).size() < pakNameSize ? name : "music" + file.extension().native());
}

void copyMusic(const std::string& music, const fs::path& target) {
  std::error_code error;
  fs::copy_file(music, target, error);
  if (error) fatalError("can't copy %s to %s: %s", music.c_str(), target.c_str(), error.message().c_str());
}

}  // namespace

void startShow(const std::string& folder, const std::string& music, std::optional<double> beatsPerMinute) {
  NewShow show;
  std::string file = "data/silence.ogg";
  if (!music.empty()) {
    SoundFile sound = openMusicFile(music);
    const double seconds = static_cast<double>(sound.frames) / sound.rate;
    if (seconds < shortestMusic)
      fatalError("music %s lasts %g s, at least %g are needed", music.c_str(), seconds, shortestMusic);
    show.seconds = std::floor((seconds - tail) * 10) / 10;
    file = nameInFolder(music);
    if (!beatsPerMinute) {
      if (const auto beats = findBeats(sound))
        show.tempo = {.beatsPerMinute = beats->perMinute, .origin = beats->first};
    }
  }
  if (beatsPerMinute) show.tempo = {.beatsPerMinute = *beatsPerMinute};
  prepareNewFolder(folder);
  if (music.empty()) {
    writeDataFile(folder, {file, silence(show.seconds + 2 * tail)});
  } else {
    copyMusic(music, fs::path(folder) / file);
  }
  show.music = file;
  std::replace(show.music.begin(), show.music.end(), '/', '\\');
  for (const DataFile& data : neutralData()) writeDataFile(folder, data);
  const std::string text = newShowText(show);
  writeDataFile(folder, {textName, text});
  writeDataFile(folder, {"test.hvp", compileWhole(text, textName)});
}

std::string beatsOf(const std::string& music) {
  SoundFile sound = openMusicFile(music);
  const std::optional<Beats> found = findBeats(sound);
  if (!found) fatalError("music %s: no steady beat was found", music.c_str());
  const char* how = found->sureness() >= 12 ? "sure" : found->sureness() >= 8 ? "likely" : "doubtful";
  return formatted("# %s: %d of %d beats are marked by what begins there\ntempo %.6g from %.3f\n", how,
                   found->marked, found->count, found->perMinute, found->first);
}

}  // namespace vex
