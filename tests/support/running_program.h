#pragma once

#include <sys/types.h>

#include <string>

namespace vex {

// A program of the build, in the working folder, with standard input closed and a silent sound device, or
// with one that writes the WAV file `heard` of 16-bit stereo at 44100 Hz while it plays.
class RunningProgram {
 public:
  explicit RunningProgram(const std::string& path, const std::string& heard = "",
                          const std::string& argument = "");
  ~RunningProgram();  // kills it if it still runs
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void signal(int number) const;
  bool running();

  // Waits for its end, thirty seconds at most: exit code, or -1 when it crashed or still runs.
  int exitCode();

  // What it has open there, as a path.
  std::string openAt(int descriptor) const;

  // Its standard error so far.
  std::string errors() const;

 private:
  pid_t process = -1;
  int status = 0;
  bool ended = false;
  std::string errorFile;
};

}  // namespace vex
