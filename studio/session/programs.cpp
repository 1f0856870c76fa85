#include "studio/session/programs.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "base/report.h"
#include "platform/end_request.h"
#include "platform/replace_file.h"
#include "studio/show/child.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

// A run folder beside the working folder's: its archive and data by links, and another project. Goes with its
// object.
class BorrowedFolder {
 public:
  BorrowedFolder() = default;
  ~BorrowedFolder() { remove(); }
  BorrowedFolder(const BorrowedFolder&) = delete;
  BorrowedFolder& operator=(const BorrowedFolder&) = delete;

  Trouble make(const std::string& project) {
    remove();
    std::error_code problem;
    std::string pattern = (fs::temp_directory_path(problem) / "vexstudio.XXXXXX").string();
    if (!mkdtemp(pattern.data()))
      return formatted("can't make folder %s: %s", pattern.c_str(), std::strerror(errno));
    folder = pattern;
    for (const char* name : {"vex.pak", "data", "used_textures.log"})
      if (fs::exists(name, problem)) fs::create_symlink(fs::absolute(name), folder / name, problem);
    const fs::path file = folder / "test.hvp";
    if (replaceFile(file.string(), project)) return {};
    return formatted("can't write %s: %s", file.c_str(), std::strerror(errno));
  }

  void remove() {
    std::error_code ignored;
    if (!folder.empty()) fs::remove_all(folder, ignored);  // links, not what they lead to
    folder.clear();
  }

  std::string path() const { return folder.string(); }

 private:
  fs::path folder;
};

// A program that was built or installed beside this one.
std::string besideThis(const char* name) {
  std::error_code ignored;
  return (fs::read_symlink("/proc/self/exe", ignored).parent_path() / name).string();
}

// Where the recorder leaves what there is of a video that was interrupted.
fs::path partOf(const fs::path& video) {
  return video.parent_path() / (video.stem().string() + ".partial" + video.extension().string());
}

}  // namespace

struct Programs::State {
  Child recorder{60};  // ends what it has drawn in order, however large, and watches its encoder by itself
  BorrowedFolder recorderFolder;
  std::string recording;  // the video's name; empty while none runs
  int toldPercent = -1;
  Child player;
  BorrowedFolder playerFolder;
  bool playing = false;
};

Programs::Programs() : state(std::make_unique<State>()) {}
Programs::~Programs() = default;

Trouble Programs::record(const Order& order) {
  State& s = *state;
  if (!s.recording.empty()) return "a recording runs already: " + s.recording;
  if (const Trouble trouble = s.recorderFolder.make(order.project)) return trouble;
  std::vector<std::string> words{besideThis("vexrecord"),
                                 "--dir",
                                 s.recorderFolder.path(),
                                 "--out",
                                 order.file,
                                 "--size",
                                 formatted("%dx%d", order.width, order.height),
                                 "--fps",
                                 std::to_string(order.framesPerSecond)};
  if (order.stretch) {
    words.insert(words.end(), {"--from", formatted("%.6f", order.stretch->begin), "--to",
                               formatted("%.6f", order.stretch->end)});
  }
  if (const auto refusal = s.recorder.start(words, ".")) return refusal;
  s.recording = order.file;
  s.toldPercent = -1;
  return {};
}

std::optional<int> Programs::recorded() const {
  if (state->recording.empty()) return std::nullopt;
  return std::max(0, state->recorder.percent());
}

void Programs::cancelRecording() {
  if (!state->recording.empty()) state->recorder.cancel();
}

Trouble Programs::play(const std::string& project) {
  State& s = *state;
  if (s.playing) return "the player runs already";
  if (const Trouble trouble = s.playerFolder.make(project)) return trouble;
  if (const auto refusal = s.player.start({besideThis("vex")}, s.playerFolder.path())) return refusal;
  s.playing = true;
  return {};
}

std::optional<Programs::News> Programs::news() {
  State& s = *state;
  if (s.playing) {
    s.player.update();
    if (!s.player.running()) {
      s.playing = false;
      s.playerFolder.remove();
      if (s.player.exitCode() != 0) return News{"the player ended: " + s.player.message(), true};
    }
  }
  if (s.recording.empty()) return std::nullopt;
  s.recorder.update();
  if (s.recorder.running()) {
    if (std::exchange(s.toldPercent, s.recorder.percent()) == s.recorder.percent()) return std::nullopt;
    return News{"Recording " + s.recording, false};
  }
  const std::string file = std::exchange(s.recording, "");
  s.recorderFolder.remove();
  if (s.recorder.cancelled() && s.recorder.exitCode() == interruptedExitCode)
    return News{"The recording was cancelled; what there is of it is in " + partOf(file).string(), false};
  if (s.recorder.exitCode() == 0) return News{"The video is in " + file, false};
  return News{"the recording failed: " + s.recorder.message(), true};
}

}  // namespace vex::studio
