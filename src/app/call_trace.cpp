#include "app/call_trace.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include "base/report.h"
#include "platform/replace_file.h"
#include "timeline/function_call.h"
#include "timeline/part_dispatcher.h"

namespace vex {

namespace {

std::unique_ptr<ReplacementFile> traceFile;
std::string tracePath;
int tracedFrame = -1;
float tracedTime = 0.0f;

[[noreturn]] void failTrace() {
  fatalError("can't write trace %s: %s", tracePath.c_str(), std::strerror(errno));
}

void traceCall(const Part& part, const FunctionCall& call, float sceneTime, const void* const* arguments) {
  std::FILE* file = traceFile->stream();
  const float time = tracedFrame < 0 ? part.pos + part.length / 2.0f : tracedTime;
  std::fprintf(file, "%d\t%.9g\t%s\t%s\t%s\t%.9g", tracedFrame, time, part.name, call.scene->name, call.name,
               sceneTime);
  int slot = 0;
  for (const Parameter* parameter : call.parameters) {
    const void* argument = arguments[slot++];
    if (parameter->type == PARAM_STRING) {
      std::fprintf(file, "\t%s", static_cast<const char*>(argument));
    } else {
      std::fprintf(file, "\t%.9g", *static_cast<const float*>(argument));
    }
  }
  std::fputc('\n', file);
  if (std::ferror(file)) failTrace();
}

}  // namespace

void openCallTrace(const std::string& path) {
  tracePath = path;
  tracedFrame = -1;
  traceFile = std::make_unique<ReplacementFile>(path);
  if (!traceFile->stream()) failTrace();
  std::fprintf(traceFile->stream(), "frame\ttime\tpart\tscene\tfunction\tsceneTime");
  for (int i = 0; i < 9; ++i) std::fprintf(traceFile->stream(), "\tp%d", i);
  std::fputc('\n', traceFile->stream());
  callTrace = traceCall;
}

void setTracedFrame(int frame, float time) {
  tracedFrame = frame;
  tracedTime = time;
}

void closeCallTrace() {
  callTrace = nullptr;
  if (!traceFile->commit()) failTrace();
  traceFile.reset();
}

}  // namespace vex
