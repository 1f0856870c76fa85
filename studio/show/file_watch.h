#pragma once

#include <memory>
#include <string>
#include <vector>

// Which files somebody else has changed.

namespace vex::studio {

// Watches by inotify; a folder that comes later is found when it comes. Files count as changed once they are
// closed after writing, renamed into place, or gone. Temporary names (hidden) never count.
class FileWatch {
 public:
  FileWatch();
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  void addFile(const std::string& path);  // its folder is watched for its name
  void addFolder(
      const std::string& path);  // all files of it and of the folders below, links to folders apart

  int descriptor() const;  // readable when changed() has something to tell; -1 where watching is not possible

  // Since the last call, each once, as paths that begin as they were given. Never waits.
  std::vector<std::string> changed();

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
