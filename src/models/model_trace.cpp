#include "models/model_trace.h"

#ifdef VEX_TRACE_MODELS

#include <cstdarg>
#include <cstdio>

#include "models/model_reader.h"
#include "platform/paths.h"

namespace vex {

namespace {

bool newFile = true;
bool lineBegins = true;

}  // namespace

void beginTrace() {
  newFile = true;
  lineBegins = true;
}

void trace(const char* format, ...) {
  std::FILE* file = openLooseFile("3ds.log", newFile ? "w" : "a");
  newFile = false;
  if (!file) return;
  if (lineBegins) std::fprintf(file, "%*s", 3 * modelReader.blockDepth, "");
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(file, format, arguments);
  va_end(arguments);
  const std::string_view text = format;
  lineBegins = text.ends_with('\n');
  std::fclose(file);
}

}  // namespace vex

#endif
