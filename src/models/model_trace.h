#pragma once

// A log of all that is read from models, "3ds.log", in builds with VEX_TRACE_MODELS.

namespace vex {

struct ModelLoad;

// Of one load.
struct ModelTrace {
  bool newFile = true;  // the next line empties the file
  bool lineBegins = true;
};

#ifdef VEX_TRACE_MODELS
inline constexpr bool traceModels = true;

// Lines are indented by the depth of the block. Lines end in "\n".
[[gnu::format(printf, 2, 3)]] void trace(ModelLoad& load, const char* format, ...);
#else
inline constexpr bool traceModels = false;
[[gnu::format(printf, 2, 3)]] inline void trace(ModelLoad&, const char*, ...) {}
#endif

}  // namespace vex
