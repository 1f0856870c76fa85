#include "app/call_trace.h"

#include <cerrno>
#include <cstring>

#include "base/clock.h"
#include "base/report.h"
#include "timeline/function_call.h"
#include "timeline/scene_function.h"

namespace vex {

CallTraceFile::CallTraceFile(const std::string& name) : path(name), file(name) {
  if (!file.stream()) fail();
  std::fprintf(file.stream(), "frame\ttime\tpart\tscene\tfunction\tsceneTime");
  for (int i = 0; i < maxArguments; ++i) std::fprintf(file.stream(), "\tp%d", i);
  std::fputc('\n', file.stream());
  callTrace() = [this](const auto&... call) { trace(call...); };
}

CallTraceFile::~CallTraceFile() {
  callTrace() = {};
}

void CallTraceFile::setFrame(int number) {
  frame = number;
}

void CallTraceFile::finish() {
  if (!file.commit()) fail();
}

void CallTraceFile::trace(const Part& part, const FunctionCall& call, float sceneTime,
                          const void* const* arguments) {
  std::FILE* out = file.stream();
  const float time = clockFrame() == 0 ? part.pos + part.length / 2.0f : clockTime();
  std::fprintf(out, "%d\t%.9g\t%s\t%s\t%s\t%.9g", frame, time, part.name, call.scene->name, call.name,
               sceneTime);
  int slot = 0;
  for (const Parameter* parameter : call.parameters) {
    const void* argument = arguments[slot++];
    if (parameter->type == PARAM_STRING) {
      std::fprintf(out, "\t%s", static_cast<const char*>(argument));
    } else {
      std::fprintf(out, "\t%.9g", *static_cast<const float*>(argument));
    }
  }
  std::fputc('\n', out);
  if (std::ferror(out)) fail();
}

void CallTraceFile::fail() const {
  fatalError("can't write trace %s: %s", path.c_str(), std::strerror(errno));
}

}  // namespace vex
