#pragma once

#include <cstdio>
#include <string>

// Writing a file that must not be lost or left half-written: everything goes to a temporary file
// beside the target, which takes the target's place in one step.

namespace vex {

class ReplacementFile {
 public:
  // Creates the temporary file; stream() is null when that fails (errno says why).
  explicit ReplacementFile(const std::string& target);
  ~ReplacementFile();  // removes
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  std::FILE* stream() const { return file; }

  // Puts the file in place. False, with errno, when a write, the closing or the renaming failed; the
  // target is then untouched.
  bool commit();

 private:
  std::string targetPath;
  std::string temporaryPath;
  std::FILE* file = nullptr;
};

// Removes the temporary files that are not in place yet. Called before the process ends without
// running destructors.
void removeTemporaryFiles();

// For temporary files that another program writes.
void rememberTemporaryFile(const std::string& path);
void forgetTemporaryFile(const std::string& path);

}  // namespace vex
