#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace vex {

// A fresh folder that is the working folder while it lives.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return folder; }

 private:
  std::filesystem::path previous;
  std::filesystem::path folder;
};

// Writes a whole file, making its folders; relative names lie in the working folder.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

// The whole file; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);

struct Program {
  int exitCode = -1;
  std::string output;
  std::string errors;
};

// Runs a shell command and waits for it.
Program runProgram(const std::string& command);

}  // namespace vex
