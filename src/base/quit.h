#pragma once

#include <cstdint>

#include "base/current.h"

namespace vex {

struct QuitWish {
  std::int8_t flag = 0;
};

// A flag above 0 makes the next frame shut down.
inline void requestQuit(int flag) {
  current<QuitWish>().flag = static_cast<std::int8_t>(flag);
}

inline int quitRequested() {
  return current<QuitWish>().flag;
}

}  // namespace vex
