#pragma once

// What depends on who opened the GL context: the window or the offscreen context sets it.

namespace vex {

struct GlContext {
  bool (*extensionSupported)(const char* name) = nullptr;
  void* (*entryPoint)(const char* name) = nullptr;  // address of a GL function, null when unknown
};

inline GlContext glContext;

}  // namespace vex
