#pragma once

#include <string>

#include "platform/replace_file.h"
#include "timeline/part_dispatcher.h"

namespace vex {

// The machine-readable record of all scene-function calls: UTF-8, a header line, then a line per
// call in call order, columns separated by tabs:
//   frame      0-based; -1 for what is called before the first frame
//   time       demo time, s; of a call replayed to begin in mid-show its part's midpoint
//   part, scene, function
//   sceneTime  s
//   p0 ... p8  one column per passed argument: a number as %.9g, a string as it stands
//
// Traces what parts of the show call as long as it lives.
class CallTraceFile {
 public:
  // Fatal: a file that cannot be made.
  explicit CallTraceFile(const std::string& path);
  ~CallTraceFile();
  CallTraceFile(const CallTraceFile&) = delete;
  CallTraceFile& operator=(const CallTraceFile&) = delete;

  // The frame that the following calls belong to.
  void setFrame(int number);

  // Puts the finished file in place. Fatal when that fails.
  void finish();

 private:
  void trace(const Part& part, const FunctionCall& call, float sceneTime, const void* const* arguments);
  [[noreturn]] void fail() const;

  std::string path;
  ReplacementFile file;
  int frame = -1;
};

}  // namespace vex
