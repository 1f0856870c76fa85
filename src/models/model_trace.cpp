#include "models/model_trace.h"

#ifdef VEX_TRACE_MODELS

#include <cstdarg>
#include <cstdio>

#include "models/model_load.h"
#include "platform/paths.h"

namespace vex {

void trace(ModelLoad& load, const char* format, ...) {
  std::FILE* file = openLooseFile("3ds.log", load.trace.newFile ? "w" : "a");
  load.trace.newFile = false;
  if (!file) return;
  if (load.trace.lineBegins) std::fprintf(file, "%*s", 3 * load.reader.blockDepth, "");
  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(file, format, arguments);
  va_end(arguments);
  const std::string_view text = format;
  load.trace.lineBegins = text.ends_with('\n');
  std::fclose(file);
}

}  // namespace vex

#endif
