#include "platform/steady_clock.h"

#include <chrono>

namespace vex {

namespace {

std::chrono::steady_clock::duration sinceFirstCall() {
  static const auto firstCall = std::chrono::steady_clock::now();
  return std::chrono::steady_clock::now() - firstCall;
}

}  // namespace

std::uint32_t timeGetTime() {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(sinceFirstCall()).count());
}

double steadySeconds() {
  return std::chrono::duration<double>(sinceFirstCall()).count();
}

}  // namespace vex
