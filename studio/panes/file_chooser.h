#pragma once

#include <functional>
#include <string>

#include "studio/show/child.h"

namespace vex::studio {

// The desktop's file chooser, in a process of its own: the desktop's toolkit has a loop of events that lets
// nothing else happen, and the studio plays and saves on meanwhile.
class FileChooser {
 public:
  enum class Kind : std::int8_t { open, save };
  struct Question {
    Kind kind;
    std::string title;
    std::string filter;  // "Shows\t*.txt"
    std::string folder;
    std::string name;  // that is offered; may be empty
  };

  // `take` hears of the file, once, from update(); of none when the user leaves. Why not, where it cannot be
  // asked, as while another question is open.
  std::optional<std::string> ask(const Question& question, std::function<void(const std::string&)> take);

  void update();  // a few times a second; never waits

 private:
  Child chooser;
  std::function<void(const std::string&)> taken;
};

// The process's own side: true, and the exit code, where the program was started to choose a file.
bool choosesFile(int argc, char** argv, int& exitCode);

}  // namespace vex::studio
