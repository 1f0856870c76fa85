#pragma once

#include <memory>
#include <optional>
#include <string>

#include "studio/show/show.h"

namespace vex::studio {

// The recorder and the player beside the studio, each with a run folder of its own: the project as it is
// shaped now, and links to the archive and the data.
class Programs {
 public:
  struct Order {
    std::string project;  // bytes of a project file
    std::string file;     // the video
    std::optional<Loop> stretch;
    int width = 1280;
    int height = 720;
    int framesPerSecond = 30;
  };
  struct News {
    std::string text;
    bool trouble = false;
  };

  Programs();
  ~Programs();  // ends the recording, not the player
  Programs(const Programs&) = delete;
  Programs& operator=(const Programs&) = delete;

  // One at a time.
  Trouble record(const Order& order);
  std::optional<int> recorded() const;  // percent, while it runs
  void cancelRecording();

  Trouble play(const std::string& project);

  // What has ended since the last call, or how far it is. Never waits.
  std::optional<News> news();

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
