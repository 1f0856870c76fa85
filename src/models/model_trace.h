#pragma once

// A log of all that is read from models, "3ds.log", in builds with VEX_TRACE_MODELS.

namespace vex {

#ifdef VEX_TRACE_MODELS
inline constexpr bool traceModels = true;

// The next line empties the file.
void beginTrace();
// Lines are indented by the depth of the block. Lines end in "\n".
[[gnu::format(printf, 1, 2)]] void trace(const char* format, ...);
#else
inline constexpr bool traceModels = false;
inline void beginTrace() {}
[[gnu::format(printf, 1, 2)]] inline void trace(const char*, ...) {}
#endif

}  // namespace vex
