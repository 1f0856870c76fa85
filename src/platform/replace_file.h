#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <string_view>

// Writing a file that must not be lost or left half-written: everything goes to a temporary file
// beside the target, hidden (a leading dot), which takes the target's place in one step. A link stays, and
// the file behind it is replaced; a device or a pipe is written as it stands.

namespace vex {

class ReplacementFile {
 public:
  // Creates the temporary file; stream() is null when that fails (errno says why). From then on writes
  // that cannot be done fail instead of ending the process (ignoreWriteSignals).
  explicit ReplacementFile(const std::string& target);
  ~ReplacementFile();  // removes
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  std::FILE* stream() const { return file; }

  // Puts the file in place. False, with errno, when a write, the closing or the renaming failed; the
  // target is then untouched.
  bool commit();

 private:
  void createTemporaryFile();

  std::string targetPath;
  std::string temporaryPath;  // empty for a device or a pipe
  std::FILE* file = nullptr;
};

// The same for bytes that are all there. False, with errno, when it failed; the target is then untouched.
bool replaceFile(const std::string& target, std::string_view bytes);

// Removes the temporary files that are not in place yet. Called before the process ends without
// running destructors, also from signal handlers.
void removeTemporaryFiles();

// "FOLDER/.NAME" for "FOLDER/NAME": what is not in place yet stays out of listings and archives.
std::string hiddenName(const std::string& path);

// For temporary files that another program writes: the leader of a process group, which is killed before
// its file is removed. 0 for none. At most 32 at a time are removed.
void rememberTemporaryFile(const std::string& path, pid_t writer);
void forgetTemporaryFile(const std::string& path);

}  // namespace vex
