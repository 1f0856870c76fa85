#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "studio/document/autosave.h"
#include "studio/document/disk_state.h"
#include "studio/session/programs.h"
#include "studio/session/session.h"
#include "studio/show/file_watch.h"

namespace vex::studio {

inline constexpr const char* archiveName = "vex.pak";

// A name as the file layer writes it, for a path from the run folder.
std::string dataName(std::string path);

// What a session is made of; its sources share it.
struct Session::State {
  using Clock = std::chrono::steady_clock;
  static constexpr std::uint64_t never = ~std::uint64_t{0};  // no document's revision

  explicit State(const std::string& file);

  DiskState disk;
  std::unique_ptr<Document> document;
  Autosave autosave;
  std::unique_ptr<Show> show = std::make_unique<Show>();
  Waveform waveform;
  std::string waveformOf;  // the music that it was asked for
  FileWatch watch;
  Programs programs;
  Questions questions;

  Selection selection;
  std::vector<Finding> findings;
  std::vector<Finding> dataFindings;  // of what lies in the run folder
  Message message;                    // what was told last
  Message textMistake;                // of a text with problems, as long as nothing else is wrong
  bool opened = false;                // what the run folder has was asked for
  Trouble loadTrouble;                // why there is no show
  bool compiles = true;
  bool changed = true;  // since the panes were drawn
  bool inGesture = false;
  bool textTouched = false;  // on disk, by somebody
  bool textGone = false;
  std::uint64_t shownRevision = 0;
  std::uint64_t seenRevision = 0;
  std::uint64_t judgedRevision = never;
  std::uint64_t namesJudged = 0;  // hash of all texts of the project that name files
  Clock::time_point lastEdit = Clock::now();
  Clock::duration judgedIn{};  // how long it took the last time
  Clock::time_point lastAutosave = Clock::now();

  void tell(Message::Kind kind, std::string text);
  void tellTrouble(const Trouble& trouble);
  void holdSelection();

  // session_update.cpp
  void judge();
  void judgeData();
  void load(const std::function<void(int, const char*)>& progress);
  void loadAnew();
  void showEdits();
  void readWaveform();
  void heedFiles();
  void forgetCompiled();
  void saveOnTheSide();
  bool compile();
};

}  // namespace vex::studio
